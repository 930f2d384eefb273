#pragma once

/// @file
/// The private record of a scene, opened to its manager.

#include <string>

#include "orvex/base/global_id.h"
#include "orvex/scene/object.h"
#include "orvex/scene/private/fresh_node.h"
#include "orvex/scene/scene.h"

namespace orvex {

struct Scene::SceneData {
    static SceneData& of(const Scene& scene) { return *scene.data; }

    int id = GenId();
    std::string name = "scene_" + std::to_string(id);
    /// Released by `SceneMgr::cleanup_scene`, never by the scene.
    Object* root = make_fresh<Object>().release();
};

} // namespace orvex
