#pragma once

/// @file
/// Holding nodes of the engine.

#include <cstddef>
#include <type_traits>
#include <utility>

#include "orvex_kit/api.h"

namespace orvex {
class Node;
}

namespace orvex::kit {

/// Adds a hold on a node; null is ignored.
ORVEX_KIT_API void hold(orvex::Node* node) noexcept;
/// Takes a hold away. With the last one the node ends, after the children that nobody else holds;
/// those that somebody holds stay whole, with everything below them. `Node::release` takes the
/// children away even from a node that lives on. GPU objects are given back by the view that was
/// current last.
/// @param node  null is ignored
ORVEX_KIT_API void let_go(orvex::Node* node) noexcept;

/// A hold on a node of the engine: the node lives as long as one of its holds, of a `Ref` or of a
/// node that adopted it by `Node::add_child`.
///
/// A pointer otherwise, empty or full. On the thread of its node.
///
/// @code
/// kit::Ref<orvex::Object> group = kit::make<orvex::Object>();
/// group->add_child(kit::make<orvex::MeshBox>().get());
/// @endcode
template<class T>
class Ref {
public:
    Ref() noexcept = default;
    /// Empty.
    Ref(std::nullptr_t) noexcept {} // NOLINT(google-explicit-constructor): as pointers do
    /// Adds a hold, also to a node that has some; null makes an empty one.
    explicit Ref(T* node) noexcept
        : node(node) {
        hold(node);
    }
    /// Adds a hold to the other's node.
    Ref(const Ref& other) noexcept
        : Ref(other.node) {}
    /// Takes the other's hold over, which is empty then.
    Ref(Ref&& other) noexcept
        : node(std::exchange(other.node, nullptr)) {}
    /// Of a class that the other's derives from.
    template<class Other, class = std::enable_if_t<std::is_convertible_v<Other*, T*>>>
    Ref(const Ref<Other>& other) noexcept // NOLINT(google-explicit-constructor): as pointers do
        : Ref(other.node) {}
    /// The same, and the other is empty then.
    template<class Other, class = std::enable_if_t<std::is_convertible_v<Other*, T*>>>
    Ref(Ref<Other>&& other) noexcept // NOLINT(google-explicit-constructor): as pointers do
        : node(std::exchange(other.node, nullptr)) {}
    ~Ref() { let_go(node); }

    /// Lets go of what it held, after it holds the other's.
    Ref& operator=(Ref other) noexcept {
        std::swap(node, other.node);
        return *this;
    }
    /// Lets go; empty from then on.
    void reset() noexcept { *this = Ref(); }

    T* get() const noexcept { return node; }        ///< null if empty
    T* operator->() const noexcept { return node; } ///< as `get`
    T& operator*() const noexcept { return *node; } ///< not of an empty one
    /// Whether it holds a node.
    explicit operator bool() const noexcept { return node != nullptr; }

    /// Whether both hold the same node, or none.
    friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.node == b.node; }
    /// The opposite.
    friend bool operator!=(const Ref& a, const Ref& b) noexcept { return a.node != b.node; }

private:
    template<class Other>
    friend class Ref;

    T* node = nullptr;
};

/// Makes a node and the first hold on it.
template<class T, class... Arguments>
Ref<T> make(Arguments&&... arguments) {
    return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

} // namespace orvex::kit
