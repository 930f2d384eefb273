#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>

#include <gtest/gtest.h>
#include <lib3ds.h>

#include <sys/stat.h>

#include "chunks_3ds.h"
#include "orvex/assets/materials/material.h"
#include "orvex/assets/models/3ds/private/lib3ds_open.h"
#include "orvex/assets/models/3ds/private/lib3ds_records.h"
#include "orvex/renderer/records/mesh_data.h"
#include "tests/orvex/assets/models/loader_fixture.h"
#include "tests/orvex/math/exact.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;
namespace {

class Loader3D_Lib3dsTest : public LoaderTest<Loader3D_Lib3ds> {
protected:
    /// Loads a file of these bytes into a fresh model.
    bool load(const std::string& bytes) {
        new_model();
        return load_file("model.3ds", bytes);
    }

    MeshData& store(unsigned long index = 0) const { return *mesh_at(index)->get_mesh_data(); }
    std::vector<std::string> mesh_names() const {
        std::vector<std::string> names;
        for (unsigned long i = 0; i < num_meshes(); ++i)
            names.emplace_back(mesh_at(i)->get_name());
        return names;
    }
    std::vector<std::string> material_names() const {
        std::vector<std::string> names;
        for (unsigned long i = 0; i < model_->get_num_materials(); ++i)
            names.emplace_back(model_->get_material_by_index(i)->get_name());
        return names;
    }
    Material* only_material() const { return model_->get_material_by_index(0); }
};

using Names = std::vector<std::string>;

// --- The plugin ------------------------------------------------------------------------------

TEST_F(Loader3D_Lib3dsTest, is_a_core_plugin) {
    expect_core_plugin("orvex_plugin_core_lib3ds", "Lib3ds loader (core plugin).");
}

TEST_F(Loader3D_Lib3dsTest, refuses_what_it_cannot_open) {
    EXPECT_FALSE(loader_.load_from_file(nullptr, "model.3ds"));
    EXPECT_FALSE(load(""));
    EXPECT_FALSE(load("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"));
    EXPECT_FALSE(loader_.load_from_file(model_, "missing.3ds"));
    EXPECT_FALSE(loader_.load_from_file(model_, "")) << "the directory itself";
    EXPECT_FALSE(loader_.load_from_file(model_, nullptr));
    ASSERT_EQ(mkfifo(dir_.file("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(loader_.load_from_file(model_, "pipe"));
    EXPECT_EQ(num_meshes(), 0u);
    EXPECT_EQ(model_->get_num_materials(), 0u);
}

TEST_F(Loader3D_Lib3dsTest, puts_the_model_directory_before_the_name_as_it_is) {
    dir_.write("model.3ds", file_3ds(mesh("m", triangle())));
    new_model();
    Loader3D_Lib3ds loader;
    EXPECT_TRUE(loader.load_from_file(model_, dir_.file("model.3ds").c_str())) << "none is set";
    loader.set_model_dir((dir_.path() + "/mod").c_str());
    EXPECT_TRUE(loader.load_from_file(model_, "el.3ds"));
    loader.set_model_dir(dir_.path().c_str());
    EXPECT_FALSE(loader.load_from_file(model_, "model.3ds")) << "no separator is added";
}

TEST_F(Loader3D_Lib3dsTest, loads_a_file_without_anything) {
    EXPECT_TRUE(load(file_3ds("")));
    EXPECT_TRUE(load(chunk(0x3D3D, ""))) << "the part with the objects alone is a file too";
    EXPECT_EQ(num_meshes(), 0u);
    EXPECT_EQ(model_->get_num_materials(), 0u);
}

TEST_F(Loader3D_Lib3dsTest, refuses_null_in_every_step) {
    EXPECT_FALSE(loader_.read_materials(nullptr));
    EXPECT_FALSE(loader_.read_meshes(nullptr));
    loader_.write_nodes(nullptr, nullptr);
    EXPECT_FALSE(loader_.build_model(nullptr));
    new_model();
    orvexLib3dsMaterial material;
    EXPECT_FALSE(loader_.build_material(nullptr, model_));
    EXPECT_FALSE(loader_.build_material(&material, nullptr));
    sLib3dsMesh mesh;
    EXPECT_FALSE(loader_.build_mesh(nullptr, model_));
    EXPECT_FALSE(loader_.build_mesh(&mesh, nullptr));
    EXPECT_FALSE(loader_.build_mesh(&mesh, model_)) << "without vertices";
    EXPECT_TRUE(loader_.build_model(model_)) << "there is nothing to build";
    EXPECT_EQ(num_meshes(), 0u);
    loader_.free_memory();
}

TEST_F(Loader3D_Lib3dsTest, records_begin_with_their_defaults) {
    const orvexLib3dsMaterial material;
    EXPECT_EQ(material.material, nullptr);
    EXPECT_STREQ(material.name, "");
    EXPECT_EQ(material.ambient, (Lib3dsFloat4{0.7f, 0.7f, 0.7f, 1.0f}));
    EXPECT_EQ(material.diffuse, (Lib3dsFloat4{0.2f, 0.4f, 0.9f, 1.0f}));
    EXPECT_EQ(material.specular, (Lib3dsFloat4{0.1f, 0.1f, 0.1f, 1.0f}));
    EXPECT_EQ(material.shininess, 16.0f);
    EXPECT_EQ(material.opacity, 1.0f);
    EXPECT_STREQ(material.texture_filename, "");
    const sLib3dsFaceMaterial face;
    EXPECT_EQ(face.face, 0u);
    EXPECT_EQ(face.material, 0u);
    const sLib3dsMesh mesh;
    EXPECT_EQ(mesh.mesh, nullptr);
    EXPECT_STREQ(mesh.name, "");
    EXPECT_EQ(mesh.num_vertices, 0u);
    EXPECT_EQ(mesh.vertices, nullptr);
    EXPECT_EQ(mesh.num_normals, 0u);
    EXPECT_EQ(mesh.normals, nullptr);
    EXPECT_EQ(mesh.num_texcoords, 0u);
    EXPECT_EQ(mesh.texcoords, nullptr);
    EXPECT_EQ(mesh.num_faces, 0u);
    EXPECT_EQ(mesh.faces, nullptr);
    EXPECT_EQ(mesh.face_materials, nullptr);
}

TEST_F(Loader3D_Lib3dsTest, logs_nothing_whatever_comes_of_a_load) {
    const LogCapture log;
    EXPECT_TRUE(load(full_file()));
    EXPECT_FALSE(load("no model"));
    EXPECT_FALSE(loader_.load_from_file(model_, "missing.3ds"));
    EXPECT_FALSE(loader_.load_from_file(nullptr, "model.3ds"));
    EXPECT_TRUE(load(file_3ds(mesh("two vertices", points({{0, 0, 0}, {1, 0, 0}})))));
    EXPECT_EQ(log.messages(), Names());
}

// --- The steps -------------------------------------------------------------------------------

Lib3dsFilePtr read_3ds(const std::string& bytes) {
    return read_3ds_bytes(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

TEST_F(Loader3D_Lib3dsTest, finds_no_materials_where_there_are_none) {
    EXPECT_FALSE(loader_.read_materials(read_3ds(file_3ds(mesh("m", triangle()))).get()));
    EXPECT_TRUE(loader_.read_materials(read_3ds(file_3ds(material("m"))).get()));
}

TEST_F(Loader3D_Lib3dsTest, writes_new_names_into_the_files_records) {
    const Lib3dsFilePtr shared = read_3ds(file_3ds(material("a") + material("b") + material("a")));
    loader_.read_materials(shared.get());
    EXPECT_STREQ(shared->materials[0]->name, "orvex_mat_0");
    EXPECT_STREQ(shared->materials[1]->name, "orvex_mat_1");
    EXPECT_STREQ(shared->materials[2]->name, "orvex_mat_2");
    const Lib3dsFilePtr unlike = read_3ds(file_3ds(material("a") + material("A")));
    loader_.read_materials(unlike.get());
    EXPECT_STREQ(unlike->materials[0]->name, "a");
    EXPECT_STREQ(unlike->materials[1]->name, "A");
}

TEST_F(Loader3D_Lib3dsTest, writes_placed_vertices_into_the_files_records_and_leaves_the_faces) {
    const Lib3dsFilePtr file =
        read_3ds(file_3ds(mesh("m", triangle()), mesh_node("m", position(10, 20, 30))));
    lib3ds_file_eval(file.get(), 0.0f);
    const Lib3dsMesh& mesh = *file->meshes[0];
    const Lib3dsFace* const faces = mesh.faces;
    EXPECT_TRUE(loader_.read_meshes(file.get()));
    EXPECT_FLOAT_EQ(mesh.vertices[1][0], 12.0f);
    EXPECT_FLOAT_EQ(mesh.vertices[1][1], 20.0f);
    EXPECT_FLOAT_EQ(mesh.vertices[1][2], 30.0f);
    EXPECT_EQ(mesh.faces, faces);
    EXPECT_EQ(mesh.nfaces, 1);
}

TEST_F(Loader3D_Lib3dsTest, builds_what_it_read_as_often_as_it_is_asked) {
    const Lib3dsFilePtr file = read_3ds(file_3ds(mesh("m", triangle()), mesh_node("m")));
    lib3ds_file_eval(file.get(), 0.0f);
    loader_.read_meshes(file.get());
    new_model();
    EXPECT_TRUE(loader_.build_model(model_));
    EXPECT_TRUE(loader_.build_model(model_));
    ASSERT_EQ(num_meshes(), 2u);
    for (unsigned long i = 0; i < 2; ++i)
        expect_vec4(mesh_at(i)->get_vertex_position(2), 0, 0, -3, 1);
    loader_.free_memory();
    EXPECT_TRUE(loader_.build_model(model_));
    EXPECT_EQ(num_meshes(), 2u);
}

TEST_F(Loader3D_Lib3dsTest, gives_faces_a_default_material_for_a_number_that_no_material_has) {
    const Lib3dsFilePtr file =
        read_3ds(file_3ds(material("paint") + mesh("m", triangle()), mesh_node("m")));
    lib3ds_file_eval(file.get(), 0.0f);
    loader_.read_materials(file.get());
    for (const int number : {1, 70000, -2}) {
        file->meshes[0]->faces[0].material = number;
        loader_.read_meshes(file.get());
    }
    new_model();
    loader_.build_model(model_);
    ASSERT_EQ(num_meshes(), 3u);
    for (unsigned long i = 0; i < 3; ++i) {
        ASSERT_EQ(mesh_at(i)->get_num_materials(), 1u);
        EXPECT_NE(mesh_at(i)->get_material_by_index(0), only_material());
        EXPECT_EQ(store(i).face_materials[0], mesh_at(i)->get_material_by_index(0)->getid());
    }
}

// --- Materials -------------------------------------------------------------------------------

TEST_F(Loader3D_Lib3dsTest, keeps_names_that_all_differ) {
    ASSERT_TRUE(load(file_3ds(material("red") + material("green") + material(""))));
    EXPECT_EQ(material_names(), (Names{"red", "green", ""}));
}

TEST_F(Loader3D_Lib3dsTest, numbers_all_materials_if_two_share_a_name) {
    ASSERT_TRUE(load(file_3ds(material("red") + material("blue") + material("red"))));
    EXPECT_EQ(material_names(), (Names{"orvex_mat_0", "orvex_mat_1", "orvex_mat_2"}));
}

TEST_F(Loader3D_Lib3dsTest, faces_keep_their_material_when_it_is_renamed) {
    ASSERT_TRUE(load(file_3ds(material("red") + material("blue") + material("blue") +
                              mesh("m", points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}) +
                                            faces({{0, 1, 2}}, face_material("blue", {0}))))));
    EXPECT_EQ(store().face_materials[0], model_->get_material_by_name("orvex_mat_1")->getid());
}

TEST_F(Loader3D_Lib3dsTest, takes_colours_with_alpha_1) {
    ASSERT_TRUE(load(file_3ds(
        material("m", ambient(255, 0, 51) + diffuse(0, 102, 255) + specular(153, 204, 0)))));
    expect_vec4(only_material()->get_ambient(), 1.0f, 0.0f, 0.2f, 1.0f);
    expect_vec4(only_material()->get_diffuse(), 0.0f, 0.4f, 1.0f, 1.0f);
    expect_vec4(only_material()->get_specular(), 0.6f, 0.8f, 0.0f, 1.0f);
}

TEST_F(Loader3D_Lib3dsTest, raises_two_to_the_shininess) {
    struct Row {
        int percent;
        float shininess;
    };
    for (const Row& row : {Row{0, 2.0f}, Row{10, 4.0f}, Row{50, 64.0f}, Row{100, 2048.0f},
                           Row{-10, 1.0f}, Row{-32768, 1.0f /* 0 becomes 1 */}}) {
        MaterialMgr::get()->release_all_resources(nullptr, nullptr);
        ASSERT_TRUE(load(file_3ds(material("m", shininess(row.percent)))));
        EXPECT_FLOAT_EQ(only_material()->get_shininess(), row.shininess) << row.percent;
    }
}

TEST_F(Loader3D_Lib3dsTest, turns_transparency_into_opacity) {
    ASSERT_TRUE(load(file_3ds(material("a", transparency(25)) + material("b"))));
    EXPECT_EQ(model_->get_material_by_name("a")->get_opacity(), 0.75f);
    EXPECT_EQ(model_->get_material_by_name("b")->get_opacity(), 1.0f);
}

TEST_F(Loader3D_Lib3dsTest, queues_the_first_texture_and_no_other_map) {
    ASSERT_TRUE(load(
        file_3ds(material("a", texture_map(0xA200, "wood.png") + texture_map(0xA33A, "second.png") +
                                   texture_map(0xA230, "bump.png")) +
                 material("b", texture_map(0xA230, "bump.png")))));
    const Material* const a = model_->get_material_by_name("a");
    ASSERT_EQ(a->async_loading_get_num_texture_filenames(), 1u);
    EXPECT_STREQ(a->async_loading_get_texture_filename(0), "wood.png");
    EXPECT_EQ(model_->get_material_by_name("b")->async_loading_get_num_texture_filenames(), 0u);
}

TEST_F(Loader3D_Lib3dsTest, takes_names_to_their_full_length) {
    const std::string longest(63, 'n');
    ASSERT_TRUE(load(
        file_3ds(material(longest, texture_map(0xA200, longest)) + mesh(longest, triangle()))));
    EXPECT_EQ(material_names(), Names{longest});
    EXPECT_EQ(only_material()->async_loading_get_texture_filename(0), longest);
    EXPECT_EQ(mesh_names(), Names{longest});
}

std::string painted_triangle() {
    return file_3ds(material("paint") +
                    mesh("m", points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}) +
                                  faces({{0, 1, 2}}, face_material("paint", {0}))));
}

TEST_F(Loader3D_Lib3dsTest, gives_faces_a_default_material_on_the_second_load) {
    ASSERT_TRUE(load(painted_triangle()));
    Material* const paint = only_material();
    EXPECT_EQ(store().face_materials[0], paint->getid());
    EXPECT_EQ(mesh_at(0)->get_num_materials(), 1u);

    auto* const second = new Model;
    second->add_ref();
    ASSERT_TRUE(loader_.load_from_file(second, "model.3ds"));
    EXPECT_EQ(second->get_num_materials(), 1u);
    EXPECT_EQ(second->get_material_by_name("paint"), paint);
    auto* const mesh = static_cast<Mesh*>(second->get_child(0));
    ASSERT_EQ(mesh->get_num_materials(), 1u);
    Material* const fallback = mesh->get_material_by_index(0);
    EXPECT_NE(fallback, paint);
    EXPECT_EQ(std::string(fallback->get_name()), "node_" + std::to_string(fallback->getid()));
    EXPECT_EQ(mesh->get_mesh_data()->face_materials[0], fallback->getid());
    second->kill(nullptr, nullptr);
}

TEST_F(Loader3D_Lib3dsTest, adds_a_known_material_only_to_a_model_that_lacks_it) {
    Material* const known = MaterialMgr::get()->create_material("paint");
    new_model();
    model_->add_material(known, nullptr);
    ASSERT_TRUE(load_file("model.3ds", painted_triangle()));
    EXPECT_EQ(model_->get_num_materials(), 1u);
    EXPECT_EQ(only_material(), known);
    EXPECT_EQ(MaterialMgr::get()->get_num_resources(), 2u) << "the mesh has one of its own";
}

TEST_F(Loader3D_Lib3dsTest, gives_a_face_without_material_the_first) {
    ASSERT_TRUE(load(file_3ds(
        material("first") + material("second") +
        mesh("m", points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}) +
                      faces({{0, 1, 2}, {0, 2, 1}, {1, 2, 0}},
                            face_material("second", {1}) + face_material("unknown", {2}))))));
    const int first = model_->get_material_by_name("first")->getid();
    EXPECT_EQ(store().face_materials[0], first);
    EXPECT_EQ(store().face_materials[1], model_->get_material_by_name("second")->getid());
    EXPECT_EQ(store().face_materials[2], first) << "a name that no material has";
    ASSERT_EQ(mesh_at(0)->get_num_materials(), 2u) << "no default material is in use";
    EXPECT_STREQ(mesh_at(0)->get_material_by_index(0)->get_name(), "first");
    EXPECT_STREQ(mesh_at(0)->get_material_by_index(1)->get_name(), "second");
}

