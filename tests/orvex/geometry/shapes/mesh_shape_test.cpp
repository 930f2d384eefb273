#include "orvex/geometry/shapes/private/mesh_shape.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include <gtest/gtest.h>

#include "orvex/geometry/mesh/model.h"
#include "orvex/geometry/shapes/mesh_box.h"
#include "orvex/geometry/shapes/mesh_cylinder.h"
#include "orvex/geometry/shapes/mesh_ellipse.h"
#include "orvex/geometry/shapes/mesh_plane.h"
#include "orvex/geometry/shapes/mesh_quad.h"
#include "orvex/geometry/shapes/mesh_quad_hud.h"
#include "orvex/geometry/shapes/mesh_sphere.h"
#include "orvex/geometry/shapes/mesh_terrain.h"
#include "orvex/geometry/shapes/mesh_torus.h"
#include "orvex/geometry/shapes/mesh_triangle.h"
#include "shapes.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// What all shapes have in common; `Shape` is one of the ten classes.
template<class Shape>
class MeshShape : public testing::Test {};

using AllShapes = testing::Types<MeshBox, MeshCylinder, MeshEllipse, MeshPlane, MeshQuad,
                                 MeshQuadHud, MeshSphere, MeshTerrain, MeshTorus, MeshTriangle>;

/// Names the instances after the class.
struct ShapeName {
    template<class Shape>
    static std::string GetName(int) {
        const std::pair<bool, const char*> names[] = {
            {std::is_same_v<Shape, MeshBox>, "box"},
            {std::is_same_v<Shape, MeshCylinder>, "cylinder"},
            {std::is_same_v<Shape, MeshEllipse>, "ellipse"},
            {std::is_same_v<Shape, MeshPlane>, "plane"},
            {std::is_same_v<Shape, MeshQuad>, "quad"},
            {std::is_same_v<Shape, MeshQuadHud>, "quad_hud"},
            {std::is_same_v<Shape, MeshSphere>, "sphere"},
            {std::is_same_v<Shape, MeshTerrain>, "terrain"},
            {std::is_same_v<Shape, MeshTorus>, "torus"},
            {std::is_same_v<Shape, MeshTriangle>, "triangle"},
        };
        for (const auto& [is_it, name] : names)
            if (is_it)
                return name;
        return "unknown";
    }
};

TYPED_TEST_SUITE(MeshShape, AllShapes, ShapeName);

/// The type tag of each class.
template<class Shape>
NODE_TYPE type_tag();
template<>
NODE_TYPE type_tag<MeshBox>() {
    return static_cast<NODE_TYPE>(14);
}
template<>
NODE_TYPE type_tag<MeshCylinder>() {
    return static_cast<NODE_TYPE>(16);
}
template<>
NODE_TYPE type_tag<MeshEllipse>() {
    return static_cast<NODE_TYPE>(12);
}
template<>
NODE_TYPE type_tag<MeshPlane>() {
    return static_cast<NODE_TYPE>(7);
}
template<>
NODE_TYPE type_tag<MeshQuad>() {
    return static_cast<NODE_TYPE>(8);
}
template<>
NODE_TYPE type_tag<MeshQuadHud>() {
    return static_cast<NODE_TYPE>(9);
}
template<>
NODE_TYPE type_tag<MeshSphere>() {
    return static_cast<NODE_TYPE>(10);
}
template<>
NODE_TYPE type_tag<MeshTerrain>() {
    return static_cast<NODE_TYPE>(15);
}
template<>
NODE_TYPE type_tag<MeshTorus>() {
    return static_cast<NODE_TYPE>(11);
}
template<>
NODE_TYPE type_tag<MeshTriangle>() {
    return static_cast<NODE_TYPE>(13);
}

