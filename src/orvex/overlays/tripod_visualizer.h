#pragma once

/// @file
/// Small coloured axes that show how a camera is turned or where an object's axes lie.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

namespace aux {

struct TripodVisualizerData;

/// @name Shader texts of the visualizers
/// Read by `TripodVisualizer::init` when it makes its program. A host may put texts of its own here
/// before that; they stay the host's. The program passes the matrices by the standard names.
/// @{
ORVEX_API extern const char* orvex_tripod_viz_vs_gl2; ///< vertices, OpenGL below 3
ORVEX_API extern const char* orvex_tripod_viz_ps_gl2; ///< pixels, OpenGL below 3
ORVEX_API extern const char* orvex_tripod_viz_vs_gl3; ///< vertices, OpenGL 3 and above
ORVEX_API extern const char* orvex_tripod_viz_ps_gl3; ///< pixels, OpenGL 3 and above
/// @}

/// What the visualizers have in common: a GPU program and three lines of unit length from the
/// origin, X red, Y green, Z blue.
///
/// The host makes a visualizer as it likes, calls `init` once there is a context, and `cleanup`
/// while there still is one: the destructor has no renderer and frees neither. The lines belong to
/// the visualizer. The program belongs to the `GpuProgramMgr`; one that the manager ended itself is
/// forgotten, and the next `init` makes another.
///
/// Render thread. Drawing leaves the program active and the matrices of the drawing in the
/// renderer.
///
/// @code
/// aux::TripodVisualizerObject axes;
/// axes.init(renderer);
/// ...
/// camera->bind(renderer, true, true, true, true, true);
/// axes.render(renderer, object);
/// ...
/// axes.cleanup(renderer);
/// @endcode
class ORVEX_API TripodVisualizer {
public:
    /// Without program and lines: `init` makes them.
    TripodVisualizer();
    TripodVisualizer(const TripodVisualizer&) = delete;
    TripodVisualizer& operator=(const TripodVisualizer&) = delete;
    /// Frees neither program nor lines: call `cleanup` first.
    virtual ~TripodVisualizer();

    /// Makes the program and the lines, if they are missing. A context below OpenGL 3 gets the gl2
    /// texts and client arrays, any other the gl3 ones.
    /// @return false for null, and with a log line if the program can't be used
    virtual bool init(Renderer* renderer);
    /// Gives the program and the lines back. A later `init` makes new ones.
    /// @param renderer  frees the GPU objects; null keeps them
    virtual void cleanup(Renderer* renderer);

protected:
    std::unique_ptr<TripodVisualizerData> data; ///< the program and the lines
};

/// Shows how a camera is turned: axes in a rectangle of their own, such as a corner of the screen,
/// filmed from a fixed distance.
///
/// Made, used and ended as `TripodVisualizer` is. It has a camera of its own, three units
/// away from the axes, with 45 degrees of view and an aspect ratio of 1.
///
/// @code
/// aux::TripodVisualizerCamera axes;
/// axes.init(renderer);
/// ...
/// axes.render(renderer, camera, 0, 0, 100, 100);
/// camera->bind(renderer, true, true, true, true, true); // for whatever is drawn next
/// @endcode
class ORVEX_API TripodVisualizerCamera : public TripodVisualizer {
public:
    /// Without a camera of its own yet.
    TripodVisualizerCamera();
    ~TripodVisualizerCamera() override;

    /// Also makes the camera, if it is missing.
    bool init(Renderer* renderer) override;
    /// Also ends the camera.
    void cleanup(Renderer* renderer) override;

    /// Draws the axes turned as the view of `camera` turns the world. Viewport, projection and view
    /// of the renderer are those of the visualizer's camera afterwards.
    /// @param camera  null does nothing, and so does a null renderer or a visualizer without `init`
    /// @param x,y           lower left corner of the rectangle, pixels
    /// @param width,height  its size, pixels; unchecked: the API refuses a negative one
    virtual void render(Renderer* renderer, Camera* camera, int x, int y, int width, int height);

private:
    Camera* own_camera;
};

/// Shows the axes of an object, in the scene, as the camera bound last sees it.
///
/// Made, used and ended as `TripodVisualizer` is. Lengths are in the object's units, so its
/// scale shows too. The object's parents play no part: an object below others is shown where its
/// own transform alone would put it.
class ORVEX_API TripodVisualizerObject : public TripodVisualizer {
public:
    /// As `TripodVisualizer`.
    TripodVisualizerObject();
    ~TripodVisualizerObject() override;

    bool init(Renderer* renderer) override;
    void cleanup(Renderer* renderer) override;

    /// Draws the axes of `object`.
    /// @param object  null does nothing, and so does a null renderer or a visualizer without `init`
    virtual void render(Renderer* renderer, Object* object);
};

} // namespace aux
} // namespace orvex
