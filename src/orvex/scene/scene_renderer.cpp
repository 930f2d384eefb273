#include "orvex/scene/scene_renderer.h"

#include "orvex/scene/camera.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/scene.h"

namespace orvex {

struct SceneRenderer::SceneRendererData {};

SceneRenderer::SceneRenderer()
    : data(std::make_unique<SceneRendererData>()) {}

SceneRenderer::~SceneRenderer() = default;

bool SceneRenderer::init(Renderer*) {
    return true;
}

bool SceneRenderer::cleanup(Renderer*) {
    return true;
}

bool SceneRenderer::render_scene(Renderer* renderer, Scene* scene, Camera* camera, Node* node) {
    Node* const start = node || !scene ? node : scene->get_root();
    const NodeHandle walked(start);
    if (camera)
        camera->bind(renderer, true, true, true, true, true);
    // Exactly this type and none derived from it: meshes and models are drawn as parts of a group.
    for_each_child(walked, [renderer](Node& child) {
        if (child.get_type() == NODE_TYPE_OBJECT)
            child.render(renderer, &child);
    });
    return true;
}

} // namespace orvex
