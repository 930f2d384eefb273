#pragma once

/// @file
/// `MeshData`, the storage of one mesh's geometry, in the full vertex format.

#include "orvex/api.h"
#include "orvex/renderer/records/counted_record.h"
#include "orvex/renderer/records/gpu_objects.h"
#include "orvex/renderer/records/mesh_types.h"
#include "orvex/renderer/records/vertex.h"
#include "orvex/renderer/records/vertex_attrib_array.h"

namespace orvex {

/// What the back end remembers about the GPU objects of a store, beside their ids. Only the
/// renderer that made the objects reads and writes it. A byte size of 0 means unknown.
struct MeshDataGpuState {
    unsigned long vertex_buffer_bytes = 0;        ///< size last allocated
    unsigned long index_buffer_bytes = 0;         ///< size last allocated
    unsigned long quad_edge_buffer_bytes = 0;     ///< size last allocated
    unsigned long instance_buffer_bytes = 0;      ///< size last allocated
    unsigned int vertex_array_vertex_buffer = 0;  ///< vertex buffer that the array points into
    unsigned int vertex_array_element_buffer = 0; ///< element buffer bound inside it
    bool vertex_array_stale = false;   ///< its pointers no longer fit: it is to be recorded anew
    unsigned long instance_layout = 0; ///< instances, and which arrays the buffer has
    unsigned long vertex_array_instances = 0; ///< the same as the vertex array points into it
    unsigned long long context = 0; ///< number of the context that the vertex array belongs to
    unsigned long long group = 0;   ///< number of the group that the buffers belong to
};

/// The storage of one mesh's geometry: vertices, faces, per-face data, instancing arrays, user
/// vertex attributes and the ids of the GPU objects made from them.
///
/// A `Mesh` makes its store and owns it by reference count; several meshes can share one. The
/// formats `MeshData_64`, `MeshData_32` and `MeshData_PhysXCloth` derive from it. Vertices lie
/// either in separate arrays, one per attribute (the default), or interleaved in one array of
/// records: `separate_vertex_arrays` says which, and is set before allocation. The fields are
/// public because the renderer reads and fills them; hosts go through the operations of `Mesh`.
///
/// Positions are in object space. Nothing is locked. The store remembers the thread that made it,
/// and the renderer deletes GPU objects on that thread only: after handing a model to the render
/// thread, call `update_thread` on its stores there. The ids are those of the context that it was
/// drawn in last; in another one it gets objects of its own, but for the buffers of contexts that
/// share.
///
/// @code
/// MeshData* data = mesh->get_mesh_data();
/// data->alloc_vertex_data(3);
/// data->set_position(0, vec3(1.0f, 0.0f, 0.0f));
/// @endcode
struct ORVEX_API MeshData : CountedRecord, ThreadRecord {
    int position_attrib_location = 0; ///< generic attribute index, -1 for none; use the setter
    int color_attrib_location = 1;    ///< generic attribute index, -1 for none; use the setter
    int normal_attrib_location = 2;   ///< generic attribute index, -1 for none; use the setter
    int uv0_attrib_location = 3;      ///< generic attribute index, -1 for none; use the setter
    int uv1_attrib_location = 4;      ///< generic attribute index, -1 for none; use the setter
    int tangent_attrib_location = 5;  ///< generic attribute index, -1 for none; use the setter

    unsigned char* raw_vertices = nullptr; ///< raw block of an aligned interleaved array
    unsigned int vertex_buffer_id = 0;     ///< GPU vertex buffer
    unsigned int vertex_array_id = 0;      ///< GPU vertex array object
    void* mapped_vertex_buffer = nullptr;  ///< result of the last `Mesh::map_vertex_buffer`
    unsigned long num_vertices = 0;        ///< vertex count
    unsigned long draw_start_vertex = 0;   ///< first vertex of non-indexed drawing
    unsigned long draw_end_vertex = 0;     ///< end of non-indexed drawing, one past the last
    bool separate_vertex_arrays = true;    ///< one array per attribute, or interleaved
    int alignment = 0;                     ///< 1 and above: aligned allocation; below: `new[]`
    /// One simulation particle per vertex: position in x, y, z, weight in w (0 is attached).
    vec4* vertex_particles = nullptr;

    unsigned int index_buffer_id = 0; ///< GPU index buffer
    unsigned long num_faces = 0;      ///< triangle count
    FaceU16* faces_u16 = nullptr;     ///< the faces when `index_bits` is 16
    FaceU32* faces_u32 = nullptr;     ///< the faces when `index_bits` is 32
    vec4* face_normals = nullptr;     ///< one per face, w 0; they stay on the CPU
    int* face_materials = nullptr;    ///< one per face: the id of its material, 0 for none
    int index_bits = 32;              ///< width of a vertex index, 16 or 32

