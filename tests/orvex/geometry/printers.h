#pragma once

/// @file
/// How geometry tests make stores and compare vectors.

#include <memory>

#include "orvex/math/to_text.h"
#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/mesh_data_packed.h"

namespace orvex {

inline bool operator==(const vec3& a, const vec3& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

inline bool operator==(const vec2& a, const vec2& b) {
    return a.x == b.x && a.y == b.y;
}

} // namespace orvex

namespace orvex_test {

inline std::unique_ptr<orvex::MeshData> make_store(orvex::VERTEX_FORMAT format) {
    switch (format) {
    case orvex::VERTEX_FORMAT_96:
        return std::make_unique<orvex::MeshData>();
    case orvex::VERTEX_FORMAT_64:
        return std::make_unique<orvex::MeshData_64>();
    case orvex::VERTEX_FORMAT_32:
        return std::make_unique<orvex::MeshData_32>();
    case orvex::VERTEX_FORMAT_PHYSX_CLOTH:
        return std::make_unique<orvex::MeshData_PhysXCloth>();
    }
    return nullptr;
}

inline const char* format_name(orvex::VERTEX_FORMAT format) {
    const char* names[] = {"format_96", "format_64", "format_32", "format_physx_cloth"};
    return names[format];
}

} // namespace orvex_test
