#pragma once

/// @file
/// A Wayland compositor of the test's own, without a screen.

#include <string>

#include <sys/types.h>

struct wl_compositor;
struct wl_display;

namespace orvex_test {

/// Runs weston without a screen, in a folder of its own, and connects to it. Stops it at its end.
class WaylandServer {
public:
    WaylandServer();
    ~WaylandServer();
    WaylandServer(const WaylandServer&) = delete;
    WaylandServer& operator=(const WaylandServer&) = delete;

    /// The test's connection, for the life of the process, since EGL remembers it; null when no
    /// compositor could be started.
    wl_display* connection() const { return display; }
    /// What makes surfaces.
    wl_compositor* compositor() const { return surfaces; }

    /// The one compositor of the process.
    static WaylandServer& get();

private:
    pid_t process = -1;
    int log_pipe = -1;
    std::string folder;
    wl_display* display = nullptr;
    wl_compositor* surfaces = nullptr;

    void connect();
};

} // namespace orvex_test
