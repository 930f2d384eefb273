#include "orvex/geometry/lines/mini_spline.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/geometry/lines/polyline.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// Keys (time, x, y, z) at the times 0 to 3.
constexpr float four_keys[] = {0.0f, 1.0f, 10.0f, 0.0f, 1.0f, 2.0f, 20.0f, 5.0f,
                               2.0f, 4.0f, 10.0f, 7.0f, 3.0f, 8.0f, 40.0f, 9.0f};

vec3 value_at(float t, int num_keys = 4) {
    vec3 value(-1.0f, -1.0f, -1.0f);
    MiniSpline::eval_spline(four_keys, num_keys, 3, t, &value.x);
    return value;
}

TEST(EvalSpline, halfway_between_two_keys_weighs_all_four) {
    // (-1, 9, 9, -1) / 16
    EXPECT_EQ(value_at(1.5f), vec3(2.8125f, 13.75f, 6.1875f));
}

TEST(EvalSpline, passes_through_its_keys) {
    for (int key = 0; key < 4; ++key)
        EXPECT_EQ(value_at(static_cast<float>(key)),
                  vec3(four_keys[4 * key + 1], four_keys[4 * key + 2], four_keys[4 * key + 3]));
}

TEST(EvalSpline, repeats_the_first_or_last_key_near_the_ends) {
    // The neighbour before the first key is the first key, that behind the last one the last.
    EXPECT_EQ(value_at(0.5f).x, (-1.0f * 1.0f + 9.0f * 1.0f + 9.0f * 2.0f - 1.0f * 4.0f) / 16.0f);
    EXPECT_EQ(value_at(2.5f).x, (-1.0f * 2.0f + 9.0f * 4.0f + 9.0f * 8.0f - 1.0f * 8.0f) / 16.0f);
}

TEST(EvalSpline, outside_of_its_keys_stays_at_the_nearest_one) {
    const vec3 first(1.0f, 10.0f, 0.0f);
    const vec3 last(8.0f, 40.0f, 9.0f);
    EXPECT_EQ(value_at(-5.0f), first);
    EXPECT_EQ(value_at(3.5f), last);
    EXPECT_EQ(value_at(std::numeric_limits<float>::infinity()), last);
    EXPECT_EQ(value_at(std::numeric_limits<float>::quiet_NaN()), last);
    EXPECT_EQ(value_at(-1.0f, 1), first);
    EXPECT_EQ(value_at(0.0f, 1), first);
    EXPECT_EQ(value_at(1.0f, 1), first);
}

TEST(EvalSpline, without_keys_gives_zeros) {
    EXPECT_EQ(value_at(0.5f, 0), vec3());
    EXPECT_EQ(value_at(0.5f, -1), vec3());
    float out[2] = {1.0f, 1.0f};
    MiniSpline::eval_spline(nullptr, 4, 2, 0.5f, out);
    EXPECT_EQ(out[0], 0.0f);
    EXPECT_EQ(out[1], 0.0f);
    MiniSpline::eval_spline(four_keys, 4, 3, 0.5f, nullptr);
}

TEST(EvalSpline, evaluates_any_number_of_dimensions) {
    const float keys[] = {0.0f, 3.0f, 2.0f, 5.0f};
    float out = -1.0f;
    MiniSpline::eval_spline(keys, 2, 1, 1.0f, &out);
    EXPECT_EQ(out, 4.0f);
    for (const int none : {0, -1, -3, std::numeric_limits<int>::min()}) {
        float untouched = -1.0f;
        MiniSpline::eval_spline(keys, 2, none, 10.0f, &untouched);
        EXPECT_EQ(untouched, -1.0f);
    }
}

class MiniSplineTest : public testing::Test {
protected:
    void add_keys() {
        for (unsigned long i = 0; i < 4; ++i)
            EXPECT_EQ(spline->add_keyframe(four_keys[4 * i], four_keys[4 * i + 1],
                                           four_keys[4 * i + 2], four_keys[4 * i + 3]),
                      i);
    }

    vec3 value(float t) {
        vec3 result;
        spline->get_value(t, &result.x);
        return result;
    }

    FakeRenderer renderer;
    Owned<MiniSpline> spline{new MiniSpline};
};

TEST_F(MiniSplineTest, is_an_object_without_keys_at_first) {
    EXPECT_TRUE(spline->is_type_of(NODE_TYPE_OBJECT));
    EXPECT_TRUE(spline->is_type_of(NODE_TYPE_MINI_SPLINE));
    EXPECT_EQ(value(0.5f), vec3());
    EXPECT_FALSE(spline->set_keyframe(0, 0.0f, 0.0f, 0.0f, 0.0f));
}

