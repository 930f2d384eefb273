#include "heap.h"

#include <array>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

constexpr std::size_t block_size = 192;
constexpr std::align_val_t wide{64};

/// Every `delete` that takes the blocks of one form of `new`.
using Deletes = std::array<void (*)(void* block), 3>;

constexpr Deletes deletes = {
    [](void* block) { ::operator delete(block); },
    [](void* block) { ::operator delete(block, block_size); },
    [](void* block) { ::operator delete(block, std::nothrow); },
};

constexpr Deletes wide_deletes = {
    [](void* block) { ::operator delete(block, wide); },
    [](void* block) { ::operator delete(block, block_size, wide); },
    [](void* block) { ::operator delete(block, wide, std::nothrow); },
};

constexpr Deletes array_deletes = {
    [](void* block) { ::operator delete[](block); },
    [](void* block) { ::operator delete[](block, block_size); },
    [](void* block) { ::operator delete[](block, std::nothrow); },
};

constexpr Deletes wide_array_deletes = {
    [](void* block) { ::operator delete[](block, wide); },
    [](void* block) { ::operator delete[](block, block_size, wide); },
    [](void* block) { ::operator delete[](block, wide, std::nothrow); },
};

struct Form {
    const char* name;
    bool is_array;
    bool throws;
    std::size_t alignment;
    void* (*allocate)(std::size_t size);
    const Deletes& deletes;
};

const Form single = {
    "single", false, true, 16, [](std::size_t size) { return ::operator new(size); }, deletes};

const Form array = {
    "array",      true, true, 16, [](std::size_t size) { return ::operator new[](size); },
    array_deletes};

const Form array_or_null = {"array or null",
                            true,
                            false,
                            16,
                            [](std::size_t size) { return ::operator new[](size, std::nothrow); },
                            array_deletes};

const Form forms[] = {
    single,
    array,
    array_or_null,
    {"single or null", false, false, 16,
     [](std::size_t size) { return ::operator new(size, std::nothrow); }, deletes},
    {"wide single", false, true, 64, [](std::size_t size) { return ::operator new(size, wide); },
     wide_deletes},
    {"wide single or null", false, false, 64,
     [](std::size_t size) { return ::operator new(size, wide, std::nothrow); }, wide_deletes},
    {"wide array", true, true, 64, [](std::size_t size) { return ::operator new[](size, wide); },
     wide_array_deletes},
    {"wide array or null", true, false, 64,
     [](std::size_t size) { return ::operator new[](size, wide, std::nothrow); },
     wide_array_deletes},
};

/// Whether a form gives a block, which goes back at once.
bool gives(const Form& form, std::size_t size) {
    void* const block = form.allocate(size);
    form.deletes[0](block);
    return block != nullptr;
}

bool throws_bad_alloc(const Form& form, std::size_t size) {
    try {
        gives(form, size);
    } catch (const std::bad_alloc&) {
        return true;
    }
    return false;
}

TEST(TestHeap, counts_each_form_of_new_and_takes_its_blocks_back_by_each_form_of_delete) {
    for (const Form& form : forms)
        for (const auto give_back : form.deletes) {
            CountAllocations allocations;
            void* const block = form.allocate(block_size);
            EXPECT_EQ(allocations.count(), 1u) << form.name;
            EXPECT_EQ(allocations.last_block(), block) << form.name;
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % form.alignment, 0u) << form.name;
            give_back(block);
            EXPECT_EQ(allocations.count(), 1u) << form.name;
        }
}

TEST(TestHeap, knows_how_many_blocks_live) {
    for (const Form& form : forms)
        for (const auto give_back : form.deletes) {
            const long before = living_blocks();
            void* const block = form.allocate(block_size);
            EXPECT_EQ(living_blocks(), before + 1) << form.name;
            give_back(block);
            EXPECT_EQ(living_blocks(), before) << form.name;
        }
}

TEST(TestHeap, gives_a_block_of_no_bytes) {
    for (const Form& form : forms) {
        const CountAllocations allocations;
        EXPECT_TRUE(gives(form, 0)) << form.name;
        EXPECT_EQ(allocations.count(), 1u) << form.name;
    }
}

