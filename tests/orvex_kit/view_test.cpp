#include "orvex_kit/view.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <utility>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/renderer/render_target.h>
#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>

#include "orvex_kit/compare.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/model.h"
#include "orvex_kit/private/engine_parts.h"
#include "sample_models.h"
#include "scripted_loader.h"
#include "tests/support/gl_context.h"
#include "view_frame.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

class ViewTest : public testing::TestWithParam<Path> {
protected:
    Engine engine;
    TempDir folder;

    static ViewOptions options(int samples = 4) {
        ViewOptions result;
        result.path = GetParam();
        result.samples = samples;
        return result;
    }
    static Profile profile() {
        return GetParam() == Path::gl3 ? Profile::core : Profile::compatibility;
    }
};
INSTANTIATE_TEST_SUITE_P(on, ViewTest, testing::Values(Path::gl3, Path::gl2), path_name);

TEST_P(ViewTest, is_what_was_asked_for) {
    const View view(64, 48, options());
    ASSERT_TRUE(view) << view.reason();
    EXPECT_EQ(view.reason(), "");
    EXPECT_EQ(view.failure(), ViewFailure::none);
    EXPECT_EQ(view.width(), 64);
    EXPECT_EQ(view.height(), 48);
    EXPECT_EQ(view.samples(), 4);
    EXPECT_EQ(view.path(), GetParam());
    EXPECT_NE(view.renderer(), nullptr);
    EXPECT_NE(view.window(), nullptr);
}

TEST_P(ViewTest, is_read_into_memory_of_the_hosts) {
    View view(5, 4, options());
    view.set_background({1, 0, 0, 0.5f});
    view.begin(Camera());
    view.end();
    Picture picture;
    ASSERT_TRUE(view.read(picture));
    std::array<unsigned char, 4 * 24> apart{};
    ASSERT_TRUE(view.read(apart.data(), 24));
    std::array<unsigned char, 4 * 20> turned{};
    ASSERT_TRUE(view.read(turned.data() + 60, -20));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 20; ++x) {
            EXPECT_EQ(apart.at(y * 24 + x), picture.row_data(y)[x]);
            EXPECT_EQ(turned.at((3 - y) * 20 + x), picture.row_data(y)[x]);
        }
    EXPECT_EQ(apart[20], 0);
    EXPECT_EQ(view.read(apart.data(), 19).reason(), "rows of 19 bytes: 20 are needed");
    EXPECT_EQ(view.read(nullptr, 20).reason(), "there is no memory to read a picture into");
    EXPECT_FALSE(View().read(apart.data(), 20));
}

TEST_P(ViewTest, is_drawn_by_the_device_that_was_chosen) {
    ViewOptions chosen = options();
    chosen.device = "software";
    setenv("ORVEX_GL_DEVICE", "77", 1);
    EXPECT_TRUE(View(8, 8, chosen));
    EXPECT_STREQ(std::getenv("ORVEX_GL_DEVICE"), "77");
    unsetenv("ORVEX_GL_DEVICE");
    chosen.device = "77";
    const View view(8, 8, chosen);
    EXPECT_EQ(view.failure(), ViewFailure::no_driver);
    EXPECT_EQ(view.reason(), "the device \"77\" isn't there, or can't draw: the log says why");
    EXPECT_EQ(std::getenv("ORVEX_GL_DEVICE"), nullptr);
}

TEST_P(ViewTest, has_as_many_samples_as_there_are) {
    EXPECT_EQ(View(16, 16, options(0)).samples(), 0);
    EXPECT_EQ(View(16, 16, options(1)).samples(), 0);
    EXPECT_EQ(View(16, 16, options(-5)).samples(), 0);
    const View view(16, 16, options(1000));
    ASSERT_TRUE(view) << view.reason();
    EXPECT_EQ(view.samples(), view.renderer()->get_GL_MAX_SAMPLES());
}

TEST_P(ViewTest, shows_its_background) {
    for (const int samples : {0, 4}) {
        View view(8, 8, options(samples));
        EXPECT_EQ(pixel_at(empty_frame(view), 3, 3), (Pixel{43, 48, 56, 255}));
        view.set_background({1.0f, 0.5f, 0.0f, 1.0f});
        const Pixel orange = pixel_at(empty_frame(view), 3, 3);
        EXPECT_EQ(orange[0], 255);
        EXPECT_NEAR(orange[1], 128, 1);
        EXPECT_EQ(orange[2], 0);
        view.set_background({2.0f, -1.0f, NAN, 7.0f});
        EXPECT_EQ(pixel_at(empty_frame(view), 3, 3), (Pixel{255, 0, 0, 255}));
    }
}

