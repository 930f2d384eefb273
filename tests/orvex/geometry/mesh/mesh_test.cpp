#include "orvex/geometry/mesh/mesh.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "orvex/math/mat4.h"
#include "orvex/renderer/records/mesh_data_packed.h"
#include "owned_mesh.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/support/fake_renderer.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// More than any memory holds: every array `new` throws at once.
constexpr unsigned long too_many = 1ul << 60;
constexpr unsigned long too_many_faces = 1ul << 61;

TEST(Mesh, starts_as_a_triangle_object_with_an_empty_store) {
    OwnedMesh mesh(new Mesh);
    EXPECT_EQ(mesh->get_type(), NODE_TYPE_MESH);
    EXPECT_TRUE(mesh->is_type_of(NODE_TYPE_OBJECT));
    ASSERT_NE(mesh->get_mesh_data(), nullptr);
    EXPECT_EQ(mesh->get_mesh_data()->get_ref(), 1);
    EXPECT_EQ(mesh->get_mesh_data()->mesh_id, mesh->get_id());
    EXPECT_EQ(mesh->get_mesh_data()->get_vertex_format(), VERTEX_FORMAT_96);
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 0u);
    EXPECT_EQ(mesh->get_num_faces(nullptr), 0u);
    EXPECT_EQ(mesh->get_renderer_id(), 0);
    mesh->get_mesh_data()->renderer_id = 9;
    EXPECT_EQ(mesh->get_renderer_id(), 9);
}

TEST(Mesh, makes_a_store_of_the_format_asked_for) {
    EXPECT_NE(dynamic_cast<MeshData_64*>(make_mesh(VERTEX_FORMAT_64)->get_mesh_data()), nullptr);
    EXPECT_NE(dynamic_cast<MeshData_32*>(make_mesh(VERTEX_FORMAT_32)->get_mesh_data()), nullptr);
    EXPECT_NE(
        dynamic_cast<MeshData_PhysXCloth*>(make_mesh(VERTEX_FORMAT_PHYSX_CLOTH)->get_mesh_data()),
        nullptr);
    EXPECT_EQ(make_mesh(static_cast<VERTEX_FORMAT>(4))->get_mesh_data(), nullptr);
    EXPECT_EQ(make_mesh(static_cast<VERTEX_FORMAT>(-1))->get_mesh_data(), nullptr);
}

TEST(Mesh, replaces_its_store) {
    OwnedMesh mesh = make_mesh(3, 1);
    EXPECT_TRUE(mesh->init_mesh_data(nullptr, VERTEX_FORMAT_32));
    EXPECT_EQ(mesh->get_mesh_data()->get_vertex_format(), VERTEX_FORMAT_32);
    EXPECT_EQ(mesh->get_mesh_data()->get_ref(), 1);
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 0u);
    EXPECT_TRUE(mesh->init_mesh_data(nullptr, static_cast<VERTEX_FORMAT>(9)));
    EXPECT_EQ(mesh->get_mesh_data(), nullptr);
}

TEST(Mesh, shares_a_store_until_the_last_one_lets_go) {
    FakeRenderer renderer;
    OwnedMesh first = make_mesh(3, 1);
    OwnedMesh second = make_mesh();
    MeshData* const old_store = second->get_mesh_data();
    MeshData* const store = first->get_mesh_data();
    renderer.name_pointer(store, "store");
    renderer.name_pointer(old_store, "old");
    EXPECT_TRUE(second->share_mesh_data(&renderer, first.get()));
    EXPECT_EQ(renderer.take_calls(), std::vector<std::string>{"vertex_buffer_kill(old)"});
    EXPECT_EQ(second->get_mesh_data(), store);
    EXPECT_EQ(store->get_ref(), 2);
    EXPECT_EQ(store->mesh_id, second->get_id()) << "the last to take it";
    EXPECT_EQ(second->get_num_vertices(nullptr), 3u);

    EXPECT_TRUE(first->cleanup_mesh_data(&renderer));
    EXPECT_EQ(first->get_mesh_data(), nullptr);
    EXPECT_EQ(store->get_ref(), 1);
    EXPECT_TRUE(renderer.take_calls().empty()) << "it is still in use";
    EXPECT_TRUE(second->_cleanup(&renderer));
    EXPECT_EQ(renderer.take_calls(), std::vector<std::string>{"vertex_buffer_kill(store)"});
    EXPECT_EQ(second->get_mesh_data(), nullptr);
}

