#pragma once

/// @file
/// What every fuzz target defines.

#include <cstddef>
#include <cstdint>

/// Plays one input. Whatever is wrong ends the program.
/// @return 0
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
