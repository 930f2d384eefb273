#include "orvex/platform/private/large_pages.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>

#include <gtest/gtest.h>

namespace orvex_test {

using namespace orvex;
namespace {

constexpr std::size_t large_page = std::size_t{2} << 20;

// Around each size at which memory is asked for in another way.
constexpr std::size_t SIZES[] = {0,
                                 1,
                                 4095,
                                 (128u << 10) - 1,
                                 128u << 10,
                                 (1u << 20) - 1,
                                 1u << 20,
                                 large_page - 1,
                                 large_page,
                                 large_page + 1,
                                 large_page + large_page / 2,
                                 2 * large_page - 1,
                                 2 * large_page,
                                 3 * large_page + 5};

bool holds_only(const std::byte* bytes, std::size_t count, std::byte value) {
    return std::all_of(bytes, bytes + count, [value](std::byte byte) { return byte == value; });
}

TEST(LargeBlock, has_all_its_bytes_to_itself) {
    for (const std::size_t size : SIZES) {
        const LargeBlock one = new_large_block(size);
        const LargeBlock other = new_large_block(size);
        ASSERT_NE(one.get(), nullptr) << size;
        std::fill_n(one.get(), size, std::byte{1});
        std::fill_n(other.get(), size, std::byte{2});
        EXPECT_TRUE(holds_only(one.get(), size, std::byte{1})) << size;
        EXPECT_TRUE(holds_only(other.get(), size, std::byte{2})) << size;
    }
}

TEST(LargeBlock, of_half_a_large_page_or_more_begins_with_one) {
    for (const std::size_t size : SIZES) {
        const LargeBlock block = new_large_block(size);
        if (size >= large_page / 2)
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.get()) % large_page, 0u) << size;
    }
}

TEST(LargeBlock, that_no_memory_holds_throws) {
    for (const std::size_t size :
         {std::numeric_limits<std::size_t>::max(), std::numeric_limits<std::size_t>::max() / 2 + 1})
        EXPECT_THROW(new_large_block(size), std::bad_alloc) << size;
}

TEST(LargeArray, has_default_elements_whatever_its_size) {
    struct Element {
        std::uint32_t value = 7;
    };
    for (const std::size_t size : SIZES) {
        const std::size_t count = size / sizeof(Element);
        const std::unique_ptr<Element[]> elements(new_large_array<Element>(count));
        EXPECT_TRUE(std::all_of(elements.get(), elements.get() + count, [](const Element& element) {
            return element.value == 7;
        })) << size;
    }
}

TEST(LargeArray, of_more_elements_than_memory_has_bytes_throws) {
    volatile std::size_t too_many = std::numeric_limits<std::size_t>::max() / 4;
    EXPECT_THROW(new_large_array<std::uint64_t>(too_many), std::bad_array_new_length);
}

} // namespace
} // namespace orvex_test
