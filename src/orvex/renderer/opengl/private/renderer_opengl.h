#pragma once

/// @file
/// The OpenGL back end.

#include <memory>
#include <vector>

#include "orvex/renderer/opengl/buffers/private/buffer_family.h"
#include "orvex/renderer/opengl/buffers/private/mesh_family.h"
#include "orvex/renderer/opengl/buffers/private/point_family.h"
#include "orvex/renderer/opengl/buffers/private/polyline_family.h"
#include "orvex/renderer/opengl/buffers/private/uniform_buffer_family.h"
#include "orvex/renderer/opengl/programs/private/attribute_family.h"
#include "orvex/renderer/opengl/programs/private/program_family.h"
#include "orvex/renderer/opengl/programs/private/uniform_family.h"
#include "orvex/renderer/opengl/state/private/fixed_pipeline_family.h"
#include "orvex/renderer/opengl/state/private/frame_family.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "orvex/renderer/opengl/state/private/query_family.h"
#include "orvex/renderer/opengl/state/private/render_state_family.h"
#include "orvex/renderer/opengl/state/private/shadow_family.h"
#include "orvex/renderer/opengl/targets/private/target_family.h"
#include "orvex/renderer/opengl/text/private/raster_text_family.h"
#include "orvex/renderer/opengl/textures/private/texture_family.h"
#include "orvex/renderer/opengl/textures/private/texture_unit_family.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

/// The renderer on OpenGL 2, 3.x and 4.x. What each operation does is told in `Renderer`.
///
/// The kernel makes it, the plugin registry holds it. It is made without a context; `start` takes
/// up the one that is current. No code path is chosen by the context's version: each record says
/// whether it is drawn with generic attributes and vertex array objects, or with client arrays.
///
/// It forwards: each family of operations (meshes, points, buffers, programs, textures, targets,
/// raster text, frame) is a class of its own with its own fields, over the one `GlState` that this
/// object is. A family is told here, in a source named after it, as `renderer_opengl_<family>.cpp`.
/// An operation that is made of others stays here and calls them through the virtual table, so that
/// a renderer that derives from this one may take over the parts.
class RendererOpenGL : public Renderer, public GlState {
public:
    RendererOpenGL();
    ~RendererOpenGL() override;

    using Renderer::vertex_buffer_kill;

    // Life cycle and state reset.
    bool initialize() override;
    bool terminate() override;
    bool start() override;
    bool stop() override;
    bool start_v2(bool display_function_pointers) override;
    RenderWindow* create_render_window() override;
    bool kill_render_window(RenderWindow* window) override;
    bool kill_all_render_windows() override;
    bool reset_render_states() override;

    // Render targets.
    RenderTarget* create_render_target() override;
    bool kill_render_target(RenderTarget* target) override;
    bool kill_render_target(int id) override;
    bool kill_all_render_targets() override;
    RenderTarget* get_render_target(int id) override;
    bool render_target_bind_color_tex(RenderTarget* target, int index, unsigned long unit) override;
    bool render_target_bind_depth_tex(RenderTarget* target, unsigned long unit) override;

    // Framebuffer objects, by their ids.
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

    // Identification and version.
    unsigned int get_opengl_error() override;
    const char* get_renderer_model() override;
    const char* get_renderer_vendor() override;
    const char* get_shading_language_version() override;
    const char* get_renderer_gl_extensions_raw_string() override;
    const char* get_api_version() override;
    bool get_opengl_version(int* major, int* minor) override;
    int get_api_version_major() override;
    int get_api_version_minor() override;

    // Limits.
    int get_max_texture_units() override;
    int get_max_texture_size() override;
    bool is_geometry_instancing_supported() override;
    float get_max_texture_anisotropy() override;

    // Vendor memory queries.
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

    // Attribute and atomic counter limits.
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

    // Limits named after their OpenGL constants.
    int get_GL_MAX_TEXTURE_SIZE() override;
    int get_GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS() override;
    int get_GL_MAX_VIEWPORT_DIMS() override;
    int get_GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS() override;
    int get_GL_MAX_COLOR_ATTACHMENTS() override;
    int get_GL_MAX_SAMPLES() override;
    bool get_GL_MAX_COMPUTE_WORK_GROUP_COUNT(int* x, int* y, int* z) override;
    bool get_GL_MAX_COMPUTE_WORK_GROUP_SIZE(int* x, int* y, int* z) override;

