// A window of SDL's: host_sdl2 (gl3|gl2).

#include "orvex_kit/windows/sdl2.h"
#include "window_host.h"

using namespace orvex;

namespace {

/// @return false when the host is to end
bool take_event(const SDL_Event& event, int& frame) {
    if (event.type != SDL_KEYDOWN)
        return event.type != SDL_QUIT;
    frame += event.key.keysym.sym == SDLK_SPACE;
    return event.key.keysym.sym != SDLK_ESCAPE;
}

void show(SDL_Window* window, SDL_GLContext context, const kit::ViewOptions& options) {
    const kit::Engine engine;
    kit::Sdl2View host(window, context, options);
    orvex_test::TurningTorus torus;
    int frame = 0;
    SDL_Event event = {};
    do {
        const StateWatch watch;
        if (!host.frame([&](kit::View& view) { torus.draw(view, frame); }))
            std::fprintf(stderr, "%s\n", host.reason().c_str());
    } while (SDL_WaitEvent(&event) && take_event(event, frame));
}

} // namespace

int main(int argc, char** argv) {
    if (SDL_Init(SDL_INIT_VIDEO) != 0)
        return 1;
    SDL_Window* const window =
        SDL_CreateWindow("a host", 0, 0, 200, 150, SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE);
    const SDL_GLContext context = SDL_GL_CreateContext(window);
    if (!context)
        return 1;
    show(window, context, options_of(argc, argv));
    SDL_GL_DeleteContext(context);
    SDL_DestroyWindow(window);
    SDL_Quit();
    return 0;
}
