#include "unseen.h"

#include <algorithm>
#include <cmath>
#include <optional>

using namespace orvex::kit;

namespace {

std::string joined(const std::vector<std::string>& sentences) {
    std::string text;
    for (const std::string& sentence : sentences)
        text += (text.empty() ? "" : "; ") + sentence;
    return text;
}

/// What single precision can't multiply any more.
std::string reason_of_size(const Bounds& bounds) {
    constexpr float largest = 1e15f, smallest = 1e-15f;
    float farthest = 0.0f, size = 0.0f;
    for (const auto axis : {&orvex::vec3::x, &orvex::vec3::y, &orvex::vec3::z}) {
        farthest = std::max({farthest, std::abs(bounds.min.*axis), std::abs(bounds.max.*axis)});
        size = std::max(size, bounds.max.*axis - bounds.min.*axis);
    }
    if (farthest > largest)
        return "its coordinates are too large to draw with, beyond 1e15";
    return size < smallest ? "it is too small to draw, less than 1e-15 across" : "";
}

/// Where all of the points lie, if that is outside of what the camera sees.
std::string reason_of_place(const Extent& extent, const Camera& camera, const Screen& screen) {
    bool is_near = true, is_far = true, is_aside = true;
    for (const orvex::vec4& point : extent.points) {
        const std::optional<ScreenPoint> seen = camera.project(point, screen);
        is_near = is_near && (!seen || seen->depth < static_cast<double>(camera.near()));
        is_far = is_far && seen && seen->depth > static_cast<double>(camera.far());
        is_aside =
            is_aside && seen &&
            (seen->x < 0 || seen->x > screen.width || seen->y < 0 || seen->y > screen.height);
    }
    if (is_near)
        return "all of it lies nearer than the camera sees: a larger --distance helps";
    if (is_far)
        return "all of it lies farther away than the camera sees";
    return is_aside ? "all of its vertices lie outside the picture: a smaller --zoom or a larger "
                      "--distance helps"
                    : "";
}

} // namespace

std::string reason_for_nothing(const Model& model, const Camera& camera, const Screen& screen) {
    if (!model.notes().empty())
        return joined(model.notes());
    if (std::string reason = reason_of_size(model.bounds()); !reason.empty())
        return reason;
    if (std::string reason = reason_of_place(model.extent(), camera, screen); !reason.empty())
        return reason;
    return "its faces are seen edge-on, are transparent, or look like the background";
}
