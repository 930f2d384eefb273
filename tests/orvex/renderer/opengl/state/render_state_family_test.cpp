#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <functional>

#include <gtest/gtest.h>

#include "orvex/math/vec4.h"
#include "tests/orvex/renderer/opengl/started_renderer.h"

namespace orvex_test {

using namespace orvex;
namespace {

class RendererOpenGLState : public StartedRendererTest {};
ORVEX_BOTH_PROFILES(RendererOpenGLState);

struct Row {
    const char* what;
    std::function<void(RendererOpenGL&)> act;
    GlCalls calls;
};

TEST_P(RendererOpenGLState, sends_each_setter_as_one_call_whatever_was_set_before) {
    const Row rows[] = {
        {"depth test on",
         [](RendererOpenGL& r) { r.set_depth_test_state(true); },
         {"glEnable(GL_DEPTH_TEST)"}},
        {"depth test off",
         [](RendererOpenGL& r) { r.set_depth_test_state(false); },
         {"glDisable(GL_DEPTH_TEST)"}},
        {"depth writing on",
         [](RendererOpenGL& r) { r.set_depth_buffer_writing_state(true); },
         {"glDepthMask(true)"}},
        {"depth writing off",
         [](RendererOpenGL& r) { r.set_depth_buffer_writing_state(false); },
         {"glDepthMask(false)"}},
        {"depth function",
         [](RendererOpenGL& r) { r.set_depth_test_func(CMP_GEQUAL); },
         {"glDepthFunc(GL_GEQUAL)"}},
        {"unknown depth function",
         [](RendererOpenGL& r) { r.set_depth_test_func(static_cast<RENDERER_CMP_FUNC>(8)); },
         {"glDepthFunc(GL_LESS)"}},
        {"colour writing on",
         [](RendererOpenGL& r) { r.set_color_buffer_writing_state(true); },
         {"glColorMask(true, true, true, true)"}},
        {"colour writing off",
         [](RendererOpenGL& r) { r.set_color_buffer_writing_state(false); },
         {"glColorMask(false, false, false, false)"}},
        {"blending on", [](RendererOpenGL& r) { r.set_blend_state(true); }, {"glEnable(GL_BLEND)"}},
        {"blending off",
         [](RendererOpenGL& r) { r.set_blend_state(false); },
         {"glDisable(GL_BLEND)"}},
        {"blend factors",
         [](RendererOpenGL& r) {
             r.set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
         },
         {"glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)"}},
        {"unknown blend factor",
         [](RendererOpenGL& r) {
             r.set_blend_factors(static_cast<RENDERER_BLEND_FACTOR>(10), BLEND_FACTOR_ZERO);
         },
         {"glBlendFunc(GL_ONE, GL_ZERO)"}},
        {"scissor",
         [](RendererOpenGL& r) { r.set_scissor(1, 2, 3, 4); },
         {"glScissor(1, 2, 3, 4)"}},
        {"scissor on",
         [](RendererOpenGL& r) { r.set_scissor_state(true); },
         {"glEnable(GL_SCISSOR_TEST)"}},
        {"scissor off",
         [](RendererOpenGL& r) { r.set_scissor_state(false); },
         {"glDisable(GL_SCISSOR_TEST)"}},
        {"viewport",
         [](RendererOpenGL& r) { r.set_viewport(1, 2, 30, 40); },
         {"glViewport(1, 2, 30, 40)"}},
        {"depth bias factors",
         [](RendererOpenGL& r) { r.set_depth_bias_factors(1.5f, 2.0f); },
         {"glPolygonOffset(1.5, 2)"}},
        {"depth bias on",
         [](RendererOpenGL& r) { r.set_depth_bias_state(true); },
         {"glEnable(GL_POLYGON_OFFSET_FILL)"}},
        {"depth bias off",
         [](RendererOpenGL& r) { r.set_depth_bias_state(false); },
         {"glDisable(GL_POLYGON_OFFSET_FILL)"}},
        {"line width", [](RendererOpenGL& r) { r.set_line_width(1.0f); }, {"glLineWidth(1)"}},
        {"finish", [](RendererOpenGL& r) { r.finish_pipeline(); }, {"glFinish()"}},
        {"flush", [](RendererOpenGL& r) { r.flush_pipeline(); }, {"glFlush()"}},
        {"clear of colour",
         [](RendererOpenGL& r) { r.clear_color_buffer(0.25f, 0.5f, 0.75f, 1.0f); },
         {"glClearColor(0.25, 0.5, 0.75, 1)", "glClear(GL_COLOR_BUFFER_BIT)"}},
        {"clear of colour by vector",
         [](RendererOpenGL& r) { r.clear_color_buffer(vec4(0.25f, 0.5f, 0.75f, 0.5f)); },
         {"glClearColor(0.25, 0.5, 0.75, 0.5)", "glClear(GL_COLOR_BUFFER_BIT)"}},
        {"clear of depth",
         [](RendererOpenGL& r) { r.clear_depth_buffer(0.5f); },
         {"glClearDepth(0.5)", "glClear(GL_DEPTH_BUFFER_BIT)"}},
        {"clear of both",
         [](RendererOpenGL& r) { r.clear_color_depth_buffers(0.25f, 0.5f, 0.75f, 1.0f, 0.5f); },
         {"glClearColor(0.25, 0.5, 0.75, 1)", "glClearDepth(0.5)",
          "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)"}},
        {"clear of both by vector",
         [](RendererOpenGL& r) {
             r.clear_color_depth_buffers(vec4(0.25f, 0.5f, 0.75f, 0.5f), 1.0f);
         },
         {"glClearColor(0.25, 0.5, 0.75, 0.5)", "glClearDepth(1)",
          "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)"}},
        {"depth pass",
         [](RendererOpenGL& r) { r.shadow_mapping_enable_zpass_states(); },
         {"glDisable(GL_BLEND)", "glColorMask(false, false, false, false)",
          "glEnable(GL_DEPTH_TEST)", "glDepthMask(true)", "glDepthFunc(GL_LEQUAL)",
          "glClearDepth(1)", "glClear(GL_DEPTH_BUFFER_BIT)", "glEnable(GL_CULL_FACE)",
          "glCullFace(GL_BACK)"}},
        {"end of the depth pass",
         [](RendererOpenGL& r) { r.shadow_mapping_disable_zpass_states(); },
         {"glColorMask(true, true, true, true)", "glDepthFunc(GL_LESS)",
          "glDisable(GL_CULL_FACE)"}},
    };
    for (const Row& row : rows) {
        for (int times = 0; times < 2; ++times) {
            row.act(*renderer);
            EXPECT_EQ(recorder->take(), row.calls) << row.what;
        }
    }
}

TEST_P(RendererOpenGLState, keeps_a_shadow_of_what_was_set) {
    renderer->set_depth_test_state(false);
    EXPECT_FALSE(renderer->ctx.depth_test);
    renderer->set_depth_buffer_writing_state(false);
    EXPECT_FALSE(renderer->ctx.depth_write);
    renderer->set_depth_test_func(static_cast<RENDERER_CMP_FUNC>(42));
    EXPECT_EQ(renderer->ctx.depth_func, 42) << "the engine's value as given";
    renderer->set_blend_state(true);
    EXPECT_TRUE(renderer->ctx.blend);
    renderer->set_blend_factors(BLEND_FACTOR_DST_ALPHA, BLEND_FACTOR_SRC_COLOR);
    EXPECT_EQ(renderer->ctx.blend_src, BLEND_FACTOR_DST_ALPHA);
    EXPECT_EQ(renderer->ctx.blend_dst, BLEND_FACTOR_SRC_COLOR);
    renderer->set_blend_factors_separate(BLEND_FACTOR_ONE, BLEND_FACTOR_DST_COLOR,
                                         BLEND_FACTOR_ZERO, BLEND_FACTOR_ZERO);
    EXPECT_EQ(renderer->ctx.blend_src, BLEND_FACTOR_ONE) << "that of the colours";
    EXPECT_EQ(renderer->ctx.blend_dst, BLEND_FACTOR_DST_COLOR);
    renderer->set_scissor_state(true);
    EXPECT_TRUE(renderer->ctx.scissor_test);
    renderer->set_line_width(1.0f);
    EXPECT_EQ(renderer->ctx.line_width, 1.0f);
}

TEST_P(RendererOpenGLState, really_reaches_the_api) {
    renderer->set_depth_test_state(false);
    renderer->set_blend_state(true);
    renderer->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_DST_ALPHA);
    renderer->set_depth_test_func(CMP_NOTEQUAL);
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    GLint value = 0;
    glGetIntegerv(GL_BLEND_SRC_RGB, &value);
    EXPECT_EQ(value, GL_SRC_ALPHA);
    glGetIntegerv(GL_BLEND_DST_RGB, &value);
    EXPECT_EQ(value, GL_ONE_MINUS_DST_ALPHA);
    glGetIntegerv(GL_DEPTH_FUNC, &value);
    EXPECT_EQ(value, GL_NOTEQUAL);
}

TEST_P(RendererOpenGLState, blends_alpha_by_itself_where_the_api_can) {
    EXPECT_TRUE(renderer->set_blend_factors_separate(BLEND_FACTOR_SRC_ALPHA,
                                                     BLEND_FACTOR_ONE_MINUS_SRC_ALPHA,
                                                     BLEND_FACTOR_ONE, BLEND_FACTOR_DST_ALPHA));
    GLint value = 0;
    glGetIntegerv(GL_BLEND_SRC_ALPHA, &value);
    EXPECT_EQ(value, GL_ONE);
    glGetIntegerv(GL_BLEND_DST_ALPHA, &value);
    EXPECT_EQ(value, GL_DST_ALPHA);
    renderer->stop();
    recorder->clear();
    EXPECT_FALSE(renderer->set_blend_factors_separate(BLEND_FACTOR_ZERO, BLEND_FACTOR_ZERO,
                                                      BLEND_FACTOR_ZERO, BLEND_FACTOR_ZERO));
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_EQ(renderer->ctx.blend_src, BLEND_FACTOR_SRC_ALPHA);
}

// The pending state.

TEST_P(RendererOpenGLState, leaves_the_api_alone_until_the_rasterizer_state_is_applied) {
    renderer->rasterizer_set_cull_face(POLYGON_FACE_FRONT);
    renderer->rasterizer_set_cull_state(true);
    renderer->rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK, POLYGON_MODE_LINE);
    renderer->rasterizer_set_msaa_state(true);
    EXPECT_TRUE(recorder->calls().empty());
    GLint face = 0;
    glGetIntegerv(GL_CULL_FACE_MODE, &face);
    EXPECT_EQ(face, GL_BACK);
    recorder->clear();
    EXPECT_EQ(renderer->rasterizer_state.cull_face, POLYGON_FACE_BACK);

