#include "x11_host.h"

#include <utility>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

struct X11Host::Native {
    Display* display = nullptr;
    Window window = 0;
    Atom close_message = 0;
    bool open = true;
    int width = 0;
    int height = 0;
};

X11Host::X11Host(std::unique_ptr<Native> native)
    : native(std::move(native)) {}

std::unique_ptr<X11Host> X11Host::open(int width, int height, char const* title) {
    auto native = std::make_unique<Native>();
    native->display = XOpenDisplay(nullptr);
    if (!native->display)
        return nullptr;
    native->width = width;
    native->height = height;
    native->window =
        XCreateSimpleWindow(native->display, DefaultRootWindow(native->display), 0, 0,
                            static_cast<unsigned>(width), static_cast<unsigned>(height), 0, 0, 0);
    native->close_message = XInternAtom(native->display, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(native->display, native->window, &native->close_message, 1);
    XSelectInput(native->display, native->window, StructureNotifyMask | KeyPressMask);
    XStoreName(native->display, native->window, title);
    XMapWindow(native->display, native->window);
    XEvent event;
    do
        XNextEvent(native->display, &event);
    while (event.type != MapNotify);
    return std::unique_ptr<X11Host>(new X11Host(std::move(native)));
}

X11Host::~X11Host() {
    // The connection stays open to the end of the process: EGL remembers it.
    XDestroyWindow(native->display, native->window);
    XSync(native->display, False);
}

void* X11Host::connection() const {
    return native->display;
}

void* X11Host::view() const {
    return reinterpret_cast<void*>(native->window);
}

bool X11Host::is_open() {
    while (XPending(native->display) > 0) {
        XEvent event;
        XNextEvent(native->display, &event);
        if (event.type == ConfigureNotify) {
            native->width = event.xconfigure.width;
            native->height = event.xconfigure.height;
        } else if (event.type == KeyPress) {
            const KeySym key = XLookupKeysym(&event.xkey, 0);
            native->open = native->open && key != XK_Escape && key != XK_q;
        } else if (event.type == ClientMessage &&
                   static_cast<Atom>(event.xclient.data.l[0]) == native->close_message) {
            native->open = false;
        }
    }
    return native->open;
}

int X11Host::width() const {
    return native->width;
}

int X11Host::height() const {
    return native->height;
}
