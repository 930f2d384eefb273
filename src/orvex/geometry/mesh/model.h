#pragma once

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/scene/object.h"

namespace orvex {

/// The object that a 3D loader fills: its children are the meshes and objects of one file.
///
/// Made by the engine's model loading, or by a host with `new`; owned by the caller and ended with
/// `kill`, which releases the children.
///
/// A model draws its children twice per frame, once by itself and once as any node does; with the
/// render state off it still draws them once. A host that wants them drawn once walks the children
/// and calls `render` on each.
///
/// @code
/// orvex::Model* model = new orvex::Model;
/// orvex::Mesh* mesh = model->create_mesh();
/// model->add_child(mesh);
/// @endcode
class ORVEX_API Model : public Object {
public:
    /// Without children; meshes get separate arrays in ordinary memory.
    Model();
    ~Model() override;

    /// Calls `render(renderer, child)` on each child of `node`, or of this model for null, then
    /// does what `Node::render` does, which renders the same children again.
    void render(Renderer* renderer, Node* node) override;

    /// Runs `render_geometry` on each child that is an `Object`: geometry alone, no material, no
    /// uniforms.
    void render_geometry(Renderer* renderer) override;

    /// What `create_mesh` hands to each new mesh; true and 0 at first.
    /// @param separate   one array per attribute, instead of one of whole vertices
    /// @param alignment  alignment of the arrays in bytes; 0 for none asked
    void set_mesh_vertex_alloc_params(bool separate, int alignment);
    bool get_separate_vertex_arrays_state() const; ///< as set; true at first
    int get_vertex_alignment() const;              ///< in bytes, as set; 0 at first

    /// Makes a mesh with this model's allocation settings. It is not added as a child: the caller
    /// does that with `add_child`, or releases it.
    Mesh* create_mesh();
    /// Makes a plain object, not added as a child either.
    Object* create_object();

private:
    bool separate_vertex_arrays;
    int vertex_alignment;
};

} // namespace orvex
