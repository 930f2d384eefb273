#pragma once

#include "orvex/api.h"
#include "orvex/geometry/mesh/mesh.h"

namespace orvex {

/// A ring around the Y axis, centred at the origin.
///
/// Made with `new` and ended through its references, like every node. The geometry is made by the
/// next `build` after construction or `set_build_params`, and replaces what was there.
///
/// The section is a circle in the plane XY, turned around the Y axis from +X towards -Z. `radius`
/// is the outer radius of the whole: the hole has the radius minus twice that of the tube. Normals
/// and white colour; u goes twice around the ring, v once around the tube. Faces are
/// counter-clockwise seen from outside. Used on the thread that owns the renderer's context.
///
/// @code
/// orvex::MeshTorus* ring = new orvex::MeshTorus;
/// ring->set_build_params(2.0f, 0.5f, 32);
/// ring->build(nullptr);
/// @endcode
class ORVEX_API MeshTorus : public Mesh {
public:
    /// Radius 5, tube radius 2, 20 slices, to be built.
    MeshTorus();
    /// The same in another vertex format.
    explicit MeshTorus(VERTEX_FORMAT format);

    /// Stores the parameters for the next build.
    /// @param radius       outer radius of the whole
    /// @param tube_radius  of the section
    /// @param slices       cells around the ring and around the tube; from 0 on down a single,
    ///                     undefined vertex is built
    /// @return true
    bool set_build_params(float radius, float tube_radius, int slices);
    float get_radius() const;      ///< as stored
    float get_tube_radius() const; ///< as stored
    int get_slices() const;        ///< as stored

    /// Makes the geometry if the build state is set, updates the bounding sphere, and builds the
    /// children, which are built in any case.
    /// @return false if the geometry could not be made
    bool build(Node* node) override;
    /// The same without the children.
    bool _build() override;

private:
    bool _build_torus();

    float radius = 5.0f;
    float tube_radius = 2.0f;
    int slices = 20;
};

} // namespace orvex
