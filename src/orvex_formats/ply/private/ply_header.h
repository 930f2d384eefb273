#pragma once

/// @file
/// The head of a PLY file, which says what its rows are made of.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "orvex_formats/private/byte_stream.h"

namespace orvex::formats {

enum class PlyEncoding { text, little, big };

enum class PlyType { int8, uint8, int16, uint16, int32, uint32, float32, float64 };

/// How many bytes a number takes.
std::size_t size_of(PlyType type);

/// The largest number of an integer type; 0 of the others.
double largest_of(PlyType type);

/// What each row of an element has: a number, or a list of them.
struct PlyProperty {
    std::string name; ///< in small letters
    PlyType type = PlyType::int8;
    bool is_list = false;
    PlyType count_type = PlyType::uint8; ///< of lists
};

/// A table: rows of like properties.
struct PlyElement {
    std::string name; ///< in small letters
    std::uint64_t num_rows = 0;
    std::vector<PlyProperty> properties;

    /// The place of the first property of a name, or -1.
    int find(const std::string& property) const;
    /// The fewest bytes that a row takes; 0 without properties.
    std::uint64_t least_row_size(PlyEncoding encoding) const;
};

struct PlyHeader {
    PlyEncoding encoding = PlyEncoding::text;
    std::vector<PlyElement> elements;
    std::vector<std::string> textures; ///< that comments name
    std::string unknown;   ///< what was left out of the head, with its place; empty if nothing was
    std::uint64_t end = 0; ///< where the rows begin
};

/// Reads the head, and leaves a stream that stands at the file's begin behind it.
/// @throw Refusal
PlyHeader read_ply_header(const InputFile& file, ByteStream& stream);

} // namespace orvex::formats
