#pragma once

/// @file
/// The keys of a track, and the file that they stand in.

#include <cstddef>
#include <string>
#include <vector>

#include "orvex_kit/private/rotation.h"
#include "orvex_kit/private/vector3.h"

namespace orvex::kit {

struct TrackKey {
    double time = 0.0;
    double opening = 35.0; ///< degrees
    Vector3 eye;
    Vector3 target;      ///< of a key that looks at something
    Vector3 up{0, 1, 0}; ///< likewise, of length 1
    Quaternion turn;     ///< of a key with a pose
};

struct TrackKeys {
    std::vector<TrackKey> keys;
    bool are_posed = false; ///< all of them have poses; else all of them look at something
};

/// A longer text is refused.
inline constexpr std::size_t most_track_bytes = std::size_t{16} << 20;

/// Reads the JSON text of a track.
/// @param name  stands before the reason
/// @return the reason why it is none; empty if it is one
std::string read_track(const std::string& text, const std::string& name, TrackKeys& track);

} // namespace orvex::kit
