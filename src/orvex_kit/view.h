#pragma once

/// @file
/// Where models are drawn: off screen, in a window of the host's, or on its context.

#include <cstddef>
#include <memory>
#include <string>

#include <orvex/fwd.h>
#include <orvex/math/vec4.h>

#include "orvex_kit/api.h"
#include "orvex_kit/camera.h"
#include "orvex_kit/framing.h"
#include "orvex_kit/outcome.h"
#include "orvex_kit/path.h"
#include "orvex_kit/picture.h"
#include "orvex_kit/picture_file.h"

namespace orvex::kit {

class LayerPass;
class Look;
class Model;
class Program;
class ViewContext;

/// A window of the host's, which lives longer than what draws in it. Drivers may end the process
/// over one that isn't there.
struct NativeWindow {
    void* display = nullptr;  ///< its connection: X11's `Display*` or Wayland's `wl_display*`; null
                              ///< for X11's default one
    void* drawable = nullptr; ///< an X11 window's number as a pointer, or a `wl_egl_window*`
};

/// Stands for the OpenGL context that the host holds current on the calling thread, whatever made
/// it: a toolkit's widget, as a rule.
struct CurrentContext {};

/// What a `View` is made with.
struct ViewOptions {
    Path path = Path::gl3; ///< the way to draw
    /// Samples a pixel that are wished for, against jagged edges; none below 2, and as many as
    /// there are where the driver has fewer. A host's framebuffer that has samples itself takes no
    /// others: 0 there.
    int samples = 4;
    /// Pixels that are drawn for one, across and down, 1 to 8, and brought together as their mean:
    /// slower than samples, and the same on every driver. From 2 on there are no samples. Of
    /// cameras of the engine the viewport is scaled, too.
    int supersampling = 1;
    /// Bits of depth that are wished for: 32 falls back to 24, then to 16.
    int depth_bits = 24;
    /// The device that draws off screen, as `ORVEX_GL_DEVICE` in the environment names it; empty
    /// for what that says.
    std::string device{};
};

/// Why there is no view, for hosts that try another way; `View::reason` tells people.
enum class ViewFailure {
    none,       ///< there is one
    no_engine,  ///< no `Engine` runs, or it has ended
    size,       ///< sides that can't be
    old_driver, ///< the driver has no context for the path: the other path has
    no_driver,  ///< no driver of OpenGL is found
    memory,     ///< too little for a driver
    samples,    ///< no memory for so many samples, as a rule, or for supersampling
    window      ///< the host's window or context can't be drawn in
};

/// A drawable with a renderer of its own, to which models are drawn. Several views may live at
/// once; each is drawn to between its `begin` and its `end`.
///
/// Needs an `Engine`, and belongs to its thread. When the engine ends first, the view is empty from
/// then on. An empty view has no size, and draws nothing.
///
/// @code
/// kit::Engine engine;
/// kit::View view(640, 480);
/// if (!view)
///     std::fprintf(stderr, "%s\n", view.reason().c_str());
/// @endcode
class ORVEX_KIT_API View {
public:
    /// Empty, without a reason.
    View() noexcept;
    /// Off screen.
    /// @param width,height  pixels, from 1; the driver has a largest size
    View(int width, int height, const ViewOptions& options = {});
    /// In a window of the host's. The view ends first, then the window, then the connection.
    /// @param width,height  of the window, in pixels; `resize` follows it
    View(const NativeWindow& window, int width, int height, const ViewOptions& options = {});
    /// On the context that the host holds current, and keeps: it is never ended here. It has to be
    /// current again for whatever is done with the view, and at its end. The framebuffer that is
    /// bound at `begin` is drawn into, and bound again after `end`; other states are the engine's
    /// then.
    /// @param width,height  of that framebuffer, in pixels; `resize` follows it
    View(CurrentContext context, int width, int height, const ViewOptions& options = {});
    /// Ends the renderer, and the context unless that is the host's.
    ~View();
    View(View&& other) noexcept;            ///< leaves the other one empty
    View& operator=(View&& other) noexcept; ///< ends what it was; leaves the other one empty

