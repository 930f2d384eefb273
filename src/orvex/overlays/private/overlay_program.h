#pragma once

/// @file
/// The making of the programs that overlays draw with, and what the log hears of it.

#include "orvex/fwd.h"

namespace orvex {

/// How an overlay speaks of its program.
struct OverlayProgramTexts {
    const char* name;       ///< of the program; null keeps the node's own
    const char* invalid;    ///< begins both messages about a program that doesn't compile
    const char* not_active; ///< the message about one that doesn't link
};

/// Makes a program of two shaders and makes it the active one. It is held by `GpuProgramMgr` alone.
/// @return null, after an error in the log, if it doesn't compile or link: nothing is left of it
GpuProgram* make_overlay_program(Renderer& renderer, const char* vertex, const char* pixel,
                                 const OverlayProgramTexts& texts);

} // namespace orvex
