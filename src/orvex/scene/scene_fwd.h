#pragma once

/// @file
/// Forward declarations of the scene graph, and of what its headers name without needing more.

namespace orvex {

enum NODE_TYPE : int;

class Camera;
class Light;
class Model;
class Node;
class Object;
class Resource;
class ResourceMgr;
class Scene;
class SceneMgr;
class SceneRenderer;
class Tripod;
class Viewport;

} // namespace orvex
