#include "orvex/geometry/lines/line.h"

#include <gtest/gtest.h>

#include "orvex/renderer/records/polyline_data.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/geometry/printers.h"

namespace orvex_test {

using namespace orvex;

namespace {

class LineTest : public testing::Test {
protected:
    vec4 position(int i) const { return line->get_polyline_data()->vertices[i].position; }
    vec4 color(int i) const { return line->get_polyline_data()->vertices[i].color; }

    Owned<Line> line{new Line};
};

TEST_F(LineTest, is_a_white_polyline_of_two_vertices_at_first) {
    EXPECT_TRUE(line->is_type_of(NODE_TYPE_POLYLINE));
    EXPECT_TRUE(line->is_type_of(NODE_TYPE_LINE));
    EXPECT_EQ(line->get_num_vertices(nullptr), 2u);
    EXPECT_EQ(line->get_polyline_data()->num_lines, 1u);
    EXPECT_EQ(position(0), vec4(-1.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(position(1), vec4(1.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(color(0), vec4(1.0f, 1.0f, 1.0f, 1.0f));
    EXPECT_EQ(color(1), vec4(1.0f, 1.0f, 1.0f, 1.0f));
}

TEST_F(LineTest, moves_its_ends) {
    line->set_start_position(vec3(1.0f, 2.0f, 3.0f));
    line->set_end_position(vec3(4.0f, 5.0f, 6.0f));
    EXPECT_EQ(position(0), vec4(1.0f, 2.0f, 3.0f, 1.0f));
    EXPECT_EQ(position(1), vec4(4.0f, 5.0f, 6.0f, 1.0f));
    line->set_start_position(7.0f, 8.0f, 9.0f);
    line->set_end_position(10.0f, 11.0f, 12.0f);
    EXPECT_EQ(position(0), vec4(7.0f, 8.0f, 9.0f, 1.0f));
    EXPECT_EQ(position(1), vec4(10.0f, 11.0f, 12.0f, 1.0f));
}

TEST_F(LineTest, colours_its_ends) {
    line->set_start_color(vec4(1.0f, 0.0f, 0.0f, 0.5f));
    line->set_end_color(vec4(0.0f, 1.0f, 0.0f, 0.25f));
    EXPECT_EQ(color(0), vec4(1.0f, 0.0f, 0.0f, 0.5f));
    EXPECT_EQ(color(1), vec4(0.0f, 1.0f, 0.0f, 0.25f));
    line->set_start_color(0.1f, 0.2f, 0.3f, 0.4f);
    line->set_end_color(0.5f, 0.6f, 0.7f, 0.8f);
    EXPECT_EQ(color(0), vec4(0.1f, 0.2f, 0.3f, 0.4f));
    EXPECT_EQ(color(1), vec4(0.5f, 0.6f, 0.7f, 0.8f));
}

TEST_F(LineTest, draws_a_part_by_factors_of_the_stored_segment) {
    line->set_start_position(0.0f, 0.0f, 0.0f);
    line->set_end_position(4.0f, 8.0f, -16.0f);
    line->set_start_factor(0.5f);
    line->set_end_factor(0.5f);
    EXPECT_EQ(position(0), vec4(2.0f, 4.0f, -8.0f, 1.0f));
    EXPECT_EQ(position(1), vec4(2.0f, 4.0f, -8.0f, 1.0f));
    line->set_end_factor(0.25f);
    EXPECT_EQ(position(1), vec4(3.0f, 6.0f, -12.0f, 1.0f));
    line->set_start_factor(0.0f);
    EXPECT_EQ(position(0), vec4(0.0f, 0.0f, 0.0f, 1.0f));
    line->set_start_factor(1.5f);
    EXPECT_EQ(position(0), vec4(6.0f, 12.0f, -24.0f, 1.0f));
    line->set_end_factor(0.0f);
    EXPECT_EQ(position(1), vec4(4.0f, 8.0f, -16.0f, 1.0f));
}

TEST_F(LineTest, marks_what_it_changed_for_upload) {
    PolylineData& data = *line->get_polyline_data();
    data.positions_need_update = false;
    data.colors_need_update = false;
    line->set_end_factor(0.5f);
    EXPECT_TRUE(data.positions_need_update);
    EXPECT_FALSE(data.colors_need_update);
    line->set_end_color(1.0f, 0.0f, 0.0f, 1.0f);
    EXPECT_TRUE(data.colors_need_update);
}

TEST_F(LineTest, without_a_store_remembers_its_ends) {
    line->cleanup_polyline_data(nullptr);
    line->set_start_position(1.0f, 2.0f, 3.0f);
    line->set_start_color(1.0f, 0.0f, 0.0f, 1.0f);
    line->set_end_factor(0.5f);
    line->init_polyline_data(nullptr);
    line->alloc_vertex_data(2);
    line->set_start_factor(0.0f);
    EXPECT_EQ(position(0), vec4(1.0f, 2.0f, 3.0f, 1.0f));
}

} // namespace

} // namespace orvex_test
