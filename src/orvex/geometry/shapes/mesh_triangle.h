#pragma once

#include "orvex/api.h"
#include "orvex/geometry/mesh/mesh.h"

namespace orvex {

/// One triangle of three given corners, red, green and blue.
///
/// Made with `new` and ended through its references, like every node. The geometry is made by the
/// next `build` after construction or `set_build_params`, and replaces what was there.
///
/// The front is where the corners are seen counter-clockwise. Normals are (0, 0, 1) whatever the
/// corners. There are no quad edges. Used on the thread that owns the renderer's context.
///
/// @code
/// orvex::MeshTriangle* triangle = new orvex::MeshTriangle;
/// triangle->build(nullptr);
/// @endcode
class ORVEX_API MeshTriangle : public Mesh {
public:
    /// (-1, -1, 0), (1, -1, 0), (0, 1, 0), to be built.
    MeshTriangle();
    /// The same in another vertex format.
    explicit MeshTriangle(VERTEX_FORMAT format);

    /// Stores the corners for the next build; their w is not used.
    /// @return true
    bool set_build_params(const vec4& p0, const vec4& p1, const vec4& p2);

    /// Makes the geometry if the build state is set, then updates the bounding sphere. Children are
    /// not reached.
    /// @return false if the geometry could not be made
    bool build(Node* node) override;

private:
    bool _build_triangle();

    vec4 p0{-1.0f, -1.0f, 0.0f, 1.0f};
    vec4 p1{1.0f, -1.0f, 0.0f, 1.0f};
    vec4 p2{0.0f, 1.0f, 0.0f, 1.0f};
};

} // namespace orvex
