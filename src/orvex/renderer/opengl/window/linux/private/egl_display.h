#pragma once

/// @file
/// Which displays can serve a request.

#include <string_view>
#include <vector>

#include "orvex/renderer/opengl/window/linux/private/egl_device.h"

namespace orvex {

struct ContextRequest;

/// A display that may serve a request.
struct EglCandidate {
    EGLDisplay display = EGL_NO_DISPLAY;
    EglDevice device; ///< without a handle where the display wasn't asked of a device
};

/// The displays that may serve a request without a context to share with, best first, none of them
/// initialized. A drawable has the display it was made on, or the default X11 display; off screen
/// any will do, and those that need no display server go first. A device that is chosen is the only
/// one.
std::vector<EglCandidate> candidates_for(const ContextRequest& request);

/// The device that an off-screen request chooses, or else the environment; empty where the system
/// is to choose.
std::string_view chosen_device(const ContextRequest& request);

} // namespace orvex
