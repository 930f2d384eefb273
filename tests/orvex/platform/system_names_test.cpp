#include "orvex/platform/private/system_names.h"

#include <gtest/gtest.h>
#include <sys/utsname.h>

namespace orvex_test {

using namespace orvex;
namespace {

TEST(SystemNames, maps_each_kernel_release_to_a_system) {
    struct Row {
        const char* release;
        int major, minor, patch;
        const char* codename;
    };
    const Row rows[] = {
        {"13.4.0", 10, 9, 4, "Mavericks"},   {"12.5.0", 10, 8, 5, "Mountain Lion"},
        {"11.4.2", 10, 7, 4, "Lion"},        {"10.8.0", 10, 6, 8, "Snow Leopard"},
        {"9.8.0", 10, 5, 8, "Leopard"},      {"8.11.1", 10, 4, 11, "Tiger"},
        {"7.9.0", 10, 3, 9, "Panther"},      {"6.8", 10, 2, 8, "Jaguar"},
        {"5.5", 10, 1, 5, "Puma"},           {"14.1.0", 0, 0, 0, "Unknown OSX"},
        {"4.9.3", 0, 0, 0, "Unknown OSX"},   {"", 0, 0, 0, "Unknown OSX"},
        {"rubbish", 0, 0, 0, "Unknown OSX"}, {"13", 10, 9, 0, "Mavericks"},
    };
    for (const Row& row : rows) {
        const OsxRelease system = osx_release_of_kernel(row.release);
        EXPECT_EQ(system.major, row.major) << row.release;
        EXPECT_EQ(system.minor, row.minor) << row.release;
        EXPECT_EQ(system.patch, row.patch) << row.release;
        EXPECT_EQ(system.codename, row.codename) << row.release;
    }
}

TEST(SystemNames, is_linux_as_uname_tells_it) {
    utsname system{};
    ASSERT_EQ(uname(&system), 0);
    const PlatformInformation platform = read_platform_information();
    EXPECT_EQ(platform.platform_name, "Linux");
    EXPECT_EQ(platform.linux_sysname, system.sysname);
    EXPECT_EQ(platform.linux_release, system.release);
    EXPECT_EQ(platform.linux_version, system.version);
    EXPECT_EQ(platform.linux_machine, system.machine);
    EXPECT_EQ(platform.osx_kernel_release, "");
    EXPECT_EQ(platform.osx.codename, "");
    EXPECT_EQ(platform.osx.major, 0);
}

} // namespace
} // namespace orvex_test
