#include "orvex/base/log_mgr.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

class LogMgrTest : public testing::Test {
protected:
    ~LogMgrTest() override { mgr->stop(); }

    TempDir dir;
    LogMgr* const mgr = LogMgr::get();
};

TEST_F(LogMgrTest, is_one_per_process) {
    EXPECT_EQ(LogMgr::get(), mgr);
    EXPECT_EQ(LogMgr::getptr(), mgr);
}

TEST_F(LogMgrTest, has_no_default_log_and_drops_all_lines_unless_started) {
    EXPECT_EQ(mgr->get_default_log(), nullptr);
    mgr->trace("a");
    mgr->trace_warning("a");
    mgr->trace_error("a");
    mgr->trace_debug("a");
    mgr->simple_trace("a");
    mgr->tracef("%d", 1);
    mgr->tracef_warning("%d", 1);
    mgr->tracef_error("%d", 1);
    mgr->tracef_debug("%d", 1);
    mgr->simple_tracef("%d", 1);
    EXPECT_TRUE(mgr->stop());
    EXPECT_EQ(mgr->create_log(nullptr, true), nullptr);
}

TEST_F(LogMgrTest, traces_each_level_to_the_default_log) {
    LogCapture log;
    mgr->trace_error("1");
    mgr->trace_warning("2");
    mgr->trace("3");
    mgr->trace_debug("4");
    mgr->simple_trace("5");
    mgr->tracef_error("%d", 11);
    mgr->tracef_warning("%d", 12);
    mgr->tracef("%d", 13);
    mgr->tracef_debug("%d", 14);
    mgr->simple_tracef("%d", 15);
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{"<*> 1", "<!> 2", "< > 3", "<o> 4", "5\n", "<*> 11",
                                        "<!> 12", "< > 13", "<o> 14", "15\n"}));
}

TEST_F(LogMgrTest, holds_formatted_and_plain_lines_to_the_same_threshold) {
    struct Row {
        int threshold;
        std::vector<std::string> lines;
    };
    const Row rows[] = {
        {0, {}},
        {1, {"<*> e", "<*> ef"}},
        {2, {"<*> e", "<*> ef", "<!> w", "<!> wf"}},
        {3, {"<*> e", "<*> ef", "<!> w", "<!> wf", "< > i", "< > if", "s\n", "sf\n"}},
    };
    for (const Row& row : rows) {
        LogCapture log(static_cast<LOG_LEVEL>(row.threshold));
        mgr->trace_error("e");
        mgr->tracef_error("%s", "ef");
        mgr->trace_warning("w");
        mgr->tracef_warning("%s", "wf");
        mgr->trace("i");
        mgr->tracef("%s", "if");
        mgr->simple_trace("s");
        mgr->simple_tracef("%s", "sf");
        mgr->trace_debug("d");
        mgr->tracef_debug("%s", "df");
        EXPECT_EQ(log.messages(), row.lines) << row.threshold;
    }
}

TEST_F(LogMgrTest, ignores_null_messages_and_formats) {
    LogCapture log;
    const char* const nothing = nullptr;
    mgr->trace(nothing);
    mgr->trace_warning(nothing);
    mgr->trace_error(nothing);
    mgr->trace_debug(nothing);
    mgr->simple_trace(nothing);
    mgr->tracef(nothing);
    mgr->tracef_warning(nothing);
    mgr->tracef_error(nothing);
    mgr->tracef_debug(nothing);
    mgr->simple_tracef(nothing);
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(LogMgrTest, cuts_a_formatted_message_at_65535_characters) {
    LogCapture log;
    mgr->tracef("%s", std::string(70000, 'x').c_str());
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0], "< > " + std::string(65535, 'x'));
}

TEST_F(LogMgrTest, uses_its_own_file_name_in_the_working_directory_when_none_is_given) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(dir.path());
    EXPECT_TRUE(mgr->start(nullptr, true));
    mgr->simple_trace("hello");
    EXPECT_STREQ(mgr->get_default_log()->get_filename(), "_orvex_log.txt");
    mgr->stop();
    std::filesystem::current_path(before);
    EXPECT_EQ(content_of(dir.file("_orvex_log.txt")), "hello\n");
}

TEST_F(LogMgrTest, start_enables_the_default_log_only_if_asked) {
    const std::string path = dir.file("log.txt");
    EXPECT_TRUE(mgr->start(path.c_str(), false));
    mgr->trace("unseen");
    EXPECT_FALSE(std::filesystem::exists(path));
    mgr->get_default_log()->enable();
    mgr->simple_trace("seen");
    EXPECT_EQ(content_of(path), "seen\n");
}

TEST_F(LogMgrTest, a_second_start_changes_nothing) {
    const std::string first = dir.file("first.txt");
    mgr->start(first.c_str(), true);
    Log* const log = mgr->get_default_log();
    EXPECT_TRUE(mgr->start(dir.file("second.txt").c_str(), false));
    EXPECT_EQ(mgr->get_default_log(), log);
    mgr->simple_trace("still enabled");
    EXPECT_EQ(content_of(first), "still enabled\n");
}

