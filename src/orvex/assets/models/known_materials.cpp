#include "orvex/assets/models/private/known_materials.h"

#include "orvex/assets/materials/material.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/geometry/mesh/model.h"

namespace orvex {

namespace {

/// A model compares so many characters of a name.
std::string_view cut(std::string_view name) {
    constexpr std::size_t compared = 127;
    return name.substr(0, compared);
}

} // namespace

KnownMaterials::KnownMaterials(const Model& model) {
    const MaterialMgr& manager = *MaterialMgr::get();
    for (unsigned long i = 0; i < manager.get_num_resources(); ++i)
        if (Resource* const known = manager.get_resource_by_index(i))
            all.emplace(known->get_name(), static_cast<Material*>(known));
    for (unsigned long i = 0; i < model.get_num_materials(); ++i)
        in_model.emplace(cut(model.get_material_by_index(i)->get_name()));
}

Material* KnownMaterials::find(std::string_view name) const {
    const auto found = all.find(std::string(name));
    return found == all.end() ? nullptr : found->second;
}

void KnownMaterials::add(Material* material) {
    all.emplace(material->get_name(), material);
}

bool KnownMaterials::is_new_to_model(std::string_view name) {
    return in_model.emplace(cut(name)).second;
}

} // namespace orvex
