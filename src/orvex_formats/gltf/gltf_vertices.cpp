// The vertices of a primitive: read, bent by morph targets, and brought to their place.

#include <algorithm>
#include <cmath>
#include <utility>

#include "orvex_formats/gltf/private/gltf_color.h"
#include "orvex_formats/gltf/private/gltf_mesh.h"

namespace orvex::formats {

namespace {

std::vector<vec3> as_vec3(const std::vector<float>& numbers) {
    std::vector<vec3> vectors;
    vectors.reserve(numbers.size() / 3);
    for (std::size_t i = 0; i + 2 < numbers.size(); i += 3)
        vectors.emplace_back(numbers[i], numbers[i + 1], numbers[i + 2]);
    return vectors;
}

} // namespace

void GltfMeshes::note_attributes(const Json& attributes) {
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        const Json attribute = attributes.at(i);
        attribute.as_index(accessors.size(), "accessors");
        const std::string_view name = attribute.key();
        const std::string_view kind = name.substr(0, name.find('_'));
        if (name == "TANGENT")
            notes.add(attribute, "tangents were left out");
        else if (kind == "TEXCOORD" && name != "TEXCOORD_0" && name != "TEXCOORD_1")
            notes.add(attribute, "texture coordinates beyond the second were left out");
        else if (kind == "COLOR" && name != "COLOR_0")
            notes.add(attribute, "colours beyond the first were left out");
        else if (kind.empty())
            notes.add(attribute, "attributes of a program's own were left out");
    }
}

std::vector<float> GltfMeshes::read(const Json& attributes, const char* name,
                                    const Vertices& vertices, std::size_t least_width,
                                    std::size_t most_width, std::size_t& width) {
    const std::size_t accessor = attributes.index(name, accessors.size(), "accessors");
    if (accessor == Json::no_index)
        return {};
    const Json told = attributes.need(name);
    width = accessors.width(accessor);
    if (width < least_width || width > most_width)
        told.refuse("accessor " + std::to_string(accessor) + " has elements of another type");
    if (accessors.count(accessor) != vertices.count)
        told.refuse("accessor " + std::to_string(accessor) + " has " +
                    std::to_string(accessors.count(accessor)) + " elements, and there are " +
                    std::to_string(vertices.count) + " vertices");
    return accessors.floats(accessor, vertices.selection());
}

std::vector<vec3> GltfMeshes::read_vec3(const Json& attributes, const char* name,
                                        const Vertices& vertices) {
    std::size_t width = 0;
    return as_vec3(read(attributes, name, vertices, 3, 3, width));
}

void GltfMeshes::read_vertices(const Primitive& primitive, Vertices& vertices) {
    const Json& attributes = primitive.attributes;
    vertices.positions = read_vec3(attributes, "POSITION", vertices);
    vertices.normals = read_vec3(attributes, "NORMAL", vertices);
    read_colors(attributes, vertices);
    read_uvs(primitive, vertices);
    apply_targets(primitive, vertices);
    if (primitive.stand->joints && attributes.find("JOINTS_0"))
        place_by_joints(primitive, vertices);
    else
        place(primitive, vertices);
}

void GltfMeshes::read_colors(const Json& attributes, Vertices& vertices) {
    std::size_t width = 0;
    const std::vector<float> numbers = read(attributes, "COLOR_0", vertices, 3, 4, width);
    if (numbers.empty() || width == 0)
        return;
    vertices.colors.reserve(numbers.size() / width);
    for (std::size_t i = 0; i + width <= numbers.size(); i += width)
        vertices.colors.emplace_back(encoded_color(numbers[i]), encoded_color(numbers[i + 1]),
                                     encoded_color(numbers[i + 2]),
                                     width == 4 ? std::clamp(numbers[i + 3], 0.0f, 1.0f) : 1.0f);
}

namespace {

vec2 vec2_of(float u, float v) {
    vec2 uv;
    return uv.set(u, v);
}

/// Moves a coordinate whose v goes upward.
vec2 changed(const UvChange& change, float cosine, float sine, const vec2& uv) {
    const float u = uv.x * change.scale_u, v = uv.y * change.scale_v;
    return vec2_of(cosine * u - sine * v + change.offset_u,
                   sine * u + cosine * v + change.offset_v);
}

} // namespace

