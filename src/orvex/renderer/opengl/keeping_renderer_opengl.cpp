#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <string_view>

// Each operation of the contract once more: what doesn't take part in keeping binds runs with
// everything restored, and keeps nothing itself.

namespace orvex {

namespace {

constexpr std::string_view taking_part[] = {"gpu_program_activate",
                                            "gpu_program_deactivate",
                                            "gpu_program_get_active_program",
                                            "gpu_program_bind_uniforms",
                                            "gpu_program_update_user_vertex_attrib_locations_mesh",
                                            "vertex_buffer_prepare",
                                            "vertex_buffer_draw",
                                            "vertex_buffer_finish",
                                            "texture_bind",
                                            "texture_activate",
                                            "set_texture2d_state",
                                            "material_set_colors",
                                            "material_set_ambient",
                                            "material_set_diffuse",
                                            "material_set_specular",
                                            "material_set_shininess",
                                            "gl2_matrix_load",
                                            "get_projection_matrix",
                                            "get_view_matrix",
                                            "get_viewport_ptr",
                                            "keep_binds"};

constexpr bool takes_part(std::string_view name) {
    for (const std::string_view listed : taking_part)
        if (listed == name)
            return true;
    return false;
}

} // namespace

KeepingRendererOpenGL::~KeepingRendererOpenGL() = default;

#define ORVEX_DEFINE(Result, name, parameters, arguments)                                          \
    Result KeepingRendererOpenGL::name parameters {                                                \
        constexpr bool part = takes_part(#name);                                                   \
        if (!bound().is_keeping())                                                                 \
            BoundState::restore_on_thread();                                                       \
        else if (!part) {                                                                          \
            const BoundStatePause pause(bound());                                                  \
            return RendererOpenGL::name arguments;                                                 \
        }                                                                                          \
        return RendererOpenGL::name arguments;                                                     \
    }
ORVEX_RENDERER_OPERATIONS(ORVEX_DEFINE, ORVEX_DEFINE)
#undef ORVEX_DEFINE

} // namespace orvex
