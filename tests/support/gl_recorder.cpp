#include "gl_recorder.h"

#include <algorithm>
#include <mutex>
#include <string_view>
#include <utility>

#include <dlfcn.h>

#include "gl_call_text.h"
#include "gl_static_functions.h"
#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_functions.h"

namespace orvex_test {

namespace {

struct Call {
    std::string name;
    std::string text;
};

struct Log {
    std::mutex mutex;
    bool active = false;
    bool recording = false;
    std::vector<Call> calls;
};

Log& log() {
    static Log* const instance = new Log;
    return *instance;
}

void write_down(const GlSignature& signature, const std::vector<GlValue>& values) {
    const std::lock_guard<std::mutex> guard(log().mutex);
    if (log().recording)
        log().calls.push_back({signature.name(), signature.text(values)});
}

// The call is written down once it is done, so that ids that it makes can be told.
template<typename Result, typename... Arguments>
Result forward(const GlSignature& signature, Result (*real)(Arguments...), Arguments... arguments) {
    if (!log().active)
        return real(arguments...);
    if constexpr (std::is_void_v<Result>) {
        real(arguments...);
        write_down(signature, {GlValue::of(arguments)...});
    } else {
        const Result result = real(arguments...);
        write_down(signature, {GlValue::of(arguments)...});
        return result;
    }
}

void* real_address(const char* name) {
    static void* const library = dlopen("libOpenGL.so.0", RTLD_LAZY);
    return dlsym(library, name);
}

// A fetched function: the real one, and one of the same type that writes calls down.
template<typename Entry, typename Function>
struct Wrapped;

template<typename Entry, typename Result, typename... Arguments>
struct Wrapped<Entry, Result (*)(Arguments...)> {
    static inline Result (*real)(Arguments...) = nullptr;

    static Result call(Arguments... arguments) {
        return forward(Entry::signature(), real, arguments...);
    }

    static void* wrap(void* address) {
        real = reinterpret_cast<Result (*)(Arguments...)>(address);
        return reinterpret_cast<void*>(&call);
    }
};

struct TableEntry {
    const char* name;
    void* (*wrap)(void* address);
};

#define ORVEX_GL_ENTRY(result, name, parameters, support)                                          \
    struct Entry_##name {                                                                          \
        static const GlSignature& signature() {                                                    \
            static const GlSignature* const instance = new GlSignature(#name, #parameters);        \
            return *instance;                                                                      \
        }                                                                                          \
    };
ORVEX_GL_FUNCTIONS(ORVEX_GL_ENTRY)
#define ORVEX_GL_DEBUG_ENTRY(result, name, parameters) ORVEX_GL_ENTRY(result, name, parameters, )
ORVEX_GL_DEBUG_FUNCTIONS(ORVEX_GL_DEBUG_ENTRY)
#undef ORVEX_GL_DEBUG_ENTRY
#undef ORVEX_GL_ENTRY

#define ORVEX_GL_TABLE_ENTRY(result, name, parameters, support)                                    \
    {#name, &Wrapped<Entry_##name, decltype(orvex::ORVEX_Renderer_OpenGL_Func::name)>::wrap},
#define ORVEX_GL_DEBUG_TABLE_ENTRY(result, name, parameters)                                       \
    {#name, &Wrapped<Entry_##name, result(APIENTRY*) parameters>::wrap},
constexpr TableEntry table[] = {ORVEX_GL_FUNCTIONS(ORVEX_GL_TABLE_ENTRY)
                                    ORVEX_GL_DEBUG_FUNCTIONS(ORVEX_GL_DEBUG_TABLE_ENTRY)};
#undef ORVEX_GL_DEBUG_TABLE_ENTRY
#undef ORVEX_GL_TABLE_ENTRY

// An entry may be served under its name with another suffix.
std::string_view stem(std::string_view name) {
    return name.ends_with("ARB") || name.ends_with("EXT") ? name.substr(0, name.size() - 3) : name;
}

} // namespace

GlRecorder::GlRecorder() {
    const std::lock_guard<std::mutex> guard(log().mutex);
    log().calls.clear();
    log().active = true;
    log().recording = true;
    orvex::set_window_platform(this);
}

GlRecorder::~GlRecorder() {
    orvex::set_window_platform(nullptr);
    const std::lock_guard<std::mutex> guard(log().mutex);
    log().active = false;
    log().recording = false;
    log().calls.clear();
}

void GlRecorder::hide(const char* name) {
    hidden.emplace_back(stem(name));
}

GlCalls GlRecorder::calls() const {
    const std::lock_guard<std::mutex> guard(log().mutex);
    GlCalls texts;
    for (const Call& call : log().calls)
        texts.push_back(call.text);
    return texts;
}

GlCalls GlRecorder::names() const {
    const std::lock_guard<std::mutex> guard(log().mutex);
    GlCalls texts;
    for (const Call& call : log().calls)
        texts.push_back(call.name);
    return texts;
}

GlCalls GlRecorder::take() {
    GlCalls texts = calls();
    clear();
    return texts;
}

GlCalls GlRecorder::take_names() {
    GlCalls texts = names();
    clear();
    return texts;
}

int GlRecorder::count(const char* name) const {
    const GlCalls texts = names();
    return static_cast<int>(std::count(texts.begin(), texts.end(), name));
}

void GlRecorder::clear() {
    const std::lock_guard<std::mutex> guard(log().mutex);
    log().calls.clear();
}

void GlRecorder::set_recording(bool state) {
    const std::lock_guard<std::mutex> guard(log().mutex);
    log().recording = state;
}

std::unique_ptr<orvex::PlatformContext>
GlRecorder::create_context(const orvex::ContextRequest& request) {
    return orvex::native_window_platform().create_context(request);
}

std::unique_ptr<orvex::PlatformContext> GlRecorder::adopt_current_context(void* handle) {
    return orvex::native_window_platform().adopt_current_context(handle);
}

const void* GlRecorder::current_context() {
    return orvex::native_window_platform().current_context();
}

void GlRecorder::get_version(int& major, int& minor) {
    orvex::native_window_platform().get_version(major, minor);
}

void* GlRecorder::get_proc_address(const char* name) {
    if (std::find(hidden.begin(), hidden.end(), stem(name)) != hidden.end())
        return nullptr;
    void* const address = orvex::native_window_platform().get_proc_address(name);
    for (const TableEntry& entry : table)
        if (address != nullptr && stem(entry.name) == stem(name))
            return entry.wrap(address);
    return address;
}

} // namespace orvex_test

// The engine's archive refers to these by name, and the linker takes the program's own.
#define ORVEX_GL_LIST(...) __VA_OPT__(, ) __VA_ARGS__
#define ORVEX_GL_DEFINITION(result, name, parameters, arguments)                                   \
    extern "C" result APIENTRY name parameters {                                                   \
        static const orvex_test::GlSignature* const signature =                                    \
            new orvex_test::GlSignature(#name, #parameters);                                       \
        static const auto real =                                                                   \
            reinterpret_cast<decltype(&::name)>(orvex_test::real_address(#name));                  \
        return orvex_test::forward(*signature, real ORVEX_GL_LIST arguments);                      \
    }
ORVEX_GL_STATIC_FUNCTIONS(ORVEX_GL_DEFINITION)
#undef ORVEX_GL_DEFINITION
#undef ORVEX_GL_LIST
