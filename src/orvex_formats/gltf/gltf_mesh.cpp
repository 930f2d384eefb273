#include "orvex_formats/gltf/private/gltf_mesh.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "orvex_formats/private/build_model.h"

namespace orvex::formats {

std::uint64_t GltfMeshes::size_of(std::size_t place) const {
    const Json primitives = meshes.at(place).list("primitives");
    std::uint64_t size = 0;
    for (std::size_t i = 0; i < primitives.size(); ++i) {
        const Json primitive = primitives.at(i);
        const std::size_t positions =
            primitive.object("attributes").index("POSITION", accessors.size(), "accessors");
        const std::size_t indices = primitive.index("indices", accessors.size(), "accessors");
        if (positions == Json::no_index)
            continue;
        const std::uint64_t vertices = accessors.count(positions);
        const std::uint64_t corners =
            indices == Json::no_index ? vertices : accessors.count(indices);
        const std::uint64_t triangles = primitive.whole("mode", 4) == 4 ? corners / 3 : corners;
        // Counts are below 2^32, so that no sum is too large.
        size += size_of_node + size_of_vertex * std::min(vertices, corners) +
                size_of_triangle * triangles;
    }
    return size;
}

void GltfMeshes::add(std::size_t place, const GltfStand& stand) {
    const Json mesh = meshes.at(place);
    const Json primitives = mesh.list("primitives");
    if (primitives.size() == 0)
        mesh.refuse("it has no primitives");
    Primitive primitive;
    primitive.name = mesh.text("name", stand.name);
    primitive.stand = &stand;
    primitive.weights = stand.weights ? stand.weights : mesh.list("weights");
    for (std::size_t i = 0; i < primitives.size(); ++i) {
        primitive.json = primitives.at(i);
        add(primitive);
    }
}

void GltfMeshes::add(const Primitive& told) {
    Primitive primitive = told;
    budget.take(size_of_node, primitive.json);
    primitive.mode = primitive.json.whole("mode", 4);
    if (primitive.mode > 6)
        primitive.json.need("mode").refuse(std::to_string(primitive.mode) +
                                           " is no mode of primitives");
    primitive.material = primitive.json.index("material", materials.size(), "materials");
    primitive.attributes = primitive.json.object("attributes");
    if (!primitive.attributes)
        primitive.json.refuse("\"attributes\" is missing");
    note_attributes(primitive.attributes);
    const std::size_t positions =
        primitive.attributes.index("POSITION", accessors.size(), "accessors");
    if (positions == Json::no_index) {
        notes.add(primitive.json, "a primitive without positions was left out");
        return;
    }

    Vertices vertices;
    vertices.count = static_cast<std::size_t>(accessors.count(positions));
    const std::vector<std::uint32_t> corners = read_corners(primitive, vertices);
    read_vertices(primitive, vertices);
    if (primitive.mode == 0)
        add_points(primitive, corners, vertices);
    else if (primitive.mode < 4)
        add_lines(primitive, corners, vertices);
    else
        add_triangles(primitive, corners, std::move(vertices));
}

std::vector<std::uint32_t> GltfMeshes::read_corners(const Primitive& primitive,
                                                    Vertices& vertices) {
    const std::size_t indices = primitive.json.index("indices", accessors.size(), "accessors");
    std::vector<std::uint32_t> corners;
    if (indices == Json::no_index) {
        budget.take(vertices.count, sizeof(std::uint32_t), primitive.json);
        corners.resize(vertices.count);
        std::iota(corners.begin(), corners.end(), 0u);
        return corners;
    }
    corners = accessors.indices(indices);
    for (std::size_t i = 0; i < corners.size(); ++i)
        if (corners[i] >= vertices.count)
            primitive.json.need("indices").refuse(
                "index " + std::to_string(corners[i]) + " in place " + std::to_string(i) +
                " is beyond the " + std::to_string(vertices.count) + " vertices");

    // Many primitives may share one long list of vertices: each takes those that it uses.
    if (vertices.count > corners.size()) {
        std::vector<std::uint32_t>& chosen = vertices.chosen;
        chosen = corners;
        std::sort(chosen.begin(), chosen.end());
        chosen.erase(std::unique(chosen.begin(), chosen.end()), chosen.end());
        for (std::uint32_t& corner : corners)
            corner = static_cast<std::uint32_t>(
                std::lower_bound(chosen.begin(), chosen.end(), corner) - chosen.begin());
    }
    return corners;
}

// ------------------------------------------------------------------------------------ joining

namespace {

/// The triangles of a strip look to one side: every other one is turned.
template<class Use>
void for_each_triangle(std::uint64_t mode, const std::vector<std::uint32_t>& corners, Use use) {
    const std::size_t count = corners.size();
    if (mode == 4)
        for (std::size_t i = 0; i + 2 < count; i += 3)
            use(Triangle{corners[i], corners[i + 1], corners[i + 2]});
    else if (mode == 5)
        for (std::size_t i = 0; i + 2 < count; ++i)
            use(Triangle{corners[i], corners[i + 1 + i % 2], corners[i + 2 - i % 2]});
    else
        for (std::size_t i = 1; i + 1 < count; ++i)
            use(Triangle{corners[0], corners[i], corners[i + 1]});
}

/// Calls `use` with the two ends of each line.
template<class Use>
void for_each_line(std::uint64_t mode, const std::vector<std::uint32_t>& corners, Use use) {
    const std::size_t count = corners.size();
    for (std::size_t i = 0; i + 1 < count; i += mode == 1 ? 2 : 1)
        use(corners[i], corners[i + 1]);
    if (mode == 2 && count > 1)
        use(corners[count - 1], corners[0]);
}

} // namespace

void GltfMeshes::add_triangles(const Primitive& primitive,
                               const std::vector<std::uint32_t>& corners, Vertices&& vertices) {
    const bool is_list = primitive.mode == 4;
    if (is_list ? corners.size() % 3 != 0 : corners.size() < 3)
        notes.add(primitive.json, "corners that make no whole triangle were left out");
    const std::size_t count =
        is_list ? corners.size() / 3 : corners.size() - std::min<std::size_t>(corners.size(), 2);
    budget.take(count, sizeof(Triangle) + sizeof(std::uint32_t), primitive.json);
    Surface surface;
    surface.name = primitive.name;
    surface.triangles.reserve(count);
    for_each_triangle(primitive.mode, corners, [&](Triangle triangle) {
        if (vertices.is_mirrored)
            std::swap(triangle[1], triangle[2]);
        surface.triangles.push_back(triangle);
    });
    if (primitive.material != Json::no_index)
        surface.triangle_materials.assign(surface.triangles.size(),
                                          static_cast<std::uint32_t>(primitive.material));
    surface.positions = std::move(vertices.positions);
    surface.normals = std::move(vertices.normals);
    surface.colors = std::move(vertices.colors);
    for (std::size_t i = 0; i < 2; ++i)
        surface.uvs[i] = std::move(vertices.uvs[i]);
    if (!surface.triangles.empty())
        draft.surfaces.push_back(std::move(surface));
}

void GltfMeshes::add_lines(const Primitive& primitive, const std::vector<std::uint32_t>& corners,
                           const Vertices& vertices) {
    if (corners.size() < 2 || (primitive.mode == 1 && corners.size() % 2 != 0))
        notes.add(primitive.json, "a line with one end was left out");
    budget.take(corners.size(), 2 * (sizeof(vec3) + sizeof(vec4)), primitive.json);
    Lines lines;
    lines.name = primitive.name;
    const auto add_end = [&](std::uint32_t corner) {
        lines.positions.push_back(vertices.positions[corner]);
        if (!vertices.colors.empty())
            lines.colors.push_back(vertices.colors[corner]);
    };
    for_each_line(primitive.mode, corners, [&](std::uint32_t from, std::uint32_t to) {
        add_end(from);
        add_end(to);
    });
    if (!lines.positions.empty())
        draft.lines.push_back(std::move(lines));
}

void GltfMeshes::add_points(const Primitive& primitive, const std::vector<std::uint32_t>& corners,
                            const Vertices& vertices) {
    budget.take(corners.size(), sizeof(vec3) + sizeof(vec4), primitive.json);
    Cloud cloud;
    cloud.name = primitive.name;
    for (const std::uint32_t corner : corners) {
        cloud.positions.push_back(vertices.positions[corner]);
        if (!vertices.colors.empty())
            cloud.colors.push_back(vertices.colors[corner]);
    }
    draft.clouds.push_back(std::move(cloud));
}

} // namespace orvex::formats
