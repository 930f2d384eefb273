#include "orvex/renderer/opengl/window/linux/private/egl_config.h"

#include <vector>

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(EglConfig, falls_back_from_a_wish_of_depth_bits) {
    EXPECT_EQ(depths_to_try(32), std::vector<int>({32, 24, 16}));
    EXPECT_EQ(depths_to_try(24), std::vector<int>({24, 16}));
    EXPECT_EQ(depths_to_try(20), std::vector<int>({20, 16}));
    EXPECT_EQ(depths_to_try(16), std::vector<int>({16}));
    EXPECT_EQ(depths_to_try(0), std::vector<int>({0}));
}

TEST(EglConfig, splits_the_colour_bits) {
    struct Row {
        int color_bits;
        int red, green, blue, alpha;
    };
    for (const Row& row : {Row{16, 5, 6, 5, 0}, Row{24, 8, 8, 8, 0}, Row{32, 8, 8, 8, 8},
                           Row{0, 8, 8, 8, 8}, Row{64, 8, 8, 8, 8}}) {
        ContextRequest request;
        request.color_bits = row.color_bits;
        request.depth_bits = 24;
        request.stencil_bits = 8;
        request.samples = 4;
        const EglConfigFacts facts = wanted_facts(request);
        EXPECT_EQ(facts.red, row.red) << row.color_bits;
        EXPECT_EQ(facts.green, row.green) << row.color_bits;
        EXPECT_EQ(facts.blue, row.blue) << row.color_bits;
        EXPECT_EQ(facts.alpha, row.alpha) << row.color_bits;
        EXPECT_EQ(facts.depth, 24);
        EXPECT_EQ(facts.stencil, 8);
        EXPECT_EQ(facts.samples, 4);
    }
}

TEST(EglConfig, weighs_colour_before_alpha_before_depth_before_stencil_before_samples) {
    const EglConfigFacts wish{8, 8, 8, 8, 24, 0, 0};
    const std::vector<EglConfigFacts> nearest_first = {
        {8, 8, 8, 8, 24, 0, 0}, {8, 8, 8, 8, 24, 0, 4}, {8, 8, 8, 8, 24, 8, 0},
        {8, 8, 8, 8, 32, 0, 0}, {8, 8, 8, 0, 24, 0, 0}, {10, 10, 10, 8, 24, 0, 0},
    };
    for (std::size_t i = 0; i < nearest_first.size(); ++i)
        for (std::size_t j = 0; j < nearest_first.size(); ++j)
            EXPECT_EQ(is_nearer(wish, nearest_first[i], nearest_first[j]), i < j) << i << " " << j;
}

TEST(EglConfig, of_a_display_come_nearest_first) {
    const EGLDisplay display =
        eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    ASSERT_TRUE(eglInitialize(display, nullptr, nullptr));
    const auto facts_of = [&](EGLConfig config) {
        const auto told = [&](EGLint name) {
            EGLint value = -1;
            EXPECT_TRUE(eglGetConfigAttrib(display, config, name, &value));
            return value;
        };
        return EglConfigFacts{told(EGL_RED_SIZE),   told(EGL_GREEN_SIZE), told(EGL_BLUE_SIZE),
                              told(EGL_ALPHA_SIZE), told(EGL_DEPTH_SIZE), told(EGL_STENCIL_SIZE),
                              told(EGL_SAMPLES)};
    };
    for (const int color_bits : {16, 24, 32}) {
        for (const int depth_bits : {0, 16, 24}) {
            ContextRequest request;
            request.color_bits = color_bits;
            request.depth_bits = depth_bits;
            const EglConfigFacts wish = wanted_facts(request);
            const std::vector<EGLConfig> configs = choose_configs(display, request);
            ASSERT_GT(configs.size(), 1u);
            EXPECT_TRUE(is_nearer(wish, facts_of(configs.front()), facts_of(configs.back())));
            for (std::size_t i = 1; i < configs.size(); ++i)
                EXPECT_FALSE(is_nearer(wish, facts_of(configs[i]), facts_of(configs[i - 1])))
                    << color_bits << " " << depth_bits << " " << i;
        }
    }
}

} // namespace

} // namespace orvex_test
