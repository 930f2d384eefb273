/// @file
/// Rays from pixels, and where they meet a mesh.

#include "orvex/geometry/rays/ray_caster.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "orvex/base/private/misuse.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/private/mesh_contents.h"
#include "orvex/geometry/rays/private/face_filter.h"
#include "orvex/math/mat4.h"
#include "orvex/math/math.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/scene/camera.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/viewport.h"

namespace orvex {

RayCaster::RayCaster() = default;
RayCaster::~RayCaster() = default;

bool RayCaster::project_object_position_into_viewport(Camera* camera, Object* object,
                                                      vec4& out) const {
    if (!camera || !object)
        return misuse("RayCaster::project_object_position_into_viewport",
                      "a null camera or a null object");
    return project_object_position_into_viewport_v2(
        camera->get_projection_matrix(), camera->get_view_matrix(), camera->get_viewport(),
        object->get_absolute_transform(), object->get_position(), out);
}

bool RayCaster::project_object_position_into_viewport_v2(const mat4& projection, const mat4& view,
                                                         const Viewport& viewport,
                                                         const mat4& model, const vec4& position,
                                                         vec4& out) const {
    const vec4 p = projection * view * model * position;
    out.x =
        static_cast<float>(viewport.x) + static_cast<float>(viewport.width) * (p.x + 1.0f) * 0.5f;
    out.y =
        static_cast<float>(viewport.y) + static_cast<float>(viewport.height) * (p.y + 1.0f) * 0.5f;
    out.z = (p.z + 1.0f) * 0.5f;
    return true;
}

namespace {

/// The way from an edge of the viewport to a pixel, of any two numbers.
float pixels_between(int edge, int pixel) {
    return static_cast<float>(static_cast<std::int64_t>(pixel) - edge);
}

} // namespace

bool RayCaster::get_ray(Camera* camera, int x, int y, Ray& ray) const {
    if (!camera)
        return misuse("RayCaster::get_ray", "a null camera");
    const Viewport& viewport = camera->get_viewport();
    // Half a viewport is a whole number of pixels.
    const int half_columns = viewport.width / 2;
    const int half_rows = viewport.height / 2;
    const auto half_width = static_cast<float>(half_columns);
    const auto half_height = static_cast<float>(half_rows);
    const float t = camera->get_tanfovdiv2();
    const float nx = (1.0f - pixels_between(viewport.x, x) / half_width) * camera->get_aspect() * t;
    const float ny = (pixels_between(viewport.y, y) / half_height - 1.0f) * t;

    const auto at_depth = [&](float depth) {
        return camera->get_inv_view_matrix() * vec4(-depth * nx, -depth * ny, -depth, 1.0f);
    };
    const vec4 near_point = at_depth(camera->get_znear());
    const vec4 far_point = at_depth(camera->get_zfar());
    ray.direction = far_point - near_point;
    ray.direction.normalize();
    ray.origin = near_point;
    return true;
}

bool RayCaster::get_ray_ortho_cam(Camera* camera, int x, int y, Ray& ray) const {
    if (!camera)
        return misuse("RayCaster::get_ray_ortho_cam", "a null camera");
    const Viewport& viewport = camera->get_viewport();
    const float nx =
        2.0f * pixels_between(viewport.x, x) / static_cast<float>(viewport.width) - 1.0f;
    const float ny =
        1.0f - 2.0f * pixels_between(viewport.y, y) / static_cast<float>(viewport.height);
    vec4 eye = camera->get_inv_projection_matrix() * vec4(nx, ny, -1.0f, 1.0f);
    eye.z = -1.0f;
    ray.origin = camera->get_inv_view_matrix() * eye;
    ray.direction = vec4(0.0f, 0.0f, -1.0f, 0.0f);
    return true;
}

bool RayCaster::cast_ray_object(const Ray& ray, Object* object,
                                RayObjectIntersection& result) const {
    if (!object || !object->is_type_of(NODE_TYPE_MESH))
        return false;
    return _cast_ray_mesh(ray, node_as<Mesh>(object), result);
}

// Meeting a mesh: a filter leaves the few faces that may be met, and `Math` decides on those.

namespace {

/// The positions of a store, wherever its layout has them.
struct Positions {
    explicit Positions(MeshData& store)
        : first(static_cast<const std::byte*>(
              store.separate_vertex_arrays ? store.get_position_ptr() : store.get_vertex_ptr()))
        , stride(store.separate_vertex_arrays ? store.get_position_elt_size()
                                              : store.get_vertex_elt_size())
        , count(store.num_vertices) {}

