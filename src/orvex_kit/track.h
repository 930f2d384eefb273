#pragma once

/// @file
/// The way of a camera through time.

#include <cstddef>
#include <memory>
#include <string>

#include "orvex_kit/api.h"
#include "orvex_kit/camera.h"

namespace orvex::kit {

/// The way of a camera through time, from a JSON file of key frames.
///
/// ~~~
/// {"keys": [
///     {"time": 0, "eye": [4, 2, 8], "target": [0, 1, 0], "opening": 35},
///     {"time": 2.5, "eye": [-4, 2, 8], "target": [0, 1, 0], "up": [0, 1, 0]},
///     {"time": 4, "eye": [-9, 5, 0], "target": [0, 2, 0], "opening": 20}
/// ]}
/// ~~~
///
/// Times are in seconds and grow from key to key. A key says where the camera stands either by
/// `eye`, `target` and, if another than y is up, `up`, in units of the world; or by `pose`, four
/// rows of four numbers, as `kit::Pose` tells. All keys of a track do it the same way. `opening` is
/// that of the picture from below to above, in degrees; a key without one has that of the key
/// before, the first one 35. Anything else in the file is refused, as are more than 100,000 keys,
/// numbers beyond 1e15 and files of more than 16 MiB.
///
/// Between the keys the way is smooth, with no jerk at a key; poses turn as quaternions do, by the
/// shorter way. Before the first key and behind the last one the camera stands still.
///
/// A value: copied freely; any thread, one at a time.
///
/// @code
/// const kit::Track track("film.json");
/// if (!track)
///     std::fprintf(stderr, "%s\n", track.reason().c_str());
/// const kit::Camera camera_at_first = track.at(track.begin());
/// @endcode
class ORVEX_KIT_API Track {
public:
    /// Without keys.
    Track() noexcept = default;
    /// Reads a file.
    explicit Track(const std::string& path);
    /// Reads a text.
    /// @param name  stands before each reason, as a file's would
    static Track from_text(const std::string& text, const std::string& name);

    /// Whether there are keys.
    explicit operator bool() const noexcept { return keys != nullptr; }
    /// Why there are none: the file, the line and column or the place as `keys[1].eye[2]`, and what
    /// is wrong; empty if there are some.
    const std::string& reason() const noexcept { return why; }

    std::size_t size() const noexcept; ///< how many keys there are
    double begin() const noexcept;     ///< the time of the first key; 0 without
    double end() const noexcept;       ///< the time of the last key; 0 without

    /// The camera at a time. Its clip planes are those of any camera: `fit_clip` puts them around a
    /// model.
    /// @param time  seconds; one that isn't a number is that of the first key
    Camera at(double time) const;

private:
    struct Keys;

    std::shared_ptr<const Keys> keys;
    std::string why = "there is no track";

    void take(const std::string& text, const std::string& name);
};

} // namespace orvex::kit
