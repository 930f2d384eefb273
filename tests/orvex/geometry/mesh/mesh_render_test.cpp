#include "orvex/geometry/mesh/mesh.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/assets/materials/material.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "owned_mesh.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;

namespace {

using Calls = std::vector<std::string>;

class MeshRendering : public testing::Test {
protected:
    MeshRendering()
        : mesh(make_mesh(3, 6)) {
        renderer.name_pointer(mesh->get_mesh_data(), "store");
        renderer.name_pointer(&program, "program");
        renderer.ignored = {"get_projection_matrix", "get_view_matrix", "get_viewport_ptr"};
    }

    /// A material of the mesh, held by the mesh alone.
    Material* add_material(bool textured = false) {
        Material* const material = new Material;
        mesh->add_material(material, nullptr);
        if (textured)
            material->add_texture(new Texture);
        return material;
    }

    Calls names() {
        Calls result;
        for (const std::string& call : renderer.take_calls())
            result.push_back(call.substr(0, call.find('(')));
        return result;
    }

    FakeRenderer renderer;
    GpuProgramData program;
    OwnedMesh mesh;
};

TEST_F(MeshRendering, without_a_program_goes_through_the_fixed_pipeline) {
    mesh->render(&renderer, nullptr);
    EXPECT_EQ(names(), (Calls{"gpu_program_get_active_program", "gl2_matrix_load",
                              "gpu_program_get_active_program", "vertex_buffer_prepare",
                              "vertex_buffer_draw", "vertex_buffer_finish"}));
    EXPECT_FALSE(mesh->get_mesh_data()->get_use_generic_vertex_attribs_state());
}

TEST_F(MeshRendering, with_a_program_follows_the_program) {
    renderer.active_program = &program;
    mesh->set_use_fixed_mvp_matrices_state(false, nullptr);
    for (const bool generic : {true, false}) {
        program.set_use_generic_vertex_attribs_state(generic);
        mesh->render(&renderer, nullptr);
        EXPECT_EQ(renderer.take_calls(),
                  (Calls{"gpu_program_get_active_program()", "gpu_program_get_active_program()",
                         "gpu_program_update_user_vertex_attrib_locations_mesh(program, store)",
                         "gpu_program_bind_uniforms(program)", "vertex_buffer_prepare(store)",
                         "vertex_buffer_draw(store)", "vertex_buffer_finish(store)"}));
        EXPECT_EQ(mesh->get_mesh_data()->get_use_generic_vertex_attribs_state(), generic);
    }
}

TEST_F(MeshRendering, switches_texturing_for_a_textured_material_without_a_program) {
    add_material(true);
    mesh->render(&renderer, nullptr);
    Calls calls = names();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "set_texture2d_state"), 2);
    EXPECT_EQ(calls.back(), "set_texture2d_state");
    renderer.active_program = &program;
    mesh->render(&renderer, nullptr);
    calls = names();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "set_texture2d_state"), 0);
}

TEST_F(MeshRendering, leaves_texturing_alone_without_textures) {
    add_material()->set_use_fixed_material_colors_state(true);
    mesh->render(&renderer, nullptr);
    const Calls calls = names();
    EXPECT_EQ(calls.front(), "material_set_colors") << "the material comes first";
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "set_texture2d_state"), 0);
}

TEST_F(MeshRendering, does_nothing_with_a_null_renderer) {
    add_material();
    mesh->_render(nullptr);
    mesh->render_geometry(nullptr);
    mesh->render_geometry_prepare(nullptr);
    mesh->render_geometry_draw(nullptr);
    mesh->render_geometry_finish(nullptr);
    EXPECT_TRUE(mesh->get_mesh_data()->get_use_generic_vertex_attribs_state());
}

TEST_F(MeshRendering, draws_nothing_without_a_store) {
    OwnedMesh empty = make_mesh_without_store();
    empty->render(&renderer, nullptr);
    empty->init_subsets();
    empty->render_subset(&renderer, 0);
    MaterialSubset subset;
    EXPECT_FALSE(empty->_init_material_subset(0, &subset));
    EXPECT_EQ(empty->get_num_subsets(), 0u);
    EXPECT_EQ(names(), (Calls{"gpu_program_get_active_program", "gl2_matrix_load"}));
}

TEST_F(MeshRendering, shows_children_after_itself) {
    Mesh* const child = new Mesh;
    mesh->add_child(child);
    renderer.name_pointer(child->get_mesh_data(), "child");
    mesh->render(&renderer, nullptr);
    const Calls calls = renderer.take_calls();
    EXPECT_EQ(calls.back(), "vertex_buffer_finish(child)");
}

