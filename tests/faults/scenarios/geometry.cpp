// Meshes, lines, points, particles and rays.

#include <array>
#include <cmath>

#include "../scenarios.h"

namespace orvex_test {

using namespace orvex;

namespace {

void play_frame(Stage& stage, Path path) {
    stage.open_window(path);
    MeshTorus* const ring = stage.make<MeshTorus>();
    ring->set_build_params(2.0f, 0.6f, 16);
    stage.build(ring);
    GpuProgram* const program = stage.make_normal_program();
    Camera* const camera = stage.make_camera();
    for (int turn = 0; turn < 2; ++turn) {
        ring->set_orientation_euler_xyz(30.0f * static_cast<float>(turn), 20.0f, 0.0f);
        stage.frame([&] {
            stage.begin(camera);
            stage.draw(program, ring);
        });
    }
    stage.end(ring);
    stage.end(camera);
    stage.close();
}

/// One shape after the other, each at its place.
void draw_shapes(Stage& stage, GpuProgram* program, Camera* camera,
                 const std::array<Mesh*, 7>& shapes) {
    stage.begin(camera);
    float x = -3.0f;
    for (Mesh* const shape : shapes) {
        shape->set_position(x, 0.0f, 0.0f);
        stage.draw(program, shape);
        x += 1.0f;
    }
}

} // namespace

void play_frame_gl2(Stage& stage) {
    play_frame(stage, Path::gl2);
}

void play_frame_gl3(Stage& stage) {
    play_frame(stage, Path::gl3);
}

void play_shapes(Stage& stage) {
    stage.open_window(Path::gl3);
    MeshBox* const box = stage.make<MeshBox>();
    box->set_build_params(0.8f, 0.8f, 0.8f, 2, 2, 2);
    MeshCylinder* const cylinder = stage.make<MeshCylinder>();
    cylinder->set_build_params(0.4f, 1.0f, 3, 8);
    MeshEllipse* const disc = stage.make<MeshEllipse>();
    disc->set_build_params(0.4f, 0.3f, 8, 2, 360.0f);
    MeshPlane* const plane = stage.make<MeshPlane>();
    plane->set_build_params(0.8f, 0.8f, 3, 3);
    MeshSphere* const ball = stage.make<MeshSphere>();
    ball->set_build_params(0.4f, 8, 6);
    MeshTriangle* const triangle = stage.make<MeshTriangle>();
    triangle->set_build_params(vec4(0, 0, 0, 1), vec4(0.5f, 0, 0, 1), vec4(0, 0.5f, 0, 1));
    MeshTorus* const ring = stage.make<MeshTorus>();
    ring->set_build_params(0.3f, 0.1f, 8);
    const std::array<Mesh*, 7> shapes = {box, cylinder, disc, plane, ball, triangle, ring};
    for (Mesh* const shape : shapes)
        stage.build(shape);
    GpuProgram* const program = stage.make_normal_program();
    Camera* const camera = stage.make_camera(8.0f);
    stage.frame([&] { draw_shapes(stage, program, camera, shapes); });
    for (Mesh* const shape : shapes)
        stage.end(shape);
    stage.end(camera);
    stage.close();
}

void play_terrain(Stage& stage) {
    stage.open_window(Path::gl3);
    Texture* const hills = stage.get("create_texture_2d", [] {
        return TextureMgr::get()->create_texture_2d(16, 16, PF_RGBA_U8);
    });
    for (unsigned long i = 0; i < 256; ++i)
        hills->set_texel_2d(i % 16, i / 16,
                            vec4(static_cast<float>(i * 37 % 256), 0.0f, 0.0f, 255.0f));
    MeshTerrain* const terrain = stage.make<MeshTerrain>();
    stage.get("set_build_params",
              [&] { return terrain->set_build_params(hills, 8, 1.0f, 2.0f, 1.0f); });
    stage.build(terrain);
    GpuProgram* const program = stage.make_normal_program();
    Camera* const camera = stage.make_camera();
    stage.frame([&] {
        stage.begin(camera);
        stage.draw(program, terrain);
    });
    stage.end(terrain);
    stage.end(camera);
    stage.close();
}

void play_instances(Stage& stage) {
    stage.open_window(Path::gl3);
    MeshBox* const box = stage.make<MeshBox>();
    box->set_build_params(0.5f, 0.5f, 0.5f, 1, 1, 1);
    stage.build(box);
    InstancingInitParams arrays;
    arrays.position = true;
    arrays.color = true;
    stage.get("instancing_init", [&] { return box->instancing_init(3, arrays, 16); });
    for (unsigned long i = 0; i < 3; ++i) {
        box->set_instance_position(i, vec4(static_cast<float>(i) - 1.0f, 0, 0, 1));
        box->set_instance_color(i, vec4(1, 0, static_cast<float>(i), 1));
    }
    GpuProgram* const program = stage.make_normal_program();
    Camera* const camera = stage.make_camera();
    stage.frame([&] {
        stage.begin(camera);
        stage.draw(program, box);
    });
    stage.tell("instances", static_cast<double>(box->get_num_instances()));
    stage.end(box);
    stage.end(camera);
    stage.close();
}

void play_user_geometry(Stage& stage) {
    stage.open_window(Path::gl3);
    Mesh* const mesh = stage.make<Mesh>();
    for (const vec4& corner : {vec4(-1, -1, 0, 1), vec4(1, -1, 0, 1), vec4(0, 1, 0, 1)})
        stage.run("user_geometry_add_vertex", [&] { mesh->user_geometry_add_vertex(corner); });
    stage.get("user_geometry_add_face32", [&] { return mesh->user_geometry_add_face32(0, 1, 2); });
    stage.put_on_path(mesh);
    // A build from lists is true whatever came of it, which its last allocation shows.
    stage.get("build", [&] {
        mesh->update_build_state(true);
        mesh->build(nullptr);
        return mesh->get_mesh_data()->face_materials != nullptr;
    });
    stage.tell("vertices", static_cast<double>(mesh->get_num_vertices(nullptr)));
    stage.get("alloc_user_vertex_attribs", [&] { return mesh->alloc_user_vertex_attribs(2); });
    Mesh* const twin = stage.make<Mesh>();
    stage.get("copy_geometry", [&] { return twin->copy_geometry(mesh); });
    stage.tell("vertices of the copy", static_cast<double>(twin->get_num_vertices(nullptr)));
    GpuProgram* const program = stage.make_normal_program();
    Camera* const camera = stage.make_camera();
    stage.frame([&] {
        stage.begin(camera);
        stage.draw(program, mesh);
    });
    stage.end(mesh);
    stage.end(twin);
    stage.end(camera);
    stage.close();
}

void play_lines(Stage& stage) {
    stage.open_window(Path::gl3);
    Polyline* const ring = stage.make<Polyline>();
    stage.get("initialize", [&] { return ring->initialize(6, LINE_RENDER_MODE_LINE_LOOP); });
    for (unsigned long i = 0; i < 6; ++i) {
        const float angle = static_cast<float>(i);
        ring->set_vertex_position(i, 2 * std::cos(angle), 2 * std::sin(angle), 0.0f);
    }
    ring->set_vertices_color(1.0f, 0.5f, 0.0f, 1.0f);
    Line* const line = stage.make<Line>();
    line->set_start_position(-2, 0, 0);
    line->set_end_position(2, 0, 0);
    line->set_end_color(0, 1, 0, 1);
    Curve* const curve = stage.make<Curve>();
    stage.get("alloc", [&] { return curve->alloc(8); });
    for (unsigned long i = 0; i < 8; ++i)
        curve->set_value(i, vec3(static_cast<float>(i) - 4.0f, static_cast<float>(i % 3), 0.0f));
    GpuProgram* const program = stage.make_colored_program();
    Camera* const camera = stage.make_camera();
    stage.frame([&] {
        stage.begin(camera);
        for (Polyline* const object :
             {ring, static_cast<Polyline*>(line), static_cast<Polyline*>(curve)})
            stage.draw(program, object);
    });
    stage.end(ring);
    stage.end(line);
    stage.end(curve);
    stage.end(camera);
    stage.close();
}

void play_splines(Stage& stage) {
    stage.open_window(Path::gl3);
    MiniSpline* const spline = stage.make<MiniSpline>();
    for (int i = 0; i < 6; ++i) {
        const auto time = static_cast<float>(i);
        stage.run("add_keyframe",
                  [&] { spline->add_keyframe(time, time - 2.5f, std::sin(time), 0.0f); });
    }
    float xyz[3] = {};
    stage.run("get_value", [&] { spline->get_value(2.5f, xyz); });
    stage.tell("x", xyz[0]);
    GpuProgram* const program = stage.make_normal_program();
    Camera* const camera = stage.make_camera();
    stage.frame([&] {
        stage.begin(camera);
        stage.draw(program, spline);
    });
    stage.end(spline);
    stage.end(camera);
    stage.close();
}

void play_points(Stage& stage) {
    stage.open_window(Path::gl3);
    VertexPool* const pool = stage.make<VertexPool>();
    stage.get("init_pool", [&] { return pool->init_pool(9, false); });
    for (unsigned long i = 0; i < 9; ++i) {
        const unsigned long row = i / 3;
        pool->set_vertex_position(
            i, vec4(static_cast<float>(i % 3) - 1.0f, static_cast<float>(row) - 1.0f, 0, 1));
        pool->set_vertex_color(i, 1.0f, static_cast<float>(i) / 9.0f, 0.0f, 1.0f);
    }
    GpuProgram* const program = stage.make_colored_program();
    Camera* const camera = stage.make_camera();
    stage.frame([&] {
        stage.begin(camera);
        stage.draw(program, pool);
    });
    stage.end(pool);
    stage.end(camera);
    stage.close();
}

void play_particles(Stage& stage) {
    stage.open_window(Path::gl3);
    Math::srnd(1);
    ParticleSystem* const fountain = stage.make<ParticleSystem>();
    stage.get("initialize", [&] { return fountain->initialize(100); });
    fountain->set_opengl_2_3_rendering_states(false, nullptr);
    stage.get("create_action", [&] { return fountain->create_action(); });
    ParticleEmitter* const jet =
        stage.get("create_emitter", [&] { return fountain->create_emitter(); });
    jet->set_particle_rate(200.0f);
    jet->set_spawn_directions(vec3(-1, 2, -1), vec3(1, 3, 1));
    for (int step = 0; step < 8; ++step)
        stage.run("update", [&] { fountain->update(0.05f, nullptr); });
    stage.tell("alive", static_cast<double>(fountain->get_num_alive_particles()));
    GpuProgram* const program = stage.make_colored_program();
    Camera* const camera = stage.make_camera();
    stage.frame([&] {
        stage.begin(camera);
        stage.draw(program, fountain);
    });
    stage.end(fountain);
    stage.end(camera);
    stage.close();
}

void play_rays(Stage& stage) {
    stage.start_engine();
    MeshSphere* const ball = stage.make<MeshSphere>();
    ball->set_build_params(1.0f, 12, 8);
    stage.build(ball);
    Camera* const camera = stage.make_camera();
    RayCaster* const caster = stage.make<RayCaster>();
    Ray ray;
    stage.get("get_ray", [&] { return caster->get_ray(camera, 32, 32, ray); });
    RayObjectIntersection meeting;
    stage.get("cast_ray_object", [&] { return caster->cast_ray_object(ray, ball, meeting); });
    stage.tell("distance", meeting.distance);
    stage.run_quietly("~RayCaster", [&] { delete caster; });
    stage.end(ball);
    stage.end(camera);
    stage.close();
}

} // namespace orvex_test
