// The skybox: a quad over the whole screen, a cube map, and a program that turns each pixel's
// direction back into the world. All three are held weakly, since a host may end them through
// their managers; a reference of the skybox keeps each alive until `give_back`.

#include "orvex/overlays/skybox.h"

#include <new>

#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/geometry/shapes/mesh_quad.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/private/fresh_node.h"
#include "orvex/scene/private/weak_node.h"

namespace orvex {

struct Skybox::SkyboxData {
    WeakNode<MeshQuad> quad;
    WeakNode<Texture> cubemap;
    bool holds_cubemap = false; ///< with a reference beside the manager's
    WeakNode<GpuProgram> gpu_program;
    /// A program of its own that didn't compile is kept, so that it isn't tried at each frame, but
    /// never bound: its pixel stage would link alone in a compatibility context.
    bool program_usable = true;

    void on_quad(void (MeshQuad::*step)(Renderer*), Renderer* renderer) const {
        if (MeshQuad* const held = quad.get())
            (held->*step)(renderer);
    }
};

Skybox::Skybox()
    : data(std::make_unique<SkyboxData>()) {
    set_type(NODE_TYPE_SKYBOX);
    Fresh<MeshQuad> quad = make_fresh<MeshQuad>();
    quad->set_build_params(800.0f, 600.0f);
    // Without its quad it would never be seen.
    if (!quad->build(nullptr))
        throw std::bad_alloc();
    quad->add_ref();
    data->quad.set(quad.release());
}

Skybox::~Skybox() {
    give_back(nullptr);
}

bool Skybox::_cleanup(Renderer* renderer) {
    give_back(renderer);
    return Object::_cleanup(renderer);
}

void Skybox::give_back(Renderer* renderer) {
    if (MeshQuad* const quad = data->quad.take())
        quad->release(renderer, nullptr);
    drop_cubemap(renderer);
    GpuProgram* const program = data->gpu_program.take();
    if (program && program->release(renderer, nullptr) > 0)
        GpuProgramMgr::get()->release_resource(renderer, program, nullptr);
}

void Skybox::drop_cubemap(Renderer* renderer) {
    Texture* const cubemap = data->cubemap.take();
    if (cubemap && (!data->holds_cubemap || cubemap->release(renderer, nullptr) > 0))
        TextureMgr::get()->release_texture(renderer, cubemap, nullptr);
}

bool Skybox::load_all_faces_from_files(Renderer* renderer, const char* const* filenames,
                                       PIXEL_FORMAT format) {
    drop_cubemap(renderer);
    TextureMgr* const textures = TextureMgr::get();
    Texture* const cubemap = textures->create_texture_cube_from_files(filenames, false);
    if (!cubemap)
        return false;
    data->cubemap.set(cubemap);
    cubemap->gen_mipmaps(false);
    cubemap->update_pixel_format(format);
    data->holds_cubemap = textures->upload_to_renderer(renderer, cubemap, 0);
    if (data->holds_cubemap)
        cubemap->add_ref();
    return data->holds_cubemap;
}

bool Skybox::load_all_faces_from_files(Renderer* renderer, const char* positive_x,
                                       const char* negative_x, const char* positive_y,
                                       const char* negative_y, const char* positive_z,
                                       const char* negative_z, PIXEL_FORMAT format) {
    const char* const filenames[] = {positive_x, negative_x, positive_y,
                                     negative_y, positive_z, negative_z};
    return load_all_faces_from_files(renderer, filenames, format);
}

void Skybox::make_program(Renderer& renderer) {
    const bool gl2 = get_use_gl2_vertex_array_state();
    GpuProgram* const program = GpuProgramMgr::get()->create_gpu_program_from_shaders(
        &renderer, gl2 ? orvex_skybox_vs_gl2 : orvex_skybox_vs_gl3,
        gl2 ? orvex_skybox_ps_gl2 : orvex_skybox_ps_gl3, nullptr, nullptr, nullptr, nullptr,
        gl2 ? "orvex_skybox_gl2_prog" : "orvex_skybox_gl3_prog");

    // Held beside the manager, usable or not: one that does not compile is not tried again.
    program->add_ref();
    data->gpu_program.set(program);
    data->program_usable = program->is_valid() && program->bind(&renderer);
    if (data->program_usable)
        program->set_uniform_1i(&renderer, "cubemap", 0);
}

bool Skybox::bind_program(Renderer& renderer) {
    if (!data->gpu_program.get())
        make_program(renderer);
    return data->program_usable && data->gpu_program.get()->bind(&renderer);
}

void Skybox::_render(Renderer* renderer) {
    Texture* const cubemap = data->cubemap.get();
    MeshQuad* const quad = data->quad.get();
    // Whatever program is active would draw the quad somewhere if the one meant for it can't.
    if (renderer && cubemap && quad && bind_program(*renderer)) {
        render_apply_automatic_uniforms(renderer, renderer->gpu_program_get_active_program(),
                                        get_use_fixed_mvp_matrices_state());
        cubemap->bind(renderer, 0);
        quad->render(renderer, nullptr);
    }
    Object::_render(renderer);
}

void Skybox::render_geometry(Renderer* renderer) {
    data->on_quad(&MeshQuad::render_geometry, renderer);
}

void Skybox::render_geometry_prepare(Renderer* renderer) {
    data->on_quad(&MeshQuad::render_geometry_prepare, renderer);
}

void Skybox::render_geometry_draw(Renderer* renderer) {
    data->on_quad(&MeshQuad::render_geometry_draw, renderer);
}

void Skybox::render_geometry_finish(Renderer* renderer) {
    data->on_quad(&MeshQuad::render_geometry_finish, renderer);
}

void Skybox::set_cubemap_gpu_program(GpuProgram* program) {
    WeakNode<GpuProgram> wanted;
    wanted.set(program);
    if (GpuProgram* const old = data->gpu_program.take())
        old->release(nullptr, nullptr);
    // The program that was just released may be the new one, and may have ended.
    data->gpu_program = wanted;
    data->program_usable = true;
    if (wanted.get())
        program->add_ref();
}

GpuProgram* Skybox::get_cubemap_gpu_program() const {
    return data->gpu_program.get();
}

Texture* Skybox::get_cubemap() const {
    return data->cubemap.get();
}

void Skybox::resize(float width, float height) {
    if (MeshQuad* const quad = data->quad.get())
        quad->update_params(width, height);
}

} // namespace orvex
