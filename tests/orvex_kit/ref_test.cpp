#include "orvex_kit/ref.h"

#include <vector>

#include <gtest/gtest.h>

#include <orvex/scene/node.h>
#include <orvex/scene/object.h>

namespace orvex_test {

namespace {

using namespace orvex::kit;

/// Notes its end.
class Mortal : public orvex::Object {
public:
    Mortal(std::vector<char>& ends, char letter)
        : ends(ends)
        , letter(letter) {}
    ~Mortal() override { ends.push_back(letter); }

private:
    std::vector<char>& ends;
    char letter;
};

using Ends = std::vector<char>;

TEST(Ref, is_empty_at_first_and_of_null) {
    const Ref<orvex::Node> none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none.get(), nullptr);
    EXPECT_FALSE(Ref<orvex::Node>(static_cast<orvex::Node*>(nullptr)));
    EXPECT_EQ(none, Ref<orvex::Node>(nullptr));
    hold(nullptr);
    let_go(nullptr);
}

TEST(Ref, keeps_a_node_to_the_last_hold) {
    Ends ends;
    Ref<Mortal> first = make<Mortal>(ends, 'a');
    EXPECT_EQ(first->get_ref(), 1);
    Ref<Mortal> second = first;
    EXPECT_EQ(first->get_ref(), 2);
    EXPECT_EQ(first, second);
    first.reset();
    EXPECT_FALSE(first);
    EXPECT_EQ(ends, Ends{});
    Ref<orvex::Node> third = std::move(second);
    EXPECT_FALSE(second); // NOLINT(bugprone-use-after-move): it is empty, as promised.
    EXPECT_EQ(third->get_ref(), 1);
    third = third; // NOLINT(clang-diagnostic-self-assign-overloaded): it has to hold.
    EXPECT_EQ(ends, Ends{});
    third = make<Mortal>(ends, 'b');
    EXPECT_EQ(ends, Ends{'a'});
    third.reset();
    EXPECT_EQ(ends, (Ends{'a', 'b'}));
}

TEST(Ref, ends_the_children_that_nobody_else_holds_before_their_parent) {
    Ends ends;
    Ref<Mortal> root = make<Mortal>(ends, 'r');
    root->add_child(make<Mortal>(ends, 'a').get());
    root->add_child(make<Mortal>(ends, 'b').get());
    root->get_child(0)->add_child(make<Mortal>(ends, 'c').get());
    EXPECT_EQ(ends, Ends{});
    root.reset();
    EXPECT_EQ(ends, (Ends{'c', 'a', 'b', 'r'}));
}

TEST(Ref, leaves_what_somebody_else_holds_whole) {
    Ends ends;
    Ref<Mortal> root = make<Mortal>(ends, 'r');
    Ref<Mortal> shared = make<Mortal>(ends, 's');
    root->add_child(shared.get());
    shared->add_child(make<Mortal>(ends, 'c').get());
    root.reset();
    EXPECT_EQ(ends, Ends{'r'});
    EXPECT_EQ(shared->get_ref(), 1);
    ASSERT_EQ(shared->get_num_children(), 1u);
    EXPECT_EQ(shared->get_child(0)->get_ref(), 1);
    shared.reset();
    EXPECT_EQ(ends, (Ends{'r', 'c', 's'}));
}

TEST(Ref, leaves_a_tree_whole_of_which_it_was_one_hold) {
    Ends ends;
    const Ref<Mortal> root = make<Mortal>(ends, 'r');
    Ref<Mortal> child = make<Mortal>(ends, 'a');
    child->add_child(make<Mortal>(ends, 'c').get());
    root->add_child(child.get());
    child.reset();
    EXPECT_EQ(ends, Ends{});
    EXPECT_EQ(root->get_child(0)->get_num_children(), 1u);
}

TEST(Ref, ends_a_node_that_stands_in_the_list_of_children_twice_once) {
    Ends ends;
    Ref<Mortal> root = make<Mortal>(ends, 'r');
    Ref<Mortal> twice = make<Mortal>(ends, 't');
    root->add_child(twice.get());
    root->add_child(twice.get());
    twice.reset();
    root.reset();
    EXPECT_EQ(ends, (Ends{'t', 'r'}));
}

TEST(Ref, passes_over_children_that_ended_behind_its_back) {
    Ends ends;
    Ref<Mortal> root = make<Mortal>(ends, 'r');
    root->add_child(make<Mortal>(ends, 'a').get());
    root->add_child(make<Mortal>(ends, 'b').get());
    delete root->get_child(0);
    root.reset();
    EXPECT_EQ(ends, (Ends{'a', 'b', 'r'}));
}

TEST(Ref, ends_trees_of_any_depth) {
    Ends ends;
    Ref<Mortal> root = make<Mortal>(ends, 'r');
    orvex::Node* lowest = root.get();
    for (int depth = 0; depth < 100000; ++depth) {
        const Ref<orvex::Node> child = make<orvex::Node>();
        lowest->add_child(child.get());
        lowest = child.get();
    }
    root.reset();
    EXPECT_EQ(ends, Ends{'r'});
}

} // namespace
} // namespace orvex_test
