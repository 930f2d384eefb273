#include "orvex/scene/object.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "object_tree.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/math/mat4.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/vertex.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

namespace {

using orvex::GpuProgram;
using orvex::Node;
using orvex::Object;
using orvex::Renderer;
using orvex::vec4;
using orvex_test::FakeRenderer;
using orvex_test::ObjectTree;

using Tree = ObjectTree<Object>;

TEST(Object, a_new_one_has_its_defaults) {
    Object object;
    EXPECT_EQ(object.get_type(), orvex::NODE_TYPE_OBJECT);
    EXPECT_TRUE(object.get_use_fixed_mvp_matrices_state());
    EXPECT_FALSE(object.get_use_generic_vertex_attribs_state());
    EXPECT_TRUE(object.get_use_gl2_vertex_array_state());
    EXPECT_TRUE(object.get_build_state());
    EXPECT_FALSE(object.get_display_tripod_state());
    EXPECT_FALSE(object.get_display_grid_state());
    EXPECT_EQ(object.get_tripod_size(), vec4(2, 2, 2, 1));
    EXPECT_EQ(object.get_gpu_program(), nullptr);
    EXPECT_EQ(object.get_num_materials(), 0u);
    EXPECT_EQ(object.get_bounding_sphere_radius(), 0.0f);
    EXPECT_EQ(object.get_bounding_sphere_center(), vec4());
    EXPECT_FALSE(object.bounding_sphere_inscribed_sphere());
    EXPECT_NE(object.get_tripod(), nullptr);
}

TEST(Object, plain_fields_are_stored_and_read) {
    Object object;
    object.update_build_state(false);
    object.set_bounding_sphere(vec4(1, 2, 3, 1), 4.0f);
    object.bounding_sphere_use_inscribed_sphere(true);
    EXPECT_FALSE(object.get_build_state());
    EXPECT_EQ(object.get_bounding_sphere_center(), vec4(1, 2, 3, 1));
    EXPECT_EQ(object.get_bounding_sphere_radius(), 4.0f);
    EXPECT_TRUE(object.bounding_sphere_inscribed_sphere());
}

TEST(Object, has_no_geometry_of_its_own) {
    FakeRenderer renderer;
    Object object;
    object.render_geometry(&renderer);
    object.render_geometry_prepare(&renderer);
    object.render_geometry_draw(&renderer);
    object.render_geometry_finish(&renderer);
    EXPECT_TRUE(renderer.calls.empty());
    EXPECT_EQ(object.get_vertex(0), nullptr);
    EXPECT_EQ(object.get_vertex_v2(0).position, orvex::Vertex().position);
    EXPECT_EQ(object.get_num_vertices(&object), 0u);
    EXPECT_EQ(object.get_num_faces(nullptr), 0u);
    EXPECT_TRUE(object.update_bounding_sphere(nullptr));
    EXPECT_TRUE(object.update_bounding_sphere(&object));
}

/// Notes every propagating operation it is reached by, with itself as the argument or not.
class NotingObject : public Object {
public:
    void set_use_generic_vertex_attribs_state(bool state, Node* node) override {
        note(state, node);
        Object::set_use_generic_vertex_attribs_state(state, node);
    }
    void set_opengl_2_3_rendering_states(bool gl2, Node* node) override {
        note(gl2, node);
        Object::set_opengl_2_3_rendering_states(gl2, node);
    }
    void set_use_fixed_mvp_matrices_state(bool state, Node* node) override {
        note(state, node);
        Object::set_use_fixed_mvp_matrices_state(state, node);
    }
    void set_tessellation_state(bool state, Node* node) override {
        note(state, node);
        Object::set_tessellation_state(state, node);
    }
    void display_tripod(Renderer* renderer, Node* node) override {
        note(renderer != nullptr, node);
        Object::display_tripod(renderer, node);
    }
    void set_gpu_program(GpuProgram* program, Node* node) override {
        note(program == nullptr, node);
        Object::set_gpu_program(program, node);
    }
    unsigned long get_num_vertices(Node* node) override {
        note(true, node);
        return 3 + Object::get_num_vertices(node);
    }
    unsigned long get_num_faces(Node* node) override {
        note(true, node);
        return 5 + Object::get_num_faces(node);
    }
    bool compute_faces_normal(Node* node) override {
        note(true, node);
        return !Object::compute_faces_normal(node);
    }
    bool compute_vertices_normal(Node* node) override {
        note(true, node);
        return !Object::compute_vertices_normal(node);
    }
    bool average_vertices_normal(float distance, Node* node) override {
        note(distance == 0.5f, node);
        return !Object::average_vertices_normal(distance, node);
    }
    void scale_vertices_position(const vec4& scale, Node* node) override {
        note(scale == vec4(1, 2, 3, 4), node);
        Object::scale_vertices_position(scale, node);
    }
    void flip_faces(Node* node) override {
        note(true, node);
        Object::flip_faces(node);
    }
    void flip_vertex_normals(Node* node) override {
        note(true, node);
        Object::flip_vertex_normals(node);
    }
    void set_vertices_color(const vec4& color, Node* node) override {
        note(color == vec4(1, 2, 3, 4), node);
        Object::set_vertices_color(color, node);
    }
    bool update_bounding_sphere(Node* node) override {
        note(true, node);
        return Object::update_bounding_sphere(node);
    }

