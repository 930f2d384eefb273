#include "orvex_formats/private/polygon_shape.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "orvex_formats/private/large_lists.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

constexpr std::size_t most_triangles = UINT32_MAX / 3;
/// A unit vector; what has no direction looks along z.
vec3 direction_of(double x, double y, double z) {
    const double length = std::hypot(x, y, z);
    if (!(length > 0.0) || !std::isfinite(length))
        return vec3(0.0f, 0.0f, 1.0f);
    return {static_cast<float>(x / length), static_cast<float>(y / length),
            static_cast<float>(z / length)};
}

/// Brings what goes beyond 1 back, as far as it is a byte.
void settle_part(std::vector<vec4>& colors, float vec4::*part, float largest) {
    const float scale = largest > 1.0f ? 1.0f / 255.0f : 1.0f;
    for (vec4& color : colors) {
        const float value = color.*part * scale;
        color.*part = value > 0.0f ? std::min(value, 1.0f) : 0.0f;
    }
}

/// The largest of a part, of those that are finite numbers.
float largest_of(const std::vector<vec4>& colors, float vec4::*part) {
    float largest = 0.0f;
    for (const vec4& color : colors)
        if (color.*part > largest && std::isfinite(color.*part))
            largest = color.*part;
    return largest;
}

/// Some programs write bytes as floats.
void settle(std::vector<vec4>& colors) {
    const float largest = std::max(
        {largest_of(colors, &vec4::x), largest_of(colors, &vec4::y), largest_of(colors, &vec4::z)});
    settle_part(colors, &vec4::x, largest);
    settle_part(colors, &vec4::y, largest);
    settle_part(colors, &vec4::z, largest);
    settle_part(colors, &vec4::w, largest_of(colors, &vec4::w));
}

} // namespace

void PolygonShape::add_note(const std::string& note) {
    draft.notes.push_back(note);
}

// ------------------------------------------------------------------------------- vertices

void PolygonShape::begin_vertices(const ShapeParts& told, std::uint64_t count) {
    parts = told;
    has_more_than_places = parts.has_normals || parts.has_colors || parts.has_uvs;
    const auto size = static_cast<std::size_t>(count);
    reserve_largely(positions, size);
    reserve_largely(normals, parts.has_normals ? size : 0);
    reserve_largely(colors, parts.has_colors ? size : 0);
    reserve_largely(uvs, parts.has_uvs ? size : 0);
}

void PolygonShape::begin_faces(std::uint64_t count) {
    if (triangles.empty()) // else it grows as others do
        reserve_largely(triangles, static_cast<std::size_t>(count));
}

void PolygonShape::add_more(const ShapeValues& values) {
    if (parts.has_normals)
        normals.push_back(direction_of(static_cast<double>(values[column_nx]),
                                       static_cast<double>(values[column_nx + 1]),
                                       static_cast<double>(values[column_nx + 2])));
    if (parts.has_colors)
        colors.emplace_back(values[column_red], values[column_red + 1], values[column_red + 2],
                            values[column_alpha]);
    if (parts.has_uvs)
        uvs.emplace_back().set(values[column_u], values[column_v]);
}

// ------------------------------------------------------------------------------- faces

/// Whether faces have looks of their own shows with the first one that has.
void PolygonShape::take_notice_of(const ShapeFace& face) {
    const bool had_corners = has_corners();
    has_face_colors = has_face_colors || face.has_color;
    has_face_uvs = has_face_uvs || !face.coordinates.empty();
    if (has_corners() && !had_corners)
        begin_corners();
    if (face.picture != 0.0 && !has_pictures)
        triangle_materials.resize(triangles.size());
    has_pictures = has_pictures || face.picture != 0.0;
}

/// What was made of vertices until now is made of corners from now on.
void PolygonShape::begin_corners() {
    ShapeFace face;
    for (Triangle& triangle : triangles) {
        face.corners.assign(triangle.begin(), triangle.end());
        for (std::size_t i = 0; i < 3; ++i)
            triangle[i] = joined(face, i);
    }
}

void PolygonShape::add_face(const ShapeFace& face) {
    take_notice_of(face);
    const bool is_picture = face.picture >= 0.0 && face.picture < 65536.0;
    const std::uint32_t picture =
        is_picture ? static_cast<std::uint32_t>(face.picture) : no_material;
    cut_polygon(face.corners);
    for (const Triangle& places : cut)
        if (has_corners())
            add({joined(face, places[0]), joined(face, places[1]), joined(face, places[2])},
                picture);
        else
            add({face.corners[places[0]], face.corners[places[1]], face.corners[places[2]]},
                picture);
}