TEST_F(Loader3D_Lib3dsTest, gives_faces_a_default_material_if_the_file_has_none) {
    ASSERT_TRUE(load(file_3ds(mesh("a", triangle()) + mesh("b", triangle()))));
    EXPECT_EQ(model_->get_num_materials(), 0u);
    ASSERT_EQ(mesh_at(0)->get_num_materials(), 1u);
    EXPECT_EQ(store(0).face_materials[0], mesh_at(0)->get_material_by_index(0)->getid());
    EXPECT_NE(store(0).face_materials[0], store(1).face_materials[0]) << "each mesh has its own";
}

TEST_F(Loader3D_Lib3dsTest, makes_a_default_material_for_every_mesh_used_or_not) {
    ASSERT_TRUE(load(painted_triangle()));
    EXPECT_EQ(MaterialMgr::get()->get_num_resources(), 2u);
}

// --- Meshes ----------------------------------------------------------------------------------

// The file's y comes out as -z, a zero as a negative one.
TEST_F(Loader3D_Lib3dsTest, turns_the_z_axis_up) {
    ASSERT_TRUE(load(
        file_3ds(mesh("m", points({{1, 2, 3}, {0, 0, 0}, {-4, 5, -6}}) + faces({{2, 0, 1}})))));
    expect_vec4(mesh_at(0)->get_vertex_position(0), 1, 3, -2, 1);
    expect_vec4(mesh_at(0)->get_vertex_position(2), -4, -6, -5, 1);
    unsigned a = 9, b = 9, c = 9;
    mesh_at(0)->get_face_indexes(0, &a, &b, &c);
    EXPECT_EQ(a, 2u) << "faces keep their winding";
    EXPECT_EQ(b, 0u);
    EXPECT_EQ(c, 1u);
    EXPECT_EQ(store().index_bits, 16);
    EXPECT_EQ(mesh_at(0)->get_parent(), model_);
}

