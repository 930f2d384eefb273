#include "orvex/geometry/rays/ray_caster.h"

#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "orvex/geometry/lines/polyline.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/scene/camera.h"
#include "orvex/scene/viewport.h"
#include "plain_ray_cast.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/geometry/printers.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

Owned<Camera> make_camera(int x, int y, int width, int height) {
    Owned<Camera> camera(new Camera);
    camera->set_viewport(x, y, width, height);
    return camera;
}

/// A camera whose clip space is world space.
Owned<Camera> make_plain_camera(int x, int y, int width, int height) {
    Owned<Camera> camera = make_camera(x, y, width, height);
    camera->set_projection_matrix(mat4());
    camera->set_view_matrix(mat4());
    return camera;
}

TEST(RayCasterProjection, of_the_middle_of_clip_space_is_the_middle_of_the_viewport) {
    const Owned<Camera> camera = make_plain_camera(10, 20, 200, 100);
    const Owned<Object> object(new Object);
    vec4 out(0.0f, 0.0f, 0.0f, 7.0f);
    EXPECT_TRUE(RayCaster().project_object_position_into_viewport(camera.get(), object.get(), out));
    EXPECT_EQ(out, vec4(110.0f, 70.0f, 0.5f, 7.0f)) << "w stays";
}

TEST(RayCasterProjection, takes_the_position_through_the_objects_own_transform) {
    const Owned<Camera> camera = make_plain_camera(0, 0, 200, 100);
    const Owned<Object> object(new Object);
    object->set_position(0.25f, -0.25f, 0.125f);
    vec4 out;
    EXPECT_TRUE(RayCaster().project_object_position_into_viewport(camera.get(), object.get(), out));
    EXPECT_EQ(out, vec4(150.0f, 25.0f, 0.625f, 1.0f)) << "its translation counts twice";
}

TEST(RayCasterProjection, does_not_divide_by_w) {
    const Owned<Camera> camera = make_camera(0, 0, 200, 100);
    camera->build_projection_persp(90.0f, 2.0f, 1.0f, 100.0f, true);
    camera->set_position(vec4(0.0f, 0.0f, 0.0f, 1.0f));
    const Owned<Object> object(new Object);
    object->set_transform(mat4().init_translate(2.0f, 1.0f, -4.0f));
    const vec4 clip = camera->get_projection_matrix() * vec4(2.0f, 1.0f, -4.0f, 1.0f);
    ASSERT_EQ(clip.w, 4.0f);
    vec4 out;
    EXPECT_TRUE(RayCaster().project_object_position_into_viewport(camera.get(), object.get(), out));
    EXPECT_EQ(out.x, 200.0f * (clip.x + 1.0f) * 0.5f);
    EXPECT_EQ(out.y, 100.0f * (clip.y + 1.0f) * 0.5f);
    EXPECT_EQ(out.z, (clip.z + 1.0f) * 0.5f);
    EXPECT_NEAR(out.x, 200.0f, 1e-4f) << "an x of 1 in clip space, however far away";
}

TEST(RayCasterProjection, of_null_is_refused) {
    const Owned<Camera> camera = make_plain_camera(0, 0, 10, 10);
    const Owned<Object> object(new Object);
    vec4 out(1.0f, 2.0f, 3.0f, 4.0f);
    const RayCaster caster;
    EXPECT_FALSE(caster.project_object_position_into_viewport(nullptr, object.get(), out));
    EXPECT_FALSE(caster.project_object_position_into_viewport(camera.get(), nullptr, out));
    EXPECT_EQ(out, vec4(1.0f, 2.0f, 3.0f, 4.0f));
}