    /// Whether it can be drawn to.
    explicit operator bool() const noexcept;
    /// Why it can't, and what would help; empty if it can. Valid until the view changes or ends.
    const std::string& reason() const noexcept;
    /// The same for programs.
    ViewFailure failure() const noexcept;

    int width() const noexcept;         ///< pixels; 0 for an empty view
    int height() const noexcept;        ///< pixels; 0 for an empty view
    int samples() const noexcept;       ///< a pixel, as many as there are; 0 without
    int supersampling() const noexcept; ///< pixels drawn for one, across and down; 1 without
    Path path() const noexcept;         ///< as asked for

    /// Takes another size, and loses what was drawn.
    /// @param width,height  as at the beginning
    /// @return why it can't, as there is no surface of that size; the view is as before then
    Outcome resize(int width, int height);

    /// What lies behind the models: red, green, blue and opacity, 0 to 1; what lies outside is
    /// clamped. A dark grey at first. `read` and `write` keep the opacity; where a window or a
    /// framebuffer of the host's has no alpha, and the view no samples, all of it is opaque.
    void set_background(const orvex::vec4& color) noexcept;

    /// Has models look otherwise; at first they are `lit`.
    /// @return what the compiler said, as `Program::reason`; why the look is empty; or that the
    ///         view is. Models look as before then
    Outcome set_look(const Look& look);
    /// The program of the look: for uniforms of the host's own, and to take up a changed file.
    /// Empty for an empty view. The view's, until the look is another.
    Program& look();

    /// @name A frame
    /// Nothing of it does anything for an empty view. Binds that the next object wants again are
    /// left out, see `Renderer::set_elided_binds_state`.
    /// @{

    /// A whole frame of one model, all of which is seen.
    /// @param angle  from where; its up axis is the model's own if that is left to it
    void draw(Model& model, const Angle& angle = {});

    /// Begins a frame: makes the context current, fills it with the background, and binds the
    /// camera. Nodes of the engine may be drawn besides models, until `end`.
    void begin(const Camera& camera);
    /// The same with a camera of the engine.
    /// @param camera  with the viewport that is wanted, as a rule the view's size
    void begin(orvex::Camera& camera);
    /// Draws a model.
    /// @param lit_from  the lights turn with its azimuth and its up axis
    void add(Model& model, const Angle& lit_from = {});
    /// Ends a frame: the window, or the surface off screen, has the picture. What is drawn
    /// afterwards comes on top, without samples.
    void end();
    /// Shows the frame in the host's window; of its own context the host does so itself. Nothing
    /// can be read from then on.
    void present();
    /// @}

    /// The picture between `end` and `present`: 8-bit red, green, blue and straight alpha, which is
    /// full where the background is opaque.
    /// @param picture  receives it, in the view's size; stays as it was on failure
    /// @return that the view is empty, that its context can't be made current, as where another
    ///         thread has it, or that memory ran out
    Outcome read(Picture& picture);
    /// The same into memory of the caller's.
    /// @param rows       the pixels of the row on top
    /// @param row_bytes  from one row to the next below it; negative where they lie the other way
    ///                   round. What lies between rows stays
    /// @return as above; also that there is no memory, or that rows are too short
    Outcome read(void* rows, std::ptrdiff_t row_bytes);
    /// Writes that picture as `write_picture` does; without alpha where the background is opaque.
    /// @return as `read` and `write_picture`
    Outcome write(const std::string& path, const PictureFileOptions& options = {});

    /// Makes the context current on the calling thread, unless it is the host's. What ends next
    /// gives its GPU objects back here. @return whether it is; false for an empty view
    bool make_current();

    /// The engine's own renderer, for what the kit doesn't offer. The view's; null if it is empty.
    orvex::Renderer* renderer() const noexcept;
    /// The engine's own window, likewise.
    orvex::RenderWindow* window() const noexcept;

private:
    friend class LayerPass;
    friend class Program;
    friend class Text;
    class Data;
    std::unique_ptr<Data> data;

    const std::shared_ptr<ViewContext>& context() const;
};

} // namespace orvex::kit