    // Clearing and reading the framebuffer.
    void clear_color_buffer(float r, float g, float b, float a) override;
    void clear_color_buffer(const vec4& color) override;
    void clear_depth_buffer(float depth) override;
    void clear_color_depth_buffers(float r, float g, float b, float a, float depth) override;
    void clear_color_depth_buffers(const vec4& color, float depth) override;
    void get_color_buffer_size(int* size, int* width, int* height) override;
    void get_color_buffer(unsigned char* pixels) override;

    // Matrices, viewport, scissor.
    void set_projection_matrix(mat4& matrix, bool apply) override;
    mat4& get_projection_matrix() override;
    void set_view_matrix(mat4& matrix, bool apply) override;
    mat4& get_view_matrix() override;
    void set_viewport(int x, int y, int width, int height) override;
    void get_viewport(int* x, int* y, int* width, int* height) override;
    int* get_viewport_ptr() override;
    void set_scissor(int x, int y, int width, int height) override;
    void set_scissor_state(bool state) override;

    // Depth, colour and blend state.
    void set_color_buffer_writing_state(bool state) override;
    void set_depth_test_state(bool state) override;
    void set_depth_buffer_writing_state(bool state) override;
    void set_depth_test_func(RENDERER_CMP_FUNC func) override;
    void set_blend_state(bool state) override;
    void set_blend_factors(RENDERER_BLEND_FACTOR src, RENDERER_BLEND_FACTOR dst) override;

    // Rasterizer state.
    void rasterizer_set_cull_state(bool state) override;
    void rasterizer_set_cull_face(RENDERER_POLYGON_FACE face) override;
    void rasterizer_set_polygon_mode(RENDERER_POLYGON_FACE face,
                                     RENDERER_POLYGON_MODE mode) override;
    void rasterizer_set_msaa_state(bool state) override;
    void rasterizer_set_depth_bias(float factor, float units) override;
    void rasterizer_apply_state() override;

    // Vertex buffers.
    bool vertex_buffer_prepare(MeshData* mesh) override;
    bool vertex_buffer_prepare_separate_arrays(MeshData* mesh) override;
    bool vertex_buffer_draw(MeshData* mesh) override;
    bool vertex_buffer_draw_with_shader_effect(MeshData* mesh, GpuProgramData* program) override;
    bool vertex_buffer_finish(MeshData* mesh) override;
    bool vertex_buffer_kill(MeshData* mesh) override;
    bool vertex_buffer_resize(MeshData* mesh) override;
    void force_buffer_object_usage(BUFFER_OBJECT_USAGE vertex_usage,
                                   BUFFER_OBJECT_USAGE index_usage) override;
    unsigned int vertex_buffer_create(unsigned long size, BUFFER_OBJECT_USAGE usage) override;
    bool vertex_buffer_kill(unsigned int id) override;
    bool vertex_buffer_invalidate(unsigned int id, unsigned long size,
                                  BUFFER_OBJECT_USAGE usage) override;
    void* vertex_buffer_map(unsigned int id) override;
    bool vertex_buffer_unmap(unsigned int id) override;

    // Shader storage buffers.
    void force_shader_storage_buffer_object_usage(BUFFER_OBJECT_USAGE usage) override;
    unsigned int shader_storage_buffer_create(unsigned long size, BUFFER_OBJECT_USAGE usage,
                                              void* data) override;
    bool shader_storage_buffer_kill(unsigned int id) override;
    void* shader_storage_buffer_map(unsigned int id) override;
    void* shader_storage_buffer_map_range(unsigned int id, unsigned long offset,
                                          unsigned long length) override;
    bool shader_storage_buffer_unmap(unsigned int id) override;
    bool shader_storage_buffer_bind(unsigned int id) override;
    bool shader_storage_buffer_bind_base(unsigned int id, unsigned int binding) override;
    void memory_barrier(unsigned int bits) override;

