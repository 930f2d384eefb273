// When files count as changed.

#include <filesystem>

#include <gtest/gtest.h>

#include "file_watch.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using orvex_test::TempDir;

class FileWatchTest : public testing::Test {
protected:
    TempDir folder;
    std::string a = folder.write("a.obj", "first");
    std::string b = folder.write("b.mtl", "first");
    FileWatch watch;

    void SetUp() override { watch.follow({a, b}); }
};

TEST_F(FileWatchTest, tells_nothing_while_nothing_changes) {
    for (int i = 0; i < 5; ++i)
        EXPECT_FALSE(watch.look());
    FileWatch nothing;
    EXPECT_FALSE(nothing.look());
}

TEST_F(FileWatchTest, tells_a_change_once_and_only_when_it_has_settled) {
    folder.write("b.mtl", "second, longer");
    EXPECT_FALSE(watch.look());
    folder.write("b.mtl", "second, longer still");
    EXPECT_FALSE(watch.look());
    EXPECT_TRUE(watch.look());
    EXPECT_FALSE(watch.look());
    EXPECT_TRUE(watch.gone().empty());
}

TEST_F(FileWatchTest, sees_a_file_of_the_same_size_and_time_that_took_the_name) {
    const auto time = std::filesystem::last_write_time(a);
    folder.write("new", "FIRST");
    std::filesystem::last_write_time(folder.file("new"), time);
    std::filesystem::rename(folder.file("new"), a);
    EXPECT_FALSE(watch.look());
    EXPECT_TRUE(watch.look());
}

TEST_F(FileWatchTest, names_the_files_that_are_gone_until_they_are_back) {
    std::filesystem::rename(a, folder.file("away"));
    EXPECT_FALSE(watch.look());
    EXPECT_TRUE(watch.look());
    EXPECT_EQ(watch.gone(), std::vector<std::string>{a});
    std::filesystem::rename(folder.file("away"), a);
    EXPECT_FALSE(watch.look());
    EXPECT_TRUE(watch.look());
    EXPECT_TRUE(watch.gone().empty());
}

TEST_F(FileWatchTest, sees_nothing_of_a_change_that_was_taken_back) {
    std::filesystem::rename(a, folder.file("away"));
    EXPECT_FALSE(watch.look());
    std::filesystem::rename(folder.file("away"), a);
    EXPECT_FALSE(watch.look());
    EXPECT_FALSE(watch.look());
}

TEST_F(FileWatchTest, misses_nothing_that_was_written_before_it_was_followed_again) {
    folder.write("a.obj", "second, longer");
    watch.follow({a, folder.file("c.png")});
    EXPECT_FALSE(watch.look());
    EXPECT_TRUE(watch.look());
    folder.write("b.mtl", "nobody looks");
    EXPECT_FALSE(watch.look());
    EXPECT_FALSE(watch.look());
    folder.write("c.png", "it came");
    EXPECT_FALSE(watch.look());
    EXPECT_TRUE(watch.look());
}

} // namespace

} // namespace orvex_test
