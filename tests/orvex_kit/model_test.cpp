#include "orvex_kit/model.h"

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

#include <orvex/assets/materials/material.h>
#include <orvex/assets/materials/material_mgr.h>
#include <orvex/assets/textures/texture.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/geometry/lines/polyline.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/geometry/points/vertex_pool.h>
#include <orvex/kernel/core.h>
#include <orvex/math/mat4.h>

#include "orvex_kit/engine.h"
#include "tests/orvex_kit/scripted_loader.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;
using orvex::MaterialMgr;
using orvex::TextureMgr;
using orvex::vec4;
using Notes = std::vector<std::string>;
using Numbers = std::array<float, 3>;

Numbers numbers(const orvex::vec3& v) {
    return {v.x, v.y, v.z};
}

const std::string sample = ORVEX_EXAMPLE_DATA "/lighthouse.obj";

/// A triangle of a material.
std::string triangle_of(const std::string& material) {
    return "mtllib m.mtl\nv 0 0 0\nv 2 0 0\nv 0 1 -3\ng part\nusemtl " + material + "\nf 1 2 3\n";
}

class ModelTest : public testing::Test {
protected:
    /// Loads a text as an OBJ file.
    Model load(const std::string& text, const ModelOptions& options = {}) const {
        return Model(folder.write("m.obj", text), options);
    }
    /// Loads what a script makes of any file.
    Model load_by(ScriptedLoader::Script script) const {
        ScriptedLoader::add("scripted", std::move(script));
        return Model(folder.write("m.script", "x"), {Normals::file, false, "scripted"});
    }

    const Engine engine{{{}, "", false, false}};
    const TempDir folder;
};

// ------------------------------------------------------------------------------- its life

TEST_F(ModelTest, tells_what_the_sample_holds) {
    const Model model(sample);
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(model.reason(), "");
    EXPECT_EQ(model.loader(), "orvex_plugin_core_obj");
    EXPECT_EQ(model.meshes().size(), 12u);
    EXPECT_EQ(model.num_vertices(), 27246u);
    EXPECT_EQ(model.num_faces(), 9082u);
    EXPECT_EQ(model.num_points(), 0u);
    EXPECT_EQ(model.materials().size(), 9u);
    EXPECT_EQ(model.textures().size(), 4u);
    EXPECT_EQ(model.notes(), Notes());
    EXPECT_EQ(model.files().size(), 6u);
    EXPECT_NE(model.node(), nullptr);
}

TEST_F(ModelTest, is_empty_at_first_and_says_so) {
    Model none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none.reason(), "no model is loaded");
    EXPECT_TRUE(none.meshes().empty() && none.materials().empty() && none.textures().empty() &&
                none.runs().empty() && none.notes().empty() && none.files().empty());
    EXPECT_EQ(none.num_vertices() + none.num_faces() + none.num_points(), 0u);
    EXPECT_TRUE(none.bounds().is_empty);
    EXPECT_TRUE(none.extent().points.empty());
    EXPECT_EQ(none.loader(), "");
    EXPECT_EQ(none.node(), nullptr);
    none.stand_up();
}

TEST_F(ModelTest, moves_and_leaves_an_empty_one) {
    Model first(sample);
    Model second = std::move(first);
    EXPECT_FALSE(first); // NOLINT(bugprone-use-after-move): it is empty, as promised.
    EXPECT_EQ(first.reason(), "no model is loaded");
    EXPECT_TRUE(second);
    first = std::move(second);
    EXPECT_TRUE(first);
    first = Model(folder.file("none.obj"));
    EXPECT_FALSE(first);
}

