#pragma once

/// @file
/// What the engine tells of the system it runs on.

#include <string>

namespace orvex {

/// Version and codename of OS X, by the release of its kernel.
struct OsxRelease {
    int major = 0;
    int minor = 0;
    int patch = 0;
    std::string codename;
};

/// Maps a kernel release such as "13.4.0" to the system's version. The patch is the kernel's minor
/// number. An unknown release gives 0.0.0 and "Unknown OSX".
/// @param kernel_release  never null
OsxRelease osx_release_of_kernel(const char* kernel_release);

/// Facts of the running system; what belongs to another system stays zero or empty.
struct PlatformInformation {
    std::string platform_name;
    OsxRelease osx;
    std::string osx_kernel_release;
    std::string linux_sysname;
    std::string linux_release;
    std::string linux_version;
    std::string linux_machine;
};

/// Reads them. Where the system doesn't tell, only the name of the platform is set.
PlatformInformation read_platform_information();

} // namespace orvex
