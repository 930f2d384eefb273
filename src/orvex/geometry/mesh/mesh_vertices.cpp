#include "orvex/geometry/mesh/mesh.h"

#include "orvex/math/mat4.h"
#include "orvex/renderer/records/mesh_data.h"

namespace orvex {

void Mesh::set_vertex_position(unsigned long i, const vec4& position) {
    if (!mesh_data)
        return;
    mesh_data->set_position(i, position);
    mesh_data->positions_need_update = true;
}

void Mesh::set_vertex_position_w(unsigned long i, float w) {
    if (!mesh_data)
        return;
    vec4 position = mesh_data->get_position_4f(i);
    position.w = w;
    set_vertex_position(i, position);
}

vec4 Mesh::get_vertex_position(unsigned long i) const {
    return mesh_data ? vec4(mesh_data->get_position(i)) : vec4();
}

bool Mesh::get_vertex_absolute_position(unsigned long i, vec4* out) {
    if (!out || !mesh_data || i >= mesh_data->num_vertices)
        return false;
    *out = get_absolute_transform() * get_vertex_position(i);
    return true;
}

void Mesh::set_vertex_normal(unsigned long i, const vec4& normal) {
    if (!mesh_data)
        return;
    mesh_data->set_normal(i, normal.get_vec3());
    mesh_data->normals_need_update = true;
}

vec4 Mesh::get_vertex_normal(unsigned long i) const {
    const vec3 normal = mesh_data ? mesh_data->get_normal(i) : vec3();
    return vec4(normal.x, normal.y, normal.z, 0.0f);
}

void Mesh::set_vertex_tangent(unsigned long i, const vec4& tangent) {
    if (!mesh_data)
        return;
    mesh_data->set_tangent(i, tangent);
    mesh_data->tangents_need_update = true;
}

vec4 Mesh::get_vertex_tangent(unsigned long i) const {
    return mesh_data ? mesh_data->get_tangent(i) : vec4();
}

void Mesh::set_vertex_color(unsigned long i, const vec4& color) {
    if (!mesh_data)
        return;
    mesh_data->set_color(i, color);
    mesh_data->colors_need_update = true;
}

vec4 Mesh::get_vertex_color(unsigned long i) const {
    return mesh_data ? mesh_data->get_color(i) : vec4();
}

void Mesh::set_vertex_uv(unsigned long i, const vec4& uv, unsigned int layer) {
    if (!mesh_data)
        return;
    if (layer == 0) {
        mesh_data->set_uv0(i, uv);
        mesh_data->uv0_need_update = true;
    }
    if (layer == 1) {
        mesh_data->set_uv1(i, uv);
        mesh_data->uv1_need_update = true;
    }
}

vec4 Mesh::get_vertex_uv(unsigned long i, unsigned int layer) const {
    if (!mesh_data)
        return vec4();
    return layer == 1 ? mesh_data->get_uv1(i) : mesh_data->get_uv0(i);
}

void Mesh::set_user_vertex_attrib(unsigned long attrib, unsigned long i, const vec4& value) {
    if (mesh_data)
        mesh_data->set_user_attrib(attrib, i, value);
}

vec4 Mesh::get_user_vertex_attrib(unsigned long attrib, unsigned long i) const {
    return mesh_data ? mesh_data->get_user_attrib(attrib, i) : vec4();
}

} // namespace orvex