    int reached = 0;
    int reached_with_itself = 0;

private:
    void note(bool argument_arrived, const Node* node) {
        EXPECT_TRUE(argument_arrived);
        ++reached;
        reached_with_itself += node == this;
    }
};

struct PropagationRow {
    const char* operation;
    std::function<void(Object&, Node*, Renderer*)> call;
};

void PrintTo(const PropagationRow& row, std::ostream* out) {
    *out << row.operation;
}

const vec4 one_to_four(1, 2, 3, 4);

const PropagationRow propagation_rows[] = {
    {"set_use_generic_vertex_attribs_state",
     [](Object& o, Node* n, Renderer*) { o.set_use_generic_vertex_attribs_state(true, n); }},
    {"set_opengl_2_3_rendering_states",
     [](Object& o, Node* n, Renderer*) { o.set_opengl_2_3_rendering_states(true, n); }},
    {"set_use_gl2_vertex_array_state",
     [](Object& o, Node* n, Renderer*) { o.set_use_gl2_vertex_array_state(false, n); }},
    {"set_use_fixed_mvp_matrices_state",
     [](Object& o, Node* n, Renderer*) { o.set_use_fixed_mvp_matrices_state(true, n); }},
    {"set_tessellation_state",
     [](Object& o, Node* n, Renderer*) { o.set_tessellation_state(true, n); }},
    {"display_tripod", [](Object& o, Node* n, Renderer* r) { o.display_tripod(r, n); }},
    {"set_gpu_program", [](Object& o, Node* n, Renderer*) { o.set_gpu_program(nullptr, n); }},
    {"get_num_vertices", [](Object& o, Node* n, Renderer*) { o.get_num_vertices(n); }},
    {"get_num_faces", [](Object& o, Node* n, Renderer*) { o.get_num_faces(n); }},
    {"compute_faces_normal", [](Object& o, Node* n, Renderer*) { o.compute_faces_normal(n); }},
    {"compute_vertices_normal",
     [](Object& o, Node* n, Renderer*) { o.compute_vertices_normal(n); }},
    {"average_vertices_normal",
     [](Object& o, Node* n, Renderer*) { o.average_vertices_normal(0.5f, n); }},
    {"scale_vertices_position",
     [](Object& o, Node* n, Renderer*) { o.scale_vertices_position(one_to_four, n); }},
    {"flip_faces", [](Object& o, Node* n, Renderer*) { o.flip_faces(n); }},
    {"flip_vertex_normals", [](Object& o, Node* n, Renderer*) { o.flip_vertex_normals(n); }},
    {"set_vertices_color",
     [](Object& o, Node* n, Renderer*) { o.set_vertices_color(one_to_four, n); }},
    {"update_bounding_sphere", [](Object& o, Node* n, Renderer*) { o.update_bounding_sphere(n); }},
};

class Propagation : public testing::TestWithParam<PropagationRow> {
protected:
    void call(Node* node) { GetParam().call(*tree.root, node, &renderer); }

