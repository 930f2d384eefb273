#pragma once

/// @file
/// The private record of a scene, opened to its manager.

#include <string>

#include "kernel/global_id.h"
#include "scene/object.h"
#include "scene/scene.h"

namespace orvex {

struct Scene::SceneData {
    int id = GenId();
    std::string name = "scene_" + std::to_string(id);
    Object* root = new Object; ///< released by `SceneMgr::cleanup_scene`, never by the scene
};

} // namespace orvex
