// What an object keeps, and how its operations reach a subtree: each acts on the object, then
// hands itself on to the children of `node` that are objects, with the child as target and as
// `node`. A null `node` has no children. The draw pipeline, materials and transforms stand in
// sources of their own.

#include "orvex/scene/object.h"

#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/records/vertex.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/private/object_data.h"

namespace orvex {

Object::Object()
    : generic_attribs_mirror(true)
    , instancing_active(false)
    , user_vertex_attribs_allocated(false)
    , use_generic_vertex_attribs(false)
    , object_data(std::make_unique<ObjectData>())
    , grid_size_x(10.0f)
    , grid_size_z(10.0f)
    , grid_divisions_x(10)
    , grid_divisions_z(10)
    , grid_draw_lines(true)
    , grid_draw_frame(true)
    , display_grid_state(false) {
    set_type(NODE_TYPE_OBJECT);
    note_drawn_by_engine(*this);
    Node::NodeData::of(*this).object = this;
}

Object::~Object() {
    Node::NodeData::of(*this).object = nullptr;
}

bool Object::_init(Renderer* renderer) {
    return Node::_init(renderer);
}

bool Object::_cleanup(Renderer* renderer) {
    remove_all_materials(renderer, nullptr);
    return Node::_cleanup(renderer);
}

bool Object::_build() {
    update_bounding_sphere(nullptr);
    return Node::_build();
}

void Object::set_use_generic_vertex_attribs_state(bool state, Node* node) {
    use_generic_vertex_attribs = state;
    generic_attribs_mirror = state;
    for_each_child_object(node, [state](Object& child) {
        child.set_use_generic_vertex_attribs_state(state, &child);
    });
}

void Object::set_opengl_2_3_rendering_states(bool gl2, Node* node) {
    use_generic_vertex_attribs = !gl2;
    generic_attribs_mirror = !gl2;
    object_data->use_fixed_mvp_matrices = gl2;
    for_each_child_object(
        node, [gl2](Object& child) { child.set_opengl_2_3_rendering_states(gl2, &child); });
}

void Object::set_use_gl2_vertex_array_state(bool state, Node* node) {
    set_use_generic_vertex_attribs_state(!state, node);
}

void Object::set_use_fixed_mvp_matrices_state(bool state, Node* node) {
    object_data->use_fixed_mvp_matrices = state;
    for_each_child_object(
        node, [state](Object& child) { child.set_use_fixed_mvp_matrices_state(state, &child); });
}

void Object::set_tessellation_state(bool state, Node* node) {
    for_each_child_object(node,
                          [state](Object& child) { child.set_tessellation_state(state, &child); });
}

bool Object::get_use_generic_vertex_attribs_state() const {
    return use_generic_vertex_attribs;
}

bool Object::get_use_gl2_vertex_array_state() const {
    return !use_generic_vertex_attribs;
}

bool Object::get_use_fixed_mvp_matrices_state() const {
    return object_data->use_fixed_mvp_matrices;
}

// The new program is held before the old one is let go: it may live by the old one alone.
void Object::set_gpu_program(GpuProgram* program, Node* node) {
    GpuProgram* const former = object_data->gpu_program;
    if (program)
        program->add_ref();
    object_data->gpu_program = program;
    if (former && former != program)
        former->release(nullptr, nullptr);
    for_each_child_object(node,
                          [program](Object& child) { child.set_gpu_program(program, &child); });
}

GpuProgram* Object::get_gpu_program() const {
    return object_data->gpu_program;
}

void Object::update_build_state(bool state) {
    object_data->build_state = state;
}

bool Object::get_build_state() const {
    return object_data->build_state;
}

unsigned long Object::get_num_vertices(Node* node) {
    unsigned long sum = 0;
    for_each_child_object(node, [&sum](Object& child) { sum += child.get_num_vertices(&child); });
    return sum;
}

unsigned long Object::get_num_faces(Node* node) {
    unsigned long sum = 0;
    for_each_child_object(node, [&sum](Object& child) { sum += child.get_num_faces(&child); });
    return sum;
}

Vertex* Object::get_vertex(unsigned long) {
    return nullptr;
}

Vertex Object::get_vertex_v2(unsigned long) {
    return Vertex();
}

bool Object::compute_faces_normal(Node* node) {
    for_each_child_object(node, [](Object& child) { child.compute_faces_normal(&child); });
    return true;
}

bool Object::compute_vertices_normal(Node* node) {
    for_each_child_object(node, [](Object& child) { child.compute_vertices_normal(&child); });
    return true;
}

bool Object::average_vertices_normal(float distance, Node* node) {
    for_each_child_object(
        node, [distance](Object& child) { child.average_vertices_normal(distance, &child); });
    return true;
}

void Object::scale_vertices_position(const vec4& scale, Node* node) {
    for_each_child_object(
        node, [&scale](Object& child) { child.scale_vertices_position(scale, &child); });
}

void Object::flip_faces(Node* node) {
    for_each_child_object(node, [](Object& child) { child.flip_faces(&child); });
}

void Object::flip_vertex_normals(Node* node) {
    for_each_child_object(node, [](Object& child) { child.flip_vertex_normals(&child); });
}

void Object::set_vertices_color(const vec4& color, Node* node) {
    for_each_child_object(node,
                          [&color](Object& child) { child.set_vertices_color(color, &child); });
}

bool Object::update_bounding_sphere(Node* node) {
    bool last = true;
    for_each_child_object(node,
                          [&last](Object& child) { last = child.update_bounding_sphere(&child); });
    return last;
}

void Object::set_bounding_sphere(const vec4& center, float radius) {
    object_data->bounding_sphere_center = center;
    object_data->bounding_sphere_radius = radius;
}

const vec4& Object::get_bounding_sphere_center() const {
    return object_data->bounding_sphere_center;
}

float Object::get_bounding_sphere_radius() const {
    return object_data->bounding_sphere_radius;
}

void Object::bounding_sphere_use_inscribed_sphere(bool state) {
    object_data->bounding_sphere_inscribed = state;
}

bool Object::bounding_sphere_inscribed_sphere() const {
    return object_data->bounding_sphere_inscribed;
}

} // namespace orvex
