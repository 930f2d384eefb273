#include "orvex/platform/private/system_names.h"

#include <cstdio>

#include <sys/utsname.h>

namespace orvex {

namespace {

struct OsxVersion {
    int kernel_major;
    int major;
    int minor;
    const char* codename;
};

constexpr OsxVersion osx_versions[] = {
    {13, 10, 9, "Mavericks"},    {12, 10, 8, "Mountain Lion"}, {11, 10, 7, "Lion"},
    {10, 10, 6, "Snow Leopard"}, {9, 10, 5, "Leopard"},        {8, 10, 4, "Tiger"},
    {7, 10, 3, "Panther"},       {6, 10, 2, "Jaguar"},         {5, 10, 1, "Puma"},
};

} // namespace

OsxRelease osx_release_of_kernel(const char* kernel_release) {
    int major = 0;
    int minor = 0;
    int patch = 0;
    std::sscanf(kernel_release, "%d.%d.%d", &major, &minor, &patch);
    for (const OsxVersion& version : osx_versions)
        if (version.kernel_major == major)
            return {version.major, version.minor, minor, version.codename};
    return {0, 0, 0, "Unknown OSX"};
}

PlatformInformation read_platform_information() {
    PlatformInformation platform;
    platform.platform_name = "Linux";
    utsname system{};
    if (uname(&system) != 0)
        return platform;
    platform.linux_sysname = system.sysname;
    platform.linux_release = system.release;
    platform.linux_version = system.version;
    platform.linux_machine = system.machine;
    return platform;
}

} // namespace orvex
