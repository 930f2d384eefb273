#pragma once

/// @file
/// The faces of a model in boxes within boxes, so that a ray meets few of them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

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
    const TreeFace* face; ///< the tree's, or that which was asked
    double distance;      ///< in lengths of the direction
    Point shares;         ///< of the corners
};

/// Where a ray meets one face, edges and corners included. What two faces share has no gap. A face
/// without an area, as the ray sees it, isn't met.
std::optional<TreeHit> meet(const PointRay& ray, const TreeFace& face);
/// Whether a hit comes before another: nearer, or as near on a face that is drawn first.
bool is_before(const TreeHit& a, const TreeHit& b);

/// A tree over faces whose corners are finite.
class FaceTree {
public:
    explicit FaceTree(std::vector<TreeFace> faces);

    /// The first hit by `is_before`: that of all faces, asked one by one.
    std::optional<TreeHit> first_hit(const PointRay& ray) const;

private:
    /// A box around faces in a row, or around two boxes.
    struct Box {
        std::array<float, 3> low, high;
        std::uint32_t first; ///< face, or box: the second one follows it
        std::uint32_t count; ///< of faces; 0 for two boxes
    };
    std::vector<TreeFace> faces;
    std::vector<Box> boxes;

    void split(std::uint32_t box);
    std::uint32_t divide(const Box& box);
    Box around(std::uint32_t first, std::uint32_t count) const;
    std::optional<double> entry(const PointRay& ray, const Box& box) const;
    void look_into(const Box& box, const PointRay& ray, std::optional<TreeHit>& best) const;
};

} // namespace orvex::kit