TEST_F(Loader3D_Lib3dsTest, shares_vertices_as_the_file_does) {
    ASSERT_TRUE(load(file_3ds(mesh("m", points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}) +
                                            faces({{0, 1, 2}, {0, 2, 3}})))));
    EXPECT_EQ(mesh_at(0)->get_num_vertices(nullptr), 4u);
    EXPECT_EQ(mesh_at(0)->get_num_faces(nullptr), 2u);
}

TEST_F(Loader3D_Lib3dsTest, takes_texture_coordinates_where_there_are_any) {
    const std::string arrays = points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}) + faces({{0, 1, 2}});
    ASSERT_TRUE(load(file_3ds(mesh("with", arrays + texcoords({{0.25f, 0.5f}, {1, -2}})) +
                                  mesh("without", arrays),
                              mesh_node("with") + mesh_node("without"))));
    expect_vec4(mesh_at(0)->get_vertex_uv(0, 0), 0.25f, 0.5f, 0, 1);
    expect_vec4(mesh_at(0)->get_vertex_uv(1, 0), 1, -2, 0, 1);
    expect_vec4(mesh_at(0)->get_vertex_uv(2, 0), 0, 0, 0, 1);
    for (unsigned long i = 0; i < 3; ++i)
        expect_vec4(mesh_at(1)->get_vertex_uv(i, 0), 0, 0, 0, 1);
}

