#pragma once

/// @file
/// A ray against a mesh in the plainest way: every vertex of every face is fetched and transformed
/// on its own. Tests and benchmarks hold `RayCaster` against it.

#include <bit>
#include <cstdint>

#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/rays/ray_caster.h"
#include "orvex/math/mat4.h"
#include "orvex/math/math.h"
#include "orvex/renderer/records/mesh_data.h"

namespace orvex_test {

inline orvex::FaceU32 plain_face(const orvex::MeshData& store, unsigned long i) {
    if (store.index_bits != 16)
        return store.faces_u32[i];
    return {store.faces_u16[i].a, store.faces_u16[i].b, store.faces_u16[i].c};
}

/// Expects vertices and faces.
inline bool plain_ray_cast(const orvex::Ray& ray, orvex::Mesh& mesh,
                           orvex::RayObjectIntersection& result) {
    using namespace orvex;
    const MeshData& store = *mesh.get_mesh_data();
    const mat4 m = mesh.get_absolute_transform();
    result.hit = false;
    if (!Math::check_ray_sphere_intersection(ray.origin, ray.direction,
                                             m * mesh.get_bounding_sphere_center(),
                                             mesh.get_bounding_sphere_radius()))
        return false;
    float closest = 1e13f;
    result.face_index = 0;
    for (unsigned long i = 0; i < store.num_faces; ++i) {
        const FaceU32 face = plain_face(store, i);
        const vec4 p0 = m * vec4(store.get_position(face.a));
        const vec4 p1 = m * vec4(store.get_position(face.b));
        const vec4 p2 = m * vec4(store.get_position(face.c));
        float t = 0.0f;
        if (!Math::ray_triangle_intersection(ray.origin, ray.direction, p0, p1, p2, &t) ||
            !(t > 0.0f))
            continue;
        if (t < closest) {
            closest = t;
            result.face_index = i;
            result.hit = true;
        }
        if (result.stop_at_first_hit)
            break;
    }
    result.distance = closest;
    if (result.hit)
        result.position =
            vec3(ray.origin.x + closest * ray.direction.x, ray.origin.y + closest * ray.direction.y,
                 ray.origin.z + closest * ray.direction.z);
    return result.hit;
}

/// Equal to the last bit, fields without meaning included.
inline bool same_bits(const orvex::RayObjectIntersection& a,
                      const orvex::RayObjectIntersection& b) {
    const auto same = [](float x, float y) {
        return std::bit_cast<std::uint32_t>(x) == std::bit_cast<std::uint32_t>(y);
    };
    return same(a.position.x, b.position.x) && same(a.position.y, b.position.y) &&
           same(a.position.z, b.position.z) && same(a.distance, b.distance) &&
           a.face_index == b.face_index && a.stop_at_first_hit == b.stop_at_first_hit &&
           a.hit == b.hit;
}

} // namespace orvex_test
