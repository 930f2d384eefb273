#pragma once

/// @file
/// Asking the loaders for a model, and taking what they leave with the managers.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <orvex/fwd.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/scene/resource.h>

namespace orvex::kit {

/// Gives a hold on a node back, with nothing of it on the GPU.
struct EndNode {
    void operator()(orvex::Node* node) const;
};
template<class T>
using NodeHold = std::unique_ptr<T, EndNode>;

/// What a load brought in. The managers know none of it. The model ends first, as it holds the
/// materials, which hold the textures.
struct LoadedModel {
    std::vector<NodeHold<orvex::Resource>> textures;  ///< those that the loader made itself
    std::vector<NodeHold<orvex::Resource>> materials; ///< in the order in which they were made
    NodeHold<orvex::Model> model;                     ///< null: nothing came of it
    std::string loader;                               ///< its plugin's name
    std::string reason;                               ///< why there is no model
    std::vector<std::string> notes;                   ///< what the loader left out
    std::vector<std::string> files;                   ///< what it read beside the model's own
};

/// Asks the loaders for a model, or the one of a name: plugins that came from files first, as they
/// know their formats by the first bytes, and the engine's own behind them.
/// @param time  as `ModelOptions` have it
LoadedModel load_model(const std::string& path, const std::string& loader,
                       std::optional<float> time);

/// `readable_formats`, with the first ones alone of a loader that reads very many.
std::string readable_formats_in_short();

/// The names of the engine's own loaders. Models of 3DS files have no normals.
extern const char* const loader_of_obj;
extern const char* const loader_of_3ds;

/// Whether a loader's files don't say which way is up.
bool has_no_sure_way_up(const std::string& loader);
/// Whether z is up in them.
bool has_z_up(const std::string& loader);

} // namespace orvex::kit