TEST(Mesh, leaves_gpu_objects_alone_without_a_renderer) {
    FakeRenderer renderer;
    OwnedMesh mesh = make_mesh(3, 1);
    EXPECT_TRUE(mesh->cleanup_mesh_data(nullptr));
    EXPECT_TRUE(renderer.calls.empty());
    EXPECT_TRUE(mesh->cleanup_mesh_data(&renderer)) << "there is nothing to drop any more";
    EXPECT_TRUE(renderer.calls.empty());
}

TEST(Mesh, keeps_the_store_that_it_takes_again) {
    OwnedMesh mesh = make_mesh(3, 1);
    MeshData* const store = mesh->get_mesh_data();
    store->mesh_id = 0;
    EXPECT_TRUE(mesh->share_mesh_data(nullptr, mesh.get()));
    EXPECT_EQ(mesh->get_mesh_data(), store);
    EXPECT_EQ(store->get_ref(), 1);
    EXPECT_EQ(store->mesh_id, mesh->get_id());
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 3u);
    OwnedMesh other = make_mesh();
    EXPECT_TRUE(other->share_mesh_data(nullptr, mesh.get()));
    EXPECT_TRUE(other->share_mesh_data(nullptr, mesh.get()));
    EXPECT_EQ(store->get_ref(), 2);
}

TEST(Mesh, shares_nothing_with_null_and_no_store_with_a_mesh_without) {
    OwnedMesh mesh = make_mesh(3, 1);
    EXPECT_FALSE(mesh->share_mesh_data(nullptr, nullptr));
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 3u);
    OwnedMesh without = make_mesh_without_store();
    EXPECT_TRUE(mesh->share_mesh_data(nullptr, without.get()));
    EXPECT_EQ(mesh->get_mesh_data(), nullptr);
}

TEST(Mesh, lives_on_after_cleanup_and_takes_a_new_store) {
    OwnedMesh mesh = make_mesh(3, 1);
    EXPECT_TRUE(mesh->cleanup(nullptr, nullptr));
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 0u);
    EXPECT_TRUE(mesh->cleanup(nullptr, nullptr));
    EXPECT_TRUE(mesh->init_mesh_data(nullptr, VERTEX_FORMAT_96));
    EXPECT_TRUE(mesh->alloc_vertex_data(2));
}

TEST(Mesh, frees_all_geometry_and_keeps_the_store) {
    OwnedMesh mesh = make_mesh(3, 2);
    MeshData* const store = mesh->get_mesh_data();
    ASSERT_TRUE(store->alloc_quad_edge_data(4));
    InstancingInitParams params;
    params.color = true;
    ASSERT_TRUE(mesh->instancing_init(2, params, 0));
    store->subsets = new MaterialSubset[2];
    store->num_subsets = 2;
    mesh->free_mesh_data();
    EXPECT_EQ(mesh->get_mesh_data(), store);
    EXPECT_EQ(store->num_vertices, 0u);
    EXPECT_EQ(store->num_faces, 0u);
    EXPECT_EQ(store->faces_u16, nullptr);
    EXPECT_EQ(store->face_normals, nullptr);
    EXPECT_EQ(store->face_materials, nullptr);
    EXPECT_EQ(store->subsets, nullptr);
    EXPECT_EQ(store->num_subsets, 0u);
    EXPECT_EQ(store->quad_edges, nullptr);
    EXPECT_EQ(mesh->get_instances_colors(), nullptr);
    mesh->free_mesh_data();
    EXPECT_EQ(store->num_vertices, 0u);
}

TEST(Mesh, passes_allocation_parameters_to_its_store) {
    OwnedMesh mesh = make_mesh();
    mesh->set_vertex_alloc_params(false, 128);
    ASSERT_TRUE(mesh->alloc_vertex_data(2));
    EXPECT_FALSE(mesh->get_mesh_data()->has_separate_vertex_arrays());
    ASSERT_NE(mesh->get_vertex(1), nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(mesh->get_vertex(0)) % 128, 0u);
}

