#pragma once

/// @file
/// The family of meshes: buffers made from a store of geometry, and its draws.

#include "orvex/fwd.h"
#include "orvex/renderer/opengl/gl/private/gl_functions.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

struct GlState;

/// Turns `MeshData` into buffers and draws it. What each operation does is told in `Renderer`.
///
/// There are two paths, chosen by a flag of the record at each call: the one named gl3 draws with
/// generic attributes and a vertex array object, the one named gl2 with client arrays. Each has two
/// layouts, see mesh_buffers.h, in sources of their own: mesh_family_gl2.cpp, mesh_family_gl3.cpp.
/// The draws of both stand in mesh_family_draw.cpp.
class MeshFamily {
public:
    explicit MeshFamily(GlState& state)
        : state(state) {}

    bool prepare(MeshData* mesh);
    bool prepare_separate_arrays(MeshData* mesh);
    bool draw(MeshData* mesh);
    bool finish(MeshData* mesh);
    bool kill(MeshData* mesh);
    bool resize(MeshData* mesh);

private:
    void begin_prepare(MeshData& mesh);
    bool end_prepare(const MeshData& mesh, bool ready);

    bool vertex_buffer_prepare_gl3(MeshData* mesh);
    bool vertex_buffer_prepare_gl2(MeshData* mesh);
    bool vertex_buffer_prepare_separate_arrays_gl3(MeshData* mesh);
    bool vertex_buffer_prepare_separate_arrays_gl2(MeshData* mesh);
    bool vertex_buffer_draw_gl3(MeshData* mesh);
    bool vertex_buffer_draw_gl2(MeshData* mesh);
    bool vertex_buffer_finish_gl3(MeshData* mesh);
    bool vertex_buffer_finish_gl2(MeshData* mesh);
    bool vertex_buffer_kill_gl3(MeshData* mesh);
    bool vertex_buffer_kill_gl2(MeshData* mesh);

    bool can_draw_indexed(const MeshData& mesh, unsigned int elements) const;
    bool can_draw_quad_edges(const MeshData& mesh) const;
    bool can_draw_faces(const MeshData& mesh) const;
    void draw_vertices(const MeshData& mesh, GLenum primitive) const;
    void draw_instanced_vertices(const MeshData& mesh, GLenum primitive) const;
    void draw_subset(const MeshData& mesh, GLenum primitive) const;
    void draw_faces(const MeshData& mesh, GLenum primitive) const;
    void draw_instanced_faces(const MeshData& mesh, GLenum primitive) const;

    GlState& state;
};

} // namespace orvex