TEST_P(ViewTest, keeps_the_opacity_of_its_background_straight) {
    for (const int samples : {0, 4}) {
        View view(8, 8, options(samples));
        view.set_background({1.0f, 0.5f, 0.0f, 0.4f});
        const Pixel pixel = pixel_at(empty_frame(view), 3, 3);
        EXPECT_NEAR(pixel[0], 255, 2);
        EXPECT_NEAR(pixel[1], 128, 2);
        EXPECT_EQ(pixel[2], 0);
        EXPECT_EQ(pixel[3], 102);
        view.set_background({1.0f, 1.0f, 1.0f, 0.0f});
        EXPECT_EQ(pixel_at(empty_frame(view), 3, 3), (Pixel{0, 0, 0, 0}));
    }
}

TEST_P(ViewTest, draws_a_model_whole) {
    View view(64, 64, options());
    orvex::kit::Model square(write_square(folder));
    ASSERT_TRUE(square);
    view.draw(square, {0.0f, 0.0f});
    const Picture picture = picture_of(view);
    const Pixel background{43, 48, 56, 255};
    EXPECT_EQ(pixel_at(picture, 0, 0), background);
    EXPECT_EQ(pixel_at(picture, 63, 63), background);
    EXPECT_GT(pixel_at(picture, 32, 32)[0], 100);
    // A little room is left around.
    EXPECT_GT(pixel_at(picture, 5, 32)[0], 100);
    EXPECT_GT(pixel_at(picture, 32, 5)[0], 100);
}

/// The first row of a picture is the uppermost.
TEST_P(ViewTest, reads_the_upper_row_first) {
    View view(8, 8, options());
    orvex::kit::Model square(write_square(folder));
    const auto camera = flat_camera(8, 8);
    camera->set_position(orvex::vec4(0.0f, -1.0f, 5.0f, 1.0f));
    view.begin(*camera);
    view.add(square);
    view.end();
    const Picture picture = picture_of(view);
    EXPECT_GT(pixel_at(picture, 4, 1)[0], 100);
    EXPECT_EQ(pixel_at(picture, 4, 6), (Pixel{43, 48, 56, 255}));
}

TEST_P(ViewTest, smooths_edges_with_samples) {
    const auto shades = [this](int samples) {
        View view(64, 64, options(samples));
        orvex::kit::Model square(write_square(folder));
        view.set_background({0.0f, 0.0f, 0.0f, 0.0f});
        view.draw(square, {30.0f, 25.0f});
        const Picture picture = picture_of(view);
        int between = 0;
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x) {
                const Pixel pixel = pixel_at(picture, x, y);
                const bool is_edge = pixel[3] > 0 && pixel[3] < 255;
                between += is_edge ? 1 : 0;
                // Straight: an edge has the colour of its square.
                if (is_edge)
                    EXPECT_GT(pixel[0], 90) << x << "," << y;
            }
        return between;
    };
    EXPECT_EQ(shades(0), 0);
    EXPECT_GT(shades(4), 40);
}

TEST_P(ViewTest, takes_another_size) {
    struct Row {
        int samples, supersampling;
    };
    for (const Row& row : {Row{4, 1}, Row{0, 1}, Row{0, 2}}) {
        SCOPED_TRACE(testing::Message() << row.samples << ", " << row.supersampling);
        ViewOptions wanted = options();
        wanted.samples = row.samples;
        wanted.supersampling = row.supersampling;
        View view(8, 8, wanted);
        forget_gl_errors();
        ASSERT_EQ(view.resize(32, 16).reason(), "");
        EXPECT_NO_GL_ERROR();
        EXPECT_EQ(view.width(), 32);
        EXPECT_EQ(view.height(), 16);
        const Picture picture = empty_frame(view);
        EXPECT_EQ(picture.width(), 32);
        EXPECT_EQ(picture.height(), 16);
        EXPECT_EQ(pixel_at(picture, 31, 0), (Pixel{43, 48, 56, 255}));
        EXPECT_EQ(pixel_at(picture, 31, 15), (Pixel{43, 48, 56, 255}));
    }
}

