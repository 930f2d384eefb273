#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/render_target.h"

namespace orvex {

void RendererOpenGL::shadow_mapping_enable_zpass_states() {
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

void RendererOpenGL::shadow_mapping_disable_zpass_states() {
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

void RendererOpenGL::shadow_mapping_prepare_light_pass(RenderTarget* target, unsigned int unit,
                                                       mat4& projection, mat4& view,
                                                       GpuProgramData* program) {
    if (target == nullptr || gl.glActiveTexture == nullptr)
        return;
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glDepthFunc(GL_EQUAL);
    mat4 from_camera = ctx.view_matrix;
    from_camera.inverse();
    if (program != nullptr)
        program->set_uniform_4x4f("TextureMatrix", bias * projection * view * from_camera);
    gl.glActiveTexture(GL_TEXTURE0 + unit);
    glBindTexture(GL_TEXTURE_2D, target->get_depth_tex_id_opengl());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, GL_COMPARE_R_TO_TEXTURE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_FUNC, GL_LEQUAL);
    glTexParameteri(GL_TEXTURE_2D, GL_DEPTH_TEXTURE_MODE, GL_LUMINANCE);
}

void RendererOpenGL::shadow_mapping_finish_light_pass(RenderTarget* target, unsigned int unit) {
    if (target == nullptr || gl.glActiveTexture == nullptr)
        return;
    gl.glActiveTexture(GL_TEXTURE0 + unit);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, GL_NONE);
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
    glDepthFunc(GL_LEQUAL);
}

} // namespace orvex