TEST_F(ModelTest, says_why_a_file_cant_be_read_and_what_can) {
    EXPECT_EQ(Model(folder.file("none.obj")).reason(),
              folder.file("none.obj") + ": No such file or directory");
    const Model points = load("v 0 0 0\nv 1 0 0\n");
    EXPECT_FALSE(points);
    EXPECT_EQ(points.reason(), folder.file("m.obj") + ": no loader can read it as a model (" +
                                   readable_formats() +
                                   "): line 2: the file ends with 2 vertices and no face");
    EXPECT_EQ(readable_formats().rfind("OBJ", 0), 0u) << readable_formats();
}

TEST(Model, says_that_it_needs_an_engine) {
    const Model model(sample);
    EXPECT_FALSE(model);
    EXPECT_EQ(model.reason(), "the engine doesn't run: make a kit::Engine first");
    EXPECT_EQ(readable_formats(), "");
}

TEST(Model, loads_with_an_engine_that_the_host_has_started) {
    orvex::core::start("", false, nullptr, nullptr);
    {
        const Model model(sample);
        EXPECT_TRUE(model) << model.reason();
    }
    orvex::core::stop(nullptr);
}

TEST(Model, is_empty_once_the_engine_has_ended) {
    Model model;
    {
        const Engine engine({{}, "", false, false});
        model = Model(sample);
        EXPECT_TRUE(model);
    }
    EXPECT_FALSE(model);
    EXPECT_EQ(model.reason(), "the engine has ended, and the model with it");
    EXPECT_TRUE(model.meshes().empty());
}

// ------------------------------------------------------------------------------- several at once

TEST_F(ModelTest, keeps_its_own_out_of_the_managers_and_the_hosts_in_their_order) {
    orvex::Material* const first = MaterialMgr::get()->create_material("red");
    orvex::Material* const second = MaterialMgr::get()->create_material("blue");
    orvex::Texture* const texture = TextureMgr::get()->create_texture();
    {
        const Model one(sample);
        const Model two(sample);
        const Model refused = load("nothing");
        for (const Model* model : {&one, &two})
            EXPECT_EQ(model->textures().size(), 4u);
        ASSERT_EQ(MaterialMgr::get()->get_num_resources(), 2u);
        EXPECT_EQ(MaterialMgr::get()->get_resource_by_index(0), first);
        EXPECT_EQ(MaterialMgr::get()->get_resource_by_index(1), second);
        ASSERT_EQ(TextureMgr::get()->get_num_resources(), 1u);
        EXPECT_EQ(TextureMgr::get()->get_resource_by_index(0), texture);
    }
    EXPECT_EQ(first->get_ref(), 1);
    EXPECT_EQ(texture->get_ref(), 1);
}

TEST_F(ModelTest, has_materials_of_its_own_whatever_their_names) {
    orvex::Material* const of_host = MaterialMgr::get()->create_material("paint");
    of_host->set_diffuse(0.5f, 0.5f, 0.5f, 1.0f);
    folder.write("m.mtl", "newmtl paint\nKd 1 0 0\n");
    Model red = load(triangle_of("paint"));
    folder.write("m.mtl", "newmtl paint\nKd 0 0 1\n");
    const Model blue = load(triangle_of("paint"));
    ASSERT_EQ(red.materials().size(), 1u);
    ASSERT_EQ(blue.materials().size(), 1u);
    EXPECT_EQ(red.materials()[0].name, "paint");
    EXPECT_EQ(red.materials()[0].diffuse.x, 1.0f);
    EXPECT_EQ(blue.materials()[0].diffuse.z, 1.0f);
    EXPECT_EQ(blue.materials()[0].diffuse.x, 0.0f);
    red = {};
    EXPECT_EQ(blue.node()->get_material_by_index(0)->get_diffuse().z, 1.0f);
    EXPECT_EQ(MaterialMgr::get()->get_resource("paint"), of_host);
}

// ------------------------------------------------------------------------------- loaders

TEST_F(ModelTest, asks_the_loader_of_a_name_alone) {
    EXPECT_TRUE(Model(sample, {Normals::by_file, false, "orvex_plugin_core_obj"}));
    EXPECT_EQ(Model(sample, {Normals::by_file, false, "none"}).reason(),
              sample + ": no loader can read it as a model (" + readable_formats() +
                  "): no loader is called none");
}

