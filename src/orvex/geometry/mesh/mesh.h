#pragma once

/// @file
/// `Mesh`, the triangle object of the scene.

#include "orvex/api.h"
#include "orvex/renderer/records/mesh_types.h"
#include "orvex/renderer/records/vertex.h"
#include "orvex/scene/object.h"

#include <memory>

namespace orvex {

struct MeshBuildUserGeometryData;

/// A triangle object of the scene, with its geometry in a `MeshData` store.
///
/// The host makes a mesh with `new`, adds it to the node tree and ends it through `Node::release`
/// or `Node::kill`. It owns one reference to its store, which several meshes can share; the last
/// one to let go in `_cleanup` frees it. A mesh deleted without `_cleanup` leaves its store behind.
///
/// Positions are in object space. Triangles are counter-clockwise seen from the front. Vertices are
/// allocated before faces, since faces are 16 bits wide below 65536 vertices and 32 bits from there
/// on. An index out of range is ignored or reads a default value. Every operation on a mesh without
/// a store acts as on an empty one. A mesh is used on the thread that owns the renderer's context.
///
/// @code
/// Mesh* triangle = new Mesh;
/// triangle->user_geometry_add_vertex(vec4(0.0f, 0.0f, 0.0f, 1.0f));
/// triangle->user_geometry_add_vertex(vec4(1.0f, 0.0f, 0.0f, 1.0f));
/// triangle->user_geometry_add_vertex(vec4(0.0f, 1.0f, 0.0f, 1.0f));
/// triangle->user_geometry_add_face32(0, 1, 2);
/// triangle->build(nullptr);
/// triangle->compute_faces_normal(nullptr);
/// @endcode
///
/// The trailing `Node*` of the operations taken over from `Object` keeps its meaning: null is this
/// mesh only, a node means that node's children as well.
class ORVEX_API Mesh : public Object {
public:
    /// Makes a mesh with an empty store of the full format.
    Mesh();

    /// Makes a mesh with an empty store of the format; without a store for an unknown format.
    explicit Mesh(VERTEX_FORMAT format);

    /// Leaves the store alone: `_cleanup` drops it.
    ~Mesh() override;

    /// The node as a mesh, decided by what its constructor noted, and not by type information,
    /// which classes of hosts and plugins may lack.
    /// @return null for null, and for a node that is none
    static Mesh* from_node(Node* node);

    /// Drops the store, then does what `Object` does. With a null renderer GPU objects stay.
    bool _cleanup(Renderer* renderer) override;

    /// Builds the geometry added by `user_geometry*` if the build state is set.
    /// @return false if the build state was set and there is nothing to build from
    bool _build() override;

    /// Binds the material, feeds the program its matrices and draws the geometry. With a null
    /// renderer nothing happens.
    void _render(Renderer* renderer) override;

    /// Id of the renderer that made the store's GPU objects, 0 before that.
    int get_renderer_id() override;

    /// Draws the geometry with what is bound: prepare, draw, finish.
    void render_geometry(Renderer* renderer) override;
    /// Uploads what changed and sets the vertex arrays up; nothing for null.
    void render_geometry_prepare(Renderer* renderer) override;
    /// The draw call; nothing for null.
    void render_geometry_draw(Renderer* renderer) override;
    /// Undoes the set-up of the vertex arrays; nothing for null.
    void render_geometry_finish(Renderer* renderer) override;

    /// True: draw as patches for a tessellating program.
    void set_tessellation_state(bool state, Node* node) override;

    /// Number of vertices of this mesh, and of the node's children.
    unsigned long get_num_vertices(Node* node) override;
    /// Number of faces of this mesh, and of the node's children.
    unsigned long get_num_faces(Node* node) override;
    /// The interleaved vertex i, or null; see `MeshData::get_vertex`.
    /// @param i  below the number of vertices; others give null
    Vertex* get_vertex(unsigned long i) override;
    /// A copy of vertex i, or a default vertex; see `MeshData::get_vertex_v2`.
    /// @param i  below the number of vertices; others give the default vertex
    Vertex get_vertex_v2(unsigned long i) override;

