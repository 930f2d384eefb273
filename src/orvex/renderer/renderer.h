#pragma once

/// @file
/// `Renderer`, the contract between the engine and what draws.

#include <memory>

#include "orvex/api.h"
#include "orvex/base/plugin.h"
#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// The 3D back end: everything that the engine wants from a graphics API, as one flat list of small
/// operations.
///
/// The kernel makes the one implementation, `Kernel::load_core_opengl_renderer_plugin(true)`, and
/// its registry holds it like any plugin. Front ends (meshes, textures, programs) own plain records
/// and hand them over; the back end writes its object ids into them. The renderer owns nothing but
/// its render windows and render targets.
///
/// Every operation that touches the API needs a graphics context that is current on the calling
/// thread; there is no locking, and no operation makes a context current. Angles don't occur;
/// sizes are in pixels, the origin is the lower left.
///
/// Unless told otherwise, a null record, a null pointer or the id 0 is refused: the operation does
/// nothing and returns false, null, 0 or -1. Where the running context lacks what an operation
/// needs, it gives the same result. API errors are not polled: see `get_opengl_error`. Where memory
/// runs out an operation that keeps something throws `std::bad_alloc`, and the state is as before.
///
/// A number goes to the API as it is, unless a range is told: one that the API doesn't take becomes
/// an error of its own, and changes nothing. Channels of colours are 0 to 1 where the buffer holds
/// no floats; others are clamped. Sizes and offsets of buffers are in bytes, and sizes of images in
/// pixels, none of them below 0. Texture units count from 0 to `get_max_texture_units` - 1.
///
/// @code
/// Renderer* renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
/// renderer->initialize();
/// RenderWindow* window = renderer->create_render_window();
/// window->initialize(nullptr, nullptr, 800, 600, "", nullptr, nullptr);
/// renderer->start();
/// renderer->clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
/// @endcode
class ORVEX_API Renderer : public Plugin {
public:
    /// No API name and type; touches no graphics API.
    Renderer();
    ~Renderer() override;
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    /// Returns the context word of the back end; null unless it sets one.
    void* get_ctx() const;
    /// Returns the name of the API, at most 127 characters; never null, empty at first.
    const char* get_api_name() const;
    /// Sets the API name, cut to 127 characters; null makes it empty.
    void set_api_name(const char* name);
    /// Returns the identifier of the API; 0 at first, 1 for OpenGL.
    ORVEX_API3D get_api_type() const;
    /// Sets the identifier of the API; any number.
    void set_api_type(ORVEX_API3D type);

    /// @name Life cycle and state reset
    /// All return true on success, and true again when called twice.
    /// @{

    /// Marks the plugin as initialized; touches no graphics API.
    bool initialize() override = 0;
    /// Undoes `initialize`; touches no graphics API.
    bool terminate() override = 0;
    /// Takes up the API: this thread becomes the renderer's thread, the version and the entry
    /// points are read, the state is reset. Needs a current context; doesn't need `initialize`.
    bool start() override = 0;
    /// Lets go of the API's entry points. Windows, targets and API objects stay; operations that
    /// need a fetched entry point fail from now on.
    bool stop() override = 0;
    /// `start`, with a line in the log and on standard output for every entry point when
    /// `display_function_pointers` is set.
    virtual bool start_v2(bool display_function_pointers) = 0;
    /// Returns a new render window, without a context as yet. The renderer owns it.
    virtual RenderWindow* create_render_window() = 0;
    /// Terminates and deletes a window; false if it isn't one of this renderer's.
    virtual bool kill_render_window(RenderWindow* window) = 0;
    /// Terminates and deletes every window; the result is always false.
    virtual bool kill_all_render_windows() = 0;
    /// Brings the API and the renderer's shadow of it to the engine's defaults: no culling, filled
    /// polygons, depth test "less" with writing, no blending with factors one and one, no scissor,
    /// no stencil, dither, no program. Called by `start`.
    virtual bool reset_render_states() = 0;
    /// @}

    /// @name Render targets
    /// @{

    /// Returns a new render target, without API objects as yet. The renderer owns it.
    virtual RenderTarget* create_render_target() = 0;
    /// Kills and deletes a target; false if it isn't one of this renderer's.
    virtual bool kill_render_target(RenderTarget* target) = 0;
    /// Kills and deletes the target with this id; false if there is none.
    /// @param id  what `RenderTarget::get_id` gives
    virtual bool kill_render_target(int id) = 0;
    /// Kills and deletes every target; the result is always false.
    virtual bool kill_all_render_targets() = 0;
    /// Returns the target with this id, or null.
    /// @param id  what `RenderTarget::get_id` gives
    virtual RenderTarget* get_render_target(int id) = 0;
    /// Binds a colour texture of a target to a texture unit, as a plain or a multisample texture.
    /// @param index  which of its colour textures; one outside takes the first
    /// @param unit   a texture unit; false for one beyond the last, and for a target without
    /// texture
    virtual bool render_target_bind_color_tex(RenderTarget* target, int index,
                                              unsigned long unit) = 0;
    /// Binds the depth texture of a target to a texture unit.
    /// @param unit  a texture unit; false for one beyond the last, and for a target without texture
    virtual bool render_target_bind_depth_tex(RenderTarget* target, unsigned long unit) = 0;
    /// @}

    /// @name Framebuffer objects, by their ids
    /// Id 0 is the window's framebuffer: its surface, or what `RenderWindow::set_framebuffer` told.
    /// The copies leave it bound.
    /// @{

    /// Binds a framebuffer for drawing and reading.
    virtual void fbo_bind(unsigned int id) = 0;
    /// @return the framebuffer bound for drawing, by the API's own id
    virtual unsigned int fbo_get_current_bound() = 0;
    /// Copies the colour buffer, from the lower left corner on; false if `src` equals `dst`.
    /// `index` is not used.
    virtual bool fbo_copy_color_buffer(unsigned int src, unsigned int dst, int width, int height,
                                       unsigned long index) = 0;
    /// `fbo_copy_color_buffer` to the framebuffer bound now.
    virtual bool fbo_copy_color_buffer_to_bound_fbo(unsigned int src, int width, int height,
                                                    unsigned long index) = 0;
    /// Copies a rectangle, scaling it if the far corners differ: linear for colour alone, nearest
    /// with depth. Depth buffers of two formats can't be copied: a copy of both copies the colours
    /// then. False if `src` equals `dst`.
    virtual bool fbo_blit(unsigned int src, int sx0, int sy0, int sx1, int sy1, unsigned int dst,
                          int dx0, int dy0, int dx1, int dy1, bool color, bool depth) = 0;
    /// `fbo_blit` of the whole colour and depth buffers, which resolves multisampling.
    virtual bool fbo_resolve_multisampling(unsigned int src, int width, int height,
                                           unsigned int dst, int dst_width, int dst_height) = 0;
    /// @}

