#pragma once

/// @file
/// Where the nodes of assimp's scene stand.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <assimp/matrix4x4.h>

struct aiAnimation;
struct aiNode;
struct aiNodeAnim;
struct aiScene;

namespace orvex::formats {

/// A node and what takes its coordinates to those of the scene.
struct Stand {
    const aiNode* node;
    aiMatrix4x4 world;
};

/// All nodes of a scene, at rest or at a moment of its first animation. However deep they lie,
/// nothing recurs.
class SceneStands {
public:
    /// @param turn  of the whole scene
    /// @param time  in seconds; before the first key frame and behind the last one all stands still
    SceneStands(const aiScene& scene, const aiMatrix4x4& turn, std::optional<float> time);

    /// A node comes before its children, and they in their order.
    const std::vector<Stand>& all() const { return stands; }

    /// The first node of a name; null where there is none.
    const Stand* find(std::string_view name) const;

private:
    aiMatrix4x4 local(const aiNode& node) const;

    std::unordered_map<std::string_view, const aiNodeAnim*> channels; ///< by the node's name
    double ticks = 0.0;
    std::vector<Stand> stands;
    std::unordered_map<std::string_view, std::size_t> places; ///< of the stands, by name
};

} // namespace orvex::formats
