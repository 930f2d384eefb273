#include "picture.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <utility>

#include <GL/gl.h>
#include <GL/glext.h>

namespace orvex_test {

Picture::Picture(int width, int height)
    : width(width)
    , height(height)
    , pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4) {}

unsigned char* Picture::at(int x, int y) {
    return const_cast<unsigned char*>(std::as_const(*this).at(x, y));
}

const unsigned char* Picture::at(int x, int y) const {
    return &pixels[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                    static_cast<std::size_t>(x)) *
                   4];
}

namespace {

/// Packs rows tightly for a scope.
class PackState {
public:
    PackState() {
        for (std::size_t i = 0; i < names.size(); ++i) {
            glGetIntegerv(names[i], &former[i]);
            glPixelStorei(names[i], names[i] == GL_PACK_ALIGNMENT ? 1 : 0);
        }
    }
    ~PackState() {
        for (std::size_t i = 0; i < names.size(); ++i)
            glPixelStorei(names[i], former[i]);
    }
    PackState(const PackState&) = delete;
    PackState& operator=(const PackState&) = delete;

private:
    static constexpr std::array<GLenum, 4> names = {GL_PACK_ALIGNMENT, GL_PACK_ROW_LENGTH,
                                                    GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS};
    std::array<GLint, 4> former = {};
};

} // namespace

Picture read_frame(int width, int height) {
    Picture upside_down(width, height);
    {
        const PackState pack;
        glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, upside_down.pixels.data());
    }
    Picture picture(width, height);
    const std::size_t stride = static_cast<std::size_t>(width) * 4;
    for (int y = 0; y < height; ++y)
        std::memcpy(picture.at(0, y), upside_down.at(0, height - 1 - y), stride);
    return picture;
}

Picture read_frame() {
    std::array<GLint, 4> viewport = {};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    return read_frame(viewport[2], viewport[3]);
}

namespace {

int channel_difference(const unsigned char* a, const unsigned char* b, int channel) {
    return std::abs(a[channel] - b[channel]);
}

} // namespace

PictureDifference difference_of(const Picture& a, const Picture& b) {
    PictureDifference difference;
    double sum = 0.0;
    std::size_t differing = 0;
    for (int y = 0; y < a.height; ++y)
        for (int x = 0; x < a.width; ++x) {
            int largest = 0;
            for (int channel = 0; channel < 4; ++channel) {
                const int apart = channel_difference(a.at(x, y), b.at(x, y), channel);
                largest = std::max(largest, apart);
                sum += apart;
            }
            difference.largest = std::max(difference.largest, largest);
            differing += largest > 0;
        }
    const double count = std::max<double>(static_cast<double>(a.pixels.size()) / 4.0, 1.0);
    difference.share = static_cast<double>(differing) / count;
    difference.mean = sum / (count * 4.0);
    return difference;
}

Picture picture_of_difference(const Picture& a, const Picture& b) {
    Picture picture(a.width, a.height);
    for (int y = 0; y < a.height; ++y)
        for (int x = 0; x < a.width; ++x) {
            unsigned char* const pixel = picture.at(x, y);
            pixel[3] = 255;
            for (int channel = 0; channel < 3; ++channel) {
                const int apart = channel_difference(a.at(x, y), b.at(x, y), channel);
                pixel[channel] = static_cast<unsigned char>(apart ? std::min(255, 100 + apart) : 0);
            }
            // A difference of alpha alone shows as grey.
            if (channel_difference(a.at(x, y), b.at(x, y), 3) && !pixel[0] && !pixel[1] &&
                !pixel[2])
                std::fill(pixel, pixel + 3, static_cast<unsigned char>(128));
        }
    return picture;
}

namespace {

testing::AssertionResult same_size(const Picture& actual, const Picture& expected) {
    if (actual.width == expected.width && actual.height == expected.height)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "the picture is " << actual.width << " by " << actual.height
           << " pixels large, expected " << expected.width << " by " << expected.height;
}

/// The share of pixels with a channel that is further apart than the limit.
double share_beyond(const Picture& a, const Picture& b, int limit) {
    std::size_t beyond = 0;
    for (std::size_t pixel = 0; pixel < a.pixels.size(); pixel += 4)
        for (int channel = 0; channel < 4; ++channel)
            if (channel_difference(&a.pixels[pixel], &b.pixels[pixel], channel) > limit) {
                ++beyond;
                break;
            }
    return static_cast<double>(beyond) /
           std::max<double>(static_cast<double>(a.pixels.size()) / 4.0, 1.0);
}

} // namespace

