#include "orvex/renderer/opengl/window/linux/private/egl_device.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "orvex/platform/private/folder_names.h"
#include "orvex/renderer/opengl/window/linux/private/egl_extensions.h"

// Devices are asked for by extensions, each of which may be missing: what can't be told stays
// empty.

namespace orvex {

namespace {

const char* device_string(EGLDeviceEXT device, EGLint name) {
    const auto query = egl_entry<PFNEGLQUERYDEVICESTRINGEXTPROC>("eglQueryDeviceStringEXT");
    return query ? query(device, name) : nullptr;
}

bool device_lists(EGLDeviceEXT device, const char* extension) {
    return egl_lists(device_string(device, EGL_EXTENSIONS), extension);
}

/// A text that comes with an extension.
std::string device_text_of(EGLDeviceEXT device, const char* extension, EGLint name) {
    const char* const text =
        device_lists(device, extension) ? device_string(device, name) : nullptr;
    return text ? text : "";
}

std::string node_of(EGLDeviceEXT device) {
    std::string node =
        device_text_of(device, "EGL_EXT_device_drm_render_node", EGL_DRM_RENDER_NODE_FILE_EXT);
    return node.empty() ? device_text_of(device, "EGL_EXT_device_drm", EGL_DRM_DEVICE_FILE_EXT)
                        : node;
}

/// The system links a node's device to its place on the bus.
std::string pci_path_of(const std::string& node) {
    namespace fs = std::filesystem;
    if (node.empty())
        return {};
    std::error_code error;
    const fs::path device =
        fs::canonical(fs::path("/sys/class/drm") / fs::path(node).filename() / "device", error);
    return error ? std::string() : device.filename().string();
}

EglDevice describe(EGLDeviceEXT handle, int index) {
    EglDevice device;
    device.handle = handle;
    device.facts.index = index;
    device.facts.software = device_lists(handle, "EGL_MESA_device_software");
    device.facts.node = node_of(handle);
    device.facts.pci = pci_path_of(device.facts.node);
    return device;
}

} // namespace

EGLDisplay EglDevice::display() const {
    return egl_platform_display(EGL_PLATFORM_DEVICE_EXT, "EGL_EXT_platform_device", handle);
}

std::vector<EglDevice> egl_devices() {
    const auto query = egl_entry<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
    if (!query || !egl_client_lists("EGL_EXT_platform_device"))
        return {};
    std::array<EGLDeviceEXT, 64> found;
    EGLint count = 0;
    if (!query(static_cast<EGLint>(found.size()), found.data(), &count))
        return {};
    std::vector<EglDevice> devices;
    devices.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        devices.push_back(describe(found[static_cast<std::size_t>(i)], i));
    return devices;
}

EglDevice egl_device_of(EGLDisplay display) {
    const auto query = egl_entry<PFNEGLQUERYDISPLAYATTRIBEXTPROC>("eglQueryDisplayAttribEXT");
    EGLAttrib handle = 0;
    if (!query || !query(display, EGL_DEVICE_EXT, &handle) || handle == 0)
        return {};
    for (EglDevice& device : egl_devices())
        if (device.handle == reinterpret_cast<EGLDeviceEXT>(handle))
            return device;
    return describe(reinterpret_cast<EGLDeviceEXT>(handle), -1);
}

std::string egl_driver_of(EGLDisplay display) {
    using GetDriverName = const char* (*)(EGLDisplay);
    const bool tells = egl_lists(eglQueryString(display, EGL_EXTENSIONS), "EGL_MESA_query_driver");
    const auto get = egl_entry<GetDriverName>("eglGetDisplayDriverName");
    const char* name = tells && get ? get(display) : nullptr;
    if (!name)
        name = eglQueryString(display, EGL_VENDOR);
    return name ? name : "";
}

namespace {

/// Why the system refuses a node; empty if it doesn't.
std::string node_refusal(const std::string& node) {
    if (node.empty())
        return {};
    errno = 0;
    std::FILE* const file = std::fopen(node.c_str(), "r+");
    if (!file)
        return std::strerror(errno);
    std::fclose(file);
    return {};
}

std::string error_text(EGLint error) {
    if (error == EGL_NOT_INITIALIZED)
        return "its driver can't be started";
    if (error == EGL_BAD_ALLOC)
        return "no memory for its driver";
    char text[32];
    std::snprintf(text, sizeof(text), "EGL error 0x%04X", static_cast<unsigned>(error));
    return text;
}

} // namespace

std::string egl_device_refusal(const EglDevice& device) {
    const EGLDisplay display = device.display();
    if (display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr)) {
        const bool has_opengl = egl_lists(eglQueryString(display, EGL_CLIENT_APIS), "OpenGL");
        return has_opengl ? "" : "its driver has no OpenGL";
    }
    const EGLint error = eglGetError();
    const std::string refusal = node_refusal(device.facts.node);
    return refusal.empty() ? error_text(error) : refusal;
}

// The choice

std::string_view device_choice() {
    const char* const text = std::getenv("ORVEX_GL_DEVICE");
    return text ? text : "";
}

bool is_chosen(const RenderWindow_Device& device, std::string_view choice) {
    if (choice == "software")
        return device.software;
    int index = 0;
    const auto [end, error] = std::from_chars(choice.data(), choice.data() + choice.size(), index);
    if (error == std::errc() && end == choice.data() + choice.size())
        return device.index == index;
    constexpr std::string_view first_domain = "0000:";
    return !device.pci.empty() &&
           (device.pci == choice || device.pci == std::string(first_domain).append(choice));
}

std::string device_text(const RenderWindow_Device& device) {
    if (device.software)
        return "software";
    if (device.node.empty())
        return "device " + std::to_string(device.index);
    return device.pci.empty() ? device.node : device.node + " (" + device.pci + ")";
}

std::vector<std::string> unserved_nodes(const std::vector<EglDevice>& devices,
                                        const std::string& folder) {
    if (std::any_of(devices.begin(), devices.end(),
                    [](const EglDevice& device) { return !device.facts.software; }))
        return {};
    const std::string dri = folder + "/dri/";
    std::vector<std::string> nodes;
    for (const std::string& name : names_in_folder(dri))
        if (name.starts_with("renderD"))
            nodes.push_back(dri + name);
    return nodes;
}

} // namespace orvex
