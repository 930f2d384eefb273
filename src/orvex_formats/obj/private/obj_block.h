#pragma once

/// @file
/// A piece of an OBJ file, read by itself.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <orvex/math/vec2.h>
#include <orvex/math/vec3.h>

namespace orvex::formats {

/// What a face names, before the numbers of entries in the pieces before this one are known: a
/// place in the file's list, a place counted from the list's length where the piece begins, or
/// neither.
class ObjIndex {
public:
    static constexpr std::int64_t most = 1 << 30; ///< entries of a list

    /// Names nothing.
    ObjIndex() = default;
    /// @param number     as the file has it: from 1 on, or from -1 on backwards
    /// @param num_known  entries of the list so far, within the piece
    ObjIndex(std::int64_t number, std::size_t num_known) {
        if (number > 0 && number <= most)
            bits = static_cast<std::uint32_t>(number - 1);
        else if (number < 0 && number >= -most)
            bits = relative +
                   static_cast<std::uint32_t>(static_cast<std::int64_t>(num_known) + number + most);
        else
            bits = wrong;
    }

    bool is_given() const { return bits != none; }
    /// A place in the whole list, or `UINT32_MAX` where it is beyond.
    /// @param num_before  entries before the piece
    /// @param num_all     entries of the whole list
    std::uint32_t place(std::size_t num_before, std::size_t num_all) const {
        std::int64_t index = bits;
        if (bits >= relative)
            index = static_cast<std::int64_t>(bits - relative) - most +
                    static_cast<std::int64_t>(num_before);
        const bool is_there = index >= 0 && static_cast<std::uint64_t>(index) < num_all;
        return is_there ? static_cast<std::uint32_t>(index) : UINT32_MAX;
    }

private:
    static constexpr std::uint32_t relative = 0x80000000;
    static constexpr std::uint32_t wrong = 0x7ffffffe;
    static constexpr std::uint32_t none = 0x7fffffff;

    std::uint32_t bits = none;
};

/// A corner of a face, a point, or an end of a line.
struct ObjCorner {
    ObjIndex position, texcoord, normal;
};

enum class ObjShape : std::uint8_t { face, line, point };

/// A statement that draws something.
struct ObjElement {
    std::uint32_t end = 0; ///< its corners end here, and begin where those before end
    std::uint32_t line = 0;
};

/// A statement that changes what the elements behind it belong to, or has to be told of.
struct ObjEvent {
    enum class Kind : std::uint8_t { group, object, smoothing, material, library, unknown };

    Kind kind = Kind::unknown;
    std::uint32_t line = 0;    ///< in the piece, from 1 on
    std::uint32_t element = 0; ///< the first face behind it
    std::string text;          ///< what stands behind the keyword; of an unknown one itself
};

/// What is read of a piece.
struct ObjBlock {
    std::vector<vec3> positions;
    std::vector<vec3> colors; ///< one a position, or none where no position has one
    std::vector<vec2> texcoords;
    std::vector<vec3> normals;
    std::vector<ObjCorner> corners; ///< of faces
    std::vector<ObjElement> faces;
    std::vector<ObjCorner> line_corners;
    std::vector<ObjElement> lines;
    std::vector<ObjCorner> point_corners;
    std::vector<ObjElement> points;
    std::vector<ObjEvent> events;
    std::size_t num_lines = 0;
    std::string mistake; ///< why the file is refused; empty if it isn't
    std::size_t mistake_line = 0;
};

/// Reads whole lines. A mistake ends it.
/// @param text  ends with its last line, which needs no end
/// @throw std::bad_alloc
void read_obj_block(std::string_view text, ObjBlock& block);

/// Whether a word begins lines of OBJ files, read or not.
bool is_obj_keyword(std::string_view word);

} // namespace orvex::formats
