#include "orvex/renderer/opengl/text/private/glut_text.h"

#include <atomic>
#include <cstdarg>

#include "orvex/platform/private/loaded_library.h"

namespace orvex {

namespace {

using ErrorFunction = void (*)(const char* format, va_list arguments);

// Returning is the point: GLUT's own error function ends the process.
void ignore_error(const char*, va_list) {}

constexpr unsigned int glut_init_state = 0x007C;

// Libraries that this process got from here. It outlives every renderer, as the libraries do: the
// second renderer must not take the first one's library for the host's.
std::atomic<bool> brought_by_engine = false;

struct Library {
    LoadedLibrary library;
    bool was_there;
};

Library open_library(const char* name) {
    const LoadedLibrary present(name);
    return present ? Library{present, true} : Library{LoadedLibrary::load(name), false};
}

Library open_first(const char* wanted) {
    if (wanted)
        return open_library(wanted);
    for (const char* name : {"libglut.so.3.12", "libglut.so.3"}) {
        const Library found = open_library(name);
        if (found.library)
            return found;
    }
    return open_library("libglut.so");
}

} // namespace

GlutText::GlutText(const char* library)
    : library(library) {}

void GlutText::load() {
    tried = true;
    const Library found = open_first(library);
    if (!found.library)
        return;
    // A host that brought the library has an error function of its own.
    void (*set_error_function)(ErrorFunction) = nullptr;
    found.library.look_up("glutInitErrorFunc", set_error_function);
    if (!found.was_there && set_error_function) {
        set_error_function(ignore_error);
        brought_by_engine = true;
    }
    ours = brought_by_engine;
    found.library.look_up("glutGet", get);
    found.library.look_up("glutBitmapCharacter", draw_character);
    found.library.look_up("glutBitmapHelvetica12", font);
}

const char* GlutText::prepare() {
    if (!tried)
        load();
    if (!draw_character || !font || !get)
        return "there is no GLUT library";
    if (!ours && get(glut_init_state) != 1)
        return "the host has not called glutInit";
    return nullptr;
}

void GlutText::draw(const char* text) const {
    for (; *text != '\0'; ++text)
        draw_character(font, static_cast<unsigned char>(*text));
}

} // namespace orvex
