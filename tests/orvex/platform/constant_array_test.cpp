#include "orvex/platform/private/constant_array.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvex_test {

using namespace orvex;
namespace {

struct Four {
    float x = 0.0f, y = 0.0f, z = 0.0f, w = 1.0f;
    bool operator==(const Four&) const = default;
};

constexpr std::size_t large = 300'000; ///< elements, of 4.6 MiB

/// Of 34 MiB, for which the heap always has memory that nobody had before.
constexpr std::size_t surely_fresh = 2'200'000;

/// An array that ends as the engine ends one.
struct EndArray {
    std::size_t count;
    void operator()(Four* elements) const { delete_spread(elements, count); }
};
using Array = std::unique_ptr<Four[], EndArray>;

Array make_array(std::size_t count, const Four& value = Four()) {
    return Array(new_constant_array(count, value), {count});
}

bool holds_only(const Four* elements, std::size_t count, const Four& value) {
    return std::all_of(elements, elements + count,
                       [&](const Four& element) { return element == value; });
}

TEST(ConstantArray, holds_its_value_in_every_element_whatever_its_size) {
    // Around the size from which arrays share pages, and around those of tiles.
    for (const std::size_t count :
         {std::size_t{0}, std::size_t{1}, std::size_t{32767}, std::size_t{32768},
          std::size_t{32769}, std::size_t{65536} + 3, large, std::size_t{2'500'001}}) {
        const Four value{1.5f, -0.0f, 3.0f, static_cast<float>(count)};
        const Array array = make_array(count, value);
        ASSERT_NE(array, nullptr);
        EXPECT_TRUE(holds_only(array.get(), count, value)) << count;
    }
}

TEST(ConstantArray, keeps_what_is_written_and_nothing_else_changes) {
    const Array one = make_array(large);
    const Array other = make_array(large);
    for (const std::size_t place : {std::size_t{0}, std::size_t{1000}, large / 2, large - 1})
        one[place] = {7.0f, 7.0f, 7.0f, 7.0f};
    std::size_t num_written = 0;
    for (std::size_t i = 0; i < large; ++i)
        num_written += one[i] == Four{7.0f, 7.0f, 7.0f, 7.0f};
    EXPECT_EQ(num_written, 4u);
    EXPECT_TRUE(holds_only(other.get(), large, Four()));
}

TEST(ConstantArray, may_be_ended_by_a_bare_delete) {
    for (int i = 0; i < 3; ++i) {
        Four* const array = new_constant_array(large, Four());
        array[large / 2].x = 1.0f;
        delete[] array;
        // The memory after it is memory like any other, and ends as it should.
        const Array next = make_array(large, {1.0f, 2.0f, 3.0f, 4.0f});
        EXPECT_TRUE(holds_only(next.get(), large, {1.0f, 2.0f, 3.0f, 4.0f}));
    }
}

TEST(ConstantArray, leaves_clean_memory_to_whoever_has_it_next) {
    constexpr std::size_t bytes = large * sizeof(Four);
    make_array(large, {1.0f, 1.0f, 1.0f, 1.0f}).reset();
    const std::unique_ptr<unsigned char, decltype(&std::free)> block(
        static_cast<unsigned char*>(std::calloc(bytes, 1)), std::free);
    EXPECT_TRUE(std::all_of(block.get(), block.get() + bytes, [](unsigned char c) { return !c; }));
}

TEST(ConstantArray, takes_a_second_value_and_then_says_that_the_caller_has_to) {
    const Four red{1.0f, 0.0f, 0.0f, 1.0f};
    const Array array = make_array(surely_fresh);
    array[5].x = 9.0f;
    ASSERT_TRUE(spread_again(array.get(), surely_fresh * sizeof(Four), pattern_of(red)));
    EXPECT_TRUE(holds_only(array.get(), surely_fresh, red));
    EXPECT_FALSE(spread_again(array.get(), surely_fresh * sizeof(Four), pattern_of(Four())));
    std::fill_n(array.get(), surely_fresh, Four());
    EXPECT_TRUE(holds_only(array.get(), surely_fresh, Four()));
}

TEST(ConstantArray, is_no_array_of_another_size_or_place) {
    const Array array = make_array(surely_fresh);
    EXPECT_FALSE(spread_again(array.get(), (surely_fresh - 1) * sizeof(Four), pattern_of(Four())));
    EXPECT_FALSE(spread_again(array.get() + 1, surely_fresh * sizeof(Four), pattern_of(Four())));
    std::vector<Four> others(large, {2.0f, 2.0f, 2.0f, 2.0f});
    EXPECT_FALSE(spread_again(others.data(), large * sizeof(Four), pattern_of(Four())));
    take_for_filling(others.data(), large * sizeof(Four));
    end_spread(others.data(), large * sizeof(Four));
    EXPECT_TRUE(holds_only(others.data(), large, {2.0f, 2.0f, 2.0f, 2.0f}));
    EXPECT_TRUE(holds_only(array.get(), surely_fresh, Four()));
}

TEST(ConstantArray, can_be_taken_by_somebody_who_writes_all_of_it) {
    const Array array = make_array(surely_fresh);
    take_for_filling(array.get(), surely_fresh * sizeof(Four));
    for (std::size_t i = 0; i < surely_fresh; ++i)
        array[i] = {static_cast<float>(i), 1.0f, 2.0f, 3.0f};
    take_for_filling(array.get(), surely_fresh * sizeof(Four)); // is its own already
    bool is_whole = true;
    for (std::size_t i = 0; i < surely_fresh; ++i)
        is_whole &= array[i] == Four{static_cast<float>(i), 1.0f, 2.0f, 3.0f};
    EXPECT_TRUE(is_whole);
}

TEST(ConstantArray, of_more_elements_than_memory_has_bytes_throws) {
    constexpr std::size_t most = std::numeric_limits<std::size_t>::max();
    EXPECT_THROW(new_constant_array(most, Four()), std::bad_array_new_length);
}

TEST(ConstantArray, can_be_made_and_ended_by_many_threads) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([i] {
            const Four value{static_cast<float>(i), 0.0f, 0.0f, 0.0f};
            for (int turn = 0; turn < 10; ++turn) {
                const Array array = make_array(40'000, value);
                EXPECT_TRUE(holds_only(array.get(), 40'000, value));
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

/// Runs `work` in a process of its own. @return whether it said yes
template<class Work>
bool in_child(Work work) {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work() ? 0 : 1);
    int status = 1;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(ConstantArray, is_filled_where_no_descriptor_is_left) {
    EXPECT_TRUE(in_child([] {
        const rlimit none{0, 0};
        if (::setrlimit(RLIMIT_NOFILE, &none) != 0)
            return false;
        const Array array = make_array(large);
        array[large / 2].x = 1.0f;
        array[large / 2].x = 0.0f;
        return holds_only(array.get(), large, Four());
    }));
}

TEST(ConstantArray, belongs_to_each_process_after_a_fork) {
    const Array array = make_array(large);
    EXPECT_TRUE(in_child([&] {
        array[3].x = 5.0f;
        return array[3].x == 5.0f && holds_only(array.get() + 4, large - 4, Four());
    }));
    EXPECT_TRUE(holds_only(array.get(), large, Four()));
}

TEST(ConstantArray, leaves_no_descriptor_behind) {
    const int before = ::open("/dev/null", O_RDONLY);
    ASSERT_GE(before, 0);
    ::close(before);
    const Array array = make_array(large);
    const int after = ::open("/dev/null", O_RDONLY);
    ::close(after);
    EXPECT_EQ(after, before);
}

/// Bytes of this process that memory holds.
std::size_t resident_bytes() {
    std::FILE* const file = std::fopen("/proc/self/statm", "r");
    unsigned long all = 0, resident = 0;
    const bool is_read = file && std::fscanf(file, "%lu %lu", &all, &resident) == 2;
    if (file)
        std::fclose(file);
    return is_read ? resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) : 0;
}

TEST(ConstantArray, has_no_memory_before_somebody_writes) {
    constexpr std::size_t count = std::size_t{4} << 20; // 64 MiB
    constexpr std::size_t bytes = count * sizeof(Four);
    const std::size_t before = resident_bytes();
    ASSERT_GT(before, 0u);
    const Array array = make_array(count);
    const std::size_t made = resident_bytes();
    EXPECT_LT(made, before + bytes / 4);
    for (std::size_t i = 0; i < count / 2; i += 64)
        array[i].x = 1.0f;
    EXPECT_GT(resident_bytes(), made + bytes / 4);
}

TEST(ConstantArray, has_no_memory_where_the_heap_grows_for_it) {
    // What was freed once lets the heap grow for such blocks, in whose last page it keeps notes.
    constexpr std::size_t count = 28u << 16; // 28 MiB
    ::operator delete[](::operator new[](count * sizeof(Four) + 4096));
    const std::size_t before = resident_bytes();
    std::vector<Array> arrays;
    for (int i = 0; i < 6; ++i)
        arrays.push_back(make_array(count));
    EXPECT_LT(resident_bytes(), before + 3 * count * sizeof(Four));
}

TEST(ConstantArray, that_the_system_has_no_views_for_is_filled) {
    // More of them than the engine takes views for.
    std::vector<Array> arrays;
    constexpr std::size_t count = 40'000;
    for (std::size_t i = 0; i < 800; ++i)
        arrays.push_back(make_array(count, {static_cast<float>(i), 0.0f, 0.0f, 1.0f}));
    for (std::size_t i = 0; i < arrays.size(); i += 13)
        EXPECT_TRUE(holds_only(arrays[i].get(), count, {static_cast<float>(i), 0.0f, 0.0f, 1.0f}));
}

} // namespace

} // namespace orvex_test
