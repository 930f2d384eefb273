#pragma once

/// @file
/// A renderer without a graphics API, for tests of everything above the back end.

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "orvex/math/mat4.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/renderer.h"

namespace orvex_test {

/// Records every call as text, in order, and touches no graphics API.
///
/// Numbers stand as `%g` would print them, booleans as words, texts in double quotes, vectors and
/// matrices as lists in parentheses, a null pointer as "null" and any other pointer by the name
/// that `name_pointer` gave it, else as "pointer". Operations that return bool return true, those
/// with a number 0 and those with a pointer null, unless told otherwise below. A test that needs
/// more, such as ids written into a record, derives from this class and overrides the operation.
///
/// @code
/// FakeRenderer renderer;
/// object.display_tripod(&renderer, nullptr);
/// EXPECT_EQ(renderer.take_calls().front(), "gpu_program_get_active_program()");
/// @endcode
class FakeRenderer : public orvex::Renderer {
public:
    FakeRenderer();
    ~FakeRenderer() override;

    /// Every call since the last `take_calls`, such as "set_line_width(2)".
    std::vector<std::string> calls;
    /// Calls of these operations are left out of `calls`.
    std::vector<std::string> ignored;

    /// What operations of these names return instead of true.
    std::map<std::string, bool> results;
    /// What operations of these names return instead of 0.
    std::map<std::string, double> numbers;
    /// What operations of these names return instead of null.
    std::map<std::string, void*> pointers;

    /// What `gpu_program_get_active_program` returns; activate and deactivate set it.
    orvex::GpuProgramData* active_program = nullptr;
    orvex::mat4 projection_matrix;
    orvex::mat4 view_matrix;
    int viewport[4] = {0, 0, 640, 480};
    int api_version_major = 4;
    int api_version_minor = 5;

    /// Returns `calls` and empties it.
    std::vector<std::string> take_calls();
    /// How often an operation stands in `calls`, whatever its arguments.
    int count(const std::string& operation) const;
    /// Lets `pointer` stand as `name` in calls.
    void name_pointer(const void* pointer, const std::string& name);

    using Renderer::vertex_buffer_kill;

