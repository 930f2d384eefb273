#pragma once

/// @file
/// The name under which a graphics debugger is to show what a renderer makes. Private.

#include <atomic>

namespace orvex {

/// Says for a block whose GPU objects the renderer makes in it, on this thread. Where nobody looks
/// at names, that costs one test.
///
/// Records of the renderer are plain and nameless; the nodes that own them know their names. A node
/// puts one of these around each call in which the renderer may make objects for it.
///
/// @code
/// const DebugName name(*this);
/// renderer->vertex_buffer_prepare(mesh_data);
/// @endcode
class DebugName {
public:
    /// @param name  has to live as long as this
    explicit DebugName(const char* name)
        : set(wanted.load(std::memory_order_relaxed)) {
        if (set)
            previous = exchange(name);
    }
    /// @param node  asked for its name only where somebody looks at names
    template<class Node>
    explicit DebugName(const Node& node)
        : set(wanted.load(std::memory_order_relaxed)) {
        if (set)
            previous = exchange(node.get_name());
    }
    ~DebugName() {
        if (set)
            exchange(previous);
    }
    DebugName(const DebugName&) = delete;
    DebugName& operator=(const DebugName&) = delete;

    /// The innermost name on this thread, null for none.
    static const char* current();

    /// Lets names be kept from here on, in the whole process: a renderer that shows them calls it.
    static void want() { wanted.store(true, std::memory_order_relaxed); }

private:
    static std::atomic<bool> wanted;
    /// @return the name before
    static const char* exchange(const char* name);

    bool set;
    const char* previous = nullptr;
};

} // namespace orvex
