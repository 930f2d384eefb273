#pragma once

/// @file
/// `Object`, what can be drawn. Its operations stand in four sources: the draw pipeline with grid
/// and axes in object_draw.cpp, materials in object_materials.cpp, transforms in
/// object_transform.cpp, all others in object.cpp.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/scene/node.h"

namespace orvex {

/// Base of everything that is drawn: a node with a transform, materials, an optional GPU program, a
/// bounding sphere, a debug grid and debug axes, and the draw pipeline that subclasses fill in.
///
/// Made with `new`, held by references, ended with `kill`. Its materials are given back in
/// `_cleanup`; its GPU program is not: call `set_gpu_program(nullptr, node)` before `kill`.
///
/// Coordinates are right-handed; the transform goes from this object's space to its parent's. An
/// object has no link to the camera: the view and projection matrices that `Camera::bind` left in
/// the renderer are those it is drawn with. Used on the thread that owns the renderer's context.
///
/// In every operation that ends in `Node*` (the traversals apart) null means this object only, and
/// a node means that the operation is then called on each child of the node that is an `Object`,
/// with that child as target and as `node`. `obj->op(..., obj)` reaches the whole subtree; a child
/// that is no `Object` ends the walk along its branch.
///
/// @code
/// orvex::Object* group = new orvex::Object;
/// group->set_position(0.0f, 1.0f, 0.0f);
/// group->set_orientation_euler_xyz(0.0f, 45.0f, 0.0f);
/// group->add_child(mesh);
/// group->render(renderer, nullptr);
/// @endcode
class ORVEX_API Object : public Node {
public:
    /// At the origin, without materials and program.
    Object();
    ~Object() override;

    /// @name Node's hooks
    /// @{

    /// Does what `Node` does.
    bool _init(Renderer* renderer) override;
    /// Gives the materials back.
    bool _cleanup(Renderer* renderer) override;
    /// Updates the bounding sphere.
    bool _build() override;
    /// Draws the grid and the axes if they are switched on. A subclass that draws something of its
    /// own and wants them calls this.
    void _render(Renderer* renderer) override;
    /// @}

    /// @name Draw pipeline
    /// Empty here. A subclass sends its geometry: `render_geometry` is prepare, draw and finish.
    /// @{

    /// Prepare, draw and finish at one go.
    virtual void render_geometry(Renderer* renderer);
    /// Brings the GPU copy up to date and binds it.
    virtual void render_geometry_prepare(Renderer* renderer);
    /// The draw call alone, between prepare and finish.
    virtual void render_geometry_draw(Renderer* renderer);
    /// Undoes what prepare bound.
    virtual void render_geometry_finish(Renderer* renderer);
    /// @}

    /// Chooses between generic vertex attributes (true) and built-in vertex arrays (false, the
    /// default).
    virtual void set_use_generic_vertex_attribs_state(bool state, Node* node);
    /// Switches everything between an OpenGL 2 style object (true: built-in arrays, matrices in the
    /// fixed pipeline) and an OpenGL 3 style one (false: generic attributes, matrices only through
    /// uniforms).
    virtual void set_opengl_2_3_rendering_states(bool gl2, Node* node);
    /// The same state as `set_use_generic_vertex_attribs_state`, seen from the other side.
    virtual void set_use_gl2_vertex_array_state(bool state, Node* node);
    /// Whether matrices are loaded into the fixed pipeline; true at first.
    virtual void set_use_fixed_mvp_matrices_state(bool state, Node* node);
    /// Only goes on to the children here; a mesh keeps the state in its store.
    virtual void set_tessellation_state(bool state, Node* node);

    /// Hands the matrices of this object to the fixed pipeline and to the active program.
    ///
    /// M is the absolute transform, P and V are the renderer's. P and V * M go to the fixed
    /// pipeline if `use_fixed` is set or there is no program. A program then gets, in this order
    /// and each only if it has a name for it: M, V, P, V * M, P * V, P * (V * M), and the viewport
    /// as four floats.
    /// @param renderer  null does nothing
    /// @param program   the active program's record; null for none
    virtual void render_apply_automatic_uniforms(Renderer* renderer, GpuProgramData* program,
                                                 bool use_fixed);

    /// Draws the axes through the fixed pipeline, whatever their display state; the active program
    /// is put back afterwards. Null renderer: nothing.
    virtual void display_tripod(Renderer* renderer, Node* node);
    /// Draws three lines from the origin, X red, Y green, Z blue, with the lengths in `size`. Null
    /// renderer: nothing.
    virtual void render_tripod(Renderer* renderer, const vec4& size);

    /// Holds `program` and gives the one before back. Each call with a program adds a reference,
    /// also when it is the current one.
    /// @param program  null for none
    virtual void set_gpu_program(GpuProgram* program, Node* node);
    /// The program held, owned by its references; null for none, as at first.
    GpuProgram* get_gpu_program() const;