    // GPU programs.
    bool gpu_program_kill(GpuProgramData* program) override;
    bool gpu_program_load_shader_from_memory(GpuProgramData* program, GPU_SHADER_TYPE type,
                                             const char* source, unsigned long size) override;
    bool gpu_program_activate(GpuProgramData* program) override;
    bool gpu_program_deactivate(GpuProgramData* program) override;
    GpuProgramData* gpu_program_get_active_program() override;
    bool gpu_program_update_core_vertex_attrib_locations(GpuProgramData* program) override;
    bool gpu_program_update_user_vertex_attrib_locations_mesh(GpuProgramData* program,
                                                              MeshData* mesh) override;
    bool gpu_program_update_user_vertex_attrib_locations_polyline(GpuProgramData* program,
                                                                  PolylineData* polyline) override;
    bool gpu_program_update_instancing_vertex_attrib_locations_mesh(GpuProgramData* program,
                                                                    MeshData* mesh) override;
    bool gpu_program_update_instancing_vertex_attrib_locations(GpuProgramData* program) override;
    bool gpu_program_link(GpuProgramData* program) override;
    bool gpu_program_get_validate_status(GpuProgramData* program) override;
    bool gpu_program_run_compute(GpuProgramData* program, unsigned int x, unsigned int y,
                                 unsigned int z) override;
    bool gpu_program_get_shader_compile_status(GPU_SHADER_TYPE type, const char* source,
                                               char* message, unsigned long message_size) override;
    bool gpu_program_recreate_program(GpuProgramData* program) override;
    bool gpu_program_update_shader(GpuProgramData* program, GPU_SHADER_TYPE type,
                                   const char* source, unsigned long size) override;
    int gpu_program_get_vertex_attrib_location(GpuProgramData* program, const char* name) override;
    bool gpu_program_bind_vertex_attrib_location(GpuProgramData* program, const char* name,
                                                 int location) override;
    int gpu_program_get_uniform_location(GpuProgramData* program, const char* name) override;

    // Uniform setters by name and by location.
    void gpu_program_set_uniform_1i(GpuProgramData* program, const char* name, int value) override;
    void gpu_program_set_uniform_1f(GpuProgramData* program, const char* name,
                                    float value) override;
    void gpu_program_set_uniform_2i(GpuProgramData* program, const char* name, int x,
                                    int y) override;
    void gpu_program_set_uniform_2f(GpuProgramData* program, const char* name, float x,
                                    float y) override;
    void gpu_program_set_uniform_3i(GpuProgramData* program, const char* name, int x, int y,
                                    int z) override;
    void gpu_program_set_uniform_3f(GpuProgramData* program, const char* name, float x, float y,
                                    float z) override;
    void gpu_program_set_uniform_4i(GpuProgramData* program, const char* name, int x, int y, int z,
                                    int w) override;
    void gpu_program_set_uniform_1iv(GpuProgramData* program, const char* name, int* values,
                                     int count) override;
    void gpu_program_set_uniform_2iv(GpuProgramData* program, const char* name, int* values,
                                     int count) override;
    void gpu_program_set_uniform_3iv(GpuProgramData* program, const char* name, int* values,
                                     int count) override;
    void gpu_program_set_uniform_4iv(GpuProgramData* program, const char* name, int* values,
                                     int count) override;
    void gpu_program_set_uniform_4f(GpuProgramData* program, const char* name, float x, float y,
                                    float z, float w) override;
    void gpu_program_set_uniform_1fv(GpuProgramData* program, const char* name, float* values,
                                     int count) override;
    void gpu_program_set_uniform_2fv(GpuProgramData* program, const char* name, vec2* values,
                                     int count) override;
    void gpu_program_set_uniform_3fv(GpuProgramData* program, const char* name, vec3* values,
                                     int count) override;
    void gpu_program_set_uniform_4fv(GpuProgramData* program, const char* name, vec4* values,
                                     int count) override;
    void gpu_program_set_uniform_1dv(GpuProgramData* program, const char* name, double* values,
                                     int count) override;
    void gpu_program_set_uniform_2dv(GpuProgramData* program, const char* name, double* values,
                                     int count) override;
    void gpu_program_set_uniform_3dv(GpuProgramData* program, const char* name, double* values,
                                     int count) override;
    void gpu_program_set_uniform_4dv(GpuProgramData* program, const char* name, double* values,
                                     int count) override;
    void gpu_program_set_uniform_3x3fv(GpuProgramData* program, const char* name, float* values,
                                       int count) override;
    void gpu_program_set_uniform_4x4fv(GpuProgramData* program, const char* name, float* values,
                                       int count) override;
    void gpu_program_set_uniform_1i_loc(int location, int value) override;
    void gpu_program_set_uniform_1f_loc(int location, float value) override;
    void gpu_program_set_uniform_2i_loc(int location, int x, int y) override;
    void gpu_program_set_uniform_2f_loc(int location, float x, float y) override;
    void gpu_program_set_uniform_3i_loc(int location, int x, int y, int z) override;
    void gpu_program_set_uniform_3f(int location, float x, float y, float z) override;
    void gpu_program_set_uniform_4i_loc(int location, int x, int y, int z, int w) override;
    void gpu_program_set_uniform_4f_loc(int location, float x, float y, float z, float w) override;
    void gpu_program_set_uniform_4fv_loc(int location, vec4* values, int count) override;
    void gpu_program_set_uniform_3x3fv_loc(int location, float* values, int count) override;
    void gpu_program_set_uniform_4x4fv_loc(int location, float* values, int count) override;
    void gpu_program_set_uniform_1ui64(GpuProgramData* program, const char* name,
                                       unsigned long long value) override;
    void gpu_program_set_uniform_1ui64v(GpuProgramData* program, const char* name,
                                        unsigned long long* values, int count) override;
    void gpu_program_set_uniform_ui64_loc(int location, unsigned long long value) override;
    void gpu_program_set_uniform_ui64v_loc(int location, unsigned long count,
                                           unsigned long long* values) override;
    void gpu_program_set_uniform_1ui(GpuProgramData* program, const char* name,
                                     unsigned int value) override;
    void gpu_program_set_uniform_2ui(GpuProgramData* program, const char* name, unsigned int x,
                                     unsigned int y) override;
    void gpu_program_set_uniform_3ui(GpuProgramData* program, const char* name, unsigned int x,
                                     unsigned int y, unsigned int z) override;
    void gpu_program_set_uniform_4ui(GpuProgramData* program, const char* name, unsigned int x,
                                     unsigned int y, unsigned int z, unsigned int w) override;
    void gpu_program_set_uniform_1d(GpuProgramData* program, const char* name,
                                    double value) override;
    void gpu_program_set_uniform_2d(GpuProgramData* program, const char* name, double x,
                                    double y) override;
    void gpu_program_set_uniform_3d(GpuProgramData* program, const char* name, double x, double y,
                                    double z) override;
    void gpu_program_set_uniform_4d(GpuProgramData* program, const char* name, double x, double y,
                                    double z, double w) override;