void GltfMeshes::read_uvs(const Primitive& primitive, Vertices& vertices) {
    const UvChange change =
        primitive.material == Json::no_index ? UvChange() : materials.change_of(primitive.material);
    constexpr const char* names[] = {"TEXCOORD_0", "TEXCOORD_1"};
    const float cosine = std::cos(change.rotation), sine = std::sin(change.rotation);
    for (unsigned layer = 0; layer < 2; ++layer) {
        std::size_t width = 0;
        const std::vector<float> numbers =
            read(primitive.attributes, names[layer], vertices, 2, 2, width);
        std::vector<vec2>& uvs = vertices.uvs[layer ^ change.layer];
        uvs.reserve(numbers.size() / 2);
        for (std::size_t i = 0; i + 1 < numbers.size(); i += 2)
            uvs.push_back(vec2_of(numbers[i], 1.0f - numbers[i + 1]));
        if (layer == change.layer && change.is_any())
            for (vec2& uv : uvs)
                uv = changed(change, cosine, sine, uv);
    }
}

// ------------------------------------------------------------------------------------ the pose

namespace {

void add_scaled(std::vector<vec3>& to, const std::vector<vec3>& steps, float weight) {
    for (std::size_t i = 0; i < std::min(to.size(), steps.size()); ++i)
        to[i] = {to[i].x + steps[i].x * weight, to[i].y + steps[i].y * weight,
                 to[i].z + steps[i].z * weight};
}

} // namespace

void GltfMeshes::apply_targets(const Primitive& primitive, Vertices& vertices) {
    const Json targets = primitive.json.list("targets");
    if (targets.size() == 0)
        return;
    if (!primitive.stand->is_timed)
        notes.add(targets, "morph targets stay as the file's weights have them");
    const std::vector<double>* const moved = primitive.stand->moved_weights;
    if (!moved && !primitive.weights)
        return;
    if ((moved ? moved->size() : primitive.weights.size()) != targets.size())
        (moved ? targets : primitive.weights)
            .refuse("not one weight for each of the " + std::to_string(targets.size()) +
                    " targets of " + primitive.json.path());
    for (std::size_t i = 0; i < targets.size(); ++i) {
        const auto weight =
            static_cast<float>(moved ? (*moved)[i] : primitive.weights.at(i).number());
        if (weight == 0.0f)
            continue;
        add_scaled(vertices.positions, read_vec3(targets.at(i), "POSITION", vertices), weight);
        add_scaled(vertices.normals, read_vec3(targets.at(i), "NORMAL", vertices), weight);
    }
}

void GltfMeshes::place(const Primitive& primitive, Vertices& vertices) {
    const GltfTransform& world = primitive.stand->world;
    for (vec3& position : vertices.positions)
        position = world.place(position);
    const GltfNormalTurn turn(world);
    for (vec3& normal : vertices.normals)
        normal = turn(normal);
    vertices.is_mirrored = world.is_mirrored();
}

void GltfMeshes::place_by_joints(const Primitive& primitive, Vertices& vertices) {
    const std::vector<GltfTransform>& joints = *primitive.stand->joints;
    const std::size_t count = vertices.positions.size();
    GltfTransform none;
    none.columns = {};
    budget.take(count, sizeof none, primitive.json);
    std::vector<GltfTransform> sums(count, none);
    std::vector<double> weights_of(count, 0.0);
    constexpr std::size_t most_sets = 4;
    for (std::size_t set = 0; set < most_sets; ++set) {
        const std::string suffix = std::to_string(set);
        std::size_t width = 0;
        const std::vector<float> places =
            read(primitive.attributes, ("JOINTS_" + suffix).c_str(), vertices, 4, 4, width);
        const std::vector<float> weights =
            read(primitive.attributes, ("WEIGHTS_" + suffix).c_str(), vertices, 4, 4, width);
        if (places.size() != weights.size())
            primitive.attributes.refuse("joints without weights, or weights without joints");
        for (std::size_t i = 0; i < places.size(); ++i) {
            if (!(weights[i] != 0.0f))
                continue;
            if (!(places[i] >= 0.0f && places[i] < static_cast<float>(joints.size())))
                primitive.attributes.need("JOINTS_" + suffix)
                    .refuse("joint " + std::to_string(places[i]) + " is beyond the " +
                            std::to_string(joints.size()) + " joints of the skin");
            sums[i / 4].add(joints[static_cast<std::size_t>(places[i])],
                            static_cast<double>(weights[i]));
            weights_of[i / 4] += static_cast<double>(weights[i]);
        }
    }
    // A vertex that no joint moves stays with its node.
    for (std::size_t i = 0; i < count; ++i) {
        const GltfTransform& moved = weights_of[i] != 0.0 ? sums[i] : primitive.stand->world;
        vertices.positions[i] = moved.place(vertices.positions[i]);
        if (!vertices.normals.empty())
            vertices.normals[i] = GltfNormalTurn(moved)(vertices.normals[i]);
        vertices.is_mirrored = i == 0 ? moved.is_mirrored() : vertices.is_mirrored;
    }
}

} // namespace orvex::formats
