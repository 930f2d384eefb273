#pragma once

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

namespace aux {

/// @name Texts of the shaders that `Hud` draws with
/// A host may put texts of its own here before a `Hud` draws for the first time. They are given the
/// matrix "orvex_ModelViewProjectionMatrix", the sampler "tex0" on unit 0 and, from OpenGL 3 on,
/// the attributes "orvex_Position" and "orvex_TexCoord0".
/// @{
ORVEX_API extern const char* orvex_hud_tex_ortho_proj_vs_gl2; ///< vertex stage below OpenGL 3
ORVEX_API extern const char* orvex_hud_tex_ortho_proj_ps_gl2; ///< pixel stage below OpenGL 3
ORVEX_API extern const char* orvex_hud_tex_ortho_proj_vs_gl3; ///< vertex stage from OpenGL 3 on
ORVEX_API extern const char* orvex_hud_tex_ortho_proj_ps_gl3; ///< pixel stage from OpenGL 3 on
/// @}

/// Draws a textured rectangle at a place on the screen, on top of what was drawn before: a logo, or
/// the preview of a render target.
///
/// The host owns it, and calls `cleanup` before it ends: the destructor has no renderer and frees
/// nothing of what was made. The camera, the program and the quad that it needs are made by the
/// first `render` and stay until `cleanup`; a program that can't be made is tried again, and
/// reported again, by every `render`.
///
/// Places are in pixels from the lower left corner of the window, whatever camera is bound. The
/// texture covers the rectangle once, its first row at the lower edge. What was drawn into a render
/// target thus shows upright. Picture files are decoded from the top row on: they show upside down,
/// unless they are stored that way. Texture coordinates run from 0 down to -1, so the texture has
/// to repeat.
///
/// Where each `render` leaves the renderer: viewport as before, scissor test, blending and culling
/// off, depth test on, polygons filled, the hud's matrices and its program in use.
///
/// Render thread only.
///
/// @code
/// orvex::aux::Hud logo;
/// logo.init_texture(renderer, "logo.png");
/// // at the end of each frame
/// logo.render(renderer, 10, 10, 128, 64, true, orvex::BLEND_FACTOR_SRC_ALPHA,
///             orvex::BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
/// // before the renderer stops
/// logo.cleanup(renderer);
/// @endcode
class ORVEX_API Hud {
public:
    /// Without texture and program, and without any object of the API.
    Hud();
    Hud(const Hud&) = delete;
    Hud& operator=(const Hud&) = delete;
    ~Hud();

    /// Loads the hud's own texture from an image file and uploads it, in place of the one before.
    /// @return false, with an error in the log, if the file can't be loaded or uploaded: there is
    ///         no texture then. False without a change for null
    bool init_texture(Renderer* renderer, const char* filename);

    /// Draws the own texture. Does nothing without one, and for a null renderer.
    /// @param x,y           lower left corner, pixels, of either sign
    /// @param width,height  size, pixels; unchecked: the API refuses a negative one
    /// @param blend  mix with what is there by the two factors, which are not read otherwise
    void render(Renderer* renderer, int x, int y, int width, int height, bool blend,
                RENDERER_BLEND_FACTOR src_factor, RENDERER_BLEND_FACTOR dst_factor);

    /// Draws a texture of the host's. Does nothing for null.
    void render(Renderer* renderer, Texture* texture, int x, int y, int width, int height,
                bool blend, RENDERER_BLEND_FACTOR src_factor, RENDERER_BLEND_FACTOR dst_factor);

    /// Gives everything back, the own texture included. The hud is then as new.
    void cleanup(Renderer* renderer);

private:
    struct HudData;

    bool make_program(Renderer& renderer);
    void make_camera(int x, int y, int width, int height);
    bool make_quad();

    std::unique_ptr<HudData> data;
};

} // namespace aux
} // namespace orvex
