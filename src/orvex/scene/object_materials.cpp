#include "orvex/scene/object.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "orvex/assets/materials/material.h"
#include "orvex/base/private/misuse.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/private/object_data.h"

namespace orvex {

bool Object::add_material(Material* material, Node* node) {
    if (!material)
        return misuse("Object::add_material", "a null material");
    if (!get_material(material->get_id())) {
        object_data->materials.push_back(material); // may find no memory: first of all
        material->add_ref();
    }
    for_each_child_object(node,
                          [material](Object& child) { child.add_material(material, &child); });
    return true;
}

bool Object::remove_material(Material* material, Node*) {
    std::vector<Material*>& materials = object_data->materials;
    const auto found = std::find(materials.begin(), materials.end(), material);
    if (found == materials.end())
        return misuse("Object::remove_material", "a material that the object does not hold");
    materials.erase(found);
    material->release(nullptr, nullptr);
    return true;
}

void Object::remove_all_materials(Renderer* renderer, Node* node) {
    const std::vector<Material*> released = std::exchange(object_data->materials, {});
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
