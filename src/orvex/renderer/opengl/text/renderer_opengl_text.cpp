#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/renderer/records/font_data.h"

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

bool RendererOpenGL::prepare_raster_text() {
    const char* const reason = raster_text.prepare();
    if (reason == nullptr)
        return true;
    if (!told_of_raster_text) {
        k_log_warning("raster text can't be drawn: %s", reason);
        told_of_raster_text = true;
    }
    return false;
}

namespace {

void begin_text(float r, float g, float b, float a) {
    glDisable(GL_BLEND);
    glDisable(GL_DEPTH_TEST);
    glColor4f(r, g, b, a);
}

void end_text() {
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
}

// A viewport of size 0 puts everything at its corner, so that the raster position is that pixel,
// and it stays valid where a position outside the view would be clipped away.
void place_raster(const FontData& font, int x, int y) {
    glPushAttrib(GL_TRANSFORM_BIT | GL_VIEWPORT_BIT);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    const long long left = static_cast<long long>(font.viewport_x) + x - 1;
    const long long bottom = static_cast<long long>(font.viewport_y) + font.viewport_height -
                             static_cast<int>(font.size) - y - 1;
    glViewport(static_cast<GLint>(left), static_cast<GLint>(bottom), 0, 0);
    glRasterPos4f(0.0f, 0.0f, 0.0f, 1.0f);
    glPopAttrib();
}

} // namespace

bool RendererOpenGL::font_bitmap_linux_render(FontData* font, int x, int y, float r, float g,
                                              float b, float a, const char* text,
                                              unsigned long length) {
    if (font == nullptr || text == nullptr || length == 0 || !prepare_raster_text())
        return false;
    begin_text(r, g, b, a);
    place_raster(*font, x, y);
    raster_text.draw(text);
    end_text();
    return true;
}

bool RendererOpenGL::font_bitmap_linux_render_3d(FontData* font, float x, float y, float z, float r,
                                                 float g, float b, float a, const char* text,
                                                 unsigned long length) {
    if (font == nullptr || text == nullptr || length == 0 || !prepare_raster_text())
        return false;
    begin_text(r, g, b, a);
    glRasterPos4f(x, y, z, 1.0f);
    raster_text.draw(text);
    end_text();
    return true;
}

} // namespace orvex
