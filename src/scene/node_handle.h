#pragma once

/// @file
/// A weak pointer to a node. Private: overlays and tree walks use it for nodes they don't count.

#include <utility>

namespace orvex {

class Node;

/// What outlives a node: the address while it lives, null afterwards. Made with the node and freed
/// with the last handle. Not atomic, like the node itself.
struct NodeToken {
    Node* node;
    unsigned long owners;
};

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
        if (token && --token->owners == 0)
            delete token;
    }

    /// The node, null if it has ended or if there never was one.
    Node* get() const { return token ? token->node : nullptr; }

private:
    NodeToken* token = nullptr;
};

} // namespace orvex
