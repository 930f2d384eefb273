#pragma once

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// A named tree of nodes under one root object.
///
/// Made by `SceneMgr::create_scene` and ended by `SceneMgr::kill_scene`. Who makes one with `new`
/// calls `SceneMgr::cleanup_scene` before deleting it: the destructor doesn't touch the root.
///
/// A resource in a scene: clean-up gives back one reference through the resource's manager. A
/// managed resource added with `add_node` has two, its manager's and the root's; the one that
/// remains is the owner's to release.
///
/// @code
/// orvex::Scene* scene = orvex::SceneMgr::get()->create_scene();
/// orvex::Object* group = new orvex::Object; // render_scene draws what stands under plain objects
/// group->add_child(mesh);
/// scene->add_node(group);
/// @endcode
class ORVEX_API Scene {
public:
    /// Takes the next id and makes an empty root. Hosts call `SceneMgr::create_scene` instead.
    Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
    virtual ~Scene();

    /// Does nothing. @return true
    bool init(Renderer* renderer);
    /// Does nothing. @return true
    bool cleanup(Renderer* renderer);

    /// Id of this scene, unique in the process among nodes, plugins and scenes.
    int get_id() const;

    /// Renames the scene; null is ignored. A new scene is called "scene_" and its id.
    void set_name(const char* name);
    /// Never null; valid until the next `set_name` and while the scene lives.
    const char* get_name() const;

    /// Root of the tree, owned by the scene; null once `SceneMgr::cleanup_scene` has run.
    Object* get_root() const;

    /// Adds the node to the root's children, which adds a reference.
    /// @return false for null, or without a root
    bool add_node(Node* node);

    /// Only clears the node's parent: it stays among the root's children, is drawn and released
    /// with them. `get_root()->remove_child(node)` takes it out.
    /// @return false for null
    bool remove_node(Node* node);

    /// First node with that id in the subtree below `start`.
    /// @param start  null for the root
    /// @return null if there is none
    [[nodiscard]] Node* get_node(int id, Node* start) const;

    /// The private record, which the engine alone defines.
    struct SceneData;

private:
    std::unique_ptr<SceneData> data;
};

} // namespace orvex
