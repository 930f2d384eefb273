// Scenes and the tree of nodes.

#include "../scenarios.h"

namespace orvex_test {

using namespace orvex;

namespace {

void add(Stage& stage, Node* parent, Node* child) {
    stage.get("add_child", [&] {
        parent->add_child(child);
        return child->get_parent() == parent;
    });
}

} // namespace

void play_scene(Stage& stage) {
    stage.open_window(Path::gl3);
    Scene* const scene = stage.get("create_scene", [] { return SceneMgr::get()->create_scene(); });
    stage.run("set_name", [&] { scene->set_name("a scene with a name of some length"); });
    MeshBox* const box = stage.build(stage.make<MeshBox>());
    Light* const light = stage.make<Light>();
    stage.get("add_node", [&] { return scene->add_node(box); });
    stage.get("add_node", [&] { return scene->add_node(light); });
    stage.run("set_diffuse_uniform_name",
              [&] { light->set_diffuse_uniform_name("the_diffuse_colour_of_this_light"); });
    GpuProgram* const program = stage.make_normal_program();
    stage.run("set_gpu_program", [&] { box->set_gpu_program(program, nullptr); });
    Camera* const camera = stage.make_camera();
    SceneRenderer* const walker = stage.make<SceneRenderer>();
    stage.get("init", [&] { return walker->init(stage.renderer); });
    stage.frame([&] {
        stage.begin(camera);
        program->bind(stage.renderer);
        walker->render_scene(stage.renderer, scene, camera, nullptr);
        program->unbind(stage.renderer);
    });
    stage.run("cleanup", [&] { walker->cleanup(stage.renderer); });
    stage.run_quietly("~SceneRenderer", [&] { delete walker; });
    stage.end(camera);
    stage.run_quietly("set_gpu_program", [&] { box->set_gpu_program(nullptr, nullptr); });
    stage.run_quietly("kill_scene", [&] { SceneMgr::get()->kill_scene(stage.renderer, scene); });
    stage.tell("scenes", static_cast<double>(SceneMgr::get()->get_num_scenes()));
    stage.close();
}

void play_nodes(Stage& stage) {
    stage.start_engine();
    Object* const root = stage.make<Object>();
    Object* const arm = stage.make<Object>();
    Object* const hand = stage.make<Object>();
    stage.run("set_name", [&] { hand->set_name("a hand with a name that needs memory"); });
    stage.run("set_type", [&] { hand->set_type(NODE_TYPE_OBJECT); });
    add(stage, root, arm);
    add(stage, arm, hand);
    add(stage, root, hand);
    root->set_position(1, 0, 0);
    arm->set_position(0, 2, 0);
    hand->set_position(0, 0, 3);
    stage.tell("x", hand->get_absolute_position()->x);
    stage.tell("references", hand->get_ref());
    stage.tell("found", root->find_child("a hand with a name that needs memory", root) == hand);
    stage.run("update", [&] { root->update(0.5f, nullptr); });
    stage.run_quietly("remove_child", [&] { root->remove_child(hand); });
    stage.tell("references", hand->get_ref());
    stage.end(root);
    stage.close();
}

} // namespace orvex_test
