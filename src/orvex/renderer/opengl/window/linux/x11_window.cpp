#include "orvex/renderer/opengl/window/linux/private/x11_window.h"

#include <cstdint>
#include <cstdlib>

#include "orvex/platform/private/loaded_library.h"

namespace orvex {

bool is_x11_id(void* view) {
    return view && reinterpret_cast<std::uintptr_t>(view) < (std::uintptr_t(1) << 29);
}

void finish_x11_requests(void* display) {
    int (*synchronize)(void*, int) = nullptr;
    if (display)
        LoadedLibrary("libX11.so.6").look_up("XSync", synchronize);
    if (synchronize)
        synchronize(display, 0);
}

namespace {

/// The number under which a request waits for its answer.
struct XcbCookie {
    unsigned sequence;
};

/// The few functions of the X protocol library that one question needs. Its requests, unlike those
/// of the older library, tell of a failure without calling the process's error handler.
struct XcbApi {
    void* (*connect)(const char* display, int* screen) = nullptr;
    int (*has_error)(void* connection) = nullptr;
    XcbCookie (*get_geometry)(void* connection, std::uint32_t drawable) = nullptr;
    void* (*geometry_reply)(void* connection, XcbCookie cookie, void** error) = nullptr;
    void (*disconnect)(void* connection) = nullptr;

    bool complete() const {
        return connect && has_error && get_geometry && geometry_reply && disconnect;
    }
};

XcbApi load_xcb() {
    const LoadedLibrary library("libxcb.so.1");
    XcbApi api;
    library.look_up("xcb_connect", api.connect);
    library.look_up("xcb_connection_has_error", api.has_error);
    library.look_up("xcb_get_geometry", api.get_geometry);
    library.look_up("xcb_get_geometry_reply", api.geometry_reply);
    library.look_up("xcb_disconnect", api.disconnect);
    return api;
}

/// The name of the server that the host is connected to; null for the default one.
const char* display_name(void* display) {
    if (!display)
        return nullptr;
    const char* (*display_string)(void*) = nullptr;
    LoadedLibrary("libX11.so.6").look_up("XDisplayString", display_string);
    return display_string ? display_string(display) : nullptr;
}

bool has_geometry(const XcbApi& api, void* connection, void* view) {
    const auto drawable = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(view));
    void* error = nullptr;
    void* const reply =
        api.geometry_reply(connection, api.get_geometry(connection, drawable), &error);
    const bool found = reply;
    std::free(reply);
    std::free(error);
    return found;
}

} // namespace

bool x11_window_may_exist(void* display, void* view) {
    const XcbApi api = load_xcb();
    if (!api.complete())
        return true;
    void* const connection = api.connect(display_name(display), nullptr);
    const bool exists = api.has_error(connection) || has_geometry(api, connection, view);
    api.disconnect(connection);
    return exists;
}

} // namespace orvex
