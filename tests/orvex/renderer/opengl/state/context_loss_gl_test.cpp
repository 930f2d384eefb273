// Contexts that a driver loses: what is told of it, what is drawn then, and what after it.

#include "tests/orvex/renderer/opengl/window_pair.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/polyline_data.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "orvex/renderer/render_target.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// What a driver says of each context, and how often it was asked.
std::map<const void*, GLenum> resets;
int times_asked = 0;

GLenum APIENTRY tell_reset() {
    ++times_asked;
    const auto found = resets.find(native_window_platform().current_context());
    return found != resets.end() ? found->second : GL_NO_ERROR;
}

/// A driver that may lose contexts. It draws on in them, so that a test sees every call.
class LosingDriver : public GlRecorder {
public:
    void* get_proc_address(const char* name) override {
        return std::strcmp(name, "glGetGraphicsResetStatus") == 0
                   ? reinterpret_cast<void*>(&tell_reset)
                   : GlRecorder::get_proc_address(name);
    }
};

class ContextLoss : public WindowPairTest {
protected:
    std::unique_ptr<GlRecorder> make_recorder() override {
        resets.clear();
        times_asked = 0;
        return std::make_unique<LosingDriver>();
    }

    void SetUp() override {
        WindowPairTest::SetUp();
        make_triangle(mesh, true);
        mesh.set_use_generic_vertex_attribs_state(GetParam().generic);
        for (unsigned long i = 0; i < 3; ++i)
            mesh.set_color(i, vec4(0.2f * static_cast<float>(i), 1.0f, 0.0f, 1.0f));
        mesh.colors_need_update = true;
    }

    static void lose(const RenderWindow* window, GLenum status = GL_GUILTY_CONTEXT_RESET) {
        resets[const_cast<RenderWindow*>(window)->osx_get_cgl_ctx()] = status;
    }

    bool draw() {
        const bool prepared = renderer->vertex_buffer_prepare(&mesh);
        renderer->vertex_buffer_draw(&mesh);
        renderer->vertex_buffer_finish(&mesh);
        return prepared;
    }

