#pragma once

#include "orvex_kit/picture.h"
#include "orvex_kit/private/output.h"

namespace orvex::kit {

/// Writes any picture as an array of NumPy. @return as `Output`
Outcome write_npy(const Picture& picture, const std::string& path);

} // namespace orvex::kit
