// Model after model on one easel: each picture is that of a run of its own.

#include <algorithm>
#include <filesystem>
#include <map>

#include <gtest/gtest.h>

#include <orvex_kit/engine.h>

#include "easel.h"
#include "messages.h"
#include "painter.h"
#include "program_run.h"
#include "tests/support/temp_dir.h"
#include "tests/tools/current_folder.h"

namespace orvex_test {

namespace {

using Words = std::vector<std::string>;

/// Bytes by the names of files.
using Files = std::map<std::string, std::string>;

Files files_in(const TempDir& folder) {
    Files files;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        files[entry.path().filename().string()] = content_of(entry.path().string());
    return files;
}

const std::string bunny = "/usr/share/glmark2/models/bunny.obj";
const std::string plain_font = ORVEX_TEST_DATA_DIR "/tools/font/plain.xml";

/// What differs from the one before in as much as it can.
const std::vector<Words> mixed_runs = {
    {sample(), "-s64x48", "-o", "a.png"},
    {bunny, "-s96x32", "-b", "transparent", "-o", "b.png"},
    {sample(), "-s64x48", "--layers=color,depth,face", "-m0", "-o", "c.npy"},
    {bunny, "-s48x48", "-lwire", "-b", "white", "-o", "d.png"},
    {"missing.obj", "-s48x48", "-o", "e.png"},
    {sample(), "-s64x48", "-xtext", "--text-size=16", "-o", "f.png"},
    {sample(), "-s32x64", "-w", "-m0", "-o", "g.png"},
    {bunny, "-s32x64", "-lnormals", "-nflat", "-t3", "-o", "h.png"},
    {sample(), "-s40x40", "-xtext", "--font", plain_font, "-o", "i.png"},
    {sample(), "-s64x48", "-xtext", "-lmatcap", "--layers=normal,object", "-o", "never.png"},
    {bunny, "-s40x40", "--film=2", "-o", "j.y4m"},
};

/// Paints on an easel, as the program does.
void paint(Easel& easel, const Words& words) {
    Options options;
    if (!read_options(words, options).empty())
        return;
    Painter painter(options, easel);
    if (painter.prepare().empty())
        EXPECT_EQ(painter.paint(), "");
}

Words on_path(Words words, const std::string& path) {
    words.push_back("--path=" + path);
    return words;
}

Files by_single_runs(const std::vector<Words>& runs) {
    const TempDir folder;
    for (const Words& words : runs)
        run_render(folder.path(), words);
    return files_in(folder);
}

Files on_one_easel(const std::vector<Words>& runs) {
    const TempDir folder;
    const CurrentFolder there(folder.path());
    Easel easel;
    for (const Words& words : runs)
        paint(easel, words);
    return files_in(folder);
}

void expect_same(const Files& files, const Files& expected) {
    EXPECT_EQ(files.size(), expected.size());
    for (const auto& [name, bytes] : expected)
        EXPECT_TRUE(files.count(name) == 1 && files.at(name) == bytes) << name;
}

TEST(EaselTest, gives_a_mixed_list_the_pictures_of_single_runs_forwards_and_backwards) {
    std::vector<Words> runs;
    for (const Words& words : mixed_runs)
        runs.push_back(on_path(words, "gl3"));
    runs.push_back(on_path({sample(), "-s64x48", "-o", "k.png"}, "gl2"));
    runs.push_back(on_path({bunny, "-s48x64", "-lwire", "-xtext", "-o", "l.png"}, "gl2"));
    runs.push_back(on_path({sample(), "-s48x64", "-w", "-o", "m.png"}, "gl2"));
    const Files expected = by_single_runs(runs);
    ASSERT_EQ(expected.size(), 17u);
    set_wordiness(Wordiness::quiet);
    const orvex::kit::Engine engine;
    expect_same(on_one_easel(runs), expected);
    std::reverse(runs.begin(), runs.end());
    expect_same(on_one_easel(runs), expected);
}

TEST(EaselTest, keeps_its_view_where_only_the_size_differs) {
    const TempDir folder;
    const CurrentFolder there(folder.path());
    const orvex::kit::Engine engine;
    Easel easel;
    set_wordiness(Wordiness::quiet);
    paint(easel, {sample(), "-s64x48", "-o", "a.png"});
    const orvex::Renderer* const renderer = easel.view().renderer();
    ASSERT_NE(renderer, nullptr);
    paint(easel, {sample(), "-s32x32", "-lwire", "-o", "a.png"});
    EXPECT_EQ(easel.view().renderer(), renderer);
    EXPECT_EQ(easel.view().width(), 32);
    paint(easel, {sample(), "-s32x32", "-m0", "-o", "a.png"});
    EXPECT_EQ(easel.view().samples(), 0);
}

TEST(EaselTest, goes_on_after_a_view_that_could_not_be) {
    const TempDir folder;
    const CurrentFolder there(folder.path());
    const orvex::kit::Engine engine;
    Easel easel;
    Options options;
    options.size = {100000, 1};
    EXPECT_NE(easel.prepare(options), "");
    options.size = {16, 16};
    EXPECT_EQ(easel.prepare(options), "");
    options.look = "none.glsl";
    EXPECT_EQ(easel.prepare(options), "none.glsl: No such file or directory");
    options.look = "lit";
    EXPECT_EQ(easel.prepare(options), "");
}

} // namespace

} // namespace orvex_test
