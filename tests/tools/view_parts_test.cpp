// The small parts of orvex-view: options, keys, the eye, the clock of frames, names of pictures.

#include <filesystem>
#include <set>

#include <gtest/gtest.h>

#include "current_folder.h"
#include "eye.h"
#include "frame_clock.h"
#include "keys.h"
#include "options.h"
#include "picture_name.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using orvex_test::content_of;
using orvex_test::TempDir;
namespace kit = orvex::kit;
using Words = std::vector<std::string>;

TEST(ViewOptions, need_no_model) {
    Options options;
    EXPECT_EQ(read_options({}, options), "");
    EXPECT_EQ(options.model, "");
    EXPECT_EQ(options.size.width, 1280);
    EXPECT_EQ(options.layer, kit::Layer::color);
    EXPECT_FALSE(options.statistics || options.bare || options.wireframe);
}

TEST(ViewOptions, are_read_by_their_names) {
    Options options;
    EXPECT_EQ(read_options({"--size=80x60",   "-b",          "white",   "--statistics",
                            "--bare",         "--look=wire", "--layer", "depth",
                            "--azimuth=90",   "-e5",         "-u",      "-z",
                            "--loader=ObjIo", "--plugin",    "a.so",    "-w",
                            "--path=gl2",     "-n",          "flat",    "-m2",
                            "house.obj",      "-v"},
                           options),
              "");
    EXPECT_EQ(options.model, "house.obj");
    EXPECT_EQ(options.size.height, 60);
    EXPECT_EQ(options.background.g, 1.0f);
    EXPECT_TRUE(options.statistics && options.bare && options.wireframe && options.verbose);
    EXPECT_EQ(options.look, "wire");
    EXPECT_EQ(options.layer, kit::Layer::depth);
    EXPECT_EQ(options.azimuth, 90.0f);
    EXPECT_EQ(options.elevation, 5.0f);
    EXPECT_EQ(options.up, kit::UpAxis::minus_z);
    EXPECT_EQ(options.loader, "ObjIo");
    EXPECT_EQ(options.plugin, "a.so");
    EXPECT_FALSE(options.gl3);
    EXPECT_EQ(options.normals, kit::Normals::flat);
    EXPECT_EQ(options.samples, 2);
}

TEST(ViewOptions, tell_what_is_wrong) {
    struct Row {
        Words words;
        const char* mistake;
    };
    for (const Row& row : {
             Row{{"--layer", "colour"},
                 "--layer can't be 'colour': one of color, depth, normal, position, object, "
                 "material and face is wanted"},
             Row{{"--statistic"}, "unknown option '--statistic'; did you mean '--statistics'?"},
             Row{{"a.obj", "b.obj"}, "unexpected argument 'b.obj': one model is wanted"},
             Row{{"-q", "-v"}, "--quiet and --verbose exclude each other"},
             Row{{"--background", "transparent"},
                 "--background can't be 'transparent': #rgb, #rrggbb or one of black, white, gray, "
                 "red, green, blue, cyan, magenta, orange, yellow is wanted"},
         }) {
        Options options;
        EXPECT_EQ(read_options(row.words, options), row.mistake);
    }
}

TEST(Keys, do_what_the_help_says) {
    EXPECT_EQ(command_of(key_of('l'), false), Command::next_look);
    EXPECT_EQ(command_of(key_of('l'), true), Command::previous_look);
    EXPECT_EQ(command_of(Key::tab, false), Command::next_layer);
    EXPECT_EQ(command_of(Key::tab, true), Command::previous_layer);
    EXPECT_EQ(command_of(key_of('1'), false), Command::look_by_number);
    EXPECT_EQ(command_of(key_of('9'), true), Command::look_by_number);
    EXPECT_EQ(command_of(key_of('0'), false), Command::none);
    EXPECT_EQ(command_of(Key::escape, false), Command::end);
    EXPECT_EQ(command_of(key_of('q'), false), Command::end);
    EXPECT_EQ(command_of(Key::f1, false), Command::help);
    EXPECT_EQ(command_of(Key::left, false), Command::none);
    EXPECT_EQ(command_of(Key::none, false), Command::none);
}

TEST(Keys, are_all_in_the_help) {
    std::string all;
    for (const KeyLine& line : key_lines())
        all += std::string(", ") + line.keys + ", ";
    for (const char letter : std::string("abcdefghijklmnopqrstuvwxyz"))
        EXPECT_EQ(command_of(key_of(letter), false) != Command::none,
                  all.find(std::string(", ") + letter + ",") != all.npos)
            << letter;
}

