#pragma once

#include "orvex/scene/object.h"

namespace orvex_test {

/// root: an object; below it `child` with `leaf` below that, then a plain node with `hidden` below.
/// Walks over objects reach child and leaf, and never hidden.
template<class ObjectType>
struct ObjectTree {
    ObjectType* root = new ObjectType;
    ObjectType* child = new ObjectType;
    ObjectType* leaf = new ObjectType;
    orvex::Node* plain = new orvex::Node;
    ObjectType* hidden = new ObjectType;

    ObjectTree() {
        child->add_child(leaf);
        plain->add_child(hidden);
        root->add_child(child);
        root->add_child(plain);
    }
    ObjectTree(const ObjectTree&) = delete;
    ObjectTree& operator=(const ObjectTree&) = delete;
    ~ObjectTree() { root->kill(nullptr, nullptr); }
};

} // namespace orvex_test
