#pragma once

/// @file
/// Cameras of the caller's as those of the kit.

#include <vector>

#include <orvex_kit/camera.h>
#include <orvex_kit/framing.h>
#include <orvex_kit/model.h>

#include "orvex_c/orvex.h"

namespace orvex::c {

/// What is drawn, and how it is seen.
struct Seen {
    std::vector<kit::Model*> models;
    kit::Camera camera;
    kit::Angle lit_from;
};
Seen seen_by(const orvex_camera* camera, std::vector<kit::Model*> models);

kit::UpAxis up_axis_of(orvex_up_axis axis, const char* name);
orvex_up_axis up_axis_of(kit::UpAxis axis);

} // namespace orvex::c