TEST_F(ModelTest, tells_the_loader_that_read_it_though_others_refused_without_a_word) {
    ScriptedLoader::add("first", [](orvex::Model&, const std::string&) { return false; });
    ScriptedLoader::add("second", [](orvex::Model& model, const std::string&) {
        auto* const mesh = new orvex::Mesh;
        mesh->alloc_vertex_data(1);
        model.add_child(mesh);
        return true;
    });
    EXPECT_EQ(Model(folder.write("a.soup", "soup")).loader(), "second");
    EXPECT_TRUE(readable_formats().ends_with(", first, second")) << readable_formats();
}

TEST_F(ModelTest, leaves_nothing_of_a_loader_that_fails_on_the_way) {
    const auto make_things = [](orvex::Model& model) {
        model.add_material(MaterialMgr::get()->create_material("half"), nullptr);
        TextureMgr::get()->create_texture();
        model.add_child(new orvex::Mesh);
    };
    const Model refused = load_by([&](orvex::Model& model, const std::string&) {
        make_things(model);
        return false;
    });
    EXPECT_TRUE(refused.reason().ends_with(": scripted refused it")) << refused.reason();
    ScriptedLoader::add("thrower", [&](orvex::Model& model, const std::string&) -> bool {
        make_things(model);
        throw std::runtime_error("no");
    });
    const Model thrown(folder.file("m.script"), {Normals::file, false, "thrower"});
    EXPECT_TRUE(thrown.reason().ends_with(": the loader threw an exception")) << thrown.reason();
    ScriptedLoader::add("glutton", [&](orvex::Model& model, const std::string&) -> bool {
        make_things(model);
        throw std::bad_alloc();
    });
    EXPECT_THROW(Model(folder.file("m.script"), {Normals::file, false, "glutton"}), std::bad_alloc);
    EXPECT_EQ(MaterialMgr::get()->get_num_resources(), 0u);
    EXPECT_EQ(TextureMgr::get()->get_num_resources(), 0u);
}

TEST_F(ModelTest, takes_what_its_loader_made_along) {
    const Model model = load_by([](orvex::Model& target, const std::string&) {
        auto* const mesh = new orvex::Mesh;
        mesh->alloc_vertex_data(3);
        mesh->alloc_face_data(1, false);
        mesh->set_face_indexes(0, 0, 1, 2);
        orvex::Material* const material = MaterialMgr::get()->create_material("of the mesh");
        material->add_texture(TextureMgr::get()->create_texture_2d(2, 2, orvex::PF_RGB_U8));
        mesh->add_material(material, nullptr);
        mesh->set_material_to_all_faces(material->get_id());
        target.add_child(mesh);
        return true;
    });
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(MaterialMgr::get()->get_num_resources(), 0u);
    EXPECT_EQ(TextureMgr::get()->get_num_resources(), 0u);
    ASSERT_EQ(model.materials().size(), 1u);
    EXPECT_EQ(model.materials()[0].name, "of the mesh");
    EXPECT_EQ(model.runs()[0].material, 0);
}

// ------------------------------------------------------------------------------- what it tells

TEST_F(ModelTest, tells_of_materials_by_the_values_of_the_file) {
    folder.write("m.mtl", "newmtl a\nKa 0.1 0.2 0.3\nKd 0.4 0.5 0.6\nillum 2\nKs 0.7 0.8 0.9\nNs "
                          "500\nd 0.25\nmap_Kd t.png\n");
    const Model model = load(triangle_of("a"));
    ASSERT_EQ(model.materials().size(), 1u);
    const ModelMaterial& told = model.materials()[0];
    EXPECT_EQ(told.name, "a");
    EXPECT_EQ(told.ambient.y, 0.2f);
    EXPECT_EQ(told.diffuse.z, 0.6f);
    EXPECT_EQ(told.specular.x, 0.7f);
    EXPECT_EQ(told.shininess, 64.0f);
    EXPECT_EQ(told.opacity, 0.25f);
    EXPECT_EQ(told.textures, std::vector<std::size_t>{0});
    EXPECT_EQ(model.textures()[0].name, "t.png");
}

