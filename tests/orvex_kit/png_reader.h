#pragma once

#include <string>

#include "orvex_kit/picture.h"

namespace orvex_test {

/// Reads a PNG file by libpng, in the kind that it has. @return an empty picture if it can't
orvex::kit::Picture read_png(const std::string& path);

} // namespace orvex_test
