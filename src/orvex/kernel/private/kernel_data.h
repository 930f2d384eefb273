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

/// The plugins that are inserted while it lives, which end with it unless they are kept: an
/// operation that is cut off by want of memory leaves none of them behind, and can be called again.
class NewPlugins {
public:
    NewPlugins();
    ~NewPlugins();
    NewPlugins(const NewPlugins&) = delete;
    NewPlugins& operator=(const NewPlugins&) = delete;

    /// @return true
    bool keep() { return is_kept = true; }

private:
    const unsigned long num_before;
    bool is_kept = false;
};

} // namespace orvex
