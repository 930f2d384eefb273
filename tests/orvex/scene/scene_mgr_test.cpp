#include "orvex/scene/scene_mgr.h"

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/assets/materials/material.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/scene/object.h"
#include "orvex/scene/scene.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

namespace {

using orvex::GpuProgramMgr;
using orvex::Material;
using orvex::MaterialMgr;
using orvex::Node;
using orvex::Renderer;
using orvex::Resource;
using orvex::ResourceMgr;
using orvex::Scene;
using orvex::SceneMgr;
using orvex::Texture;
using orvex::TextureMgr;
using orvex_test::FakeRenderer;

using Calls = std::vector<std::string>;

/// Notes its clean-up and its end, and runs what a test wants at its clean-up.
class NotingNode : public Node {
public:
    NotingNode(const char* name, Calls& calls)
        : calls(calls) {
        set_name(name);
    }
    ~NotingNode() override { calls.push_back(std::string(get_name()) + " deleted"); }
    bool _cleanup(Renderer* renderer) override {
        calls.push_back(get_name() + std::string(renderer ? " with renderer" : " without"));
        if (at_cleanup)
            at_cleanup();
        return true;
    }

    std::function<void()> at_cleanup;

private:
    Calls& calls;
};

class SceneMgrTest : public testing::Test {
protected:
    ~SceneMgrTest() override { mgr->kill_all_scenes(nullptr); }

