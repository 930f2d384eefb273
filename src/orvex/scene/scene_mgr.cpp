#include "orvex/scene/scene_mgr.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/thread_lock.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/private/scene_data.h"

namespace orvex {

struct SceneMgr::SceneMgrData {
    std::vector<Scene*> scenes; ///< owned, in order of creation
    ThreadLock lock;
};

namespace {

class ScopedLock {
public:
    explicit ScopedLock(ThreadLock& lock)
        : lock(lock) {
        lock.acquire();
    }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;
    ~ScopedLock() { lock.release(); }

private:
    ThreadLock& lock;
};

} // namespace

SceneMgr* SceneMgr::get() {
    static SceneMgr* const instance = new SceneMgr;
    return instance;
}

SceneMgr::SceneMgr()
    : mgr_data(new SceneMgrData) {}

SceneMgr::~SceneMgr() {
    delete mgr_data;
}

bool SceneMgr::init(Renderer*) {
    return true;
}

bool SceneMgr::cleanup(Renderer* renderer) {
    kill_all_scenes(renderer);
    return true;
}

Scene* SceneMgr::create_scene() {
    Scene* const scene = new Scene;
    const ScopedLock lock(mgr_data->lock);
    mgr_data->scenes.push_back(scene);
    return scene;
}

bool SceneMgr::kill_scene(Renderer* renderer, Scene* scene) {
    const ScopedLock lock(mgr_data->lock);
    std::vector<Scene*>& scenes = mgr_data->scenes;
    const auto found = std::find(scenes.begin(), scenes.end(), scene);
    if (found == scenes.end())
        return false;
    cleanup_scene(renderer, scene);
    delete scene;
    scenes.erase(found);
    return true;
}

bool SceneMgr::kill_all_scenes(Renderer* renderer) {
    const ScopedLock lock(mgr_data->lock);
    for (Scene* scene : mgr_data->scenes) {
        cleanup_scene(renderer, scene);
        delete scene;
    }
    mgr_data->scenes.clear();
    return true;
}

bool SceneMgr::cleanup_scene(Renderer* renderer, Scene* scene) {
    if (!scene)
        return false;
    // Taken out first, so that a hook that cleans the scene up again finds nothing to release.
    Object* const root = std::exchange(scene->scene_data->root, nullptr);
    return !root || release_scene_node(renderer, root);
}

namespace {

// The tag alone must not decide a cast: anyone can add tags.
void release_by_type(Renderer* renderer, Node& node) {
    const NODE_TYPE type = node.get_type();
    Resource* const resource = dynamic_cast<Resource*>(&node);
    Texture* const texture = dynamic_cast<Texture*>(&node);
    if (type == NODE_TYPE_GPU_PROGRAM && resource)
        GpuProgramMgr::get()->release_resource(renderer, resource, nullptr);
    else if (type == NODE_TYPE_TEXTURE && texture)
        TextureMgr::get()->release_texture(renderer, texture, nullptr);
    else if (type == NODE_TYPE_MATERIAL && resource)
        MaterialMgr::get()->release_resource(renderer, resource, nullptr);
    else
        node.release(renderer, nullptr);
}

} // namespace

bool SceneMgr::release_scene_node(Renderer* renderer, Node* node) {
    if (!node)
        return false;
    const NodeHandle alive(node);
    for_each_child(alive, [&](Node& child) { release_scene_node(renderer, &child); });
    if (!alive.get())
        return true;
    node->clear_children_list();
    release_by_type(renderer, *node);
    return true;
}

unsigned long SceneMgr::get_num_scenes() const {
    return mgr_data->scenes.size();
}

Scene* SceneMgr::get_scene_by_index(unsigned long index) const {
    return index < mgr_data->scenes.size() ? mgr_data->scenes[index] : nullptr;
}

Scene* SceneMgr::get_scene(int id) const {
    const std::vector<Scene*>& scenes = mgr_data->scenes;
    const auto found = std::find_if(scenes.begin(), scenes.end(),
                                    [id](const Scene* scene) { return scene->get_id() == id; });
    return found == scenes.end() ? nullptr : *found;
}

} // namespace orvex
