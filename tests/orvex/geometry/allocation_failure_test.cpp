#include <algorithm>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "orvex/assets/textures/texture.h"
#include "orvex/geometry/lines/curve.h"
#include "orvex/geometry/lines/polyline.h"
#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/geometry/shapes/mesh_box.h"
#include "orvex/geometry/shapes/mesh_cylinder.h"
#include "orvex/geometry/shapes/mesh_plane.h"
#include "orvex/geometry/shapes/mesh_sphere.h"
#include "orvex/geometry/shapes/mesh_terrain.h"
#include "orvex/geometry/shapes/mesh_torus.h"
#include "orvex/math/vec3.h"
#include "orvex/renderer/records/mesh_data_packed.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/support/heap.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

template<class Store>
bool allocate_without_memory(Store& store) {
    const RefuseArrays refused({.thrown = Thrown::number});
    return store.alloc_vertex_data(7);
}

TEST(UserAttributes, take_the_place_of_those_before) {
    const auto replace = [] {
        MeshData store;
        EXPECT_TRUE(store.alloc_vertex_data_v2(4, 3));
        EXPECT_TRUE(store.alloc_user_vertex_attribs(2));
        EXPECT_TRUE(store.alloc_user_vertex_attribs(5));
        EXPECT_EQ(store.num_user_attribs, 5u);
    };
    replace();
    const long before = living_blocks();
    replace();
    EXPECT_EQ(living_blocks(), before);
}

TEST(AllocationFailure, of_no_standard_type_is_reported_by_the_full_format) {
    LogCapture log;
    MeshData store;
    EXPECT_FALSE(allocate_without_memory(store));
    EXPECT_TRUE(log.has("<*> Mesh data allocation failed - 7 vertices required - unknown error."));
    EXPECT_EQ(log.messages().size(), 1u);
}

TEST(AllocationFailure, of_no_standard_type_is_reported_by_a_packed_format) {
    LogCapture log;
    MeshData_64 store;
    EXPECT_FALSE(allocate_without_memory(store));
    EXPECT_TRUE(log.has("<o> MeshData_64::alloc_vertex_data() - exception: unknown"));
    EXPECT_EQ(log.messages().size(), 1u);
}

/// The messages of a curve, and of a curve of a graph, whose values can't be made.
template<class Alloc>
std::string message_of(Thrown thrown, Alloc alloc) {
    const LogCapture log;
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

bool build(MeshCylinder& tube) {
    return tube.build(nullptr);
}
bool build(MeshSphere& sphere) {
    return sphere._build();
}
bool build(MeshTorus& torus) {
    return torus._build();
}

/// Shapes of 600 slices, whose tables of sines or of section vertices take more than 4,000 bytes.
void set_slices(MeshCylinder& tube) {
    tube.set_build_params(1.0f, 1.0f, 3, 600);
}
void set_slices(MeshSphere& sphere) {
    sphere.set_build_params(1.0f, 600, 2);
}
void set_slices(MeshTorus& torus) {
    torus.set_build_params(2.0f, 0.5f, 600);
}

template<class Shape>
void expect_failure_without_tables() {
    const Owned<Shape> shape(new Shape);
    set_slices(*shape);
    const LogCapture log;
    {
        const RefuseArrays refused({.min_size = 4000, .single = true});
        EXPECT_FALSE(build(*shape));
    }
    EXPECT_TRUE(log.has("<*> std::bad_alloc exception caught - what: std::bad_alloc"));
    EXPECT_EQ(log.messages().size(), 1u);
    EXPECT_FALSE(shape->get_build_state());
    shape->update_build_state(true);
    EXPECT_TRUE(build(*shape)) << "and goes on";
}

TEST(AllocationFailure, of_a_shapes_tables_fails_its_build) {
    expect_failure_without_tables<MeshCylinder>();
    expect_failure_without_tables<MeshSphere>();
    expect_failure_without_tables<MeshTorus>();
}

TEST(AllocationFailure, of_the_heights_leaves_a_terrain_with_those_it_had) {
    const Owned<Texture> map(new Texture);
    map->create_2d(1, 1, PF_RGB_U8);
    std::fill_n(map->get_pixmap_u8_ptr(), 3, static_cast<unsigned char>(255));
    const Owned<MeshTerrain> terrain(new MeshTerrain);
    {
        const RefuseArrays refused({});
        EXPECT_FALSE(terrain->init_terrain_buffer(map.get()));
        EXPECT_EQ(terrain->elevation(0, 0, 1, 1.0f), 0.0f);
    }
    EXPECT_TRUE(terrain->init_terrain_buffer(map.get()));
    const RefuseArrays refused({});
    EXPECT_FALSE(terrain->init_terrain_buffer(map.get()));
    EXPECT_EQ(terrain->elevation(0, 0, 1, 1.0f), 1.0f);
}

TEST(AllocationFailure, of_points_leaves_a_pool_without_any) {
    for (const bool separate : {false, true}) {
        const Owned<VertexPool> pool(new VertexPool);
        ASSERT_TRUE(pool->init_pool(4, separate));
        for (unsigned long granted = 0; granted < (separate ? 3u : 1u); ++granted) {
            const RefuseArrays refused({.granted = granted});
            EXPECT_THROW(pool->init_pool(100, separate), std::bad_alloc);
            EXPECT_EQ(pool->get_pool_size(), 0u) << "drawing goes by it";
            pool->set_vertex_color(0, 1.0f, 0.0f, 0.0f, 1.0f);
            pool->set_vertex_position(0, vec3(1.0f, 2.0f, 3.0f));
            EXPECT_EQ(pool->get_vertex(0), nullptr);
        }
        EXPECT_TRUE(pool->init_pool(5, separate)) << "and goes on";
        EXPECT_EQ(pool->get_pool_size(), 5u);
    }
}

TEST(AllocationFailure, of_vertices_leaves_a_polyline_without_any) {
    const Owned<Polyline> line(new Polyline);
    ASSERT_TRUE(line->initialize(4, LINE_RENDER_MODE_LINE_STRIP));
    {
        const RefuseArrays refused({});
        EXPECT_THROW(line->alloc_vertex_data(100), std::bad_alloc);
    }
    EXPECT_EQ(line->get_num_vertices(nullptr), 0u) << "drawing goes by it";
    EXPECT_FALSE(line->set_vertex_color(0, vec4(1.0f, 0.0f, 0.0f, 1.0f)));
    EXPECT_TRUE(line->alloc_vertex_data(5)) << "and goes on";
    EXPECT_EQ(line->get_num_vertices(nullptr), 5u);
}

} // namespace

} // namespace orvex_test
