#include "orvex/base/log.h"

#include <algorithm>
#include <barrier>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "system_calls.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

/// Whether a text is `form` with a digit for each d.
bool has_form(std::string_view text, std::string_view form) {
    return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char c, char want) {
        return want == 'd' ? std::isdigit(static_cast<unsigned char>(c)) != 0 : c == want;
    });
}

/// A log whose callback collects its lines.
class LogTest : public testing::Test {
protected:
    LogTest() {
        log.enable();
        log.set_trace_callback(&LogTest::take, &lines);
    }

    static void take(const char* line, void* user_data) {
        static_cast<std::vector<std::string>*>(user_data)->emplace_back(line);
    }

    /// The line behind its stamp, whose form is checked on the way.
    static std::string behind_stamp(const std::string& line) {
        constexpr std::string_view form = "dddd:dd:dd@dd:dd:dd(dddddddddd)";
        EXPECT_TRUE(has_form(line.substr(0, form.size()), form)) << line;
        return line.size() < form.size() ? "" : line.substr(form.size());
    }

    static int number_of(const std::string& line) {
        const std::size_t start = line.find('(');
        return std::atoi(line.c_str() + start + 1);
    }

    TempDir dir;
    std::vector<std::string> lines;
    Log log;
};

TEST_F(LogTest, drops_a_debug_line_without_counting_it) {
    log.trace(LOG_LEVEL_DEBUG, "unseen");
    EXPECT_TRUE(lines.empty());
    log.trace(LOG_LEVEL_INFO, "seen");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(number_of(lines[0]), 1);

    log.set_trace_level_threshold(LOG_LEVEL_DEBUG);
    log.trace(LOG_LEVEL_DEBUG, "now seen");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(behind_stamp(lines[1]), " <o> now seen");
    EXPECT_EQ(number_of(lines[1]), 2);
}

TEST_F(LogTest, marks_each_level) {
    struct Row {
        int level;
        const char* line;
    };
    const Row rows[] = {
        {1, " <*> text"}, {2, " <!> text"}, {3, " < > text"}, {4, " <o> text"},
        {5, "text"},      {9, "text"},      {0, "text"},      {-7, "text"},
    };
    log.set_trace_level_threshold(static_cast<LOG_LEVEL>(9));
    for (const Row& row : rows) {
        lines.clear();
        log.trace(static_cast<LOG_LEVEL>(row.level), "text");
        ASSERT_EQ(lines.size(), 1u) << row.level;
        EXPECT_EQ(behind_stamp(lines[0]), row.line) << row.level;
    }
}

TEST_F(LogTest, lets_out_what_is_at_most_the_threshold) {
    struct Row {
        int threshold, level;
        bool out;
    };
    const Row rows[] = {
        {0, 1, false}, {0, 0, true},   {0, -1, true},  {1, 1, true}, {1, 2, false},
        {2, 1, true},  {3, 3, true},   {3, 4, false},  {4, 4, true}, {4, 5, false},
        {9, 9, true},  {-5, 0, false}, {-5, -5, true},
    };
    for (const Row& row : rows) {
        lines.clear();
        log.set_trace_level_threshold(static_cast<LOG_LEVEL>(row.threshold));
        const auto level = static_cast<LOG_LEVEL>(row.level);
        log.trace(level, "a");
        log.tracef(level, "%s", "b");
        log.simple_trace(level, "c");
        log.simple_tracef(level, "%s", "d");
        EXPECT_EQ(lines.size(), row.out ? 4u : 0u) << row.threshold << " " << row.level;
    }
}

TEST_F(LogTest, is_disabled_at_first_and_makes_no_file_until_a_line_goes_out) {
    const std::string path = dir.file("log.txt");
    Log fresh;
    fresh.set_filename(path.c_str());
    fresh.trace(LOG_LEVEL_ERROR, "too early");
    fresh.simple_trace(LOG_LEVEL_ERROR, "too early");
    EXPECT_FALSE(std::filesystem::exists(path));

    fresh.enable();
    fresh.trace(LOG_LEVEL_DEBUG, "too low");
    EXPECT_FALSE(std::filesystem::exists(path));

    fresh.trace(LOG_LEVEL_INFO, "first");
    EXPECT_EQ(behind_stamp(content_of(path)), " < > first\n") << "flushed without a close";

    fresh.disable();
    fresh.trace(LOG_LEVEL_INFO, "too late");
    EXPECT_EQ(behind_stamp(content_of(path)), " < > first\n");
}

