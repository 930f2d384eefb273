#pragma once

/// @file
/// The window system of Linux: EGL, on X11, on Wayland and off screen.

#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex {

/// Makes contexts with EGL, and adopts a host's that was made with EGL or GLX. Every operation
/// works on any thread, and leaves the thread's current client API as it was.
class EglPlatform : public WindowPlatform {
public:
    std::unique_ptr<PlatformContext> create_context(const ContextRequest& request) override;
    std::unique_ptr<PlatformContext> adopt_current_context(void* handle) override;
    const void* current_context() override;
    std::vector<RenderWindow_Device> list_devices() override;
    void get_version(int& major, int& minor) override;
    void* get_proc_address(const char* name) override;
};

} // namespace orvex
