// The faces around a vertex fall into groups of like direction. The first face of a group decides
// who belongs to it, so that the work grows with the number of faces and not with its square: more
// than a few dozen groups find no room around one vertex.

#include "orvex_formats/private/normals.h"

#include <cmath>

namespace orvex::formats {

namespace {

constexpr float smallest_cosine = 0.70710678f; // of 45 degrees
constexpr std::uint32_t none = UINT32_MAX;

float dot(const vec3& a, const vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

vec3 cross(const vec3& a, const vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

vec3 between(const vec3& from, const vec3& to) {
    return {to.x - from.x, to.y - from.y, to.z - from.z};
}

/// Makes it a unit vector. @return false for what has no direction
bool normalize(vec3& vector) {
    const auto x = double(vector.x), y = double(vector.y), z = double(vector.z);
    const double length = std::sqrt(x * x + y * y + z * z);
    if (!(length > 0.0) || !std::isfinite(length))
        return false;
    vector = {static_cast<float>(x / length), static_cast<float>(y / length),
              static_cast<float>(z / length)};
    return true;
}

/// A normal as long as the face's area, times two.
vec3 area_normal(const Surface& surface, const Triangle& triangle) {
    const vec3& a = surface.positions[triangle[0]];
    return cross(between(a, surface.positions[triangle[1]]),
                 between(a, surface.positions[triangle[2]]));
}

/// Faces of like direction around a vertex, as one of its vertices.
struct Group {
    vec3 direction;            ///< of its first face
    vec3 sum;                  ///< of the normals of all
    std::uint32_t next = none; ///< another group of the same vertex
};

class Smoother {
public:
    explicit Smoother(Surface& surface)
        : surface(surface)
        , groups(surface.positions.size()) {}

    void run() {
        for (Triangle& triangle : surface.triangles)
            add(triangle);
        copy_vertices();
        surface.normals.resize(groups.size());
        for (std::size_t i = 0; i < groups.size(); ++i) {
            surface.normals[i] = groups[i].sum;
            if (!normalize(surface.normals[i]))
                surface.normals[i] = vec3(0.0f, 0.0f, 1.0f);
        }
    }

private:
    void add(Triangle& triangle) {
        const vec3 normal = area_normal(surface, triangle);
        vec3 direction = normal;
        if (!normalize(direction))
            return;
        for (std::uint32_t& corner : triangle)
            corner = join(corner, normal, direction);
    }

    /// Adds a face to the group of its direction. @return the group's vertex
    std::uint32_t join(std::uint32_t vertex, const vec3& normal, const vec3& direction) {
        std::uint32_t place = vertex;
        if (dot(groups[place].direction, groups[place].direction) == 0.0f)
            groups[place].direction = direction; // the first face of the vertex
        while (!(dot(groups[place].direction, direction) >= smallest_cosine)) {
            if (groups[place].next == none) {
                const auto added = static_cast<std::uint32_t>(groups.size());
                groups.push_back({direction, vec3(), none});
                originals.push_back(vertex);
                groups[place].next = added;
            }
            place = groups[place].next;
        }
        vec3& sum = groups[place].sum;
        sum = {sum.x + normal.x, sum.y + normal.y, sum.z + normal.z};
        return place;
    }

    template<class Value>
    void copy(std::vector<Value>& values) const {
        if (values.empty())
            return;
        values.reserve(groups.size());
        for (const std::uint32_t original : originals)
            values.push_back(values[original]);
    }

    /// The further groups of a vertex become vertices at its place.
    void copy_vertices() {
        copy(surface.positions);
        copy(surface.colors);
        copy(surface.uvs[0]);
        copy(surface.uvs[1]);
    }

    Surface& surface;
    std::vector<Group> groups;            ///< by their vertices
    std::vector<std::uint32_t> originals; ///< of the vertices that came by groups
};

} // namespace

void add_normals(Surface& surface) {
    if (surface.normals.empty())
        Smoother(surface).run();
}

} // namespace orvex::formats
