// The source's part of a drag and drop: it owns the selection, says that it enters, moves and
// drops, and answers when the window asks for the list.

#include "x_drop.h"

#include <memory>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <poll.h>

namespace orvex_test {

namespace {

struct CloseDisplay {
    void operator()(Display* display) const { XCloseDisplay(display); }
};

class DragSource {
public:
    DragSource(::Window target, const std::string& list)
        : target(target)
        , list(list)
        , display(XOpenDisplay(nullptr)) {}

    bool drop() {
        if (!display)
            return false;
        source = XCreateSimpleWindow(display.get(), DefaultRootWindow(display.get()), 0, 0, 1, 1, 0,
                                     0, 0);
        XSetSelectionOwner(display.get(), atom("XdndSelection"), source, CurrentTime);
        send("XdndEnter", 5L << 24, static_cast<long>(atom("text/uri-list")), 0, 0);
        send("XdndPosition", 0, (10L << 16) | 10, CurrentTime,
             static_cast<long>(atom("XdndActionCopy")));
        if (!wait_for("XdndStatus"))
            return false;
        send("XdndDrop", 0, CurrentTime, 0, 0);
        return wait_for("XdndFinished");
    }

private:
    ::Window target;
    const std::string& list;
    std::unique_ptr<Display, CloseDisplay> display;
    ::Window source = 0;

    Atom atom(const char* name) { return XInternAtom(display.get(), name, False); }

    void send(const char* message, long a, long b, long c, long d) {
        XEvent event = {};
        event.xclient.type = ClientMessage;
        event.xclient.window = target;
        event.xclient.message_type = atom(message);
        event.xclient.format = 32;
        const long values[] = {static_cast<long>(source), a, b, c, d};
        for (int i = 0; i < 5; ++i)
            event.xclient.data.l[i] = values[i];
        XSendEvent(display.get(), target, False, NoEventMask, &event);
        XFlush(display.get());
    }

    /// Gives the list to who asks for it.
    void answer(const XSelectionRequestEvent& request) {
        XChangeProperty(display.get(), request.requestor, request.property, request.target, 8,
                        PropModeReplace, reinterpret_cast<const unsigned char*>(list.data()),
                        static_cast<int>(list.size()));
        XEvent event = {};
        event.xselection.type = SelectionNotify;
        event.xselection.requestor = request.requestor;
        event.xselection.selection = request.selection;
        event.xselection.target = request.target;
        event.xselection.property = request.property;
        event.xselection.time = request.time;
        XSendEvent(display.get(), request.requestor, False, NoEventMask, &event);
        XFlush(display.get());
    }

    /// Waits for a message of the window. @return false where none comes
    bool wait_for(const char* message) {
        constexpr int most_looks = 1500;
        const Atom wanted = atom(message);
        for (int look = 0; look < most_looks; ++look) {
            while (XPending(display.get()) > 0) {
                XEvent event;
                XNextEvent(display.get(), &event);
                if (event.type == SelectionRequest)
                    answer(event.xselectionrequest);
                if (event.type == ClientMessage && event.xclient.message_type == wanted)
                    return true;
            }
            pollfd waiting = {ConnectionNumber(display.get()), POLLIN, 0};
            poll(&waiting, 1, 10);
        }
        return false;
    }
};

} // namespace

bool drop_on_window(unsigned long window, const std::string& list) {
    return DragSource(window, list).drop();
}

} // namespace orvex_test