TEST(Mesh, tells_of_vertices_that_do_not_fit) {
    LogCapture log;
    OwnedMesh mesh = make_mesh();
    mesh->set_name("heavy");
    EXPECT_FALSE(mesh->alloc_vertex_data(too_many));
    EXPECT_TRUE(log.has("<*> Mesh heavy - vertices memory allocation failed (bad alloc - "
                        "1152921504606846976 vertices required)."));
    EXPECT_EQ(mesh->get_vertex_position(0), vec4());
    EXPECT_FALSE(mesh->update_bounding_sphere(nullptr)) << "no loop over what isn't there";
    mesh->set_vertices_color(vec4(), nullptr);
}

TEST(Mesh, makes_user_attributes_after_its_vertices) {
    LogCapture log;
    OwnedMesh mesh = make_mesh();
    mesh->set_name("thing");
    const std::string name = "thing::" + std::to_string(mesh->get_id());
    EXPECT_FALSE(mesh->alloc_user_vertex_attribs(1));
    EXPECT_EQ(log.messages(), std::vector<std::string>{
                                  "<*> Mesh " + name +
                                  " - the mesh has no vertex. Call alloc_vertex_data() before."});
    log.clear();
    ASSERT_TRUE(mesh->alloc_vertex_data(2));
    EXPECT_FALSE(mesh->alloc_user_vertex_attribs(0));
    EXPECT_FALSE(mesh->alloc_user_vertex_attribs(too_many));
    const std::string refused =
        "<*> Mesh " + name + " - user vertex attribs memory allocation failed.";
    EXPECT_EQ(log.messages(), (std::vector<std::string>{refused, refused}));
    EXPECT_TRUE(mesh->alloc_user_vertex_attribs(1));
    mesh->set_user_vertex_attrib(0, 1, vec4(1, 2, 3, 4));
    EXPECT_EQ(mesh->get_user_vertex_attrib(0, 1), vec4(1, 2, 3, 4));
    EXPECT_TRUE(mesh->get_mesh_data()->user_attribs[0].need_update);
    EXPECT_EQ(mesh->get_user_vertex_attrib(1, 1), vec4());
}

struct FaceWidth {
    unsigned long num_vertices;
    bool force_32_bits;
    int index_bits;
};

TEST(Mesh, chooses_the_width_of_faces_by_its_vertices) {
    const FaceWidth rows[] = {{65535, false, 16}, {65535, true, 32}, {65536, false, 32},
                              {65536, true, 32},  {0, false, 16},    {0, true, 32}};
    for (const FaceWidth& row : rows) {
        SCOPED_TRACE(testing::Message()
                     << row.num_vertices << " vertices, forced " << row.force_32_bits);
        OwnedMesh mesh = make_mesh();
        ASSERT_TRUE(mesh->alloc_vertex_data(row.num_vertices));
        ASSERT_TRUE(mesh->alloc_face_data(2, row.force_32_bits));
        const MeshData* const store = mesh->get_mesh_data();
        EXPECT_EQ(store->index_bits, row.index_bits);
        EXPECT_EQ(store->faces_u16 != nullptr, row.index_bits == 16);
        EXPECT_EQ(store->faces_u32 != nullptr, row.index_bits == 32);
        EXPECT_EQ(store->num_faces, 2u);
        EXPECT_EQ(store->face_normals[1], vec4());
        EXPECT_EQ(store->face_materials[1], 0);
    }
}

TEST(Mesh, keeps_narrow_faces_when_vertices_come_later) {
    OwnedMesh mesh = make_mesh();
    ASSERT_TRUE(mesh->alloc_face_data(1, false));
    ASSERT_TRUE(mesh->alloc_vertex_data(100000));
    EXPECT_EQ(mesh->get_mesh_data()->index_bits, 16);
}

TEST(Mesh, allocates_faces_in_place_of_those_before) {
    OwnedMesh mesh = make_mesh(3, 4);
    ASSERT_TRUE(mesh->alloc_face_data(2, true));
    EXPECT_EQ(mesh->get_mesh_data()->faces_u16, nullptr);
    EXPECT_EQ(mesh->get_num_faces(nullptr), 2u);
}

