#pragma once

/// @file
/// What tells whether an entry has to be drawn again.

#include <string>
#include <vector>

#include "batch/entry.h"
#include "batch/verdict.h"

namespace batch {

/// The SHA-256, in 64 digits, of all that a picture is made from: the bytes of the model and of
/// every file that was read with it (that one isn't there counts, too), the look, the font and the
/// track that are files, the options that matter for the picture, and the engine's version. Names
/// of the model's and of output files don't count.
/// @param files  that were read besides the model, as `kit::Model::files` tells them; the model
///               may stand among them
/// @return empty if the model can't be read
std::string key_of(const Entry& entry, const std::vector<std::string>& files);

/// What is to be said of a file that was written.
/// @return nothing if it can't be read
std::optional<Output> output_of_file(const Entry& entry, const OutputFile& file);

/// The engine's version, as verdicts have it.
std::string engine_version();

/// Whether what a verdict tells of an entry is still so: its key, and its output files.
bool still_holds(const Verdict& verdict, const Entry& entry);

} // namespace batch
