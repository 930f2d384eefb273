#pragma once

/// @file
/// Finding out which vertices are equal.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "orvex_formats/private/large_lists.h"

namespace orvex::formats {

/// A number that no file can foresee, so that none can be made whose vertices meet in one place of
/// a table.
std::uint64_t unforeseen_number();

/// Numbers keys in the order in which they come, the same key always by the same number. Keys are
/// compared bit by bit; they have no padding.
template<class Key>
class VertexJoiner {
public:
    VertexJoiner()
        : table(first_size, empty)
        , salt(unforeseen_number()) {}

    /// The key's number, from 0 on.
    /// @param[out] is_new  whether it came for the first time
    std::uint32_t add(const Key& key, bool& is_new) {
        if (keys.size() >= table.size() / 2)
            grow();
        std::uint32_t& slot = slot_of(key);
        is_new = slot == empty;
        if (is_new) {
            keys.push_back(key);
            slot = static_cast<std::uint32_t>(keys.size() - 1);
        }
        return slot;
    }

    /// Numbers many keys as `add` would, one by one. Tables of millions don't fit into the
    /// processor's caches, so that what a key needs is asked for while others are looked at.
    void add(std::span<const Key> added, std::uint32_t* numbers) {
        for (; !added.empty(); added = added.subspan(std::min(added.size(), batch_size))) {
            const std::size_t size = std::min(added.size(), batch_size);
            while (keys.size() + size >= table.size() / 2)
                grow();
            fetch(added.first(size));
            for (std::size_t i = 0; i < size; ++i) {
                bool is_new = false;
                *numbers++ = add(added[i], is_new);
            }
        }
    }

    /// Makes room for so many different keys.
    void reserve(std::size_t count) {
        reserve_largely(keys, count);
        std::size_t size = table.size();
        while (size / 2 <= count)
            size *= 2;
        if (size > table.size())
            resize(size);
    }

    /// All keys by their numbers.
    const std::vector<Key>& all() const { return keys; }

private:
    static constexpr std::uint32_t empty = UINT32_MAX;
    static constexpr std::size_t batch_size = 48;
    static constexpr std::size_t first_size = 1024; ///< a power of two, as all sizes are

    std::uint64_t hash_of(const Key& key) const {
        constexpr std::size_t word_size = sizeof(std::uint32_t);
        static_assert(sizeof key % word_size == 0);
        std::uint32_t words[sizeof key / word_size];
        std::memcpy(words, &key, sizeof key);
        std::uint64_t hash = salt;
        for (const std::uint32_t word : words) {
            hash = (hash ^ word) * 0x9e3779b97f4a7c15u;
            hash ^= hash >> 32;
        }
        return hash;
    }

    std::uint32_t& slot_of(const Key& key) {
        const std::size_t mask = table.size() - 1;
        std::size_t place = static_cast<std::size_t>(hash_of(key)) & mask;
        // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): bit by bit, as the class says.
        while (table[place] != empty && std::memcmp(&keys[table[place]], &key, sizeof key) != 0)
            place = (place + 1) & mask;
        return table[place];
    }

    void fetch(std::span<const Key> wanted) const {
        std::size_t places[batch_size];
        const std::size_t mask = table.size() - 1;
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            places[i] = static_cast<std::size_t>(hash_of(wanted[i])) & mask;
            __builtin_prefetch(&table[places[i]]);
        }
        for (std::size_t i = 0; i < wanted.size(); ++i)
            if (const std::uint32_t number = table[places[i]]; number != empty)
                __builtin_prefetch(&keys[number]);
    }

    void grow() { resize(table.size() * 2); }

    void resize(std::size_t size) {
        reserve_largely(table, size);
        table.assign(size, empty);
        for (std::uint32_t i = 0; i < keys.size(); ++i)
            slot_of(keys[i]) = i;
    }

    std::vector<std::uint32_t> table;
    std::vector<Key> keys;
    std::uint64_t salt;
};

} // namespace orvex::formats