    SceneMgr* mgr = SceneMgr::get();
    FakeRenderer renderer;
    Calls calls;
};

TEST_F(SceneMgrTest, is_one_for_the_process) {
    EXPECT_EQ(SceneMgr::get(), mgr);
    EXPECT_TRUE(mgr->init(nullptr));
    EXPECT_EQ(mgr->get_num_scenes(), 0u);
}

TEST_F(SceneMgrTest, keeps_scenes_in_the_order_of_their_making) {
    Scene* first = mgr->create_scene();
    Scene* second = mgr->create_scene();
    EXPECT_EQ(mgr->get_num_scenes(), 2u);
    EXPECT_EQ(mgr->get_scene_by_index(0), first);
    EXPECT_EQ(mgr->get_scene_by_index(1), second);
    EXPECT_EQ(mgr->get_scene_by_index(2), nullptr);
    EXPECT_EQ(mgr->get_scene(second->get_id()), second);
    EXPECT_EQ(mgr->get_scene(0), nullptr);
}

TEST_F(SceneMgrTest, kill_scene_ends_its_nodes_and_drops_its_entry) {
    Scene* first = mgr->create_scene();
    Scene* second = mgr->create_scene();
    first->add_node(new NotingNode("node", calls));
    EXPECT_TRUE(mgr->kill_scene(&renderer, first));
    EXPECT_EQ(calls, (Calls{"node with renderer", "node deleted"}));
    EXPECT_EQ(mgr->get_num_scenes(), 1u);
    EXPECT_EQ(mgr->get_scene_by_index(0), second);
}

TEST_F(SceneMgrTest, kill_scene_refuses_a_scene_of_no_manager) {
    Scene stranger;
    EXPECT_FALSE(mgr->kill_scene(nullptr, &stranger));
    EXPECT_FALSE(mgr->kill_scene(nullptr, nullptr));
    EXPECT_NE(stranger.get_root(), nullptr);
    mgr->cleanup_scene(nullptr, &stranger);
}

TEST_F(SceneMgrTest, cleanup_kills_all_scenes_first_to_last) {
    mgr->create_scene()->add_node(new NotingNode("first", calls));
    mgr->create_scene()->add_node(new NotingNode("second", calls));
    EXPECT_TRUE(mgr->cleanup(nullptr));
    EXPECT_EQ(calls, (Calls{"first without", "first deleted", "second without", "second deleted"}));
    EXPECT_EQ(mgr->get_num_scenes(), 0u);
    EXPECT_TRUE(mgr->kill_all_scenes(nullptr));
}

TEST_F(SceneMgrTest, a_hook_finds_the_scenes_that_still_live) {
    Scene* const first = mgr->create_scene();
    Scene* const second = mgr->create_scene();
    Scene* const third = mgr->create_scene();
    const int ids[] = {first->get_id(), second->get_id(), third->get_id()};
    std::vector<const Scene*> found;
    auto* const node = new NotingNode("node", calls);
    node->at_cleanup = [&] {
        for (const int id : ids)
            found.push_back(mgr->get_scene(id));
        for (unsigned long i = 0; i < mgr->get_num_scenes(); ++i)
            EXPECT_TRUE(mgr->get_scene_by_index(i));
        EXPECT_EQ(mgr->get_num_scenes(), 2u);
    };
    second->add_node(node);
    EXPECT_TRUE(mgr->kill_all_scenes(nullptr));
    EXPECT_EQ(found, (std::vector<const Scene*>{nullptr, second, third}));
}

TEST_F(SceneMgrTest, kills_a_scene_that_was_cleaned_before) {
    Scene* scene = mgr->create_scene();
    scene->add_node(new NotingNode("node", calls));
    EXPECT_TRUE(mgr->cleanup_scene(nullptr, scene));
    EXPECT_TRUE(mgr->cleanup_scene(nullptr, scene));
    EXPECT_TRUE(mgr->kill_scene(nullptr, scene));
    EXPECT_EQ(calls, (Calls{"node without", "node deleted"}));
    EXPECT_FALSE(mgr->cleanup_scene(nullptr, nullptr));
}

TEST_F(SceneMgrTest, a_hook_that_cleans_the_scene_up_again_releases_nothing_twice) {
    Scene* scene = mgr->create_scene();
    NotingNode* node = new NotingNode("node", calls);
    node->at_cleanup = [&] { EXPECT_TRUE(mgr->cleanup_scene(nullptr, scene)); };
    scene->add_node(node);
    mgr->cleanup_scene(nullptr, scene);
    EXPECT_EQ(calls, (Calls{"node without", "node deleted"}));
}

TEST_F(SceneMgrTest, release_scene_node_goes_depth_first) {
    Node* root = new NotingNode("root", calls);
    Node* child = new NotingNode("child", calls);
    child->add_child(new NotingNode("leaf", calls));
    root->add_child(child);
    root->add_child(new NotingNode("last", calls));
    EXPECT_TRUE(mgr->release_scene_node(&renderer, root));
    EXPECT_EQ(calls,
              (Calls{"leaf with renderer", "leaf deleted", "child with renderer", "child deleted",
                     "last with renderer", "last deleted", "root with renderer", "root deleted"}));
    EXPECT_FALSE(mgr->release_scene_node(&renderer, nullptr));
}

TEST_F(SceneMgrTest, a_node_held_elsewhere_loses_one_reference_and_its_children) {
    Node* held = new NotingNode("held", calls);
    held->add_ref();
    held->add_child(new NotingNode("child", calls));
    Scene* scene = mgr->create_scene();
    scene->add_node(held);
    mgr->kill_scene(nullptr, scene);
    EXPECT_EQ(held->get_ref(), 1);
    EXPECT_EQ(held->get_num_children(), 0u);
    EXPECT_EQ(calls, (Calls{"child without", "child deleted"}));
    held->kill(nullptr, nullptr);
}

TEST_F(SceneMgrTest, survives_a_child_that_ends_its_parent) {
    NotingNode* parent = new NotingNode("parent", calls);
    NotingNode* child = new NotingNode("child", calls);
    parent->add_child(child);
    child->add_ref();
    child->at_cleanup = [&] { parent->_kill(nullptr); };
    child->_release(nullptr);
    EXPECT_TRUE(mgr->release_scene_node(nullptr, parent));
    EXPECT_EQ(calls, (Calls{"child without", "parent without", "parent deleted", "child deleted"}));
}

/// Puts a managed resource into a scene, kills the scene, and expects that the manager gave its
/// entry up and that one reference is left for the owner.
void expect_given_back(ResourceMgr& manager, Resource* resource, Renderer* renderer) {
    ASSERT_TRUE(manager.has_resource(resource));
    Scene* scene = SceneMgr::get()->create_scene();
    scene->add_node(resource);
    EXPECT_EQ(resource->get_ref(), 2);
    SceneMgr::get()->kill_scene(renderer, scene);
    EXPECT_FALSE(manager.has_resource(resource));
    EXPECT_EQ(resource->get_ref(), 1);
    EXPECT_EQ(resource->release(nullptr, nullptr), 0);
}

TEST_F(SceneMgrTest, resources_are_given_back_through_their_managers) {
    expect_given_back(*GpuProgramMgr::get(), GpuProgramMgr::get()->create_gpu_program("program"),
                      nullptr);
    expect_given_back(*TextureMgr::get(), TextureMgr::get()->create_texture(), nullptr);
    expect_given_back(*MaterialMgr::get(), MaterialMgr::get()->create_material("material"),
                      nullptr);
}

TEST_F(SceneMgrTest, kill_all_scenes_gives_a_texture_back_through_its_manager) {
    Texture* texture = TextureMgr::get()->create_texture();
    mgr->create_scene()->add_node(texture);
    EXPECT_TRUE(mgr->kill_all_scenes(&renderer));
    EXPECT_FALSE(TextureMgr::get()->has_resource(texture));
    EXPECT_EQ(texture->get_ref(), 1);
    texture->release(nullptr, nullptr);
}

TEST_F(SceneMgrTest, a_2d_texture_is_a_texture_though_its_own_type_number_is_a_program_s_tag) {
    Texture* texture = TextureMgr::get()->create_texture_2d(2, 2, orvex::PF_RGBA_U8);
    ASSERT_EQ(texture->get_type(), static_cast<int>(orvex::NODE_TYPE_GPU_PROGRAM));
    expect_given_back(*TextureMgr::get(), texture, nullptr);
}

TEST_F(SceneMgrTest, a_resource_of_another_renderer_stays_with_its_manager) {
    Material* material = MaterialMgr::get()->create_material("material");
    material->set_renderer_id(renderer.getid() + 1);
    Scene* scene = mgr->create_scene();
    scene->add_node(material);
    mgr->kill_scene(&renderer, scene);
    EXPECT_TRUE(MaterialMgr::get()->has_resource(material));
    EXPECT_EQ(material->get_ref(), 2);
    material->release(nullptr, nullptr);
    MaterialMgr::get()->release_resource(nullptr, material, nullptr);
}

TEST_F(SceneMgrTest, a_node_that_only_bears_the_tag_of_a_resource_is_released_as_a_node) {
    for (const orvex::NODE_TYPE tag :
         {orvex::NODE_TYPE_GPU_PROGRAM, orvex::NODE_TYPE_TEXTURE, orvex::NODE_TYPE_MATERIAL}) {
        Node* liar = new NotingNode("liar", calls);
        liar->set_type(tag);
        EXPECT_TRUE(mgr->release_scene_node(nullptr, liar));
    }
    EXPECT_EQ(calls.size(), 6u);
}

TEST_F(SceneMgrTest, scenes_are_made_and_killed_on_several_threads) {
    constexpr int each = 50;
    const auto work = [this] {
        for (int i = 0; i < each; ++i) {
            Scene* scene = mgr->create_scene();
            if (i % 2 == 0)
                mgr->kill_scene(nullptr, scene);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(mgr->get_num_scenes(), static_cast<unsigned long>(each));
}

} // namespace

} // namespace orvex_test
