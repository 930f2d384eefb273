#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orvex_names/file_names.h>

#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::names;
using Steps = std::vector<std::string>;

TEST(FileNamesTest, steps_are_the_names_between_slashes_of_either_kind) {
    EXPECT_EQ(steps_of("a/b c/d.png"), (Steps{"a", "b c", "d.png"}));
    EXPECT_EQ(steps_of("C:\\a\\..\\.\\d.png"), (Steps{"a", "d.png"}));
    EXPECT_EQ(steps_of("z:d.png"), Steps{"d.png"});
    EXPECT_EQ(steps_of("\\\\server\\share\\d.png"), (Steps{"server", "share", "d.png"}));
    EXPECT_EQ(steps_of("1:d.png"), Steps{"1:d.png"});
    EXPECT_EQ(steps_of("../..//"), Steps{});
    EXPECT_EQ(steps_of(""), Steps{});
    EXPECT_EQ(steps_of("C:"), Steps{});
}

TEST(FileNamesTest, quotes_go_that_stand_on_both_sides) {
    EXPECT_EQ(without_quotes("\"a b\""), "a b");
    EXPECT_EQ(without_quotes("\"a b"), "\"a b");
    EXPECT_EQ(without_quotes("a b\""), "a b\"");
    EXPECT_EQ(without_quotes("\"\""), "\"\"");
    EXPECT_EQ(without_quotes("\""), "\"");
    EXPECT_EQ(without_quotes(""), "");
}

TEST(FileNamesTest, what_has_a_folders_name_in_front_isnt_within) {
    EXPECT_TRUE(is_within("/a/b", "/a"));
    EXPECT_TRUE(is_within("/a", "/"));
    EXPECT_FALSE(is_within("/ab/c", "/a"));
    EXPECT_FALSE(is_within("/a", "/a"));
    EXPECT_FALSE(is_within("/a", ""));
    EXPECT_FALSE(is_within("", "/a"));
}

TEST(FileNamesTest, walks_by_names_in_any_case) {
    const TempDir root;
    const std::string folder = root.file("");
    std::filesystem::create_directories(folder + "Art/Old Walls");
    const auto make = [&](const std::string& name) { std::ofstream(folder + name) << "x"; };
    make("Art/Old Walls/Brick.PNG");
    make("wood.png");
    make("WOOD.png");
    EXPECT_EQ(walk_in_any_case(folder, {"C", "art", "OLD walls", "brick.png"}, 1),
              folder + "Art/Old Walls/Brick.PNG");
    EXPECT_EQ(walk_in_any_case(folder, {"wood.png"}, 0), folder + "wood.png");
    EXPECT_EQ(walk_in_any_case(folder, {"Wood.png"}, 0), folder + "WOOD.png");
    EXPECT_EQ(walk_in_any_case(folder, {"art", "none.png"}, 0), "");
    EXPECT_EQ(walk_in_any_case(folder, {"none", "wood.png"}, 0), "");
    EXPECT_EQ(walk_in_any_case(folder, {"wood.pn"}, 0), "");
}

TEST(FileNamesTest, resolves_links) {
    const TempDir root;
    std::ofstream(root.file("wood.png")) << "x";
    std::filesystem::create_symlink("wood.png", root.file("link.png"));
    std::filesystem::create_symlink("none.png", root.file("broken.png"));
    const std::string real = std::filesystem::canonical(root.file("wood.png")).string();
    EXPECT_EQ(resolved(root.file("link.png")), real);
    EXPECT_EQ(resolved(root.file("./link.png")), real);
    EXPECT_EQ(resolved(root.file("broken.png")), "");
}

} // namespace

} // namespace orvex_test
