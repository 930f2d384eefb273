#pragma once

/// @file
/// Making the parts of a `FaceTree`.

#include <vector>

#include "orvex_kit/private/face_tree.h"

namespace orvex::kit {

struct FaceTreeParts {
    std::vector<TreeNode> nodes; ///< those around others stand before them; empty without faces
    std::vector<TreeBlock> blocks;
};

/// Parts that don't depend on the number of threads.
/// @throw std::bad_alloc
FaceTreeParts build_face_tree(const std::vector<TreeFace>& faces);

} // namespace orvex::kit
