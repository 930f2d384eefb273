#pragma once

/// @file
/// What the keys mean: one table, which input, help and documents go by.

#include <string>
#include <vector>

/// A key. Letters and digits are their ASCII code, letters in lower case.
enum class Key : int {
    none = 0,
    escape = 256,
    tab,
    home,
    left,
    right,
    up,
    down,
    page_up,
    page_down,
    f1,
    shift,
};

/// The key of a letter or digit.
constexpr Key key_of(char letter) {
    return static_cast<Key>(letter);
}

/// What a key asks for, once when it goes down.
enum class Command {
    none,
    next_look,
    previous_look,
    look_by_number, ///< by the digit
    next_layer,
    previous_layer,
    wireframe,
    up_axis,
    home,
    text,
    statistics,
    picture,
    reload,
    help,
    end,
};

/// What a key asks for, with the shift key held or not; `Command::none` for a key that is held to
/// move, and for any other.
Command command_of(Key key, bool shift);

/// A line of the help.
struct KeyLine {
    const char* keys;
    const char* meaning;
};
/// What mouse and keys do, in the order of the help.
const std::vector<KeyLine>& key_lines();
