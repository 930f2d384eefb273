#pragma once

/// @file
/// The one list of the operations that a back end implements, for classes that do the same with all
/// of them: refuse them, record them, hand them to another renderer. What each means stands in
/// renderer.h.

/// Expands to one row for each pure operation of `Renderer`, in the order of its header:
///
///     OPERATION(Result, name, (parameters), (arguments))
///
/// A class declares them by `Result name parameters override;` and hands them on by
/// `return other->name arguments;`. Only declared types occur: renderer.h names all of them.
/// @param OPERATION  macro of an operation whose plain refusal is false, null, 0 or nothing
/// @param STATE      macro of an operation on what a renderer keeps itself (life cycle, matrices,
///                   viewport, version, active program), or whose refusal is another value
// clang-format off
#define ORVEX_RENDERER_OPERATIONS(OPERATION, STATE)                                               \
    STATE(bool, initialize, (), ())                                                               \
    STATE(bool, terminate, (), ())                                                                \
    STATE(bool, start, (), ())                                                                    \
    STATE(bool, stop, (), ())                                                                     \
    STATE(bool, start_v2, (bool display_function_pointers), (display_function_pointers))          \
    OPERATION(RenderWindow*, create_render_window, (), ())                                        \
    OPERATION(bool, kill_render_window, (RenderWindow* window), (window))                         \
    OPERATION(bool, kill_all_render_windows, (), ())                                              \
    OPERATION(bool, reset_render_states, (), ())                                                  \
    OPERATION(RenderTarget*, create_render_target, (), ())                                        \
    OPERATION(bool, kill_render_target, (RenderTarget* target), (target))                         \
    OPERATION(bool, kill_render_target, (int id), (id))                                           \
    OPERATION(bool, kill_all_render_targets, (), ())                                              \
    OPERATION(RenderTarget*, get_render_target, (int id), (id))                                   \
    OPERATION(bool, render_target_bind_color_tex, (RenderTarget* target, int index,               \
              unsigned long unit), (target, index, unit))                                         \
    OPERATION(bool, render_target_bind_depth_tex, (RenderTarget* target, unsigned long unit),     \
              (target, unit))                                                                     \
    OPERATION(void, fbo_bind, (unsigned int id), (id))                                            \
    OPERATION(unsigned int, fbo_get_current_bound, (), ())                                        \
    OPERATION(bool, fbo_copy_color_buffer, (unsigned int src, unsigned int dst, int width,        \
              int height, unsigned long index), (src, dst, width, height, index))                 \
    OPERATION(bool, fbo_copy_color_buffer_to_bound_fbo, (unsigned int src, int width, int height, \
              unsigned long index), (src, width, height, index))                                  \
    OPERATION(bool, fbo_blit, (unsigned int src, int sx0, int sy0, int sx1, int sy1,              \
              unsigned int dst, int dx0, int dy0, int dx1, int dy1, bool color, bool depth),      \
              (src, sx0, sy0, sx1, sy1, dst, dx0, dy0, dx1, dy1, color, depth))                   \
    OPERATION(bool, fbo_resolve_multisampling, (unsigned int src, int width, int height,          \
              unsigned int dst, int dst_width, int dst_height),                                   \
              (src, width, height, dst, dst_width, dst_height))                                   \
    OPERATION(unsigned int, get_opengl_error, (), ())                                             \
    OPERATION(const char*, get_renderer_model, (), ())                                            \
    OPERATION(const char*, get_renderer_vendor, (), ())                                           \
    OPERATION(const char*, get_shading_language_version, (), ())                                  \
    OPERATION(const char*, get_renderer_gl_extensions_raw_string, (), ())                         \
    OPERATION(const char*, get_api_version, (), ())                                               \
    STATE(bool, get_opengl_version, (int* major, int* minor), (major, minor))                     \
    STATE(int, get_api_version_major, (), ())                                                     \
    STATE(int, get_api_version_minor, (), ())                                                     \
    OPERATION(int, get_max_texture_units, (), ())                                                 \
    OPERATION(int, get_max_texture_size, (), ())                                                  \
    OPERATION(bool, is_geometry_instancing_supported, (), ())                                     \
    OPERATION(float, get_max_texture_anisotropy, (), ())                                          \
    OPERATION(unsigned int, get_gpu_memory_total_available_kb_nv, (), ())                         \
    OPERATION(unsigned int, get_gpu_memory_current_available_kb_nv, (), ())                       \
    OPERATION(unsigned int, get_gpu_memory_usage_kb_nv, (), ())                                   \
    OPERATION(unsigned int, get_num_gpus_amd, (), ())                                             \
    OPERATION(unsigned int, get_gpu_memory_total_available_kb_amd, (unsigned long gpu), (gpu))    \
    OPERATION(unsigned int, get_gpu_total_physical_memory_amd, (), ())                            \
    OPERATION(unsigned int, get_gpu_memory_usage_kb_amd, (), ())                                  \
    OPERATION(unsigned int, get_gpu_free_texture_memory_amd, (), ())                              \
    OPERATION(unsigned int, get_gpu_free_vbo_memory_amd, (), ())                                  \
    OPERATION(unsigned int, get_gpu_free_renderbuffer_memory_amd, (), ())                         \
    OPERATION(int, get_max_vertex_attribs, (), ())                                                \
    OPERATION(int, get_max_atomic_counter_buffer_size, (), ())                                    \
    OPERATION(int, get_max_combined_atomic_counter_buffers, (), ())                               \
    OPERATION(int, get_max_combined_atomic_counters, (), ())                                      \
    OPERATION(int, get_max_vertex_atomic_counters, (), ())                                        \
    OPERATION(int, get_max_geometry_atomic_counters, (), ())                                      \
    OPERATION(int, get_max_fragment_atomic_counters, (), ())                                      \
    OPERATION(int, get_max_tess_control_atomic_counters, (), ())                                  \
    OPERATION(int, get_max_tess_eval_atomic_counters, (), ())                                     \
    OPERATION(int, get_max_compute_atomic_counters, (), ())                                       \
    OPERATION(int, get_GL_MAX_TEXTURE_SIZE, (), ())                                               \
    OPERATION(int, get_GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, (), ())                               \
    OPERATION(int, get_GL_MAX_VIEWPORT_DIMS, (), ())                                              \
    OPERATION(int, get_GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS, (), ())                                 \
    OPERATION(int, get_GL_MAX_COLOR_ATTACHMENTS, (), ())                                          \
    OPERATION(int, get_GL_MAX_SAMPLES, (), ())                                                    \
    OPERATION(bool, get_GL_MAX_COMPUTE_WORK_GROUP_COUNT, (int* x, int* y, int* z), (x, y, z))     \
    OPERATION(bool, get_GL_MAX_COMPUTE_WORK_GROUP_SIZE, (int* x, int* y, int* z), (x, y, z))      \
    OPERATION(void, clear_color_buffer, (float r, float g, float b, float a), (r, g, b, a))       \
    OPERATION(void, clear_color_buffer, (const vec4& color), (color))                             \
    OPERATION(void, clear_depth_buffer, (float depth), (depth))                                   \
    OPERATION(void, clear_color_depth_buffers, (float r, float g, float b, float a, float depth), \
              (r, g, b, a, depth))                                                                \
    OPERATION(void, clear_color_depth_buffers, (const vec4& color, float depth), (color, depth))  \
    STATE(void, get_color_buffer_size, (int* size, int* width, int* height),                      \
              (size, width, height))                                                              \
    OPERATION(void, get_color_buffer, (unsigned char* pixels), (pixels))                          \
    STATE(void, set_projection_matrix, (mat4& matrix, bool apply), (matrix, apply))               \
    STATE(mat4&, get_projection_matrix, (), ())                                                   \
    STATE(void, set_view_matrix, (mat4& matrix, bool apply), (matrix, apply))                     \
    STATE(mat4&, get_view_matrix, (), ())                                                         \
    STATE(void, set_viewport, (int x, int y, int width, int height), (x, y, width, height))       \
    STATE(void, get_viewport, (int* x, int* y, int* width, int* height), (x, y, width, height))   \
    STATE(int*, get_viewport_ptr, (), ())                                                         \
    OPERATION(void, set_scissor, (int x, int y, int width, int height), (x, y, width, height))    \
    OPERATION(void, set_scissor_state, (bool state), (state))                                     \
    OPERATION(void, set_color_buffer_writing_state, (bool state), (state))                        \
    OPERATION(void, set_depth_test_state, (bool state), (state))                                  \
    OPERATION(void, set_depth_buffer_writing_state, (bool state), (state))                        \
    OPERATION(void, set_depth_test_func, (RENDERER_CMP_FUNC func), (func))                        \
    OPERATION(void, set_blend_state, (bool state), (state))                                       \
    OPERATION(void, set_blend_factors, (RENDERER_BLEND_FACTOR src, RENDERER_BLEND_FACTOR dst),    \
              (src, dst))                                                                         \
    OPERATION(void, rasterizer_set_cull_state, (bool state), (state))                             \
    OPERATION(void, rasterizer_set_cull_face, (RENDERER_POLYGON_FACE face), (face))               \
    OPERATION(void, rasterizer_set_polygon_mode, (RENDERER_POLYGON_FACE face,                     \
              RENDERER_POLYGON_MODE mode), (face, mode))                                          \
    OPERATION(void, rasterizer_set_msaa_state, (bool state), (state))                             \
    OPERATION(void, rasterizer_set_depth_bias, (float factor, float units), (factor, units))      \
    OPERATION(void, rasterizer_apply_state, (), ())                                               \
    OPERATION(bool, vertex_buffer_prepare, (MeshData* mesh), (mesh))                              \
    OPERATION(bool, vertex_buffer_prepare_separate_arrays, (MeshData* mesh), (mesh))              \
    OPERATION(bool, vertex_buffer_draw, (MeshData* mesh), (mesh))                                 \
    OPERATION(bool, vertex_buffer_draw_with_shader_effect, (MeshData* mesh,                       \
              GpuProgramData* program), (mesh, program))                                          \
    OPERATION(bool, vertex_buffer_finish, (MeshData* mesh), (mesh))                               \
    OPERATION(bool, vertex_buffer_kill, (MeshData* mesh), (mesh))                                 \
    OPERATION(bool, vertex_buffer_resize, (MeshData* mesh), (mesh))                               \
    OPERATION(void, force_buffer_object_usage, (BUFFER_OBJECT_USAGE vertex_usage,                 \
              BUFFER_OBJECT_USAGE index_usage), (vertex_usage, index_usage))                      \
    OPERATION(unsigned int, vertex_buffer_create, (unsigned long size,                            \
              BUFFER_OBJECT_USAGE usage), (size, usage))                                          \
    OPERATION(bool, vertex_buffer_kill, (unsigned int id), (id))                                  \
    OPERATION(bool, vertex_buffer_invalidate, (unsigned int id, unsigned long size,               \
              BUFFER_OBJECT_USAGE usage), (id, size, usage))                                      \
    OPERATION(void*, vertex_buffer_map, (unsigned int id), (id))                                  \
    OPERATION(bool, vertex_buffer_unmap, (unsigned int id), (id))                                 \
    OPERATION(void, force_shader_storage_buffer_object_usage, (BUFFER_OBJECT_USAGE usage),        \
              (usage))                                                                            \
    OPERATION(unsigned int, shader_storage_buffer_create, (unsigned long size,                    \
              BUFFER_OBJECT_USAGE usage, void* content), (size, usage, content))                  \
    OPERATION(bool, shader_storage_buffer_kill, (unsigned int id), (id))                          \
    OPERATION(void*, shader_storage_buffer_map, (unsigned int id), (id))                          \
    OPERATION(void*, shader_storage_buffer_map_range, (unsigned int id, unsigned long offset,     \
              unsigned long length), (id, offset, length))                                        \
    OPERATION(bool, shader_storage_buffer_unmap, (unsigned int id), (id))                         \
    OPERATION(bool, shader_storage_buffer_bind, (unsigned int id), (id))                          \
    OPERATION(bool, shader_storage_buffer_bind_base, (unsigned int id, unsigned int binding),     \
              (id, binding))                                                                      \
    OPERATION(void, memory_barrier, (unsigned int bits), (bits))                                  \
    OPERATION(bool, gpu_program_kill, (GpuProgramData* program), (program))                       \
    OPERATION(bool, gpu_program_load_shader_from_memory, (GpuProgramData* program,                \
              GPU_SHADER_TYPE type, const char* source, unsigned long size),                      \
              (program, type, source, size))                                                      \
    STATE(bool, gpu_program_activate, (GpuProgramData* program), (program))                       \
    STATE(bool, gpu_program_deactivate, (GpuProgramData* program), (program))                     \
    STATE(GpuProgramData*, gpu_program_get_active_program, (), ())                                \
    OPERATION(bool, gpu_program_update_core_vertex_attrib_locations, (GpuProgramData* program),   \
              (program))                                                                          \
    OPERATION(bool, gpu_program_update_user_vertex_attrib_locations_mesh, (                       \
              GpuProgramData* program, MeshData* mesh), (program, mesh))                          \
    OPERATION(bool, gpu_program_update_user_vertex_attrib_locations_polyline, (                   \
              GpuProgramData* program, PolylineData* polyline), (program, polyline))              \
    OPERATION(bool, gpu_program_update_instancing_vertex_attrib_locations_mesh, (                 \
              GpuProgramData* program, MeshData* mesh), (program, mesh))                          \
    OPERATION(bool, gpu_program_update_instancing_vertex_attrib_locations, (                      \
              GpuProgramData* program), (program))                                                \
    OPERATION(bool, gpu_program_link, (GpuProgramData* program), (program))                       \
    OPERATION(bool, gpu_program_get_validate_status, (GpuProgramData* program), (program))        \
    OPERATION(bool, gpu_program_run_compute, (GpuProgramData* program, unsigned int x,            \
              unsigned int y, unsigned int z), (program, x, y, z))                                \
    OPERATION(bool, gpu_program_get_shader_compile_status, (GPU_SHADER_TYPE type,                 \
              const char* source, char* message, unsigned long message_size),                     \
              (type, source, message, message_size))                                              \
    OPERATION(bool, gpu_program_recreate_program, (GpuProgramData* program), (program))           \
    OPERATION(bool, gpu_program_update_shader, (GpuProgramData* program, GPU_SHADER_TYPE type,    \
              const char* source, unsigned long size), (program, type, source, size))             \
    STATE(int, gpu_program_get_vertex_attrib_location, (GpuProgramData* program,                  \
              const char* name), (program, name))                                                 \
    OPERATION(bool, gpu_program_bind_vertex_attrib_location, (GpuProgramData* program,            \
              const char* name, int location), (program, name, location))                         \
    STATE(int, gpu_program_get_uniform_location, (GpuProgramData* program, const char* name),     \
              (program, name))                                                                    \
    OPERATION(void, gpu_program_set_uniform_1i, (GpuProgramData* program, const char* name,       \
              int value), (program, name, value))                                                 \
    OPERATION(void, gpu_program_set_uniform_1f, (GpuProgramData* program, const char* name,       \
              float value), (program, name, value))                                               \
    OPERATION(void, gpu_program_set_uniform_2i, (GpuProgramData* program, const char* name,       \
              int x, int y), (program, name, x, y))                                               \
    OPERATION(void, gpu_program_set_uniform_2f, (GpuProgramData* program, const char* name,       \
              float x, float y), (program, name, x, y))                                           \
    OPERATION(void, gpu_program_set_uniform_3i, (GpuProgramData* program, const char* name,       \
              int x, int y, int z), (program, name, x, y, z))                                     \
    OPERATION(void, gpu_program_set_uniform_3f, (GpuProgramData* program, const char* name,       \
              float x, float y, float z), (program, name, x, y, z))                               \
    OPERATION(void, gpu_program_set_uniform_4i, (GpuProgramData* program, const char* name,       \
              int x, int y, int z, int w), (program, name, x, y, z, w))                           \
    OPERATION(void, gpu_program_set_uniform_1iv, (GpuProgramData* program, const char* name,      \
              int* values, int count), (program, name, values, count))                            \
    OPERATION(void, gpu_program_set_uniform_2iv, (GpuProgramData* program, const char* name,      \
              int* values, int count), (program, name, values, count))                            \
    OPERATION(void, gpu_program_set_uniform_3iv, (GpuProgramData* program, const char* name,      \
              int* values, int count), (program, name, values, count))                            \
    OPERATION(void, gpu_program_set_uniform_4iv, (GpuProgramData* program, const char* name,      \
              int* values, int count), (program, name, values, count))                            \
    OPERATION(void, gpu_program_set_uniform_4f, (GpuProgramData* program, const char* name,       \
              float x, float y, float z, float w), (program, name, x, y, z, w))                   \
    OPERATION(void, gpu_program_set_uniform_1fv, (GpuProgramData* program, const char* name,      \
              float* values, int count), (program, name, values, count))                          \
    OPERATION(void, gpu_program_set_uniform_2fv, (GpuProgramData* program, const char* name,      \
              vec2* values, int count), (program, name, values, count))                           \
    OPERATION(void, gpu_program_set_uniform_3fv, (GpuProgramData* program, const char* name,      \
              vec3* values, int count), (program, name, values, count))                           \
    OPERATION(void, gpu_program_set_uniform_4fv, (GpuProgramData* program, const char* name,      \
              vec4* values, int count), (program, name, values, count))                           \
    OPERATION(void, gpu_program_set_uniform_1dv, (GpuProgramData* program, const char* name,      \
              double* values, int count), (program, name, values, count))                         \
    OPERATION(void, gpu_program_set_uniform_2dv, (GpuProgramData* program, const char* name,      \
              double* values, int count), (program, name, values, count))                         \
    OPERATION(void, gpu_program_set_uniform_3dv, (GpuProgramData* program, const char* name,      \
              double* values, int count), (program, name, values, count))                         \
    OPERATION(void, gpu_program_set_uniform_4dv, (GpuProgramData* program, const char* name,      \
              double* values, int count), (program, name, values, count))                         \
    OPERATION(void, gpu_program_set_uniform_3x3fv, (GpuProgramData* program, const char* name,    \
              float* values, int count), (program, name, values, count))                          \
    OPERATION(void, gpu_program_set_uniform_4x4fv, (GpuProgramData* program, const char* name,    \
              float* values, int count), (program, name, values, count))                          \
    OPERATION(void, gpu_program_set_uniform_1i_loc, (int location, int value), (location, value)) \
    OPERATION(void, gpu_program_set_uniform_1f_loc, (int location, float value),                  \
              (location, value))                                                                  \
    OPERATION(void, gpu_program_set_uniform_2i_loc, (int location, int x, int y),                 \
              (location, x, y))                                                                   \
    OPERATION(void, gpu_program_set_uniform_2f_loc, (int location, float x, float y),             \
              (location, x, y))                                                                   \
    OPERATION(void, gpu_program_set_uniform_3i_loc, (int location, int x, int y, int z),          \
              (location, x, y, z))                                                                \
    OPERATION(void, gpu_program_set_uniform_3f, (int location, float x, float y, float z),        \
              (location, x, y, z))                                                                \
    OPERATION(void, gpu_program_set_uniform_4i_loc, (int location, int x, int y, int z, int w),   \
              (location, x, y, z, w))                                                             \
    OPERATION(void, gpu_program_set_uniform_4f_loc, (int location, float x, float y, float z,     \
              float w), (location, x, y, z, w))                                                   \
    OPERATION(void, gpu_program_set_uniform_4fv_loc, (int location, vec4* values, int count),     \
              (location, values, count))                                                          \
    OPERATION(void, gpu_program_set_uniform_3x3fv_loc, (int location, float* values, int count),  \
              (location, values, count))                                                          \
    OPERATION(void, gpu_program_set_uniform_4x4fv_loc, (int location, float* values, int count),  \
              (location, values, count))                                                          \
    OPERATION(void, gpu_program_set_uniform_1ui64, (GpuProgramData* program, const char* name,    \
              unsigned long long value), (program, name, value))                                  \
    OPERATION(void, gpu_program_set_uniform_1ui64v, (GpuProgramData* program, const char* name,   \
              unsigned long long* values, int count), (program, name, values, count))             \
    OPERATION(void, gpu_program_set_uniform_ui64_loc, (int location, unsigned long long value),   \
              (location, value))                                                                  \
    OPERATION(void, gpu_program_set_uniform_ui64v_loc, (int location, unsigned long count,        \
              unsigned long long* values), (location, count, values))                             \
    OPERATION(void, gpu_program_set_uniform_1ui, (GpuProgramData* program, const char* name,      \
              unsigned int value), (program, name, value))                                        \
    OPERATION(void, gpu_program_set_uniform_2ui, (GpuProgramData* program, const char* name,      \
              unsigned int x, unsigned int y), (program, name, x, y))                             \
    OPERATION(void, gpu_program_set_uniform_3ui, (GpuProgramData* program, const char* name,      \
              unsigned int x, unsigned int y, unsigned int z), (program, name, x, y, z))          \
    OPERATION(void, gpu_program_set_uniform_4ui, (GpuProgramData* program, const char* name,      \
              unsigned int x, unsigned int y, unsigned int z, unsigned int w),                    \
              (program, name, x, y, z, w))                                                        \
    OPERATION(void, gpu_program_set_uniform_1d, (GpuProgramData* program, const char* name,       \
              double value), (program, name, value))                                              \
    OPERATION(void, gpu_program_set_uniform_2d, (GpuProgramData* program, const char* name,       \
              double x, double y), (program, name, x, y))                                         \
    OPERATION(void, gpu_program_set_uniform_3d, (GpuProgramData* program, const char* name,       \
              double x, double y, double z), (program, name, x, y, z))                            \
    OPERATION(void, gpu_program_set_uniform_4d, (GpuProgramData* program, const char* name,       \
              double x, double y, double z, double w), (program, name, x, y, z, w))               \
    OPERATION(bool, gpu_program_bind_uniforms, (GpuProgramData* program), (program))              \
    OPERATION(bool, gpu_program_optimize, (GpuProgramData* program), (program))                   \
    OPERATION(bool, reset_all_texture_units, (), ())                                              \
    OPERATION(bool, reset_texture_unit, (unsigned long unit), (unit))                             \
    OPERATION(bool, texture_bind, (TextureData* texture, unsigned long unit), (texture, unit))    \
    OPERATION(bool, texture_activate, (TextureData* texture, unsigned long unit),                 \
              (texture, unit))                                                                    \
    OPERATION(bool, texture_activate_rt, (unsigned int id, unsigned long unit), (id, unit))       \
    OPERATION(bool, texture_activate_rt_ms, (unsigned int id, unsigned long unit), (id, unit))    \
    OPERATION(bool, texture_activate_rect_rt, (unsigned int id, unsigned long unit), (id, unit))  \
    OPERATION(bool, texture_unload, (TextureData* texture), (texture))                            \
    OPERATION(bool, texture_1d_load, (TextureData* texture, unsigned long unit), (texture, unit)) \
    OPERATION(bool, texture_1d_update, (TextureData* texture, int x, int width),                  \
              (texture, x, width))                                                                \
    OPERATION(bool, texture_2d_load, (TextureData* texture, unsigned long unit), (texture, unit)) \
    OPERATION(bool, texture_2d_update, (TextureData* texture, int y, int x, int width,            \
              int height), (texture, y, x, width, height))                                        \
    OPERATION(bool, texture_2d_update_pixmap, (TextureData* texture, int y, int x, int width,     \
              int height, PIXEL_FORMAT format, void* pixels),                                     \
              (texture, y, x, width, height, format, pixels))                                     \
    OPERATION(bool, texture_cube_load, (TextureData* texture, unsigned long unit),                \
              (texture, unit))                                                                    \
    OPERATION(bool, texture_cube_update, (TextureData* texture), (texture))                       \
    OPERATION(void, set_texture_anisotropy, (TextureData* texture, float anisotropy),             \
              (texture, anisotropy))                                                              \
    OPERATION(void, set_texture_addressing_mode, (TextureData* texture,                           \
              SAMPLER_ADDRESSING_MODE mode), (texture, mode))                                     \
    OPERATION(void, set_texture_filtering_mode, (TextureData* texture,                            \
              SAMPLER_FILTERING_MODE mode), (texture, mode))                                      \
    OPERATION(bool, texture_2d_read_pixmap_rgb_u8, (TextureData* texture), (texture))             \
    OPERATION(bool, texture_2d_read_pixmap_rgba_u8, (TextureData* texture), (texture))            \
    OPERATION(void, set_texture1d_state, (bool state), (state))                                   \
    OPERATION(void, set_texture2d_state, (bool state), (state))                                   \
    OPERATION(void, set_texture3d_state, (bool state), (state))                                   \
    OPERATION(void, set_texture_cube_state, (bool state), (state))                                \
    OPERATION(void, set_texture_state, (TextureData* texture, bool state), (texture, state))      \
    OPERATION(bool, image_texture_bind, (TextureData* texture, unsigned long unit,                \
              DATA_ACCESS_TYPE access), (texture, unit, access))                                  \
    OPERATION(bool, image_texture_activate, (TextureData* texture, unsigned long unit,            \
              DATA_ACCESS_TYPE access), (texture, unit, access))                                  \
    OPERATION(bool, bindless_texture_make_resident, (TextureData* texture), (texture))            \
    OPERATION(bool, bindless_texture_make_non_resident, (TextureData* texture), (texture))        \
    OPERATION(bool, font_bitmap_windows_create, (FontData* font), (font))                         \
    OPERATION(bool, font_bitmap_windows_kill, (FontData* font), (font))                           \
    OPERATION(bool, font_bitmap_windows_render, (FontData* font, int x, int y, float r, float g,  \
              float b, float a, const char* text, unsigned long length),                          \
              (font, x, y, r, g, b, a, text, length))                                             \
    OPERATION(bool, font_bitmap_windows_render_3d, (FontData* font, float x, float y, float z,    \
              float r, float g, float b, float a, const char* text, unsigned long length),        \
              (font, x, y, z, r, g, b, a, text, length))                                          \
    OPERATION(bool, font_bitmap_windows_render_prepare, (FontData* font, int x, int y, float r,   \
              float g, float b, float a, const char* text, unsigned long length),                 \
              (font, x, y, r, g, b, a, text, length))                                             \
    OPERATION(bool, font_bitmap_windows_render_draw, (FontData* font, int x, int y, float r,      \
              float g, float b, float a, const char* text, unsigned long length),                 \
              (font, x, y, r, g, b, a, text, length))                                             \
    OPERATION(bool, font_bitmap_windows_render_finish, (FontData* font, int x, int y, float r,    \
              float g, float b, float a, const char* text, unsigned long length),                 \
              (font, x, y, r, g, b, a, text, length))                                             \
    OPERATION(bool, font_bitmap_linux_render, (FontData* font, int x, int y, float r, float g,    \
              float b, float a, const char* text, unsigned long length),                          \
              (font, x, y, r, g, b, a, text, length))                                             \
    OPERATION(bool, font_bitmap_linux_render_3d, (FontData* font, float x, float y, float z,      \
              float r, float g, float b, float a, const char* text, unsigned long length),        \
              (font, x, y, z, r, g, b, a, text, length))                                          \
    OPERATION(void, finish_pipeline, (), ())                                                      \
    OPERATION(void, flush_pipeline, (), ())                                                       \
    OPERATION(void, gl2_matrix_load, (float* projection, float* view, float* model,               \
              float* texture), (projection, view, model, texture))                                \
    OPERATION(void, gl2_matrix_load_identity, (bool projection, bool modelview, bool texture),    \
              (projection, modelview, texture))                                                   \
    OPERATION(bool, vertex_pool_render, (VertexPoolData* pool), (pool))                           \
    OPERATION(bool, vertex_pool_render_prepare, (VertexPoolData* pool), (pool))                   \
    OPERATION(bool, vertex_pool_render_draw, (VertexPoolData* pool), (pool))                      \
    OPERATION(bool, vertex_pool_render_finish, (VertexPoolData* pool), (pool))                    \
    OPERATION(bool, vertex_pool_kill, (VertexPoolData* pool), (pool))                             \
    OPERATION(void, vertex_pool_memory_barriers, (), ())                                          \
    OPERATION(void, set_line_width, (float width), (width))                                       \
    OPERATION(void, set_line_stipple, (int factor, unsigned short pattern), (factor, pattern))    \
    OPERATION(void, render_line, (const vec4& a, const vec4& a_color, const vec4& b,              \
              const vec4& b_color), (a, a_color, b, b_color))                                     \
    OPERATION(void, light_set_colors, (unsigned int light, const vec4& ambient,                   \
              const vec4& diffuse, const vec4& specular), (light, ambient, diffuse, specular))    \
    OPERATION(void, light_set_ambient, (unsigned int light, const vec4& color), (light, color))   \
    OPERATION(void, light_set_diffuse, (unsigned int light, const vec4& color), (light, color))   \
    OPERATION(void, light_set_specular, (unsigned int light, const vec4& color), (light, color))  \
    OPERATION(void, material_set_colors, (const vec4& ambient, const vec4& diffuse,               \
              const vec4& specular, float shininess), (ambient, diffuse, specular, shininess))    \
    OPERATION(void, material_set_ambient, (const vec4& color), (color))                           \
    OPERATION(void, material_set_diffuse, (const vec4& color), (color))                           \
    OPERATION(void, material_set_specular, (const vec4& color), (color))                          \
    OPERATION(void, material_set_shininess, (float shininess), (shininess))                       \
    OPERATION(bool, polyline_vb_prepare, (PolylineData* polyline), (polyline))                    \
    OPERATION(bool, polyline_vb_prepare_gl2, (PolylineData* polyline), (polyline))                \
    OPERATION(bool, polyline_vb_draw, (PolylineData* polyline, int start, int count),             \
              (polyline, start, count))                                                           \
    OPERATION(bool, polyline_vb_finish, (PolylineData* polyline), (polyline))                     \
    OPERATION(bool, polyline_vb_kill, (PolylineData* polyline), (polyline))                       \
    OPERATION(void, set_depth_bias_factors, (float factor, float units), (factor, units))         \
    OPERATION(void, set_depth_bias_state, (bool state), (state))                                  \
    OPERATION(void, shadow_mapping_prepare_light_pass, (RenderTarget* target, unsigned int unit,  \
              mat4& projection, mat4& view, GpuProgramData* program),                             \
              (target, unit, projection, view, program))                                          \
    OPERATION(void, shadow_mapping_finish_light_pass, (RenderTarget* target, unsigned int unit),  \
              (target, unit))                                                                     \
    OPERATION(void, shadow_mapping_enable_zpass_states, (), ())                                   \
    OPERATION(void, shadow_mapping_disable_zpass_states, (), ())                                  \
    OPERATION(void, atomic_counter_force_buffer_object_usage, (BUFFER_OBJECT_USAGE usage),        \
              (usage))                                                                            \
    OPERATION(unsigned int, atomic_counter_create_buffer, (unsigned long num_counters,            \
              BUFFER_OBJECT_USAGE usage, unsigned int binding, void* content),                    \
              (num_counters, usage, binding, content))                                            \
    OPERATION(bool, atomic_counter_kill_buffer, (unsigned int id), (id))                          \
    OPERATION(bool, atomic_counter_buffer_bind, (unsigned int id), (id))                          \
    OPERATION(bool, atomic_counter_set_value, (unsigned int id, unsigned int value,               \
              unsigned long index), (id, value, index))                                           \
    OPERATION(unsigned int, atomic_counter_get_value, (unsigned int id, unsigned long index),     \
              (id, index))                                                                        \
    OPERATION(void*, atomic_counter_buffer_map, (unsigned int id), (id))                          \
    OPERATION(void*, atomic_counter_buffer_map_range, (unsigned int id, unsigned long offset,     \
              unsigned long length), (id, offset, length))                                        \
    OPERATION(bool, atomic_counter_buffer_unmap, (unsigned int id), (id))                         \
    OPERATION(bool, atomic_counter_buffer_bind_base, (unsigned int id, unsigned int binding),     \
              (id, binding))                                                                      \
    OPERATION(bool, uniform_buffer_initialize, (UniformBufferData* buffer, unsigned int program), \
              (buffer, program))                                                                  \
    OPERATION(void, force_uniform_buffer_object_usage, (BUFFER_OBJECT_USAGE usage), (usage))      \
    OPERATION(bool, uniform_buffer_kill, (UniformBufferData* buffer), (buffer))                   \
    OPERATION(void*, uniform_buffer_map, (UniformBufferData* buffer), (buffer))                   \
    OPERATION(void*, uniform_buffer_map_range, (UniformBufferData* buffer, unsigned long offset,  \
              unsigned long length), (buffer, offset, length))                                    \
    OPERATION(bool, uniform_buffer_unmap, (UniformBufferData* buffer), (buffer))                  \
    OPERATION(bool, uniform_buffer_bind, (UniformBufferData* buffer), (buffer))                   \
    OPERATION(bool, uniform_buffer_bind_base, (UniformBufferData* buffer), (buffer))              \
    OPERATION(bool, uniform_buffer_unbind, (UniformBufferData* buffer), (buffer))                 \
    OPERATION(bool, set_blend_factors_separate, (RENDERER_BLEND_FACTOR src_color,                 \
              RENDERER_BLEND_FACTOR dst_color, RENDERER_BLEND_FACTOR src_alpha,                   \
              RENDERER_BLEND_FACTOR dst_alpha), (src_color, dst_color, src_alpha, dst_alpha))     \
    OPERATION(bool, keep_binds, (bool state), (state))
// clang-format on