TEST(RayCasterProjection, of_matrices_applies_model_then_view_then_projection) {
    mat4 projection, view, model;
    projection.init_scale(0.5f, 0.25f, 1.0f);
    view.init_translate(0.0f, 1.0f, 0.5f);
    model.init_rotate_z(90.0f);
    Viewport viewport;
    viewport.set(3, 5, 100, 40);
    const vec4 position(1.0f, 2.0f, 0.25f, 2.0f);
    vec4 out;
    EXPECT_TRUE(RayCaster().project_object_position_into_viewport_v2(projection, view, viewport,
                                                                     model, position, out));
    const vec4 p = projection * view * model * position;
    EXPECT_NEAR(p.y, 0.75f, 1e-6f) << "w 2 takes the translation twice";
    EXPECT_EQ(out, vec4(3.0f + 100.0f * (p.x + 1.0f) * 0.5f, 5.0f + 40.0f * (p.y + 1.0f) * 0.5f,
                        (p.z + 1.0f) * 0.5f, 1.0f));
}

/// At (0, 0, 10), looking along -Z, half as high as it is wide.
Owned<Camera> make_perspective_camera() {
    Owned<Camera> camera = make_camera(40, 30, 200, 100);
    camera->build_projection_persp(90.0f, 2.0f, 1.0f, 100.0f, true);
    return camera;
}

TEST(RayCasterPerspective, starts_on_the_near_plane_with_y_downwards) {
    const Owned<Camera> camera = make_perspective_camera();
    const float t = camera->get_tanfovdiv2();
    ASSERT_NEAR(t, 1.0f, 1e-6f);
    struct Row {
        int x, y;
        vec4 origin;
    };
    const Row rows[] = {
        {140, 80, vec4(0.0f, 0.0f, 9.0f, 1.0f)},     {40, 80, vec4(-2.0f * t, 0.0f, 9.0f, 1.0f)},
        {240, 80, vec4(2.0f * t, 0.0f, 9.0f, 1.0f)}, {140, 30, vec4(0.0f, t, 9.0f, 1.0f)},
        {140, 130, vec4(0.0f, -t, 9.0f, 1.0f)},      {190, 105, vec4(t, -0.5f * t, 9.0f, 1.0f)}};
    for (const Row& row : rows) {
        Ray ray;
        EXPECT_TRUE(RayCaster().get_ray(camera.get(), row.x, row.y, ray));
        EXPECT_EQ(ray.origin, row.origin) << row.x << ", " << row.y;
    }
}

TEST(RayCasterPerspective, has_a_direction_of_unit_length_away_from_the_eye) {
    const Owned<Camera> camera = make_perspective_camera();
    Ray ray;
    EXPECT_TRUE(RayCaster().get_ray(camera.get(), 140, 80, ray));
    EXPECT_EQ(ray.direction, vec4(0.0f, 0.0f, -1.0f, 0.0f));
    EXPECT_TRUE(RayCaster().get_ray(camera.get(), 190, 80, ray));
    EXPECT_NEAR(ray.direction.x, std::sqrt(0.5f), 1e-6f);
    EXPECT_EQ(ray.direction.y, 0.0f);
    EXPECT_NEAR(ray.direction.z, -std::sqrt(0.5f), 1e-6f);
    EXPECT_EQ(ray.direction.w, 0.0f);
}

TEST(RayCasterPerspective, goes_through_what_is_drawn_at_the_pixel) {
    const Owned<Camera> camera = make_perspective_camera();
    camera->set_view_params(vec4(3.0f, 4.0f, 5.0f, 1.0f), vec4(-1.0f, 0.5f, 0.0f, 1.0f),
                            vec4(0.0f, 1.0f, 0.0f, 0.0f), true);
    const mat4 to_clip = camera->get_projection_matrix() * camera->get_view_matrix();
    for (int x = 40; x <= 240; x += 25) {
        for (int y = 30; y <= 130; y += 25) {
            Ray ray;
            ASSERT_TRUE(RayCaster().get_ray(camera.get(), x, y, ray));
            const vec4 clip =
                to_clip * vec4(ray.origin.get_vec3() + ray.direction.get_vec3() * 20.0f);
            // Seven digits of coordinates around 20.
            EXPECT_NEAR(clip.x / clip.w, static_cast<float>(x - 140) / 100.0f, 5e-6f);
            EXPECT_NEAR(clip.y / clip.w, static_cast<float>(80 - y) / 50.0f, 5e-6f);
        }
    }
}

