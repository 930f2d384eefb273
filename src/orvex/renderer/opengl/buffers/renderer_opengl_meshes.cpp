// What the contract asks of meshes, point pools and polylines, handed to their families.

#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/polyline_data.h"

namespace orvex {

// Meshes

bool RendererOpenGL::vertex_buffer_prepare(MeshData* mesh) {
    return meshes.prepare(mesh);
}

bool RendererOpenGL::vertex_buffer_prepare_separate_arrays(MeshData* mesh) {
    return meshes.prepare_separate_arrays(mesh);
}

bool RendererOpenGL::vertex_buffer_draw(MeshData* mesh) {
    return meshes.draw(mesh);
}

bool RendererOpenGL::vertex_buffer_draw_with_shader_effect(MeshData*, GpuProgramData*) {
    return false;
}

bool RendererOpenGL::vertex_buffer_finish(MeshData* mesh) {
    return meshes.finish(mesh);
}

bool RendererOpenGL::vertex_buffer_kill(MeshData* mesh) {
    return meshes.kill(mesh);
}

bool RendererOpenGL::vertex_buffer_resize(MeshData* mesh) {
    return meshes.resize(mesh);
}

// Point pools

bool RendererOpenGL::vertex_pool_render(VertexPoolData* pool) {
    vertex_pool_render_prepare(pool);
    vertex_pool_render_draw(pool);
    vertex_pool_render_finish(pool);
    return true;
}

bool RendererOpenGL::vertex_pool_render_prepare(VertexPoolData* pool) {
    return points.prepare(pool);
}

bool RendererOpenGL::vertex_pool_render_draw(VertexPoolData* pool) {
    return points.draw(pool);
}

bool RendererOpenGL::vertex_pool_render_finish(VertexPoolData* pool) {
    return points.finish(pool);
}

bool RendererOpenGL::vertex_pool_kill(VertexPoolData* pool) {
    return points.kill(pool);
}

void RendererOpenGL::vertex_pool_memory_barriers() {
    memory_barrier(MEMORY_BARRIER_VERTEX_ATTRIB_ARRAY | MEMORY_BARRIER_SHADER_STORAGE);
}

// Polylines

bool RendererOpenGL::polyline_vb_prepare(PolylineData* polyline) {
    if (polyline && !polyline->use_generic_vertex_attribs)
        return polyline_vb_prepare_gl2(polyline);
    return polylines.prepare_gl3(polyline);
}

bool RendererOpenGL::polyline_vb_prepare_gl2(PolylineData* polyline) {
    return polylines.prepare_gl2(polyline);
}

bool RendererOpenGL::polyline_vb_draw(PolylineData* polyline, int start, int count) {
    return polylines.draw(polyline, start, count);
}

bool RendererOpenGL::polyline_vb_finish(PolylineData* polyline) {
    return polylines.finish(polyline);
}

bool RendererOpenGL::polyline_vb_kill(PolylineData* polyline) {
    return polylines.kill(polyline);
}

} // namespace orvex