    /// @name Identification and version
    /// The texts belong to the API; null without a context.
    /// @{

    /// Takes the oldest error that the API holds; 0 for none.
    virtual unsigned int get_opengl_error() = 0;
    /// @return the name of the graphics device
    virtual const char* get_renderer_model() = 0;
    /// @return the maker of the driver
    virtual const char* get_renderer_vendor() = 0;
    /// @return the version of the shading language
    virtual const char* get_shading_language_version() = 0;
    /// @return all extension names in one text; null in a core context, which has no such text
    virtual const char* get_renderer_gl_extensions_raw_string() = 0;
    /// @return the version of the API, as text
    virtual const char* get_api_version() = 0;
    /// Reads the version of the current context. Null outputs are skipped.
    /// @return false, with nothing written, if the version can't be read
    virtual bool get_opengl_version(int* major, int* minor) = 0;
    /// @return the major version as read by `start`; 0 before
    virtual int get_api_version_major() = 0;
    /// @return the minor version as read by `start`; 0 before
    virtual int get_api_version_minor() = 0;
    /// @}

    /// @name Limits
    /// Read from the API at each call; 0 where the running API lacks the feature.
    /// @{

    /// @return the number of texture units of the pixel stage
    virtual int get_max_texture_units() = 0;
    /// @return the largest width and height of a texture
    virtual int get_max_texture_size() = 0;
    /// @return whether many instances can be drawn by one call (GL 3.3, or the instancing
    ///         extensions)
    virtual bool is_geometry_instancing_supported() = 0;
    /// @return the highest degree of anisotropic filtering
    virtual float get_max_texture_anisotropy() = 0;
    /// @}

    /// @name Vendor memory queries
    /// Each needs the maker's extension; without it the result is 0 and the API notes an error.
    /// @{

    /// @return the memory of the device in KB
    virtual unsigned int get_gpu_memory_total_available_kb_nv() = 0;
    /// @return the free memory of the device in KB
    virtual unsigned int get_gpu_memory_current_available_kb_nv() = 0;
    /// @return the used memory of the device in KB: the total less what is free
    virtual unsigned int get_gpu_memory_usage_kb_nv() = 0;
    /// @return 0
    virtual unsigned int get_num_gpus_amd() = 0;
    /// @return 0, whatever the device index
    virtual unsigned int get_gpu_memory_total_available_kb_amd(unsigned long gpu) = 0;
    /// @return the first value of query 34814, in KB
    virtual unsigned int get_gpu_total_physical_memory_amd() = 0;
    /// `get_gpu_memory_total_available_kb_amd` less the free texture memory; as the former is 0,
    /// the result wraps around.
    virtual unsigned int get_gpu_memory_usage_kb_amd() = 0;
    /// @return the free memory for textures in KB
    virtual unsigned int get_gpu_free_texture_memory_amd() = 0;
    /// @return the free memory for vertex buffers in KB
    virtual unsigned int get_gpu_free_vbo_memory_amd() = 0;
    /// @return the free memory for render buffers in KB
    virtual unsigned int get_gpu_free_renderbuffer_memory_amd() = 0;
    /// @}

    /// @name Attribute and atomic counter limits
    /// Atomic counters need GL 4.2.
    /// @{

    /// @return the number of generic attributes of a vertex
    virtual int get_max_vertex_attribs() = 0;
    /// @return the size in bytes of a buffer of counters
    virtual int get_max_atomic_counter_buffer_size() = 0;
    /// @return the number of counter buffers of all stages together
    virtual int get_max_combined_atomic_counter_buffers() = 0;
    /// @return the number of counters of all stages together
    virtual int get_max_combined_atomic_counters() = 0;
    /// @return the number of counters of the vertex stage
    virtual int get_max_vertex_atomic_counters() = 0;
    /// @return the number of counters of the geometry stage
    virtual int get_max_geometry_atomic_counters() = 0;
    /// @return the number of counters of the pixel stage
    virtual int get_max_fragment_atomic_counters() = 0;
    /// @return the number of counters of the tessellation control stage
    virtual int get_max_tess_control_atomic_counters() = 0;
    /// @return the number of counters of the tessellation evaluation stage
    virtual int get_max_tess_eval_atomic_counters() = 0;
    /// @return the number of counters of the compute stage
    virtual int get_max_compute_atomic_counters() = 0;
    /// @}

    /// @name Limits named after their OpenGL constants
    /// @{

    /// @return the largest width and height of a texture
    virtual int get_GL_MAX_TEXTURE_SIZE() = 0;
    /// @return the number of texture units of all stages together
    virtual int get_GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS() = 0;
    /// @return the largest width of a viewport, the first of the constant's two values
    virtual int get_GL_MAX_VIEWPORT_DIMS() = 0;
    /// @return the number of texture units of the vertex stage
    virtual int get_GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS() = 0;
    /// @return the number of colour attachments of a framebuffer
    virtual int get_GL_MAX_COLOR_ATTACHMENTS() = 0;
    /// @return the number of samples per pixel of a framebuffer
    virtual int get_GL_MAX_SAMPLES() = 0;
    /// Most work groups in each direction (GL 4.3). Null outputs are skipped.
    /// @return false, with nothing written, without indexed queries (GL 3.0)
    virtual bool get_GL_MAX_COMPUTE_WORK_GROUP_COUNT(int* x, int* y, int* z) = 0;
    /// Largest work group in each direction (GL 4.3). Null outputs are skipped.
    /// @return false, with nothing written, without indexed queries (GL 3.0)
    virtual bool get_GL_MAX_COMPUTE_WORK_GROUP_SIZE(int* x, int* y, int* z) = 0;
    /// @}

    /// @name Clearing and reading the framebuffer
    /// @{

    /// Fills the colour buffer with red, green, blue and alpha.
    virtual void clear_color_buffer(float r, float g, float b, float a) = 0;
    /// Fills the colour buffer; x, y, z, w are red, green, blue, alpha.
    virtual void clear_color_buffer(const vec4& color) = 0;
    /// Fills the depth buffer.
    /// @param depth  0 is near, 1 is far; what lies outside is clamped
    virtual void clear_depth_buffer(float depth) = 0;
    /// Fills both buffers by one clear; the numbers as for each alone.
    virtual void clear_color_depth_buffers(float r, float g, float b, float a, float depth) = 0;
    /// Fills both buffers by one clear.
    virtual void clear_color_depth_buffers(const vec4& color, float depth) = 0;
    /// Tells the size of what `get_color_buffer` reads, which is the viewport's.
    /// @param size    receives the bytes, width * height * 4; null is refused, nothing is written
    /// @param width   receives the width; may be null
    /// @param height  receives the height; may be null
    virtual void get_color_buffer_size(int* size, int* width, int* height) = 0;
    /// Reads the back buffer, bottom row first, as 8-bit RGBA without padding. The area starts at
    /// the lower left corner of the buffer and has the viewport's size.
    /// @param pixels  room for `get_color_buffer_size` bytes; null is refused
    virtual void get_color_buffer(unsigned char* pixels) = 0;
    /// @}

