// The pictures that the program writes.

#include <array>
#include <filesystem>
#include <sstream>

#include <gtest/gtest.h>

#include "program_run.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using orvex_test::TempDir;

/// The picture of a run.
Picture picture_of(std::vector<std::string> words, const std::string& output = "a.jpg") {
    const TempDir folder;
    words.insert(words.end(), {"-o", "a.jpg", "-q"});
    const Outcome outcome = run_render(folder.path(), words);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
    const std::optional<Picture> picture = read_picture(folder.file(output));
    EXPECT_TRUE(picture.has_value()) << output;
    return picture.value_or(Picture(1, 1));
}

/// Pictures are stored with losses, so that the last bit says nothing.
void expect_golden(const std::string& name, const Picture& picture) {
    EXPECT_TRUE(compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR, name,
                                    picture, false));
}

struct Row {
    const char* golden;
    std::vector<std::string> words;
};

class OrvexRenderPicture : public testing::TestWithParam<Row> {};

TEST_P(OrvexRenderPicture, is_alike_on_both_paths) {
    std::vector<std::string> words = GetParam().words;
    words.push_back("--path=gl3");
    const Picture gl3 = picture_of(words);
    expect_golden(GetParam().golden, gl3);
    words.back() = "--path=gl2";
    EXPECT_TRUE(is_near(picture_of(words), gl3, {}));
}

const std::string plain_font = ORVEX_TEST_DATA_DIR "/tools/font/plain.xml";

std::vector<Row> rows() {
    std::vector<Row> all = {
        {"orvex_render", {sample(), "-s320x240"}},
        {"orvex_render_angle", {sample(), "-s240x240", "-a-60", "-e70", "-z1.5", "-b#456"}},
        {"orvex_render_wireframe", {sample(), "-s320x240", "-w", "-b", "white", "-m0"}},
        {"orvex_render_text",
         {sample(), "-s320x240", "-x", "A lighthouse,\\n{at sea}", "--text-color=#ffd080",
          "--text-size=22", "--text-place=top-right"}},
        {"orvex_render_font",
         {sample(), "-s320x240", "-x", "A lighthouse,\\n{at sea}", "--text-color=#ffd080",
          "--text-size=22", "--text-place=right", "--font", plain_font}},
        {"orvex_render_flat", {sample(), "-s320x240", "--normals=flat", "-d0.6"}},
        {"orvex_render_bunny",
         {"/usr/share/glmark2/models/bunny.obj", "-s240x240", "-n", "smooth"}},
    };
#ifdef ORVEX_WITH_LIB3DS
    const std::string models = "/usr/share/glmark2/models/";
    all.insert(all.end(), {{"orvex_render_horse", {models + "horse.3ds", "-s240x240", "-a60"}},
                           {"orvex_render_cat", {models + "cat.3ds", "-s240x240"}},
                           {"orvex_render_asteroid", {models + "asteroid-high.3ds", "-s240x240"}},
                           {"orvex_render_cube", {models + "cube.3ds", "-s240x240"}},
                           {"orvex_render_lying_cat", {models + "cat.3ds", "-s240x240", "-uy"}}});
#endif
    return all;
}

INSTANTIATE_TEST_SUITE_P(Of, OrvexRenderPicture, testing::ValuesIn(rows()),
                         [](const testing::TestParamInfo<Row>& row) {
                             return std::string(row.param.golden);
                         });

TEST(OrvexRenderPicture, is_put_beside_the_caller_by_default) {
    const TempDir folder;
    EXPECT_EQ(run_render(folder.path(), {sample(), "-s33x17"}).code, 0);
    const std::optional<Picture> picture = read_picture(folder.file("lighthouse.jpg"));
    ASSERT_TRUE(picture.has_value());
    EXPECT_EQ(picture->width, 33);
    EXPECT_EQ(picture->height, 17);
}

TEST(OrvexRenderTurn, begins_at_the_azimuth_and_goes_around) {
    const std::vector<std::string> turn = {sample(), "-s160x120", "-t4", "-a30"};
    const Picture first = picture_of(turn, "a-001.jpg");
    const Picture third = picture_of(turn, "a-003.jpg");
    EXPECT_FALSE(is_near(first, third, {}));
    const std::vector<std::string> from_behind = {sample(), "-s160x120", "-t4", "-a210"};
    EXPECT_TRUE(is_near(picture_of(from_behind, "a-001.jpg"), third, {}));
}

TEST(OrvexRenderThumbnail, is_a_square_picture_without_a_background) {
    const TempDir folder;
    // File managers name files as they like, and tell programs as little as they can.
    const Outcome outcome =
        run_render(folder.path(), {"-q", "-o", "thumb", sample(), "--thumbnail", "48"}, {"HOME="});
    EXPECT_EQ(outcome.errors, "");
    ASSERT_EQ(outcome.code, 0);
    const std::optional<Picture> picture = read_picture(folder.file("thumb"));
    ASSERT_TRUE(picture.has_value());
    EXPECT_EQ(picture->width, 48);
    EXPECT_EQ(picture->height, 48);
    EXPECT_EQ(picture->at(0, 0)[3], 0);
    EXPECT_EQ(picture->at(24, 24)[3], 255);
}

