#pragma once

/// @file
/// Small records and flags of `Mesh`.

#include "orvex/fwd.h"
#include "orvex/renderer/records/geometry_enums.h"

namespace orvex {

/// A run of faces that is drawn with one material, 12 bytes.
struct MaterialSubset {
    unsigned int first_face = 0;         ///< index of the first face
    unsigned int last_face = 0xFFFFFFFF; ///< index of the last face, which belongs to the run
    unsigned int material = 0;           ///< `Node` id of the material
};

static_assert(sizeof(MaterialSubset) == 12);

/// Asks `Mesh::instancing_init` for per-instance arrays, one flag for each.
struct InstancingInitParams {
    bool position = false; ///< where an instance stands
    bool rotation = false; ///< how it is turned
    bool scale = false;    ///< its size
    bool color = false;    ///< its colour
    bool misc = false;     ///< free for the host's own use
};

/// Borders of a mesh in object space, as bit flags that may be added up. See
/// `Mesh::vertex_particle_attach_border`.
enum MESH_PLANE_BORDER_TYPE : int {
    MESH_PLANE_BORDER_X_MIN = 1,  ///< smallest x
    MESH_PLANE_BORDER_X_MAX = 2,  ///< largest x
    MESH_PLANE_BORDER_Z_MIN = 4,  ///< smallest z
    MESH_PLANE_BORDER_Z_MAX = 8,  ///< largest z
    MESH_PLANE_BORDER_Y_MIN = 16, ///< smallest y
    MESH_PLANE_BORDER_Y_MAX = 32, ///< largest y
};

} // namespace orvex
