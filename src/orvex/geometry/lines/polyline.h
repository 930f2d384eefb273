#pragma once

/// @file
/// `Polyline`, the line object of the scene.

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/records/vertex.h"
#include "orvex/scene/object.h"

#include <memory>

namespace orvex {

struct PolylineBuildUserGeometryData;

/// The line object of the scene: a row of vertices drawn as separate lines, as a strip or as a
/// loop.
///
/// The host makes a polyline with `new`, adds it to the node tree and ends it through
/// `Node::release` or `Node::kill`. It owns one reference to its store, which several polylines can
/// share; the last one to let go in `_cleanup` frees it. A polyline deleted without `_cleanup`
/// leaves its store behind.
///
/// Positions are in object space. An index out of range is refused or ignored, and every operation
/// on a polyline without a store acts as on an empty one. A polyline is used on the thread that
/// owns the renderer's context.
///
/// @code
/// Polyline* corner = new Polyline;
/// corner->initialize(3, LINE_RENDER_MODE_LINE_STRIP);
/// corner->set_vertex_position(0, 0.0f, 1.0f, 0.0f);
/// corner->set_vertex_position(2, 1.0f, 0.0f, 0.0f);
/// corner->set_vertices_color(1.0f, 1.0f, 1.0f, 1.0f);
/// scene_root->add_child(corner);
/// @endcode
class ORVEX_API Polyline : public Object {
public:
    /// Makes an empty polyline, a line strip.
    Polyline();

    /// Leaves the store alone: `_cleanup` drops it.
    ~Polyline() override;

    /// The node as a polyline, decided by what its constructor noted, and not by type information,
    /// which classes of hosts and plugins may lack.
    /// @return null for null, and for a node that is none
    static Polyline* from_node(Node* node);

    /// Drops the store, then does what `Object` does. With a null renderer GPU objects stay.
    bool _cleanup(Renderer* renderer) override;

    /// Builds the vertices from the lines added by `add_line` if the build state is set.
    /// @return false if the build state was set and no line was added
    bool _build() override;

    /// Binds the first material, feeds the program its matrices and draws the lines. With a null
    /// renderer nothing happens.
    void _render(Renderer* renderer) override;

    /// Id of the renderer that made the store's GPU objects, 0 before that.
    int get_renderer_id() override;

    /// Draws the lines with what is bound: prepare, draw, finish.
    void render_geometry(Renderer* renderer) override;
    /// Uploads what changed and sets the vertex arrays up; nothing for null.
    void render_geometry_prepare(Renderer* renderer) override;
    /// The draw call; nothing for null. The count drawn is the end offset, or all vertices if that
    /// is below 1; the start offset doesn't reduce it, so set both.
    void render_geometry_draw(Renderer* renderer) override;
    /// Undoes the set-up of the vertex arrays; nothing for null.
    void render_geometry_finish(Renderer* renderer) override;

    /// True: draw as patches for a tessellating program.
    void set_tessellation_state(bool state, Node* node) override;

    /// Number of vertices of this polyline, and of the node's children.
    unsigned long get_num_vertices(Node* node) override;

    /// @name The store
    /// @{

    /// Replaces the store by a new, empty one.
    /// @param renderer  frees the old store's GPU objects if this was its last user; may be null
    /// @return true
    bool init_polyline_data(Renderer* renderer);

    /// The store, or null.
    PolylineData* get_polyline_data() const;

    /// Drops the store and joins the other polyline's. Sharing a polyline without a store drops
    /// one's own.
    /// @return false for null
    bool share_polyline_data(Renderer* renderer, Polyline* other);

    /// Drops the store. @return true
    bool cleanup_polyline_data(Renderer* renderer);

    /// Frees the vertices and keeps the store itself. The line count keeps its value.
    void free_polyline_data();

    /// Chooses the allocation of the vertices; to be called before `alloc_vertex_data`.
    /// @param alignment  in bytes, a power of two; below 1 for ordinary memory
    void set_vertex_alloc_params(int alignment);

