#pragma once

/// @file
/// `Node`, the root class of all that stands in a scene, and the tags of its subclasses.

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// What a node is. Each constructor on the way from base to most derived class adds its own tag, so
/// a box mesh carries `NODE_TYPE_NODE`, `NODE_TYPE_OBJECT`, `NODE_TYPE_MESH`, `NODE_TYPE_MESH_BOX`.
/// Hosts may add tags of their own.
enum NODE_TYPE : int {
    NODE_TYPE_NODE = 0,              ///< `Node`
    NODE_TYPE_RESOURCE = 1,          ///< `Resource`
    NODE_TYPE_GPU_PROGRAM = 2,       ///< `GpuProgram`
    NODE_TYPE_TEXTURE = 3,           ///< `Texture`
    NODE_TYPE_MATERIAL = 4,          ///< `Material`
    NODE_TYPE_OBJECT = 5,            ///< `Object`
    NODE_TYPE_MESH = 6,              ///< `Mesh`
    NODE_TYPE_MESH_PLANE = 7,        ///< `MeshPlane`
    NODE_TYPE_MESH_QUAD = 8,         ///< `MeshQuad`
    NODE_TYPE_MESH_QUAD_HUD = 9,     ///< `MeshQuadHud`
    NODE_TYPE_MESH_SPHERE = 10,      ///< `MeshSphere`
    NODE_TYPE_MESH_TORUS = 11,       ///< `MeshTorus`
    NODE_TYPE_MESH_ELLIPSE = 12,     ///< `MeshEllipse`
    NODE_TYPE_MESH_TRIANGLE = 13,    ///< `MeshTriangle`
    NODE_TYPE_MESH_BOX = 14,         ///< `MeshBox`
    NODE_TYPE_MESH_TERRAIN = 15,     ///< `MeshTerrain`
    NODE_TYPE_MESH_CYLINDER = 16,    ///< `MeshCylinder`
    NODE_TYPE_MODEL = 17,            ///< `Model`
    NODE_TYPE_CAMERA = 18,           ///< `Camera`
    NODE_TYPE_FONT = 19,             ///< `Font`
    NODE_TYPE_VERTEX_POOL = 20,      ///< `VertexPool`
    NODE_TYPE_POLYLINE = 21,         ///< `Polyline`
    NODE_TYPE_LINE = 22,             ///< `Line`
    NODE_TYPE_POINT = 23,            ///< `Point`
    NODE_TYPE_MINI_SPLINE = 24,      ///< `MiniSpline`
    NODE_TYPE_SKYBOX = 25,           ///< `Skybox`
    NODE_TYPE_ARTIFACT_SCANNER = 26, ///< `ArtifactScanner`
    NODE_TYPE_PARTICLE_SYSTEM = 27,  ///< `ParticleSystem`
    NODE_TYPE_PARTICLE_EMITTER = 28, ///< `ParticleEmitter`
    NODE_TYPE_PARTICLE_ACTION = 29,  ///< `ParticleAction`
    NODE_TYPE_LIGHT = 30,            ///< `Light`
    NODE_TYPE_MAD_LED_BAR = 31,      ///< `MadLedBar`
    NODE_TYPE_GRAPH2D = 33,          ///< `Graph2d`
    NODE_TYPE_CURVE = 34,            ///< `Curve`
};

/// The root class of everything that lives in a scene or in a resource manager: identity, type
/// tags, a reference count, a parent and an ordered list of children.
///
/// Made with `new`; owned by reference count alone. A fresh node has count 0. `add_child` adds a
/// reference, `release` and `kill` take one away, and a node whose count falls below 1 ends itself,
/// so a node nobody adopted ends with its first `release`. Deleting a node directly leaves its
/// children untouched. The parent pointer is no reference.
///
/// A node is used on one thread at a time; nothing here locks.
///
/// Two senses of a trailing `Node*`:
/// - in the traversals `init`, `cleanup`, `update`, `build`, `render` and in `release` and `kill`
///   it chooses whose children are walked: null for this node's own, else those of the given node;
///   children are called with null;
/// - everywhere else in the engine null means "this node only", and a node means that its children
///   are called too, each with itself as the argument, so a whole subtree is reached by passing the
///   node itself.
///
/// Every walk reads the number of children once, before its loop: children added meanwhile wait for
/// the next walk. A child that was ended behind its parent's back is passed over.
///
/// @code
/// orvex::Node* root = new orvex::Node;
/// root->add_child(new orvex::Node);
/// root->update(dt, nullptr);
/// root->kill(renderer, nullptr);
/// @endcode
class ORVEX_API Node {
public:
    /// No parent, no children, no reference; takes the next id and the calling thread.
    Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// Ends this node alone: its children keep their references. Prefer `release` or `kill`.
    virtual ~Node();

    /// Runs `_init` on this node, then `init` on each child, first to last.
    /// @param renderer  handed on as it is; may be null
    /// @param node      whose children are walked; null for this node's own
    /// @return true, whatever the hooks returned
    virtual bool init(Renderer* renderer, Node* node);

    /// Runs `cleanup` on each child, first to last, then `_cleanup` on this node.
    /// @return what this node's `_cleanup` returned
    virtual bool cleanup(Renderer* renderer, Node* node);

    /// Runs `_update` on this node, then `update` on each child, first to last.
    /// @param dt  time since the last update, in the host's unit; handed on as it is
    /// @return true, whatever the hooks returned
    virtual bool update(float dt, Node* node);

    /// Runs `_build` on this node, then `build` on each child, first to last.
    /// @return true, whatever the hooks returned
    virtual bool build(Node* node);

