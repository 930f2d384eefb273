#include "orvex/overlays/graph2d.h"

#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "line_renderer.h"
#include "orvex/geometry/lines/curve.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

const vec4 origin(0.0f, 0.0f, 0.0f, 1.0f);
const vec4 white(1.0f, 1.0f, 1.0f, 1.0f);

vec4 point(float x, float y) {
    return vec4(x, y, 0.0f, 1.0f);
}

class Graph : public testing::Test {
protected:
    /// The axes as drawn: x, then y.
    std::vector<DrawnLine> drawn_axes() {
        graph->draw_axis(&renderer);
        return renderer.take_lines();
    }

    DrawnLine drawn_curve(unsigned long index) {
        EXPECT_TRUE(graph->draw_curve(&renderer, index));
        const std::vector<DrawnLine> lines = renderer.take_lines();
        EXPECT_EQ(lines.size(), 1u);
        return lines.empty() ? DrawnLine{nullptr, {}, 0, 0} : lines[0];
    }

    /// How many vertices each line asks for.
    std::vector<int> counts_of_all_curves() {
        EXPECT_TRUE(graph->draw_all_curves(&renderer));
        std::vector<int> counts;
        for (const DrawnLine& line : renderer.take_lines())
            counts.push_back(line.count);
        return counts;
    }

    void set_axes(const vec4& at, float length) {
        graph->set_x_axis_positions(at, point(at.x + length, at.y));
        graph->set_y_axis_positions(at, point(at.x, at.y + length));
    }

    /// Samples first, first + 1 and so on.
    void feed(unsigned long index, int first, int count) {
        for (int i = 0; i < count; ++i)
            EXPECT_TRUE(graph->add_curve_scalar(index, static_cast<float>(first + i)));
    }

    LineRenderer renderer;
    Owned<Graph2d> graph{new Graph2d};
};

TEST_F(Graph, is_an_object_of_its_own_type) {
    EXPECT_TRUE(graph->is_type_of(NODE_TYPE_OBJECT));
    EXPECT_EQ(graph->get_type(), 33);
    EXPECT_TRUE(graph->is_viewport_enabled());
    EXPECT_EQ(graph->get_num_curves(), 0u);
}

TEST_F(Graph, has_white_axes_of_100_pixels_at_first) {
    const std::vector<DrawnLine> axes = drawn_axes();
    ASSERT_EQ(axes.size(), 2u);
    EXPECT_EQ(axes[0].at(0), origin);
    EXPECT_EQ(axes[0].at(1), point(100.0f, 0.0f));
    EXPECT_EQ(axes[1].at(0), origin);
    EXPECT_EQ(axes[1].at(1), point(0.0f, 100.0f));
    for (const DrawnLine& axis : axes) {
        EXPECT_EQ(axis.color_at(0), white);
        EXPECT_EQ(axis.color_at(1), white);
    }
}

TEST_F(Graph, draws_both_axes_with_one_line) {
    const std::vector<DrawnLine> axes = drawn_axes();
    ASSERT_EQ(axes.size(), 2u);
    EXPECT_EQ(axes[0].store, axes[1].store);
    EXPECT_EQ(renderer.count("polyline_vb_prepare"), 2);
    EXPECT_EQ(renderer.count("polyline_vb_finish"), 2);
}