TEST(RayCasterPerspective, halves_an_odd_viewport_to_whole_pixels) {
    const Owned<Camera> camera = make_perspective_camera();
    camera->set_viewport(0, 0, 201, 101);
    Ray ray;
    EXPECT_TRUE(RayCaster().get_ray(camera.get(), 100, 50, ray));
    EXPECT_EQ(ray.origin, vec4(0.0f, 0.0f, 9.0f, 1.0f));
}

TEST(RayCasterPerspective, through_a_viewport_without_room_is_not_finite) {
    const Owned<Camera> camera = make_perspective_camera();
    camera->set_viewport(0, 0, 1, 0);
    Ray ray;
    EXPECT_TRUE(RayCaster().get_ray(camera.get(), 0, 0, ray));
    EXPECT_FALSE(std::isfinite(ray.origin.x));
    EXPECT_FALSE(std::isfinite(ray.origin.y));
}

TEST(RayCasterPerspective, takes_any_pixel) {
    const Owned<Camera> camera = make_perspective_camera();
    camera->set_viewport(INT_MIN, INT_MAX, 200, 100);
    Ray ray;
    EXPECT_TRUE(RayCaster().get_ray(camera.get(), INT_MAX, INT_MIN, ray));
    EXPECT_TRUE(RayCaster().get_ray_ortho_cam(camera.get(), INT_MAX, INT_MIN, ray));
    EXPECT_TRUE(std::isfinite(ray.origin.x));
}

TEST(RayCasterOrthographic, starts_one_unit_before_the_eye_with_y_downwards) {
    const Owned<Camera> camera = make_camera(40, 30, 200, 100);
    camera->build_projection_ortho(-4.0f, 4.0f, -2.0f, 2.0f, 0.5f, 50.0f, true);
    struct Row {
        int x, y;
        vec4 origin;
    };
    const Row rows[] = {{140, 80, vec4(0.0f, 0.0f, 9.0f, 1.0f)},
                        {40, 30, vec4(-4.0f, 2.0f, 9.0f, 1.0f)},
                        {240, 130, vec4(4.0f, -2.0f, 9.0f, 1.0f)},
                        {190, 30, vec4(2.0f, 2.0f, 9.0f, 1.0f)}};
    for (const Row& row : rows) {
        Ray ray;
        EXPECT_TRUE(RayCaster().get_ray_ortho_cam(camera.get(), row.x, row.y, ray));
        EXPECT_EQ(ray.origin, row.origin) << row.x << ", " << row.y;
        EXPECT_EQ(ray.direction, vec4(0.0f, 0.0f, -1.0f, 0.0f));
    }
}

TEST(RayCasterOrthographic, keeps_its_direction_wherever_the_camera_looks) {
    const Owned<Camera> camera = make_camera(0, 0, 200, 100);
    camera->build_projection_ortho(-4.0f, 4.0f, -2.0f, 2.0f, 0.5f, 50.0f, true);
    camera->set_view_params(vec4(5.0f, 0.0f, 0.0f, 1.0f), vec4(0.0f, 0.0f, 0.0f, 1.0f),
                            vec4(0.0f, 1.0f, 0.0f, 0.0f), true);
    Ray ray;
    EXPECT_TRUE(RayCaster().get_ray_ortho_cam(camera.get(), 150, 50, ray));
    EXPECT_EQ(ray.direction, vec4(0.0f, 0.0f, -1.0f, 0.0f));
    EXPECT_NEAR(ray.origin.x, 4.0f, 1e-5f);
    EXPECT_NEAR(ray.origin.y, 0.0f, 1e-5f);
    EXPECT_NEAR(ray.origin.z, -2.0f, 1e-5f) << "right of a camera that looks along -X";
}

