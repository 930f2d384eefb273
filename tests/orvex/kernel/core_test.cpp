#include "orvex/kernel/core.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/base/log_mgr.h"
#include "orvex/kernel/kernel.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

class CoreTest : public testing::Test {
protected:
    ~CoreTest() override { core::stop(nullptr); }

    static void take(const char* line, void* user_data) {
        const std::string text = line;
        static_cast<CoreTest*>(user_data)->lines.push_back(text.substr(text.find(") ") + 2));
    }

    bool has(const std::string& line) const {
        for (const std::string& one : lines)
            if (one == line)
                return true;
        return false;
    }

    std::vector<std::string> lines;
};

TEST_F(CoreTest, start_brings_up_the_log_and_the_kernel) {
    EXPECT_TRUE(core::start("", true, &CoreTest::take, this));
    ASSERT_NE(core::log_get_default(), nullptr);
    EXPECT_EQ(core::log_get_default(), LogMgr::get()->get_default_log());
    core::log_trace("hello");
    EXPECT_TRUE(has("< > hello"));
    EXPECT_STREQ(core::get_platform_name(), "Linux");
}

TEST_F(CoreTest, start_leaves_the_log_disabled_unless_asked) {
    const TempDir dir;
    EXPECT_TRUE(core::start(dir.file("log.txt").c_str(), false, &CoreTest::take, this));
    core::log_trace_error("unheard");
    EXPECT_TRUE(lines.empty());
    EXPECT_FALSE(std::filesystem::exists(dir.file("log.txt")));
}

TEST_F(CoreTest, start_without_a_name_writes_to_the_default_file) {
    const TempDir dir;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(dir.path());
    core::start(nullptr, true, nullptr, nullptr);
    core::log_trace("hello");
    core::stop("bye");
    std::filesystem::current_path(before);
    const std::string text = content_of(dir.file("_orvex_log.txt"));
    EXPECT_NE(text.find(" < > hello\n"), std::string::npos);
    EXPECT_NE(text.find(" < > bye\n"), std::string::npos);
}

TEST_F(CoreTest, stop_logs_its_message_last_and_ends_the_log) {
    core::start("", true, &CoreTest::take, this);
    core::log_get_default()->set_trace_level_threshold(LOG_LEVEL_DEBUG);
    EXPECT_TRUE(core::stop("bye"));
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[lines.size() - 2], "<o> orvex stopped ok.");
    EXPECT_EQ(lines.back(), "< > bye");
    EXPECT_EQ(core::log_get_default(), nullptr);
    EXPECT_TRUE(core::stop("unheard"));
    EXPECT_EQ(lines.back(), "< > bye");
}

TEST_F(CoreTest, stop_without_a_message_logs_none) {
    core::start("", true, &CoreTest::take, this);
    lines.clear();
    EXPECT_TRUE(core::stop(nullptr));
    EXPECT_TRUE(lines.empty());
}

TEST_F(CoreTest, log_can_be_used_without_the_kernel) {
    EXPECT_TRUE(core::log_start(""));
    core::log_set_callback(&CoreTest::take, this);
    core::log_trace("disabled at first");
    core::log_enable(true);
    core::log_get_default()->set_trace_level_threshold(LOG_LEVEL_DEBUG);
    core::log_trace("3");
    core::log_trace_warning("2");
    core::log_trace_error("1");
    core::log_trace_debug("4");
    core::log_enable(false);
    core::log_trace("disabled again");
    EXPECT_EQ(lines, (std::vector<std::string>{"< > 3", "<!> 2", "<*> 1", "<o> 4"}));
    EXPECT_TRUE(core::log_stop());
}

TEST_F(CoreTest, log_settings_without_a_log_do_nothing) {
    core::log_set_callback(&CoreTest::take, this);
    core::log_enable(true);
    core::log_enable(false);
    core::log_trace("nowhere");
    EXPECT_EQ(core::log_get_default(), nullptr);
    EXPECT_TRUE(lines.empty());
}

TEST_F(CoreTest, tells_codename_and_bitness) {
    EXPECT_STREQ(core::get_engine_codename(), "Brell");
    EXPECT_EQ(core::get_platform_bitness(), sizeof(void*) == 8 ? 64 : 32);
}

} // namespace
} // namespace orvex_test