// The array that shares its pages until somebody writes it.
TEST_F(Loader3D_Lib3dsTest, a_large_mesh_without_texture_coordinates_has_those_of_fresh_vertices) {
    constexpr unsigned count = 65535;
    ASSERT_TRUE(load(
        file_3ds(mesh("m", points(std::vector<Float3>(count, {1, 2, 3})) + faces({{0, 1, 2}})))));
    ASSERT_EQ(store().num_vertices, count);
    EXPECT_TRUE(std::all_of(store().uv0.data, store().uv0.data + count,
                            [](const vec4& uv) { return uv == vec4(0, 0, 0, 1); }));
}

TEST_F(Loader3D_Lib3dsTest, texture_coordinates_beyond_the_points_make_more_vertices) {
    ASSERT_TRUE(
        load(file_3ds(mesh("m", points({{1, 1, 1}}) + texcoords({{0, 0}, {0, 0}, {0, 0}, {7, 8}}) +
                                    faces({{0, 1, 3}})))));
    EXPECT_EQ(mesh_at(0)->get_num_vertices(nullptr), 4u);
    expect_vec4(mesh_at(0)->get_vertex_position(3), 0, 0, -0.0f, 1);
    expect_vec4(mesh_at(0)->get_vertex_uv(3, 0), 7, 8, 0, 1);
}