TEST_F(Graph, takes_positions_and_colours_for_each_end_of_each_axis) {
    const vec4 colors[] = {vec4(0.1f, 0.0f, 0.0f, 0.5f), vec4(0.2f, 0.0f, 0.0f, 0.5f),
                           vec4(0.0f, 0.3f, 0.0f, 0.5f), vec4(0.0f, 0.4f, 0.0f, 0.5f)};
    graph->set_x_axis_positions(vec4(1.0f, 2.0f, 3.0f, 1.0f), vec4(4.0f, 5.0f, 6.0f, 1.0f));
    graph->set_y_axis_positions(vec4(7.0f, 8.0f, 9.0f, 1.0f), vec4(10.0f, 11.0f, 12.0f, 1.0f));
    graph->set_x_axis_color(colors[0], colors[1]);
    graph->set_y_axis_color(colors[2], colors[3]);
    const std::vector<DrawnLine> axes = drawn_axes();
    EXPECT_EQ(axes[0].at(0), vec4(1.0f, 2.0f, 3.0f, 1.0f));
    EXPECT_EQ(axes[0].at(1), vec4(4.0f, 5.0f, 6.0f, 1.0f));
    EXPECT_EQ(axes[1].at(0), vec4(7.0f, 8.0f, 9.0f, 1.0f));
    EXPECT_EQ(axes[1].at(1), vec4(10.0f, 11.0f, 12.0f, 1.0f));
    for (unsigned long i = 0; i < 4; ++i)
        EXPECT_EQ(axes[i / 2].color_at(i % 2), colors[i]);
}

struct ShiftRow {
    const char* name;
    int width;
    int height;
    float x;
    float y;
};

const ShiftRow shift_rows[] = {
    {"of no size", 0, 0, 0.0f, 0.0f},
    {"of even size", 800, 600, -400.0f, -300.0f},
    {"of odd size", 801, 601, -400.0f, -300.0f},
    {"of one pixel", 1, 1, 0.0f, 0.0f},
    {"of negative odd size", -801, -601, 400.0f, 300.0f},
    {"of the largest size", INT_MAX, INT_MAX, -1073741823.0f, -1073741823.0f},
    {"of the smallest size", INT_MIN, INT_MIN, 1073741824.0f, 1073741824.0f},
};

TEST_F(Graph, shifts_everything_by_half_the_viewport_rounded_towards_zero) {
    graph->create_curve(2);
    for (const ShiftRow& row : shift_rows) {
        SCOPED_TRACE(row.name);
        graph->set_viewport(3, 4, row.width, row.height);
        graph->set_x_axis_positions(vec4(5.0f, 6.0f, 7.0f, 1.0f), vec4(8.0f, 9.0f, 10.0f, 1.0f));
        graph->set_y_axis_positions(point(1.0f, 2.0f), point(3.0f, 4.0f));
        graph->set_curve_value(0, 0, vec4(11.0f, 12.0f, 13.0f, 0.5f));
        const std::vector<DrawnLine> axes = drawn_axes();
        EXPECT_EQ(axes[0].at(0), vec4(5.0f + row.x, 6.0f + row.y, 7.0f, 1.0f));
        EXPECT_EQ(axes[0].at(1), vec4(8.0f + row.x, 9.0f + row.y, 10.0f, 1.0f));
        EXPECT_EQ(axes[1].at(0), point(1.0f + row.x, 2.0f + row.y));
        EXPECT_EQ(axes[1].at(1), point(3.0f + row.x, 4.0f + row.y));
        EXPECT_EQ(drawn_curve(0).at(0), vec4(11.0f + row.x, 12.0f + row.y, 13.0f, 0.5f));
        graph->add_curve_scalar(0, 1.0f);
        EXPECT_TRUE(graph->sync_curve_scalars(0));
        EXPECT_EQ(drawn_curve(0).at(0), point(5.0f + row.x, 7.0f + row.y));
    }
}

TEST_F(Graph, places_axes_and_points_anew_for_each_viewport) {
    set_axes(point(20.0f, 30.0f), 100.0f);
    graph->create_curve(2);
    graph->set_curve_value(0, 0, 1.0f, 2.0f, 3.0f, 4.0f);
    graph->set_curve_value(0, 1, 5.0f, 6.0f, 7.0f, 8.0f);
    for (int i = 0; i < 2; ++i) {
        graph->set_viewport(0, 0, 200, 100);
        const std::vector<DrawnLine> axes = drawn_axes();
        EXPECT_EQ(axes[0].at(0), point(-80.0f, -20.0f));
        EXPECT_EQ(axes[0].at(1), point(20.0f, -20.0f));
        EXPECT_EQ(axes[1].at(0), point(-80.0f, -20.0f));
        EXPECT_EQ(axes[1].at(1), point(-80.0f, 80.0f));
        EXPECT_EQ(drawn_curve(0).at(0), vec4(-99.0f, -48.0f, 3.0f, 4.0f));
        EXPECT_EQ(drawn_curve(0).at(1), vec4(-95.0f, -44.0f, 7.0f, 8.0f));
    }
    graph->set_viewport(0, 0, 2, 2);
    EXPECT_EQ(drawn_axes()[0].at(0), point(19.0f, 29.0f));
    EXPECT_EQ(drawn_curve(0).at(0), vec4(0.0f, 1.0f, 3.0f, 4.0f));
}

