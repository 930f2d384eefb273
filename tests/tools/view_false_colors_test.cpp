// What layers look like on a screen.

#include <array>
#include <cmath>
#include <limits>
#include <set>

#include <gtest/gtest.h>

#include "false_colors.h"

namespace orvex_test {

namespace {

namespace kit = orvex::kit;
using Color8 = std::array<int, 4>;

constexpr Color8 background = {51, 102, 204, 255};

FalseColors colors() {
    FalseColors result{{0.2f, 0.4f, 0.8f, 1.0f}, {}};
    result.bounds.min = {-1.0f, 0.0f, 5.0f};
    result.bounds.max = {1.0f, 10.0f, 5.0f};
    return result;
}

template<class Value>
kit::Picture picture_of(kit::Layer layer, const std::vector<Value>& values) {
    kit::Picture picture;
    const auto channels = static_cast<std::size_t>(kit::channels_of(layer));
    EXPECT_TRUE(picture.create(static_cast<int>(values.size() / channels), 1,
                               static_cast<int>(channels), kit::sample_of(layer)));
    std::copy(values.begin(), values.end(), picture.row<Value>(0));
    return picture;
}

struct Shown {
    kit::Picture picture;
    std::string caption;
    Color8 at(int x) const {
        const auto* const p = picture.row<std::uint8_t>(0) + 4 * x;
        return {p[0], p[1], p[2], p[3]};
    }
    int lightness(int x) const { return at(x)[0] * 3 + at(x)[1] * 6 + at(x)[2]; }
};

template<class Value>
Shown show(kit::Layer layer, const std::vector<Value>& values) {
    Shown shown;
    EXPECT_EQ(show_in_false_colors(layer, picture_of(layer, values), colors(), shown.picture,
                                   shown.caption)
                  .reason(),
              "");
    return shown;
}

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

TEST(FalseColors, of_depth_darken_evenly_from_the_nearest_to_the_farthest) {
    std::vector<float> depths;
    for (int i = 0; i <= 40; ++i)
        depths.push_back(2.0f + 0.1f * static_cast<float>(i));
    depths.push_back(infinity);
    const Shown shown = show(kit::Layer::depth, depths);
    for (int i = 0; i < 40; ++i)
        EXPECT_GT(shown.lightness(i), shown.lightness(i + 1)) << i;
    EXPECT_EQ(shown.at(41), background);
    EXPECT_EQ(shown.caption, "2 to 6");
}

TEST(FalseColors, of_a_depth_that_is_the_same_everywhere_are_one) {
    const Shown shown = show<float>(kit::Layer::depth, {3.0f, 3.0f, infinity});
    EXPECT_EQ(shown.at(0), shown.at(1));
    EXPECT_NE(shown.at(0), background);
    EXPECT_EQ(show<float>(kit::Layer::depth, {infinity}).caption, "");
    EXPECT_EQ(show<float>(kit::Layer::depth, {infinity}).at(0), background);
}

TEST(FalseColors, of_normals_and_positions_are_their_parts) {
    const Shown normals = show<float>(kit::Layer::normal, {1, 0, 0, 0, -1, 0, 0, 0, 1, 0, 0, 0});
    EXPECT_EQ(normals.at(0), (Color8{255, 128, 128, 255}));
    EXPECT_EQ(normals.at(1), (Color8{128, 0, 128, 255}));
    EXPECT_EQ(normals.at(2), (Color8{128, 128, 255, 255}));
    EXPECT_EQ(normals.at(3), background);
    const Shown positions =
        show<float>(kit::Layer::position, {-1, 10, 5, 1, 0, 5, 0, 5, 5, nan, nan, nan});
    EXPECT_EQ(positions.at(0), (Color8{0, 255, 128, 255}));
    EXPECT_EQ(positions.at(1), (Color8{255, 0, 128, 255}));
    EXPECT_EQ(positions.at(2), (Color8{128, 128, 128, 255}));
    EXPECT_EQ(positions.at(3), background);
}

TEST(FalseColors, of_ids_are_told_apart_and_stay) {
    std::vector<std::int32_t> ids = {-1};
    for (std::int32_t id = 0; id < 100; ++id)
        ids.push_back(id);
    const Shown shown = show(kit::Layer::object, ids);
    std::set<Color8> seen;
    for (int i = 1; i <= 100; ++i)
        seen.insert(shown.at(i));
    EXPECT_EQ(seen.size(), 100u);
    EXPECT_EQ(shown.at(0), background);
    EXPECT_EQ(shown.caption, "100 seen");
    const Shown other = show<std::int32_t>(kit::Layer::face, {42, 42, -1, 1'000'000});
    EXPECT_EQ(other.at(0), shown.at(43));
    EXPECT_EQ(other.caption, "2 seen");
    for (int i = 1; i < 100; ++i) {
        int apart = 0;
        for (std::size_t channel = 0; channel < 3; ++channel)
            apart += std::abs(shown.at(i)[channel] - shown.at(i + 1)[channel]);
        EXPECT_GT(apart, 100) << i;
    }
}

TEST(FalseColors, of_colours_are_those) {
    const Shown shown = show<std::uint8_t>(kit::Layer::color, {1, 2, 3, 255});
    EXPECT_EQ(shown.at(0), (Color8{1, 2, 3, 255}));
}

} // namespace

} // namespace orvex_test
