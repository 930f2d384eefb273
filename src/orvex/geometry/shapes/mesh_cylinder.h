#pragma once

#include "orvex/api.h"
#include "orvex/geometry/mesh/mesh.h"

namespace orvex {

/// A tube around the Z axis, open at both ends and centred at the origin.
///
/// Made with `new` and ended through its references, like every node. The geometry is made by the
/// next `build` after construction or `set_build_params`, and replaces the vertices and faces that
/// were there; instances and other parts of the store stay.
///
/// Rings follow each other from -Z to +Z; in a ring, vertices go from +Y to +X and on, the last at
/// the place of the first. Normals, white colour, u once around and v along the tube. Faces are
/// counter-clockwise seen from outside. Used on the thread that owns the renderer's context.
///
/// @code
/// orvex::MeshCylinder* tube = new orvex::MeshCylinder;
/// tube->set_build_params(1.0f, 3.0f, 1, 24);
/// tube->build(nullptr);
/// @endcode
class ORVEX_API MeshCylinder : public Mesh {
public:
    /// Radius 5, height 10, 20 stacks, 20 slices, to be built.
    MeshCylinder();
    /// The same in another vertex format.
    explicit MeshCylinder(VERTEX_FORMAT format);

    /// Stores the parameters for the next build.
    /// @param radius  a negative one is built as 1
    /// @param height  along Z; a negative one is built as 0
    /// @param stacks  cells along the tube, at least 3 are built
    /// @param slices  cells around it, at least 3 are built
    /// @return true
    bool set_build_params(float radius, float height, int stacks, int slices);

    /// Makes the geometry if the build state is set, then updates the bounding sphere. Children are
    /// not reached.
    /// @return false if the geometry could not be made
    bool build(Node* node) override;

private:
    bool _build_cylinder();

    float radius = 5.0f;
    float height = 10.0f;
    int stacks = 20;
    int slices = 20;
};

} // namespace orvex