TEST_F(MeshRendering, makes_a_subset_for_each_material) {
    Material* const materials[] = {add_material(), add_material(), add_material()};
    const int ids[] = {materials[0]->get_id(), materials[1]->get_id()};
    mesh->set_face_material(ids[0], 1);
    mesh->set_face_material(ids[0], 2);
    mesh->set_face_material(ids[0], 3);
    mesh->set_face_material(ids[1], 5);
    mesh->init_subsets();
    ASSERT_EQ(mesh->get_num_subsets(), 3u);
    const MaterialSubset* const subsets = mesh->get_mesh_data()->subsets;
    EXPECT_EQ(subsets[0].first_face, 1u);
    EXPECT_EQ(subsets[0].last_face, 3u);
    EXPECT_EQ(subsets[0].material, static_cast<unsigned int>(ids[0]));
    for (const int i : {1, 2}) {
        EXPECT_EQ(subsets[i].first_face, 0u) << "one face or none is an empty run";
        EXPECT_EQ(subsets[i].last_face, 0xFFFFFFFFu);
        EXPECT_EQ(subsets[i].material, static_cast<unsigned int>(materials[i]->get_id()));
    }
    mesh->init_subsets();
    EXPECT_EQ(mesh->get_num_subsets(), 3u);
    mesh->remove_all_materials(nullptr, nullptr);
    mesh->init_subsets();
    EXPECT_EQ(mesh->get_num_subsets(), 0u);
    EXPECT_EQ(mesh->get_mesh_data()->subsets, nullptr);
}

TEST_F(MeshRendering, makes_the_same_subsets_all_at_once_as_one_by_one) {
    for (int i = 0; i < 5; ++i)
        add_material();
    const unsigned long num_faces = mesh->get_num_faces(nullptr);
    for (unsigned long face = 0; face < num_faces; ++face)
        mesh->set_face_material(mesh->get_material_by_index(face * face % 5)->get_id(), face);
    mesh->init_subsets();
    ASSERT_EQ(mesh->get_num_subsets(), 5u);
    for (unsigned long i = 0; i < 5; ++i) {
        MaterialSubset alone;
        mesh->_init_material_subset(i, &alone);
        const MaterialSubset& subset = mesh->get_mesh_data()->subsets[i];
        EXPECT_EQ(subset.first_face, alone.first_face);
        EXPECT_EQ(subset.last_face, alone.last_face);
        EXPECT_EQ(subset.material, alone.material);
    }
}

TEST_F(MeshRendering, tells_whether_a_subset_has_faces) {
    const int id = add_material()->get_id();
    MaterialSubset subset;
    EXPECT_FALSE(mesh->_init_material_subset(0, nullptr));
    EXPECT_FALSE(mesh->_init_material_subset(1, &subset));
    EXPECT_EQ(subset.material, 0u);
    EXPECT_FALSE(mesh->_init_material_subset(0, &subset));
    EXPECT_EQ(subset.material, static_cast<unsigned int>(id));
    mesh->set_face_material(id, 0);
    EXPECT_FALSE(mesh->_init_material_subset(0, &subset)) << "one face is no run";
    EXPECT_EQ(subset.last_face, 0xFFFFFFFFu);
    mesh->set_face_material(id, 4);
    EXPECT_TRUE(mesh->_init_material_subset(0, &subset));
    EXPECT_EQ(subset.first_face, 0u);
    EXPECT_EQ(subset.last_face, 4u) << "from the first to the last, whatever lies between";
}

/// Notes the current subset at the draw.
class SubsetRenderer : public FakeRenderer {
public:
    bool vertex_buffer_draw(MeshData* store) override {
        drawn.push_back(store->current_subset);
        return FakeRenderer::vertex_buffer_draw(store);
    }
    std::vector<const MaterialSubset*> drawn;
};

TEST_F(MeshRendering, draws_one_subset_at_a_time) {
    add_material();
    add_material();
    mesh->init_subsets();
    const MaterialSubset* const subsets = mesh->get_mesh_data()->subsets;
    SubsetRenderer subset_renderer;
    mesh->render_subset(&subset_renderer, 1);
    EXPECT_EQ(subset_renderer.count("gl2_matrix_load"), 1);
    EXPECT_EQ(subset_renderer.count("vertex_buffer_prepare"), 1);
    mesh->render_subset_geometry(&subset_renderer, 0);
    EXPECT_EQ(subset_renderer.count("vertex_buffer_prepare"), 2);
    mesh->render_subset_geometry_draw(&subset_renderer, 1);
    EXPECT_EQ(subset_renderer.count("vertex_buffer_prepare"), 2);
    EXPECT_EQ(subset_renderer.drawn,
              (std::vector<const MaterialSubset*>{&subsets[1], &subsets[0], &subsets[1]}));
    EXPECT_EQ(mesh->get_mesh_data()->current_subset, nullptr);
}

TEST_F(MeshRendering, draws_no_subset_out_of_range) {
    add_material();
    mesh->render_subset(&renderer, 0);
    mesh->init_subsets();
    mesh->render_subset(&renderer, 1);
    mesh->render_subset_geometry(&renderer, 1);
    mesh->render_subset_geometry_draw(&renderer, 1);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST_F(MeshRendering, takes_the_subsets_material_by_its_id_as_an_index) {
    add_material();
    Material* const colored = add_material();
    colored->set_use_fixed_material_colors_state(true);
    mesh->init_subsets();
    mesh->render_subset(&renderer, 1);
    EXPECT_EQ(renderer.count("material_set_colors"), 0) << "no material has so large an index";
    mesh->get_mesh_data()->subsets[0].material = 1;
    mesh->render_subset(&renderer, 0);
    EXPECT_EQ(renderer.count("material_set_colors"), 1);
}

} // namespace

} // namespace orvex_test
