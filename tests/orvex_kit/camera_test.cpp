#include "orvex_kit/camera.h"

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orvex/math/mat4.h>
#include <orvex/math/quat.h>
#include <orvex/scene/camera.h>
#include <orvex/scene/viewport.h>

namespace orvex_test {

namespace {

namespace kit = orvex::kit;
using kit::Intrinsics;
using kit::Pose;
using kit::Screen;
using orvex::vec4;

constexpr Screen screen{640, 480};
constexpr double infinite = std::numeric_limits<double>::infinity();

/// A camera that was measured: another focus each way, the middle off the picture's.
constexpr Intrinsics odd{{{700.0, 3.0, 300.25}, {0.0, 650.0, 255.5}, {0.0, 0.0, 1.0}}};

/// Turned a quarter to the right, at (1, 2, 3): looks along x.
constexpr Pose along_x{
    {{0.0, 0.0, 1.0, -3.0}, {0.0, -1.0, 0.0, 2.0}, {1.0, 0.0, 0.0, -1.0}, {0.0, 0.0, 0.0, 1.0}}};

class CameraTest : public testing::Test {
protected:
    CameraTest()
        : engine(new orvex::Camera) {}
    ~CameraTest() override { engine->release(nullptr, nullptr); }

    /// Where the engine's matrices put a point, in pixels.
    vec4 place(const vec4& point, const Screen& on) {
        const vec4 clip = engine->get_view_projection_matrix() * point;
        return {(clip.x / clip.w + 1) / 2 * static_cast<float>(on.width),
                (1 - clip.y / clip.w) / 2 * static_cast<float>(on.height), clip.z / clip.w, clip.w};
    }

    /// Compares the engine's places with the camera's own, for points before it.
    void expect_same_places(const kit::Camera& camera, const Screen& on) {
        camera.apply(*engine, on.width, on.height);
        std::mt19937 random(7);
        std::uniform_real_distribution<double> across(0.0, 1.0);
        std::uniform_real_distribution<float> way(1.0f, 40.0f);
        for (int i = 0; i < 200; ++i) {
            const double x = across(random) * on.width;
            const double y = across(random) * on.height;
            const orvex::Ray ray = camera.ray(x, y, on);
            const float far = way(random);
            const vec4 point(ray.origin.x + ray.direction.x * far,
                             ray.origin.y + ray.direction.y * far,
                             ray.origin.z + ray.direction.z * far, 1.0f);
            const auto own = camera.project(point, on);
            ASSERT_TRUE(own);
            EXPECT_NEAR(own->x, x, 0.01);
            EXPECT_NEAR(own->y, y, 0.01);
            const vec4 seen = place(point, on);
            EXPECT_NEAR(own->x, double(seen.x), 0.01);
            EXPECT_NEAR(own->y, double(seen.y), 0.01);
        }
    }

