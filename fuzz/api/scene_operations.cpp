// Nodes, scenes, cameras, lights and views.

#include "fuzz/api/operations.h"

namespace orvex_fuzz {

using namespace orvex;

namespace {

template<class Type>
void make(World& world, Bytes&) {
    world.hold(new Type);
}

/// What a view refers to it doesn't count: only what the host holds is given to one.
void give_camera(World& world, Bytes& in) {
    if (Window* const view = Place<Window>::find(world, in))
        view->set_camera(world.held<Camera>(in));
}

void give_start_node(World& world, Bytes& in) {
    if (Window* const view = Place<Window>::find(world, in))
        view->set_start_node(world.held<Node>(in));
}

/// A scene gives resources back through their managers, and with them the managers' references:
/// they are the host's to keep out of trees.
Node* draw_child(World& world, Bytes& in) {
    auto* const child = draw<Node*>(world, in);
    return dynamic_cast<Resource*>(child) ? nullptr : child;
}

void add_child(World& world, Bytes& in) {
    if (Node* const parent = world.reach<Node>(in))
        parent->add_child(draw_child(world, in));
}

void add_node(World& world, Bytes& in) {
    if (Scene* const scene = Place<Scene>::find(world, in))
        scene->add_node(draw_child(world, in));
}

constexpr Operation rows[] = {
    {"new Node", &make<Node>},
    {"new Camera", &make<Camera>},
    {"new Light", &make<Light>},
    {"release", [](World& world, Bytes& in) { world.release(in, true); }},
    {"release without a renderer", [](World& world, Bytes& in) { world.release(in, false); }},
    ORVEX_FUZZ_CALL(Node, init),
    ORVEX_FUZZ_CALL(Node, cleanup),
    ORVEX_FUZZ_CALL(Node, update),
    ORVEX_FUZZ_CALL(Node, build),
    ORVEX_FUZZ_CALL(Node, render),
    ORVEX_FUZZ_CALL(Node, get_renderer_id),
    ORVEX_FUZZ_CALL(Node, set_render_state),
    ORVEX_FUZZ_CALL(Node, set_name),
    ORVEX_FUZZ_CALL(Node, get_name),
    ORVEX_FUZZ_CALL(Node, get_type),
    ORVEX_FUZZ_CALL(Node, is_type_of),
    ORVEX_FUZZ_CALL(Node, get_parent),
    ORVEX_FUZZ_CALL(Node, set_parent),
    ORVEX_FUZZ_CALL(Node, get_num_children),
    ORVEX_FUZZ_CALL(Node, get_child),
    {"Node::add_child", &add_child},
    {"Node::add_child", &add_child},
    ORVEX_FUZZ_CALL(Node, remove_child),
    ORVEX_FUZZ_CALL_OF(Node, find_child, Node*, (const char*, Node*)),
    ORVEX_FUZZ_CALL_OF(Node, find_child, Node*, (int, Node*)),
    ORVEX_FUZZ_CALL(Node, set_layer),
    ORVEX_FUZZ_CALL(Node, set_user_data_ptr),
    ORVEX_FUZZ_CALL(Node, update_thread),
    ORVEX_FUZZ_CALL(Node, check_thread),

    ORVEX_FUZZ_CALL(SceneMgr, create_scene),
    {"SceneMgr::kill_scene", [](World& world, Bytes& in) { world.kill_scene(in); }},
    {"SceneMgr::release_scene_node", [](World& world, Bytes& in) { world.release_as_scene(in); }},
    ORVEX_FUZZ_CALL(SceneMgr, get_scene),
    ORVEX_FUZZ_CALL(SceneMgr, get_scene_by_index),
    ORVEX_FUZZ_CALL(Scene, init),
    ORVEX_FUZZ_CALL(Scene, set_name),
    ORVEX_FUZZ_CALL(Scene, get_name),
    ORVEX_FUZZ_CALL(Scene, get_root),
    {"Scene::add_node", &add_node},
    ORVEX_FUZZ_CALL(Scene, remove_node),
    ORVEX_FUZZ_CALL(Scene, get_node),

    ORVEX_FUZZ_CALL_OF(Camera, set_viewport, void, (int, int, int, int)),
    ORVEX_FUZZ_CALL_OF(Camera, set_viewport, void, (const Viewport&)),
    ORVEX_FUZZ_CALL(Camera, set_fov),
    ORVEX_FUZZ_CALL(Camera, get_tanfovdiv2),
    ORVEX_FUZZ_CALL(Camera, set_znear),
    ORVEX_FUZZ_CALL(Camera, set_zfar),
    ORVEX_FUZZ_CALL(Camera, set_aspect),
    ORVEX_FUZZ_CALL(Camera, set_proj_rh_state),
    ORVEX_FUZZ_CALL(Camera, build_projection_persp),
    ORVEX_FUZZ_CALL(Camera, build_projection_ortho),
    ORVEX_FUZZ_CALL(Camera, is_ortho_projection),
    ORVEX_FUZZ_CALL(Camera, update_projection_matrix),
    ORVEX_FUZZ_CALL_OF(Camera, set_projection_matrix, void, (const mat4&)),
    ORVEX_FUZZ_CALL_OF(Camera, get_inv_projection_matrix, mat4&, ()),
    ORVEX_FUZZ_CALL(Camera, set_view_rh_state),
    ORVEX_FUZZ_CALL_OF(Camera, set_position, void, (const vec4&)),
    ORVEX_FUZZ_CALL(Camera, set_lookat),
    ORVEX_FUZZ_CALL(Camera, update_direction),
    ORVEX_FUZZ_CALL(Camera, set_up),
    ORVEX_FUZZ_CALL(Camera, set_view_params),
    ORVEX_FUZZ_CALL(Camera, update_view_matrix),
    ORVEX_FUZZ_CALL(Camera, update_view_matrix_v2),
    ORVEX_FUZZ_CALL_OF(Camera, set_view_matrix, void, (const mat4&)),
    ORVEX_FUZZ_CALL_OF(Camera, get_inv_view_matrix, mat4&, ()),
    ORVEX_FUZZ_CALL_OF(Camera, get_view_projection_matrix, mat4&, ()),
    ORVEX_FUZZ_CALL(Camera, set_rotate_around_fixed_yaw_axis),
    ORVEX_FUZZ_CALL_OF(Camera, rotate, void, (const quat&)),
    ORVEX_FUZZ_CALL_OF(Camera, rotate, void, (float, const vec4&)),
    ORVEX_FUZZ_CALL(Camera, set_orientation),
    ORVEX_FUZZ_CALL(Camera, get_view_vector),
    ORVEX_FUZZ_CALL(Camera, get_up_vector),
    ORVEX_FUZZ_CALL(Camera, set_pitch),
    ORVEX_FUZZ_CALL(Camera, get_pitch),
    ORVEX_FUZZ_CALL(Camera, set_yaw),
    ORVEX_FUZZ_CALL(Camera, get_yaw),
    ORVEX_FUZZ_CALL(Camera, set_roll),
    ORVEX_FUZZ_CALL(Camera, get_roll),
    ORVEX_FUZZ_CALL(Camera, init_rotate_position_around_point),
    ORVEX_FUZZ_CALL(Camera, rotate_position_around_point_by_mouse),
    ORVEX_FUZZ_CALL(Camera, set_pitch_angle_limits),
    ORVEX_FUZZ_CALL(Camera, bind),
    ORVEX_FUZZ_CALL(Camera, bind),

    ORVEX_FUZZ_CALL(Light, set_index),
    ORVEX_FUZZ_CALL(Light, set_radius),
    ORVEX_FUZZ_CALL_OF(Light, set_ambient, void, (const vec4&)),
    ORVEX_FUZZ_CALL_OF(Light, set_diffuse, void, (const vec4&)),
    ORVEX_FUZZ_CALL_OF(Light, set_specular, void, (float, float, float, float)),
    ORVEX_FUZZ_CALL(Light, set_position_uniform_name),
    ORVEX_FUZZ_CALL(Light, get_position_uniform_name),
    ORVEX_FUZZ_CALL(Light, set_radius_uniform_name),
    ORVEX_FUZZ_CALL(Light, set_ambient_uniform_name),
    ORVEX_FUZZ_CALL(Light, set_diffuse_uniform_name),
    ORVEX_FUZZ_CALL(Light, set_specular_uniform_name),
    ORVEX_FUZZ_CALL(Light, bind),

    {"new Window", [](World& world, Bytes&) { world.make_view(); }},
    {"Window::set_camera", &give_camera},
    {"Window::set_start_node", &give_start_node},
    ORVEX_FUZZ_CALL(Window, set_layer),
    ORVEX_FUZZ_CALL(Window, set_viewport),
    ORVEX_FUZZ_CALL(Window, set_renderer),
    ORVEX_FUZZ_CALL(Window, set_render_window),
    ORVEX_FUZZ_CALL(Window, set_scene),
    ORVEX_FUZZ_CALL(Window, set_scene_renderer),
    ORVEX_FUZZ_CALL(Window, render),
    ORVEX_FUZZ_CALL(Window, render),
    ORVEX_FUZZ_CALL(SceneRenderer, init),
    ORVEX_FUZZ_CALL(SceneRenderer, render_scene),
};

} // namespace

std::span<const Operation> scene_operations() {
    return rows;
}

} // namespace orvex_fuzz