    bool render_wireframe_quad = false;   ///< draw the quad edges as lines instead of the faces
    unsigned int quad_edge_buffer_id = 0; ///< GPU buffer of the quad edges
    unsigned int* quad_edges = nullptr;   ///< vertex indices, two per line
    unsigned long num_quad_edges = 0;     ///< length of that array, in indices
    bool quad_edges_need_update = false;  ///< upload the quad edges at the next prepare

    unsigned int instance_buffer_id = 0;  ///< GPU buffer of all instance arrays
    unsigned long num_instances = 0;      ///< instance count
    VertexAttribArray instance_positions; ///< per instance, location 6
    VertexAttribArray instance_rotations; ///< per instance, location 7
    VertexAttribArray instance_scales;    ///< per instance, location 8
    VertexAttribArray instance_colors;    ///< per instance, location 9
    VertexAttribArray instance_miscs;     ///< per instance, location 10

    /// GPU usage hint, a constant of the graphics interface; 0 lets the back end write its static
    /// default here at the first upload.
    unsigned int vertex_buffer_usage = 0;
    unsigned int index_buffer_usage = 0; ///< the same for the index buffer

    bool faces_need_update = false;     ///< upload the faces at the next prepare
    bool positions_need_update = false; ///< upload the positions at the next prepare
    bool normals_need_update = false;   ///< upload the normals at the next prepare
    bool tangents_need_update = false;  ///< upload the tangents at the next prepare
    bool colors_need_update = false;    ///< upload the colours at the next prepare
    bool uv0_need_update = false;       ///< upload texture layer 0 at the next prepare
    bool uv1_need_update = false;       ///< upload texture layer 1 at the next prepare

    bool tessellation_state = false;        ///< draw as patches instead of triangles
    bool use_generic_vertex_attribs = true; ///< generic attributes, or fixed-function arrays

    bool instance_positions_need_update = false; ///< upload them at the next prepare
    bool instance_rotations_need_update = false; ///< upload them at the next prepare
    bool instance_scales_need_update = false;    ///< upload them at the next prepare
    bool instance_colors_need_update = false;    ///< upload them at the next prepare
    bool instance_miscs_need_update = false;     ///< upload them at the next prepare

    MaterialSubset* subsets = nullptr;        ///< face runs by material
    unsigned long num_subsets = 0;            ///< length of that list
    MaterialSubset* current_subset = nullptr; ///< the subset being rendered, else null

    int renderer_id = 0; ///< id of the renderer that made the GPU objects
    int mesh_id = 0;     ///< `Node` id of the mesh that last took this store

    VertexAttribArray* user_attribs = nullptr; ///< user vertex attributes
    unsigned long num_user_attribs = 0;        ///< length of that list
    bool user_attribs_allocated = false;       ///< true while the list exists

    VERTEX_FORMAT vertex_format; ///< as constructed

    VertexAttribArray position; ///< separate positions of format 0
    VertexAttribArray color;    ///< separate colours of format 0
    VertexAttribArray normal;   ///< separate normals of format 0
    VertexAttribArray uv0;      ///< separate first texture layer of format 0
    VertexAttribArray uv1;      ///< separate second texture layer of format 0
    VertexAttribArray tangent;  ///< separate tangents of format 0
    Vertex* vertices = nullptr; ///< the interleaved array of format 0

    MeshDataGpuState gpu_state;        ///< the back end's own
    GpuObjectsElsewhere gpu_elsewhere; ///< the back end's own

    /// Makes an empty store with reference count 0, owned by the calling thread.
    explicit MeshData(VERTEX_FORMAT format = VERTEX_FORMAT_96);
    MeshData(const MeshData&) = delete;
    MeshData& operator=(const MeshData&) = delete;

    /// Frees all memory of the store. GPU objects stay: `Renderer::vertex_buffer_kill` ends them.
    virtual ~MeshData();

    /// The interleaved record i, or null for separate arrays, for i out of range, and in all
    /// formats but the full one, whose record is another.
    virtual Vertex* get_vertex(unsigned long i);
    const Vertex* get_vertex(unsigned long i) const; ///< the same, to read only

    /// A copy of vertex i in the full format, whatever the store's own format and layout.
    ///
    /// Narrow attributes are widened as `vec4::operator=` does it, so that the normal of such a
    /// copy has w 1. A default vertex for i out of range.
    virtual Vertex get_vertex_v2(unsigned long i);

    /// @return size of one interleaved record in bytes
    virtual unsigned int get_vertex_elt_size();