TEST(Mesh, tells_of_faces_that_do_not_fit) {
    LogCapture log;
    OwnedMesh mesh = make_mesh(3, 1);
    mesh->set_name("heavy");
    EXPECT_FALSE(mesh->alloc_face_data(too_many_faces, false));
    ASSERT_EQ(log.messages().size(), 1u);
    const std::string prefix = "<*> Mesh heavy - faces memory allocation failed: std::bad_";
    EXPECT_EQ(log.messages()[0].substr(0, prefix.size()), prefix);
    unsigned int a = 7;
    mesh->set_face_indexes(0, 1, 1, 1);
    mesh->get_face_indexes(0, &a, &a, &a);
    EXPECT_EQ(a, 7u);
    EXPECT_FALSE(mesh->set_face_material(1, 0));
    EXPECT_FALSE(mesh->compute_faces_normal(nullptr));
    mesh->flip_faces(nullptr);
}

TEST(Mesh, notes_the_material_of_a_face) {
    OwnedMesh mesh = make_mesh(3, 2);
    EXPECT_TRUE(mesh->set_face_material(5, 1));
    EXPECT_FALSE(mesh->set_face_material(5, 2));
    EXPECT_EQ(mesh->get_mesh_data()->face_materials[0], 0);
    EXPECT_EQ(mesh->get_mesh_data()->face_materials[1], 5);
    EXPECT_TRUE(mesh->set_material_to_all_faces(8));
    EXPECT_EQ(mesh->get_mesh_data()->face_materials[0], 8);
    EXPECT_EQ(mesh->get_mesh_data()->face_materials[1], 8);
    EXPECT_TRUE(make_mesh()->set_material_to_all_faces(8));
}

TEST(Mesh, reads_and_writes_faces_of_either_width) {
    for (const bool wide : {false, true}) {
        OwnedMesh mesh = make_mesh(3, 1);
        ASSERT_TRUE(mesh->alloc_face_data(2, wide));
        mesh->set_face_indexes(1, 0x10001, 2, 0x30003);
        EXPECT_TRUE(mesh->get_mesh_data()->faces_need_update);
        unsigned int a = 0;
        unsigned int c = 0;
        mesh->get_face_indexes(1, &a, nullptr, &c);
        EXPECT_EQ(a, wide ? 0x10001u : 1u);
        EXPECT_EQ(c, wide ? 0x30003u : 3u);
        unsigned int b = 0;
        mesh->get_face_indexes(1, nullptr, &b, nullptr);
        EXPECT_EQ(b, 2u);
        mesh->get_face_indexes(2, &a, &b, &c);
        EXPECT_EQ(b, 2u) << "out of range nothing is written";
    }
}

TEST(Mesh, ignores_a_face_out_of_range) {
    OwnedMesh mesh = make_mesh(3, 1);
    mesh->set_face_indexes(1, 1, 1, 1);
    EXPECT_FALSE(mesh->get_mesh_data()->faces_need_update);
}

TEST(Mesh, passes_on_drawing_states) {
    OwnedMesh mesh = make_mesh(3, 1);
    OwnedMesh child = make_mesh(3, 1);
    mesh->add_child(child.get());
    mesh->set_tessellation_state(true, nullptr);
    EXPECT_TRUE(mesh->get_mesh_data()->tessellation_state);
    EXPECT_FALSE(child->get_mesh_data()->tessellation_state);
    mesh->set_tessellation_state(true, mesh.get());
    EXPECT_TRUE(child->get_mesh_data()->tessellation_state);
    mesh->set_render_wireframe_quad_state(true);
    EXPECT_TRUE(mesh->get_render_wireframe_quad_state());
    EXPECT_TRUE(mesh->get_mesh_data()->render_wireframe_quad);
    mesh->set_draw_start_end_vertex(1, 2);
    EXPECT_EQ(mesh->get_mesh_data()->draw_start_vertex, 1u);
    EXPECT_EQ(mesh->get_mesh_data()->draw_end_vertex, 2u);
    child.release(); // the parent ends it
}

