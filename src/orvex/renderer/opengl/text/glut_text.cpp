#include "orvex/renderer/opengl/text/private/glut_text.h"

#include <atomic>
#include <cstdarg>

#include <dlfcn.h>

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
    void* handle;
    bool was_there;
};

Library open_library(const char* name) {
    if (void* const present = dlopen(name, RTLD_LAZY | RTLD_NOLOAD))
        return {present, true};
    return {dlopen(name, RTLD_LAZY | RTLD_LOCAL), false};
}

Library open_first(const char* wanted) {
    if (wanted != nullptr)
        return open_library(wanted);
    for (const char* name : {"libglut.so.3.12", "libglut.so.3", "libglut.so"}) {
        const Library found = open_library(name);
        if (found.handle != nullptr)
            return found;
    }
    return {nullptr, false};
}

template<typename Function>
Function find(void* handle, const char* name) {
    return reinterpret_cast<Function>(dlsym(handle, name));
}

} // namespace

GlutText::GlutText(const char* library)
    : library(library) {}

void GlutText::load() {
    tried = true;
    const Library found = open_first(library);
    if (found.handle == nullptr)
        return;
    const auto set_error_function =
        find<void (*)(ErrorFunction)>(found.handle, "glutInitErrorFunc");
    if (!found.was_there && set_error_function != nullptr) {
        set_error_function(ignore_error);
        brought_by_engine = true;
    }
    ours = brought_by_engine;
    get = find<int (*)(unsigned int)>(found.handle, "glutGet");
    draw_character = find<void (*)(void*, int)>(found.handle, "glutBitmapCharacter");
    font = dlsym(found.handle, "glutBitmapHelvetica12");
}

const char* GlutText::prepare() {
    if (!tried)
        load();
    if (draw_character == nullptr || font == nullptr || get == nullptr)
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
