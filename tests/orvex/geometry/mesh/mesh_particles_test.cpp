#include "orvex/geometry/mesh/mesh.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "owned_mesh.h"
#include "tests/orvex/geometry/printers.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// A flat grid of 3 by 3 particles in x and z, each of weight 1. Index is z * 3 + x.
OwnedMesh make_grid() {
    OwnedMesh mesh = make_mesh(9, 0);
    for (unsigned long i = 0; i < 9; ++i)
        mesh->set_vertex_particle(
            i, vec4(static_cast<float>(i % 3), 5.0f, static_cast<float>(i / 3), 1.0f));
    return mesh;
}

/// The particles of weight 0, such as "012".
std::string attached(const OwnedMesh& mesh) {
    std::string result;
    for (unsigned long i = 0; i < mesh->get_num_vertices(nullptr); ++i)
        if (mesh->get_vertex_particles()[i].w == 0.0f)
            result += static_cast<char>('0' + i);
    return result;
}

struct Attachment {
    int flags;
    const char* whole_border;
    const char* two_points;
};

TEST(MeshParticles, are_attached_along_borders) {
    const Attachment rows[] = {{0, "", ""},
                               {MESH_PLANE_BORDER_X_MIN, "036", "06"},
                               {MESH_PLANE_BORDER_X_MAX, "258", "28"},
                               {MESH_PLANE_BORDER_Z_MIN, "012", "02"},
                               {MESH_PLANE_BORDER_Z_MAX, "678", "68"},
                               {MESH_PLANE_BORDER_Y_MIN, "012345678", ""},
                               {MESH_PLANE_BORDER_Y_MAX, "012345678", ""},
                               {MESH_PLANE_BORDER_X_MIN | MESH_PLANE_BORDER_Z_MIN, "01236", "026"},
                               {64, "", ""}};
    for (const Attachment& row : rows) {
        SCOPED_TRACE(row.flags);
        OwnedMesh whole = make_grid();
        EXPECT_TRUE(whole->vertex_particle_attach_border(row.flags));
        EXPECT_EQ(attached(whole), row.whole_border);
        OwnedMesh points = make_grid();
        EXPECT_TRUE(points->vertex_particle_attach_border_two_points(row.flags));
        EXPECT_EQ(attached(points), row.two_points);
    }
}

TEST(MeshParticles, beyond_the_working_range_are_bounded_by_it) {
    OwnedMesh mesh = make_mesh(2, 0);
    mesh->set_vertex_particle(0, vec4(200000000.0f, 0, 0, 1));
    mesh->set_vertex_particle(1, vec4(300000000.0f, 0, 0, 1));
    EXPECT_TRUE(mesh->vertex_particle_attach_border(MESH_PLANE_BORDER_X_MIN));
    EXPECT_EQ(attached(mesh), "") << "the lower bound stays at the range's limit";
    EXPECT_TRUE(mesh->vertex_particle_attach_border(MESH_PLANE_BORDER_X_MAX));
    EXPECT_EQ(attached(mesh), "1");
}

TEST(MeshParticles, are_set_one_by_one_or_all_weights_at_once) {
    OwnedMesh mesh = make_mesh(2, 0);
    mesh->set_vertex_particle(1, vec4(1, 2, 3, 4));
    EXPECT_EQ(mesh->get_vertex_particles()[1], vec4(1, 2, 3, 4));
    EXPECT_EQ(std::as_const(*mesh).get_vertex_particles(), mesh->get_vertex_particles());
    mesh->set_vertex_particle_w(1, 0.5f);
    EXPECT_EQ(mesh->get_vertex_particles()[1], vec4(1, 2, 3, 0.5f));
    mesh->set_vertices_particle_w(7.0f);
    EXPECT_EQ(mesh->get_vertex_particles()[0].w, 7.0f);
    EXPECT_EQ(mesh->get_vertex_particles()[1], vec4(1, 2, 3, 7));
    mesh->set_vertex_particle(2, vec4());
    mesh->set_vertex_particle_w(2, 9.0f);
    EXPECT_EQ(mesh->get_vertex_particles()[1].w, 7.0f);
}

TEST(MeshParticles, take_their_weights_from_positions) {
    struct Row {
        VERTEX_FORMAT format;
        bool separate;
        float weight;
    };
    const Row rows[] = {
        {VERTEX_FORMAT_96, true, 0.25f},          {VERTEX_FORMAT_96, false, 0.25f},
        {VERTEX_FORMAT_64, true, 1.0f},           {VERTEX_FORMAT_32, false, 1.0f},
        {VERTEX_FORMAT_PHYSX_CLOTH, true, 0.25f}, {VERTEX_FORMAT_PHYSX_CLOTH, false, 0.25f}};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "format " << row.format << " separate " << row.separate);
        OwnedMesh mesh = make_mesh(row.format);
        mesh->set_vertex_alloc_params(row.separate, 0);
        ASSERT_TRUE(mesh->alloc_vertex_data(2));
        mesh->set_vertex_position(1, vec4(1, 2, 3, 0.25f));
        mesh->set_vertices_particle_w(9.0f);
        EXPECT_TRUE(mesh->update_vertex_particle_from_position());
        EXPECT_EQ(mesh->get_vertex_particles()[1], vec4(1, 2, 3, row.weight));
        EXPECT_EQ(mesh->get_vertex_particles()[0].w, 1.0f) << "every weight was overwritten";
    }
}

TEST(MeshParticles, are_missed_quietly) {
    std::vector<OwnedMesh> meshes;
    meshes.push_back(make_mesh());
    meshes.push_back(make_mesh_without_store());
    for (const OwnedMesh& mesh : meshes) {
        EXPECT_EQ(mesh->get_vertex_particles(), nullptr);
        mesh->set_vertex_particle(0, vec4());
        mesh->set_vertex_particle_w(0, 1.0f);
        mesh->set_vertices_particle_w(1.0f);
        EXPECT_FALSE(mesh->update_vertex_particle_from_position());
        EXPECT_FALSE(mesh->vertex_particle_attach_border(1));
        EXPECT_FALSE(mesh->vertex_particle_attach_border_two_points(1));
    }
}

} // namespace

} // namespace orvex_test
