#include "orvex_kit/compare.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

#include "orvex_kit/private/visit_sample.h"

namespace orvex::kit {

namespace {

constexpr double infinitely = std::numeric_limits<double>::infinity();

template<class T>
double distance(T a, T b) {
    if (a == b)
        return 0.0;
    const double difference = std::abs(static_cast<double>(a) - static_cast<double>(b));
    if (!std::isnan(difference))
        return difference;
    // Two NaNs are the same, one by itself is nowhere near.
    const bool both = std::isnan(static_cast<double>(a)) && std::isnan(static_cast<double>(b));
    return both ? 0.0 : infinitely;
}

/// Calls `look(x, y, difference)` for each pixel, with the largest difference of its samples. Sizes
/// and kinds are the same.
template<class Look>
void for_each_pixel(const Picture& a, const Picture& b, Look look) {
    visit_sample(a.sample(), [&](auto zero) {
        using T = decltype(zero);
        const int channels = a.channels();
        for (int y = 0; y < a.height(); ++y) {
            const T *from = a.row<T>(y), *other = b.row<T>(y);
            for (int x = 0; x < a.width(); ++x, from += channels, other += channels) {
                double largest = 0.0;
                for (int c = 0; c < channels; ++c)
                    largest = std::max(largest, distance(from[c], other[c]));
                look(x, y, largest);
            }
        }
    });
}

std::string kind_of(const Picture& picture) {
    if (picture.is_empty())
        return "no pixels";
    return std::to_string(picture.width()) + "x" + std::to_string(picture.height()) + " pixels, " +
           std::to_string(picture.channels()) +
           (picture.channels() == 1 ? " channel, " : " channels, ") + name_of(picture.sample());
}

/// Why two pictures can't be compared; empty if they can.
std::string mistake_in(const Picture& a, const Picture& b) {
    if (a.width() == b.width() && a.height() == b.height() && a.channels() == b.channels() &&
        a.sample() == b.sample())
        return "";
    return "the pictures have " + kind_of(a) + " and " + kind_of(b);
}

/// Zero, where there is no such limit.
double limit_of(double wanted) {
    return wanted > 0.0 ? wanted : 0.0;
}

std::string text_of(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", number);
    return text;
}

std::string sentence_of(const Comparison& found, const Picture& picture) {
    const std::size_t pixels =
        static_cast<std::size_t>(picture.width()) * static_cast<std::size_t>(picture.height());
    return std::to_string(found.differing) + " of " + std::to_string(pixels) +
           (found.differing == 1 ? " pixels differs" : " pixels differ") + ", by up to " +
           text_of(found.largest) + ", within " + std::to_string(found.width) + "x" +
           std::to_string(found.height) + " at " + std::to_string(found.left) + "," +
           std::to_string(found.top);
}

/// Grows by one pixel.
void add_to_box(Comparison& found, int x, int y) {
    if (found.differing == 0) {
        found.left = x;
        found.top = y;
    }
    const int right = std::max(found.left + found.width, x + 1);
    const int bottom = std::max(found.top + found.height, y + 1);
    found.left = std::min(found.left, x);
    found.top = std::min(found.top, y);
    found.width = right - found.left;
    found.height = bottom - found.top;
}

} // namespace

Comparison compare(const Picture& a, const Picture& b, const CompareLimits& limits) {
    Comparison found;
    found.reason = mistake_in(a, b);
    if (!found.reason.empty())
        return found;
    const double allowed = limit_of(limits.largest);
    for_each_pixel(a, b, [&](int x, int y, double difference) {
        found.largest = std::max(found.largest, difference);
        if (difference <= allowed)
            return;
        add_to_box(found, x, y);
        ++found.differing;
    });
    const double share = limit_of(limits.share);
    const double pixels = static_cast<double>(a.width()) * a.height();
    found.is_equal = static_cast<double>(found.differing) <= share * pixels;
    if (!found.is_equal)
        found.reason = sentence_of(found, a);
    return found;
}

namespace {

/// The largest difference that is finite.
double largest_finite(const Picture& a, const Picture& b) {
    double largest = 0.0;
    for_each_pixel(a, b, [&](int, int, double difference) {
        if (difference < infinitely)
            largest = std::max(largest, difference);
    });
    return largest;
}

} // namespace

Outcome show_difference(const Picture& a, const Picture& b, Picture& result,
                        const CompareLimits& limits) {
    if (std::string mistake = mistake_in(a, b); !mistake.empty())
        return Outcome::failure(std::move(mistake));
    Picture shown;
    if (Outcome made = shown.create(a.width(), a.height(), 1, Sample::u8); !made)
        return made;
    const double allowed = limit_of(limits.largest), most = largest_finite(a, b);
    for_each_pixel(a, b, [&](int x, int y, double difference) {
        if (difference <= allowed)
            return;
        const double part = difference < most ? difference / most : 1.0;
        shown.row<std::uint8_t>(y)[x] = static_cast<std::uint8_t>(std::lround(64.0 + 191.0 * part));
    });
    result = std::move(shown);
    return Outcome::success();
}

} // namespace orvex::kit
