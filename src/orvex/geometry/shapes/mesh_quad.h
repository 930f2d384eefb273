#pragma once

#include "orvex/api.h"
#include "orvex/geometry/mesh/mesh.h"

namespace orvex {

/// A rectangle in the plane XY, centred at the origin.
///
/// Made with `new` and ended through its references, like every node. The geometry is made by the
/// next `build` after construction or `set_build_params`, and replaces what was there.
///
/// Four vertices and two faces, from the lower left corner up. The faces are clockwise seen from
/// +Z, although the normals point to +Z: cull accordingly. Colour is white, and the texture covers
/// the quad once, with v 0 at the lower edge. Used on the thread that owns the renderer's context.
///
/// @code
/// orvex::MeshQuad* screen = new orvex::MeshQuad;
/// screen->set_build_params(16.0f, 9.0f);
/// screen->build(nullptr);
/// @endcode
class ORVEX_API MeshQuad : public Mesh {
public:
    /// 10 by 10, to be built.
    MeshQuad();
    /// The same in another vertex format.
    explicit MeshQuad(VERTEX_FORMAT format);

    /// Stores the parameters for the next build.
    /// @param width,height  along X and Y
    /// @return true
    bool set_build_params(float width, float height);

    /// Moves the four vertices of a built quad to another size, without a build, and marks them for
    /// upload. The size isn't stored: the next build goes back to that of `set_build_params`. The
    /// bounding sphere stays.
    /// @param width,height  along X and Y
    void update_params(float width, float height);

    /// Makes the geometry if the build state is set, then updates the bounding sphere. Children are
    /// not reached.
    /// @return false if the geometry could not be made
    bool build(Node* node) override;

private:
    bool _build_quad();

    float width = 10.0f;
    float height = 10.0f;
};

} // namespace orvex