TEST_F(Graph, places_axes_that_were_never_set_at_the_corner) {
    graph->set_viewport(0, 0, 200, 100);
    for (const DrawnLine& axis : drawn_axes()) {
        EXPECT_EQ(axis.at(0), point(-100.0f, -50.0f));
        EXPECT_EQ(axis.at(1), point(-100.0f, -50.0f));
    }
}

TEST_F(Graph, only_stores_a_viewport_while_the_feature_is_off) {
    set_axes(point(20.0f, 30.0f), 100.0f);
    graph->create_curve(1);
    graph->set_curve_value(0, 0, point(1.0f, 2.0f));
    graph->enable_viewport(false);
    EXPECT_FALSE(graph->is_viewport_enabled());
    graph->set_viewport(1, 2, 200, 100);
    EXPECT_EQ(drawn_axes()[0].at(0), point(20.0f, 30.0f));
    EXPECT_EQ(drawn_axes()[1].at(1), point(20.0f, 130.0f));
    EXPECT_EQ(drawn_curve(0).at(0), point(1.0f, 2.0f));

    graph->enable_viewport(true);
    EXPECT_EQ(drawn_axes()[0].at(0), point(20.0f, 30.0f)) << "nothing was placed since";
    graph->set_x_axis_positions(point(20.0f, 30.0f), point(120.0f, 30.0f));
    EXPECT_EQ(drawn_axes()[0].at(0), point(-80.0f, -20.0f)) << "the numbers were kept";
}

TEST_F(Graph, leaves_first_axes_shifts_and_samples_alone_while_the_feature_is_off) {
    graph->enable_viewport(false);
    graph->set_viewport(0, 0, 200, 100);
    EXPECT_EQ(drawn_axes()[0].at(1), point(100.0f, 0.0f)) << "not the corner, as with the feature";
    EXPECT_EQ(drawn_axes()[1].at(1), point(0.0f, 100.0f));

    graph->enable_viewport(true);
    set_axes(point(20.0f, 30.0f), 100.0f);
    graph->create_curve(2);
    feed(0, 7, 1);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    graph->enable_viewport(false);
    graph->set_viewport(0, 0, 2, 2);
    EXPECT_EQ(drawn_axes()[0].at(0), point(-80.0f, -20.0f));
    EXPECT_EQ(drawn_axes()[1].at(1), point(-80.0f, 80.0f));
    EXPECT_EQ(drawn_curve(0).at(0), point(-80.0f, -13.0f));
}

TEST_F(Graph, keeps_shifts_when_the_feature_is_switched_off) {
    graph->create_curve(1);
    graph->set_viewport(0, 0, 200, 100);
    set_axes(point(20.0f, 30.0f), 100.0f);
    graph->set_curve_value(0, 0, point(1.0f, 2.0f));
    graph->enable_viewport(false);
    EXPECT_EQ(drawn_axes()[0].at(0), point(-80.0f, -20.0f));
    EXPECT_EQ(drawn_curve(0).at(0), point(-99.0f, -48.0f));
    graph->set_curve_value(0, 0, point(1.0f, 2.0f));
    EXPECT_EQ(drawn_curve(0).at(0), point(1.0f, 2.0f));
}

