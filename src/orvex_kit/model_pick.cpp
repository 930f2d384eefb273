// Picking: the ray of a pixel, and the tree of faces, which is made when it is first asked.

#include <cmath>
#include <limits>
#include <new>
#include <utility>
#include <vector>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/rays/ray_caster.h>
#include <orvex/math/mat4.h>
#include <orvex/renderer/records/mesh_data.h>
#include <orvex/scene/camera.h>
#include <orvex/scene/viewport.h>

#include "orvex_kit/private/face_tree.h"
#include "orvex_kit/private/model_data.h"

namespace orvex::kit {

namespace {

/// A face as it is drawn; none if a corner isn't there or has no place.
std::optional<TreeFace> face_of(const Mesh& mesh, unsigned long face, const mat4& transform) {
    unsigned index[3] = {};
    mesh.get_face_indexes(face, &index[0], &index[1], &index[2]);
    TreeFace result{};
    for (std::size_t i = 0; i < 3; ++i) {
        vec4 place;
        if (index[i] >= mesh.get_mesh_data()->num_vertices ||
            !place_of_vertex(mesh, index[i], transform, place))
            return std::nullopt;
        result.corners[i] = {place.x, place.y, place.z};
    }
    result.face = static_cast<std::uint32_t>(face);
    return result;
}

/// Calls `use` for each face of the meshes that has a place.
template<class Use>
void for_each_face(const std::vector<Mesh*>& meshes, Use use) {
    for (std::size_t mesh = 0; mesh < meshes.size(); ++mesh) {
        const mat4 transform = meshes[mesh]->get_absolute_transform();
        for (unsigned long i = 0; i < meshes[mesh]->get_mesh_data()->num_faces; ++i)
            if (std::optional<TreeFace> face = face_of(*meshes[mesh], i, transform)) {
                face->mesh = static_cast<std::uint32_t>(mesh);
                use(*face);
            }
    }
}

} // namespace

const FaceTree& Model::Data::face_tree() {
    if (tree)
        return *tree;
    std::vector<TreeFace> faces;
    faces.reserve(facts.num_faces);
    for_each_face(meshes, [&](const TreeFace& face) { faces.push_back(face); });
    tree = std::make_unique<FaceTree>(faces);
    return *tree;
}

/// By the tree, or face by face where there is no memory for one.
std::optional<TreeHit> Model::Data::first_hit(const PointRay& ray) {
    try {
        return face_tree().first_hit(ray);
    } catch (const std::bad_alloc&) {
        std::optional<TreeHit> best;
        for_each_face(meshes, [&](const TreeFace& face) {
            const std::optional<TreeHit> hit = meet(ray, face);
            if (hit && (!best || is_before(*hit, *best)))
                best = hit;
        });
        return best;
    }
}

/// That of the run which a face belongs to.
int Model::Data::material_of(std::size_t mesh, std::size_t face) const {
    for (const FaceRun& run : facts.runs)
        if (run.mesh == mesh && face - run.first_face < run.num_faces)
            return run.material;
    return -1;
}

std::optional<Pick> Model::Data::pick(const PointRay& ray) {
    const std::optional<TreeHit> hit = first_hit(ray);
    if (!hit)
        return std::nullopt;
    Pick pick{};
    pick.mesh = hit->face.mesh;
    pick.face = hit->face.face;
    pick.material = material_of(pick.mesh, pick.face);
    pick.distance = hit->distance;
    Point point{};
    for (std::size_t i = 0; i < 3; ++i) {
        pick.barycentric[i] = static_cast<float>(hit->shares[i]);
        for (std::size_t axis = 0; axis < 3; ++axis)
            point[axis] += hit->shares[i] * static_cast<double>(hit->face.corners[i][axis]);
    }
    pick.point.set(static_cast<float>(point[0]), static_cast<float>(point[1]),
                   static_cast<float>(point[2]));
    return pick;
}

namespace {

Point point_of(const vec4& v) {
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

bool is_finite(const Point& v) {
    return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]);
}

bool is_ray(const PointRay& ray) {
    const Point& d = ray.direction;
    return is_finite(ray.origin) && is_finite(d) && (d[0] != 0 || d[1] != 0 || d[2] != 0);
}

/// Columns of a linear system: four unknowns, and what two right sides are.
struct System {
    double rows[4][6];

    /// Solves it in place, row by row by the largest pivot that is left.
    /// @return false if it can't be
    bool solve() {
        for (int column = 0; column < 4; ++column) {
            int pivot = column;
            for (int row = column + 1; row < 4; ++row)
                if (std::abs(rows[row][column]) > std::abs(rows[pivot][column]))
                    pivot = row;
            if (!(std::abs(rows[pivot][column]) > 0))
                return false;
            std::swap(rows[column], rows[pivot]);
            eliminate(column);
        }
        return true;
    }

private:
    void eliminate(int column) {
        const double scale = 1 / rows[column][column];
        for (double& number : rows[column])
            number *= scale;
        for (int row = 0; row < 4; ++row) {
            const double factor = row == column ? 0 : rows[row][column];
            for (int i = 0; i < 6; ++i)
                rows[row][i] -= factor * rows[column][i];
        }
    }
};

/// What takes points of the near and of the far plane back to the world.
System system_of(const orvex::Camera& camera, double x, double y) {
    const float* const p = camera.get_projection_matrix().m;
    const float* const v = camera.get_view_matrix().m;
    const double planes[4][2] = {{x, x}, {y, y}, {-1, 1}, {1, 1}};
    System system{};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            for (int i = 0; i < 4; ++i)
                system.rows[row][column] +=
                    static_cast<double>(p[4 * i + row]) * static_cast<double>(v[4 * column + i]);
        system.rows[row][4] = planes[row][0];
        system.rows[row][5] = planes[row][1];
    }
    return system;
}

/// From the near plane to the far one, which may be infinitely far.
std::optional<PointRay> ray_of(const orvex::Camera& camera, float x, float y) {
    const Viewport& view = camera.get_viewport();
    const double right = 2 * (static_cast<double>(x) - view.x) / view.width - 1;
    const double up = 1 - 2 * (static_cast<double>(y) - view.y) / view.height;
    System system = system_of(camera, right, up);
    if (!system.solve())
        return std::nullopt;
    const double near_w = system.rows[3][4], far_w = system.rows[3][5];
    PointRay ray{{}, {}, std::numeric_limits<double>::max()};
    double length = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        ray.origin[i] = system.rows[i][4] / near_w;
        ray.direction[i] = system.rows[i][5] - ray.origin[i] * far_w;
        length += ray.direction[i] * ray.direction[i];
    }
    length = std::sqrt(length);
    for (double& part : ray.direction)
        part /= length;
    if (far_w > 0)
        ray.reach = length / far_w;
    return ray;
}

} // namespace

std::optional<Pick> Model::pick(const Ray& ray) const {
    const PointRay points{point_of(ray.origin), point_of(ray.direction),
                          std::numeric_limits<double>::max()};
    return *this && is_ray(points) ? data->pick(points) : std::nullopt;
}

std::optional<Pick> Model::pick(const orvex::Camera& camera, float x, float y) const {
    const std::optional<PointRay> ray = ray_of(camera, x, y);
    return *this && ray && is_ray(*ray) ? data->pick(*ray) : std::nullopt;
}

} // namespace orvex::kit
