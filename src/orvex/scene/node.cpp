// The node, and how ends, references and walks work together.
//
//   Node ----> NodeData = NodeToken { node, owners } + what else is known of it
//                 ^  ^
//      handles ---+  +--- entries in lists of children
//
// - References decide when a node ends, and only they: `release` takes one away, and whoever
//   brings the count below 1 runs `_kill`, once. Parents and handles are no references.
// - A node that ends lets go of its record, which then says null and lives on for as long as
//   handles point to it. So a list of children, a parent pointer and a walk can all outlive what
//   they name, and ask before each step.
// - A walk holds handles to the node that it was called on and to the one whose children it
//   visits. It reads their number once; children that came later wait for the next walk, those
//   that ended are passed over, and the walk stops when the node itself is gone. Hooks may thus
//   end anything.
// - No list closes a circle: `add_child` refuses a node whose subtree holds the new parent. Walks
//   down need no marks therefore. Parent pointers are the host's to set and may form a circle: a
//   walk towards the root counts its steps first.

#include "orvex/scene/node.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

#include "orvex/base/global_id.h"
#include "orvex/base/private/misuse.h"
#include "orvex/scene/private/draw_ahead.h"
#include "orvex/scene/private/kept_binds.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

NodeHandle::NodeHandle(Node* node)
    : NodeHandle(node ? &Node::NodeData::of(*node) : nullptr) {}

Node::NodeData::NodeData(Node* owner)
    : NodeFrameData{{owner, 1}, {}, {}}
    , id(GenId())
    , name("node_" + std::to_string(id)) {
    types.reserve(4); // the deepest classes of the engine carry four tags
}

void Node::NodeData::end() {
    node = nullptr;
    children = {};
    living_parent = {};
    types = {};
    name = {};
    if (--owners == 0)
        delete this;
}

void free_node_token(NodeToken* token) {
    delete static_cast<Node::NodeData*>(token);
}

Node::Node()
    : node_data(new NodeData(this)) {
    set_type(NODE_TYPE_NODE);
    note_drawn_by_engine(*this);
}

Node::~Node() {
    clear_children_list();
    node_data->end();
}

bool Node::init(Renderer* renderer, Node* node) {
    const NodeHandle walked(node ? node : this);
    _init(renderer);
    for_each_child(walked, [renderer](Node& child) { child.init(renderer, nullptr); });
    return true;
}

bool Node::cleanup(Renderer* renderer, Node* node) {
    const NodeHandle self(this);
    const NodeHandle walked(node ? node : this);
    for_each_child(walked, [renderer](Node& child) { child.cleanup(renderer, nullptr); });
    return !self.get() || _cleanup(renderer);
}

bool Node::update(float dt, Node* node) {
    const NodeHandle walked(node ? node : this);
    _update(dt);
    for_each_child(walked, [dt](Node& child) { child.update(dt, nullptr); });
    return true;
}

bool Node::build(Node* node) {
    const NodeHandle walked(node ? node : this);
    _build();
    for_each_child(walked, [](Node& child) { child.build(nullptr); });
    return true;
}

void Node::render(Renderer* renderer, Node* node) {
    if (!node_data->render_state)
        return;
    const NodeHandle walked((node ? node : this)->node_data);
    const KeptBinds kept(renderer);
    kept.enter(*this);
    _render(renderer);
    for_each_child(
        walked,
        [renderer, &kept](Node& child) {
            kept.enter(child);
            child.render(renderer, nullptr);
        },
        draw_ahead);
}

bool Node::_init(Renderer*) {
    return true;
}

bool Node::_cleanup(Renderer*) {
    return true;
}

bool Node::_update(float) {
    return true;
}

bool Node::_build() {
    return true;
}

void Node::_render(Renderer*) {}

bool Node::kill(Renderer* renderer, Node* node) {
    release(renderer, node);
    return true;
}