    orvex::Camera* engine;
};

TEST_F(CameraTest, sees_the_origin_in_the_middle_at_first) {
    const kit::Camera camera;
    const auto middle = camera.project(vec4(0, 0, 0, 1), screen);
    ASSERT_TRUE(middle);
    EXPECT_DOUBLE_EQ(middle->x, 320.0);
    EXPECT_DOUBLE_EQ(middle->y, 240.0);
    EXPECT_DOUBLE_EQ(middle->depth, 10.0);
    EXPECT_EQ(camera.near(), 0.1f);
    EXPECT_EQ(camera.far(), 1000.0f);
    // Right is right, and up is up, which is a smaller y.
    EXPECT_GT(camera.project(vec4(1, 0, 0, 1), screen)->x, 320.0);
    EXPECT_LT(camera.project(vec4(0, 1, 0, 1), screen)->y, 240.0);
}

TEST_F(CameraTest, sees_from_edge_to_edge_what_its_opening_holds) {
    kit::Camera camera;
    camera.set_opening(90.0f);
    EXPECT_NEAR(camera.project(vec4(0, 10, 0, 1), screen)->y, 0.0, 1e-9);
    EXPECT_NEAR(camera.project(vec4(0, -10, 0, 1), screen)->y, 480.0, 1e-9);
    const auto k = camera.intrinsics(640, 480);
    ASSERT_TRUE(k);
    EXPECT_NEAR((*k)[0][0], 240.0, 1e-9);
    EXPECT_NEAR((*k)[1][1], 240.0, 1e-9);
    EXPECT_EQ((*k)[0][2], 320.0);
    EXPECT_EQ((*k)[1][2], 240.0);
}

TEST_F(CameraTest, sees_nothing_that_is_beside_or_behind_it) {
    const kit::Camera camera;
    EXPECT_FALSE(camera.project(vec4(0, 0, 10, 1), screen));
    EXPECT_FALSE(camera.project(vec4(3, 0, 10, 1), screen));
    EXPECT_FALSE(camera.project(vec4(0, 0, 11, 1), screen));
}

TEST_F(CameraTest, gives_the_engine_the_numbers_that_a_host_would) {
    orvex::Camera* const wanted = new orvex::Camera;
    const vec4 eye(3, 2, 5, 1);
    const vec4 target(0, 1, -1, 1);
    const vec4 up(0, 1, 0, 0);
    wanted->set_viewport(0, 0, 640, 480);
    wanted->build_projection_persp(42.0f, 640.0f / 480.0f, 0.5f, 60.0f, true);
    wanted->set_up(up);
    wanted->set_view_params(eye, target, up, true);
    kit::Camera camera;
    camera.look_at(eye, target, up);
    camera.set_opening(42.0f);
    camera.set_clip(0.5f, 60.0f);
    camera.apply(*engine, 640, 480);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(engine->get_view_matrix().m[i], wanted->get_view_matrix().m[i]) << i;
        EXPECT_EQ(engine->get_projection_matrix().m[i], wanted->get_projection_matrix().m[i]) << i;
    }
    EXPECT_EQ(engine->get_viewport().width, 640);
    EXPECT_EQ(engine->get_viewport().height, 480);
    EXPECT_EQ(engine->get_fov(), 42.0f);
    wanted->release(nullptr, nullptr);
}

TEST_F(CameraTest, leaves_the_engines_horizon_as_the_host_set_it) {
    engine->set_rotate_around_fixed_yaw_axis(false);
    kit::Camera camera;
    camera.look_at(vec4(3, 2, 5, 1), vec4(0, 0, 0, 1));
    camera.apply(*engine, 640, 480);
    EXPECT_FALSE(engine->get_rotate_around_fixed_yaw_axis());
    const vec4 seen = place(vec4(0, 1, 0, 1), screen);
    EXPECT_NEAR(seen.x, 320.0f, 0.01f) << "the horizon is level";
}

TEST_F(CameraTest, has_the_engine_see_what_it_says_it_sees) {
    kit::Camera looking;
    looking.look_at(vec4(3, 2, 5, 1), vec4(0, 1, -1, 1));
    looking.set_opening(60.0f);
    expect_same_places(looking, screen);
    expect_same_places(looking, {200, 700});

    kit::Camera measured;
    ASSERT_TRUE(measured.set_pose(along_x));
    ASSERT_TRUE(measured.set_intrinsics(odd));
    expect_same_places(measured, screen);

    kit::Camera parallel;
    parallel.look_at(vec4(-4, 8, 2, 1), vec4(0, 0, 0, 1), vec4(1, 0, 0, 0));
    parallel.set_parallel(12.0f);
    expect_same_places(parallel, screen);
}

TEST_F(CameraTest, looks_straight_down_and_upside_down_as_well) {
    for (const vec4& up : {vec4(0, 1, 0, 0), vec4(0, -1, 0, 0), vec4(0, 0, 0, 0),
                           vec4(0.3f, -5, 0.1f, 0), vec4(NAN, 0, 0, 0)})
        for (const vec4& eye : {vec4(0, 9, 0, 1), vec4(0, -9, 0, 1), vec4(0, 0, 9, 1),
                                vec4(0, 0, -9, 1), vec4(0, 1e-3f, 9, 1), vec4(7, 0, 0, 1)}) {
            kit::Camera camera;
            camera.look_at(eye, vec4(0, 0, 0, 1), up);
            expect_same_places(camera, screen);
            EXPECT_NEAR(camera.project(vec4(0, 0, 0, 1), screen)->x, 320.0, 1e-3);
        }
}

TEST_F(CameraTest, takes_a_pose_and_gives_it_back) {
    kit::Camera camera;
    ASSERT_TRUE(camera.set_pose(along_x));
    EXPECT_EQ(camera.pose(), along_x);
    EXPECT_EQ(camera.eye(), vec4(1, 2, 3, 1));
    const auto seen = camera.project(vec4(11, 2, 3, 1), screen);
    ASSERT_TRUE(seen);
    EXPECT_DOUBLE_EQ(seen->x, 320.0);
    EXPECT_DOUBLE_EQ(seen->depth, 10.0);
    EXPECT_GT(camera.project(vec4(11, 2, 4, 1), screen)->x, 320.0);
    EXPECT_LT(camera.project(vec4(11, 3, 3, 1), screen)->y, 240.0);
    camera.apply(*engine, 640, 480);
    const vec4 ahead = engine->get_view_vector();
    EXPECT_NEAR(ahead.x, 1.0f, 1e-6f);
    // The engine's own inverse is that of the view.
    const orvex::mat4 one = engine->get_inv_view_matrix() * engine->get_view_matrix();
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(one.m[i], i % 5 == 0 ? 1.0f : 0.0f, 1e-5f);
}

TEST_F(CameraTest, gives_the_pose_of_what_it_looks_at) {
    kit::Camera looking;
    looking.look_at(vec4(3, 2, 5, 1), vec4(0, 1, -1, 1), vec4(0, 0, 1, 0));
    kit::Camera posed;
    ASSERT_TRUE(posed.set_pose(looking.pose()));
    EXPECT_EQ(posed.pose(), looking.pose());
    for (const vec4& point : {vec4(0, 0, 0, 1), vec4(1, 0, -3, 1), vec4(-1, 1, 2, 1)}) {
        EXPECT_EQ(posed.project(point, screen)->x, looking.project(point, screen)->x);
        EXPECT_EQ(posed.project(point, screen)->y, looking.project(point, screen)->y);
    }
}

TEST_F(CameraTest, takes_every_rotation_to_the_engine) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> part(-1.0f, 1.0f);
    std::vector<vec4> eyes;
    for (int i = 0; i < 60; ++i)
        eyes.push_back(vec4(part(random), part(random), part(random), 1));
    // Half turns, of which each component of a quaternion may be the largest.
    for (const vec4& eye : {vec4(0, 0, 1, 1), vec4(0, 0, -1, 1), vec4(1, 0, 0, 1),
                            vec4(-1, 0, 0, 1), vec4(0, 1, 0, 1), vec4(0, -1, 0, 1)})
        eyes.push_back(eye);
    for (const vec4& eye : eyes)
        for (const vec4& up : {vec4(1, 0, 0, 0), vec4(-1, 0, 0, 0), vec4(0, 1, 0, 0),
                               vec4(0, -1, 0, 0), vec4(0, 0, 1, 0), vec4(0, 0, -1, 0)}) {
            kit::Camera looking;
            looking.look_at(eye, vec4(0, 0, 0, 1), up);
            kit::Camera camera;
            ASSERT_TRUE(camera.set_pose(looking.pose()));
            camera.apply(*engine, 640, 480);
            const orvex::quat q = engine->get_orientation();
            const vec4 ahead = engine->get_view_vector();
            const vec4 upward = engine->get_up_vector();
            const Pose pose = camera.pose();
            EXPECT_NEAR(double(ahead.x), pose[2][0], 1e-6);
            EXPECT_NEAR(double(ahead.y), pose[2][1], 1e-6);
            EXPECT_NEAR(double(upward.y), -pose[1][1], 1e-6);
            EXPECT_NEAR(double(upward.z), -pose[1][2], 1e-6);
            EXPECT_NEAR(q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w, 1.0f, 1e-5f);
        }
}

