#pragma once

/// @file
/// Windows on the test's own X server, and what they show.

#include "picture.h"

struct _XDisplay;

namespace orvex_test {

/// The test's connection to `XServer::get()`, for the life of the process: EGL remembers it. Null
/// without a server.
_XDisplay* x_connection();

/// What a window shows now, all of it opaque; empty when there is nothing to see.
Picture x_pixels(unsigned long window, int width, int height);

/// A mapped window with the screen's own visual.
class XWindow {
public:
    explicit XWindow(int width = 120, int height = 80);
    ~XWindow();
    XWindow(const XWindow&) = delete;
    XWindow& operator=(const XWindow&) = delete;

    void resize(int width, int height);
    Picture pixels(int width, int height) const { return x_pixels(id, width, height); }
    /// What the engine takes as `view`: the window's number.
    void* view() const { return reinterpret_cast<void*>(id); }

private:
    unsigned long id;

    void wait_for(int type) const;
};

} // namespace orvex_test
