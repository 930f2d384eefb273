#include "orvex/scene/window.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/scene/camera.h"
#include "orvex/scene/object.h"
#include "orvex/scene/scene_mgr.h"
#include "orvex/scene/scene_renderer.h"
#include "orvex/scene/viewport.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// Notes what it is asked to draw, and what the camera's viewport was then.
class NotingSceneRenderer : public SceneRenderer {
public:
    struct Call {
        Renderer* renderer;
        Scene* scene;
        Camera* camera;
        Node* start;
        std::vector<int> viewport;
    };
    std::vector<Call> calls;
    bool result = true;

    bool render_scene(Renderer* renderer, Scene* scene, Camera* camera, Node* node) override {
        std::vector<int> viewport;
        if (camera) {
            const Viewport& v = camera->get_viewport();
            viewport = {v.x, v.y, v.width, v.height};
        }
        calls.push_back({renderer, scene, camera, node, viewport});
        return result;
    }
};

class WindowTest : public testing::Test {
protected:
    orvex_test::FakeRenderer renderer;
    NotingSceneRenderer scene_renderer;
    Camera* camera = new Camera;
    Scene* scene = SceneMgr::get()->create_scene();
    orvex::Window window;

    ~WindowTest() override {
        camera->release(nullptr, nullptr);
        SceneMgr::get()->kill_scene(nullptr, scene);
    }
};

TEST_F(WindowTest, draws_nothing_without_a_scene_renderer) {
    EXPECT_FALSE(window.render());
    window.set_camera(camera);
    window.set_viewport(1, 2, 3, 4);
    EXPECT_FALSE(window.render());
    EXPECT_EQ(camera->get_viewport().width, 0);
}

TEST_F(WindowTest, gives_its_viewport_to_the_camera_and_draws_its_scene) {
    Object* start = new Object;
    window.set_layer(7);
    window.set_camera(camera);
    window.set_viewport(1, 2, 30, 40);
    window.set_renderer(&renderer);
    window.set_render_window(nullptr);
    window.set_start_node(start);
    window.set_scene(scene);
    window.set_scene_renderer(&scene_renderer);
    EXPECT_TRUE(window.render());
    ASSERT_EQ(scene_renderer.calls.size(), 1u);
    const NotingSceneRenderer::Call& call = scene_renderer.calls[0];
    EXPECT_EQ(call.renderer, &renderer);
    EXPECT_EQ(call.scene, scene);
    EXPECT_EQ(call.camera, camera);
    EXPECT_EQ(call.start, start);
    EXPECT_EQ(call.viewport, std::vector<int>({1, 2, 30, 40}));
    start->release(nullptr, nullptr);
}

TEST_F(WindowTest, passes_over_a_null_camera) {
    window.set_scene(scene);
    window.set_scene_renderer(&scene_renderer);
    EXPECT_TRUE(window.render());
    ASSERT_EQ(scene_renderer.calls.size(), 1u);
    EXPECT_EQ(scene_renderer.calls[0].camera, nullptr);
    EXPECT_EQ(scene_renderer.calls[0].renderer, nullptr);
    EXPECT_EQ(scene_renderer.calls[0].start, nullptr);
}

TEST_F(WindowTest, returns_true_whatever_the_scene_renderer_says) {
    scene_renderer.result = false;
    window.set_scene_renderer(&scene_renderer);
    EXPECT_TRUE(window.render());
}

TEST_F(WindowTest, gives_an_empty_viewport_at_first) {
    camera->set_viewport(5, 6, 7, 8);
    window.set_camera(camera);
    window.set_scene_renderer(&scene_renderer);
    EXPECT_TRUE(window.render());
    EXPECT_EQ(scene_renderer.calls[0].viewport, std::vector<int>({0, 0, 0, 0}));
}

TEST_F(WindowTest, binds_the_camera_with_the_engines_own_scene_renderer) {
    SceneRenderer real;
    window.set_renderer(&renderer);
    window.set_camera(camera);
    window.set_viewport(1, 2, 30, 40);
    window.set_scene(scene);
    window.set_scene_renderer(&real);
    EXPECT_TRUE(window.render());
    ASSERT_FALSE(renderer.calls.empty());
    EXPECT_EQ(renderer.calls[0], "set_viewport(1, 2, 30, 40)");
}

} // namespace

} // namespace orvex_test
