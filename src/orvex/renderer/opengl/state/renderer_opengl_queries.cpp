// What the contract asks about the context, handed to its family. Sums are made here, of parts that
// a renderer that derives from this one may answer itself.

#include "orvex/renderer/opengl/private/renderer_opengl.h"

namespace orvex {

namespace {

constexpr GLenum gpu_memory_total_nvx = 36936;
constexpr GLenum gpu_memory_current_nvx = 36937;
constexpr GLenum vbo_free_memory_ati = 34811;
constexpr GLenum texture_free_memory_ati = 34812;
constexpr GLenum renderbuffer_free_memory_ati = 34813;
// The vendor's extension gives this number no meaning; it is asked for all the same.
constexpr GLenum total_physical_memory_ati = 34814;

} // namespace

unsigned int RendererOpenGL::get_opengl_error() {
    return queries.error();
}

const char* RendererOpenGL::get_renderer_model() {
    return queries.text(GL_RENDERER);
}

const char* RendererOpenGL::get_renderer_vendor() {
    return queries.text(GL_VENDOR);
}

const char* RendererOpenGL::get_shading_language_version() {
    return queries.text(GL_SHADING_LANGUAGE_VERSION);
}

const char* RendererOpenGL::get_renderer_gl_extensions_raw_string() {
    return queries.text(GL_EXTENSIONS);
}

const char* RendererOpenGL::get_api_version() {
    return queries.text(GL_VERSION);
}

bool RendererOpenGL::get_opengl_version(int* major, int* minor) {
    return queries.version(major, minor);
}

int RendererOpenGL::get_api_version_major() {
    return gl_major;
}

int RendererOpenGL::get_api_version_minor() {
    return gl_minor;
}

int RendererOpenGL::get_max_texture_units() {
    return queries.integer(GL_MAX_TEXTURE_IMAGE_UNITS);
}

int RendererOpenGL::get_max_texture_size() {
    return queries.integer(GL_MAX_TEXTURE_SIZE);
}

bool RendererOpenGL::is_geometry_instancing_supported() {
    return queries.has_instancing();
}

float RendererOpenGL::get_max_texture_anisotropy() {
    return queries.max_anisotropy();
}

unsigned int RendererOpenGL::get_gpu_memory_total_available_kb_nv() {
    return queries.first_of_four(gpu_memory_total_nvx);
}

unsigned int RendererOpenGL::get_gpu_memory_current_available_kb_nv() {
    return queries.first_of_four(gpu_memory_current_nvx);
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
    return queries.first_of_four(total_physical_memory_ati);
}

unsigned int RendererOpenGL::get_gpu_memory_usage_kb_amd() {
    return get_gpu_memory_total_available_kb_amd(0) - get_gpu_free_texture_memory_amd();
}

unsigned int RendererOpenGL::get_gpu_free_texture_memory_amd() {
    return queries.first_of_four(texture_free_memory_ati);
}

unsigned int RendererOpenGL::get_gpu_free_vbo_memory_amd() {
    return queries.first_of_four(vbo_free_memory_ati);
}

unsigned int RendererOpenGL::get_gpu_free_renderbuffer_memory_amd() {
    return queries.first_of_four(renderbuffer_free_memory_ati);
}

int RendererOpenGL::get_max_vertex_attribs() {
    return queries.integer(GL_MAX_VERTEX_ATTRIBS);
}

int RendererOpenGL::get_max_atomic_counter_buffer_size() {
    return queries.integer(GL_MAX_ATOMIC_COUNTER_BUFFER_SIZE);
}

int RendererOpenGL::get_max_combined_atomic_counter_buffers() {
    return queries.integer(GL_MAX_COMBINED_ATOMIC_COUNTER_BUFFERS);
}

int RendererOpenGL::get_max_combined_atomic_counters() {
    return queries.integer(GL_MAX_COMBINED_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_vertex_atomic_counters() {
    return queries.integer(GL_MAX_VERTEX_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_geometry_atomic_counters() {
    return queries.integer(GL_MAX_GEOMETRY_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_fragment_atomic_counters() {
    return queries.integer(GL_MAX_FRAGMENT_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_tess_control_atomic_counters() {
    return queries.integer(GL_MAX_TESS_CONTROL_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_tess_eval_atomic_counters() {
    return queries.integer(GL_MAX_TESS_EVALUATION_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_max_compute_atomic_counters() {
    return queries.integer(GL_MAX_COMPUTE_ATOMIC_COUNTERS);
}

int RendererOpenGL::get_GL_MAX_TEXTURE_SIZE() {
    return queries.integer(GL_MAX_TEXTURE_SIZE);
}

int RendererOpenGL::get_GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS() {
    return queries.integer(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS);
}

int RendererOpenGL::get_GL_MAX_VIEWPORT_DIMS() {
    return queries.first_of_two(GL_MAX_VIEWPORT_DIMS);
}

int RendererOpenGL::get_GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS() {
    return queries.integer(GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS);
}

int RendererOpenGL::get_GL_MAX_COLOR_ATTACHMENTS() {
    return queries.integer(GL_MAX_COLOR_ATTACHMENTS);
}

int RendererOpenGL::get_GL_MAX_SAMPLES() {
    return queries.integer(GL_MAX_SAMPLES);
}

bool RendererOpenGL::get_GL_MAX_COMPUTE_WORK_GROUP_COUNT(int* x, int* y, int* z) {
    return queries.indexed(GL_MAX_COMPUTE_WORK_GROUP_COUNT, x, y, z);
}

bool RendererOpenGL::get_GL_MAX_COMPUTE_WORK_GROUP_SIZE(int* x, int* y, int* z) {
    return queries.indexed(GL_MAX_COMPUTE_WORK_GROUP_SIZE, x, y, z);
}

} // namespace orvex
