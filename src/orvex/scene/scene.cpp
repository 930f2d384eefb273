#include "orvex/scene/scene.h"

#include "orvex/base/private/misuse.h"
#include "orvex/scene/object.h"
#include "orvex/scene/private/scene_data.h"

namespace orvex {

Scene::Scene()
    : data(std::make_unique<SceneData>()) {}

Scene::~Scene() = default;

bool Scene::init(Renderer*) {
    return true;
}

bool Scene::cleanup(Renderer*) {
    return true;
}

int Scene::get_id() const {
    return data->id;
}

void Scene::set_name(const char* name) {
    if (name)
        data->name = name;
    else
        misuse("Scene::set_name", "a null name");
}

const char* Scene::get_name() const {
    return data->name.c_str();
}

Object* Scene::get_root() const {
    return data->root;
}

bool Scene::add_node(Node* node) {
    if (!node)
        return misuse("Scene::add_node", "a null node");
    if (!data->root)
        return misuse("Scene::add_node", "a scene that was cleaned up");
    data->root->add_child(node);
    return true;
}

bool Scene::remove_node(Node* node) {
    if (!node)
        return misuse("Scene::remove_node", "a null node");
    node->set_parent(nullptr);
    return true;
}

Node* Scene::get_node(int id, Node* start) const {
    Node* const from = start ? start : data->root;
    return from ? from->find_child(id, from) : nullptr;
}

} // namespace orvex
