#pragma once

/// @file
/// Texture units and image units: what is bound to which.
///
/// What a unit holds is written down in `GlState::ctx`, and read by nobody here: every bind is
/// sent. The unit that an operation used last stays the active one.

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

/// What a unit has a texture for, each bound by itself.
inline constexpr GLenum bound_texture_targets[] = {
    GL_TEXTURE_1D, GL_TEXTURE_2D,       GL_TEXTURE_2D_MULTISAMPLE,
    GL_TEXTURE_3D, GL_TEXTURE_CUBE_MAP, GL_TEXTURE_RECTANGLE};

/// The target that a texture of a record's type is bound to; that of a 2D texture for null.
GLenum gl_texture_target(const TextureData* texture);

/// Binds textures to units. A unit that the context lacks, a texture that isn't on the GPU, and a
/// context without the entry points return false, and nothing is called.
class TextureUnitFamily {
public:
    /// @param state  holds what the units hold; it outlives the object
    explicit TextureUnitFamily(GlState& state)
        : state(state)
        , gl(state.gl)
        , ctx(state.ctx) {}

    /// Binds a record's texture. Null takes whatever is bound off the unit, any unit at all.
    bool bind(const TextureData* texture, unsigned long unit);
    /// Binds a texture by its id, 0 being none.
    bool bind_id(GLenum target, GLuint id, unsigned long unit);
    /// Makes a unit the active one. Only with `glActiveTexture`.
    void activate(unsigned long unit);

    /// Takes everything off a unit: textures, the image, the switches and the coordinates of the
    /// fixed pipeline. Unit 0 is active afterwards, the client's unit is `unit`.
    bool reset(unsigned long unit);
    /// Switches a target of the fixed pipeline on or off, for the active unit.
    void set_state(GLenum target, bool enabled) const;

    /// Gives a record's texture to an image unit. Null takes off what is there.
    bool bind_image(TextureData* texture, unsigned long unit, DATA_ACCESS_TYPE access) const;

private:
    const GlState& state;
    const ORVEX_Renderer_OpenGL_Func& gl;
    RendererOpenGLCtx& ctx;
};

} // namespace orvex
