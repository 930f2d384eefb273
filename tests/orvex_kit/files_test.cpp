#include "orvex_kit/files.h"

#include <filesystem>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;
using orvex_test::TempDir;

TEST(Files, lie_in_their_folders) {
    EXPECT_EQ(folder_of("m.obj"), "");
    EXPECT_EQ(folder_of("a/b/m.obj"), "a/b/");
    EXPECT_EQ(folder_of("/m"), "/");
    EXPECT_EQ(folder_of(""), "");
}

TEST(Files, have_suffixes_in_any_case) {
    EXPECT_EQ(suffix_of("a.b/c.obj"), 5u);
    EXPECT_EQ(suffix_of("a.b/c"), 5u);
    EXPECT_EQ(suffix_of("a/.c"), 4u);
    EXPECT_TRUE(has_suffix("a/m.3DS", ".3ds"));
    EXPECT_FALSE(has_suffix("a/m.obj", ".3ds"));
    EXPECT_FALSE(has_suffix("a.3ds/m", ".3ds"));
}

TEST(Files, tell_why_they_cant_be_read) {
    const TempDir folder;
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string none = folder.file("none");
    const std::string empty = folder.write("empty", "");
    EXPECT_EQ(mistake_in_reading(none), none + ": No such file or directory");
    EXPECT_EQ(mistake_in_reading(folder.path()), folder.path() + ": is a folder");
    EXPECT_EQ(mistake_in_reading(pipe), pipe + ": is no regular file");
    EXPECT_EQ(mistake_in_reading(empty), empty + ": the file is empty");
    EXPECT_EQ(mistake_in_reading(folder.write("full", "x")), "");
}

TEST(WordsOfFiles, are_short_and_plain_in_messages) {
    EXPECT_EQ(quotable("speed"), "speed");
    EXPECT_EQ(quotable(""), "");
    EXPECT_EQ(quotable("a\x1b[31m\xc3\xa9\x7f"), "a?[31m???");
    EXPECT_EQ(quotable(std::string(40, 'x')), std::string(40, 'x'));
    EXPECT_EQ(quotable(std::string(41, 'x')), std::string(40, 'x') + "...");
}

} // namespace

} // namespace orvex_test
