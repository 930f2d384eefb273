#include "orvex/renderer/records/mesh_data.h"

#include "orvex/renderer/records/private/vertex_access.h"

// What can be asked of a store in the full format, vertex by vertex and block by block, and what is
// only noted in it.

namespace orvex {

using namespace vertex_access;

Vertex* MeshData::get_vertex(unsigned long i) {
    return vertices && i < num_vertices ? &vertices[i] : nullptr;
}

Vertex MeshData::get_vertex_v2(unsigned long i) {
    if (i >= num_vertices)
        return Vertex();
    if (vertices)
        return vertices[i];
    return Vertex{element(position, i), element(color, i), element(normal, i),
                  element(uv0, i),      element(uv1, i),   element(tangent, i)};
}

unsigned int MeshData::get_vertex_elt_size() {
    return sizeof(Vertex);
}

void* MeshData::get_vertex_ptr() {
    return vertices;
}

unsigned int MeshData::get_position_elt_size() {
    return position.get_element_size();
}

unsigned int MeshData::get_color_elt_size() {
    return color.get_element_size();
}

unsigned int MeshData::get_normal_elt_size() {
    return normal.get_element_size();
}

unsigned int MeshData::get_uv0_elt_size() {
    return uv0.get_element_size();
}

unsigned int MeshData::get_uv1_elt_size() {
    return uv1.get_element_size();
}

unsigned int MeshData::get_tangent_elt_size() {
    return tangent.get_element_size();
}

unsigned int MeshData::get_position_vector_dim() {
    return position.get_vector_dim();
}

unsigned int MeshData::get_color_vector_dim() {
    return color.get_vector_dim();
}

unsigned int MeshData::get_normal_vector_dim() {
    return normal.get_vector_dim();
}

unsigned int MeshData::get_uv0_vector_dim() {
    return uv0.get_vector_dim();
}

unsigned int MeshData::get_uv1_vector_dim() {
    return uv1.get_vector_dim();
}

unsigned int MeshData::get_tangent_vector_dim() {
    return tangent.get_vector_dim();
}

namespace {

unsigned int size_in_bytes(unsigned int element_size, unsigned long count) {
    return static_cast<unsigned int>(element_size * count);
}

} // namespace

unsigned int MeshData::get_position_size() {
    return size_in_bytes(get_position_elt_size(), num_vertices);
}

unsigned int MeshData::get_color_size() {
    return size_in_bytes(get_color_elt_size(), num_vertices);
}

unsigned int MeshData::get_normal_size() {
    return size_in_bytes(get_normal_elt_size(), num_vertices);
}

unsigned int MeshData::get_uv0_size() {
    return size_in_bytes(get_uv0_elt_size(), num_vertices);
}

unsigned int MeshData::get_uv1_size() {
    return size_in_bytes(get_uv1_elt_size(), num_vertices);
}

unsigned int MeshData::get_tangent_size() {
    return size_in_bytes(get_tangent_elt_size(), num_vertices);
}

void* MeshData::get_position_ptr() {
    return position.data;
}

void* MeshData::get_color_ptr() {
    return color.data;
}

void* MeshData::get_normal_ptr() {
    return normal.data;
}

void* MeshData::get_uv0_ptr() {
    return uv0.data;
}

void* MeshData::get_uv1_ptr() {
    return uv1.data;
}

void* MeshData::get_tangent_ptr() {
    return tangent.data;
}

// What is handed out to read only comes from the operations that each format has of its own, and
// that hosts know without a `const`.

const Vertex* MeshData::get_vertex(unsigned long i) const {
    return const_cast<MeshData*>(this)->get_vertex(i);
}

const void* MeshData::get_vertex_ptr() const {
    return const_cast<MeshData*>(this)->get_vertex_ptr();
}

const void* MeshData::get_position_ptr() const {
    return const_cast<MeshData*>(this)->get_position_ptr();
}

const void* MeshData::get_color_ptr() const {
    return const_cast<MeshData*>(this)->get_color_ptr();
}

const void* MeshData::get_normal_ptr() const {
    return const_cast<MeshData*>(this)->get_normal_ptr();
}

const void* MeshData::get_uv0_ptr() const {
    return const_cast<MeshData*>(this)->get_uv0_ptr();
}

const void* MeshData::get_uv1_ptr() const {
    return const_cast<MeshData*>(this)->get_uv1_ptr();
}

const void* MeshData::get_tangent_ptr() const {
    return const_cast<MeshData*>(this)->get_tangent_ptr();
}

vec3 MeshData::get_position(unsigned long i) const {
    return read_vec3(stored(*this, position, &Vertex::position, i));
}

vec4 MeshData::get_position_4f(unsigned long i) const {
    return read_vec4(stored(*this, position, &Vertex::position, i));
}

vec4 MeshData::get_color(unsigned long i) const {
    return read_vec4(stored(*this, color, &Vertex::color, i));
}

vec3 MeshData::get_normal(unsigned long i) const {
    return read_vec3(stored(*this, normal, &Vertex::normal, i));
}

vec4 MeshData::get_uv0(unsigned long i) const {
    return read_vec4(stored(*this, uv0, &Vertex::uv0, i));
}

vec4 MeshData::get_uv1(unsigned long i) const {
    return read_vec4(stored(*this, uv1, &Vertex::uv1, i));
}

vec4 MeshData::get_tangent(unsigned long i) const {
    return read_vec4(stored(*this, tangent, &Vertex::tangent, i));
}

vec4 MeshData::get_user_attrib(unsigned long attrib, unsigned long i) const {
    if (attrib >= num_user_attribs || i >= num_vertices || i >= user_attribs[attrib].num_elements)
        return vec4();
    return user_attribs[attrib].data[i];
}

void MeshData::set_position(unsigned long i, const vec3& value) {
    write(stored(*this, position, &Vertex::position, i), value);
}

void MeshData::set_position(unsigned long i, const vec4& value) {
    write(stored(*this, position, &Vertex::position, i), value);
}

void MeshData::set_normal(unsigned long i, const vec3& value) {
    write(stored(*this, normal, &Vertex::normal, i), vec4(value.x, value.y, value.z, 0.0f));
}

void MeshData::set_color(unsigned long i, const vec4& value) {
    write(stored(*this, color, &Vertex::color, i), value);
}

void MeshData::set_uv0(unsigned long i, const vec4& value) {
    write(stored(*this, uv0, &Vertex::uv0, i), value);
}

void MeshData::set_uv1(unsigned long i, const vec4& value) {
    write(stored(*this, uv1, &Vertex::uv1, i), value);
}

void MeshData::set_tangent(unsigned long i, const vec4& value) {
    write(stored(*this, tangent, &Vertex::tangent, i), value);
}

void MeshData::set_user_attrib(unsigned long attrib, unsigned long i, const vec4& value) {
    if (attrib >= num_user_attribs || i >= user_attribs[attrib].num_elements)
        return;
    user_attribs[attrib].data[i] = value;
    user_attribs[attrib].need_update = true;
}

void MeshData::set_vertex_format(VERTEX_FORMAT format) {
    vertex_format = format;
}

VERTEX_FORMAT MeshData::get_vertex_format() const {
    return vertex_format;
}

void MeshData::set_position_attrib_location(int location) {
    position_attrib_location = location;
    update_attrib_locations();
}

int MeshData::get_position_attrib_location() const {
    return position_attrib_location;
}

void MeshData::set_color_attrib_location(int location) {
    color_attrib_location = location;
    update_attrib_locations();
}

int MeshData::get_color_attrib_location() const {
    return color_attrib_location;
}

void MeshData::set_normal_attrib_location(int location) {
    normal_attrib_location = location;
    update_attrib_locations();
}

int MeshData::get_normal_attrib_location() const {
    return normal_attrib_location;
}

void MeshData::set_uv0_attrib_location(int location) {
    uv0_attrib_location = location;
    update_attrib_locations();
}

int MeshData::get_uv0_attrib_location() const {
    return uv0_attrib_location;
}

void MeshData::set_uv1_attrib_location(int location) {
    uv1_attrib_location = location;
    update_attrib_locations();
}

int MeshData::get_uv1_attrib_location() const {
    return uv1_attrib_location;
}

void MeshData::set_tangent_attrib_location(int location) {
    tangent_attrib_location = location;
    update_attrib_locations();
}

int MeshData::get_tangent_attrib_location() const {
    return tangent_attrib_location;
}

void MeshData::set_user_attrib_location(unsigned long attrib, int location) {
    if (attrib < num_user_attribs)
        user_attribs[attrib].attrib_location = location;
}

int MeshData::get_user_attrib_location(unsigned long attrib) const {
    return attrib < num_user_attribs ? user_attribs[attrib].attrib_location : -1;
}

void MeshData::set_use_generic_vertex_attribs_state(bool state) {
    use_generic_vertex_attribs = state;
}

bool MeshData::get_use_generic_vertex_attribs_state() const {
    return use_generic_vertex_attribs;
}

bool MeshData::has_separate_vertex_arrays() const {
    return separate_vertex_arrays;
}

unsigned long MeshData::get_num_vertices() const {
    return num_vertices;
}

} // namespace orvex
