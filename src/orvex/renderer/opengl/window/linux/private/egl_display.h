#pragma once

/// @file
/// Which displays can serve a request.

#include <vector>

#include "orvex/renderer/opengl/window/linux/private/egl_api.h"

namespace orvex {

struct ContextRequest;

/// The displays that may serve a request without a context to share with, best first, none of them
/// initialized. A drawable has the display it was made on, or the default X11 display; off screen
/// any will do, and those that need no display server go first.
std::vector<EGLDisplay> displays_for(const ContextRequest& request);

} // namespace orvex