    /// Draws a frame, and tells its pixels.
    std::vector<unsigned char> frame_of(RenderWindow* window) {
        turn_to(window);
        EXPECT_TRUE(draw());
        std::vector<unsigned char> pixels(16 * 16 * 4);
        const GlRecorderPause pause(*recorder);
        glReadPixels(0, 0, 16, 16, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        return pixels;
    }

    /// Lines of the log about a loss.
    long tellings() const {
        return std::count_if(log.messages().begin(), log.messages().end(),
                             [](const std::string& line) {
                                 return line.find("OpenGL context lost by") != std::string::npos;
                             });
    }

    LogCapture log;
    MeshData mesh;
};

INSTANTIATE_TEST_SUITE_P(of, ContextLoss, testing::ValuesIn(pair_kinds), pair_name);

TEST_P(ContextLoss, is_told_once) {
    turn_to(first);
    draw();
    first->display_framebuffer();
    EXPECT_EQ(tellings(), 0);
    lose(first);
    for (int i = 0; i < 3; ++i)
        first->display_framebuffer();
    EXPECT_EQ(tellings(), 1);
    EXPECT_TRUE(log.has("<*> OpenGL context lost by a reset that its own drawing caused: nothing is"
                        " drawn until the window has another"));
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(ContextLoss, is_told_with_its_cause) {
    log.clear();
    lose(first, GL_INNOCENT_CONTEXT_RESET);
    lose(second, GL_UNKNOWN_CONTEXT_RESET);
    first->display_framebuffer();
    EXPECT_EQ(tellings(), 1);
    second->apply_context(true);
    second->display_framebuffer();
    ASSERT_EQ(tellings(), 2);
    EXPECT_NE(log.messages().front().find("that another program caused"), std::string::npos);
    EXPECT_NE(log.messages().back().find("of unknown cause"), std::string::npos);
}

TEST_P(ContextLoss, is_asked_for_once_a_frame_and_never_by_a_draw) {
    turn_to(first);
    times_asked = 0;
    for (int i = 0; i < 5; ++i)
        draw();
    renderer->clear_color_buffer(0.0f, 0.0f, 0.0f, 1.0f);
    EXPECT_EQ(times_asked, 0);
    first->display_framebuffer();
    EXPECT_EQ(times_asked, 1);
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(ContextLoss, is_found_where_a_host_sets_the_states_or_reads_the_frame) {
    lose(first);
    renderer->reset_render_states();
    EXPECT_EQ(tellings(), 1);
    second->apply_context(true);
    lose(second);
    std::vector<unsigned char> pixels(16 * 16 * 4);
    renderer->get_color_buffer(pixels.data());
    EXPECT_EQ(tellings(), 2);
}

TEST_P(ContextLoss, refuses_every_draw) {
    PolylineData line;
    line.num_vertices = 2;
    line.vertices = new Vertex[2];
    line.use_generic_vertex_attribs = GetParam().generic;
    VertexPoolData pool;
    ASSERT_TRUE(pool.init_v2(4, false));
    pool.use_generic_vertex_attribs = GetParam().generic;
    GpuProgramData program;
    const char source[] = "#version 120\nvoid main() { gl_Position = vec4(0.0); }\n";
    EXPECT_TRUE(renderer->gpu_program_load_shader_from_memory(&program, GPU_SHADER_VERTEX, source,
                                                              sizeof(source) - 1));
    RenderTarget* const target = renderer->create_render_target();
    EXPECT_TRUE(frame_of(first).size() > 0);
    lose(first);
    first->display_framebuffer();
    recorder->clear();

    EXPECT_FALSE(draw());
    EXPECT_FALSE(renderer->vertex_buffer_draw(&mesh));
    EXPECT_FALSE(renderer->polyline_vb_prepare(&line));
    EXPECT_FALSE(renderer->polyline_vb_prepare_gl2(&line));
    EXPECT_FALSE(renderer->polyline_vb_draw(&line, 0, 0));
    EXPECT_FALSE(renderer->vertex_pool_render_prepare(&pool));
    EXPECT_TRUE(renderer->vertex_pool_render(&pool)) << "as ever";
    renderer->render_line(vec4(), vec4(), vec4(1.0f, 1.0f, 0.0f, 1.0f), vec4());
    EXPECT_FALSE(renderer->gpu_program_activate(&program));
    EXPECT_FALSE(target->activate());
    EXPECT_EQ(renderer->vertex_buffer_create(16, BUFFER_USAGE_STATIC_DRAW), 0U);
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(ContextLoss, leaves_other_windows_whole) {
    const std::vector<unsigned char> expected = frame_of(second);
    frame_of(first);
    lose(first);
    first->display_framebuffer();
    for (int i = 0; i < 3; ++i) {
        turn_to(first);
        EXPECT_FALSE(draw());
        EXPECT_EQ(frame_of(second), expected);
    }
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(ContextLoss, ends_with_a_new_context_and_the_next_frame_is_exact) {
    TextureData texture;
    ASSERT_TRUE(texture.create(4, 4, 1, PF_RGBA_U8, true));
    ASSERT_TRUE(renderer->texture_2d_load(&texture, 0));
    const std::vector<unsigned char> expected = frame_of(first);
    for (int i = 0; i < 3; ++i) {
        lose(first);
        first->display_framebuffer();
        turn_to(first);
        EXPECT_FALSE(draw());
        EXPECT_FALSE(renderer->vertex_buffer_kill(&mesh)) << "nothing can be deleted there";
        ASSERT_TRUE(initialize(first, nullptr));
        resets.clear();
        EXPECT_EQ(frame_of(first), expected);
        recorder->clear();
        EXPECT_TRUE(renderer->texture_bind(&texture, 0));
        EXPECT_EQ(recorder->count("glTexImage2D"), 1);
    }
    EXPECT_EQ(tellings(), 3);
    EXPECT_TRUE(renderer->vertex_buffer_kill(&mesh));
    EXPECT_TRUE(renderer->texture_unload(&texture));
}

TEST_P(ContextLoss, is_survived_by_a_stop_and_a_start) {
    const std::vector<unsigned char> expected = frame_of(first);
    lose(first);
    first->display_framebuffer();
    EXPECT_FALSE(draw());
    renderer->stop();
    renderer->kill_render_window(first);
    first = open(nullptr);
    ASSERT_TRUE(first);
    resets.clear();
    renderer->start();
    use_program();
    {
        const GlRecorderPause pause(*recorder);
        forget_gl_errors();
    }
    EXPECT_EQ(frame_of(first), expected);
    renderer->vertex_buffer_kill(&mesh);
}

} // namespace
} // namespace orvex_test