TEST(TestHeap, fails_as_each_form_does_when_there_is_no_memory) {
    for (const Form& form : forms) {
        const CountAllocations allocations;
        if (form.throws)
            EXPECT_TRUE(throws_bad_alloc(form, PTRDIFF_MAX)) << form.name;
        else
            EXPECT_FALSE(gives(form, PTRDIFF_MAX)) << form.name;
        EXPECT_EQ(allocations.count(), 0u) << form.name;
    }
}

TEST(TestHeap, counts_blocks_of_a_size_or_more) {
    const CountAllocations all;
    {
        const CountAllocations large(block_size);
        EXPECT_EQ(large.last_block(), nullptr);
        gives(single, block_size - 1);
        EXPECT_EQ(large.count(), 0u);
        gives(single, block_size);
        EXPECT_EQ(large.count(), 1u);
    }
    EXPECT_EQ(all.count(), 2u) << "it counts beside the inner one";
    gives(single, block_size);
    EXPECT_EQ(all.count(), 3u) << "and after it";
}

TEST(TestHeap, leaves_other_threads_alone) {
    const CountAllocations allocations;
    bool was_given = false;
    std::thread other;
    unsigned long before = 0;
    {
        const RefuseArrays refused({});
        other = std::thread([&] { was_given = gives(array, 1); });
        before = allocations.count(); // a thread's start allocates
        other.join();
    }
    EXPECT_EQ(allocations.count(), before);
    EXPECT_TRUE(was_given);
}

TEST(TestHeap, refuses_arrays_alone) {
    for (const Form& form : forms) {
        const RefuseArrays refused({});
        const CountAllocations allocations;
        if (!form.is_array)
            EXPECT_TRUE(gives(form, block_size)) << form.name;
        else if (form.throws)
            EXPECT_TRUE(throws_bad_alloc(form, block_size)) << form.name;
        else
            EXPECT_FALSE(gives(form, block_size)) << form.name;
        EXPECT_EQ(allocations.count(), form.is_array ? 0u : 1u) << form.name;
    }
    for (const Form& form : forms)
        EXPECT_TRUE(gives(form, block_size)) << form.name << " after the refusal";
}

TEST(TestHeap, refuses_arrays_after_some_and_until_some) {
    {
        const RefuseArrays refused({.granted = 2, .refused = 1});
        for (const bool given : {true, true, false, true, true})
            EXPECT_EQ(gives(array_or_null, 1), given);
    }
    const RefuseArrays refused({.granted = 1});
    for (const bool given : {true, false, false, false})
        EXPECT_EQ(gives(array_or_null, 1), given);
}

TEST(TestHeap, passes_over_arrays_below_the_size_that_it_refuses) {
    const RefuseArrays refused({.granted = 1, .min_size = block_size});
    EXPECT_TRUE(gives(array_or_null, block_size - 1));
    EXPECT_TRUE(gives(array_or_null, block_size));
    EXPECT_TRUE(gives(array_or_null, block_size - 1));
    EXPECT_FALSE(gives(array_or_null, block_size));
}

TEST(TestHeap, throws_what_it_is_told) {
    {
        const RefuseArrays refused({.thrown = Thrown::number});
        EXPECT_THROW(gives(array, 1), int);
    }
    const RefuseArrays refused({.thrown = Thrown::runtime_error});
    try {
        gives(array, 1);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "refused");
    }
}

TEST(TestHeap, knows_the_most_that_was_held_at_once) {
    constexpr std::size_t size = 1u << 20;
    const std::vector<char> before(size);
    const HeapPeak peak;
    EXPECT_EQ(peak.bytes(), 0u);
    for (int i = 0; i < 3; ++i)
        const std::vector<char> one(size), other(size);
    EXPECT_GE(peak.bytes(), 2 * size);
    EXPECT_LT(peak.bytes(), 3 * size);
    std::thread([] { const std::vector<char> third(4 * size); }).join();
    EXPECT_GE(peak.bytes(), 4 * size);
    EXPECT_EQ(HeapPeak().bytes(), 0u);
}

} // namespace

} // namespace orvex_test
