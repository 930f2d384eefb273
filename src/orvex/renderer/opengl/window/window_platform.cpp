#include "orvex/renderer/opengl/window/private/window_platform.h"

#include <atomic>

namespace orvex {

namespace {

/// Null stands for the system's own.
std::atomic<WindowPlatform*> replacement = nullptr;

} // namespace

WindowPlatform& window_platform() {
    WindowPlatform* platform = replacement;
    return platform ? *platform : native_window_platform();
}

void set_window_platform(WindowPlatform* platform) {
    replacement = platform;
}

std::vector<RenderWindow_Device> RenderWindow::list_devices() {
    return window_platform().list_devices();
}

} // namespace orvex
