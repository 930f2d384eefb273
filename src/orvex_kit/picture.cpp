// Pixels in one block. Its size fits a std::size_t whatever create takes: the sides are bounded.

#include "orvex_kit/picture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

#include "orvex_kit/private/visit_sample.h"

namespace orvex::kit {

static_assert(sizeof(std::size_t) >= 8, "the largest picture has 69 GB");

std::size_t size_of(Sample sample) noexcept {
    switch (sample) {
    case Sample::u8:
        return 1;
    case Sample::u16:
        return 2;
    case Sample::f32:
    case Sample::i32:
        return 4;
    }
    return 0;
}

const char* name_of(Sample sample) noexcept {
    switch (sample) {
    case Sample::u8:
        return "8-bit";
    case Sample::u16:
        return "16-bit";
    case Sample::f32:
        return "float";
    case Sample::i32:
        return "32-bit integer";
    }
    return "unknown";
}

Picture::Picture(const Picture& other) noexcept {
    *this = other;
}

Picture::Picture(Picture&& other) noexcept {
    *this = std::move(other);
}

Picture& Picture::operator=(const Picture& other) noexcept {
    if (this == &other)
        return *this;
    clear();
    if (other.is_empty())
        return *this;
    // Without a message, which would need memory as well.
    pixels.reset(new (std::nothrow) unsigned char[other.size_bytes()]);
    if (!pixels)
        return *this;
    std::memcpy(pixels.get(), other.pixels.get(), other.size_bytes());
    columns = other.columns;
    rows = other.rows;
    depth = other.depth;
    kind = other.kind;
    return *this;
}

Picture& Picture::operator=(Picture&& other) noexcept {
    if (this == &other)
        return *this;
    columns = std::exchange(other.columns, 0);
    rows = std::exchange(other.rows, 0);
    depth = std::exchange(other.depth, 0);
    kind = std::exchange(other.kind, Sample::u8);
    pixels = std::move(other.pixels);
    return *this;
}

Picture::~Picture() = default;

namespace {

std::string size_text(int width, int height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

/// Why there can't be such a picture; empty if there can.
std::string mistake_in_shape(int width, int height, int channels, Sample sample) {
    if (width < 1 || height < 1 || width > Picture::max_side || height > Picture::max_side)
        return "a picture of " + size_text(width, height) + " pixels: sides go from 1 to " +
               std::to_string(Picture::max_side);
    if (channels < 1 || channels > 4)
        return "a picture of " + std::to_string(channels) + " channels: there are 1 to 4";
    if (size_of(sample) == 0)
        return "a picture of samples of an unknown kind";
    return "";
}

} // namespace

Outcome Picture::create(int width, int height, int channels, Sample sample) {
    std::string mistake = mistake_in_shape(width, height, channels, sample);
    if (!mistake.empty())
        return Outcome::failure(std::move(mistake));
    const std::size_t bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                              static_cast<std::size_t>(channels) * size_of(sample);
    std::unique_ptr<unsigned char[]> fresh(new (std::nothrow) unsigned char[bytes]());
    if (!fresh)
        return Outcome::failure("no memory for a picture of " + size_text(width, height) +
                                " pixels: " + std::to_string(bytes) + " bytes");
    pixels = std::move(fresh);
    columns = width;
    rows = height;
    depth = channels;
    kind = sample;
    return Outcome::success();
}

Outcome Picture::copy_from(const Picture& other) {
    Picture copy(other);
    if (copy.is_empty() && !other.is_empty())
        return Outcome::failure("no memory for a copy of a picture of " +
                                size_text(other.columns, other.rows) +
                                " pixels: " + std::to_string(other.size_bytes()) + " bytes");
    *this = std::move(copy);
    return Outcome::success();
}

void Picture::clear() noexcept {
    *this = Picture();
}

std::size_t Picture::row_bytes() const noexcept {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(depth) * size_of(kind);
}

std::size_t Picture::size_bytes() const noexcept {
    return row_bytes() * static_cast<std::size_t>(rows);
}

unsigned char* Picture::row_data(int y) noexcept {
    if (y < 0 || y >= rows)
        return nullptr;
    return pixels.get() + static_cast<std::size_t>(y) * row_bytes();
}

namespace {

template<class T>
constexpr T full_alpha() {
    if constexpr (std::is_floating_point_v<T>)
        return 1;
    else
        return std::numeric_limits<T>::max();
}

/// Of each pixel the first three of its four channels, as for most files and films of a view:
/// counts that the compiler knows take a third of the time.
template<class T>
void take_colors(const T* from, T* to, int width) {
    for (int x = 0; x < width; ++x, from += 4, to += 3) {
        to[0] = from[0];
        to[1] = from[1];
        to[2] = from[2];
    }
}

/// Channels that the source lacks keep their 0, but for the alpha.
template<class T>
void take_row(const T* from, int from_channels, T* to, int to_channels, int width) {
    if (from_channels == 4 && to_channels == 3)
        return take_colors(from, to, width);
    const int common = std::min(from_channels, to_channels);
    const bool has_alpha = to_channels == 2 || to_channels == 4;
    for (int x = 0; x < width; ++x, from += from_channels, to += to_channels) {
        std::copy_n(from, common, to);
        if (has_alpha && common < to_channels)
            to[to_channels - 1] = full_alpha<T>();
    }
}

} // namespace

Outcome Picture::take_channels(const Picture& other, int count) {
    if (other.is_empty())
        return Outcome::failure("channels of an empty picture");
    Picture result;
    if (Outcome made = result.create(other.columns, other.rows, count, other.kind); !made)
        return made;
    visit_sample(other.kind, [&](auto zero) {
        using T = decltype(zero);
        for (int y = 0; y < other.rows; ++y)
            take_row(other.row<T>(y), other.depth, result.row<T>(y), count, other.columns);
    });
    *this = std::move(result);
    return Outcome::success();
}

namespace {

bool is_equal(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

bool Picture::operator==(const Picture& other) const noexcept {
    if (columns != other.columns || rows != other.rows || depth != other.depth ||
        kind != other.kind)
        return false;
    if (is_empty() || std::memcmp(data(), other.data(), size_bytes()) == 0)
        return true;
    if (kind != Sample::f32)
        return false;
    const auto* const samples = row<float>(0);
    const std::size_t count = size_bytes() / sizeof(float);
    return std::equal(samples, samples + count, other.row<float>(0), is_equal);
}

} // namespace orvex::kit
