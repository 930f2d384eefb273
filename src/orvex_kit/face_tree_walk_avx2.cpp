// Compiled for processors that have AVX2, and entered on such only.

#include "orvex_kit/private/face_tree_walk.h"

namespace orvex::kit {

void walk_tree_avx2(const TreeNode* nodes, const TreeBlock* blocks, TreeSearch& search) {
    walk(nodes, blocks, search);
}

} // namespace orvex::kit
