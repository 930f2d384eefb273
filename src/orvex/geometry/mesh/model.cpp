#include "orvex/geometry/mesh/model.h"

#include "orvex/geometry/mesh/mesh.h"
#include "orvex/scene/private/draw_ahead.h"
#include "orvex/scene/private/kept_binds.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

Model::Model()
    : separate_vertex_arrays(true)
    , vertex_alignment(0) {
    set_type(NODE_TYPE_MODEL);
    note_drawn_by_engine(*this);
}

Model::~Model() = default;

// Each child is drawn here and once more by Node::render; with the render state off, here alone.
void Model::render(Renderer* renderer, Node* node) {
    const NodeHandle self(this);
    const NodeHandle walked(node ? node : this);
    const KeptBinds kept(renderer);
    for_each_child(
        walked,
        [renderer, &kept](Node& child) {
            kept.enter(child);
            child.render(renderer, &child);
        },
        draw_ahead);
    if (self.get() && walked.get())
        Node::render(renderer, node);
}

void Model::render_geometry(Renderer* renderer) {
    for_each_child_object(this, [renderer](Object& child) { child.render_geometry(renderer); });
}

void Model::set_mesh_vertex_alloc_params(bool separate, int alignment) {
    separate_vertex_arrays = separate;
    vertex_alignment = alignment;
}

bool Model::get_separate_vertex_arrays_state() const {
    return separate_vertex_arrays;
}

int Model::get_vertex_alignment() const {
    return vertex_alignment;
}

Mesh* Model::create_mesh() {
    Mesh* const mesh = new Mesh;
    mesh->set_vertex_alloc_params(separate_vertex_arrays, vertex_alignment);
    return mesh;
}

Object* Model::create_object() {
    return new Object;
}

} // namespace orvex