    FakeRenderer renderer;
    ObjectTree<NotingObject> tree;
};

TEST_P(Propagation, null_means_this_object_only) {
    call(nullptr);
    EXPECT_EQ(tree.root->reached, 1);
    EXPECT_EQ(tree.child->reached, 0);
    EXPECT_EQ(tree.leaf->reached, 0);
}

TEST_P(Propagation, itself_means_the_whole_subtree_of_objects_once) {
    call(tree.root);
    EXPECT_EQ(tree.root->reached, 1);
    EXPECT_EQ(tree.child->reached, 1);
    EXPECT_EQ(tree.leaf->reached, 1);
    EXPECT_EQ(tree.hidden->reached, 0);
    EXPECT_EQ(tree.child->reached_with_itself, 1);
    EXPECT_EQ(tree.leaf->reached_with_itself, 1);
}

TEST_P(Propagation, another_node_means_this_object_and_the_objects_below_that_node) {
    call(tree.child);
    EXPECT_EQ(tree.root->reached, 1);
    EXPECT_EQ(tree.child->reached, 0);
    EXPECT_EQ(tree.leaf->reached, 1);
}

INSTANTIATE_TEST_SUITE_P(Object, Propagation, testing::ValuesIn(propagation_rows),
                         [](const testing::TestParamInfo<PropagationRow>& row) {
                             return std::string(row.param.operation);
                         });

TEST(Object, sums_cover_the_children_that_are_objects) {
    ObjectTree<NotingObject> tree;
    EXPECT_EQ(tree.root->get_num_vertices(nullptr), 3u);
    EXPECT_EQ(tree.root->get_num_vertices(tree.root), 9u);
    EXPECT_EQ(tree.root->get_num_faces(tree.root), 15u);
    EXPECT_EQ(tree.root->Object::get_num_faces(tree.child), 5u);
}

TEST(Object, geometry_operations_answer_true_whatever_the_children_say) {
    ObjectTree<NotingObject> tree;
    Object top;
    EXPECT_TRUE(top.compute_faces_normal(tree.root));
    EXPECT_TRUE(top.compute_vertices_normal(tree.root));
    EXPECT_TRUE(top.average_vertices_normal(0.5f, tree.root));
    EXPECT_EQ(tree.child->reached, 3);
}

class SphereObject : public Object {
public:
    bool update_bounding_sphere(Node*) override { return answer; }
    bool answer = true;
};

TEST(Object, update_bounding_sphere_answers_what_the_last_child_did) {
    Object* root = new Object;
    SphereObject* first = new SphereObject;
    SphereObject* last = new SphereObject;
    root->add_child(first);
    root->add_child(last);
    root->add_child(new Node);
    first->answer = false;
    EXPECT_TRUE(root->update_bounding_sphere(root));
    last->answer = false;
    first->answer = true;
    EXPECT_FALSE(root->update_bounding_sphere(root));
    EXPECT_TRUE(root->update_bounding_sphere(nullptr));
    root->kill(nullptr, nullptr);
}

TEST(Object, build_updates_the_bounding_sphere_of_this_object_alone) {
    ObjectTree<NotingObject> tree;
    EXPECT_TRUE(tree.root->_build());
    EXPECT_EQ(tree.root->reached, 1);
    EXPECT_EQ(tree.child->reached, 0);
}

TEST(Object, a_node_that_only_bears_the_tag_of_objects_is_not_taken_for_one) {
    Object* root = new Object;
    Node* liar = new Node;
    liar->set_type(orvex::NODE_TYPE_OBJECT);
    root->add_child(liar);
    root->set_tripod_size(1, 1, 1, root);
    EXPECT_EQ(root->get_num_vertices(root), 0u);
    root->kill(nullptr, nullptr);
}

TEST(ObjectStates, gl2_arrays_and_generic_attributes_are_one_state) {
    Object object;
    object.set_use_generic_vertex_attribs_state(true, nullptr);
    EXPECT_FALSE(object.get_use_gl2_vertex_array_state());
    object.set_use_gl2_vertex_array_state(true, nullptr);
    EXPECT_FALSE(object.get_use_generic_vertex_attribs_state());
    object.set_use_gl2_vertex_array_state(false, nullptr);
    EXPECT_TRUE(object.get_use_generic_vertex_attribs_state());
    object.set_use_fixed_mvp_matrices_state(false, nullptr);
    EXPECT_FALSE(object.get_use_fixed_mvp_matrices_state());
}

TEST(ObjectStates, the_opengl_3_style_reaches_every_object_of_the_subtree) {
    Tree tree;
    tree.root->set_opengl_2_3_rendering_states(false, tree.root);
    for (Object* object : {tree.root, tree.child, tree.leaf}) {
        EXPECT_TRUE(object->get_use_generic_vertex_attribs_state());
        EXPECT_FALSE(object->get_use_fixed_mvp_matrices_state());
    }
    EXPECT_FALSE(tree.hidden->get_use_generic_vertex_attribs_state());
    EXPECT_TRUE(tree.hidden->get_use_fixed_mvp_matrices_state());

    tree.root->set_opengl_2_3_rendering_states(true, tree.root);
    for (Object* object : {tree.root, tree.child, tree.leaf}) {
        EXPECT_FALSE(object->get_use_generic_vertex_attribs_state());
        EXPECT_TRUE(object->get_use_fixed_mvp_matrices_state());
    }
}

class MirroredObject : public Object {
public:
    bool mirror() const { return generic_attribs_mirror; }
    bool instancing() const { return instancing_active; }
    bool user_attribs() const { return user_vertex_attribs_allocated; }
};

TEST(ObjectStates, the_mirror_starts_true_and_follows_both_setters) {
    MirroredObject object;
    EXPECT_TRUE(object.mirror());
    EXPECT_FALSE(object.instancing());
    EXPECT_FALSE(object.user_attribs());
    object.set_use_generic_vertex_attribs_state(false, nullptr);
    EXPECT_FALSE(object.mirror());
    object.set_opengl_2_3_rendering_states(false, nullptr);
    EXPECT_TRUE(object.mirror());
}

TEST(ObjectStates, the_host_s_matrices_and_display_states_reach_the_subtree) {
    const orvex::mat4 matrix(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    Tree tree;
    tree.root->set_projection_matrix(matrix, tree.root);
    tree.root->set_view_matrix(matrix, tree.root);
    tree.root->set_display_tripod_state(true, tree.root);
    tree.root->set_display_grid_state(true, tree.root);
    tree.root->set_tripod_size(4, 5, 6, tree.root);
    for (Object* object : {tree.root, tree.child, tree.leaf}) {
        EXPECT_EQ(object->get_projection_matrix().ptr()[14], 15.0f);
        EXPECT_EQ(object->get_view_matrix().ptr()[14], 15.0f);
        EXPECT_EQ(&std::as_const(*object).get_projection_matrix(),
                  &object->get_projection_matrix());
        EXPECT_EQ(&std::as_const(*object).get_view_matrix(), &object->get_view_matrix());
        EXPECT_TRUE(object->get_display_tripod_state());
        EXPECT_TRUE(object->get_display_grid_state());
        EXPECT_EQ(object->get_tripod_size(), vec4(4, 5, 6, 1));
    }
    EXPECT_EQ(tree.hidden->get_projection_matrix().ptr()[14], 0.0f);
    EXPECT_EQ(tree.hidden->get_view_matrix().ptr()[14], 0.0f);
    EXPECT_FALSE(tree.hidden->get_display_tripod_state());
    EXPECT_FALSE(tree.hidden->get_display_grid_state());
    EXPECT_EQ(tree.hidden->get_tripod_size(), vec4(2, 2, 2, 1));

    Tree alone;
    alone.root->set_projection_matrix(matrix, nullptr);
    alone.root->set_view_matrix(matrix, nullptr);
    alone.root->set_display_tripod_state(true, nullptr);
    alone.root->set_display_grid_state(true, nullptr);
    alone.root->set_tripod_size(4, 5, 6, nullptr);
    EXPECT_EQ(alone.child->get_projection_matrix().ptr()[14], 0.0f);
    EXPECT_EQ(alone.child->get_view_matrix().ptr()[14], 0.0f);
    EXPECT_FALSE(alone.child->get_display_tripod_state());
    EXPECT_FALSE(alone.child->get_display_grid_state());
    EXPECT_EQ(alone.child->get_tripod_size(), vec4(2, 2, 2, 1));
}

/// A program that a test holds for its whole length.
struct HeldProgram {
    HeldProgram() { program->add_ref(); }
    HeldProgram(const HeldProgram&) = delete;
    HeldProgram& operator=(const HeldProgram&) = delete;
    ~HeldProgram() { program->release(nullptr, nullptr); }
    int others() const { return program->get_ref() - 1; }

    GpuProgram* program = new GpuProgram;
};

TEST(ObjectGpuProgram, the_same_program_twice_costs_two_references) {
    const HeldProgram held;
    Object object;
    object.set_gpu_program(held.program, nullptr);
    object.set_gpu_program(held.program, nullptr);
    EXPECT_EQ(held.others(), 2);
    object.set_gpu_program(nullptr, nullptr);
    EXPECT_EQ(held.others(), 1);
    EXPECT_EQ(object.get_gpu_program(), nullptr);
    object.set_gpu_program(nullptr, nullptr);
    EXPECT_EQ(held.others(), 1);
    held.program->remove_ref();
}

TEST(ObjectGpuProgram, a_new_program_takes_the_place_of_the_old_one) {
    const HeldProgram first;
    const HeldProgram second;
    Object object;
    object.set_gpu_program(first.program, nullptr);
    object.set_gpu_program(second.program, nullptr);
    EXPECT_EQ(first.others(), 0);
    EXPECT_EQ(second.others(), 1);
    EXPECT_EQ(object.get_gpu_program(), second.program);
    object.set_gpu_program(nullptr, nullptr);
}

TEST(ObjectGpuProgram, each_object_of_the_subtree_holds_a_reference_of_its_own) {
    const HeldProgram held;
    Tree tree;
    tree.root->set_gpu_program(held.program, tree.root);
    EXPECT_EQ(held.others(), 3);
    EXPECT_EQ(tree.leaf->get_gpu_program(), held.program);
    EXPECT_EQ(tree.hidden->get_gpu_program(), nullptr);
    tree.root->set_gpu_program(nullptr, tree.root);
    EXPECT_EQ(held.others(), 0);
}

TEST(ObjectGpuProgram, a_program_that_hangs_only_on_the_old_one_survives_the_change) {
    Object object;
    GpuProgram* outer = new GpuProgram;
    GpuProgram* inner = new GpuProgram;
    outer->add_child(inner);
    object.set_gpu_program(outer, nullptr);
    object.set_gpu_program(inner, nullptr);
    EXPECT_EQ(object.get_gpu_program(), inner);
    EXPECT_EQ(inner->get_ref(), 1);
    object.set_gpu_program(nullptr, nullptr);
}

TEST(ObjectGpuProgram, is_not_given_back_when_the_object_ends) {
    const HeldProgram held;
    Object* object = new Object;
    object->set_gpu_program(held.program, nullptr);
    object->kill(nullptr, nullptr);
    EXPECT_EQ(held.others(), 1);
    held.program->remove_ref();
}

} // namespace

} // namespace orvex_test
