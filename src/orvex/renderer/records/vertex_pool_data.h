#pragma once

/// @file
/// `VertexPoolData`, the storage of one point pool.

#include "orvex/api.h"
#include "orvex/renderer/records/gpu_objects.h"
#include "orvex/renderer/records/vertex.h"
#include "orvex/renderer/records/vertex_attrib_array.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// What the back end remembers about the GPU objects of a point pool, beside their ids. A byte size
/// of 0 means unknown.
struct VertexPoolGpuState {
    unsigned long vertex_buffer_bytes = 0;       ///< size last allocated
    unsigned int vertex_array_vertex_buffer = 0; ///< vertex buffer that the array points into
    bool separate = false;                       ///< layout that the buffer was made for
    bool vertex_array_stale = false; ///< its pointers no longer fit: it is to be recorded anew
    unsigned long long context = 0;  ///< number of the context that the vertex array belongs to
    unsigned long long group = 0;    ///< number of the group that the buffers belong to
};

/// The storage of one point pool: its points and the ids of the GPU objects made from them.
///
/// A `VertexPool` makes it and frees it, and shares it with nobody. Points lie either interleaved
/// in one array of 96-byte records (the default), which a storage block of a shader can read with
/// the same layout, or in separate arrays of 12 bytes of position, 12 of normal and 16 of colour.
/// The fields are public because the renderer reads and fills them, and simulations write the
/// arrays; hosts go through the operations of `VertexPool`.
///
/// Positions are in object space. Nothing is locked. The ids are those of the context that it was
/// drawn in last; in another one it gets objects of its own, but for the buffer of contexts that
/// share.
///
/// @code
/// VertexPoolData* data = pool->get_vertex_pool_data();
/// data->position.data[0] = vec3(1.0f, 0.0f, 0.0f); // a pool of separate arrays
/// data->positions_need_update = true;
/// @endcode
struct ORVEX_API VertexPoolData {
    Vertex* vertices = nullptr;        ///< the interleaved records, or null
    unsigned long num_vertices = 0;    ///< number of points
    unsigned int vertex_array_id = 0;  ///< GPU vertex array object
    unsigned int vertex_buffer_id = 0; ///< GPU buffer; also the shader storage buffer
    BUFFER_OBJECT_USAGE buffer_usage = BUFFER_USAGE_STATIC_DRAW; ///< hint for a new buffer
    void* mapped_vertex_buffer = nullptr;                        ///< result of the last map
    bool vertices_need_update = false;      ///< upload the records at the next prepare
    bool positions_need_update = false;     ///< upload the separate positions at the next prepare
    bool colors_need_update = false;        ///< upload the separate colours at the next prepare
    bool has_color = true;                  ///< interleaved: draw with colours
    bool has_normal = true;                 ///< interleaved: draw with normals
    bool has_tangent = true;                ///< interleaved: end the tangent array after drawing
    int renderer_id = 0;                    ///< id of the renderer that made the GPU objects
    int render_start_offset = 0;            ///< first point drawn
    int render_num_vertices = -1;           ///< points drawn; below 1: all from the first one on
    bool use_generic_vertex_attribs = true; ///< generic attributes, or fixed-function arrays
    bool separate_vertex_arrays = false;    ///< one array per attribute, or interleaved
    VertexAttribArray_3f position;          ///< separate positions, location 0
    VertexAttribArray_3f normal;            ///< separate normals, location 2; not uploaded
    VertexAttribArray color;                ///< separate colours, location 1

    VertexPoolGpuState gpu_state;      ///< the back end's own
    GpuObjectsElsewhere gpu_elsewhere; ///< the back end's own

    /// Makes an empty store.
    VertexPoolData();
    VertexPoolData(const VertexPoolData&) = delete;
    VertexPoolData& operator=(const VertexPoolData&) = delete;

    /// Frees all memory of the store. GPU objects stay: `Renderer::vertex_pool_kill` ends them.
    virtual ~VertexPoolData();

    /// Makes `count` interleaved points, default but for their colour, white, in place of those
    /// before. The layout flag keeps its value: a store that was made separate is not readable
    /// afterwards, see `init_v2`. Running out of memory throws `std::bad_alloc`.
    /// @return false, changing nothing, for 0
    bool init(unsigned long count);

    /// Makes `count` white points at the origin, in place of those before.
    /// @param separate  one array per attribute, or interleaved
    /// @return false, changing nothing, for 0. Running out of memory throws `std::bad_alloc`.
    bool init_v2(unsigned long count, bool separate);

    /// Frees the points of both layouts. The number of points and all else keep their values.
    /// @return true
    bool cleanup();

    /// Whether the arrays of the layout in force exist.
    [[nodiscard]] bool has_points() const;
};

} // namespace orvex
