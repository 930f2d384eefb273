#pragma once

/// @file
/// What a `FaceTree` is made of, and the way through it, which is compiled for several kinds of
/// processor: so nothing here has code that two of them would share.

#include <cstdint>

namespace orvex::kit {

/// Boxes within a box, beside each other so that all are asked at once. It fills whole lines of the
/// processor's memory.
struct alignas(64) TreeNode {
    static constexpr unsigned width = 8;
    static constexpr std::uint32_t is_block = 0x80000000; ///< in a child's place

    /// Lower ends by axis, and upper ends by axis. What has no child is a box that no ray enters.
    float ends[6][width];
    std::uint32_t child[width]; ///< a node, or a block
};

/// A few faces, beside each other likewise.
struct alignas(64) TreeBlock {
    static constexpr unsigned width = 4;

    float corners[3][3][width]; ///< by corner and axis; NaN where there is no face
    std::uint32_t mesh[width];
    std::uint32_t face[width];
};

/// A ray on its way through a tree.
struct TreeSearch {
    double origin[3];
    unsigned depth, across, up; ///< axes: the direction's largest part, and the two behind it
    double shear_x, shear_y;    ///< of the direction, by depth
    /// What boxes are asked with, rounded so that none is missed: their lower ends are seen from
    /// the first origin and the upper ends from the second one.
    float from_low[3], from_high[3];
    float inverse[3]; ///< of the direction, whose largest part is 1
    float limit;      ///< in lengths of that direction: boxes behind it need no look
    /// Asks one face exactly, and sets the limit.
    void (*ask)(TreeSearch& search, const TreeBlock& block, unsigned lane);
};

/// Asks for every face that the ray may meet within its limit, the nearest boxes first.
using WalkTree = void (*)(const TreeNode* nodes, const TreeBlock* blocks, TreeSearch& search);
void walk_tree_plain(const TreeNode* nodes, const TreeBlock* blocks, TreeSearch& search);
/// Only builds for x86 have it, and only processors with AVX2 can run it.
void walk_tree_avx2(const TreeNode* nodes, const TreeBlock* blocks, TreeSearch& search);
/// The fastest one that this processor can run.
WalkTree fastest_walk();

} // namespace orvex::kit
