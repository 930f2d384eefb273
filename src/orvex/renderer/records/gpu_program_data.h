#pragma once

/// @file
/// `GpuProgramData`, the record of one GPU program.

#include <vector>

#include "orvex/api.h"
#include "orvex/base/owned_text.h"
#include "orvex/fwd.h"
#include "orvex/renderer/records/counted_record.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// The API objects of a GPU program in one group of contexts that share.
struct GpuProgramObjects {
    unsigned long long group = 0;                     ///< number of the group; 0 for none
    unsigned int program = 0;                         ///< API program name
    unsigned int shaders[GPU_SHADER_TYPE_COUNT] = {}; ///< API shader names
    bool linked = false;                              ///< as in the record
    bool core_attribs_pending = true;                 ///< as in the record
    bool instancing_attribs_pending = true;           ///< as in the record
};

/// What a GPU program is to a back end: API names, link state, sources, logs, the names that the
/// engine fills in by itself, and the table of uniforms that wait for the next bind.
///
/// A `GpuProgram` makes, owns and destroys it; back ends get it as an argument and write their
/// object names into it. Matrices are column-major, as everywhere. The uniform setters touch no
/// graphics API and may run on any thread while no bind of this program runs; everything else
/// belongs to the thread whose graphics context is current.
///
///     GpuProgramData* program = renderer->gpu_program_get_active_program();
///     program->set_uniform_4f("tint", 1.0f, 0.5f, 0.0f, 1.0f);
///     renderer->gpu_program_bind_uniforms(program);
struct ORVEX_API GpuProgramData : ThreadRecord {
    /// Number of names in the table of vertex attributes. A name's index is its attribute location.
    static constexpr unsigned int NUM_VERTEX_ATTRIB_NAMES = 16;

    /// Slots that the uniform table starts with, and by which it grows.
    static constexpr unsigned long UNIFORM_SLOTS = 4;

    /// Makes a record without API objects, with the standard names and an empty table of four
    /// slots. The calling thread is the record's thread until a back end makes the program.
    GpuProgramData();

    /// Frees all that the record owns. API objects outlive it: a back end's `gpu_program_kill`
    /// comes first. A renderer that still names this record as its active program forgets it.
    ~GpuProgramData();

    GpuProgramData(const GpuProgramData&) = delete;
    GpuProgramData& operator=(const GpuProgramData&) = delete;

    /// Frees sources, logs, names and the uniform buffer's record. The uniform table stays. Safe to
    /// call again.
    void free_data();

    /// @name Draw path
    /// @{

    /// Chooses the path of objects drawn with this program: true for generic attributes with vertex
    /// array objects, false for client arrays. The first standard attribute that a bind finds still
    /// overturns false.
    void set_use_generic_vertex_attribs_state(bool state) { use_generic_vertex_attribs = state; }
    /// Returns the path chosen.
    bool get_use_generic_vertex_attribs_state() const { return use_generic_vertex_attribs; }
    /// @}

    /// @name Logs and sources
    /// @{

    /// Keeps a copy of a stage's compile message.
    /// @param type    stage, 0 to 7; anything else returns false
    /// @param text    message; null returns false
    /// @param length  its characters; 0 returns false
    /// @return false, with nothing changed, also when the slot's recorded size is already at least
    ///         `length`: the longer text stays. The recorded size is the kept length + 1.
    bool set_shader_info_log(GPU_SHADER_TYPE type, const char* text, unsigned long length);
    /// Returns a stage's compile message, null for none or for a type outside 0 to 7. A later
    /// success doesn't clear it.
    const char* get_shader_info_log(GPU_SHADER_TYPE type) const;
    /// Keeps a copy of the link message, by the rule of `set_shader_info_log`.
    bool set_info_log(const char* text, unsigned long length);
    /// Returns the link message, null for none.
    const char* get_info_log() const { return info_log.get(); }
    /// Returns the last source of a stage that compiled, null for none or for a type outside 0 to
    /// 7.
    const char* get_shader_source_code(GPU_SHADER_TYPE type) const;
    /// @}

