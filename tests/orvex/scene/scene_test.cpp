#include "orvex/scene/scene.h"

#include <string>

#include <gtest/gtest.h>

#include "orvex/scene/object.h"
#include "orvex/scene/scene_mgr.h"

namespace orvex_test {

namespace {

using orvex::Node;
using orvex::Object;
using orvex::Scene;
using orvex::SceneMgr;

/// A scene made by hand, cleaned up as its maker has to.
struct HandMade {
    ~HandMade() { SceneMgr::get()->cleanup_scene(nullptr, &scene); }
    Scene scene;
};

TEST(Scene, a_new_one_is_named_after_its_id_and_has_an_empty_object_as_root) {
    HandMade made;
    EXPECT_EQ(made.scene.get_name(), "scene_" + std::to_string(made.scene.get_id()));
    ASSERT_NE(made.scene.get_root(), nullptr);
    EXPECT_EQ(made.scene.get_root()->get_type(), orvex::NODE_TYPE_OBJECT);
    EXPECT_EQ(made.scene.get_root()->get_num_children(), 0u);
    EXPECT_TRUE(made.scene.init(nullptr));
    EXPECT_TRUE(made.scene.cleanup(nullptr));
    EXPECT_NE(made.scene.get_root(), nullptr);
}

TEST(Scene, takes_a_name_and_ignores_null) {
    HandMade made;
    made.scene.set_name("hall");
    made.scene.set_name(nullptr);
    EXPECT_STREQ(made.scene.get_name(), "hall");
}

TEST(Scene, add_node_puts_a_node_below_the_root_and_holds_it) {
    HandMade made;
    Node* node = new Node;
    EXPECT_TRUE(made.scene.add_node(node));
    EXPECT_EQ(node->get_ref(), 1);
    EXPECT_EQ(node->get_parent(), made.scene.get_root());
    EXPECT_EQ(made.scene.get_root()->get_child(0), node);
    EXPECT_FALSE(made.scene.add_node(nullptr));
}

TEST(Scene, remove_node_only_clears_the_parent) {
    HandMade made;
    Node* node = new Node;
    made.scene.add_node(node);
    EXPECT_TRUE(made.scene.remove_node(node));
    EXPECT_EQ(node->get_parent(), nullptr);
    EXPECT_EQ(node->get_ref(), 1);
    EXPECT_EQ(made.scene.get_root()->get_child(0), node);
    EXPECT_FALSE(made.scene.remove_node(nullptr));
}

TEST(Scene, get_node_searches_the_subtree_of_its_start) {
    HandMade made;
    Node* child = new Node;
    Node* grandchild = new Node;
    Node* other = new Node;
    child->add_child(grandchild);
    made.scene.add_node(child);
    made.scene.add_node(other);
    EXPECT_EQ(made.scene.get_node(grandchild->get_id(), nullptr), grandchild);
    EXPECT_EQ(made.scene.get_node(grandchild->get_id(), child), grandchild);
    EXPECT_EQ(made.scene.get_node(grandchild->get_id(), other), nullptr);
    EXPECT_EQ(made.scene.get_node(made.scene.get_root()->get_id(), nullptr), nullptr);
    EXPECT_EQ(made.scene.get_node(0, nullptr), nullptr);
}

TEST(Scene, without_its_root_it_holds_and_finds_nothing) {
    Scene scene;
    Node node;
    EXPECT_TRUE(SceneMgr::get()->cleanup_scene(nullptr, &scene));
    EXPECT_EQ(scene.get_root(), nullptr);
    EXPECT_FALSE(scene.add_node(&node));
    EXPECT_EQ(scene.get_node(node.get_id(), nullptr), nullptr);
    EXPECT_EQ(node.get_ref(), 0);
}

} // namespace

} // namespace orvex_test
