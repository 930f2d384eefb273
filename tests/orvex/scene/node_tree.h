#pragma once

#include <string>
#include <vector>

#include "orvex/scene/node.h"
#include "orvex/scene/private/node_handle.h"

namespace orvex_test {

using Calls = std::vector<std::string>;

/// No renderer is called here; the address only has to arrive where it is handed on.
inline orvex::Renderer* some_renderer() {
    static int place = 0;
    return reinterpret_cast<orvex::Renderer*>(&place);
}

/// Writes down which of its hooks ran.
class RecordingNode : public orvex::Node {
public:
    RecordingNode(const char* name, Calls& calls)
        : calls(calls) {
        set_name(name);
    }
    ~RecordingNode() override { note("deleted"); }

    bool _init(orvex::Renderer* renderer) override { return note("init", renderer); }
    bool _cleanup(orvex::Renderer* renderer) override { return note("cleanup", renderer); }
    bool _update(float dt) override { return note("update " + std::to_string(dt)); }
    bool _build() override { return note("build"); }
    void _render(orvex::Renderer* renderer) override { note("render", renderer); }

    bool hook_result = true;

private:
    bool note(const std::string& what) {
        calls.push_back(std::string(get_name()) + " " + what);
        return hook_result;
    }
    bool note(const std::string& what, orvex::Renderer* renderer) {
        return note(renderer ? what + " with renderer" : what);
    }

    Calls& calls;
};

/// A root with two children, the first of which has one child of its own.
struct Tree {
    Calls calls;
    RecordingNode* root = new RecordingNode("root", calls);
    RecordingNode* first = new RecordingNode("first", calls);
    RecordingNode* leaf = new RecordingNode("leaf", calls);
    RecordingNode* second = new RecordingNode("second", calls);

    Tree() {
        first->add_child(leaf);
        root->add_child(first);
        root->add_child(second);
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
    ~Tree() {
        if (rest.get())
            root->kill(nullptr, nullptr);
    }
    const orvex::NodeHandle rest{root};
};

/// Ends a node that a test still holds, whatever its count.
struct Ended {
    explicit Ended(orvex::Node* node)
        : node(node) {
        node->add_ref();
    }
    ~Ended() { node->kill(nullptr, nullptr); }
    orvex::Node* node;
};

} // namespace orvex_test
