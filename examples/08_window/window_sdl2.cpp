// A model in an SDL2 window: window_sdl2 lighthouse.obj
//
// SDL makes the window and its OpenGL context, and shows what was drawn; the engine adopts that
// context. So it works wherever SDL does, on X11 and on Wayland alike. Escape ends it.

#include <cstdio>
#include <cstring>
#include <string>

#include <SDL.h>
#include <orvex/orvex.h>

#include "model_stage.h"

static int fail(const std::string& reason) {
    std::fprintf(stderr, "window_sdl2: %s\n", reason.c_str());
    return 1;
}

static SDL_Window* open_window() {
    if (SDL_Init(SDL_INIT_VIDEO) != 0)
        return nullptr;
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 2);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    // Mesa's software renderer shows cleared pixels as black in a Wayland surface without alpha.
    if (std::strcmp(SDL_GetCurrentVideoDriver(), "wayland") == 0)
        SDL_GL_SetAttribute(SDL_GL_ALPHA_SIZE, 8);
    return SDL_CreateWindow("orvex in SDL2", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, 640,
                            480, SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE);
}

/// Waits until something happens, and takes all of it in.
/// @return false once the window was closed, or Escape was hit
static bool wait_for_events() {
    SDL_Event event;
    bool open = SDL_WaitEvent(&event) != 0;
    do {
        const bool escape = event.type == SDL_KEYDOWN && event.key.keysym.sym == SDLK_ESCAPE;
        open = open && !escape && event.type != SDL_QUIT;
    } while (SDL_PollEvent(&event));
    return open;
}

static int show(SDL_Window* window, SDL_GLContext context, const char* model) {
    ModelStage stage;
    if (!stage.window->osx_init_with_cocoa_nsgl_ctx(context))
        return fail("no context to adopt");
    if (const std::string mistake = stage.load(model); !mistake.empty())
        return fail(mistake);
    do {
        int width = 0;
        int height = 0;
        SDL_GL_GetDrawableSize(window, &width, &height);
        stage.window->update_size(width, height);
        stage.draw(width, height);
        SDL_GL_SwapWindow(window);
    } while (wait_for_events());
    return 0;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: window_sdl2 MODEL\n", stderr);
        return 2;
    }
    SDL_Window* const window = open_window();
    const SDL_GLContext context = window ? SDL_GL_CreateContext(window) : nullptr;
    if (!context)
        return fail(SDL_GetError());
    const int result = show(window, context, argv[1]);
    SDL_GL_DeleteContext(context);
    SDL_DestroyWindow(window);
    SDL_Quit();
    return result;
}
