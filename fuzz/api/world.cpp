#include "fuzz/api/world.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace orvex_fuzz {

using namespace orvex;

namespace {

constexpr std::size_t most_nodes = 48;
constexpr std::size_t most_windows = 3;
constexpr std::size_t most_views = 3;

void check(bool state, const char* what) {
    if (state)
        return;
    std::fprintf(stderr, "left behind: %s\n", what);
    std::abort();
}

} // namespace

World::World(const Stage& wanted)
    : stage(wanted) {
    start();
}

World::~World() {
    stop();
}

void World::restart() {
    stop();
    start();
}

void World::start() {
    core::start("", false, nullptr, nullptr);
    renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    Bytes none(nullptr, 0);
    make_window(none);
    renderer->start();
    hud = std::make_unique<aux::Hud>();
    camera_axes = std::make_unique<aux::TripodVisualizerCamera>();
    object_axes = std::make_unique<aux::TripodVisualizerObject>();
}

void World::stop() {
    // Ends belong to a current context and a renderer that runs.
    if (!windows.empty())
        windows.front()->apply_context(true);
    renderer->start();
    views.clear();
    hud->cleanup(renderer);
    camera_axes->cleanup(renderer);
    object_axes->cleanup(renderer);
    renderer->uniform_buffer_kill(&block);
    Bytes none(nullptr, 0);
    while (!nodes.empty())
        release(none, true);
    SceneMgr::get()->kill_all_scenes(renderer);
    for (ResourceMgr* const manager : {static_cast<ResourceMgr*>(MaterialMgr::get()),
                                       static_cast<ResourceMgr*>(TextureMgr::get()),
                                       static_cast<ResourceMgr*>(GpuProgramMgr::get())}) {
        manager->release_all_resources(renderer, nullptr);
        manager->release_all_resources(nullptr, nullptr);
        check(manager->get_num_resources() == 0, "a resource");
    }
    check(SceneMgr::get()->get_num_scenes() == 0, "a scene");
    hud.reset();
    camera_axes.reset();
    object_axes.reset();
    renderer->kill_all_render_targets();
    targets.clear();
    if (second_renderer)
        second_renderer->stop();
    second_renderer = nullptr;
    renderer->stop();
    renderer->kill_all_render_windows();
    windows.clear();
    core::stop("");
}

void World::hold(Node* node) {
    if (!node)
        return;
    node->add_ref();
    nodes.push_back(node);
    if (nodes.size() > most_nodes) {
        nodes.pop_back(); // as nothing was done with it
        node->release(renderer, nullptr);
    }
}

/// A node that the host is about to give back, with whatever nobody counts taken back before.
Node* World::take(Bytes& in) {
    const std::size_t index = in.byte() % nodes.size();
    Node* const node = nodes[index];
    nodes.erase(nodes.begin() + static_cast<std::ptrdiff_t>(index));
    for (const auto& view : views) {
        if (dynamic_cast<const Camera*>(node))
            view->set_camera(nullptr);
        view->set_start_node(nullptr);
    }
    if (auto* const object = dynamic_cast<Object*>(node))
        object->set_gpu_program(nullptr, nullptr);
    if (auto* const scanner = dynamic_cast<ArtifactScanner*>(node))
        scanner->set_render_target(nullptr);
    return node;
}

void World::release(Bytes& in, bool with_renderer) {
    if (nodes.empty())
        return;
    Node* const node = take(in);
    node->release(with_renderer ? renderer : nullptr, in.flag() ? node : nullptr);
}

void World::release_as_scene(Bytes& in) {
    if (nodes.empty())
        return;
    Node* const node = take(in);
    if (dynamic_cast<const Resource*>(node))
        node->release(renderer, nullptr);
    else
        SceneMgr::get()->release_scene_node(renderer, node);
}

void World::kill_scene(Bytes& in) {
    SceneMgr& scenes = *SceneMgr::get();
    if (scenes.get_num_scenes() == 0)
        return;
    Scene* const scene = scenes.get_scene_by_index(in.byte() % scenes.get_num_scenes());
    for (const auto& view : views) {
        view->set_scene(nullptr);
        view->set_start_node(nullptr);
    }
    scenes.kill_scene(in.flag() ? nullptr : renderer, scene);
}

void World::kill_target(Bytes& in) {
    if (targets.empty())
        return;
    const std::size_t index = in.byte() % targets.size();
    RenderTarget* const target = targets[index];
    for (Node* const node : nodes)
        if (auto* const scanner = dynamic_cast<ArtifactScanner*>(node))
            scanner->set_render_target(nullptr);
    targets.erase(targets.begin() + static_cast<std::ptrdiff_t>(index));
    if (in.flag())
        renderer->kill_render_target(target->get_id());
    else
        renderer->kill_render_target(target);
}

void World::make_window(Bytes& in) {
    if (windows.size() == most_windows)
        return;
    RenderWindow* const window = renderer->create_render_window();
    RenderWindow_ExtraData request;
    request.gl_major = stage.gl_major;
    request.gl_minor = stage.gl_minor;
    request.core_profile = stage.core;
    request.depth_bits = 24;
    RenderWindow* const parent = !windows.empty() && in.flag() ? windows.front() : nullptr;
    window->initialize(nullptr, nullptr, 32, 32, "", parent, &request);
    windows.push_back(window);
    for (const auto& view : views)
        view->set_render_window(window);
}

void World::kill_window(Bytes& in) {
    if (windows.size() < 2)
        return;
    const std::size_t index = in.byte() % windows.size();
    for (const auto& view : views)
        view->set_render_window(nullptr);
    renderer->kill_render_window(windows[index]);
    windows.erase(windows.begin() + static_cast<std::ptrdiff_t>(index));
}

void World::make_second_renderer() {
    if (second_renderer)
        return;
    second_renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    second_renderer->initialize();
    second_renderer->start();
}

void World::make_view() {
    if (views.size() == most_views)
        return;
    views.push_back(std::make_unique<Window>());
    views.back()->set_renderer(renderer);
    views.back()->set_scene_renderer(&scene_renderer);
}

} // namespace orvex_fuzz
