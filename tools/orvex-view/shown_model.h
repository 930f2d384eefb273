#pragma once

#include <string>

#include <orvex_kit/model.h>

#include "file_watch.h"

/// The model that is shown, with its file watched. One that can't be read, or isn't whole, never
/// takes the place of one that is.
class ShownModel {
public:
    /// What a look at the files came to.
    enum class Change {
        none,
        taken,  ///< the model is another one now
        refused ///< files have changed, and the model is the old one: `reason` tells why
    };

    /// Shows a file in place of what was shown.
    /// @return why it can't be read; what was shown stays then
    std::string load(const std::string& path, const orvex::kit::ModelOptions& options);
    /// Reads the file again, as it is now. Without one nothing changes.
    Change reload();
    /// Reads the file again if it, its materials or its textures have changed on disk.
    Change look();
    /// Why the last change was refused; empty if it wasn't.
    const std::string& reason() const { return why; }

    /// Empty before the first one.
    orvex::kit::Model& model() { return shown; }
    const orvex::kit::Model& model() const { return shown; } ///< likewise
    const std::string& path() const { return file; }         ///< empty before the first one

private:
    orvex::kit::Model shown;
    orvex::kit::ModelOptions options;
    std::string file;
    std::string why;
    FileWatch watch;

    std::string mistake_in(const orvex::kit::Model& fresh) const;
};
