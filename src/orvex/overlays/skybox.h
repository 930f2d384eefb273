#pragma once

/// @file
/// `Skybox`, the surroundings of a scene, and the texts of its shaders.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"
#include "orvex/scene/object.h"

namespace orvex {

/// @name Texts of the shaders that `Skybox` draws with
/// A host may put texts of its own here before a skybox is drawn for the first time. They are given
/// the matrices "orvex_ModelViewMatrix" and "orvex_ProjectionMatrix", the sampler "cubemap" on unit
/// 0 and, in the gl3 pair, the attribute "orvex_Position".
///
/// The gl2 pair needs a driver that accepts `inverse` in GLSL 1.20.
/// @{
ORVEX_API extern const char* orvex_skybox_vs_gl2; ///< vertex stage with built-in vertex arrays
ORVEX_API extern const char* orvex_skybox_ps_gl2; ///< pixel stage with built-in vertex arrays
ORVEX_API extern const char* orvex_skybox_vs_gl3; ///< vertex stage with generic attributes
ORVEX_API extern const char* orvex_skybox_ps_gl3; ///< pixel stage with generic attributes
/// @}

/// Fills the screen with the surroundings of a scene, which a cube map shows.
///
/// Made with `new` and ended through its references, like every node. It holds a quad of its own,
/// the cube map that it loaded and its program, each with one reference, and gives them back in
/// `_cleanup`; cube map and program also go back to their managers there.
///
/// The quad's corners are taken as clip positions, so that it has to cover the square from -1 to 1;
/// it lies half way into the depth range. For each pixel the program turns the direction through it
/// back by the projection and by the rotation of the view. The place of the camera doesn't count,
/// nor does the transform of the skybox. Seen from inside, x runs the other way than in the scene:
/// the face for +X shows to the left of the one for -Z.
///
/// No render state is set. The host draws the skybox first, with depth writing off, or it hides
/// what lies in the far half of the depth range. Afterwards its program and cube map are still in
/// use.
///
/// Without a program of the host's the first draw makes one: that for OpenGL 2 unless the host asks
/// for generic vertex attributes. If the driver refuses it the log tells so once, and nothing is
/// drawn.
///
/// Render thread only.
///
/// @code
/// orvex::Skybox* sky = new orvex::Skybox;
/// sky->set_opengl_2_3_rendering_states(false, nullptr);
/// sky->load_all_faces_from_files(renderer, "px.png", "nx.png", "py.png", "ny.png", "pz.png",
///                                "nz.png", orvex::PF_RGB_U8);
/// // in each frame, with a camera bound, before the scene
/// renderer->set_depth_buffer_writing_state(false);
/// sky->render(renderer, nullptr);
/// renderer->set_depth_buffer_writing_state(true);
/// @endcode
class ORVEX_API Skybox : public Object {
public:
    /// Makes the quad, 800 by 600, and no cube map.
    Skybox();
    /// Gives back what `_cleanup` didn't, with no renderer in hand.
    ~Skybox() override;

    /// Gives quad, cube map and program back, then does what `Object` does.
    bool _cleanup(Renderer* renderer) override;

    /// Draws the quad if there is a cube map, then does what `Object` does. Nothing is drawn with a
    /// null renderer, nor with a program that can't be bound.
    void _render(Renderer* renderer) override;

    /// @name The quad's own steps
    /// @{
    void render_geometry(Renderer* renderer) override;
    void render_geometry_prepare(Renderer* renderer) override;
    void render_geometry_draw(Renderer* renderer) override;
    void render_geometry_finish(Renderer* renderer) override;
    /// @}

    /// Loads and uploads the six faces as a cube map without mip chain, in place of the one before,
    /// which is given back in any case.
    /// @param filenames  six paths, in the order of `CUBEMAP_FACE`; null returns false
    /// @param format     pixel format to convert to; where that can't be done the file's stays
    /// @return false if a file can't be decoded: there is no cube map then. False also if the
    ///         upload fails: the cube map stays without a GPU texture
    bool load_all_faces_from_files(Renderer* renderer, const char* const* filenames,
                                   PIXEL_FORMAT format);
    /// The same with the six paths one by one.
    bool load_all_faces_from_files(Renderer* renderer, const char* positive_x,
                                   const char* negative_x, const char* positive_y,
                                   const char* negative_y, const char* positive_z,
                                   const char* negative_z, PIXEL_FORMAT format);

    /// Holds a program of the host's and gives the one before back. The host sets its "cubemap"
    /// uniform.
    ///
    /// The clean-up takes a second reference from a program that others hold too, as it belongs to
    /// `GpuProgramMgr`. For one made with `new` that is somebody else's: add one for it.
    /// @param program  null lets the next draw make one
    void set_cubemap_gpu_program(GpuProgram* program);
    GpuProgram* get_cubemap_gpu_program() const; ///< the program in use, null before the first draw
    Texture* get_cubemap() const;                ///< the cube map, null without one

    /// Moves the corners of the quad, in units of clip space; the picture stays as long as the quad
    /// covers the screen.
    /// @param width,height  2 or more, to cover it; kept as they are
    void resize(float width, float height);

private:
    struct SkyboxData;

    bool bind_program(Renderer& renderer);
    void make_program(Renderer& renderer);
    void drop_cubemap(Renderer* renderer);
    void give_back(Renderer* renderer);

    std::unique_ptr<SkyboxData> data;
};

} // namespace orvex
