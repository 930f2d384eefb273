#pragma once

#include <string>

namespace orvex::kit {

/// Where a texture is.
struct FoundTexture {
    std::string path;   ///< of the file; where it was looked for first if there is none
    std::string reason; ///< why there is none; empty if there is one
};

/// Looks for the file that a model file names, however it does.
/// @param folder         of the model, with its slash; empty for the current one
/// @param name           as it is named, with options in front perhaps
/// @param allow_outside  whether it may lie outside the folder
FoundTexture find_texture(const std::string& folder, const std::string& name, bool allow_outside);

} // namespace orvex::kit
