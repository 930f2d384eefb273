#pragma once

/// @file
/// Pictures of what was drawn, and their comparison with golden ones.
///
/// @code
/// TEST_P(MeshPicture, of_a_box) {
///     draw_box();
///     EXPECT_GOLDEN("box");
/// }
/// @endcode
///
/// Golden pictures lie in tests/golden. A picture that differs is left in the build's test-output
/// folder with an image of the differences. ORVEX_UPDATE_GOLDEN=1 in the environment writes the
/// golden pictures instead of comparing; scripts/golden.sh does that for chosen tests and tells
/// what changed. Look at them before they are committed. They are of a processor with AVX, and are
/// written on no other.

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace orvex_test {

/// Pixels of 8-bit red, green, blue and alpha, the top row first.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> pixels;

    Picture() = default;
    /// Transparent black.
    Picture(int width, int height);

    unsigned char* at(int x, int y);
    const unsigned char* at(int x, int y) const;
    bool operator==(const Picture&) const = default;
};

/// Reads the current frame buffer's pixels from the lower left corner on. Leaves the pack state of
/// the context as it was.
Picture read_frame(int width, int height);
/// The same with the size of the current viewport.
Picture read_frame();

/// Writes a PNG file. Folders on the way are made.
bool write_png(const std::string& path, const Picture& picture);
/// Reads a PNG or JPEG file.
std::optional<Picture> read_picture(const std::string& path);

/// How far two pictures of one size are apart.
struct PictureDifference {
    int largest = 0;    ///< of any channel of any pixel
    double share = 0.0; ///< of the pixels that differ at all, 0..1
    double mean = 0.0;  ///< over all channels of all pixels
};
PictureDifference difference_of(const Picture& a, const Picture& b);

/// An image of where two pictures of one size differ: black where they don't, and bright from the
/// smallest difference on.
Picture picture_of_difference(const Picture& a, const Picture& b);

/// What may differ between two renderers that both do what OpenGL asks: the rounding of a channel,
/// and which of two triangles an edge's pixel falls to.
struct PictureTolerance {
    int largest = 3;      ///< rounding, once in the texture unit and once in the blend
    double share = 0.005; ///< pixels beyond that: edges
};

/// The classes of processors that the software driver draws differently on. Golden pictures are of
/// the first.
enum class ProcessorClass {
    avx,   ///< vectors of 256 bits
    ssse3, ///< vectors of 128 bits: one pixel in ten thousand differs by 1
    other  ///< texture filters cut where the others round
};
std::ostream& operator<<(std::ostream& out, ProcessorClass processor);

/// The class of this processor, or the one that GALLIUM_OVERRIDE_CPU_CAPS asks the driver for.
ProcessorClass processor_class();

/// What may differ from a golden picture on a processor of that class.
///
/// On the last one every interpolation of a filter loses up to 1, so that a trilinear look-up loses
/// 3, and each level that the driver makes for a mipmap 1 more: textured surfaces are darker by 5
/// at most in the mean of 8 by 8 pixels. What the JPEG files of the examples make of it, measured
/// over all golden pictures with sse2: 0.14 % of the pixels differ by more than 10 at the worst,
/// and 19 % by more than 3.
PictureTolerance tolerance_on(ProcessorClass processor);

/// Whether a picture is near enough to another.
testing::AssertionResult is_near(const Picture& actual, const Picture& expected,
                                 const PictureTolerance& tolerance);

/// Compares with `folder`/`name`.png: to the last bit if `exact`. Leaves `name`.png and
/// `name`-difference.png in `output` when they differ, and removes them when they don't.
testing::AssertionResult
compare_with_golden(const std::string& folder, const std::string& output, const std::string& name,
                    const Picture& picture, bool exact,
                    const PictureTolerance& tolerance = tolerance_on(processor_class()));

/// Compares with tests/golden: to the last bit when the current context is llvmpipe's, which was
/// measured to draw the same bits at every run with vectors of 256 bits, and within the tolerance
/// on any other.
testing::AssertionResult
matches_golden(const std::string& name, const Picture& picture,
               const PictureTolerance& tolerance = tolerance_on(processor_class()));

} // namespace orvex_test

/// Compares what the current viewport shows with a golden picture.
#define EXPECT_GOLDEN(name) EXPECT_TRUE(orvex_test::matches_golden(name, orvex_test::read_frame()))
