#pragma once

/// @file
/// The trees of a glTF file's nodes.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "orvex_formats/gltf/private/gltf_accessor.h"
#include "orvex_formats/gltf/private/gltf_animation.h"
#include "orvex_formats/gltf/private/gltf_budget.h"
#include "orvex_formats/gltf/private/gltf_camera.h"
#include "orvex_formats/gltf/private/gltf_json.h"
#include "orvex_formats/gltf/private/gltf_light.h"
#include "orvex_formats/gltf/private/gltf_mesh.h"
#include "orvex_formats/gltf/private/gltf_notes.h"
#include "orvex_formats/gltf/private/gltf_transform.h"

namespace orvex::formats {

/// All nodes of a file. Each has one parent at most, none is its own ancestor, and however deep
/// they lie, nothing recurs.
class GltfNodes {
public:
    /// @throw Refusal
    /// @param time  in seconds, of the first animation; none: at rest
    GltfNodes(const Json& json, std::optional<float> time, GltfAccessors& accessors,
              GltfBudget& budget, GltfNotes& notes);

    /// Adds the meshes, cameras and lights of the scene that the file shows first, or of all roots
    /// where it has no scene, each as often as nodes have it.
    /// @throw Refusal
    void add_scene(GltfMeshes& meshes, GltfCameras& cameras, GltfLights& lights);

private:
    void find_parents();
    /// Appends the children of nodes, and theirs, to a list of nodes.
    void follow(std::vector<std::uint32_t>& order) const;
    void compute_worlds();
    GltfTransform local(std::uint32_t node) const;
    std::vector<std::uint32_t> roots_of_scene() const;
    void add_node(std::uint32_t node, GltfMeshes& meshes, GltfCameras& cameras, GltfLights& lights);
    void note_scenes() const;
    /// Refuses nodes whose meshes come to far more than the file.
    void check_size(const std::vector<std::uint32_t>& order, const GltfMeshes& meshes) const;
    const std::vector<GltfTransform>& joints_of(std::size_t skin);
    std::vector<GltfTransform> make_joints(const Json& skin);

    Json json, nodes, skins;
    const bool is_timed;
    GltfAccessors& accessors;
    GltfBudget& budget;
    GltfNotes& notes;
    GltfAnimation animation;
    std::vector<std::uint32_t> parents; ///< by node; `no_parent` for roots
    std::vector<std::uint32_t> roots;
    std::vector<GltfTransform> worlds;                             ///< by node
    std::vector<std::optional<std::vector<GltfTransform>>> joints; ///< by skin, once asked
};

} // namespace orvex::formats
