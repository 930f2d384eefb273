#pragma once

/// @file
/// How a load that fails gives back what it had added.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// Ends a mesh that no model has yet, and frees its store.
struct ORVEX_API MeshEnd {
    void operator()(Mesh* mesh) const; ///< not null
};
/// Such a mesh. `release` it once `Model::add_child` has taken it.
using FreshMesh = std::unique_ptr<Mesh, MeshEnd>;

/// Remembers what a model and the registries of materials and textures hold when a load begins, and
/// ends what came since when it goes out of scope, unless `keep` was called. A loader is the only
/// one who adds to any of them while it loads, so that all that comes later is its own.
///
/// For loaders. `Kernel` does the same around each of them, so that only a loader that hosts call
/// by itself needs one.
class ORVEX_API LoadUndo {
public:
    /// Remembers; the model has to outlive it. Belongs on the thread that loads.
    explicit LoadUndo(Model& model);
    LoadUndo(const LoadUndo&) = delete;
    LoadUndo& operator=(const LoadUndo&) = delete;
    /// Allocates nothing.
    ~LoadUndo();

    /// The load has succeeded: all stays.
    void keep() { is_kept = true; }

private:
    Model& model;
    const unsigned long num_children;
    const unsigned long num_model_materials;
    const unsigned long num_materials;
    const unsigned long num_textures;
    bool is_kept = false;
};

} // namespace orvex
