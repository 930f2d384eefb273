#pragma once

#include <string>
#include <vector>

#include "orvex_kit/picture_file.h"
#include "orvex_kit/private/output.h"

namespace orvex::kit {

/// Whether this build has OpenEXR.
bool has_exr();
/// Writes layers, as `write_layers` tells. @return why it can't; nothing was put out then
Outcome write_exr(const std::vector<PictureLayer>& layers, const std::string& path);

} // namespace orvex::kit
