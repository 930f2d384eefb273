#pragma once

/// @file
/// A view in a window of SDL 2.

#include <SDL.h>

#include "orvex_kit/windows/swapped_view.h"

namespace orvex::kit {

/// What a view draws on in SDL.
struct Sdl2Surface {
    SDL_Window* window;    ///< the host's
    SDL_GLContext context; ///< likewise

    /// What is drawn on now.
    static Sdl2Surface current() { return {SDL_GL_GetCurrentWindow(), SDL_GL_GetCurrentContext()}; }
    explicit operator bool() const { return context != nullptr; }      ///< whether there is one
    void make_current() const { SDL_GL_MakeCurrent(window, context); } ///< on this thread
    void swap() const { SDL_GL_SwapWindow(window); }                   ///< shows what was drawn
    /// Its size in pixels, and how many of them are a unit of the mouse's places.
    Screen screen() const {
        Screen screen{0, 0};
        int units = 0;
        SDL_GL_GetDrawableSize(window, &screen.width, &screen.height);
        SDL_GetWindowSize(window, &units, nullptr);
        if (units > 0 && screen.width > 0)
            screen.scale = static_cast<double>(screen.width) / units;
        return screen;
    }
};

/// A view in a window of SDL's with a context that the host made for it, which it leaves as it was.
/// For `Path::gl3` that is one of 3.2 or later (`SDL_GL_CONTEXT_MAJOR_VERSION`). Ends before the
/// context, on its thread.
///
/// @code
/// kit::Sdl2View host(window, SDL_GL_CreateContext(window));
/// host.frame([&](kit::View& view) { view.draw(model); });
/// @endcode
class Sdl2View : public SwappedView<Sdl2Surface> {
public:
    /// @param window,context  live longer
    /// @param options         0 samples where the window was asked for some
    Sdl2View(SDL_Window* window, SDL_GLContext context, const ViewOptions& options = {})
        : SwappedView({window, context}, options) {}
};

} // namespace orvex::kit