    /// Allocates `count` default vertices in place of those before. Running out of memory throws
    /// `std::bad_alloc`.
    /// @return false without a store
    bool alloc_vertex_data(unsigned long count);

    /// Allocates `count` default vertices, and says how they are joined.
    /// @return false without a store
    bool initialize(unsigned long count, LINE_RENDER_MODE mode);
    /// @}

    /// @name Vertices
    /// Writes mark what they changed for upload.
    /// @return false out of range
    /// @{
    bool set_vertex_position(unsigned long i, const vec3& position);      ///< w is 1
    bool set_vertex_position(unsigned long i, float x, float y, float z); ///< w is 1
    /// Moves vertex i, in object space.
    bool set_vertex_position(unsigned long i, const vec4& position);
    /// As the form of one vector.
    bool set_vertex_position(unsigned long i, float x, float y, float z, float w);
    bool set_vertex_color(unsigned long i, const vec4& color); ///< red, green, blue, alpha
    /// @}

    using Object::set_vertices_color;
    /// Gives all vertices one colour. @return false if there are none
    bool set_vertices_color(const vec4& color);
    /// Gives all vertices one colour. @return false if there are none
    bool set_vertices_color(float r, float g, float b, float a);

    /// @name What is drawn
    /// Without a store the setters do nothing, and the getters give 0 for a start, -1 for an end.
    /// @{

    /// First vertex drawn; at or above the vertex count, the vertex count.
    void set_vertex_start_offset(int offset);
    /// Number of vertices drawn, below 1 for all; at or above the vertex count, the vertex count.
    void set_vertex_end_offset(int offset);
    int get_vertex_start_offset() const; ///< as stored
    int get_vertex_end_offset() const;   ///< as stored

    /// First line drawn, above the line count the line count. The vertex offset becomes twice that.
    void set_line_start_offset(int offset);
    /// Number of lines drawn, above the line count the line count. The vertex offset becomes twice
    /// that.
    void set_line_end_offset(int offset);
    int get_line_start_offset() const; ///< as stored
    int get_line_end_offset() const;   ///< as stored
    /// @}

    /// @name Separate lines
    /// Line i lies between the vertices 2i and 2i + 1.
    /// @{

    /// Moves both ends; nothing happens out of range.
    void set_line_position(unsigned long line, const vec4& a, const vec4& b);
    /// Colours both ends; nothing happens out of range.
    void set_line_color(unsigned long line, const vec4& a, const vec4& b);
    /// @}

    /// @name Lines from a list
    /// The list collects lines until the next build makes the vertices from it.
    /// @{

    /// Appends a line that shows its direction: from red to green, with normals up.
    /// @return true
    bool build_line(const vec4& a, const vec4& b);
    /// Appends a line that shows its direction: from red to green, with normals up.
    /// @return its index
    unsigned long add_line(const vec4& a, const vec4& b);
    /// Appends a line with a colour at each end. @return its index
    unsigned long add_line_v2(const vec4& a, const vec4& a_color, const vec4& b,
                              const vec4& b_color);
    /// @}

    /// @name Mapping the GPU vertex buffer
    /// @{

    /// Maps the vertex buffer for writing, until `unmap_vertex_buffer`.
    /// @return its memory, or null for a null renderer or without a buffer
    void* map_vertex_buffer(Renderer* renderer);
    /// Ends the mapping. @return false for a null renderer
    bool unmap_vertex_buffer(Renderer* renderer);
    void* get_mapped_vertex_buffer() const; ///< result of the last map
    /// @}

protected:
    /// Drops the store and takes `data`, one reference each. @return true
    bool _set_polyline_data(Renderer* renderer, PolylineData* data);

private:
    bool _user_geometry_build();

    PolylineData* polyline_data;
    std::unique_ptr<PolylineBuildUserGeometryData> user_geometry;
};

} // namespace orvex
