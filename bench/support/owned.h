#pragma once

#include <memory>

#include "orvex/scene/node.h"

namespace orvex {

struct ReleaseNode {
    void operator()(Node* node) const { node->release(nullptr, nullptr); }
};

/// A node that a benchmark lets go of at its end, without a renderer.
template<class T>
using Owned = std::unique_ptr<T, ReleaseNode>;

} // namespace orvex
