// Components form a graph. It is gone through without recursion, once for its cycles and costs, and
// once for each item to place its meshes.

#include "orvex_formats/3mf/private/3mf_reader.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "orvex_formats/3mf/private/3mf_parts.h"
#include "orvex_formats/private/build_model.h"
#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/vertex_joiner.h"

namespace orvex::formats {

namespace {

const Group3mf* group_of(const Package3mf& package, const Object3mf& object, const Look3mf& look) {
    const auto& groups = package.groups[object.part];
    const auto found = groups.find(look.group);
    return found == groups.end() ? nullptr : &found->second;
}

/// What the corners of an object have, beside their places.
struct CornerKinds {
    bool has_colors = false, has_uvs = false;

    bool is_any() const { return has_colors || has_uvs; }
};

CornerKinds kinds_of(const Package3mf& package, const Object3mf& object) {
    CornerKinds kinds;
    for (const Look3mf& look : object.looks)
        if (const Group3mf* const group = group_of(package, object, look)) {
            kinds.has_colors = kinds.has_colors || !group->colors.empty();
            kinds.has_uvs = kinds.has_uvs || !group->uvs.empty();
        }
    return kinds;
}

/// First one placement, then the other.
Placement3mf then(const Placement3mf& first, const Placement3mf& second) {
    Placement3mf both{};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 3; ++column) {
            double sum = row == 3 ? second[9 + column] : 0.0;
            for (std::size_t i = 0; i < 3; ++i)
                sum += first[3 * row + i] * second[3 * i + column];
            both[3 * row + column] = sum;
        }
    return both;
}

vec3 placed(const vec3& place, const Placement3mf& by) {
    const double from[] = {static_cast<double>(place.x), static_cast<double>(place.y),
                           static_cast<double>(place.z)};
    float to[3];
    for (std::size_t column = 0; column < 3; ++column)
        to[column] = static_cast<float>(from[0] * by[column] + from[1] * by[3 + column] +
                                        from[2] * by[6 + column] + by[9 + column]);
    return {to[0], to[1], to[2]};
}

bool is_mirror(const Placement3mf& by) {
    return by[0] * (by[4] * by[8] - by[5] * by[7]) - by[1] * (by[3] * by[8] - by[5] * by[6]) +
               by[2] * (by[3] * by[7] - by[4] * by[6]) <
           0.0;
}

/// What each object costs with all that is below it.
class Costs {
public:
    Costs(const Package3mf& package, std::uint64_t most)
        : package(package)
        , most(most)
        , costs(package.objects.size())
        , states(package.objects.size()) {}

    void check() {
        std::uint64_t sum = 0;
        for (const Use3mf& item : package.items) {
            find(item.object);
            sum = std::min(sum + costs[item.object], most + 1);
        }
        if (sum > most)
            refuse("the file builds more than %llu bytes of meshes",
                   static_cast<unsigned long long>(most));
    }

private:
    enum class State : unsigned char { unknown, open, known };
    struct Visit {
        std::size_t object, next_component;
    };

    std::uint64_t own_cost(const Object3mf& object) const {
        const std::uint64_t triangles = object.triangles.size();
        const std::uint64_t vertices =
            kinds_of(package, object).is_any() ? 3 * triangles : object.positions.size();
        const std::uint64_t of_itself = triangles == 0 ? sizeof(Placement3mf) : size_of_node;
        return of_itself + size_of_vertex * vertices + size_of_triangle * triangles;
    }

    void find(std::size_t root) {
        std::vector<Visit> path;
        open(root, path);
        while (!path.empty()) {
            Visit& visit = path.back();
            const Object3mf& object = package.objects[visit.object];
            if (visit.next_component < object.components.size()) {
                open(object.components[visit.next_component++].object, path);
                continue;
            }
            std::uint64_t sum = own_cost(object);
            for (const Use3mf& component : object.components)
                sum = std::min(sum + costs[component.object], most + 1);
            costs[visit.object] = sum;
            states[visit.object] = State::known;
            path.pop_back();
        }
    }

    void open(std::size_t object, std::vector<Visit>& path) {
        if (states[object] == State::open)
            refuse("an object is a component of itself");
        if (states[object] == State::known)
            return;
        states[object] = State::open;
        path.push_back({object, 0});
    }

