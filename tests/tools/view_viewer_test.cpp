// The viewer without its window: what somebody does, what becomes of it, and what is drawn.

#include <algorithm>
#include <filesystem>
#include <memory>
#include <random>

#include <gtest/gtest.h>

#include <unistd.h>

#include "current_folder.h"
#include "messages.h"
#include "orvex_kit/compare.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/files.h"
#include "orvex_kit/look.h"
#include "tests/orvex_kit/sample_models.h"
#include "tests/orvex_kit/view_frame.h"
#include "viewer.h"

namespace orvex_test {

namespace {

namespace kit = orvex::kit;

const std::string lighthouse = ORVEX_EXAMPLE_DATA "/lighthouse.obj";

class ViewerTest : public testing::TestWithParam<kit::Path> {
protected:
    static constexpr int width = 160;
    static constexpr int height = 120;

    TempDir folder;
    kit::Engine engine;
    kit::View view{width, height, {GetParam()}};
    Options options;
    std::unique_ptr<Viewer> viewer;

    void SetUp() override {
        set_wordiness(Wordiness::quiet);
        ASSERT_EQ(view.reason(), "");
        options.bare = true;
    }
    void TearDown() override { set_wordiness(Wordiness::normal); }

    void open(const std::string& model) {
        options.model = model;
        viewer = std::make_unique<Viewer>(options);
        ASSERT_EQ(viewer->open(), "");
        viewer->resize({width, height, 1.0}, 1.0f);
    }
    void press(Key key, bool with_shift = false) {
        if (with_shift)
            viewer->press(Key::shift);
        viewer->press(key);
        viewer->release(key);
        viewer->release(Key::shift);
    }
    void press(char letter, bool with_shift = false) { press(key_of(letter), with_shift); }
    /// A frame, and what stands on the surface then.
    kit::Picture draw() {
        viewer->draw(view);
        return picture_of(view);
    }
    /// What a view of its own draws of the model that the viewer has.
    kit::Picture expected(const std::string& look = "lit") {
        kit::View own(width, height, {GetParam()});
        EXPECT_EQ(own.set_look(kit::Look::named(look)).reason(), "");
        kit::Model model(options.model);
        kit::Orbit orbit(model.extent(), {options.azimuth, options.elevation, model.up_axis()});
        kit::Camera camera = orbit.camera({width, height, 1.0});
        camera.set_clip(viewer->camera().near(), viewer->camera().far());
        own.begin(camera);
        own.add(model, orbit.place().angle);
        own.end();
        return picture_of(own);
    }
    /// Looks until a change has settled.
    void look_twice() {
        viewer->look_at_files();
        viewer->look_at_files();
    }
    /// As the next thing that somebody does.
    void pass_over_notice() { viewer->drop({}); }
    std::string notice() const { return viewer->words().notice; }
};
INSTANTIATE_TEST_SUITE_P(on, ViewerTest, testing::Values(kit::Path::gl3, kit::Path::gl2),
                         path_name);

int pixels_unlike(const kit::Picture& a, const kit::Picture& b) {
    return static_cast<int>(kit::compare(a, b).differing);
}

TEST_P(ViewerTest, draws_what_a_view_draws_in_every_look) {
    open(lighthouse);
    EXPECT_EQ(kit::compare(draw(), expected()).reason, "");
    for (std::size_t i = 1; i < kit::Look::names().size(); ++i) {
        press('l');
        EXPECT_EQ(viewer->look(), kit::Look::names()[i]);
        EXPECT_EQ(kit::compare(draw(), expected(viewer->look())).reason, "") << viewer->look();
    }
    press('l');
    EXPECT_EQ(viewer->look(), "lit");
    press('l', true);
    EXPECT_EQ(viewer->look(), "wire");
    press('2');
    EXPECT_EQ(viewer->look(), "matcap");
    EXPECT_EQ(kit::compare(draw(), expected("matcap")).reason, "");
    press('9');
    EXPECT_EQ(viewer->look(), "matcap");
    EXPECT_EQ(notice(), "there is no look 9: they go to 5");
    EXPECT_TRUE(viewer->words().is_notice_bad);
    press('t');
    EXPECT_EQ(notice(), "");
}

TEST_P(ViewerTest, shows_every_layer_in_colours_of_its_own) {
    open(lighthouse);
    const kit::Picture color = draw();
    std::vector<kit::Picture> seen = {color};
    for (const char* const name : {"depth", "normal", "position", "object", "material", "face"}) {
        press(Key::tab);
        EXPECT_STREQ(kit::name_of(viewer->layer()), name);
        const kit::Picture picture = draw();
        EXPECT_EQ(notice(), "");
        EXPECT_EQ(pixel_at(picture, 0, 0), pixel_at(color, 0, 0));
        for (const kit::Picture& other : seen)
            EXPECT_GT(pixels_unlike(picture, other), 200) << name;
        seen.push_back(picture);
    }
    press(Key::tab);
    EXPECT_EQ(kit::compare(draw(), color).reason, "");
    press(Key::tab, true);
    EXPECT_EQ(viewer->layer(), kit::Layer::face);
    EXPECT_EQ(kit::compare(draw(), seen.back()).reason, "");
}

TEST_P(ViewerTest, shows_a_layer_pixel_by_pixel_the_right_way_up) {
    // A square that is higher than wide, seen from the front: red below, white above.
    open(folder.write("m.obj", "v -1 -3 0\nv 1 -3 0\nv 1 0 0\nv -1 0 0\nv 1 3 0\nv -1 3 0\n"
                               "f 1 2 3 4\nf 4 3 5 6\n"));
    options.azimuth = options.elevation = 0.0f;
    open(options.model);
    while (viewer->layer() != kit::Layer::position)
        press(Key::tab);
    const kit::Picture picture = draw();
    EXPECT_LT(pixel_at(picture, width / 2, height * 3 / 4)[1], 100);
    EXPECT_GT(pixel_at(picture, width / 2, height / 4)[1], 150);
    viewer->resize({80, 200, 1.0}, 1.0f);
    ASSERT_EQ(view.resize(80, 200).reason(), "");
    const kit::Picture higher = draw();
    EXPECT_EQ(higher.height(), 200);
    EXPECT_GT(pixel_at(higher, 40, 90)[1], pixel_at(higher, 40, 110)[1]);
}

TEST_P(ViewerTest, turns_and_comes_nearer_and_goes_home_again) {
    open(write_box(folder));
    const kit::Picture first = draw();
    viewer->move_pointer(20, 20);
    EXPECT_FALSE(viewer->needs_frame());
    viewer->press_button(Button::left);
    viewer->move_pointer(90, 40);
    viewer->release_button(Button::left);
    EXPECT_TRUE(viewer->needs_frame());
    const kit::Picture turned = draw();
    EXPECT_GT(pixels_unlike(first, turned), 200);
    viewer->turn_wheel(3);
    EXPECT_GT(pixels_unlike(turned, draw()), 200);
    press(Key::home);
    EXPECT_EQ(kit::compare(draw(), first).reason, "");
    viewer->press(Key::left);
    EXPECT_TRUE(viewer->is_moving());
    viewer->advance(0.5);
    viewer->let_go();
    EXPECT_FALSE(viewer->is_moving());
    EXPECT_GT(pixels_unlike(first, draw()), 200);
}

TEST_P(ViewerTest, turns_every_axis_up_and_begins_again) {
    open(lighthouse);
    const kit::Picture first = draw();
    EXPECT_EQ(viewer->up_axis(), kit::UpAxis::y);
    for (const kit::UpAxis axis : {kit::UpAxis::z, kit::UpAxis::minus_x, kit::UpAxis::minus_y,
                                   kit::UpAxis::minus_z, kit::UpAxis::x}) {
        press('u');
        EXPECT_EQ(viewer->up_axis(), axis);
        EXPECT_GT(pixels_unlike(draw(), first), 200);
    }
    press('u');
    EXPECT_EQ(kit::compare(draw(), first).reason, "");
}

TEST_P(ViewerTest, cuts_nothing_off_of_a_large_model) {
    // More points than are looked at for each frame.
    open(write_ball(folder, 480));
    ASSERT_GT(viewer->model().extent().points.size(), 100'000u);
    viewer->move_pointer(0, 0);
    viewer->press_button(Button::left);
    for (const double x : {40.0, 150.0, 290.0}) {
        viewer->move_pointer(x, x / 3);
        const kit::Camera seen = viewer->camera();
        kit::Camera tight = seen;
        kit::fit_clip(tight, viewer->model().extent());
        EXPECT_LE(seen.near(), tight.near());
        EXPECT_GE(seen.far(), tight.far());
        EXPECT_GT(seen.near(), tight.near() / 2);
    }
}

TEST_P(ViewerTest, draws_edges_alone_and_faces_again) {
    open(lighthouse);
    const kit::Picture filled = draw();
    press('w');
    EXPECT_TRUE(viewer->is_wireframe());
    EXPECT_GT(pixels_unlike(draw(), filled), 200);
    press('w');
    EXPECT_EQ(kit::compare(draw(), filled).reason, "");
}

TEST_P(ViewerTest, writes_texts_over_the_model_and_takes_them_away) {
    options.bare = false;
    open(lighthouse);
    EXPECT_EQ(notice(), "h shows the keys");
    pass_over_notice();
    EXPECT_EQ(viewer->words().title, "lighthouse.obj\nlit");
    const kit::Picture with_text = draw();
    press('t');
    EXPECT_EQ(viewer->words(), Words());
    EXPECT_EQ(kit::compare(draw(), expected()).reason, "");
    press('t');
    EXPECT_EQ(kit::compare(draw(), with_text).reason, "");
    press(Key::tab);
    press('w');
    draw();
    EXPECT_EQ(viewer->words().title.substr(0, 22), "lighthouse.obj\ndepth: ");
    EXPECT_NE(viewer->words().title.find(", edges alone"), std::string::npos);
    viewer->resize({width, height, 2.0}, 2.0f);
    EXPECT_GT(pixels_unlike(draw(), with_text), 200);
}

TEST_P(ViewerTest, shows_the_keys_on_a_shade) {
    open(lighthouse);
    const kit::Picture plain = draw();
    press('h');
    EXPECT_TRUE(viewer->words().has_help);
    const kit::Picture help = draw();
    EXPECT_GT(pixels_unlike(help, plain), width * height / 4);
    EXPECT_EQ(pixel_at(help, 0, 0), pixel_at(plain, 0, 0));
    press(Key::f1);
    EXPECT_EQ(kit::compare(draw(), plain).reason, "");
}

/// Where pixels lie.
struct Box {
    int left = 9999, top = 9999, right = -1, bottom = -1;

    void take(int x, int y) {
        left = std::min(left, x);
        top = std::min(top, y);
        right = std::max(right, x);
        bottom = std::max(bottom, y);
    }
};

TEST_P(ViewerTest, keeps_long_texts_between_the_sides_of_the_window) {
    open(lighthouse);
    const kit::Picture plain = draw();
    options.bare = false;
    open(lighthouse);
    viewer->drop({"/a folder/with a name/that is longer/than the window/is wide.obj"});
    ASSERT_GT(notice().size(), 60u);
    const kit::Picture with_text = draw();
    Box changed;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (pixel_at(with_text, x, y) != pixel_at(plain, x, y))
                changed.take(x, y);
    // A margin of 12 pixels, and the shadow, which is shifted by one.
    EXPECT_GE(changed.left, 11);
    EXPECT_LE(changed.right, width - 12 + 2);
}

TEST_P(ViewerTest, leaves_as_much_shade_on_all_sides_of_the_keys) {
    open(lighthouse);
    kit::View large(1280, 960, {GetParam()});
    viewer->resize({large.width(), large.height(), 1.0}, 1.0f);
    viewer->draw(large);
    const kit::Picture plain = picture_of(large);
    press('h');
    viewer->draw(large);
    const kit::Picture help = picture_of(large);
    Box shade, letters;
    for (int y = 0; y < help.height(); ++y)
        for (int x = 0; x < help.width(); ++x) {
            if (pixel_at(help, x, y) == pixel_at(plain, x, y))
                continue;
            shade.take(x, y);
            if (pixel_at(help, x, y)[0] > pixel_at(plain, x, y)[0])
                letters.take(x, y);
        }
    // Two margins of 12 pixels, but for what letters leave of their room.
    EXPECT_NEAR(letters.left - shade.left, 24, 2);
    EXPECT_NEAR(shade.right - letters.right, 24, 2);
    EXPECT_NEAR(letters.top - shade.top, 24, 6);
    EXPECT_NEAR(shade.bottom - letters.bottom, 24, 6);
    EXPECT_NEAR(shade.left + shade.right, help.width() - 1, 1);
    EXPECT_NEAR(shade.top + shade.bottom, help.height() - 1, 1);
}

TEST_P(ViewerTest, tells_how_long_frames_take) {
    open(lighthouse);
    viewer->count_frame(0.1, 1.0);
    press('s');
    EXPECT_TRUE(viewer->is_measuring());
    viewer->count_frame(0.002, 10.0);
    viewer->count_frame(0.002, 10.5);
    EXPECT_EQ(viewer->words().statistics, "2.00 ms a frame, 2.0 frames a second\n" +
                                              std::to_string(viewer->model().num_faces()) +
                                              " faces, 160x120");
    draw();
    EXPECT_TRUE(viewer->needs_frame());
    press('s');
    draw();
    EXPECT_FALSE(viewer->needs_frame());
    EXPECT_EQ(viewer->words().statistics, "");
}

TEST_P(ViewerTest, begins_without_a_model_and_shows_one_that_is_dropped) {
    options.bare = false;
    open("");
    EXPECT_EQ(viewer->words().middle, "drop a model here\n\nh shows the keys");
    EXPECT_EQ(viewer->window_title(), "orvex-view");
    const kit::Picture empty = draw();
    for (const char key : {'u', 'r', 'w', 'l', 's'})
        press(key);
    press(Key::tab);
    press(Key::home);
    draw();
    EXPECT_EQ(notice(), "");
    viewer->drop({write_box(folder)});
    EXPECT_EQ(viewer->words().middle, "");
    EXPECT_EQ(viewer->window_title(), "box.obj - orvex-view");
    EXPECT_TRUE(viewer->needs_frame());
    EXPECT_GT(pixels_unlike(draw(), empty), 200);
    EXPECT_EQ(viewer->model().num_faces(), 12u);
}

TEST_P(ViewerTest, keeps_its_model_when_what_is_dropped_cant_be_read) {
    open(write_box(folder));
    const kit::Picture before = draw();
    const std::string bad = folder.write("bad.obj", "no model at all");
    for (const auto& [path, reason] :
         {std::pair{std::string("/none.obj"), std::string("/none.obj: No such file or directory")},
          std::pair{bad, kit::Model(bad).reason()},
          std::pair{folder.path(), kit::mistake_in_reading(folder.path())}}) {
        viewer->drop({path});
        EXPECT_EQ(notice(), reason);
        EXPECT_TRUE(viewer->words().is_notice_bad);
        EXPECT_NE(reason, "");
        draw();
    }
    EXPECT_EQ(viewer->window_title(), "box.obj - orvex-view");
    viewer->drop({});
    EXPECT_EQ(notice(), "");
    EXPECT_EQ(kit::compare(draw(), before).reason, "");
}

TEST_P(ViewerTest, tells_what_a_dropped_model_lacks) {
    open("");
    folder.write("m.mtl", "newmtl a\nmap_Kd none.png\n");
    viewer->drop({folder.write("m.obj", "mtllib m.mtl\nusemtl a\nv 0 0 0\nv 1 0 0\nv 0 1 0\n"
                                        "f 1 2 3\n")});
    EXPECT_EQ(notice().substr(0, 17), "texture none.png:");
    EXPECT_TRUE(viewer->model());
}

TEST_P(ViewerTest, reads_a_model_again_that_was_written_anew) {
    open(write_box(folder));
    viewer->turn_wheel(2);
    const kit::Picture before = draw();
    const kit::OrbitPlace place = kit::Orbit(viewer->model().extent()).place();
    EXPECT_FALSE(viewer->needs_frame());
    look_twice();
    EXPECT_FALSE(viewer->needs_frame());
    EXPECT_EQ(place.distance, kit::Orbit(viewer->model().extent()).place().distance);
    // As editors do: the new file takes the name.
    const std::string text = content_of(options.model);
    folder.write("new", text.substr(0, text.rfind("f ")));
    std::filesystem::rename(folder.file("new"), options.model);
    look_twice();
    EXPECT_TRUE(viewer->needs_frame());
    EXPECT_EQ(viewer->model().num_faces(), 10u);
    EXPECT_EQ(notice(), "box.obj is read again");
    // In place.
    folder.write("box.obj", text);
    look_twice();
    EXPECT_EQ(viewer->model().num_faces(), 12u);
    pass_over_notice();
    EXPECT_EQ(kit::compare(draw(), before).reason, "");
}

TEST_P(ViewerTest, keeps_the_picture_while_its_file_is_written) {
    open(write_box(folder));
    const std::string text = content_of(options.model);
    for (const std::string& part : {std::string(), text.substr(0, 30), std::string("v 1 2")}) {
        folder.write("box.obj", part);
        look_twice();
        EXPECT_EQ(viewer->model().num_faces(), 12u) << part;
        EXPECT_EQ(notice().substr(0, 15), "not read again:") << notice();
        EXPECT_TRUE(viewer->words().is_notice_bad);
    }
    std::filesystem::remove(options.model);
    look_twice();
    EXPECT_EQ(notice(), "not read again: " + options.model + ": No such file or directory");
    press('r');
    EXPECT_EQ(viewer->model().num_faces(), 12u);
    EXPECT_EQ(notice().substr(0, 15), "not read again:");
    folder.write("box.obj", text);
    look_twice();
    EXPECT_EQ(notice(), "box.obj is read again");
    press('r');
    EXPECT_EQ(notice(), "box.obj is read again");
}

TEST_P(ViewerTest, takes_up_materials_and_textures_that_change_and_keeps_what_is_broken) {
    const std::string picture = content_of(ORVEX_EXAMPLE_DATA "/lighthouse_wood.png");
    folder.write("m.png", picture);
    folder.write("m.mtl", "newmtl a\nKd 1 1 1\nmap_Kd m.png\n");
    options.azimuth = options.elevation = 0.0f;
    open(folder.write("m.obj", "mtllib m.mtl\nusemtl a\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\n"
                               "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nf 1/1 2/2 3/3 4/4\n"));
    const kit::Picture wood = draw();
    folder.write("m.png", picture.substr(0, picture.size() / 2));
    look_twice();
    EXPECT_EQ(notice().substr(0, 30), "not read again: texture m.png:");
    pass_over_notice();
    EXPECT_EQ(kit::compare(draw(), wood).reason, "");
    folder.write("m.png", content_of(ORVEX_EXAMPLE_DATA "/lighthouse_stripes.png"));
    look_twice();
    EXPECT_EQ(notice(), "m.obj is read again");
    const kit::Picture stripes = draw();
    EXPECT_GT(pixels_unlike(stripes, wood), 200);
    folder.write("m.mtl", "newmtl a\nKd 0 0 1\n");
    look_twice();
    const kit::Picture blue = draw();
    EXPECT_GT(pixels_unlike(blue, stripes), 200);
    EXPECT_GT(pixel_at(blue, width / 2, height / 2)[2], pixel_at(blue, width / 2, height / 2)[0]);
}

const char* const red_look = "[Vertex_Shader]\n"
                             "uniform mat4 orvex_ModelViewProjectionMatrix;\n"
                             "void main() { gl_Position = orvex_ModelViewProjectionMatrix * "
                             "POSITION; }\n"
                             "[Pixel_Shader]\n"
                             "void main() { COLOR = vec4(1.0, 0.0, 0.0, 1.0); }\n";

TEST_P(ViewerTest, draws_by_a_file_of_a_look_and_takes_up_its_changes) {
    options.look = folder.write("red.glsl", red_look);
    open(write_box(folder));
    EXPECT_EQ(viewer->look(), options.look);
    const kit::Picture red = draw();
    EXPECT_EQ(pixel_at(red, width / 2, height / 2), (Pixel{255, 0, 0, 255}));
    folder.write("red.glsl", std::string(red_look) + "broken");
    look_twice();
    draw();
    EXPECT_NE(notice().find("red.glsl:"), std::string::npos) << notice();
    pass_over_notice();
    EXPECT_EQ(kit::compare(draw(), red).reason, "");
    std::string green = red_look;
    green.replace(green.find("1.0, 0.0, 0.0"), 13, "0.0, 1.0, 0.0");
    folder.write("red.glsl", green);
    look_twice();
    EXPECT_EQ(notice(), options.look + " is read again");
    pass_over_notice();
    EXPECT_EQ(pixel_at(draw(), width / 2, height / 2), (Pixel{0, 255, 0, 255}));
    EXPECT_EQ(notice(), "");
    press('1');
    EXPECT_EQ(viewer->look(), "lit");
    EXPECT_EQ(kit::compare(draw(), expected()).reason, "");
    press('6');
    EXPECT_EQ(viewer->look(), options.look);
}

TEST_P(ViewerTest, takes_a_look_that_is_dropped) {
    open(write_box(folder));
    draw();
    viewer->drop({folder.write("red.glsl", red_look)});
    EXPECT_EQ(pixel_at(draw(), width / 2, height / 2), (Pixel{255, 0, 0, 255}));
    EXPECT_TRUE(viewer->model());
    viewer->drop({"/none.glsl"});
    EXPECT_NE(notice().find("/none.glsl"), std::string::npos);
    pass_over_notice();
    EXPECT_EQ(pixel_at(draw(), width / 2, height / 2), (Pixel{255, 0, 0, 255}));
}

TEST_P(ViewerTest, writes_the_picture_without_texts_to_a_file_of_its_own) {
    const CurrentFolder here(folder.path());
    options.bare = false;
    open(write_box(folder));
    folder.write("box-001.png", "somebody's");
    press('s');
    press('p');
    draw();
    EXPECT_EQ(notice(), "wrote box-002.png");
    EXPECT_EQ(content_of(folder.file("box-001.png")), "somebody's");
    kit::Picture written, wanted;
    ASSERT_EQ(kit::read_picture(folder.file("box-002.png"), written).reason(), "");
    ASSERT_EQ(wanted.take_channels(expected(), 3).reason(), "");
    EXPECT_EQ(kit::compare(written, wanted).reason, "");
    press(Key::tab);
    press('t');
    press('s');
    press('p');
    const kit::Picture depth = draw();
    ASSERT_EQ(kit::read_picture(folder.file("box-003.png"), written).reason(), "");
    EXPECT_GT(pixels_unlike(written, wanted), 200);
    EXPECT_EQ(pixel_at(depth, width / 2, height / 2)[0],
              int(written.row<std::uint8_t>(height / 2)[3 * (width / 2)]));
    draw();
    EXPECT_FALSE(std::filesystem::exists(folder.file("box-004.png")));
}

TEST_P(ViewerTest, tells_why_a_picture_cant_be_written) {
    open(write_box(folder));
    {
        const TempDir removed;
        const CurrentFolder here(removed.path());
        std::filesystem::remove(removed.path());
        press('p');
        draw();
        EXPECT_NE(notice().find("box-001.png"), std::string::npos);
        EXPECT_NE(notice().find("No such file or directory"), std::string::npos);
        EXPECT_TRUE(viewer->words().is_notice_bad);
    }
}

TEST_P(ViewerTest, draws_nothing_anew_while_nothing_changes) {
    open(lighthouse);
    EXPECT_TRUE(viewer->needs_frame());
    draw();
    for (int i = 0; i < 5; ++i) {
        viewer->look_at_files();
        viewer->move_pointer(i, i);
        viewer->press(key_of('x'));
        viewer->release(key_of('x'));
        viewer->advance(0.1);
        EXPECT_FALSE(viewer->needs_frame());
    }
    viewer->refresh();
    EXPECT_TRUE(viewer->needs_frame());
}

/// One of all things that somebody can do.
void do_anything(Viewer& viewer, std::mt19937& random, const std::vector<std::string>& files) {
    static const std::vector<Key> keys = {
        key_of('l'), key_of('w'), key_of('u'), key_of('t'), key_of('s'),  key_of('r'),
        key_of('h'), key_of('1'), key_of('5'), key_of('9'), Key::tab,     Key::home,
        Key::left,   Key::right,  Key::up,     Key::down,   Key::page_up, Key::page_down,
        Key::shift,  Key::f1,     key_of('x')};
    const auto one_of = [&](const auto& things) { return things[random() % things.size()]; };
    const double x = random() % 200, y = random() % 200;
    switch (random() % 8) {
    case 0:
        viewer.move_pointer(x, y);
        viewer.press_button(static_cast<Button>(random() % 3));
        break;
    case 1:
        viewer.move_pointer(x, y);
        viewer.release_button(static_cast<Button>(random() % 3));
        break;
    case 2:
        viewer.turn_wheel(double(random() % 9) - 4);
        break;
    case 3:
        viewer.drop({one_of(files)});
        break;
    case 4:
        viewer.advance(0.1);
        viewer.look_at_files();
        break;
    default:
        const Key key = one_of(keys);
        viewer.press(key);
        if (random() % 4 > 0)
            viewer.release(key);
    }
}

TEST_P(ViewerTest, is_itself_again_whatever_was_done) {
    const std::vector<std::string> files = {write_ball(folder), write_square(folder), "/none.obj",
                                            folder.write("bad.obj", "nothing"), "/none.glsl"};
    std::mt19937 random(GetParam() == kit::Path::gl3 ? 3 : 2);
    open(write_box(folder));
    for (int i = 0; i < 150; ++i) {
        do_anything(*viewer, random, files);
        if (i % 10 == 0)
            viewer->resize({width, height, 1.0 + i % 3}, 1.0f);
        if (i % 3 == 0)
            viewer->draw(view);
    }
    viewer->let_go();
    viewer->drop({options.model});
    viewer->resize({width, height, 1.0}, 1.0f);
    press('1');
    while (viewer->layer() != kit::Layer::color)
        press(Key::tab);
    for (const auto& [key, is_on] : {std::pair{'w', viewer->is_wireframe()},
                                     {'h', viewer->words().has_help},
                                     {'s', viewer->is_measuring()},
                                     {'t', !viewer->words().title.empty()}})
        if (is_on)
            press(key);
    const Words words = viewer->words();
    EXPECT_EQ(words.title + words.statistics + words.notice + words.middle, "");
    EXPECT_FALSE(words.has_help || words.is_notice_bad);
    EXPECT_EQ(kit::compare(draw(), expected()).reason, "");
}

TEST_P(ViewerTest, ends_with_escape_with_q_and_with_its_window) {
    for (const Key key : {Key::escape, key_of('q'), Key::none}) {
        open(lighthouse);
        EXPECT_FALSE(viewer->is_ended());
        press(key);
        if (key == Key::none)
            viewer->end();
        EXPECT_TRUE(viewer->is_ended());
    }
}

TEST_P(ViewerTest, tells_what_the_command_line_names_wrongly) {
    options.model = "/none.obj";
    Viewer without_model(options);
    EXPECT_EQ(without_model.open(), "/none.obj: No such file or directory");
    options.model = lighthouse;
    options.look = "/none.glsl";
    Viewer without_look(options);
    EXPECT_NE(without_look.open().find("/none.glsl"), std::string::npos);
}

} // namespace

} // namespace orvex_test