    /// @name Direct3D
    /// For back ends that speak Direct3D; OpenGL reads none of it.
    /// @{

    /// Stores at most 127 characters of the entry point's name. Null unsets it; a type outside 0
    /// to 7 is ignored.
    void d3d11_set_entry_point_name(GPU_SHADER_TYPE type, const char* name);
    /// Returns the stored name, or the stage's default: "VS", "PS", "GS", "HS", "DS", and "main"
    /// for all other types.
    const char* d3d11_get_entry_point_name(GPU_SHADER_TYPE type) const;
    /// Returns the shader object of a stage from 0 to 4, null for none and for other types.
    void* d3d11_get_shader_ptr(GPU_SHADER_TYPE type) const;
    /// @}

    /// @name Names of the automatic uniforms
    /// Null means that the engine doesn't send the value. Getters give null then.
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
    /// Of projection · view.
    void set_view_projection_matrix_uniform_name(const char* name);
    /// "orvex_ViewProjectionMatrix" at first.
    const char* get_view_projection_matrix_uniform_name() const;
    /// Of the viewport, as x, y, width and height in a `vec4`.
    void set_viewport_uniform_name(const char* name);
    const char* get_viewport_uniform_name() const; ///< "orvex_Viewport" at first
    /// @}

    /// Names the vertex attribute that is bound to location `index`; null for none. Clears
    /// `linked`, so that the next bind links again. Returns false for an index of 16 or more.
    bool set_vertex_attrib_name(unsigned int index, const char* name);
    /// Returns the name at `index`, null for none and for an index of 16 or more.
    const char* get_vertex_attrib_name(unsigned int index) const;

    /// @name Uniform table
    /// @{

    /// Returns the slots, `get_num_uniforms` of them; used ones come first, the rest are null.
    /// Valid until the table grows. Null after `kill_uniforms`.
    GpuProgramUniform** get_uniforms_list() { return uniforms; }
    /// The same, to read only.
    const GpuProgramUniform* const* get_uniforms_list() const { return uniforms; }
    /// Returns the number of slots, used or not.
    unsigned long get_num_uniforms() const { return num_uniforms; }
    /// Returns the record whose name has the same first 63 characters, null for none or for a null
    /// name. Owned by the table.
    [[nodiscard]] GpuProgramUniform* find_uniform(const char* name);
    /// Returns a new record without a name in the first empty slot. A full table grows by four
    /// slots first.
    GpuProgramUniform* get_new_uniform();
    /// Deletes all records and the table.
    void kill_uniforms();
    /// Marks every used record dirty and clears `uniforms_optimized`, so that the next bind sends
    /// the whole table. Returns false when there is no table.
    bool need_bind_uniforms();
    /// @}

    /// @name Uniform setters
    /// Each finds the record of `name`, or makes one of the setter's type, stores the value and
    /// marks it dirty. The type of a record that exists isn't changed. They return false for a null
    /// name, a null pointer or a negative count, otherwise true. Counts are in elements: vectors
    /// for the forms of 2 to 4 components.
    /// @{

