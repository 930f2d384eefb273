// Each corner without a normal gets the number of one that is made: of its triangle, of its
// position in a smoothing group, or of a vertex that the rule of angles made. Then the corners of a
// vertex that got different ones become vertices of their own.

#include <cmath>
#include <utility>

#include "orvex_formats/obj/private/obj_model.h"
#include "orvex_formats/private/normals.h"
#include "orvex_formats/private/vertex_joiner.h"

namespace orvex::formats {

namespace {

constexpr std::uint32_t none = UINT32_MAX;

/// As long as twice the triangle's area.
vec3 normal_of(const Surface& surface, const Triangle& triangle) {
    const vec3& a = surface.positions[triangle[0]];
    const vec3& b = surface.positions[triangle[1]];
    const vec3& c = surface.positions[triangle[2]];
    const vec3 u(b.x - a.x, b.y - a.y, b.z - a.z), v(c.x - a.x, c.y - a.y, c.z - a.z);
    return {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
}

bool is_finite(const vec3& normal) {
    return std::isfinite(normal.x) && std::isfinite(normal.y) && std::isfinite(normal.z);
}

double length_of(const vec3& normal) {
    const double x = double(normal.x), y = double(normal.y), z = double(normal.z);
    return std::sqrt(x * x + y * y + z * z);
}

vec3 unit_of(const vec3& normal) {
    const double length = length_of(normal);
    if (!(length > 0.0) || !std::isfinite(length))
        return {0.0f, 0.0f, 1.0f};
    return {static_cast<float>(double(normal.x) / length),
            static_cast<float>(double(normal.y) / length),
            static_cast<float>(double(normal.z) / length)};
}

class NormalMaker {
public:
    NormalMaker(Surface& surface, const SurfaceSource& source)
        : surface(surface)
        , source(source)
        , made_of(3 * surface.triangles.size(), none) {}

    void run() {
        for (std::size_t i = 0; i < surface.triangles.size(); ++i)
            add_told(i);
        add_by_angle();
        part_vertices();
    }

private:
    Smoothing smoothing_of(std::size_t triangle) const {
        return source.smoothings.empty() ? by_angle : source.smoothings[triangle];
    }
    bool lacks(std::size_t triangle, std::size_t corner) const {
        return !source.has_normal[surface.triangles[triangle][corner]];
    }

    /// Where smoothing is told: flat, or by the sum of a group around a position.
    void add_told(std::size_t place) {
        const Smoothing smoothing = smoothing_of(place);
        const Triangle& triangle = surface.triangles[place];
        if (smoothing == by_angle)
            return;
        const vec3 normal = normal_of(surface, triangle);
        std::uint32_t of_triangle = none;
        for (std::size_t i = 0; i < 3; ++i) {
            bool is_new = true;
            if (smoothing == flat) {
                if (lacks(place, i) && of_triangle == none)
                    of_triangle = add_normal(normal);
                made_of[3 * place + i] = lacks(place, i) ? of_triangle : none;
                continue;
            }
            const std::uint32_t number =
                around.add({source.positions[triangle[i]], smoothing}, is_new);
            if (is_new)
                normal_around.push_back(add_normal(vec3()));
            add_weighted(triangle, i, normal, made[normal_around[number]]);
            made_of[3 * place + i] = lacks(place, i) ? normal_around[number] : none;
        }
    }

    /// Adds a triangle's direction, as much of it as its angle is wide: so it doesn't matter how a
    /// polygon was cut.
    void add_weighted(const Triangle& triangle, std::size_t corner, const vec3& normal,
                      vec3& sum) const {
        const vec3& here = surface.positions[triangle[corner]];
        const vec3& next = surface.positions[triangle[(corner + 1) % 3]];
        const vec3& last = surface.positions[triangle[(corner + 2) % 3]];
        const double area = length_of(normal);
        const double cosine =
            (double(next.x) - double(here.x)) * (double(last.x) - double(here.x)) +
            (double(next.y) - double(here.y)) * (double(last.y) - double(here.y)) +
            (double(next.z) - double(here.z)) * (double(last.z) - double(here.z));
        const auto weight = static_cast<float>(std::atan2(area, cosine) / area);
        const vec3 part(normal.x * weight, normal.y * weight, normal.z * weight);
        if (is_finite(part))
            sum = {sum.x + part.x, sum.y + part.y, sum.z + part.z};
    }

    std::uint32_t add_normal(const vec3& normal) {
        made.push_back(normal);
        return static_cast<std::uint32_t>(made.size() - 1);
    }

    /// Where nothing is told: as of a surface of such triangles alone.
    void add_by_angle() {
        Surface part;
        std::vector<std::size_t> places;
        VertexJoiner<std::uint32_t> joiner;
        for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
            if (smoothing_of(i) != by_angle || !(lacks(i, 0) || lacks(i, 1) || lacks(i, 2)))
                continue;
            places.push_back(i);
            Triangle triangle{};
            for (std::size_t corner = 0; corner < 3; ++corner) {
                const std::uint32_t vertex = surface.triangles[i][corner];
                bool is_new = false;
                triangle[corner] = joiner.add(source.positions[vertex], is_new);
                if (is_new)
                    part.positions.push_back(surface.positions[vertex]);
            }
            part.triangles.push_back(triangle);
        }
        add_normals(part);
        const auto first = static_cast<std::uint32_t>(made.size());
        made.insert(made.end(), part.normals.begin(), part.normals.end());
        for (std::size_t i = 0; i < places.size(); ++i)
            for (std::size_t corner = 0; corner < 3; ++corner)
                if (lacks(places[i], corner))
                    made_of[3 * places[i] + corner] = first + part.triangles[i][corner];
    }

    template<class Value>
    void copy(std::vector<Value>& values) const {
        if (values.empty())
            return;
        std::vector<Value> copies;
        copies.reserve(parted.all().size());
        for (const Parted& vertex : parted.all())
            copies.push_back(values[vertex.original]);
        values = std::move(copies);
    }

    void part_vertices() {
        for (std::size_t i = 0; i < surface.triangles.size(); ++i)
            for (std::size_t corner = 0; corner < 3; ++corner) {
                bool is_new = false;
                std::uint32_t& vertex = surface.triangles[i][corner];
                vertex = parted.add({vertex, made_of[3 * i + corner]}, is_new);
            }
        copy(surface.positions);
        copy(surface.normals);
        copy(surface.colors);
        copy(surface.uvs[0]);
        for (std::size_t i = 0; i < parted.all().size(); ++i)
            if (const std::uint32_t normal = parted.all()[i].normal; normal != none)
                surface.normals[i] = unit_of(made[normal]);
    }

    /// A position in a smoothing group.
    struct Around {
        std::uint32_t position, group;
    };
    /// A vertex with a normal that was made.
    struct Parted {
        std::uint32_t original, normal;
    };

    Surface& surface;
    const SurfaceSource& source;
    std::vector<vec3> made;
    std::vector<std::uint32_t> made_of; ///< of each corner; none where the file has one
    VertexJoiner<Around> around;
    std::vector<std::uint32_t> normal_around;
    VertexJoiner<Parted> parted;
};

} // namespace

void add_missing_normals(Surface& surface, const SurfaceSource& source) {
    NormalMaker(surface, source).run();
}

} // namespace orvex::formats
