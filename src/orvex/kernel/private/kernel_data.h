#pragma once

/// @file
/// The private record of the kernel.

#include <string>
#include <vector>

#include "orvex/kernel/kernel.h"
#include "orvex/platform/private/system_names.h"

namespace orvex {

struct Kernel::cKernelData {
    std::vector<std::string> plugin_search_path; ///< in order of insertion
    PlatformInformation platform;
    bool stopping = false; ///< while `stop` runs: a plugin may ask for a stop in its own end
};

} // namespace orvex
