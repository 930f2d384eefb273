#include "orvex/scene/window.h"

#include "orvex/base/private/misuse.h"
#include "orvex/scene/camera.h"
#include "orvex/scene/scene_renderer.h"
#include "orvex/scene/viewport.h"

namespace orvex {

struct WindowData {
    int layer = 0;
    Camera* camera = nullptr;
    Viewport viewport;
    Renderer* renderer = nullptr;
    RenderWindow* render_window = nullptr;
    Node* start_node = nullptr;
    Scene* scene = nullptr;
    SceneRenderer* scene_renderer = nullptr;
};

Window::Window()
    : data(std::make_unique<WindowData>()) {}

Window::~Window() = default;

void Window::set_layer(int layer) {
    data->layer = layer;
}

void Window::set_camera(Camera* camera) {
    data->camera = camera;
}

void Window::set_viewport(int x, int y, int width, int height) {
    data->viewport.set(x, y, width, height);
}

void Window::set_renderer(Renderer* renderer) {
    data->renderer = renderer;
}

void Window::set_render_window(RenderWindow* render_window) {
    data->render_window = render_window;
}

void Window::set_start_node(Node* start_node) {
    data->start_node = start_node;
}

void Window::set_scene(Scene* scene) {
    data->scene = scene;
}

void Window::set_scene_renderer(SceneRenderer* scene_renderer) {
    data->scene_renderer = scene_renderer;
}

bool Window::render() {
    if (!data->scene_renderer)
        return misuse("Window::render", "a window without a scene renderer");
    if (data->camera)
        data->camera->set_viewport(data->viewport);
    data->scene_renderer->render_scene(data->renderer, data->scene, data->camera, data->start_node);
    return true;
}

} // namespace orvex
