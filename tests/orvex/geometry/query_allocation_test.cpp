// Counts what questions about geometry allocate.

#include <gtest/gtest.h>

#include "orvex/geometry/lines/mini_spline.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/rays/ray_caster.h"
#include "orvex/scene/camera.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/support/heap.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(RayCasterAllocations, are_none) {
    const Owned<Camera> camera(new Camera);
    camera->set_viewport(0, 0, 100, 100);
    const CountAllocations of_the_mesh;
    const OwnedMesh mesh = make_unit_triangle();
    EXPECT_GT(of_the_mesh.count(), 0u);
    ASSERT_TRUE(mesh->update_bounding_sphere(nullptr));
    mesh->set_position(1.0f, 2.0f, 3.0f);
    const RayCaster caster;
    Ray ray;
    vec4 place;
    RayObjectIntersection result;
    const CountAllocations allocations;
    EXPECT_TRUE(caster.get_ray(camera.get(), 50, 50, ray));
    EXPECT_TRUE(caster.get_ray_ortho_cam(camera.get(), 50, 50, ray));
    EXPECT_TRUE(caster.project_object_position_into_viewport(camera.get(), mesh.get(), place));
    ray.origin = vec4(1.25f, 2.25f, 9.0f, 1.0f);
    ray.direction = vec4(0.0f, 0.0f, -1.0f, 0.0f);
    EXPECT_TRUE(caster.cast_ray_object(ray, mesh.get(), result));
    EXPECT_EQ(allocations.count(), 0u);
}

TEST(MiniSplineAllocations, are_none_once_its_keys_lie_side_by_side) {
    const Owned<MiniSpline> spline(new MiniSpline);
    const CountAllocations of_the_keys;
    spline->add_keyframe(0.0f, 1.0f, 2.0f, 3.0f);
    spline->add_keyframe(1.0f, 4.0f, 5.0f, 6.0f);
    vec3 value;
    spline->get_value(0.5f, &value.x);
    EXPECT_GT(of_the_keys.count(), 0u);
    const CountAllocations allocations;
    spline->set_keyframe(1, 1.0f, 7.0f, 8.0f, 9.0f);
    spline->get_value(1.0f, &value.x);
    EXPECT_EQ(allocations.count(), 0u);
    EXPECT_EQ(value.x, 7.0f);
}

} // namespace

} // namespace orvex_test