TEST_F(ModelTest, tells_of_meshes_with_their_bounds) {
    const Model model = load("v 0 0 0\nv 2 0 0\nv 0 1 -3\nv 5 5 5\nv 6 5 5\nv 5 6 5\n"
                             "g low\nf 1 2 3\ng high\nf 4 5 6\nf 6 5 4\n");
    ASSERT_EQ(model.meshes().size(), 2u);
    const ModelMesh &low = model.meshes()[0], &high = model.meshes()[1];
    EXPECT_EQ(low.name, "low");
    EXPECT_EQ(low.num_vertices, 3u);
    EXPECT_EQ(low.num_faces, 1u);
    EXPECT_FALSE(low.bounds.is_empty);
    EXPECT_EQ(numbers(low.bounds.min), (Numbers{0, 0, -3}));
    EXPECT_EQ(numbers(low.bounds.max), (Numbers{2, 1, 0}));
    EXPECT_EQ(high.num_faces, 2u);
    EXPECT_EQ(numbers(model.bounds().min), (Numbers{0, 0, -3}));
    EXPECT_EQ(numbers(model.bounds().max), (Numbers{6, 6, 5}));
}

/// A mesh of one triangle.
orvex::Mesh* new_triangle() {
    auto* const mesh = new orvex::Mesh;
    mesh->alloc_vertex_data(3);
    mesh->set_vertex_position(1, vec4(1, 0, 0, 1));
    mesh->set_vertex_position(2, vec4(0, 1, 0, 1));
    mesh->alloc_face_data(1, false);
    mesh->set_face_indexes(0, 0, 1, 2);
    return mesh;
}

TEST_F(ModelTest, counts_a_mesh_that_is_used_twice_twice) {
    const Model model = load_by([](orvex::Model& target, const std::string&) {
        orvex::Mesh* const mesh = new_triangle();
        orvex::Mesh* const other = target.create_mesh();
        other->share_mesh_data(nullptr, mesh);
        other->set_position(vec4(10, 0, 0, 1));
        target.add_child(mesh);
        target.add_child(other);
        return true;
    });
    EXPECT_EQ(model.meshes().size(), 2u);
    EXPECT_EQ(model.num_vertices(), 6u);
    EXPECT_EQ(model.num_faces(), 2u);
    EXPECT_EQ(model.runs().size(), 2u);
    EXPECT_EQ(model.meshes()[0].bounds.max.x, 1.0f);
    EXPECT_EQ(model.meshes()[1].bounds.max.x, 11.0f);
    EXPECT_EQ(model.bounds().max.x, 11.0f);
    EXPECT_EQ(model.extent().points.size(), 6u);
}

TEST_F(ModelTest, counts_points_and_lines_and_has_all_of_them_in_its_bounds) {
    const Model model = load_by([](orvex::Model& target, const std::string&) {
        auto* const cloud = new orvex::VertexPool;
        cloud->init_pool(2, false);
        cloud->set_vertex_position(0, vec4(-1, -2, -3, 1));
        cloud->set_vertex_position(1, vec4(1, 2, 3, 1));
        target.add_child(cloud);
        float place = 10;
        for (const auto mode : {orvex::LINE_RENDER_MODE_LINES, orvex::LINE_RENDER_MODE_LINE_STRIP,
                                orvex::LINE_RENDER_MODE_LINE_LOOP}) {
            auto* const line = new orvex::Polyline;
            line->initialize(4, mode);
            line->set_vertex_position(0, place, 0, 0);
            line->set_vertex_position(3, 0, place, 0);
            target.add_child(line);
            place *= 10;
        }
        return true;
    });
    EXPECT_EQ(model.num_points(), 2u);
    EXPECT_EQ(model.num_lines(), 2u + 3u + 4u);
    EXPECT_EQ(numbers(model.bounds().min), (Numbers{-1, -2, -3}));
    EXPECT_EQ(numbers(model.bounds().max), (Numbers{1000, 1000, 3}));
    EXPECT_EQ(model.extent().points.size(), 2u + 3 * 4u);
    EXPECT_EQ(model.extent().points[0].z, -3.0f);
    EXPECT_EQ(model.extent().points[2].x, 10.0f);
    EXPECT_EQ(model.notes(), Notes());
}

