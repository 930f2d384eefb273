#pragma once

/// @file
/// A weak pointer to a node. Private: overlays and tree walks use it for nodes they don't count.

#include <utility>

#include "orvex/fwd.h"

namespace orvex {

/// The head of a node's record, which outlives the node for as long as handles point to it. Not
/// atomic, like the node itself.
struct NodeToken {
    Node* node; ///< null once the node has ended
    unsigned long owners;
};

/// Frees the record of a node that has ended and that no handle points to any more.
void free_node_token(NodeToken* token);

/// Points to a node without keeping it alive, and answers null once it has ended.
class NodeHandle {
public:
    NodeHandle() = default;
    explicit NodeHandle(Node* node);
    explicit NodeHandle(NodeToken* shared)
        : token(shared) {
        if (token)
            ++token->owners;
    }
    NodeHandle(const NodeHandle& other)
        : NodeHandle(other.token) {}
    NodeHandle(NodeHandle&& other) noexcept
        : token(std::exchange(other.token, nullptr)) {}
    NodeHandle& operator=(NodeHandle other) noexcept {
        std::swap(token, other.token);
        return *this;
    }
    ~NodeHandle() {
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): its count tells of the other handles.
        if (token && --token->owners == 0)
            free_node_token(token);
    }

    /// The node, null if it has ended or if there never was one.
    Node* get() const { return token ? token->node : nullptr; }

    /// Where the node's record lies, null for an empty handle.
    const void* record() const { return token; }

private:
    NodeToken* token = nullptr;
};

} // namespace orvex
