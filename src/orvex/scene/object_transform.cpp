// An object's place in space, kept by its tripod, and the matrices that it draws by.

#include "orvex/scene/object.h"

#include "orvex/math/quat.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/private/object_data.h"

namespace orvex {

void Object::set_position(float x, float y, float z) {
    object_data->tripod.set_position(x, y, z);
}

void Object::set_position(const vec4& position) {
    object_data->tripod.set_position(position);
}

const vec4& Object::get_position() const {
    return object_data->tripod.get_position();
}

void Object::set_orientation_euler_xyz(float x, float y, float z) {
    object_data->tripod.set_orientation_euler_angles(x, y, z);
}

void Object::set_orientation(const quat& orientation) {
    object_data->tripod.set_orientation(orientation);
}

const quat& Object::get_orientation() const {
    return object_data->tripod.get_orientation();
}

void Object::set_scale(float x, float y, float z) {
    object_data->tripod.set_scale(x, y, z);
}

void Object::set_scale(const vec4& scale) {
    object_data->tripod.set_scale(scale);
}

const vec4& Object::get_scale() const {
    return object_data->tripod.get_scale();
}

void Object::set_transform(const mat4& transform) {
    object_data->tripod.set_transform(transform);
}

void Object::set_transform(const float* transform) {
    object_data->tripod.set_transform(transform);
}

const mat4& Object::get_transform() const {
    return object_data->tripod.get_transform();
}

Tripod* Object::get_tripod() const {
    return &object_data->tripod;
}

namespace {

/// `count_parents`, of a node that mostly stands below the root or is one: no circle leads there.
std::size_t count_few_parents(const Node& node) {
    const Node* const parent = node_living_parent(node);
    if (!parent)
        return 0;
    return node_living_parent(*parent) ? count_parents(node) : 1;
}

} // namespace

mat4 Object::get_absolute_transform() {
    mat4 absolute = get_transform();
    const Node* node = this;
    for (std::size_t left = count_few_parents(*this); left > 0; --left) {
        node = node_living_parent(*node);
        if (const Object* parent = node_as_object(*node))
            absolute = parent->get_transform() * absolute;
    }
    return object_data->absolute_transform = absolute;
}

float* Object::get_absolute_transform_float_ptr() {
    get_absolute_transform();
    return object_data->absolute_transform.ptr();
}

const vec4* Object::get_absolute_position() {
    object_data->absolute_position = get_absolute_transform() * get_position();
    return &object_data->absolute_position;
}

void Object::set_projection_matrix(const mat4& matrix, Node* node) {
    object_data->projection_matrix = matrix;
    for_each_child_object(
        node, [&matrix](Object& child) { child.set_projection_matrix(matrix, &child); });
}

mat4& Object::get_projection_matrix() {
    return object_data->projection_matrix;
}

const mat4& Object::get_projection_matrix() const {
    return object_data->projection_matrix;
}

void Object::set_view_matrix(const mat4& matrix, Node* node) {
    object_data->view_matrix = matrix;
    for_each_child_object(node,
                          [&matrix](Object& child) { child.set_view_matrix(matrix, &child); });
}

mat4& Object::get_view_matrix() {
    return object_data->view_matrix;
}

const mat4& Object::get_view_matrix() const {
    return object_data->view_matrix;
}

} // namespace orvex
