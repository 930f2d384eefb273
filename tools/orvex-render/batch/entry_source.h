#pragma once

/// @file
/// Where entries come from.

#include <cstddef>
#include <optional>
#include <string>
#include <variant>

#include "batch/entry.h"

namespace batch {

/// A line of a manifest that is no entry.
struct RefusedLine {
    std::size_t line = 0; ///< its number, from 1
    std::string reason;   ///< a sentence without a stop, without the number
    std::string id;       ///< as far as it could be read
};
/// An entry that needs no drawing: an earlier verdict on it still holds.
struct KeptEntry {};
/// There is no entry yet: the pipe has to be waited for.
struct NothingYet {};
/// There are no more entries.
struct EndOfEntries {};
/// The manifest itself can't be read on.
struct BrokenSource {
    std::string reason; ///< a sentence without a stop
};

using NextEntry =
    std::variant<Entry, RefusedLine, KeptEntry, NothingYet, EndOfEntries, BrokenSource>;

/// Gives the entries of a manifest, one by one, in its order. One thread.
class EntrySource {
public:
    EntrySource() = default;
    virtual ~EntrySource() = default;
    EntrySource(const EntrySource&) = delete;
    EntrySource& operator=(const EntrySource&) = delete;

    /// The next one. Never waits for a pipe that `descriptor` gives: it says `NothingYet`, and the
    /// caller waits until there is something to be read from that. After the end, and after a
    /// broken source, it says the same again.
    virtual NextEntry next() = 0;
    /// What `next` reads, to be waited for; -1 for a file, which is never waited for.
    virtual int descriptor() const { return -1; }
    /// How many entries there are, with those that need no drawing; nothing for a pipe.
    virtual std::optional<std::size_t> total() const { return std::nullopt; }
    /// Entries that were kept.
    struct Kept {
        std::size_t all = 0;
        std::size_t failed = 0; ///< of which the verdict isn't ok
    };
    /// How many so far.
    virtual Kept kept() const { return {}; }
};

} // namespace batch
