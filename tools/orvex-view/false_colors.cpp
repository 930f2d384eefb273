// Layers as pictures: one function makes a colour of a pixel's numbers, for each kind of layer.

#include "false_colors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <utility>
#include <vector>

using namespace orvex::kit;

namespace {

using Color8 = std::array<std::uint8_t, 4>;

std::uint8_t byte_of(float part) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(part, 0.0f, 1.0f) * 255.0f));
}

Color8 color_of(float red, float green, float blue) {
    return {byte_of(red), byte_of(green), byte_of(blue), 255};
}

/// Makes the pixels of a picture.
template<class Value, class MakeColor>
Outcome paint(const Picture& data, Picture& shown, MakeColor make_color) {
    Picture fresh;
    if (Outcome made = fresh.create(data.width(), data.height(), 4, Sample::u8); !made)
        return made;
    for (int y = 0; y < data.height(); ++y) {
        const Value* from = data.row<Value>(y);
        auto* to = fresh.row<std::uint8_t>(y);
        for (int x = 0; x < data.width(); ++x, from += data.channels(), to += 4) {
            const Color8 color = make_color(from);
            std::copy(color.begin(), color.end(), to);
        }
    }
    shown = std::move(fresh);
    return Outcome::success();
}

struct Range {
    float nearest = std::numeric_limits<float>::max();
    float farthest = 0.0f;
};

Range range_of(const Picture& depths) {
    Range range;
    for (int y = 0; y < depths.height(); ++y)
        for (int x = 0; x < depths.width(); ++x)
            if (const float depth = depths.row<float>(y)[x]; std::isfinite(depth)) {
                range.nearest = std::min(range.nearest, depth);
                range.farthest = std::max(range.farthest, depth);
            }
    return range;
}

/// From light yellow by orange and violet to a dark blue: its lightness falls evenly, so that it
/// reads without its hues as well.
Color8 ramp(float part) {
    struct Stop {
        float red, green, blue;
    };
    constexpr std::array<Stop, 5> stops = {{{1.00f, 0.95f, 0.70f},
                                            {0.98f, 0.69f, 0.32f},
                                            {0.85f, 0.36f, 0.38f},
                                            {0.48f, 0.20f, 0.48f},
                                            {0.13f, 0.10f, 0.32f}}};
    const float place = std::clamp(part, 0.0f, 1.0f) * float(stops.size() - 1);
    const auto first = std::min(static_cast<std::size_t>(place), stops.size() - 2);
    const float rest = place - static_cast<float>(first);
    const Stop& a = stops[first];
    const Stop& b = stops[first + 1];
    return color_of(a.red + (b.red - a.red) * rest, a.green + (b.green - a.green) * rest,
                    a.blue + (b.blue - a.blue) * rest);
}

/// A turn by the golden section takes each hue far from those before; three lightnesses keep
/// neighbours apart once the hues come close.
Color8 color_of_id(std::int32_t id) {
    const double turn = double(id) * 0.618033988749895;
    const auto hue = static_cast<float>((turn - std::floor(turn)) * 6.0);
    constexpr std::array<float, 3> lightest = {0.95f, 0.72f, 0.84f};
    constexpr std::array<float, 3> darkest = {0.35f, 0.20f, 0.45f};
    const auto kind = static_cast<std::size_t>(id) % 3;
    const auto part = [&](float shift) {
        const float away = std::abs(std::remainder(hue - shift, 6.0f));
        const float share = std::clamp(2.0f - away, 0.0f, 1.0f);
        return darkest[kind] + (lightest[kind] - darkest[kind]) * share;
    };
    return color_of(part(0.0f), part(2.0f), part(4.0f));
}

std::string text_of(const Range& range) {
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%.4g to %.4g", double(range.nearest),
                  double(range.farthest));
    return text.data();
}

Outcome show_depth(const Picture& data, const Color8& behind, Picture& shown,
                   std::string& caption) {
    const Range range = range_of(data);
    const bool is_empty = range.nearest > range.farthest;
    const float span = std::max(range.farthest - range.nearest, 1e-30f);
    caption = is_empty ? "" : text_of(range);
    return paint<float>(data, shown, [&](const float* depth) {
        return std::isfinite(*depth) ? ramp((*depth - range.nearest) / span) : behind;
    });
}

Outcome show_normals(const Picture& data, const Color8& behind, Picture& shown) {
    return paint<float>(data, shown, [&](const float* n) {
        const bool is_nothing = n[0] == 0.0f && n[1] == 0.0f && n[2] == 0.0f;
        return is_nothing ? behind
                          : color_of(n[0] * 0.5f + 0.5f, n[1] * 0.5f + 0.5f, n[2] * 0.5f + 0.5f);
    });
}

Outcome show_positions(const Picture& data, const Bounds& bounds, const Color8& behind,
                       Picture& shown) {
    const auto part = [](float value, float least, float most) {
        return most > least ? (value - least) / (most - least) : 0.5f;
    };
    return paint<float>(data, shown, [&](const float* p) {
        return std::isfinite(p[0]) ? color_of(part(p[0], bounds.min.x, bounds.max.x),
                                              part(p[1], bounds.min.y, bounds.max.y),
                                              part(p[2], bounds.min.z, bounds.max.z))
                                   : behind;
    });
}

Outcome show_ids(const Picture& data, const Color8& behind, Picture& shown, std::string& caption) {
    std::vector<bool> seen;
    std::size_t count = 0;
    Outcome painted = paint<std::int32_t>(data, shown, [&](const std::int32_t* id) {
        if (*id < 0)
            return behind;
        const auto place = static_cast<std::size_t>(*id);
        if (place >= seen.size())
            seen.resize(2 * place + 1);
        count += seen[place] ? 0 : 1;
        seen[place] = true;
        return color_of_id(*id);
    });
    caption = std::to_string(count) + " seen";
    return painted;
}

} // namespace

Outcome show_in_false_colors(Layer layer, const Picture& data, const FalseColors& colors,
                             Picture& shown, std::string& caption) {
    const orvex::vec4& back = colors.background;
    const Color8 behind = color_of(back.x, back.y, back.z);
    caption.clear();
    switch (layer) {
    case Layer::color:
        break;
    case Layer::depth:
        return show_depth(data, behind, shown, caption);
    case Layer::normal:
        return show_normals(data, behind, shown);
    case Layer::position:
        return show_positions(data, colors.bounds, behind, shown);
    case Layer::object:
    case Layer::material:
    case Layer::face:
        return show_ids(data, behind, shown, caption);
    }
    return shown.copy_from(data);
}
