#pragma once

/// @file
/// Picture: pixels in memory, of any kind that the kit draws, writes and compares.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "orvex_kit/api.h"
#include "orvex_kit/outcome.h"

namespace orvex::kit {

/// What one channel of one pixel is.
enum class Sample {
    u8,  ///< `std::uint8_t`; 255 is full
    u16, ///< `std::uint16_t`; 65,535 is full
    f32, ///< `float`; any value, infinities and NaN too
    i32, ///< `std::int32_t`, as for ids
};

/// Bytes of a sample: 1, 2, 4 or 4; 0 for a value outside the list.
ORVEX_KIT_API std::size_t size_of(Sample sample) noexcept;
/// What a sample is called in messages: "8-bit", "16-bit", "float" or "32-bit integer"; "unknown"
/// for a value outside the list.
ORVEX_KIT_API const char* name_of(Sample sample) noexcept;

/// Pixels: first row on top, rows without padding, one to four channels a pixel in their order. One
/// channel is grey or a value by itself, two are grey and alpha, three red, green and blue, four
/// those and alpha. Alpha is straight: colours aren't multiplied by it.
///
/// A value. Copies have pixels of their own, moves leave an empty picture, which has no size and no
/// pixels. One thread at a time; several may read.
///
/// @code
/// kit::Picture picture;
/// if (picture.create(640, 480, 4, kit::Sample::u8))
///     picture.row<std::uint8_t>(479)[0] = 255; // the red of the lower left corner
/// @endcode
class ORVEX_KIT_API Picture {
public:
    /// The longest side in pixels.
    static constexpr int max_side = 65'535;

    /// Empty.
    Picture() noexcept = default;
    /// A copy. It is empty if there is no memory for it: `copy_from` tells.
    Picture(const Picture& other) noexcept;
    /// Leaves the other one empty.
    Picture(Picture&& other) noexcept;
    /// As the copy. What stood here is gone in any case.
    Picture& operator=(const Picture& other) noexcept;
    /// Leaves the other one empty. To move a picture to itself changes nothing.
    Picture& operator=(Picture&& other) noexcept;
    ~Picture();

    /// Takes another size and kind; all samples are 0 then.
    /// @param width,height  pixels, 1 to `max_side`
    /// @param channels      1 to 4
    /// @return what is out of range, or that memory ran out; the picture stays as it was then
    Outcome create(int width, int height, int channels, Sample sample);
    /// Becomes a copy. @return that memory ran out; the picture stays as it was then
    Outcome copy_from(const Picture& other);
    /// Becomes empty.
    void clear() noexcept;

    bool is_empty() const noexcept { return !pixels; }         ///< without pixels
    int width() const noexcept { return columns; }             ///< pixels; 0 if empty
    int height() const noexcept { return rows; }               ///< pixels; 0 if empty
    int channels() const noexcept { return depth; }            ///< 1 to 4; 0 if empty
    Sample sample() const noexcept { return kind; }            ///< `Sample::u8` if empty
    std::size_t row_bytes() const noexcept;                    ///< of one row; 0 if empty
    std::size_t size_bytes() const noexcept;                   ///< of all rows; 0 if empty
    void* data() noexcept { return pixels.get(); }             ///< the first row; null if empty
    const void* data() const noexcept { return pixels.get(); } ///< the first row; null if empty

    /// The samples of a row, `width() * channels()` of them; valid until the picture changes its
    /// size or kind, is moved from, or ends.
    /// @tparam T  `std::uint8_t`, `std::uint16_t`, `float` or `std::int32_t`
    /// @param y   from 0, the row on top
    /// @return null for a row outside, and if the samples aren't of that type
    template<class T>
    T* row(int y) noexcept;
    /// The same, to read.
    template<class T>
    const T* row(int y) const noexcept {
        return const_cast<Picture*>(this)->row<T>(y);
    }

    /// The bytes of a row, whatever its samples are. @return null for a row outside
    unsigned char* row_data(int y) noexcept;
    /// The same, to read.
    const unsigned char* row_data(int y) const noexcept {
        return const_cast<Picture*>(this)->row_data(y);
    }

    /// Becomes the first channels of another picture, as to drop its alpha.
    /// @param count  1 to 4; channels that the other one lacks are full if they are the alpha of
    ///               the result (1 for floats, the largest value for integers), else 0
    /// @return as `create`; that there is nothing to take from if the other one is empty
    Outcome take_channels(const Picture& other, int count);

    /// Whether sizes, kinds and every sample are the same. A NaN equals a NaN, 0 equals -0. Two
    /// empty pictures are equal.
    bool operator==(const Picture& other) const noexcept;
    /// The opposite.
    bool operator!=(const Picture& other) const noexcept { return !(*this == other); }

private:
    int columns = 0;
    int rows = 0;
    int depth = 0;
    Sample kind = Sample::u8;
    std::unique_ptr<unsigned char[]> pixels;
};

/// What a type of samples is called; there are no others than those below.
template<class T>
struct SampleOf;
/// Samples of one byte.
template<>
struct SampleOf<std::uint8_t> {
    static constexpr Sample value = Sample::u8; ///< its name
};
/// Samples of two bytes.
template<>
struct SampleOf<std::uint16_t> {
    static constexpr Sample value = Sample::u16; ///< its name
};
/// Samples of four bytes.
template<>
struct SampleOf<float> {
    static constexpr Sample value = Sample::f32; ///< its name
};
/// Samples of four bytes.
template<>
struct SampleOf<std::int32_t> {
    static constexpr Sample value = Sample::i32; ///< its name
};

template<class T>
T* Picture::row(int y) noexcept {
    return kind == SampleOf<T>::value ? reinterpret_cast<T*>(row_data(y)) : nullptr;
}

} // namespace orvex::kit
