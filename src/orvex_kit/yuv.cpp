// Y'CbCr by whole numbers of 1/65,536. The weights are those of BT.601: 0.299, 0.587 and 0.114 for
// Y, and for Cb and Cr the differences of blue and red to Y, over 1.772 and 1.402; limited range
// takes 219/255 and 224/255 of them.

#include "orvex_kit/private/yuv.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace orvex::kit {

namespace {

/// What a plane is made of: the weights of red, green and blue, and where its zero lies. The sums
/// of four pixels fit.
struct Weights {
    std::int32_t red, green, blue;
    std::int32_t zero;
};

struct Matrix {
    Weights y, cb, cr;
};

constexpr Matrix full = {
    {19595, 38470, 7471, 0}, {-11058, -21710, 32768, 128}, {32768, -27439, -5329, 128}};
constexpr Matrix limited = {
    {16829, 33039, 6416, 16}, {-9714, -19070, 28784, 128}, {28784, -24103, -4681, 128}};

/// The weighted sum of a pixel; grey is all three colours.
std::int32_t weighted(const Weights& weights, const std::uint8_t* pixel, int channels) {
    const bool is_grey = channels < 3;
    return weights.red * pixel[0] + weights.green * pixel[is_grey ? 0 : 1] +
           weights.blue * pixel[is_grey ? 0 : 2];
}

/// The sum of some pixels as the value of one, to the nearest.
template<std::int32_t count>
char value_of(std::int32_t sum, std::int32_t zero) {
    constexpr std::int32_t one = count << 16;
    const std::int32_t value = (sum + zero * one + one / 2) / one;
    return static_cast<char>(static_cast<std::uint8_t>(std::clamp(value, 0, 255)));
}

/// One value for `step` by `step` pixels.
template<int step>
void put_plane(const Picture& picture, const Weights& weights, char* to) {
    const int channels = picture.channels();
    const int right = picture.width() - 1, bottom = picture.height() - 1;
    for (int y = 0; y <= bottom; y += step) {
        const auto* const upper = picture.row<std::uint8_t>(y);
        const auto* const lower = picture.row<std::uint8_t>(std::min(y + step - 1, bottom));
        for (int x = 0; x <= right; x += step) {
            const int near = x * channels, far = std::min(x + step - 1, right) * channels;
            std::int32_t sum = weighted(weights, upper + near, channels);
            if constexpr (step == 2)
                sum += weighted(weights, upper + far, channels) +
                       weighted(weights, lower + near, channels) +
                       weighted(weights, lower + far, channels);
            *to++ = value_of<step * step>(sum, weights.zero);
        }
    }
}

std::size_t plane_size(const Picture& picture, int step) {
    return static_cast<std::size_t>((picture.width() + step - 1) / step) *
           static_cast<std::size_t>((picture.height() + step - 1) / step);
}

} // namespace

void take_yuv(const Picture& picture, Chroma chroma, bool full_range, std::string& planes) {
    const Matrix& matrix = full_range ? full : limited;
    const bool is_halved = chroma == Chroma::c420;
    const auto put_color = is_halved ? put_plane<2> : put_plane<1>;
    const std::size_t luma = plane_size(picture, 1), color = plane_size(picture, is_halved ? 2 : 1);
    planes.resize(luma + 2 * color);
    put_plane<1>(picture, matrix.y, planes.data());
    put_color(picture, matrix.cb, planes.data() + luma);
    put_color(picture, matrix.cr, planes.data() + luma + color);
}

} // namespace orvex::kit
