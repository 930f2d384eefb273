#include "orvex/diagnostics/private/pixel_difference.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace orvex_test {

using namespace orvex;
namespace {

using Bytes = std::vector<unsigned char>;

/// The plainest way to count.
unsigned long plain_count(const Bytes& a, const Bytes& b, unsigned long step) {
    unsigned long count = 0;
    for (unsigned long pixel = 0; pixel * 4 < a.size(); pixel += step)
        for (unsigned long channel = 0; channel < 4; ++channel)
            if (a[pixel * 4 + channel] != b[pixel * 4 + channel]) {
                ++count;
                break;
            }
    return count;
}

void expect_plain_count(const Bytes& a, const Bytes& b) {
    const unsigned long pixels = a.size() / 4;
    const unsigned long every = plain_count(a, b, 1);
    const unsigned long second = plain_count(a, b, 2);
    EXPECT_EQ(count_different_pixels(a.data(), b.data(), pixels, PixelStep::every), every);
    EXPECT_EQ(count_different_pixels(a.data(), b.data(), pixels, PixelStep::second), second);
    EXPECT_EQ(has_different_pixel(a.data(), b.data(), pixels, PixelStep::every), every != 0);
    EXPECT_EQ(has_different_pixel(a.data(), b.data(), pixels, PixelStep::second), second != 0);
}

TEST(PixelDifference, of_no_pixels_is_none) {
    EXPECT_EQ(count_different_pixels(nullptr, nullptr, 0, PixelStep::every), 0u);
    EXPECT_FALSE(has_different_pixel(nullptr, nullptr, 0, PixelStep::second));
}

TEST(PixelDifference, counts_a_pixel_once_however_much_of_it_differs) {
    const Bytes a = {1, 2, 3, 4, 1, 2, 3, 4};
    const Bytes b = {9, 9, 9, 9, 1, 2, 3, 5};
    EXPECT_EQ(count_different_pixels(a.data(), b.data(), 2, PixelStep::every), 2u);
    EXPECT_EQ(count_different_pixels(a.data(), b.data(), 2, PixelStep::second), 1u);
}

// Sizes around those of the stretches in which buffers are compared.
TEST(PixelDifference, counts_as_the_plain_way_does_at_every_size) {
    std::mt19937 random(7);
    for (const unsigned long pixels :
         {1u, 2u, 3u, 63u, 64u, 65u, 2047u, 2048u, 2049u, 4095u, 4096u, 4097u, 10001u})
        for (const unsigned int percent : {0u, 1u, 50u, 100u}) {
            Bytes a(pixels * 4);
            for (unsigned char& byte : a)
                byte = static_cast<unsigned char>(random());
            Bytes b = a;
            for (unsigned long pixel = 0; pixel < pixels; ++pixel)
                if (random() % 100 < percent) {
                    unsigned char& byte = b[pixel * 4 + random() % 4];
                    byte = static_cast<unsigned char>(byte ^ 1u << random() % 8);
                }
            SCOPED_TRACE(testing::Message() << pixels << " pixels, " << percent << " percent");
            expect_plain_count(a, b);
        }
}

TEST(PixelDifference, is_found_at_any_place) {
    const unsigned long pixels = 5000;
    const Bytes a(pixels * 4, 7);
    for (unsigned long pixel = 0; pixel < pixels; ++pixel) {
        Bytes b = a;
        b[pixel * 4 + 3] = 135;
        const bool even = pixel % 2 == 0;
        ASSERT_EQ(count_different_pixels(a.data(), b.data(), pixels, PixelStep::every), 1u);
        ASSERT_EQ(count_different_pixels(a.data(), b.data(), pixels, PixelStep::second),
                  even ? 1u : 0u);
        ASSERT_TRUE(has_different_pixel(a.data(), b.data(), pixels, PixelStep::every));
        ASSERT_EQ(has_different_pixel(a.data(), b.data(), pixels, PixelStep::second), even);
    }
}

} // namespace
} // namespace orvex_test
