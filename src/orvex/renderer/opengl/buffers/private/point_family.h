#pragma once

/// @file
/// The family of point pools.

#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

struct GlState;

/// Turns `VertexPoolData` into buffers and draws it. What each operation does is told in
/// `Renderer`.
///
/// As for meshes there are two paths, gl3 and gl2, and two layouts. Generic attributes have the
/// fixed numbers 0 for positions, 1 for colours and 2 for normals, whatever the program says. A
/// separate pool's buffer holds a block of positions, three floats each, and behind it a block of
/// colours, four floats each.
class PointFamily {
public:
    explicit PointFamily(GlState& state)
        : state(state) {}

    bool prepare(VertexPoolData* pool);
    bool draw(VertexPoolData* pool);
    bool finish(VertexPoolData* pool);
    bool kill(VertexPoolData* pool);

private:
    bool _vertex_pool_render_prepare_gl2(VertexPoolData* pool);
    bool _vertex_pool_render_prepare_gl3(VertexPoolData* pool);
    bool _vertex_pool_render_prepare_separate_arrays_gl2(VertexPoolData* pool);
    bool _vertex_pool_render_prepare_separate_arrays_gl3(VertexPoolData* pool);
    bool _vertex_pool_render_finish_gl2(VertexPoolData* pool);
    bool _vertex_pool_render_finish_gl3(VertexPoolData* pool);

    GlState& state;
};

} // namespace orvex