    /// Number of vertices below the children of `node`, 0 for null; a subclass adds its own.
    virtual unsigned long get_num_vertices(Node* node);
    /// Number of faces below the children of `node`, 0 for null; a subclass adds its own.
    virtual unsigned long get_num_faces(Node* node);
    /// Null here, whatever the index: a plain object has no vertices.
    virtual Vertex* get_vertex(unsigned long index);
    /// A default vertex here.
    virtual Vertex get_vertex_v2(unsigned long index);

    /// @name Geometry operations
    /// A plain object has no geometry: these only reach the children, and the first three return
    /// true.
    /// @{

    /// Normals of the faces, from their corners. @return true
    virtual bool compute_faces_normal(Node* node);
    /// Normals of the vertices, from those of their faces. @return true
    virtual bool compute_vertices_normal(Node* node);
    /// Normals of vertices that lie near each other.
    /// @param distance  how near, in units of this object
    /// @return true
    virtual bool average_vertices_normal(float distance, Node* node);
    /// @}

    /// Adds a material at the end and holds it, unless one with its id is there already. Goes on to
    /// the children in both cases.
    /// @return false for null
    virtual bool add_material(Material* material, Node* node);
    /// Removes a material and gives it back, with no renderer in hand. Doesn't go on to the
    /// children.
    /// @return false if it isn't one of this object's
    virtual bool remove_material(Material* material, Node* node);

    /// @name Geometry operations, continued
    /// @{

    /// Multiplies vertex positions by x, y, z of `scale`.
    virtual void scale_vertices_position(const vec4& scale, Node* node);
    /// Turns the winding of the faces around.
    virtual void flip_faces(Node* node);
    /// Turns the normals of the vertices around.
    virtual void flip_vertex_normals(Node* node);
    /// Gives all vertices one colour: red, green, blue, alpha.
    virtual void set_vertices_color(const vec4& color, Node* node);
    /// @return true, or with `node` the result of its last child that is an object
    virtual bool update_bounding_sphere(Node* node);
    /// @}

    /// @name Transform
    /// Position, orientation and scale of this object in its parent's space; angles in degrees, the
    /// three-float forms set w to 1. The matrix is built at the next read.
    /// @{

    /// Stores x, y, z with w 1.
    void set_position(float x, float y, float z);
    /// Stores all four components as they are.
    void set_position(const vec4& position);
    const vec4& get_position() const; ///< as set; (0, 0, 0, 1) at first
    /// Rotation about x, then y, then z: the quaternions of the three angles multiplied in this
    /// order.
    /// @param x,y,z  degrees; any number
    void set_orientation_euler_xyz(float x, float y, float z);
    /// Stores the rotation; expected to be of unit length, and not normalised.
    void set_orientation(const quat& orientation);
    /// The rotation, computed from the angles if those were set last.
    const quat& get_orientation() const;
    /// Stores the factors with w 1.
    /// @param x,y,z  any number: a negative one mirrors, 0 flattens what is drawn
    void set_scale(float x, float y, float z);
    /// Stores all four components as they are; w scales nothing.
    void set_scale(const vec4& scale);
    const vec4& get_scale() const; ///< as set; 1 on every axis at first
    /// Stores a matrix that stands until the next setter of a component rebuilds it. Position,
    /// orientation and scale keep their values. A null pointer is ignored.
    void set_transform(const mat4& transform);
    /// The same from 16 floats, column by column, which are copied.
    void set_transform(const float* transform);
    /// The local transform, brought up to date; owned by this object.
    const mat4& get_transform() const;
    /// The transform record, owned by this object.
    Tripod* get_tripod() const;
    /// @}

    /// Product of the transforms from the root down to this object. Parents that are no objects, or
    /// that have ended, count as identity. The chain is walked at each call; the result is also
    /// kept for `get_absolute_transform_float_ptr`.
    mat4 get_absolute_transform();
    /// Computes the absolute transform. @return 16 floats, column-major, owned by this object
    float* get_absolute_transform_float_ptr();
    /// The absolute transform applied to the local position. The object's own translation thus
    /// counts twice: a root object at (1, 2, 3) answers (2, 4, 6). Who wants the origin of the
    /// object in the world reads the last column of the absolute transform.
    /// @return owned by this object, rewritten by the next call
    const vec4* get_absolute_position();

    /// @name Matrices for the host's own use
    /// Drawing takes the renderer's matrices, never these.
    /// @{

    /// Stores a projection; the identity at first.
    void set_projection_matrix(const mat4& matrix, Node* node);
    mat4& get_projection_matrix();             ///< as set; owned by this object
    const mat4& get_projection_matrix() const; ///< as set
    /// Stores a view; the identity at first.
    void set_view_matrix(const mat4& matrix, Node* node);
    mat4& get_view_matrix();             ///< as set; owned by this object
    const mat4& get_view_matrix() const; ///< as set
    /// @}

