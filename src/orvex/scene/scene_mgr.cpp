// The manager of scenes: it owns them, and takes their nodes down from the leaves to the root,
// each kind by way of its own manager. The lock guards the list alone. It is held while a scene
// goes, so that no two threads end the same one.

#include "orvex/scene/scene_mgr.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/base/thread_lock.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/private/scene_data.h"

namespace orvex {

struct SceneMgr::SceneMgrData {
    std::vector<std::unique_ptr<Scene>> scenes; ///< in order of creation
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
    : data(std::make_unique<SceneMgrData>()) {}

SceneMgr::~SceneMgr() = default;

bool SceneMgr::init(Renderer*) {
    return true;
}

bool SceneMgr::cleanup(Renderer* renderer) {
    kill_all_scenes(renderer);
    return true;
}

Scene* SceneMgr::create_scene() {
    auto scene = std::make_unique<Scene>();
    const ScopedLock lock(data->lock);
    try {
        return data->scenes.emplace_back(std::move(scene)).get();
    } catch (const std::bad_alloc&) {
        cleanup_scene(nullptr, scene.get()); // its root, which no scene ends by itself
        throw;
    }
}

bool SceneMgr::kill_scene(Renderer* renderer, Scene* scene) {
    const ScopedLock lock(data->lock);
    auto& scenes = data->scenes;
    const auto found = std::find_if(scenes.begin(), scenes.end(), [scene](const auto& owned) {
        return scene && owned.get() == scene;
    });
    if (found == scenes.end())
        return misuse("SceneMgr::kill_scene", "a scene that is not the manager's");
    cleanup_scene(renderer, scene);
    scenes.erase(found);
    return true;
}

bool SceneMgr::kill_all_scenes(Renderer* renderer) {
    const ScopedLock lock(data->lock);
    // Each leaves the list before it goes, so that hooks of the next find living ones only.
    auto& scenes = data->scenes;
    while (!scenes.empty()) {
        cleanup_scene(renderer, scenes.front().get());
        scenes.erase(scenes.begin());
    }
    return true;
}

bool SceneMgr::cleanup_scene(Renderer* renderer, Scene* scene) {
    if (!scene)
        return misuse("SceneMgr::cleanup_scene", "a null scene");
    // Taken out first, so that a hook that cleans the scene up again finds nothing to release.
    Object* const root = std::exchange(Scene::SceneData::of(*scene).root, nullptr);
    return !root || release_scene_node(renderer, root);
}

namespace {

// The tag alone must not decide a cast: anyone can add tags.
void release_by_type(Renderer* renderer, Node& node) {
    const NODE_TYPE type = node.get_type();
    Resource* const resource = node_as_resource(node);
    Texture* const texture = node_as<Texture>(&node);
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
        return misuse("SceneMgr::release_scene_node", "a null node");
    const NodeHandle alive(node);
    give_back_children(alive, [&](Node& child) { release_scene_node(renderer, &child); });
    if (alive.get())
        release_by_type(renderer, *node);
    return true;
}

unsigned long SceneMgr::get_num_scenes() const {
    return data->scenes.size();
}

Scene* SceneMgr::get_scene_by_index(unsigned long index) const {
    return index < data->scenes.size() ? data->scenes[index].get() : nullptr;
}

Scene* SceneMgr::get_scene(int id) const {
    const auto& scenes = data->scenes;
    const auto found = std::find_if(scenes.begin(), scenes.end(),
                                    [id](const auto& scene) { return scene->get_id() == id; });
    if (found != scenes.end())
        return found->get();
    misuse("SceneMgr::get_scene", "an id that no scene has");
    return nullptr;
}

} // namespace orvex
