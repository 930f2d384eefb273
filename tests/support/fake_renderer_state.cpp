#include "fake_renderer.h"

#include <algorithm>

namespace orvex_test {

bool FakeRenderer::initialize() {
    record("initialize", {});
    return result("initialize");
}

bool FakeRenderer::terminate() {
    record("terminate", {});
    return result("terminate");
}

bool FakeRenderer::start() {
    record("start", {});
    return result("start");
}

bool FakeRenderer::stop() {
    record("stop", {});
    return result("stop");
}

bool FakeRenderer::start_v2(bool display_function_pointers) {
    record("start_v2", {text(display_function_pointers)});
    return result("start_v2");
}

orvex::RenderWindow* FakeRenderer::create_render_window() {
    record("create_render_window", {});
    return static_cast<orvex::RenderWindow*>(pointer("create_render_window"));
}

bool FakeRenderer::kill_render_window(orvex::RenderWindow* window) {
    record("kill_render_window", {text(window)});
    return result("kill_render_window");
}

bool FakeRenderer::kill_all_render_windows() {
    record("kill_all_render_windows", {});
    return result("kill_all_render_windows");
}

bool FakeRenderer::reset_render_states() {
    record("reset_render_states", {});
    return result("reset_render_states");
}

orvex::RenderTarget* FakeRenderer::create_render_target() {
    record("create_render_target", {});
    return static_cast<orvex::RenderTarget*>(pointer("create_render_target"));
}

bool FakeRenderer::kill_render_target(orvex::RenderTarget* target) {
    record("kill_render_target", {text(target)});
    return result("kill_render_target");
}

bool FakeRenderer::kill_render_target(int id) {
    record("kill_render_target", {text(id)});
    return result("kill_render_target");
}

bool FakeRenderer::kill_all_render_targets() {
    record("kill_all_render_targets", {});
    return result("kill_all_render_targets");
}

orvex::RenderTarget* FakeRenderer::get_render_target(int id) {
    record("get_render_target", {text(id)});
    return static_cast<orvex::RenderTarget*>(pointer("get_render_target"));
}

bool FakeRenderer::render_target_bind_color_tex(orvex::RenderTarget* target, int index,
                                                unsigned long unit) {
    record("render_target_bind_color_tex", {text(target), text(index), text(unit)});
    return result("render_target_bind_color_tex");
}

bool FakeRenderer::render_target_bind_depth_tex(orvex::RenderTarget* target, unsigned long unit) {
    record("render_target_bind_depth_tex", {text(target), text(unit)});
    return result("render_target_bind_depth_tex");
}

void FakeRenderer::fbo_bind(unsigned int id) {
    record("fbo_bind", {text(id)});
}

unsigned int FakeRenderer::fbo_get_current_bound() {
    record("fbo_get_current_bound", {});
    return static_cast<unsigned int>(number("fbo_get_current_bound"));
}

bool FakeRenderer::fbo_copy_color_buffer(unsigned int src, unsigned int dst, int width, int height,
                                         unsigned long index) {
    record("fbo_copy_color_buffer", {text(src), text(dst), text(width), text(height), text(index)});
    return result("fbo_copy_color_buffer");
}

bool FakeRenderer::fbo_copy_color_buffer_to_bound_fbo(unsigned int src, int width, int height,
                                                      unsigned long index) {
    record("fbo_copy_color_buffer_to_bound_fbo",
           {text(src), text(width), text(height), text(index)});
    return result("fbo_copy_color_buffer_to_bound_fbo");
}

bool FakeRenderer::fbo_blit(unsigned int src, int sx0, int sy0, int sx1, int sy1, unsigned int dst,
                            int dx0, int dy0, int dx1, int dy1, bool color, bool depth) {
    record("fbo_blit", {text(src), text(sx0), text(sy0), text(sx1), text(sy1), text(dst), text(dx0),
                        text(dy0), text(dx1), text(dy1), text(color), text(depth)});
    return result("fbo_blit");
}

bool FakeRenderer::fbo_resolve_multisampling(unsigned int src, int width, int height,
                                             unsigned int dst, int dst_width, int dst_height) {
    record("fbo_resolve_multisampling",
           {text(src), text(width), text(height), text(dst), text(dst_width), text(dst_height)});
    return result("fbo_resolve_multisampling");
}

unsigned int FakeRenderer::get_opengl_error() {
    record("get_opengl_error", {});
    return static_cast<unsigned int>(number("get_opengl_error"));
}

const char* FakeRenderer::get_renderer_model() {
    record("get_renderer_model", {});
    return static_cast<const char*>(pointer("get_renderer_model"));
}

const char* FakeRenderer::get_renderer_vendor() {
    record("get_renderer_vendor", {});
    return static_cast<const char*>(pointer("get_renderer_vendor"));
}

const char* FakeRenderer::get_shading_language_version() {
    record("get_shading_language_version", {});
    return static_cast<const char*>(pointer("get_shading_language_version"));
}

const char* FakeRenderer::get_renderer_gl_extensions_raw_string() {
    record("get_renderer_gl_extensions_raw_string", {});
    return static_cast<const char*>(pointer("get_renderer_gl_extensions_raw_string"));
}

const char* FakeRenderer::get_api_version() {
    record("get_api_version", {});
    return static_cast<const char*>(pointer("get_api_version"));
}

bool FakeRenderer::get_opengl_version(int* major, int* minor) {
    record("get_opengl_version", {text(major), text(minor)});
    if (major)
        *major = api_version_major;
    if (minor)
        *minor = api_version_minor;
    return result("get_opengl_version");
}

int FakeRenderer::get_api_version_major() {
    record("get_api_version_major", {});
    return api_version_major;
}

int FakeRenderer::get_api_version_minor() {
    record("get_api_version_minor", {});
    return api_version_minor;
}

int FakeRenderer::get_max_texture_units() {
    record("get_max_texture_units", {});
    return int(number("get_max_texture_units"));
}

int FakeRenderer::get_max_texture_size() {
    record("get_max_texture_size", {});
    return int(number("get_max_texture_size"));
}

bool FakeRenderer::is_geometry_instancing_supported() {
    record("is_geometry_instancing_supported", {});
    return result("is_geometry_instancing_supported");
}

float FakeRenderer::get_max_texture_anisotropy() {
    record("get_max_texture_anisotropy", {});
    return float(number("get_max_texture_anisotropy"));
}

unsigned int FakeRenderer::get_gpu_memory_total_available_kb_nv() {
    record("get_gpu_memory_total_available_kb_nv", {});
    return static_cast<unsigned int>(number("get_gpu_memory_total_available_kb_nv"));
}

unsigned int FakeRenderer::get_gpu_memory_current_available_kb_nv() {
    record("get_gpu_memory_current_available_kb_nv", {});
    return static_cast<unsigned int>(number("get_gpu_memory_current_available_kb_nv"));
}

unsigned int FakeRenderer::get_gpu_memory_usage_kb_nv() {
    record("get_gpu_memory_usage_kb_nv", {});
    return static_cast<unsigned int>(number("get_gpu_memory_usage_kb_nv"));
}

unsigned int FakeRenderer::get_num_gpus_amd() {
    record("get_num_gpus_amd", {});
    return static_cast<unsigned int>(number("get_num_gpus_amd"));
}

unsigned int FakeRenderer::get_gpu_memory_total_available_kb_amd(unsigned long gpu) {
    record("get_gpu_memory_total_available_kb_amd", {text(gpu)});
    return static_cast<unsigned int>(number("get_gpu_memory_total_available_kb_amd"));
}

unsigned int FakeRenderer::get_gpu_total_physical_memory_amd() {
    record("get_gpu_total_physical_memory_amd", {});
    return static_cast<unsigned int>(number("get_gpu_total_physical_memory_amd"));
}

unsigned int FakeRenderer::get_gpu_memory_usage_kb_amd() {
    record("get_gpu_memory_usage_kb_amd", {});
    return static_cast<unsigned int>(number("get_gpu_memory_usage_kb_amd"));
}

unsigned int FakeRenderer::get_gpu_free_texture_memory_amd() {
    record("get_gpu_free_texture_memory_amd", {});
    return static_cast<unsigned int>(number("get_gpu_free_texture_memory_amd"));
}

unsigned int FakeRenderer::get_gpu_free_vbo_memory_amd() {
    record("get_gpu_free_vbo_memory_amd", {});
    return static_cast<unsigned int>(number("get_gpu_free_vbo_memory_amd"));
}

unsigned int FakeRenderer::get_gpu_free_renderbuffer_memory_amd() {
    record("get_gpu_free_renderbuffer_memory_amd", {});
    return static_cast<unsigned int>(number("get_gpu_free_renderbuffer_memory_amd"));
}

int FakeRenderer::get_max_vertex_attribs() {
    record("get_max_vertex_attribs", {});
    return int(number("get_max_vertex_attribs"));
}

int FakeRenderer::get_max_atomic_counter_buffer_size() {
    record("get_max_atomic_counter_buffer_size", {});
    return int(number("get_max_atomic_counter_buffer_size"));
}

int FakeRenderer::get_max_combined_atomic_counter_buffers() {
    record("get_max_combined_atomic_counter_buffers", {});
    return int(number("get_max_combined_atomic_counter_buffers"));
}

int FakeRenderer::get_max_combined_atomic_counters() {
    record("get_max_combined_atomic_counters", {});
    return int(number("get_max_combined_atomic_counters"));
}

int FakeRenderer::get_max_vertex_atomic_counters() {
    record("get_max_vertex_atomic_counters", {});
    return int(number("get_max_vertex_atomic_counters"));
}

int FakeRenderer::get_max_geometry_atomic_counters() {
    record("get_max_geometry_atomic_counters", {});
    return int(number("get_max_geometry_atomic_counters"));
}

int FakeRenderer::get_max_fragment_atomic_counters() {
    record("get_max_fragment_atomic_counters", {});
    return int(number("get_max_fragment_atomic_counters"));
}

int FakeRenderer::get_max_tess_control_atomic_counters() {
    record("get_max_tess_control_atomic_counters", {});
    return int(number("get_max_tess_control_atomic_counters"));
}

int FakeRenderer::get_max_tess_eval_atomic_counters() {
    record("get_max_tess_eval_atomic_counters", {});
    return int(number("get_max_tess_eval_atomic_counters"));
}

int FakeRenderer::get_max_compute_atomic_counters() {
    record("get_max_compute_atomic_counters", {});
    return int(number("get_max_compute_atomic_counters"));
}

int FakeRenderer::get_GL_MAX_TEXTURE_SIZE() {
    record("get_GL_MAX_TEXTURE_SIZE", {});
    return int(number("get_GL_MAX_TEXTURE_SIZE"));
}

int FakeRenderer::get_GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS() {
    record("get_GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS", {});
    return int(number("get_GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS"));
}

int FakeRenderer::get_GL_MAX_VIEWPORT_DIMS() {
    record("get_GL_MAX_VIEWPORT_DIMS", {});
    return int(number("get_GL_MAX_VIEWPORT_DIMS"));
}

int FakeRenderer::get_GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS() {
    record("get_GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS", {});
    return int(number("get_GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS"));
}

int FakeRenderer::get_GL_MAX_COLOR_ATTACHMENTS() {
    record("get_GL_MAX_COLOR_ATTACHMENTS", {});
    return int(number("get_GL_MAX_COLOR_ATTACHMENTS"));
}

int FakeRenderer::get_GL_MAX_SAMPLES() {
    record("get_GL_MAX_SAMPLES", {});
    return int(number("get_GL_MAX_SAMPLES"));
}

bool FakeRenderer::get_GL_MAX_COMPUTE_WORK_GROUP_COUNT(int* x, int* y, int* z) {
    record("get_GL_MAX_COMPUTE_WORK_GROUP_COUNT", {text(x), text(y), text(z)});
    return result("get_GL_MAX_COMPUTE_WORK_GROUP_COUNT");
}

bool FakeRenderer::get_GL_MAX_COMPUTE_WORK_GROUP_SIZE(int* x, int* y, int* z) {
    record("get_GL_MAX_COMPUTE_WORK_GROUP_SIZE", {text(x), text(y), text(z)});
    return result("get_GL_MAX_COMPUTE_WORK_GROUP_SIZE");
}

void FakeRenderer::clear_color_buffer(float r, float g, float b, float a) {
    record("clear_color_buffer", {text(r), text(g), text(b), text(a)});
}

void FakeRenderer::clear_color_buffer(const orvex::vec4& color) {
    record("clear_color_buffer", {text(color)});
}

void FakeRenderer::clear_depth_buffer(float depth) {
    record("clear_depth_buffer", {text(depth)});
}

void FakeRenderer::clear_color_depth_buffers(float r, float g, float b, float a, float depth) {
    record("clear_color_depth_buffers", {text(r), text(g), text(b), text(a), text(depth)});
}

void FakeRenderer::clear_color_depth_buffers(const orvex::vec4& color, float depth) {
    record("clear_color_depth_buffers", {text(color), text(depth)});
}

void FakeRenderer::get_color_buffer_size(int* size, int* width, int* height) {
    record("get_color_buffer_size", {text(size), text(width), text(height)});
}

void FakeRenderer::get_color_buffer(unsigned char* pixels) {
    record("get_color_buffer", {text(pixels)});
}

void FakeRenderer::set_projection_matrix(orvex::mat4& matrix, bool apply) {
    record("set_projection_matrix", {text(matrix), text(apply)});
    projection_matrix = matrix;
}

orvex::mat4& FakeRenderer::get_projection_matrix() {
    record("get_projection_matrix", {});
    return projection_matrix;
}

void FakeRenderer::set_view_matrix(orvex::mat4& matrix, bool apply) {
    record("set_view_matrix", {text(matrix), text(apply)});
    view_matrix = matrix;
}

orvex::mat4& FakeRenderer::get_view_matrix() {
    record("get_view_matrix", {});
    return view_matrix;
}

void FakeRenderer::set_viewport(int x, int y, int width, int height) {
    record("set_viewport", {text(x), text(y), text(width), text(height)});
    const int values[] = {x, y, width, height};
    std::copy_n(values, 4, viewport);
}

void FakeRenderer::get_viewport(int* x, int* y, int* width, int* height) {
    record("get_viewport", {text(x), text(y), text(width), text(height)});
    int* const out[] = {x, y, width, height};
    for (int i = 0; i < 4; ++i)
        if (out[i])
            *out[i] = viewport[i];
}

int* FakeRenderer::get_viewport_ptr() {
    record("get_viewport_ptr", {});
    return viewport;
}

void FakeRenderer::set_scissor(int x, int y, int width, int height) {
    record("set_scissor", {text(x), text(y), text(width), text(height)});
}

void FakeRenderer::set_scissor_state(bool state) {
    record("set_scissor_state", {text(state)});
}

void FakeRenderer::set_color_buffer_writing_state(bool state) {
    record("set_color_buffer_writing_state", {text(state)});
}

void FakeRenderer::set_depth_test_state(bool state) {
    record("set_depth_test_state", {text(state)});
}

void FakeRenderer::set_depth_buffer_writing_state(bool state) {
    record("set_depth_buffer_writing_state", {text(state)});
}

void FakeRenderer::set_depth_test_func(orvex::RENDERER_CMP_FUNC func) {
    record("set_depth_test_func", {text(func)});
}

void FakeRenderer::set_blend_state(bool state) {
    record("set_blend_state", {text(state)});
}

void FakeRenderer::set_blend_factors(orvex::RENDERER_BLEND_FACTOR src,
                                     orvex::RENDERER_BLEND_FACTOR dst) {
    record("set_blend_factors", {text(src), text(dst)});
}

void FakeRenderer::rasterizer_set_cull_state(bool state) {
    record("rasterizer_set_cull_state", {text(state)});
}

void FakeRenderer::rasterizer_set_cull_face(orvex::RENDERER_POLYGON_FACE face) {
    record("rasterizer_set_cull_face", {text(face)});
}

void FakeRenderer::rasterizer_set_polygon_mode(orvex::RENDERER_POLYGON_FACE face,
                                               orvex::RENDERER_POLYGON_MODE mode) {
    record("rasterizer_set_polygon_mode", {text(face), text(mode)});
}

void FakeRenderer::rasterizer_set_msaa_state(bool state) {
    record("rasterizer_set_msaa_state", {text(state)});
}

void FakeRenderer::rasterizer_set_depth_bias(float factor, float units) {
    record("rasterizer_set_depth_bias", {text(factor), text(units)});
}

void FakeRenderer::rasterizer_apply_state() {
    record("rasterizer_apply_state", {});
}

bool FakeRenderer::vertex_buffer_prepare(orvex::MeshData* mesh) {
    record("vertex_buffer_prepare", {text(mesh)});
    return result("vertex_buffer_prepare");
}

bool FakeRenderer::vertex_buffer_prepare_separate_arrays(orvex::MeshData* mesh) {
    record("vertex_buffer_prepare_separate_arrays", {text(mesh)});
    return result("vertex_buffer_prepare_separate_arrays");
}

bool FakeRenderer::vertex_buffer_draw(orvex::MeshData* mesh) {
    record("vertex_buffer_draw", {text(mesh)});
    return result("vertex_buffer_draw");
}

bool FakeRenderer::vertex_buffer_draw_with_shader_effect(orvex::MeshData* mesh,
                                                         orvex::GpuProgramData* program) {
    record("vertex_buffer_draw_with_shader_effect", {text(mesh), text(program)});
    return result("vertex_buffer_draw_with_shader_effect");
}

bool FakeRenderer::vertex_buffer_finish(orvex::MeshData* mesh) {
    record("vertex_buffer_finish", {text(mesh)});
    return result("vertex_buffer_finish");
}

bool FakeRenderer::vertex_buffer_kill(orvex::MeshData* mesh) {
    record("vertex_buffer_kill", {text(mesh)});
    return result("vertex_buffer_kill");
}

bool FakeRenderer::vertex_buffer_resize(orvex::MeshData* mesh) {
    record("vertex_buffer_resize", {text(mesh)});
    return result("vertex_buffer_resize");
}

void FakeRenderer::force_buffer_object_usage(orvex::BUFFER_OBJECT_USAGE vertex_usage,
                                             orvex::BUFFER_OBJECT_USAGE index_usage) {
    record("force_buffer_object_usage", {text(vertex_usage), text(index_usage)});
}

unsigned int FakeRenderer::vertex_buffer_create(unsigned long size,
                                                orvex::BUFFER_OBJECT_USAGE usage) {
    record("vertex_buffer_create", {text(size), text(usage)});
    return static_cast<unsigned int>(number("vertex_buffer_create"));
}

bool FakeRenderer::vertex_buffer_kill(unsigned int id) {
    record("vertex_buffer_kill", {text(id)});
    return result("vertex_buffer_kill");
}

bool FakeRenderer::vertex_buffer_invalidate(unsigned int id, unsigned long size,
                                            orvex::BUFFER_OBJECT_USAGE usage) {
    record("vertex_buffer_invalidate", {text(id), text(size), text(usage)});
    return result("vertex_buffer_invalidate");
}

void* FakeRenderer::vertex_buffer_map(unsigned int id) {
    record("vertex_buffer_map", {text(id)});
    return pointer("vertex_buffer_map");
}

bool FakeRenderer::vertex_buffer_unmap(unsigned int id) {
    record("vertex_buffer_unmap", {text(id)});
    return result("vertex_buffer_unmap");
}

void FakeRenderer::force_shader_storage_buffer_object_usage(orvex::BUFFER_OBJECT_USAGE usage) {
    record("force_shader_storage_buffer_object_usage", {text(usage)});
}

unsigned int FakeRenderer::shader_storage_buffer_create(unsigned long size,
                                                        orvex::BUFFER_OBJECT_USAGE usage,
                                                        void* data) {
    record("shader_storage_buffer_create", {text(size), text(usage), text(data)});
    return static_cast<unsigned int>(number("shader_storage_buffer_create"));
}

bool FakeRenderer::shader_storage_buffer_kill(unsigned int id) {
    record("shader_storage_buffer_kill", {text(id)});
    return result("shader_storage_buffer_kill");
}

void* FakeRenderer::shader_storage_buffer_map(unsigned int id) {
    record("shader_storage_buffer_map", {text(id)});
    return pointer("shader_storage_buffer_map");
}

void* FakeRenderer::shader_storage_buffer_map_range(unsigned int id, unsigned long offset,
                                                    unsigned long length) {
    record("shader_storage_buffer_map_range", {text(id), text(offset), text(length)});
    return pointer("shader_storage_buffer_map_range");
}

bool FakeRenderer::shader_storage_buffer_unmap(unsigned int id) {
    record("shader_storage_buffer_unmap", {text(id)});
    return result("shader_storage_buffer_unmap");
}

bool FakeRenderer::shader_storage_buffer_bind(unsigned int id) {
    record("shader_storage_buffer_bind", {text(id)});
    return result("shader_storage_buffer_bind");
}

bool FakeRenderer::shader_storage_buffer_bind_base(unsigned int id, unsigned int binding) {
    record("shader_storage_buffer_bind_base", {text(id), text(binding)});
    return result("shader_storage_buffer_bind_base");
}

void FakeRenderer::memory_barrier(unsigned int bits) {
    record("memory_barrier", {text(bits)});
}

} // namespace orvex_test
