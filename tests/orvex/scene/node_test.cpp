#include "orvex/scene/node.h"

#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "node_tree.h"
#include "orvex/base/global_id.h"
#include "orvex/base/thread.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/private/node_handle.h"

namespace orvex_test {

namespace {

using orvex::Node;
using orvex::NodeHandle;
using orvex_test::Calls;
using orvex_test::Ended;
using orvex_test::RecordingNode;
using orvex_test::Tree;

TEST(Node, a_new_node_is_named_after_its_id_and_has_the_first_tag) {
    Node node;
    EXPECT_EQ(node.get_name(), "node_" + std::to_string(node.get_id()));
    EXPECT_EQ(node.get_type(), orvex::NODE_TYPE_NODE);
    EXPECT_EQ(node.getid(), node.get_id());
    EXPECT_GE(node.get_id(), 2);
    EXPECT_EQ(node.get_ref(), 0);
    EXPECT_EQ(node.get_parent(), nullptr);
    EXPECT_EQ(node.get_num_children(), 0u);
    EXPECT_EQ(node.get_layer(), 0);
    EXPECT_EQ(node.get_renderer_id(), 0);
    EXPECT_EQ(node.get_user_data_ptr(), nullptr);
    EXPECT_TRUE(node.get_render_state());
}

TEST(Node, ids_come_from_the_process_wide_counter) {
    const Node first;
    const int between = orvex::GenId();
    const Node second;
    EXPECT_LT(first.get_id(), between);
    EXPECT_LT(between, second.get_id());
}

TEST(Node, plain_fields_are_stored_and_read) {
    Node node;
    int mine = 0;
    node.set_layer(-7);
    node.set_renderer_id(12);
    node.set_user_data_ptr(&mine);
    node.set_name("lamp");
    node.set_name(nullptr);
    EXPECT_EQ(node.get_layer(), -7);
    EXPECT_EQ(node.get_renderer_id(), 12);
    EXPECT_EQ(node.get_user_data_ptr(), &mine);
    EXPECT_STREQ(node.get_name(), "lamp");
}

TEST(Node, a_name_may_be_set_from_its_own_text) {
    Node node;
    node.set_name("a name long enough to leave the small buffer of a string");
    node.set_name(node.get_name() + 2);
    EXPECT_STREQ(node.get_name(), "name long enough to leave the small buffer of a string");
}

TEST(Node, tags_stack_up_and_the_last_one_is_the_type) {
    Node node;
    node.set_type(orvex::NODE_TYPE_OBJECT);
    node.set_type(static_cast<orvex::NODE_TYPE>(32));
    EXPECT_EQ(node.get_type(), 32);
    EXPECT_TRUE(node.is_type_of(orvex::NODE_TYPE_NODE));
    EXPECT_TRUE(node.is_type_of(orvex::NODE_TYPE_OBJECT));
    EXPECT_FALSE(node.is_type_of(orvex::NODE_TYPE_MESH));
}

TEST(Node, every_tag_has_its_value) {
    using namespace orvex;
    const std::vector<NODE_TYPE> in_order = {NODE_TYPE_NODE,
                                             NODE_TYPE_RESOURCE,
                                             NODE_TYPE_GPU_PROGRAM,
                                             NODE_TYPE_TEXTURE,
                                             NODE_TYPE_MATERIAL,
                                             NODE_TYPE_OBJECT,
                                             NODE_TYPE_MESH,
                                             NODE_TYPE_MESH_PLANE,
                                             NODE_TYPE_MESH_QUAD,
                                             NODE_TYPE_MESH_QUAD_HUD,
                                             NODE_TYPE_MESH_SPHERE,
                                             NODE_TYPE_MESH_TORUS,
                                             NODE_TYPE_MESH_ELLIPSE,
                                             NODE_TYPE_MESH_TRIANGLE,
                                             NODE_TYPE_MESH_BOX,
                                             NODE_TYPE_MESH_TERRAIN,
                                             NODE_TYPE_MESH_CYLINDER,
                                             NODE_TYPE_MODEL,
                                             NODE_TYPE_CAMERA,
                                             NODE_TYPE_FONT,
                                             NODE_TYPE_VERTEX_POOL,
                                             NODE_TYPE_POLYLINE,
                                             NODE_TYPE_LINE,
                                             NODE_TYPE_POINT,
                                             NODE_TYPE_MINI_SPLINE,
                                             NODE_TYPE_SKYBOX,
                                             NODE_TYPE_ARTIFACT_SCANNER,
                                             NODE_TYPE_PARTICLE_SYSTEM,
                                             NODE_TYPE_PARTICLE_EMITTER,
                                             NODE_TYPE_PARTICLE_ACTION,
                                             NODE_TYPE_LIGHT,
                                             NODE_TYPE_MAD_LED_BAR};
    for (std::size_t i = 0; i < in_order.size(); ++i)
        EXPECT_EQ(in_order[i], static_cast<int>(i));
    EXPECT_EQ(NODE_TYPE_GRAPH2D, 33);
    EXPECT_EQ(NODE_TYPE_CURVE, 34);
}

TEST(Node, references_count_up_and_down_without_ending_the_node) {
    Node node;
    EXPECT_EQ(node.add_ref(), 1);
    EXPECT_EQ(node.add_ref(), 2);
    EXPECT_EQ(node.remove_ref(), 1);
    EXPECT_EQ(node.remove_ref(), 0);
    EXPECT_EQ(node.remove_ref(), -1);
    EXPECT_EQ(node.get_ref(), -1);
}

TEST(Node, is_bound_to_the_thread_that_made_it_until_told_otherwise) {
    Node node;
    EXPECT_TRUE(node.check_thread());
    EXPECT_EQ(node.get_thread(), node.get_thread_ptr());
    EXPECT_EQ(std::as_const(node).get_thread(), node.get_thread());
    EXPECT_EQ(std::as_const(node).get_thread_ptr(), node.get_thread());
    bool seen_elsewhere = true;
    bool bound_elsewhere = false;
    std::thread([&] {
        seen_elsewhere = node.check_thread();
        node.update_thread();
        bound_elsewhere = node.check_thread();
    }).join();
    EXPECT_FALSE(seen_elsewhere);
    EXPECT_TRUE(bound_elsewhere);
    EXPECT_FALSE(node.check_thread());
    EXPECT_TRUE(*node.get_thread() != orvex::Thread());
}

TEST(NodeChildren, add_child_holds_the_child_and_becomes_its_parent) {
    Tree tree;
    EXPECT_EQ(tree.root->get_num_children(), 2u);
    EXPECT_EQ(tree.root->get_child(0), tree.first);
    EXPECT_EQ(tree.root->get_child(1), tree.second);
    EXPECT_EQ(tree.first->get_ref(), 1);
    EXPECT_EQ(tree.first->get_parent(), tree.root);
    tree.root->add_child(nullptr);
    EXPECT_EQ(tree.root->get_num_children(), 2u);
}

TEST(NodeChildren, get_child_past_the_end_is_null) {
    Tree tree;
    EXPECT_EQ(tree.root->get_child(2), nullptr);
    EXPECT_EQ(tree.root->get_child(~0ul), nullptr);
    EXPECT_EQ(tree.leaf->get_child(0), nullptr);
}

TEST(NodeChildren, a_node_may_stand_in_two_lists_and_names_its_last_parent) {
    Tree tree;
    tree.second->add_child(tree.leaf);
    EXPECT_EQ(tree.leaf->get_ref(), 2);
    EXPECT_EQ(tree.leaf->get_parent(), tree.second);
    EXPECT_EQ(tree.first->get_child(0), tree.leaf);
    EXPECT_EQ(tree.second->get_child(0), tree.leaf);
}

TEST(NodeChildren, the_same_child_twice_takes_two_entries_and_two_references) {
    Tree tree;
    tree.first->add_child(tree.leaf);
    EXPECT_EQ(tree.first->get_num_children(), 2u);
    EXPECT_EQ(tree.leaf->get_ref(), 2);
}

TEST(NodeChildren, set_parent_touches_no_list) {
    Calls calls;
    Node other;
    RecordingNode node("node", calls);
    node.set_parent(&other);
    EXPECT_EQ(node.get_parent(), &other);
    EXPECT_EQ(other.get_num_children(), 0u);
    EXPECT_EQ(node.get_ref(), 0);
}

TEST(NodeChildren, clear_children_list_leaves_the_children_alone) {
    Tree tree;
    const Ended first(tree.first);
    const Ended second(tree.second);
    tree.root->clear_children_list();
    EXPECT_EQ(tree.root->get_num_children(), 0u);
    EXPECT_EQ(tree.first->get_ref(), 2);
    EXPECT_EQ(tree.first->get_parent(), tree.root);
    EXPECT_TRUE(tree.calls.empty());
    tree.first->remove_ref();
    tree.second->remove_ref();
}

TEST(NodeChildren, a_node_is_never_put_below_itself) {
    Tree tree;
    tree.root->add_child(tree.root);
    tree.leaf->add_child(tree.root);
    tree.leaf->add_child(tree.first);
    EXPECT_EQ(tree.root->get_num_children(), 2u);
    EXPECT_EQ(tree.leaf->get_num_children(), 0u);
    EXPECT_EQ(tree.root->get_ref(), 0);
    EXPECT_EQ(tree.first->get_ref(), 1);
}

TEST(NodeChildren, a_circle_through_a_list_that_is_not_the_parents_is_refused_too) {
    Tree tree;
    tree.second->add_child(tree.leaf); // leaf's parent is second now, but first lists it still
    tree.leaf->add_child(tree.first);
    EXPECT_EQ(tree.leaf->get_num_children(), 0u);
    EXPECT_EQ(tree.first->get_parent(), tree.root);
}

TEST(NodeChildren, a_subtree_can_be_hung_below_a_node_that_stands_in_a_tree) {
    Tree tree;
    Node* group = new Node;
    group->add_child(new Node);
    tree.second->add_child(group);
    EXPECT_EQ(tree.second->get_child(0), group);
    EXPECT_EQ(group->get_parent(), tree.second);
}

TEST(NodeRemoveChild, a_direct_child_leaves_the_list_in_order_and_answers_its_remaining_count) {
    Tree tree;
    Node* third = new Node;
    tree.root->add_child(third);
    tree.second->add_ref();
    EXPECT_EQ(tree.root->remove_child(tree.second), 1);
    EXPECT_EQ(tree.root->get_num_children(), 2u);
    EXPECT_EQ(tree.root->get_child(0), tree.first);
    EXPECT_EQ(tree.root->get_child(1), third);
    EXPECT_EQ(tree.root->remove_child(third), 0);
    tree.second->kill(nullptr, nullptr);
}

TEST(NodeRemoveChild, a_grandchild_is_reached_through_a_child) {
    Tree tree;
    tree.leaf->add_ref();
    tree.leaf->add_ref();
    EXPECT_EQ(tree.root->remove_child(tree.leaf), 2);
    EXPECT_EQ(tree.first->get_num_children(), 0u);
    tree.leaf->remove_ref();
    EXPECT_EQ(tree.leaf->release(nullptr, nullptr), 0);
}

TEST(NodeRemoveChild, one_that_ends_has_its_cleanup_run_without_a_renderer) {
    Tree tree;
    EXPECT_EQ(tree.root->remove_child(tree.leaf), 0);
    EXPECT_EQ(tree.calls, (Calls{"leaf cleanup", "leaf deleted"}));
}

TEST(NodeRemoveChild, what_is_not_in_the_subtree_answers_minus_one) {
    Tree tree;
    Node stranger;
    EXPECT_EQ(tree.root->remove_child(&stranger), -1);
    EXPECT_EQ(tree.root->remove_child(tree.root), -1);
    EXPECT_EQ(tree.root->remove_child(nullptr), -1);
    EXPECT_TRUE(tree.calls.empty());
}

TEST(NodeFindChild, without_a_node_only_direct_children_are_looked_at) {
    Tree tree;
    EXPECT_EQ(tree.root->find_child("first", nullptr), tree.first);
    EXPECT_EQ(tree.root->find_child("leaf", nullptr), nullptr);
    EXPECT_EQ(tree.root->find_child(tree.second->get_id(), nullptr), tree.second);
    EXPECT_EQ(tree.root->find_child(tree.leaf->get_id(), nullptr), nullptr);
}

TEST(NodeFindChild, with_the_node_itself_the_whole_subtree_is_searched) {
    Tree tree;
    EXPECT_EQ(tree.root->find_child("leaf", tree.root), tree.leaf);
    EXPECT_EQ(tree.root->find_child(tree.leaf->get_id(), tree.root), tree.leaf);
    EXPECT_EQ(tree.root->find_child("root", tree.root), nullptr);
    EXPECT_EQ(tree.root->find_child(0, tree.root), nullptr);
    EXPECT_EQ(tree.root->find_child(nullptr, tree.root), nullptr);
}

TEST(NodeFindChild, what_lies_below_a_second_child_is_found_too) {
    Tree tree;
    Node* const below = new Node;
    below->set_name("below");
    tree.second->add_child(below);
    EXPECT_EQ(tree.root->find_child("below", tree.root), below);
    EXPECT_EQ(tree.root->find_child(below->get_id(), tree.root), below);
}

TEST(NodeFindChild, another_node_adds_what_lies_below_its_children_not_the_children) {
    Tree tree;
    EXPECT_EQ(tree.second->find_child("leaf", tree.root), tree.leaf);
    EXPECT_EQ(tree.second->find_child("first", tree.root), nullptr);
}

TEST(NodeFindChild, direct_children_come_before_deeper_ones) {
    Tree tree;
    tree.leaf->set_name("second");
    EXPECT_EQ(tree.root->find_child("second", tree.root), tree.second);
    tree.first->set_name("second");
    EXPECT_EQ(tree.root->find_child("second", tree.root), tree.first);
}

TEST(NodeParent, is_the_one_that_was_set_last_though_it_leads_back) {
    Node first;
    Node second;
    first.set_parent(&second);
    second.set_parent(&first);
    EXPECT_EQ(second.get_parent(), &first);
    EXPECT_EQ(orvex::node_living_parent(first), &second);
    EXPECT_EQ(orvex::node_living_parent(second), &first);
    first.set_parent(&first);
    EXPECT_EQ(first.get_parent(), &first);
}

TEST(NodeParent, a_child_that_was_taken_out_may_take_its_parent_in) {
    for (const bool by_name : {true, false}) {
        Node* const parent = new Node;
        Node* const child = new Node;
        parent->add_child(child);
        child->add_ref();
        child->add_ref();
        if (by_name)
            EXPECT_EQ(parent->remove_child(child), 2);
        else
            parent->clear_children_list();
        child->add_child(parent);
        EXPECT_EQ(child->get_num_children(), 1u);
        EXPECT_EQ(parent->get_ref(), 1);
        EXPECT_EQ(parent->get_parent(), child);
        while (child->get_ref() > 1)
            child->remove_ref();
        child->kill(nullptr, nullptr);
    }
}

TEST(NodeParent, a_grandchild_that_was_taken_out_may_take_the_root_in) {
    Tree tree;
    tree.leaf->add_ref();
    ASSERT_EQ(tree.first->remove_child(tree.leaf), 1);
    tree.leaf->add_child(tree.root);
    EXPECT_EQ(tree.leaf->get_num_children(), 1u);
    tree.root->add_ref(); // the tree's own end comes later
    EXPECT_EQ(tree.leaf->remove_child(tree.root), 1);
    tree.root->remove_ref();
    tree.leaf->kill(nullptr, nullptr);
}

/// Builds a chain from one end, and takes it down from the other.
class DeepChain : public testing::TestWithParam<bool> {};

TEST_P(DeepChain, grows_at_the_same_cost_at_any_depth) {
    constexpr std::size_t depth = 100000;
    std::vector<Node*> chain;
    for (std::size_t i = 0; i < depth; ++i)
        chain.push_back(new Node);
    if (GetParam())
        for (std::size_t i = 1; i < depth; ++i)
            chain[i - 1]->add_child(chain[i]);
    else
        for (std::size_t i = depth - 1; i > 0; --i)
            chain[i - 1]->add_child(chain[i]);
    EXPECT_EQ(chain.front()->get_child(0), chain[1]);
    EXPECT_EQ(chain.back()->get_parent(), chain[depth - 2]);
    for (std::size_t i = depth - 1; i > 0; --i)
        EXPECT_EQ(chain[i - 1]->remove_child(chain[i]), 0);
    chain.front()->kill(nullptr, nullptr);
}

INSTANTIATE_TEST_SUITE_P(From, DeepChain, testing::Bool(),
                         [](const auto& from) { return from.param ? "the_top" : "the_bottom"; });

TEST(NodeHandle, answers_the_node_until_it_ends) {
    NodeHandle handle;
    EXPECT_EQ(handle.get(), nullptr);
    {
        Node node;
        handle = NodeHandle(&node);
        const NodeHandle copy = handle;
        EXPECT_EQ(handle.get(), &node);
        EXPECT_EQ(copy.get(), &node);
    }
    EXPECT_EQ(handle.get(), nullptr);
    const NodeHandle moved = std::move(handle);
    EXPECT_EQ(moved.get(), nullptr);
    EXPECT_EQ(NodeHandle(static_cast<Node*>(nullptr)).get(), nullptr);
}

} // namespace

} // namespace orvex_test
