// A bar with more lights than there is memory for. The whole program refuses such arrays itself, as
// sanitizers end a program that asks for them.

#include "overlays/mad_led_bar.h"

#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "geometry/mesh_data.h"
#include "geometry/mesh_plane.h"
#include "geometry/owned_mesh.h"
#include "math/vec3.h"
#include "support/log_capture.h"

namespace {

constexpr std::size_t largest_array = std::size_t{1} << 30;

} // namespace

void* operator new[](std::size_t size) {
    void* const block = size <= largest_array ? std::malloc(size == 0 ? 1 : size) : nullptr;
    if (block)
        return block;
    throw std::bad_alloc();
}

void operator delete[](void* block) noexcept {
    std::free(block);
}

void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}

namespace {

using namespace orvex;

TEST(MadLedBarWithoutMemory, has_lights_and_no_vertices) {
    const test::LogCapture log;
    const orvex_test::Owned<MadLedBar> bar(new MadLedBar);
    const vec3 start(0.0f, 0.0f, 0.0f);
    const vec3 end(4.0f, 0.0f, 0.0f);
    EXPECT_TRUE(bar->initialize(start, end, ~0ul, 0.5f));
    EXPECT_FALSE(log.messages().empty()) << "the mesh tells of it";
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