    /// Computes each face's normal from its corners, unit length, (0, 0, 0) for a degenerate face.
    /// Nothing is uploaded.
    /// @return false without faces
    bool compute_faces_normal(Node* node) override;

    /// Sets each vertex's normal to the mean of its faces' normals, which must be current. A vertex
    /// used by no face gets a normal that is not finite.
    /// @return false without vertices or faces
    bool compute_vertices_normal(Node* node) override;

    /// Averages the normals of vertices that lie within `threshold` of each other on every axis.
    /// Quadratic in the number of vertices.
    /// @param threshold  units of object space, from 0 on, both ends included; a negative one or a
    /// NaN
    ///                   averages nothing
    /// @return false without vertices or faces
    bool average_vertices_normal(float threshold, Node* node) override;

    /// Multiplies each position by x, y, z of `scale`. Without vertices nothing happens, children
    /// included.
    /// @param scale  any factors, 0 and negative ones too; they turn no faces around
    void scale_vertices_position(const vec4& scale, Node* node) override;

    /// Turns the faces around.
    void flip_faces(Node* node) override;

    /// Turns the normals around. Without vertices nothing happens, children included.
    void flip_vertex_normals(Node* node) override;

    /// Gives all vertices one colour. Children are not reached.
    /// @param color  red, green, blue, alpha, 0 to 1; others are stored as they are
    void set_vertices_color(const vec4& color, Node* node) override;

    /// Computes the sphere around the bounding box of all vertices, or the one inscribed in it if
    /// `Object::bounding_sphere_use_inscribed_sphere` asked for that.
    /// @return false without vertices
    bool update_bounding_sphere(Node* node) override;

    /// The same with the colour's components.
    /// @param r,g,b,a  0 to 1; others are stored as they are
    void set_vertices_color(float r, float g, float b, float a, Node* node);

    /// @name The store
    /// @{

    /// Replaces the store by a new, empty one.
    /// @param renderer  frees the old store's GPU objects if this was its last user; may be null
    /// @param format    an unknown format leaves the mesh without a store
    /// @return true
    bool init_mesh_data(Renderer* renderer, VERTEX_FORMAT format);

    /// The store, or null.
    MeshData* get_mesh_data() const;

    /// Drops the store and joins the other mesh's. Sharing a mesh without a store drops one's own.
    /// @return false for null
    bool share_mesh_data(Renderer* renderer, Mesh* other);

    /// Drops the store. @return true
    bool cleanup_mesh_data(Renderer* renderer);

    /// Frees all geometry in the store and keeps the store itself.
    void free_mesh_data();

    /// Chooses the layout; to be called before `alloc_vertex_data`.
    /// @param separate   one array per attribute, or interleaved records
    /// @param alignment  of the arrays in bytes, a power of two; below 1 for ordinary memory
    void set_vertex_alloc_params(bool separate, int alignment);

    /// Allocates `count` default vertices in place of those before.
    /// @param count  any number; 0 leaves the mesh without vertices
    /// @return false, with a log line, if memory runs out
    bool alloc_vertex_data(unsigned long count);

    /// Allocates `count` user vertex attributes, after the vertices.
    /// @param count  from 1 on, attributes per vertex
    /// @return false, with a log line, without vertices, for 0, or if memory runs out
    bool alloc_user_vertex_attribs(unsigned long count);

    /// Allocates `count` faces in place of those before, after the vertices. Their material ids
    /// are 0, which no material has.
    /// @param count          any number; 0 leaves the mesh without faces
    /// @param force_32_bits  wide indices whatever the vertex count
    /// @return false, with a log line, if memory runs out
    bool alloc_face_data(unsigned long count, bool force_32_bits);

    /// Frees and resets an array of the store; see `MeshData::free_vertex_attrib_array`.
    void free_vertex_attrib_array(VertexAttribArray& array);