    /// Marks the object as to be built again; true at first. Written by subclasses.
    void update_build_state(bool state);
    bool get_build_state() const; ///< see the setter

    /// Whether `_render` draws the axes; off at first.
    void set_display_tripod_state(bool state, Node* node);
    bool get_display_tripod_state() const; ///< see the setter
    /// Sets the lengths of the three axes; 2 each at first.
    /// @param x,y,z  in units of this object; any number, a negative one points the other way
    void set_tripod_size(float x, float y, float z, Node* node);
    const vec4& get_tripod_size() const; ///< see the setter; owned by this object

    /// Whether `_render` draws the grid; off at first.
    void set_display_grid_state(bool state, Node* node);
    bool get_display_grid_state() const; ///< see the setter
    /// A grid in the plane y = 0, centred at the origin; 10 by 10 in 10 by 10 divisions at first.
    /// @param size_x,size_z  length along each axis, in units of this object; any number
    /// @param divisions_x,divisions_z  squares along each axis; with 0 one line is drawn, below 0
    ///                                 none
    /// @param draw_lines  draw the grid at all, its frame and axes included
    /// @param draw_frame  kept, but without effect
    void set_grid_params(float size_x, float size_z, int divisions_x, int divisions_z,
                         bool draw_lines, bool draw_frame);
    /// Draws the grid of this object through the fixed pipeline, whatever its display state; the
    /// active program is put back afterwards. Null renderer: nothing.
    void display_grid(Renderer* renderer, Node* node);
    /// Draws grey lines if `draw_lines` is set, and the yellow frame and axes if the object's own
    /// grid parameters have their lines switched on. `draw_frame` is not read. Null renderer:
    /// nothing.
    void render_grid(Renderer* renderer, float size_x, float size_z, int divisions_x,
                     int divisions_z, bool draw_lines, bool draw_frame);

    /// Whether the geometry goes through generic vertex attributes; false at first.
    bool get_use_generic_vertex_attribs_state() const;
    /// The opposite of `get_use_generic_vertex_attribs_state`; true at first.
    bool get_use_gl2_vertex_array_state() const;
    /// Whether matrices are loaded into the fixed pipeline; true at first.
    bool get_use_fixed_mvp_matrices_state() const;

    /// Material with that node id, null if there is none.
    Material* get_material(int id) const;
    /// Material by order of adding.
    /// @param index  from 0
    /// @return null past the end
    Material* get_material_by_index(unsigned long index) const;
    /// First material with that name, of which at most 127 characters count; null if there is none
    /// or for null.
    Material* get_material_by_name(const char* name) const;
    /// Number of materials held.
    unsigned long get_num_materials() const;
    /// Gives every material back, with `renderer` in hand.
    void remove_all_materials(Renderer* renderer, Node* node);
    /// Sets the first texture unit of every material.
    /// @param offset  from 0; unchecked here, the API refuses units that it does not have
    void set_all_materials_texture_unit_offset(unsigned long offset, Node* node);
    /// Loads the textures whose names wait in the materials.
    /// @param renderer  uploads them too; null for a worker thread
    /// @param prefix    put before each name as it is, no separator added; null for none
    /// @param format    pixel format asked for; `PF_NONE` keeps the file's
    /// @return true
    bool async_texture_loading_process_all_materials(Renderer* renderer, const char* prefix,
                                                     PIXEL_FORMAT format, bool flag, Node* node);

    /// Stores the sphere around the geometry.
    /// @param center  in this object's own space
    /// @param radius  in its units, 0 or more; kept as it is
    void set_bounding_sphere(const vec4& center, float radius);
    const vec4& get_bounding_sphere_center() const; ///< as set; (0, 0, 0, 1) at first
    float get_bounding_sphere_radius() const;       ///< as set; 0 at first
    /// Whether the sphere is to lie inside the bounding box instead of around it; off at first.
    void bounding_sphere_use_inscribed_sphere(bool state);
    bool bounding_sphere_inscribed_sphere() const; ///< see the setter

    /// The private record, which the engine alone defines.
    struct ObjectData;

protected:
    /// Written with `use_generic_vertex_attribs`, read by nothing.
    bool generic_attribs_mirror;
    /// The subclass draws instances.
    bool instancing_active;
    /// The subclass has user vertex attributes.
    bool user_vertex_attribs_allocated;
    /// What `get_use_generic_vertex_attribs_state` answers.
    bool use_generic_vertex_attribs;

private:
    std::unique_ptr<ObjectData> object_data;
    float grid_size_x;
    float grid_size_z;
    int grid_divisions_x;
    int grid_divisions_z;
    bool grid_draw_lines;
    bool grid_draw_frame;
    bool display_grid_state;
};

} // namespace orvex