TEST_P(ViewTest, stays_as_it_is_where_a_size_cant_be) {
    View view(8, 8, options());
    EXPECT_EQ(view.resize(0, 4).reason(), "a view of 0x4 pixels: sides go from 1");
    EXPECT_EQ(view.resize(1 << 20, 4).reason(),
              "a view of 1048576x4 pixels: the driver has no surface of that size");
    EXPECT_EQ(view.width(), 8);
    EXPECT_EQ(pixel_at(empty_frame(view), 7, 7), (Pixel{43, 48, 56, 255}));
}

TEST_P(ViewTest, refuses_sizes_that_cant_be) {
    const View flat(0, 480, options());
    EXPECT_FALSE(flat);
    EXPECT_EQ(flat.failure(), ViewFailure::size);
    EXPECT_EQ(flat.reason(), "a view of 0x480 pixels: sides go from 1");
    const View vast(1 << 20, 4, options());
    EXPECT_FALSE(vast);
    EXPECT_EQ(vast.failure(), ViewFailure::size);
    EXPECT_EQ(vast.reason(), "the driver has no surface of 1048576x4 pixels: ask for fewer");
}

TEST_P(ViewTest, is_one_of_several) {
    View red(8, 8, options());
    View green(16, 16, options());
    red.set_background({1.0f, 0.0f, 0.0f, 1.0f});
    green.set_background({0.0f, 1.0f, 0.0f, 1.0f});
    const auto camera = flat_camera(8, 8);
    red.begin(*camera);
    red.end();
    const auto other_camera = flat_camera(16, 16);
    green.begin(*other_camera);
    green.end();
    EXPECT_NE(red.renderer(), green.renderer());
    EXPECT_EQ(pixel_at(picture_of(red), 4, 4), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(pixel_at(picture_of(green), 4, 4), (Pixel{0, 255, 0, 255}));
    EXPECT_EQ(current_renderer(), green.renderer());
    EXPECT_TRUE(red.make_current());
    EXPECT_EQ(current_renderer(), red.renderer());
}

TEST_P(ViewTest, leaves_the_view_before_it_current) {
    View first(8, 8, options());
    {
        const View second(8, 8, options());
        EXPECT_EQ(current_renderer(), second.renderer());
    }
    EXPECT_EQ(current_renderer(), first.renderer());
    EXPECT_EQ(pixel_at(empty_frame(first), 4, 4), (Pixel{43, 48, 56, 255}));
    first = View();
    EXPECT_EQ(current_renderer(), nullptr);
}

TEST_P(ViewTest, moves) {
    View first(8, 8, options());
    View second = std::move(first);
    EXPECT_FALSE(first); // NOLINT(bugprone-use-after-move): it is empty, as promised.
    ASSERT_TRUE(second);
    EXPECT_EQ(pixel_at(empty_frame(second), 4, 4), (Pixel{43, 48, 56, 255}));
    second = View(16, 16, options());
    EXPECT_EQ(empty_frame(second).width(), 16);
}

TEST_P(ViewTest, is_written_to_a_file) {
    View view(8, 8, options());
    empty_frame(view);
    const std::string path = folder.file("a.jpg");
    EXPECT_EQ(view.write(path).reason(), "");
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(view.write(folder.file("a.txt")).reason().substr(0, 11), "can't write");
}

TEST_P(ViewTest, does_nothing_when_empty) {
    View view;
    EXPECT_FALSE(view);
    EXPECT_EQ(view.reason(), "");
    EXPECT_EQ(view.width(), 0);
    EXPECT_EQ(view.height(), 0);
    EXPECT_EQ(view.samples(), 0);
    EXPECT_EQ(view.renderer(), nullptr);
    EXPECT_EQ(view.window(), nullptr);
    EXPECT_FALSE(view.make_current());
    const auto camera = flat_camera(8, 8);
    view.set_background({1.0f, 1.0f, 1.0f, 1.0f});
    view.begin(*camera);
    view.begin(Camera());
    orvex::kit::Model square(write_square(folder));
    view.add(square);
    view.draw(square);
    view.end();
    view.present();
    EXPECT_EQ(view.resize(8, 8).reason(), "the view is empty");
    Picture picture;
    EXPECT_EQ(view.read(picture).reason(), "the view is empty");
    EXPECT_TRUE(picture.is_empty());
    EXPECT_EQ(view.write(folder.file("a.png")).reason(),
              "can't write " + folder.file("a.png") + ": the view is empty");
}

TEST_P(ViewTest, tells_that_another_thread_has_its_context) {
    const std::string reason = "the context of the view can't be made current";
    View view(8, 8, options());
    Picture picture;
    {
        const TakenContext taken(view);
        EXPECT_TRUE(view);
        EXPECT_FALSE(view.make_current());
        EXPECT_EQ(view.resize(4, 4).reason(),
                  "a view of 4x4 pixels: its context can't be made current");
        EXPECT_EQ(view.read(picture).reason(), reason);
        std::array<unsigned char, 4 * 64> memory{};
        EXPECT_EQ(view.read(memory.data(), 32).reason(), reason);
        EXPECT_EQ(view.write(folder.file("a.png")).reason(),
                  "can't write " + folder.file("a.png") + ": " + reason);
        EXPECT_TRUE(picture.is_empty());
        EXPECT_EQ(view.width(), 8);
    }
    EXPECT_EQ(pixel_at(empty_frame(view), 7, 7), (Pixel{43, 48, 56, 255}));
}

TEST_P(ViewTest, stands_a_model_as_it_stands_where_no_way_up_is_told) {
    // It stands on four feet at its largest z.
    ScriptedLoader::add("orvex_stl", [](orvex::Model& model, const std::string&) {
        auto* const mesh = new orvex::Mesh;
        mesh->alloc_vertex_data(5);
        const float places[5][3] = {{-1, 0, 2}, {1, 1, 2}, {1, 2, 2}, {-1, 3, 2}, {0, 1, 0}};
        for (unsigned i = 0; i < 5; ++i)
            mesh->set_vertex_position(i, {places[i][0], places[i][1], places[i][2], 1.0f});
        mesh->alloc_face_data(4, false);
        for (unsigned i = 0; i < 4; ++i)
            mesh->set_face_indexes(i, 4, i, (i + 1) % 4);
        model.add_child(mesh);
        return true;
    });
    orvex::kit::Model pyramid(folder.write("m.script", "x"), {Normals::flat, false, "orvex_stl"});
    ASSERT_EQ(pyramid.up_axis(), UpAxis::minus_z) << pyramid.reason();
    View view(32, 32, options());
    const auto seen = [&](UpAxis up) {
        view.draw(pyramid, {30.0f, 20.0f, up});
        return picture_of(view);
    };
    EXPECT_EQ(seen(UpAxis::automatic), seen(UpAxis::minus_z));
    EXPECT_NE(seen(UpAxis::automatic), seen(UpAxis::y));
}

TEST_P(ViewTest, draws_on_the_context_of_a_host) {
    const GlContext host(profile(), 32, 32);
    View view(CurrentContext(), 32, 32, options());
    ASSERT_TRUE(view) << view.reason();
    view.set_background({0.0f, 0.0f, 1.0f, 1.0f});
    EXPECT_EQ(pixel_at(empty_frame(view), 30, 1), (Pixel{0, 0, 255, 255}));
    unsigned char pixel[4] = {};
    glReadPixels(30, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    EXPECT_EQ(pixel[2], 255);
    view.present();
    ASSERT_EQ(view.resize(16, 16).reason(), "");
    EXPECT_EQ(empty_frame(view).width(), 16);
    view = View();
    // It is the host's still.
    EXPECT_NE(glGetString(GL_VERSION), nullptr);
}

TEST_P(ViewTest, keeps_alpha_on_the_context_of_a_host) {
    const GlContext host(profile(), 32, 32);
    View view(CurrentContext(), 32, 32, options());
    view.set_background({1.0f, 0.0f, 0.0f, 0.2f});
    EXPECT_EQ(pixel_at(empty_frame(view), 5, 5), (Pixel{255, 0, 0, 51}));
}

/// A white square and a black one that cut each other at so small an angle that the depth's bits
/// decide which is seen.
TEST(View, has_depth_of_as_many_bits_on_both_paths) {
    const Engine engine;
    const TempDir folder;
    folder.write("m.mtl", "newmtl white\nKd 1 1 1\nnewmtl black\nKd 0 0 0\n");
    orvex::kit::Model squares(folder.write("m.obj", "mtllib m.mtl\n"
                                                    "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\n"
                                                    "v -1 -1 -1e-6\nv 1 -1 1e-6\nv 1 1 1e-6\n"
                                                    "v -1 1 -1e-6\n"
                                                    "usemtl white\nf 1 2 3 4\n"
                                                    "usemtl black\nf 5 6 7 8\n"));
    ASSERT_TRUE(squares) << squares.reason();
    std::array<Picture, 2> pictures;
    for (const Path path : {Path::gl3, Path::gl2}) {
        ViewOptions options;
        options.path = path;
        View view(16, 16, options);
        ASSERT_EQ(view.resize(128, 96).reason(), "");
        view.draw(squares, {10.0f, 20.0f});
        pictures[path == Path::gl3 ? 0 : 1] = picture_of(view);
    }
    EXPECT_EQ(compare(pictures[0], pictures[1]).reason, "");
}

TEST(View, needs_an_engine) {
    const View view(8, 8);
    EXPECT_FALSE(view);
    EXPECT_EQ(view.failure(), ViewFailure::no_engine);
    EXPECT_EQ(view.reason(), "the engine doesn't run: make a kit::Engine first");
}

TEST(View, is_empty_when_the_engine_has_ended) {
    auto engine = std::make_unique<Engine>();
    View view(8, 8);
    ASSERT_TRUE(view) << view.reason();
    engine.reset();
    EXPECT_FALSE(view);
    EXPECT_EQ(view.failure(), ViewFailure::no_engine);
    EXPECT_EQ(view.reason(), "the engine has ended");
    EXPECT_EQ(view.width(), 0);
    EXPECT_EQ(view.renderer(), nullptr);
    EXPECT_EQ(view.resize(4, 4).reason(), "the view is empty: the engine has ended");
    engine = std::make_unique<Engine>();
    view = View(8, 8);
    EXPECT_TRUE(view) << view.reason();
}

TEST(View, tells_that_a_window_has_no_display) {
    const Engine engine;
    unsetenv("DISPLAY");
    const View view(NativeWindow{nullptr, reinterpret_cast<void*>(1)}, 8, 8);
    EXPECT_FALSE(view);
    EXPECT_EQ(view.failure(), ViewFailure::window);
    EXPECT_EQ(view.reason(),
              "the host's window can't be drawn in: its display, or its number, is another");
}

TEST(View, takes_no_context_where_none_is_current) {
    const Engine engine;
    const View view(CurrentContext(), 8, 8);
    EXPECT_FALSE(view);
    EXPECT_EQ(view.failure(), ViewFailure::window);
    EXPECT_EQ(view.reason(), "no OpenGL context is current: make the host's current first");
}

TEST(View, tells_that_a_host_has_a_core_context) {
    const Engine engine;
    const GlContext host(Profile::core, 8, 8);
    ViewOptions options;
    options.path = Path::gl2;
    const View view(CurrentContext(), 8, 8, options);
    EXPECT_FALSE(view);
    EXPECT_EQ(view.failure(), ViewFailure::old_driver);
    EXPECT_EQ(view.reason(), "the host's context is a core one, without what path gl2 draws with: "
                             "ask for path gl3");
    EXPECT_NO_GL_ERROR();
}

TEST(View, draws_into_the_framebuffer_that_a_host_has_bound) {
    const Engine engine;
    const GlContext host(Profile::core, 8, 8);
    View view(CurrentContext(), 8, 8);
    ASSERT_TRUE(view) << view.reason();
    orvex::RenderTarget* const widget = view.renderer()->create_render_target();
    ASSERT_TRUE(widget->create_target(8, 8, orvex::PF_RGBA_U8, false, false, true, 0));
    view.set_background({1.0f, 0.0f, 0.0f, 1.0f});
    empty_frame(view);
    widget->activate();
    view.set_background({0.0f, 1.0f, 0.0f, 1.0f});
    EXPECT_EQ(pixel_at(empty_frame(view), 1, 1), (Pixel{0, 255, 0, 255}));
    EXPECT_EQ(view.renderer()->fbo_get_current_bound(), widget->get_fbo());
    view.renderer()->fbo_bind(0);
    unsigned char pixels[8 * 8 * 4] = {};
    ASSERT_TRUE(widget->read_color_pixmap_rgba_u8(pixels));
    EXPECT_EQ(pixels[1], 255);
}

} // namespace

} // namespace orvex_test