bool Node::_kill(Renderer* renderer) {
    if (node_data->dying)
        return true;
    node_data->dying = true;
    _cleanup(renderer);
    set_parent(nullptr);
    delete this;
    return true;
}

int Node::get_renderer_id() {
    return node_data->renderer_id;
}

void Node::set_renderer_id(int id) {
    node_data->renderer_id = id;
}

void Node::set_render_state(bool state, Node* node) {
    node_data->render_state = state;
    for_each_child(NodeHandle(node),
                   [state](Node& child) { child.set_render_state(state, &child); });
}

bool Node::get_render_state() const {
    return node_data->render_state;
}

int Node::get_id() const {
    return node_data->id;
}

int Node::getid() const {
    return node_data->id;
}

void Node::set_name(const char* name) {
    if (name)
        node_data->name = name;
    else
        misuse("Node::set_name", "a null name");
}

const char* Node::get_name() const {
    return node_data->name.c_str();
}

void Node::set_type(NODE_TYPE type) {
    node_data->types.push_back(type);
}

NODE_TYPE Node::get_type() const {
    return node_data->types.back();
}

bool Node::is_type_of(NODE_TYPE type) const {
    const std::vector<NODE_TYPE>& types = node_data->types;
    return std::find(types.begin(), types.end(), type) != types.end();
}

int Node::add_ref() {
    return ++node_data->ref;
}

int Node::remove_ref() {
    return --node_data->ref;
}

int Node::get_ref() const {
    return node_data->ref;
}

Node* Node::get_parent() const {
    return node_data->parent;
}

void Node::set_parent(Node* parent) {
    node_data->parent = parent;
    node_data->living_parent = NodeHandle(parent);
}

namespace {

/// The steps from a node to the first of the circle that the walk towards the root leads into. A
/// second walk that is ahead by the length of the circle is then one round further, at the same
/// node.
std::size_t steps_to_circle(const Node* node, std::size_t length) {
    const Node* ahead = node;
    for (std::size_t i = 0; i < length; ++i)
        ahead = node_living_parent(*ahead);
    std::size_t steps = 0;
    for (; node != ahead; ++steps) {
        node = node_living_parent(*node);
        ahead = node_living_parent(*ahead);
    }
    return steps;
}

} // namespace

/// The walk leaves a mark behind, at distances that double: in a circle it comes by the mark again,
/// and the steps since then are the circle's length. Without a circle it ends, and costs one
/// comparison a step.
std::size_t count_parents(const Node& node) {
    const Node* mark = &node;
    std::size_t mark_after = 1;
    std::size_t since_mark = 1;
    std::size_t count = 0;
    for (const Node* met = node_living_parent(node); met; met = node_living_parent(*met)) {
        if (met == mark)
            return steps_to_circle(&node, since_mark) + since_mark - 1;
        ++count;
        if (since_mark == mark_after) {
            mark = met;
            mark_after *= 2;
            since_mark = 0;
        }
        ++since_mark;
    }
    return count;
}

unsigned long Node::get_num_children() const {
    return node_data->children.size();
}

Node* Node::get_child(unsigned long index) const {
    return index < node_data->children.size() ? node_data->children[index].get() : nullptr;
}

namespace {

/// Whether `wanted` is somewhere below `top`. Each node is looked at once, though several lists may
/// name it.
bool stands_below(const Node& wanted, const Node& top) {
    std::vector<const Node*> pending{&top};
    std::unordered_set<const Node*> seen{&top};
    while (!pending.empty()) {
        const Node* node = pending.back();
        pending.pop_back();
        for (const NodeHandle& entry : Node::NodeData::of(*node).children) {
            const Node* child = entry.get();
            if (child == &wanted)
                return true;
            if (child && seen.insert(child).second)
                pending.push_back(child);
        }
    }
    return false;
}

/// Whether a walk would come back to where it started once `child` stands below `parent`. Lists
/// alone lead walks down: where the parent pointers lead doesn't count. It costs nothing in a tree
/// that is built from either end: a fresh child has no children, a fresh parent stands in no list.
bool would_close_a_circle(const Node& parent, const Node& child) {
    if (&parent == &child)
        return true;
    return Node::NodeData::of(parent).listed > 0 && child.get_num_children() > 0 &&
           stands_below(parent, child);
}

} // namespace