TEST(OrvexRenderThumbnail, gives_way_to_what_is_said_beside_it) {
    const TempDir folder;
    const Outcome outcome = run_render(
        folder.path(), {sample(), "-q", "-s32x16", "-bwhite", "-oa.png", "--thumbnail=48"});
    ASSERT_EQ(outcome.code, 0) << outcome.errors;
    const std::optional<Picture> picture = read_picture(folder.file("a.png"));
    ASSERT_TRUE(picture.has_value());
    EXPECT_EQ(picture->width, 32);
    EXPECT_EQ(picture->at(0, 0)[0], 255);
}

TEST(OrvexRenderThumbnail, leaves_no_file_of_what_cant_be_seen_or_read) {
    const TempDir folder, models;
    models.write("point.obj", "v 0 0 0\nv 0 0 0\nv 0 0 0\nf 1 2 3\n");
    models.write("none.obj", "none");
    for (const char* const name : {"point.obj", "none.obj", "missing.obj"}) {
        const Outcome outcome =
            run_render(folder.path(), {models.file(name), "--thumbnail=16", "-oa.png"});
        EXPECT_EQ(outcome.code, 1);
        EXPECT_FALSE(has(outcome.errors, "wrote"));
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(OrvexRenderThumbnail, is_made_by_the_command_that_file_managers_are_told) {
    const TempDir folder;
    const std::string entry = content_of(ORVEX_RENDER_SOURCES "/orvex-render.thumbnailer");
    const std::size_t begin = entry.find("\nExec=orvex-render ");
    ASSERT_NE(begin, entry.npos);
    std::istringstream words(entry.substr(begin + 19, entry.find('\n', begin + 1) - begin - 19));
    std::vector<std::string> arguments;
    for (std::string word; words >> word;)
        arguments.push_back(word == "%s"   ? "16"
                            : word == "%o" ? folder.file("out")
                            : word == "%i" ? sample()
                                           : word);
    EXPECT_EQ(run_render("/", arguments).code, 0);
    EXPECT_TRUE(read_picture(folder.file("out")).has_value());
}

TEST(OrvexRenderBackground, has_its_color) {
    const Picture picture = picture_of({sample(), "-s64x48", "-b", "#2080c0"});
    const std::array<int, 3> wanted = {0x20, 0x80, 0xc0};
    for (std::size_t i = 0; i < wanted.size(); ++i)
        EXPECT_NEAR(picture.at(0, 0)[i], wanted[i], 4);
}

/// How many shades lie between a black model and white behind it.
int shades_at_edges(const char* samples) {
    const TempDir folder;
    folder.write("m.mtl", "newmtl black\nKd 0 0 0\n");
    const std::string model =
        folder.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 9 1 0\nv 5 8 0\nusemtl black\nf 1 2 3\n");
    const Picture picture =
        picture_of({model, "-s128x128", "-b", "white", "-a0", "-e0", "-m", samples});
    int between = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            between += picture.at(x, y)[1] > 90 && picture.at(x, y)[1] < 165;
    return between;
}

TEST(OrvexRenderSamples, smooth_edges) {
    // JPEG leaves some shades at any edge; four samples put far more there.
    EXPECT_GT(shades_at_edges("4"), 2 * shades_at_edges("0"));
}

TEST(OrvexRenderFont, is_another_one_from_a_file) {
    const std::vector<std::string> words = {sample(), "-s160x120", "-x", "Words", "--text-size=30"};
    std::vector<std::string> with_font = words;
    with_font.insert(with_font.end(), {"--font", plain_font});
    const Picture builtin = picture_of(words);
    EXPECT_FALSE(is_near(picture_of(with_font), builtin, {48, 0.02}));
    EXPECT_FALSE(is_near(picture_of({sample(), "-s160x120"}), builtin, {48, 0.02}));
}

TEST(OrvexRenderTransparency, shows_what_is_behind) {
    const TempDir folder;
    folder.write("m.mtl", "newmtl back\nKd 1 0 0\nnewmtl front\nKd 0 0 1\nd 0.5\n");
    const std::string model =
        folder.write("m.obj", "mtllib m.mtl\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\n"
                              "v -1 -1 1\nv 1 -1 1\nv 1 1 1\nv -1 1 1\n"
                              "usemtl front\nf 5 6 7 8\nusemtl back\nf 1 2 3 4\n");
    const Picture picture = picture_of({model, "-s64x64", "-a0", "-e0", "-b", "black"});
    const unsigned char* const middle = picture.at(32, 32);
    EXPECT_GT(middle[0], 40);
    EXPECT_GT(middle[2], 40);
}

#ifdef ORVEX_WITH_LIB3DS
TEST(OrvexRenderNormals, of_3ds_files_are_left_alone_when_asked_to) {
    const std::string horse = "/usr/share/glmark2/models/horse.3ds";
    const Picture from_file = picture_of({horse, "-s160x120", "--normals=file"});
    for (const char* other : {"--normals=smooth", "--normals=flat"})
        EXPECT_FALSE(is_near(from_file, picture_of({horse, "-s160x120", other}), {})) << other;
}
#endif

TEST(OrvexRenderNormals, are_made_up_where_the_file_has_bad_ones) {
    const TempDir folder;
    const std::string model =
        folder.write("m.obj", "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nvn 0 0 0\nf 1//1 2//1 3//1\n");
    const Picture picture = picture_of({model, "-s64x64", "-a0", "-e0", "-b", "black"});
    EXPECT_GT(picture.at(40, 36)[1], 60);
}

} // namespace

} // namespace orvex_test
