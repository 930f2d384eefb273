#pragma once

#include "orvex_kit/picture.h"
#include "orvex_kit/private/output.h"

namespace orvex::kit {

/// Writes 8-bit pictures as JPEG, by the engine's writer. @return why it can't; nothing was put out
Outcome write_jpeg(const Picture& picture, const std::string& path, int quality);

} // namespace orvex::kit
