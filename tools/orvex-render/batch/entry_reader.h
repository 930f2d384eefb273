#pragma once

/// @file
/// Entries from their text.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "arguments.h"
#include "batch/entry.h"
#include "batch/members.h"

namespace batch {

/// Makes entries of their text: an object of JSON, with the long names of the options as keys, as
/// `{"model": "a.obj", "size": "320x200", "azimuth": 30}`. What an option takes, and what is said
/// of a wrong value, is what the command line has.
///
/// `model` is required; `id` is the model's path by default, `output` the id with all that a name
/// of a file shouldn't have made "_", and ".png" or the suffix of the format. An output that isn't
/// a path within the output folder is refused; links in it aren't looked at here (see
/// `mistake_in_place`).
///
/// Two readers with the same defaults and folder make the same of a text, whichever process they
/// are in. One thread.
class EntryReader {
public:
    /// @param defaults  options of every entry that doesn't say otherwise
    /// @param folder    the output folder
    EntryReader(const Options& defaults, std::string folder);
    EntryReader(const EntryReader&) = delete;
    EntryReader& operator=(const EntryReader&) = delete;

    /// Reads an entry of JSON.
    /// @param line  its number
    /// @return why it is refused, as a sentence without a stop; empty if `entry` is it
    std::string read(std::string_view text, std::size_t line, Entry& entry);
    /// Makes an entry of a model's path alone.
    std::string read_path(std::string_view path, std::size_t line, Entry& entry);
    /// The entry of `line_of`; nothing for any other text.
    std::optional<Entry> entry_of_line(std::string_view line);
    /// The id of the text that was refused last, as far as it was read.
    const std::string& last_id() const { return id; }
    /// Forgets what was read.
    void forget();

private:
    Options defaults;
    std::string folder; ///< empty, or with a slash at its end
    Options current;    ///< which the rules fill
    Arguments rules;
    Options unused;
    Arguments all; ///< rules of the whole command line, to tell of them
    Members members;
    std::string id;
    std::string output;

    std::string take(const Member& member);
    std::string take_option(const Member& member);
    std::string unknown(const std::string& name) const;
    std::string finish(std::size_t line, Entry& entry);
};

/// A name of a file made of an id: letters, digits, ".", "-", "+", "=", "@", "," and what isn't
/// ASCII stay, all else is "_"; no dot at its beginning, and at most 200 bytes, of which the end is
/// a sum of the id where it was longer.
std::string safe_name_of(const std::string& id);

} // namespace batch
