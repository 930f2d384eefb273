#pragma once

/// @file
/// The chunks of a 3DS file, as lib3ds reads them: what they are called, where each may stand, and
/// what it begins with. Nothing here reads; `Lib3dsChunkReader` does.

#include <cstdint>

namespace orvex::lib3ds {

inline constexpr std::uint32_t header_size = 6;
inline constexpr std::uint32_t face_size = 8;
inline constexpr std::uint32_t name_size = 64; ///< with the terminator, as lib3ds stores names
inline constexpr std::uint16_t no_node = 65535;

enum Chunk : std::uint16_t {
    CHUNK_NONE = 0x0000,
    CHUNK_COLOR_F = 0x0010,
    CHUNK_LIN_COLOR_F = 0x0013,
    CHUNK_MDATA = 0x3D3D,
    CHUNK_PROJECT = 0xC23D,
    CHUNK_LIBRARY = 0x3DAA,
    CHUNK_3DS = 0x4D4D,
    CHUNK_POINT_ARRAY = 0x4110,
    CHUNK_POINT_FLAGS = 0x4111,
    CHUNK_FACE_ARRAY = 0x4120,
    CHUNK_MATERIAL_GROUP = 0x4130,
    CHUNK_TEXTURE_VERTICES = 0x4140,
    CHUNK_SMOOTH_GROUP = 0x4150,
    CHUNK_BOX_MAP = 0x4190,
    CHUNK_OBJECT_NODE = 0xB002,
    CHUNK_NODE_HEADER = 0xB010,
    CHUNK_NODE_ID = 0xB030,
    CHUNK_FIRST_TRACK = 0xB020, ///< position, rotation, scale, opening, roll, colour, …
    CHUNK_LAST_TRACK = 0xB029
};

/// Where a chunk stands, which decides how lib3ds reads it.
enum Place : std::uint8_t {
    PLACE_NOWHERE, ///< the chunk has no children that anybody reads
    PLACE_LIST,    ///< a list of chunks without names, counts and children
    PLACE_FILE,
    PLACE_MDATA,
    PLACE_KEYFRAMER,
    PLACE_MATERIAL,
    PLACE_TEXTURE_MAP,
    PLACE_GRADIENT,
    PLACE_OBJECT,
    PLACE_LIGHT,
    PLACE_SPOTLIGHT,
    PLACE_MESH,
    PLACE_FACES,
    PLACE_NODE
};

/// What a chunk begins with: some bytes, then a text if it has one, then its children.
struct Layout {
    Place place;
    std::uint16_t id;
    std::uint8_t fixed;     ///< bytes before the text
    std::uint8_t text_size; ///< room for the text in lib3ds; 0 if there is none
    Place children;
};

/// The layout of a chunk at a place; null if it is looked at by hand, or needs no look.
const Layout* layout_of(Place place, std::uint16_t id);

/// Part of the file: what a chunk holds behind its header, or the rest of that.
struct Span {
    std::uint32_t begin;
    std::uint32_t end;

    std::uint32_t size() const { return end - begin; }
    bool holds(std::uint64_t count) const { return count <= size(); }
    Span behind(std::uint32_t count) const { return {begin + count, end}; }
};

/// @name Numbers of a file, lowest byte first
/// @{
inline std::uint16_t word_at(const unsigned char* bytes) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

inline std::uint32_t dword_at(const unsigned char* bytes) {
    return word_at(bytes) | static_cast<std::uint32_t>(word_at(bytes + 2)) << 16;
}
/// @}

} // namespace orvex::lib3ds
