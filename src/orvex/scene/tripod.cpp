#include "orvex/scene/tripod.h"

#include "orvex/math/mat4.h"
#include "orvex/math/quat.h"
#include "orvex/math/vec4.h"

namespace orvex {

/// What every frame reads stands first.
struct Tripod::TripodData {
    mat4 transform;
    bool dirty = true;
    bool euler_dirty = true; ///< the angles are newer than `orientation`
    quat orientation;
    quat rotation_x, rotation_y, rotation_z;
    vec4 orientation_euler_angles;
    vec4 position;
    vec4 scale = vec4::ONE;
    mat4 translation_matrix, scale_matrix, rotation_matrix;
};

Tripod::Tripod()
    : tripod_data(new TripodData) {}

Tripod::~Tripod() {
    delete tripod_data;
}

void Tripod::set_position(float x, float y, float z, float w) {
    set_position(vec4(x, y, z, w));
}

void Tripod::set_position(const vec4& position) {
    tripod_data->position = position;
    tripod_data->dirty = true;
}

const vec4& Tripod::get_position() const {
    return tripod_data->position;
}

float* Tripod::get_position_ptr() {
    return &tripod_data->position.x;
}

vec4* Tripod::get_position_vec4_ptr() {
    return &tripod_data->position;
}

void Tripod::set_orientation(const quat& orientation) {
    tripod_data->orientation = orientation;
    tripod_data->euler_dirty = false;
    tripod_data->dirty = true;
}

const quat& Tripod::get_orientation() {
    update_orientation();
    return tripod_data->orientation;
}

void Tripod::set_orientation_euler_angles(float x, float y, float z) {
    tripod_data->orientation_euler_angles.set(x, y, z, 1.0f);
    tripod_data->euler_dirty = true;
    tripod_data->dirty = true;
}

const vec4& Tripod::get_orientation_euler_angles() const {
    return tripod_data->orientation_euler_angles;
}

void Tripod::update_orientation() {
    TripodData& data = *tripod_data;
    if (!data.euler_dirty)
        return;
    const vec4& angles = data.orientation_euler_angles;
    data.rotation_x.from_euler(angles.x, 0.0f, 0.0f);
    data.rotation_y.from_euler(0.0f, angles.y, 0.0f);
    data.rotation_z.from_euler(0.0f, 0.0f, angles.z);
    data.orientation = data.rotation_x * data.rotation_y * data.rotation_z;
    data.euler_dirty = false;
}

void Tripod::set_scale(float x, float y, float z) {
    set_scale(vec4(x, y, z, 1.0f));
}

void Tripod::set_scale(const vec4& scale) {
    tripod_data->scale = scale;
    tripod_data->dirty = true;
}

const vec4& Tripod::get_scale() const {
    return tripod_data->scale;
}

float* Tripod::get_scale_ptr() {
    return &tripod_data->scale.x;
}

vec4* Tripod::get_scale_vec4_ptr() {
    return &tripod_data->scale;
}

void Tripod::update_transform() {
    TripodData& data = *tripod_data;
    if (!data.dirty)
        return;
    data.translation_matrix.init_translate(data.position);
    update_orientation();
    data.rotation_matrix.from_quat(data.orientation);
    data.scale_matrix.init_scale(data.scale);
    data.transform = data.translation_matrix * data.rotation_matrix * data.scale_matrix;
    data.dirty = false;
}

void Tripod::set_transform(const mat4& transform) {
    tripod_data->transform = transform;
    tripod_data->dirty = false;
}

void Tripod::set_transform(const float* transform) {
    if (!transform)
        return;
    tripod_data->transform.from_float_array(transform);
    tripod_data->dirty = false;
}

mat4& Tripod::get_transform() {
    update_transform();
    return tripod_data->transform;
}

float* Tripod::get_transform_ptr() {
    return get_transform().ptr();
}

mat4* Tripod::get_transform_mat4_ptr() {
    return &get_transform();
}

} // namespace orvex
