#include "messages.h"

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

constexpr char stamp[] = "2026:11:21@15:08:18(0000000015)";

std::string line_with(const char* marker) {
    return std::string(stamp) + marker + "text <*> more";
}

TEST(Messages, show_errors_and_warnings_of_the_log_without_their_stamps) {
    set_program_name("orvex-render");
    EXPECT_EQ(shown_log_line(line_with(" <*> "), Wordiness::normal),
              "orvex-render: error: text <*> more");
    EXPECT_EQ(shown_log_line(std::string(stamp) + " <!> text", Wordiness::normal),
              "orvex-render: warning: text");
    EXPECT_EQ(shown_log_line(std::string(stamp) + " < > text", Wordiness::normal), "");
    EXPECT_EQ(shown_log_line(std::string(stamp) + " <o> text", Wordiness::normal), "");
}

TEST(Messages, show_the_whole_log_or_none_of_it) {
    for (const char* marker : {" <*> ", " <!> ", " < > ", " <o> "}) {
        EXPECT_EQ(shown_log_line(line_with(marker), Wordiness::verbose), line_with(marker));
        EXPECT_EQ(shown_log_line(line_with(marker), Wordiness::quiet), "");
    }
}

} // namespace

} // namespace orvex_test
