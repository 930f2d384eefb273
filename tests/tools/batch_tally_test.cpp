#include "batch/tally.h"

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

using batch::Counts;
using batch::Ending;
using batch::Fate;

Counts counts_of(const std::vector<Fate>& fates, std::size_t refused_lines = 0) {
    Counts counts;
    for (const Fate fate : fates)
        ++counts.by_fate[static_cast<std::size_t>(fate)];
    counts.refused_lines = refused_lines;
    return counts;
}

TEST(BatchExitCode, is_that_of_the_first_row_that_fits) {
    const Ending fine;
    const Ending failed{15, "can't write the results", "line 3: no model given"};
    const Ending stopped{15, "", "line 3: no model given"};
    const Ending refused{0, "", "line 3: no model given"};
    const auto all = counts_of({Fate::ok, Fate::crashed, Fate::io}, 1);
    EXPECT_EQ(exit_code_of(fine, counts_of({Fate::ok})), 0);
    EXPECT_EQ(exit_code_of(fine, counts_of({})), 0);
    for (const Fate fate : {Fate::refused, Fate::over_limit, Fate::crashed}) {
        EXPECT_EQ(exit_code_of(fine, counts_of({Fate::ok, fate})), 3);
        EXPECT_EQ(exit_code_of(fine, counts_of({Fate::ok, fate}, 1)), 2);
        EXPECT_EQ(exit_code_of(refused, counts_of({Fate::ok, fate})), 2);
        for (const Fate other : {Fate::driver, Fate::io})
            EXPECT_EQ(exit_code_of(refused, counts_of({fate, other}, 1)), 4);
    }
    EXPECT_EQ(exit_code_of(stopped, all), 128 + 15);
    EXPECT_EQ(exit_code_of(failed, all), 1);
}

TEST(BatchExitCode, knows_of_failures_of_an_earlier_run) {
    Counts counts = counts_of({Fate::ok});
    counts.kept = {2, 0};
    EXPECT_EQ(exit_code_of({}, counts), 0);
    counts.kept = {2, 1};
    EXPECT_EQ(exit_code_of({}, counts), 3);
}

TEST(BatchSummary, tells_what_there_was) {
    EXPECT_EQ(summary_of(counts_of({}), 0.0), "0 models in 0:00, 0.0 a second");
    EXPECT_EQ(summary_of(counts_of({Fate::ok}), 2.0), "1 model in 0:02, 0.5 a second: 1 ok");
    Counts counts = counts_of({Fate::io, Fate::ok, Fate::over_limit, Fate::ok}, 2);
    counts.kept = {7, 1};
    EXPECT_EQ(summary_of(counts, 1.0),
              "4 models in 0:01, 4.0 a second: 2 ok, 1 over-limit, 1 io, 7 kept of an earlier "
              "run, 2 lines that are no entries");
}

TEST(BatchProgress, tells_how_far_it_is) {
    EXPECT_EQ(batch_progress_line(counts_of({Fate::ok, Fate::ok}), std::nullopt, 1.0, 60),
              "2 done  2.0/s");
    Counts counts = counts_of({Fate::ok, Fate::io});
    EXPECT_EQ(batch_progress_line(counts, 10, 1.0, 60),
              "[####..................]   2/10  0:04 left  2.0/s  1 failed");
    counts.kept = {5, 0};
    EXPECT_EQ(batch_progress_line(counts, 10, 1.0, 60),
              "[#########...............]  2/5  0:02 left  2.0/s  1 failed");
}

} // namespace

} // namespace orvex_test
