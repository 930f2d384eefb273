#include "orvex/scene/private/draw_ahead.h"

#include "orvex/assets/materials/material.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/private/object_data.h"
#include "orvex/scene/private/tripod_data.h"

namespace orvex {

struct Material::Access {
    static const void* record(const Material& material) { return material.data.get(); }
};

namespace {

// An object with what its class adds: all that the engine draws fit.
constexpr std::size_t object_bytes = 112;

// How many bytes a frame reads at the beginning of a material and of its record.
constexpr std::size_t material_bytes = 32;
constexpr std::size_t material_record_bytes = 40;

constexpr std::size_t cache_line = 64;

// Always inline: a call that does nothing but prefetch has no effect a compiler knows of, and goes.
[[gnu::always_inline]] inline void prefetch(const void* address, std::size_t bytes) {
    const char* const first = static_cast<const char*>(address);
    for (std::size_t offset = 0; offset < bytes; offset += cache_line)
        __builtin_prefetch(first + offset);
    __builtin_prefetch(first + bytes - 1);
}

[[gnu::always_inline]] inline void prefetch_transform_and_material(const Object& object) {
    const auto& record = Object::ObjectData::of(object);
    prefetch(&Tripod::TripodData::of(record.tripod), Tripod::TripodData::hot_bytes);
    if (!record.materials.empty())
        prefetch(record.materials.data(), 1); // the line of the first
}

const Material* first_material(const Object& object) {
    const auto& record = Object::ObjectData::of(object);
    return record.materials.empty() ? nullptr : record.materials.front();
}

} // namespace

void draw_ahead(const std::vector<NodeHandle>& children, std::size_t current) {
    const auto at = [&](std::size_t distance) -> const Node* {
        const std::size_t index = current + distance;
        return index < children.size() ? children[index].get() : nullptr;
    };
    const auto object_at = [&](std::size_t distance) -> const Object* {
        const Node* const node = at(distance);
        return node ? node_as_object(*node) : nullptr;
    };
    // A link further for each child that is nearer: what is asked for here has come when the line
    // below it looks inside. The distances are those that measured best.
    if (current + 9 < children.size())
        prefetch(children[current + 9].record(), Node::NodeData::hot_bytes);
    if (const Node* const node = at(7))
        prefetch(node, object_bytes);
    if (const Object* const object = object_at(5))
        prefetch(&Object::ObjectData::of(*object), Object::ObjectData::hot_bytes);
    if (const Object* const object = object_at(4))
        prefetch_transform_and_material(*object);
    if (const Object* const object = object_at(3))
        if (const Material* const material = first_material(*object))
            prefetch(material, material_bytes);
    if (const Object* const object = object_at(2))
        if (const Material* const material = first_material(*object))
            prefetch(Material::Access::record(*material), material_record_bytes);
}

} // namespace orvex
