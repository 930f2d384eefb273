#pragma once

/// @file
/// What a batch is asked to draw: one entry of its manifest.

#include <cstddef>
#include <string>
#include <vector>

#include "options.h"

namespace batch {

/// One entry of a manifest: a model, and how it is drawn. A value; `EntryReader` makes it.
struct Entry {
    std::size_t line = 0; ///< its number in the manifest, from 1
    std::string id;       ///< in UTF-8, never empty; several entries may have one
    std::string output;   ///< its picture within the output folder, as "a/b.png", without ".."
    /// Whole, with the options of the command line under its own. `options.model` is any bytes
    /// that a path can have, `options.output` the picture's path, output folder included.
    Options options;
    std::string text; ///< its own JSON, on one line; for one of a list, the JSON that says so
};

/// What a file of an entry shows.
struct OutputFile {
    std::string name; ///< within the output folder
    std::string kind; ///< picture, film, about (the layers), or the name of the layer
};

/// All files that an entry writes, in their order: pictures of a turn one by one, layers one by
/// one and what tells of them.
std::vector<OutputFile> output_files_of(const Entry& entry);
/// The path of a file that an entry writes.
/// @param name  of it, within the output folder
std::string path_of(const Entry& entry, const std::string& name);

/// An entry as one line of JSON, line feed included, from which the `EntryReader` of another
/// process makes the same entry.
std::string line_of(const Entry& entry);

} // namespace batch
