#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/orvex/renderer/opengl/started_renderer.h"

namespace orvex_test {

using namespace orvex;
namespace {

class RendererOpenGLOperations : public StartedRendererTest {};
ORVEX_BOTH_PROFILES(RendererOpenGLOperations);

TEST_P(RendererOpenGLOperations, finds_no_target_where_there_is_none) {
    EXPECT_FALSE(renderer->kill_render_target(nullptr));
    EXPECT_FALSE(renderer->kill_render_target(5));
    EXPECT_FALSE(renderer->kill_all_render_targets());
    EXPECT_EQ(renderer->get_render_target(5), nullptr);
    EXPECT_FALSE(renderer->render_target_bind_color_tex(nullptr, 0, 0));
    EXPECT_FALSE(renderer->render_target_bind_depth_tex(nullptr, 0));
    EXPECT_TRUE(recorder->calls().empty());
}

TEST_P(RendererOpenGLOperations, draws_no_null_pools_and_polylines) {
    EXPECT_TRUE(renderer->vertex_pool_render(nullptr));
    EXPECT_FALSE(renderer->vertex_pool_render_prepare(nullptr));
    EXPECT_FALSE(renderer->vertex_pool_render_draw(nullptr));
    EXPECT_FALSE(renderer->vertex_pool_kill(nullptr));
    EXPECT_FALSE(renderer->polyline_vb_prepare(nullptr));
    EXPECT_FALSE(renderer->polyline_vb_draw(nullptr, 0, 0));
    EXPECT_FALSE(renderer->polyline_vb_finish(nullptr));
    EXPECT_FALSE(renderer->polyline_vb_kill(nullptr));
    EXPECT_TRUE(recorder->calls().empty());
}

std::vector<RenderWindow*> windows_of(const RendererOpenGL& renderer) {
    std::vector<RenderWindow*> windows;
    for (const auto& window : renderer.render_windows)
        windows.push_back(window.get());
    return windows;
}

TEST(RendererOpenGLWindows, are_listed_until_killed) {
    RendererOpenGL renderer;
    RendererOpenGL other;
    RenderWindow* const first = renderer.create_render_window();
    RenderWindow* const second = renderer.create_render_window();
    RenderWindow* const foreign = other.create_render_window();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(windows_of(renderer), (std::vector<RenderWindow*>{first, second}));
    EXPECT_FALSE(renderer.kill_render_window(nullptr));
    EXPECT_FALSE(renderer.kill_render_window(foreign));
    EXPECT_TRUE(renderer.kill_render_window(first));
    EXPECT_FALSE(renderer.kill_render_window(first));
    EXPECT_EQ(windows_of(renderer), (std::vector<RenderWindow*>{second}));
    EXPECT_FALSE(renderer.kill_all_render_windows());
    EXPECT_TRUE(renderer.render_windows.empty());
    EXPECT_FALSE(renderer.kill_all_render_windows());
}

} // namespace
} // namespace orvex_test
