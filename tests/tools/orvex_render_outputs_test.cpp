// Where the pictures go: whole or not at all, and never over what they are made from.

#include <filesystem>

#include <gtest/gtest.h>

#include "program_run.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using orvex_test::content_of;
using orvex_test::TempDir;

std::size_t num_files(const TempDir& folder) {
    const auto files = std::filesystem::directory_iterator(folder.path());
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

/// Whether a file is a JPEG picture with its end.
bool is_whole(const std::string& file) {
    const std::string bytes = content_of(file);
    return bytes.starts_with("\xff\xd8") && bytes.ends_with("\xff\xd9");
}

TEST(OrvexRenderOutput, leaves_the_old_picture_where_there_is_no_room) {
    const TempDir folder;
    folder.write("keep.jpg", "old");
    const Outcome outcome =
        run_render_limited(folder.path(), "ulimit -f 8", {sample(), "-o", "keep.jpg"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(has(outcome.errors, "orvex-render: can't write keep.jpg: File too large\n"))
        << outcome.errors;
    EXPECT_EQ(content_of(folder.file("keep.jpg")), "old");
    EXPECT_EQ(num_files(folder), 1u);
}

TEST(OrvexRenderOutput, leaves_no_rests_of_a_turn_without_room) {
    const TempDir folder;
    const Outcome outcome = run_render_limited(folder.path(), "ulimit -f 8", {sample(), "-t3"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(
        has(outcome.errors, "orvex-render: can't write lighthouse-001.jpg: File too large\n"))
        << outcome.errors;
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(OrvexRenderOutput, tells_that_a_device_is_full) {
    const TempDir folder;
    std::filesystem::create_symlink("/dev/full", folder.file("a.jpg"));
    const Outcome outcome = run_render(folder.path(), {sample(), "-s16x16", "-oa.jpg"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors, "orvex-render: can't write a.jpg: No space left on device\n");
}

TEST(OrvexRenderOutput, keeps_the_pictures_of_a_turn_that_came_before_a_full_disk) {
    const TempDir folder;
    std::filesystem::create_symlink("/dev/full", folder.file("a-002.jpg"));
    const Outcome outcome = run_render(folder.path(), {sample(), "-s16x16", "-t3", "-oa.jpg"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(
        has(outcome.errors, "orvex-render: can't write a-002.jpg: No space left on device\n"))
        << outcome.errors;
    EXPECT_FALSE(has(outcome.errors, "wrote")) << outcome.errors;
    EXPECT_TRUE(is_whole(folder.file("a-001.jpg")));
    EXPECT_EQ(num_files(folder), 2u);
}

TEST(OrvexRenderOutput, is_whole_whenever_a_turn_is_ended) {
    for (const char* const signal : {"INT", "TERM", "HUP", "KILL"}) {
        const TempDir folder;
        // The shell becomes the program, under its number.
        const std::string killer =
            std::string("(until [ -e a-0003.jpg ]; do sleep 0.01; done; kill -") + signal +
            " $$) & true";
        const Outcome outcome =
            run_render_limited(folder.path(), killer, {sample(), "-s64x64", "-t9999", "-oa.jpg"});
        EXPECT_EQ(outcome.code, -1) << signal;
        EXPECT_FALSE(has(outcome.errors, "wrote")) << outcome.errors;
        EXPECT_GE(num_files(folder), 3u);
        for (const auto& file : std::filesystem::directory_iterator(folder.path()))
            // Between two steps of the end of a file nothing can be done about this one.
            if (std::string(signal) != "KILL" || file.path().extension() == ".jpg")
                EXPECT_TRUE(is_whole(file.path())) << signal << " " << file.path();
    }
}

/// A model in the current folder with a texture and a material library, all of which look like
/// pictures by their names.
class OrvexRenderInput : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(run_render(folder.path(), {sample(), "-q", "-s16x16", "-ohouse.jpg"}).code, 0);
        texture = content_of(folder.file("house.jpg"));
        folder.write("stuff.jpg", "newmtl red\nKd 1 0 0\nmap_Kd house.jpg\n");
        model = "mtllib stuff.jpg\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl red\nf 1 2 3\n";
        folder.write("house.obj", model);
        folder.write("model.jpg", model);
    }

    void expect_inputs_untouched() const {
        EXPECT_EQ(content_of(folder.file("house.jpg")), texture);
        EXPECT_EQ(content_of(folder.file("house.obj")), model);
        EXPECT_EQ(content_of(folder.file("model.jpg")), model);
    }

    TempDir folder;
    std::string texture;
    std::string model;
};

TEST_F(OrvexRenderInput, stays_when_the_picture_would_bear_its_name) {
    const Outcome one = run_render(folder.path(), {"house.obj", "-s16x16"});
    EXPECT_EQ(one.code, 0);
    EXPECT_EQ(one.errors, "wrote house-render.jpg\n");
    const Outcome itself = run_render(folder.path(), {"model.jpg", "-s16x16"});
    EXPECT_EQ(itself.errors, "wrote model-render.jpg\n");
    expect_inputs_untouched();
    // Even in the place where a texture is missing.
    std::filesystem::remove(folder.file("house.jpg"));
    EXPECT_TRUE(has(run_render(folder.path(), {"house.obj", "-s16x16"}).errors,
                    "wrote house-render.jpg\n"));
    EXPECT_FALSE(std::filesystem::exists(folder.file("house.jpg")));
}

TEST_F(OrvexRenderInput, is_refused_as_the_place_of_the_picture) {
    std::filesystem::create_symlink("house.jpg", folder.file("link.jpg"));
    std::filesystem::create_hard_link(folder.file("house.jpg"), folder.file("hard.jpg"));
    const std::size_t before = num_files(folder);
    struct Row {
        const char* model;
        const char* output;
    };
    for (const Row& row : {Row{"model.jpg", "model.jpg"}, Row{"model.jpg", "./model.jpg"},
                           Row{"house.obj", "house.jpg"}, Row{"house.obj", "link.jpg"},
                           Row{"house.obj", "hard.jpg"}, Row{"house.obj", "stuff.jpg"}}) {
        const Outcome outcome = run_render(folder.path(), {row.model, "-s16x16", "-o", row.output});
        EXPECT_EQ(outcome.code, 1) << row.output;
        EXPECT_EQ(outcome.errors, std::string("orvex-render: can't write ") + row.output +
                                      ": the picture is made from it\n");
    }
    expect_inputs_untouched();
    EXPECT_EQ(num_files(folder), before);
}

TEST_F(OrvexRenderInput, is_refused_as_a_picture_of_a_turn) {
    std::filesystem::rename(folder.file("house.jpg"), folder.file("a-002.jpg"));
    folder.write("stuff.jpg", "newmtl red\nKd 1 0 0\nmap_Kd a-002.jpg\n");
    const std::size_t before = num_files(folder);
    const Outcome outcome =
        run_render(folder.path(), {"house.obj", "-s16x16", "-t3", "-o", "a.jpg"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors, "orvex-render: can't write a-002.jpg: the picture is made from it\n");
    EXPECT_EQ(content_of(folder.file("a-002.jpg")), texture);
    EXPECT_EQ(num_files(folder), before);
}

TEST_F(OrvexRenderInput, may_be_a_fonts_sheet) {
    folder.write("f.xml", "<font><common lineHeight=\"9\" scaleW=\"16\" scaleH=\"16\"/><pages>"
                          "<page id=\"0\" file=\"house.jpg\"/></pages></font>");
    const Outcome outcome = run_render(
        folder.path(), {sample(), "-s16x16", "-x", "text", "--font", "f.xml", "-ohouse.jpg"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(has(outcome.errors, "can't write house.jpg: the picture is made from it\n"))
        << outcome.errors;
    expect_inputs_untouched();
}

} // namespace

} // namespace orvex_test