constexpr kit::Screen screen{400, 300, 2.0};

TEST(Eye, turns_with_the_left_button_and_pans_with_the_others) {
    kit::Orbit turned, panned;
    turned.turn(12, -3);
    panned.pan(12, -3, screen);
    for (const Button button : {Button::left, Button::right, Button::middle}) {
        Eye eye;
        EXPECT_FALSE(eye.move_pointer(100, 100, screen));
        eye.press_button(button);
        EXPECT_TRUE(eye.move_pointer(112, 97, screen));
        eye.release_button(button);
        EXPECT_FALSE(eye.move_pointer(0, 0, screen));
        const kit::Orbit& wanted = button == Button::left ? turned : panned;
        EXPECT_EQ(eye.orbit.place().angle.azimuth, wanted.place().angle.azimuth);
        EXPECT_EQ(eye.orbit.place().angle.elevation, wanted.place().angle.elevation);
        EXPECT_EQ(eye.orbit.place().target.x, wanted.place().target.x);
    }
}

TEST(Eye, pans_with_the_left_button_while_shift_is_held) {
    Eye eye;
    eye.hold(Key::shift, true);
    eye.press_button(Button::left);
    eye.hold(Key::shift, false);
    eye.move_pointer(30, 0, screen);
    EXPECT_NE(eye.orbit.place().target.x, 0.0f);
    EXPECT_EQ(eye.orbit.place().angle.azimuth, kit::OrbitPlace().angle.azimuth);
}

TEST(Eye, goes_by_the_button_that_went_down_first) {
    Eye eye;
    eye.press_button(Button::left);
    eye.press_button(Button::right);
    eye.release_button(Button::right);
    eye.move_pointer(30, 0, screen);
    EXPECT_NE(eye.orbit.place().angle.azimuth, kit::OrbitPlace().angle.azimuth);
    eye.release_button(Button::left);
    EXPECT_FALSE(eye.move_pointer(60, 0, screen));
}

TEST(Eye, moves_while_a_key_is_held_that_no_other_takes_back) {
    Eye eye;
    EXPECT_FALSE(eye.is_moving());
    for (const Key key :
         {Key::left, Key::right, Key::up, Key::down, Key::page_up, Key::page_down}) {
        eye.hold(key, true);
        EXPECT_TRUE(eye.is_moving());
        EXPECT_TRUE(eye.advance(0.1));
        eye.hold(key, false);
        EXPECT_FALSE(eye.is_moving());
        EXPECT_FALSE(eye.advance(0.1));
    }
    eye.hold(Key::left, true);
    eye.hold(Key::right, true);
    EXPECT_FALSE(eye.is_moving());
    eye.hold(Key::right, false);
    eye.press_button(Button::left);
    eye.let_go();
    EXPECT_FALSE(eye.is_moving());
    EXPECT_FALSE(eye.move_pointer(50, 50, screen));
}

TEST(FrameClock, tells_means_of_half_a_second) {
    FrameClock clock;
    EXPECT_EQ(clock.milliseconds(), 0.0);
    clock.count(0.004, 10.0);
    EXPECT_NEAR(clock.milliseconds(), 4.0, 1e-9);
    EXPECT_EQ(clock.per_second(), 0.0);
    for (int i = 1; i <= 10; ++i)
        clock.count(i % 2 ? 0.001 : 0.003, 10.0 + i * 0.05);
    EXPECT_NEAR(clock.milliseconds(), 2.0, 1e-9);
    EXPECT_NEAR(clock.per_second(), 20.0, 1e-9);
    clock.count(0.5, 10.6);
    EXPECT_NEAR(clock.milliseconds(), 2.0, 1e-9);
    clock.reset();
    EXPECT_EQ(clock.per_second(), 0.0);
}

TEST(PictureName, is_that_of_the_model_with_the_first_number_that_is_free) {
    const TempDir folder;
    const CurrentFolder here(folder.path());
    EXPECT_EQ(free_picture_name("/models/light.house.obj"), "light.house-001.png");
    EXPECT_EQ(free_picture_name(""), "orvex-view-001.png");
    folder.write("cube-001.png", "");
    std::filesystem::create_symlink("nowhere", folder.file("cube-002.png"));
    EXPECT_EQ(free_picture_name("cube.3ds"), "cube-003.png");
    EXPECT_EQ(free_picture_name("cube"), "cube-003.png");
}

} // namespace

} // namespace orvex_test
