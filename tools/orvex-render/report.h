#pragma once

#include <string>

namespace orvex {
class Renderer;
class RenderWindow;
} // namespace orvex
namespace orvex::kit {
class Model;
}

/// What a model holds, line by line: its meshes, materials and textures.
std::string report_of_model(const std::string& path, const orvex::kit::Model& scene);

/// The same and more as JSON.
std::string report_as_json(const std::string& path, const orvex::kit::Model& model);

/// The devices that can draw, a line each. Needs no context.
std::string report_of_devices();

/// What the running context offers, line by line.
/// @param with_extensions  lists their names, instead of counting them
std::string report_of_context(orvex::Renderer* renderer, orvex::RenderWindow* window,
                              bool with_extensions);
