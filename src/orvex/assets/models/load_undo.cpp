#include "orvex/assets/models/load_undo.h"

#include "orvex/assets/materials/material.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"

namespace orvex {

void MeshEnd::operator()(Mesh* mesh) const {
    mesh->kill(nullptr, nullptr);
}

LoadUndo::LoadUndo(Model& model)
    : model(model)
    , num_children(model.get_num_children())
    , num_model_materials(model.get_num_materials())
    , num_materials(MaterialMgr::get()->get_num_resources())
    , num_textures(TextureMgr::get()->get_num_resources()) {}

LoadUndo::~LoadUndo() {
    if (is_kept)
        return;
    // Meshes first: they hold materials.
    while (model.get_num_children() > num_children)
        model.remove_child(model.get_child(model.get_num_children() - 1));
    while (model.get_num_materials() > num_model_materials)
        model.remove_material(model.get_material_by_index(model.get_num_materials() - 1), nullptr);
    MaterialMgr& materials = *MaterialMgr::get();
    while (materials.get_num_resources() > num_materials)
        materials.release_resource(
            nullptr, materials.get_resource_by_index(materials.get_num_resources() - 1), nullptr);
    // And materials hold textures.
    TextureMgr& textures = *TextureMgr::get();
    while (textures.get_num_resources() > num_textures)
        textures.release_texture(
            nullptr,
            static_cast<Texture*>(textures.get_resource_by_index(textures.get_num_resources() - 1)),
            nullptr);
}

} // namespace orvex
