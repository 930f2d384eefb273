#pragma once

// Classes of a host's own, derived from the engine's: a loader as a plugin would bring it, a node
// that moves what stands on it, a renderer of scenes.

#include <orvex/base/loader_3d.h>
#include <orvex/scene/object.h>
#include <orvex/scene/scene_renderer.h>

/// Loads "tent": a pyramid, out of nothing.
class TentLoader : public orvex::Loader3D {
public:
    TentLoader();
    bool load_from_file(orvex::Model* model, const char* filename) override;
};

/// Turns its children by as many degrees as the update says.
class Turntable : public orvex::Object {
public:
    bool _update(float degrees) override;

private:
    float angle = 0.0f;
};

/// Counts its scenes.
class CountingSceneRenderer : public orvex::SceneRenderer {
public:
    bool render_scene(orvex::Renderer* renderer, orvex::Scene* scene, orvex::Camera* camera,
                      orvex::Node* node) override;

    int rendered = 0;
};
