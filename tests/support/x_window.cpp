#include "x_window.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "x_server.h"

namespace orvex_test {

Display* x_connection() {
    static Display* const display = XOpenDisplay(XServer::get().display().c_str());
    return display;
}

Picture x_pixels(unsigned long window, int width, int height) {
    XImage* const image = XGetImage(x_connection(), window, 0, 0, static_cast<unsigned>(width),
                                    static_cast<unsigned>(height), AllPlanes, ZPixmap);
    if (!image)
        return {};
    Picture picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const unsigned long color = XGetPixel(image, x, y);
            unsigned char* const pixel = picture.at(x, y);
            pixel[0] = static_cast<unsigned char>(color >> 16);
            pixel[1] = static_cast<unsigned char>(color >> 8);
            pixel[2] = static_cast<unsigned char>(color);
            pixel[3] = 255;
        }
    XDestroyImage(image);
    return picture;
}

XWindow::XWindow(int width, int height) {
    XSetWindowAttributes attributes = {};
    attributes.override_redirect = True;
    attributes.event_mask = StructureNotifyMask;
    id = XCreateWindow(x_connection(), DefaultRootWindow(x_connection()), 10, 20,
                       static_cast<unsigned>(width), static_cast<unsigned>(height), 0,
                       CopyFromParent, InputOutput, CopyFromParent,
                       CWOverrideRedirect | CWEventMask, &attributes);
    XMapWindow(x_connection(), id);
    wait_for(MapNotify);
}

XWindow::~XWindow() {
    XDestroyWindow(x_connection(), id);
    XSync(x_connection(), False);
}

void XWindow::resize(int width, int height) {
    XResizeWindow(x_connection(), id, static_cast<unsigned>(width), static_cast<unsigned>(height));
    wait_for(ConfigureNotify);
}

void XWindow::wait_for(int type) const {
    XEvent event;
    do
        XWindowEvent(x_connection(), id, StructureNotifyMask, &event);
    while (event.type != type);
}

} // namespace orvex_test
