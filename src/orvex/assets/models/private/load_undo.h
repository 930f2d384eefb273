#pragma once

/// @file
/// How a load that fails gives back what it had added.

namespace orvex {

class Model;

/// Remembers what a model and the registry of materials hold when a load begins. A loader is the
/// only one who adds to either while it loads, so that all that comes later is its own.
class LoadUndo {
public:
    explicit LoadUndo(Model& model);

    /// Ends the meshes and materials that came since, the newest first. Allocates nothing.
    void give_back() const;

private:
    Model& model;
    const unsigned long num_children;
    const unsigned long num_model_materials;
    const unsigned long num_materials;
};

} // namespace orvex