TEST_F(LogMgrTest, starts_again_after_a_stop_with_an_empty_file) {
    const std::string path = dir.file("log.txt");
    mgr->start(path.c_str(), true);
    mgr->simple_trace("first");
    EXPECT_TRUE(mgr->stop());
    EXPECT_EQ(mgr->get_default_log(), nullptr);
    mgr->simple_trace("between");
    EXPECT_EQ(content_of(path), "first\n");
    EXPECT_TRUE(mgr->start(path.c_str(), true));
    mgr->simple_trace("second");
    EXPECT_EQ(content_of(path), "second\n");
}

TEST_F(LogMgrTest, gives_the_default_log_for_a_null_name) {
    mgr->start("", true);
    EXPECT_EQ(mgr->create_log(nullptr, false), mgr->get_default_log());
}

TEST_F(LogMgrTest, keeps_further_logs_with_files_of_their_own) {
    mgr->start("", true);
    const std::string path = dir.file("more.txt");
    Log* const enabled = mgr->create_log(path.c_str(), true);
    Log* const disabled = mgr->create_log(dir.file("none.txt").c_str(), false);
    ASSERT_NE(enabled, nullptr);
    EXPECT_FALSE(std::filesystem::exists(path));
    enabled->simple_trace(LOG_LEVEL_INFO, "more");
    disabled->simple_trace(LOG_LEVEL_INFO, "none");
    EXPECT_EQ(content_of(path), "more\n");
    EXPECT_FALSE(std::filesystem::exists(dir.file("none.txt")));
}

TEST_F(LogMgrTest, kills_a_registered_log_once) {
    mgr->start("", true);
    Log* const log = mgr->create_log(dir.file("log.txt").c_str(), true);
    EXPECT_TRUE(mgr->kill_log(log));
    EXPECT_FALSE(mgr->kill_log(log));
}

TEST_F(LogMgrTest, kills_neither_null_nor_a_log_of_another_origin) {
    mgr->start("same.txt", false);
    Log own;
    own.set_filename("same.txt");
    EXPECT_FALSE(mgr->kill_log(nullptr));
    EXPECT_FALSE(mgr->kill_log(&own));
    EXPECT_NE(mgr->get_default_log(), nullptr);
}

TEST_F(LogMgrTest, does_not_find_a_log_that_changed_its_name) {
    mgr->start("", true);
    Log* const log = mgr->create_log("before.txt", false);
    log->set_filename("after.txt");
    EXPECT_FALSE(mgr->kill_log(log));
    log->set_filename("before.txt");
    EXPECT_TRUE(mgr->kill_log(log));
}

TEST_F(LogMgrTest, a_second_log_of_a_name_takes_the_place_of_the_first) {
    mgr->start("", true);
    Log* const first = mgr->create_log("same.txt", false);
    Log* const second = mgr->create_log("same.txt", false);
    EXPECT_NE(first, second);
    first->set_append_mode(true); // it is alive still
    EXPECT_TRUE(mgr->kill_log(first)) << "found by the name that the second now holds";
    EXPECT_FALSE(mgr->kill_log(second)) << "its entry went with the first";
    second->set_append_mode(true);
}

TEST_F(LogMgrTest, a_log_under_the_name_of_another_takes_both_entries_with_it) {
    mgr->start("", true);
    Log* const first = mgr->create_log("first.txt", false);
    Log* const second = mgr->create_log("second.txt", false);
    first->set_filename("second.txt");
    EXPECT_TRUE(mgr->kill_log(first));
    EXPECT_FALSE(mgr->kill_log(second));
    EXPECT_TRUE(mgr->stop());
}

TEST_F(LogMgrTest, drops_lines_when_its_default_log_was_killed) {
    mgr->start("", true);
    EXPECT_TRUE(mgr->kill_log(mgr->get_default_log()));
    EXPECT_EQ(mgr->get_default_log(), nullptr);
    mgr->trace("nowhere");
    mgr->tracef("%s", "nowhere");
    EXPECT_TRUE(mgr->start("", true));
    EXPECT_EQ(mgr->get_default_log(), nullptr) << "it counts as started";
    mgr->stop();
    EXPECT_TRUE(mgr->start("", true));
    EXPECT_NE(mgr->get_default_log(), nullptr);
}

TEST_F(LogMgrTest, stop_closes_every_log) {
    const std::string path = dir.file("more.txt");
    mgr->start("", true);
    mgr->create_log(path.c_str(), true)->simple_trace(LOG_LEVEL_INFO, "more");
    EXPECT_TRUE(mgr->stop());
    EXPECT_EQ(content_of(path), "more\n");
    EXPECT_TRUE(mgr->start("", true));
    Log* const again = mgr->create_log(path.c_str(), true);
    EXPECT_TRUE(mgr->kill_log(again));
}

} // namespace
} // namespace orvex_test