TEST(RayCaster, makes_no_ray_of_a_null_camera) {
    Ray ray;
    ray.origin = vec4(1.0f, 2.0f, 3.0f, 4.0f);
    ray.direction = vec4(5.0f, 6.0f, 7.0f, 8.0f);
    EXPECT_FALSE(RayCaster().get_ray(nullptr, 1, 2, ray));
    EXPECT_FALSE(RayCaster().get_ray_ortho_cam(nullptr, 1, 2, ray));
    EXPECT_EQ(ray.origin, vec4(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_EQ(ray.direction, vec4(5.0f, 6.0f, 7.0f, 8.0f));
}

TEST(RayObjectIntersection, starts_without_a_hit) {
    const RayObjectIntersection result;
    EXPECT_EQ(result.position, vec3());
    EXPECT_EQ(result.distance, 0.0f);
    EXPECT_EQ(result.face_index, 0u);
    EXPECT_FALSE(result.stop_at_first_hit);
    EXPECT_FALSE(result.hit);
}

/// Straight down the Z axis, from z = 5.
Ray ray_down(float x = 0.25f, float y = 0.25f) {
    Ray ray;
    ray.origin = vec4(x, y, 5.0f, 1.0f);
    ray.direction = vec4(0.0f, 0.0f, -1.0f, 0.0f);
    return ray;
}

/// A result that shows which of its fields are written.
RayObjectIntersection marked_result(bool stop_at_first_hit = false) {
    RayObjectIntersection result;
    result.position = vec3(-7.0f, -8.0f, -9.0f);
    result.distance = -3.0f;
    result.face_index = 77;
    result.hit = true;
    result.stop_at_first_hit = stop_at_first_hit;
    return result;
}

void expect_untouched(const RayObjectIntersection& result) {
    EXPECT_TRUE(same_bits(result, marked_result(result.stop_at_first_hit)));
}

/// Unit triangles in planes of their own, at these depths.
OwnedMesh make_stack(std::initializer_list<float> depths) {
    OwnedMesh mesh = make_mesh(3 * depths.size(), depths.size());
    unsigned int vertex = 0;
    for (const float z : depths) {
        mesh->set_vertex_position(vertex, vec4(0.0f, 0.0f, z, 1.0f));
        mesh->set_vertex_position(vertex + 1, vec4(1.0f, 0.0f, z, 1.0f));
        mesh->set_vertex_position(vertex + 2, vec4(0.0f, 1.0f, z, 1.0f));
        mesh->set_face_indexes(vertex / 3, vertex, vertex + 1, vertex + 2);
        vertex += 3;
    }
    mesh->set_bounding_sphere(vec4::ZERO, 1000.0f);
    return mesh;
}

TEST(RayCasterMesh, tells_face_distance_and_position) {
    const OwnedMesh mesh = make_stack({-2.0f, 1.0f, 0.5f});
    RayObjectIntersection result = marked_result();
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(), mesh.get(), result));
    EXPECT_TRUE(result.hit);
    EXPECT_EQ(result.face_index, 1u);
    EXPECT_EQ(result.distance, 4.0f);
    EXPECT_EQ(result.position, vec3(0.25f, 0.25f, 1.0f));
}

TEST(RayCasterMesh, measures_the_distance_in_lengths_of_the_direction) {
    const OwnedMesh mesh = make_stack({1.0f});
    Ray ray = ray_down();
    ray.direction.z = -8.0f;
    RayObjectIntersection result;
    EXPECT_TRUE(RayCaster().cast_ray_object(ray, mesh.get(), result));
    EXPECT_EQ(result.distance, 0.5f);
    EXPECT_EQ(result.position, vec3(0.25f, 0.25f, 1.0f));
}

TEST(RayCasterMesh, stopping_at_the_first_hit_may_tell_a_farther_face) {
    const OwnedMesh mesh = make_stack({9.0f, -2.0f, 1.0f, -4.0f, 2.0f});
    RayObjectIntersection nearest = marked_result();
    RayObjectIntersection first = marked_result(true);
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(), mesh.get(), nearest));
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(), mesh.get(), first));
    EXPECT_EQ(nearest.face_index, 4u);
    EXPECT_EQ(nearest.distance, 3.0f);
    EXPECT_EQ(first.face_index, 1u) << "face 0 is behind the origin";
    EXPECT_EQ(first.distance, 7.0f);
    EXPECT_EQ(first.position, vec3(0.25f, 0.25f, -2.0f));
    EXPECT_TRUE(first.stop_at_first_hit);
}

