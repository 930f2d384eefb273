#include "orvex/scene/private/draw_ahead.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/assets/materials/material.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/scene/object.h"
#include "orvex/scene/private/node_data.h"

namespace orvex_test {

namespace {

using orvex::Material;
using orvex::Model;
using orvex::Node;
using orvex::NodeHandle;
using orvex::Object;
using orvex::Renderer;

using Numbers = std::vector<int>;

/// Notes its number when it is drawn.
template<class Base>
class Numbered : public Base {
public:
    Numbered(int number, Numbers& drawn)
        : number(number)
        , drawn(drawn) {}
    void _render(Renderer*) override { drawn.push_back(number); }

private:
    int number;
    Numbers& drawn;
};

/// Plain nodes, objects with no material, with one and with two, in turn; each fifth child ends
/// behind its parent's back. What is left is written down in `expected`.
void fill(Node& parent, Numbers& drawn, Numbers& expected) {
    for (int i = 0; i < 60; ++i) {
        Object* const object = i % 4 ? new Numbered<Object>(i, drawn) : nullptr;
        Node* const child = object ? static_cast<Node*>(object) : new Numbered<Node>(i, drawn);
        for (int material = 0; object && material < i % 4 - 1; ++material)
            object->add_material(new Material, nullptr);
        parent.add_child(child);
        if (i % 5 == 4)
            child->kill(nullptr, nullptr);
        else
            expected.push_back(i);
    }
}

TEST(DrawAhead, draws_each_living_child_once_and_in_order) {
    Numbers drawn;
    Numbers expected;
    Node* root = new Node;
    fill(*root, drawn, expected);
    root->render(nullptr, nullptr);
    EXPECT_EQ(drawn, expected);
    root->kill(nullptr, nullptr);
}

TEST(DrawAhead, draws_the_living_children_of_a_model_in_order_twice) {
    Numbers drawn;
    Numbers expected;
    Model* model = new Model;
    fill(*model, drawn, expected);
    expected.insert(expected.end(), expected.begin(), expected.end());
    model->render(nullptr, nullptr);
    EXPECT_EQ(drawn, expected);
    model->kill(nullptr, nullptr);
}

TEST(DrawAhead, survives_children_that_empty_the_list_while_they_are_drawn) {
    class Emptying : public Object {
    public:
        void _render(Renderer*) override {
            while (Node* const last = get_parent()->get_child(1))
                get_parent()->remove_child(last);
        }
    };
    Numbers drawn;
    Node* root = new Node;
    root->add_child(new Emptying);
    for (int i = 0; i < 20; ++i)
        root->add_child(new Numbered<Object>(i, drawn));
    root->render(nullptr, nullptr);
    EXPECT_TRUE(drawn.empty());
    EXPECT_EQ(root->get_num_children(), 1u);
    root->kill(nullptr, nullptr);
}

TEST(DrawAhead, looks_past_no_end_of_a_list) {
    std::vector<NodeHandle> children;
    orvex::draw_ahead(children, 0);
    Object object;
    children.emplace_back(&object);
    for (std::size_t current = 0; current < 12; ++current)
        orvex::draw_ahead(children, current);
    EXPECT_EQ(children.size(), 1u);
}

TEST(NodeRecord, stays_while_a_handle_points_to_an_ended_node_and_holds_nothing) {
    Node* node = new Node;
    Node* child = new Node;
    child->add_ref();
    node->add_child(child);
    const NodeHandle handle(node);
    node->release(nullptr, nullptr);
    EXPECT_EQ(handle.get(), nullptr);
    EXPECT_NE(handle.record(), nullptr);
    EXPECT_EQ(child->get_ref(), 1);
    EXPECT_EQ(orvex::node_living_parent(*child), nullptr);
    child->release(nullptr, nullptr);
}

} // namespace

} // namespace orvex_test