/// Changes a parameter, or sets it anew where there is none.
void set_params(MeshBox& box) {
    box.set_build_params(1.0f, 1.0f, 1.0f, 1, 1, 1);
}
void set_params(MeshCylinder& tube) {
    tube.set_build_params(1.0f, 1.0f, 3, 3);
}
void set_params(MeshEllipse& ellipse) {
    ellipse.set_build_params(1.0f, 1.0f, 3, 1, 360.0f);
}
void set_params(MeshPlane& plane) {
    plane.set_build_params(1.0f, 1.0f, 1, 1);
}
void set_params(MeshQuad& quad) {
    quad.set_build_params(1.0f, 1.0f);
}
void set_params(MeshQuadHud& quad) {
    quad.set_build_params();
}
void set_params(MeshSphere& sphere) {
    sphere.set_build_params(1.0f, 3, 2);
}
void set_params(MeshTerrain& terrain) {
    terrain.set_build_params(nullptr, 1, 1.0f, 1.0f, 0.0f);
}
void set_params(MeshTorus& torus) {
    torus.set_build_params(1.0f, 0.5f, 3);
}
void set_params(MeshTriangle& triangle) {
    triangle.set_build_params(vec4(), vec4::UNIT_X_AXIS, vec4::UNIT_Y_AXIS);
}

/// A result that tells of a failure: of `build` where a class overrides it, else of its hook.
template<class Shape>
bool build(Shape& shape) {
    return shape.build(nullptr);
}
bool build(MeshSphere& sphere) {
    return sphere._build();
}
bool build(MeshTorus& torus) {
    return torus._build();
}

TYPED_TEST(MeshShape, carries_the_tags_of_a_mesh_and_its_own) {
    const Owned<TypeParam> shape(new TypeParam);
    EXPECT_EQ(shape->get_type(), type_tag<TypeParam>());
    EXPECT_TRUE(shape->is_type_of(NODE_TYPE_MESH));
    EXPECT_TRUE(shape->is_type_of(NODE_TYPE_OBJECT));
}

TYPED_TEST(MeshShape, stands_in_the_full_format_unless_another_is_asked_for) {
    EXPECT_EQ(Owned<TypeParam>(new TypeParam)->get_mesh_data()->get_vertex_format(),
              VERTEX_FORMAT_96);
    for (const StoreKind& kind : all_store_kinds())
        EXPECT_EQ(make_shape<TypeParam>(kind)->get_mesh_data()->get_vertex_format(), kind.format);
}

TYPED_TEST(MeshShape, is_empty_until_it_is_built) {
    const auto shape = make_shape<TypeParam>();
    EXPECT_TRUE(shape->get_build_state());
    EXPECT_EQ(shape->get_num_vertices(nullptr), 0u);
    EXPECT_TRUE(build(*shape));
    EXPECT_FALSE(shape->get_build_state());
    EXPECT_GT(shape->get_num_vertices(nullptr), 0u);
}

TYPED_TEST(MeshShape, is_built_by_the_walk_from_its_parent) {
    const Owned<Object> parent(new Object);
    auto* const shape = new TypeParam;
    parent->add_child(shape);
    EXPECT_TRUE(parent->build(nullptr));
    EXPECT_GT(shape->get_num_vertices(nullptr), 0u);
}

TYPED_TEST(MeshShape, is_built_again_only_after_a_change_of_parameters) {
    const auto shape = make_shape<TypeParam>();
    build(*shape);
    const vec4 by_hand(7.0f, 8.0f, 9.0f, 1.0f);
    shape->set_vertex_position(0, by_hand);
    EXPECT_TRUE(build(*shape));
    EXPECT_EQ(shape->get_vertex_position(0), by_hand);
    set_params(*shape);
    EXPECT_TRUE(shape->get_build_state());
    EXPECT_TRUE(build(*shape));
    EXPECT_FALSE(shape->get_vertex_position(0) == by_hand);
}

TYPED_TEST(MeshShape, updates_its_bounding_sphere_with_every_build) {
    const auto shape = make_shape<TypeParam>();
    set_params(*shape);
    build(*shape);
    for (unsigned long i = 0; i < shape->get_num_vertices(nullptr); ++i)
        shape->set_vertex_position(i, vec4(100.0f, i == 0 ? -100.0f : 100.0f, 100.0f, 1.0f));
    EXPECT_TRUE(build(*shape));
    EXPECT_EQ(shape->get_bounding_sphere_center().x, 100.0f);
}

TYPED_TEST(MeshShape, makes_a_drawn_store_upload_its_new_geometry) {
    const auto shape = make_shape<TypeParam>();
    build(*shape);
    MeshData& store = *shape->get_mesh_data();
    store.colors_need_update = false;
    store.vertex_buffer_id = store.index_buffer_id = store.quad_edge_buffer_id = 1;
    set_params(*shape);
    EXPECT_TRUE(build(*shape));
    EXPECT_TRUE(store.positions_need_update && store.normals_need_update &&
                store.tangents_need_update && store.colors_need_update && store.uv0_need_update &&
                store.uv1_need_update && store.faces_need_update && store.quad_edges_need_update);
    store.vertex_buffer_id = store.index_buffer_id = store.quad_edge_buffer_id = 0;
}