TEST_F(ModelTest, moves_points_and_lines_by_its_transform) {
    Model model = load_by([](orvex::Model& target, const std::string&) {
        auto* const cloud = new orvex::VertexPool;
        cloud->init_pool(1, false);
        cloud->set_vertex_position(0, vec4(1, 2, 3, 1));
        target.add_child(cloud);
        auto* const line = new orvex::Polyline;
        line->initialize(2, orvex::LINE_RENDER_MODE_LINES);
        line->set_vertex_position(0, 4, 5, 6);
        line->set_vertex_position(1, 7, 8, 9);
        target.add_child(line);
        return true;
    });
    orvex::mat4 aside;
    aside.init_translate(10, 20, 30);
    ASSERT_EQ(model.set_transform(aside).reason(), "");
    ASSERT_EQ(model.extent().points.size(), 3u);
    EXPECT_EQ(numbers(model.extent().points[0].get_vec3()), (Numbers{11, 22, 33}));
    EXPECT_EQ(numbers(model.extent().points[1].get_vec3()), (Numbers{14, 25, 36}));
    EXPECT_EQ(numbers(model.extent().points[2].get_vec3()), (Numbers{17, 28, 39}));
    EXPECT_EQ(numbers(model.extent().middle.get_vec3()), (Numbers{14, 25, 36}));
    EXPECT_EQ(numbers(model.bounds().max), (Numbers{7, 8, 9}));
}

TEST_F(ModelTest, passes_over_a_part_that_its_loader_has_ended) {
    const Model model = load_by([](orvex::Model& target, const std::string&) {
        orvex::Mesh* const ended = new_triangle();
        target.add_child(ended);
        target.add_child(new_triangle());
        ended->kill(nullptr, nullptr);
        return true;
    });
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(model.meshes().size(), 1u);
    EXPECT_EQ(model.num_faces(), 1u);
}

TEST_F(ModelTest, draws_opaque_runs_before_blended_ones_in_the_order_of_the_file) {
    folder.write("m.mtl", "newmtl glass\nd 0.5\nnewmtl wood\nd 1\n");
    const Model model = load("mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\n"
                             "g a\nusemtl glass\nf 1 2 3\nf 1 2 3\nusemtl wood\nf 1 2 3\n"
                             "usemtl glass\nf 1 2 3\ng b\nusemtl wood\nf 1 2 3\nf 1 3 2\n");
    struct Row {
        std::size_t mesh;
        const char* material;
        std::size_t first, count;
    };
    const Row rows[] = {
        {0, "wood", 2, 1}, {1, "wood", 0, 2}, {0, "glass", 0, 2}, {0, "glass", 3, 1}};
    ASSERT_EQ(model.runs().size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const FaceRun& run = model.runs()[i];
        EXPECT_EQ(run.mesh, rows[i].mesh) << i;
        EXPECT_EQ(model.materials()[static_cast<std::size_t>(run.material)].name, rows[i].material);
        EXPECT_EQ(run.first_face, rows[i].first) << i;
        EXPECT_EQ(run.num_faces, rows[i].count) << i;
        EXPECT_EQ(run.is_blended, i >= 2) << i;
    }
}

