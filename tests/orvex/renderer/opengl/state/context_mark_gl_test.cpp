// Contexts of a host that are adopted more than once: which are met again, and which are new.

#include <memory>
#include <utility>
#include <vector>

#define GL_GLEXT_PROTOTYPES // tests ask the driver straight
#include <GL/gl.h>
#include <GL/glext.h>

#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/render_window.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr GLuint most_names = 100; ///< beyond any that these tests get

/// A system on which every context has the address of the one before it.
class OneAddress : public GlRecorder {
public:
    std::unique_ptr<PlatformContext> adopt_current_context(void* handle) override {
        return std::make_unique<Context>(GlRecorder::adopt_current_context(handle));
    }
    const void* current_context() override {
        return GlRecorder::current_context() ? &address : nullptr;
    }

private:
    class Context : public PlatformContext {
    public:
        explicit Context(std::unique_ptr<PlatformContext> real)
            : real(std::move(real)) {}
        void* handle() const override { return real->handle(); }
        const void* native() const override { return &address; }
        bool is_current() const override { return real->is_current(); }
        bool make_current() override { return real->make_current(); }
        bool release_current() override { return real->release_current(); }
        bool present() override { return real->present(); }
        void set_swap_interval(int interval) override { real->set_swap_interval(interval); }
        bool resize(int width, int height) override { return real->resize(width, height); }

    private:
        std::unique_ptr<PlatformContext> real;
    };

    static inline const char address = 0;
};

class AdoptedContexts : public testing::TestWithParam<Profile>, protected RecordedRenderer {
protected:
    void SetUp() override {
        make_triangle(mesh, true);
        ASSERT_TRUE(texture.create(4, 4, 1, PF_RGBA_U8, true));
        recorder = std::make_unique<OneAddress>();
        renderer = std::make_unique<RendererOpenGL>();
        renderer->start();
        window = renderer->create_render_window();
    }

    void TearDown() override {
        {
            const GlRecorderPause pause(*recorder);
            EXPECT_NO_GL_ERROR() << "left over at the end of the test";
        }
        renderer.reset();
        recorder.reset();
    }

    std::unique_ptr<GlContext> make_context(const GlContext* share = nullptr) const {
        return std::make_unique<GlContext>(GetParam(), 16, 16, share);
    }

    /// A frame of a host that adopts before it.
    void draw_frame(RenderWindow* by) {
        EXPECT_TRUE(by->osx_init_with_cocoa_nsgl_ctx(&mesh));
        renderer->clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
        renderer->texture_bind(&texture, 0);
        EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
        EXPECT_TRUE(renderer->vertex_buffer_draw(&mesh));
        EXPECT_TRUE(renderer->vertex_buffer_finish(&mesh));
        const GlRecorderPause pause(*recorder);
        forget_gl_errors(); // a core context draws nothing without a program
    }

    /// How many buffers a frame made: two for a mesh that is uploaded.
    int buffers_of_a_frame() {
        recorder->clear();
        draw_frame(window);
        return recorder->count("glGenBuffers");
    }

    /// How many objects of each kind the current context has.
    std::vector<int> objects() const {
        const GlRecorderPause pause(*recorder);
        std::vector<int> counts(3);
        for (GLuint id = 1; id < most_names; ++id) {
            counts[0] += glIsBuffer(id);
            counts[1] += glIsVertexArray(id);
            counts[2] += glIsTexture(id);
        }
        return counts;
    }

    /// A host ends every object of a kind that the current context has.
    void end_arrays() const {
        const GlRecorderPause pause(*recorder);
        for (GLuint id = 1; id < most_names; ++id)
            glDeleteVertexArrays(1, &id);
    }
    void end_shaders() const {
        const GlRecorderPause pause(*recorder);
        for (GLuint id = 1; id < most_names; ++id)
            if (glIsShader(id))
                glDeleteShader(id);
    }

    std::unique_ptr<GlContext> host = make_context();
    RenderWindow* window = nullptr;
    MeshData mesh;
    TextureData texture;
};
ORVEX_BOTH_PROFILES(AdoptedContexts);

