#include "orvex_formats/gltf/private/gltf_nodes.h"

#include <array>
#include <string>
#include <utility>

#include "orvex_formats/gltf/private/gltf_chains.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

GltfNodes::GltfNodes(const Json& json, std::optional<float> time, GltfAccessors& accessors,
                     GltfBudget& budget, GltfNotes& notes)
    : json(json)
    , nodes(json.list("nodes"))
    , skins(json.list("skins"))
    , is_timed(time.has_value())
    , accessors(accessors)
    , budget(budget)
    , notes(notes)
    , animation(time ? GltfAnimation(json, *time, accessors, notes) : GltfAnimation())
    , joints(skins.size()) {
    find_parents();
    compute_worlds();
}

// ------------------------------------------------------------------------------------ trees

void GltfNodes::find_parents() {
    parents.assign(nodes.size(), no_parent);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const Json children = nodes.at(i).list("children");
        for (std::size_t k = 0; k < children.size(); ++k) {
            const std::size_t child = children.at(k).as_index(nodes.size(), "nodes");
            if (parents[child] != no_parent)
                children.at(k).refuse("node " + std::to_string(child) + " has a parent already");
            parents[child] = static_cast<std::uint32_t>(i);
        }
    }
    for (std::size_t i = 0; i < nodes.size(); ++i)
        if (parents[i] == no_parent)
            roots.push_back(static_cast<std::uint32_t>(i));
}

void GltfNodes::follow(std::vector<std::uint32_t>& order) const {
    for (std::size_t i = 0; i < order.size(); ++i) {
        const Json children = nodes.at(order[i]).list("children");
        for (std::size_t k = 0; k < children.size(); ++k)
            order.push_back(static_cast<std::uint32_t>(children.at(k).whole()));
    }
}

GltfTransform GltfNodes::local(std::uint32_t place) const {
    const Json node = nodes.at(place);
    const GltfPose* const pose = animation.pose_of(place);
    const bool is_moved = pose && (pose->translation || pose->rotation || pose->scale);
    if (!is_moved && node.find("matrix")) {
        const auto told = node.numbers<16>("matrix", {});
        GltfTransform made;
        for (std::size_t column = 0; column < 4; ++column)
            for (std::size_t row = 0; row < 3; ++row)
                made.columns[3 * column + row] = told[4 * column + row];
        return made;
    }
    const auto translation = node.numbers<3>("translation", {0.0, 0.0, 0.0});
    const auto rotation = node.numbers<4>("rotation", {0.0, 0.0, 0.0, 1.0});
    const auto scale = node.numbers<3>("scale", {1.0, 1.0, 1.0});
    if (!is_moved)
        return GltfTransform::of_parts(translation, rotation, scale);
    return GltfTransform::of_parts(pose->translation.value_or(translation),
                                   pose->rotation.value_or(rotation), pose->scale.value_or(scale));
}

void GltfNodes::compute_worlds() {
    check_chains(parents);
    std::vector<std::uint32_t> order = roots;
    order.reserve(nodes.size());
    follow(order);
    worlds.resize(nodes.size());
    for (const std::uint32_t node : order) {
        worlds[node] = local(node);
        if (parents[node] != no_parent)
            worlds[node] = worlds[parents[node]] * worlds[node];
    }
}

// ------------------------------------------------------------------------------------ scenes

std::vector<std::uint32_t> GltfNodes::roots_of_scene() const {
    const Json scenes = json.list("scenes");
    const std::size_t place = json.index("scene", scenes.size(), "scenes", 0);
    if (scenes.size() == 0)
        return roots;
    const Json told = scenes.at(place).list("nodes");
    std::vector<std::uint32_t> chosen;
    std::vector<bool> is_chosen(nodes.size());
    for (std::size_t i = 0; i < told.size(); ++i) {
        const std::size_t node = told.at(i).as_index(nodes.size(), "nodes");
        if (parents[node] != no_parent)
            told.at(i).refuse("node " + std::to_string(node) + " is no root");
        if (is_chosen[node])
            told.at(i).refuse("node " + std::to_string(node) + " is in the scene already");
        is_chosen[node] = true;
        chosen.push_back(static_cast<std::uint32_t>(node));
    }
    return chosen;
}

