#pragma once

#include "orvex/api.h"
#include "orvex/geometry/mesh/mesh.h"

namespace orvex {

/// A sphere around the origin, with its poles on the Z axis.
///
/// Made with `new` and ended through its references, like every node. The geometry is made by the
/// next `build` after construction or `set_build_params`, and replaces what was there.
///
/// Rings follow each other from +Z to -Z; in a ring, vertices go from +Y to +X and on, the last at
/// the place of the first. Normals, white colour, u once around and v from the +Z pole on. Faces
/// are counter-clockwise seen from outside; one triangle of each cell at a pole has no area. From
/// the first build on the bounding sphere is the one inscribed in the bounding box. Used on the
/// thread that owns the renderer's context.
///
/// @code
/// orvex::MeshSphere* ball = new orvex::MeshSphere;
/// ball->set_build_params(1.0f, 32, 16);
/// ball->build(nullptr);
/// @endcode
class ORVEX_API MeshSphere : public Mesh {
public:
    /// Radius 4, 20 slices, 20 stacks, to be built.
    MeshSphere();
    /// The same in another vertex format.
    explicit MeshSphere(VERTEX_FORMAT format);

    /// Stores the parameters for the next build.
    /// @param slices  cells around the axis, at least 3 are built
    /// @param stacks  cells from pole to pole, at least 2 are built
    /// @return true
    bool set_build_params(float radius, int slices, int stacks);
    float get_radius() const; ///< as stored
    int get_slices() const;   ///< as stored
    int get_stacks() const;   ///< as stored

    /// Makes the geometry if the build state is set, updates the bounding sphere, and builds the
    /// children, which are built in any case.
    /// @return false if the geometry could not be made
    bool build(Node* node) override;
    /// The same without the children.
    bool _build() override;

private:
    bool _build_sphere();

    float radius = 4.0f;
    int slices = 20;
    int stacks = 20;
};

} // namespace orvex
