#include "orvex/renderer/opengl/state/private/fixed_pipeline_family.h"

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

void FixedPipelineFamily::load_matrices(const float* projection, const float* view,
                                        const float* model, const float* texture) {
    if (projection) {
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(projection);
    }
    if (view || model) {
        glMatrixMode(GL_MODELVIEW);
        if (view)
            glLoadMatrixf(view);
        if (model)
            glMultMatrixf(model);
    }
    if (texture) {
        glMatrixMode(GL_TEXTURE);
        glLoadMatrixf(texture);
    }
}

namespace {

void load_identity_into(GLenum matrix) {
    glMatrixMode(matrix);
    glLoadIdentity();
}

} // namespace

void FixedPipelineFamily::load_identity(bool projection, bool modelview, bool texture) {
    if (projection)
        load_identity_into(GL_PROJECTION);
    if (modelview)
        load_identity_into(GL_MODELVIEW);
    if (texture)
        load_identity_into(GL_TEXTURE);
}

// Lines

void FixedPipelineFamily::set_line_width(float width) {
    state.ctx.line_width = width;
    glLineWidth(width);
}

void FixedPipelineFamily::set_line_stipple(int factor, unsigned short pattern) {
    state.ctx.line_stipple_factor = factor;
    state.ctx.line_stipple_pattern = pattern;
    glLineStipple(factor, pattern);
}

void FixedPipelineFamily::render_line(const vec4& a, const vec4& a_color, const vec4& b,
                                      const vec4& b_color) {
    if (!state.can_draw())
        return;
    glBegin(GL_LINES);
    glColor4fv(&a_color.x);
    glVertex4fv(&a.x);
    glColor4fv(&b_color.x);
    glVertex4fv(&b.x);
    glEnd();
}

// Lights and materials

void FixedPipelineFamily::set_light_ambient(unsigned int light, const vec4& color) {
    glLightfv(GL_LIGHT0 + light, GL_AMBIENT, &color.x);
}

void FixedPipelineFamily::set_light_diffuse(unsigned int light, const vec4& color) {
    glLightfv(GL_LIGHT0 + light, GL_DIFFUSE, &color.x);
}

void FixedPipelineFamily::set_light_specular(unsigned int light, const vec4& color) {
    glLightfv(GL_LIGHT0 + light, GL_SPECULAR, &color.x);
}

void FixedPipelineFamily::set_material_ambient(const vec4& color) {
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, &color.x);
}

void FixedPipelineFamily::set_material_diffuse(const vec4& color) {
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, &color.x);
}

void FixedPipelineFamily::set_material_specular(const vec4& color) {
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, &color.x);
}

void FixedPipelineFamily::set_material_shininess(float shininess) {
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, shininess);
}

} // namespace orvex
