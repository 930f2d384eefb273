#include "progress_bar.h"

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

TEST(ProgressLine, tells_what_is_done_and_what_is_left) {
    struct Row {
        int done, total;
        double seconds;
        int columns;
        const char* line;
    };
    for (const Row& row : {
             Row{0, 36, 0.0, 40, "[..............................]   0/36"},
             Row{12, 36, 20.5, 40, "[######.............]  12/36  0:41 left"},
             Row{36, 36, 61.2, 40, "[########################]  36/36  1:01"},
             Row{1, 2, 7199.0, 40, "[#########.........]  1/2  1:59:59 left"},
             Row{1, 1000, 1e9, 40, "[...........]     1/1000  99:59:59 left"},
             Row{1, 2, 1.0, 10, "[##..]  1/2  0:01 left"},
             Row{5, 4, 1.0, 24, "[##########]  4/4  0:01"},
             Row{-1, 4, 1.0, 24, "[................]  0/4"},
             Row{0, 0, 0.0, 24, "[################]  0/0"},
         })
        EXPECT_EQ(progress_line(row.done, row.total, row.seconds, row.columns), row.line);
}

TEST(ProgressLine, grows_to_forty_signs_and_leaves_the_last_column_free) {
    EXPECT_EQ(progress_line(0, 9, 0.0, 200), "[" + std::string(40, '.') + "]  0/9");
    for (int columns = 26; columns < 60; ++columns)
        EXPECT_LT(progress_line(5, 10, 5.0, columns).size(), static_cast<unsigned>(columns));
}

TEST(ProgressBar, draws_nothing_into_a_file) {
    const orvex_test::TempDir folder;
    const std::string path = folder.file("log");
    std::FILE* const file = std::fopen(path.c_str(), "w");
    ASSERT_NE(file, nullptr);
    {
        const ProgressBar bar(file, 2, true);
        bar.show(1);
    }
    std::fclose(file);
    EXPECT_EQ(orvex_test::content_of(path), "");
}

} // namespace

} // namespace orvex_test