TEST_F(Graph, makes_curves_in_order) {
    Curve* const first = graph->create_curve(10);
    Curve* const second = graph->create_curve(20);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(graph->get_num_curves(), 2u);
    EXPECT_EQ(graph->get_curve(0), first);
    EXPECT_EQ(graph->get_curve(1), second);
    EXPECT_EQ(graph->get_curve(2), nullptr);
    EXPECT_EQ(first->get_num_points(), 10u);
    EXPECT_EQ(second->get_num_points(), 20u);
    EXPECT_EQ(counts_of_all_curves(), (std::vector<int>{10, 20}));
    EXPECT_EQ(drawn_curve(1).at(19), origin);
}

TEST_F(Graph, ends_one_curve_and_keeps_the_order_of_the_others) {
    Curve* const curves[] = {graph->create_curve(1), graph->create_curve(2),
                             graph->create_curve(3)};
    renderer.name_pointer(curves[1]->get_polyline_data(), "middle");
    renderer.take_calls();
    EXPECT_TRUE(graph->kill_curve(&renderer, curves[1]));
    EXPECT_EQ(renderer.take_calls(), std::vector<std::string>{"polyline_vb_kill(middle)"});
    EXPECT_EQ(graph->get_num_curves(), 2u);
    EXPECT_EQ(graph->get_curve(0), curves[0]);
    EXPECT_EQ(graph->get_curve(1), curves[2]);
}

TEST_F(Graph, refuses_to_end_a_curve_that_is_not_its_own) {
    const Owned<Graph2d> other(new Graph2d);
    Curve* const foreign = other->create_curve(2);
    graph->create_curve(2);
    EXPECT_FALSE(graph->kill_curve(&renderer, foreign));
    EXPECT_FALSE(graph->kill_curve(&renderer, nullptr));
    EXPECT_EQ(graph->get_num_curves(), 1u);
    EXPECT_EQ(other->get_num_curves(), 1u);
    EXPECT_TRUE(renderer.take_calls().empty());
}

TEST_F(Graph, ends_all_curves) {
    EXPECT_TRUE(graph->kill_all_curves(&renderer));
    for (unsigned long i = 0; i < 3; ++i)
        graph->create_curve(i + 1);
    EXPECT_TRUE(graph->kill_all_curves(&renderer));
    EXPECT_EQ(renderer.count("polyline_vb_kill"), 3);
    EXPECT_EQ(graph->get_num_curves(), 0u);
    EXPECT_EQ(graph->get_curve(0), nullptr);
    EXPECT_NE(graph->create_curve(4), nullptr);
    EXPECT_EQ(graph->get_num_curves(), 1u);
}

TEST_F(Graph, refuses_curves_past_the_last) {
    graph->create_curve(2);
    for (const unsigned long index : {1ul, 2ul, ULONG_MAX}) {
        EXPECT_EQ(graph->get_curve(index), nullptr);
        EXPECT_FALSE(graph->add_curve_position(index, white));
        EXPECT_FALSE(graph->add_curve_scalar(index, 1.0f));
        EXPECT_FALSE(graph->sync_curve_scalars(index));
        EXPECT_EQ(graph->curve_get_diff_points(index), 0u);
        EXPECT_FALSE(graph->set_curve_value(index, 0, white));
        EXPECT_FALSE(graph->set_curve_value(index, 0, 1.0f, 2.0f, 3.0f, 4.0f));
        EXPECT_FALSE(graph->set_curve_color(index, 1.0f, 0.0f, 0.0f, 1.0f));
        EXPECT_FALSE(graph->draw_curve(&renderer, index));
    }
    EXPECT_TRUE(renderer.take_calls().empty());
}

TEST_F(Graph, tells_that_memory_ran_out_for_a_curve) {
    const LogCapture log;
    EXPECT_EQ(graph->create_curve(1ul << 60), nullptr);
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0],
              "<*> std::bad_alloc exception caught - what: std::bad_array_new_length");
    EXPECT_EQ(graph->get_num_curves(), 0u);
    EXPECT_NE(graph->create_curve(3), nullptr);
}