    /// @return the interleaved array, or null
    virtual void* get_vertex_ptr();
    const void* get_vertex_ptr() const; ///< the same, to read only

    virtual unsigned int get_position_elt_size(); ///< bytes of one position
    virtual unsigned int get_color_elt_size();    ///< bytes of one colour, 0 if there are none
    virtual unsigned int get_normal_elt_size();   ///< bytes of one normal
    virtual unsigned int get_uv0_elt_size();      ///< bytes of one uv of layer 0
    virtual unsigned int get_uv1_elt_size();      ///< bytes of one uv of layer 1, 0 if none
    virtual unsigned int get_tangent_elt_size();  ///< bytes of one tangent, 0 if there are none

    virtual unsigned int get_position_vector_dim(); ///< floats of one position
    virtual unsigned int get_color_vector_dim();    ///< floats of one colour, 0 if there are none
    virtual unsigned int get_normal_vector_dim();   ///< floats of one normal
    virtual unsigned int get_uv0_vector_dim();      ///< floats of one uv of layer 0
    virtual unsigned int get_uv1_vector_dim();      ///< floats of one uv of layer 1, 0 if none
    virtual unsigned int get_tangent_vector_dim();  ///< floats of one tangent, 0 if there are none

    virtual unsigned int get_position_size(); ///< bytes of all positions, cut to 32 bits
    virtual unsigned int get_color_size();    ///< bytes of all colours, cut to 32 bits
    virtual unsigned int get_normal_size();   ///< bytes of all normals, cut to 32 bits
    virtual unsigned int get_uv0_size();      ///< bytes of texture layer 0, cut to 32 bits
    virtual unsigned int get_uv1_size();      ///< bytes of texture layer 1, cut to 32 bits
    virtual unsigned int get_tangent_size();  ///< bytes of all tangents, cut to 32 bits

    virtual void* get_position_ptr(); ///< separate positions, or null
    virtual void* get_color_ptr();    ///< separate colours, or null
    virtual void* get_normal_ptr();   ///< separate normals, or null
    virtual void* get_uv0_ptr();      ///< separate texture layer 0, or null
    virtual void* get_uv1_ptr();      ///< separate texture layer 1, or null
    virtual void* get_tangent_ptr();  ///< separate tangents, or null

    const void* get_position_ptr() const; ///< separate positions to read only, or null
    const void* get_color_ptr() const;    ///< separate colours to read only, or null
    const void* get_normal_ptr() const;   ///< separate normals to read only, or null
    const void* get_uv0_ptr() const;      ///< separate texture layer 0 to read only, or null
    const void* get_uv1_ptr() const;      ///< separate texture layer 1 to read only, or null
    const void* get_tangent_ptr() const;  ///< separate tangents to read only, or null

    /// @name Reading one vertex
    /// An index out of range and an attribute that the format lacks read as the default, (0, 0, 0)
    /// or (0, 0, 0, 1). Narrow attributes are widened.
    /// @{
    virtual vec3 get_position(unsigned long i) const;    ///< position without w
    virtual vec4 get_position_4f(unsigned long i) const; ///< w 1 where positions are `vec3`
    virtual vec4 get_color(unsigned long i) const;       ///< red, green, blue, alpha
    virtual vec3 get_normal(unsigned long i) const;      ///< normal without w
    virtual vec4 get_uv0(unsigned long i) const;         ///< (u, v, 0, 1) where uvs are `vec2`
    virtual vec4 get_uv1(unsigned long i) const;         ///< second texture layer
    virtual vec4 get_tangent(unsigned long i) const;     ///< w 1 where tangents are `vec3`
    /// @return user attribute number `attrib` of vertex i
    virtual vec4 get_user_attrib(unsigned long attrib, unsigned long i) const;
    /// @}

    /// @name Writing one vertex
    /// An index out of range and an attribute that the format lacks are ignored. No vertex flag is
    /// raised here: the operations of `Mesh` do that.
    /// @{
    virtual void set_position(unsigned long i, const vec3& value); ///< w becomes 1
    virtual void set_position(unsigned long i, const vec4& value); ///< w is kept where it fits
    virtual void set_normal(unsigned long i, const vec3& value);   ///< w becomes 0
    virtual void set_color(unsigned long i, const vec4& value);    ///< red, green, blue, alpha
    virtual void set_uv0(unsigned long i, const vec4& value);      ///< x, y where uvs are `vec2`
    virtual void set_uv1(unsigned long i, const vec4& value);      ///< second texture layer
    virtual void set_tangent(unsigned long i, const vec4& value);  ///< w is kept where it fits
    /// User attribute number `attrib` of vertex i; marks that attribute for upload.
    virtual void set_user_attrib(unsigned long attrib, unsigned long i, const vec4& value);
    /// @}