    /// Sets the vertices drawn by a mesh without faces. Neither number is tested.
    /// @param start  the first one
    /// @param end    one past the last, at most the number of vertices
    void set_draw_start_end_vertex(unsigned long start, unsigned long end);

    /// Makes this mesh's geometry a copy of another's: vertices and face indices, with default face
    /// normals and no face materials; quad edges, user attributes and particles aren't copied. The
    /// two are expected to have one format and layout. Where this mesh was drawn before, the next
    /// prepare uploads all of it.
    ///
    /// The geometry that was here goes first. So a mesh that is told to copy itself, or one that
    /// shares its store, loses the geometry of both, and false is the result.
    /// @return false, changing nothing, for null and for a source without vertices or faces; false,
    ///         without geometry, if memory runs out
    bool copy_geometry(Mesh* source);
    /// @}

    /// @name Faces
    /// @{

    /// Notes a face's material.
    /// @param id    a material's node id; 0 for none, others are not tested
    /// @param face  below the number of faces
    /// @return false, changing nothing, for a face out of range
    bool set_face_material(int id, unsigned long face);

    /// Notes one material for all faces.
    /// @param id  a material's node id; 0 for none, others are not tested
    /// @return true
    bool set_material_to_all_faces(int id);

    /// Sets a face's three vertex indices and marks the faces for upload.
    /// @param face   below the number of faces; nothing happens for others
    /// @param a,b,c  indices of vertices, which nothing tests; cut to the index width
    void set_face_indexes(unsigned long face, unsigned int a, unsigned int b, unsigned int c);

    /// Reads a face's three vertex indices.
    /// @param face        below the number of faces; nothing is written for others
    /// @param[out] a,b,c  receive the indices; null is skipped
    void get_face_indexes(unsigned long face, unsigned int* a, unsigned int* b,
                          unsigned int* c) const;

    /// True: draw the store's quad edges as lines instead of the faces.
    void set_render_wireframe_quad_state(bool state);
    bool get_render_wireframe_quad_state() const; ///< see the setter
    /// @}

    /// @name Vertices
    /// Writes mark the attribute for upload, also where the store ignores them. An i at or above
    /// the number of vertices is ignored by the setters; the getters give a default value for it.
    /// @{
    void set_vertex_position(unsigned long i, const vec4& position); ///< object space
    void set_vertex_position_w(unsigned long i, float w);            ///< w alone
    vec4 get_vertex_position(unsigned long i) const; ///< w is 1; (0, 0, 0, 1) out of range
    /// The position in world space: the absolute transform times the position with w 1.
    /// @return false for a null `out` or i out of range
    bool get_vertex_absolute_position(unsigned long i, vec4* out);
    void set_vertex_normal(unsigned long i, const vec4& normal);   ///< w is dropped
    vec4 get_vertex_normal(unsigned long i) const;                 ///< w is 0
    void set_vertex_tangent(unsigned long i, const vec4& tangent); ///< see `MeshData`
    vec4 get_vertex_tangent(unsigned long i) const;                ///< see `MeshData`
    void set_vertex_color(unsigned long i, const vec4& color);     ///< see `MeshData`
    vec4 get_vertex_color(unsigned long i) const;                  ///< see `MeshData`
    /// Texture coordinates of layer 0 or 1; other layers are ignored.
    void set_vertex_uv(unsigned long i, const vec4& uv, unsigned int layer);
    /// Texture coordinates of layer 1, or for any other layer those of layer 0.
    vec4 get_vertex_uv(unsigned long i, unsigned int layer) const;
    /// User attribute number `attrib` of vertex i; marks that attribute for upload. Numbers from
    /// the count of `alloc_user_vertex_attribs` on are ignored.
    void set_user_vertex_attrib(unsigned long attrib, unsigned long i, const vec4& value);
    /// User attribute number `attrib` of vertex i, or (0, 0, 0, 1).
    vec4 get_user_vertex_attrib(unsigned long attrib, unsigned long i) const;
    /// @}

