#include "orvex_kit/framing.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include <orvex/math/mat4.h>
#include <orvex/scene/camera.h>

namespace orvex_test {

namespace {

using namespace orvex::kit;
namespace kit = orvex::kit;
using orvex::vec4;

constexpr Lens wide{400, 300, 1.0f};

void expect_near(const vec4& actual, const vec4& expected, const char* what) {
    EXPECT_NEAR(actual.x, expected.x, 1e-5f) << what;
    EXPECT_NEAR(actual.y, expected.y, 1e-5f) << what;
    EXPECT_NEAR(actual.z, expected.z, 1e-5f) << what;
}

TEST(Axes, turn_from_the_front_to_the_right_and_up) {
    const Axes front = axes_of({0.0f, 0.0f, UpAxis::y});
    expect_near(front.right, vec4(1, 0, 0, 0), "right");
    expect_near(front.up, vec4(0, 1, 0, 0), "up");
    expect_near(front.toward, vec4(0, 0, 1, 0), "toward");
    expect_near(axes_of({90.0f, 0.0f, UpAxis::y}).toward, vec4(1, 0, 0, 0), "right side");
    const Axes above = axes_of({0.0f, 90.0f, UpAxis::y});
    expect_near(above.toward, vec4(0, 1, 0, 0), "above");
    expect_near(above.up, vec4(0, 0, -1, 0), "up, seen from above");
    for (const vec4& axis : {above.right, above.up, above.toward})
        EXPECT_EQ(axis.w, 0.0f) << "it is a direction";
}

TEST(Axes, follow_the_axis_that_points_up) {
    struct Row {
        UpAxis axis;
        vec4 up;
    };
    for (const Row& row :
         {Row{UpAxis::x, vec4(1, 0, 0, 0)}, Row{UpAxis::y, vec4(0, 1, 0, 0)},
          Row{UpAxis::automatic, vec4(0, 1, 0, 0)}, Row{UpAxis::z, vec4(0, 0, 1, 0)},
          Row{UpAxis::minus_x, vec4(-1, 0, 0, 0)}, Row{UpAxis::minus_y, vec4(0, -1, 0, 0)},
          Row{UpAxis::minus_z, vec4(0, 0, -1, 0)}}) {
        const Axes axes = axes_of({30.0f, 0.0f, row.axis});
        expect_near(axes.up, row.up, "up");
        // Right times up is toward: nothing is mirrored.
        vec4 right = axes.right;
        vec4 up = axes.up;
        expect_near(right.cross(up), axes.toward, "toward");
    }
}

/// A table with its legs along an axis: four feet on the ground, one lamp on its top.
Extent table(bool stands_along_z) {
    Extent extent;
    for (const vec4& at : {vec4(0, 0, 0, 1), vec4(1, 0, 0, 1), vec4(0, 0, 1, 1), vec4(1, 0, 1, 1),
                           vec4(0.5f, 2, 0.5f, 1)})
        extent.points.push_back(stands_along_z ? vec4(at.x, at.z + 0.3f * at.y, -at.y, 1) : at);
    return extent;
}

TEST(StandingAxis, is_the_one_on_whose_ground_most_vertices_rest) {
    EXPECT_EQ(standing_axis(table(false)), UpAxis::y);
    EXPECT_EQ(standing_axis(table(true)), UpAxis::y) << "no more than twice as many";
    Extent chest = table(true);
    chest.points.push_back(vec4(0.5f, 0.5f, 0, 1));
    EXPECT_EQ(standing_axis(chest), UpAxis::minus_z);
    EXPECT_EQ(standing_axis({}), UpAxis::y);
}

/// The points on the picture, from -1 to 1.
struct Seen {
    float left = 9, right = -9, low = 9, high = -9, nearest = 9, farthest = -9;
};

Seen seen_by(orvex::Camera& camera, const Extent& extent) {
    Seen seen;
    for (const vec4& point : extent.points) {
        vec4 p = camera.get_projection_matrix() * (camera.get_view_matrix() * point);
        const float x = p.x / p.w, y = p.y / p.w, z = p.z / p.w;
        seen.left = std::min(seen.left, x);
        seen.right = std::max(seen.right, x);
        seen.low = std::min(seen.low, y);
        seen.high = std::max(seen.high, y);
        seen.nearest = std::min(seen.nearest, z);
        seen.farthest = std::max(seen.farthest, z);
    }
    return seen;
}

/// The corners of a box far from the origin.
Extent box_of(float width, float height, float depth) {
    Extent extent;
    extent.middle = vec4(100, 50, -20, 1);
    for (float x : {-width / 2, width / 2})
        for (float y : {-height / 2, height / 2})
            for (float z : {-depth / 2, depth / 2})
                extent.points.push_back(vec4(100 + x, 50 + y, -20 + z, 1));
    return extent;
}

class Framing : public testing::Test {
protected:
    Framing()
        : camera(new orvex::Camera) {}
    ~Framing() override { camera->release(nullptr, nullptr); }

