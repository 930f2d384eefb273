#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "geometry/mesh_data_packed.h"
#include "support/log_capture.h"

using namespace orvex;

namespace {

bool arrays_are_refused = false;

/// While one lives, array `new` throws something that is no `std::exception`.
struct RefuseArrays {
    RefuseArrays() { arrays_are_refused = true; }
    ~RefuseArrays() { arrays_are_refused = false; }
};

} // namespace

void* operator new[](std::size_t size) {
    if (arrays_are_refused)
        throw 42;
    if (void* block = std::malloc(size == 0 ? 1 : size))
        return block;
    throw std::bad_alloc();
}

void operator delete[](void* block) noexcept {
    std::free(block);
}

void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}

namespace {

template<class Store>
bool allocate_without_memory(Store& store) {
    const RefuseArrays refusal;
    return store.alloc_vertex_data(7);
}

TEST(AllocationFailure, of_no_standard_type_is_reported_by_the_full_format) {
    test::LogCapture log;
    MeshData store;
    EXPECT_FALSE(allocate_without_memory(store));
    EXPECT_TRUE(log.has("<*> Mesh data allocation failed - 7 vertices required - unknown error."));
    EXPECT_EQ(log.messages().size(), 1u);
}

TEST(AllocationFailure, of_no_standard_type_is_reported_by_a_packed_format) {
    test::LogCapture log;
    MeshData_64 store;
    EXPECT_FALSE(allocate_without_memory(store));
    EXPECT_TRUE(log.has("<o> MeshData_64::alloc_vertex_data() - exception: unknown"));
    EXPECT_EQ(log.messages().size(), 1u);
}

} // namespace
