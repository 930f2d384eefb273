#include "orvex/geometry/mesh/model.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/geometry/mesh/mesh.h"
#include "orvex/renderer/records/mesh_data.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

namespace {

using orvex::Mesh;
using orvex::Model;
using orvex::Node;
using orvex::Object;
using orvex::Renderer;
using orvex_test::FakeRenderer;

using Calls = std::vector<std::string>;

/// Notes what is asked of it and with which node.
class Part : public Object {
public:
    Part(const char* name, Calls& calls)
        : calls(calls) {
        set_name(name);
    }
    void render(Renderer* renderer, Node* node) override {
        note(node == this ? "render self" : node ? "render other" : "render");
        Object::render(renderer, node);
    }
    void _render(Renderer*) override { note("_render"); }
    void render_geometry(Renderer* renderer) override {
        note(renderer ? "geometry" : "geometry without renderer");
    }

private:
    void note(const char* what) { calls.push_back(std::string(get_name()) + " " + what); }

    Calls& calls;
};

class NotingModel : public Model {
public:
    explicit NotingModel(Calls& calls)
        : calls(calls) {}
    void _render(Renderer*) override { calls.emplace_back("model _render"); }

private:
    Calls& calls;
};

class ModelTest : public testing::Test {
protected:
    ModelTest() {
        model->add_child(new Part("first", calls));
        model->add_child(new Part("second", calls));
    }
    ~ModelTest() override { model->kill(nullptr, nullptr); }

    FakeRenderer renderer;
    Calls calls;
    Model* model = new NotingModel(calls);
};

TEST_F(ModelTest, is_an_object_with_a_tag_of_its_own) {
    EXPECT_EQ(model->get_type(), orvex::NODE_TYPE_MODEL);
    EXPECT_TRUE(model->is_type_of(orvex::NODE_TYPE_OBJECT));
    EXPECT_TRUE(model->get_separate_vertex_arrays_state());
    EXPECT_EQ(model->get_vertex_alignment(), 0);
}

TEST_F(ModelTest, draws_each_child_twice) {
    model->render(&renderer, nullptr);
    EXPECT_EQ(calls, (Calls{"first render self", "first _render", "second render self",
                            "second _render", "model _render", "first render", "first _render",
                            "second render", "second _render"}));
}

TEST_F(ModelTest, draws_each_child_once_with_the_render_state_off) {
    model->set_render_state(false, nullptr);
    model->render(&renderer, nullptr);
    EXPECT_EQ(calls, (Calls{"first render self", "first _render", "second render self",
                            "second _render"}));
}

TEST_F(ModelTest, draws_the_children_of_a_given_node_both_times) {
    Part* other = new Part("other", calls);
    other->add_child(new Part("below", calls));
    model->render(&renderer, other);
    EXPECT_EQ(calls, (Calls{"below render self", "below _render", "model _render", "below render",
                            "below _render"}));
    other->kill(nullptr, nullptr);
}

TEST_F(ModelTest, render_geometry_skips_a_child_that_is_no_object) {
    Node* plain = new Node;
    plain->set_type(orvex::NODE_TYPE_OBJECT);
    model->add_child(plain);
    model->add_child(new Node);
    model->render_geometry(&renderer);
    EXPECT_EQ(calls, (Calls{"first geometry", "second geometry"}));
    EXPECT_TRUE(renderer.calls.empty());
}

TEST_F(ModelTest, hands_its_allocation_settings_to_new_meshes) {
    model->set_mesh_vertex_alloc_params(false, 16);
    EXPECT_FALSE(model->get_separate_vertex_arrays_state());
    EXPECT_EQ(model->get_vertex_alignment(), 16);
    Mesh* mesh = model->create_mesh();
    EXPECT_FALSE(mesh->get_mesh_data()->separate_vertex_arrays);
    EXPECT_EQ(mesh->get_mesh_data()->alignment, 16);
    EXPECT_EQ(mesh->get_type(), orvex::NODE_TYPE_MESH);
    EXPECT_EQ(mesh->get_parent(), nullptr);
    EXPECT_EQ(mesh->get_ref(), 0);
    EXPECT_EQ(model->get_num_children(), 2u);
    mesh->kill(nullptr, nullptr);
}

TEST_F(ModelTest, makes_plain_objects_that_stand_alone) {
    Object* object = model->create_object();
    EXPECT_EQ(object->get_type(), orvex::NODE_TYPE_OBJECT);
    EXPECT_EQ(object->get_parent(), nullptr);
    EXPECT_EQ(model->get_num_children(), 2u);
    object->kill(nullptr, nullptr);
}

} // namespace

} // namespace orvex_test