    Seen look(const Extent& extent, const Angle& angle, const Lens& lens, const Aim& aim) {
        aimed(extent, angle, lens, aim).apply(*camera, lens.width, lens.height);
        return seen_by(*camera, extent);
    }

    orvex::Camera* camera;
};

TEST_F(Framing, fills_the_picture_up_to_a_margin_from_every_side) {
    for (const Extent& extent : {box_of(1, 1, 1), box_of(9, 1, 2), box_of(0.1f, 8, 0.1f)})
        for (float azimuth : {0.0f, 40.0f, 135.0f, 270.0f})
            for (float elevation : {-90.0f, -30.0f, 0.0f, 60.0f, 90.0f})
                for (const Lens& lens : {wide, Lens{100, 300, 1.0f}}) {
                    const Angle angle{azimuth, elevation, UpAxis::y};
                    const Aim aim = tight_aim(extent, angle, lens);
                    const Seen seen = look(extent, angle, lens, aim);
                    EXPECT_LE(std::max(seen.right, -seen.left), 0.951f) << azimuth << elevation;
                    EXPECT_LE(std::max(seen.high, -seen.low), 0.951f) << azimuth << elevation;
                    const float fullest = std::max(seen.right - seen.left, seen.high - seen.low);
                    EXPECT_NEAR(fullest, 1.9f, 0.01f) << azimuth << " " << elevation;
                    EXPECT_GE(seen.nearest, -1.0f);
                    EXPECT_LE(seen.farthest, 1.0f);
                }
}

TEST_F(Framing, keeps_the_middle_in_the_middle_of_a_turn) {
    const Extent extent = box_of(3, 2, 1);
    const Angle angle{30.0f, 20.0f, UpAxis::y};
    const Aim aim = middle_aim(extent, angle, wide);
    EXPECT_EQ(aim.right, 0.0f);
    EXPECT_EQ(aim.up, 0.0f);
    EXPECT_GE(aim.distance, tight_aim(extent, angle, wide).distance);
    const Seen seen = look(extent, angle, wide, aim);
    EXPECT_NEAR(std::max({seen.right, -seen.left, seen.high, -seen.low}), 0.95f, 0.01f);
}

TEST_F(Framing, sees_all_throughout_a_turn) {
    const Extent extent = box_of(9, 2, 1);
    const Angle first{30.0f, 20.0f, UpAxis::y};
    const Aim aim = turning_aim(extent, first, wide, 12);
    float fullest = 0.0f;
    for (int view = 0; view < 12; ++view) {
        const Angle angle{30.0f + 30.0f * static_cast<float>(view), 20.0f, UpAxis::y};
        const Seen seen = look(extent, angle, wide, aim);
        fullest = std::max({fullest, seen.right, -seen.left, seen.high, -seen.low});
    }
    EXPECT_NEAR(fullest, 0.95f, 0.001f);
}

TEST_F(Framing, sees_all_by_itself) {
    const Extent extent = box_of(9, 2, 1);
    const Angle angle;
    see_all(extent, angle, wide).apply(*camera, wide.width, wide.height);
    const Seen itself = seen_by(*camera, extent);
    const Seen wanted = look(extent, angle, wide, tight_aim(extent, angle, wide));
    EXPECT_EQ(itself.left, wanted.left);
    EXPECT_EQ(itself.high, wanted.high);
    EXPECT_EQ(itself.nearest, wanted.nearest);
}

TEST_F(Framing, cuts_nothing_off_of_what_lies_mostly_behind_its_middle) {
    Extent extent;
    extent.middle = vec4(0, 0, 0, 1);
    extent.points = {vec4(0, 0, 1, 1), vec4(1, 0, 0, 1), vec4(-1, 0, 0, 1), vec4(0, 0, -5, 1)};
    for (const float azimuth : {0.0f, 180.0f}) {
        const Angle angle{azimuth, 0.0f, UpAxis::y};
        for (const auto aim_at : {&middle_aim, &tight_aim}) {
            const Seen seen = look(extent, angle, wide, aim_at(extent, angle, wide));
            EXPECT_GE(seen.nearest, -1.0f) << azimuth;
            EXPECT_LE(seen.farthest, 1.0f) << azimuth;
        }
    }
}

TEST_F(Framing, magnifies_by_the_zoom) {
    const Extent extent = box_of(2, 2, 0);
    const Angle front{0.0f, 0.0f, UpAxis::y};
    const Aim aim = tight_aim(extent, front, wide);
    const Seen once = look(extent, front, wide, aim);
    const Seen twice = look(extent, front, {400, 300, 2.0f}, aim);
    EXPECT_NEAR(twice.high, 2 * once.high, 1e-4f);
    EXPECT_NEAR(twice.right, 2 * once.right, 1e-4f);
}

TEST_F(Framing, copes_with_a_point_and_with_nothing) {
    Extent point;
    point.middle = vec4(1, 2, 3, 1);
    point.points = {point.middle};
    const Angle angle{25.0f, 20.0f, UpAxis::y};
    const Aim aim = tight_aim(point, angle, wide);
    EXPECT_GT(aim.distance, 0.0f);
    EXPECT_GT(middle_aim(point, angle, wide).distance, 0.0f);
    const Extent nothing;
    EXPECT_EQ(tight_aim(nothing, angle, wide).distance, 1.0f);
    EXPECT_EQ(middle_aim(nothing, angle, wide).distance, 1.0f);
}

TEST_F(Framing, looks_at_the_middle_from_the_side_that_was_asked_for) {
    const Extent extent = box_of(3, 2, 1);
    for (const UpAxis axis :
         {UpAxis::x, UpAxis::y, UpAxis::z, UpAxis::minus_x, UpAxis::minus_y, UpAxis::minus_z})
        for (float azimuth = 0.0f; azimuth < 360.0f; azimuth += 15.0f)
            for (const float elevation : {-90.0f, -45.0f, 0.0f, 1e-3f, 20.0f, 90.0f}) {
                const Angle angle{azimuth, elevation, axis};
                const Axes axes = axes_of(angle);
                look(extent, angle, wide, middle_aim(extent, angle, wide));
                const orvex::mat4& view = camera->get_view_matrix();
                const vec4 right(view.m[0], view.m[4], view.m[8], 0);
                const vec4 up(view.m[1], view.m[5], view.m[9], 0);
                SCOPED_TRACE(testing::Message()
                             << azimuth << " " << elevation << " " << static_cast<int>(axis));
                expect_near(right, axes.right, "right");
                expect_near(up, axes.up, "up");
            }
}

TEST(FitClip, holds_all_that_is_seen_and_little_else) {
    const Extent extent = box_of(2, 2, 2);
    kit::Camera camera;
    camera.look_at(vec4(100, 50, 0, 1), extent.middle);
    fit_clip(camera, extent);
    EXPECT_NEAR(camera.near(), 19.0f, 0.2f);
    EXPECT_LE(camera.near(), 19.0f);
    EXPECT_NEAR(camera.far(), 21.0f, 0.3f);
    EXPECT_GE(camera.far(), 21.0f);
    // Among the points, and with all of them behind.
    camera.look_at(extent.middle, vec4(0, 50, -20, 1));
    fit_clip(camera, extent);
    EXPECT_FLOAT_EQ(camera.near(), 1e-4f);
    EXPECT_FLOAT_EQ(camera.far(), 1.01f);
    camera.look_at(vec4(100, 50, 0, 1), vec4(100, 50, 20, 1));
    fit_clip(camera, extent);
    EXPECT_FLOAT_EQ(camera.far(), 1.01f);
    fit_clip(camera, {});
    EXPECT_FLOAT_EQ(camera.far(), 1.01f);
}

} // namespace

} // namespace orvex_test
