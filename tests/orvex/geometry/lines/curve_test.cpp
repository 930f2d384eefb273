#include "orvex/geometry/lines/curve.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/renderer/records/polyline_data.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/support/fake_renderer.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

using OwnedCurve = Owned<Curve>;

OwnedCurve make_curve(unsigned long count) {
    OwnedCurve curve(new Curve);
    EXPECT_TRUE(curve->alloc(count));
    return curve;
}

TEST(Curve, is_a_polyline_without_points_at_first) {
    const OwnedCurve curve(new Curve);
    EXPECT_TRUE(curve->is_type_of(NODE_TYPE_POLYLINE));
    EXPECT_TRUE(curve->is_type_of(NODE_TYPE_CURVE));
    EXPECT_EQ(curve->get_num_points(), 0u);
    EXPECT_FALSE(curve->set_value(0, vec4()));
    EXPECT_EQ(curve->get_value_vec4_ptr(0), nullptr);
    EXPECT_EQ(curve->get_value_xyzw_ptr(0), nullptr);
    EXPECT_EQ(std::as_const(*curve).get_value_vec4_ptr(0), nullptr);
    EXPECT_EQ(std::as_const(*curve).get_value_xyzw_ptr(0), nullptr);
    EXPECT_EQ(curve->get_value_vec4(0), vec4());
    EXPECT_EQ(curve->get_value_vec3(0).x, 0.0f);
}

TEST(Curve, has_a_vertex_for_each_point_joined_as_a_strip) {
    const OwnedCurve curve = make_curve(5);
    curve->get_polyline_data()->render_mode = LINE_RENDER_MODE_LINES;
    EXPECT_TRUE(curve->alloc(4));
    EXPECT_EQ(curve->get_num_points(), 4u);
    EXPECT_EQ(curve->get_num_vertices(nullptr), 4u);
    EXPECT_EQ(curve->get_polyline_data()->render_mode, LINE_RENDER_MODE_LINE_STRIP);
    EXPECT_EQ(curve->get_value_vec4(3), vec4());
}

TEST(Curve, plots_each_value_that_it_keeps) {
    const OwnedCurve curve = make_curve(4);
    const float floats[] = {10.0f, 11.0f, 12.0f, 0.25f};
    EXPECT_TRUE(curve->set_value(0, vec4(1.0f, 2.0f, 3.0f, 0.5f)));
    EXPECT_TRUE(curve->set_value(1, vec3(4.0f, 5.0f, 6.0f)));
    EXPECT_TRUE(curve->set_value(2, 7.0f, 8.0f, 9.0f, 2.0f));
    EXPECT_TRUE(curve->set_value(3, floats));
    const vec4 expected[] = {vec4(1.0f, 2.0f, 3.0f, 0.5f), vec4(4.0f, 5.0f, 6.0f, 1.0f),
                             vec4(7.0f, 8.0f, 9.0f, 2.0f), vec4(10.0f, 11.0f, 12.0f, 0.25f)};
    for (unsigned long i = 0; i < 4; ++i) {
        EXPECT_EQ(curve->get_value_vec4(i), expected[i]);
        EXPECT_EQ(*curve->get_value_vec4_ptr(i), expected[i]);
        EXPECT_EQ(curve->get_value_xyzw_ptr(i)[3], expected[i].w);
        EXPECT_EQ(std::as_const(*curve).get_value_vec4_ptr(i), curve->get_value_vec4_ptr(i));
        EXPECT_EQ(std::as_const(*curve).get_value_xyzw_ptr(i), curve->get_value_xyzw_ptr(i));
        EXPECT_EQ(curve->get_value_vec3(i).z, expected[i].z);
        EXPECT_EQ(curve->get_polyline_data()->vertices[i].position, expected[i]);
    }
    EXPECT_TRUE(curve->get_polyline_data()->positions_need_update);
}

