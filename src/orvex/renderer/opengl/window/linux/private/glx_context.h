#pragma once

/// @file
/// A host's context that was made with GLX, as toolkits for X11 do.

#include <memory>

#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex {

/// Wraps the GLX context that is current on the calling thread. It can be made current again and
/// released; presenting it, its swap interval and its end are the host's affair. GLX is not linked:
/// it is only looked up in a process whose host has already loaded it.
/// @param handle  what the host calls the context
/// @return null when no GLX context is current
std::unique_ptr<PlatformContext> adopt_current_glx_context(void* handle);

/// @return the GLX context that is current on the calling thread, or null
const void* current_glx_context();

} // namespace orvex