TEST(RayCasterMesh, keeps_the_earlier_of_two_faces_at_one_distance) {
    const OwnedMesh mesh = make_stack({-1.0f, 1.0f, 1.0f, 0.0f, 1.0f, 1.0f});
    RayObjectIntersection result;
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(), mesh.get(), result));
    EXPECT_EQ(result.face_index, 1u);
}

TEST(RayCasterMesh, is_met_from_both_sides) {
    const OwnedMesh mesh = make_stack({1.0f});
    RayObjectIntersection result;
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(), mesh.get(), result));
    mesh->flip_faces(nullptr);
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(), mesh.get(), result));
}

TEST(RayCasterMesh, behind_the_ray_passes_the_sphere_and_is_not_met) {
    const OwnedMesh mesh = make_unit_triangle();
    ASSERT_TRUE(mesh->update_bounding_sphere(nullptr));
    Ray ray = ray_down();
    ray.direction.z = 1.0f;
    for (const bool stop : {false, true}) {
        RayObjectIntersection result = marked_result(stop);
        EXPECT_FALSE(RayCaster().cast_ray_object(ray, mesh.get(), result));
        EXPECT_FALSE(result.hit);
        EXPECT_EQ(result.distance, 1e13f) << "written only past the sphere";
    }
}

TEST(RayCasterMesh, at_the_origin_of_the_ray_is_not_met) {
    const OwnedMesh mesh = make_stack({5.0f});
    RayObjectIntersection result = marked_result(true);
    EXPECT_FALSE(RayCaster().cast_ray_object(ray_down(), mesh.get(), result));
}

TEST(RayCasterMesh, missed_leaves_the_position_and_clears_the_rest) {
    const OwnedMesh mesh = make_stack({1.0f, 2.0f});
    RayObjectIntersection result = marked_result();
    EXPECT_FALSE(RayCaster().cast_ray_object(ray_down(0.9f, 0.9f), mesh.get(), result));
    EXPECT_FALSE(result.hit);
    EXPECT_EQ(result.face_index, 0u);
    EXPECT_EQ(result.distance, 1e13f);
    EXPECT_EQ(result.position, vec3(-7.0f, -8.0f, -9.0f));
}

TEST(RayCasterMesh, farther_than_can_be_told_is_no_hit_but_ends_the_search_for_the_first) {
    const OwnedMesh mesh = make_stack({-2e13f, 1.0f});
    RayObjectIntersection nearest = marked_result();
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(), mesh.get(), nearest));
    EXPECT_EQ(nearest.face_index, 1u);
    RayObjectIntersection first = marked_result(true);
    EXPECT_FALSE(RayCaster().cast_ray_object(ray_down(), mesh.get(), first));
    EXPECT_EQ(first.distance, 1e13f);
    EXPECT_EQ(first.face_index, 0u);
}

TEST(RayCasterMesh, whose_sphere_is_missed_is_not_looked_at) {
    const OwnedMesh mesh = make_stack({1.0f});
    mesh->set_bounding_sphere(vec4(10.0f, 0.0f, 0.0f, 1.0f), 2.0f);
    RayObjectIntersection result = marked_result();
    EXPECT_FALSE(RayCaster().cast_ray_object(ray_down(), mesh.get(), result));
    EXPECT_FALSE(result.hit);
    result.hit = true;
    expect_untouched(result);
}

TEST(RayCasterMesh, without_a_sphere_of_its_own_has_one_of_radius_0) {
    const OwnedMesh mesh = make_unit_triangle();
    RayObjectIntersection result;
    EXPECT_FALSE(RayCaster().cast_ray_object(ray_down(), mesh.get(), result));
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(0.0f, 0.0f), mesh.get(), result))
        << "through its centre, which is the first corner";
    ASSERT_TRUE(mesh->update_bounding_sphere(nullptr));
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(), mesh.get(), result));
}

