#include "orvex/renderer/opengl/text/private/raster_text_family.h"

#include "orvex/math/vec4.h"
#include "orvex/renderer/records/font_data.h"

namespace orvex {

bool RasterTextFamily::prepare() {
    const char* const reason = characters.prepare();
    if (!reason)
        return true;
    if (!told) {
        state.k_log_warning("raster text can't be drawn: %s", reason);
        told = true;
    }
    return false;
}

namespace {

void begin_text(const vec4& color) {
    glDisable(GL_BLEND);
    glDisable(GL_DEPTH_TEST);
    glColor4f(color.x, color.y, color.z, color.w);
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

bool RasterTextFamily::draw(const FontData* font, int x, int y, const vec4& color, const char* text,
                            unsigned long length) {
    if (!font || !text || length == 0 || !state.can_draw() || !prepare())
        return false;
    begin_text(color);
    place_raster(*font, x, y);
    characters.draw(text);
    end_text();
    return true;
}

bool RasterTextFamily::draw_3d(const FontData* font, float x, float y, float z, const vec4& color,
                               const char* text, unsigned long length) {
    if (!font || !text || length == 0 || !state.can_draw() || !prepare())
        return false;
    begin_text(color);
    glRasterPos4f(x, y, z, 1.0f);
    characters.draw(text);
    end_text();
    return true;
}

} // namespace orvex
