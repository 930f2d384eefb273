#include "orvex_kit/engine.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

#include <orvex/base/log.h>
#include <orvex/kernel/aux.h>
#include <orvex/kernel/core.h>
#include <orvex/scene/node.h>

#include "orvex_kit/private/engine_parts.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

/// Sets a variable of the environment for as long as it lives.
class Variable {
public:
    Variable(const char* name, const std::string& value)
        : name(name) {
        setenv(name, value.c_str(), 1);
    }
    ~Variable() { unsetenv(name); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* name;
};

bool has(const std::string& text, const char* part) {
    return text.find(part) != text.npos;
}

TEST(Engine, runs_as_long_as_it_lives) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(orvex::core::log_get_default(), nullptr);
        const Engine engine;
        EXPECT_TRUE(engine) << engine.reason();
        EXPECT_EQ(engine.reason(), "");
        EXPECT_NE(orvex::core::log_get_default(), nullptr);
        EXPECT_NE(std::string(orvex::core::get_platform_name()), "");
    }
    EXPECT_EQ(orvex::core::log_get_default(), nullptr);
}

TEST(Engine, is_one_at_a_time) {
    const Engine engine;
    {
        const Engine second;
        EXPECT_FALSE(second);
        EXPECT_EQ(second.reason(),
                  "the engine runs already: a process has one kit::Engine at a time");
    }
    EXPECT_NE(orvex::core::log_get_default(), nullptr);
}

TEST(Engine, hands_on_the_log_line_by_line) {
    std::vector<std::string> lines;
    {
        const Engine engine(
            {[&lines](const std::string& line) { lines.push_back(line); }, "", false, false});
        lines.clear();
        orvex::core::log_trace("a word");
        orvex::core::log_trace_debug("not this one");
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_TRUE(has(lines[0], "a word")) << lines[0];
    }
    EXPECT_FALSE(lines.empty());
}

TEST(Engine, lets_debug_lines_through_where_they_are_wanted) {
    std::vector<std::string> lines;
    const Engine engine(
        {[&lines](const std::string& line) { lines.push_back(line); }, "", true, false});
    orvex::core::log_trace_debug("this one, too");
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(has(lines.back(), "this one, too")) << lines.back();
}

TEST(Engine, drops_what_the_listener_throws) {
    const Engine engine(
        {[](const std::string&) { throw std::runtime_error("no"); }, "", false, false});
    orvex::core::log_trace("a word");
    EXPECT_TRUE(engine);
}

TEST(Engine, writes_the_log_to_a_file) {
    const TempDir folder;
    const std::string path = folder.write("log.txt", "of yesterday\n");
    {
        const Engine engine({{}, path, false, false});
        orvex::core::log_trace("a word");
    }
    EXPECT_TRUE(has(content_of(path), "a word\n"));
    EXPECT_FALSE(has(content_of(path), "of yesterday"));
}

TEST(Engine, leaves_no_file_where_none_is_wanted) {
    const TempDir folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    { const Engine engine; }
    std::filesystem::current_path(before);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(Engine, uses_the_one_that_the_host_has_started) {
    orvex::core::start("", true, nullptr, nullptr);
    orvex::Log* const log = orvex::core::log_get_default();
    {
        const Engine engine;
        EXPECT_TRUE(engine) << engine.reason();
        EXPECT_EQ(orvex::core::log_get_default(), log);
    }
    EXPECT_EQ(orvex::core::log_get_default(), log);
    orvex::core::stop(nullptr);
}

TEST(Engine, finds_plugins_in_the_folders_of_the_environment) {
    const TempDir one;
    const TempDir two;
    std::filesystem::copy(ORVEX_SOUP_LOADER, two.file("soup.so"));
    const std::string broken = two.write("broken.so", "no library");
    two.write("notes.txt", "no plugin");
    const Variable path("ORVEX_PLUGIN_PATH", one.path() + "::" + two.path() + ":/none");
    const Engine engine;
    ASSERT_EQ(engine.plugins().size(), 2u);
    EXPECT_EQ(engine.plugins()[0].path, broken);
    EXPECT_EQ(engine.plugins()[0].name, "");
    EXPECT_EQ(engine.plugins()[0].reason,
              broken + ": it can't be loaded as a plugin; the log tells why");
    EXPECT_EQ(engine.plugins()[1].path, two.file("soup.so"));
    EXPECT_NE(engine.plugins()[1].name, "");
    EXPECT_EQ(engine.plugins()[1].reason, "");
}

TEST(Engine, looks_for_no_plugins_where_none_are_wanted) {
    const TempDir folder;
    std::filesystem::copy(ORVEX_SOUP_LOADER, folder.file("soup.so"));
    const Variable path("ORVEX_PLUGIN_PATH", folder.path());
    const Engine engine({{}, "", false, false});
    EXPECT_TRUE(engine.plugins().empty());
}

/// Notes when it is closed.
class Part : public EnginePart {
public:
    Part(std::string& closed, char letter)
        : closed(closed)
        , letter(letter) {}
    void close() override { closed += letter; }

private:
    std::string& closed;
    char letter;
};

TEST(Engine, closes_what_lives_longer_the_last_first) {
    std::string closed;
    std::unique_ptr<Part> a, c;
    {
        const Engine engine;
        EXPECT_TRUE(engine_runs());
        a = std::make_unique<Part>(closed, 'a');
        const Part b(closed, 'b');
        c = std::make_unique<Part>(closed, 'c');
    }
    EXPECT_FALSE(engine_runs());
    EXPECT_EQ(closed, "ca");
    a.reset();
    const Engine next;
    c.reset();
}

} // namespace
} // namespace orvex_test
