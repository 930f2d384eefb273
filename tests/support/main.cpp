#include <csignal>
#include <cstdio>

#include <gtest/gtest.h>

namespace {

/// A skipped test proves nothing and looks green; here it is a failure.
bool every_selected_test_ran(const testing::UnitTest& run) {
    if (run.skipped_test_count() > 0)
        std::fprintf(stderr, "%d tests were skipped: a skipped test is a failure here\n",
                     run.skipped_test_count());
    if (run.test_to_run_count() == 0)
        std::fprintf(stderr, "no test was selected\n");
    return run.skipped_test_count() == 0 && run.test_to_run_count() > 0;
}

/// What a shell runs in the background ignores an interrupt, and so does all that it starts: a
/// program that a test ends by one would never end.
void heed_interrupts() {
    for (const int number : {SIGHUP, SIGINT, SIGQUIT})
        std::signal(number, SIG_DFL);
}

} // namespace

int main(int argc, char** argv) {
    heed_interrupts();
    testing::InitGoogleTest(&argc, argv);
    const int failed = RUN_ALL_TESTS();
    return failed == 0 && every_selected_test_ran(*testing::UnitTest::GetInstance()) ? 0 : 1;
}