TEST(RayCasterMesh, has_a_sphere_that_moves_but_does_not_grow_with_its_transform) {
    const OwnedMesh mesh = make_unit_triangle();
    ASSERT_TRUE(mesh->update_bounding_sphere(nullptr));
    mesh->set_position(20.0f, 0.0f, 0.0f);
    RayObjectIntersection result;
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(20.25f, 0.25f), mesh.get(), result));
    mesh->set_scale(8.0f, 8.0f, 8.0f);
    EXPECT_FALSE(RayCaster().cast_ray_object(ray_down(26.0f, 0.25f), mesh.get(), result))
        << "on the face, but away from the sphere";
    EXPECT_EQ(result.distance, 5.0f) << "from the call before";
}

TEST(RayCasterMesh, is_met_where_its_parents_put_it) {
    const Owned<Object> parent(new Object);
    parent->set_position(0.0f, 0.0f, 2.0f);
    Mesh* const mesh = make_stack({1.0f}).release();
    parent->add_child(mesh);
    mesh->remove_ref(); // the parent's is the one left
    mesh->set_orientation_euler_xyz(0.0f, 0.0f, 90.0f);
    RayObjectIntersection result;
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(-0.25f, 0.25f), mesh, result));
    EXPECT_EQ(result.distance, 2.0f);
    EXPECT_EQ(result.position, vec3(-0.25f, 0.25f, 3.0f));
}

TEST(RayCasterMesh, of_vertices_only_is_refused) {
    const OwnedMesh mesh = make_mesh();
    ASSERT_TRUE(mesh->alloc_vertex_data(3));
    mesh->set_bounding_sphere(vec4::ZERO, 100.0f);
    RayObjectIntersection result = marked_result();
    EXPECT_FALSE(RayCaster().cast_ray_object(ray_down(), mesh.get(), result));
    expect_untouched(result);
}

TEST(RayCasterMesh, without_what_its_counts_say_is_refused) {
    const OwnedMesh no_vertices = make_mesh();
    ASSERT_TRUE(no_vertices->alloc_face_data(3, false));
    const OwnedMesh other_layout = make_unit_triangle();
    other_layout->get_mesh_data()->separate_vertex_arrays = false;
    const OwnedMesh other_width = make_unit_triangle();
    other_width->get_mesh_data()->index_bits = 32;
    RayObjectIntersection result = marked_result();
    for (const OwnedMesh* const mesh : {&no_vertices, &other_layout, &other_width})
        EXPECT_FALSE(RayCaster().cast_ray_object(ray_down(), mesh->get(), result));
    EXPECT_FALSE(RayCaster().cast_ray_object(ray_down(), make_mesh_without_store().get(), result));
    expect_untouched(result);
}

TEST(RayCasterObject, that_is_no_mesh_is_refused) {
    const Owned<Polyline> polyline(new Polyline);
    ASSERT_TRUE(polyline->initialize(3, LINE_RENDER_MODE_LINE_STRIP));
    const Owned<Object> object(new Object);
    const Owned<Object> impostor(new Object);
    impostor->set_type(NODE_TYPE_MESH);
    RayObjectIntersection result = marked_result();
    for (Object* const other : {static_cast<Object*>(polyline.get()), object.get(), impostor.get(),
                                static_cast<Object*>(nullptr)})
        EXPECT_FALSE(RayCaster().cast_ray_object(ray_down(), other, result));
    EXPECT_FALSE(RayCaster()._cast_ray_mesh(ray_down(), nullptr, result));
    expect_untouched(result);
}

using Layout = std::tuple<VERTEX_FORMAT, bool, int, bool>;

/// Every format, separate or interleaved, in ordinary and in aligned memory, with either width of
/// index.
class RayCasterLayout : public testing::TestWithParam<Layout> {
protected:
    OwnedMesh make(unsigned long num_vertices, unsigned long num_faces) {
        const auto [format, separate, alignment, wide] = GetParam();
        OwnedMesh mesh = make_mesh(format);
        mesh->set_vertex_alloc_params(separate, alignment);
        EXPECT_TRUE(mesh->alloc_vertex_data(num_vertices));
        EXPECT_TRUE(mesh->alloc_face_data(num_faces, wide));
        EXPECT_EQ(mesh->get_mesh_data()->index_bits, wide ? 32 : 16);
        mesh->set_bounding_sphere(vec4::ZERO, 1e6f);
        return mesh;
    }
};

