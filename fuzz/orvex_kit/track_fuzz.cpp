// Reads bytes as a track, and looks at it at many times: cameras that see nothing but finite
// numbers, or a reason.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/support/target.h"
#include "orvex_kit/track.h"

namespace {

void check(bool state) {
    if (!state)
        std::abort();
}

void check(const orvex::kit::Camera& camera) {
    for (const auto& row : camera.pose())
        for (const double number : row)
            check(std::isfinite(number));
    const auto intrinsics = camera.intrinsics(640, 480);
    check(intrinsics && (*intrinsics)[0][0] > 0.0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const orvex::kit::Track track = orvex::kit::Track::from_text(text, "track");
    check(static_cast<bool>(track) == track.reason().empty());
    check(static_cast<bool>(track) == (track.size() > 0));
    check(track.begin() <= track.end());
    constexpr int steps = 64;
    for (int i = -1; i <= steps + 1; ++i)
        check(track.at(track.begin() + (track.end() - track.begin()) * i / steps));
    return 0;
}
