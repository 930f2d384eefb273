// What only the fixed pipeline has. In a core context the API refuses these calls, each alone.

#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/math/vec4.h"

namespace orvex {

void RendererOpenGL::gl2_matrix_load(float* projection, float* view, float* model, float* texture) {
    if (projection != nullptr) {
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(projection);
    }
    if (view != nullptr || model != nullptr) {
        glMatrixMode(GL_MODELVIEW);
        if (view != nullptr)
            glLoadMatrixf(view);
        if (model != nullptr)
            glMultMatrixf(model);
    }
    if (texture != nullptr) {
        glMatrixMode(GL_TEXTURE);
        glLoadMatrixf(texture);
    }
}

namespace {

void load_identity(GLenum matrix) {
    glMatrixMode(matrix);
    glLoadIdentity();
}

} // namespace

void RendererOpenGL::gl2_matrix_load_identity(bool projection, bool modelview, bool texture) {
    if (projection)
        load_identity(GL_PROJECTION);
    if (modelview)
        load_identity(GL_MODELVIEW);
    if (texture)
        load_identity(GL_TEXTURE);
}

void RendererOpenGL::set_line_width(float width) {
    ctx.line_width = width;
    glLineWidth(width);
}

void RendererOpenGL::set_line_stipple(int factor, unsigned short pattern) {
    ctx.line_stipple_factor = factor;
    ctx.line_stipple_pattern = pattern;
    glLineStipple(factor, pattern);
}

void RendererOpenGL::render_line(const vec4& a, const vec4& a_color, const vec4& b,
                                 const vec4& b_color) {
    glBegin(GL_LINES);
    glColor4fv(&a_color.x);
    glVertex4fv(&a.x);
    glColor4fv(&b_color.x);
    glVertex4fv(&b.x);
    glEnd();
}

void RendererOpenGL::light_set_colors(unsigned int light, const vec4& ambient, const vec4& diffuse,
                                      const vec4& specular) {
    light_set_ambient(light, ambient);
    light_set_diffuse(light, diffuse);
    light_set_specular(light, specular);
}

void RendererOpenGL::light_set_ambient(unsigned int light, const vec4& color) {
    glLightfv(GL_LIGHT0 + light, GL_AMBIENT, &color.x);
}

void RendererOpenGL::light_set_diffuse(unsigned int light, const vec4& color) {
    glLightfv(GL_LIGHT0 + light, GL_DIFFUSE, &color.x);
}

void RendererOpenGL::light_set_specular(unsigned int light, const vec4& color) {
    glLightfv(GL_LIGHT0 + light, GL_SPECULAR, &color.x);
}

void RendererOpenGL::material_set_colors(const vec4& ambient, const vec4& diffuse,
                                         const vec4& specular, float shininess) {
    material_set_ambient(ambient);
    material_set_diffuse(diffuse);
    material_set_specular(specular);
    material_set_shininess(shininess);
}

void RendererOpenGL::material_set_ambient(const vec4& color) {
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, &color.x);
}

void RendererOpenGL::material_set_diffuse(const vec4& color) {
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, &color.x);
}

void RendererOpenGL::material_set_specular(const vec4& color) {
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, &color.x);
}

void RendererOpenGL::material_set_shininess(float shininess) {
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, shininess);
}

} // namespace orvex
