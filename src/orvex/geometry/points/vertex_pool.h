#pragma once

/// @file
/// `VertexPool`, a plain array of points as an object of the scene.

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/records/vertex.h"
#include "orvex/scene/object.h"

#include <memory>

namespace orvex {

/// An object that draws a plain array of points, with one draw call and no faces.
///
/// The host makes a pool with `new`, adds it to the node tree and ends it through `Node::release`
/// or `Node::kill`. The pool owns its store, which is not shared. A particle system draws through
/// one, and a compute program can write one through its shader storage buffer.
///
/// Positions are in object space. The size of a point comes from the GPU program
/// (`gl_PointSize`), or from the fixed pipeline. An index out of range is ignored or reads a
/// default value, and so is every access to a pool without points. A pool is used on the thread
/// that owns the renderer's context.
///
/// @code
/// VertexPool* stars = new VertexPool;
/// stars->init_pool(2, false);
/// stars->set_vertex_position(1, vec3(1.0f, 0.0f, 0.0f));
/// stars->set_vertex_color(1, 1.0f, 0.9f, 0.8f, 1.0f);
/// scene_root->add_child(stars);
/// @endcode
///
/// Letting a compute program move the points, with an interleaved pool:
///
/// @code
/// pool->shader_storage_init(renderer, BUFFER_USAGE_DYNAMIC_DRAW);
/// pool->render(renderer, nullptr); // sends the points as the host set them
/// pool->shader_storage_buffer_bind_base(renderer, 0);
/// program->run_compute(renderer, groups, 1, 1); // 96 bytes a point, laid out as `Vertex`
/// pool->apply_memory_barriers(renderer);
/// pool->render(renderer, nullptr);
/// @endcode
class ORVEX_API VertexPool : public Object {
public:
    /// Makes a pool without points.
    VertexPool();

    /// Frees the store's memory. GPU objects stay: `_cleanup` ends them.
    ~VertexPool() override;

    /// The node as a pool, decided by what its constructor noted, and not by type information,
    /// which classes of hosts and plugins may lack.
    /// @return null for null, and for a node that is none
    static VertexPool* from_node(Node* node);

    /// Ends the GPU objects if there is a renderer, frees the points, then does what `Object` does.
    /// The number of points keeps its value.
    bool _cleanup(Renderer* renderer) override;

    /// Feeds the active program its matrices and draws the points, then does what `Object` does.
    /// No material is bound. With a null renderer nothing is drawn.
    void _render(Renderer* renderer) override;

    /// Id of the renderer that made the GPU objects, 0 before that.
    int get_renderer_id() override;

    /// Draws the points with what is bound: prepare, draw, finish.
    void render_geometry(Renderer* renderer) override;
    /// Uploads what changed and sets the vertex arrays up; nothing for null.
    void render_geometry_prepare(Renderer* renderer) override;
    /// The draw call; nothing for null.
    void render_geometry_draw(Renderer* renderer) override;
    /// Undoes the set-up of the vertex arrays; nothing for null.
    void render_geometry_finish(Renderer* renderer) override;

    /// Number of points of this pool. Children are not counted.
    unsigned long get_num_vertices(Node* node) override;
    /// The interleaved point i; null for a separate or empty pool and for i out of range.
    Vertex* get_vertex(unsigned long i) override;
    /// A copy of point i from either layout; a default vertex for an empty pool and for i out of
    /// range. Separate positions and normals have w 1.
    Vertex get_vertex_v2(unsigned long i) override;

    /// Makes `count` white points at the origin, in place of those before.
    /// @param separate  true: one array per attribute, 40 bytes a point, which can't be a shader
    ///                  storage buffer. False: records of 96 bytes in whatever layout the pool had
    ///                  before, so that a pool made separate once reads as empty from then on.
    /// @return false, changing nothing, for a count of 0. Running out of memory throws
    ///         `std::bad_alloc`, and the pool reads as empty then.
    bool init_pool(unsigned long count, bool separate);

    VertexPoolData* get_vertex_pool_data() const; ///< the store, owned by the pool
    Vertex* get_pool_ptr() const;                 ///< the interleaved records, or null
    unsigned long get_pool_size() const;          ///< number of points

    void set_render_start_offset(int first); ///< first point drawn; not tested
    void set_render_num_vertices(int count); ///< points drawn; below 1: all from the first one on

    /// @name Points
    /// Writes mark what they changed for upload. Separate positions have no w.
    /// @{

    /// Moves point i, in object space; out of range nothing happens.
    void set_vertex_position(unsigned long i, const vec4& position);
    void set_vertex_position(unsigned long i, const vec3& position); ///< w is 1
    /// As the form of one vector.
    void set_vertex_position(unsigned long i, float x, float y, float z, float w);
    vec4 get_vertex_position(unsigned long i) const; ///< w is 1 for a separate pool
    /// Colours point i, red, green, blue, alpha; out of range nothing happens.
    void set_vertex_color(unsigned long i, const vec4& color);
    /// As the form of one vector.
    void set_vertex_color(unsigned long i, float r, float g, float b, float a);
    vec4 get_vertex_color(unsigned long i) const; ///< (0, 0, 0, 1) out of range
    /// @}

    /// @name Mapping the GPU vertex buffer
    /// @{

    /// Maps the vertex buffer for writing, until `unmap_vertex_buffer`.
    /// @return its memory, or null for a null renderer or without a buffer
    void* map_vertex_buffer(Renderer* renderer);
    /// Ends the mapping. @return false for a null renderer
    bool unmap_vertex_buffer(Renderer* renderer);
    void* get_mapped_vertex_buffer() const; ///< result of the last map, of either kind
    /// @}

    /// @name Shader storage
    /// For interleaved pools; needs OpenGL 4.3 or its extension for storage buffers.
    /// @{

    /// Makes the GPU buffer as a shader storage buffer that holds the points, in place of the one
    /// before. Points that were set by the pool's operations are sent again by the next draw: draw
    /// once, or lower `vertices_need_update` of the store, before a program moves them.
    /// @param usage  noted in the store
    /// @return false for a null renderer, for a separate or empty pool, and without storage buffers
    bool shader_storage_init(Renderer* renderer, BUFFER_OBJECT_USAGE usage);

    /// Ends the GPU buffer, if there is one.
    /// @return false for a separate pool or a null renderer
    bool shader_storage_cleanup(Renderer* renderer);

    /// Maps the whole buffer for writing; its content before that is lost.
    /// @return its memory, or null for a separate pool, a null renderer or without a buffer
    void* shader_storage_buffer_map(Renderer* renderer);
    /// Ends that mapping. @return false for a null renderer or without a buffer
    bool shader_storage_buffer_unmap(Renderer* renderer);
    /// Binds the buffer.
    /// @return false, doing nothing, for a separate pool, a null renderer or without a buffer
    bool shader_storage_buffer_bind(Renderer* renderer);
    /// Binds the buffer to a binding point of the shaders.
    /// @return false, doing nothing, for a separate pool, a null renderer or without a buffer
    bool shader_storage_buffer_bind_base(Renderer* renderer, unsigned int index);
    /// Leaves no storage buffer bound. @return false for a null renderer
    bool shader_storage_buffer_unbind(Renderer* renderer);

    /// Orders the drawing after what a compute program wrote; nothing for null. To be called
    /// between the two.
    void apply_memory_barriers(Renderer* renderer);
    /// @}

private:
    std::unique_ptr<VertexPoolData> data;
};

} // namespace orvex
