#include "orvex/renderer/opengl/private/renderer_opengl.h"

namespace orvex {

namespace {

// Where the API lacks the constant it notes an error and writes nothing: the start value stays.
int get_integer(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

// The vendors' memory queries write up to four integers.
unsigned int get_first_of_four(GLenum name) {
    GLint values[4] = {};
    glGetIntegerv(name, values);
    return static_cast<unsigned int>(values[0]);
}

const char* get_text(GLenum name) {
    return reinterpret_cast<const char*>(glGetString(name));
}

constexpr GLenum gpu_memory_total_nvx = 36936;
constexpr GLenum gpu_memory_current_nvx = 36937;
constexpr GLenum vbo_free_memory_ati = 34811;
constexpr GLenum texture_free_memory_ati = 34812;
constexpr GLenum renderbuffer_free_memory_ati = 34813;
// The vendor's extension gives this number no meaning; it is asked for all the same.
constexpr GLenum total_physical_memory_ati = 34814;

} // namespace

unsigned int RendererOpenGL::get_opengl_error() {
    return glGetError();
}

const char* RendererOpenGL::get_renderer_model() {
    return get_text(GL_RENDERER);
}

const char* RendererOpenGL::get_renderer_vendor() {
    return get_text(GL_VENDOR);
}

const char* RendererOpenGL::get_shading_language_version() {
    return get_text(GL_SHADING_LANGUAGE_VERSION);
}

const char* RendererOpenGL::get_renderer_gl_extensions_raw_string() {
    return get_text(GL_EXTENSIONS);
}

const char* RendererOpenGL::get_api_version() {
    return get_text(GL_VERSION);
}

bool RendererOpenGL::get_opengl_version(int* major, int* minor) {
    const char* const text = get_text(GL_VERSION);
    if (text == nullptr || text[0] == '\0')
        return false;
    int found_major = text[0] - '0';
    int found_minor = 0;
    if (found_major >= 3) {
        found_major = get_integer(GL_MAJOR_VERSION);
        found_minor = get_integer(GL_MINOR_VERSION);
    } else if (text[1] != '\0' && text[2] != '\0') {
        found_minor = text[2] - '0';
    }
    if (major != nullptr)
        *major = found_major;
    if (minor != nullptr)
        *minor = found_minor;
    return true;
}

int RendererOpenGL::get_api_version_major() {
    return gl_major;
}

int RendererOpenGL::get_api_version_minor() {
    return gl_minor;
}

int RendererOpenGL::get_max_texture_units() {
    return get_integer(GL_MAX_TEXTURE_IMAGE_UNITS);
}

int RendererOpenGL::get_max_texture_size() {
    return get_integer(GL_MAX_TEXTURE_SIZE);
}

bool RendererOpenGL::is_geometry_instancing_supported() {
    return gl.glDrawElementsInstancedARB != nullptr && gl.glVertexAttribDivisorARB != nullptr;
}

float RendererOpenGL::get_max_texture_anisotropy() {
    GLfloat value = 0.0f;
    glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &value);
    return value;
}

unsigned int RendererOpenGL::get_gpu_memory_total_available_kb_nv() {
    return get_first_of_four(gpu_memory_total_nvx);
}

unsigned int RendererOpenGL::get_gpu_memory_current_available_kb_nv() {
    return get_first_of_four(gpu_memory_current_nvx);
}

unsigned int RendererOpenGL::get_gpu_memory_usage_kb_nv() {
    return get_gpu_memory_total_available_kb_nv() - get_gpu_memory_current_available_kb_nv();
}

unsigned int RendererOpenGL::get_num_gpus_amd() {
    return 0;
}

unsigned int RendererOpenGL::get_gpu_memory_total_available_kb_amd(unsigned long) {
    return 0;
}

unsigned int RendererOpenGL::get_gpu_total_physical_memory_amd() {
    return get_first_of_four(total_physical_memory_ati);
}

unsigned int RendererOpenGL::get_gpu_memory_usage_kb_amd() {
    return get_gpu_memory_total_available_kb_amd(0) - get_gpu_free_texture_memory_amd();
}

unsigned int RendererOpenGL::get_gpu_free_texture_memory_amd() {
    return get_first_of_four(texture_free_memory_ati);
}

unsigned int RendererOpenGL::get_gpu_free_vbo_memory_amd() {
    return get_first_of_four(vbo_free_memory_ati);
}

unsigned int RendererOpenGL::get_gpu_free_renderbuffer_memory_amd() {
    return get_first_of_four(renderbuffer_free_memory_ati);
}

int RendererOpenGL::get_max_vertex_attribs() {
    return get_integer(GL_MAX_VERTEX_ATTRIBS);
}

int RendererOpenGL::get_max_atomic_counter_buffer_size() {
    return get_integer(GL_MAX_ATOMIC_COUNTER_BUFFER_SIZE);
}

int RendererOpenGL::get_max_combined_atomic_counter_buffers() {
    return get_integer(GL_MAX_COMBINED_ATOMIC_COUNTER_BUFFERS);
}

int RendererOpenGL::get_max_combined_atomic_counters() {
    return get_integer(GL_MAX_COMBINED_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_vertex_atomic_counters() {
    return get_integer(GL_MAX_VERTEX_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_geometry_atomic_counters() {
    return get_integer(GL_MAX_GEOMETRY_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_fragment_atomic_counters() {
    return get_integer(GL_MAX_FRAGMENT_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_tess_control_atomic_counters() {
    return get_integer(GL_MAX_TESS_CONTROL_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_tess_eval_atomic_counters() {
    return get_integer(GL_MAX_TESS_EVALUATION_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_compute_atomic_counters() {
    return get_integer(GL_MAX_COMPUTE_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_GL_MAX_TEXTURE_SIZE() {
    return get_integer(GL_MAX_TEXTURE_SIZE);
}

int RendererOpenGL::get_GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS() {
    return get_integer(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS);
}

int RendererOpenGL::get_GL_MAX_VIEWPORT_DIMS() {
    GLint values[2] = {};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, values);
    return values[0];
}

int RendererOpenGL::get_GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS() {
    return get_integer(GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS);
}

int RendererOpenGL::get_GL_MAX_COLOR_ATTACHMENTS() {
    return get_integer(GL_MAX_COLOR_ATTACHMENTS);
}

int RendererOpenGL::get_GL_MAX_SAMPLES() {
    return get_integer(GL_MAX_SAMPLES);
}

namespace {

bool get_indexed(const ORVEX_Renderer_OpenGL_Func& gl, GLenum name, int* x, int* y, int* z) {
    if (gl.glGetIntegeri_v == nullptr)
        return false;
    int* const outputs[] = {x, y, z};
    for (GLuint i = 0; i < 3; ++i) {
        if (outputs[i] != nullptr) {
            *outputs[i] = 0;
            gl.glGetIntegeri_v(name, i, outputs[i]);
        }
    }
    return true;
}

} // namespace

bool RendererOpenGL::get_GL_MAX_COMPUTE_WORK_GROUP_COUNT(int* x, int* y, int* z) {
    return get_indexed(gl, GL_MAX_COMPUTE_WORK_GROUP_COUNT, x, y, z);
}

bool RendererOpenGL::get_GL_MAX_COMPUTE_WORK_GROUP_SIZE(int* x, int* y, int* z) {
    return get_indexed(gl, GL_MAX_COMPUTE_WORK_GROUP_SIZE, x, y, z);
}

} // namespace orvex
