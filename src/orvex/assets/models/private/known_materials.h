#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "orvex/fwd.h"

namespace orvex {

/// What bears a name already, among all materials and among those of a model: of equals the first.
/// A table for each, as a file may name tens of thousands. Nobody else adds any during a load.
class KnownMaterials {
public:
    explicit KnownMaterials(const Model& model);

    /// Null for a name that no material has.
    Material* find(std::string_view name) const;
    void add(Material* material);

    /// Whether the model has none of this name yet; from here on it has.
    bool is_new_to_model(std::string_view name);

private:
    std::unordered_map<std::string, Material*> all;
    std::unordered_set<std::string> in_model;
};

} // namespace orvex
