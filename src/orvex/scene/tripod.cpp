// The transform: setters store and mark, getters compute what is marked. Two marks stand one
// above the other: angles that are newer than the orientation, and components that are newer than
// the matrix.

#include "orvex/scene/tripod.h"

#include <cstring>

#include "orvex/math/private/turn_numbers.h"
#include "orvex/math/private/zero.h"
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
    euler_dirty = false;
    const float x = orientation_euler_angles.x, y = orientation_euler_angles.y,
                z = orientation_euler_angles.z;
    // A single turn is the product already, to the bit: the other factors are the identity.
    if (is_positive_zero(x) + is_positive_zero(y) + is_positive_zero(z) >= 2)
        orientation.from_euler(x, y, z);
    else
        orientation = quat().from_euler(x, 0.0f, 0.0f) * quat().from_euler(0.0f, y, 0.0f) *
                      quat().from_euler(0.0f, 0.0f, z);
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

namespace {

/// The product of a translation, a rotation and a scale, each a matrix as `mat4` makes it. Columns
/// stay in registers: of one that was written number by number the processor would wait.
mat4 product_of(const vec4& position, const quat& turn, const vec4& scale) {
    using detail::column4;
    const column4 translation[4] = {{1.0f, 0.0f, 0.0f, 0.0f},
                                    {0.0f, 1.0f, 0.0f, 0.0f},
                                    {0.0f, 0.0f, 1.0f, 0.0f},
                                    {position.x, position.y, position.z, 1.0f}};
    const TurnNumbers numbers(turn);
    const column4 rotation[4] = {{numbers.xx, numbers.yx, numbers.zx, 0.0f},
                                 {numbers.xy, numbers.yy, numbers.zy, 0.0f},
                                 {numbers.xz, numbers.yz, numbers.zz, 0.0f},
                                 {0.0f, 0.0f, 0.0f, 1.0f}};
    const column4 scaling[4] = {{scale.x, 0.0f, 0.0f, 0.0f},
                                {0.0f, scale.y, 0.0f, 0.0f},
                                {0.0f, 0.0f, scale.z, 0.0f},
                                {0.0f, 0.0f, 0.0f, 1.0f}};
    column4 moved[4];
    for (int i = 0; i < 4; ++i)
        moved[i] = detail::combine_columns(translation, rotation[i]);
    mat4 product;
    for (int i = 0; i < 4; ++i) {
        const column4 column = detail::combine_columns(moved, scaling[i]);
        std::memcpy(product.m + 4 * i, &column, sizeof(column));
    }
    return product;
}

} // namespace

void Tripod::TripodData::update_transform() {
    if (!dirty)
        return;
    update_orientation();
    transform = product_of(position, orientation, scale);
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
