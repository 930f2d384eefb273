#pragma once

/// @file
/// What a window has to do for the viewer, and the viewer's way from the first frame to the last.

#include <functional>
#include <string>

#include "viewer.h"

/// A window that a viewer is shown in. It tells the viewer what somebody does with it.
class ViewerWindow {
public:
    virtual ~ViewerWindow() = default;

    /// Seconds from anywhere.
    virtual double now() = 0;
    /// Waits until something happens, and tells the viewer of all that has.
    /// @param seconds  after which it goes on anyway; 0: it only looks
    virtual void wait(double seconds) = 0;
    /// Draws a frame and shows it. @return whether there was one to draw; a hidden window has none
    virtual bool frame(const std::function<void(orvex::kit::View& view)>& draw) = 0;
    /// Why the last frame wasn't drawn; empty for a hidden window.
    virtual std::string reason() const = 0;
    virtual void set_title(const std::string& title) = 0;
};

/// Shows a viewer until it ends. Nothing is drawn while nothing changes.
/// @return why it can't be shown; empty if it was
std::string run(Viewer& viewer, ViewerWindow& window);
