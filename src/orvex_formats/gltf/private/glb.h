#pragma once

/// @file
/// The two shapes that glTF files have: a JSON text, or one file with the text and its bytes.

#include <string>
#include <vector>

#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// What lies in a file.
struct GltfParts {
    std::string json;
    bool is_binary = false;
    bool has_bytes = false;           ///< whether there is a chunk of bytes
    std::vector<unsigned char> bytes; ///< its content
    std::vector<std::string> notes;
};

/// Takes a file apart.
/// @throw Refusal  with another format for what neither its first bytes nor its name call glTF
GltfParts take_apart(const InputFile& file);

} // namespace orvex::formats
