#pragma once

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// Draws the nodes of a scene as a camera sees them.
///
/// Made and deleted by the host; holds nothing. Used on the render thread. A host may derive from
/// it to draw in its own order.
class ORVEX_API SceneRenderer {
public:
    /// Draws nothing by itself.
    SceneRenderer();
    SceneRenderer(const SceneRenderer&) = delete;
    SceneRenderer& operator=(const SceneRenderer&) = delete;
    virtual ~SceneRenderer();

    /// Does nothing. @return true
    virtual bool init(Renderer* renderer);
    /// Does nothing. @return true
    virtual bool cleanup(Renderer* renderer);

    /// Binds the camera, then renders each child of the start node whose type is exactly
    /// `NODE_TYPE_OBJECT`, subtree included. A mesh or a model directly under the start node is
    /// passed over, and the start node's own drawing doesn't run: put drawables under plain
    /// objects.
    /// @param camera  null leaves the renderer's matrices and viewport as they are
    /// @param node    the start node; null for the root of `scene`. With neither, nothing is drawn
    /// @return true
    virtual bool render_scene(Renderer* renderer, Scene* scene, Camera* camera, Node* node);

private:
    struct SceneRendererData;

    std::unique_ptr<SceneRendererData> data;
};

} // namespace orvex
