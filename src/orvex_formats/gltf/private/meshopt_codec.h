#pragma once

/// @file
/// Views that are packed as EXT_meshopt_compression packs them.

#include <cstdint>
#include <span>
#include <string_view>

namespace orvex::formats {

/// What is packed, and how.
struct MeshoptStream {
    std::span<const unsigned char> bytes;
    std::uint64_t count = 0;  ///< of elements, unpacked
    std::uint64_t stride = 0; ///< of an element in bytes, unpacked
    std::string_view mode;    ///< ATTRIBUTES, TRIANGLES or INDICES
    std::string_view filter;  ///< NONE, OCTAHEDRAL, QUATERNION or EXPONENTIAL
};

/// Whether this build has the library that unpacks.
bool can_unpack_meshopt();

/// What the rules of the format forbid of it; null where nothing is wrong.
const char* mistake_in(const MeshoptStream& stream);

/// @param stream  without a mistake
/// @param to      room for all elements
/// @return false for damaged bytes
bool unpack_meshopt(const MeshoptStream& stream, unsigned char* to);

} // namespace orvex::formats
