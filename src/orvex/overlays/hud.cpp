// The hud: a quad drawn by a camera of its own, over whatever stands on the screen. What it needs
// is made by the first draw and stays; each draw leaves the viewport as it found it, and the
// other states in the order and with the values that hosts know.

#include "orvex/overlays/hud.h"

#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/log_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/geometry/shapes/mesh_quad.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/math/vec4.h"
#include "orvex/overlays/private/overlay_program.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/camera.h"
#include "orvex/scene/private/fresh_node.h"
#include "orvex/scene/private/weak_node.h"

namespace orvex::aux {

/// Program and texture are held by their managers, which may end them first.
struct Hud::HudData {
    Camera* camera = nullptr;
    WeakNode<GpuProgram> gpu_program;
    MeshQuad* quad = nullptr;
    WeakNode<Texture> texture;
    bool gl2 = false; ///< what the program was made for
};

Hud::Hud()
    : data(std::make_unique<HudData>()) {}

Hud::~Hud() = default;

bool Hud::init_texture(Renderer* renderer, const char* filename) {
    if (!renderer || !filename)
        return misuse("Hud::init_texture", "a null renderer or file name");
    TextureMgr* const textures = TextureMgr::get();
    textures->release_texture(renderer, data->texture.take(), nullptr);
    Texture* const texture = textures->create_texture_2d_from_file(filename, false);
    if (!texture) {
        LogMgr::get()->tracef_error("- Unable to load texture (%s).", filename);
        return false;
    }
    if (!textures->upload_to_renderer(renderer, texture, 0)) {
        LogMgr::get()->tracef_error("- Unable to upload texture (%s) to renderer.", filename);
        textures->release_texture(renderer, texture, nullptr);
        return false;
    }
    data->texture.set(texture);
    return true;
}

void Hud::render(Renderer* renderer, int x, int y, int width, int height, bool blend,
                 RENDERER_BLEND_FACTOR src_factor, RENDERER_BLEND_FACTOR dst_factor) {
    render(renderer, data->texture.get(), x, y, width, height, blend, src_factor, dst_factor);
}

void Hud::make_camera(int x, int y, int width, int height) {
    if (data->camera)
        return;
    data->camera = new Camera;
    data->camera->set_viewport(x, y, width, height);
    data->camera->build_projection_ortho(-1.0f, 1.0f, 1.0f, -1.0f, 1.0f, -1.0f, true);
    data->camera->set_view_params(vec4(0.0f, 0.0f, 1.0f, 0.0f), vec4(0.0f, 0.0f, 0.0f, 1.0f),
                                  vec4(0.0f, 1.0f, 0.0f, 0.0f), true);
}

bool Hud::make_program(Renderer& renderer) {
    if (data->gpu_program.get())
        return true;
    int major = 0;
    int minor = 0;
    renderer.get_opengl_version(&major, &minor);
    data->gl2 = major < 3;
    GpuProgram* const program = make_overlay_program(
        renderer, data->gl2 ? orvex_hud_tex_ortho_proj_vs_gl2 : orvex_hud_tex_ortho_proj_vs_gl3,
        data->gl2 ? orvex_hud_tex_ortho_proj_ps_gl2 : orvex_hud_tex_ortho_proj_ps_gl3,
        {"orvex_hud_tex_ortho_proj", "- orvex_hud_tex_ortho_proj_XXXX GPU program",
         "- unable to create the GPU program orvex_hud_tex_ortho_proj_XXXX."});
    if (!program)
        return false;
    program->set_uniform_1i(&renderer, "tex0", 0);
    program->deactivate(&renderer);
    data->gpu_program.set(program);
    return true;
}

bool Hud::make_quad() {
    if (data->quad)
        return true;
    Fresh<MeshQuad> quad = make_fresh<MeshQuad>();
    quad->set_vertex_alloc_params(false, 0);
    quad->set_build_params(2.0f, 2.0f);
    if (!quad->build(nullptr))
        return false;
    quad->set_use_gl2_vertex_array_state(data->gl2, nullptr);
    quad->set_use_fixed_mvp_matrices_state(data->gl2, nullptr);
    data->quad = quad.release();
    return true;
}

namespace {

void set_state(Renderer& renderer, bool blend, RENDERER_BLEND_FACTOR src_factor,
               RENDERER_BLEND_FACTOR dst_factor) {
    renderer.rasterizer_set_cull_state(false);
    renderer.rasterizer_set_cull_face(POLYGON_FACE_BACK);
    renderer.rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK, POLYGON_MODE_FILL);
    renderer.rasterizer_apply_state();
    renderer.set_depth_test_state(false);
    renderer.set_blend_state(blend);
    if (blend)
        renderer.set_blend_factors(src_factor, dst_factor);
}

} // namespace

void Hud::render(Renderer* renderer, Texture* texture, int x, int y, int width, int height,
                 bool blend, RENDERER_BLEND_FACTOR src_factor, RENDERER_BLEND_FACTOR dst_factor) {
    if (!renderer || !texture)
        return;
    make_camera(x, y, width, height);
    // What finds no memory is made by the next draw.
    if (!make_program(*renderer) || !make_quad())
        return;

    // The viewport is the host's and comes back at the end; the other states have fixed ends.
    int saved_x = 0;
    int saved_y = 0;
    int saved_width = 0;
    int saved_height = 0;
    renderer->get_viewport(&saved_x, &saved_y, &saved_width, &saved_height);
    set_state(*renderer, blend, src_factor, dst_factor);

    // The scissor keeps a program of the host's that draws elsewhere inside the rectangle.
    renderer->set_scissor_state(true);
    data->camera->set_viewport(x, y, width, height);
    data->camera->bind(renderer, true, true, true, true, false);
    data->gpu_program.get()->bind(renderer);
    texture->bind(renderer, 0);
    data->quad->render(renderer, nullptr);
    renderer->set_scissor_state(false);

    renderer->set_blend_state(false);
    renderer->set_depth_test_state(true);
    renderer->set_viewport(saved_x, saved_y, saved_width, saved_height);
}

namespace {

template<class Object>
void release(Renderer* renderer, Object*& object) {
    if (object)
        object->release(renderer, nullptr);
    object = nullptr;
}

} // namespace

void Hud::cleanup(Renderer* renderer) {
    GpuProgramMgr::get()->release_resource(renderer, data->gpu_program.take(), nullptr);
    TextureMgr::get()->release_texture(renderer, data->texture.take(), nullptr);
    release(renderer, data->quad);
    release(renderer, data->camera);
}

} // namespace orvex::aux
