// The driver's messages go into the log as they come, and objects get names. Both ask the
// environment first, so that an ordinary run makes no call for them.

#include "orvex/renderer/opengl/gl/private/gl_debug.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "orvex/base/log_mgr.h"
#include "orvex/renderer/opengl/gl/private/gl_functions.h"
#include "orvex/renderer/opengl/gl/private/gl_support.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"
#include "orvex/renderer/private/debug_name.h"

namespace orvex {

bool gl_debug_wanted() {
    const char* const value = std::getenv("ORVEX_GL_DEBUG");
    return value && *value != '\0' && std::strcmp(value, "0") != 0;
}

namespace {

/// Whether debugging is wanted and the current context has KHR_debug.
bool can_debug() {
    if (!gl_debug_wanted())
        return false;
    const GlCapabilities capabilities = read_gl_capabilities();
    return capabilities.has_version(43) || capabilities.has_extension("GL_KHR_debug");
}

/// Who listens to the current context's messages.
void* message_callback() {
    void* callback = nullptr;
    glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, &callback);
    return callback;
}

bool set_message_callback(GLDEBUGPROC callback) {
    const auto set = reinterpret_cast<PFNGLDEBUGMESSAGECALLBACKPROC>(
        window_platform().get_proc_address("glDebugMessageCallback"));
    if (!set)
        return false;
    set(callback, nullptr);
    return true;
}

} // namespace

void start_gl_messages() {
    if (!can_debug() || message_callback() || !set_message_callback(log_gl_message))
        return;
    glEnable(GL_DEBUG_OUTPUT);
    glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
}

void stop_gl_messages() {
    if (!can_debug() || message_callback() != reinterpret_cast<void*>(log_gl_message))
        return;
    glDisable(GL_DEBUG_OUTPUT);
    glDisable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    set_message_callback(nullptr);
}

void start_gl_labels(ORVEX_Renderer_OpenGL_Func& gl) {
    if (!can_debug())
        return;
    gl.object_label =
        reinterpret_cast<PFNGLOBJECTLABELPROC>(window_platform().get_proc_address("glObjectLabel"));
    if (gl.object_label)
        DebugName::want();
}

void label_gl_object(const ORVEX_Renderer_OpenGL_Func& gl, GLenum kind, GLuint id,
                     const char* use) {
    if (!gl.object_label || id == 0)
        return;
    // What every driver takes, with the terminator. A long name keeps its beginning and its use.
    constexpr int most_characters = 255;
    char text[most_characters + 1];
    const char* const name = DebugName::current();
    const int most_of_name = most_characters - static_cast<int>(std::strlen(use)) - 3;
    const int length = name
                           ? std::snprintf(text, sizeof(text), "%.*s (%s)", most_of_name, name, use)
                           : std::snprintf(text, sizeof(text), "%s", use);
    gl.object_label(kind, id, std::min(length, most_characters), text);
}

namespace {

struct Word {
    GLenum value;
    const char* text;
};

constexpr Word sources[] = {
    {GL_DEBUG_SOURCE_API, "API"},
    {GL_DEBUG_SOURCE_WINDOW_SYSTEM, "window system"},
    {GL_DEBUG_SOURCE_SHADER_COMPILER, "shader compiler"},
    {GL_DEBUG_SOURCE_THIRD_PARTY, "third party"},
    {GL_DEBUG_SOURCE_APPLICATION, "application"},
};

constexpr Word types[] = {
    {GL_DEBUG_TYPE_ERROR, "error"},
    {GL_DEBUG_TYPE_DEPRECATED_BEHAVIOR, "deprecated behaviour"},
    {GL_DEBUG_TYPE_UNDEFINED_BEHAVIOR, "undefined behaviour"},
    {GL_DEBUG_TYPE_PORTABILITY, "portability"},
    {GL_DEBUG_TYPE_PERFORMANCE, "performance"},
    {GL_DEBUG_TYPE_MARKER, "marker"},
    {GL_DEBUG_TYPE_PUSH_GROUP, "group begins"},
    {GL_DEBUG_TYPE_POP_GROUP, "group ends"},
};

template<std::size_t count>
const char* word_for(const Word (&words)[count], GLenum value) {
    for (const Word& word : words)
        if (word.value == value)
            return word.text;
    return "other";
}

LOG_LEVEL level_of(GLenum severity) {
    switch (severity) {
    case GL_DEBUG_SEVERITY_HIGH:
        return LOG_LEVEL_ERROR;
    case GL_DEBUG_SEVERITY_MEDIUM:
        return LOG_LEVEL_WARNING;
    case GL_DEBUG_SEVERITY_LOW:
        return LOG_LEVEL_INFO;
    default:
        return LOG_LEVEL_DEBUG;
    }
}

/// The text on one line, without white space at its end.
std::string one_line(std::string_view text) {
    std::string line(text);
    std::replace(line.begin(), line.end(), '\r', ' ');
    std::replace(line.begin(), line.end(), '\n', ' ');
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

void trace(LOG_LEVEL level, const std::string& line) {
    LogMgr* const log = LogMgr::get();
    switch (level) {
    case LOG_LEVEL_ERROR:
        log->trace_error(line.c_str());
        return;
    case LOG_LEVEL_WARNING:
        log->trace_warning(line.c_str());
        return;
    case LOG_LEVEL_INFO:
        log->trace(line.c_str());
        return;
    case LOG_LEVEL_DEBUG:
        log->trace_debug(line.c_str());
        return;
    }
}

} // namespace

void APIENTRY log_gl_message(GLenum source, GLenum type, GLuint id, GLenum severity, GLsizei length,
                             const GLchar* text, const void*) {
    // A host's log callback that draws would come here again while the log is still held.
    thread_local bool busy = false;
    if (busy || !text)
        return;
    busy = true;
    const std::string_view said = length < 0
                                      ? std::string_view(text)
                                      : std::string_view(text, static_cast<std::size_t>(length));
    trace(level_of(severity), std::string("OpenGL renderer - debug message ")
                                  .append(std::to_string(id))
                                  .append(" (")
                                  .append(word_for(sources, source))
                                  .append(", ")
                                  .append(word_for(types, type))
                                  .append("): ")
                                  .append(one_line(said)));
    busy = false;
}

} // namespace orvex
