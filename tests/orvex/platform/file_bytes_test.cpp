#include "orvex/platform/private/file_bytes.h"

#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/closed_input.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

TEST(FileBytes, are_the_whole_file_with_a_zero_behind_it) {
    const TempDir dir;
    FileBytes file;
    EXPECT_EQ(file.text(), nullptr);
    EXPECT_EQ(file.size(), 0u);
    for (const std::string& bytes :
         {std::string("a\0b\n", 4), std::string(), std::string(300'000, 'x')}) {
        ASSERT_TRUE(file.read(dir.write("bytes", bytes).c_str()));
        ASSERT_EQ(file.size(), bytes.size());
        EXPECT_EQ(std::string(file.text(), file.size() + 1), bytes + '\0');
        EXPECT_EQ(reinterpret_cast<const char*>(file.data()), file.text());
    }
}

TEST(FileBytes, are_gone_when_another_file_is_refused) {
    const TempDir dir;
    const std::string good = dir.write("good", "12345");
    const std::string missing = dir.file("missing");
    const std::string folder = dir.path();
    for (const char* const path :
         {static_cast<const char*>(nullptr), missing.c_str(), folder.c_str(), "/dev/zero"}) {
        FileBytes file;
        ASSERT_TRUE(file.read(good.c_str()));
        EXPECT_FALSE(file.read(path)) << (path ? path : "null");
        EXPECT_EQ(file.text(), nullptr);
        EXPECT_EQ(file.size(), 0u);
    }
}

TEST(FileBytes, may_be_as_many_as_the_limit) {
    const TempDir dir;
    const std::string path = dir.write("bytes", "12345");
    FileBytes file;
    EXPECT_TRUE(file.read(path.c_str(), 5));
    EXPECT_FALSE(file.read(path.c_str(), 4));
    EXPECT_EQ(file.size(), 0u);
}

// A host may have closed its standard input, whose number the next file gets.
TEST(FileBytes, leave_no_file_open_whatever_its_number) {
    const TempDir dir;
    const std::string path = dir.write("bytes", "x");
    const ClosedInput closed;
    EXPECT_TRUE(FileBytes().read(path.c_str()));
    EXPECT_EQ(::fcntl(STDIN_FILENO, F_GETFD), -1);
}

} // namespace
} // namespace orvex_test
