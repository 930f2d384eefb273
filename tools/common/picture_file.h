#pragma once

#include <string>

namespace orvex {
class Renderer;
} // namespace orvex

/// Writes what stands in the window as a JPEG file, whole or not at all.
/// @return what went wrong; empty if nothing did
std::string write_picture(orvex::Renderer* renderer, const std::string& name);
