#include "orvex/math/private/lanes.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "tests/orvex/math/exact.h"

namespace orvex_test {
namespace {

constexpr int num_rounds = 1000;

/// Integers of all sizes, the same ones in each run: as many small as large, and many 0.
class Integers {
public:
    int next() {
        const auto bits = static_cast<std::int32_t>(engine());
        return engine() % 3 == 0 ? 0 : bits >> (engine() % 32);
    }
    ints4 four() { return ints4{next(), next(), next(), next()}; }

private:
    std::mt19937 engine{20130927};
};

TEST(Lanes, go_to_and_from_any_address) {
    const float from[6] = {0.0f, 1.0f, 2.0f, 3.0f, 4.0f, 5.0f};
    float to[6] = {};
    lanes::store(to + 1, lanes::load<floats4>(from + 1) * lanes::splat(2.0f));
    const float expected[6] = {0.0f, 2.0f, 4.0f, 6.0f, 8.0f, 0.0f};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(to[i], expected[i]) << i;
}

TEST(Lanes, transpose_makes_columns_of_rows) {
    ints4 rows[4] = {{0, 1, 2, 3}, {4, 5, 6, 7}, {8, 9, 10, 11}, {12, 13, 14, 15}};
    lanes::transpose(rows[0], rows[1], rows[2], rows[3]);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            EXPECT_EQ(rows[i][j], j * 4 + i) << i << ", " << j;
}

TEST(Lanes, round_half_away_from_zero) {
    const float values[12] = {0.0f, -0.0f, 0.5f,    -0.5f,    1.49f,    -1.49f,
                              2.5f, -2.5f, 32767.f, -32768.f, 1000.51f, -7.6f};
    for (int i = 0; i < 12; i += 4) {
        const ints4 rounded = lanes::to_ints_rounded(lanes::load<floats4>(values + i));
        for (int lane = 0; lane < 4; ++lane)
            EXPECT_EQ(rounded[lane], std::lround(values[i + lane])) << values[i + lane];
    }
}

TEST(Lanes, keep_their_bits_as_integers) {
    const floats4 value{1.0f, -2.5f, 0.0f, -0.0f};
    const floats4 back = lanes::from_bits(lanes::to_bits(value));
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(static_cast<std::uint32_t>(lanes::to_bits(value)[i]), bits(value[i])) << i;
        EXPECT_EQ(bits(back[i]), bits(value[i])) << i;
    }
}

TEST(Lanes, become_floats) {
    const floats4 value = lanes::to_floats(ints4{0, -1, 255, 1 << 24});
    const float expected[4] = {0.0f, -1.0f, 255.0f, 16777216.0f};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(bits(value[i]), bits(expected[i])) << i;
}

TEST(Lanes, any_finds_each_lane) {
    EXPECT_FALSE(lanes::any(ints4{0, 0, 0, 0}));
    for (int i = 0; i < 4; ++i) {
        ints4 mask{0, 0, 0, 0};
        mask[i] = -1;
        EXPECT_TRUE(lanes::any(mask)) << i;
    }
}

TEST(Lanes, bits_above_zero_stand_in_the_order_of_the_floats) {
    for (unsigned int i = 0; i < 16; ++i) {
        float numbers[16] = {};
        numbers[i] = 1e-45f;
        EXPECT_EQ(lanes::bits_above_zero(numbers), 1u << i);
        EXPECT_EQ(lanes::plain::bits_above_zero(numbers), 1u << i);
    }
}

TEST(Lanes, bits_above_zero_are_those_of_the_plain_form) {
    Integers integers;
    for (int round = 0; round < num_rounds; ++round) {
        float numbers[16];
        for (int quarter = 0; quarter < 4; ++quarter)
            lanes::store(numbers + 4 * quarter, integers.four());
        ASSERT_EQ(lanes::bits_above_zero(numbers), lanes::plain::bits_above_zero(numbers));
    }
}

TEST(Lanes, narrow_stops_at_what_16_bits_hold) {
    const ints4 low{-40000, -32769, -32768, -1}, high{0, 32767, 32768, INT32_MAX};
    const int expected[8] = {-32768, -32768, -32768, -1, 0, 32767, 32767, 32767};
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(lanes::narrow(low, high)[i], expected[i]) << i;
        EXPECT_EQ(lanes::plain::narrow(low, high)[i], expected[i]) << i;
    }
}

TEST(Lanes, narrow_and_zero_bits_are_those_of_the_plain_forms) {
    Integers integers;
    for (int round = 0; round < num_rounds; ++round) {
        const shorts8 low = lanes::narrow(integers.four(), integers.four());
        const shorts8 high = lanes::plain::narrow(integers.four(), integers.four());
        ASSERT_EQ(lanes::zero_bits(low, high), lanes::plain::zero_bits(low, high));
        const ints4 a = integers.four(), b = integers.four();
        const shorts8 quick = lanes::narrow(a, b), plain = lanes::plain::narrow(a, b);
        for (int i = 0; i < 8; ++i)
            ASSERT_EQ(quick[i], plain[i]) << i;
    }
}

TEST(Lanes, zero_bits_stand_in_the_order_of_the_lanes) {
    const shorts8 ones{1, -1, 256, -256, 1, 1, 32767, -32768};
    EXPECT_EQ(lanes::zero_bits(ones, ones), 0u);
    for (unsigned int i = 0; i < 8; ++i) {
        shorts8 one_zero = ones;
        one_zero[i] = 0;
        EXPECT_EQ(lanes::zero_bits(one_zero, ones), 1u << i);
        EXPECT_EQ(lanes::zero_bits(ones, one_zero), 1u << (i + 8));
    }
}

} // namespace
} // namespace orvex_test
