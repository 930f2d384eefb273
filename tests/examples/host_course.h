#pragma once

/// @file
/// What tests of hosts in the windows of toolkits share: a session for the toolkits, and a course
/// of frames with what happens to a window on the way. In each host the space bar shows the next
/// frame, w takes the picture into another window, and Escape ends the program.

#include <functional>
#include <string>

#include "tests/examples/window_program.h"
#include "tests/support/picture.h"

namespace orvex_test {

/// Begins the X server and a session in which no toolkit misses anything, or finds another one.
/// @param folder  for what the session writes
void begin_host_session(const std::string& folder);

/// Screens know no opacity.
Picture opaque(Picture picture);

/// A key, down and up.
void hit(WindowProgram& program, unsigned long key);

/// The frames that a host shows one after the other.
struct HostCourse {
    static constexpr int width = 200, height = 150; ///< at the begin

    int frames = 0;
    int grows_at = -1;     ///< the frame in which the window becomes larger
    int shrinks_at = -1;   ///< and the one in which it has its first size again
    int replaced_at = -1;  ///< the frame in which the picture gets another window; -1 for none
    int second_ahead = -1; ///< so many frames a second window is ahead; -1 without one
    std::string name;      ///< of the files in which a failure is kept
    /// What a window shows, by the frame and the size in pixels.
    std::function<Picture(int number, int width, int height)> wanted;
};

/// Has each frame shown, to the bit, and the window changed on the way.
void play(WindowProgram& program, const HostCourse& course);

} // namespace orvex_test
