#pragma once

#include "orvex/api.h"
#include "orvex/geometry/mesh/mesh.h"

namespace orvex {

/// A flat disc, ellipse or sector of one in the plane XZ, around the origin.
///
/// Made with `new` and ended through its references, like every node. The geometry is made by the
/// next `build` after construction or `set_build_params`, and replaces what was there.
///
/// Vertex 0 is the centre; spokes follow, from +X towards +Z, each from the inside out. Normals
/// point along +Y, which is the front of the faces; colour is white. Texture coordinates are the
/// same for all rings of a spoke and leave 0 to 1. There are no quad edges. Used on the thread that
/// owns the renderer's context.
///
/// Rings are stepped by adding up the radius of the first, so that for some ring counts (10 with a
/// radius of 4, for one) rounding leaves the last ring out and the picture sheared. Powers of two
/// are always exact.
///
/// @code
/// orvex::MeshEllipse* pond = new orvex::MeshEllipse;
/// pond->set_build_params(3.0f, 2.0f, 32, 4, 360.0f);
/// pond->build(nullptr);
/// @endcode
class ORVEX_API MeshEllipse : public Mesh {
public:
    /// A full circle of radius 4, 10 slices, 2 rings, to be built.
    MeshEllipse();
    /// The same in another vertex format.
    explicit MeshEllipse(VERTEX_FORMAT format);

    /// Stores the parameters for the next build.
    /// @param radius_x,radius_z  along X and Z
    /// @param slices   sectors, at least 3; with less the vertices are laid out for 3 and remain
    ///                 partly unset
    /// @param rings    at least 1; with less there are no faces to be seen
    /// @param degrees  angle of all slices together; 360 for the whole ellipse
    /// @return true
    bool set_build_params(float radius_x, float radius_z, int slices, int rings, float degrees);

    /// Makes the geometry if the build state is set, then updates the bounding sphere. Children are
    /// not reached.
    /// @return false if the geometry could not be made
    bool build(Node* node) override;

private:
    bool _build_ellipse();
    void write_vertices(int shape_slices, int shape_rings);
    void write_faces();

    float radius_x = 4.0f;
    float radius_z = 4.0f;
    int slices = 10;
    int rings = 2;
    float degrees = 360.0f;
};

} // namespace orvex