TEST_F(Loader3D_Lib3dsTest, paints_vertices_white) {
    ASSERT_TRUE(load(file_3ds(mesh("m", triangle()))));
    for (unsigned long i = 0; i < 3; ++i)
        expect_vec4(mesh_at(0)->get_vertex_color(i), 1, 1, 1, 1);
}

/// Two triangles that stand square on each other, along z and along y: corner normals are
/// (0, 0, 1) for the first three and (0, 1, 0) for the other three.
std::string corner() {
    return points({{0, 0, 0},
                   {1, 0, 0},
                   {0, 1, 0},
                   {0, 0, 1},
                   {5, 5, 5},
                   {6, 6, 6},
                   {7, 7, 7},
                   {8, 8, 8}}) +
           faces({{0, 1, 2}, {0, 3, 1}});
}

TEST_F(Loader3D_Lib3dsTest, gives_corner_normals_to_vertices_by_number) {
    ASSERT_TRUE(load(file_3ds(mesh("m", corner()))));
    for (unsigned long i = 0; i < 3; ++i)
        expect_vec4(mesh_at(0)->get_vertex_normal(i), 0, 1, 0, 0);
    // The third component isn't turned around as that of positions is.
    for (unsigned long i = 3; i < 6; ++i)
        expect_vec4(mesh_at(0)->get_vertex_normal(i), 0, 0, 1, 0);
    // There are no more corners.
    MeshData fresh;
    ASSERT_TRUE(fresh.alloc_vertex_data(1));
    const vec3 untouched = fresh.get_normal(0);
    for (unsigned long i = 6; i < 8; ++i)
        expect_vec4(mesh_at(0)->get_vertex_normal(i), untouched.x, untouched.y, untouched.z, 0);
}

