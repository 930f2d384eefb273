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

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const int failed = RUN_ALL_TESTS();
    return failed == 0 && every_selected_test_ran(*testing::UnitTest::GetInstance()) ? 0 : 1;
}
