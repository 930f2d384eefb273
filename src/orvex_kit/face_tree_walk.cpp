#include "orvex_kit/private/face_tree_walk.h"

namespace orvex::kit {

void walk_tree_plain(const TreeNode* nodes, const TreeBlock* blocks, TreeSearch& search) {
    walk(nodes, blocks, search);
}

WalkTree fastest_walk() {
#if defined(ORVEX_KIT_WALKS_X86)
    static const bool has_avx2 = __builtin_cpu_supports("avx2") != 0;
    if (has_avx2)
        return walk_tree_avx2;
#endif
    return walk_tree_plain;
}

} // namespace orvex::kit
