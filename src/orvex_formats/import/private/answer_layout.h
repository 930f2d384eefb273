#pragma once

/// @file
/// What an answer with a model looks like: said once, for who writes it and who reads it.
///
/// Each function takes a way, which writes or reads member by member, in this order. What else is
/// told of a member is what holds of it: the one that reads refuses what breaks it.

#include <cfloat>
#include <cstddef>
#include <cstdint>

#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// How many there may be: of what costs much more than its bytes in the answer.
inline constexpr std::size_t most_pieces = 100'000, most_materials = 65'536, most_pictures = 10'000,
                             most_notes = 100, most_files = 1'000, most_cameras = 10'000;

template<class Way>
void pass_texture(Way& way, PhysicalTexture& texture) {
    way.text(texture.image);
    way.choice(texture.layer, 2);
    way.number(texture.strength, 0.0f, FLT_MAX);
    way.choice(texture.wrap_u, 3);
    way.choice(texture.wrap_v, 3);
}

template<class Way, class Vector>
void pass_color(Way& way, Vector& color) {
    way.number(color.x, 0.0f, 1.0f);
    way.number(color.y, 0.0f, 1.0f);
    way.number(color.z, 0.0f, 1.0f);
    if constexpr (sizeof(Vector) == sizeof(vec4))
        way.number(color.w, 0.0f, 1.0f);
}

template<class Way>
void pass_physical(Way& way, PhysicalMaterial& physical) {
    pass_color(way, physical.base_color);
    way.number(physical.metallic, 0.0f, 1.0f);
    way.number(physical.roughness, 0.0f, 1.0f);
    pass_color(way, physical.emissive);
    way.number(physical.emissive_strength, 0.0f, FLT_MAX);
    way.choice(physical.alpha, 3);
    way.flag(physical.is_double_sided);
    pass_texture(way, physical.base_color_texture);
    pass_texture(way, physical.metallic_roughness_texture);
    pass_texture(way, physical.normal_texture);
    pass_texture(way, physical.occlusion_texture);
    pass_texture(way, physical.emissive_texture);
}

template<class Way>
void pass_material(Way& way, SurfaceMaterial& material) {
    way.text(material.name);
    pass_color(way, material.ambient);
    pass_color(way, material.diffuse);
    pass_color(way, material.specular);
    way.number(material.shininess, 0.0f, 128.0f);
    way.number(material.opacity, 0.0f, 1.0f);
    way.list(material.textures, 1);
    for (std::string& name : material.textures)
        way.text(name);
    bool is_physical = material.physical.has_value();
    way.flag(is_physical);
    if (is_physical)
        pass_physical(way, material.physical ? *material.physical : material.physical.emplace());
}

template<class Way>
void pass_picture(Way& way, Picture& picture) {
    way.text(picture.name);
    way.bytes(picture.bytes);
}

template<class Way>
void pass_surface(Way& way, Surface& surface, std::size_t num_materials) {
    way.text(surface.name);
    way.values(surface.positions, -FLT_MAX, FLT_MAX);
    const std::size_t count = surface.positions.size();
    way.values_or_none(surface.normals, count, -1.01f, 1.01f);
    way.values_or_none(surface.colors, count, 0.0f, 1.0f);
    for (std::vector<vec2>& uvs : surface.uvs)
        way.values_or_none(uvs, count, -FLT_MAX, FLT_MAX);
    way.triangles(surface.triangles, count);
    std::uint32_t material =
        surface.triangle_materials.empty() ? no_material : surface.triangle_materials[0];
    way.material(material, num_materials);
    if (material != no_material)
        surface.triangle_materials.assign(surface.triangles.size(), material);
}

/// Points, or the ends of lines.
template<class Way, class Piece>
void pass_places(Way& way, Piece& piece) {
    way.text(piece.name);
    way.values(piece.positions, -FLT_MAX, FLT_MAX);
    way.values_or_none(piece.colors, piece.positions.size(), 0.0f, 1.0f);
}

template<class Way>
void pass_camera(Way& way, Viewpoint& camera) {
    way.text(camera.name);
    for (float vec3::*part : {&vec3::x, &vec3::y, &vec3::z}) {
        way.number(camera.eye.*part, -FLT_MAX, FLT_MAX);
        way.number(camera.forward.*part, -1.01f, 1.01f);
        way.number(camera.up.*part, -1.01f, 1.01f);
    }
    for (float Viewpoint::*measure : {&Viewpoint::opening, &Viewpoint::height, &Viewpoint::aspect,
                                      &Viewpoint::near, &Viewpoint::far})
        way.number(camera.*measure, 0.0f, FLT_MAX);
    way.sight(camera);
}

template<class Way>
void pass_draft(Way& way, Draft& draft) {
    way.list(draft.notes, most_notes);
    for (std::string& note : draft.notes)
        way.text(note);
    way.list(draft.files, most_files);
    for (std::string& file : draft.files)
        way.text(file);
    way.list(draft.pictures, most_pictures);
    for (Picture& picture : draft.pictures)
        pass_picture(way, picture);
    way.list(draft.materials, most_materials);
    for (SurfaceMaterial& material : draft.materials)
        pass_material(way, material);
    way.list(draft.surfaces, most_pieces);
    for (Surface& surface : draft.surfaces)
        pass_surface(way, surface, draft.materials.size());
    way.list(draft.clouds, most_pieces);
    for (Cloud& cloud : draft.clouds)
        pass_places(way, cloud);
    way.list(draft.lines, most_pieces);
    for (Lines& lines : draft.lines) {
        pass_places(way, lines);
        way.ends(lines.positions.size());
    }
    way.list(draft.cameras, most_cameras);
    for (Viewpoint& camera : draft.cameras)
        pass_camera(way, camera);
}

} // namespace orvex::formats
