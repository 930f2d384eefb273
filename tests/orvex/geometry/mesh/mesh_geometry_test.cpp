#include "orvex/geometry/mesh/mesh.h"

#include <cmath>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "owned_mesh.h"
#include "tests/orvex/geometry/printers.h"

namespace orvex_test {

using namespace orvex;

namespace {

unsigned int bits(float value) {
    unsigned int result = 0;
    std::memcpy(&result, &value, sizeof(result));
    return result;
}

void expect_near(const vec4& value, const vec4& expected) {
    EXPECT_NEAR(value.x, expected.x, 1e-4f);
    EXPECT_NEAR(value.y, expected.y, 1e-4f);
    EXPECT_NEAR(value.z, expected.z, 1e-4f);
}

struct Kind {
    VERTEX_FORMAT format;
    bool separate;
    bool wide_faces;
};

class MeshGeometry : public testing::TestWithParam<Kind> {
protected:
    OwnedMesh make_triangle() const {
        return make_unit_triangle(GetParam().format, GetParam().separate, GetParam().wide_faces);
    }

    static vec4 face_normal(const OwnedMesh& mesh) {
        return mesh->get_mesh_data()->face_normals[0];
    }
};

std::string kind_name(const testing::TestParamInfo<Kind>& info) {
    return std::string(format_name(info.param.format)) +
           (info.param.separate ? "_separate" : "_interleaved");
}

INSTANTIATE_TEST_SUITE_P(
    all, MeshGeometry,
    testing::Values(Kind{VERTEX_FORMAT_96, true, false}, Kind{VERTEX_FORMAT_96, false, true},
                    Kind{VERTEX_FORMAT_64, true, true}, Kind{VERTEX_FORMAT_64, false, false},
                    Kind{VERTEX_FORMAT_32, true, false}, Kind{VERTEX_FORMAT_32, false, true},
                    Kind{VERTEX_FORMAT_PHYSX_CLOTH, true, true},
                    Kind{VERTEX_FORMAT_PHYSX_CLOTH, false, false}),
    kind_name);

TEST_P(MeshGeometry, has_outward_normals_for_counter_clockwise_faces) {
    OwnedMesh mesh = make_triangle();
    EXPECT_TRUE(mesh->compute_faces_normal(nullptr));
    EXPECT_EQ(face_normal(mesh), vec4(0, 0, 1, 0));
    EXPECT_FALSE(mesh->get_mesh_data()->normals_need_update) << "face normals stay on the CPU";
}

TEST_P(MeshGeometry, has_no_direction_for_a_degenerate_face) {
    OwnedMesh mesh = make_triangle();
    mesh->set_face_indexes(0, 1, 1, 2);
    EXPECT_TRUE(mesh->compute_faces_normal(nullptr));
    EXPECT_EQ(face_normal(mesh), vec4(0, 0, 0, 0));
}

TEST_P(MeshGeometry, averages_face_normals_over_vertices) {
    OwnedMesh mesh = make_mesh(GetParam().format);
    mesh->set_vertex_alloc_params(GetParam().separate, 0);
    ASSERT_TRUE(mesh->alloc_vertex_data(5));
    ASSERT_TRUE(mesh->alloc_face_data(2, GetParam().wide_faces));
    // Two faces at a right angle along the x axis, and a vertex that no face uses.
    mesh->set_vertex_position(1, vec4(1, 0, 0, 1));
    mesh->set_vertex_position(2, vec4(0, 1, 0, 1));
    mesh->set_vertex_position(3, vec4(0, 0, 1, 1));
    mesh->set_face_indexes(0, 0, 1, 2); // towards z
    mesh->set_face_indexes(1, 0, 3, 1); // towards y
    mesh->get_mesh_data()->normals_need_update = false;
    ASSERT_TRUE(mesh->compute_faces_normal(nullptr));
    EXPECT_TRUE(mesh->compute_vertices_normal(nullptr));
    EXPECT_TRUE(mesh->get_mesh_data()->normals_need_update);
    const vec3 shared = mesh->get_mesh_data()->get_normal(0);
    EXPECT_NEAR(shared.y, 0.7071068f, 1e-6f);
    EXPECT_NEAR(shared.z, 0.7071068f, 1e-6f);
    EXPECT_EQ(mesh->get_mesh_data()->get_normal(2), vec3(0, 0, 1));
    EXPECT_EQ(mesh->get_mesh_data()->get_normal(3), vec3(0, 1, 0));
    EXPECT_FALSE(std::isfinite(mesh->get_mesh_data()->get_normal(4).x));
}

TEST_P(MeshGeometry, scales_its_positions) {
    OwnedMesh mesh = make_triangle();
    mesh->get_mesh_data()->positions_need_update = false;
    mesh->scale_vertices_position(vec4(2, 3, 4, 9), nullptr);
    EXPECT_EQ(mesh->get_vertex_position(1), vec4(2, 0, 0, 1));
    EXPECT_EQ(mesh->get_vertex_position(2), vec4(0, 3, 0, 1));
    EXPECT_TRUE(mesh->get_mesh_data()->positions_need_update);
}

TEST(MeshGeometryOperations, keep_the_inverse_mass_when_they_scale) {
    OwnedMesh mesh(new Mesh(VERTEX_FORMAT_PHYSX_CLOTH));
    ASSERT_TRUE(mesh->alloc_vertex_data(1));
    mesh->get_mesh_data()->set_position(0, vec4(1.0f, 2.0f, 3.0f, 0.25f));
    mesh->scale_vertices_position(vec4(2.0f, 2.0f, 2.0f, 1.0f), nullptr);
    EXPECT_EQ(mesh->get_mesh_data()->get_position_4f(0), vec4(2.0f, 4.0f, 6.0f, 0.25f));
}

TEST_P(MeshGeometry, turns_its_faces_around_and_back) {
    OwnedMesh mesh = make_triangle();
    mesh->get_mesh_data()->faces_need_update = false;
    mesh->flip_faces(nullptr);
    unsigned int corners[3] = {};
    mesh->get_face_indexes(0, &corners[0], &corners[1], &corners[2]);
    EXPECT_EQ(corners[0], 2u);
    EXPECT_EQ(corners[1], 1u);
    EXPECT_EQ(corners[2], 0u);
    EXPECT_TRUE(mesh->get_mesh_data()->faces_need_update);
    mesh->compute_faces_normal(nullptr);
    EXPECT_EQ(face_normal(mesh), vec4(0, 0, -1, 0));
    mesh->flip_faces(nullptr);
    mesh->get_face_indexes(0, &corners[0], nullptr, &corners[2]);
    EXPECT_EQ(corners[0], 0u);
    EXPECT_EQ(corners[2], 2u);
}

TEST_P(MeshGeometry, turns_its_normals_around) {
    OwnedMesh mesh = make_triangle();
    mesh->set_vertex_normal(1, vec4(1, -2, 3, 0));
    mesh->get_mesh_data()->normals_need_update = false;
    mesh->flip_vertex_normals(nullptr);
    EXPECT_EQ(mesh->get_vertex_normal(1), vec4(-1, 2, -3, 0));
    EXPECT_TRUE(mesh->get_mesh_data()->normals_need_update);
}

TEST_P(MeshGeometry, takes_one_colour_for_all_vertices) {
    OwnedMesh mesh = make_triangle();
    mesh->set_vertices_color(0.1f, 0.2f, 0.3f, 0.4f, nullptr);
    const bool colored = GetParam().format != VERTEX_FORMAT_32;
    for (unsigned long i = 0; i < 3; ++i)
        EXPECT_EQ(mesh->get_vertex_color(i), colored ? vec4(0.1f, 0.2f, 0.3f, 0.4f) : vec4());
    EXPECT_TRUE(mesh->get_mesh_data()->colors_need_update);
}

TEST_P(MeshGeometry, is_bounded_by_the_sphere_around_its_box) {
    OwnedMesh mesh = make_triangle();
    mesh->set_vertex_position(0, vec4(-1, -1, -1, 1));
    mesh->set_vertex_position(1, vec4(1, 1, -1, 1));
    mesh->set_vertex_position(2, vec4(0, 0, 1, 1));
    EXPECT_TRUE(mesh->update_bounding_sphere(nullptr));
    EXPECT_EQ(mesh->get_bounding_sphere_center(), vec4(0, 0, 0, 1));
    EXPECT_EQ(mesh->get_bounding_sphere_radius(), std::sqrt(12.0f) / 2.0f);
    mesh->bounding_sphere_use_inscribed_sphere(true);
    EXPECT_TRUE(mesh->update_bounding_sphere(nullptr));
    EXPECT_EQ(mesh->get_bounding_sphere_radius(), std::sqrt(12.0f) / 2.0f / 1.732f);
    EXPECT_NEAR(mesh->get_bounding_sphere_radius(), 1.0f, 1e-4f);
}

TEST_P(MeshGeometry, blends_two_meshes) {
    OwnedMesh a = make_triangle();
    OwnedMesh b = make_triangle();
    a->set_vertex_position(1, vec4(1, 2, 3, 1));
    b->set_vertex_position(1, vec4(3, 6, 9, 1));
    a->set_vertex_normal(1, vec4(1, 0, 0, 0));
    b->set_vertex_normal(1, vec4(0, 1, 0, 0));
    OwnedMesh mesh = make_mesh(GetParam().format);
    mesh->set_vertex_alloc_params(GetParam().separate, 0);
    EXPECT_TRUE(mesh->do_linear_tweening(a.get(), b.get(), 0.5f));
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 3u);
    EXPECT_EQ(mesh->get_num_faces(nullptr), 1u);
    EXPECT_EQ(mesh->get_vertex_position(1), vec4(2, 4, 6, 1));
    expect_near(mesh->get_vertex_normal(1), vec4(0.7071068f, 0.7071068f, 0, 0));
    EXPECT_TRUE(mesh->get_mesh_data()->positions_need_update);
    EXPECT_TRUE(mesh->get_mesh_data()->normals_need_update);
    EXPECT_TRUE(mesh->do_linear_tweening(a.get(), b.get(), 2.0f));
    EXPECT_EQ(mesh->get_vertex_position(1), vec4(3, 6, 9, 1));
    EXPECT_TRUE(mesh->do_linear_tweening(a.get(), b.get(), -1.0f));
    EXPECT_EQ(mesh->get_vertex_position(1), vec4(1, 2, 3, 1));
}

TEST(MeshGeometryOperations, divide_by_the_float_1_732_for_the_inscribed_sphere) {
    EXPECT_EQ(bits(1.732f), 0x3FDDB22Du);
}

TEST(MeshGeometryOperations, average_the_normals_of_coincident_vertices) {
    OwnedMesh mesh = make_mesh(3, 1);
    mesh->set_vertex_position(2, vec4(5, 5, 5, 1));
    mesh->set_vertex_normal(0, vec4(1, 0, 0, 0));
    mesh->set_vertex_normal(1, vec4(0, 1, 0, 0));
    mesh->set_vertex_normal(2, vec4(0, 0, 1, 0));
    mesh->get_mesh_data()->normals_need_update = false;
    EXPECT_TRUE(mesh->average_vertices_normal(0.0001f, nullptr));
    expect_near(mesh->get_vertex_normal(0), vec4(0.7071f, 0.7071f, 0, 0));
    expect_near(mesh->get_vertex_normal(1), vec4(0.7071f, 0.7071f, 0, 0));
    EXPECT_EQ(mesh->get_vertex_normal(2), vec4(0, 0, 1, 0));
    EXPECT_TRUE(mesh->get_mesh_data()->normals_need_update);
}

TEST(MeshGeometryOperations, let_averaged_normals_take_part_in_later_averages) {
    // 0 and 1 are near each other, as are 1 and 2, but 0 and 2 are not.
    OwnedMesh mesh = make_mesh(3, 1);
    mesh->set_vertex_position(1, vec4(1, 0, 0, 1));
    mesh->set_vertex_position(2, vec4(2, 0, 0, 1));
    mesh->set_vertex_normal(0, vec4(1, 0, 0, 0));
    mesh->set_vertex_normal(1, vec4(0, 1, 0, 0));
    mesh->set_vertex_normal(2, vec4(1, 0, 0, 0));
    EXPECT_TRUE(mesh->average_vertices_normal(1.0f, nullptr));
    expect_near(mesh->get_vertex_normal(0), vec4(0.70711f, 0.70711f, 0, 0));
    expect_near(mesh->get_vertex_normal(1), vec4(0.92388f, 0.38268f, 0, 0));
    expect_near(mesh->get_vertex_normal(2), vec4(0.92388f, 0.38268f, 0, 0));
}

TEST(MeshGeometryOperations, need_vertices_and_faces) {
    OwnedMesh empty = make_mesh();
    EXPECT_FALSE(empty->compute_faces_normal(nullptr));
    EXPECT_FALSE(empty->compute_vertices_normal(nullptr));
    EXPECT_FALSE(empty->average_vertices_normal(0.1f, nullptr));
    EXPECT_FALSE(empty->update_bounding_sphere(nullptr));
    OwnedMesh faceless = make_mesh(3, 0);
    EXPECT_FALSE(faceless->compute_faces_normal(nullptr));
    EXPECT_FALSE(faceless->compute_vertices_normal(nullptr));
    EXPECT_FALSE(faceless->average_vertices_normal(0.1f, nullptr));
    EXPECT_TRUE(faceless->update_bounding_sphere(nullptr));
    OwnedMesh vertexless = make_mesh(0, 3);
    EXPECT_FALSE(vertexless->compute_vertices_normal(nullptr));
    EXPECT_FALSE(vertexless->average_vertices_normal(0.1f, nullptr));
}

TEST(MeshGeometryOperations, mark_nothing_without_vertices_but_faces_always) {
    OwnedMesh mesh = make_mesh();
    MeshData& store = *mesh->get_mesh_data();
    mesh->scale_vertices_position(vec4(2, 2, 2, 1), nullptr);
    mesh->flip_vertex_normals(nullptr);
    mesh->set_vertices_color(vec4(), nullptr);
    EXPECT_FALSE(store.positions_need_update || store.normals_need_update ||
                 store.colors_need_update);
    mesh->flip_faces(nullptr);
    EXPECT_TRUE(store.faces_need_update);
}

TEST(MeshGeometryOperations, skip_face_indexes_beyond_the_vertices) {
    OwnedMesh mesh = make_unit_triangle();
    mesh->set_face_indexes(0, 0, 1, 60000);
    EXPECT_TRUE(mesh->compute_faces_normal(nullptr));
    EXPECT_TRUE(mesh->compute_vertices_normal(nullptr));
    EXPECT_FALSE(std::isfinite(mesh->get_vertex_normal(2).x));
}

/// A parent with a child of the same kind, by an operation that reaches children.
class MeshFamily : public testing::Test {
protected:
    MeshFamily()
        : parent(make_unit_triangle())
        , child(make_unit_triangle().release()) {
        parent->add_child(child);
    }

