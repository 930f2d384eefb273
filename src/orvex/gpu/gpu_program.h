#pragma once

/// @file
/// `GpuProgram`, a named shader program, and the road of a uniform to it.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"
#include "orvex/scene/resource.h"

namespace orvex {

/// A named shader program: its sources, its names for what the engine fills in by itself, and the
/// uniform values that wait until it is bound.
///
/// `GpuProgramMgr` makes programs and holds a reference on each; materials and objects that use one
/// hold more. It dies when the last holder releases it. Loading compiles the stages; linking
/// happens in the first `bind`. Everything that takes a renderer needs that renderer's graphics
/// context current on the calling thread; a null renderer makes such an operation return false,
/// null or -1 and do nothing, except where a setter then keeps its value for the next bind.
///
/// One text can hold all stages, each behind its marker: "[Vertex_Shader]", "[Pixel_Shader]",
/// "[Geometry_Shader]", "[TessControl_Shader]", "[TessEval_Shader]", "[Compute_Shader]".
///
/// @code
/// orvex::GpuProgram* program = orvex::GpuProgramMgr::get()->create_gpu_program_from_file(
///     renderer, "phong.glsl", "phong");
/// if (!program->is_valid())
///     orvex::LogMgr::get()->tracef_error("%s", program->get_shader_error_messages());
/// program->set_uniform_4f(nullptr, "tint", 1, 1, 1, 1); // waits for the next bind
/// program->bind(renderer);
/// @endcode
class ORVEX_API GpuProgram : public Resource {
public:
    /// Makes a program without stages, with the standard names.
    GpuProgram();
    /// Frees the record. API objects outlive it unless `_cleanup` ran with a renderer.
    ~GpuProgram() override;
    GpuProgram(const GpuProgram&) = delete;
    GpuProgram& operator=(const GpuProgram&) = delete;

    /// Hook, run by `Node`: frees the API objects if there is a renderer, and the record's texts in
    /// any case. May run twice.
    bool _cleanup(Renderer* renderer) override;
    /// Returns the plugin id of the renderer that made the API program, 0 for none.
    int get_renderer_id() override;

    /// @name Loading
    /// @{

    /// Reads a file and loads it with `load_from_memory`.
    /// @param path  terminated; null and a file that can't be read return false
    bool load_from_file(Renderer* renderer, const char* path);

    /// Compiles the stages found in a text with section markers. A marker counts wherever its first
    /// occurrence stands; a stage's text runs up to the next marker or the end.
    /// @param size  most characters to read; a terminator ends the text earlier. 0 returns false
    /// @return false for a null text, for a text that has neither a compute marker nor both a
    ///         vertex and a pixel marker (nothing is compiled then), and when a stage fails: the
    ///         stages before it, in the order vertex, pixel, geometry, tessellation control,
    ///         tessellation evaluation, compute, stay loaded
    bool load_from_memory(Renderer* renderer, const char* text, unsigned long size);

    /// Reads a file and loads it with `shader_load_from_memory`.
    /// @param type  stage, 0 to 7; anything else returns false
    /// @param path  terminated; null and a file that can't be read return false
    bool shader_load_from_file(Renderer* renderer, GPU_SHADER_TYPE type, const char* path);

    /// Compiles one stage and attaches it to the program.
    /// @param type    stage, 0 to 7; anything else returns false
    /// @param source  terminated text; null returns false
    /// @param size    characters kept for `get_shader_source_code`; 0 returns false
    /// @return false when the stage doesn't compile: its message is kept, and logged as a warning
    bool shader_load_from_memory(Renderer* renderer, GPU_SHADER_TYPE type, const char* source,
                                 unsigned long size);
    /// @}

    /// @name Use
    /// @{

    /// Makes this the active program, links it if need be, and sends the waiting uniforms. Returns
    /// false when it doesn't link; the program active before stays.
    bool bind(Renderer* renderer);
    /// Leaves no program active.
    bool unbind(Renderer* renderer);
    /// The same as `bind`.
    bool activate(Renderer* renderer);
    /// The same as `unbind`.
    bool deactivate(Renderer* renderer);
    /// Sends the waiting uniforms and dispatches x * y * z work groups on the active program. It
    /// neither binds this program nor waits: put `Renderer::memory_barrier` behind it.
    /// @param x,y,z  work groups in each direction; 0 dispatches none, more than
    ///               `Renderer::get_GL_MAX_COMPUTE_WORK_GROUP_COUNT` is an error of the API's
    bool run_compute(Renderer* renderer, unsigned int x, unsigned int y, unsigned int z);
    /// Sends the waiting uniforms. The program must be active.
    bool bind_uniforms(Renderer* renderer);
    /// Lets the next bind send every uniform of the table again.
    bool need_bind_uniforms();
    /// @}

    /// @name Queries
    /// @{

