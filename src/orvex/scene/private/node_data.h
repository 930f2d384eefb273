#pragma once

/// @file
/// The private record of a node, and the walks that the scene's classes share.

#include <cstddef>
#include <cstring>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "orvex/base/thread.h"
#include "orvex/scene/node.h"
#include "orvex/scene/private/node_handle.h"

namespace orvex {

/// What a frame reads of a node: one line of the cache, together with the token.
struct NodeFrameData : NodeToken {
    std::vector<NodeHandle> children;
    /// The parent, for walks towards the root, which may lead into a circle.
    NodeHandle living_parent;
    /// This node as an object, set by `Object`'s constructor. Tags can be added by anyone, so a tag
    /// alone must not decide a cast.
    Object* object = nullptr;
    bool render_state = true;
    /// Set while `_kill` runs: a hook that releases its own node again must not end it twice.
    bool dying = false;
    int ref = 0;
};
static_assert(sizeof(NodeFrameData) <= 64, "a walk waits for a second line at each node");

/// The record of a node. It outlives the node for as long as handles point to it; see `NodeToken`.
struct Node::NodeData : NodeFrameData {
    /// Bytes at its beginning that `draw_ahead` asks for.
    static constexpr std::size_t hot_bytes = sizeof(NodeFrameData);

    explicit NodeData(Node* owner);
    NodeData(const NodeData&) = delete;
    NodeData& operator=(const NodeData&) = delete;

    static NodeData& of(const Node& node) { return *node.node_data; }

    /// Lets go of everything when the node ends. The memory goes with the last handle.
    void end();

    int id;
    int layer = 0;
    int renderer_id = 0;
    /// How many entries in lists of children name this node; 0 says that no cycle can lead here.
    unsigned long listed = 0;
    Node* parent = nullptr;
    void* user_data = nullptr;
    /// This node as one of the engine's own classes, set by their constructors, as `object` is. A
    /// class of a host's may have been built without type information.
    Resource* resource = nullptr;
    std::variant<std::monostate, Camera*, Light*, Mesh*, Polyline*, Texture*, VertexPool*> kind;
    /// The class whose objects draw by the engine's own code alone, see `note_drawn_by_engine`.
    const void* drawn_as = nullptr;
    Thread thread;
    std::vector<NODE_TYPE> types;
    std::string name;
};

/// What tells the classes of nodes apart: where their virtual operations stand. Type information
/// won't do, which a class of a host's may have been built without.
inline const void* mark_of_class(const Node& node) {
    const void* mark = nullptr;
    std::memcpy(&mark, static_cast<const void*>(&node), sizeof mark);
    return mark;
}

/// Notes in a constructor that objects of exactly its class draw by the engine's own code alone.
/// Of a class that derives from it this isn't known: its hooks may call the API by themselves.
inline void note_drawn_by_engine(const Node& node) {
    Node::NodeData::of(node).drawn_as = mark_of_class(node);
}

/// The node as an object, null if it is none.
inline Object* node_as_object(const Node& node) {
    return Node::NodeData::of(node).object;
}

/// The node as a resource, null if it is none.
inline Resource* node_as_resource(const Node& node) {
    return Node::NodeData::of(node).resource;
}

/// The node as one of the kinds that `NodeData` knows, null if it is none, and for no node.
template<class Kind>
Kind* node_as(const Node* node) {
    Kind* const* const mark = node ? std::get_if<Kind*>(&Node::NodeData::of(*node).kind) : nullptr;
    return mark ? *mark : nullptr;
}

/// The parent if it lives, else null.
inline Node* node_living_parent(const Node& node) {
    return Node::NodeData::of(node).living_parent.get();
}

/// How many nodes a walk towards the root meets before it ends or comes back to one that it met,
/// the asking one not counted.
std::size_t count_parents(const Node& node);

struct NothingAhead {
    void operator()(const std::vector<NodeHandle>&, std::size_t) const {}
};

/// Calls `step(child)` on each child of the node behind `walked`, first to last. The count is read
/// once; children that have ended are passed over, and so are the rest if the node itself ends.
/// `ahead(children, index)` runs before each step.
template<class Step, class Ahead = NothingAhead>
void for_each_child(const NodeHandle& walked, Step step, Ahead ahead = Ahead()) {
    const Node* node = walked.get();
    const std::size_t count = node ? Node::NodeData::of(*node).children.size() : 0;
    for (std::size_t i = 0; i < count; ++i) {
        node = walked.get();
        if (!node)
            return;
        const std::vector<NodeHandle>& children = Node::NodeData::of(*node).children;
        ahead(children, i);
        if (Node* child = i < children.size() ? children[i].get() : nullptr)
            step(*child);
    }
}

/// The same on the children that are objects; a null node has none.
template<class Step>
void for_each_child_object(Node* node, Step step) {
    if (!node)
        return;
    for_each_child(NodeHandle(&Node::NodeData::of(*node)), [&step](Node& child) {
        if (Object* object = node_as_object(child))
            step(*object);
    });
}

/// Gives back what the node behind `walked` holds of its children, by `give_back(child)` on each,
/// first to last. Each has left the list before its turn, as the end of a child may bring the walk
/// here again: a material that lights what stands below it is held by its own children.
template<class GiveBack>
void give_back_children(const NodeHandle& walked, GiveBack give_back) {
    const Node* node = walked.get();
    const std::size_t count = node ? Node::NodeData::of(*node).children.size() : 0;
    for (std::size_t i = 0; i < count; ++i) {
        node = walked.get();
        if (!node)
            return;
        std::vector<NodeHandle>& children = Node::NodeData::of(*node).children;
        const NodeHandle entry =
            i < children.size() ? std::exchange(children[i], {}) : NodeHandle();
        if (Node* const child = entry.get()) {
            --Node::NodeData::of(*child).listed;
            give_back(*child);
        }
    }
    if (Node* const alive = walked.get())
        alive->clear_children_list();
}

} // namespace orvex
