#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/math/vec4.h"

// The raster text of the contract. Text of Windows' own is drawn nowhere but there.

namespace orvex {

bool RendererOpenGL::font_bitmap_windows_create(FontData*) {
    return false;
}

bool RendererOpenGL::font_bitmap_windows_kill(FontData*) {
    return false;
}

bool RendererOpenGL::font_bitmap_windows_render(FontData*, int, int, float, float, float, float,
                                                const char*, unsigned long) {
    return false;
}

bool RendererOpenGL::font_bitmap_windows_render_3d(FontData*, float, float, float, float, float,
                                                   float, float, const char*, unsigned long) {
    return false;
}

bool RendererOpenGL::font_bitmap_windows_render_prepare(FontData*, int, int, float, float, float,
                                                        float, const char*, unsigned long) {
    return false;
}

bool RendererOpenGL::font_bitmap_windows_render_draw(FontData*, int, int, float, float, float,
                                                     float, const char*, unsigned long) {
    return false;
}

bool RendererOpenGL::font_bitmap_windows_render_finish(FontData*, int, int, float, float, float,
                                                       float, const char*, unsigned long) {
    return false;
}

bool RendererOpenGL::font_bitmap_linux_render(FontData* font, int x, int y, float r, float g,
                                              float b, float a, const char* text,
                                              unsigned long length) {
    return raster_text.draw(font, x, y, vec4(r, g, b, a), text, length);
}

bool RendererOpenGL::font_bitmap_linux_render_3d(FontData* font, float x, float y, float z, float r,
                                                 float g, float b, float a, const char* text,
                                                 unsigned long length) {
    return raster_text.draw_3d(font, x, y, z, vec4(r, g, b, a), text, length);
}

} // namespace orvex