    /// Three floats, zeros out of range.
    const float* at(unsigned int i) const {
        static constexpr float none[3] = {};
        return i < count ? reinterpret_cast<const float*>(first + i * stride) : none;
    }

    /// How many of the first have 16 bytes behind them: of three floats, all but the last one.
    unsigned int num_readable() const {
        constexpr std::size_t register_size = 16;
        const unsigned long readable = stride >= register_size ? count : count - 1;
        return static_cast<unsigned int>(std::min(readable, 0xFFFFFFFFul));
    }

    const std::byte* first;
    std::size_t stride;
    unsigned long count;
};

/// A ray on its way through the faces of a mesh.
class FaceWalk {
public:
    FaceWalk(const Ray& ray, MeshData& store, const mat4& transform, RayObjectIntersection& out)
        : ray(ray)
        , positions(store)
        , to_world(transform)
        , probe(make_probe(ray, positions, transform))
        , result(out) {}

    /// Goes through the faces in order, up to where the result is certain.
    template<class Face>
    void run(const Face* faces, unsigned long count, SkipMissed<Face> skip) {
        const unsigned long in_groups = count - count % faces_at_once;
        for (unsigned long i = skip(probe, faces, 0, in_groups); i < in_groups;
             i = skip(probe, faces, i + faces_at_once, in_groups))
            if (meet(faces, i, i + faces_at_once))
                return;
        meet(faces, in_groups, count);
    }

private:
    static FaceProbe make_probe(const Ray& ray, const Positions& positions, const mat4& transform) {
        static constexpr mat4 identity;
        const bool is_identity = std::memcmp(&transform, &identity, sizeof identity) == 0;
        return {{ray.origin.x, ray.origin.y, ray.origin.z},
                {ray.direction.x, ray.direction.y, ray.direction.z},
                is_identity ? nullptr : transform.m,
                positions.first,
                positions.stride,
                positions.num_readable()};
    }

    /// @return whether the result is certain
    template<class Face>
    bool meet(const Face* faces, unsigned long begin, unsigned long end) {
        for (unsigned long i = begin; i < end; ++i) {
            float t = 0.0f;
            if (!Math::ray_triangle_intersection(ray.origin, ray.direction, corner(faces[i].a),
                                                 corner(faces[i].b), corner(faces[i].c), &t))
                continue;
            if (take(i, t) && result.stop_at_first_hit)
                return true;
        }
        return false;
    }

    vec4 corner(unsigned int i) const {
        const float* const p = positions.at(i);
        return to_world * vec4(p[0], p[1], p[2], 1.0f);
    }

    /// @return whether the face counts
    bool take(unsigned long face, float t) {
        if (!(t > 0.0f))
            return false;
        if (t < result.distance) {
            result.distance = t;
            result.face_index = face;
            result.hit = true;
        }
        return true;
    }

    const Ray& ray;
    const Positions positions;
    const mat4& to_world;
    const FaceProbe probe;
    RayObjectIntersection& result;
};

constexpr float farthest = 1e13f;
static_assert(std::bit_cast<std::uint32_t>(farthest) == 0x551184E7);

bool line_meets_bounding_sphere(const Ray& ray, const Mesh& mesh, const mat4& transform) {
    return Math::check_ray_sphere_intersection(ray.origin, ray.direction,
                                               transform * mesh.get_bounding_sphere_center(),
                                               mesh.get_bounding_sphere_radius());
}

vec3 point_along(const Ray& ray, float distance) {
    return vec3(ray.origin.x + distance * ray.direction.x,
                ray.origin.y + distance * ray.direction.y,
                ray.origin.z + distance * ray.direction.z);
}

} // namespace

bool RayCaster::_cast_ray_mesh(const Ray& ray, Mesh* mesh, RayObjectIntersection& result) const {
    MeshData* const store = mesh ? mesh->get_mesh_data() : nullptr;
    if (!mesh_contents::has_vertices(store) || !mesh_contents::has_faces(store))
        return false;
    result.hit = false;
    const mat4 to_world = mesh->get_absolute_transform();
    if (!line_meets_bounding_sphere(ray, *mesh, to_world))
        return false;
    result.distance = farthest;
    result.face_index = 0;
    FaceWalk walk(ray, *store, to_world, result);
    if (store->index_bits == 16)
        walk.run(store->faces_u16, store->num_faces, face_filters().front().skip_u16);
    else
        walk.run(store->faces_u32, store->num_faces, face_filters().front().skip_u32);
    if (result.hit)
        result.position = point_along(ray, result.distance);
    return result.hit;
}

} // namespace orvex
