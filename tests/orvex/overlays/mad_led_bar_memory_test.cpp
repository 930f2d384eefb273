// A bar with more lights than there is memory for. The test refuses such arrays itself, as
// sanitizers end a program that asks for them.

#include "orvex/overlays/mad_led_bar.h"

#include <new>

#include <gtest/gtest.h>

#include "orvex/geometry/shapes/mesh_plane.h"
#include "orvex/math/vec3.h"
#include "orvex/renderer/records/mesh_data.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/support/heap.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(MadLedBarWithoutMemory, has_lights_and_no_vertices) {
    const orvex_test::RefuseArrays refused({.min_size = (std::size_t{1} << 30) + 1});
    const LogCapture log;
    const orvex_test::Owned<MadLedBar> bar(new MadLedBar);
    const vec3 start(0.0f, 0.0f, 0.0f);
    const vec3 end(4.0f, 0.0f, 0.0f);
    EXPECT_TRUE(bar->initialize(start, end, ~0ul, 0.5f));
    ASSERT_FALSE(log.messages().empty()) << "the mesh tells of it";
    EXPECT_EQ(log.messages().front(), "<*> Mesh data allocation failed - 4294967296 vertices "
                                      "required - error: std::bad_alloc");
    EXPECT_EQ(bar->get_num_leds(), ~0ul);
    EXPECT_EQ(bar->get_vertex(0), nullptr);
    bar->set_led_color(~0ul - 1, 1.0f, 0.0f, 0.0f, 1.0f);

    bar->initialize(start, end, 2);
    bar->initialize(start, end, ~0ul, 0.5f);
    EXPECT_TRUE(bar->_vp_update_leds_positions()) << "stops where the points end";
    EXPECT_THROW(bar->initialize(start, end, ~0ul / 128), std::bad_alloc);
    EXPECT_TRUE(bar->_vp_update_leds_positions()) << "there is no point to place";
}

} // namespace

} // namespace orvex_test
