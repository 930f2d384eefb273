// A track in time: between two keys each value follows a curve of the third degree, with the speed
// at a key that its neighbours tell. Rotations follow the same curve on the sphere.

#include "orvex_kit/track.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <new>
#include <utility>

#include "orvex_kit/files.h"
#include "orvex_kit/private/track_key.h"

namespace orvex::kit {

struct Track::Keys : TrackKeys {};

Track::Track(const std::string& path) {
    why = mistake_in_reading(path);
    if (!why.empty())
        return;
    try {
        std::ifstream file(path, std::ios::binary | std::ios::ate);
        const std::streamoff size = std::max<std::streamoff>(file.tellg(), 0);
        // One byte more than is taken tells that there are too many.
        std::string text(std::min(static_cast<std::size_t>(size), most_track_bytes + 1), '\0');
        file.seekg(0);
        file.read(text.data(), static_cast<std::streamsize>(text.size()));
        text.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
        take(text, path);
    } catch (const std::bad_alloc&) {
        why = path + ": there isn't enough memory for it";
    }
}

Track Track::from_text(const std::string& text, const std::string& name) {
    Track track;
    track.take(text, name);
    return track;
}

void Track::take(const std::string& text, const std::string& name) {
    auto read = std::make_shared<Keys>();
    why = read_track(text, name, *read);
    if (why.empty())
        keys = std::move(read);
}

std::size_t Track::size() const noexcept {
    return keys ? keys->keys.size() : 0;
}

double Track::begin() const noexcept {
    return keys ? keys->keys.front().time : 0.0;
}

double Track::end() const noexcept {
    return keys ? keys->keys.back().time : 0.0;
}

namespace {

/// The two keys around a time, and their neighbours: first, from, to, last. At the ends of the
/// track a neighbour is the key itself.
struct Stretch {
    const TrackKey* first;
    const TrackKey* from;
    const TrackKey* to;
    const TrackKey* last;
    double part; ///< of the way from one to the other

    double seconds() const { return to->time - from->time; }
};

Stretch stretch_at(const std::vector<TrackKey>& keys, double time) {
    const auto is_before = [](double at, const TrackKey& key) { return at < key.time; };
    const auto after = std::upper_bound(keys.begin() + 1, keys.end() - 1, time, is_before);
    const std::size_t to = static_cast<std::size_t>(after - keys.begin());
    const TrackKey* const key = keys.data();
    Stretch stretch{key + (to >= 2 ? to - 2 : 0), key + to - 1, key + to,
                    key + std::min(to + 1, keys.size() - 1), 0.0};
    stretch.part = std::clamp((time - stretch.from->time) / stretch.seconds(), 0.0, 1.0);
    return stretch;
}

/// The value on the curve between two keys, from their values and speeds.
template<class Value>
Value on_curve(const Stretch& stretch, Value TrackKey::*value) {
    const double t = stretch.part;
    const double seconds = stretch.seconds();
    const auto speed = [&](const TrackKey* a, const TrackKey* b) {
        return (b->*value - a->*value) * (seconds / (b->time - a->time));
    };
    const Value start = stretch.from->*value;
    const Value goal = stretch.to->*value;
    const Value leave = speed(stretch.first, stretch.to);
    const Value arrive = speed(stretch.from, stretch.last);
    const double u = t - 1.0;
    return start * ((1.0 + 2.0 * t) * u * u) + goal * (t * t * (3.0 - 2.0 * t)) +
           leave * (t * u * u) + arrive * (t * t * u);
}

/// The same for rotations: the curve is built of turns between its four points, which lie a third
/// of the way along the speeds.
Quaternion turn_on_curve(const Stretch& stretch) {
    const double seconds = stretch.seconds();
    const auto third = [&](const TrackKey* a, const TrackKey* b) {
        return turn_between(a->turn, b->turn) * (seconds / 3.0 / (b->time - a->time));
    };
    const Quaternion start = stretch.from->turn;
    const Quaternion goal = stretch.to->turn;
    const Quaternion leave = turned_by(start, third(stretch.first, stretch.to));
    const Quaternion arrive = turned_by(goal, third(stretch.from, stretch.last) * -1.0);
    const double t = stretch.part;
    const Quaternion a = between(start, leave, t);
    const Quaternion b = between(leave, arrive, t);
    const Quaternion c = between(arrive, goal, t);
    return between(between(a, b, t), between(b, c, t), t);
}

TrackKey key_at(const std::vector<TrackKey>& keys, bool are_posed, double time) {
    if (keys.size() == 1)
        return keys.front();
    const Stretch stretch = stretch_at(keys, time);
    TrackKey key;
    key.opening = std::clamp(on_curve(stretch, &TrackKey::opening), 0.01, 179.9);
    key.eye = on_curve(stretch, &TrackKey::eye);
    if (are_posed) {
        key.turn = turn_on_curve(stretch);
        return key;
    }
    key.target = on_curve(stretch, &TrackKey::target);
    key.up = on_curve(stretch, &TrackKey::up);
    // Where the curve meets itself there is nothing to look at: the camera holds on to the key.
    return length(key.target - key.eye) > 0.0 ? key : *stretch.from;
}

Pose pose_of(const Quaternion& turn, const Vector3& eye) {
    const Rotation axes = rotation_of(turn);
    Pose pose{};
    for (std::size_t row = 0; row < 3; ++row)
        pose[row] = {axes[row].x, axes[row].y, axes[row].z, -dot(axes[row], eye)};
    pose[3] = {0.0, 0.0, 0.0, 1.0};
    return pose;
}

} // namespace

Camera Track::at(double time) const {
    Camera camera;
    if (!keys)
        return camera;
    const double then = std::isnan(time) ? begin() : std::clamp(time, begin(), end());
    const TrackKey key = key_at(keys->keys, keys->are_posed, then);
    camera.set_opening(static_cast<float>(key.opening));
    if (keys->are_posed)
        static_cast<void>(camera.set_pose(pose_of(key.turn, key.eye))); // it is one
    else
        camera.look_at(vec4_of(key.eye, 1.0f), vec4_of(key.target, 1.0f), vec4_of(key.up, 0.0f));
    return camera;
}

} // namespace orvex::kit
