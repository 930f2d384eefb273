#include "orvex/scene/scene.h"

#include "orvex/scene/object.h"
#include "orvex/scene/private/scene_data.h"

namespace orvex {

Scene::Scene()
    : scene_data(new SceneData) {}

Scene::~Scene() {
    delete scene_data;
}

bool Scene::init(Renderer*) {
    return true;
}

bool Scene::cleanup(Renderer*) {
    return true;
}

int Scene::get_id() const {
    return scene_data->id;
}

void Scene::set_name(const char* name) {
    if (name)
        scene_data->name = name;
}

const char* Scene::get_name() const {
    return scene_data->name.c_str();
}

Object* Scene::get_root() const {
    return scene_data->root;
}

bool Scene::add_node(Node* node) {
    if (!node || !scene_data->root)
        return false;
    scene_data->root->add_child(node);
    return true;
}

bool Scene::remove_node(Node* node) {
    if (!node)
        return false;
    node->set_parent(nullptr);
    return true;
}

Node* Scene::get_node(int id, Node* start) const {
    Node* const from = start ? start : scene_data->root;
    return from ? from->find_child(id, from) : nullptr;
}

} // namespace orvex
