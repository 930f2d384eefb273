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

constexpr std::size_t farthest = 9; ///< how many children ahead the first link is asked for

// Always inline: a call that does nothing but prefetch has no effect a compiler knows of, and goes.
[[gnu::always_inline]] inline void prefetch(const void* address, std::size_t bytes) {
    const char* const first = static_cast<const char*>(address);
    for (std::size_t offset = 0; offset < bytes; offset += cache_line)
        __builtin_prefetch(first + offset);
    __builtin_prefetch(first + bytes - 1);
}

[[gnu::always_inline]] inline void
prefetch_transform_and_material(const Object::ObjectData& record) {
    prefetch(&Tripod::TripodData::of(record.tripod), Tripod::TripodData::hot_bytes);
    if (!record.materials.empty())
        prefetch(record.materials.data(), 1); // the line of the first
}

const Material* first_material(const Object::ObjectData& record) {
    return record.materials.empty() ? nullptr : record.materials.front();
}

/// The record that a handle points to, which outlives its node; null for none.
const Node::NodeData* record_of(const NodeHandle* handle) {
    return handle
               ? static_cast<const Node::NodeData*>(static_cast<const NodeToken*>(handle->record()))
               : nullptr;
}

/// Null for a node that has ended, and for one that is no object.
const Object::ObjectData* object_record_of(const NodeHandle* handle) {
    const Node::NodeData* const record = record_of(handle);
    return record && record->object ? &Object::ObjectData::of(*record->object) : nullptr;
}

/// A link further for each child that is nearer: what is asked for here has come when the line
/// below it looks inside. The distances are those that measured best.
/// @param at  gives the child so many behind the current one, or null
template<class At>
[[gnu::always_inline]] inline void ask_ahead(At at) {
    if (const Node::NodeData* const record = record_of(at(farthest)))
        prefetch(record, Node::NodeData::hot_bytes);
    if (const Node::NodeData* const record = record_of(at(7)); record && record->node)
        prefetch(record->node, object_bytes);
    if (const Object::ObjectData* const record = object_record_of(at(5)))
        prefetch(record, Object::ObjectData::hot_bytes);
    if (const Object::ObjectData* const record = object_record_of(at(4)))
        prefetch_transform_and_material(*record);
    if (const Object::ObjectData* const record = object_record_of(at(3)))
        if (const Material* const material = first_material(*record))
            prefetch(material, material_bytes);
    if (const Object::ObjectData* const record = object_record_of(at(2)))
        if (const Material* const material = first_material(*record))
            prefetch(Material::Access::record(*material), material_record_bytes);
}

} // namespace

void draw_ahead(const std::vector<NodeHandle>& children, std::size_t current) {
    if (current + farthest < children.size())
        return ask_ahead(
            [first = &children[current]](std::size_t behind) { return first + behind; });
    ask_ahead([&](std::size_t behind) {
        return current + behind < children.size() ? &children[current + behind] : nullptr;
    });
}

} // namespace orvex
