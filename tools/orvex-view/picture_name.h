#pragma once

#include <string>

/// A name for a picture in the current folder that nothing has there: that of the model with a
/// number and .png, as "lighthouse-001.png".
/// @param model  its path; without one "orvex-view" stands before the number
std::string free_picture_name(const std::string& model);