TEST_F(Loader3D_Lib3dsTest, gives_corner_normals_to_faces_by_number) {
    ASSERT_TRUE(load(file_3ds(mesh("m", corner()))));
    for (int i = 0; i < 2; ++i) {
        EXPECT_FLOAT_EQ(store().face_normals[i].x, 0.0f);
        EXPECT_FLOAT_EQ(store().face_normals[i].y, 0.0f);
        EXPECT_FLOAT_EQ(store().face_normals[i].z, 1.0f) << "of corner " << i << ", not turned";
    }
}

/// Faces that turn around the x axis step by step, each with three points of its own.
std::string fan_of(unsigned count, const std::string& groups) {
    std::vector<Float3> corners;
    std::vector<Index3> triangles;
    for (unsigned i = 0; i < count; ++i) {
        const float angle = static_cast<float>(i) * 0.1f;
        corners.insert(corners.end(),
                       {{0, 0, 0}, {1, 0, 0}, {0, std::cos(angle), std::sin(angle)}});
        triangles.push_back({3 * i, 3 * i + 1, 3 * i + 2});
    }
    return points(corners) + faces(triangles, groups);
}

TEST_F(Loader3D_Lib3dsTest, gives_every_vertex_the_normal_of_its_number_smoothed_or_not) {
    constexpr unsigned count = 10;
    for (const std::string& groups :
         {std::string(), smooth_groups(std::vector<std::uint32_t>(count, 0)),
          smooth_groups({1, 2, 4, 8, 16, 32, 64, 128, 256, 512})}) {
        ASSERT_TRUE(load(file_3ds(mesh("m", fan_of(count, groups)))));
        for (unsigned long i = 0; i < 3 * count; ++i) {
            const float angle = static_cast<float>(i / 3) * 0.1f;
            const vec4 normal = mesh_at(0)->get_vertex_normal(i);
            EXPECT_NEAR(normal.x, 0.0f, 1e-6f) << i;
            EXPECT_NEAR(normal.y, std::cos(angle), 1e-6f) << i;
            EXPECT_NEAR(normal.z, -std::sin(angle), 1e-6f) << i;
        }
    }
}

TEST_F(Loader3D_Lib3dsTest, gives_every_face_the_normal_of_the_corner_of_its_number) {
    constexpr unsigned count = 11;
    // Of one triangle, its front and its back by turns.
    std::vector<Index3> same(count, {0, 1, 2});
    for (unsigned i = 0; i < count; i += 2)
        same[i] = {0, 2, 1};
    ASSERT_TRUE(load(file_3ds(mesh("m", points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}) + faces(same)))));
    for (unsigned i = 0; i < count; ++i)
        EXPECT_FLOAT_EQ(store().face_normals[i].z, (i / 3) % 2 == 0 ? -1.0f : 1.0f) << i;
}

/// Normals without smoothing are made some thousand faces at a time.
TEST_F(Loader3D_Lib3dsTest, gives_large_meshes_the_normals_of_their_numbers) {
    constexpr unsigned count = 65535;
    const auto is_turned = [](unsigned face) { return (face * 2654435761u >> 16 & 1) != 0; };
    std::vector<Index3> same(count, {0, 1, 2});
    for (unsigned i = 0; i < count; ++i)
        if (is_turned(i))
            same[i] = {0, 2, 1};
    std::vector<Float3> corners(count, {0, 0, 0});
    corners[1] = {1, 0, 0};
    corners[2] = {0, 1, 0};
    ASSERT_TRUE(load(file_3ds(mesh("m", points(corners) + faces(same)))));
    for (unsigned i = 0; i < count; ++i) {
        const float up = is_turned(i / 3) ? -1.0f : 1.0f;
        ASSERT_FLOAT_EQ(store().face_normals[i].z, up) << i;
        ASSERT_FLOAT_EQ(mesh_at(0)->get_vertex_normal(i).y, up) << i;
    }
}

TEST_F(Loader3D_Lib3dsTest, smooths_normals_within_a_group) {
    const std::string arrays = points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}) +
                               faces({{0, 1, 2}, {0, 3, 1}}, smooth_groups({1, 1}));
    ASSERT_TRUE(load(file_3ds(mesh("m", arrays))));
    const float half = std::sqrt(0.5f);
    expect_vec4(mesh_at(0)->get_vertex_normal(0), 0, half, half, 0);
    expect_vec4(mesh_at(0)->get_vertex_normal(2), 0, 1, 0, 0);
}

