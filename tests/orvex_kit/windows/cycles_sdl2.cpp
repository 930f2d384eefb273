// Cycles of resize and hide in SDL 2: cycles_sdl2 (gl3|gl2) [SCALE].

#include "cycles.h"
#include "orvex_kit/windows/sdl2.h"
#include "window_host.h"

using namespace orvex;

namespace {

struct Host {
    orvex_test::Cycles& cycles;
    SDL_Window* window;
    kit::Sdl2View host;
    bool ends = false;

    void resize(int width, int height) { SDL_SetWindowSize(window, width, height); }
    void hide() { SDL_HideWindow(window); }
    void show() { SDL_ShowWindow(window); }
    void change(int) {}
    void turn() {
        SDL_Event event = {};
        for (int more = SDL_WaitEventTimeout(&event, 2); more != 0; more = SDL_PollEvent(&event)) {
            ends = ends || event.type == SDL_QUIT ||
                   (event.type == SDL_KEYDOWN && event.key.keysym.sym == SDLK_ESCAPE);
            if (event.type == SDL_MOUSEBUTTONDOWN)
                cycles.press(host.screen(), event.button.x, event.button.y);
        }
        const StateWatch watch;
        host.frame([&](kit::View& view) { cycles.draw(view); });
    }
};

int play(orvex_test::Cycles& cycles, const kit::ViewOptions& options) {
    SDL_Window* const window =
        SDL_CreateWindow("cycles", 0, 0, cycles.width, cycles.height,
                         SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI);
    const SDL_GLContext context = SDL_GL_CreateContext(window);
    int code = 1;
    if (context) {
        Host host{cycles, window, kit::Sdl2View(window, context, options)};
        code = cycles.run(host);
    }
    SDL_GL_DeleteContext(context);
    SDL_DestroyWindow(window);
    return code;
}

} // namespace

int main(int argc, char** argv) {
    // The first click counts as well, not only for the keyboard.
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    if (SDL_Init(SDL_INIT_VIDEO) != 0)
        return 1;
    int code = 1;
    {
        const kit::Engine engine;
        // Before the window's context, which may be of GLX: none of EGL takes its place.
        orvex_test::Cycles cycles = cycles_of(argc, argv);
        code = play(cycles, options_of(argc, argv));
    }
    SDL_Quit();
    return code;
}