    renderer->rasterizer_apply_state();
    EXPECT_EQ(recorder->take(), GlCalls({"glEnable(GL_CULL_FACE)", "glCullFace(GL_FRONT)",
                                         "glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)",
                                         "glEnable(GL_MULTISAMPLE)", "glPolygonOffset(0, 0)"}));
    glGetIntegerv(GL_CULL_FACE_MODE, &face);
    EXPECT_EQ(face, GL_FRONT);
    EXPECT_EQ(renderer->rasterizer_state.cull_face, POLYGON_FACE_FRONT);
    EXPECT_TRUE(renderer->rasterizer_state.cull_enabled);
    EXPECT_EQ(renderer->rasterizer_state.polygon_mode, POLYGON_MODE_LINE);
    EXPECT_TRUE(renderer->rasterizer_state.msaa_enabled);
}

TEST_P(RendererOpenGLState, applies_defaults_when_nothing_was_set) {
    renderer->rasterizer_apply_state();
    EXPECT_EQ(recorder->take(), GlCalls({"glDisable(GL_CULL_FACE)", "glCullFace(GL_BACK)",
                                         "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
                                         "glDisable(GL_MULTISAMPLE)", "glPolygonOffset(0, 0)"}));
}

TEST_P(RendererOpenGLState, sends_the_whole_rasterizer_state_each_time) {
    renderer->rasterizer_apply_state();
    const GlCalls first = recorder->take();
    renderer->rasterizer_apply_state();
    EXPECT_EQ(recorder->take(), first);
}