    /// Returns the thread that made the API program, not the node's thread. Owned here.
    Thread* get_thread_ptr();
    const Thread* get_thread_ptr() const; ///< to read only
    /// The same as `get_thread_ptr`.
    Thread* get_thread();
    const Thread* get_thread() const; ///< to read only
    /// Sets what `is_valid` returns; the manager does after loading.
    void set_valid_state(bool state);
    /// Returns whether the last load through the manager succeeded.
    [[nodiscard]] bool is_valid() const;
    /// Returns a line for each stage that has a compile message: a line break, the stage, " shader
    /// error: " and the message. Valid until the next call; empty, not null, without messages.
    const char* get_shader_error_messages();
    /// Returns the stage's last source that compiled, null for none and for a type outside 0 to 7.
    const char* get_shader_source_code(GPU_SHADER_TYPE type) const;
    /// Returns the location of a vertex attribute in the linked program, -1 if it has none or for
    /// a null argument.
    int get_vertex_attrib_location(Renderer* renderer, const char* name);
    /// Returns the location of a uniform in the linked program, -1 if it has none or for a null
    /// argument.
    int get_uniform_location(Renderer* renderer, const char* name);
    /// @}

    /// @name Names of what the engine fills in
    /// Null means that the engine doesn't send the value. The defaults are "orvex_ModelMatrix" and
    /// its kin.
    /// @{

    /// Of the transform from object to world space.
    void set_model_matrix_uniform_name(const char* name);
    const char* get_model_matrix_uniform_name() const; ///< "orvex_ModelMatrix" at first
    /// Of the view.
    void set_view_matrix_uniform_name(const char* name);
    const char* get_view_matrix_uniform_name() const; ///< "orvex_ViewMatrix" at first
    /// Of the projection.
    void set_projection_matrix_uniform_name(const char* name);
    const char* get_projection_matrix_uniform_name() const; ///< "orvex_ProjectionMatrix" at first
    /// Of view · model.
    void set_model_view_matrix_uniform_name(const char* name);
    const char* get_model_view_matrix_uniform_name() const; ///< "orvex_ModelViewMatrix" at first
    /// Of projection · view · model.
    void set_model_view_projection_matrix_uniform_name(const char* name);
    /// "orvex_ModelViewProjectionMatrix" at first.
    const char* get_model_view_projection_matrix_uniform_name() const;

    /// Names the vertex attribute at location `index`, null for none; the next bind links again.
    /// Only the first bind moves attributes to their locations. Returns false for an index of 16 or
    /// more.
    bool set_vertex_attrib_name(unsigned int index, const char* name);
    /// Returns the name at `index`, null for none and for an index of 16 or more.
    const char* get_vertex_attrib_name(unsigned int index) const;
    /// @}

    /// Chooses the draw path of objects with this program: true for generic attributes with vertex
    /// array objects, false for client arrays. A program with one of the standard attribute names
    /// turns itself to true in its first bind.
    void set_use_generic_vertex_attribs_state(bool state);
    /// Returns the draw path chosen.
    bool get_use_generic_vertex_attribs_state() const;

    /// @name Uniform buffer
    /// One block per program. Link first (`bind`): blocks exist in a linked program only.
    /// @{

    /// Makes the buffer of the named block. The name is kept up to 63 characters, also with a null
    /// renderer. Returns false for a null name and for a block that the program doesn't have.
    bool ub_init(Renderer* renderer, const char* block_name);
    /// Binds the buffer, unless it is bound already.
    bool ub_bind(Renderer* renderer);
    /// Sets the binding point, then binds the buffer to it unless it is bound already.
    /// @param binding  from 0; one that the API doesn't have is an error of the API's
    bool ub_bind_base(Renderer* renderer, unsigned int binding);
    /// Leaves the block's binding point without a buffer. @return false without a block
    bool ub_unbind(Renderer* renderer);
    /// Maps the buffer for writing. Null when that fails. Valid until `ub_unmap`.
    void* ub_map(Renderer* renderer);
    /// Ends the mapping: its pointer is no longer valid. @return false without a block, and where
    /// the API refuses
    bool ub_unmap(Renderer* renderer);
    /// Frees the API buffer, if there is a renderer, and the block's record in any case. Returns
    /// false when there is no record.
    bool ub_cleanup(Renderer* renderer);
    /// Writes one value into the mapped buffer; the renderer isn't used.
    /// @param index  place in the buffer, counted in values of 64 bits
    /// @return false when the buffer isn't mapped, or ends before the value would
    bool ub_set_value_ui64(Renderer* renderer, unsigned long index, unsigned long long value);
    /// @}

    /// @name Uniform setters
    /// With a renderer the value goes to the program that is active now, at once, and the result is
    /// true. With a null renderer it goes into this program's table and waits for the next bind;
    /// the result is false for a null name or pointer. Counts are in elements: vectors for the
    /// forms of 2 to 4 components, matrices for the matrix forms, which keep one matrix and ignore
    /// the count when the value waits. Matrices are column-major. A negative count of
    /// an array returns false where the value waits, and is an error of the API's where it is sent.
    /// @{

