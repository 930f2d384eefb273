#pragma once

/// @file
/// The machine's devices, as EGL tells of them.

#include <string>
#include <string_view>
#include <vector>

#include "orvex/renderer/opengl/window/linux/private/egl_api.h"
#include "orvex/renderer/render_window.h"

namespace orvex {

/// One device, and what can be said of it without a display.
struct EglDevice {
    EGLDeviceEXT handle = EGL_NO_DEVICE_EXT;
    /// Driver and refusal are empty: they take a display.
    RenderWindow_Device facts;

    /// @return its display, which isn't initialized; EGL_NO_DISPLAY where there is none
    EGLDisplay display() const;
};

/// The devices in EGL's order.
std::vector<EglDevice> egl_devices();

/// The device that a display is on, without a handle where EGL doesn't tell.
EglDevice egl_device_of(EGLDisplay display);

/// Why a device can't be drawn on, in words; empty if it can. Initializes its display.
std::string egl_device_refusal(const EglDevice& device);

/// What serves a display that is initialized, such as the driver's name.
std::string egl_driver_of(EGLDisplay display);

/// What `ORVEX_GL_DEVICE` says; empty without it.
std::string_view device_choice();

/// @param choice  an index, a PCI path with or without its domain, or "software"
bool is_chosen(const RenderWindow_Device& device, std::string_view choice);

/// A device in a log line: its node, or what it is.
std::string device_text(const RenderWindow_Device& device);

/// Nodes of processors of graphics for which EGL has no device: their driver isn't there.
/// @param folder  of the system's devices
std::vector<std::string> unserved_nodes(const std::vector<EglDevice>& devices,
                                        const std::string& folder = "/dev");

} // namespace orvex