TEST_F(Graph, fills_a_curve_from_the_left) {
    set_axes(point(20.0f, 0.0f), 50.0f);
    graph->create_curve(10);
    feed(0, 7, 3);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(counts_of_all_curves(), std::vector<int>{3});
    const DrawnLine line = drawn_curve(0);
    EXPECT_EQ(line.at(0), point(20.0f, 7.0f));
    EXPECT_EQ(line.at(1), point(25.0f, 8.0f));
    EXPECT_EQ(line.at(2), point(30.0f, 9.0f));
    EXPECT_EQ(line.at(3), origin) << "no sample got there";
    EXPECT_EQ(graph->curve_get_diff_points(0), 0u);
}

TEST_F(Graph, scrolls_a_full_curve_with_the_newest_sample_at_the_right) {
    set_axes(point(0.0f, 0.0f), 100.0f);
    graph->create_curve(10);
    feed(0, 0, 15);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(graph->curve_get_diff_points(0), 5u);
    EXPECT_EQ(counts_of_all_curves(), std::vector<int>{10});
    DrawnLine line = drawn_curve(0);
    for (unsigned long i = 0; i < 10; ++i)
        EXPECT_EQ(line.at(i), point(10.0f * static_cast<float>(i), static_cast<float>(5 + i)));
    feed(0, 15, 1);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(graph->curve_get_diff_points(0), 6u);
    line = drawn_curve(0);
    EXPECT_EQ(line.at(0), point(0.0f, 6.0f));
    EXPECT_EQ(line.at(9), point(90.0f, 15.0f));
}

TEST_F(Graph, drops_nothing_from_a_curve_that_is_just_full) {
    graph->create_curve(4);
    feed(0, 0, 4);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(graph->curve_get_diff_points(0), 0u);
    EXPECT_EQ(counts_of_all_curves(), std::vector<int>{4});
    EXPECT_EQ(drawn_curve(0).at(3).y, 3.0f);
}

TEST_F(Graph, adds_the_step_along_the_axis_up_in_single_precision) {
    set_axes(point(0.1f, 0.0f), 1.0f);
    graph->create_curve(7);
    feed(0, 0, 7);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    const DrawnLine line = drawn_curve(0);
    float x = 0.1f;
    const float step = (1.1f - 0.1f) / 7.0f;
    for (unsigned long i = 0; i < 7; ++i, x += step)
        EXPECT_EQ(line.at(i).x, x);
}

TEST_F(Graph, raises_samples_by_the_height_of_the_x_axis) {
    graph->set_x_axis_positions(point(0.0f, 20.0f), point(100.0f, 60.0f));
    graph->create_curve(10);
    graph->add_curve_scalar(0, 5.0f);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(drawn_curve(0).at(0), point(0.0f, 25.0f));
    graph->set_viewport(0, 0, 8, 6);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(drawn_curve(0).at(0), point(-4.0f, 22.0f));
}

TEST_F(Graph, keeps_depth_and_w_of_a_sample_and_chooses_its_x) {
    set_axes(point(3.0f, 0.0f), 100.0f);
    graph->create_curve(2);
    EXPECT_TRUE(graph->add_curve_position(0, vec4(77.0f, 5.0f, 6.0f, 0.25f)));
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(drawn_curve(0).at(0), vec4(3.0f, 5.0f, 6.0f, 0.25f));
}

TEST_F(Graph, lays_samples_on_one_spot_until_the_x_axis_is_set_by_call) {
    graph->create_curve(4);
    feed(0, 1, 4);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    for (unsigned long i = 0; i < 4; ++i)
        EXPECT_EQ(drawn_curve(0).at(i), point(0.0f, static_cast<float>(i + 1)));
}

TEST_F(Graph, syncs_nothing_without_samples) {
    set_axes(point(20.0f, 0.0f), 50.0f);
    graph->create_curve(10);
    EXPECT_FALSE(graph->sync_curve_scalars(0));
    EXPECT_EQ(graph->curve_get_diff_points(0), 0u);
    EXPECT_EQ(counts_of_all_curves(), std::vector<int>{10}) << "all its points show";
    EXPECT_EQ(drawn_curve(0).at(0), origin);
}

