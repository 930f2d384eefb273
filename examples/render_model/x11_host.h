#pragma once

#include <memory>

/// An X11 window of the host's own: the engine makes none.
class X11Host {
public:
    /// Opens a window on $DISPLAY and shows it. @return null when there is no display
    static std::unique_ptr<X11Host> open(int width, int height, char const* title);
    ~X11Host();
    X11Host(X11Host const&) = delete;
    X11Host& operator=(X11Host const&) = delete;

    /// What the engine takes as `window`: the connection.
    void* connection() const;
    /// What the engine takes as `view`: the window's number.
    void* view() const;
    /// Reads what happened. @return false once the window was closed, or Escape or Q was hit
    bool is_open();
    int width() const;
    int height() const;

private:
    struct Native;
    std::unique_ptr<Native> native;

    explicit X11Host(std::unique_ptr<Native> native);
};
