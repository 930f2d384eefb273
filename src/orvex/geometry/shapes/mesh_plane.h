#pragma once

#include "orvex/api.h"
#include "orvex/geometry/mesh/mesh.h"

namespace orvex {

/// A flat grid in the plane XZ, centred at the origin.
///
/// Made with `new` and ended through its references, like every node. The geometry is made by the
/// next `build` after construction or `set_build_params`, and replaces what was there.
///
/// Rows follow each other from -Z to +Z, vertices in a row from -X to +X. Normals point along +Y,
/// colour is white, and the texture covers the plane once, with v 1 at -Z. With 16-bit indices all
/// faces are counter-clockwise seen from +Y. From 65,536 vertices on, with 32-bit indices, the
/// first triangle of each cell faces -Y instead: draw such planes without culling. Used on the
/// thread that owns the renderer's context.
///
/// @code
/// orvex::MeshPlane* floor = new orvex::MeshPlane;
/// floor->set_build_params(20.0f, 20.0f, 1, 1);
/// floor->build(nullptr);
/// @endcode
class ORVEX_API MeshPlane : public Mesh {
public:
    /// 10 by 10 in 4 by 4 cells, to be built.
    MeshPlane();
    /// The same in another vertex format.
    explicit MeshPlane(VERTEX_FORMAT format);

    /// Stores the parameters for the next build.
    /// @param width,height  along X and Z
    /// @param wsegs,hsegs   cells along X and Z, at least 1 is built
    /// @return true
    bool set_build_params(float width, float height, int wsegs, int hsegs);
    float get_width() const;  ///< as stored
    float get_height() const; ///< as stored
    int get_wsegs() const;    ///< as stored
    int get_hsegs() const;    ///< as stored

    /// Makes the geometry if the build state is set, then updates the bounding sphere. Children are
    /// not reached.
    /// @return false if the geometry could not be made
    bool build(Node* node) override;

private:
    bool _build_plane();

    float width = 10.0f;
    float height = 10.0f;
    int wsegs = 4;
    int hsegs = 4;
};

} // namespace orvex
