#pragma once

/// @file
/// One piece of code for every kind of sample.

#include <cstdint>

#include "orvex_kit/picture.h"

namespace orvex::kit {

/// Calls `work` with a 0 of the type that a sample has; not at all for a value outside the list.
template<class Work>
void visit_sample(Sample sample, Work&& work) {
    switch (sample) {
    case Sample::u8:
        work(std::uint8_t{0});
        break;
    case Sample::u16:
        work(std::uint16_t{0});
        break;
    case Sample::f32:
        work(0.0f);
        break;
    case Sample::i32:
        work(std::int32_t{0});
        break;
    }
}

} // namespace orvex::kit