void PolygonShape::cut_polygon(const std::vector<std::uint32_t>& polygon) {
    cut.clear();
    if (polygon.size() > 3 && !positions.empty()) {
        polygon_places.clear();
        for (const std::uint32_t corner : polygon)
            polygon_places.push_back(positions[corner]);
        has_turned_parts = !cutter.cut(polygon_places, cut) || has_turned_parts;
        return;
    }
    for (std::uint32_t i = 2; i < polygon.size(); ++i)
        cut.push_back({0, i - 1, i});
    has_fans = has_fans || polygon.size() > 3;
}

std::uint32_t PolygonShape::joined(const ShapeFace& face, std::size_t corner) {
    Corner key{face.corners[corner], 0, 0, 1, 1, 1, -1};
    if (2 * corner + 1 < face.coordinates.size()) {
        key.u = face.coordinates[2 * corner];
        key.v = face.coordinates[2 * corner + 1];
    }
    if (face.has_color) {
        key.red = face.color.x;
        key.green = face.color.y;
        key.blue = face.color.z;
        key.alpha = std::max(face.color.w, 0.0f);
    }
    bool is_new = false;
    return corners.add(key, is_new);
}

void PolygonShape::add_triangle(const Triangle& triangle) {
    ShapeFace face;
    if (!has_corners()) {
        add(triangle, 0);
        return;
    }
    face.corners.assign(triangle.begin(), triangle.end());
    add({joined(face, 0), joined(face, 1), joined(face, 2)}, 0);
}

void PolygonShape::add(const Triangle& triangle, std::uint32_t picture) {
    if (triangles.size() >= most_triangles)
        refuse("more triangles than any that are read");
    triangles.push_back(triangle);
    if (has_pictures)
        triangle_materials.push_back(picture);
}

// ------------------------------------------------------------------------------- end

void PolygonShape::add_materials(const std::vector<std::string>& textures) {
    for (const std::string& texture : textures) {
        SurfaceMaterial material;
        material.name = texture;
        material.diffuse = vec4(1.0f, 1.0f, 1.0f, 1.0f);
        material.textures.push_back(texture);
        draft.materials.push_back(material);
    }
}

void PolygonShape::take_corners(Surface& surface) const {
    for (const Corner& corner : corners.all()) {
        surface.positions.push_back(positions[corner.vertex]);
        if (parts.has_normals)
            surface.normals.push_back(normals[corner.vertex]);
        if (parts.has_colors && !has_face_colors)
            surface.colors.push_back(colors[corner.vertex]);
        if (has_face_uvs)
            surface.uvs[0].emplace_back().set(corner.u, corner.v);
        else if (parts.has_uvs)
            surface.uvs[0].push_back(uvs[corner.vertex]);
    }
    if (has_face_colors)
        take_face_colors(surface);
}

/// Faces without a colour beside such that have one are white.
void PolygonShape::take_face_colors(Surface& surface) const {
    for (const Corner& corner : corners.all())
        surface.colors.emplace_back(corner.red, corner.green, corner.blue, corner.alpha);
    settle(surface.colors);
    for (std::size_t i = 0; i < surface.colors.size(); ++i)
        if (corners.all()[i].alpha < 0.0f)
            surface.colors[i] = vec4(1.0f, 1.0f, 1.0f, 1.0f);
}

Surface PolygonShape::finish_surface(const std::vector<std::string>& textures) {
    Surface surface;
    settle(colors);
    if (has_corners())
        take_corners(surface);
    else {
        surface.positions = std::move(positions);
        surface.normals = std::move(normals);
        surface.colors = std::move(colors);
        surface.uvs[0] = std::move(uvs);
    }
    surface.triangles = std::move(triangles);
    add_materials(textures);
    if (draft.materials.empty())
        return surface;
    surface.triangle_materials = std::move(triangle_materials);
    surface.triangle_materials.resize(surface.triangles.size());
    for (std::uint32_t& material : surface.triangle_materials)
        if (material >= draft.materials.size())
            material = no_material;
    return surface;
}

Cloud PolygonShape::finish_cloud() {
    if (parts.has_normals)
        draft.notes.emplace_back("the normals of the points were left out");
    settle(colors);
    Cloud cloud;
    cloud.positions = std::move(positions);
    cloud.colors = std::move(colors);
    return cloud;
}

Draft PolygonShape::finish(const std::vector<std::string>& textures) {
    if (has_fans)
        draft.notes.emplace_back("polygons that stand before their vertices were cut as if convex");
    if (has_turned_parts)
        draft.notes.emplace_back(
            "polygons that cross themselves were cut as well as they could be");
    if (triangles.empty())
        draft.clouds.push_back(finish_cloud());
    else
        draft.surfaces.push_back(finish_surface(textures));
    return std::move(draft);
}

} // namespace orvex::formats
