#include "orvex_formats/private/workers.h"

#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/no_threads.h"

namespace orvex_test {

namespace {

using namespace orvex::formats;

TEST(Workers, do_each_piece_once) {
    std::vector<std::atomic<int>> done(1000);
    share_out(done.size(), [&](std::size_t piece) { ++done[piece]; });
    for (const std::atomic<int>& times : done)
        EXPECT_EQ(times, 1);
    share_out(0, [](std::size_t) { ADD_FAILURE() << "there is nothing to do"; });
}

TEST(Workers, that_throw_are_waited_for_and_thrown_from_the_caller) {
    for (const unsigned int thrower : {0u, 3u}) {
        std::atomic<unsigned int> num_done = 0;
        try {
            work_together(4, [&](unsigned int worker) {
                if (worker == thrower)
                    throw std::runtime_error("worker " + std::to_string(worker));
                ++num_done;
            });
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(error.what(), "worker " + std::to_string(thrower));
        }
        EXPECT_EQ(num_done, 3u);
    }
    std::atomic<unsigned int> num_thrown = 0;
    EXPECT_THROW(work_together(4,
                               [&](unsigned int) {
                                   ++num_thrown;
                                   throw std::runtime_error("all of them");
                               }),
                 std::runtime_error);
    EXPECT_EQ(num_thrown, 4u);
}

TEST(Workers, that_cant_be_started_leave_their_work_to_the_caller) {
    const NoThreads no_threads;
    std::vector<unsigned int> workers;
    work_together(4, [&](unsigned int worker) { workers.push_back(worker); });
    EXPECT_EQ(workers, std::vector<unsigned int>{0});
    std::vector<int> done(100, 0);
    share_out(done.size(), [&](std::size_t piece) { ++done[piece]; });
    EXPECT_EQ(done, std::vector<int>(100, 1));
}

} // namespace

} // namespace orvex_test