TEST_P(RendererOpenGLState, sends_the_depth_bias_at_once_and_again_when_applied) {
    renderer->rasterizer_set_depth_bias(1.0f, 2.0f);
    EXPECT_EQ(recorder->take(), GlCalls({"glPolygonOffset(1, 2)"}));
    EXPECT_EQ(renderer->pending_rasterizer_state.depth_bias_factor, 1.0f);
    EXPECT_EQ(renderer->pending_rasterizer_state.depth_bias_units, 2.0f);
    EXPECT_EQ(renderer->rasterizer_state.depth_bias_units, 0.0f);
    renderer->rasterizer_apply_state();
    EXPECT_EQ(recorder->take().back(), "glPolygonOffset(1, 2)");
    EXPECT_EQ(renderer->rasterizer_state.depth_bias_factor, 1.0f);
    EXPECT_EQ(renderer->rasterizer_state.depth_bias_units, 2.0f);
}

TEST_P(RendererOpenGLState, never_sends_the_winding_of_front_faces) {
    renderer->pending_rasterizer_state.front_ccw = false;
    renderer->rasterizer_apply_state();
    EXPECT_EQ(recorder->count("glFrontFace"), 0);
    EXPECT_TRUE(renderer->rasterizer_state.front_ccw);
}

TEST_P(RendererOpenGLState, maps_unknown_rasterizer_values_to_the_other_row) {
    renderer->rasterizer_set_cull_face(static_cast<RENDERER_POLYGON_FACE>(9));
    renderer->rasterizer_set_polygon_mode(static_cast<RENDERER_POLYGON_FACE>(-1),
                                          static_cast<RENDERER_POLYGON_MODE>(3));
    renderer->rasterizer_apply_state();
    EXPECT_EQ(recorder->take(), GlCalls({"glDisable(GL_CULL_FACE)", "glCullFace(GL_FRONT_AND_BACK)",
                                         "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
                                         "glDisable(GL_MULTISAMPLE)", "glPolygonOffset(0, 0)"}));
}

} // namespace
} // namespace orvex_test
