#pragma once

/// @file
/// A screen of Wayland that can be looked at.

#include <string>
#include <vector>

#include <sys/types.h>

#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

/// Runs weston with a screen in memory, and programs in its windows. Stops them at its end.
class WaylandScreen {
public:
    /// @param scale  pixels in a unit of the programs'
    explicit WaylandScreen(int scale);
    ~WaylandScreen();
    WaylandScreen(const WaylandScreen&) = delete;
    WaylandScreen& operator=(const WaylandScreen&) = delete;

    /// Starts a program, which finds the screen by its environment.
    /// @param environment  settings, as NAME=VALUE, or names that are taken out
    void start(const std::vector<std::string>& command,
               const std::vector<std::string>& environment);
    /// Looks again and again until a picture is seen at some place. A picture that never comes
    /// makes it false.
    bool shows(const Picture& wanted);
    /// What was seen at last; empty without a screen.
    const Picture& seen() const { return last; }

private:
    TempDir folder;
    std::vector<pid_t> processes;
    Picture last;

    bool runs_on();
    void look();
};

} // namespace orvex_test
