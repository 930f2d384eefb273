#include "orvex/assets/models/obj/loader_3d_obj.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "orvex/assets/materials/material.h"
#include "orvex/renderer/records/mesh_data.h"
#include "tests/orvex/assets/models/loader_fixture.h"
#include "tests/orvex/math/exact.h"

namespace orvex_test {

using namespace orvex;
namespace {

class Loader3D_OBJTest : public LoaderTest<Loader3D_OBJ> {
protected:
    /// Loads `text` into a fresh model.
    bool load(const std::string& text) {
        new_model();
        return load_file("model.obj", text);
    }
};

constexpr const char* TRIANGLE = "v 0 0 0\nv 2 0 0\nv 0 3 0\n";

TEST_F(Loader3D_OBJTest, is_a_core_plugin) {
    expect_core_plugin("orvex_plugin_core_obj", "OBJ 3D loader (core plugin).");
}

TEST_F(Loader3D_OBJTest, refuses_what_it_cannot_read) {
    EXPECT_FALSE(loader_.load_from_file(nullptr, "model.obj"));
    EXPECT_FALSE(load(TRIANGLE)) << "vertices only";
    EXPECT_FALSE(load(""));
    EXPECT_FALSE(load(std::string("\x7f"
                                  "ELF\0\0\1\2v f g",
                                  13)));
    EXPECT_FALSE(loader_.load_from_file(model_, "missing.obj"));
    EXPECT_FALSE(loader_.load_from_file(model_, "")) << "the directory itself";
    EXPECT_FALSE(loader_.load_from_file(model_, nullptr));
    EXPECT_EQ(num_meshes(), 0u);
    EXPECT_EQ(model_->get_num_materials(), 0u);
}

TEST_F(Loader3D_OBJTest, keeps_why_it_refused_a_file_until_the_next) {
    EXPECT_FALSE(load(std::string(TRIANGLE) + "# no face"));
    EXPECT_STREQ(loader_.get_failure_reason(), "line 4: the file ends with 3 vertices and no face");
    EXPECT_TRUE(loader_.get_format_known_state());
    EXPECT_FALSE(load("some\ntext\n"));
    EXPECT_STREQ(loader_.get_failure_reason(), "no OBJ file: none of its 2 lines begins with a v");
    EXPECT_FALSE(loader_.get_format_known_state());
    EXPECT_FALSE(loader_.load_from_file(model_, "missing.obj"));
    EXPECT_STREQ(loader_.get_failure_reason(),
                 "no regular file that can be read, or no memory for it");
    EXPECT_TRUE(load(std::string(TRIANGLE) + "f 1 2 3\n"));
    EXPECT_STREQ(loader_.get_failure_reason(), "");
}

TEST_F(Loader3D_OBJTest, makes_a_mesh_per_group_with_faces) {
    ASSERT_TRUE(load(std::string(TRIANGLE) +
                     "g empty\ng one\nf 1 2 3\ng two\nf 1 2 3 1\ng one\nf 3 2 1\n"));
    ASSERT_EQ(num_meshes(), 2u) << "the default group and the empty one have no faces";
    EXPECT_STREQ(mesh_at(0)->get_name(), "one");
    EXPECT_EQ(mesh_at(0)->get_num_faces(nullptr), 2u);
    EXPECT_EQ(mesh_at(0)->get_num_vertices(nullptr), 6u);
    EXPECT_STREQ(mesh_at(1)->get_name(), "two");
    EXPECT_EQ(mesh_at(1)->get_num_vertices(nullptr), 6u);
    EXPECT_EQ(mesh_at(0)->get_parent(), model_);
}

TEST_F(Loader3D_OBJTest, faces_before_any_group_land_in_the_default_group) {
    ASSERT_TRUE(load(std::string(TRIANGLE) + "f 1 2 3\n"));
    EXPECT_STREQ(mesh_at(0)->get_name(), "orvex_obj_default_group");
    ASSERT_EQ(model_->get_num_materials(), 1u);
    Material* material = model_->get_material_by_index(0);
    EXPECT_STREQ(material->get_name(), "orvex_obj_default_material");
    expect_vec4(material->get_ambient(), 0.4f, 0.4f, 0.4f, 1.0f);
    expect_vec4(material->get_diffuse(), 0.7f, 0.7f, 0.8f, 1.0f);
    expect_vec4(material->get_specular(), 0.6f, 0.6f, 0.6f, 1.0f);
    EXPECT_EQ(material->get_shininess(), 24.0f / 1000.0f * 128.0f);
    EXPECT_EQ(material->get_opacity(), 1.0f);
    EXPECT_EQ(mesh_at(0)->get_material_by_index(0), material);
    EXPECT_EQ(mesh_at(0)->get_mesh_data()->face_materials[0], material->getid());
}

TEST_F(Loader3D_OBJTest, corners_get_vertices_of_their_own) {
    ASSERT_TRUE(load(std::string(TRIANGLE) + "vt 0.25 0.5\nvt 1 0\nvn 0 0 1\nvn 0 1 0\n"
                                             "f 1/1/1 2/2/1 3/1/2\n"));
    Mesh* m = mesh_at(0);
    expect_vec4(m->get_vertex_position(1), 2, 0, 0, 1);
    expect_vec4(m->get_vertex_position(2), 0, 3, 0, 1);
    expect_vec4(m->get_vertex_uv(0, 0), 0.25f, 0.5f, 0, 1);
    expect_vec4(m->get_vertex_uv(1, 0), 1, 0, 0, 1);
    expect_vec4(m->get_vertex_normal(0), 0, 0, 1, 0);
    expect_vec4(m->get_vertex_normal(2), 0, 1, 0, 0);
    expect_vec4(m->get_vertex_color(2), 1, 1, 1, 1);
    unsigned a = 9, b = 9, c = 9;
    m->get_face_indexes(0, &a, &b, &c);
    EXPECT_EQ(a, 0u);
    EXPECT_EQ(b, 1u);
    EXPECT_EQ(c, 2u);
}

TEST_F(Loader3D_OBJTest, the_normal_of_a_face_is_the_mean_of_its_corners_and_no_unit_vector) {
    ASSERT_TRUE(
        load(std::string(TRIANGLE) + "vn 1 2 4\nvn 8 16 32\nvn 64 128 256\nf 1//1 2//2 3//3\n"));
    const vec4& normal = mesh_at(0)->get_mesh_data()->face_normals[0];
    EXPECT_EQ(normal.x, 73.0f / 3.0f);
    EXPECT_EQ(normal.y, 146.0f / 3.0f);
    EXPECT_EQ(normal.z, 292.0f / 3.0f);
}

TEST_F(Loader3D_OBJTest, without_normals_corners_get_the_normal_of_the_face) {
    ASSERT_TRUE(load(std::string(TRIANGLE) + "f 1 2 3\nf 3 2 1\nf 1 1 1\n"));
    Mesh* m = mesh_at(0);
    for (unsigned long i = 0; i < 3; ++i) {
        expect_vec4(m->get_vertex_normal(i), 0, 0, 1, 0);
        expect_vec4(m->get_vertex_normal(3 + i), 0, 0, -1, 0);
        expect_vec4(m->get_vertex_normal(6 + i), 0, 0, 0, 0);
    }
    EXPECT_EQ(m->get_mesh_data()->face_normals[0].z, 1.0f);
}

TEST_F(Loader3D_OBJTest, indices_that_name_nothing_read_zeros) {
    ASSERT_TRUE(load("v 1 2 3\nvt 4 5\nvn 0 0 1\n"
                     "f 1/1/1 7/7/7 -1/-1/-1\nf 0/0/0 2147483647/1/1 -2147483648/1/1\n"));
    for (const unsigned long i : {1, 2, 3, 4, 5})
        expect_vec4(mesh_at(0)->get_vertex_position(i), 0, 0, 0, 1);
    expect_vec4(mesh_at(0)->get_vertex_uv(1, 0), 0, 0, 0, 1);
    expect_vec4(mesh_at(0)->get_vertex_normal(2), 0, 0, 0, 0);
}

TEST_F(Loader3D_OBJTest, a_face_without_normals_in_a_model_with_normals_reads_the_zero_vector) {
    ASSERT_TRUE(load(std::string(TRIANGLE) + "vn 0 0 1\nf 1//1 2//1 3//1\nf 1 2 3\n"));
    expect_vec4(mesh_at(0)->get_vertex_normal(0), 0, 0, 1, 0);
    expect_vec4(mesh_at(0)->get_vertex_normal(3), 0, 0, 0, 0);
}

TEST_F(Loader3D_OBJTest, only_used_materials_are_built) {
    dir_.write("a.mtl", "newmtl used\nnewmtl unused\n");
    ASSERT_TRUE(load(std::string("mtllib a.mtl\n") + TRIANGLE + "usemtl used\nf 1 2 3\n"));
    EXPECT_EQ(model_->get_num_materials(), 1u);
    EXPECT_NE(MaterialMgr::get()->get_resource("used"), nullptr);
    EXPECT_EQ(MaterialMgr::get()->get_resource("unused"), nullptr);
}

TEST_F(Loader3D_OBJTest, materials_carry_colours_shininess_opacity_and_texture_names) {
    dir_.write("a.mtl", "newmtl a\nKa .1 .2 .3\nKd .4 .5 .6\nillum 2\nKs .7 .8 .9\nNs 1000\n"
                        "Tr 0.25\nmap_Kd 1.png\nmap_Kd 2.png\nmap_Kd 3.png\nmap_Kd 4.png\n"
                        "map_Kd 5.png\nnewmtl b\nNs 0\n");
    ASSERT_TRUE(
        load(std::string("mtllib a.mtl\n") + TRIANGLE + "usemtl a\nf 1 2 3\nusemtl b\nf 1 2 3\n"));
    Material* a = model_->get_material_by_name("a");
    ASSERT_NE(a, nullptr);
    expect_vec4(a->get_ambient(), 0.1f, 0.2f, 0.3f, 1);
    expect_vec4(a->get_diffuse(), 0.4f, 0.5f, 0.6f, 1);
    expect_vec4(a->get_specular(), 0.7f, 0.8f, 0.9f, 1);
    EXPECT_EQ(a->get_shininess(), 128.0f);
    EXPECT_EQ(a->get_opacity(), 0.25f);
    ASSERT_EQ(a->async_loading_get_num_texture_filenames(), 4u);
    EXPECT_STREQ(a->async_loading_get_texture_filename(0), "1.png");
    EXPECT_STREQ(a->async_loading_get_texture_filename(3), "4.png");
    EXPECT_EQ(model_->get_material_by_name("b")->get_shininess(), 1.0f);
    const MeshData& store = *mesh_at(0)->get_mesh_data();
    EXPECT_EQ(store.face_materials[0], a->getid());
    EXPECT_EQ(store.face_materials[1], model_->get_material_by_name("b")->getid());
    EXPECT_EQ(mesh_at(0)->get_num_materials(), 2u);
}

TEST_F(Loader3D_OBJTest, the_first_model_to_load_a_name_fixes_its_values) {
    dir_.write("a.mtl", "newmtl paint\nKd 1 0 0\n");
    const std::string text = std::string("mtllib a.mtl\n") + TRIANGLE + "usemtl paint\nf 1 2 3\n";
    ASSERT_TRUE(load(text));
    Material* first = model_->get_material_by_index(0);
    dir_.write("a.mtl", "newmtl paint\nKd 0 1 0\n");
    ASSERT_TRUE(load(text));
    EXPECT_EQ(model_->get_material_by_index(0), first);
    expect_vec4(first->get_diffuse(), 1, 0, 0, 1);
}

TEST_F(Loader3D_OBJTest, the_models_allocation_settings_reach_every_mesh) {
    const std::string text = std::string(TRIANGLE) + "vt 0.5 1\nf 1/1 2/1 3/1\n";
    for (const bool separate : {true, false}) {
        for (const int alignment : {0, 16}) {
            new_model();
            model_->set_mesh_vertex_alloc_params(separate, alignment);
            ASSERT_TRUE(load_file("model.obj", text));
            EXPECT_EQ(mesh_at(0)->get_mesh_data()->has_separate_vertex_arrays(), separate);
            EXPECT_EQ(mesh_at(0)->get_mesh_data()->alignment, alignment);
            expect_vec4(mesh_at(0)->get_vertex_position(2), 0, 3, 0, 1);
            expect_vec4(mesh_at(0)->get_vertex_normal(2), 0, 0, 1, 0);
            expect_vec4(mesh_at(0)->get_vertex_uv(2, 0), 0.5f, 1, 0, 1);
            expect_vec4(mesh_at(0)->get_vertex_color(2), 1, 1, 1, 1);
        }
    }
}

TEST_F(Loader3D_OBJTest, indices_are_wide_from_65536_vertices_on) {
    std::string text = TRIANGLE;
    for (int i = 0; i < 21845; ++i)
        text += "f 1 2 3\n";
    ASSERT_TRUE(load(text));
    EXPECT_EQ(mesh_at(0)->get_mesh_data()->index_bits, 16) << "65,535 vertices";
    unsigned a = 0, b = 0, c = 0;
    mesh_at(0)->get_face_indexes(21844, &a, &b, &c);
    EXPECT_EQ(c, 65534u);
    ASSERT_TRUE(load(text + "f 1 2 3\n"));
    EXPECT_EQ(mesh_at(0)->get_mesh_data()->index_bits, 32);
    mesh_at(0)->get_face_indexes(21845, &a, &b, &c);
    EXPECT_EQ(c, 65537u);
}

// Of more than 32 MiB, for which the heap always has memory that nobody had before: an array that
// shares its pages until it is written.
TEST_F(Loader3D_OBJTest, without_texture_coordinates_a_large_mesh_has_those_of_fresh_vertices) {
    std::string text = TRIANGLE;
    for (int i = 0; i < 750'000; ++i)
        text += "f 1 2 3\n";
    ASSERT_TRUE(load(text));
    const MeshData& store = *mesh_at(0)->get_mesh_data();
    ASSERT_EQ(store.num_vertices, 2'250'000u);
    EXPECT_TRUE(std::all_of(store.uv0.data, store.uv0.data + store.num_vertices,
                            [](const vec4& uv) { return uv == vec4(0, 0, 0, 1); }));
}

} // namespace
} // namespace orvex_test
