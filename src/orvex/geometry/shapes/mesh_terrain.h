#pragma once

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/geometry/mesh/mesh.h"

#include <memory>

namespace orvex {

/// A square grid in the plane XZ, centred at the origin and raised along Y by the brightness of a
/// height map.
///
/// Made with `new` and ended through its references, like every node. The geometry is made by the
/// next `build` after construction or `set_build_params`, and replaces what was there. The height
/// map stays the host's: it must live until it has been read, which the first build does. Its
/// heights are kept until `cleanup`, and a later map is not read before that.
///
/// Rows follow each other from -Z to +Z, and the map's rows with them; vertices in a row go from -X
/// to +X. White colour, u along X and v along Z. Faces are counter-clockwise seen from +Y. Normals
/// are not computed: call `compute_faces_normal` and `compute_vertices_normal`. Used on the thread
/// that owns the renderer's context.
///
/// @code
/// orvex::Texture* map = TextureMgr::get()->create_texture_2d_from_file("hills.png", false);
/// orvex::MeshTerrain* hills = new orvex::MeshTerrain;
/// hills->set_build_params(map, 128, 40.0f, 500.0f, 0.0f);
/// hills->build(nullptr);
/// hills->compute_faces_normal(nullptr);
/// hills->compute_vertices_normal(nullptr);
/// @endcode
class ORVEX_API MeshTerrain : public Mesh {
public:
    /// No height map and all parameters 0, to be built.
    MeshTerrain();
    /// The same in another vertex format.
    explicit MeshTerrain(VERTEX_FORMAT format);
    ~MeshTerrain() override;

    /// Stores the parameters for the next build.
    /// @param height_map     not counted; see `init_terrain_buffer` for what it must be. Without a
    ///                       usable one all elevations are 0
    /// @param resolution     cells per side; from 0 on down a single vertex is built
    /// @param height_scale   elevation of white
    /// @param half_size      half the length of a side
    /// @param min_elevation  lower elevations are raised to it
    /// @return true
    bool set_build_params(Texture* height_map, int resolution, float height_scale, float half_size,
                          float min_elevation);

    /// Makes the geometry if the build state is set, then updates the bounding sphere. Children are
    /// not reached.
    /// @return false if the geometry could not be made
    bool build(Node* node) override;

    /// Frees the heights, then does what `Mesh` does.
    bool _cleanup(Renderer* renderer) override;

    /// Reads the heights of a map, in place of those read before: for each texel 0.3, 0.59 and 0.11
    /// of its three bytes in storage order, as shares of 255, whichever of them is red.
    /// @return false, keeping what was there, for null, for a map that isn't square or has no
    ///         pixels in one of the two three-byte formats, or if memory runs out
    bool init_terrain_buffer(Texture* height_map);

    /// The elevation of the nearest texel below a grid point; reads the height map at first use.
    /// @param x,y  column and row of the grid point, 0 to n
    /// @param n           cells per side of the grid
    /// @param scale       elevation of white
    /// @return 0 without heights, and for a point outside the map
    float elevation(int x, int y, int n, float scale);

private:
    bool _build_terrain();
    void write_vertices(int n);

    Texture* height_map = nullptr;
    int resolution = 0;
    float height_scale = 0.0f;
    float half_size = 0.0f;
    float min_elevation = 0.0f;
    unsigned long map_size = 0;
    std::unique_ptr<float[]> elevation_buffer;
};

} // namespace orvex
