#include "orvex/geometry/shapes/mesh_quad_hud.h"

#include "orvex/geometry/mesh/private/mesh_contents.h"
#include "orvex/geometry/shapes/private/mesh_quad_layout.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

MeshQuadHud::MeshQuadHud()
    : MeshQuadHud(VERTEX_FORMAT_96) {}

MeshQuadHud::MeshQuadHud(VERTEX_FORMAT format)
    : Mesh(format) {
    set_type(NODE_TYPE_MESH_QUAD_HUD);
    note_drawn_by_engine(*this);
}

bool MeshQuadHud::set_build_params() {
    update_build_state(true);
    return true;
}

bool MeshQuadHud::build(Node*) {
    return mesh_shape::build_if_asked(*this, [this] { return _build_quad_hud(); }) &&
           Mesh::_build();
}

bool MeshQuadHud::_build_quad_hud() {
    free_mesh_data();
    if (!mesh_quad_layout::build(*this, {0.0f, 0.0f, 1.0f, 1.0f}))
        return false;
    mesh_contents::mark_for_upload(*get_mesh_data());
    return true;
}

} // namespace orvex
