#pragma once

/// @file
/// The kinds of work that the importer does.

#include <cstdint>
#include <optional>
#include <string>

#include "orvex_formats/import/program/answer_writer.h"

namespace orvex::formats {

/// Reads the input as a model by assimp.
/// @param name    of its file, without folders
/// @param time    in seconds, of its first animation; none: at rest
/// @param folder  -1: other files aren't read
/// @throw std::runtime_error
void import_model(const std::string& name, std::optional<float> time, int folder,
                  std::uint64_t most_bytes, AnswerRoom& room);

/// Unpacks meshes that lie in the input one behind the other, the size of each before it, by draco.
/// @throw std::runtime_error
void unpack_meshes(std::size_t count, AnswerRoom& room);

} // namespace orvex::formats