    /// An `int`.
    bool set_uniform_1i(Renderer* renderer, const char* name, int x);
    /// An `ivec2`.
    bool set_uniform_2i(Renderer* renderer, const char* name, int x, int y);
    /// An `ivec3`.
    bool set_uniform_3i(Renderer* renderer, const char* name, int x, int y, int z);
    /// An `ivec4`.
    bool set_uniform_4i(Renderer* renderer, const char* name, int x, int y, int z, int w);
    /// A `float`.
    bool set_uniform_1f(Renderer* renderer, const char* name, float x);
    /// A `vec2`.
    bool set_uniform_2f(Renderer* renderer, const char* name, float x, float y);
    /// A `vec3`.
    bool set_uniform_3f(Renderer* renderer, const char* name, float x, float y, float z);
    /// A `vec4`.
    bool set_uniform_4f(Renderer* renderer, const char* name, float x, float y, float z, float w);
    /// A `double`.
    bool set_uniform_1d(Renderer* renderer, const char* name, double x);
    /// A `dvec2`.
    bool set_uniform_2d(Renderer* renderer, const char* name, double x, double y);
    /// A `dvec3`.
    bool set_uniform_3d(Renderer* renderer, const char* name, double x, double y, double z);
    /// A `dvec4`.
    bool set_uniform_4d(Renderer* renderer, const char* name, double x, double y, double z,
                        double w);
    /// A `uint`.
    bool set_uniform_1ui(Renderer* renderer, const char* name, unsigned int x);
    /// A `uvec2`.
    bool set_uniform_2ui(Renderer* renderer, const char* name, unsigned int x, unsigned int y);
    /// A `uvec3`.
    bool set_uniform_3ui(Renderer* renderer, const char* name, unsigned int x, unsigned int y,
                         unsigned int z);
    /// A `uvec4`.
    bool set_uniform_4ui(Renderer* renderer, const char* name, unsigned int x, unsigned int y,
                         unsigned int z, unsigned int w);
    /// One texture handle.
    bool set_uniform_1ui64(Renderer* renderer, const char* name, unsigned long long value);
    /// `count` elements of type `int`.
    bool set_uniform_1iv(Renderer* renderer, const char* name, const int* values, int count);
    /// `count` elements of type `ivec2`: `values` holds twice as many ints.
    bool set_uniform_2iv(Renderer* renderer, const char* name, const int* values, int count);
    /// `count` elements of type `ivec3`: `values` holds three times as many ints.
    bool set_uniform_3iv(Renderer* renderer, const char* name, const int* values, int count);
    /// `count` elements of type `ivec4`: `values` holds four times as many ints.
    bool set_uniform_4iv(Renderer* renderer, const char* name, const int* values, int count);
    /// `count` elements of type `float`.
    bool set_uniform_1fv(Renderer* renderer, const char* name, const float* values, int count);
    /// `count` elements of type `vec2`.
    bool set_uniform_2fv(Renderer* renderer, const char* name, const vec2* values, int count);
    /// `count` elements of type `vec3`.
    bool set_uniform_3fv(Renderer* renderer, const char* name, const vec3* values, int count);
    /// `count` elements of type `vec4`.
    bool set_uniform_4fv(Renderer* renderer, const char* name, const vec4* values, int count);
    /// `count` elements of type `double`.
    bool set_uniform_1dv(Renderer* renderer, const char* name, const double* values, int count);
    /// `count` elements of type `dvec2`: `values` holds twice as many doubles.
    bool set_uniform_2dv(Renderer* renderer, const char* name, const double* values, int count);
    /// `count` elements of type `dvec3`: `values` holds three times as many doubles.
    bool set_uniform_3dv(Renderer* renderer, const char* name, const double* values, int count);
    /// `count` elements of type `dvec4`: `values` holds four times as many doubles.
    bool set_uniform_4dv(Renderer* renderer, const char* name, const double* values, int count);
    /// `count` texture handles.
    bool set_uniform_1ui64v(Renderer* renderer, const char* name, const unsigned long long* values,
                            int count);
    /// `count` elements of type `mat3`, nine floats each.
    bool set_uniform_3x3fv(Renderer* renderer, const char* name, const float* values, int count);
    /// `count` elements of type `mat4`, sixteen floats each.
    bool set_uniform_4x4fv(Renderer* renderer, const char* name, const float* values, int count);
    /// @}

private:
    struct GpuProgramInternals;
    friend class GpuProgramMgr; // logs the messages of stages that don't compile

    std::unique_ptr<GpuProgramInternals> internals;
    std::unique_ptr<GpuProgramData> data;
};

} // namespace orvex