TEST_P(AdoptedContexts, are_known_again_in_every_frame) {
    EXPECT_TRUE(renderer->texture_2d_load(&texture, 0));
    draw_frame(window);
    const std::vector<int> first = objects();
    recorder->clear();
    for (int frame = 0; frame < 100; ++frame)
        draw_frame(window);
    for (const char* const name :
         {"glGenBuffers", "glBufferData", "glBufferSubData", "glGenVertexArrays", "glTexImage2D",
          "glDeleteBuffers", "glDeleteVertexArrays", "glDeleteTextures"})
        EXPECT_EQ(recorder->count(name), 0) << name;
    EXPECT_EQ(objects(), first);
    renderer->vertex_buffer_kill(&mesh);
    renderer->texture_unload(&texture);
}

TEST_P(AdoptedContexts, are_known_again_by_another_window_and_another_renderer) {
    EXPECT_EQ(buffers_of_a_frame(), 2);
    renderer->kill_render_window(window);
    window = renderer->create_render_window();
    EXPECT_EQ(buffers_of_a_frame(), 0);
    RendererOpenGL other;
    other.start();
    recorder->clear();
    draw_frame(other.create_render_window());
    EXPECT_EQ(recorder->count("glGenBuffers"), 0);
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(AdoptedContexts, are_new_where_another_one_ended) {
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(buffers_of_a_frame(), 2) << i;
        EXPECT_EQ(buffers_of_a_frame(), 0) << i;
        host.reset();
        host = make_context();
    }
}

TEST_P(AdoptedContexts, have_what_those_that_they_share_with_have_where_one_ended) {
    const std::unique_ptr<GlContext> kept = make_context(host.get());
    host->make_current();
    EXPECT_EQ(buffers_of_a_frame(), 2);
    host.reset();
    host = make_context(kept.get());
    EXPECT_EQ(buffers_of_a_frame(), 0);
    EXPECT_EQ(recorder->count("glBufferData"), 0);
    EXPECT_EQ(recorder->count("glGenVertexArrays"), 2) << "the mark and that of the mesh";
    EXPECT_EQ(recorder->count("glDeleteVertexArrays"), 0) << "that of another context";
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(AdoptedContexts, keep_their_buffers_where_the_host_ended_every_vertex_array) {
    EXPECT_EQ(buffers_of_a_frame(), 2);
    end_arrays();
    EXPECT_EQ(buffers_of_a_frame(), 0);
    EXPECT_EQ(recorder->count("glGenVertexArrays"), 2) << "the mark and that of the mesh";
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(AdoptedContexts, are_new_to_a_host_that_ended_every_vertex_array_and_shader) {
    EXPECT_EQ(buffers_of_a_frame(), 2);
    end_arrays();
    end_shaders();
    EXPECT_EQ(buffers_of_a_frame(), 2);
    EXPECT_EQ(buffers_of_a_frame(), 0);
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(AdoptedContexts, keep_what_the_host_had_bound) {
    GLuint array = 0;
    glGenVertexArrays(1, &array);
    glBindVertexArray(array);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(window->osx_init_with_cocoa_nsgl_ctx(&mesh));
        GLint bound = 0;
        glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &bound);
        EXPECT_EQ(static_cast<GLuint>(bound), array);
    }
    glBindVertexArray(0);
    glDeleteVertexArrays(1, &array);
}

TEST_P(AdoptedContexts, whose_groups_nothing_can_mark_are_new_each_time) {
    recorder->hide("glIsShader");
    EXPECT_EQ(buffers_of_a_frame(), 2);
    end_arrays();
    EXPECT_EQ(buffers_of_a_frame(), 2);
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(AdoptedContexts, are_new_each_time_where_nothing_can_mark_them) {
    recorder->hide("glObjectLabel");
    EXPECT_EQ(buffers_of_a_frame(), 2);
    EXPECT_EQ(buffers_of_a_frame(), 2);
    renderer->vertex_buffer_kill(&mesh);
}

} // namespace
} // namespace orvex_test
