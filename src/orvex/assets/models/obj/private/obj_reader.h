#pragma once

#include <memory>
#include <string>

#include "orvex/assets/models/obj/private/obj_model.h"

namespace orvex {

/// Reads an OBJ file with the material libraries it names.
/// @param model_dir  put in front of the libraries' names as it stands; may be empty
/// @return null if the file can't be read or holds no vertex or no triangle
std::unique_ptr<OBJ_Model> read_obj_file(const char* path, const std::string& model_dir);

/// The same for text in memory: `size` bytes with a zero behind them.
std::unique_ptr<OBJ_Model> read_obj_text(const char* text, std::size_t size,
                                         const std::string& model_dir);

/// Reads a material library into `model`. A library that can't be read changes nothing.
void read_material_file(OBJ_Model& model, const std::string& path);

/// The same for text in memory.
void read_material_text(OBJ_Model& model, const char* text, std::size_t size);

} // namespace orvex
