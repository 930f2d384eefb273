#pragma once

/// @file
/// Asking the loaders for a model, and taking what they leave with the managers.

#include <memory>
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
};

/// Asks the loaders in their order, or the one of a name, for a model.
LoadedModel load_model(const std::string& path, const std::string& loader);

/// The name of the plugin that reads 3DS files, whose models have no normals and no sure way up.
extern const char* const loader_of_3ds;

} // namespace orvex::kit
