#pragma once

#include "orvex/api.h"
#include "orvex/geometry/mesh/mesh.h"

namespace orvex {

/// A unit square in the plane XY, from the origin to (1, 1), to be scaled and placed on the screen
/// by its transform.
///
/// Made with `new` and ended through its references, like every node. The geometry is made by the
/// next `build` after construction or `set_build_params`, and replaces what was there.
///
/// Vertices, faces, normals, colours and texture coordinates are in the order of `MeshQuad`, the
/// clockwise faces included. There are no quad edges. Used on the thread that owns the renderer's
/// context.
///
/// @code
/// orvex::MeshQuadHud* panel = new orvex::MeshQuadHud;
/// panel->build(nullptr);
/// panel->set_scale(200.0f, 100.0f, 1.0f);
/// @endcode
class ORVEX_API MeshQuadHud : public Mesh {
public:
    /// To be built.
    MeshQuadHud();
    /// The same in another vertex format.
    explicit MeshQuadHud(VERTEX_FORMAT format);

    /// Asks for the next build. @return true
    bool set_build_params();

    /// Makes the geometry if the build state is set, then updates the bounding sphere. Children are
    /// not reached.
    /// @return false if the geometry could not be made
    bool build(Node* node) override;

private:
    bool _build_quad_hud();
};

} // namespace orvex