    /// An `int`.
    bool set_uniform_1i(const char* name, int x);
    /// An `ivec2`.
    bool set_uniform_2i(const char* name, int x, int y);
    /// An `ivec3`.
    bool set_uniform_3i(const char* name, int x, int y, int z);
    /// An `ivec4`.
    bool set_uniform_4i(const char* name, int x, int y, int z, int w);
    /// A `float`.
    bool set_uniform_1f(const char* name, float x);
    /// A `vec2`.
    bool set_uniform_2f(const char* name, float x, float y);
    /// A `vec3`.
    bool set_uniform_3f(const char* name, float x, float y, float z);
    /// A `vec4`.
    bool set_uniform_4f(const char* name, float x, float y, float z, float w);
    /// A `double`.
    bool set_uniform_1d(const char* name, double x);
    /// A `dvec2`.
    bool set_uniform_2d(const char* name, double x, double y);
    /// A `dvec3`.
    bool set_uniform_3d(const char* name, double x, double y, double z);
    /// A `dvec4`.
    bool set_uniform_4d(const char* name, double x, double y, double z, double w);
    /// A `uint`.
    bool set_uniform_1ui(const char* name, unsigned int x);
    /// A `uvec2`.
    bool set_uniform_2ui(const char* name, unsigned int x, unsigned int y);
    /// A `uvec3`.
    bool set_uniform_3ui(const char* name, unsigned int x, unsigned int y, unsigned int z);
    /// A `uvec4`.
    bool set_uniform_4ui(const char* name, unsigned int x, unsigned int y, unsigned int z,
                         unsigned int w);
    /// One texture handle.
    bool set_uniform_1ui64(const char* name, unsigned long long value);
    /// `count` elements of type `int`.
    bool set_uniform_1iv(const char* name, const int* values, int count);
    /// `count` elements of type `ivec2`: `values` holds twice as many ints.
    bool set_uniform_2iv(const char* name, const int* values, int count);
    /// `count` elements of type `ivec3`: `values` holds three times as many ints.
    bool set_uniform_3iv(const char* name, const int* values, int count);
    /// `count` elements of type `ivec4`: `values` holds four times as many ints.
    bool set_uniform_4iv(const char* name, const int* values, int count);
    /// `count` elements of type `float`.
    bool set_uniform_1fv(const char* name, const float* values, int count);
    /// `count` elements of type `vec2`.
    bool set_uniform_2fv(const char* name, const vec2* values, int count);
    /// `count` elements of type `vec3`.
    bool set_uniform_3fv(const char* name, const vec3* values, int count);
    /// `count` elements of type `vec4`.
    bool set_uniform_4fv(const char* name, const vec4* values, int count);
    /// `count` elements of type `double`.
    bool set_uniform_1dv(const char* name, const double* values, int count);
    /// `count` elements of type `dvec2`: `values` holds twice as many doubles.
    bool set_uniform_2dv(const char* name, const double* values, int count);
    /// `count` elements of type `dvec3`: `values` holds three times as many doubles.
    bool set_uniform_3dv(const char* name, const double* values, int count);
    /// `count` elements of type `dvec4`: `values` holds four times as many doubles.
    bool set_uniform_4dv(const char* name, const double* values, int count);
    /// `count` texture handles.
    bool set_uniform_1ui64v(const char* name, const unsigned long long* values, int count);
    /// Nine floats, column by column.
    bool set_uniform_3x3f(const char* name, const float* values);
    /// Sixteen floats, column by column.
    bool set_uniform_4x4f(const char* name, const float* values);
    /// The same from a matrix.
    bool set_uniform_4x4f(const char* name, const mat4& value);
    /// Recorded, but sent by no back end.
    bool set_uniform_3x3d(const char* name, const double* values);
    /// Recorded, but sent by no back end.
    bool set_uniform_4x4d(const char* name, const double* values);
    /// @}

    /// @name Common part of the array setters
    /// `components` is 1 to 4, anything else returns false. It sets the type when the record is
    /// made; later it only tells how many values there are. The array is made anew for another
    /// count, or when it is too short, and used again otherwise.
    /// @{

    /// `values` holds `count * components` ints.
    bool _set_uniform_iv(const char* name, const int* values, int count, int components);
    /// `values` holds `count * components` floats.
    bool _set_uniform_fv(const char* name, const float* values, int count, int components);
    /// `values` holds `count * components` doubles.
    bool _set_uniform_dv(const char* name, const double* values, int count, int components);
    /// `values` holds `count * components` texture handles.
    bool _set_uniform_ui64v(const char* name, const unsigned long long* values, int count,
                            int components);
    /// `values` holds as many as there are components.
    bool _set_uniform_ui(const char* name, const unsigned int* values, int components);
    /// @}

