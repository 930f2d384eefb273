#include "orvex/renderer/opengl/state/private/context_mark.h"

#include <string>

#include "orvex/renderer/opengl/gl/private/gl_support.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex {

namespace {

// A renderer's table of entry points is that of the context of its start.

template<class Entry>
void fetch(Entry& entry, const char* name) {
    entry = reinterpret_cast<Entry>(window_platform().get_proc_address(name));
}

bool has_labels(const GlCapabilities& capabilities) {
    return capabilities.has_version(43) || capabilities.has_extension("GL_KHR_debug");
}

/// The entry points of labels.
struct LabelEntries {
    PFNGLOBJECTLABELPROC set = nullptr;
    PFNGLGETOBJECTLABELPROC get = nullptr;

    void fetch_all() {
        fetch(set, "glObjectLabel");
        fetch(get, "glGetObjectLabel");
    }
    bool complete() const { return has_entries(set, get); }

    void write(GLenum kind, GLuint mark, const std::string& label) const {
        set(kind, mark, static_cast<GLsizei>(label.size()), label.c_str());
    }
    bool reads(GLenum kind, GLuint mark, const std::string& label) const {
        char text[64] = {};
        get(kind, mark, sizeof(text), nullptr, text);
        return label == text;
    }
};

struct ContextMarkEntries {
    LabelEntries labels;
    PFNGLGENVERTEXARRAYSPROC gen_arrays = nullptr;
    PFNGLBINDVERTEXARRAYPROC bind_array = nullptr;
    PFNGLISVERTEXARRAYPROC is_array = nullptr;

    ContextMarkEntries() {
        const GlCapabilities capabilities = read_gl_capabilities();
        if (!has_labels(capabilities) || choose_gl_entry("glGenVertexArrays", capabilities).empty())
            return;
        labels.fetch_all();
        fetch(gen_arrays, "glGenVertexArrays");
        fetch(bind_array, "glBindVertexArray");
        fetch(is_array, "glIsVertexArray");
    }
    bool complete() const {
        return labels.complete() && has_entries(gen_arrays, bind_array, is_array);
    }
};

struct GroupMarkEntries {
    LabelEntries labels;
    PFNGLCREATESHADERPROC create_shader = nullptr;
    PFNGLISSHADERPROC is_shader = nullptr;

    GroupMarkEntries() {
        const GlCapabilities capabilities = read_gl_capabilities();
        if (!has_labels(capabilities) || choose_gl_entry("glCreateShader", capabilities).empty())
            return;
        labels.fetch_all();
        fetch(create_shader, "glCreateShader");
        fetch(is_shader, "glIsShader");
    }
    bool complete() const { return labels.complete() && has_entries(create_shader, is_shader); }
};

/// The reader of a frame's calls sees whose object it is.
std::string context_label(unsigned long long number) {
    return "orvex context " + std::to_string(number);
}

std::string group_label(unsigned long long number) {
    return "orvex share group " + std::to_string(number);
}

} // namespace

GLuint leave_context_mark(unsigned long long number) {
    const ContextMarkEntries entries;
    if (!entries.complete())
        return 0;
    const std::string label = context_label(number);
    GLuint mark = 0;
    GLint bound = 0;
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &bound);
    entries.gen_arrays(1, &mark);
    if (mark == 0)
        return 0;
    // It is an object, and can have a label, from its first bind on.
    entries.bind_array(mark);
    entries.bind_array(static_cast<GLuint>(bound));
    entries.labels.write(GL_VERTEX_ARRAY, mark, label);
    return mark;
}

bool has_context_mark(GLuint mark, unsigned long long number) {
    if (mark == 0)
        return false;
    const ContextMarkEntries entries;
    return entries.complete() && entries.is_array(mark) &&
           entries.labels.reads(GL_VERTEX_ARRAY, mark, context_label(number));
}

GLuint leave_group_mark(unsigned long long number) {
    const GroupMarkEntries entries;
    if (!entries.complete())
        return 0;
    const std::string label = group_label(number);
    const GLuint mark = entries.create_shader(GL_VERTEX_SHADER);
    if (mark == 0)
        return 0;
    entries.labels.write(GL_SHADER, mark, label);
    // Reading it back, a driver that queues calls has it where the next context looks for it.
    return entries.labels.reads(GL_SHADER, mark, label) ? mark : 0;
}

bool has_group_mark(GLuint mark, unsigned long long number) {
    if (mark == 0)
        return false;
    const GroupMarkEntries entries;
    return entries.complete() && entries.is_shader(mark) &&
           entries.labels.reads(GL_SHADER, mark, group_label(number));
}

} // namespace orvex
