// Each program of the guide prints and draws what its page shows.

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/examples/example_picture.h"

namespace orvex_test {

namespace {

const std::string data = GUIDE_DATA;

std::string program(const std::string& page) {
    return GUIDE_PROGRAMS "guide_" + page;
}

struct Page {
    const char* name;
    std::string file; ///< of the data, before the picture's name; may be empty
};

void PrintTo(const Page& page, std::ostream* out) {
    *out << page.name;
}

class GuidePage : public testing::TestWithParam<Page> {};

TEST_P(GuidePage, draws_its_picture) {
    const Page& page = GetParam();
    expect_example_picture(program(page.name), page.file, std::string("guide_") + page.name);
}

INSTANTIATE_TEST_SUITE_P(
    of, GuidePage,
    testing::Values(Page{"first_triangle", ""}, Page{"first_model", data}, Page{"own_shader", ""},
                    Page{"textures_and_materials", data + "lighthouse_stone.png"},
                    Page{"render_targets", ""}, Page{"particles", ""}, Page{"text", data},
                    Page{"host_window", ""}, Page{"fast", ""},
                    Page{"first_picture", data + "lighthouse.obj"}),
    [](const auto& page) { return std::string(page.param.name); });

struct Tale {
    const char* name;
    std::string arguments; ///< before the picture's name
    const char* words;     ///< that the program prints
};

void PrintTo(const Tale& tale, std::ostream* out) {
    *out << tale.name;
}

class GuideTale : public testing::TestWithParam<Tale> {};

TEST_P(GuideTale, prints_its_words_and_draws_its_picture) {
    const Tale& tale = GetParam();
    const TempDir folder;
    // The kit writes it without a loss.
    const std::string file = folder.file("picture.png");
    EXPECT_EQ(output_of(program(tale.name) + " " + tale.arguments + " '" + file + "'"), tale.words);
    const std::optional<Picture> picture = read_picture(file);
    ASSERT_TRUE(picture.has_value());
    EXPECT_TRUE(compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR,
                                    std::string("guide_") + tale.name, *picture, false));
}

INSTANTIATE_TEST_SUITE_P(of, GuideTale,
                         testing::Values(Tale{"pictures_as_data", data,
                                              "in the middle: door, 20.6 away\n"},
                                         Tale{"models_and_looks", data,
                                              "12 meshes, 9 materials, 9082 faces\n"
                                              "at 240, 180: the door, face 36, 20.5 away\n"},
                                         Tale{"cameras", data,
                                              "all of it: 8.6 9.2 18.5\n"
                                              "around it: 16.0 9.6 13.9\n"
                                              "on the track: -7.8 7.1 12.2\n"},
                                         Tale{"text_on_pictures", "",
                                              "no glyph for U+706F\n"
                                              "no glyph for U+53F0\n"}),
                         [](const auto& tale) { return std::string(tale.param.name); });

TEST(GuidePages, on_the_black_screen_show_each_cause_of_the_engine) {
    // The compiler's words, and the log's, are on the other stream.
    EXPECT_EQ(output_of("(" + program("screen_stays_black") + " 2>/dev/null)"),
              "a program that doesn't compile\n"
              "a program of the other path: 0 with an error, mended 401\n"
              "a uniform that nobody set: 0, mended 401\n"
              "no viewport: 0, mended 401\n"
              "it looks elsewhere: 0, mended 401\n"
              "the far plane is too near: 0, mended 401\n"
              "the aspect of whole numbers: 0, mended 401\n"
              "an opening in radians: 1000, mended 401\n"
              "a left-handed projection: 0, mended 401\n"
              "a mesh that was never built: 0 with an error, mended 401\n"
              "it is hidden: 0, mended 401\n"
              "a scale of 0: 0, mended 401\n"
              "the depth cleared to 0: 0, mended 401\n"
              "blended, with an alpha of 0: 0, mended 401\n"
              "every side culled: 0, mended 401\n"
              "in the target: 401, in the window: 0\n"
              "a texture that nobody bound: 0, mended 401\n"
              "no context is current: 0, mended 401\n");
}

TEST(GuidePages, on_the_black_screen_tell_why_a_program_does_not_compile) {
    const std::string words = output_of("(" + program("screen_stays_black") + " 2>&1 >/dev/null)");
    EXPECT_NE(words.find("GPU program sphere - Vertex shader: "), std::string::npos) << words;
    EXPECT_NE(words.find("Vertex shader error: "), std::string::npos) << words;
    EXPECT_NE(words.find("orvex_Positoin"), std::string::npos) << words;
}

TEST(GuidePages, on_the_black_screen_show_each_cause_of_the_kit) {
    EXPECT_EQ(output_of(program("screen_stays_black_kit") + " '" + data + "'"),
              "the engine doesn't run: make a kit::Engine first\n"
              "a view of 0x48 pixels: sides go from 1\n"
              "none.obj: No such file or directory\n"
              "the far plane is too near: 0\n"
              "clip planes that fit: 30\n"
              "it looks elsewhere: 0\n"
              "a camera that sees all: 434\n"
              "added after the end: 0\n"
              "read before the end: 0, after it: 434\n"
              "there is no look 'gold'; there are lit, matcap, normals, plain, wire\n"
              "look: no [Vertex_Shader] with a [Pixel_Shader], and no [Compute_Shader]\n"
              "another uniform was set: 0\n"
              "the uniform was set: 434\n"
              "the engine has ended\n");
}

TEST(GuidePages, on_other_engines_tell_the_truth) {
    EXPECT_EQ(output_of(program("coming_from_another_engine")),
              "90 degrees about y take z to: (1, 0, 0)\n"
              "a new camera stands at: (0, 0, 10)\n"
              "and looks along: (0, 0, -1)\n"
              "a translation lies in m[12] to m[14]: 5 6 7\n"
              "move * turn turns first: (6, 6, 7)\n"
              "depth of the near plane -1, of the far one 1\n"
              "the scalar part of a quaternion comes last: 4\n"
              "a child at (0, 0, 1) of a turned parent stands at: (11, 0, 0)\n"
              "a sphere is counter-clockwise\n"
              "a quad is clockwise\n"
              "0.5, 0.25 and 1 are written as 128, 64 and 255\n"
              "(0, 1, 0) is seen above the middle, 10 before the eye\n"
              "the pose turns y to -1 and z to -1\n"
              "cx 320, cy 240\n");
}

TEST(GuidePages, on_threads_and_ownership_counts_references) {
    EXPECT_EQ(output_of(program("threads_and_ownership") + " '" + data + "'"),
              "4 textures uploaded\n"
              "new: 0\n"
              "a child: 1\n"
              "kept by the host: 2\n"
              "its parent gone: 1\n");
}

TEST(GuidePages, on_surprises_shows_them_in_numbers) {
    EXPECT_EQ(output_of(program("surprises")), "by the model: 2 times\n"
                                               "by its children: 1 time\n"
                                               "null reaches the node alone: the leaf is shown\n"
                                               "itself reaches the subtree: the leaf is hidden\n"
                                               "two steps of 30 degrees look up by 60\n");
}

TEST(GuidePages, on_the_first_picture_tell_what_fails) {
    EXPECT_EQ(output_of(program("first_picture") + " none.obj x.jpg"),
              "none.obj: No such file or directory\nexit 256");
    EXPECT_EQ(output_of(program("first_picture") + " '" + data + "lighthouse.obj' none/x.jpg"),
              "can't write none/x.jpg: No such file or directory\nexit 256");
}

TEST(GuidePages, tell_a_program_without_its_arguments_to_fail) {
    EXPECT_EQ(output_of(program("threads_and_ownership")), "exit 256");
    EXPECT_EQ(output_of(program("first_model")), "exit 256");
    EXPECT_EQ(output_of(program("textures_and_materials")), "exit 256");
    EXPECT_EQ(output_of(program("text")), "exit 256");
    EXPECT_EQ(output_of(program("pictures_as_data")), "exit 256");
    EXPECT_EQ(output_of(program("first_picture")), "first_picture model.obj picture.jpg\nexit 256");
    EXPECT_EQ(output_of(program("models_and_looks")), "exit 256");
    EXPECT_EQ(output_of(program("cameras")), "exit 256");
    EXPECT_EQ(output_of(program("screen_stays_black_kit")), "exit 256");
}

TEST(GuideC, its_program_prints_its_words_and_writes_its_files) {
    const TempDir folder;
    const std::string picture = folder.file("picture.png"), depth = folder.file("depth.npy");
    EXPECT_EQ(
        output_of(program("c") + " " + data + "lighthouse.obj '" + picture + "' '" + depth + "'"),
        "in the middle: mesh 7, 20.6 away\n");
    for (const std::string& file : {picture, depth})
        EXPECT_GT(std::filesystem::file_size(file), 1000u) << file;
}

} // namespace

} // namespace orvex_test