TEST(Mesh, counts_its_children_when_asked_to) {
    OwnedMesh mesh = make_mesh(3, 1);
    Mesh* const child = new Mesh;
    child->alloc_vertex_data(10);
    child->alloc_face_data(4, false);
    mesh->add_child(child);
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 3u);
    EXPECT_EQ(mesh->get_num_vertices(mesh.get()), 13u);
    EXPECT_EQ(mesh->get_num_faces(nullptr), 1u);
    EXPECT_EQ(mesh->get_num_faces(mesh.get()), 5u);
}

TEST(Mesh, copies_geometry) {
    for (const bool wide : {false, true}) {
        OwnedMesh source = make_mesh();
        ASSERT_TRUE(source->alloc_vertex_data(wide ? 70000 : 3));
        ASSERT_TRUE(source->alloc_face_data(2, false));
        source->set_vertex_position(2, vec4(1, 2, 3, 1));
        source->set_face_indexes(1, 2, 1, 0);
        source->set_face_material(9, 1);
        source->get_mesh_data()->face_normals[1] = vec4(1, 0, 0, 0);
        OwnedMesh mesh = make_mesh(5, 5);
        ASSERT_TRUE(mesh->copy_geometry(source.get()));
        EXPECT_EQ(mesh->get_num_vertices(nullptr), source->get_num_vertices(nullptr));
        EXPECT_EQ(mesh->get_num_faces(nullptr), 2u);
        EXPECT_EQ(mesh->get_vertex_position(2), vec4(1, 2, 3, 1));
        unsigned int indexes[3] = {};
        mesh->get_face_indexes(1, &indexes[0], &indexes[1], &indexes[2]);
        EXPECT_EQ(indexes[0], 2u);
        EXPECT_EQ(indexes[2], 0u);
        EXPECT_EQ(mesh->get_mesh_data()->face_materials[1], 0) << "materials aren't copied";
        EXPECT_EQ(mesh->get_mesh_data()->face_normals[1], vec4()) << "nor are face normals";
    }
}

TEST(Mesh, is_sent_again_as_a_whole_when_another_was_copied_onto_it) {
    OwnedMesh source = make_mesh(3, 1);
    OwnedMesh mesh = make_mesh(3, 1);
    MeshData& store = *mesh->get_mesh_data();
    store.vertex_buffer_id = 7;
    store.index_buffer_id = 8;
    ASSERT_TRUE(mesh->copy_geometry(source.get()));
    EXPECT_TRUE(store.positions_need_update && store.normals_need_update &&
                store.tangents_need_update && store.colors_need_update && store.uv0_need_update &&
                store.uv1_need_update);
    EXPECT_TRUE(store.faces_need_update);
    store.vertex_buffer_id = store.index_buffer_id = 0;
}

TEST(Mesh, has_empty_faces_where_the_source_forced_wide_ones) {
    OwnedMesh source = make_mesh(3, 1);
    ASSERT_TRUE(source->alloc_face_data(2, true));
    source->set_face_indexes(1, 2, 1, 0);
    OwnedMesh mesh = make_mesh();
    ASSERT_TRUE(mesh->copy_geometry(source.get()));
    unsigned int a = 9;
    mesh->get_face_indexes(1, &a, nullptr, nullptr);
    EXPECT_EQ(a, 0u);
    EXPECT_EQ(mesh->get_mesh_data()->index_bits, 16);
}

TEST(Mesh, copies_no_geometry_where_there_is_none) {
    OwnedMesh mesh = make_mesh(3, 1);
    EXPECT_FALSE(mesh->copy_geometry(nullptr));
    EXPECT_FALSE(mesh->copy_geometry(make_mesh().get()));
    EXPECT_FALSE(mesh->copy_geometry(make_mesh(3, 0).get()));
    EXPECT_FALSE(mesh->copy_geometry(make_mesh(0, 3).get()));
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 3u);
    EXPECT_FALSE(mesh->copy_geometry(mesh.get())) << "its own geometry is freed first";
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 0u);
}

