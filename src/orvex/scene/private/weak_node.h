#pragma once

/// @file
/// A weak pointer to a node of a known class. Private, as what it stands on.

#include "orvex/scene/private/node_handle.h"

namespace orvex {

/// Points to a node without keeping it alive, and answers null once it has ended.
template<class Class>
class WeakNode {
public:
    void set(Class* node) { handle = NodeHandle(node); }
    Class* get() const { return static_cast<Class*>(handle.get()); }

    /// Forgets the node. @return what `get` would have answered
    Class* take() {
        Class* const node = get();
        handle = NodeHandle();
        return node;
    }

private:
    NodeHandle handle;
};

} // namespace orvex