    /// @name Geometry from lists
    /// The lists collect vertices and faces until the next build makes the store from them.
    /// @{

    /// Appends a vertex with that position, in white.
    /// @param position  object space; w is dropped by the build
    /// @return its index, from 0 on
    unsigned long user_geometry_add_vertex(const vec4& position);
    /// Changes a listed vertex. @return false out of range
    bool user_geometry_set_vertex_position(unsigned long i, const vec4& position);
    /// Changes a listed vertex. @return false out of range
    bool user_geometry_set_vertex_color(unsigned long i, const vec4& color);
    /// Changes a listed vertex. @return false out of range
    bool user_geometry_set_vertex_normal(unsigned long i, const vec4& normal);
    /// Changes a listed vertex. @return false out of range
    bool user_geometry_set_vertex_uv0(unsigned long i, const vec4& uv);
    /// Appends a face of three vertex indices.
    /// @param a,b,c  expected to be indices that `user_geometry_add_vertex` gave; not tested, and
    /// cut
    ///               to 16 bits in a mesh of narrow faces
    /// @return true
    bool user_geometry_add_face32(unsigned int a, unsigned int b, unsigned int c);
    /// Empties the lists. @return false if there are none
    bool user_geometry_cleanup();
    /// @}

    /// @name Material subsets
    /// @{

    /// Makes one subset per material of this object from the faces' material ids.
    void init_subsets();

    /// Fills one subset: the material's id, and the run from its first to its last face.
    /// @param i  of the object's materials, below their number
    ///
    /// The faces of a material are expected to be contiguous. A material with fewer than two faces
    /// keeps the default run, which draws nothing.
    /// @return false for a null subset, without a material at index i, or for fewer than two faces
    bool _init_material_subset(unsigned long i, MaterialSubset* subset);

    unsigned long get_num_subsets() const; ///< number of subsets

    /// `_render` for one subset; nothing for an i at or above the number of subsets.
    ///
    /// The subset's material id is used as an index into the object's materials: a mesh with
    /// subsets arranges that the two are equal.
    void render_subset(Renderer* renderer, unsigned long i);
    /// `render_geometry` for one subset; nothing out of range.
    void render_subset_geometry(Renderer* renderer, unsigned long i);
    /// `render_geometry_draw` for one subset; nothing out of range.
    void render_subset_geometry_draw(Renderer* renderer, unsigned long i);
    /// @}

    /// @name Instancing
    /// Two instances and more are drawn with one call on the generic attributes path. The program
    /// reads the arrays as per-instance attributes. Forced uploads are for hosts that write through
    /// the pointers. Getters give (0, 0, 0, 1) and setters do nothing for an array not asked for.
    /// @{

    /// Allocates the arrays asked for, `count` default `vec4` each, in place of those before. May
    /// be called before the first draw and between any two, for another count or other arrays too:
    /// the next draw takes all of it up.
    /// @param count      from 1 on
    /// @param alignment  of the arrays in bytes, a power of two; below 1 for ordinary memory
    /// @return false for a count of 0, and for a mesh without a store; false, without instances, if
    ///         memory runs out
    bool instancing_init(unsigned long count, const InstancingInitParams& params, int alignment);
    /// Frees the arrays. The instance count stays.
    void instancing_cleanup();
    unsigned long get_num_instances() const; ///< the instance count

    void set_instance_position(unsigned long i, const vec4& value); ///< marks it for upload
    vec4 get_instance_position(unsigned long i) const;              ///< see above
    void instance_position_need_update();                           ///< forces an upload
    const vec4* get_instances_positions_vec4_ptr() const;           ///< the same, for reading
    vec4* get_instances_positions_vec4_ptr();                       ///< the array, or null

