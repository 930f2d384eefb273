#pragma once

#include <string>

#include <orvex_kit/camera.h>
#include <orvex_kit/model.h>

/// Why a picture of a model may show nothing, as a sentence: what is odd about the model, or where
/// it lies.
/// @param screen  the picture
std::string reason_for_nothing(const orvex::kit::Model& model, const orvex::kit::Camera& camera,
                               const orvex::kit::Screen& screen);
