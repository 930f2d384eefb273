#pragma once

/// @file
/// An X server of the test's own, without a screen.

#include <string>

#include <sys/types.h>

namespace orvex_test {

/// Runs Xvfb on a free display number, with one screen of 800 by 600 pixels and depth 24, and
/// points $DISPLAY at it. Stops it at its end.
class XServer {
public:
    XServer();
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    /// Such as ":99"; empty when no server could be started.
    const std::string& display() const { return name; }

    /// The one server of the process. Libraries remember their connection to the default display,
    /// so that there can't be a second one after it.
    static XServer& get();

private:
    pid_t process = -1;
    std::string name;
};

} // namespace orvex_test