    void set_instance_rotation(unsigned long i, const vec4& value); ///< marks it for upload
    vec4 get_instance_rotation(unsigned long i) const;              ///< see above
    void instance_rotation_need_update();                           ///< forces an upload
    const vec4* get_instances_rotations_vec4_ptr() const;           ///< the same, for reading
    vec4* get_instances_rotations_vec4_ptr();                       ///< the array, or null

    void set_instance_scale(unsigned long i, const vec4& value); ///< marks it for upload
    vec4 get_instance_scale(unsigned long i) const;              ///< see above
    void instance_scale_need_update();                           ///< forces an upload
    const vec4* get_instances_scales_vec4_ptr() const;           ///< the same, for reading
    vec4* get_instances_scales_vec4_ptr();                       ///< the array, or null

    void set_instance_color(unsigned long i, const vec4& value); ///< marks it for upload
    vec4 get_instance_color(unsigned long i) const;              ///< see above
    void instance_color_need_update();                           ///< forces an upload
    const vec4* get_instances_colors() const;                    ///< the same, for reading
    vec4* get_instances_colors();                                ///< the array, or null

    void set_instance_misc(unsigned long i, const vec4& value); ///< marks it for upload
    vec4 get_instance_misc(unsigned long i) const;              ///< see above
    void instance_misc_need_update();                           ///< forces an upload
    const vec4* get_instances_miscs() const;                    ///< the same, for reading
    vec4* get_instances_miscs();                                ///< the array, or null
    /// @}

    /// @name Mapping the GPU vertex buffer
    /// @{

    /// Maps the vertex buffer for writing, until `unmap_vertex_buffer`.
    /// @return its memory, or null for a null renderer or without a buffer
    void* map_vertex_buffer(Renderer* renderer);
    /// The same, but null unless the store has separate arrays.
    vec4* map_vertex_buffer_vec4(Renderer* renderer);
    /// Ends the mapping. @return false for a null renderer
    bool unmap_vertex_buffer(Renderer* renderer);
    void* get_map_vertex_buffer() const;         ///< result of the last map
    vec4* get_mapped_vertex_buffer_vec4() const; ///< the same
    /// @}

    /// Makes this mesh a linear blend of two others: positions, and normals made unit length.
    ///
    /// If its vertex count differs from theirs, it first copies the geometry of `a`.
    /// @param t  0 is `a`, 1 is `b`; below and above are taken as 0 and 1
    /// @return false if either is null, or their vertex counts differ
    bool do_linear_tweening(Mesh* a, Mesh* b, float t);

    /// @name Vertex particles
    /// One `vec4` per vertex for a cloth or soft body simulation: position in x, y, z and weight in
    /// w. A weight of 0 attaches the particle. An i at or above the number of vertices is ignored.
    /// @{
    void set_vertex_particle(unsigned long i, const vec4& particle); ///< position and weight
    void set_vertex_particle_w(unsigned long i, float w);            ///< weight alone
    void set_vertices_particle_w(float w);                           ///< weight of all
    vec4* get_vertex_particles();                                    ///< the array, or null
    const vec4* get_vertex_particles() const;                        ///< the same, for reading
    /// Copies every position into its particle, weights included: those come from the position's w.
    /// @return false without particles
    bool update_vertex_particle_from_position();

    /// Attaches the particles on the borders of the mesh.
    /// @param flags  sum of `MESH_PLANE_BORDER_TYPE` values
    /// @return false without particles
    bool vertex_particle_attach_border(int flags);

    /// Attaches the two corners of each border asked for, seen from above. The Y borders have no
    /// effect.
    /// @param flags  sum of `MESH_PLANE_BORDER_TYPE` values
    /// @return false without particles
    bool vertex_particle_attach_border_two_points(int flags);
    /// @}

protected:
    /// Drops the store and takes `data`, one reference each. @return true
    bool _set_mesh_data(Renderer* renderer, MeshData* data);

private:
    bool _user_geometry_build();

    MeshData* mesh_data;
    std::unique_ptr<MeshBuildUserGeometryData> user_geometry;
};

} // namespace orvex
