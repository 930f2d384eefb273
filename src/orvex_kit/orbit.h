#pragma once

/// @file
/// Going around a model with mouse and keys.

#include <orvex/math/vec4.h>

#include "orvex_kit/api.h"
#include "orvex_kit/camera.h"
#include "orvex_kit/framing.h"

namespace orvex::kit {

/// Where an `Orbit` stands: kept, and gone to again, it goes on from there.
struct OrbitPlace {
    orvex::vec4 target{0.0f, 0.0f, 0.0f, 1.0f}; ///< what is looked at
    float distance = 10.0f;                     ///< of the eye from it, above 0
    Angle angle;                                ///< from where
};

/// How far an `Orbit` goes.
struct OrbitLimits {
    float lowest = -90.0f;  ///< elevation in degrees, from -90
    float highest = 90.0f;  ///< elevation in degrees, to 90
    float nearest = 0.1f;   ///< in parts of the distance that the model was framed from, above 0
    float farthest = 10.0f; ///< likewise
    float reach = 1.0f;     ///< of the target from the model's middle, likewise; 0: it doesn't pan
};

/// The keys that are held.
struct OrbitKeys {
    bool left = false;    ///< the eye goes to the left
    bool right = false;   ///< the eye goes to the right
    bool up = false;      ///< the eye goes up
    bool down = false;    ///< the eye goes down
    bool nearer = false;  ///< the eye comes nearer
    bool farther = false; ///< the eye goes farther away
    bool pans = false;    ///< what it looks at goes with the eye, as with the shift key
};

/// An eye that goes around what it looks at, as a hand turns a model: a value, that knows no window
/// and no engine. The host tells it what mouse and keys do, and takes its camera for each frame.
///
/// Ways of the mouse are in the window's units, as windows tell them; the sizes of `Screen` are in
/// pixels. Numbers that aren't finite are ignored. Copied freely; any thread, one at a time.
///
/// @code
/// kit::Orbit orbit; // around a model by orbit.frame(model.extent())
/// orbit.turn(12, 3); // the mouse moved with its button held,
/// orbit.zoom(1);     // and its wheel turned
/// const kit::Camera seen = orbit.camera({640, 480});
/// @endcode
class ORVEX_KIT_API Orbit {
public:
    /// Around the origin, with y up, from a distance of 10.
    Orbit() noexcept = default;
    /// Around a model; as `frame`.
    explicit Orbit(const Extent& extent, const Angle& from = {}) { frame(extent, from); }

    /// Goes where all of a model is seen, and stays in sight on the way around. `reset` returns
    /// here, and the limits count from here.
    void frame(const Extent& extent, const Angle& from = {});
    /// Back to where the model was framed, or where this began.
    void reset() noexcept { now = first; }

    /// Goes around, as if the mouse held the model: four units are a degree.
    /// @param right,down  way of the mouse
    void turn(double right, double down) noexcept;
    /// Moves what is looked at, which follows the mouse.
    /// @param right,down  way of the mouse
    void pan(double right, double down, const Screen& screen) noexcept;
    /// Comes nearer by a tenth with each notch of the wheel; away with negative ones.
    void zoom(double notches) noexcept;
    /// Moves on by the keys that are held: a quarter turn a second, half a picture, or half the
    /// distance.
    /// @param seconds  since the last call, from 0
    /// @return whether one of them moves something: whether to draw on
    bool move(const OrbitKeys& held, double seconds) noexcept;

    /// Where it stands.
    const OrbitPlace& place() const noexcept { return now; }
    /// Goes to where it stood, or as near as the limits let it.
    void go_to(const OrbitPlace& place) noexcept;
    /// Sets how far it goes; what lies outside moves in. Ignored where a least one is above its
    /// most, or a number isn't in its range.
    void set_limits(const OrbitLimits& limits) noexcept;

    /// What it sees. Where the window is narrower than high the opening grows, so that it shows as
    /// much as a square one.
    Camera camera(const Screen& screen) const noexcept;

private:
    OrbitPlace first;
    OrbitPlace now;
    OrbitLimits limits;

    void turn_by(double azimuth, double elevation) noexcept;
    void shift_by(double right, double up) noexcept;
    void recede(double factor) noexcept;
    void keep_within() noexcept;
};

} // namespace orvex::kit