    /// Runs `_render` on this node, then `render` on each child, first to last. With the render
    /// state off, does neither, which hides the whole subtree.
    virtual void render(Renderer* renderer, Node* node);

    /// @name Hooks
    /// A subclass overrides these; a host calls the traversals instead. The base versions do
    /// nothing and return true. `_cleanup` may run more than once, and with a null renderer.
    /// @{

    /// Run by `init` with its renderer, before that of the children.
    virtual bool _init(Renderer* renderer);
    /// Run by `cleanup`, after that of the children, and by `_kill`.
    /// @param renderer  may be null: GPU data stays then
    virtual bool _cleanup(Renderer* renderer);
    /// Run by `update` with its `dt`, before that of the children.
    virtual bool _update(float dt);
    /// Run by `build`, before that of the children.
    virtual bool _build();
    /// Run by `render`, before that of the children, unless the render state is off.
    virtual void _render(Renderer* renderer);
    /// @}

    /// Runs `release` and returns true.
    virtual bool kill(Renderer* renderer, Node* node);

    /// Ends this node at once, whatever its count: `_cleanup`, then the destructor. Called by
    /// `_release` when the count falls below 1; a host calls `release` or `kill`.
    /// @return true
    virtual bool _kill(Renderer* renderer);

    /// Plugin id of the renderer that holds this node's GPU data; 0 for none.
    virtual int get_renderer_id();
    /// Sets what the base version of `get_renderer_id` returns.
    /// @param id  1 or more for a renderer, anything below for none
    virtual void set_renderer_id(int id);

    /// Shows or hides this node's subtree in `render`. New nodes are shown.
    /// @param node  if not null, its children are set too, each with itself as `node`
    virtual void set_render_state(bool state, Node* node);
    bool get_render_state() const; ///< as set for this node; its parents are not asked

    /// Id of this node, unique in the process.
    int get_id() const;
    /// The same as `get_id`.
    int getid() const;

    /// Renames this node; null is ignored. A new node is called "node_" and its id.
    void set_name(const char* name);
    /// Name of this node, never null; valid until the next `set_name` and while the node lives.
    const char* get_name() const;

    /// Adds a tag behind those this node has.
    void set_type(NODE_TYPE type);
    /// The tag added last: the most derived class, unless a host added one.
    NODE_TYPE get_type() const;
    /// Whether the tag is among those of this node.
    [[nodiscard]] bool is_type_of(NODE_TYPE type) const;

    /// Adds one reference. @return the new count
    int add_ref();
    /// Takes one reference away without ending the node, below 0 if asked. @return the new count
    int remove_ref();
    int get_ref() const; ///< the references counted now; 0 for a new node

    /// The node that adopted this one last, null for none. Not a reference: the address stays even
    /// after that node has ended. The engine itself walks to living parents only.
    Node* get_parent() const;
    /// Stores the parent; touches no list of children. Parents may form a circle: a walk towards
    /// the root meets each node once.
    void set_parent(Node* parent);

    /// Length of the list of children.
    unsigned long get_num_children() const;
    /// Child by position.
    /// @param index  from 0, in order of adding
    /// @return null past the end, or if that child has ended
    Node* get_child(unsigned long index) const;

    /// Adds a reference to `child`, appends it and becomes its parent. A former parent keeps it
    /// too: a node may stand in several lists and holds one reference for each entry. Ignored:
    /// null, this node itself, and any node whose subtree, by the lists of children, already holds
    /// this one.
    void add_child(Node* child);

    /// Looks for `child` among the children, then depth first below them; removes the entry and
    /// releases the child with a null renderer.
    /// @return the child's remaining count, 0 if it ended, -1 if it was not found or null
    int remove_child(Node* child);

    /// Empties the list of children without touching any child: their references and parent stay.
    void clear_children_list();

    /// First direct child of that name; failing that, if `node` is not null, the first found below
    /// the children of `node`. `root->find_child(name, root)` searches the whole subtree.
    /// @return null if there is none or `name` is null
    [[nodiscard]] Node* find_child(const char* name, Node* node);
    /// The same by id. A literal 0 is an id.
    [[nodiscard]] Node* find_child(int id, Node* node);

    /// Releases the children (of `node` if given, else of this node), first to last, empties their
    /// list, then takes one reference from this node and ends it if its count falls below 1. A node
    /// that lives on because someone else holds it has lost its children all the same.
    /// @param renderer  handed to `_cleanup` of whatever ends; null leaves GPU data alone
    /// @return the remaining count, 0 if this node ended
    int release(Renderer* renderer, Node* node);

    /// The last step of `release`: takes one reference away and ends this node below 1.
    /// @return the remaining count, 0 if this node ended
    int _release(Renderer* renderer);

    /// A number for the host's own use; 0 at first.
    int get_layer() const;
    void set_layer(int layer); ///< stored only: the engine never reads it

    /// A pointer for the host's own use; null at first, never read by the engine.
    void set_user_data_ptr(void* data);
    void* get_user_data_ptr() const; ///< as set; null at first

    /// The thread this node is bound to: the one that made it, or the last caller of
    /// `update_thread`. Owned by the node, never null.
    Thread* get_thread();
    const Thread* get_thread() const; ///< the same, to read only
    /// The same as `get_thread`.
    Thread* get_thread_ptr();
    const Thread* get_thread_ptr() const; ///< the same as `get_thread`, to read only
    /// Binds this node to the calling thread.
    void update_thread();
    /// Whether the calling thread is the one this node is bound to. Nothing enforces it.
    [[nodiscard]] bool check_thread() const;

    /// The private record, which the engine alone defines.
    struct NodeData;

private:
    NodeData* node_data;
};

} // namespace orvex
