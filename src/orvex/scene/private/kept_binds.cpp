#include "orvex/scene/private/kept_binds.h"

#include <atomic>

#include "orvex/scene/private/node_data.h"

namespace orvex {

bool is_drawn_by_engine(const Node& node) {
    // Most nodes are of the class of the one before: their records needn't be looked at.
    static std::atomic<const void*> last_known{nullptr};
    const void* const mark = mark_of_class(node);
    if (mark == last_known.load(std::memory_order_relaxed))
        return true;
    if (mark != Node::NodeData::of(node).drawn_as)
        return false;
    last_known.store(mark, std::memory_order_relaxed);
    return true;
}

} // namespace orvex