TEST_F(MiniSplineTest, evaluates_its_keys_as_they_are_now) {
    add_keys();
    EXPECT_EQ(value(1.5f), value_at(1.5f));
    EXPECT_TRUE(spline->set_keyframe(3, 3.0f, 1.0f, 2.0f, 3.0f));
    EXPECT_EQ(value(3.0f), vec3(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(spline->add_keyframe(4.0f, 5.0f, 6.0f, 7.0f), 4u);
    EXPECT_EQ(value(4.0f), vec3(5.0f, 6.0f, 7.0f));
    EXPECT_FALSE(spline->set_keyframe(5, 0.0f, 0.0f, 0.0f, 0.0f));
    spline->get_value(1.0f, nullptr);
}

TEST_F(MiniSplineTest, draws_itself_through_the_buffer_of_a_polyline) {
    add_keys();
    std::vector<Vertex> buffer(1000);
    renderer.pointers["vertex_buffer_map"] = buffer.data();
    spline->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("polyline_vb_prepare"), 2);
    EXPECT_EQ(renderer.count("polyline_vb_draw"), 1);
    EXPECT_EQ(renderer.count("polyline_vb_finish"), 2);
    EXPECT_EQ(renderer.count("vertex_buffer_unmap"), 1);
    EXPECT_EQ(buffer[0].position, vec4(1.0f, 10.0f, 0.0f, 1.0f));
    EXPECT_EQ(buffer[999].position, vec4(value_at(0.999f)));
    renderer.take_calls();
    spline->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("vertex_buffer_map"), 0);
    EXPECT_EQ(renderer.count("polyline_vb_draw"), 1);
    spline->set_keyframe(0, 0.0f, 9.0f, 9.0f, 9.0f);
    spline->render(&renderer, nullptr);
    EXPECT_EQ(buffer[0].position, vec4(9.0f, 9.0f, 9.0f, 1.0f));
}

TEST_F(MiniSplineTest, has_a_buffer_made_before_it_maps_it_and_draws_its_children_last) {
    add_keys();
    Polyline* const child = new Polyline;
    spline->add_child(child);
    renderer.name_pointer(child->get_polyline_data(), "child");
    std::vector<Vertex> buffer(1000);
    renderer.pointers["vertex_buffer_map"] = buffer.data();
    renderer.ignored = {"get_projection_matrix", "get_view_matrix", "get_viewport_ptr",
                        "gl2_matrix_load", "gpu_program_get_active_program"};
    spline->render(&renderer, nullptr);
    EXPECT_EQ(renderer.take_calls(),
              (std::vector<std::string>{
                  "polyline_vb_prepare(pointer)", "polyline_vb_finish(pointer)",
                  "vertex_buffer_map(0)", "vertex_buffer_unmap(0)", "polyline_vb_prepare(pointer)",
                  "polyline_vb_draw(pointer, 0, -1)", "polyline_vb_finish(pointer)",
                  "polyline_vb_prepare(child)", "polyline_vb_draw(child, 0, -1)",
                  "polyline_vb_finish(child)"}));
}

TEST_F(MiniSplineTest, draws_on_where_its_buffer_can_not_be_mapped) {
    add_keys();
    spline->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("polyline_vb_draw"), 1);
    EXPECT_EQ(renderer.count("vertex_buffer_unmap"), 0);
}

TEST_F(MiniSplineTest, passes_over_a_null_renderer) {
    add_keys();
    spline->render(nullptr, nullptr);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST_F(MiniSplineTest, starts_anew_after_cleanup) {
    add_keys();
    spline->render(&renderer, nullptr);
    renderer.take_calls();
    EXPECT_TRUE(spline->_cleanup(&renderer));
    EXPECT_EQ(renderer.count("polyline_vb_kill"), 1);
    EXPECT_TRUE(spline->_cleanup(&renderer));
    EXPECT_EQ(renderer.count("polyline_vb_kill"), 1);
    EXPECT_EQ(value(1.0f), vec3());
    renderer.take_calls();
    spline->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("vertex_buffer_map"), 1);
    add_keys();
    EXPECT_EQ(value(1.5f), value_at(1.5f));
    renderer.take_calls();
    spline->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("polyline_vb_draw"), 1);
}

TEST(MiniSpline, deleted_without_cleanup_frees_its_keys_and_polyline) {
    FakeRenderer renderer;
    MiniSpline* const spline = new MiniSpline;
    spline->add_keyframe(0.0f, 1.0f, 2.0f, 3.0f);
    spline->render(&renderer, nullptr);
    delete spline;
}

} // namespace

} // namespace orvex_test