    /// @name Matrices, viewport, scissor
    /// @{

    /// Stores the projection matrix; with `apply` it is also loaded into the fixed pipeline.
    virtual void set_projection_matrix(mat4& matrix, bool apply) = 0;
    /// @return the stored projection matrix, by reference
    virtual mat4& get_projection_matrix() = 0;
    /// @return the same, to read only
    const mat4& get_projection_matrix() const;
    /// Stores the view matrix; with `apply` it is also loaded into the fixed pipeline.
    virtual void set_view_matrix(mat4& matrix, bool apply) = 0;
    /// @return the stored view matrix, by reference
    virtual mat4& get_view_matrix() = 0;
    /// @return the same, to read only
    const mat4& get_view_matrix() const;
    /// Sets the viewport.
    /// @param x,y           its lower left corner in pixels; may be below 0
    /// @param width,height  pixels; more than the API's largest is cut to that
    virtual void set_viewport(int x, int y, int width, int height) = 0;
    /// Reads the viewport from the API; null outputs are skipped, zeros if it can't be read.
    virtual void get_viewport(int* x, int* y, int* width, int* height) = 0;
    /// Reads the viewport from the API: x, y, width, height. The four numbers belong to the
    /// renderer and change with each call.
    virtual int* get_viewport_ptr() = 0;
    /// Sets the scissor rectangle, as `set_viewport` does the viewport.
    virtual void set_scissor(int x, int y, int width, int height) = 0;
    /// Switches the scissor test.
    virtual void set_scissor_state(bool state) = 0;
    /// @}

    /// @name Depth, colour and blend state
    /// Each is sent at once, whatever the state was before.
    /// @{

    /// Switches writing of all four colour channels.
    virtual void set_color_buffer_writing_state(bool state) = 0;
    /// Switches the depth test.
    virtual void set_depth_test_state(bool state) = 0;
    /// Switches writing of depth.
    virtual void set_depth_buffer_writing_state(bool state) = 0;
    /// Sets the comparison of the depth test.
    virtual void set_depth_test_func(RENDERER_CMP_FUNC func) = 0;
    /// Switches blending.
    virtual void set_blend_state(bool state) = 0;
    /// Sets the factors of the new and the old colour.
    virtual void set_blend_factors(RENDERER_BLEND_FACTOR src, RENDERER_BLEND_FACTOR dst) = 0;
    /// @}

    /// @name Rasterizer state
    /// These fill a pending state, which `rasterizer_apply_state` sends as a whole. The pending
    /// state starts with filled polygons, back faces, no culling, no multisampling and no bias, and
    /// `reset_render_states` leaves it as it is.
    /// @{

    /// Switches culling.
    virtual void rasterizer_set_cull_state(bool state) = 0;
    /// Chooses the side that is culled.
    virtual void rasterizer_set_cull_face(RENDERER_POLYGON_FACE face) = 0;
    /// Chooses how polygons are drawn, and for which side. A core context takes both sides only.
    virtual void rasterizer_set_polygon_mode(RENDERER_POLYGON_FACE face,
                                             RENDERER_POLYGON_MODE mode) = 0;
    /// Switches multisampling.
    virtual void rasterizer_set_msaa_state(bool state) = 0;
    /// Sets the depth bias; this one is also sent at once.
    /// @param factor  times the steepness of the polygon; any sign
    /// @param units   in the smallest steps that the depth buffer tells apart; any sign
    virtual void rasterizer_set_depth_bias(float factor, float units) = 0;
    /// Sends the whole pending state.
    virtual void rasterizer_apply_state() = 0;
    /// @}

    /// @name Vertex buffers
    /// `vertex_buffer_prepare`, `vertex_buffer_draw` and `vertex_buffer_finish` always come as a
    /// trio, with the GPU program active before the first. The record's flag for generic attributes
    /// chooses the path: vertex array objects with it, client arrays without.
    /// @{

    /// Makes the buffers on first use, uploads what is dirty and sets up the arrays.
    /// @return false for null, for no vertices, or if a buffer couldn't be made
    virtual bool vertex_buffer_prepare(MeshData* mesh) = 0;
    /// `vertex_buffer_prepare` for a record with one block per attribute.
    virtual bool vertex_buffer_prepare_separate_arrays(MeshData* mesh) = 0;
    /// Draws the mesh by one draw call. @return false for null, and where the API had no memory for
    /// a buffer in the record's last prepare: nothing is drawn until the next one
    virtual bool vertex_buffer_draw(MeshData* mesh) = 0;
    /// Always false: there are no effects here.
    virtual bool vertex_buffer_draw_with_shader_effect(MeshData* mesh, GpuProgramData* program) = 0;
    /// Undoes the set-up of the arrays.
    virtual bool vertex_buffer_finish(MeshData* mesh) = 0;
    /// Deletes the record's buffers, on the thread recorded in it only; false on another thread.
    virtual bool vertex_buffer_kill(MeshData* mesh) = 0;
    /// Gives the vertex buffer new storage for the record's vertices.
    virtual bool vertex_buffer_resize(MeshData* mesh) = 0;
    /// Makes every buffer that is created from now on use these; `BUFFER_USAGE_DEFAULT` ends it.
    virtual void force_buffer_object_usage(BUFFER_OBJECT_USAGE vertex_usage,
                                           BUFFER_OBJECT_USAGE index_usage) = 0;
    /// Makes a buffer and returns its id, 0 on failure. The caller owns it.
    /// @param size  bytes; what doesn't fit into memory is an error of the API's, and the buffer
    /// empty
    virtual unsigned int vertex_buffer_create(unsigned long size, BUFFER_OBJECT_USAGE usage) = 0;
    /// Deletes a buffer.
    virtual bool vertex_buffer_kill(unsigned int id) = 0;
    /// Throws the content of a buffer away and gives it new storage of `size` bytes.
    virtual bool vertex_buffer_invalidate(unsigned int id, unsigned long size,
                                          BUFFER_OBJECT_USAGE usage) = 0;
    /// Maps a buffer for writing, and leaves it bound; null on failure.
    virtual void* vertex_buffer_map(unsigned int id) = 0;
    /// Ends the mapping.
    virtual bool vertex_buffer_unmap(unsigned int id) = 0;
    /// Same as `vertex_buffer_kill(unsigned int)`, so that a plain number is no ambiguity.
    bool vertex_buffer_kill(int id) { return vertex_buffer_kill(static_cast<unsigned int>(id)); }
    /// @}

    /// @name Shader storage buffers
    /// They need GL 4.3.
    /// @{

