// Devices that can't be drawn on, which no test machine has. This program has an EGL of its own:
// what it defines stands before the library's.

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/window/linux/private/egl_device.h"
#include "tests/support/temp_dir.h"

namespace {

/// A device, its own handle and display.
struct ScriptedDevice {
    const char* extensions = "";
    const char* node = nullptr;
    EGLint error = EGL_SUCCESS; ///< of its driver's start
    const char* apis = "OpenGL_ES OpenGL";
};

/// A machine with one driver's devices. The display that is no device's has this one.
struct Machine {
    std::vector<ScriptedDevice> devices;
    ScriptedDevice unlisted;
    const char* extensions = "EGL_EXT_platform_device EGL_EXT_device_query";
    bool has_entries = true;
    bool lists_devices = true;
    EGLint last_error = EGL_SUCCESS;
};

Machine machine;

const ScriptedDevice& device_at(void* handle) {
    return *static_cast<ScriptedDevice*>(handle);
}

EGLBoolean list(EGLint most, EGLDeviceEXT* devices, EGLint* count) {
    *count = std::min(most, static_cast<EGLint>(machine.devices.size()));
    for (EGLint i = 0; i < *count; ++i)
        devices[i] = &machine.devices[static_cast<std::size_t>(i)];
    return machine.lists_devices;
}

const char* text_of(EGLDeviceEXT handle, EGLint name) {
    const ScriptedDevice& device = device_at(handle);
    return name == EGL_EXTENSIONS ? device.extensions : device.node;
}

EGLDisplay display_of(EGLenum, void* device, const EGLint*) {
    return device;
}

EGLBoolean device_of(EGLDisplay display, EGLint, EGLAttrib* device) {
    *device = reinterpret_cast<EGLAttrib>(display);
    return EGL_TRUE;
}

template<class Function>
__eglMustCastToProperFunctionPointerType entry(Function* function) {
    return reinterpret_cast<__eglMustCastToProperFunctionPointerType>(function);
}

} // namespace

__eglMustCastToProperFunctionPointerType eglGetProcAddress(const char* name) {
    const std::string wanted = name;
    if (!machine.has_entries)
        return nullptr;
    if (wanted == "eglQueryDevicesEXT")
        return entry(list);
    if (wanted == "eglQueryDeviceStringEXT")
        return entry(text_of);
    if (wanted == "eglGetPlatformDisplayEXT")
        return entry(display_of);
    if (wanted == "eglQueryDisplayAttribEXT")
        return entry(device_of);
    return nullptr;
}

const char* eglQueryString(EGLDisplay display, EGLint name) {
    if (display == EGL_NO_DISPLAY)
        return machine.extensions;
    if (name == EGL_CLIENT_APIS)
        return device_at(display).apis;
    return name == EGL_VENDOR ? "the maker" : "";
}

EGLBoolean eglInitialize(EGLDisplay display, EGLint*, EGLint*) {
    machine.last_error = device_at(display).error;
    return machine.last_error == EGL_SUCCESS;
}

EGLint eglGetError() {
    return machine.last_error;
}

namespace orvex_test {

using namespace orvex;

namespace {

constexpr const char *has_render_node = "EGL_EXT_device_drm_render_node",
                     *has_node = "EGL_EXT_device_drm";

class RefusedDevice : public testing::Test {
protected:
    RefusedDevice() { machine = {}; }

    /// What is listed on a machine with that device alone.
    static RenderWindow_Device seen(const ScriptedDevice& device) {
        machine.devices = {device};
        const std::vector<RenderWindow_Device> devices = RenderWindow::list_devices();
        EXPECT_EQ(devices.size(), 1u);
        return devices.empty() ? RenderWindow_Device() : devices[0];
    }
};

TEST_F(RefusedDevice, is_listed_with_the_reason) {
    struct Row {
        ScriptedDevice device;
        const char* reason;
    };
    for (const Row& row :
         {Row{{"", nullptr, EGL_NOT_INITIALIZED}, "its driver can't be started"},
          Row{{"", nullptr, EGL_BAD_ALLOC}, "no memory for its driver"},
          Row{{"", nullptr, EGL_BAD_DISPLAY}, "EGL error 0x3008"},
          Row{{"", nullptr, EGL_SUCCESS, "OpenGL_ES OpenVG"}, "its driver has no OpenGL"},
          Row{{"", nullptr, EGL_SUCCESS, nullptr}, "its driver has no OpenGL"}}) {
        const RenderWindow_Device device = seen(row.device);
        EXPECT_EQ(device.refusal, row.reason);
        EXPECT_EQ(device.driver, "") << row.reason;
    }
}

TEST_F(RefusedDevice, has_the_systems_reason_where_its_node_cant_be_opened) {
    const TempDir folder;
    const std::string node = folder.path() + "/renderD128";
    const ScriptedDevice device{has_render_node, node.c_str(), EGL_NOT_INITIALIZED};
    EXPECT_EQ(seen(device).refusal, "No such file or directory");
    EXPECT_EQ(seen(device).node, node);
    EXPECT_EQ(seen(device).pci, "") << "the system knows no such device";
    folder.write("renderD128", "");
    EXPECT_EQ(seen(device).refusal, "its driver can't be started");
}

TEST_F(RefusedDevice, is_one_of_several) {
    machine.devices = {
        {has_node, "/dev/null"}, {"", nullptr, EGL_BAD_ALLOC}, {"EGL_MESA_device_software"}};
    const std::vector<RenderWindow_Device> devices = RenderWindow::list_devices();
    ASSERT_EQ(devices.size(), 3u);
    EXPECT_EQ(devices[0].node, "/dev/null");
    EXPECT_EQ(devices[0].driver, "the maker");
    EXPECT_EQ(devices[0].refusal, "");
    EXPECT_EQ(devices[1].refusal, "no memory for its driver");
    EXPECT_TRUE(devices[2].software);
    EXPECT_EQ(devices[2].index, 2);
}

TEST_F(RefusedDevice, is_not_even_listed_where_egl_tells_of_none) {
    const auto expect_none = [](const char* why) {
        EXPECT_EQ(RenderWindow::list_devices().size(), 0u) << why;
    };
    machine.devices = {{}};
    machine.lists_devices = false;
    expect_none("the list fails");
    machine.lists_devices = true;
    machine.extensions = "EGL_EXT_platform_devices";
    expect_none("no display can be had of a device");
    machine.extensions = nullptr;
    expect_none("an old EGL tells nothing without a display");
    machine.extensions = "EGL_EXT_platform_device";
    machine.has_entries = false;
    expect_none("the entry is missing");
    machine.has_entries = true;
    EXPECT_EQ(RenderWindow::list_devices().size(), 1u);
}

TEST_F(RefusedDevice, of_a_display_is_found_in_the_list_or_stands_for_itself) {
    machine.devices = {{}, {has_node, "/dev/null"}};
    EXPECT_EQ(egl_device_of(&machine.devices[1]).facts.index, 1);
    machine.unlisted = {has_node, "/dev/zero"};
    const EglDevice unlisted = egl_device_of(&machine.unlisted);
    EXPECT_EQ(unlisted.facts.index, -1);
    EXPECT_EQ(unlisted.facts.node, "/dev/zero");
    EXPECT_EQ(egl_device_of(nullptr).handle, EGL_NO_DEVICE_EXT);
}

} // namespace

} // namespace orvex_test
