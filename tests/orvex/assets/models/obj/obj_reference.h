#pragma once

#include <string>

namespace orvex_test {

/// What an OBJ file holds, written down line by line: counts, entries, groups with their triangles,
/// materials with their values. Two readers that agree on a file give the same text.
///
/// This one is the plain reader, on the C library's streams, that the engine's fast one is held
/// against. "none" if the file holds no model.
std::string describe_obj_by_c_streams(const std::string& text, const std::string& model_dir);

/// The same of the engine's reader.
std::string describe_obj_by_engine(const std::string& text, const std::string& model_dir);

} // namespace orvex_test
