// Runs with ORVEX_TELL_MISUSE=1 in its environment.

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/math/vec4.h"
#include "orvex/scene/camera.h"
#include "orvex/scene/light.h"
#include "orvex/scene/resource_mgr.h"
#include "orvex/scene/scene.h"
#include "orvex/scene/scene_mgr.h"
#include "orvex/scene/window.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// What a host may get wrong with.
struct Stage {
    Camera* camera = new Camera;
    Light* light = new Light;
    ResourceMgr manager;
    Scene* scene = SceneMgr::get()->create_scene();

    Stage() = default;
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage() {
        SceneMgr::get()->kill_scene(nullptr, scene);
        camera->kill(nullptr, nullptr);
        light->kill(nullptr, nullptr);
    }
};

struct Misuse {
    const char* told;
    std::function<void(Stage& stage)> commit;
};

void PrintTo(const Misuse& row, std::ostream* out) {
    *out << row.told;
}

using S = Stage;

// clang-format off
const Misuse rows[] = {
    {"Node::add_child: a null child", [](S& s) { s.camera->add_child(nullptr); }},
    {"Node::add_child: the node itself, or one that stands above it", [](S& s) { s.camera->add_child(s.camera); }},
    {"Node::remove_child: a null child", [](S& s) { EXPECT_EQ(s.camera->remove_child(nullptr), -1); }},
    {"Node::set_name: a null name", [](S& s) { s.camera->set_name(nullptr); }},
    {"Camera::set_fov: an angle outside 0 to 180 degrees", [](S& s) { s.camera->set_fov(180.0f); EXPECT_EQ(s.camera->get_fov(), 180.0f); }},
    {"Camera::set_znear: a plane that is not before the eye", [](S& s) { s.camera->set_znear(0.0f); EXPECT_EQ(s.camera->get_znear(), 0.0f); }},
    {"Camera::set_aspect: a ratio that is not above 0", [](S& s) { s.camera->set_aspect(-1.0f); EXPECT_EQ(s.camera->get_aspect(), -1.0f); }},
    {"Camera::update_direction: a direction of no length", [](S& s) { s.camera->update_direction(vec4::ZERO); }},
    {"Camera::bind: a null renderer", [](S& s) { s.camera->bind(nullptr, true, true, true, true, true); }},
    {"Light::bind: a null renderer", [](S& s) { s.light->bind(nullptr); }},
    {"Object::add_material: a null material", [](S& s) { EXPECT_FALSE(s.light->add_material(nullptr, nullptr)); }},
    {"Object::remove_material: a material that the object does not hold", [](S& s) { EXPECT_FALSE(s.light->remove_material(nullptr, nullptr)); }},
    {"ResourceMgr::add_resource: a null resource", [](S& s) { EXPECT_FALSE(s.manager.add_resource(nullptr)); }},
    {"ResourceMgr::remove_resource: a null resource", [](S& s) { EXPECT_FALSE(s.manager.remove_resource(nullptr, nullptr)); }},
    {"Scene::set_name: a null name", [](S& s) { s.scene->set_name(nullptr); }},
    {"Scene::add_node: a null node", [](S& s) { EXPECT_FALSE(s.scene->add_node(nullptr)); }},
    {"Scene::add_node: a scene that was cleaned up", [](S& s) { SceneMgr::get()->cleanup_scene(nullptr, s.scene); EXPECT_FALSE(s.scene->add_node(s.camera)); }},
    {"Scene::remove_node: a null node", [](S& s) { EXPECT_FALSE(s.scene->remove_node(nullptr)); }},
    {"SceneMgr::kill_scene: a scene that is not the manager's", [](S&) { EXPECT_FALSE(SceneMgr::get()->kill_scene(nullptr, nullptr)); }},
    {"SceneMgr::cleanup_scene: a null scene", [](S&) { EXPECT_FALSE(SceneMgr::get()->cleanup_scene(nullptr, nullptr)); }},
    {"SceneMgr::release_scene_node: a null node", [](S&) { EXPECT_FALSE(SceneMgr::get()->release_scene_node(nullptr, nullptr)); }},
    {"SceneMgr::get_scene: an id that no scene has", [](S&) { EXPECT_FALSE(SceneMgr::get()->get_scene(-1)); }},
    {"Window::render: a window without a scene renderer", [](S&) { EXPECT_FALSE(Window().render()); }},
};
// clang-format on

class SceneMisuse : public testing::TestWithParam<Misuse> {};

INSTANTIATE_TEST_SUITE_P(Rows, SceneMisuse, testing::ValuesIn(rows));

TEST_P(SceneMisuse, is_told_and_has_its_quiet_result) {
    const Misuse& row = GetParam();
    Stage stage;
    const LogCapture log;
    row.commit(stage);
    EXPECT_EQ(log.messages(), std::vector<std::string>{std::string("<!> misuse: ") + row.told});
}

} // namespace

} // namespace orvex_test
