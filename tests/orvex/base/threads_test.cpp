#include <cerrno>
#include <cstdlib>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/base/global_id.h"
#include "orvex/base/thread.h"
#include "orvex/base/thread_lock.h"
#include "orvex/base/timer.h"
#include "system_calls.h"

using orvex_test::system_calls;

namespace orvex_test {

using namespace orvex;
namespace {

TEST(Thread, names_the_thread_that_makes_it) {
    const Thread here;
    EXPECT_TRUE(here == Thread());
    EXPECT_FALSE(here != Thread());

    bool same = true;
    std::thread([&] { same = here == Thread(); }).join();
    EXPECT_FALSE(same);
}

TEST(Thread, update_names_the_calling_thread) {
    const Thread here;
    Thread moving;
    bool equal_over_there = false;
    std::thread([&] {
        moving.update();
        equal_over_there = moving == Thread();
    }).join();
    EXPECT_TRUE(equal_over_there);
    EXPECT_TRUE(moving != here);

    moving.update();
    EXPECT_TRUE(moving == here);
}

TEST(ThreadLock, takes_no_mutex_before_its_first_use) {
    system_calls.mutexes_made = 0;
    system_calls.mutexes_destroyed = 0;
    { ThreadLock unused; }
    EXPECT_EQ(system_calls.mutexes_made, 0);
    EXPECT_EQ(system_calls.mutexes_destroyed, 0);
}

TEST(ThreadLock, makes_and_destroys_one_mutex_however_often_it_is_used) {
    system_calls.mutexes_made = 0;
    system_calls.mutexes_destroyed = 0;
    {
        ThreadLock lock;
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(lock.acquire(), 0);
            EXPECT_EQ(lock.release(), 0);
        }
    }
    EXPECT_EQ(system_calls.mutexes_made, 1);
    EXPECT_EQ(system_calls.mutexes_destroyed, 1);
}

TEST(ThreadLock, cannot_be_released_before_it_was_ever_acquired) {
    ThreadLock lock;
    EXPECT_EQ(lock.release(), EPERM);
}

TEST(ThreadLock, lets_one_thread_at_a_time_through_from_its_very_first_use) {
    for (int round = 0; round < 50; ++round) {
        ThreadLock lock;
        int counter = 0;
        const auto count = [&] {
            for (int i = 0; i < 100; ++i) {
                lock.acquire();
                ++counter;
                lock.release();
            }
        };
        std::thread first(count);
        std::thread second(count);
        first.join();
        second.join();
        ASSERT_EQ(counter, 200);
    }
}

TEST(GlobalIdDeathTest, the_first_id_of_a_process_is_2) {
    // Only a process of its own has given out no id yet.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(GenId() == 2 && GenId() == 3 ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(GlobalId, counts_on_by_one_with_and_without_the_lock) {
    GlobalId* const ids = GlobalId::get();
    EXPECT_EQ(GlobalId::get(), ids);
    const unsigned first = ids->id();
    EXPECT_GE(first, 2u);
    EXPECT_EQ(ids->id_fast(), first + 1);
    EXPECT_EQ(ids->id(), first + 2);
    EXPECT_EQ(GenId(), static_cast<int>(first + 3));
}

TEST(GlobalId, never_gives_two_threads_the_same_id) {
    std::vector<int> ids[4];
    std::vector<std::thread> threads;
    for (auto& own : ids)
        threads.emplace_back([&own] {
            for (int i = 0; i < 1000; ++i)
                own.push_back(GenId());
        });
    for (std::thread& thread : threads)
        thread.join();

    std::set<int> all;
    for (const auto& own : ids)
        all.insert(own.begin(), own.end());
    EXPECT_EQ(all.size(), 4000u);
}

TEST(Process, tells_its_bitness) {
    EXPECT_EQ(Is64BitApp(), sizeof(void*) == 8);
}

TEST(ThreadSleep, asks_the_system_for_the_time_in_its_unit) {
    system_calls.fake = true;
    ThreadSleep(25);
    EXPECT_EQ(system_calls.microseconds_slept, 25000u);
    ThreadSleep_micro(7);
    EXPECT_EQ(system_calls.microseconds_slept, 7u);
    ThreadSleep_nano(1500000000ul);
    EXPECT_EQ(system_calls.nanoseconds_slept.tv_sec, 0);
    EXPECT_EQ(system_calls.nanoseconds_slept.tv_nsec, 1500000000);
    system_calls.fake = false;
}

TEST(ThreadSleep, wraps_around_at_32_bits_of_microseconds) {
    system_calls.fake = true;
    ThreadSleep(4294968); // 4,294,968,000 microseconds, 704 more than fit
    EXPECT_EQ(system_calls.microseconds_slept, 704u);
    system_calls.fake = false;
}

class TimerTest : public testing::Test {
protected:
    TimerTest() {
        system_calls.fake = true;
        system_calls.wall = {1000, 900000};
        system_calls.ticks = 5000;
    }
    ~TimerTest() override { system_calls.fake = false; }
};

TEST_F(TimerTest, starts_at_zero_and_grows_without_reset) {
    Timer timer;
    EXPECT_EQ(timer.getMicroseconds(), 0u);
    EXPECT_EQ(timer.getMilliseconds(), 0u);
    EXPECT_EQ(timer.getMicrosecondsCPU(), 0u);
    EXPECT_EQ(timer.getMillisecondsCPU(), 0u);

    system_calls.wall = {1002, 100499};
    system_calls.ticks = 5000 + 2999;
    EXPECT_EQ(timer.getMicroseconds(), 1200499u);
    EXPECT_EQ(timer.getMilliseconds(), 1200u);
    EXPECT_EQ(timer.getMicrosecondsCPU(), 2999u);
    EXPECT_EQ(timer.getMillisecondsCPU(), 2u);
    EXPECT_EQ(timer.getMicroseconds(), 1200499u) << "a reading resets nothing";
}

TEST_F(TimerTest, reset_counts_anew) {
    Timer timer;
    system_calls.wall = {2000, 0};
    system_calls.ticks = 9000;
    timer.reset();
    EXPECT_EQ(timer.getMicroseconds(), 0u);
    EXPECT_EQ(timer.getMicrosecondsCPU(), 0u);
}

TEST_F(TimerTest, processor_time_goes_through_a_float) {
    Timer timer;
    system_calls.ticks = 5000 + (1 << 24) + 1;
    EXPECT_EQ(timer.getMicrosecondsCPU(), 1u << 24);
    system_calls.ticks = 5000 + 33554435;
    EXPECT_EQ(timer.getMicrosecondsCPU(), 33554436u);
    EXPECT_EQ(timer.getMillisecondsCPU(), 33554u);
}

TEST_F(TimerTest, gives_0_when_the_clock_was_set_back) {
    Timer timer;
    system_calls.wall = {999, 0};
    EXPECT_EQ(timer.getMilliseconds(), 0u);
    EXPECT_EQ(timer.getMicroseconds(), 0u);
}

} // namespace
} // namespace orvex_test
