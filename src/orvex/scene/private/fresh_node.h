#pragma once

/// @file
/// A node that has one owner. Private: as a child, or in a list of counted nodes, it has others.

#include <memory>

#include "orvex/scene/node.h"

namespace orvex {

/// Ends a node without a renderer, with its record: a bare `delete` would leave that of a mesh.
struct EndNode {
    void operator()(Node* node) const { node->release(nullptr, nullptr); }
};

/// Holds a node until somebody else does, or for good.
template<class Class>
using Fresh = std::unique_ptr<Class, EndNode>;

/// A new node. A function of its own: where a constructor threw in the initializer of a member, the
/// compiler lost the memory of a bare `new` (CreationWithoutMemory, the graph).
template<class Class>
Fresh<Class> make_fresh() {
    return Fresh<Class>(new Class);
}

} // namespace orvex
