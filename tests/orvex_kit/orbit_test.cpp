#include "orvex_kit/orbit.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

using namespace orvex::kit;
using orvex::vec4;

constexpr Screen screen{640, 480};

/// The corners of a box, far from the origin.
Extent box() {
    Extent extent;
    extent.middle = vec4(10, 20, 30, 1);
    for (float x : {-3.0f, 3.0f})
        for (float y : {-1.0f, 1.0f})
            for (float z : {-2.0f, 2.0f})
                extent.points.push_back(vec4(10 + x, 20 + y, 30 + z, 1));
    return extent;
}

const Angle front{0.0f, 0.0f, UpAxis::y};

vec4 toward(const Orbit& orbit) {
    vec4 eye = orbit.camera(screen).eye();
    const vec4 target = orbit.place().target;
    return {eye.x - target.x, eye.y - target.y, eye.z - target.z, 0.0f};
}

/// How much of the picture the box takes, 1 from edge to edge; 9 if a point isn't seen at all.
double fullness(const Camera& camera, const Extent& extent, const Screen& on) {
    double fullest = 0.0;
    for (const vec4& point : extent.points) {
        const auto seen = camera.project(point, on);
        if (!seen || seen->depth < double(camera.near()) || seen->depth > double(camera.far()))
            return 9.0;
        fullest = std::max({fullest, std::abs(seen->x * on.scale / on.width * 2 - 1),
                            std::abs(seen->y * on.scale / on.height * 2 - 1)});
    }
    return fullest;
}

TEST(Orbit, begins_around_the_origin) {
    const Orbit orbit;
    EXPECT_EQ(orbit.place().target, vec4(0, 0, 0, 1));
    EXPECT_EQ(orbit.place().distance, 10.0f);
    EXPECT_NEAR(toward(orbit).length(), 10.0f, 1e-5f);
}

TEST(Orbit, frames_a_model_on_the_whole_way_around_in_windows_of_any_shape) {
    const Extent extent = box();
    Orbit orbit(extent);
    EXPECT_EQ(orbit.place().target, extent.middle);
    double fullest = 0.0;
    for (int view = 0; view < 72; ++view) {
        orbit.turn(20, 0);
        for (const Screen& on : {Screen{500, 500}, Screen{900, 300}, Screen{300, 900, 1.5}}) {
            const double full = fullness(orbit.camera(on), extent, on);
            EXPECT_LE(full, 0.96) << view << " " << on.width;
            fullest = std::max(fullest, full);
        }
    }
    EXPECT_GT(fullest, 0.94);
}

TEST(Orbit, turns_a_degree_with_four_units_of_the_mouse) {
    Orbit orbit(box(), front);
    orbit.turn(-4.0 * 30, 0);
    EXPECT_NEAR(orbit.place().angle.azimuth, 30.0f, 1e-4f);
    orbit.turn(0, 4.0 * 20);
    EXPECT_NEAR(orbit.place().angle.elevation, 20.0f, 1e-4f);
    // As the mouse holds the model, the eye goes to the right and up.
    EXPECT_GT(toward(orbit).x, 0.0f);
    EXPECT_GT(toward(orbit).y, 0.0f);
}

TEST(Orbit, goes_round_for_ever) {
    Orbit orbit(box(), front);
    for (int i = 0; i < 100000; ++i)
        orbit.turn(-4.0 * 90, 0);
    orbit.turn(-4.0, 0);
    EXPECT_NEAR(orbit.place().angle.azimuth, 1.0f, 1e-3f);
}

TEST(Orbit, stops_at_the_poles_and_still_turns_there) {
    Orbit orbit(box(), front);
    orbit.turn(0, 1e6);
    EXPECT_EQ(orbit.place().angle.elevation, 90.0f);
    EXPECT_NEAR(toward(orbit).y, orbit.place().distance, 1e-3f);
    const Pose before = orbit.camera(screen).pose();
    EXPECT_NEAR(before[0][0], 1.0, 1e-6) << "right stays right";
    orbit.turn(-4.0 * 90, 0);
    EXPECT_NEAR(orbit.camera(screen).pose()[0][2], -1.0, 1e-6);
    orbit.turn(0, -1e6);
    EXPECT_EQ(orbit.place().angle.elevation, -90.0f);
}

TEST(Orbit, pans_so_that_the_model_follows_the_mouse) {
    for (const double scale : {1.0, 2.0}) {
        const Screen on{640, 480, scale};
        Orbit orbit(box());
        const vec4 middle = box().middle;
        const auto before = orbit.camera(on).project(middle, on);
        orbit.pan(30, -20, on);
        const auto after = orbit.camera(on).project(middle, on);
        EXPECT_NEAR(after->x - before->x, 30.0, 1e-3);
        EXPECT_NEAR(after->y - before->y, -20.0, 1e-3);
        EXPECT_NEAR(toward(orbit).length(), orbit.place().distance, 1e-4f);
    }
}

