/// @file
/// A grid raised by a height map.
///
/// The heights are read once, from the map that the first build finds, and kept: later builds
/// with another grid take them anew from the same heights.

#include "orvex/geometry/shapes/mesh_terrain.h"

#include <algorithm>
#include <new>
#include <utility>

#include "orvex/assets/textures/texture.h"
#include "orvex/geometry/shapes/private/mesh_shape.h"
#include "orvex/math/private/sizes.h"
#include "orvex/renderer/records/private/image_access.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

using namespace mesh_shape;

MeshTerrain::MeshTerrain()
    : MeshTerrain(VERTEX_FORMAT_96) {}

MeshTerrain::MeshTerrain(VERTEX_FORMAT format)
    : Mesh(format) {
    set_type(NODE_TYPE_MESH_TERRAIN);
    note_drawn_by_engine(*this);
    update_build_state(true);
}

MeshTerrain::~MeshTerrain() = default;

bool MeshTerrain::set_build_params(Texture* new_height_map, int new_resolution,
                                   float new_height_scale, float new_half_size,
                                   float new_min_elevation) {
    height_map = new_height_map;
    resolution = new_resolution;
    height_scale = new_height_scale;
    half_size = new_half_size;
    min_elevation = new_min_elevation;
    update_build_state(true);
    return true;
}

bool MeshTerrain::build(Node*) {
    return build_if_asked(*this, [this] { return _build_terrain(); }) && Mesh::_build();
}

bool MeshTerrain::_cleanup(Renderer* renderer) {
    elevation_buffer.reset();
    return Mesh::_cleanup(renderer);
}

namespace {

constexpr unsigned long bytes_per_texel = 3;

/// Whether a texture holds a square of three-byte pixels, all of them.
bool is_height_map(Texture* map) {
    if (!map || map->get_width() != map->get_height())
        return false;
    const PIXEL_FORMAT format = map->get_pixel_format();
    if ((format != PF_RGB_U8 && format != PF_BGR_U8) || !map->get_pixmap_u8_ptr())
        return false;
    const unsigned long size = map->get_width();
    return ImageAccess::readable_u8_bytes(*map->get_image_ptr()) >=
           saturating_product(size, size, bytes_per_texel);
}

/// The same weights for both orders of the bytes: heights of a map depend on its order.
float brightness(const unsigned char* texel) {
    return static_cast<float>(texel[0]) / 255.0f * 0.3f +
           static_cast<float>(texel[1]) / 255.0f * 0.59f +
           static_cast<float>(texel[2]) / 255.0f * 0.11f;
}

} // namespace

bool MeshTerrain::init_terrain_buffer(Texture* map) {
    if (!is_height_map(map))
        return false;
    const unsigned long size = map->get_width();
    const unsigned long num_texels = size * size;
    std::unique_ptr<float[]> heights(new (std::nothrow) float[num_texels]);
    if (!heights)
        return false;
    const unsigned char* texel = map->get_pixmap_u8_ptr();
    for (unsigned long i = 0; i < num_texels; ++i, texel += bytes_per_texel)
        heights[i] = brightness(texel);
    elevation_buffer = std::move(heights);
    map_size = size;
    return true;
}

namespace {

/// Column or row of the map at a grid point; -1 outside the map.
long texel_at(int point, int n, unsigned long map_size) {
    constexpr float first_beyond_any_map = 4611686018427387904.0f;
    const float texel =
        static_cast<float>(point) / static_cast<float>(n) * static_cast<float>(map_size - 1);
    if (!(texel > -1.0f && texel < first_beyond_any_map))
        return -1;
    const auto index = static_cast<long>(texel);
    return static_cast<unsigned long>(index) < map_size ? index : -1;
}

} // namespace

float MeshTerrain::elevation(int x, int y, int n, float scale) {
    if (!elevation_buffer && !init_terrain_buffer(height_map))
        return 0.0f;
    const long column = texel_at(x, n, map_size);
    const long row = texel_at(y, n, map_size);
    if (column < 0 || row < 0)
        return 0.0f;
    return elevation_buffer[static_cast<unsigned long>(row) * map_size +
                            static_cast<unsigned long>(column)] *
           scale;
}

void MeshTerrain::write_vertices(int n) {
    MeshData& store = *get_mesh_data();
    const Grid grid = Grid::at_least(0, n, 0, n);
    const float step = half_size * 2.0f / static_cast<float>(n);
    grid.for_each_vertex([&](unsigned long i, unsigned long row, unsigned long column) {
        const auto r = static_cast<float>(row);
        const auto c = static_cast<float>(column);
        const float e = elevation(static_cast<int>(column), static_cast<int>(row), n, height_scale);
        const float y = e <= min_elevation ? min_elevation : e;
        store.set_position(i, vec3(-half_size + c * step, y, -half_size + r * step));
        store.set_uv0(i, texture_point(c / static_cast<float>(n), r / static_cast<float>(n)));
        store.set_color(i, white);
    });
}

bool MeshTerrain::_build_terrain() {
    free_mesh_data();
    const int n = std::max(resolution, 0);
    return build_grid(
        *this, Grid::at_least(0, n, 0, n), [this, n](MeshData&) { write_vertices(n); },
        [](const Cell& cell) {
            return CellFaces{{cell.a, cell.b + 1, cell.a + 1}, {cell.a, cell.b, cell.b + 1}};
        });
}

} // namespace orvex
