// The transform: setters store and mark, getters compute what is marked. Two marks stand one
// above the other: angles that are newer than the orientation, and components that are newer than
// the matrix.

#include "orvex/scene/tripod.h"

#include "orvex/scene/private/tripod_data.h"

namespace orvex {

Tripod::Tripod()
    : data(std::make_unique<TripodData>()) {}

Tripod::~Tripod() = default;

void Tripod::set_position(float x, float y, float z, float w) {
    set_position(vec4(x, y, z, w));
}

void Tripod::set_position(const vec4& position) {
    data->position = position;
    data->dirty = true;
}

const vec4& Tripod::get_position() const {
    return data->position;
}

float* Tripod::get_position_ptr() {
    return &data->position.x;
}

const float* Tripod::get_position_ptr() const {
    return &data->position.x;
}

vec4* Tripod::get_position_vec4_ptr() {
    return &data->position;
}

const vec4* Tripod::get_position_vec4_ptr() const {
    return &data->position;
}

void Tripod::set_orientation(const quat& orientation) {
    data->orientation = orientation;
    data->euler_dirty = false;
    data->dirty = true;
}

const quat& Tripod::get_orientation() const {
    data->update_orientation();
    return data->orientation;
}

void Tripod::set_orientation_euler_angles(float x, float y, float z) {
    data->orientation_euler_angles.set(x, y, z, 1.0f);
    data->euler_dirty = true;
    data->dirty = true;
}

const vec4& Tripod::get_orientation_euler_angles() const {
    return data->orientation_euler_angles;
}

void Tripod::TripodData::update_orientation() {
    if (!euler_dirty)
        return;
    const vec4& angles = orientation_euler_angles;
    rotation_x.from_euler(angles.x, 0.0f, 0.0f);
    rotation_y.from_euler(0.0f, angles.y, 0.0f);
    rotation_z.from_euler(0.0f, 0.0f, angles.z);
    orientation = rotation_x * rotation_y * rotation_z;
    euler_dirty = false;
}

void Tripod::update_orientation() {
    data->update_orientation();
}

void Tripod::set_scale(float x, float y, float z) {
    set_scale(vec4(x, y, z, 1.0f));
}

void Tripod::set_scale(const vec4& scale) {
    data->scale = scale;
    data->dirty = true;
}

const vec4& Tripod::get_scale() const {
    return data->scale;
}

float* Tripod::get_scale_ptr() {
    return &data->scale.x;
}

const float* Tripod::get_scale_ptr() const {
    return &data->scale.x;
}

vec4* Tripod::get_scale_vec4_ptr() {
    return &data->scale;
}

const vec4* Tripod::get_scale_vec4_ptr() const {
    return &data->scale;
}

void Tripod::TripodData::update_transform() {
    if (!dirty)
        return;
    translation_matrix.init_translate(position);
    update_orientation();
    rotation_matrix.from_quat(orientation);
    scale_matrix.init_scale(scale);
    transform = translation_matrix * rotation_matrix * scale_matrix;
    dirty = false;
}

void Tripod::update_transform() {
    data->update_transform();
}

void Tripod::set_transform(const mat4& transform) {
    data->transform = transform;
    data->dirty = false;
}

void Tripod::set_transform(const float* transform) {
    if (!transform)
        return;
    data->transform.from_float_array(transform);
    data->dirty = false;
}

mat4& Tripod::get_transform() {
    data->update_transform();
    return data->transform;
}

const mat4& Tripod::get_transform() const {
    data->update_transform();
    return data->transform;
}

float* Tripod::get_transform_ptr() {
    return get_transform().ptr();
}

const float* Tripod::get_transform_ptr() const {
    return get_transform().ptr();
}

mat4* Tripod::get_transform_mat4_ptr() {
    return &get_transform();
}

const mat4* Tripod::get_transform_mat4_ptr() const {
    return &get_transform();
}

} // namespace orvex