    // Uniform table.
    bool gpu_program_bind_uniforms(GpuProgramData* program) override;
    bool gpu_program_optimize(GpuProgramData* program) override;

    // Textures.
    bool reset_all_texture_units() override;
    bool reset_texture_unit(unsigned long unit) override;
    bool texture_bind(TextureData* texture, unsigned long unit) override;
    bool texture_activate(TextureData* texture, unsigned long unit) override;
    bool texture_activate_rt(unsigned int id, unsigned long unit) override;
    bool texture_activate_rt_ms(unsigned int id, unsigned long unit) override;
    bool texture_activate_rect_rt(unsigned int id, unsigned long unit) override;
    bool texture_unload(TextureData* texture) override;
    bool texture_1d_load(TextureData* texture, unsigned long unit) override;
    bool texture_1d_update(TextureData* texture, int x, int width) override;
    bool texture_2d_load(TextureData* texture, unsigned long unit) override;
    bool texture_2d_update(TextureData* texture, int y, int x, int width, int height) override;
    bool texture_2d_update_pixmap(TextureData* texture, int y, int x, int width, int height,
                                  PIXEL_FORMAT format, void* pixels) override;
    bool texture_cube_load(TextureData* texture, unsigned long unit) override;
    bool texture_cube_update(TextureData* texture) override;
    void set_texture_anisotropy(TextureData* texture, float anisotropy) override;
    void set_texture_addressing_mode(TextureData* texture, SAMPLER_ADDRESSING_MODE mode) override;
    void set_texture_filtering_mode(TextureData* texture, SAMPLER_FILTERING_MODE mode) override;
    bool texture_2d_read_pixmap_rgb_u8(TextureData* texture) override;
    bool texture_2d_read_pixmap_rgba_u8(TextureData* texture) override;
    void set_texture1d_state(bool state) override;
    void set_texture2d_state(bool state) override;
    void set_texture3d_state(bool state) override;
    void set_texture_cube_state(bool state) override;
    void set_texture_state(TextureData* texture, bool state) override;
    bool image_texture_bind(TextureData* texture, unsigned long unit,
                            DATA_ACCESS_TYPE access) override;
    bool image_texture_activate(TextureData* texture, unsigned long unit,
                                DATA_ACCESS_TYPE access) override;
    bool bindless_texture_make_resident(TextureData* texture) override;
    bool bindless_texture_make_non_resident(TextureData* texture) override;