TEST_F(LogTest, without_a_file_name_serves_callback_and_terminal) {
    log.send_to_terminal(true);
    testing::internal::CaptureStdout();
    log.simple_trace(LOG_LEVEL_INFO, "no file");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\nno file");
    EXPECT_EQ(lines, std::vector<std::string>{"no file\n"});
    EXPECT_STREQ(log.get_filename(), "");
}

TEST_F(LogTest, numbers_stamped_lines_only) {
    log.trace(LOG_LEVEL_INFO, "one");
    log.simple_trace(LOG_LEVEL_INFO, "between");
    log.simple_tracef(LOG_LEVEL_INFO, "%s", "between");
    log.tracef(LOG_LEVEL_INFO, "%s", "two");
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(number_of(lines[0]), 1);
    EXPECT_EQ(lines[1], "between\n");
    EXPECT_EQ(lines[2], "between\n");
    EXPECT_EQ(number_of(lines[3]), 2);
    EXPECT_EQ(behind_stamp(lines[3]), " < > two") << "no line end for the callback";
}

TEST_F(LogTest, stamps_with_the_local_time_and_the_line_number) {
    const char* const zone = std::getenv("TZ");
    const std::string old_zone = zone ? zone : "";
    setenv("TZ", "TST-5", 1);
    tzset();
    system_calls.fake = true;
    system_calls.calendar = 1393905404; // 2014-03-04 03:56:44 UTC
    log.trace(LOG_LEVEL_INFO, "five hours east");
    log.trace(LOG_LEVEL_INFO, "the same second");
    system_calls.calendar += 1;
    log.trace(LOG_LEVEL_INFO, "the next second");
    log.send_to_terminal(true);
    testing::internal::CaptureStdout();
    log.trace(LOG_LEVEL_ERROR, "bare");
    const std::string terminal = testing::internal::GetCapturedStdout();
    system_calls.fake = false;
    if (zone)
        setenv("TZ", old_zone.c_str(), 1);
    else
        unsetenv("TZ");
    tzset();

    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], "2014:03:04@08:56:44(0000000001) < > five hours east");
    EXPECT_EQ(lines[1], "2014:03:04@08:56:44(0000000002) < > the same second");
    EXPECT_EQ(lines[2], "2014:03:04@08:56:45(0000000003) < > the next second");
    EXPECT_EQ(terminal, "\n[08:56:45] bare");
}

/// Gives the process a time zone, as another part of a host may, and the calendar a time.
class ZoneTest : public LogTest {
protected:
    ZoneTest() {
        system_calls.fake = true;
        system_calls.calendar = 1393905404; // 2014-03-04 03:56:44 UTC
    }
    ~ZoneTest() override {
        system_calls.fake = false;
        if (was_set)
            setenv("TZ", before.c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }

    const bool was_set = std::getenv("TZ") != nullptr;
    const std::string before = was_set ? std::getenv("TZ") : "";
};

TEST_F(ZoneTest, a_new_time_zone_counts_from_the_next_second_on) {
    setenv("TZ", "TST-5", 1);
    log.trace(LOG_LEVEL_INFO, "five hours east");
    setenv("TZ", "TST-6", 1);
    log.trace(LOG_LEVEL_INFO, "the same second");
    system_calls.calendar += 1;
    log.trace(LOG_LEVEL_INFO, "six hours east");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].substr(0, 19), "2014:03:04@08:56:44");
    EXPECT_EQ(lines[1].substr(0, 19), "2014:03:04@08:56:44");
    EXPECT_EQ(lines[2].substr(0, 19), "2014:03:04@09:56:45");
}

