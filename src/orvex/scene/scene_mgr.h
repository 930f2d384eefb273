#pragma once

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// Owns all scenes and takes them down, each kind of node in the right way.
///
/// One for the process, made on first use and never destroyed. The engine never calls it: the host
/// runs `cleanup` while its renderer is alive.
///
/// The list of scenes may grow and shrink from any thread, and nothing but the list: the look-ups
/// take no lock, nor do the managers of programs, textures and materials that a scene gives such
/// nodes back to, nor the counts of nodes. A scene that holds resources, or nodes that a drawn tree
/// holds too, is made and killed on the thread that draws. Hooks that run while a scene is killed
/// may look scenes up, and must not create or kill any: the lock is not recursive.
class ORVEX_API SceneMgr {
public:
    /// The one instance, made by the first call; never null.
    static SceneMgr* get();

    SceneMgr(const SceneMgr&) = delete;
    SceneMgr& operator=(const SceneMgr&) = delete;
    virtual ~SceneMgr();

    /// Does nothing. @return true
    virtual bool init(Renderer* renderer);
    /// Runs `kill_all_scenes`. @return true
    virtual bool cleanup(Renderer* renderer);

    /// Makes an empty scene, owned by this manager.
    Scene* create_scene();

    /// Cleans the scene up, deletes it and drops it from the list.
    /// @return false if it isn't one of this manager's
    bool kill_scene(Renderer* renderer, Scene* scene);
    /// Cleans up and deletes every scene, first to last. Each stays in the list while it is cleaned
    /// up, and has left it when it is deleted. @return true
    bool kill_all_scenes(Renderer* renderer);

    /// Releases the scene's nodes, its root last; the scene is then without a root.
    /// @return true, also if there was no root; false for null
    bool cleanup_scene(Renderer* renderer, Scene* scene);

    /// Releases a subtree depth first: programs, textures and materials through their managers,
    /// every other node by one `Node::release`.
    /// @return false for null
    bool release_scene_node(Renderer* renderer, Node* node);

    /// Scenes created and not killed yet.
    unsigned long get_num_scenes() const;
    /// Scene by order of creation.
    /// @param index  from 0
    /// @return null past the end
    Scene* get_scene_by_index(unsigned long index) const;
    /// Scene by id, null if there is none.
    [[nodiscard]] Scene* get_scene(int id) const;

private:
    struct SceneMgrData;

    SceneMgr();

    std::unique_ptr<SceneMgrData> data;
};

} // namespace orvex
