#include <functional>

#include <gtest/gtest.h>

#include "node_tree.h"
#include "orvex/scene/node.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/scene_mgr.h"

namespace orvex_test {

namespace {

using orvex::Node;
using orvex::Renderer;
using orvex_test::Calls;
using orvex_test::Ended;
using orvex_test::RecordingNode;
using orvex_test::some_renderer;
using orvex_test::Tree;

/// Runs what a test wants at its `_update`.
class ActingNode : public Node {
public:
    bool _update(float) override {
        if (act)
            act();
        return true;
    }
    bool _cleanup(Renderer*) override {
        if (at_cleanup)
            at_cleanup();
        return true;
    }
    std::function<void()> act;
    std::function<void()> at_cleanup;
};

TEST(NodeTraversal, init_update_and_build_run_the_parent_first) {
    Tree tree;
    EXPECT_TRUE(tree.root->init(some_renderer(), nullptr));
    EXPECT_EQ(tree.calls, (Calls{"root init with renderer", "first init with renderer",
                                 "leaf init with renderer", "second init with renderer"}));
    tree.calls.clear();
    EXPECT_TRUE(tree.root->update(0.5f, nullptr));
    EXPECT_EQ(tree.calls, (Calls{"root update 0.500000", "first update 0.500000",
                                 "leaf update 0.500000", "second update 0.500000"}));
    tree.calls.clear();
    EXPECT_TRUE(tree.root->build(nullptr));
    EXPECT_EQ(tree.calls, (Calls{"root build", "first build", "leaf build", "second build"}));
}

TEST(NodeTraversal, cleanup_runs_the_children_first) {
    Tree tree;
    EXPECT_TRUE(tree.root->cleanup(some_renderer(), nullptr));
    EXPECT_EQ(tree.calls, (Calls{"leaf cleanup with renderer", "first cleanup with renderer",
                                 "second cleanup with renderer", "root cleanup with renderer"}));
}

TEST(NodeTraversal, render_runs_the_parent_first) {
    Tree tree;
    tree.root->render(some_renderer(), nullptr);
    EXPECT_EQ(tree.calls, (Calls{"root render with renderer", "first render with renderer",
                                 "leaf render with renderer", "second render with renderer"}));
}

TEST(NodeTraversal, the_results_of_hooks_count_only_in_cleanup) {
    Tree tree;
    tree.root->hook_result = false;
    EXPECT_TRUE(tree.root->init(nullptr, nullptr));
    EXPECT_TRUE(tree.root->update(0.0f, nullptr));
    EXPECT_TRUE(tree.root->build(nullptr));
    EXPECT_FALSE(tree.root->cleanup(nullptr, nullptr));
    tree.root->hook_result = true;
    tree.first->hook_result = false;
    EXPECT_TRUE(tree.root->cleanup(nullptr, nullptr));
}

TEST(NodeTraversal, a_given_node_has_its_children_walked_instead) {
    Tree tree;
    tree.root->init(nullptr, tree.first);
    tree.root->update(0.0f, tree.first);
    tree.root->build(tree.first);
    tree.root->render(nullptr, tree.first);
    tree.root->cleanup(nullptr, tree.first);
    EXPECT_EQ(tree.calls, (Calls{"root init", "leaf init", "root update 0.000000",
                                 "leaf update 0.000000", "root build", "leaf build", "root render",
                                 "leaf render", "leaf cleanup", "root cleanup"}));
}

TEST(NodeTraversal, a_hidden_node_hides_its_subtree_from_render_alone) {
    Tree tree;
    tree.root->set_render_state(false, nullptr);
    tree.root->render(nullptr, nullptr);
    EXPECT_TRUE(tree.calls.empty());
    tree.root->update(0.0f, nullptr);
    EXPECT_EQ(tree.calls.size(), 4u);
    tree.calls.clear();
    tree.root->set_render_state(true, nullptr);
    tree.first->set_render_state(false, nullptr);
    tree.root->render(nullptr, nullptr);
    EXPECT_EQ(tree.calls, (Calls{"root render", "second render"}));
}

TEST(NodeTraversal, set_render_state_reaches_the_subtree_of_the_node_it_is_given) {
    Tree tree;
    tree.root->set_render_state(false, nullptr);
    EXPECT_FALSE(tree.root->get_render_state());
    EXPECT_TRUE(tree.first->get_render_state());
    tree.root->set_render_state(false, tree.root);
    EXPECT_FALSE(tree.first->get_render_state());
    EXPECT_FALSE(tree.leaf->get_render_state());
    EXPECT_FALSE(tree.second->get_render_state());
    tree.root->set_render_state(true, tree.first);
    EXPECT_TRUE(tree.root->get_render_state());
    EXPECT_FALSE(tree.first->get_render_state());
    EXPECT_TRUE(tree.leaf->get_render_state());
}

TEST(NodeTraversal, the_base_hooks_do_nothing_and_return_true) {
    Node node;
    EXPECT_TRUE(node._init(nullptr));
    EXPECT_TRUE(node._cleanup(nullptr));
    EXPECT_TRUE(node._update(1.0f));
    EXPECT_TRUE(node._build());
    node._render(nullptr);
    EXPECT_TRUE(node.cleanup(nullptr, nullptr));
    EXPECT_EQ(node.get_ref(), 0);
}

TEST(NodeTraversal, children_added_during_a_walk_wait_for_the_next) {
    Calls calls;
    Node* root = new Node;
    ActingNode* acting = new ActingNode;
    root->add_child(acting);
    acting->act = [&] { root->add_child(new RecordingNode("late", calls)); };
    root->update(0.0f, nullptr);
    EXPECT_EQ(root->get_num_children(), 2u);
    EXPECT_TRUE(calls.empty());
    acting->act = nullptr;
    root->update(0.0f, nullptr);
    EXPECT_EQ(calls, Calls{"late update 0.000000"});
    root->kill(nullptr, nullptr);
}

TEST(NodeTraversal, children_removed_during_a_walk_are_not_visited) {
    Calls calls;
    Node* root = new Node;
    ActingNode* acting = new ActingNode;
    Node* last = new RecordingNode("last", calls);
    root->add_child(acting);
    root->add_child(last);
    acting->act = [&] { root->remove_child(last); };
    root->update(0.0f, nullptr);
    EXPECT_EQ(calls, (Calls{"last cleanup", "last deleted"}));
    root->kill(nullptr, nullptr);
}

TEST(NodeTraversal, a_walk_ends_quietly_when_its_node_is_ended_by_a_child) {
    Calls calls;
    Node* root = new Node;
    ActingNode* acting = new ActingNode;
    root->add_child(acting);
    root->add_child(new RecordingNode("last", calls));
    acting->add_ref();
    acting->act = [&] { root->kill(nullptr, nullptr); };
    EXPECT_TRUE(root->update(0.0f, nullptr));
    EXPECT_EQ(calls, (Calls{"last cleanup", "last deleted"}));
    acting->kill(nullptr, nullptr);
}

TEST(NodeTraversal, a_cleanup_that_ends_its_own_parent_is_survived) {
    Node* root = new Node;
    ActingNode* acting = new ActingNode;
    root->add_child(acting);
    acting->add_ref();
    acting->at_cleanup = [&] { root->kill(nullptr, nullptr); };
    EXPECT_TRUE(root->cleanup(nullptr, nullptr));
    acting->at_cleanup = nullptr;
    acting->kill(nullptr, nullptr);
}

TEST(NodeRelease, a_node_nobody_adopted_ends_with_its_first_release) {
    Calls calls;
    Node* node = new RecordingNode("node", calls);
    EXPECT_EQ(node->release(some_renderer(), nullptr), 0);
    EXPECT_EQ(calls, (Calls{"node cleanup with renderer", "node deleted"}));
}

TEST(NodeRelease, an_extra_holder_keeps_the_node_but_not_its_children) {
    Tree tree;
    tree.first->add_ref();
    EXPECT_EQ(tree.first->release(nullptr, nullptr), 1);
    EXPECT_EQ(tree.first->get_num_children(), 0u);
    EXPECT_EQ(tree.calls, (Calls{"leaf cleanup", "leaf deleted"}));
}

TEST(NodeRelease, children_end_before_their_parent) {
    Tree tree;
    EXPECT_EQ(tree.root->release(some_renderer(), nullptr), 0);
    EXPECT_EQ(tree.calls,
              (Calls{"leaf cleanup with renderer", "leaf deleted", "first cleanup with renderer",
                     "first deleted", "second cleanup with renderer", "second deleted",
                     "root cleanup with renderer", "root deleted"}));
}

TEST(NodeRelease, a_given_node_loses_its_children_and_lives) {
    Tree tree;
    Node* other = new Node;
    EXPECT_EQ(other->release(nullptr, tree.first), 0);
    EXPECT_EQ(tree.calls, (Calls{"leaf cleanup", "leaf deleted"}));
    EXPECT_EQ(tree.first->get_num_children(), 0u);
    EXPECT_EQ(tree.first->get_ref(), 1);
}

TEST(NodeRelease, a_node_among_the_children_it_releases_ends_once) {
    Tree tree;
    EXPECT_EQ(tree.first->release(nullptr, tree.root), 0);
    EXPECT_EQ(tree.root->get_num_children(), 0u);
    EXPECT_EQ(tree.calls, (Calls{"leaf cleanup", "leaf deleted", "first cleanup", "first deleted",
                                 "second cleanup", "second deleted"}));
}

TEST(NodeRelease, kill_answers_true_and_leaves_a_held_child_with_its_parent_set) {
    Tree tree;
    tree.first->add_ref();
    Node* const old_root = tree.root;
    EXPECT_TRUE(tree.root->kill(nullptr, nullptr));
    EXPECT_EQ(tree.first->get_ref(), 1);
    EXPECT_EQ(tree.first->get_parent(), old_root);
    EXPECT_EQ(orvex::node_living_parent(*tree.first), nullptr);
    EXPECT_EQ(tree.calls, (Calls{"leaf cleanup", "leaf deleted", "second cleanup", "second deleted",
                                 "root cleanup", "root deleted"}));
    tree.first->kill(nullptr, nullptr);
}

TEST(NodeRelease, kill_hands_its_node_on_to_release) {
    Tree tree;
    Node* other = new Node;
    EXPECT_TRUE(other->kill(nullptr, tree.first));
    EXPECT_EQ(tree.first->get_num_children(), 0u);
}

TEST(NodeRelease, underscore_release_takes_one_reference_and_no_children) {
    Tree tree;
    tree.first->add_ref();
    EXPECT_EQ(tree.first->_release(nullptr), 1);
    EXPECT_EQ(tree.first->get_num_children(), 1u);
    EXPECT_TRUE(tree.calls.empty());
}

TEST(NodeRelease, underscore_kill_ends_a_node_whatever_its_count) {
    Calls calls;
    Node* node = new RecordingNode("node", calls);
    node->add_ref();
    node->add_ref();
    EXPECT_TRUE(node->_kill(nullptr));
    EXPECT_EQ(calls, (Calls{"node cleanup", "node deleted"}));
}

TEST(NodeRelease, a_cleanup_that_releases_its_own_node_does_not_end_it_twice) {
    int cleanups = 0;
    ActingNode* node = new ActingNode;
    node->at_cleanup = [&] {
        ++cleanups;
        node->release(nullptr, nullptr);
    };
    EXPECT_EQ(node->release(nullptr, nullptr), 0);
    EXPECT_EQ(cleanups, 1);
}

TEST(NodeRelease, takes_one_reference_of_each_child_though_the_end_of_one_releases_it_again) {
    for (const bool by_scene : {false, true}) {
        auto* const parent = new Node;
        auto* const held = new Node;
        auto* const holder = new ActingNode;
        Calls calls;
        for (Node* const child : {held, static_cast<Node*>(holder),
                                  static_cast<Node*>(new RecordingNode("last", calls))})
            parent->add_child(child);
        held->add_ref();
        // As a material is held by an object below it, beside the host.
        parent->add_ref();
        parent->add_ref();
        holder->at_cleanup = [&] { EXPECT_EQ(parent->release(nullptr, nullptr), 1); };
        if (by_scene)
            EXPECT_TRUE(orvex::SceneMgr::get()->release_scene_node(nullptr, parent));
        else
            EXPECT_EQ(parent->release(nullptr, nullptr), 0);
        EXPECT_EQ(held->get_ref(), 1);
        EXPECT_EQ(calls, (Calls{"last cleanup", "last deleted"}));
        held->kill(nullptr, nullptr);
    }
}

TEST(NodeRelease, cleanup_may_run_before_kill_runs_it_again) {
    Calls calls;
    Node* node = new RecordingNode("node", calls);
    node->cleanup(nullptr, nullptr);
    node->kill(nullptr, nullptr);
    EXPECT_EQ(calls, (Calls{"node cleanup", "node cleanup", "node deleted"}));
}

TEST(NodeRelease, a_direct_delete_leaves_the_children_untouched) {
    Tree tree;
    const Ended leaf(tree.leaf);
    tree.root->remove_child(tree.second);
    tree.calls.clear();
    delete tree.first;
    EXPECT_EQ(tree.leaf->get_ref(), 2);
    EXPECT_EQ(tree.calls, Calls{"first deleted"});
    tree.leaf->remove_ref();
}

TEST(NodeRelease, a_child_ended_behind_its_parents_back_is_passed_over) {
    Tree tree;
    delete tree.second;
    tree.calls.clear();
    EXPECT_EQ(tree.root->get_num_children(), 2u);
    EXPECT_EQ(tree.root->get_child(1), nullptr);
    tree.root->update(0.0f, nullptr);
    EXPECT_EQ(tree.calls.size(), 3u);
    EXPECT_EQ(tree.root->find_child("second", tree.root), nullptr);
    EXPECT_EQ(tree.root->release(nullptr, nullptr), 0);
}

} // namespace

} // namespace orvex_test