std::string layout_name(const testing::TestParamInfo<Layout>& row) {
    const auto [format, separate, alignment, wide] = row.param;
    return std::string(format_name(format)) + (separate ? "_separate" : "_interleaved") +
           (alignment > 0 ? "_aligned" : "") + (wide ? "_wide" : "_narrow");
}

INSTANTIATE_TEST_SUITE_P(of, RayCasterLayout,
                         testing::Combine(testing::Values(VERTEX_FORMAT_96, VERTEX_FORMAT_64,
                                                          VERTEX_FORMAT_32,
                                                          VERTEX_FORMAT_PHYSX_CLOTH),
                                          testing::Bool(), testing::Values(0, 64), testing::Bool()),
                         layout_name);

TEST_P(RayCasterLayout, is_read_as_it_lies) {
    const OwnedMesh mesh = make(9, 3);
    for (unsigned int i = 0; i < 3; ++i) {
        const float z = static_cast<float>(i);
        mesh->set_vertex_position(3 * i, vec4(0.0f, 0.0f, z, 1.0f));
        mesh->set_vertex_position(3 * i + 1, vec4(1.0f, 0.0f, z, 1.0f));
        mesh->set_vertex_position(3 * i + 2, vec4(0.0f, 1.0f, z, 5.0f));
        mesh->set_face_indexes(i, 3 * i, 3 * i + 1, 3 * i + 2);
    }
    RayObjectIntersection result;
    EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(), mesh.get(), result));
    EXPECT_EQ(result.face_index, 2u);
    EXPECT_EQ(result.distance, 3.0f);
    EXPECT_EQ(result.position, vec3(0.25f, 0.25f, 2.0f));
}

TEST_P(RayCasterLayout, takes_an_index_out_of_range_for_the_origin_of_the_mesh) {
    const bool wide = std::get<3>(GetParam());
    for (unsigned int bad : {3u, 0xffffu, wide ? 0xffffffffu : 0xffffu}) {
        const OwnedMesh mesh = make(3, 6);
        mesh->set_vertex_position(1, vec4(1.0f, 0.0f, 0.0f, 1.0f));
        mesh->set_vertex_position(2, vec4(0.0f, 1.0f, 0.0f, 1.0f));
        mesh->set_position(3.0f, 0.0f, 0.0f);
        for (const unsigned int face : {1u, 5u}) { // among four faces, and among those left over
            for (unsigned int i = 0; i < 6; ++i)
                mesh->set_face_indexes(i, bad, bad, bad);
            mesh->set_face_indexes(face, 1, 2, bad);
            RayObjectIntersection result;
            EXPECT_TRUE(RayCaster().cast_ray_object(ray_down(3.25f, 0.25f), mesh.get(), result));
            EXPECT_EQ(result.face_index, face);
            EXPECT_EQ(result.position, vec3(3.25f, 0.25f, 0.0f));
        }
    }
}

/// Numbers of one seed, the odd ones among them now and then.
class Dice {
public:
    explicit Dice(unsigned int seed)
        : engine(seed) {}

    float number(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(engine);
    }
    unsigned int below(unsigned int end) { return static_cast<unsigned int>(engine() % end); }
    bool once_in(unsigned int n) { return below(n) == 0; }

    /// A position in a cube of edge 4, on a coarse grid often enough to make ties and flat faces.
    vec4 position() {
        vec4 p(number(-2.0f, 2.0f), number(-2.0f, 2.0f), number(-2.0f, 2.0f), 1.0f);
        if (once_in(3))
            p = vec4(std::round(p.x), std::round(p.y), std::round(p.z), 1.0f);
        return p;
    }
    float odd_number() {
        constexpr float odd[] = {nan, infinity, -infinity, 3e38f, -1e20f, 1e-40f, -0.0f, 1e-20f};
        return odd[below(8)];
    }

private:
    std::mt19937 engine;
};

