#pragma once

#include "orvex_kit/picture.h"
#include "orvex_kit/private/output.h"

namespace orvex::kit {

/// Writes 8-bit and 16-bit pictures as PNG. @return why it can't; nothing was put out then
Outcome write_png(const Picture& picture, const std::string& path);

} // namespace orvex::kit