    bool initialize() override;
    bool terminate() override;
    bool start() override;
    bool stop() override;
    bool start_v2(bool display_function_pointers) override;
    orvex::RenderWindow* create_render_window() override;
    bool kill_render_window(orvex::RenderWindow* window) override;
    bool kill_all_render_windows() override;
    bool reset_render_states() override;
    orvex::RenderTarget* create_render_target() override;
    bool kill_render_target(orvex::RenderTarget* target) override;
    bool kill_render_target(int id) override;
    bool kill_all_render_targets() override;
    orvex::RenderTarget* get_render_target(int id) override;
    bool render_target_bind_color_tex(orvex::RenderTarget* target, int index,
                                      unsigned long unit) override;
    bool render_target_bind_depth_tex(orvex::RenderTarget* target, unsigned long unit) override;
    void fbo_bind(unsigned int id) override;
    unsigned int fbo_get_current_bound() override;
    bool fbo_copy_color_buffer(unsigned int src, unsigned int dst, int width, int height,
                               unsigned long index) override;
    bool fbo_copy_color_buffer_to_bound_fbo(unsigned int src, int width, int height,
                                            unsigned long index) override;
    bool fbo_blit(unsigned int src, int sx0, int sy0, int sx1, int sy1, unsigned int dst, int dx0,
                  int dy0, int dx1, int dy1, bool color, bool depth) override;
    bool fbo_resolve_multisampling(unsigned int src, int width, int height, unsigned int dst,
                                   int dst_width, int dst_height) override;
    unsigned int get_opengl_error() override;
    const char* get_renderer_model() override;
    const char* get_renderer_vendor() override;
    const char* get_shading_language_version() override;
    const char* get_renderer_gl_extensions_raw_string() override;
    const char* get_api_version() override;
    bool get_opengl_version(int* major, int* minor) override;
    int get_api_version_major() override;
    int get_api_version_minor() override;
    int get_max_texture_units() override;
    int get_max_texture_size() override;
    bool is_geometry_instancing_supported() override;
    float get_max_texture_anisotropy() override;
    unsigned int get_gpu_memory_total_available_kb_nv() override;
    unsigned int get_gpu_memory_current_available_kb_nv() override;
    unsigned int get_gpu_memory_usage_kb_nv() override;
    unsigned int get_num_gpus_amd() override;
    unsigned int get_gpu_memory_total_available_kb_amd(unsigned long gpu) override;
    unsigned int get_gpu_total_physical_memory_amd() override;
    unsigned int get_gpu_memory_usage_kb_amd() override;
    unsigned int get_gpu_free_texture_memory_amd() override;
    unsigned int get_gpu_free_vbo_memory_amd() override;
    unsigned int get_gpu_free_renderbuffer_memory_amd() override;
    int get_max_vertex_attribs() override;
    int get_max_atomic_counter_buffer_size() override;
    int get_max_combined_atomic_counter_buffers() override;
    int get_max_combined_atomic_counters() override;
    int get_max_vertex_atomic_counters() override;
    int get_max_geometry_atomic_counters() override;
    int get_max_fragment_atomic_counters() override;
    int get_max_tess_control_atomic_counters() override;
    int get_max_tess_eval_atomic_counters() override;
    int get_max_compute_atomic_counters() override;
    int get_GL_MAX_TEXTURE_SIZE() override;
    int get_GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS() override;
    int get_GL_MAX_VIEWPORT_DIMS() override;
    int get_GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS() override;
    int get_GL_MAX_COLOR_ATTACHMENTS() override;
    int get_GL_MAX_SAMPLES() override;
    bool get_GL_MAX_COMPUTE_WORK_GROUP_COUNT(int* x, int* y, int* z) override;
    bool get_GL_MAX_COMPUTE_WORK_GROUP_SIZE(int* x, int* y, int* z) override;
    void clear_color_buffer(float r, float g, float b, float a) override;
    void clear_color_buffer(const orvex::vec4& color) override;
    void clear_depth_buffer(float depth) override;
    void clear_color_depth_buffers(float r, float g, float b, float a, float depth) override;
    void clear_color_depth_buffers(const orvex::vec4& color, float depth) override;
    void get_color_buffer_size(int* size, int* width, int* height) override;
    void get_color_buffer(unsigned char* pixels) override;
    void set_projection_matrix(orvex::mat4& matrix, bool apply) override;
    orvex::mat4& get_projection_matrix() override;
    void set_view_matrix(orvex::mat4& matrix, bool apply) override;
    orvex::mat4& get_view_matrix() override;
    void set_viewport(int x, int y, int width, int height) override;
    void get_viewport(int* x, int* y, int* width, int* height) override;
    int* get_viewport_ptr() override;
    void set_scissor(int x, int y, int width, int height) override;
    void set_scissor_state(bool state) override;
    void set_color_buffer_writing_state(bool state) override;
    void set_depth_test_state(bool state) override;
    void set_depth_buffer_writing_state(bool state) override;
    void set_depth_test_func(orvex::RENDERER_CMP_FUNC func) override;
    void set_blend_state(bool state) override;
    void set_blend_factors(orvex::RENDERER_BLEND_FACTOR src,
                           orvex::RENDERER_BLEND_FACTOR dst) override;
    void rasterizer_set_cull_state(bool state) override;
    void rasterizer_set_cull_face(orvex::RENDERER_POLYGON_FACE face) override;
    void rasterizer_set_polygon_mode(orvex::RENDERER_POLYGON_FACE face,
                                     orvex::RENDERER_POLYGON_MODE mode) override;
    void rasterizer_set_msaa_state(bool state) override;
    void rasterizer_set_depth_bias(float factor, float units) override;
    void rasterizer_apply_state() override;
    bool vertex_buffer_prepare(orvex::MeshData* mesh) override;
    bool vertex_buffer_prepare_separate_arrays(orvex::MeshData* mesh) override;
    bool vertex_buffer_draw(orvex::MeshData* mesh) override;
    bool vertex_buffer_draw_with_shader_effect(orvex::MeshData* mesh,
                                               orvex::GpuProgramData* program) override;
    bool vertex_buffer_finish(orvex::MeshData* mesh) override;
    bool vertex_buffer_kill(orvex::MeshData* mesh) override;
    bool vertex_buffer_resize(orvex::MeshData* mesh) override;
    void force_buffer_object_usage(orvex::BUFFER_OBJECT_USAGE vertex_usage,
                                   orvex::BUFFER_OBJECT_USAGE index_usage) override;
    unsigned int vertex_buffer_create(unsigned long size,
                                      orvex::BUFFER_OBJECT_USAGE usage) override;
    bool vertex_buffer_kill(unsigned int id) override;
    bool vertex_buffer_invalidate(unsigned int id, unsigned long size,
                                  orvex::BUFFER_OBJECT_USAGE usage) override;
    void* vertex_buffer_map(unsigned int id) override;
    bool vertex_buffer_unmap(unsigned int id) override;
    void force_shader_storage_buffer_object_usage(orvex::BUFFER_OBJECT_USAGE usage) override;
    unsigned int shader_storage_buffer_create(unsigned long size, orvex::BUFFER_OBJECT_USAGE usage,
                                              void* data) override;
    bool shader_storage_buffer_kill(unsigned int id) override;
    void* shader_storage_buffer_map(unsigned int id) override;
    void* shader_storage_buffer_map_range(unsigned int id, unsigned long offset,
                                          unsigned long length) override;
    bool shader_storage_buffer_unmap(unsigned int id) override;
    bool shader_storage_buffer_bind(unsigned int id) override;
    bool shader_storage_buffer_bind_base(unsigned int id, unsigned int binding) override;
    void memory_barrier(unsigned int bits) override;
    bool gpu_program_kill(orvex::GpuProgramData* program) override;
    bool gpu_program_load_shader_from_memory(orvex::GpuProgramData* program,
                                             orvex::GPU_SHADER_TYPE type, const char* source,
                                             unsigned long size) override;
    bool gpu_program_activate(orvex::GpuProgramData* program) override;
    bool gpu_program_deactivate(orvex::GpuProgramData* program) override;
    orvex::GpuProgramData* gpu_program_get_active_program() override;
    bool gpu_program_update_core_vertex_attrib_locations(orvex::GpuProgramData* program) override;
    bool gpu_program_update_user_vertex_attrib_locations_mesh(orvex::GpuProgramData* program,
                                                              orvex::MeshData* mesh) override;
    bool gpu_program_update_user_vertex_attrib_locations_polyline(
        orvex::GpuProgramData* program, orvex::PolylineData* polyline) override;
    bool gpu_program_update_instancing_vertex_attrib_locations_mesh(orvex::GpuProgramData* program,
                                                                    orvex::MeshData* mesh) override;
    bool
    gpu_program_update_instancing_vertex_attrib_locations(orvex::GpuProgramData* program) override;
    bool gpu_program_link(orvex::GpuProgramData* program) override;
    bool gpu_program_get_validate_status(orvex::GpuProgramData* program) override;
    bool gpu_program_run_compute(orvex::GpuProgramData* program, unsigned int x, unsigned int y,
                                 unsigned int z) override;
    bool gpu_program_get_shader_compile_status(orvex::GPU_SHADER_TYPE type, const char* source,
                                               char* message, unsigned long message_size) override;
    bool gpu_program_recreate_program(orvex::GpuProgramData* program) override;
    bool gpu_program_update_shader(orvex::GpuProgramData* program, orvex::GPU_SHADER_TYPE type,
                                   const char* source, unsigned long size) override;
    int gpu_program_get_vertex_attrib_location(orvex::GpuProgramData* program,
                                               const char* name) override;
    bool gpu_program_bind_vertex_attrib_location(orvex::GpuProgramData* program, const char* name,
                                                 int location) override;
    int gpu_program_get_uniform_location(orvex::GpuProgramData* program, const char* name) override;
    void gpu_program_set_uniform_1i(orvex::GpuProgramData* program, const char* name,
                                    int value) override;
    void gpu_program_set_uniform_1f(orvex::GpuProgramData* program, const char* name,
                                    float value) override;
    void gpu_program_set_uniform_2i(orvex::GpuProgramData* program, const char* name, int x,
                                    int y) override;
    void gpu_program_set_uniform_2f(orvex::GpuProgramData* program, const char* name, float x,
                                    float y) override;
    void gpu_program_set_uniform_3i(orvex::GpuProgramData* program, const char* name, int x, int y,
                                    int z) override;
    void gpu_program_set_uniform_3f(orvex::GpuProgramData* program, const char* name, float x,
                                    float y, float z) override;
    void gpu_program_set_uniform_4i(orvex::GpuProgramData* program, const char* name, int x, int y,
                                    int z, int w) override;
    void gpu_program_set_uniform_1iv(orvex::GpuProgramData* program, const char* name, int* values,
                                     int count) override;
    void gpu_program_set_uniform_2iv(orvex::GpuProgramData* program, const char* name, int* values,
                                     int count) override;
    void gpu_program_set_uniform_3iv(orvex::GpuProgramData* program, const char* name, int* values,
                                     int count) override;
    void gpu_program_set_uniform_4iv(orvex::GpuProgramData* program, const char* name, int* values,
                                     int count) override;
    void gpu_program_set_uniform_4f(orvex::GpuProgramData* program, const char* name, float x,
                                    float y, float z, float w) override;
    void gpu_program_set_uniform_1fv(orvex::GpuProgramData* program, const char* name,
                                     float* values, int count) override;
    void gpu_program_set_uniform_2fv(orvex::GpuProgramData* program, const char* name,
                                     orvex::vec2* values, int count) override;
    void gpu_program_set_uniform_3fv(orvex::GpuProgramData* program, const char* name,
                                     orvex::vec3* values, int count) override;
    void gpu_program_set_uniform_4fv(orvex::GpuProgramData* program, const char* name,
                                     orvex::vec4* values, int count) override;
    void gpu_program_set_uniform_1dv(orvex::GpuProgramData* program, const char* name,
                                     double* values, int count) override;
    void gpu_program_set_uniform_2dv(orvex::GpuProgramData* program, const char* name,
                                     double* values, int count) override;
    void gpu_program_set_uniform_3dv(orvex::GpuProgramData* program, const char* name,
                                     double* values, int count) override;
    void gpu_program_set_uniform_4dv(orvex::GpuProgramData* program, const char* name,
                                     double* values, int count) override;
    void gpu_program_set_uniform_3x3fv(orvex::GpuProgramData* program, const char* name,
                                       float* values, int count) override;
    void gpu_program_set_uniform_4x4fv(orvex::GpuProgramData* program, const char* name,
                                       float* values, int count) override;
    void gpu_program_set_uniform_1i_loc(int location, int value) override;
    void gpu_program_set_uniform_1f_loc(int location, float value) override;
    void gpu_program_set_uniform_2i_loc(int location, int x, int y) override;
    void gpu_program_set_uniform_2f_loc(int location, float x, float y) override;
    void gpu_program_set_uniform_3i_loc(int location, int x, int y, int z) override;
    void gpu_program_set_uniform_3f(int location, float x, float y, float z) override;
    void gpu_program_set_uniform_4i_loc(int location, int x, int y, int z, int w) override;
    void gpu_program_set_uniform_4f_loc(int location, float x, float y, float z, float w) override;
    void gpu_program_set_uniform_4fv_loc(int location, orvex::vec4* values, int count) override;
    void gpu_program_set_uniform_3x3fv_loc(int location, float* values, int count) override;
    void gpu_program_set_uniform_4x4fv_loc(int location, float* values, int count) override;
    void gpu_program_set_uniform_1ui64(orvex::GpuProgramData* program, const char* name,
                                       unsigned long long value) override;
    void gpu_program_set_uniform_1ui64v(orvex::GpuProgramData* program, const char* name,
                                        unsigned long long* values, int count) override;
    void gpu_program_set_uniform_ui64_loc(int location, unsigned long long value) override;
    void gpu_program_set_uniform_ui64v_loc(int location, unsigned long count,
                                           unsigned long long* values) override;
    void gpu_program_set_uniform_1ui(orvex::GpuProgramData* program, const char* name,
                                     unsigned int value) override;
    void gpu_program_set_uniform_2ui(orvex::GpuProgramData* program, const char* name,
                                     unsigned int x, unsigned int y) override;
    void gpu_program_set_uniform_3ui(orvex::GpuProgramData* program, const char* name,
                                     unsigned int x, unsigned int y, unsigned int z) override;
    void gpu_program_set_uniform_4ui(orvex::GpuProgramData* program, const char* name,
                                     unsigned int x, unsigned int y, unsigned int z,
                                     unsigned int w) override;
    void gpu_program_set_uniform_1d(orvex::GpuProgramData* program, const char* name,
                                    double value) override;
    void gpu_program_set_uniform_2d(orvex::GpuProgramData* program, const char* name, double x,
                                    double y) override;
    void gpu_program_set_uniform_3d(orvex::GpuProgramData* program, const char* name, double x,
                                    double y, double z) override;
    void gpu_program_set_uniform_4d(orvex::GpuProgramData* program, const char* name, double x,
                                    double y, double z, double w) override;
    bool gpu_program_bind_uniforms(orvex::GpuProgramData* program) override;
    bool gpu_program_optimize(orvex::GpuProgramData* program) override;
    bool reset_all_texture_units() override;
    bool reset_texture_unit(unsigned long unit) override;
    bool texture_bind(orvex::TextureData* texture, unsigned long unit) override;
    bool texture_activate(orvex::TextureData* texture, unsigned long unit) override;
    bool texture_activate_rt(unsigned int id, unsigned long unit) override;
    bool texture_activate_rt_ms(unsigned int id, unsigned long unit) override;
    bool texture_activate_rect_rt(unsigned int id, unsigned long unit) override;
    bool texture_unload(orvex::TextureData* texture) override;
    bool texture_1d_load(orvex::TextureData* texture, unsigned long unit) override;
    bool texture_1d_update(orvex::TextureData* texture, int x, int width) override;
    bool texture_2d_load(orvex::TextureData* texture, unsigned long unit) override;
    bool texture_2d_update(orvex::TextureData* texture, int y, int x, int width,
                           int height) override;
    bool texture_2d_update_pixmap(orvex::TextureData* texture, int y, int x, int width, int height,
                                  orvex::PIXEL_FORMAT format, void* pixels) override;
    bool texture_cube_load(orvex::TextureData* texture, unsigned long unit) override;
    bool texture_cube_update(orvex::TextureData* texture) override;
    void set_texture_anisotropy(orvex::TextureData* texture, float anisotropy) override;
    void set_texture_addressing_mode(orvex::TextureData* texture,
                                     orvex::SAMPLER_ADDRESSING_MODE mode) override;
    void set_texture_filtering_mode(orvex::TextureData* texture,
                                    orvex::SAMPLER_FILTERING_MODE mode) override;
    bool texture_2d_read_pixmap_rgb_u8(orvex::TextureData* texture) override;
    bool texture_2d_read_pixmap_rgba_u8(orvex::TextureData* texture) override;
    void set_texture1d_state(bool state) override;
    void set_texture2d_state(bool state) override;
    void set_texture3d_state(bool state) override;
    void set_texture_cube_state(bool state) override;
    void set_texture_state(orvex::TextureData* texture, bool state) override;
    bool image_texture_bind(orvex::TextureData* texture, unsigned long unit,
                            orvex::DATA_ACCESS_TYPE access) override;
    bool image_texture_activate(orvex::TextureData* texture, unsigned long unit,
                                orvex::DATA_ACCESS_TYPE access) override;
    bool bindless_texture_make_resident(orvex::TextureData* texture) override;
    bool bindless_texture_make_non_resident(orvex::TextureData* texture) override;
    bool font_bitmap_windows_create(orvex::FontData* font) override;
    bool font_bitmap_windows_kill(orvex::FontData* font) override;
    bool font_bitmap_windows_render(orvex::FontData* font, int x, int y, float r, float g, float b,
                                    float a, const char* message, unsigned long length) override;
    bool font_bitmap_windows_render_3d(orvex::FontData* font, float x, float y, float z, float r,
                                       float g, float b, float a, const char* message,
                                       unsigned long length) override;
    bool font_bitmap_windows_render_prepare(orvex::FontData* font, int x, int y, float r, float g,
                                            float b, float a, const char* message,
                                            unsigned long length) override;
    bool font_bitmap_windows_render_draw(orvex::FontData* font, int x, int y, float r, float g,
                                         float b, float a, const char* message,
                                         unsigned long length) override;
    bool font_bitmap_windows_render_finish(orvex::FontData* font, int x, int y, float r, float g,
                                           float b, float a, const char* message,
                                           unsigned long length) override;
    bool font_bitmap_linux_render(orvex::FontData* font, int x, int y, float r, float g, float b,
                                  float a, const char* message, unsigned long length) override;
    bool font_bitmap_linux_render_3d(orvex::FontData* font, float x, float y, float z, float r,
                                     float g, float b, float a, const char* message,
                                     unsigned long length) override;
    void finish_pipeline() override;
    void flush_pipeline() override;
    void gl2_matrix_load(float* projection, float* view, float* model, float* texture) override;
    void gl2_matrix_load_identity(bool projection, bool modelview, bool texture) override;
    bool vertex_pool_render(orvex::VertexPoolData* pool) override;
    bool vertex_pool_render_prepare(orvex::VertexPoolData* pool) override;
    bool vertex_pool_render_draw(orvex::VertexPoolData* pool) override;
    bool vertex_pool_render_finish(orvex::VertexPoolData* pool) override;
    bool vertex_pool_kill(orvex::VertexPoolData* pool) override;
    void vertex_pool_memory_barriers() override;
    void set_line_width(float width) override;
    void set_line_stipple(int factor, unsigned short pattern) override;
    void render_line(const orvex::vec4& a, const orvex::vec4& a_color, const orvex::vec4& b,
                     const orvex::vec4& b_color) override;
    void light_set_colors(unsigned int light, const orvex::vec4& ambient,
                          const orvex::vec4& diffuse, const orvex::vec4& specular) override;
    void light_set_ambient(unsigned int light, const orvex::vec4& color) override;
    void light_set_diffuse(unsigned int light, const orvex::vec4& color) override;
    void light_set_specular(unsigned int light, const orvex::vec4& color) override;
    void material_set_colors(const orvex::vec4& ambient, const orvex::vec4& diffuse,
                             const orvex::vec4& specular, float shininess) override;
    void material_set_ambient(const orvex::vec4& color) override;
    void material_set_diffuse(const orvex::vec4& color) override;
    void material_set_specular(const orvex::vec4& color) override;
    void material_set_shininess(float shininess) override;
    bool polyline_vb_prepare(orvex::PolylineData* polyline) override;
    bool polyline_vb_prepare_gl2(orvex::PolylineData* polyline) override;
    bool polyline_vb_draw(orvex::PolylineData* polyline, int start, int count) override;
    bool polyline_vb_finish(orvex::PolylineData* polyline) override;
    bool polyline_vb_kill(orvex::PolylineData* polyline) override;
    void set_depth_bias_factors(float factor, float units) override;
    void set_depth_bias_state(bool state) override;
    void shadow_mapping_prepare_light_pass(orvex::RenderTarget* target, unsigned int unit,
                                           orvex::mat4& projection, orvex::mat4& view,
                                           orvex::GpuProgramData* program) override;
    void shadow_mapping_finish_light_pass(orvex::RenderTarget* target, unsigned int unit) override;
    void shadow_mapping_enable_zpass_states() override;
    void shadow_mapping_disable_zpass_states() override;
    void atomic_counter_force_buffer_object_usage(orvex::BUFFER_OBJECT_USAGE usage) override;
    unsigned int atomic_counter_create_buffer(unsigned long num_counters,
                                              orvex::BUFFER_OBJECT_USAGE usage,
                                              unsigned int binding, void* data) override;
    bool atomic_counter_kill_buffer(unsigned int id) override;
    bool atomic_counter_buffer_bind(unsigned int id) override;
    bool atomic_counter_set_value(unsigned int id, unsigned int value,
                                  unsigned long index) override;
    unsigned int atomic_counter_get_value(unsigned int id, unsigned long index) override;
    void* atomic_counter_buffer_map(unsigned int id) override;
    void* atomic_counter_buffer_map_range(unsigned int id, unsigned long offset,
                                          unsigned long length) override;
    bool atomic_counter_buffer_unmap(unsigned int id) override;
    bool atomic_counter_buffer_bind_base(unsigned int id, unsigned int binding) override;
    bool uniform_buffer_initialize(orvex::UniformBufferData* buffer, unsigned int program) override;
    void force_uniform_buffer_object_usage(orvex::BUFFER_OBJECT_USAGE usage) override;
    bool uniform_buffer_kill(orvex::UniformBufferData* buffer) override;
    void* uniform_buffer_map(orvex::UniformBufferData* buffer) override;
    void* uniform_buffer_map_range(orvex::UniformBufferData* buffer, unsigned long offset,
                                   unsigned long length) override;
    bool uniform_buffer_unmap(orvex::UniformBufferData* buffer) override;
    bool uniform_buffer_bind(orvex::UniformBufferData* buffer) override;
    bool uniform_buffer_bind_base(orvex::UniformBufferData* buffer) override;
    bool uniform_buffer_unbind(orvex::UniformBufferData* buffer) override;

private:
    std::string text(bool value) const;
    std::string text(const char* value) const;
    std::string text(const void* value) const;
    std::string text(const orvex::vec4& value) const;
    std::string text(const orvex::mat4& value) const;
    template<typename Number>
    std::string text(Number value) const {
        std::ostringstream out;
        out << +value;
        return out.str();
    }
    template<typename Value>
    std::string text(Value* value) const {
        return text(static_cast<const void*>(value));
    }
    std::string text(char* value) const { return text(static_cast<const void*>(value)); }

    void record(const std::string& operation, const std::vector<std::string>& arguments);
    bool result(const std::string& operation) const;
    double number(const std::string& operation) const;
    void* pointer(const std::string& operation) const;

    std::map<const void*, std::string> names_;
};

} // namespace orvex_test
