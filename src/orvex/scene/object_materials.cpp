#include "orvex/scene/object.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <utility>

#include "orvex/assets/materials/material.h"
#include "orvex/base/private/misuse.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/private/object_data.h"

namespace orvex {

namespace {

/// From this count on materials are found by a table. A model file may bring thousands, each of
/// which is looked for before it is added.
constexpr std::size_t first_count_of_table = 32;

} // namespace

void Object::ObjectData::list(Material* material) {
    // What may find no memory comes first.
    if (materials.size() == materials.capacity())
        materials.reserve(std::max(2 * materials.size(), std::size_t{1}));
    if (!material_by_id && materials.size() >= first_count_of_table) {
        auto table = std::make_unique<std::unordered_map<int, Material*>>();
        for (Material* known : materials)
            table->emplace(known->get_id(), known);
        material_by_id = std::move(table);
    }
    if (material_by_id)
        material_by_id->emplace(material->get_id(), material);
    materials.push_back(material);
}

bool Object::add_material(Material* material, Node* node) {
    if (!material)
        return misuse("Object::add_material", "a null material");
    if (!get_material(material->get_id())) {
        object_data->list(material); // may find no memory: first of all
        material->add_ref();
    }
    for_each_child_object(node,
                          [material](Object& child) { child.add_material(material, &child); });
    return true;
}

bool Object::remove_material(Material* material, Node*) {
    std::vector<Material*>& materials = object_data->materials;
    // From the end: what came last goes first where a load is undone.
    const auto found = std::find(materials.rbegin(), materials.rend(), material);
    if (found == materials.rend())
        return misuse("Object::remove_material", "a material that the object does not hold");
    materials.erase(std::next(found).base());
    if (object_data->material_by_id)
        object_data->material_by_id->erase(material->get_id());
    material->release(nullptr, nullptr);
    return true;
}

void Object::remove_all_materials(Renderer* renderer, Node* node) {
    const std::vector<Material*> released = std::exchange(object_data->materials, {});
    object_data->material_by_id.reset();
    for (Material* material : released)
        material->release(renderer, nullptr);
    for_each_child_object(
        node, [renderer](Object& child) { child.remove_all_materials(renderer, &child); });
}

namespace {

template<class Matches>
Material* first_match(const std::vector<Material*>& materials, Matches matches) {
    const auto found = std::find_if(materials.begin(), materials.end(), matches);
    return found == materials.end() ? nullptr : *found;
}

} // namespace

Material* Object::get_material(int id) const {
    if (const auto& table = object_data->material_by_id) {
        const auto found = table->find(id);
        return found == table->end() ? nullptr : found->second;
    }
    return first_match(object_data->materials,
                       [id](const Material* material) { return material->get_id() == id; });
}

Material* Object::get_material_by_index(unsigned long index) const {
    return index < object_data->materials.size() ? object_data->materials[index] : nullptr;
}

Material* Object::get_material_by_name(const char* name) const {
    constexpr std::size_t compared = 127;
    if (!name)
        return nullptr;
    return first_match(object_data->materials, [name](const Material* material) {
        return std::strncmp(material->get_name(), name, compared) == 0;
    });
}

unsigned long Object::get_num_materials() const {
    return object_data->materials.size();
}

void Object::set_all_materials_texture_unit_offset(unsigned long offset, Node* node) {
    for (Material* material : object_data->materials)
        material->set_texture_unit_offset(offset);
    for_each_child_object(node, [offset](Object& child) {
        child.set_all_materials_texture_unit_offset(offset, &child);
    });
}

bool Object::async_texture_loading_process_all_materials(Renderer* renderer, const char* prefix,
                                                         PIXEL_FORMAT format, bool flag,
                                                         Node* node) {
    for (Material* material : object_data->materials)
        material->async_loading_process_all_texture_filenames(renderer, prefix, format, flag);
    for_each_child_object(node, [=](Object& child) {
        child.async_texture_loading_process_all_materials(renderer, prefix, format, flag, &child);
    });
    return true;
}

} // namespace orvex