TEST(Curve, refuses_values_past_its_points) {
    const OwnedCurve curve = make_curve(2);
    const float floats[] = {1.0f, 2.0f, 3.0f, 4.0f};
    EXPECT_FALSE(curve->set_value(2, vec4(1.0f, 2.0f, 3.0f, 4.0f)));
    EXPECT_FALSE(curve->set_value(2, vec3(1.0f, 2.0f, 3.0f)));
    EXPECT_FALSE(curve->set_value(2, 1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_FALSE(curve->set_value(2, floats));
    EXPECT_FALSE(curve->set_value(0, static_cast<const float*>(nullptr)));
    EXPECT_FALSE(curve->get_polyline_data()->positions_need_update);
    EXPECT_EQ(curve->get_value_vec4(2), vec4());
    EXPECT_EQ(curve->get_value_vec4_ptr(2), nullptr);
}

TEST(Curve, frees_its_values_and_keeps_its_vertices) {
    const OwnedCurve curve = make_curve(3);
    EXPECT_TRUE(curve->free());
    EXPECT_EQ(curve->get_num_points(), 0u);
    EXPECT_EQ(curve->get_num_vertices(nullptr), 3u);
    EXPECT_FALSE(curve->set_value(0, vec4()));
    EXPECT_TRUE(curve->free());
}

TEST(Curve, lets_everything_go_in_cleanup) {
    FakeRenderer renderer;
    const OwnedCurve curve = make_curve(3);
    renderer.name_pointer(curve->get_polyline_data(), "store");
    EXPECT_TRUE(curve->_cleanup(&renderer));
    EXPECT_EQ(renderer.take_calls(), std::vector<std::string>{"polyline_vb_kill(store)"});
    EXPECT_EQ(curve->get_num_points(), 0u);
    EXPECT_EQ(curve->get_polyline_data(), nullptr);
    EXPECT_FALSE(curve->alloc(3));
}

TEST(Curve, tells_that_memory_ran_out) {
    const LogCapture log;
    const OwnedCurve curve = make_curve(3);
    EXPECT_FALSE(curve->alloc(1ul << 60));
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0].rfind("<*> std::bad_alloc exception caught - what: std::bad_", 0),
              0u);
    EXPECT_FALSE(curve->set_value(0, vec4()));
    EXPECT_EQ(curve->get_value_vec4(0), vec4());
    EXPECT_TRUE(curve->alloc(2));
}

TEST(Curve2D, holds_a_curve_and_its_values) {
    _Curve2D graph_curve;
    ASSERT_TRUE(graph_curve.init(3));
    EXPECT_EQ(graph_curve.diff_points, 0u);
    EXPECT_EQ(graph_curve.num_visible_points, 3u);
    EXPECT_EQ(graph_curve.curve->get_num_points(), 3u);
    EXPECT_EQ(graph_curve.values[2], vec4());
    EXPECT_TRUE(graph_curve.samples.empty());
    EXPECT_TRUE(graph_curve.cleanup(nullptr));
    EXPECT_EQ(graph_curve.curve, nullptr);
    EXPECT_EQ(graph_curve.values, nullptr);
    EXPECT_TRUE(graph_curve.cleanup(nullptr));
}

TEST(Curve2D, ends_its_curve_with_the_renderer) {
    FakeRenderer renderer;
    _Curve2D graph_curve;
    ASSERT_TRUE(graph_curve.init(3));
    renderer.name_pointer(graph_curve.curve->get_polyline_data(), "store");
    EXPECT_TRUE(graph_curve.cleanup(&renderer));
    EXPECT_EQ(renderer.take_calls(), std::vector<std::string>{"polyline_vb_kill(store)"});
}

TEST(Curve2D, ends_what_it_held_when_it_is_made_anew) {
    _Curve2D graph_curve;
    ASSERT_TRUE(graph_curve.init(3));
    PolylineData* const before = graph_curve.curve->get_polyline_data();
    before->inc_ref();
    ASSERT_TRUE(graph_curve.init(5));
    EXPECT_EQ(before->get_ref(), 1);
    delete before;
    EXPECT_EQ(graph_curve.num_visible_points, 5u);
    EXPECT_EQ(graph_curve.curve->get_num_points(), 5u);
    EXPECT_TRUE(graph_curve.cleanup(nullptr));
}

TEST(Curve2D, fails_with_its_curve) {
    const LogCapture log;
    _Curve2D graph_curve;
    EXPECT_FALSE(graph_curve.init(1ul << 60));
    EXPECT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(graph_curve.values, nullptr);
    EXPECT_TRUE(graph_curve.cleanup(nullptr));
}

} // namespace

} // namespace orvex_test
