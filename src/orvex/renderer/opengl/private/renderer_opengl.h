#pragma once

/// @file
/// The OpenGL back end.

#include <memory>
#include <vector>

#include "orvex/renderer/opengl/buffers/private/buffer_family.h"
#include "orvex/renderer/opengl/buffers/private/mesh_family.h"
#include "orvex/renderer/opengl/buffers/private/point_family.h"
#include "orvex/renderer/opengl/buffers/private/polyline_family.h"
#include "orvex/renderer/opengl/buffers/private/uniform_buffer_family.h"
#include "orvex/renderer/opengl/programs/private/attribute_family.h"
#include "orvex/renderer/opengl/programs/private/program_family.h"
#include "orvex/renderer/opengl/programs/private/uniform_family.h"
#include "orvex/renderer/opengl/state/private/fixed_pipeline_family.h"
#include "orvex/renderer/opengl/state/private/frame_family.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "orvex/renderer/opengl/state/private/query_family.h"
#include "orvex/renderer/opengl/state/private/render_state_family.h"
#include "orvex/renderer/opengl/state/private/shadow_family.h"
#include "orvex/renderer/opengl/targets/private/target_family.h"
#include "orvex/renderer/opengl/text/private/raster_text_family.h"
#include "orvex/renderer/opengl/textures/private/texture_family.h"
#include "orvex/renderer/opengl/textures/private/texture_unit_family.h"
#include "orvex/renderer/renderer.h"
#include "orvex/renderer/renderer_operations.h"

namespace orvex {

/// The renderer on OpenGL 2, 3.x and 4.x. What each operation does is told in `Renderer`.
///
/// The kernel makes it, the plugin registry holds it. It is made without a context; `start` takes
/// up the one that is current. No code path is chosen by the context's version: each record says
/// whether it is drawn with generic attributes and vertex array objects, or with client arrays.
///
/// It forwards: each family of operations (meshes, points, buffers, programs, textures, targets,
/// raster text, frame) is a class of its own with its own fields, over the one `GlState` that this
/// object is. A family is told here, in a source named after it, as `renderer_opengl_<family>.cpp`.
/// An operation that is made of others stays here and calls them through the virtual table, so that
/// a renderer that derives from this one may take over the parts.
class RendererOpenGL : public Renderer, public GlState {
public:
    RendererOpenGL();
    ~RendererOpenGL() override;

    using Renderer::vertex_buffer_kill;

    // Every operation of the contract.
#define ORVEX_DECLARE(Result, name, parameters, arguments) Result name parameters override;
    ORVEX_RENDERER_OPERATIONS(ORVEX_DECLARE, ORVEX_DECLARE)
#undef ORVEX_DECLARE

    /// @name State beside what the families share
    /// @{

    Renderer_Rasterizer_State& rasterizer_state;               ///< what the API holds
    Renderer_Rasterizer_State& pending_rasterizer_state;       ///< what will be applied
    std::vector<std::unique_ptr<RenderWindow>> render_windows; ///< in order of creation
    bool initialized = false;
    bool started = false;
    bool display_gl_func_ptr = false;
    /// @}

    /// @name Families
    /// Each has its fields to itself. They end in the reverse order.
    /// @{

    UniformFamily uniforms{*this};
    AttributeFamily attributes{*this};
    ProgramFamily programs{*this, attributes, uniforms};
    TextureUnitFamily texture_units{*this};
    TextureFamily textures{*this, texture_units, *this};
    TargetFamily targets{*this};
    RasterTextFamily raster_text{*this};
    /// @}

    /// @name Texture ids
    /// A list for extensions of the engine; loads don't enter anything.
    /// @{

    bool _add_texture_id(unsigned int id);
    /// @return whether the id was listed
    bool _remove_texture_id(unsigned int id);
    /// @}

    /// @name Parts of the texture operations
    /// @{

    /// The target that a texture's type is bound to; that of a 2D texture for null.
    unsigned int _get_gl_texture_target(TextureData* texture);
    /// Gives one face of the bound cube texture its pixels; false without a texture, and for a
    /// face with fewer pixels than face 0 asks for.
    bool texture_cube_load_face(TextureData* texture, CUBEMAP_FACE face, unsigned long unit);
    /// Sends one face of the bound cube texture again; false for other types, and for a face with
    /// fewer pixels than face 0 asks for.
    bool texture_cube_update_face(TextureData* texture, CUBEMAP_FACE face);
    /// @}

    /// @name Parts of the program operations
    /// @{

    /// Makes a shader object of a stage; 0 for a type without one.
    unsigned int _gpu_program_create_gl_shader(GPU_SHADER_TYPE type);
    /// The log of a shader, null for none. Valid until the next log is read.
    const char* _gpu_program_get_shader_info_log(unsigned int shader);
    /// The log of a program, null for none. Valid until the next log is read.
    const char* _gpu_program_get_info_log(unsigned int program);
    /// Moves the standard attribute `index` to the location of that number, from the next link on,
    /// if the linked program declares it. The first one found chooses the generic attributes path.
    /// @return the location it has now, below 0 if the program doesn't declare it
    int _bind_core_vertex_attrib_location(GpuProgramData* program, unsigned int index);
    /// The same for an attribute of any name; the path stays.
    int _bind_core_vertex_attrib_location_v2(GpuProgramData* program, const char* name, int index);
    /// @}

protected:
    bool can_keep_binds = false; ///< who makes sure that all else restores first says so

private:
    // Life cycle
    void log_life_cycle(const char* operation);

    // Buffers
    MeshFamily meshes;
    PointFamily points;
    PolylineFamily polylines;
    BufferFamily buffers;
    UniformBufferFamily uniform_buffers;

    // Frame and state
    FrameFamily frame;
    RenderStateFamily states;
    FixedPipelineFamily fixed_pipeline;
    ShadowFamily shadows;
    QueryFamily queries;
};

/// The renderer as hosts have it. It can keep binds: each operation finds the API as the full order
/// leaves it, but for those that take part, which ask what is held.
class KeepingRendererOpenGL final : public RendererOpenGL {
public:
    KeepingRendererOpenGL() { can_keep_binds = true; }
    ~KeepingRendererOpenGL() override;

#define ORVEX_DECLARE(Result, name, parameters, arguments) Result name parameters override;
    ORVEX_RENDERER_OPERATIONS(ORVEX_DECLARE, ORVEX_DECLARE)
#undef ORVEX_DECLARE
    using Renderer::vertex_buffer_kill;
};

} // namespace orvex
