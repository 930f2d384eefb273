#include "orvex/renderer/opengl/state/private/context_mark.h"

#include <string>

#include "orvex/renderer/opengl/gl/private/gl_support.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex {

namespace {

/// The entry points of marks. A renderer's table is that of the context of its start.
struct MarkEntries {
    PFNGLGENVERTEXARRAYSPROC gen_arrays = nullptr;
    PFNGLBINDVERTEXARRAYPROC bind_array = nullptr;
    PFNGLISVERTEXARRAYPROC is_array = nullptr;
    PFNGLOBJECTLABELPROC set_label = nullptr;
    PFNGLGETOBJECTLABELPROC get_label = nullptr;

    bool complete() const {
        return has_entries(gen_arrays, bind_array, is_array, set_label, get_label);
    }
};

template<class Entry>
void fetch(Entry& entry, const char* name) {
    entry = reinterpret_cast<Entry>(window_platform().get_proc_address(name));
}

MarkEntries fetch_entries() {
    const GlCapabilities capabilities = read_gl_capabilities();
    const bool has_labels =
        capabilities.has_version(43) || capabilities.has_extension("GL_KHR_debug");
    MarkEntries entries;
    if (!has_labels || choose_gl_entry("glGenVertexArrays", capabilities).empty())
        return entries;
    fetch(entries.gen_arrays, "glGenVertexArrays");
    fetch(entries.bind_array, "glBindVertexArray");
    fetch(entries.is_array, "glIsVertexArray");
    fetch(entries.set_label, "glObjectLabel");
    fetch(entries.get_label, "glGetObjectLabel");
    return entries;
}

/// The reader of a frame's calls sees whose object it is.
std::string label_for(unsigned long long number) {
    return "orvex context " + std::to_string(number);
}

} // namespace

GLuint leave_context_mark(unsigned long long number) {
    const MarkEntries entries = fetch_entries();
    if (!entries.complete())
        return 0;
    const std::string label = label_for(number);
    GLuint mark = 0;
    GLint bound = 0;
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &bound);
    entries.gen_arrays(1, &mark);
    if (mark == 0)
        return 0;
    // It is an object, and can have a label, from its first bind on.
    entries.bind_array(mark);
    entries.bind_array(static_cast<GLuint>(bound));
    entries.set_label(GL_VERTEX_ARRAY, mark, static_cast<GLsizei>(label.size()), label.c_str());
    return mark;
}

bool has_context_mark(GLuint mark, unsigned long long number) {
    if (mark == 0)
        return false;
    const MarkEntries entries = fetch_entries();
    if (!entries.complete() || !entries.is_array(mark))
        return false;
    char label[64] = {};
    entries.get_label(GL_VERTEX_ARRAY, mark, sizeof(label), nullptr, label);
    return label == label_for(number);
}

} // namespace orvex
