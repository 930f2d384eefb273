#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "orvex/assets/models/obj/private/obj_model.h"

namespace orvex {

/// Why a text was refused, and what it has.
struct OBJ_Fault {
    bool is_unreadable = false;   ///< there is no text at all
    std::size_t num_lines = 0;    ///< what follows the last line feed is a line, too
    std::size_t num_vertices = 0; ///< with one, it is an OBJ file, though without a face
};

/// Reads an OBJ file with the material libraries it names.
/// @param model_dir  put in front of the libraries' names as it stands; may be empty
/// @param[out] fault  written where the result is null; null where nobody asks
/// @return null if the file can't be read or holds no vertex or no triangle
std::unique_ptr<OBJ_Model> read_obj_file(const char* path, const std::string& model_dir,
                                         OBJ_Fault* fault = nullptr);

/// The same for text in memory: `size` bytes with a zero behind them.
std::unique_ptr<OBJ_Model> read_obj_text(const char* text, std::size_t size,
                                         const std::string& model_dir, OBJ_Fault* fault = nullptr);

/// Reads a material library into `model`. A library that can't be read changes nothing.
void read_material_file(OBJ_Model& model, const std::string& path);

/// The same for text in memory.
void read_material_text(OBJ_Model& model, const char* text, std::size_t size);

} // namespace orvex