TEST(Orbit, pans_no_farther_than_the_model_can_be_found) {
    const Extent extent = box();
    Orbit orbit(extent);
    const float way = orbit.place().distance;
    orbit.pan(1e9, 1e9, screen);
    const vec4 target = orbit.place().target;
    const vec4 away(target.x - 10, target.y - 20, target.z - 30, 0);
    EXPECT_NEAR(away.length(), way, 1e-3f);
    // All of it lies between the clip planes when the eye goes back.
    orbit.turn(4 * 180, 0);
    for (const vec4& point : extent.points)
        if (const auto seen = orbit.camera(screen).project(point, screen))
            EXPECT_LT(seen->depth, double(orbit.camera(screen).far()));
}

TEST(Orbit, comes_nearer_by_a_tenth_a_notch_within_its_limits) {
    Orbit orbit(box());
    const float way = orbit.place().distance;
    orbit.zoom(1);
    EXPECT_NEAR(orbit.place().distance, way * 0.9f, 1e-4f);
    orbit.zoom(-1);
    EXPECT_NEAR(orbit.place().distance, way, 1e-4f);
    orbit.zoom(1000);
    EXPECT_NEAR(orbit.place().distance, way / 10, 1e-4f);
    orbit.zoom(-1e9);
    EXPECT_NEAR(orbit.place().distance, way * 10, 1e-3f);
    EXPECT_LT(fullness(orbit.camera(screen), box(), screen), 0.2);
}

TEST(Orbit, moves_by_the_keys_that_are_held) {
    Orbit orbit(box(), front);
    const float way = orbit.place().distance;
    OrbitKeys keys;
    EXPECT_FALSE(orbit.move(keys, 1.0));
    keys.right = true;
    keys.up = true;
    EXPECT_TRUE(orbit.move(keys, 0.5));
    EXPECT_NEAR(orbit.place().angle.azimuth, 45.0f, 1e-4f);
    EXPECT_NEAR(orbit.place().angle.elevation, 45.0f, 1e-4f);
    keys.left = true;
    keys.down = true;
    EXPECT_FALSE(orbit.move(keys, 0.5)) << "keys against each other";
    EXPECT_NEAR(orbit.place().angle.azimuth, 45.0f, 1e-4f);
    OrbitKeys nearer;
    nearer.nearer = true;
    EXPECT_TRUE(orbit.move(nearer, 1.0));
    EXPECT_NEAR(orbit.place().distance, way / 2, 1e-4f);
    OrbitKeys farther;
    farther.farther = true;
    EXPECT_TRUE(orbit.move(farther, 2.0));
    EXPECT_NEAR(orbit.place().distance, way * 2, 1e-3f);
    EXPECT_TRUE(orbit.move(farther, 0.0)) << "it is held, if for no time yet";
}

TEST(Orbit, pans_half_a_picture_a_second_by_keys) {
    Orbit orbit(box(), front);
    OrbitKeys keys;
    keys.pans = true;
    keys.right = true;
    EXPECT_TRUE(orbit.move(keys, 0.5));
    const auto seen = orbit.camera(screen).project(box().middle, screen);
    EXPECT_NEAR(seen->x, 320.0 - 120.0, 1e-3);
    EXPECT_NEAR(seen->y, 240.0, 1e-3);
    EXPECT_EQ(orbit.place().angle.azimuth, 0.0f);
}

TEST(Orbit, returns_to_where_it_framed_and_goes_on_where_it_stood) {
    Orbit orbit(box());
    const OrbitPlace begin = orbit.place();
    orbit.turn(123, 45);
    orbit.zoom(3);
    orbit.pan(10, 20, screen);
    const OrbitPlace stood = orbit.place();
    const Pose seen = orbit.camera(screen).pose();
    orbit.reset();
    EXPECT_EQ(orbit.place().target, begin.target);
    EXPECT_EQ(orbit.place().distance, begin.distance);
    EXPECT_EQ(orbit.place().angle.azimuth, begin.angle.azimuth);
    Orbit another(box());
    another.go_to(stood);
    EXPECT_EQ(another.camera(screen).pose(), seen);
}