void Node::add_child(Node* child) {
    if (!child) {
        misuse("Node::add_child", "a null child");
        return;
    }
    if (would_close_a_circle(*this, *child)) {
        misuse("Node::add_child", "the node itself, or one that stands above it");
        return;
    }
    node_data->children.emplace_back(child->node_data); // may find no memory: first of all
    child->add_ref();
    ++child->node_data->listed;
    child->set_parent(this);
}

int Node::remove_child(Node* child) {
    if (!child) {
        misuse("Node::remove_child", "a null child");
        return -1;
    }
    std::vector<NodeHandle>& children = node_data->children;
    const auto found =
        std::find_if(children.begin(), children.end(),
                     [child](const NodeHandle& entry) { return entry.get() == child; });
    if (found != children.end()) {
        children.erase(found);
        --child->node_data->listed;
        return child->release(nullptr, nullptr);
    }
    for (unsigned long i = 0; i < get_num_children(); ++i) {
        Node* below = get_child(i);
        const int remaining = below ? below->remove_child(child) : -1;
        if (remaining >= 0)
            return remaining;
    }
    return -1;
}

void Node::clear_children_list() {
    for (const NodeHandle& entry : node_data->children)
        if (const Node* child = entry.get())
            --child->node_data->listed;
    node_data->children.clear();
}

namespace {

/// The search both forms of `find_child` share: the direct children first, then what lies below the
/// children of `node`. `wanted` is what is looked for, `matches` compares it with a node.
template<class Wanted, class Matches>
Node* find_below(const Node& from, const Node* node, Wanted wanted, Matches matches) {
    for (unsigned long i = 0; i < from.get_num_children(); ++i) {
        Node* child = from.get_child(i);
        if (child && matches(*child))
            return child;
    }
    for (unsigned long i = 0; node && i < node->get_num_children(); ++i) {
        Node* child = node->get_child(i);
        Node* found = child ? child->find_child(wanted, child) : nullptr;
        if (found)
            return found;
    }
    return nullptr;
}

} // namespace

Node* Node::find_child(const char* name, Node* node) {
    if (!name)
        return nullptr;
    return find_below(*this, node, name, [name](const Node& child) {
        return std::strcmp(child.get_name(), name) == 0;
    });
}

Node* Node::find_child(int id, Node* node) {
    return find_below(*this, node, id, [id](const Node& child) { return child.get_id() == id; });
}

int Node::release(Renderer* renderer, Node* node) {
    const NodeHandle self(this);
    give_back_children(NodeHandle(node ? node : this),
                       [renderer](Node& child) { child.release(renderer, nullptr); });
    return self.get() ? _release(renderer) : 0;
}

int Node::_release(Renderer* renderer) {
    if (remove_ref() >= 1)
        return get_ref();
    _kill(renderer);
    return 0;
}

int Node::get_layer() const {
    return node_data->layer;
}

void Node::set_layer(int layer) {
    node_data->layer = layer;
}

void Node::set_user_data_ptr(void* data) {
    node_data->user_data = data;
}

void* Node::get_user_data_ptr() const {
    return node_data->user_data;
}

Thread* Node::get_thread() {
    return &node_data->thread;
}

const Thread* Node::get_thread() const {
    return &node_data->thread;
}

Thread* Node::get_thread_ptr() {
    return &node_data->thread;
}

const Thread* Node::get_thread_ptr() const {
    return &node_data->thread;
}

void Node::update_thread() {
    node_data->thread.update();
}

bool Node::check_thread() const {
    return node_data->thread == Thread();
}

} // namespace orvex
