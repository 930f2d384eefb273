#pragma once

#include <cstdint>
#include <random>

#include <gtest/gtest.h>

#include "orvex_kit/picture.h"

namespace orvex_test {

/// Black.
inline orvex::kit::Picture make_picture(int width, int height, int channels,
                                        orvex::kit::Sample sample) {
    orvex::kit::Picture picture;
    const orvex::kit::Outcome made = picture.create(width, height, channels, sample);
    EXPECT_EQ(made.reason(), "");
    return picture;
}

/// Every byte by chance, the same at each call.
inline orvex::kit::Picture noise_picture(int width, int height, int channels,
                                         orvex::kit::Sample sample) {
    orvex::kit::Picture picture = make_picture(width, height, channels, sample);
    std::mt19937 random(1);
    unsigned char* const bytes = picture.row_data(0);
    for (std::size_t i = 0; i < picture.size_bytes(); ++i)
        bytes[i] = static_cast<unsigned char>(random());
    return picture;
}

} // namespace orvex_test
