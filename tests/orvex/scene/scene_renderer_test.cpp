#include "orvex/scene/scene_renderer.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/scene/camera.h"
#include "orvex/scene/object.h"
#include "orvex/scene/scene.h"
#include "orvex/scene/scene_mgr.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

namespace {

using orvex::Camera;
using orvex::Mesh;
using orvex::Model;
using orvex::Node;
using orvex::Object;
using orvex::Renderer;
using orvex::Scene;
using orvex::SceneMgr;
using orvex::SceneRenderer;
using orvex_test::FakeRenderer;

using Calls = std::vector<std::string>;

/// Draws by telling the renderer a line width, which shows when and how often it was drawn.
template<class Base>
class Drawn : public Base {
public:
    explicit Drawn(float width)
        : width(width) {}
    void _render(Renderer* renderer) override { renderer->set_line_width(width); }

private:
    float width;
};

/// A tag of its own, as any class that derives from Object has.
class TaggedObject : public Drawn<Object> {
public:
    explicit TaggedObject(float width)
        : Drawn(width) {
        set_type(orvex::NODE_TYPE_POLYLINE);
    }
};

class SceneRendererTest : public testing::Test {
protected:
    ~SceneRendererTest() override { SceneMgr::get()->cleanup_scene(nullptr, &scene); }

    FakeRenderer renderer;
    SceneRenderer scene_renderer;
    Scene scene;
};

TEST_F(SceneRendererTest, init_and_cleanup_return_true) {
    EXPECT_TRUE(scene_renderer.init(&renderer));
    EXPECT_TRUE(scene_renderer.cleanup(nullptr));
    EXPECT_TRUE(renderer.calls.empty());
}

TEST_F(SceneRendererTest, draws_plain_objects_with_their_subtrees_and_nothing_else) {
    Object* group = new Drawn<Object>(1);
    group->add_child(new Drawn<Mesh>(2));
    scene.add_node(new Drawn<Mesh>(3));
    scene.add_node(new Drawn<Model>(4));
    scene.add_node(new TaggedObject(5));
    scene.add_node(new Drawn<Node>(6));
    scene.add_node(group);
    EXPECT_TRUE(scene_renderer.render_scene(&renderer, &scene, nullptr, nullptr));
    EXPECT_EQ(renderer.calls, (Calls{"set_line_width(1)", "set_line_width(2)"}));
}

TEST_F(SceneRendererTest, a_removed_plain_object_is_still_drawn) {
    Object* object = new Drawn<Object>(1);
    scene.add_node(object);
    scene.remove_node(object);
    scene_renderer.render_scene(&renderer, &scene, nullptr, nullptr);
    EXPECT_EQ(renderer.calls, Calls{"set_line_width(1)"});
}

TEST_F(SceneRendererTest, hidden_objects_are_not_drawn) {
    Object* object = new Drawn<Object>(1);
    object->set_render_state(false, nullptr);
    scene.add_node(object);
    scene_renderer.render_scene(&renderer, &scene, nullptr, nullptr);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST_F(SceneRendererTest, a_given_node_is_the_start_and_is_not_drawn_itself) {
    Object* start = new Drawn<Object>(1);
    start->add_child(new Drawn<Object>(2));
    scene.add_node(start);
    scene.add_node(new Drawn<Object>(3));
    EXPECT_TRUE(scene_renderer.render_scene(&renderer, &scene, nullptr, start));
    EXPECT_EQ(renderer.take_calls(), Calls{"set_line_width(2)"});
    EXPECT_TRUE(scene_renderer.render_scene(&renderer, nullptr, nullptr, start));
    EXPECT_EQ(renderer.take_calls(), Calls{"set_line_width(2)"});
}

TEST_F(SceneRendererTest, each_child_is_rendered_with_itself_as_the_node) {
    class Asking : public Object {
    public:
        void render(Renderer*, Node* node) override { asked = node; }
        Node* asked = nullptr;
    };
    Asking* object = new Asking;
    scene.add_node(object);
    scene_renderer.render_scene(&renderer, &scene, nullptr, nullptr);
    EXPECT_EQ(object->asked, object);
}

TEST_F(SceneRendererTest, the_camera_is_bound_before_anything_is_drawn) {
    Camera* camera = new Camera;
    scene.add_node(new Drawn<Object>(1));
    camera->bind(&renderer, true, true, true, true, true);
    Calls expected = renderer.take_calls();
    EXPECT_FALSE(expected.empty());
    expected.emplace_back("set_line_width(1)");
    scene_renderer.render_scene(&renderer, &scene, camera, nullptr);
    EXPECT_EQ(renderer.calls, expected);
    camera->kill(nullptr, nullptr);
}

TEST_F(SceneRendererTest, with_neither_scene_nor_node_only_the_camera_is_bound) {
    Camera* camera = new Camera;
    EXPECT_TRUE(scene_renderer.render_scene(&renderer, nullptr, camera, nullptr));
    EXPECT_EQ(renderer.count("set_viewport"), 1);
    renderer.take_calls();
    EXPECT_TRUE(scene_renderer.render_scene(&renderer, nullptr, nullptr, nullptr));
    EXPECT_TRUE(renderer.calls.empty());
    camera->kill(nullptr, nullptr);
}

TEST_F(SceneRendererTest, a_scene_without_a_root_draws_nothing) {
    SceneMgr::get()->cleanup_scene(nullptr, &scene);
    EXPECT_TRUE(scene_renderer.render_scene(&renderer, &scene, nullptr, nullptr));
    EXPECT_TRUE(renderer.calls.empty());
}

} // namespace

} // namespace orvex_test