    // Raster text.
    bool font_bitmap_windows_create(FontData* font) override;
    bool font_bitmap_windows_kill(FontData* font) override;
    bool font_bitmap_windows_render(FontData* font, int x, int y, float r, float g, float b,
                                    float a, const char* text, unsigned long length) override;
    bool font_bitmap_windows_render_3d(FontData* font, float x, float y, float z, float r, float g,
                                       float b, float a, const char* text,
                                       unsigned long length) override;
    bool font_bitmap_windows_render_prepare(FontData* font, int x, int y, float r, float g, float b,
                                            float a, const char* text,
                                            unsigned long length) override;
    bool font_bitmap_windows_render_draw(FontData* font, int x, int y, float r, float g, float b,
                                         float a, const char* text, unsigned long length) override;
    bool font_bitmap_windows_render_finish(FontData* font, int x, int y, float r, float g, float b,
                                           float a, const char* text,
                                           unsigned long length) override;
    bool font_bitmap_linux_render(FontData* font, int x, int y, float r, float g, float b, float a,
                                  const char* text, unsigned long length) override;
    bool font_bitmap_linux_render_3d(FontData* font, float x, float y, float z, float r, float g,
                                     float b, float a, const char* text,
                                     unsigned long length) override;

    // Pipeline.
    void finish_pipeline() override;
    void flush_pipeline() override;

    // Matrices of the fixed pipeline.
    void gl2_matrix_load(float* projection, float* view, float* model, float* texture) override;
    void gl2_matrix_load_identity(bool projection, bool modelview, bool texture) override;

    // Vertex pools.
    bool vertex_pool_render(VertexPoolData* pool) override;
    bool vertex_pool_render_prepare(VertexPoolData* pool) override;
    bool vertex_pool_render_draw(VertexPoolData* pool) override;
    bool vertex_pool_render_finish(VertexPoolData* pool) override;
    bool vertex_pool_kill(VertexPoolData* pool) override;
    void vertex_pool_memory_barriers() override;

    // Lines.
    void set_line_width(float width) override;
    void set_line_stipple(int factor, unsigned short pattern) override;
    void render_line(const vec4& a, const vec4& a_color, const vec4& b,
                     const vec4& b_color) override;

    // Lights and materials of the fixed pipeline.
    void light_set_colors(unsigned int light, const vec4& ambient, const vec4& diffuse,
                          const vec4& specular) override;
    void light_set_ambient(unsigned int light, const vec4& color) override;
    void light_set_diffuse(unsigned int light, const vec4& color) override;
    void light_set_specular(unsigned int light, const vec4& color) override;
    void material_set_colors(const vec4& ambient, const vec4& diffuse, const vec4& specular,
                             float shininess) override;
    void material_set_ambient(const vec4& color) override;
    void material_set_diffuse(const vec4& color) override;
    void material_set_specular(const vec4& color) override;
    void material_set_shininess(float shininess) override;

    // Polyline buffers.
    bool polyline_vb_prepare(PolylineData* polyline) override;
    bool polyline_vb_prepare_gl2(PolylineData* polyline) override;
    bool polyline_vb_draw(PolylineData* polyline, int start, int count) override;
    bool polyline_vb_finish(PolylineData* polyline) override;
    bool polyline_vb_kill(PolylineData* polyline) override;

    // Depth bias.
    void set_depth_bias_factors(float factor, float units) override;
    void set_depth_bias_state(bool state) override;

    // Shadow mapping.
    void shadow_mapping_prepare_light_pass(RenderTarget* target, unsigned int unit,
                                           mat4& projection, mat4& view,
                                           GpuProgramData* program) override;
    void shadow_mapping_finish_light_pass(RenderTarget* target, unsigned int unit) override;
    void shadow_mapping_enable_zpass_states() override;
    void shadow_mapping_disable_zpass_states() override;

