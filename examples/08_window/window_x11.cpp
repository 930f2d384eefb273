// A model in a plain X11 window: window_x11 lighthouse.obj
//
// The program makes the window; the engine makes the OpenGL context in it, and shows what was
// drawn. Escape ends it.

#include <cstdio>
#include <string>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <orvex/orvex.h>

#include "model_stage.h"

static int fail(const std::string& reason) {
    std::fprintf(stderr, "window_x11: %s\n", reason.c_str());
    return 1;
}

/// A window with its connection.
struct XWindow {
    Display* display = nullptr;
    Window id = 0;
    Atom close_message = 0;
    int width = 640;
    int height = 480;
};

static bool open_window(XWindow& window) {
    window.display = XOpenDisplay(nullptr);
    if (!window.display)
        return false;
    window.id = XCreateSimpleWindow(window.display, DefaultRootWindow(window.display), 0, 0,
                                    static_cast<unsigned>(window.width),
                                    static_cast<unsigned>(window.height), 0, 0, 0);
    window.close_message = XInternAtom(window.display, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(window.display, window.id, &window.close_message, 1);
    XSelectInput(window.display, window.id, StructureNotifyMask | ExposureMask | KeyPressMask);
    XStoreName(window.display, window.id, "orvex in X11");
    XMapWindow(window.display, window.id);
    return true;
}

/// Waits until something happens, and takes all of it in.
/// @return false once the window was closed, or Escape was hit
static bool wait_for_events(XWindow& window) {
    bool open = true;
    do {
        XEvent event;
        XNextEvent(window.display, &event);
        if (event.type == ConfigureNotify) {
            window.width = event.xconfigure.width;
            window.height = event.xconfigure.height;
        } else if (event.type == KeyPress) {
            open = open && XLookupKeysym(&event.xkey, 0) != XK_Escape;
        } else if (event.type == ClientMessage) {
            open = open && static_cast<Atom>(event.xclient.data.l[0]) != window.close_message;
        }
    } while (XPending(window.display) > 0);
    return open;
}

static int show(XWindow& window, const char* model) {
    ModelStage stage;
    orvex::RenderWindow_ExtraData request;
    request.gl_major = 3;
    request.gl_minor = 2;
    request.depth_bits = 24;
    if (!stage.window->initialize(window.display, reinterpret_cast<void*>(window.id), window.width,
                                  window.height, "Off", nullptr, &request))
        return fail("no OpenGL context");
    if (const std::string mistake = stage.load(model); !mistake.empty())
        return fail(mistake);
    while (wait_for_events(window)) {
        stage.window->update_size(window.width, window.height);
        stage.draw(window.width, window.height);
        stage.window->display_framebuffer();
    }
    return 0;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: window_x11 MODEL\n", stderr);
        return 2;
    }
    XWindow window;
    if (!open_window(window))
        return fail("no X server; is $DISPLAY set?");
    const int result = show(window, argv[1]);
    // The connection stays open to the end of the process: EGL remembers it.
    XDestroyWindow(window.display, window.id);
    XSync(window.display, False);
    return result;
}
