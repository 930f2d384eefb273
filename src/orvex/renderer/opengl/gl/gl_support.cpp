#include "orvex/renderer/opengl/gl/private/gl_support.h"

#include <cstring>
#include <string_view>

#include "orvex/renderer/opengl/gl/private/gl_functions.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

// Each row of the function table names its sources, best first. The first one that the context's
// version or extension list serves gives the name that is fetched.

namespace orvex {

namespace {

/// One way in which a context may serve an entry: from a version on, or by an extension. The suffix
/// follows the entry's name without its own "ARB".
struct GlSource {
    int since;             ///< 31 for 3.1; 0 for an extension
    const char* extension; ///< null for a version
    const char* suffix;
};

/// The sources of a row of the table, best first.
struct GlSupport {
    GlSource sources[3];
    bool compatibility_only = false;
};

constexpr GlSource none = {0, nullptr, ""};

constexpr GlSource core(int since) {
    return {since, nullptr, ""};
}

constexpr GlSource extension(const char* name, const char* suffix = "") {
    return {0, name, suffix};
}

// Versions as 31 for 3.1.
constexpr GlSupport core_1_2 = {{core(12), none, none}};
constexpr GlSupport core_1_3 = {{core(13), none, none}};
constexpr GlSupport compatibility_1_3 = {{core(13), none, none}, true};
constexpr GlSupport core_2_0 = {{core(20), none, none}};
constexpr GlSupport core_3_0 = {{core(30), none, none}};
constexpr GlSupport blend_equation = {{core(14), extension("GL_ARB_imaging"), none}};
constexpr GlSupport buffer_objects = {
    {core(15), extension("GL_ARB_vertex_buffer_object", "ARB"), none}};
constexpr GlSupport indexed_buffers = {{core(30), extension("GL_ARB_uniform_buffer_object"), none}};
constexpr GlSupport map_range = {{core(30), extension("GL_ARB_map_buffer_range"), none}};
constexpr GlSupport framebuffers = {{core(30), extension("GL_ARB_framebuffer_object"), none}};
constexpr GlSupport vertex_arrays = {{core(30), extension("GL_ARB_vertex_array_object"), none}};
constexpr GlSupport integer_shaders = {{core(30), extension("GL_EXT_gpu_shader4", "EXT"), none}};
constexpr GlSupport uniform_blocks = {{core(31), extension("GL_ARB_uniform_buffer_object"), none}};
constexpr GlSupport instanced_draw = {{extension("GL_ARB_draw_instanced", "ARB"), core(31),
                                       extension("GL_EXT_draw_instanced", "EXT")}};
constexpr GlSupport multisample_textures = {
    {core(32), extension("GL_ARB_texture_multisample"), none}};
constexpr GlSupport instanced_arrays = {
    {extension("GL_ARB_instanced_arrays", "ARB"), core(33), none}};
constexpr GlSupport double_uniforms = {{core(40), extension("GL_ARB_gpu_shader_fp64"), none}};
constexpr GlSupport images = {{core(42), extension("GL_ARB_shader_image_load_store"), none}};
constexpr GlSupport compute = {{core(43), extension("GL_ARB_compute_shader"), none}};
constexpr GlSupport bindless = {{extension("GL_ARB_bindless_texture", "ARB"), none, none}};

struct GlRow {
    const char* name;
    const GlSupport& support;
};

constexpr GlRow rows[] = {
#define ORVEX_GL_ROW(result, name, parameters, support) {#name, support},
    ORVEX_GL_FUNCTIONS(ORVEX_GL_ROW)
#undef ORVEX_GL_ROW
};

const GlRow* find_row(const char* name) {
    for (const GlRow& row : rows)
        if (std::strcmp(row.name, name) == 0)
            return &row;
    return nullptr;
}

std::string_view without_own_suffix(std::string_view name) {
    return name.ends_with("ARB") ? name.substr(0, name.size() - 3) : name;
}

bool serves(const GlSource& source, const GlCapabilities& capabilities) {
    if (source.extension)
        return capabilities.has_extension(source.extension);
    return source.since != 0 && capabilities.has_version(source.since);
}

bool reads_version(const char* text, int& major, int& minor) {
    if (!text || std::strlen(text) < 3)
        return false;
    major = text[0] - '0';
    minor = text[2] - '0';
    if (major >= 3) {
        glGetIntegerv(GL_MAJOR_VERSION, &major);
        glGetIntegerv(GL_MINOR_VERSION, &minor);
    }
    return true;
}

void read_extension_names(GlCapabilities& capabilities) {
    auto get_string = reinterpret_cast<PFNGLGETSTRINGIPROC>(
        capabilities.major >= 3 ? window_platform().get_proc_address("glGetStringi") : nullptr);
    if (get_string) {
        GLint count = 0;
        glGetIntegerv(GL_NUM_EXTENSIONS, &count);
        for (GLint i = 0; i < count; ++i) {
            const GLubyte* name = get_string(GL_EXTENSIONS, static_cast<GLuint>(i));
            if (name)
                capabilities.extensions.emplace(reinterpret_cast<const char*>(name));
        }
        return;
    }
    const char* text = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    std::string_view rest = text ? text : "";
    while (!rest.empty()) {
        const std::size_t end = rest.find(' ');
        if (end != 0)
            capabilities.extensions.emplace(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
}

// The words of the version text differ between drivers, so that the profile is never read from it.
bool has_fixed_pipeline(const GlCapabilities& capabilities) {
    if (capabilities.has_version(32)) {
        GLint profile = 0;
        glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
        return (profile & GL_CONTEXT_CORE_PROFILE_BIT) == 0;
    }
    return !capabilities.has_version(31) || capabilities.has_extension("GL_ARB_compatibility");
}

} // namespace

GlCapabilities read_gl_capabilities() {
    GlCapabilities capabilities;
    const char* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    if (!reads_version(version, capabilities.major, capabilities.minor))
        return capabilities;
    read_extension_names(capabilities);
    capabilities.compatibility = has_fixed_pipeline(capabilities);
    return capabilities;
}

bool is_gl_table_name(const char* name) {
    return find_row(name);
}

std::string choose_gl_entry(const char* name, const GlCapabilities& capabilities) {
    const GlRow* row = find_row(name);
    if (!row || (row->support.compatibility_only && !capabilities.compatibility))
        return {};
    for (const GlSource& source : row->support.sources)
        if (serves(source, capabilities))
            return std::string(without_own_suffix(row->name)) + source.suffix;
    return {};
}

} // namespace orvex
