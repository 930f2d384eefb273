#pragma once

/// @file
/// What the loaders of all formats share.

#include <optional>

#include <orvex/base/loader_3d.h>

#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// Opens files, and turns what a reader throws into reasons.
class FormatLoader : public Loader3D {
public:
    /// @param reader  reads a whole file, or throws a `Refusal`
    FormatLoader(const char* name, const char* format, const char* description,
                 Draft (*reader)(const InputFile& file));

    /// @param reader  the same of files that move: at a moment, in seconds, or else at rest
    FormatLoader(const char* name, const char* format, const char* description,
                 Draft (*reader)(const InputFile& file, std::optional<float> time));

    bool load_from_file(Model* model, const char* filename) override;

private:
    void load(Model& model, const std::string& path);
    Draft read(const InputFile& file) const;

    // Either is null.
    Draft (*reader)(const InputFile& file) = nullptr;
    Draft (*timed_reader)(const InputFile& file, std::optional<float> time) = nullptr;
};

} // namespace orvex::formats

/// The entry points of the module of a format, in its `plugin.cpp`.
#define ORVEX_FORMAT_PLUGIN(name, format, description, reader)                                     \
    orvex::Plugin* orvex_create_plugin() {                                                         \
        return new (std::nothrow) orvex::formats::FormatLoader(name, format, description, reader); \
    }                                                                                              \
    void orvex_destroy_plugin(orvex::Plugin* plugin) {                                             \
        delete plugin;                                                                             \
    }
