#pragma once

// Windows of GLFW, in whose contexts the scene is drawn.

#include <orvex/fwd.h>

struct GLFWwindow;

class HostRecord;
class HostScene;

/// How a window comes to its context.
struct HostRoad {
    bool engine = false; ///< the engine makes it in the plain X11 window; else GLFW does
    bool egl = false;    ///< GLFW takes EGL; else GLX
    bool core = true;

    /// Reads "engine", "egl" or "glx", and "core" or "compatibility".
    bool read(const char* maker, const char* profile);
};

/// One window with the engine's handle on it.
class HostWindow {
public:
    /// @param handle  the engine's, without a context
    HostWindow(const HostRoad& road, HostScene& scene, orvex::RenderWindow* handle);
    /// Closes what the toolkit has: the engine's window ended with the engine.
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    /// Opens the window on the screen and leaves its context current.
    /// @param left   where it lies
    /// @param share  whose objects it shares; or null
    bool open(int left, const HostWindow* share);
    /// Ends what the scene has in the context, which stays current.
    void leave();
    /// Ends the context and the window.
    void close();
    void make_current();
    void draw(int frame, HostRecord& record);

    GLFWwindow* glfw = nullptr;

private:
    const HostRoad& road;
    HostScene& scene;
    orvex::RenderWindow* handle;

    void hint() const;
    bool make_context(const HostWindow* share);
};

/// What the user and the system ask for.
struct HostWishes {
    int frame = 0;
    bool draws = true;     ///< there is something new to show
    bool replaces = false; ///< w was hit; the host takes it back
    bool ends = false;     ///< Escape was hit, or a window was closed
};

/// Notes what is asked of the window.
void listen(GLFWwindow* window, HostWishes& wishes);
/// Waits until something is asked for. @return false when it is the end
bool wait(HostWishes& wishes);