TEST(Mesh, fails_to_copy_geometry_that_does_not_fit) {
    LogCapture log;
    OwnedMesh source = make_mesh(3, 1);
    source->get_mesh_data()->num_faces = too_many_faces;
    OwnedMesh mesh = make_mesh();
    EXPECT_FALSE(mesh->copy_geometry(source.get()));
    source->get_mesh_data()->num_faces = 1;
    source->get_mesh_data()->num_vertices = too_many;
    EXPECT_FALSE(mesh->copy_geometry(source.get()));
    source->get_mesh_data()->num_vertices = 3;
}

class CountingRenderer : public FakeRenderer {
public:
    using FakeRenderer::vertex_buffer_kill;
    void* vertex_buffer_map(unsigned int id) override {
        FakeRenderer::vertex_buffer_map(id);
        return &memory;
    }
    vec4 memory;
};

TEST(Mesh, maps_its_vertex_buffer) {
    CountingRenderer renderer;
    OwnedMesh mesh = make_mesh(3, 1);
    mesh->get_mesh_data()->vertex_buffer_id = 12;
    EXPECT_EQ(mesh->get_map_vertex_buffer(), nullptr);
    EXPECT_EQ(mesh->map_vertex_buffer(nullptr), nullptr);
    EXPECT_FALSE(mesh->unmap_vertex_buffer(nullptr));
    EXPECT_EQ(mesh->map_vertex_buffer(&renderer), &renderer.memory);
    EXPECT_EQ(mesh->get_map_vertex_buffer(), &renderer.memory);
    EXPECT_EQ(mesh->map_vertex_buffer_vec4(&renderer), &renderer.memory);
    EXPECT_EQ(mesh->get_mapped_vertex_buffer_vec4(), &renderer.memory);
    EXPECT_TRUE(mesh->unmap_vertex_buffer(&renderer));
    EXPECT_EQ(renderer.take_calls(),
              (std::vector<std::string>{"vertex_buffer_map(12)", "vertex_buffer_map(12)",
                                        "vertex_buffer_unmap(12)"}));
    mesh->set_vertex_alloc_params(false, 0);
    EXPECT_EQ(mesh->map_vertex_buffer_vec4(&renderer), nullptr);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST(Mesh, frees_an_attribute_array_of_its_store) {
    OwnedMesh mesh = make_mesh(3, 1);
    mesh->free_vertex_attrib_array(mesh->get_mesh_data()->uv1);
    EXPECT_EQ(mesh->get_mesh_data()->uv1.data, nullptr);
    EXPECT_EQ(mesh->get_vertex_uv(0, 1), vec4());
}

struct FlaggedWrite {
    const char* name;
    void (*write)(Mesh& mesh, unsigned long i, const vec4& value);
    vec4 (*read)(Mesh& mesh, unsigned long i);
    bool MeshData::*flag;
    vec4 expected;
};

void PrintTo(const FlaggedWrite& row, std::ostream* out) {
    *out << row.name;
}

class MeshVertexWrites : public testing::TestWithParam<FlaggedWrite> {};

std::string write_name(const testing::TestParamInfo<FlaggedWrite>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    all, MeshVertexWrites,
    testing::Values(
        FlaggedWrite{"position",
                     [](Mesh& m, unsigned long i, const vec4& v) { m.set_vertex_position(i, v); },
                     [](Mesh& m, unsigned long i) { return m.get_vertex_position(i); },
                     &MeshData::positions_need_update, vec4(1, 2, 3, 1)},
        FlaggedWrite{"normal",
                     [](Mesh& m, unsigned long i, const vec4& v) { m.set_vertex_normal(i, v); },
                     [](Mesh& m, unsigned long i) { return m.get_vertex_normal(i); },
                     &MeshData::normals_need_update, vec4(1, 2, 3, 0)},
        FlaggedWrite{"tangent",
                     [](Mesh& m, unsigned long i, const vec4& v) { m.set_vertex_tangent(i, v); },
                     [](Mesh& m, unsigned long i) { return m.get_vertex_tangent(i); },
                     &MeshData::tangents_need_update, vec4(1, 2, 3, 4)},
        FlaggedWrite{"color",
                     [](Mesh& m, unsigned long i, const vec4& v) { m.set_vertex_color(i, v); },
                     [](Mesh& m, unsigned long i) { return m.get_vertex_color(i); },
                     &MeshData::colors_need_update, vec4(1, 2, 3, 4)},
        FlaggedWrite{"uv0",
                     [](Mesh& m, unsigned long i, const vec4& v) { m.set_vertex_uv(i, v, 0); },
                     [](Mesh& m, unsigned long i) { return m.get_vertex_uv(i, 0); },
                     &MeshData::uv0_need_update, vec4(1, 2, 3, 4)},
        FlaggedWrite{"uv1",
                     [](Mesh& m, unsigned long i, const vec4& v) { m.set_vertex_uv(i, v, 1); },
                     [](Mesh& m, unsigned long i) { return m.get_vertex_uv(i, 1); },
                     &MeshData::uv1_need_update, vec4(1, 2, 3, 4)}),
    write_name);

TEST_P(MeshVertexWrites, store_the_value_and_raise_one_flag) {
    const FlaggedWrite& row = GetParam();
    OwnedMesh mesh = make_mesh(3, 1);
    MeshData& store = *mesh->get_mesh_data();
    row.write(*mesh, 1, vec4(1, 2, 3, 4));
    EXPECT_EQ(row.read(*mesh, 1), row.expected);
    EXPECT_TRUE(store.*row.flag);
    const int raised = store.positions_need_update + store.normals_need_update +
                       store.tangents_need_update + store.colors_need_update +
                       store.uv0_need_update + store.uv1_need_update;
    EXPECT_EQ(raised, 1);
}

TEST_P(MeshVertexWrites, raise_the_flag_even_out_of_range) {
    OwnedMesh mesh = make_mesh(3, 1);
    GetParam().write(*mesh, 3, vec4(1, 2, 3, 4));
    EXPECT_TRUE(mesh->get_mesh_data()->*GetParam().flag);
    EXPECT_EQ(GetParam().read(*mesh, 3).x, 0.0f);
}

TEST(Mesh, writes_w_of_a_position_alone) {
    OwnedMesh mesh = make_mesh(3, 1);
    mesh->set_vertex_position(1, vec4(1, 2, 3, 1));
    mesh->get_mesh_data()->positions_need_update = false;
    mesh->set_vertex_position_w(1, 5.0f);
    EXPECT_EQ(mesh->get_mesh_data()->get_position_4f(1), vec4(1, 2, 3, 5));
    EXPECT_EQ(mesh->get_vertex_position(1), vec4(1, 2, 3, 1));
    EXPECT_TRUE(mesh->get_mesh_data()->positions_need_update);
}

TEST(Mesh, has_two_texture_layers) {
    OwnedMesh mesh = make_mesh(3, 1);
    mesh->set_vertex_uv(1, vec4(0.5f, 0.25f, 0, 1), 0);
    mesh->get_mesh_data()->uv0_need_update = false;
    mesh->set_vertex_uv(1, vec4(9, 9, 9, 9), 7);
    EXPECT_FALSE(mesh->get_mesh_data()->uv0_need_update || mesh->get_mesh_data()->uv1_need_update);
    EXPECT_EQ(mesh->get_vertex_uv(1, 7), vec4(0.5f, 0.25f, 0, 1))
        << "any other layer reads layer 0";
    EXPECT_EQ(mesh->get_vertex_uv(1, 1), vec4());
}

TEST(Mesh, gives_positions_in_world_space) {
    OwnedMesh mesh = make_mesh(2, 1);
    mesh->set_position(10.0f, 20.0f, 30.0f);
    mesh->set_scale(2.0f, 2.0f, 2.0f);
    mesh->set_vertex_position(1, vec4(1, 2, 3, 7));
    vec4 position;
    EXPECT_TRUE(mesh->get_vertex_absolute_position(1, &position));
    EXPECT_EQ(position, vec4(12, 24, 36, 1));
    EXPECT_FALSE(mesh->get_vertex_absolute_position(2, &position));
    EXPECT_FALSE(mesh->get_vertex_absolute_position(1, nullptr));
    EXPECT_EQ(position, vec4(12, 24, 36, 1));
}

TEST(Mesh, hands_vertices_out) {
    OwnedMesh mesh = make_mesh();
    EXPECT_EQ(mesh->get_vertex(0), nullptr);
    EXPECT_EQ(mesh->get_vertex_v2(0).position, vec4());
    mesh->set_vertex_alloc_params(false, 0);
    ASSERT_TRUE(mesh->alloc_vertex_data(2));
    mesh->set_vertex_position(1, vec4(1, 2, 3, 1));
    ASSERT_NE(mesh->get_vertex(1), nullptr);
    EXPECT_EQ(mesh->get_vertex(1)->position, vec4(1, 2, 3, 1));
    EXPECT_EQ(mesh->get_vertex(2), nullptr);
    EXPECT_EQ(mesh->get_vertex_v2(1).position, vec4(1, 2, 3, 1));
}

TEST(Mesh, without_a_store_acts_as_an_empty_one) {
    FakeRenderer renderer;
    OwnedMesh mesh = make_mesh_without_store();
    OwnedMesh other = make_mesh(3, 1);
    EXPECT_EQ(mesh->get_num_vertices(nullptr) + mesh->get_num_faces(nullptr), 0u);
    EXPECT_EQ(mesh->get_renderer_id(), 0);
    EXPECT_EQ(mesh->get_vertex(0), nullptr);
    EXPECT_EQ(mesh->get_vertex_v2(0).position, vec4());
    mesh->free_mesh_data();
    mesh->set_vertex_alloc_params(true, 0);
    EXPECT_FALSE(mesh->alloc_vertex_data(3));
    EXPECT_FALSE(mesh->alloc_user_vertex_attribs(1));
    EXPECT_FALSE(mesh->alloc_face_data(1, false));
    mesh->free_vertex_attrib_array(other->get_mesh_data()->uv1);
    mesh->set_draw_start_end_vertex(0, 1);
    EXPECT_FALSE(mesh->set_face_material(1, 0));
    EXPECT_TRUE(mesh->set_material_to_all_faces(1));
    mesh->set_face_indexes(0, 1, 2, 3);
    mesh->get_face_indexes(0, nullptr, nullptr, nullptr);
    EXPECT_FALSE(mesh->copy_geometry(other.get()));
    EXPECT_FALSE(other->copy_geometry(mesh.get()));
    mesh->set_render_wireframe_quad_state(true);
    EXPECT_FALSE(mesh->get_render_wireframe_quad_state());
    mesh->set_tessellation_state(true, nullptr);
    EXPECT_EQ(mesh->map_vertex_buffer(&renderer), nullptr);
    EXPECT_EQ(mesh->map_vertex_buffer_vec4(&renderer), nullptr);
    EXPECT_FALSE(mesh->unmap_vertex_buffer(&renderer));
    EXPECT_EQ(mesh->get_map_vertex_buffer(), nullptr);
    EXPECT_EQ(mesh->get_mapped_vertex_buffer_vec4(), nullptr);
    for (unsigned int layer : {0u, 1u}) {
        mesh->set_vertex_uv(0, vec4(), layer);
        EXPECT_EQ(mesh->get_vertex_uv(0, layer), vec4());
    }
    mesh->set_vertex_position(0, vec4());
    mesh->set_vertex_position_w(0, 1.0f);
    EXPECT_EQ(mesh->get_vertex_position(0), vec4());
    vec4 position;
    EXPECT_FALSE(mesh->get_vertex_absolute_position(0, &position));
    mesh->set_vertex_normal(0, vec4());
    EXPECT_EQ(mesh->get_vertex_normal(0), vec4(0, 0, 0, 0));
    mesh->set_vertex_tangent(0, vec4());
    EXPECT_EQ(mesh->get_vertex_tangent(0), vec4());
    mesh->set_vertex_color(0, vec4());
    EXPECT_EQ(mesh->get_vertex_color(0), vec4());
    mesh->set_user_vertex_attrib(0, 0, vec4());
    EXPECT_EQ(mesh->get_user_vertex_attrib(0, 0), vec4());
    EXPECT_TRUE(renderer.calls.empty());
}

} // namespace

} // namespace orvex_test
