#pragma once

/// @file
/// Loader3D: the interface of model file loaders.

#include "orvex/api.h"
#include "orvex/base/plugin.h"

namespace orvex {

class Model;

/// Reads a model file into a `Model`. A plugin of type `PLUGIN_TYPE_LOADER_3D`, which concrete
/// loaders set in their constructor.
///
/// `Kernel` sets the two directories before each load. Directories are prefixes, put before file
/// names as they are: the caller ends them in a separator.
class ORVEX_API Loader3D : public Plugin {
public:
    /// All four texts are empty.
    Loader3D();
    ~Loader3D() override;

    /// Reads `filename` into `model`, which the caller owns.
    /// @return whether the model was read. On false the loader has given back whatever it added to
    ///         the model.
    virtual bool load_from_file(Model* model, const char* filename) = 0;

    /// Texts are copied and null is ignored; the pointer of a getter is valid until its setter
    /// runs. Where textures and other resources of a model lie.
    void set_resource_dir(const char* directory);
    const char* get_resource_dir() const; ///< never null; empty unless set
    /// Where the model file and its companions lie.
    void set_model_dir(const char* directory);
    const char* get_model_dir() const; ///< never null; empty unless set
    /// A name beside that of the plugin; the engine never reads it.
    void set_loader_name(const char* name);
    const char* get_loader_name() const; ///< never null; empty unless set
    /// A text for people; the engine never reads it.
    void set_loader_description(const char* description);
    const char* get_loader_description() const; ///< never null; empty unless set

private:
    struct Loader3DData;
    Loader3DData* loader_data;
};

} // namespace orvex