TEST_F(CameraTest, straightens_what_rounding_has_bent) {
    const double s = 0.7071;
    kit::Camera camera;
    ASSERT_TRUE(camera.set_pose({{{s, 0, -s, 1}, {0, 1, 0, 2}, {s, 0, s, 3}, {0, 0, 0, 1}}}));
    const Pose pose = camera.pose();
    for (std::size_t a = 0; a < 3; ++a)
        for (std::size_t b = 0; b < 3; ++b) {
            double product = 0.0;
            for (std::size_t i = 0; i < 3; ++i)
                product += pose[a][i] * pose[b][i];
            EXPECT_NEAR(product, a == b ? 1.0 : 0.0, 1e-15);
        }
    EXPECT_NEAR(pose[0][0], s, 1e-4);
    EXPECT_EQ(pose[1][3], 2.0);
}

TEST_F(CameraTest, refuses_a_pose_that_is_none_and_stays_where_it_is) {
    struct Row {
        Pose pose;
        std::string reason;
    };
    Pose endless = along_x;
    endless[1][3] = infinite;
    Pose tilted = along_x;
    tilted[3][0] = 0.5;
    Pose doubled = along_x;
    doubled[0][2] = 2.0;
    Pose mirrored = along_x;
    mirrored[0][2] = -1.0;
    Pose bent = along_x;
    bent[0][0] = 0.02;
    const std::string no_rotation =
        "the left three columns of a pose are no rotation: its rows have length 1 and stand at "
        "right angles, and it mirrors nothing";
    for (const Row& row :
         {Row{endless, "a pose holds a number that isn't finite"},
          Row{tilted, "the last row of a pose isn't 0 0 0 1"}, Row{doubled, no_rotation},
          Row{mirrored, no_rotation}, Row{bent, no_rotation},
          Row{Pose{}, "the last row of a pose isn't 0 0 0 1"}}) {
        kit::Camera camera;
        ASSERT_TRUE(camera.set_pose(along_x));
        EXPECT_EQ(camera.set_pose(row.pose).reason(), row.reason);
        EXPECT_EQ(camera.pose(), along_x);
    }
}

