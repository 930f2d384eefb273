#include <string>

#include <gtest/gtest.h>

#include "geometry/curve.h"
#include "geometry/mesh_box.h"
#include "geometry/mesh_data_packed.h"
#include "geometry/mesh_plane.h"
#include "geometry/owned_mesh.h"
#include "support/heap.h"
#include "support/log_capture.h"

using namespace orvex;
using namespace orvex_test;

namespace {

template<class Store>
bool allocate_without_memory(Store& store) {
    const RefuseArrays refused({.thrown = Thrown::number});
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

/// The messages of a curve, and of a curve of a graph, whose values can't be made.
template<class Alloc>
std::string message_of(Thrown thrown, Alloc alloc) {
    const test::LogCapture log;
    {
        const RefuseArrays refused({.thrown = thrown});
        EXPECT_FALSE(alloc());
    }
    EXPECT_EQ(log.messages().size(), 1u);
    return log.messages().empty() ? "" : log.messages().front();
}

TEST(AllocationFailure, of_a_curve_is_told_by_its_type) {
    Curve* const curve = new Curve;
    const auto alloc = [curve] { return curve->alloc(3); };
    EXPECT_EQ(message_of(Thrown::runtime_error, alloc),
              "<*> std::exception exception caught - what: refused");
    EXPECT_EQ(message_of(Thrown::number, alloc), "<*> unknown exception caught");
    EXPECT_TRUE(curve->alloc(3));
    curve->release(nullptr, nullptr);
}

TEST(AllocationFailure, of_a_graphs_curve_leaves_a_record_that_can_be_ended) {
    _Curve2D record;
    EXPECT_EQ(message_of(Thrown::number, [&record] { return record.init(3); }),
              "<*> unknown exception caught");
    EXPECT_TRUE(record.cleanup(nullptr));
    EXPECT_EQ(record.curve, nullptr);
}

/// Builds a shape with memory for that many arrays, none for the next one, and some again.
template<class Shape>
bool build_with(Shape& shape, unsigned long num_arrays) {
    const RefuseArrays refused({.granted = num_arrays, .refused = 1});
    return shape.build(nullptr);
}

// Six attributes, the particles, then faces, their normals and materials, then the quad edges.
TEST(AllocationFailure, of_any_array_fails_the_build_of_a_shape) {
    constexpr unsigned long num_arrays = 11;
    for (unsigned long i = 0; i < num_arrays; ++i) {
        const Owned<MeshPlane> plane(new MeshPlane);
        EXPECT_FALSE(build_with(*plane, i)) << i;
        EXPECT_FALSE(plane->get_build_state());
        EXPECT_TRUE(plane->build(nullptr)) << "the build state is spent: nothing is left to do";
        plane->update_build_state(true);
        EXPECT_TRUE(plane->build(nullptr));
        EXPECT_EQ(plane->get_num_faces(nullptr), 32u);
    }
    const Owned<MeshPlane> plane(new MeshPlane);
    EXPECT_TRUE(build_with(*plane, num_arrays));
}

TEST(AllocationFailure, of_any_array_fails_the_build_of_a_shape_without_quad_edges) {
    constexpr unsigned long num_arrays = 10;
    for (unsigned long i = 0; i < num_arrays; ++i)
        EXPECT_FALSE(build_with(*Owned<MeshBox>(new MeshBox), i)) << i;
    EXPECT_TRUE(build_with(*Owned<MeshBox>(new MeshBox), num_arrays));
}

} // namespace