TEST_F(Graph, syncs_curves_apart) {
    set_axes(point(0.0f, 0.0f), 10.0f);
    graph->create_curve(5);
    graph->create_curve(5);
    feed(0, 0, 2);
    feed(1, 0, 8);
    EXPECT_TRUE(graph->sync_curve_scalars(1));
    EXPECT_EQ(counts_of_all_curves(), (std::vector<int>{5, 5}));
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(counts_of_all_curves(), (std::vector<int>{2, 5}));
    EXPECT_EQ(graph->curve_get_diff_points(0), 0u);
    EXPECT_EQ(graph->curve_get_diff_points(1), 3u);
}

TEST_F(Graph, drops_every_sample_of_a_curve_without_points) {
    ASSERT_NE(graph->create_curve(0), nullptr);
    feed(0, 0, 3);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(graph->curve_get_diff_points(0), 3u);
    graph->set_viewport(0, 0, 8, 6);
    EXPECT_TRUE(graph->set_curve_value(0, 0, white));
    EXPECT_TRUE(drawn_curve(0).vertices.empty());
}

TEST_F(Graph, takes_samples_away_from_their_places_with_the_viewport_until_the_next_sync) {
    set_axes(point(20.0f, 10.0f), 50.0f);
    graph->create_curve(2);
    graph->set_curve_value(0, 0, point(1.0f, 2.0f));
    feed(0, 5, 2);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(drawn_curve(0).at(0), point(20.0f, 15.0f));
    graph->set_viewport(0, 0, 20, 10);
    EXPECT_EQ(drawn_curve(0).at(0), point(-9.0f, -3.0f));
    EXPECT_EQ(drawn_curve(0).at(1), point(-10.0f, -5.0f));
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(drawn_curve(0).at(0), point(10.0f, 10.0f));
}

