#pragma once

/// @file
/// The emitters or the actions of a particle system.

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "orvex/scene/node.h"
#include "orvex/scene/private/node_handle.h"

namespace orvex {

/// Nodes that a particle system makes and ends. One that a host ended first is passed over.
template<class T>
class ParticleNodeList {
public:
    T* create() {
        auto node = std::make_unique<T>();
        entries.push_back({NodeHandle(node.get()), node.get()});
        return node.release();
    }

    unsigned long size() const { return entries.size(); }

    /// Null out of range.
    T* by_index(long i) const {
        const bool in_range = i >= 0 && static_cast<unsigned long>(i) < entries.size();
        return in_range ? entries[static_cast<unsigned long>(i)].get() : nullptr;
    }

    /// By node id; null if there is none.
    T* by_id(int id) const {
        const auto entry = find(entries, id);
        return entry == entries.end() ? nullptr : entry->node;
    }

    /// Takes a node off the list and releases it. @return false if there is none of that id
    bool kill(Renderer* renderer, int id) {
        const auto entry = find(entries, id);
        if (entry == entries.end())
            return false;
        T* const node = entry->node;
        entries.erase(entry);
        node->release(renderer, nullptr);
        return true;
    }

    /// Empties the list and releases its nodes.
    void release_all(Renderer* renderer) {
        for (const Entry& entry : std::exchange(entries, {}))
            if (T* const node = entry.get())
                node->release(renderer, nullptr);
    }

    /// Calls `use(node)` on each, in order of creation.
    template<class Use>
    void for_each(Use use) const {
        for (const Entry& entry : entries)
            if (T* const node = entry.get())
                use(*node);
    }

private:
    struct Entry {
        NodeHandle handle;
        T* node;

        T* get() const { return handle.get() ? node : nullptr; }
    };

    template<class Entries>
    static auto find(Entries& entries, int id) {
        return std::find_if(entries.begin(), entries.end(), [id](const Entry& entry) {
            const T* const node = entry.get();
            return node && node->get_id() == id;
        });
    }

    std::vector<Entry> entries;
};

} // namespace orvex
