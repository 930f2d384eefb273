#pragma once

/// @file
/// OBJ files in pieces.

#include <cstdint>
#include <deque>

#include "orvex_formats/obj/private/obj_block.h"
#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// How a file is taken apart. What is read of it doesn't depend on it.
struct ObjCutting {
    std::size_t piece = 1u << 20; ///< bytes, more where a line is longer
    unsigned int num_workers = 0; ///< 0: as many as are of use
};

/// Reads a file piece by piece, by several threads at once. Behind a piece with a mistake none need
/// follow.
/// @param begin  where the text begins
/// @throw Refusal, std::bad_alloc
std::deque<ObjBlock> read_obj_blocks(const InputFile& file, std::uint64_t begin,
                                     const ObjCutting& cutting);

} // namespace orvex::formats