TYPED_TEST(MeshShape, fails_to_build_without_a_store) {
    const auto shape = make_shape<TypeParam>();
    shape->cleanup_mesh_data(nullptr);
    EXPECT_FALSE(build(*shape));
    EXPECT_FALSE(shape->get_build_state());
    EXPECT_EQ(shape->get_num_vertices(nullptr), 0u);
}

TYPED_TEST(MeshShape, is_the_same_in_aligned_memory) {
    const auto plain = make_shape<TypeParam>();
    const auto aligned = make_shape<TypeParam>();
    aligned->set_vertex_alloc_params(true, 64);
    ASSERT_TRUE(build(*plain) && build(*aligned));
    ASSERT_EQ(aligned->get_num_vertices(nullptr), plain->get_num_vertices(nullptr));
    for (unsigned long i = 0; i < plain->get_num_vertices(nullptr); ++i) {
        const Vertex a = aligned->get_vertex_v2(i);
        const Vertex b = plain->get_vertex_v2(i);
        EXPECT_EQ(std::memcmp(&a, &b, sizeof(Vertex)), 0) << i;
    }
}

constexpr int most = std::numeric_limits<int>::max();

template<class Shape>
void expect_refusal(Shape& shape) {
    EXPECT_FALSE(build(shape));
    EXPECT_EQ(shape.get_num_faces(nullptr), 0u);
    EXPECT_EQ(shape.get_vertex_position(0), vec4());
}

TEST(MeshShapes, refuse_counts_that_no_memory_holds) {
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto box = make_shape<MeshBox>(kind);
        box->set_build_params(1.0f, 1.0f, 1.0f, most, most, most);
        expect_refusal(*box);
        const auto tube = make_shape<MeshCylinder>(kind);
        tube->set_build_params(1.0f, 1.0f, most, most);
        expect_refusal(*tube);
        const auto ellipse = make_shape<MeshEllipse>(kind);
        ellipse->set_build_params(1.0f, 1.0f, most, most, 360.0f);
        expect_refusal(*ellipse);
        const auto plane = make_shape<MeshPlane>(kind);
        plane->set_build_params(1.0f, 1.0f, most, most);
        expect_refusal(*plane);
        const auto sphere = make_shape<MeshSphere>(kind);
        sphere->set_build_params(1.0f, most, most);
        expect_refusal(*sphere);
        const auto terrain = make_shape<MeshTerrain>(kind);
        terrain->set_build_params(nullptr, most, 1.0f, 1.0f, 0.0f);
        expect_refusal(*terrain);
        const auto torus = make_shape<MeshTorus>(kind);
        torus->set_build_params(1.0f, 0.5f, most);
        expect_refusal(*torus);
    }
}

TEST(MeshShapes, take_no_part_in_the_build_of_their_children) {
    const auto box = make_shape<MeshBox>();
    auto* const child = new MeshPlane;
    box->add_child(child);
    EXPECT_TRUE(box->build(nullptr));
    EXPECT_EQ(child->get_num_vertices(nullptr), 0u);
    EXPECT_TRUE(box->build(box.get()));
    EXPECT_EQ(child->get_num_vertices(nullptr), 0u);

    const auto sphere = make_shape<MeshSphere>();
    auto* const reached = new MeshPlane;
    sphere->add_child(reached);
    EXPECT_TRUE(sphere->build(nullptr));
    EXPECT_EQ(reached->get_num_vertices(nullptr), 25u) << "spheres build through the hook";
}

TEST(MeshShapes, take_the_same_sines_as_the_functions_of_one_angle) {
    const std::vector<mesh_shape::SinCos> turn = mesh_shape::full_turn(7);
    ASSERT_EQ(turn.size(), 8u);
    for (unsigned long i = 0; i < 8; ++i) {
        volatile float angle = static_cast<float>(i) * 6.2831855f / 7.0f;
        EXPECT_EQ(bits(turn[i].sin), bits(std::sin(angle)));
        EXPECT_EQ(bits(turn[i].cos), bits(std::cos(angle)));
    }
}

} // namespace

} // namespace orvex_test
