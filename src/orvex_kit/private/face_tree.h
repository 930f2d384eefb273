#pragma once

/// @file
/// The faces of a model in boxes within boxes, so that a ray meets few of them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "orvex_kit/private/face_tree_parts.h"

namespace orvex::kit {

using Point = std::array<double, 3>;

/// From its origin on, to both sides of each face.
struct PointRay {
    Point origin;
    Point direction; ///< not all 0, and all finite
    double reach;    ///< in lengths of the direction
};

/// A face by its corners in the world.
struct TreeFace {
    std::array<std::array<float, 3>, 3> corners;
    std::uint32_t mesh;
    std::uint32_t face;
};

/// Where a ray meets a face.
struct TreeHit {
    TreeFace face;
    double distance; ///< in lengths of the direction
    Point shares;    ///< of the corners
};

/// Where a ray meets one face, edges and corners included. What two faces share has no gap. A face
/// without an area, as the ray sees it, isn't met.
std::optional<TreeHit> meet(const PointRay& ray, const TreeFace& face);
/// Whether a hit comes before another: nearer, or as near on a face that is drawn first.
bool is_before(const TreeHit& a, const TreeHit& b);

/// A tree over faces whose corners are finite. It keeps copies of them, about 80 bytes a face in
/// all, and needs twice as much while it is made.
class FaceTree {
public:
    /// By several processors, where there are many faces. The tree is the same by any number.
    explicit FaceTree(const std::vector<TreeFace>& faces);

    /// The first hit by `is_before`: that of all faces, asked one by one.
    std::optional<TreeHit> first_hit(const PointRay& ray) const;
    /// The same, by another way through the boxes; for those that want to compare.
    std::optional<TreeHit> first_hit(const PointRay& ray, WalkTree walk) const;
    std::size_t num_bytes() const; ///< that it keeps

private:
    std::vector<TreeNode> nodes; ///< the first one is around all
    std::vector<TreeBlock> blocks;
    double largest = 0.0; ///< of the corners' numbers, without their signs
};

} // namespace orvex::kit
