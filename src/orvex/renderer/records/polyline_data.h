#pragma once

/// @file
/// `PolylineData`, the storage of one polyline.

#include "orvex/api.h"
#include "orvex/renderer/records/counted_record.h"
#include "orvex/renderer/records/gpu_objects.h"
#include "orvex/renderer/records/vertex.h"
#include "orvex/renderer/records/vertex_attrib_array.h"

namespace orvex {

/// What the back end remembers about the GPU objects of a polyline, beside their ids. Only the
/// renderer that made the objects reads and writes it. A byte size of 0 means unknown.
struct PolylineGpuState {
    unsigned long vertex_buffer_bytes = 0;       ///< size last allocated
    unsigned int vertex_array_vertex_buffer = 0; ///< vertex buffer that the array points into
    bool vertex_array_stale = false; ///< its pointers no longer fit: it is to be recorded anew
    unsigned long long context = 0;  ///< number of the context that the vertex array belongs to
    unsigned long long group = 0;    ///< number of the group that the buffers belong to
};

/// The storage of one polyline: its vertices, always interleaved records of 96 bytes, how they are
/// joined, and the ids of the GPU objects made from them.
///
/// A `Polyline` makes its store and owns it by reference count; several polylines can share one.
/// The fields are public because the renderer reads and fills them; hosts go through the operations
/// of `Polyline`.
///
/// Positions are in object space. Nothing is locked. The store remembers the thread that made it,
/// and the renderer deletes GPU objects on that thread only: `update_thread` hands it over. The ids
/// are those of the context that it was drawn in last; in another one it gets objects of its own,
/// but for the buffer of contexts that share.
///
/// @code
/// PolylineData* data = polyline->get_polyline_data();
/// data->vertices[0].uv0 = vec4(0.5f, 0.0f, 0.0f, 1.0f);
/// data->uv0_need_update = true;
/// @endcode
struct ORVEX_API PolylineData : CountedRecord, ThreadRecord {
    unsigned long num_lines = 0;                                ///< half the vertex count
    LINE_RENDER_MODE render_mode = LINE_RENDER_MODE_LINE_STRIP; ///< how the vertices are joined
    unsigned int vertex_buffer_id = 0;                          ///< GPU vertex buffer
    unsigned int vertex_array_id = 0;                           ///< GPU vertex array object
    void* mapped_vertex_buffer = nullptr;  ///< result of the last `Polyline::map_vertex_buffer`
    unsigned long num_vertices = 0;        ///< vertex count
    VertexAttribArray position;            ///< location 0; the data lies in `vertices`
    VertexAttribArray color;               ///< location 1, as above
    VertexAttribArray normal;              ///< location 2, as above
    VertexAttribArray uv0;                 ///< location 3, as above
    VertexAttribArray uv1;                 ///< location 4, as above
    VertexAttribArray tangent;             ///< location 5, as above
    unsigned char* raw_vertices = nullptr; ///< raw block of an aligned array
    Vertex* vertices = nullptr;            ///< the vertices
    int alignment = 0;                     ///< 1 and above: aligned allocation; below: `new[]`

    bool positions_need_update = false; ///< upload the vertices at the next prepare
    bool normals_need_update = false;   ///< upload the vertices at the next prepare
    bool tangents_need_update = false;  ///< upload the vertices at the next prepare
    bool colors_need_update = false;    ///< upload the vertices at the next prepare
    bool uv0_need_update = false;       ///< upload the vertices at the next prepare
    bool uv1_need_update = false;       ///< upload the vertices at the next prepare

    bool tessellation_state = false;        ///< draw as patches instead of lines
    bool use_generic_vertex_attribs = true; ///< generic attributes, or fixed-function arrays

    int renderer_id = 0; ///< id of the renderer that made the GPU objects

    int vertex_start_offset = 0; ///< first vertex drawn
    int vertex_end_offset = -1;  ///< number of vertices drawn; below 1 means all
    int line_start_offset = 0;   ///< the start counted in lines
    int line_end_offset = -1;    ///< the end counted in lines

    VertexAttribArray* user_attribs = nullptr; ///< user vertex attributes, as the host made them
    unsigned long num_user_attribs = 0;        ///< length of that list
    bool user_attribs_allocated = false;       ///< true while the list exists

    bool has_color = true;   ///< draw with colours
    bool has_normal = true;  ///< draw with normals
    bool has_tangent = true; ///< draw with tangents
    bool has_uv0 = false;    ///< draw with texture layer 0
    bool has_uv1 = false;    ///< draw with texture layer 1
    /// GPU usage hint, a constant of the graphics interface; 0 lets the back end write its static
    /// default here at the first upload.
    unsigned int vertex_buffer_usage = 0;

    PolylineGpuState gpu_state;        ///< the back end's own
    GpuObjectsElsewhere gpu_elsewhere; ///< the back end's own

    /// Makes an empty store with reference count 0, owned by the calling thread.
    PolylineData();
    PolylineData(const PolylineData&) = delete;
    PolylineData& operator=(const PolylineData&) = delete;

    /// Frees the vertices and the list of user attributes with their arrays. GPU objects stay:
    /// `Renderer::polyline_vb_kill` ends them.
    ~PolylineData();

    /// Frees the vertices, whatever the vertex count says, which keeps its value.
    void free_vertices();
};

} // namespace orvex