    const Package3mf& package;
    std::uint64_t most;
    std::vector<std::uint64_t> costs;
    std::vector<State> states;
};

/// A vertex in one of its colours, and at one of its places on a picture.
struct Corner {
    std::uint32_t vertex;
    float red = 1.0f, green = 1.0f, blue = 1.0f, alpha = 1.0f;
    float u = 0.0f, v = 0.0f;
};

Corner corner_of(const Group3mf* group, std::uint32_t entry, std::uint32_t vertex) {
    Corner corner{vertex};
    if (group && entry < group->colors.size()) {
        const vec4& color = group->colors[entry];
        corner.red = color.x;
        corner.green = color.y;
        corner.blue = color.z;
        corner.alpha = color.w;
    }
    if (group && entry < group->uvs.size()) {
        corner.u = group->uvs[entry].x;
        corner.v = group->uvs[entry].y;
    }
    return corner;
}

class Placer {
public:
    Placer(const Package3mf& package, Draft& draft)
        : package(package)
        , draft(draft) {}

    void place(const Use3mf& item) {
        std::vector<std::pair<std::size_t, Placement3mf>> left = {{item.object, item.placement}};
        while (!left.empty()) {
            const auto [number, placement] = left.back();
            left.pop_back();
            const Object3mf& object = package.objects[number];
            if (!object.triangles.empty())
                draft.surfaces.push_back(surface_of(object, placement));
            for (std::size_t i = object.components.size(); i-- > 0;)
                left.emplace_back(object.components[i].object,
                                  then(object.components[i].placement, placement));
        }
    }

private:
    Surface surface_of(const Object3mf& object, const Placement3mf& by) const {
        Surface surface;
        surface.name = object.name;
        for (const vec3& place : object.positions)
            surface.positions.push_back(placed(place, by));
        surface.triangles = object.triangles;
        add_materials(object, surface);
        part_corners(object, surface);
        if (is_mirror(by))
            for (Triangle& triangle : surface.triangles)
                std::swap(triangle[1], triangle[2]);
        return surface;
    }

    void add_materials(const Object3mf& object, Surface& surface) const {
        for (std::size_t i = 0; i < object.looks.size(); ++i) {
            const Look3mf& look = object.looks[i];
            const Group3mf* const group = group_of(package, object, look);
            const std::uint32_t entry = !group || !group->uvs.empty() ? 0 : look.entries[0];
            if (!group || entry >= group->num_materials)
                continue;
            if (surface.triangle_materials.empty())
                surface.triangle_materials.resize(surface.triangles.size(), no_material);
            surface.triangle_materials[i] =
                static_cast<std::uint32_t>(group->first_material + entry);
        }
    }

    /// Vertices at which colours, or pieces of a picture, meet become several.
    void part_corners(const Object3mf& object, Surface& surface) const {
        const CornerKinds kinds = kinds_of(package, object);
        if (!kinds.is_any())
            return;
        VertexJoiner<Corner> corners;
        for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
            const Look3mf& look = object.looks[i];
            const Group3mf* const group = group_of(package, object, look);
            for (std::size_t corner = 0; corner < 3; ++corner) {
                std::uint32_t& vertex = surface.triangles[i][corner];
                bool is_new = false;
                vertex = corners.add(corner_of(group, look.entries[corner], vertex), is_new);
            }
        }
        const std::vector<vec3> places = std::exchange(surface.positions, {});
        for (const Corner& corner : corners.all()) {
            surface.positions.push_back(places[corner.vertex]);
            if (kinds.has_colors)
                surface.colors.emplace_back(corner.red, corner.green, corner.blue, corner.alpha);
            vec2 uv;
            if (kinds.has_uvs)
                surface.uvs[0].push_back(uv.set(corner.u, corner.v));
        }
    }

    const Package3mf& package;
    Draft& draft;
};

} // namespace

Draft read_3mf(const InputFile& file) {
    Package3mf package = read_3mf_package(file);
    Costs(package, most_of_model(file.size())).check(); // few objects can be put in many places
    Draft draft;
    Placer placer(package, draft);
    for (const Use3mf& item : package.items)
        placer.place(item);
    if (draft.surfaces.empty())
        refuse("the file builds no mesh");
    draft.materials = std::move(package.materials);
    draft.pictures = std::move(package.pictures);
    draft.notes = std::move(package.notes);
    return draft;
}

} // namespace orvex::formats
