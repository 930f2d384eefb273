#pragma once

/// @file
/// A view in a window of SDL 2.

#include <string>
#include <utility>

#include <SDL.h>

#include "orvex_kit/windows/host_view.h"

namespace orvex::kit {

/// A view in a window of SDL's with a context that the host made for it, which it leaves as it was.
/// For `Path::gl3` that is one of 3.2 or later (`SDL_GL_CONTEXT_MAJOR_VERSION`). Ends before the
/// context, on its thread.
///
/// @code
/// kit::Sdl2View host(window, SDL_GL_CreateContext(window));
/// host.frame([&](kit::View& view) { view.draw(model); });
/// @endcode
class Sdl2View {
public:
    /// @param window,context  live longer
    /// @param options         0 samples where the window was asked for some
    Sdl2View(SDL_Window* window, SDL_GLContext context, const ViewOptions& options = {})
        : window(window)
        , context(context)
        , host(options) {}
    /// Ends the view in its own context.
    ~Sdl2View() {
        const Current current(window, context);
        host.leave();
    }
    Sdl2View(const Sdl2View&) = delete;
    Sdl2View& operator=(const Sdl2View&) = delete;

    /// Draws a frame in the window's size and shows it. Another context that is current stays so.
    /// @param draw  called with the `View`
    /// @return whether there was one to draw; a hidden window has none
    template<class Draw>
    bool frame(Draw&& draw) {
        const Current current(window, context);
        int width = 0;
        int height = 0;
        SDL_GL_GetDrawableSize(window, &width, &height);
        if (!host.frame(width, height, std::forward<Draw>(draw)))
            return false;
        SDL_GL_SwapWindow(window);
        return true;
    }

    View& view() { return host.view(); }                        ///< empty before the first frame
    const std::string& reason() const { return host.reason(); } ///< why there was no frame

private:
    /// Makes a context current, and the one before at the end.
    class Current {
    public:
        Current(SDL_Window* window, SDL_GLContext context)
            : window(SDL_GL_GetCurrentWindow())
            , context(SDL_GL_GetCurrentContext()) {
            SDL_GL_MakeCurrent(window, context);
        }
        ~Current() {
            if (context)
                SDL_GL_MakeCurrent(window, context);
        }
        Current(const Current&) = delete;
        Current& operator=(const Current&) = delete;

    private:
        SDL_Window* window;
        SDL_GLContext context;
    };

    SDL_Window* window;
    SDL_GLContext context;
    HostView host;
};

} // namespace orvex::kit
