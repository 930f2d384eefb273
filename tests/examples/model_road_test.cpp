// The whole road from a model file to pixels, with the sample model, as a host goes it: public
// headers, the shared library, and the way in which the tools and the examples draw a model.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <EGL/egl.h>
#include <GL/gl.h>

#include <orvex/gpu/gpu_program.h>
#include <orvex/gpu/gpu_program_mgr.h>
#include <orvex/kernel/core.h>
#include <orvex/kernel/kernel.h>
#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>
#include <orvex/scene/camera.h>
#include <orvex_kit/look.h>
#include <orvex_kit/model.h>
#include <orvex_kit/program.h>

#include "tests/support/gl_context.h"
#include "tests/support/picture.h"
#include "tests/support/x_window.h"

namespace orvex_test {

namespace {

constexpr int width = 400;
constexpr int height = 300;

/// The engine, started for one test.
class Engine {
public:
    Engine() {
        orvex::core::start("", true, &Engine::note, this);
        renderer = orvex::Kernel::get()->load_core_opengl_renderer_plugin(true);
        renderer->initialize();
        window = renderer->create_render_window();
    }
    ~Engine() {
        orvex::GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
        renderer->stop();
        renderer->kill_all_render_windows();
        orvex::core::stop("end of the test");
    }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    bool open(bool gl3, void* connection = nullptr, void* view = nullptr) {
        orvex::RenderWindow_ExtraData extra;
        extra.gl_major = gl3 ? 3 : 2;
        extra.depth_bits = 24;
        return window->initialize(connection, view, width, height, "Off", nullptr, &extra);
    }

    /// Loads the sample, draws a frame, and keeps it in the back buffer; all of it once, or again
    /// and again.
    void draw_sample(bool gl3, int loads = 1) {
        ASSERT_TRUE(renderer->start());
        const std::string text = orvex::kit::program_text_for(
            gl3 ? orvex::kit::Path::gl3 : orvex::kit::Path::gl2, orvex::kit::Look().text());
        orvex::GpuProgram* const program =
            orvex::GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text.c_str(),
                                                                        text.size(), "light");
        ASSERT_TRUE(program->is_valid()) << program->get_shader_error_messages();
        for (int load = 0; load < loads; ++load)
            draw_once(*program, gl3);
    }

    orvex::Renderer* renderer = nullptr;
    orvex::RenderWindow* window = nullptr;
    std::vector<std::string> complaints;

private:
    void draw_once(orvex::GpuProgram& program, bool gl3) {
        orvex::kit::Model scene(EXAMPLE_DATA "/lighthouse.obj");
        ASSERT_TRUE(scene) << scene.reason();
        for (const orvex::kit::ModelTexture& texture : scene.textures())
            EXPECT_EQ(texture.reason, "") << texture.path;

        auto* const camera = new orvex::Camera;
        orvex::kit::see_all(scene.extent(), {}, {width, height}).apply(*camera, width, height);
        camera->bind(renderer, true, true, true, true, !gl3);
        renderer->clear_color_depth_buffers(0.17f, 0.19f, 0.22f, 1.0f, 1.0f);
        scene.draw(*renderer, program, gl3 ? orvex::kit::Path::gl3 : orvex::kit::Path::gl2);
        camera->release(nullptr, nullptr);
    }

    static void note(const char* line, void* user_data) {
        const std::string text = line;
        if (text.find(" <*> ") != text.npos || text.find(" <!> ") != text.npos)
            static_cast<Engine*>(user_data)->complaints.push_back(text);
    }
};

class ModelRoad : public testing::TestWithParam<Profile> {
protected:
    bool gl3() const { return GetParam() == Profile::core; }
};
ORVEX_BOTH_PROFILES(ModelRoad);

TEST_P(ModelRoad, ends_in_one_picture_on_both_paths) {
    Engine engine;
    ASSERT_TRUE(engine.open(gl3()));
    engine.draw_sample(gl3());
    EXPECT_GOLDEN("model_road");
    EXPECT_NO_GL_ERROR();
    EXPECT_EQ(engine.complaints, std::vector<std::string>());
}

TEST_P(ModelRoad, ends_in_the_same_picture_after_many_loads) {
    Engine engine;
    ASSERT_TRUE(engine.open(gl3()));
    engine.draw_sample(gl3(), 5);
    EXPECT_GOLDEN("model_road");
    EXPECT_NO_GL_ERROR();
    EXPECT_EQ(engine.complaints, std::vector<std::string>());
}

TEST_P(ModelRoad, gives_the_driver_nothing_to_complain_about) {
    GlContext context(GetParam(), width, height);
    {
        Engine engine;
        ASSERT_TRUE(engine.window->osx_init_with_cocoa_nsgl_ctx(eglGetCurrentContext()));
        engine.draw_sample(gl3());
    }
    EXPECT_EQ(context.take_errors(), std::vector<std::string>());
}

TEST_P(ModelRoad, ends_in_the_pixels_of_an_x11_window) {
    ASSERT_NE(x_connection(), nullptr) << "no X server";
    const XWindow view(width, height);
    Engine engine;
    ASSERT_TRUE(engine.open(gl3(), x_connection(), view.view()));
    engine.draw_sample(gl3());
    Picture drawn = read_frame();
    for (std::size_t i = 3; i < drawn.pixels.size(); i += 4)
        drawn.pixels[i] = 255;
    // What the server is asked next waits for the frame: the engine has the same connection.
    engine.window->display_framebuffer();
    EXPECT_TRUE(view.pixels(width, height) == drawn);
}

} // namespace

} // namespace orvex_test
