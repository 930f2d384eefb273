// The list of extensions, by index where the context can, else cut from the one text. A host builds
// it, and each build appends.

#include "orvex/renderer/opengl/window/private/render_window_opengl.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include <GL/gl.h>
#include <GL/glext.h>

#include "orvex/renderer/opengl/gl/private/gl_functions.h"
#include "orvex/renderer/opengl/window/private/render_window_opengl_data.h"

namespace orvex {

namespace {

using Extensions = std::vector<std::unique_ptr<OpenGLExtension>>;

/// Appends the names that an indexed list gives, and tells how many are not OpenGL's own.
int append_indexed(PFNGLGETSTRINGIPROC get_string, int count, Extensions& extensions) {
    int foreign = 0;
    for (int i = 0; i < count; ++i) {
        const auto* name =
            reinterpret_cast<const char*>(get_string(GL_EXTENSIONS, static_cast<GLuint>(i)));
        if (!name)
            continue;
        if (std::strncmp(name, "WGL", 3) == 0)
            ++foreign;
        extensions.push_back(std::make_unique<OpenGLExtension>(name));
    }
    return foreign;
}

/// Appends the names of a text in which each name is followed by a blank. What stands after the
/// last blank is no name.
void append_names(std::string_view text, Extensions& extensions) {
    constexpr std::size_t longest_name = 127;
    for (std::size_t blank = text.find(' '); blank != text.npos; blank = text.find(' ')) {
        const std::string name(text.substr(0, std::min(blank, longest_name)));
        extensions.push_back(std::make_unique<OpenGLExtension>(name.c_str()));
        text.remove_prefix(blank + 1);
    }
}

} // namespace

bool RenderWindowOpenGL::build_opengl_extensions_list() {
    GLint count = 0;
    const auto get_string =
        reinterpret_cast<PFNGLGETSTRINGIPROC>(_orvex_get_proc_address("glGetStringi"));
    if (get_string) {
        glGetIntegerv(GL_NUM_EXTENSIONS, &count);
        const int foreign = append_indexed(get_string, count, data2->extensions);
        data2->num_gl_extensions = count - foreign;
    }
    if (count != 0 && !data2->extensions.empty())
        return false;

    const auto* text = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    if (!text)
        return false;
    append_names(text, data2->extensions);
    data2->num_gl_extensions = static_cast<int>(data2->extensions.size());
    return data2->num_gl_extensions > 0;
}

bool RenderWindowOpenGL::destroy_opengl_extensions_list() {
    data2->extensions.clear();
    return true;
}

bool RenderWindowOpenGL::check_opengl_extension(const char* name) {
    if (!name)
        return false;
    const OpenGLExtension wanted(name);
    return std::any_of(data2->extensions.begin(), data2->extensions.end(),
                       [&](const auto& extension) { return *extension == wanted; });
}

unsigned long RenderWindowOpenGL::get_num_opengl_extensions() {
    return data2->extensions.size();
}

int RenderWindowOpenGL::get_num_GL_extensions() {
    return data2->num_gl_extensions;
}

int RenderWindowOpenGL::get_num_WGL_extensions() {
    return data2->num_wgl_extensions;
}

int RenderWindowOpenGL::get_num_GLX_extensions() {
    return data2->num_glx_extensions;
}

const char* RenderWindowOpenGL::get_opengl_extension(unsigned long index) {
    return index < data2->extensions.size() ? data2->extensions[index]->get_name() : nullptr;
}

} // namespace orvex
