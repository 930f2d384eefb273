#pragma once

/// @file
/// What can be said about an X11 window without linking an X library.

namespace orvex {

/// Whether a native drawable is the number of an X11 window, and neither null nor an address. X11
/// keeps the three highest of a number's 32 bits clear.
bool is_x11_id(void* view);

/// Sends what waits in the host's queue, and returns once the X server has carried it out: the
/// engine and its drivers ask over connections of their own, which overtake it.
/// @param display  the host's `Display*`; null for none
void finish_x11_requests(void* display);

/// Asks the X server about a window, over a short connection of its own. Call it once EGL has the
/// display initialized: its libraries are used where they are loaded.
/// @param display  the host's `Display*`; null for $DISPLAY
/// @return false when the server knows no such window; true when it does, or can't be asked
bool x11_window_may_exist(void* display, void* view);

} // namespace orvex