TEST_F(ModelTest, stands_up_and_keeps_the_bounds_of_its_file) {
    ScriptedLoader::add("scripted", [](orvex::Model& model, const std::string&) {
        orvex::Mesh* const mesh = new_triangle();
        model.add_child(mesh);
        return true;
    });
    Model model(folder.write("m.script", "x"));
    EXPECT_EQ(model.up_axis(), UpAxis::y);
    EXPECT_EQ(model.file_up_axis(), UpAxis::y);
    model.stand_up();
    EXPECT_EQ(model.extent().points[2].y, 1.0f);
}

TEST_F(ModelTest, looks_for_the_way_up_where_a_format_tells_none) {
    struct Row {
        const char* loader;
        UpAxis up;
    };
    for (const Row& row : {Row{"orvex_stl", UpAxis::minus_z}, Row{"orvex_ply", UpAxis::minus_z},
                           Row{"orvex_off", UpAxis::minus_z}, Row{"orvex_3mf", UpAxis::z},
                           Row{"another", UpAxis::y}}) {
        // It stands on four feet at its largest z.
        ScriptedLoader::add(row.loader, [](orvex::Model& model, const std::string&) {
            auto* const mesh = new orvex::Mesh;
            mesh->alloc_vertex_data(6);
            for (unsigned long i = 0; i < 6; ++i)
                mesh->set_vertex_position(i, vec4(i % 2 == 0 ? 0.0f : 1.0f, static_cast<float>(i),
                                                  i < 4 ? 5.0f : 0.0f, 1.0f));
            mesh->alloc_face_data(1, false);
            mesh->set_face_indexes(0, 0, 1, 2);
            model.add_child(mesh);
            return true;
        });
        const Model model(folder.write("m.script", "x"), {Normals::file, false, row.loader});
        EXPECT_EQ(model.up_axis(), row.up) << row.loader;
        EXPECT_EQ(model.file_up_axis(), row.up) << row.loader;
    }
}

TEST_F(ModelTest, stands_up_where_its_transform_has_put_it) {
    ScriptedLoader::add("orvex_stl", [](orvex::Model& model, const std::string&) {
        auto* const mesh = new orvex::Mesh;
        mesh->alloc_vertex_data(4);
        for (unsigned long i = 0; i < 4; ++i)
            mesh->set_vertex_position(
                i, vec4(static_cast<float>(i % 2), static_cast<float>(i), i < 3 ? 5.0f : 0.0f, 1));
        mesh->alloc_face_data(1, false);
        mesh->set_face_indexes(0, 0, 1, 2);
        model.add_child(mesh);
        return true;
    });
    Model model(folder.write("m.script", "x"), {Normals::file, false, "orvex_stl"});
    ASSERT_EQ(model.up_axis(), UpAxis::minus_z);
    orvex::mat4 aside;
    aside.init_translate(10, 20, 30);
    ASSERT_EQ(model.set_transform(aside).reason(), "");
    EXPECT_EQ(numbers(model.extent().points[3].get_vec3()), (Numbers{11, 23, 30}));
    model.stand_up();
    EXPECT_EQ(model.up_axis(), UpAxis::y);
    EXPECT_NEAR(model.extent().points[3].x, 11.0f, 1e-5f);
    EXPECT_NEAR(model.extent().points[3].y, 20.0f, 1e-5f);
    EXPECT_NEAR(model.extent().points[3].z, 33.0f, 1e-5f);
    ASSERT_EQ(model.set_transform(orvex::mat4()).reason(), "");
    EXPECT_NEAR(model.extent().points[3].z, 3.0f, 1e-5f) << "it stands still";
}

