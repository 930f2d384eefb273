#include "gl_context.h"

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <sstream>
#include <utility>

#define EGL_NO_X11
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>

namespace orvex_test {

namespace {

template<typename Function>
Function entry(const char* name) {
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}

/// Displays that need no screen, in the order in which they are tried.
std::vector<EGLDisplay> headless_displays() {
    std::vector<EGLDisplay> displays;
    const auto platform_display =
        entry<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
    const auto query_devices = entry<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
    EGLDeviceEXT devices[16];
    EGLint count = 0;
    if (query_devices && query_devices(16, devices, &count))
        for (EGLint i = 0; i < count; ++i)
            displays.push_back(platform_display(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr));
    displays.push_back(
        platform_display(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr));
    displays.push_back(eglGetDisplay(EGL_DEFAULT_DISPLAY));
    return displays;
}

EGLDisplay headless_display() {
    static const EGLDisplay display = [] {
        for (EGLDisplay candidate : headless_displays())
            if (candidate != EGL_NO_DISPLAY && eglInitialize(candidate, nullptr, nullptr))
                return candidate;
        return EGL_NO_DISPLAY;
    }();
    return display;
}

/// The first configuration with exactly 8/8/8/8, 24 depth bits and neither stencil nor samples.
EGLConfig find_configuration(EGLDisplay display) {
    const EGLint wanted[] = {EGL_SURFACE_TYPE,
                             EGL_PBUFFER_BIT,
                             EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_BIT,
                             EGL_RED_SIZE,
                             8,
                             EGL_GREEN_SIZE,
                             8,
                             EGL_BLUE_SIZE,
                             8,
                             EGL_ALPHA_SIZE,
                             8,
                             EGL_DEPTH_SIZE,
                             24,
                             EGL_NONE};
    EGLConfig configs[256];
    EGLint count = 0;
    eglChooseConfig(display, wanted, configs, 256, &count);
    const auto exact = std::find_if(configs, configs + count, [&](EGLConfig config) {
        EGLint color = 0, depth = 0, stencil = 0, samples = 0;
        eglGetConfigAttrib(display, config, EGL_BUFFER_SIZE, &color);
        eglGetConfigAttrib(display, config, EGL_DEPTH_SIZE, &depth);
        eglGetConfigAttrib(display, config, EGL_STENCIL_SIZE, &stencil);
        eglGetConfigAttrib(display, config, EGL_SAMPLES, &samples);
        return color == 32 && depth == 24 && stencil == 0 && samples == 0;
    });
    if (exact != configs + count)
        return *exact;
    return count > 0 ? configs[0] : nullptr;
}

EGLContext create_context(EGLDisplay display, EGLConfig config, Profile profile, EGLContext share) {
    const bool core = profile == Profile::core;
    std::vector<EGLint> attributes = {EGL_CONTEXT_MAJOR_VERSION, core ? 3 : 2,
                                      EGL_CONTEXT_MINOR_VERSION, core ? 2 : 1,
                                      EGL_CONTEXT_FLAGS_KHR,     EGL_CONTEXT_OPENGL_DEBUG_BIT_KHR};
    if (core)
        attributes.insert(attributes.end(),
                          {EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT});
    attributes.push_back(EGL_NONE);
    return eglCreateContext(display, config, share, attributes.data());
}

void GLAPIENTRY note_message(GLenum, GLenum type, GLuint, GLenum, GLsizei, const GLchar* text,
                             const void* messages) {
    const auto list = static_cast<std::vector<GlMessage>*>(const_cast<void*>(messages));
    list->push_back({type == GL_DEBUG_TYPE_ERROR, text});
}

} // namespace

std::ostream& operator<<(std::ostream& out, Profile profile) {
    switch (profile) {
    case Profile::compatibility:
        return out << "compatibility";
    case Profile::core:
        return out << "core";
    case Profile::gl_2_1:
        return out << "gl_2_1";
    }
    return out << "profile " << static_cast<int>(profile);
}

struct GlContext::State {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;
    EGLSurface surface = EGL_NO_SURFACE;
    int width = 0;
    int height = 0;
    std::vector<GlMessage> messages;
};

GlContext::GlContext(Profile profile, int width, int height, const GlContext* share)
    : state(new State) {
    if (profile == Profile::gl_2_1)
        setenv("MESA_GL_VERSION_OVERRIDE", "2.1", 1);
    state->width = width;
    state->height = height;
    state->display = headless_display();
    eglBindAPI(EGL_OPENGL_API);
    const EGLConfig config = find_configuration(state->display);
    const EGLint size[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    state->surface = eglCreatePbufferSurface(state->display, config, size);
    state->context = create_context(state->display, config, profile,
                                    share ? share->state->context : EGL_NO_CONTEXT);
    make_current();
    if (!ok()) {
        ADD_FAILURE() << "no " << profile << " context without a screen, EGL error 0x" << std::hex
                      << eglGetError();
        return;
    }
    const std::string version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    if (profile == Profile::gl_2_1)
        EXPECT_EQ(version.substr(0, 3), "2.1") << "another context was made first in this process";
    glEnable(GL_DEBUG_OUTPUT);
    glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    if (const auto callback = entry<PFNGLDEBUGMESSAGECALLBACKPROC>("glDebugMessageCallback"))
        callback(note_message, &state->messages);
    EXPECT_NO_GL_ERROR();
}

GlContext::~GlContext() {
    if (eglGetCurrentContext() == state->context)
        release();
    if (state->surface != EGL_NO_SURFACE)
        eglDestroySurface(state->display, state->surface);
    if (state->context != EGL_NO_CONTEXT)
        eglDestroyContext(state->display, state->context);
}

bool GlContext::ok() const {
    return state->context != EGL_NO_CONTEXT && eglGetCurrentContext() == state->context;
}

int GlContext::width() const {
    return state->width;
}

int GlContext::height() const {
    return state->height;
}

void GlContext::make_current() const {
    eglBindAPI(EGL_OPENGL_API);
    eglMakeCurrent(state->display, state->surface, state->surface, state->context);
}

void GlContext::release() const {
    eglMakeCurrent(state->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

std::vector<GlMessage> GlContext::take_messages() {
    return std::exchange(state->messages, {});
}

std::vector<std::string> GlContext::take_errors() {
    std::vector<std::string> errors;
    for (const GlMessage& message : take_messages())
        if (message.is_error)
            errors.push_back(message.text);
    return errors;
}

std::string gl_error_name(unsigned int error) {
    switch (error) {
    case GL_NO_ERROR:
        return "GL_NO_ERROR";
    case GL_INVALID_ENUM:
        return "GL_INVALID_ENUM";
    case GL_INVALID_VALUE:
        return "GL_INVALID_VALUE";
    case GL_INVALID_OPERATION:
        return "GL_INVALID_OPERATION";
    case GL_STACK_OVERFLOW:
        return "GL_STACK_OVERFLOW";
    case GL_STACK_UNDERFLOW:
        return "GL_STACK_UNDERFLOW";
    case GL_OUT_OF_MEMORY:
        return "GL_OUT_OF_MEMORY";
    case GL_INVALID_FRAMEBUFFER_OPERATION:
        return "GL_INVALID_FRAMEBUFFER_OPERATION";
    default:
        return "error " + std::to_string(error);
    }
}

namespace {

std::vector<unsigned int> take_gl_errors() {
    std::vector<unsigned int> errors;
    // Bounded: without a context some drivers report an error for ever.
    for (unsigned int error = glGetError(); error != GL_NO_ERROR && errors.size() < 16;
         error = glGetError())
        errors.push_back(error);
    return errors;
}

} // namespace

testing::AssertionResult gl_error_is(unsigned int expected) {
    const std::vector<unsigned int> errors = take_gl_errors();
    if (errors.empty() && expected == GL_NO_ERROR)
        return testing::AssertionSuccess();
    if (errors.size() == 1 && errors[0] == expected)
        return testing::AssertionSuccess();
    testing::AssertionResult failure = testing::AssertionFailure();
    failure << "expected " << gl_error_name(expected) << ", got";
    if (errors.empty())
        failure << " GL_NO_ERROR";
    for (unsigned int error : errors)
        failure << " " << gl_error_name(error);
    return failure;
}

void forget_gl_errors() {
    take_gl_errors();
}

bool is_core_context() {
    GLint mask = 0;
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &mask);
    glGetError();
    return (mask & GL_CONTEXT_CORE_PROFILE_BIT) != 0;
}

void GlTest::SetUp() {
    gl = std::make_unique<GlContext>(GetParam());
    ASSERT_TRUE(gl->ok());
}

void GlTest::TearDown() {
    EXPECT_NO_GL_ERROR() << "left over at the end of the test";
    gl.reset();
}

void GlCompatibilityTest::TearDown() {
    EXPECT_NO_GL_ERROR() << "left over at the end of the test";
}

void GlCoreTest::TearDown() {
    EXPECT_NO_GL_ERROR() << "left over at the end of the test";
}

std::string profile_name(const testing::TestParamInfo<Profile>& info) {
    std::ostringstream name;
    name << info.param;
    return name.str();
}

} // namespace orvex_test
