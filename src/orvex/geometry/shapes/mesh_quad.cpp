#include "orvex/geometry/shapes/mesh_quad.h"

#include "orvex/geometry/mesh/private/mesh_contents.h"
#include "orvex/geometry/shapes/private/mesh_quad_layout.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

MeshQuad::MeshQuad()
    : MeshQuad(VERTEX_FORMAT_96) {}

MeshQuad::MeshQuad(VERTEX_FORMAT format)
    : Mesh(format) {
    set_type(NODE_TYPE_MESH_QUAD);
    note_drawn_by_engine(*this);
}

bool MeshQuad::set_build_params(float new_width, float new_height) {
    width = new_width;
    height = new_height;
    update_build_state(true);
    return true;
}

bool MeshQuad::build(Node*) {
    return mesh_shape::build_if_asked(*this, [this] { return _build_quad(); }) && Mesh::_build();
}

namespace {

mesh_quad_layout::Rectangle centred(float width, float height) {
    const float w = width / 2.0f;
    const float h = height / 2.0f;
    return {-w, -h, w, h};
}

} // namespace

void MeshQuad::update_params(float new_width, float new_height) {
    MeshData* const store = get_mesh_data();
    if (!store)
        return;
    mesh_quad_layout::write_positions(*store, centred(new_width, new_height));
    store->positions_need_update = true;
}

bool MeshQuad::_build_quad() {
    free_mesh_data();
    if (!mesh_quad_layout::build(*this, centred(width, height)))
        return false;
    MeshData& store = *get_mesh_data();
    if (!mesh_shape::allocate_quad_edges(store))
        return false;
    mesh_shape::OutlineWriter(store).add(0, 1, 2, 3);
    mesh_contents::mark_for_upload(store);
    return true;
}

} // namespace orvex