    /// Makes every storage buffer that is created from now on use this; `BUFFER_USAGE_DEFAULT`
    /// ends it.
    virtual void force_shader_storage_buffer_object_usage(BUFFER_OBJECT_USAGE usage) = 0;
    /// Makes a buffer of `size` bytes, filled from `content` unless it is null, and returns its id,
    /// 0 on failure. The caller owns it.
    virtual unsigned int shader_storage_buffer_create(unsigned long size, BUFFER_OBJECT_USAGE usage,
                                                      void* content) = 0;
    /// Deletes a buffer.
    virtual bool shader_storage_buffer_kill(unsigned int id) = 0;
    /// Maps a buffer for reading and writing, and leaves it bound; null on failure.
    virtual void* shader_storage_buffer_map(unsigned int id) = 0;
    /// Maps a part of a buffer for writing, and leaves it bound. The old content of the whole
    /// buffer is lost.
    /// @param offset,length  bytes; null for a part that reaches beyond the buffer's end
    virtual void* shader_storage_buffer_map_range(unsigned int id, unsigned long offset,
                                                  unsigned long length) = 0;
    /// Ends the mapping.
    virtual bool shader_storage_buffer_unmap(unsigned int id) = 0;
    /// Binds a buffer; 0 unbinds.
    virtual bool shader_storage_buffer_bind(unsigned int id) = 0;
    /// Binds a buffer to a binding point of the shaders; 0 unbinds.
    /// @param binding  from 0 on, as the shader's block says
    virtual bool shader_storage_buffer_bind_base(unsigned int id, unsigned int binding) = 0;
    /// @}

    /// Orders memory access of shaders before and after it (GL 4.2).
    /// @param bits  `MEMORY_BARRIER_BITS` in any mix; `MEMORY_BARRIER_ALL` counts only alone
    virtual void memory_barrier(unsigned int bits) = 0;

    /// @name GPU programs
    /// The record belongs to a `GpuProgram`.
    /// @{

    /// Deletes the program and its shaders. An active program is deactivated first.
    virtual bool gpu_program_kill(GpuProgramData* program) = 0;
    /// Compiles one stage and attaches it; makes the program on first use.
    /// @param source  text ended by a zero
    /// @param size    only tested against 0
    /// @return false if it doesn't compile; the record's shader log then holds the message
    virtual bool gpu_program_load_shader_from_memory(GpuProgramData* program, GPU_SHADER_TYPE type,
                                                     const char* source, unsigned long size) = 0;
    /// Links the program if needed, binds the standard attributes, makes it active and sends its
    /// dirty uniforms. Null deactivates.
    virtual bool gpu_program_activate(GpuProgramData* program) = 0;
    /// Makes no program active. The argument is not used.
    virtual bool gpu_program_deactivate(GpuProgramData* program) = 0;
    /// @return the active program's record, or null
    virtual GpuProgramData* gpu_program_get_active_program() = 0;
    /// Binds the standard attributes 0 to 5 that the program declares to their fixed locations.
    virtual bool gpu_program_update_core_vertex_attrib_locations(GpuProgramData* program) = 0;
    /// Stores the locations of the mesh's user attributes in its record.
    virtual bool gpu_program_update_user_vertex_attrib_locations_mesh(GpuProgramData* program,
                                                                      MeshData* mesh) = 0;
    /// Stores the locations of the polyline's user attributes in its record.
    virtual bool
    gpu_program_update_user_vertex_attrib_locations_polyline(GpuProgramData* program,
                                                             PolylineData* polyline) = 0;
    /// Stores or binds the locations of the mesh's instance attributes, by its path.
    virtual bool gpu_program_update_instancing_vertex_attrib_locations_mesh(GpuProgramData* program,
                                                                            MeshData* mesh) = 0;
    /// Binds the instance attributes 6 to 10 that the program declares to their fixed locations.
    virtual bool gpu_program_update_instancing_vertex_attrib_locations(GpuProgramData* program) = 0;
    /// Links the program; true at once if it is linked. On false the record's log holds the
    /// message.
    virtual bool gpu_program_link(GpuProgramData* program) = 0;
    /// @return whether the program can run in the current state of the API
    virtual bool gpu_program_get_validate_status(GpuProgramData* program) = 0;
    /// Sends dirty uniforms and starts `x * y * z` work groups of the active program (GL 4.3). It
    /// doesn't activate the program and sets no barrier.
    /// @param x,y,z  up to `get_GL_MAX_COMPUTE_WORK_GROUP_COUNT`; with a 0 nothing runs
    virtual bool gpu_program_run_compute(GpuProgramData* program, unsigned int x, unsigned int y,
                                         unsigned int z) = 0;
    /// Compiles a source on trial, without any program.
    /// @param message       receives the log of a failure, cut and terminated; may be null
    /// @param message_size  room in `message`
    virtual bool gpu_program_get_shader_compile_status(GPU_SHADER_TYPE type, const char* source,
                                                       char* message,
                                                       unsigned long message_size) = 0;
    /// Replaces the program object and attaches the compiled stages to the new one.
    virtual bool gpu_program_recreate_program(GpuProgramData* program) = 0;
    /// Replaces one stage while the program is in use; a source that doesn't compile changes
    /// nothing.
    virtual bool gpu_program_update_shader(GpuProgramData* program, GPU_SHADER_TYPE type,
                                           const char* source, unsigned long size) = 0;
    /// @return the location of an attribute, -1 if the program has none of this name
    virtual int gpu_program_get_vertex_attrib_location(GpuProgramData* program,
                                                       const char* name) = 0;
    /// Fixes the location of an attribute from the next link on.
    virtual bool gpu_program_bind_vertex_attrib_location(GpuProgramData* program, const char* name,
                                                         int location) = 0;
    /// @return the location of a uniform, -1 if the program has none of this name
    virtual int gpu_program_get_uniform_location(GpuProgramData* program, const char* name) = 0;
    /// @}

    /// @name Uniform setters by name and by location
    /// They send to the program that is active now. The forms by name ask the API for the location
    /// at each call and send nothing for a name that the program doesn't have; the forms by
    /// location don't test it, but for the 64-bit ones. Number and letters tell components and
    /// type: i int, ui unsigned, f float, d double (GL 4.0), ui64 a 64-bit texture handle
    /// (ARB_bindless_texture), v an array. `count` counts elements, each of as many components as
    /// the name says; matrices are column by column. A null array sends nothing.
    /// @{