TEST_F(Loader3D_Lib3dsTest, leaves_out_meshes_that_cannot_be_built) {
    ASSERT_TRUE(load(file_3ds(
        mesh("two vertices", points({{0, 0, 0}, {1, 0, 0}}) + faces({{0, 1, 0}})) +
        mesh("no faces", points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}})) +
        mesh("faces of nothing", points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}) + faces({})) +
        mesh("no vertices", faces({{0, 1, 2}})) + mesh("nothing", "") + mesh("good", triangle()))));
    EXPECT_EQ(mesh_names(), Names{"good"});
}

TEST_F(Loader3D_Lib3dsTest, fills_both_layouts_of_vertices) {
    dir_.write("model.3ds",
               file_3ds(mesh("m", triangle() + texcoords({{0, 0}, {1, 0}, {0.5f, 1}}))));
    for (const bool separate : {true, false}) {
        new_model();
        model_->set_mesh_vertex_alloc_params(separate, separate ? 0 : 16);
        ASSERT_TRUE(loader_.load_from_file(model_, "model.3ds"));
        EXPECT_EQ(store().vertices == nullptr, separate);
        expect_vec4(mesh_at(0)->get_vertex_position(2), 0, 0, -3, 1);
        expect_vec4(mesh_at(0)->get_vertex_uv(2, 0), 0.5f, 1, 0, 1);
        expect_vec4(mesh_at(0)->get_vertex_normal(2), 0, 1, 0, 0);
    }
}

// --- Nodes -----------------------------------------------------------------------------------

std::ptrdiff_t num_open_files() {
    const auto files = std::filesystem::directory_iterator("/proc/self/fd");
    return std::distance(begin(files), end(files));
}

TEST_F(Loader3D_Lib3dsTest, leaves_no_file_open) {
    new_model();
    ASSERT_TRUE(load_file("model.3ds", full_file()));
    const std::ptrdiff_t before = num_open_files();
    for (int i = 0; i < 3; ++i) {
        new_model();
        EXPECT_TRUE(load_file("model.3ds", full_file()));
        EXPECT_FALSE(load_file("broken.3ds", full_file().substr(0, 100)));
    }
    EXPECT_EQ(num_open_files(), before);
}

TEST_F(Loader3D_Lib3dsTest, shows_every_mesh_of_a_file_without_nodes) {
    ASSERT_TRUE(
        load(file_3ds(mesh("a", triangle()) + mesh("b", triangle()) + mesh("c", triangle()))));
    // lib3ds puts each new node first.
    EXPECT_EQ(mesh_names(), (Names{"c", "b", "a"}));
}

TEST_F(Loader3D_Lib3dsTest, shows_only_what_nodes_show) {
    ASSERT_TRUE(load(file_3ds(mesh("a", triangle()) + mesh("b", triangle()),
                              mesh_node("b") + mesh_node("missing"))));
    EXPECT_EQ(mesh_names(), Names{"b"});
}

TEST_F(Loader3D_Lib3dsTest, names_meshes_after_their_instance_or_node) {
    ASSERT_TRUE(load(file_3ds(mesh("a", triangle()) + mesh("b", triangle()),
                              mesh_node("a", instance_name("left")) + mesh_node("b"))));
    EXPECT_EQ(mesh_names(), (Names{"left", "b"}));
}

TEST_F(Loader3D_Lib3dsTest, places_a_mesh_by_its_node_pivot_and_own_matrix) {
    const std::string object =
        mesh("m", points({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}) + faces({{0, 1, 2}}) +
                      mesh_matrix({{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 7}}}));
    ASSERT_TRUE(load(file_3ds(object, mesh_node("m", pivot(1, 2, 3) + position(10, 20, 30) +
                                                         track(0xB022, {key(0, {2, 1, 1})})))));
    // The mesh's own origin goes away first, then the pivot, then the node scales and moves.
    expect_vec4(mesh_at(0)->get_vertex_position(0), 10, 20, -18, 1);
    expect_vec4(mesh_at(0)->get_vertex_position(1), 8, 20, -19, 1);
}

TEST_F(Loader3D_Lib3dsTest, places_by_node_times_inverse_and_not_the_other_way) {
    const std::string object =
        mesh("m", points({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}) + faces({{0, 1, 2}}) +
                      mesh_matrix({{{2, 0, 0}, {0, 2, 0}, {0, 0, 2}, {0, 0, 0}}}));
    ASSERT_TRUE(load(file_3ds(object, mesh_node("m", position(4, 0, 0)))));
    expect_vec4(mesh_at(0)->get_vertex_position(0), 4.5f, 0, -0.0f, 1);
}

