// What gives the faces of a model their look: the textures that its materials name, and normals.

#include <orvex/assets/materials/material.h>
#include <orvex/assets/textures/texture.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/base/image_codec.h>
#include <orvex/base/plugin_mgr.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/math/mat4.h>
#include <orvex/renderer/records/mesh_data.h>

#include "orvex_kit/files.h"
#include "orvex_kit/private/model_data.h"
#include "orvex_kit/private/texture_search.h"

namespace orvex::kit {

namespace {

/// Why no codec could decode the file that was tried last.
std::string mistake_of_codecs() {
    const PluginMgr& plugins = *PluginMgr::get();
    for (unsigned long i = 0; i < plugins.get_num_plugins_by_type(PLUGIN_TYPE_IMAGE_CODEC); ++i) {
        const auto* const codec =
            ImageCodec::from_plugin(plugins.get_plugin_by_type(PLUGIN_TYPE_IMAGE_CODEC, i));
        if (codec && codec->get_failure_reason()[0] != '\0')
            return codec->get_failure_reason();
    }
    return "";
}

/// A texture of the manager's, taken out of it.
NodeHold<Resource> own(Texture* texture) {
    texture->add_ref();
    NodeHold<Resource> hold(texture);
    TextureMgr::get()->remove_resource(nullptr, texture);
    return hold;
}

} // namespace

/// Null, with the reason, if the file is no picture.
Texture* Model::Data::decode(ModelTexture& told) {
    if (const std::string mistake = mistake_in_reading(told.path); !mistake.empty()) {
        told.reason = "it can't be read" + mistake.substr(told.path.size());
        return nullptr;
    }
    Texture* const texture =
        TextureMgr::get()->create_texture_2d_from_file(told.path.c_str(), false);
    if (!texture) {
        const std::string why = mistake_of_codecs();
        told.reason = "it is no picture that can be decoded" + (why.empty() ? "" : ": " + why);
        return nullptr;
    }
    loaded.textures.push_back(own(texture));
    told.width = static_cast<int>(texture->get_width());
    told.height = static_cast<int>(texture->get_height());
    return texture;
}

/// Finds, decodes and tells of a texture, or remembers it.
/// @param[out] place  in `facts.textures`
/// @return null if there is no picture
Texture* Model::Data::texture_from(const std::string& name, bool allow_outside,
                                   std::size_t& place) {
    FoundTexture found = find_texture(folder_of(path), name, allow_outside);
    const auto [known, is_new] = texture_places.emplace(found.path, facts.textures.size());
    place = known->second;
    if (!is_new)
        return decoded[place];
    facts.textures.push_back({name, std::move(found.path), std::move(found.reason)});
    decoded.push_back(nullptr);
    ModelTexture& told = facts.textures.back();
    if (told.reason.empty())
        decoded.back() = decode(told);
    return decoded.back();
}

void Model::Data::load_textures_of(std::size_t place, bool allow_outside) {
    Material& material = *materials[place];
    for (unsigned long i = 0; i < material.async_loading_get_num_texture_filenames(); ++i) {
        std::size_t texture_place = 0;
        Texture* const texture = texture_from(material.async_loading_get_texture_filename(i),
                                              allow_outside, texture_place);
        facts.materials[place].textures.push_back(texture_place);
        if (texture)
            material.add_texture(texture);
    }
    material.async_loading_clear_texture_filenames_list();
}

void Model::Data::load_textures(bool allow_outside) {
    // A loader may have made some itself.
    for (const NodeHold<Resource>& texture : loaded.textures)
        if (auto* const made = Texture::from_node(texture.get()))
            uploads.push_back(made);
    for (std::size_t place = 0; place < materials.size(); ++place)
        load_textures_of(place, allow_outside);
    for (Texture* texture : decoded)
        if (texture) {
            // They are linear at first, with which an upload mixes their mip levels, too.
            texture->set_anisotropy(nullptr, 8.0f);
            uploads.push_back(texture);
        }
}

// ------------------------------------------------------------------------------- normals

void Model::Data::smooth_normals() {
    for (Mesh* mesh : meshes) {
        mesh->compute_faces_normal(nullptr);
        mesh->compute_vertices_normal(nullptr);
    }
}

/// Whether smooth normals don't fit: they look away from their faces by 25 degrees and more in the
/// mean, as those of a box do.
bool Model::Data::is_angular() const {
    double likeness = 0.0;
    double corners = 0.0;
    for (const Mesh* mesh : meshes) {
        const MeshData& store = *mesh->get_mesh_data();
        for (unsigned long face = 0; face < store.num_faces; ++face) {
            unsigned index[3] = {};
            mesh->get_face_indexes(face, &index[0], &index[1], &index[2]);
            vec4 normal = store.face_normals[face];
            for (const unsigned i : index)
                likeness += static_cast<double>(normal.dot(mesh->get_vertex_normal(i)));
            corners += 3.0;
        }
    }
    constexpr double cosine_of_25_degrees = 0.9063;
    return corners > 0.0 && likeness < corners * cosine_of_25_degrees;
}

void Model::Data::take_normals(Normals normals) {
    const bool is_bare = normals == Normals::by_file && loaded.loader == loader_of_3ds;
    if (normals == Normals::smooth || is_bare)
        smooth_normals();
    is_faceted = normals == Normals::flat || (is_bare && is_angular());
}

} // namespace orvex::kit