    /// An `int`.
    virtual void gpu_program_set_uniform_1i(GpuProgramData* program, const char* name,
                                            int value) = 0;
    /// A `float`.
    virtual void gpu_program_set_uniform_1f(GpuProgramData* program, const char* name,
                                            float value) = 0;
    /// An `ivec2`.
    virtual void gpu_program_set_uniform_2i(GpuProgramData* program, const char* name, int x,
                                            int y) = 0;
    /// A `vec2`.
    virtual void gpu_program_set_uniform_2f(GpuProgramData* program, const char* name, float x,
                                            float y) = 0;
    /// An `ivec3`.
    virtual void gpu_program_set_uniform_3i(GpuProgramData* program, const char* name, int x, int y,
                                            int z) = 0;
    /// A `vec3`.
    virtual void gpu_program_set_uniform_3f(GpuProgramData* program, const char* name, float x,
                                            float y, float z) = 0;
    /// An `ivec4`.
    virtual void gpu_program_set_uniform_4i(GpuProgramData* program, const char* name, int x, int y,
                                            int z, int w) = 0;
    /// `count` elements of type `int`.
    virtual void gpu_program_set_uniform_1iv(GpuProgramData* program, const char* name, int* values,
                                             int count) = 0;
    /// `count` elements of type `ivec2`: `values` holds twice as many ints.
    virtual void gpu_program_set_uniform_2iv(GpuProgramData* program, const char* name, int* values,
                                             int count) = 0;
    /// `count` elements of type `ivec3`: `values` holds three times as many ints.
    virtual void gpu_program_set_uniform_3iv(GpuProgramData* program, const char* name, int* values,
                                             int count) = 0;
    /// `count` elements of type `ivec4`: `values` holds four times as many ints.
    virtual void gpu_program_set_uniform_4iv(GpuProgramData* program, const char* name, int* values,
                                             int count) = 0;
    /// A `vec4`.
    virtual void gpu_program_set_uniform_4f(GpuProgramData* program, const char* name, float x,
                                            float y, float z, float w) = 0;
    /// `count` elements of type `float`.
    virtual void gpu_program_set_uniform_1fv(GpuProgramData* program, const char* name,
                                             float* values, int count) = 0;
    /// `count` elements of type `vec2`.
    virtual void gpu_program_set_uniform_2fv(GpuProgramData* program, const char* name,
                                             vec2* values, int count) = 0;
    /// `count` elements of type `vec3`.
    virtual void gpu_program_set_uniform_3fv(GpuProgramData* program, const char* name,
                                             vec3* values, int count) = 0;
    /// `count` elements of type `vec4`.
    virtual void gpu_program_set_uniform_4fv(GpuProgramData* program, const char* name,
                                             vec4* values, int count) = 0;
    /// `count` elements of type `double`.
    virtual void gpu_program_set_uniform_1dv(GpuProgramData* program, const char* name,
                                             double* values, int count) = 0;
    /// `count` elements of type `dvec2`: `values` holds twice as many doubles.
    virtual void gpu_program_set_uniform_2dv(GpuProgramData* program, const char* name,
                                             double* values, int count) = 0;
    /// `count` elements of type `dvec3`: `values` holds three times as many doubles.
    virtual void gpu_program_set_uniform_3dv(GpuProgramData* program, const char* name,
                                             double* values, int count) = 0;
    /// `count` elements of type `dvec4`: `values` holds four times as many doubles.
    virtual void gpu_program_set_uniform_4dv(GpuProgramData* program, const char* name,
                                             double* values, int count) = 0;
    /// `count` elements of type `mat3`, nine floats each.
    virtual void gpu_program_set_uniform_3x3fv(GpuProgramData* program, const char* name,
                                               float* values, int count) = 0;
    /// `count` elements of type `mat4`, sixteen floats each.
    virtual void gpu_program_set_uniform_4x4fv(GpuProgramData* program, const char* name,
                                               float* values, int count) = 0;
    /// An `int`, by location.
    virtual void gpu_program_set_uniform_1i_loc(int location, int value) = 0;
    /// A `float`, by location.
    virtual void gpu_program_set_uniform_1f_loc(int location, float value) = 0;
    /// An `ivec2`, by location.
    virtual void gpu_program_set_uniform_2i_loc(int location, int x, int y) = 0;
    /// A `vec2`, by location.
    virtual void gpu_program_set_uniform_2f_loc(int location, float x, float y) = 0;
    /// An `ivec3`, by location.
    virtual void gpu_program_set_uniform_3i_loc(int location, int x, int y, int z) = 0;
    /// A `vec3`, by location.
    virtual void gpu_program_set_uniform_3f(int location, float x, float y, float z) = 0;
    /// An `ivec4`, by location.
    virtual void gpu_program_set_uniform_4i_loc(int location, int x, int y, int z, int w) = 0;
    /// A `vec4`, by location.
    virtual void gpu_program_set_uniform_4f_loc(int location, float x, float y, float z,
                                                float w) = 0;
    /// `count` elements of type `vec4`, by location.
    virtual void gpu_program_set_uniform_4fv_loc(int location, vec4* values, int count) = 0;
    /// `count` elements of type `mat3`, nine floats each; by location.
    virtual void gpu_program_set_uniform_3x3fv_loc(int location, float* values, int count) = 0;
    /// `count` elements of type `mat4`, sixteen floats each; by location.
    virtual void gpu_program_set_uniform_4x4fv_loc(int location, float* values, int count) = 0;
    /// One texture handle.
    virtual void gpu_program_set_uniform_1ui64(GpuProgramData* program, const char* name,
                                               unsigned long long value) = 0;
    /// `count` texture handles.
    virtual void gpu_program_set_uniform_1ui64v(GpuProgramData* program, const char* name,
                                                unsigned long long* values, int count) = 0;
    /// One texture handle, by location.
    virtual void gpu_program_set_uniform_ui64_loc(int location, unsigned long long value) = 0;
    /// `count` texture handles, by location.
    virtual void gpu_program_set_uniform_ui64v_loc(int location, unsigned long count,
                                                   unsigned long long* values) = 0;
    /// A `uint`.
    virtual void gpu_program_set_uniform_1ui(GpuProgramData* program, const char* name,
                                             unsigned int value) = 0;
    /// A `uvec2`.
    virtual void gpu_program_set_uniform_2ui(GpuProgramData* program, const char* name,
                                             unsigned int x, unsigned int y) = 0;
    /// A `uvec3`.
    virtual void gpu_program_set_uniform_3ui(GpuProgramData* program, const char* name,
                                             unsigned int x, unsigned int y, unsigned int z) = 0;
    /// A `uvec4`.
    virtual void gpu_program_set_uniform_4ui(GpuProgramData* program, const char* name,
                                             unsigned int x, unsigned int y, unsigned int z,
                                             unsigned int w) = 0;
    /// A `double`.
    virtual void gpu_program_set_uniform_1d(GpuProgramData* program, const char* name,
                                            double value) = 0;
    /// A `dvec2`.
    virtual void gpu_program_set_uniform_2d(GpuProgramData* program, const char* name, double x,
                                            double y) = 0;
    /// A `dvec3`.
    virtual void gpu_program_set_uniform_3d(GpuProgramData* program, const char* name, double x,
                                            double y, double z) = 0;
    /// A `dvec4`.
    virtual void gpu_program_set_uniform_4d(GpuProgramData* program, const char* name, double x,
                                            double y, double z, double w) = 0;
    /// @}

    /// @name Uniform table
    /// @{