void GltfNodes::note_scenes() const {
    const Json scenes = json.list("scenes");
    if (scenes.size() < 2)
        return;
    const std::size_t place = json.index("scene", scenes.size(), "scenes", 0);
    const std::string name = in_words(std::string(scenes.at(place).text("name")));
    notes.add(scenes, "scene " + std::to_string(place) +
                          (name.empty() ? "" : ", \"" + name + "\",") +
                          " was read, and the others were left out");
}

void GltfNodes::add_scene(GltfMeshes& meshes, GltfCameras& cameras, GltfLights& lights) {
    note_scenes();
    std::vector<std::uint32_t> order = roots_of_scene();
    follow(order);
    check_size(order, meshes);
    for (const std::uint32_t node : order)
        add_node(node, meshes, cameras, lights);
}

void GltfNodes::check_size(const std::vector<std::uint32_t>& order,
                           const GltfMeshes& meshes) const {
    std::vector<std::optional<std::uint64_t>> sizes(meshes.size());
    std::uint64_t sum = 0;
    for (const std::uint32_t place : order) {
        const Json node = nodes.at(place);
        const std::size_t mesh = node.index("mesh", meshes.size(), "meshes");
        if (mesh == Json::no_index)
            continue;
        if (!sizes[mesh])
            sizes[mesh] = meshes.size_of(mesh);
        sum += *sizes[mesh];
        if (!budget.allows(sum))
            node.refuse("the model would become far larger than its file");
    }
}

void GltfNodes::add_node(std::uint32_t place, GltfMeshes& meshes, GltfCameras& cameras,
                         GltfLights& lights) {
    const Json node = nodes.at(place);
    const std::size_t mesh = node.index("mesh", meshes.size(), "meshes");
    const std::size_t skin = node.index("skin", skins.size(), "skins");
    if (node.find("camera"))
        cameras.add(node, worlds[place]);
    lights.add(node, worlds[place]);
    if (mesh == Json::no_index)
        return;
    GltfStand stand;
    stand.world = worlds[place];
    stand.joints = skin == Json::no_index ? nullptr : &joints_of(skin);
    stand.weights = node.list("weights");
    const GltfPose* const pose = animation.pose_of(place);
    stand.moved_weights = pose && pose->weights ? &*pose->weights : nullptr;
    stand.is_timed = is_timed;
    stand.name = node.text("name");
    meshes.add(mesh, stand);
}

// ------------------------------------------------------------------------------------ skins

const std::vector<GltfTransform>& GltfNodes::joints_of(std::size_t skin) {
    if (!joints[skin])
        joints[skin] = make_joints(skins.at(skin));
    return *joints[skin];
}

std::vector<GltfTransform> GltfNodes::make_joints(const Json& skin) {
    if (!is_timed)
        notes.add(skin, "skins stay in their rest pose");
    const Json told = skin.list("joints");
    if (told.size() == 0)
        skin.refuse("it has no joints");
    budget.take(told.size(), sizeof(GltfTransform), skin);
    std::vector<float> numbers;
    const std::size_t accessor = skin.index("inverseBindMatrices", accessors.size(), "accessors");
    if (accessor != Json::no_index) {
        if (accessors.width(accessor) != 16 || accessors.count(accessor) < told.size())
            skin.need("inverseBindMatrices")
                .refuse("accessor " + std::to_string(accessor) + " isn't " +
                        std::to_string(told.size()) + " matrices");
        numbers = accessors.floats(accessor);
    }
    std::vector<GltfTransform> made;
    made.reserve(told.size());
    for (std::size_t i = 0; i < told.size(); ++i) {
        const GltfTransform& world = worlds[told.at(i).as_index(nodes.size(), "nodes")];
        GltfTransform inverse;
        for (std::size_t k = 0; k < 12 && !numbers.empty(); ++k)
            inverse.columns[k] = static_cast<double>(numbers[16 * i + 4 * (k / 3) + k % 3]);
        made.push_back(world * inverse);
    }
    return made;
}

} // namespace orvex::formats
