// From queued texts to one draw call: room for the glyphs, six vertices for each, written either
// into the mapped GPU buffer or into the mesh, which uploads them at its next draw.
//
// The buffer grows and never shrinks. `bm_vb_capacity` counts the glyphs it can hold, and is 0
// whenever the mesh holds none, so that the next update makes room.

#include "orvex/overlays/font.h"

#include <limits>

#include "orvex/geometry/mesh/mesh.h"
#include "orvex/overlays/private/bm_quads.h"
#include "orvex/overlays/private/font_state.h"
#include "orvex/renderer/private/debug_name.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

namespace {

/// What the buffer has at first, and what it has more than asked for when it grows.
constexpr unsigned long headroom = 1000;

/// Beyond this the bytes of the vertices can't be counted.
constexpr unsigned long most_glyphs =
    std::numeric_limits<unsigned long>::max() / (vertices_per_glyph * sizeof(Vertex)) - headroom;

/// Gives an empty mesh vertices for so many glyphs. @return false, with none, if memory runs out
bool allocate_quads(Mesh& mesh, unsigned long num_glyphs) {
    mesh.set_vertex_alloc_params(false, 0);
    if (mesh.alloc_vertex_data(num_glyphs * vertices_per_glyph))
        return true;
    mesh.free_mesh_data();
    return false;
}

} // namespace

bool Font::bm_alloc_vb(Renderer* renderer, unsigned long num_chars) {
    if (num_chars <= state->bm_vb_capacity)
        return true;
    if (!renderer || !bm_get_charset_texture() || !state->bm_charset || num_chars > most_glyphs)
        return false;

    // An empty mesh, with vertices in memory for all glyphs it may hold.
    const unsigned long capacity = num_chars > headroom ? num_chars + headroom : headroom;
    Mesh& mesh = empty_mesh(*renderer);
    MeshData* const data = mesh.get_mesh_data();
    if (!data || !allocate_quads(mesh, capacity))
        return false;

    // The GPU buffer of the same size, made by the first prepare.
    data->num_faces = 0;
    data->set_use_generic_vertex_attribs_state(get_use_generic_vertex_attribs_state());
    const DebugName name(*this);
    renderer->vertex_buffer_prepare(data);
    renderer->vertex_buffer_finish(data);
    state->bm_vb_capacity = capacity;
    return true;
}

// A mesh made late is drawn as the first one would be, whose states the font's setters reached.
Mesh& Font::empty_mesh(Renderer& renderer) {
    if (!state->bm_mesh) {
        state->bm_mesh = new Mesh;
        state->bm_mesh->set_opengl_2_3_rendering_states(get_use_fixed_mvp_matrices_state(),
                                                        nullptr);
        return *state->bm_mesh;
    }
    state->bm_vb_capacity = 0;
    renderer.vertex_buffer_kill(state->bm_mesh->get_mesh_data());
    state->bm_mesh->free_mesh_data();
    return *state->bm_mesh;
}

bool Font::bm_update_vb(Renderer* renderer, bool use_map) {
    const BmData& texts = state->bm_data;
    if (!renderer)
        return false;
    if (texts.get_string_counter() == 0)
        return true;
    const unsigned long num_chars = texts.get_num_chars();
    bm_alloc_vb(renderer, num_chars);
    MeshData* const data = state->bm_mesh ? state->bm_mesh->get_mesh_data() : nullptr;
    if (!data || !state->bm_charset || num_chars > state->bm_vb_capacity ||
        data->get_vertex_elt_size() != sizeof(Vertex))
        return false;
    return use_map ? write_mapped(*renderer, *data) : write_vertices(*data);
}

bool Font::write_mapped(Renderer& renderer, MeshData& data) {
    void* const mapped = renderer.vertex_buffer_map(data.vertex_buffer_id);
    if (!write_quads(data, mapped))
        return false;
    renderer.vertex_buffer_unmap(data.vertex_buffer_id);
    return true;
}

bool Font::write_vertices(MeshData& data) {
    if (!write_quads(data, data.get_vertex_ptr()))
        return false;
    // Either flag uploads whole records, colours included.
    data.positions_need_update = true;
    data.uv0_need_update = true;
    return true;
}

// Texts without a single character need no memory, and make a draw range of no length.
bool Font::write_quads(MeshData& data, void* destination) {
    const BmData& texts = state->bm_data;
    const unsigned long num_chars = texts.get_num_chars();
    if (num_chars > 0 && !destination)
        return false;
    data.draw_start_vertex = 0;
    data.draw_end_vertex = num_chars * vertices_per_glyph;
    auto* vertices = static_cast<Vertex*>(destination);
    for (unsigned long i = 0; i < texts.get_string_counter(); ++i) {
        vertices =
            write_bm_quads(vertices, *texts.get_string(i), *state->bm_charset, state->bm_scale);
    }
    return true;
}

// A mesh that never had vertices has no arrays either, and a core context refuses to draw then.
void Font::bm_render_vb(Renderer* renderer) {
    if (!renderer || !state->bm_mesh || state->bm_data.get_string_counter() == 0 ||
        state->bm_mesh->get_num_vertices(nullptr) == 0)
        return;
    state->bm_mesh->set_transform(get_transform());
    state->bm_mesh->render(renderer, nullptr);
}

bool Font::bm_free_vb(Renderer* renderer) {
    state->bm_vb_capacity = 0;
    if (renderer && state->bm_mesh)
        renderer->vertex_buffer_kill(state->bm_mesh->get_mesh_data());
    return true;
}

} // namespace orvex