    /// Allocates `count` default vertices and their particles, in place of the vertices before.
    /// @return false, with a log line, if memory runs out. The vertex count is the new one then,
    ///         and arrays that could not be made are null.
    virtual bool alloc_vertex_data(unsigned long count);

    /// The same with user attributes, for the full format only: in the others it fills the unused
    /// arrays of the full format.
    virtual bool alloc_vertex_data_v2(unsigned long count, unsigned long num_user_attribs);

    /// Frees vertices, particles and, in the full format, user attributes. Does nothing if there
    /// are no vertices. Faces stay.
    virtual void free_vertex_data();

    /// Makes this store's vertices a copy of another's.
    ///
    /// The two are expected to have one format and to agree on `separate_vertex_arrays`; attributes
    /// that don't match are left at their defaults. Faces, user attributes and particles aren't
    /// copied. Where these vertices were drawn before, the next prepare uploads all of them.
    /// @return false, changing nothing, for null and for a source without vertices; true, changing
    ///         nothing, for this store itself; false if memory runs out
    virtual bool copy_vertex_data(MeshData* source);

    /// Allocates `count` quad edge indices, all 0, in place of those before.
    /// @return true, or false, with no quad edges left, if memory runs out
    virtual bool alloc_quad_edge_data(unsigned long count);

    /// Frees the quad edges and switches their drawing off.
    virtual void free_quad_edge_data();

    void set_vertex_format(VERTEX_FORMAT format); ///< only notes the format; no data changes
    VERTEX_FORMAT get_vertex_format() const;      ///< the format noted

    void set_position_attrib_location(int location); ///< -1 for none
    int get_position_attrib_location() const;        ///< -1 for none
    void set_color_attrib_location(int location);    ///< -1 for none
    int get_color_attrib_location() const;           ///< -1 for none
    void set_normal_attrib_location(int location);   ///< -1 for none
    int get_normal_attrib_location() const;          ///< -1 for none
    void set_uv0_attrib_location(int location);      ///< -1 for none
    int get_uv0_attrib_location() const;             ///< -1 for none
    void set_uv1_attrib_location(int location);      ///< -1 for none
    int get_uv1_attrib_location() const;             ///< -1 for none
    void set_tangent_attrib_location(int location);  ///< -1 for none
    int get_tangent_attrib_location() const;         ///< -1 for none

    /// Sets the generic attribute index of a user attribute; ignored for `attrib` out of range.
    void set_user_attrib_location(unsigned long attrib, int location);
    /// @return the generic attribute index of a user attribute, -1 for none or out of range
    int get_user_attrib_location(unsigned long attrib) const;

    /// True: the next draw goes by generic attributes; false: by fixed-function arrays.
    void set_use_generic_vertex_attribs_state(bool state);
    bool get_use_generic_vertex_attribs_state() const; ///< see the setter

    bool has_separate_vertex_arrays() const; ///< false if the vertices are interleaved
    unsigned long get_num_vertices() const;  ///< the vertex count

    /// Makes `count` user attributes with one default `vec4` per vertex, in place of those before,
    /// each without a location.
    /// @return false, changing nothing, for 0; false, with no user attributes left, if memory runs
    /// out
    bool alloc_user_vertex_attribs(unsigned long count);

    /// Frees the user attributes. @return true
    bool free_user_vertex_attribs();

    void free_vertex_attrib_array(VertexAttribArray& array);    ///< frees and resets an array
    void free_vertex_attrib_array(VertexAttribArray_3f& array); ///< frees and resets an array
    void free_vertex_attrib_array(VertexAttribArray_2f& array); ///< frees and resets an array

    /// Says that every element of a separate array of this store is about to be written. Large
    /// arrays of colours, texture coordinates and tangents have memory only where somebody wrote,
    /// which costs more than filling where all of it is written. Any other array stays as it is.
    ///
    /// What the elements hold is undefined until they are written.
    void prepare_to_fill(VertexAttribArray& array);

protected:
    /// Called when an attribute location changed, to hand it on to the format's own arrays.
    virtual void update_attrib_locations();

    /// Frees the format's own vertex arrays of both layouts, whatever the vertex count says.
    virtual void free_vertex_arrays();

    /// Frees the particles, whatever the vertex count says.
    void free_vertex_particles();

    /// What `alloc_user_vertex_attribs` does for a count above 0, but throwing when memory runs
    /// out.
    void make_user_vertex_attribs(unsigned long count);
};

} // namespace orvex