    /// Sends every dirty value of the record's uniform table to the program, which must be active.
    virtual bool gpu_program_bind_uniforms(GpuProgramData* program) = 0;
    /// Looks up the locations that the record's uniform table doesn't know yet.
    virtual bool gpu_program_optimize(GpuProgramData* program) = 0;
    /// @}

    /// @name Textures
    /// Units count from 0. A load with a unit beyond the last takes the last unit instead.
    /// @{

    /// Unbinds the textures of every unit.
    virtual bool reset_all_texture_units() = 0;
    /// Unbinds the textures of one unit; false for a unit beyond the last.
    virtual bool reset_texture_unit(unsigned long unit) = 0;
    /// Binds a texture to a unit; null unbinds all textures of the unit. False for a texture that
    /// isn't loaded, and for a unit beyond the last, which null doesn't ask. By id likewise.
    virtual bool texture_bind(TextureData* texture, unsigned long unit) = 0;
    /// Same as `texture_bind`.
    virtual bool texture_activate(TextureData* texture, unsigned long unit) = 0;
    /// Binds a 2D texture by its id.
    virtual bool texture_activate_rt(unsigned int id, unsigned long unit) = 0;
    /// Binds a multisample texture by its id.
    virtual bool texture_activate_rt_ms(unsigned int id, unsigned long unit) = 0;
    /// Binds a rectangle texture by its id.
    virtual bool texture_activate_rect_rt(unsigned int id, unsigned long unit) = 0;
    /// Deletes the record's texture. One that is borrowed from a render target is only forgotten.
    virtual bool texture_unload(TextureData* texture) = 0;
    /// Makes a 1D texture from the record's pixels; true at once if it is loaded.
    virtual bool texture_1d_load(TextureData* texture, unsigned long unit) = 0;
    /// Sends pixels of a loaded 1D texture again, which must be bound. The pixels are taken from
    /// the start of the image.
    /// @param x,width  the part of the texture, in pixels
    virtual bool texture_1d_update(TextureData* texture, int x, int width) = 0;
    /// Makes a 2D texture from the record's pixels; true at once if it is loaded. As with every
    /// load nothing asks whether the API took the pixels: out of memory it is true all the same,
    /// and `ORVEX_GL_DEBUG=1` or `get_opengl_error` tells. False when the pixels are fewer than the
    /// API would read, with what a host has set for uploads (row length, skips), and while a buffer
    /// of the host's is bound for uploads.
    virtual bool texture_2d_load(TextureData* texture, unsigned long unit) = 0;
    /// Sends pixels of a loaded 2D texture again, which must be bound. Mind the order: the offset
    /// in y comes first. The pixels are taken from the start of the image.
    virtual bool texture_2d_update(TextureData* texture, int y, int x, int width, int height) = 0;
    /// `texture_2d_update` with pixels of the caller's.
    virtual bool texture_2d_update_pixmap(TextureData* texture, int y, int x, int width, int height,
                                          PIXEL_FORMAT format, void* pixels) = 0;
    /// Makes a cube map from the record's six images; true at once if it is loaded.
    virtual bool texture_cube_load(TextureData* texture, unsigned long unit) = 0;
    /// Sends all six images of a loaded cube map again, which must be bound.
    virtual bool texture_cube_update(TextureData* texture) = 0;
    /// Sets the degree of anisotropic filtering of the bound texture.
    /// @param anisotropy  1 for none; clamped to 1 and `get_max_texture_anisotropy`
    virtual void set_texture_anisotropy(TextureData* texture, float anisotropy) = 0;
    /// Sets the addressing of the bound texture.
    virtual void set_texture_addressing_mode(TextureData* texture,
                                             SAMPLER_ADDRESSING_MODE mode) = 0;
    /// Sets the filtering of the bound texture.
    virtual void set_texture_filtering_mode(TextureData* texture, SAMPLER_FILTERING_MODE mode) = 0;
    /// Reads a loaded 2D texture back into the record's image, three bytes a pixel.
    virtual bool texture_2d_read_pixmap_rgb_u8(TextureData* texture) = 0;
    /// Reads a loaded 2D texture back into the record's image, four bytes a pixel.
    virtual bool texture_2d_read_pixmap_rgba_u8(TextureData* texture) = 0;
    /// Switches 1D texturing of the fixed pipeline.
    virtual void set_texture1d_state(bool state) = 0;
    /// Switches 2D texturing of the fixed pipeline.
    virtual void set_texture2d_state(bool state) = 0;
    /// Switches 3D texturing of the fixed pipeline.
    virtual void set_texture3d_state(bool state) = 0;
    /// Switches cube map texturing of the fixed pipeline.
    virtual void set_texture_cube_state(bool state) = 0;
    /// Switches texturing of the fixed pipeline for the record's kind of texture.
    virtual void set_texture_state(TextureData* texture, bool state) = 0;
    /// Binds a texture to an image unit of the shaders (GL 4.2). OpenGL takes four float channels
    /// (`PF_RGBA_F32`) and one (`PF_R_F32`) only; with other formats it notes an error.
    virtual bool image_texture_bind(TextureData* texture, unsigned long unit,
                                    DATA_ACCESS_TYPE access) = 0;
    /// Same as `image_texture_bind`.
    virtual bool image_texture_activate(TextureData* texture, unsigned long unit,
                                        DATA_ACCESS_TYPE access) = 0;
    /// Makes the texture usable through its handle (ARB_bindless_texture).
    virtual bool bindless_texture_make_resident(TextureData* texture) = 0;
    /// Undoes `bindless_texture_make_resident`.
    virtual bool bindless_texture_make_non_resident(TextureData* texture) = 0;
    /// @}

    /// @name Raster text
    /// The windows forms belong to a platform that this back end doesn't draw on: they are always
    /// false. The linux forms need the fixed pipeline and the GLUT library, which is loaded when
    /// the first text is drawn; without it they log one line and return false. They leave blending
    /// and the depth test switched off.
    /// @{

    /// Always false.
    virtual bool font_bitmap_windows_create(FontData* font) = 0;
    /// Always false.
    virtual bool font_bitmap_windows_kill(FontData* font) = 0;
    /// Always false.
    virtual bool font_bitmap_windows_render(FontData* font, int x, int y, float r, float g, float b,
                                            float a, const char* text, unsigned long length) = 0;
    /// Always false.
    virtual bool font_bitmap_windows_render_3d(FontData* font, float x, float y, float z, float r,
                                               float g, float b, float a, const char* text,
                                               unsigned long length) = 0;
    /// Always false.
    virtual bool font_bitmap_windows_render_prepare(FontData* font, int x, int y, float r, float g,
                                                    float b, float a, const char* text,
                                                    unsigned long length) = 0;
    /// Always false.
    virtual bool font_bitmap_windows_render_draw(FontData* font, int x, int y, float r, float g,
                                                 float b, float a, const char* text,
                                                 unsigned long length) = 0;
    /// Always false.
    virtual bool font_bitmap_windows_render_finish(FontData* font, int x, int y, float r, float g,
                                                   float b, float a, const char* text,
                                                   unsigned long length) = 0;
    /// Draws a text in pixels of the viewport told by the record; y counts down from its top.
    /// @param text    drawn to its terminating zero
    /// @param length  only tested against 0
    virtual bool font_bitmap_linux_render(FontData* font, int x, int y, float r, float g, float b,
                                          float a, const char* text, unsigned long length) = 0;
    /// Draws a text at a point of the scene, by the matrices of the fixed pipeline.
    /// @param text    drawn to its terminating zero
    /// @param length  only tested against 0
    virtual bool font_bitmap_linux_render_3d(FontData* font, float x, float y, float z, float r,
                                             float g, float b, float a, const char* text,
                                             unsigned long length) = 0;
    /// @}

