// The end of a tree, whose deepest nodes go first. It may be as deep as memory allows: no
// recursion.

#include "orvex_kit/ref.h"

#include <new>
#include <vector>

#include <orvex/scene/node.h>

#include "orvex_kit/private/engine_parts.h"

namespace orvex::kit {

namespace {

/// A node that is on its way to its end, with as many of its children looked at.
struct Step {
    orvex::Node* node;
    unsigned long next;
};

/// Whether somebody else holds the node as well. If so, its own hold is taken away.
bool is_left_to_others(orvex::Node& node) {
    if (node.get_ref() <= 1)
        return false;
    node.remove_ref();
    return true;
}

/// Puts a child on the way. Without memory for that the engine ends it by its own walk.
void descend(std::vector<Step>& way, orvex::Node* child) {
    try {
        way.push_back({child, 0});
    } catch (const std::bad_alloc&) {
        child->release(current_renderer(), nullptr);
    }
}

void end_tree(orvex::Node* root) {
    std::vector<Step> way;
    descend(way, root);
    while (!way.empty()) {
        Step& step = way.back();
        if (step.next < step.node->get_num_children()) {
            orvex::Node* const child = step.node->get_child(step.next++);
            if (child && !is_left_to_others(*child))
                descend(way, child);
            continue;
        }
        orvex::Node* const node = step.node;
        way.pop_back();
        node->clear_children_list();
        node->release(current_renderer(), nullptr);
    }
}

} // namespace

void hold(orvex::Node* node) noexcept {
    if (node)
        node->add_ref();
}

void let_go(orvex::Node* node) noexcept {
    if (node && !is_left_to_others(*node))
        end_tree(node);
}

} // namespace orvex::kit
