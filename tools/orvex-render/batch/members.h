#pragma once

/// @file
/// Objects of JSON as entries are: names with plain values.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace batch {

/// A name of an object with its value.
struct Member {
    enum class Kind { text, number, truth, list, other };
    std::string name;
    Kind kind = Kind::other;
    std::string value; ///< a text, a number as it is written, a list's values with commas between
    bool truth = false;
};

/// Reads an object into a row, which keeps its memory for the next one.
class Members {
public:
    /// @return what is wrong, as a sentence without a stop; empty if nothing is
    std::string read(std::string_view text);

    const Member* begin() const { return row.data(); }
    const Member* end() const { return row.data() + count; }

private:
    class Notation;

    std::vector<Member> row;
    std::size_t count = 0;

    Member& add();
};

} // namespace batch