TEST_F(LogTest, prints_the_bare_message_after_a_line_end) {
    log.send_to_terminal(true);
    testing::internal::CaptureStdout();
    log.simple_tracef(LOG_LEVEL_WARNING, "%d%%", 5);
    log.tracef(LOG_LEVEL_WARNING, "100%% %s", "sure");
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(has_form(printed, "\n5%\n[dd:dd:dd] 100% sure")) << printed;

    log.send_to_terminal(false);
    testing::internal::CaptureStdout();
    log.trace(LOG_LEVEL_WARNING, "silent");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(LogTest, prints_per_cent_signs_of_a_message_as_they_are) {
    log.send_to_terminal(true);
    testing::internal::CaptureStdout();
    log.simple_trace(LOG_LEVEL_INFO, "%s %n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\n%s %n");
}

TEST_F(LogTest, empties_its_file_when_it_opens_it_again) {
    const std::string path = dir.file("log.txt");
    log.set_filename(path.c_str());
    log.simple_trace(LOG_LEVEL_INFO, "first");
    EXPECT_TRUE(log.close());
    log.simple_trace(LOG_LEVEL_INFO, "second");
    EXPECT_EQ(content_of(path), "second\n");
}

TEST_F(LogTest, goes_on_at_the_end_in_append_mode) {
    const std::string path = dir.write("log.txt", "host\n");
    EXPECT_TRUE(log.open(path.c_str(), true));
    log.simple_trace(LOG_LEVEL_INFO, "first");
    log.close();
    log.simple_trace(LOG_LEVEL_INFO, "second");
    EXPECT_EQ(content_of(path), "host\nfirst\nsecond\n");
}

TEST_F(LogTest, open_makes_the_file_at_once_even_if_disabled) {
    const std::string path = dir.file("log.txt");
    log.disable();
    EXPECT_TRUE(log.open(path.c_str(), false));
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_STREQ(log.get_filename(), path.c_str());
}

TEST_F(LogTest, keeps_its_open_file_until_it_is_closed) {
    const std::string first = dir.file("first.txt");
    const std::string second = dir.file("second.txt");
    log.open(first.c_str(), false);
    EXPECT_TRUE(log.open(second.c_str(), false));
    log.simple_trace(LOG_LEVEL_INFO, "still the first");
    EXPECT_STREQ(log.get_filename(), second.c_str());
    EXPECT_FALSE(std::filesystem::exists(second));

    log.close();
    log.simple_trace(LOG_LEVEL_INFO, "now the second");
    EXPECT_EQ(content_of(first), "still the first\n");
    EXPECT_EQ(content_of(second), "now the second\n");
}

TEST_F(LogTest, ignores_a_null_file_name) {
    log.set_filename("kept.txt");
    log.set_filename(nullptr);
    EXPECT_STREQ(log.get_filename(), "kept.txt");
}

TEST_F(LogTest, close_of_a_log_that_is_not_open_is_true) {
    EXPECT_TRUE(log.close());
    EXPECT_TRUE(log.close());
}

TEST_F(LogTest, writes_to_the_file_only_while_told_to) {
    const std::string path = dir.file("log.txt");
    log.open(path.c_str(), false);
    log.write_to_file(false);
    log.simple_trace(LOG_LEVEL_INFO, "callback only");
    log.write_to_file(true);
    log.simple_trace(LOG_LEVEL_INFO, "both");
    EXPECT_EQ(content_of(path), "both\n");
    EXPECT_EQ(lines, (std::vector<std::string>{"callback only\n", "both\n"}));
}

TEST_F(LogTest, goes_on_without_a_file_that_cannot_be_opened) {
    const std::string paths[] = {dir.path(), dir.file("missing/log.txt"), "/dev/full"};
    for (const std::string& path : paths) {
        lines.clear();
        log.close();
        EXPECT_TRUE(log.open(path.c_str(), false)) << path;
        log.simple_trace(LOG_LEVEL_INFO, "one");
        log.simple_trace(LOG_LEVEL_INFO, "two");
        EXPECT_EQ(lines, (std::vector<std::string>{"one\n", "two\n"})) << path;
    }
    const std::string good = dir.file("log.txt");
    log.close();
    log.open(good.c_str(), false);
    log.simple_trace(LOG_LEVEL_INFO, "three");
    EXPECT_EQ(content_of(good), "three\n");
}

TEST_F(LogTest, null_messages_formats_and_callbacks_do_nothing) {
    const char* const nothing = nullptr;
    log.trace(LOG_LEVEL_INFO, nothing);
    log.tracef(LOG_LEVEL_INFO, nothing);
    log.simple_trace(LOG_LEVEL_INFO, nothing);
    log.simple_tracef(LOG_LEVEL_INFO, nothing);
    EXPECT_TRUE(lines.empty());

    log.set_trace_callback(nullptr, nullptr);
    log.trace(LOG_LEVEL_INFO, "unheard");
    EXPECT_TRUE(lines.empty());

    log.set_trace_callback(&LogTest::take, &lines);
    log.trace(LOG_LEVEL_INFO, "heard");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(number_of(lines[0]), 2);
}

TEST_F(LogTest, cuts_a_formatted_message_at_65535_characters) {
    const std::string text(70000, 'x');
    log.tracef(LOG_LEVEL_INFO, "%s", text.c_str());
    log.simple_tracef(LOG_LEVEL_INFO, "%s", text.c_str());
    log.simple_tracef(LOG_LEVEL_INFO, "%s", "short again");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(behind_stamp(lines[0].substr(0, 37)), " < > x");
    EXPECT_EQ(lines[0].size(), 31 + 5 + 65535u);
    EXPECT_EQ(lines[1], text.substr(0, 65535) + "\n");
    EXPECT_EQ(lines[2], "short again\n");
}

TEST_F(LogTest, passes_an_unformatted_message_of_any_length_on) {
    const std::string path = dir.file("log.txt");
    log.set_filename(path.c_str());
    const std::string text(200000, 'y');
    log.simple_trace(LOG_LEVEL_INFO, text.c_str());
    EXPECT_EQ(lines, std::vector<std::string>{text + "\n"});
    EXPECT_EQ(content_of(path), text + "\n");
}

TEST_F(LogTest, a_callback_may_trace_where_the_log_goes_without_its_lock) {
    struct Nested {
        Log log;
        std::vector<std::string> lines;
    } nested;
    const std::string path = dir.file("log.txt");
    nested.log.set_filename(path.c_str());
    nested.log.enable();
    nested.log.use_thread_lock(false);
    nested.log.set_trace_callback(
        [](const char* line, void* user_data) {
            auto* const self = static_cast<Nested*>(user_data);
            self->lines.emplace_back(line);
            if (self->lines.size() == 1)
                self->log.simple_trace(LOG_LEVEL_INFO, "inner");
        },
        &nested);
    nested.log.simple_trace(LOG_LEVEL_INFO, "outer");
    EXPECT_EQ(nested.lines, (std::vector<std::string>{"outer\n", "inner\n"}));
    EXPECT_EQ(content_of(path), "inner\nouter\n");
}

TEST_F(LogTest, threads_may_write_its_first_lines_at_once) {
    constexpr int threads = 4;
    constexpr int lines_each = 20;
    for (int round = 0; round < 20; ++round) {
        const std::string path = dir.file("log" + std::to_string(round) + ".txt");
        Log shared;
        shared.set_filename(path.c_str());
        shared.enable();
        std::barrier start(threads);
        std::vector<std::thread> writers;
        for (int i = 0; i < threads; ++i)
            writers.emplace_back([&shared, &start, i] {
                start.arrive_and_wait();
                for (int line = 0; line < lines_each; ++line)
                    shared.tracef(LOG_LEVEL_INFO, "thread %d line %d", i, line);
            });
        for (std::thread& writer : writers)
            writer.join();

        std::istringstream file(content_of(path));
        std::set<std::string> messages;
        int number = 0;
        for (std::string line; std::getline(file, line);) {
            ASSERT_EQ(number_of(line), ++number);
            messages.insert(behind_stamp(line));
        }
        ASSERT_EQ(number, threads * lines_each);
        ASSERT_EQ(messages.size(), static_cast<std::size_t>(threads * lines_each));
    }
}

} // namespace
} // namespace orvex_test
