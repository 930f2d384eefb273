/// @file
/// A host may be built without type information, as games and plugins often are: the engine asks
/// its objects for none.

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "no_rtti_classes.h"
#include "orvex/assets/materials/material.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/image_codec.h"
#include "orvex/base/loader_3d.h"
#include "orvex/base/plugin_mgr.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/geometry/rays/ray_caster.h"
#include "orvex/kernel/aux.h"
#include "orvex/kernel/kernel.h"
#include "orvex/renderer/render_window.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/object.h"
#include "orvex/scene/scene.h"
#include "orvex/scene/scene_mgr.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;

namespace {

class NoRttiTest : public testing::Test {
protected:
    ~NoRttiTest() override { plugins->unload_all_plugins(); }

    /// Ends a model as a host does.
    static bool end(Model* model) { return model && model->kill(nullptr, nullptr); }

    PluginMgr* const plugins = PluginMgr::get();
};

TEST_F(NoRttiTest, objects_of_a_scene_are_released) {
    Scene* const scene = SceneMgr::get()->create_scene();
    ASSERT_TRUE(scene->add_node(new_plain_object()));
    EXPECT_TRUE(SceneMgr::get()->kill_scene(nullptr, scene));
}

TEST_F(NoRttiTest, a_loader_is_asked) {
    plugins->insert_plugin(new_plain_loader());
    EXPECT_TRUE(end(aux::load_model_from_file("a model", "", "")));
}

TEST_F(NoRttiTest, a_loader_of_a_module_is_asked) {
    ASSERT_GT(plugins->load_plugin(ORVEX_TEST_MODULE_DIR "/no_rtti_loader.so", false), 0);
    EXPECT_TRUE(end(aux::load_model_from_file("a model", "", "")));
}

TEST_F(NoRttiTest, a_codec_is_registered) {
    plugins->insert_plugin(new_plain_codec());
    EXPECT_EQ(TextureMgr::get()->register_all_image_codec_plugins(), 1u);
}

TEST_F(NoRttiTest, a_mesh_is_hit_by_rays) {
    Mesh* const mesh = new_plain_mesh();
    mesh->build(nullptr);
    mesh->update_bounding_sphere(nullptr);
    Ray ray;
    ray.origin = vec4(0.1f, 0.2f, 10.0f, 1.0f);
    ray.direction = vec4(0.0f, 0.0f, -1.0f, 0.0f);
    RayObjectIntersection hit;
    EXPECT_TRUE(RayCaster().cast_ray_object(ray, mesh, hit));
    mesh->kill(nullptr, nullptr);
}

TEST_F(NoRttiTest, a_renderer_is_found) {
    Renderer* const renderer = new_plain_renderer();
    renderer->set_type(PLUGIN_TYPE_RENDERER);
    renderer->set_core_plugin_state(true);
    plugins->insert_plugin(renderer);
    EXPECT_EQ(Kernel::get()->load_core_opengl_renderer_plugin(false), renderer);
}

TEST_F(NoRttiTest, a_texture_is_released) {
    TextureMgr* const textures = TextureMgr::get();
    ASSERT_TRUE(textures->add_resource(new_plain_texture()));
    EXPECT_TRUE(textures->release_all_textures(nullptr, nullptr));
    EXPECT_EQ(textures->get_num_resources(), 0u);
}

/// Notes when binds are kept.
class KeepingRenderer : public FakeRenderer {
public:
    bool keep_binds(bool state) override {
        said.push_back(state);
        note_kept_binds(state);
        return !state;
    }
    std::vector<bool> said;
};

TEST_F(NoRttiTest, a_texture_of_a_hosts_is_bound_with_all_restored_where_binds_are_kept) {
    KeepingRenderer renderer;
    renderer.set_elided_binds_state(true);
    renderer.keep_binds(true);
    auto* const material = new Material;
    material->add_texture(new_plain_texture());
    material->bind_textures(&renderer);
    EXPECT_EQ(renderer.said, (std::vector{true, false, true}));
    material->release(nullptr, nullptr);
}

TEST_F(NoRttiTest, an_object_of_a_hosts_is_drawn_with_all_restored_where_binds_are_kept) {
    KeepingRenderer renderer;
    renderer.set_elided_binds_state(true);
    Object group, last;
    const std::unique_ptr<Object> object(new_plain_object());
    group.add_child(object.get());
    group.add_child(&last);
    group.render(&renderer, nullptr);
    EXPECT_EQ(renderer.said, (std::vector{true, false, true, false}));
}

TEST_F(NoRttiTest, a_window_of_a_hosts_is_no_parent_to_share_with) {
    Renderer* const renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    const std::unique_ptr<RenderWindow> parent(new_plain_window());
    RenderWindow* const window = renderer->create_render_window();
    EXPECT_TRUE(window->initialize(nullptr, nullptr, 16, 16, "Off", parent.get(), nullptr));
    EXPECT_TRUE(renderer->kill_render_window(window));
}

} // namespace
} // namespace orvex_test