    /// @name Pipeline
    /// @{

    /// Waits until the API has done everything.
    virtual void finish_pipeline() = 0;
    /// Makes the API begin with everything it was given.
    virtual void flush_pipeline() = 0;
    /// @}

    /// @name Matrices of the fixed pipeline
    /// The matrix mode stays where the last step puts it.
    /// @{

    /// Loads the matrices that aren't null, 16 floats each, column by column; the model-view matrix
    /// becomes view * model.
    virtual void gl2_matrix_load(float* projection, float* view, float* model, float* texture) = 0;
    /// Sets the chosen matrices to the identity.
    virtual void gl2_matrix_load_identity(bool projection, bool modelview, bool texture) = 0;
    /// @}

    /// @name Vertex pools
    /// @{

    /// Prepares, draws and finishes; true in any case.
    virtual bool vertex_pool_render(VertexPoolData* pool) = 0;
    /// Makes the buffer on first use, uploads what is dirty, sets up the arrays.
    /// @return false for null, for a pool without points, or if the buffer couldn't be made
    virtual bool vertex_pool_render_prepare(VertexPoolData* pool) = 0;
    /// Draws the points. @return false for null, and without a buffer since the last prepare
    virtual bool vertex_pool_render_draw(VertexPoolData* pool) = 0;
    /// Undoes the set-up of the arrays. @return false for null
    virtual bool vertex_pool_render_finish(VertexPoolData* pool) = 0;
    /// Deletes the record's buffers, on whatever thread. @return false for null
    virtual bool vertex_pool_kill(VertexPoolData* pool) = 0;
    /// Orders vertex fetches after storage writes of shaders, for pools that a shader fills.
    virtual void vertex_pool_memory_barriers() = 0;
    /// @}

    /// @name Lines
    /// @{

    /// Sets the width of lines.
    /// @param width  pixels, above 0; the API rounds it, and clamps it to what it draws
    virtual void set_line_width(float width) = 0;
    /// Sets the stipple of lines of the fixed pipeline.
    /// @param factor   pixels to a bit, clamped to 1 and 256
    /// @param pattern  one bit a place, the lowest first
    virtual void set_line_stipple(int factor, unsigned short pattern) = 0;
    /// Draws one line in the immediate mode of the fixed pipeline.
    virtual void render_line(const vec4& a, const vec4& a_color, const vec4& b,
                             const vec4& b_color) = 0;
    /// @}

    /// @name Lights and materials of the fixed pipeline
    /// Lights count from 0, and there are at least 8; materials are those of both sides. A light
    /// beyond the last, or a shininess outside 0 to 128, is an error of the API's.
    /// @{

    /// Sets all three colours of a light.
    virtual void light_set_colors(unsigned int light, const vec4& ambient, const vec4& diffuse,
                                  const vec4& specular) = 0;
    /// Sets the ambient colour of a light.
    virtual void light_set_ambient(unsigned int light, const vec4& color) = 0;
    /// Sets the diffuse colour of a light.
    virtual void light_set_diffuse(unsigned int light, const vec4& color) = 0;
    /// Sets the specular colour of a light.
    virtual void light_set_specular(unsigned int light, const vec4& color) = 0;
    /// Sets all colours and the shininess (0 to 128) of the material.
    virtual void material_set_colors(const vec4& ambient, const vec4& diffuse, const vec4& specular,
                                     float shininess) = 0;
    /// Sets the ambient colour of the material.
    virtual void material_set_ambient(const vec4& color) = 0;
    /// Sets the diffuse colour of the material.
    virtual void material_set_diffuse(const vec4& color) = 0;
    /// Sets the specular colour of the material.
    virtual void material_set_specular(const vec4& color) = 0;
    /// Sets the shininess of the material, 0 to 128.
    virtual void material_set_shininess(float shininess) = 0;
    /// @}

    /// @name Polyline buffers
    /// @{

    /// Makes the buffer on first use, uploads what is dirty, sets up the arrays by the record's
    /// path.
    /// @return false for null, for a polyline without vertices, or if the buffer couldn't be made
    virtual bool polyline_vb_prepare(PolylineData* polyline) = 0;
    /// `polyline_vb_prepare` on the path of client arrays.
    virtual bool polyline_vb_prepare_gl2(PolylineData* polyline) = 0;
    /// Draws `count` vertices from `start` on; below 1 means the number of vertices, which `start`
    /// doesn't reduce.
    /// @return false for null, and without a buffer since the last prepare
    virtual bool polyline_vb_draw(PolylineData* polyline, int start, int count) = 0;
    /// Undoes the set-up of the arrays. @return false for null
    virtual bool polyline_vb_finish(PolylineData* polyline) = 0;
    /// Deletes the record's buffers, on the thread recorded in it only.
    /// @return false for null and on another thread
    virtual bool polyline_vb_kill(PolylineData* polyline) = 0;
    /// @}

    /// @name Depth bias
    /// Sent at once and not remembered.
    /// @{

    /// Sets factor and units of the depth bias.
    virtual void set_depth_bias_factors(float factor, float units) = 0;
    /// Switches the depth bias of filled polygons.
    virtual void set_depth_bias_state(bool state) = 0;
    /// @}

    /// @name Shadow mapping
    /// Depth first, then light only what the depth pass laid down. These set state; the host draws
    /// between them.
    /// @{

    /// Sets the light pass up: binds the target's depth texture for comparison, and stores in the
    /// program's uniform "TextureMatrix" the way from the camera's space to the shadow map,
    /// bias * projection * view * inverse(stored view matrix). A null program is passed over.
    virtual void shadow_mapping_prepare_light_pass(RenderTarget* target, unsigned int unit,
                                                   mat4& projection, mat4& view,
                                                   GpuProgramData* program) = 0;
    /// Ends the light pass. The depth test stays at "less or equal".
    virtual void shadow_mapping_finish_light_pass(RenderTarget* target, unsigned int unit) = 0;
    /// Sets the depth pass up: depth alone, back faces culled, the depth buffer cleared.
    virtual void shadow_mapping_enable_zpass_states() = 0;
    /// Ends the depth pass.
    virtual void shadow_mapping_disable_zpass_states() = 0;
    /// @}