    // Atomic counters.
    void atomic_counter_force_buffer_object_usage(BUFFER_OBJECT_USAGE usage) override;
    unsigned int atomic_counter_create_buffer(unsigned long num_counters, BUFFER_OBJECT_USAGE usage,
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

    // Uniform buffers.
    bool uniform_buffer_initialize(UniformBufferData* buffer, unsigned int program) override;
    void force_uniform_buffer_object_usage(BUFFER_OBJECT_USAGE usage) override;
    bool uniform_buffer_kill(UniformBufferData* buffer) override;
    void* uniform_buffer_map(UniformBufferData* buffer) override;
    void* uniform_buffer_map_range(UniformBufferData* buffer, unsigned long offset,
                                   unsigned long length) override;
    bool uniform_buffer_unmap(UniformBufferData* buffer) override;
    bool uniform_buffer_bind(UniformBufferData* buffer) override;
    bool uniform_buffer_bind_base(UniformBufferData* buffer) override;
    bool uniform_buffer_unbind(UniformBufferData* buffer) override;

    /// @name State beside what the families share
    /// @{

    Renderer_Rasterizer_State& rasterizer_state;         ///< what the API holds
    Renderer_Rasterizer_State& pending_rasterizer_state; ///< what will be applied
    std::vector<RenderWindow*> render_windows;           ///< owned, in order of creation
    bool initialized = false;
    bool started = false;
    bool display_gl_func_ptr = false;
    /// @}

    /// @name Families
    /// Each has its fields to itself. They end in the reverse order.
    /// @{

    UniformFamily uniforms{*this};
    AttributeFamily attributes{*this};
    ProgramFamily programs{*this, attributes, uniforms};
    TextureUnitFamily texture_units{*this};
    TextureFamily textures{*this, texture_units, *this};
    TargetFamily targets{*this};
    RasterTextFamily raster_text{*this};
    /// @}

    /// @name Texture ids
    /// A list for extensions of the engine; loads don't enter anything.
    /// @{

    bool _add_texture_id(unsigned int id);
    /// @return whether the id was listed
    bool _remove_texture_id(unsigned int id);
    /// @}

    /// @name Parts of the texture operations
    /// @{

    /// The target that a texture's type is bound to; that of a 2D texture for null.
    unsigned int _get_gl_texture_target(TextureData* texture);
    /// Gives one face of the bound cube texture its pixels; false without a texture, and for a
    /// face with fewer pixels than face 0 asks for.
    bool texture_cube_load_face(TextureData* texture, CUBEMAP_FACE face, unsigned long unit);
    /// Sends one face of the bound cube texture again; false for other types, and for a face with
    /// fewer pixels than face 0 asks for.
    bool texture_cube_update_face(TextureData* texture, CUBEMAP_FACE face);
    /// @}

    /// @name Parts of the program operations
    /// @{

    /// Makes a shader object of a stage; 0 for a type without one.
    unsigned int _gpu_program_create_gl_shader(GPU_SHADER_TYPE type);
    /// The log of a shader, null for none. Valid until the next log is read.
    const char* _gpu_program_get_shader_info_log(unsigned int shader);
    /// The log of a program, null for none. Valid until the next log is read.
    const char* _gpu_program_get_info_log(unsigned int program);
    /// Moves the standard attribute `index` to the location of that number, from the next link on,
    /// if the linked program declares it. The first one found chooses the generic attributes path.
    /// @return the location it has now, below 0 if the program doesn't declare it
    int _bind_core_vertex_attrib_location(GpuProgramData* program, unsigned int index);
    /// The same for an attribute of any name; the path stays.
    int _bind_core_vertex_attrib_location_v2(GpuProgramData* program, const char* name, int index);
    /// @}

private:
    // Life cycle
    void log_life_cycle(const char* operation);

    // Buffers
    MeshFamily meshes;
    PointFamily points;
    PolylineFamily polylines;
    BufferFamily buffers;
    UniformBufferFamily uniform_buffers;

    // Frame and state
    FrameFamily frame;
    RenderStateFamily states;
    FixedPipelineFamily fixed_pipeline;
    ShadowFamily shadows;
    QueryFamily queries;
};

} // namespace orvex
