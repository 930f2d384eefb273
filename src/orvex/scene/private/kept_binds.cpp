#include "orvex/scene/private/kept_binds.h"

#include <atomic>

#include "orvex/scene/private/node_data.h"

namespace orvex {

bool is_drawn_by_engine(const Node& node) {
    // Most nodes are of the class of the one before: their records needn't be looked at.
    static std::atomic<const std::type_info*> last_known{nullptr};
    const std::type_info* const made_of = &typeid(node);
    if (!made_of)
        return false; // of a host that was built without type information
    if (made_of == last_known.load(std::memory_order_relaxed))
        return true;
    if (made_of != Node::NodeData::of(node).drawn_as)
        return false;
    last_known.store(made_of, std::memory_order_relaxed);
    return true;
}

} // namespace orvex
