#include "orvex/renderer/opengl/state/private/shadow_family.h"

#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/render_target.h"

// These calls pass the shadow of the state by: the passes take back what they set.

namespace orvex {

void ShadowFamily::enable_depth_pass() {
    glDisable(GL_BLEND);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
    glDepthFunc(GL_LEQUAL);
    glClearDepth(1.0);
    glClear(GL_DEPTH_BUFFER_BIT);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
}

void ShadowFamily::disable_depth_pass() {
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthFunc(GL_LESS);
    glDisable(GL_CULL_FACE);
}

namespace {

// Column by column: takes -1..1 to 0..1, from clip space to the texture.
constexpr mat4 bias(0.5f, 0.0f, 0.0f, 0.0f, //
                    0.0f, 0.5f, 0.0f, 0.0f, //
                    0.0f, 0.0f, 0.5f, 0.0f, //
                    0.5f, 0.5f, 0.5f, 1.0f);

} // namespace

void ShadowFamily::prepare_light_pass(RenderTarget* target, unsigned int unit,
                                      const mat4& projection, const mat4& view,
                                      GpuProgramData* program) {
    if (!target || !state.gl.glActiveTexture)
        return;
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glDepthFunc(GL_EQUAL);

    // From the camera's space to the light's, and from there to the texture.
    mat4 from_camera = state.ctx.view_matrix;
    from_camera.inverse();
    if (program)
        program->set_uniform_4x4f("TextureMatrix", bias * projection * view * from_camera);

    // The depth texture compares, and gives 0 or 1.
    state.gl.glActiveTexture(GL_TEXTURE0 + unit);
    glBindTexture(GL_TEXTURE_2D, target->get_depth_tex_id_opengl());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, GL_COMPARE_R_TO_TEXTURE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_FUNC, GL_LEQUAL);
    glTexParameteri(GL_TEXTURE_2D, GL_DEPTH_TEXTURE_MODE, GL_LUMINANCE);
}

void ShadowFamily::finish_light_pass(RenderTarget* target, unsigned int unit) {
    if (!target || !state.gl.glActiveTexture)
        return;
    state.gl.glActiveTexture(GL_TEXTURE0 + unit);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, GL_NONE);
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
    glDepthFunc(GL_LEQUAL);
}

} // namespace orvex
