#pragma once

/// @file
/// Ties a scene, a camera and a viewport together for drawing.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

struct WindowData;

/// One view of a scene: what to draw, through which camera, into which part of the drawable.
///
/// Made and destroyed by the host. It refers to everything that is set here and owns none of it;
/// null takes a reference back. The viewport is in pixels from the lower left corner. For use on
/// the render thread, with the context of the drawable current.
///
/// @code
/// orvex::Window view;
/// view.set_renderer(renderer);
/// view.set_scene(scene);
/// view.set_camera(camera);
/// view.set_viewport(0, 0, 800, 600);
/// view.set_scene_renderer(&scene_renderer);
/// view.render();
/// @endcode
class ORVEX_API Window {
public:
    /// Everything unset: `render` draws nothing.
    Window();
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Notes the layer, a number for the host's own ordering; nothing in the engine reads it.
    /// @param layer  any number
    void set_layer(int layer);
    /// Sets the camera that `render` binds. With null the drawing takes the matrices and the
    /// viewport that the renderer holds.
    void set_camera(Camera* camera);
    /// Sets the viewport that `render` gives to the camera. All 0 at first.
    /// @param x,y           lower left corner, pixels, of either sign
    /// @param width,height  size, pixels; unchecked, see `Camera::set_viewport`
    void set_viewport(int x, int y, int width, int height);
    /// Sets the renderer that draws.
    void set_renderer(Renderer* renderer);
    /// Notes the render window to which the view belongs; nothing in the engine reads it.
    void set_render_window(RenderWindow* render_window);
    /// Sets the node whose children are drawn. With null it is the root of the scene.
    void set_start_node(Node* start_node);
    /// Sets the scene.
    void set_scene(Scene* scene);
    /// Sets what draws the scene.
    void set_scene_renderer(SceneRenderer* scene_renderer);

    /// Gives the viewport to the camera and draws the scene. Neither clears nor presents.
    /// @return true; false, with nothing done, without a scene renderer
    bool render();

private:
    std::unique_ptr<WindowData> data;
};

} // namespace orvex