#ifdef ORVEX_WITH_LIB3DS
TEST_F(ModelTest, stands_3ds_files_up_that_lie) {
    Model model("/usr/share/glmark2/models/horse.3ds");
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(model.loader(), "orvex_plugin_core_lib3ds");
    EXPECT_EQ(model.file_up_axis(), UpAxis::minus_z);
    const Bounds before = model.bounds();
    model.stand_up();
    EXPECT_EQ(model.up_axis(), UpAxis::y);
    EXPECT_EQ(model.file_up_axis(), UpAxis::minus_z);
    EXPECT_EQ(numbers(model.bounds().min), numbers(before.min));
    float lowest = std::numeric_limits<float>::max();
    for (const vec4& point : model.extent().points)
        lowest = std::min(lowest, point.y);
    EXPECT_NEAR(lowest, -before.max.z, std::abs(before.max.z) * 1e-5f);
}
#endif

// ------------------------------------------------------------------------------- notes

TEST_F(ModelTest, notes_what_is_odd_in_files) {
    struct Row {
        const char* text;
        Notes notes;
    };
    for (const Row& row :
         {Row{"v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", {}},
          Row{"v 1 1 1\nv 1 1 1\nv 1 1 1\nf 1 2 3\n",
              {"none of its faces has an area", "all 3 of its vertices lie at one point"}},
          Row{"v 1 1 1\nf 7 8 9\n",
              {"none of its faces has an area",
               "all 3 of its vertices lie at one point, the origin, as they do where faces name "
               "vertices that the file doesn't have, or count them backwards"}},
          Row{"v 1 1 1\nv 2 1 1\nv 1 2 1\nf -3 -2 -1\n",
              {"none of its faces has an area",
               "all 3 of its vertices lie at one point, the origin, as they do where faces name "
               "vertices that the file doesn't have, or count them backwards"}},
          Row{"v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\n", {"none of its faces has an area"}},
          Row{"v nan 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 2 3\nf 2 3 4\n",
              {"1 of its 6 vertices have coordinates that are no finite numbers"}}}) {
        const Model model = load(row.text);
        EXPECT_TRUE(model) << model.reason();
        EXPECT_EQ(model.notes(), row.notes) << row.text;
    }
}

TEST_F(ModelTest, notes_that_there_are_points_only) {
    const Model model = load_by([](orvex::Model& target, const std::string&) {
        auto* const mesh = new orvex::Mesh;
        mesh->alloc_vertex_data(2);
        mesh->set_vertex_position(1, vec4(1, 2, 3, 1));
        target.add_child(mesh);
        return true;
    });
    EXPECT_EQ(model.notes(),
              Notes{"it has no faces: its 2 vertices are points, which aren't drawn"});
    EXPECT_EQ(model.num_points(), 2u);
    EXPECT_EQ(model.num_faces(), 0u);
    EXPECT_TRUE(model.runs().empty());
    EXPECT_EQ(numbers(model.bounds().max), (Numbers{1, 2, 3}));
}

TEST_F(ModelTest, notes_that_there_is_nothing) {
    const Model model = load_by([](orvex::Model&, const std::string&) { return true; });
    EXPECT_TRUE(model);
    EXPECT_EQ(model.notes(), Notes{"it has no vertices"});
    EXPECT_TRUE(model.bounds().is_empty);
}

TEST_F(ModelTest, notes_faces_that_name_vertices_which_arent_there) {
    const Model model = load_by([](orvex::Model& target, const std::string&) {
        auto* const mesh = new orvex::Mesh;
        mesh->alloc_vertex_data(3);
        mesh->set_vertex_position(1, vec4(1, 0, 0, 1));
        mesh->set_vertex_position(2, vec4(0, 1, 0, 1));
        mesh->alloc_face_data(2, false);
        mesh->set_face_indexes(0, 0, 1, 2);
        mesh->set_face_indexes(1, 0, 1, 3);
        target.add_child(mesh);
        return true;
    });
    EXPECT_EQ(model.notes(), Notes{"1 of its 2 faces name vertices that aren't there"});
}

} // namespace
} // namespace orvex_test
