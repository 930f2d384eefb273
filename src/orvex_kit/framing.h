#pragma once

/// @file
/// Where a camera stands so that a model is seen.

#include <vector>

#include <orvex/math/vec4.h>

#include "orvex_kit/api.h"
#include "orvex_kit/camera.h"
#include "orvex_kit/up_axis.h"

namespace orvex::kit {

/// What is to be seen: the vertices of a model, in the world, and the middle of their box.
struct Extent {
    std::vector<orvex::vec4> points; ///< finite ones, each with w 1
    orvex::vec4 middle;              ///< of their box; the origin without points
};

/// The way up of a model from a 3DS file: y, to which the file's z axis is turned, or -z, where
/// many exporters leave the y axis of what they write. Models stand on their ground with many
/// vertices: y, unless more than twice as many lie lowest the other way.
ORVEX_KIT_API UpAxis standing_axis(const Extent& extent);

/// From where: a little from the right and from above, if nobody wants another.
struct Angle {
    float azimuth = 25.0f;   ///< degrees around the up axis, from the front to the right
    float elevation = 20.0f; ///< degrees above the horizon
    UpAxis up = UpAxis::y;   ///< of the model
};

/// How much of it.
struct Lens {
    int width;         ///< of the picture, in pixels
    int height;        ///< likewise
    float zoom = 1.0f; ///< magnification; 1 for an opening of 35 degrees
};

/// The axes of the camera in the world, each of length 1.
struct Axes {
    orvex::vec4 right;  ///< of the picture
    orvex::vec4 up;     ///< of the picture
    orvex::vec4 toward; ///< from the model to the eye
};
/// Those of a camera that looks from an angle. Angles of any size go round.
ORVEX_KIT_API Axes axes_of(const Angle& angle);

/// Where the camera looks, and from how far.
struct Aim {
    float right = 0.0f;    ///< from the middle, along the camera's axes
    float up = 0.0f;       ///< likewise
    float distance = 1.0f; ///< of the eye, above 0
};

/// The nearest aim by which all is seen through a lens of zoom 1, with a little room around.
ORVEX_KIT_API Aim tight_aim(const Extent& extent, const Angle& angle, const Lens& lens);

/// The nearest aim at the middle itself by which all is seen.
ORVEX_KIT_API Aim middle_aim(const Extent& extent, const Angle& angle, const Lens& lens);

/// The nearest aim at the middle by which all is seen throughout a turn, of as many views.
ORVEX_KIT_API Aim turning_aim(const Extent& extent, const Angle& first, const Lens& lens,
                              int views);

/// The camera of an aim. Its clip planes lie right before and behind what is to be seen.
ORVEX_KIT_API Camera aimed(const Extent& extent, const Angle& angle, const Lens& lens,
                           const Aim& aim);
/// The camera that is as near as all can be seen from.
ORVEX_KIT_API Camera see_all(const Extent& extent, const Angle& angle, const Lens& lens);

/// Puts the clip planes of a camera right before and behind what is to be seen. Those of a camera
/// that has all of it behind stay.
ORVEX_KIT_API void fit_clip(Camera& camera, const Extent& extent);

} // namespace orvex::kit
