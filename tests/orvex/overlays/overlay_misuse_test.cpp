// Runs with ORVEX_TELL_MISUSE=1 in its environment.

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/overlays/font.h"
#include "orvex/overlays/graph2d.h"
#include "orvex/overlays/hud.h"
#include "orvex/overlays/mad_led_bar.h"
#include "orvex/overlays/tripod_visualizer.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// A node for as long as a row runs.
template<class Class>
struct Owned {
    Class* node = new Class;

    Owned() = default;
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    ~Owned() { node->kill(nullptr, nullptr); }
    Class* operator->() const { return node; }
};

struct Misuse {
    const char* told;
    std::function<void()> commit;
};

void PrintTo(const Misuse& row, std::ostream* out) {
    *out << row.told;
}

// clang-format off
const Misuse rows[] = {
    {"Font::bm_load_charset_from_memory: a null text", [] { EXPECT_FALSE(Owned<Font>()->bm_load_charset_from_memory(nullptr)); }},
    {"Font::bm_load_charset_texture: a null file name", [] { EXPECT_FALSE(Owned<Font>()->bm_load_charset_texture(nullptr, nullptr)); }},
    {"Font::bm_load_charset_texture_from_memory: null bytes", [] { EXPECT_FALSE(Owned<Font>()->bm_load_charset_texture_from_memory(nullptr, nullptr, 1)); }},
    {"Graph2d::kill_curve: a curve that is not the graph's", [] { EXPECT_FALSE(Owned<Graph2d>()->kill_curve(nullptr, nullptr)); }},
    {"Hud::init_texture: a null renderer or file name", [] { EXPECT_FALSE(aux::Hud().init_texture(nullptr, "a.png")); }},
    {"MadLedBar::set_led_color: an index past the last light", [] { Owned<MadLedBar>()->set_led_color(0, 1.0f, 1.0f, 1.0f, 1.0f); }},
    {"TripodVisualizer::init: a null renderer", [] { EXPECT_FALSE(aux::TripodVisualizer().init(nullptr)); }},
};
// clang-format on

class OverlayMisuse : public testing::TestWithParam<Misuse> {};

INSTANTIATE_TEST_SUITE_P(Rows, OverlayMisuse, testing::ValuesIn(rows));

TEST_P(OverlayMisuse, is_told_and_has_its_quiet_result) {
    const Misuse& row = GetParam();
    const LogCapture log;
    row.commit();
    EXPECT_EQ(log.messages(), std::vector<std::string>{std::string("<!> misuse: ") + row.told});
}

} // namespace

} // namespace orvex_test