TEST_F(CameraTest, keeps_measured_intrinsics_to_the_digit) {
    kit::Camera camera;
    ASSERT_TRUE(camera.set_intrinsics(odd));
    EXPECT_EQ(camera.intrinsics(640, 480), odd);
    EXPECT_EQ(camera.intrinsics(1, 1), odd);
    // Ten before the eye, one to the right and two down.
    const auto seen = camera.project(vec4(1, -2, 0, 1), screen);
    EXPECT_DOUBLE_EQ(seen->x, 70.0 + 0.6 + 300.25);
    EXPECT_DOUBLE_EQ(seen->y, 130.0 + 255.5);
    camera.apply(*engine, 640, 480);
    EXPECT_NEAR(engine->get_fov(), 2 * std::atan(240.0 / 650.0) * 180 / 3.14159265, 1e-4);
    EXPECT_TRUE(engine->is_perspective_projection());
}

TEST_F(CameraTest, sees_the_same_by_an_opening_and_by_its_intrinsics) {
    kit::Camera opened;
    opened.set_opening(50.0f);
    kit::Camera measured;
    ASSERT_TRUE(measured.set_intrinsics(*opened.intrinsics(640, 480)));
    opened.apply(*engine, 640, 480);
    const orvex::mat4 first = engine->get_projection_matrix();
    measured.apply(*engine, 640, 480);
    const orvex::mat4 second = engine->get_projection_matrix();
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(first.m[i], second.m[i], 1e-6f) << i;
}

TEST_F(CameraTest, refuses_intrinsics_that_are_none_and_sees_as_before) {
    struct Row {
        Intrinsics intrinsics;
        std::string reason;
    };
    Intrinsics endless = odd;
    endless[0][2] = std::nan("");
    Intrinsics lower = odd;
    lower[1][0] = 1.0;
    Intrinsics scaled = odd;
    scaled[2][2] = 2.0;
    Intrinsics mirrored = odd;
    mirrored[1][1] = -650.0;
    const std::string form = "intrinsics are fx s cx, 0 fy cy, 0 0 1, row by row";
    for (const Row& row :
         {Row{endless, "intrinsics hold a number that isn't finite"}, Row{lower, form},
          Row{scaled, form}, Row{mirrored, "fx and fy of intrinsics are above 0"}}) {
        kit::Camera camera;
        ASSERT_TRUE(camera.set_intrinsics(odd));
        EXPECT_EQ(camera.set_intrinsics(row.intrinsics).reason(), row.reason);
        EXPECT_EQ(camera.intrinsics(640, 480), odd);
    }
}

