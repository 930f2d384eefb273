#pragma once

#include "orvex/api.h"
#include "orvex/geometry/mesh/mesh.h"

namespace orvex {

/// A box around the origin, each side cut into a grid of cells.
///
/// Made with `new` and ended through its references, like every node. The geometry is made by the
/// next `build` after construction or `set_build_params`, and replaces what was there.
///
/// Sides are parallel to the axes of the object's space, with normals, white colour and a texture
/// that covers each side once; all are counter-clockwise seen from outside. No vertices are shared:
/// face k has the corners 3k, 3k + 1 and 3k + 2. There are no quad edges. Used on the thread that
/// owns the renderer's context.
///
/// @code
/// orvex::MeshBox* box = new orvex::MeshBox;
/// box->set_build_params(2.0f, 1.0f, 1.0f, 1, 1, 1);
/// box->build(nullptr); // 12 faces, 36 vertices
/// @endcode
class ORVEX_API MeshBox : public Mesh {
public:
    /// A cube of size 2 with two segments per axis, to be built.
    MeshBox();
    /// The same in another vertex format.
    explicit MeshBox(VERTEX_FORMAT format);

    /// Stores the parameters for the next build.
    /// @param width,height,depth  along X, Y and Z
    /// @param wsegs,hsegs,dsegs   cells along X, Y and Z; the build raises counts
    ///                                          below 1 to 1
    /// @return true
    bool set_build_params(float width, float height, float depth, int wsegs, int hsegs, int dsegs);

    /// Makes the geometry if the build state is set, then updates the bounding sphere. Children are
    /// not reached.
    /// @return false if the geometry could not be made
    bool build(Node* node) override;

private:
    bool _build_box();

    float width = 2.0f;
    float height = 2.0f;
    float depth = 2.0f;
    int wsegs = 2;
    int hsegs = 2;
    int dsegs = 2;
};

} // namespace orvex