testing::AssertionResult is_near(const Picture& actual, const Picture& expected,
                                 const PictureTolerance& tolerance) {
    if (const auto size = same_size(actual, expected); !size)
        return size;
    const double beyond = share_beyond(actual, expected, tolerance.largest);
    if (beyond <= tolerance.share)
        return testing::AssertionSuccess();
    const PictureDifference difference = difference_of(actual, expected);
    return testing::AssertionFailure()
           << "the largest difference is " << difference.largest << ", and a share of " << beyond
           << " of the pixels differs by more than " << tolerance.largest << " (allowed are "
           << tolerance.share << ")";
}

std::ostream& operator<<(std::ostream& out, ProcessorClass processor) {
    switch (processor) {
    case ProcessorClass::avx:
        return out << "avx";
    case ProcessorClass::ssse3:
        return out << "ssse3";
    case ProcessorClass::other:
        break;
    }
    return out << "other";
}

namespace {

ProcessorClass built_in_class() {
#if defined(__x86_64__) || defined(__i386__)
    if (__builtin_cpu_supports("avx"))
        return ProcessorClass::avx;
    if (__builtin_cpu_supports("ssse3"))
        return ProcessorClass::ssse3;
#endif
    return ProcessorClass::other;
}

} // namespace

ProcessorClass processor_class() {
    const ProcessorClass real = built_in_class();
    const char* const wish = std::getenv("GALLIUM_OVERRIDE_CPU_CAPS");
    const std::string wanted = wish ? wish : "";
    ProcessorClass asked = real;
    if (wanted == "ssse3" || wanted == "sse4.1")
        asked = ProcessorClass::ssse3;
    else if (wanted == "nosse" || wanted == "sse" || wanted == "sse2" || wanted == "sse3")
        asked = ProcessorClass::other;
    // The driver takes away what a processor has; it adds nothing.
    return std::max(real, asked);
}

PictureTolerance tolerance_on(ProcessorClass processor) {
    PictureTolerance tolerance;
    if (processor == ProcessorClass::other)
        tolerance.largest = 10;
    return tolerance;
}

namespace {

testing::AssertionResult is_equal(const Picture& actual, const Picture& expected) {
    if (const auto size = same_size(actual, expected); !size)
        return size;
    if (actual == expected)
        return testing::AssertionSuccess();
    const PictureDifference difference = difference_of(actual, expected);
    return testing::AssertionFailure()
           << "the largest difference is " << difference.largest << ", and a share of "
           << difference.share << " of the pixels differs";
}

bool updates_golden() {
    const char* const wish = std::getenv("ORVEX_UPDATE_GOLDEN");
    return wish && std::strcmp(wish, "1") == 0;
}

/// An unchanged picture keeps its file, so that only what changed shows up as changed.
testing::AssertionResult update(const std::string& path, const Picture& picture) {
    if (processor_class() != ProcessorClass::avx)
        return testing::AssertionFailure()
               << path << ": golden pictures are drawn on a processor with AVX, this one is of the "
               << "class " << processor_class();
    const std::optional<Picture> former = read_picture(path);
    if (former && *former == picture)
        return testing::AssertionSuccess();
    if (!write_png(path, picture))
        return testing::AssertionFailure() << "can't write " << path;
    std::cout << "golden picture written: " << path << "\n";
    return testing::AssertionSuccess();
}

} // namespace

testing::AssertionResult compare_with_golden(const std::string& folder, const std::string& output,
                                             const std::string& name, const Picture& picture,
                                             bool exact, const PictureTolerance& tolerance) {
    const std::string golden_path = folder + "/" + name + ".png";
    if (updates_golden())
        return update(golden_path, picture);

    const std::string actual_path = output + "/" + name + ".png";
    const std::string difference_path = output + "/" + name + "-difference.png";
    std::error_code ignored;
    std::filesystem::remove(actual_path, ignored);
    std::filesystem::remove(difference_path, ignored);

    const std::optional<Picture> golden = read_picture(golden_path);
    if (!golden) {
        write_png(actual_path, picture);
        return testing::AssertionFailure() << "no golden picture " << golden_path << "; see "
                                           << actual_path << " and scripts/golden.sh";
    }
    testing::AssertionResult result =
        exact ? is_equal(picture, *golden) : is_near(picture, *golden, tolerance);
    if (result)
        return result;
    write_png(actual_path, picture);
    if (same_size(picture, *golden))
        write_png(difference_path, picture_of_difference(picture, *golden));
    return result << "; golden: " << golden_path << ", drawn: " << actual_path
                  << ", difference: " << difference_path;
}

namespace {

/// The software renderer draws the same bits at every run and with any number of threads, as long
/// as it uses vectors of 256 bits.
bool draws_exactly(const char* renderer) {
    return renderer && std::strstr(renderer, "llvmpipe") && std::strstr(renderer, "256 bits");
}

} // namespace

testing::AssertionResult matches_golden(const std::string& name, const Picture& picture,
                                        const PictureTolerance& tolerance) {
    const auto* const renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    return compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR, name, picture,
                               draws_exactly(renderer), tolerance);
}

} // namespace orvex_test