TEST_F(Loader3D_Lib3dsTest, takes_the_first_frame_of_the_animation) {
    ASSERT_TRUE(load(file_3ds(mesh("m", triangle()),
                              mesh_node("m", track(0xB020, {key(0, {1, 0, 0}), key(50, {5, 0, 0}),
                                                            key(100, {9, 0, 0})})))));
    expect_vec4(mesh_at(0)->get_vertex_position(0), 1, 0, -0.0f, 1);
}

TEST_F(Loader3D_Lib3dsTest, places_a_shared_mesh_once_more_for_each_node) {
    ASSERT_TRUE(load(file_3ds(mesh("m", triangle()),
                              mesh_node("m", instance_name("one") + position(1, 0, 0)) +
                                  mesh_node("m", instance_name("two") + position(10, 0, 0)))));
    EXPECT_EQ(mesh_names(), (Names{"one", "two"}));
    expect_vec4(mesh_at(0)->get_vertex_position(0), 1, 0, -0.0f, 1);
    expect_vec4(mesh_at(1)->get_vertex_position(0), 11, 0, -0.0f, 1);
}

TEST_F(Loader3D_Lib3dsTest, places_a_mesh_with_two_objects_of_its_name_by_the_first) {
    ASSERT_TRUE(
        load(file_3ds(mesh("m", points({{1, 0, 0}, {2, 0, 0}, {1, 1, 0}}) + faces({{0, 1, 2}})) +
                          mesh("m", points({{5, 0, 0}, {6, 0, 0}, {5, 1, 0}}) + faces({{0, 1, 2}})),
                      mesh_node("m"))));
    ASSERT_EQ(num_meshes(), 1u);
    expect_vec4(mesh_at(0)->get_vertex_position(0), 1, 0, -0.0f, 1);
}

TEST_F(Loader3D_Lib3dsTest, walks_the_children_of_a_node) {
    ASSERT_TRUE(load(file_3ds(mesh("a", triangle()) + mesh("b", triangle()) + mesh("c", triangle()),
                              mesh_node("a", node_id(0) + position(1, 0, 0)) +
                                  mesh_node("b", node_id(1) + position(2, 0, 0), 0) +
                                  mesh_node("c", node_id(2)))));
    EXPECT_EQ(mesh_names(), (Names{"a", "b", "c"}));
    expect_vec4(mesh_at(1)->get_vertex_position(0), 3, 0, -0.0f, 1);
}

TEST_F(Loader3D_Lib3dsTest, passes_over_other_nodes_with_all_below_them) {
    ASSERT_TRUE(load(file_3ds(mesh("a", triangle()) + mesh("b", triangle()),
                              chunk(0xB003, node_id(0) + node_header("camera")) +
                                  mesh_node("a", node_id(1), 0) + mesh_node("b", node_id(2)) +
                                  chunk(0xB005, node_id(3) + node_header("light")))));
    EXPECT_EQ(mesh_names(), Names{"b"});
}

TEST_F(Loader3D_Lib3dsTest, loads_a_file_that_has_everything) {
    ASSERT_TRUE(load(full_file()));
    EXPECT_EQ(mesh_names(), (Names{"one", "two"}));
    EXPECT_EQ(material_names(), (Names{"paint", "glass"}));
    EXPECT_EQ(store(0).num_vertices, 4u);
    EXPECT_EQ(store(0).num_faces, 2u);
    EXPECT_EQ(store(1).face_materials[1], model_->get_material_by_name("glass")->getid());
}

TEST_F(Loader3D_Lib3dsTest, keeps_nothing_from_one_load_to_the_next) {
    ASSERT_TRUE(load(painted_triangle()));
    drop_model();
    MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    ASSERT_TRUE(load(file_3ds(mesh("other", triangle()))));
    EXPECT_EQ(mesh_names(), Names{"other"});
    EXPECT_EQ(model_->get_num_materials(), 0u);
}

// --- Files that nobody here wrote ------------------------------------------------------------

TEST_F(Loader3D_Lib3dsTest, loads_models_of_others) {
    struct Row {
        const char* name;
        unsigned long num_vertices;
        unsigned long num_faces;
        Names materials;
    };
    loader_.set_model_dir("/usr/share/glmark2/models/");
    for (const Row& row :
         {Row{"horse.3ds", 3582, 7172, {"Material.001"}},
          Row{"cat.3ds", 7340, 14348, {"Material.002"}}, Row{"asteroid-high.3ds", 24002, 48000, {}},
          Row{"cube.3ds", 20, 12, {"Materialcrat"}}}) {
        new_model();
        ASSERT_TRUE(loader_.load_from_file(model_, row.name));
        ASSERT_EQ(num_meshes(), 1u) << row.name;
        EXPECT_EQ(store().num_vertices, row.num_vertices) << row.name;
        EXPECT_EQ(store().num_faces, row.num_faces) << row.name;
        EXPECT_EQ(material_names(), row.materials) << row.name;
    }
}

} // namespace
} // namespace orvex_test