    OwnedMesh parent;
    Mesh* child;
};

TEST_F(MeshFamily, computes_normals_of_children_when_asked_to) {
    EXPECT_TRUE(parent->compute_faces_normal(nullptr));
    EXPECT_EQ(child->get_mesh_data()->face_normals[0], vec4());
    EXPECT_TRUE(parent->compute_faces_normal(parent.get()));
    EXPECT_EQ(child->get_mesh_data()->face_normals[0], vec4(0, 0, 1, 0));
    EXPECT_TRUE(parent->compute_vertices_normal(parent.get()));
    EXPECT_EQ(child->get_vertex_normal(0), vec4(0, 0, 1, 0));
}

TEST_F(MeshFamily, goes_on_from_averaging_with_computing_normals) {
    child->get_mesh_data()->face_normals[0] = vec4(0, 1, 0, 0);
    EXPECT_TRUE(parent->average_vertices_normal(0.1f, parent.get()));
    EXPECT_EQ(child->get_vertex_normal(0), vec4(0, 1, 0, 0));
}

TEST_F(MeshFamily, scales_flips_and_bounds_children_when_asked_to) {
    parent->scale_vertices_position(vec4(2, 2, 2, 1), parent.get());
    EXPECT_EQ(child->get_vertex_position(1), vec4(2, 0, 0, 1));
    parent->flip_faces(parent.get());
    unsigned int a = 0;
    child->get_face_indexes(0, &a, nullptr, nullptr);
    EXPECT_EQ(a, 2u);
    child->set_vertex_normal(0, vec4(1, 0, 0, 0));
    parent->flip_vertex_normals(parent.get());
    EXPECT_EQ(child->get_vertex_normal(0), vec4(-1, 0, 0, 0));
    EXPECT_TRUE(parent->update_bounding_sphere(parent.get()));
    EXPECT_GT(child->get_bounding_sphere_radius(), 0.0f);
}

TEST_F(MeshFamily, flips_faces_of_children_even_without_its_own) {
    parent->free_mesh_data();
    parent->flip_faces(parent.get());
    unsigned int a = 0;
    child->get_face_indexes(0, &a, nullptr, nullptr);
    EXPECT_EQ(a, 2u);
}

TEST_F(MeshFamily, stops_at_a_mesh_without_vertices) {
    parent->free_mesh_data();
    parent->scale_vertices_position(vec4(2, 2, 2, 1), parent.get());
    EXPECT_EQ(child->get_vertex_position(1), vec4(1, 0, 0, 1));
    child->set_vertex_normal(0, vec4(1, 0, 0, 0));
    parent->flip_vertex_normals(parent.get());
    EXPECT_EQ(child->get_vertex_normal(0), vec4(1, 0, 0, 0));
}

TEST_F(MeshFamily, does_not_colour_children) {
    parent->set_vertices_color(vec4(0, 1, 0, 1), parent.get());
    EXPECT_EQ(parent->get_vertex_color(0), vec4(0, 1, 0, 1));
    EXPECT_EQ(child->get_vertex_color(0), vec4());
}

TEST(MeshTweening, refuses_meshes_that_do_not_match) {
    OwnedMesh mesh = make_mesh(3, 1);
    OwnedMesh a = make_mesh(3, 1);
    OwnedMesh b = make_mesh(4, 1);
    EXPECT_FALSE(mesh->do_linear_tweening(nullptr, b.get(), 0.5f));
    EXPECT_FALSE(mesh->do_linear_tweening(a.get(), nullptr, 0.5f));
    EXPECT_FALSE(mesh->do_linear_tweening(a.get(), b.get(), 0.5f));
    EXPECT_FALSE(make_mesh_without_store()->do_linear_tweening(a.get(), a.get(), 0.5f));
    EXPECT_FALSE(mesh->do_linear_tweening(a.get(), make_mesh_without_store().get(), 0.5f));
    EXPECT_FALSE(mesh->get_mesh_data()->positions_need_update);
}

TEST(MeshTweening, of_empty_meshes_is_empty) {
    OwnedMesh mesh = make_mesh();
    EXPECT_TRUE(mesh->do_linear_tweening(make_mesh().get(), make_mesh().get(), 0.5f));
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 0u);
}

TEST(MeshTweening, may_blend_a_mesh_into_itself) {
    OwnedMesh a = make_unit_triangle();
    OwnedMesh b = make_unit_triangle();
    b->set_vertex_position(1, vec4(3, 0, 0, 1));
    EXPECT_TRUE(a->do_linear_tweening(a.get(), b.get(), 0.5f));
    EXPECT_EQ(a->get_vertex_position(1), vec4(2, 0, 0, 1));
}

TEST(MeshGeometryOperations, do_nothing_without_a_store) {
    OwnedMesh mesh = make_mesh_without_store();
    EXPECT_FALSE(mesh->compute_faces_normal(nullptr));
    EXPECT_FALSE(mesh->compute_vertices_normal(nullptr));
    EXPECT_FALSE(mesh->average_vertices_normal(0.1f, nullptr));
    EXPECT_FALSE(mesh->update_bounding_sphere(nullptr));
    mesh->scale_vertices_position(vec4(), nullptr);
    mesh->flip_faces(nullptr);
    mesh->flip_vertex_normals(nullptr);
    mesh->set_vertices_color(vec4(), nullptr);
    EXPECT_EQ(mesh->get_bounding_sphere_radius(), 0.0f);
}

} // namespace

} // namespace orvex_test