TEST_F(CameraTest, sees_without_perspective) {
    kit::Camera camera;
    camera.set_parallel(8.0f);
    EXPECT_FALSE(camera.intrinsics(640, 480));
    for (const float z : {0.0f, 5.0f, -500.0f}) {
        const auto seen = camera.project(vec4(1, 4, z, 1), screen);
        EXPECT_DOUBLE_EQ(seen->x, 320.0 + 60.0);
        EXPECT_DOUBLE_EQ(seen->y, 0.0);
    }
    const orvex::Ray ray = camera.ray(380.0, 0.0, screen);
    EXPECT_EQ(ray.origin, vec4(1, 4, 10, 1));
    EXPECT_EQ(ray.direction, vec4(0, 0, -1, 0));
    camera.apply(*engine, 640, 480);
    EXPECT_TRUE(engine->is_ortho_projection());
    camera.set_opening(35.0f);
    EXPECT_TRUE(camera.intrinsics(640, 480));
}

TEST_F(CameraTest, casts_rays_through_what_it_sees) {
    kit::Camera camera;
    ASSERT_TRUE(camera.set_pose(along_x));
    ASSERT_TRUE(camera.set_intrinsics(odd));
    const vec4 point(9, 1, 5, 1);
    const auto seen = camera.project(point, screen);
    const orvex::Ray ray = camera.ray(seen->x, seen->y, screen);
    EXPECT_EQ(ray.origin, vec4(1, 2, 3, 1));
    EXPECT_NEAR(ray.direction.length(), 1.0f, 1e-6f);
    const float way = 8.0f / ray.direction.x;
    EXPECT_NEAR(ray.origin.y + ray.direction.y * way, 1.0f, 1e-5f);
    EXPECT_NEAR(ray.origin.z + ray.direction.z * way, 5.0f, 1e-5f);
}

TEST_F(CameraTest, counts_in_a_windows_units_where_these_are_larger_than_pixels) {
    const kit::Camera camera;
    const Screen fine{1280, 960, 2.0};
    const vec4 point(1, 2, 0, 1);
    const auto coarse = camera.project(point, screen);
    const auto same = camera.project(point, fine);
    EXPECT_NEAR(same->x, coarse->x, 1e-9);
    EXPECT_NEAR(same->y, coarse->y, 1e-9);
    const orvex::Ray a = camera.ray(100.0, 50.0, screen);
    const orvex::Ray b = camera.ray(100.0, 50.0, fine);
    EXPECT_EQ(a.direction, b.direction);
}

TEST_F(CameraTest, ignores_what_means_nothing) {
    kit::Camera camera;
    camera.look_at(vec4(1, 2, 3, 1), vec4(4, 5, 6, 1));
    const Pose before = camera.pose();
    camera.look_at(vec4(1, 1, 1, 1), vec4(1, 1, 1, 1));
    camera.look_at(vec4(NAN, 1, 1, 1), vec4(0, 0, 0, 1));
    camera.look_at(vec4(0, 1, 1, 1), vec4(0, INFINITY, 0, 1));
    EXPECT_EQ(camera.pose(), before);
    camera.set_opening(0.0f);
    camera.set_opening(180.0f);
    camera.set_opening(NAN);
    camera.set_parallel(0.0f);
    camera.set_parallel(INFINITY);
    camera.set_parallel(NAN);
    EXPECT_EQ(camera.intrinsics(640, 480), kit::Camera().intrinsics(640, 480));
    camera.set_clip(2.0f, 2.0f);
    camera.set_clip(0.0f, 2.0f);
    camera.set_clip(1.0f, INFINITY);
    camera.set_clip(NAN, 2.0f);
    EXPECT_EQ(camera.near(), 0.1f);
    EXPECT_EQ(camera.far(), 1000.0f);
}

} // namespace

} // namespace orvex_test
