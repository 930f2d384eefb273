#include <array>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <sys/wait.h>

#include "support/picture.h"
#include "support/temp_dir.h"
#include "support/x_server.h"

namespace {

using orvex::test::TempDir;
using namespace orvex_test;

/// What a run of the example gave.
struct Outcome {
    int code = -1;
    std::string text; ///< both streams
};

std::string quoted(std::string const& word) {
    return "'" + word + "'";
}

Outcome call(std::vector<std::string> const& arguments) {
    std::string command = quoted(RENDER_MODEL);
    for (std::string const& argument : arguments)
        command += " " + quoted(argument);
    command += " 2>&1";
    Outcome result;
    std::FILE* const pipe = popen(command.c_str(), "r");
    if (!pipe)
        return result;
    std::array<char, 512> part;
    while (std::fgets(part.data(), static_cast<int>(part.size()), pipe))
        result.text += part.data();
    const int status = pclose(pipe);
    result.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

bool has(std::string const& text, std::string const& part) {
    return text.find(part) != std::string::npos;
}

std::string const lighthouse = RENDER_MODEL_DATA "/lighthouse.obj";

TEST(RenderModel, explains_itself) {
    const Outcome help = call({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_TRUE(has(help.text, "usage: render_model --model FILE"));
}

TEST(RenderModel, tells_what_is_wrong_with_its_arguments) {
    struct Row {
        std::vector<std::string> arguments;
        char const* message;
    };
    for (const Row& row : {
             Row{{}, "no model given"},
             Row{{"--model"}, "--model needs a value"},
             Row{{"--model", ""}, "--model can't be ''"},
             Row{{"--model", "m", "--shiny"}, "unknown option '--shiny'"},
             Row{{"m"}, "unknown option 'm'"},
             Row{{"--model", "m", "--size", "0x4"}, "--size can't be '0x4'"},
             Row{{"--model", "m", "--size", "4"}, "--size can't be '4'"},
             Row{{"--model", "m", "--size", "4x5x"}, "--size can't be '4x5x'"},
             Row{{"--model", "m", "--size", "-4x5"}, "--size can't be '-4x5'"},
             Row{{"--model", "m", "--size", "16385x5"}, "--size can't be '16385x5'"},
             Row{{"--model", "m", "--path", "gl4"}, "--path can't be 'gl4'"},
             Row{{"--model", "m", "--frames", "-1"}, "--frames can't be '-1'"},
             Row{{"--model", "m", "--frames", "two"}, "--frames can't be 'two'"},
             Row{{"--model", "m", "--frames", "0"}, "--frames 0 needs --x11"},
             Row{{"--model", "m", "--loads", "0"}, "--loads can't be '0'"},
         }) {
        const Outcome result = call(row.arguments);
        EXPECT_EQ(result.code, 2) << row.message;
        EXPECT_TRUE(has(result.text, row.message)) << row.message << "\n" << result.text;
        EXPECT_TRUE(has(result.text, "usage:")) << row.message;
    }
}

TEST(RenderModel, tells_why_a_model_cant_be_read) {
    const TempDir folder;
    struct Row {
        std::string model;
        char const* message;
    };
    for (const Row& row : {
             Row{folder.file("none.obj"), "none.obj: No such file or directory"},
             Row{folder.path(), ": is a directory"},
             Row{folder.write("empty.obj", ""), "empty.obj: the file is empty"},
             Row{folder.write("points.obj", "v 0 0 0\n"), "points.obj: no loader can read it"},
             Row{folder.write("junk.obj", std::string("\0\xff\xfe junk", 8)),
                 "junk.obj: no loader can read it"},
         }) {
        const Outcome result = call({"--model", row.model, "--output", folder.file("out.jpg")});
        EXPECT_EQ(result.code, 1) << row.message;
        EXPECT_TRUE(has(result.text, row.message)) << row.message << "\n" << result.text;
        EXPECT_FALSE(std::filesystem::exists(folder.file("out.jpg"))) << row.message;
    }
}

TEST(RenderModel, tells_that_a_picture_cant_be_written) {
    const TempDir folder;
    const std::string output = folder.path() + "/none/out.jpg";
    const Outcome result = call({"--model", lighthouse, "--size", "64x48", "--output", output});
    EXPECT_EQ(result.code, 1);
    EXPECT_TRUE(has(result.text, "can't write " + output)) << result.text;
}

TEST(RenderModel, draws_on_without_its_textures) {
    const TempDir folder;
    folder.write("m.mtl", "newmtl red\nKd 1 0 0\nmap_Kd none.png\n");
    const std::string model =
        folder.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl red\nf 1 2 3\n");
    const Outcome result = call({"--model", model, "--output", folder.file("out.jpg")});
    EXPECT_EQ(result.code, 0) << result.text;
    EXPECT_TRUE(has(result.text, "none.png) NOT loaded.")) << result.text;
    EXPECT_TRUE(has(result.text, "1 textures are missing or can't be read")) << result.text;
}

/// The picture of the sample on one path.
Picture picture_of_sample(TempDir const& folder, std::string const& path) {
    const std::string output = folder.file(path + ".jpg");
    const Outcome result =
        call({"--model", lighthouse, "--path", path, "--size", "320x240", "--output", output});
    EXPECT_EQ(result.code, 0) << result.text;
    const std::optional<Picture> picture = read_picture(output);
    EXPECT_TRUE(picture.has_value()) << output;
    return picture.value_or(Picture());
}

TEST(RenderModel, draws_the_sample_alike_on_both_paths) {
    const TempDir folder;
    const Picture gl2 = picture_of_sample(folder, "gl2");
    const Picture gl3 = picture_of_sample(folder, "gl3");
    EXPECT_TRUE(is_near(gl2, gl3, {}));
    EXPECT_TRUE(compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR,
                                    "render_model", gl3, false));
}

TEST(RenderModel, draws_the_same_after_many_loads_and_frames) {
    const TempDir folder;
    const Picture once = picture_of_sample(folder, "gl3");
    const std::string output = folder.file("often.jpg");
    const Outcome result = call({"--model", lighthouse, "--size", "320x240", "--loads", "5",
                                 "--frames", "3", "--output", output});
    EXPECT_EQ(result.code, 0) << result.text;
    const std::optional<Picture> often = read_picture(output);
    ASSERT_TRUE(often.has_value());
    EXPECT_TRUE(*often == once);
}

TEST(RenderModel, draws_the_same_in_an_x11_window) {
    ASSERT_FALSE(XServer::get().display().empty()) << "no X server";
    const TempDir folder;
    const Picture off_screen = picture_of_sample(folder, "gl3");
    const std::string output = folder.file("x11.jpg");
    const Outcome result = call(
        {"--model", lighthouse, "--size", "320x240", "--x11", "--frames", "2", "--output", output});
    EXPECT_EQ(result.code, 0) << result.text;
    const std::optional<Picture> picture = read_picture(output);
    ASSERT_TRUE(picture.has_value());
    EXPECT_TRUE(is_near(*picture, off_screen, {}));
}

} // namespace
