#include "orvex/math/aligned_new.h"

#include <cstdint>
#include <limits>

#include "exact.h"
#include "orvex/math/private/aligned_block.h"

namespace orvex_test {

using namespace orvex;

namespace {

std::uintptr_t address(const void* pointer) {
    return reinterpret_cast<std::uintptr_t>(pointer);
}

TEST(AlignedNew, gives_aligned_elements_inside_the_raw_block) {
    for (const int alignment : {1, 4, 16, 64, 4096}) {
        SCOPED_TRACE(alignment);
        unsigned char* raw = nullptr;
        vec4* elements = AlignedNew_vec4(33, alignment, &raw);
        ASSERT_NE(elements, nullptr);
        const auto mask = static_cast<std::uintptr_t>(alignment) - 1;
        EXPECT_EQ(address(elements), (address(raw) + mask) & ~mask);
        for (int i = 0; i < 33; ++i)
            expect_vec4(elements[i], 0.0f, 0.0f, 0.0f, 1.0f);
        AlignedDelete_vec4(&elements, 33, &raw);
        EXPECT_EQ(elements, nullptr);
        EXPECT_EQ(raw, nullptr);
    }
}

TEST(AlignedNew, gives_zeros_of_the_other_types) {
    unsigned char* raw = nullptr;
    unsigned int* numbers = AlignedNew_u32(5, 16, &raw);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(numbers[i], 0u);
    AlignedDelete_u32(&numbers, 5, &raw);
    EXPECT_EQ(numbers, nullptr);

    vec3* threes = AlignedNew_vec3(5, 16, &raw);
    for (int i = 0; i < 5; ++i)
        expect_vec3(threes[i], 0.0f, 0.0f, 0.0f);
    AlignedDelete_vec3(&threes, 5, &raw);
    EXPECT_EQ(threes, nullptr);

    vec2* twos = AlignedNew_vec2(5, 16, &raw);
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(twos[i].x == 0.0f && twos[i].y == 0.0f);
    AlignedDelete_vec2(&twos, 5, &raw);
    EXPECT_EQ(twos, nullptr);
    EXPECT_EQ(raw, nullptr);
}

TEST(AlignedNew, of_no_elements_is_still_a_block) {
    unsigned char* raw = nullptr;
    vec4* elements = AlignedNew_vec4(0, 1, &raw);
    EXPECT_NE(elements, nullptr);
    AlignedDelete_vec4(&elements, 0, &raw);
}

TEST(AlignedNew, odd_alignments_stay_inside_the_block) {
    for (const int alignment : {-16, 0, 3, 6, 24, 100}) {
        SCOPED_TRACE(alignment);
        unsigned char* raw = nullptr;
        unsigned int* elements = AlignedNew_u32(7, alignment, &raw);
        ASSERT_NE(elements, nullptr);
        EXPECT_GE(address(elements), address(raw));
        EXPECT_LE(address(elements), address(raw) + (alignment > 0 ? alignment - 1 : 0));
        elements[6] = 1;
        AlignedDelete_u32(&elements, 7, &raw);
    }
}

TEST(AlignedNew, of_more_than_there_is_gives_null) {
    constexpr unsigned long all = std::numeric_limits<unsigned long>::max();
    for (const unsigned long count : {all, all / 16, all / 16 - 100, all / 64}) {
        unsigned char byte = 0;
        unsigned char* raw = &byte;
        EXPECT_EQ(AlignedNew_vec4(count, 16, &raw), nullptr);
        EXPECT_EQ(raw, nullptr);
        EXPECT_EQ(AlignedNew_vec4(count, 16, nullptr), nullptr);
    }
    unsigned char byte = 0;
    unsigned char* raw = &byte;
    EXPECT_EQ(AlignedNew_u32(all / 4 + 1, 1, &raw), nullptr);
    EXPECT_EQ(raw, nullptr);
}

TEST(AlignedNew, blocks_of_any_element_size) {
    unsigned char* raw = nullptr;
    void* block = aligned_block_new(3, 96, 64, &raw);
    EXPECT_EQ(address(block) % 64, 0u);
    EXPECT_LE(address(block), address(raw) + 63);
    aligned_block_delete(&raw);
    EXPECT_EQ(raw, nullptr);
}

TEST(AlignedDelete, passes_over_null) {
    unsigned char* raw = nullptr;
    AlignedDelete_vec4(nullptr, 1, nullptr);
    AlignedDelete_vec4(nullptr, 1, &raw);
    vec4* elements = AlignedNew_vec4(1, 16, &raw);
    unsigned char* kept = raw;
    AlignedDelete_vec4(&elements, 1, nullptr);
    EXPECT_EQ(elements, nullptr);
    EXPECT_EQ(raw, kept);
    AlignedDelete_vec4(&elements, 1, &raw);
    EXPECT_EQ(raw, nullptr);
}

} // namespace

} // namespace orvex_test
