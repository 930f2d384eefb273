// A model of one mesh, from the host's numbers.

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

#include <orvex/assets/materials/material.h>
#include <orvex/assets/textures/texture.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/kernel/core.h>
#include <orvex/renderer/records/image.h>
#include <orvex/renderer/records/mesh_data.h>

#include "orvex_kit/private/mesh_parts.h"
#include "orvex_kit/private/model_data.h"

namespace orvex::kit {

namespace {

/// A texture with the pixels of a picture, in red, green, blue and alpha.
NodeHold<Resource> texture_of(const Picture& picture) {
    const int width = picture.width(), channels = picture.channels();
    Texture* const texture = TextureMgr::get()->create_texture_2d(
        static_cast<unsigned long>(width), static_cast<unsigned long>(picture.height()),
        PF_RGBA_U8);
    texture->add_ref();
    NodeHold<Resource> hold(texture);
    TextureMgr::get()->remove_resource(nullptr, texture);
    unsigned char* to = texture->get_pixmap_u8_ptr();
    if (!to)
        throw std::bad_alloc();
    const bool is_grey = channels < 3, has_alpha = channels % 2 == 0;
    for (int y = 0; y < picture.height(); ++y) {
        const auto* from = picture.row<std::uint8_t>(y);
        for (int x = 0; x < width; ++x, from += channels, to += 4) {
            for (int i = 0; i < 3; ++i)
                to[i] = from[is_grey ? 0 : i];
            to[3] = has_alpha ? from[channels - 1] : 255;
        }
    }
    texture->set_filtering_mode(nullptr, FILTERING_TRILINEAR);
    texture->set_anisotropy(nullptr, 8.0f);
    return hold;
}

NodeHold<Resource> held(Resource* resource) {
    resource->add_ref();
    return NodeHold<Resource>(resource);
}

void fill_vertices(Mesh& mesh, const MeshParts& parts) {
    for (std::size_t i = 0; i < parts.positions.size(); ++i)
        mesh.set_vertex_position(i, parts.positions[i]);
    for (std::size_t i = 0; i < parts.normals.size(); ++i)
        mesh.set_vertex_normal(i, parts.normals[i]);
    for (std::size_t i = 0; i < parts.texcoords.size(); ++i)
        mesh.set_vertex_uv(i, parts.texcoords[i], 0);
    for (std::size_t i = 0; i < parts.colors.size(); ++i)
        mesh.set_vertex_color(i, parts.colors[i]);
}

void fill_faces(Mesh& mesh, const MeshParts& parts) {
    for (std::size_t i = 0; i < parts.faces.size(); ++i)
        mesh.set_face_indexes(i, parts.faces[i][0], parts.faces[i][1], parts.faces[i][2]);
}

/// The corners in their order, three a face.
void number_corners(MeshParts& parts) {
    parts.faces.resize(parts.positions.size() / 3);
    for (std::size_t i = 0; i < parts.faces.size(); ++i)
        for (std::size_t corner = 0; corner < 3; ++corner)
            parts.faces[i][corner] = static_cast<unsigned>(i * 3 + corner);
}

/// Why numbers don't make a mesh of their own.
std::string mistake_in_mesh(const MeshNumbers& numbers) {
    if (numbers.num_vertices == 0)
        return "a mesh of 0 vertices";
    if (!numbers.positions.data)
        return "a mesh without positions";
    if (!numbers.faces.data && numbers.num_faces > 0)
        return "the number of faces is " + std::to_string(numbers.num_faces) + " without faces";
    if (!numbers.faces.data && numbers.num_vertices % 3 != 0)
        return "a mesh without faces has three vertices for each, and " +
               std::to_string(numbers.num_vertices) + " are none of their multiples";
    if (numbers.faces.data && numbers.num_faces == 0)
        return "a mesh of 0 faces";
    return "";
}

} // namespace

Model Model::from_numbers(const MeshNumbers& numbers) {
    auto data = std::make_unique<Data>();
    if (!core::log_get_default())
        data->reason = no_engine;
    else if (data->reason = mistake_in_mesh(numbers); data->reason.empty())
        data->make_mesh(numbers);
    return Model(std::move(data));
}

/// @return whether the numbers are good; else the reason is told, and nothing was made
bool Model::Data::make_mesh(const MeshNumbers& numbers) {
    MeshParts parts;
    if (reason = read_parts(numbers, numbers.num_vertices, parts); !reason.empty())
        return false;
    if (parts.faces.empty())
        number_corners(parts);
    style = std::make_unique<MeshStyle>();
    take_style(numbers);
    style->has_normals = !parts.normals.empty();
    style->has_colors = !parts.colors.empty();
    if (numbers.texture && !numbers.texture->is_empty())
        style->texture = texture_of(*numbers.texture);
    build_mesh(parts);
    return true;
}

void Model::Data::take_style(const MeshNumbers& numbers) {
    style->shading = numbers.shading.value_or(style->shading);
    if (numbers.color)
        style->color = numbers.color;
    if (!numbers.name.empty())
        style->name = numbers.name;
}

void Model::Data::build_mesh(const MeshParts& parts) {
    NodeHold<orvex::Model> model(new orvex::Model);
    Mesh* const mesh = model->create_mesh();
    model->add_child(mesh);
    mesh->set_name(style->name.c_str());
    if (!mesh->alloc_vertex_data(parts.positions.size()) ||
        !mesh->alloc_face_data(parts.faces.size(), false))
        throw std::bad_alloc();
    fill_vertices(*mesh, parts);
    fill_faces(*mesh, parts);
    add_material(*mesh);
    loaded.model = std::move(model);
    gather(*loaded.model);
    gather_materials();
    add_runs();
    tell_of_mesh();
}

/// One where something is said of it, or there is a texture.
void Model::Data::add_material(Mesh& mesh) {
    if (!style->color && !style->texture)
        return;
    auto* const material = new Material;
    loaded.materials.push_back(held(material));
    const vec4 color = style->color.value_or(vec4(1.0f, 1.0f, 1.0f, 1.0f));
    material->set_diffuse(color);
    material->set_specular(vec4(0.2f, 0.2f, 0.2f, 1.0f));
    material->set_shininess(16.0f);
    material->set_opacity(color.w);
    if (style->texture) {
        auto* const texture = static_cast<Texture*>(style->texture.get());
        loaded.textures.push_back(held(texture));
        uploads.push_back(texture);
        material->add_texture(texture);
    }
    mesh.add_material(material, nullptr);
    mesh.set_material_to_all_faces(material->getid());
}

/// Again, where numbers have changed, and in the mesh's own space.
void Model::Data::tell_of_mesh() {
    if (is_placed)
        loaded.model->set_transform(own_place);
    ModelFacts fresh;
    fresh.materials = std::move(facts.materials);
    fresh.runs = std::move(facts.runs);
    facts = std::move(fresh);
    has_colors.clear();
    tell_of_meshes();
    has_colors.assign(1, style->has_colors);
    if (style->shading == Normals::smooth)
        smooth_normals();
    is_faceted = style->shading == Normals::flat ||
                 (style->shading != Normals::smooth && !style->has_normals);
    pieces.clear();
    tree.reset();
    if (is_placed)
        place(placed);
}

// ------------------------------------------------------------------------------- other numbers

Outcome Model::update(const MeshNumbers& numbers) {
    if (!*this)
        return Outcome::failure(reason());
    if (!data->style)
        return Outcome::failure("a model from a file keeps its numbers");
    std::unique_ptr<Data> fresh;
    std::string mistake = data->update(numbers, fresh);
    if (fresh)
        data = std::move(fresh);
    return mistake.empty() ? Outcome::success() : Outcome::failure(std::move(mistake));
}

namespace {

/// What a mesh has, where other numbers leave it out.
void complete(const Mesh& mesh, const MeshStyle& style, MeshParts& parts) {
    const MeshData& store = *mesh.get_mesh_data();
    const auto take = [&](std::vector<vec4>& to, auto value_of) {
        for (unsigned long i = 0; i < store.num_vertices; ++i)
            to.push_back(value_of(i));
    };
    if (parts.positions.empty())
        take(parts.positions, [&](unsigned long i) { return mesh.get_vertex_position(i); });
    if (parts.normals.empty() && style.has_normals)
        take(parts.normals, [&](unsigned long i) { return mesh.get_vertex_normal(i); });
    if (parts.texcoords.empty())
        take(parts.texcoords, [&](unsigned long i) { return mesh.get_vertex_uv(i, 0); });
    if (parts.colors.empty() && style.has_colors)
        take(parts.colors, [&](unsigned long i) { return mesh.get_vertex_color(i); });
    if (!parts.faces.empty())
        return;
    parts.faces.resize(store.num_faces);
    for (unsigned long i = 0; i < store.num_faces; ++i) {
        std::array<unsigned, 3>& face = parts.faces[i];
        mesh.get_face_indexes(i, &face[0], &face[1], &face[2]);
    }
}

bool has_style(const MeshNumbers& numbers) {
    return numbers.shading || numbers.color || numbers.texture || !numbers.name.empty();
}

} // namespace

/// @param[out] fresh  receives what takes this one's place, where the mesh is another
/// @return what is wrong; empty if nothing is
std::string Model::Data::update(const MeshNumbers& numbers, std::unique_ptr<Data>& fresh) {
    const std::size_t size = facts.num_vertices;
    const bool is_larger = numbers.num_vertices != 0 && numbers.num_vertices != size;
    if (!numbers.faces.data && numbers.num_faces != 0 && numbers.num_faces != facts.num_faces)
        return "the number of faces is " + std::to_string(numbers.num_faces) + " without faces";
    if (numbers.faces.data && numbers.num_faces == 0)
        return "the number of faces is 0 with faces";
    if (is_larger)
        if (std::string mistake = mistake_in_mesh(numbers); !mistake.empty())
            return mistake;
    MeshParts parts;
    if (std::string mistake = read_parts(numbers, is_larger ? numbers.num_vertices : size, parts);
        !mistake.empty())
        return mistake;
    if (is_larger && parts.faces.empty())
        number_corners(parts);
    // What has its place in the buffers goes there.
    const bool fits = parts.faces.empty() || parts.faces.size() == facts.num_faces;
    if (!is_larger && fits && !has_style(numbers)) {
        refill(parts);
        return "";
    }
    if (!is_larger)
        complete(*meshes.front(), *style, parts);
    fresh = rebuilt(numbers, parts);
    return "";
}

void Model::Data::refill(const MeshParts& parts) {
    style->has_normals = style->has_normals || !parts.normals.empty();
    style->has_colors = style->has_colors || !parts.colors.empty();
    fill_vertices(*meshes.front(), parts);
    fill_faces(*meshes.front(), parts);
    tell_of_mesh();
}

std::unique_ptr<Model::Data> Model::Data::rebuilt(const MeshNumbers& numbers,
                                                  const MeshParts& parts) {
    auto other = std::make_unique<Data>();
    other->style = std::make_unique<MeshStyle>();
    other->style->shading = style->shading;
    other->style->color = style->color;
    other->style->name = style->name;
    other->take_style(numbers);
    other->style->has_normals = !parts.normals.empty();
    other->style->has_colors = !parts.colors.empty();
    if (numbers.texture && !numbers.texture->is_empty())
        other->style->texture = texture_of(*numbers.texture);
    else if (style->texture)
        other->style->texture = held(style->texture.get());
    other->build_mesh(parts);
    if (is_placed)
        other->place(placed);
    return other;
}

} // namespace orvex::kit