TEST_F(Graph, ignores_points_a_curve_does_not_have) {
    Curve* const curve = graph->create_curve(2);
    EXPECT_TRUE(graph->set_curve_value(0, 2, point(1.0f, 2.0f)));
    EXPECT_TRUE(graph->set_curve_value(0, ULONG_MAX, 1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_EQ(curve->get_value_vec4(0), origin);
    EXPECT_EQ(curve->get_value_vec4(1), origin);
}

TEST_F(Graph, colours_all_points_of_a_curve) {
    const vec4 color(0.25f, 0.5f, 0.75f, 0.125f);
    graph->create_curve(2);
    graph->create_curve(3);
    EXPECT_TRUE(graph->set_curve_color(1, color.x, color.y, color.z, color.w));
    for (unsigned long i = 0; i < 3; ++i)
        EXPECT_EQ(drawn_curve(1).color_at(i), color);
    EXPECT_NE(drawn_curve(0).color_at(0), color);
}

TEST_F(Graph, draws_a_single_curve_without_the_limit_of_its_samples) {
    graph->create_curve(10);
    feed(0, 0, 3);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_LT(drawn_curve(0).count, 1) << "all";
    EXPECT_EQ(counts_of_all_curves(), std::vector<int>{3});
    EXPECT_EQ(graph->get_curve(0)->get_vertex_end_offset(), 3);
    EXPECT_LT(drawn_curve(0).count, 1) << "all, after the limit was set too";
    EXPECT_EQ(graph->get_curve(0)->get_vertex_end_offset(), 3);
}

TEST_F(Graph, passes_over_hidden_curves) {
    graph->create_curve(2);
    graph->create_curve(3);
    graph->get_curve(0)->set_render_state(false, nullptr);
    EXPECT_EQ(counts_of_all_curves(), std::vector<int>{3});
    EXPECT_TRUE(graph->draw_curve(&renderer, 0));
    EXPECT_TRUE(renderer.take_lines().empty());
}

TEST_F(Graph, renders_the_axes_then_the_curves_then_its_children) {
    graph->create_curve(3);
    graph->create_curve(4);
    Curve* const child = new Curve;
    child->alloc(5);
    graph->add_child(child);
    graph->render(&renderer, nullptr);
    std::vector<std::size_t> sizes;
    for (const DrawnLine& line : renderer.take_lines())
        sizes.push_back(line.vertices.size());
    EXPECT_EQ(sizes, (std::vector<std::size_t>{2, 2, 3, 4, 5}));
    graph->set_render_state(false, nullptr);
    graph->render(&renderer, nullptr);
    EXPECT_TRUE(renderer.take_lines().empty());
}

TEST_F(Graph, draws_nothing_of_a_plain_object) {
    graph->set_display_grid_state(true, nullptr);
    graph->set_display_tripod_state(true, nullptr);
    graph->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("render_line"), 0);
}

TEST_F(Graph, draws_nothing_without_a_renderer) {
    graph->create_curve(3);
    graph->render(nullptr, nullptr);
    graph->draw_axis(nullptr);
    EXPECT_TRUE(graph->draw_curve(nullptr, 0));
    EXPECT_TRUE(graph->draw_all_curves(nullptr));
    EXPECT_TRUE(graph->kill_curve(nullptr, graph->get_curve(0)));
}

TEST_F(Graph, gives_curves_and_axes_back_in_cleanup) {
    graph->create_curve(3);
    graph->create_curve(4);
    graph->render(&renderer, nullptr);
    renderer.take_lines();
    renderer.take_calls();
    EXPECT_TRUE(graph->cleanup(&renderer, nullptr));
    EXPECT_EQ(renderer.count("polyline_vb_kill"), 3);
    EXPECT_EQ(graph->get_num_curves(), 0u);
    EXPECT_TRUE(graph->cleanup(&renderer, nullptr));
    graph->render(&renderer, nullptr);
    EXPECT_TRUE(renderer.take_lines().empty());
    graph->set_viewport(0, 0, 10, 10);
    set_axes(origin, 5.0f);
    EXPECT_NE(graph->create_curve(2), nullptr);
    EXPECT_EQ(counts_of_all_curves(), std::vector<int>{2});
}

TEST_F(Graph, outlives_a_curve_that_its_host_ended) {
    Curve* const ended = graph->create_curve(3);
    graph->create_curve(4);
    feed(0, 0, 2);
    ended->kill(&renderer, nullptr);
    EXPECT_EQ(graph->get_num_curves(), 2u);
    EXPECT_EQ(graph->get_curve(0), nullptr);
    EXPECT_FALSE(graph->sync_curve_scalars(0));
    EXPECT_FALSE(graph->set_curve_value(0, 0, white));
    EXPECT_FALSE(graph->set_curve_color(0, 1.0f, 1.0f, 1.0f, 1.0f));
    EXPECT_FALSE(graph->draw_curve(&renderer, 0));
    graph->set_viewport(0, 0, 10, 10);
    EXPECT_FALSE(graph->kill_curve(&renderer, nullptr));
    EXPECT_EQ(counts_of_all_curves(), std::vector<int>{4});
    EXPECT_TRUE(graph->kill_all_curves(&renderer));
}

TEST_F(Graph, keeps_within_the_values_of_a_curve_that_its_host_resized) {
    Curve* const curve = graph->create_curve(2);
    ASSERT_TRUE(curve->alloc(5000));
    EXPECT_TRUE(graph->set_curve_value(0, 4999, point(1.0f, 2.0f)));
    EXPECT_EQ(curve->get_value_vec4(4999), point(1.0f, 2.0f));
    graph->set_viewport(0, 0, 20, 10);
    EXPECT_EQ(curve->get_value_vec4(1), point(-10.0f, -5.0f));
    EXPECT_EQ(curve->get_value_vec4(4999), point(1.0f, 2.0f)) << "no value is kept for it";
    feed(0, 0, 3);
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(counts_of_all_curves(), std::vector<int>{3});
    EXPECT_TRUE(curve->free());
    EXPECT_TRUE(graph->sync_curve_scalars(0));
    EXPECT_EQ(graph->curve_get_diff_points(0), 3u);
}

} // namespace

} // namespace orvex_test
