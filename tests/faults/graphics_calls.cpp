// What the engine asks of EGL and OpenGL: what makes something may be refused, and what was made is
// counted until it ends. Functions that the engine links are defined here; those that it fetches by
// name are given out by this program's eglGetProcAddress.

#include <array>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <set>
#include <string>

#define EGL_NO_X11
#define GL_GLEXT_PROTOTYPES
#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>

#include "fault.h"
#include "forward.h"

namespace orvex_test {
namespace {

/// Ids of one kind of object.
class Objects {
public:
    explicit Objects(const char* what)
        : name(what) {}
    void add(GLuint id) {
        if (id != 0)
            ids.insert(id);
    }
    void remove(GLuint id) { ids.erase(id); }
    void forget() { ids.clear(); }
    std::size_t count() const { return ids.size(); }
    const char* kind() const { return name; }

private:
    const char* name;
    std::multiset<GLuint> ids;
};

std::mutex guard;
Objects buffers("buffer");
Objects arrays("vertex array");
Objects frame_buffers("frame buffer");
Objects render_buffers("render buffer");
Objects textures("texture");
Objects programs("program");
Objects shaders("shader");
const std::array<Objects*, 7> all_objects = {&buffers,  &arrays,   &frame_buffers, &render_buffers,
                                             &textures, &programs, &shaders};

std::atomic<long> egl_objects = 0;

/// The error that a refused call left for the next question.
std::atomic<GLenum> pending_error = GL_NO_ERROR;

bool fails(const char* function, const void* place) {
    return is_engine(place) && is_to_fail(FaultKind::graphics, function, place);
}

/// A refusal for want of memory.
bool runs_out(const char* function, const void* place) {
    if (!fails(function, place))
        return false;
    pending_error = GL_OUT_OF_MEMORY;
    return true;
}

void note(Objects& objects, GLsizei count, const GLuint* ids, const void* place) {
    if (!is_engine(place))
        return;
    const std::lock_guard lock(guard);
    for (GLsizei i = 0; i < count; ++i)
        objects.add(ids[i]);
}

void drop(Objects& objects, GLsizei count, const GLuint* ids) {
    const std::lock_guard lock(guard);
    for (GLsizei i = 0; i < count; ++i)
        objects.remove(ids[i]);
}

#define ORVEX_PLACE __builtin_return_address(0)

/// The function that the system gives for a name.
template<class Function>
Function fetched(Function& kept, const char* name) {
    if (!kept)
        kept = reinterpret_cast<Function>(ORVEX_NEXT(eglGetProcAddress)(name));
    return kept;
}
#define ORVEX_FETCHED(name)                                                                        \
    ([]() {                                                                                        \
        static decltype(&::name) address = nullptr;                                                \
        return fetched(address, #name);                                                            \
    }())

#define ORVEX_MAKERS(gen, del, objects)                                                            \
    void APIENTRY my_##gen(GLsizei count, GLuint* ids) {                                           \
        if (runs_out(#gen, ORVEX_PLACE))                                                           \
            return;                                                                                \
        ORVEX_FETCHED(gen)(count, ids);                                                            \
        note(objects, count, ids, ORVEX_PLACE);                                                    \
    }                                                                                              \
    void APIENTRY my_##del(GLsizei count, const GLuint* ids) {                                     \
        drop(objects, count, ids);                                                                 \
        ORVEX_FETCHED(del)(count, ids);                                                            \
    }
ORVEX_MAKERS(glGenBuffers, glDeleteBuffers, buffers)
ORVEX_MAKERS(glGenVertexArrays, glDeleteVertexArrays, arrays)
ORVEX_MAKERS(glGenFramebuffers, glDeleteFramebuffers, frame_buffers)
ORVEX_MAKERS(glGenRenderbuffers, glDeleteRenderbuffers, render_buffers)

GLuint APIENTRY my_glCreateProgram() {
    if (runs_out("glCreateProgram", ORVEX_PLACE))
        return 0;
    const GLuint id = ORVEX_FETCHED(glCreateProgram)();
    note(programs, 1, &id, ORVEX_PLACE);
    return id;
}

void APIENTRY my_glDeleteProgram(GLuint id) {
    drop(programs, 1, &id);
    ORVEX_FETCHED(glDeleteProgram)(id);
}

GLuint APIENTRY my_glCreateShader(GLenum type) {
    if (runs_out("glCreateShader", ORVEX_PLACE))
        return 0;
    const GLuint id = ORVEX_FETCHED(glCreateShader)(type);
    note(shaders, 1, &id, ORVEX_PLACE);
    return id;
}

void APIENTRY my_glDeleteShader(GLuint id) {
    drop(shaders, 1, &id);
    ORVEX_FETCHED(glDeleteShader)(id);
}

/// Both ask how a compilation or a link came out; every other question is the driver's.
void APIENTRY my_glGetShaderiv(GLuint id, GLenum what, GLint* value) {
    ORVEX_FETCHED(glGetShaderiv)(id, what, value);
    if (what == GL_COMPILE_STATUS && fails("glCompileShader", ORVEX_PLACE))
        *value = GL_FALSE;
}

void APIENTRY my_glGetProgramiv(GLuint id, GLenum what, GLint* value) {
    ORVEX_FETCHED(glGetProgramiv)(id, what, value);
    if (what == GL_LINK_STATUS && fails("glLinkProgram", ORVEX_PLACE))
        *value = GL_FALSE;
}

GLenum APIENTRY my_glCheckFramebufferStatus(GLenum target) {
    if (fails("glCheckFramebufferStatus", ORVEX_PLACE))
        return GL_FRAMEBUFFER_UNSUPPORTED;
    return ORVEX_FETCHED(glCheckFramebufferStatus)(target);
}

/// What OpenGL does after it ran out is undefined, and the engine doesn't ask while it uploads: a
/// store without the contents stands for all of it. A buffer without any store crashes the software
/// driver.
void APIENTRY my_glBufferData(GLenum target, GLsizeiptr size, const void* data, GLenum usage) {
    const bool refused = runs_out("glBufferData", ORVEX_PLACE);
    ORVEX_FETCHED(glBufferData)(target, size, refused ? nullptr : data, usage);
}

void* APIENTRY my_glMapBuffer(GLenum target, GLenum access) {
    return runs_out("glMapBuffer", ORVEX_PLACE) ? nullptr
                                                : ORVEX_FETCHED(glMapBuffer)(target, access);
}

void* APIENTRY my_glMapBufferRange(GLenum target, GLintptr offset, GLsizeiptr length,
                                   GLbitfield access) {
    return runs_out("glMapBufferRange", ORVEX_PLACE)
               ? nullptr
               : ORVEX_FETCHED(glMapBufferRange)(target, offset, length, access);
}

void APIENTRY my_glRenderbufferStorage(GLenum target, GLenum format, GLsizei width,
                                       GLsizei height) {
    if (!runs_out("glRenderbufferStorage", ORVEX_PLACE))
        ORVEX_FETCHED(glRenderbufferStorage)(target, format, width, height);
}

void APIENTRY my_glRenderbufferStorageMultisample(GLenum target, GLsizei samples, GLenum format,
                                                  GLsizei width, GLsizei height) {
    if (!runs_out("glRenderbufferStorageMultisample", ORVEX_PLACE))
        ORVEX_FETCHED(glRenderbufferStorageMultisample)(target, samples, format, width, height);
}

void APIENTRY my_glTexImage2DMultisample(GLenum target, GLsizei samples, GLenum format,
                                         GLsizei width, GLsizei height, GLboolean fixed) {
    if (!runs_out("glTexImage2DMultisample", ORVEX_PLACE))
        ORVEX_FETCHED(glTexImage2DMultisample)(target, samples, format, width, height, fixed);
}

struct Entry {
    const char* name;
    void (*function)();
};

#define ORVEX_ENTRY(name)                                                                          \
    { #name, reinterpret_cast < void (*)()>(&my_##name) }
const Entry entries[] = {
    ORVEX_ENTRY(glGenBuffers),
    ORVEX_ENTRY(glDeleteBuffers),
    ORVEX_ENTRY(glGenVertexArrays),
    ORVEX_ENTRY(glDeleteVertexArrays),
    ORVEX_ENTRY(glGenFramebuffers),
    ORVEX_ENTRY(glDeleteFramebuffers),
    ORVEX_ENTRY(glGenRenderbuffers),
    ORVEX_ENTRY(glDeleteRenderbuffers),
    ORVEX_ENTRY(glCreateProgram),
    ORVEX_ENTRY(glDeleteProgram),
    ORVEX_ENTRY(glCreateShader),
    ORVEX_ENTRY(glDeleteShader),
    ORVEX_ENTRY(glGetShaderiv),
    ORVEX_ENTRY(glGetProgramiv),
    ORVEX_ENTRY(glCheckFramebufferStatus),
    ORVEX_ENTRY(glBufferData),
    ORVEX_ENTRY(glMapBuffer),
    ORVEX_ENTRY(glMapBufferRange),
    ORVEX_ENTRY(glRenderbufferStorage),
    ORVEX_ENTRY(glRenderbufferStorageMultisample),
    ORVEX_ENTRY(glTexImage2DMultisample),
};

} // namespace

unsigned long living_gl_objects() {
    const std::lock_guard lock(guard);
    unsigned long count = 0;
    for (const Objects* const objects : all_objects)
        count += objects->count();
    return count;
}

unsigned long living_egl_objects() {
    return static_cast<unsigned long>(egl_objects.load());
}

void forget_gl_objects() {
    const std::lock_guard lock(guard);
    for (Objects* const objects : all_objects)
        objects->forget();
    pending_error = GL_NO_ERROR;
}

const char* names_of_gl_objects() {
    static std::string text;
    text.clear();
    const std::lock_guard lock(guard);
    for (const Objects* const objects : all_objects)
        if (objects->count() > 0)
            text += " " + std::to_string(objects->count()) + " " + objects->kind();
    return text.c_str();
}

} // namespace orvex_test

using namespace orvex_test;

extern "C" {

ORVEX_EXPORT void APIENTRY glGenTextures(GLsizei count, GLuint* ids) {
    if (runs_out("glGenTextures", ORVEX_PLACE))
        return;
    ORVEX_NEXT(glGenTextures)(count, ids);
    note(textures, count, ids, ORVEX_PLACE);
}

ORVEX_EXPORT void APIENTRY glDeleteTextures(GLsizei count, const GLuint* ids) {
    drop(textures, count, ids);
    ORVEX_NEXT(glDeleteTextures)(count, ids);
}

ORVEX_EXPORT void APIENTRY glTexImage1D(GLenum target, GLint level, GLint inner, GLsizei width,
                                        GLint border, GLenum format, GLenum type,
                                        const void* pixels) {
    if (!runs_out("glTexImage1D", ORVEX_PLACE))
        ORVEX_NEXT(glTexImage1D)(target, level, inner, width, border, format, type, pixels);
}

ORVEX_EXPORT void APIENTRY glTexImage2D(GLenum target, GLint level, GLint inner, GLsizei width,
                                        GLsizei height, GLint border, GLenum format, GLenum type,
                                        const void* pixels) {
    if (!runs_out("glTexImage2D", ORVEX_PLACE))
        ORVEX_NEXT(glTexImage2D)(target, level, inner, width, height, border, format, type, pixels);
}

ORVEX_EXPORT GLenum APIENTRY glGetError() {
    const GLenum error = pending_error.exchange(GL_NO_ERROR);
    return error != GL_NO_ERROR ? error : ORVEX_NEXT(glGetError)();
}

ORVEX_EXPORT EGLBoolean EGLAPIENTRY eglInitialize(EGLDisplay display, EGLint* major,
                                                  EGLint* minor) {
    return fails("eglInitialize", ORVEX_PLACE) ? EGL_FALSE
                                               : ORVEX_NEXT(eglInitialize)(display, major, minor);
}

ORVEX_EXPORT EGLBoolean EGLAPIENTRY eglChooseConfig(EGLDisplay display, const EGLint* attributes,
                                                    EGLConfig* configs, EGLint size,
                                                    EGLint* count) {
    return fails("eglChooseConfig", ORVEX_PLACE)
               ? EGL_FALSE
               : ORVEX_NEXT(eglChooseConfig)(display, attributes, configs, size, count);
}

ORVEX_EXPORT EGLContext EGLAPIENTRY eglCreateContext(EGLDisplay display, EGLConfig config,
                                                     EGLContext share, const EGLint* attributes) {
    if (fails("eglCreateContext", ORVEX_PLACE))
        return EGL_NO_CONTEXT;
    const EGLContext context = ORVEX_NEXT(eglCreateContext)(display, config, share, attributes);
    egl_objects += context != EGL_NO_CONTEXT;
    return context;
}

ORVEX_EXPORT EGLBoolean EGLAPIENTRY eglDestroyContext(EGLDisplay display, EGLContext context) {
    const EGLBoolean ended = ORVEX_NEXT(eglDestroyContext)(display, context);
    egl_objects -= ended == EGL_TRUE;
    return ended;
}

ORVEX_EXPORT EGLSurface EGLAPIENTRY eglCreatePbufferSurface(EGLDisplay display, EGLConfig config,
                                                            const EGLint* attributes) {
    if (fails("eglCreatePbufferSurface", ORVEX_PLACE))
        return EGL_NO_SURFACE;
    const EGLSurface surface = ORVEX_NEXT(eglCreatePbufferSurface)(display, config, attributes);
    egl_objects += surface != EGL_NO_SURFACE;
    return surface;
}

ORVEX_EXPORT EGLBoolean EGLAPIENTRY eglDestroySurface(EGLDisplay display, EGLSurface surface) {
    const EGLBoolean ended = ORVEX_NEXT(eglDestroySurface)(display, surface);
    egl_objects -= ended == EGL_TRUE;
    return ended;
}

ORVEX_EXPORT EGLBoolean EGLAPIENTRY eglMakeCurrent(EGLDisplay display, EGLSurface draw,
                                                   EGLSurface read, EGLContext context) {
    if (context != EGL_NO_CONTEXT && fails("eglMakeCurrent", ORVEX_PLACE))
        return EGL_FALSE;
    return ORVEX_NEXT(eglMakeCurrent)(display, draw, read, context);
}

ORVEX_EXPORT __eglMustCastToProperFunctionPointerType EGLAPIENTRY
eglGetProcAddress(const char* name) {
    const auto address = ORVEX_NEXT(eglGetProcAddress)(name);
    if (!address || !is_engine(ORVEX_PLACE))
        return address;
    for (const Entry& entry : entries)
        if (std::strcmp(entry.name, name) == 0)
            return entry.function;
    return address;
}
}
