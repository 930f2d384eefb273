#pragma once

/// @file
/// From where a scene is seen, and how.

#include <array>
#include <optional>

#include <orvex/geometry/rays/ray_caster.h>
#include <orvex/math/vec4.h>

#include "orvex_kit/api.h"
#include "orvex_kit/outcome.h"

namespace orvex {
class Camera;
}

namespace orvex::kit {

/// From the world to the camera, as computer vision writes it: `pose[row][column]`, for points as
/// columns. The camera's x axis goes to the right of the picture, y down, z into the scene; the
/// last row is 0 0 0 1.
using Pose = std::array<std::array<double, 4>, 4>;

/// From the camera to the pixels of a picture: `intrinsics[row][column]` with fx, skew, cx; 0, fy,
/// cy; 0, 0, 1, all in pixels. Pixels have their middles at half integers, so that cx of the
/// picture's middle is half its width. y counts down from the top.
using Intrinsics = std::array<std::array<double, 3>, 3>;

/// A picture, or a window: what places on it are counted in.
struct Screen {
    int width;          ///< pixels, from 1
    int height;         ///< as `width`
    double scale = 1.0; ///< pixels in a unit of the window's places, such as 2 on a HiDPI screen
};

/// Where a point is seen.
struct ScreenPoint {
    double x;     ///< from the left edge, in pixels or in the window's units; see `Screen`
    double y;     ///< from the upper edge, likewise
    double depth; ///< of the point before the eye, along the viewing axis, in units of the world
};

/// From where a scene is seen, and how: a value, that no engine is needed for. Copied freely; any
/// thread, one at a time.
///
/// The world is right-handed, in whatever units its models have. Points are finite and have w 1;
/// their w isn't read.
///
/// @code
/// kit::Camera camera;
/// camera.look_at({3, 2, 5, 1}, {0, 1, 0, 1});
/// camera.set_clip(0.1f, 100.0f);
/// @endcode
class ORVEX_KIT_API Camera {
public:
    /// At (0, 0, 10), looking along -z with y up; an opening of 35 degrees, from 0.1 to 1000.
    Camera() noexcept;

    /// @name Where it stands
    /// @{

    /// Stands at a point and looks at another.
    /// @param eye,target  apart from each other; otherwise, and if a number isn't finite, the call
    ///                    is ignored
    /// @param up          what is upward in the picture; any length. Where it has none, or goes the
    ///                    way that is looked, an axis of the world takes its place
    void look_at(const orvex::vec4& eye, const orvex::vec4& target,
                 const orvex::vec4& up = orvex::vec4(0.0f, 1.0f, 0.0f, 0.0f)) noexcept;
    /// Takes a pose. A rotation that rounding has bent a little, by up to 0.01, is straightened.
    /// @return why it is none; the camera stays as it was then
    Outcome set_pose(const Pose& pose);
    Pose pose() const noexcept;       ///< as set, or looked at
    orvex::vec4 eye() const noexcept; ///< where it stands; w is 1

    /// @}

    /// @name How it sees
    /// The last of the three kinds counts.
    /// @{

    /// Sees in perspective, with the picture's middle straight ahead.
    /// @param degrees  from the lower to the upper edge, above 0 and below 180; ignored outside
    void set_opening(float degrees) noexcept;
    float opening() const noexcept { return opening_degrees; } ///< as set; counts in perspective
    /// Sees as a measured camera does: the numbers hold for pictures of the size that they were
    /// measured on, and the middle may lie anywhere.
    /// @return what is wrong with them; the camera stays as it was then
    Outcome set_intrinsics(const Intrinsics& intrinsics);
    /// Sees without perspective: what is far is as large as what is near.
    /// @param height  of what the picture shows, in units of the world, above 0; ignored otherwise
    void set_parallel(float height) noexcept;
    /// The intrinsics for a picture; of a measured camera as they were set.
    /// @param width,height  pixels, from 1
    /// @return nothing for a camera without perspective
    std::optional<Intrinsics> intrinsics(int width, int height) const noexcept;

    /// What is nearer or farther isn't seen.
    /// @param near,far  along the viewing axis, in units of the world, 0 < near < far; ignored
    ///                  otherwise
    void set_clip(float near, float far) noexcept;
    float near() const noexcept { return near_plane; } ///< as set
    float far() const noexcept { return far_plane; }   ///< as set

    /// @}

    /// @name Points and places
    /// @{

    /// Where a point is seen, within the picture or not.
    /// @return nothing for a point that isn't before the eye
    std::optional<ScreenPoint> project(const orvex::vec4& point,
                                       const Screen& screen) const noexcept;
    /// The ray through a place, to be met with models. Its direction has length 1; without
    /// perspective it begins beside the eye.
    /// @param x,y  from the upper left corner, as `ScreenPoint` counts
    orvex::Ray ray(double x, double y, const Screen& screen) const noexcept;

    /// @}

    /// Has a camera of the engine see the same: sets its viewport, projection and view.
    /// @param width,height  of the picture in pixels, from 1
    void apply(orvex::Camera& camera, int width, int height) const;

private:
    enum class Kind { opening, measured, parallel };

    // The engine turns its camera by a quaternion of floats. Those that look at something are
    // handed over as they were given, and its bits are those of a host that does so itself.
    bool looks = true;
    orvex::vec4 from;
    orvex::vec4 target;
    orvex::vec4 up;
    Pose placed{};

    Kind kind = Kind::opening;
    float opening_degrees = 35.0f;
    float span = 1.0f;
    Intrinsics measured{};
    float near_plane = 0.1f;
    float far_plane = 1000.0f;

    void put_projection(orvex::Camera& camera, int width, int height) const;
    void put_view(orvex::Camera& camera) const;
};

} // namespace orvex::kit