    /// @name Atomic counters
    /// They need GL 4.2. Counters have 4 bytes.
    /// @{

    /// Makes every counter buffer that is created from now on use this; it has effect only while a
    /// usage of storage buffers is forced too.
    virtual void atomic_counter_force_buffer_object_usage(BUFFER_OBJECT_USAGE usage) = 0;
    /// Makes a buffer of counters, filled from `content` unless it is null, attaches it to a
    /// binding point and returns its id, 0 on failure. The caller owns it.
    /// @param num_counters  counters of 4 bytes; `content` holds as many
    /// @param binding       from 0 on, as the shader says
    virtual unsigned int atomic_counter_create_buffer(unsigned long num_counters,
                                                      BUFFER_OBJECT_USAGE usage,
                                                      unsigned int binding, void* content) = 0;
    /// Deletes a buffer.
    virtual bool atomic_counter_kill_buffer(unsigned int id) = 0;
    /// Binds a buffer; 0 unbinds.
    virtual bool atomic_counter_buffer_bind(unsigned int id) = 0;
    /// Writes one counter of the buffer that is bound now; `id` is not used.
    /// @param index  place of the counter; one beyond the buffer's end is an error of the API's
    virtual bool atomic_counter_set_value(unsigned int id, unsigned int value,
                                          unsigned long index) = 0;
    /// Reads one counter of the buffer that is bound now; `id` is not used. 0 for an index beyond
    /// the buffer's end.
    virtual unsigned int atomic_counter_get_value(unsigned int id, unsigned long index) = 0;
    /// Maps the buffer that is bound now for reading and writing; null for the id 0 and on failure.
    virtual void* atomic_counter_buffer_map(unsigned int id) = 0;
    /// Maps a part, in bytes, of the buffer that is bound now for unsynchronized writing; null for
    /// the id 0 and on failure.
    virtual void* atomic_counter_buffer_map_range(unsigned int id, unsigned long offset,
                                                  unsigned long length) = 0;
    /// Ends the mapping of the buffer that is bound now.
    virtual bool atomic_counter_buffer_unmap(unsigned int id) = 0;
    /// Binds a buffer to a binding point of the shaders; 0 unbinds.
    virtual bool atomic_counter_buffer_bind_base(unsigned int id, unsigned int binding) = 0;
    /// @}

    /// @name Uniform buffers
    /// They need GL 3.1. A record has a buffer in each window where it was initialized, or one for
    /// all that share, and each operation takes that of the current context; without one there it
    /// gives its failure value. What a host wrote into one isn't in the others.
    /// @{

    /// Makes the buffer of a uniform block, of the size that the block has in the program, and ties
    /// both to the record's binding point.
    /// @param program  the API's id of a linked program
    /// @return false for null, or if the program has no block of the record's name
    virtual bool uniform_buffer_initialize(UniformBufferData* buffer, unsigned int program) = 0;
    /// Makes every uniform buffer that is created from now on use this; `BUFFER_USAGE_DEFAULT` ends
    /// it.
    virtual void force_uniform_buffer_object_usage(BUFFER_OBJECT_USAGE usage) = 0;
    /// Deletes the record's buffer.
    virtual bool uniform_buffer_kill(UniformBufferData* buffer) = 0;
    /// Binds and maps the buffer for writing; null on failure.
    virtual void* uniform_buffer_map(UniformBufferData* buffer) = 0;
    /// Maps a part of the bound buffer for writing.
    /// @param offset,length  bytes; null for a part that reaches beyond the buffer's end
    virtual void* uniform_buffer_map_range(UniformBufferData* buffer, unsigned long offset,
                                           unsigned long length) = 0;
    /// Ends the mapping.
    virtual bool uniform_buffer_unmap(UniformBufferData* buffer) = 0;
    /// Binds the buffer, unless the record says that it is bound.
    virtual bool uniform_buffer_bind(UniformBufferData* buffer) = 0;
    /// Binds the buffer to its binding point, unless the record says that it is bound.
    virtual bool uniform_buffer_bind_base(UniformBufferData* buffer) = 0;
    /// Unbinds the buffer and its binding point; with null only what is bound now.
    virtual bool uniform_buffer_unbind(UniformBufferData* buffer) = 0;
    /// @}

    /// @name Blending of alpha by itself
    /// @{

    /// `set_blend_factors` with factors of their own for alpha, so that a target keeps how much of
    /// a pixel is covered: one and one less the source's alpha beside the usual ones for colours.
    /// Needs GL 1.4. @return false without; nothing is changed then
    virtual bool set_blend_factors_separate(RENDERER_BLEND_FACTOR src_color,
                                            RENDERER_BLEND_FACTOR dst_color,
                                            RENDERER_BLEND_FACTOR src_alpha,
                                            RENDERER_BLEND_FACTOR dst_alpha) = 0;
    /// @}

    /// @name Binds that are left out
    /// The draw of an object binds its program, textures and vertices and unbinds them again, and
    /// the next object often binds the same. A renderer may leave such a pair out; what is drawn
    /// and what the API holds afterwards are the same.
    /// @{

    /// Lets the walks of `Node::render` keep binds, from the next one on; the state is off at
    /// first. In a walk that is under way an end restores everything at once.
    ///
    /// A walk keeps binds while it goes over groups, models and meshes of the engine's own classes.
    /// Whatever else it meets (a class of a host's, text, particles, lines, points) finds
    /// everything as it would be without, and so does whoever is called by the engine in between. A
    /// back end that can't keep binds draws as ever.
    void set_elided_binds_state(bool state);
    /// Returns the state.
    bool get_elided_binds_state() const { return elides_binds; }
    /// Begins to keep binds, or ends it; for a host that draws its objects without a walk. Needs
    /// `set_elided_binds_state(true)` for a beginning, which does nothing otherwise; a second one
    /// is harmless.
    ///
    /// An operation of this contract, of a target or of a window finds everything as it would be
    /// without, in between too; what a host sends to the API by itself has to wait for the end, or
    /// for any of those. The beginning and the end belong to one thread and one context.
    ///
    /// @code
    /// const bool was_keeping = renderer->keep_binds(true);
    /// for (Mesh* mesh : meshes)
    ///     mesh->render(renderer, nullptr);
    /// renderer->keep_binds(was_keeping);
    /// @endcode
    /// @return whether binds were kept until now
    virtual bool keep_binds(bool state);
    /// Returns whether binds are kept now.
    bool get_kept_binds_state() const { return keeps_binds; }
    /// @}

protected:
    /// For back ends: tells whether binds are kept from now on.
    void note_kept_binds(bool state) { keeps_binds = state; }

private:
    struct RendererData;
    std::unique_ptr<RendererData> renderer_data;
    bool elides_binds = false;
    bool keeps_binds = false;
};

} // namespace orvex