TEST(Orbit, keeps_within_limits_of_the_hosts) {
    Orbit orbit(box());
    const float way = orbit.place().distance;
    orbit.turn(0, -1e6);
    OrbitLimits limits;
    limits.lowest = 5.0f;
    limits.highest = 60.0f;
    limits.nearest = 0.5f;
    limits.farthest = 2.0f;
    limits.reach = 0.0f;
    orbit.set_limits(limits);
    EXPECT_EQ(orbit.place().angle.elevation, 5.0f);
    orbit.turn(0, 1e6);
    EXPECT_EQ(orbit.place().angle.elevation, 60.0f);
    orbit.zoom(100);
    EXPECT_FLOAT_EQ(orbit.place().distance, way / 2);
    orbit.zoom(-100);
    EXPECT_FLOAT_EQ(orbit.place().distance, way * 2);
    orbit.pan(100, 100, screen);
    EXPECT_EQ(orbit.place().target, box().middle);
    OrbitPlace far;
    far.distance = 1e6f;
    far.angle.elevation = -20.0f;
    orbit.go_to(far);
    EXPECT_FLOAT_EQ(orbit.place().distance, way * 2);
    EXPECT_EQ(orbit.place().angle.elevation, 5.0f);
    // A new model is framed within them, too.
    orbit.frame(box(), front);
    EXPECT_EQ(orbit.place().angle.elevation, 5.0f);
}

TEST(Orbit, takes_limits_that_reach_as_far_as_any_may) {
    for (const auto narrow :
         {+[](OrbitLimits& l) { l.lowest = l.highest = -90.0f; },
          +[](OrbitLimits& l) { l.lowest = l.highest = 90.0f; },
          +[](OrbitLimits& l) { l.nearest = l.farthest = 1e6f; },
          +[](OrbitLimits& l) { l.nearest = l.farthest = 2.0f; },
          +[](OrbitLimits& l) { l.farthest = 1e6f; }, +[](OrbitLimits& l) { l.reach = 1e6f; }}) {
        Orbit orbit(box());
        const float way = orbit.place().distance;
        OrbitLimits limits;
        narrow(limits);
        orbit.set_limits(limits);
        orbit.turn(0, -1e6);
        EXPECT_EQ(orbit.place().angle.elevation, limits.lowest);
        orbit.turn(0, 1e6);
        EXPECT_EQ(orbit.place().angle.elevation, limits.highest);
        orbit.zoom(-1000);
        EXPECT_FLOAT_EQ(orbit.place().distance, way * limits.farthest);
        OrbitPlace away;
        away.target = box().middle;
        away.target.x += 1e9f;
        orbit.go_to(away);
        EXPECT_NEAR(orbit.place().target.x - box().middle.x, way * limits.reach,
                    way * limits.reach * 1e-5f);
    }
}

TEST(Orbit, ignores_what_means_nothing) {
    Orbit orbit(box());
    const OrbitPlace before = orbit.place();
    const double nothing = std::nan("");
    const double infinite = std::numeric_limits<double>::infinity();
    orbit.turn(nothing, 1);
    orbit.turn(1, infinite);
    orbit.pan(nothing, 0, screen);
    orbit.pan(1, 1, {640, 0});
    orbit.zoom(nothing);
    EXPECT_FALSE(orbit.move({true}, -1.0));
    EXPECT_FALSE(orbit.move({true}, nothing));
    EXPECT_FALSE(orbit.move({true}, infinite));
    for (const auto spoil :
         {+[](OrbitPlace& p) { p.target.x = NAN; }, +[](OrbitPlace& p) { p.distance = 0.0f; },
          +[](OrbitPlace& p) { p.distance = INFINITY; },
          +[](OrbitPlace& p) { p.angle.azimuth = NAN; },
          +[](OrbitPlace& p) { p.angle.elevation = NAN; }}) {
        OrbitPlace spoilt = before;
        spoil(spoilt);
        orbit.go_to(spoilt);
    }
    for (const auto spoil :
         {+[](OrbitLimits& l) { l.lowest = -91.0f; }, +[](OrbitLimits& l) { l.highest = 91.0f; },
          +[](OrbitLimits& l) { l.highest = -90.5f; }, +[](OrbitLimits& l) { l.nearest = 0.0f; },
          +[](OrbitLimits& l) { l.farthest = 0.05f; },
          +[](OrbitLimits& l) { l.farthest = INFINITY; }, +[](OrbitLimits& l) { l.reach = -1.0f; },
          +[](OrbitLimits& l) { l.reach = NAN; }}) {
        OrbitLimits spoilt;
        spoil(spoilt);
        orbit.set_limits(spoilt);
    }
    EXPECT_EQ(orbit.place().target, before.target);
    EXPECT_EQ(orbit.place().distance, before.distance);
    EXPECT_EQ(orbit.place().angle.azimuth, before.angle.azimuth);
    EXPECT_EQ(orbit.place().angle.elevation, before.angle.elevation);
    orbit.zoom(-2);
    EXPECT_GT(orbit.place().distance, before.distance) << "the limits are as before";
}

} // namespace

} // namespace orvex_test
