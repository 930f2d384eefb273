#include "renderer/opengl/renderer_opengl.h"

namespace orvex {

bool RendererOpenGL::vertex_pool_render(VertexPoolData*) {
    return true;
}

bool RendererOpenGL::vertex_pool_render_prepare(VertexPoolData*) {
    return false;
}

bool RendererOpenGL::vertex_pool_render_draw(VertexPoolData*) {
    return false;
}

bool RendererOpenGL::vertex_pool_render_finish(VertexPoolData*) {
    return false;
}

bool RendererOpenGL::vertex_pool_kill(VertexPoolData*) {
    return false;
}

void RendererOpenGL::vertex_pool_memory_barriers() {}

bool RendererOpenGL::polyline_vb_prepare(PolylineData*) {
    return false;
}

bool RendererOpenGL::polyline_vb_prepare_gl2(PolylineData*) {
    return false;
}

bool RendererOpenGL::polyline_vb_draw(PolylineData*, int, int) {
    return false;
}

bool RendererOpenGL::polyline_vb_finish(PolylineData*) {
    return false;
}

bool RendererOpenGL::polyline_vb_kill(PolylineData*) {
    return false;
}

} // namespace orvex