    /// @name For back ends
    /// @{

    /// Remembers that the pointer at `slot` names this record as the active program; the destructor
    /// makes it null. Null and a slot already known are ignored.
    void add_active_slot(GpuProgramData** slot);
    /// Forgets a slot. Ignored when it isn't known.
    void remove_active_slot(GpuProgramData** slot);
    /// @}

    int id = -1;                             ///< reserved
    unsigned int gl_program = 0;             ///< API program name, 0 for none
    bool use_generic_vertex_attribs = false; ///< the draw path of objects with this program
    bool auto_generic_pending = true;        ///< the first standard attribute sets the flag above
    bool linked = false;                     ///< the API program is linked as the record stands
    bool core_attribs_pending = true;        ///< attributes 0 to 5 still to be bound
    bool instancing_attribs_pending = true;  ///< attributes 6 to 10 still to be bound
    bool valid = false;                      ///< set by the manager after loading
    /// Whether the last source of the stage compiled.
    bool shader_loaded[GPU_SHADER_TYPE_COUNT] = {};
    unsigned int shader_ids[GPU_SHADER_TYPE_COUNT] = {};            ///< API shader names
    OwnedText shader_source[GPU_SHADER_TYPE_COUNT];                 ///< last source that compiled
    OwnedText shader_info_log[GPU_SHADER_TYPE_COUNT];               ///< last compile message
    unsigned long shader_info_log_size[GPU_SHADER_TYPE_COUNT] = {}; ///< recorded sizes
    OwnedText info_log;                                             ///< last link message
    unsigned long info_log_size = 0; ///< recorded size: the kept length + 1, 0 for none
    OwnedText d3d11_entry_point_name[GPU_SHADER_TYPE_COUNT]; ///< unset: the stage's default
    void* d3d11_shader[5] = {}; ///< shader objects of stages 0 to 4, for a back end
    int renderer_id = 0;        ///< plugin id of the renderer that made the API program, 0 for none
    unsigned long long gl_group = 0;    ///< number of the group of contexts that has the API names
    unsigned char gl_group_kinship = 0; ///< how its contexts are known; 0: not at all
    bool gl_lost = false;               ///< loaded, but not where it was asked for last
    bool gl_link_told = false;          ///< the log has said that it can't be linked
    std::vector<GpuProgramObjects> gl_elsewhere; ///< the API names in other groups
    UniformBufferData* uniform_buffer = nullptr; ///< owned; made by `GpuProgram::ub_init`
    OwnedText model_matrix_uniform_name;         ///< "orvex_ModelMatrix" at first
    OwnedText view_matrix_uniform_name;          ///< "orvex_ViewMatrix" at first
    OwnedText projection_matrix_uniform_name;    ///< "orvex_ProjectionMatrix" at first
    OwnedText model_view_matrix_uniform_name;    ///< "orvex_ModelViewMatrix" at first
    /// "orvex_ModelViewProjectionMatrix" at first.
    OwnedText model_view_projection_matrix_uniform_name;
    OwnedText view_projection_matrix_uniform_name; ///< "orvex_ViewProjectionMatrix" at first
    OwnedText viewport_uniform_name;               ///< "orvex_Viewport" at first
    OwnedText vertex_attrib_names[NUM_VERTEX_ATTRIB_NAMES]; ///< names by location
    bool uniforms_optimized = false;        ///< every record's location has been asked for
    GpuProgramUniform** uniforms = nullptr; ///< owned slots, used ones first
    unsigned long num_uniforms = 0;         ///< number of slots
    /// Number of the stretch of kept binds in which every record's location was asked for; 0 where
    /// a record came or a link was made since.
    unsigned long asked_in_stretch = 0;

private:
    GpuProgramUniform* touch_uniform(const char* name, int type);

    unsigned long last_found = 0; // slot to try first: setters come in the same order each frame
    std::vector<GpuProgramData**> active_slots;
};

} // namespace orvex