void fill(Mesh& mesh, Dice& dice, bool with_odd_numbers) {
    const auto num_vertices = static_cast<unsigned int>(mesh.get_num_vertices(nullptr));
    for (unsigned int i = 0; i < num_vertices; ++i) {
        vec4 position = dice.position();
        if (with_odd_numbers && dice.once_in(8))
            position.y = dice.odd_number();
        mesh.set_vertex_position(i, position);
    }
    for (unsigned long i = 0; i < mesh.get_num_faces(nullptr); ++i)
        mesh.set_face_indexes(i, dice.below(num_vertices), dice.below(num_vertices),
                              dice.once_in(16) ? num_vertices + dice.below(9)
                                               : dice.below(num_vertices));
}

void place(Mesh& mesh, Dice& dice) {
    mesh.set_position(dice.number(-3.0f, 3.0f), dice.number(-3.0f, 3.0f), dice.number(-3.0f, 3.0f));
    mesh.set_orientation_euler_xyz(dice.number(0.0f, 360.0f), dice.number(0.0f, 360.0f),
                                   dice.number(0.0f, 360.0f));
    mesh.set_scale(dice.number(0.5f, 2.0f), dice.number(-2.0f, 2.0f),
                   dice.once_in(8) ? 0.0f : dice.number(0.5f, 2.0f));
}

/// Mostly through the mesh, often exactly at one of its vertices.
Ray ray_at(Mesh& mesh, Dice& dice) {
    Ray ray;
    ray.origin = dice.position() * dice.number(1.0f, 5.0f);
    vec4 target = mesh.get_absolute_transform() * dice.position();
    if (dice.once_in(3))
        target = mesh.get_absolute_transform() *
                 mesh.get_vertex_position(
                     dice.below(static_cast<unsigned int>(mesh.get_num_vertices(nullptr))));
    ray.direction.make_vec(target, ray.origin);
    if (dice.once_in(2))
        ray.direction.normalize();
    return ray;
}

/// @return whether there was a hit
bool expect_as_plain(const Ray& ray, Mesh& mesh, bool stop_at_first_hit) {
    RayObjectIntersection quick = marked_result(stop_at_first_hit);
    RayObjectIntersection plain = quick;
    EXPECT_EQ(RayCaster().cast_ray_object(ray, &mesh, quick), plain_ray_cast(ray, mesh, plain));
    EXPECT_TRUE(same_bits(quick, plain))
        << "face " << quick.face_index << " at " << quick.distance << " and not face "
        << plain.face_index << " at " << plain.distance;
    return quick.hit;
}

TEST_P(RayCasterLayout, gives_the_bits_of_the_plain_loop) {
    Dice dice(20260);
    int hits = 0;
    int misses = 0;
    for (int round = 0; round < 40; ++round) {
        const OwnedMesh mesh = make(3 + dice.below(12), 1 + dice.below(40));
        fill(*mesh, dice, round % 2 == 1);
        place(*mesh, dice);
        for (int shot = 0; shot < 20; ++shot) {
            const Ray ray = ray_at(*mesh, dice);
            for (const bool stop : {false, true})
                ++(expect_as_plain(ray, *mesh, stop) ? hits : misses);
        }
    }
    EXPECT_GT(hits, 400);
    EXPECT_GT(misses, 100);
}

TEST(RayCasterMesh, gives_the_bits_of_the_plain_loop_for_odd_rays_and_transforms) {
    Dice dice(51);
    for (int round = 0; round < 2000; ++round) {
        const OwnedMesh mesh = make_mesh(6, 9);
        mesh->set_bounding_sphere(vec4::ZERO, infinity);
        fill(*mesh, dice, false);
        mat4 transform;
        for (float& element : transform.m)
            element = dice.once_in(6) ? dice.odd_number() : dice.number(-2.0f, 2.0f);
        mesh->set_transform(transform);
        Ray ray = ray_at(*mesh, dice);
        for (float* const number : {&ray.origin.x, &ray.direction.y, &ray.direction.z})
            if (dice.once_in(3))
                *number = dice.odd_number();
        expect_as_plain(ray, *mesh, dice.once_in(2));
    }
}

} // namespace

} // namespace orvex_test
