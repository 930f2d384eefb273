#include "orvex/renderer/records/mesh_data.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <thread>
#include <type_traits>

#include <gtest/gtest.h>

#include "orvex/platform/private/constant_array.h"
#include "orvex/renderer/records/mesh_data_packed.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;
using orvex_test::make_store;

namespace {

/// More vertices than any memory holds: every array `new` throws at once.
constexpr unsigned long too_many = 1ul << 60;

struct Layout {
    VERTEX_FORMAT format;
    bool separate;
    int alignment;
};

void PrintTo(const Layout& layout, std::ostream* out) {
    *out << orvex_test::format_name(layout.format)
         << (layout.separate ? " separate" : " interleaved")
         << (layout.alignment > 0 ? " aligned" : "");
}

class MeshDataLayouts : public testing::TestWithParam<Layout> {
protected:
    MeshDataLayouts()
        : store(make_store(GetParam().format)) {
        store->separate_vertex_arrays = GetParam().separate;
        store->alignment = GetParam().alignment;
    }

    bool has_color() const { return GetParam().format != VERTEX_FORMAT_32; }
    bool has_uv1() const { return GetParam().format == VERTEX_FORMAT_96; }
    bool wide_position() const {
        return GetParam().format == VERTEX_FORMAT_96 ||
               GetParam().format == VERTEX_FORMAT_PHYSX_CLOTH;
    }

    /// The separate arrays of a format carry the locations of the store.
    template<class Store>
    static void expect_arrays_of(MeshData& store) {
        const auto& own = static_cast<Store&>(store);
        EXPECT_EQ(own.position.attrib_location, store.get_position_attrib_location());
        EXPECT_EQ(own.normal.attrib_location, store.get_normal_attrib_location());
        EXPECT_EQ(own.uv0.attrib_location, store.get_uv0_attrib_location());
        if constexpr (!std::is_same_v<Store, MeshData_32>) {
            EXPECT_EQ(own.color.attrib_location, store.get_color_attrib_location());
            EXPECT_EQ(own.tangent.attrib_location, store.get_tangent_attrib_location());
        }
    }

    static void expect_arrays_at_their_locations(MeshData& store) {
        switch (GetParam().format) {
        case VERTEX_FORMAT_96:
            return expect_arrays_of<MeshData>(store);
        case VERTEX_FORMAT_64:
            return expect_arrays_of<MeshData_64>(store);
        case VERTEX_FORMAT_32:
            return expect_arrays_of<MeshData_32>(store);
        case VERTEX_FORMAT_PHYSX_CLOTH:
            return expect_arrays_of<MeshData_PhysXCloth>(store);
        }
    }

    std::unique_ptr<MeshData> store;
};

std::string layout_name(const testing::TestParamInfo<Layout>& info) {
    return std::string(orvex_test::format_name(info.param.format)) +
           (info.param.separate ? "_separate" : "_interleaved") +
           (info.param.alignment > 0 ? "_aligned" : "");
}

INSTANTIATE_TEST_SUITE_P(
    all, MeshDataLayouts,
    testing::Values(Layout{VERTEX_FORMAT_96, true, 0}, Layout{VERTEX_FORMAT_96, false, 0},
                    Layout{VERTEX_FORMAT_96, true, 64}, Layout{VERTEX_FORMAT_96, false, 64},
                    Layout{VERTEX_FORMAT_64, true, 0}, Layout{VERTEX_FORMAT_64, false, 0},
                    Layout{VERTEX_FORMAT_64, true, 64}, Layout{VERTEX_FORMAT_64, false, 64},
                    Layout{VERTEX_FORMAT_32, true, 0}, Layout{VERTEX_FORMAT_32, false, 0},
                    Layout{VERTEX_FORMAT_32, true, 64}, Layout{VERTEX_FORMAT_32, false, 64},
                    Layout{VERTEX_FORMAT_PHYSX_CLOTH, true, 0},
                    Layout{VERTEX_FORMAT_PHYSX_CLOTH, false, 0},
                    Layout{VERTEX_FORMAT_PHYSX_CLOTH, true, 64},
                    Layout{VERTEX_FORMAT_PHYSX_CLOTH, false, 64}),
    layout_name);

TEST_P(MeshDataLayouts, starts_as_the_documented_empty_store) {
    std::unique_ptr<MeshData> fresh = make_store(GetParam().format);
    EXPECT_TRUE(fresh->separate_vertex_arrays);
    EXPECT_TRUE(fresh->has_separate_vertex_arrays());
    EXPECT_EQ(fresh->index_bits, 32);
    EXPECT_EQ(fresh->get_vertex_format(), GetParam().format);
    EXPECT_EQ(fresh->get_position_attrib_location(), 0);
    EXPECT_EQ(fresh->get_color_attrib_location(), has_color() ? 1 : -1);
    EXPECT_EQ(fresh->get_normal_attrib_location(), 2);
    EXPECT_EQ(fresh->get_uv0_attrib_location(), 3);
    EXPECT_EQ(fresh->get_uv1_attrib_location(), has_uv1() ? 4 : -1);
    EXPECT_EQ(fresh->get_tangent_attrib_location(), has_color() ? 5 : -1);
    expect_arrays_at_their_locations(*fresh);
    EXPECT_EQ(fresh->instance_positions.attrib_location, 6);
    EXPECT_EQ(fresh->instance_rotations.attrib_location, 7);
    EXPECT_EQ(fresh->instance_scales.attrib_location, 8);
    EXPECT_EQ(fresh->instance_colors.attrib_location, 9);
    EXPECT_EQ(fresh->instance_miscs.attrib_location, 10);
    EXPECT_EQ(fresh->get_num_vertices(), 0u);
    EXPECT_EQ(fresh->get_ref(), 0);
    EXPECT_EQ(fresh->alignment, 0);
    EXPECT_TRUE(fresh->get_use_generic_vertex_attribs_state());
    EXPECT_FALSE(fresh->tessellation_state);
    EXPECT_EQ(fresh->vertex_buffer_id + fresh->vertex_array_id + fresh->index_buffer_id +
                  fresh->quad_edge_buffer_id + fresh->instance_buffer_id,
              0u);
    EXPECT_EQ(fresh->vertex_buffer_usage + fresh->index_buffer_usage, 0u);
    EXPECT_FALSE(fresh->positions_need_update || fresh->faces_need_update);
    EXPECT_EQ(fresh->get_vertex_ptr(), nullptr);
    EXPECT_EQ(fresh->get_position_ptr(), nullptr);
}

TEST_P(MeshDataLayouts, allocates_default_vertices_and_particles) {
    ASSERT_TRUE(store->alloc_vertex_data(3));
    EXPECT_EQ(store->get_num_vertices(), 3u);
    EXPECT_EQ(store->draw_start_vertex, 0u);
    EXPECT_EQ(store->draw_end_vertex, 3u);
    for (unsigned long i = 0; i < 3; ++i) {
        EXPECT_EQ(store->get_position(i), vec3());
        EXPECT_EQ(store->get_position_4f(i), vec4());
        EXPECT_EQ(store->get_normal(i), vec3());
        EXPECT_EQ(store->get_color(i), vec4());
        EXPECT_EQ(store->get_uv0(i), vec4());
        EXPECT_EQ(store->get_uv1(i), vec4());
        EXPECT_EQ(store->get_tangent(i), vec4());
        EXPECT_EQ(store->vertex_particles[i], vec4());
    }
}

TEST_P(MeshDataLayouts, keeps_vertices_in_the_layout_asked_for) {
    ASSERT_TRUE(store->alloc_vertex_data(2));
    const bool separate = GetParam().separate;
    EXPECT_EQ(store->get_vertex_ptr() != nullptr, !separate);
    EXPECT_EQ(store->get_position_ptr() != nullptr, separate);
    EXPECT_EQ(store->get_normal_ptr() != nullptr, separate);
    EXPECT_EQ(store->get_uv0_ptr() != nullptr, separate);
    EXPECT_EQ(store->get_color_ptr() != nullptr, separate && has_color());
    EXPECT_EQ(store->get_tangent_ptr() != nullptr, separate && has_color());
    EXPECT_EQ(store->get_uv1_ptr() != nullptr, separate && has_uv1());
    if (GetParam().alignment == 0)
        return;
    for (void* block : {store->get_vertex_ptr(), store->get_position_ptr(), store->get_uv0_ptr()})
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 64, 0u);
}

TEST_P(MeshDataLayouts, reads_back_what_was_written) {
    ASSERT_TRUE(store->alloc_vertex_data(2));
    store->set_position(1, vec4(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_EQ(store->get_position(1), vec3(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(store->get_position_4f(1), vec4(1.0f, 2.0f, 3.0f, wide_position() ? 4.0f : 1.0f));
    store->set_position(1, vec3(5.0f, 6.0f, 7.0f));
    EXPECT_EQ(store->get_position_4f(1), vec4(5.0f, 6.0f, 7.0f, 1.0f));
    store->set_normal(1, vec3(0.0f, 1.0f, 0.0f));
    EXPECT_EQ(store->get_normal(1), vec3(0.0f, 1.0f, 0.0f));
    store->set_uv0(1, vec4(0.25f, 0.5f, 0.75f, 2.0f));
    EXPECT_EQ(store->get_uv0(1),
              has_uv1() ? vec4(0.25f, 0.5f, 0.75f, 2.0f) : vec4(0.25f, 0.5f, 0.0f, 1.0f));
    store->set_color(1, vec4(0.1f, 0.2f, 0.3f, 0.4f));
    EXPECT_EQ(store->get_color(1), has_color() ? vec4(0.1f, 0.2f, 0.3f, 0.4f) : vec4());
    store->set_uv1(1, vec4(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_EQ(store->get_uv1(1), has_uv1() ? vec4(1.0f, 2.0f, 3.0f, 4.0f) : vec4());
    store->set_tangent(1, vec4(1.0f, 2.0f, 3.0f, -1.0f));
    const float tangent_w = GetParam().format == VERTEX_FORMAT_PHYSX_CLOTH ? 1.0f : -1.0f;
    EXPECT_EQ(store->get_tangent(1), has_color() ? vec4(1.0f, 2.0f, 3.0f, tangent_w) : vec4());
    EXPECT_EQ(store->get_position(0), vec3()) << "the neighbour stays";
    EXPECT_EQ(store->get_uv0(0), vec4());
}

TEST_P(MeshDataLayouts, ignores_and_defaults_out_of_range) {
    ASSERT_TRUE(store->alloc_vertex_data(1));
    store->set_position(1, vec3(1.0f, 1.0f, 1.0f));
    store->set_position(1, vec4(1.0f, 1.0f, 1.0f, 1.0f));
    store->set_normal(1, vec3(1.0f, 1.0f, 1.0f));
    store->set_color(1, vec4(1.0f, 1.0f, 1.0f, 0.0f));
    store->set_uv0(1, vec4(1.0f, 1.0f, 1.0f, 0.0f));
    store->set_uv1(1, vec4(1.0f, 1.0f, 1.0f, 0.0f));
    store->set_tangent(1, vec4(1.0f, 1.0f, 1.0f, 0.0f));
    EXPECT_EQ(store->get_position(1), vec3());
    EXPECT_EQ(store->get_position_4f(1), vec4());
    EXPECT_EQ(store->get_normal(1), vec3());
    EXPECT_EQ(store->get_color(1), vec4());
    EXPECT_EQ(store->get_uv0(1), vec4());
    EXPECT_EQ(store->get_uv1(1), vec4());
    EXPECT_EQ(store->get_tangent(1), vec4());
    EXPECT_EQ(store->get_vertex(1), nullptr);
    EXPECT_EQ(store->get_vertex_v2(1).normal, vec4());
    EXPECT_EQ(store->get_position(0), vec3());
}

constexpr vec4 filled_uv1(7.0f, 8.0f, 9.0f, 1.0f);

/// Gives a vertex a value of its own in each attribute.
void fill_vertex(MeshData& store, unsigned long index) {
    store.set_position(index, vec4(1.0f, 2.0f, 3.0f, 4.0f));
    store.set_color(index, vec4(0.1f, 0.2f, 0.3f, 0.4f));
    store.set_normal(index, vec3(0.0f, 0.0f, 1.0f));
    store.set_uv0(index, vec4(0.25f, 0.5f, 0.0f, 1.0f));
    store.set_uv1(index, filled_uv1);
    store.set_tangent(index, vec4(1.0f, 0.0f, 0.0f, 1.0f));
}

TEST_P(MeshDataLayouts, copies_a_vertex_out_in_the_full_format) {
    ASSERT_TRUE(store->alloc_vertex_data(2));
    fill_vertex(*store, 1);
    const Vertex vertex = store->get_vertex_v2(1);
    EXPECT_EQ(vertex.position, store->get_position_4f(1));
    EXPECT_EQ(vertex.color, store->get_color(1));
    EXPECT_EQ(vertex.normal, vec4(0.0f, 0.0f, 1.0f, has_uv1() ? 0.0f : 1.0f));
    EXPECT_EQ(vertex.uv0, vec4(0.25f, 0.5f, 0.0f, 1.0f));
    EXPECT_EQ(vertex.uv1, has_uv1() ? filled_uv1 : vec4());
    EXPECT_EQ(vertex.tangent, store->get_tangent(1));
}

TEST_P(MeshDataLayouts, gives_a_pointer_only_to_interleaved_full_vertices) {
    EXPECT_EQ(store->get_vertex(0), nullptr);
    ASSERT_TRUE(store->alloc_vertex_data(2));
    if (GetParam().format != VERTEX_FORMAT_96 || GetParam().separate) {
        EXPECT_EQ(store->get_vertex(1), nullptr);
        return;
    }
    ASSERT_NE(store->get_vertex(1), nullptr);
    EXPECT_EQ(store->get_vertex(1), store->vertices + 1);
}

TEST_P(MeshDataLayouts, allocates_again_in_place_of_what_was_there) {
    ASSERT_TRUE(store->alloc_vertex_data(2));
    store->set_position(0, vec3(1.0f, 1.0f, 1.0f));
    store->separate_vertex_arrays = !store->separate_vertex_arrays;
    ASSERT_TRUE(store->alloc_vertex_data(5));
    EXPECT_EQ(store->get_num_vertices(), 5u);
    EXPECT_EQ(store->get_position(0), vec3());
    EXPECT_EQ(store->get_vertex_ptr() == nullptr, store->separate_vertex_arrays);
    EXPECT_EQ(store->get_position_ptr() == nullptr, !store->separate_vertex_arrays);
}

TEST_P(MeshDataLayouts, frees_its_vertices_and_nothing_else) {
    ASSERT_TRUE(store->alloc_vertex_data(2));
    store->faces_u16 = new FaceU16[1];
    store->num_faces = 1;
    store->free_vertex_data();
    EXPECT_EQ(store->get_num_vertices(), 0u);
    EXPECT_EQ(store->get_vertex_ptr(), nullptr);
    EXPECT_EQ(store->get_position_ptr(), nullptr);
    EXPECT_EQ(store->raw_vertices, nullptr);
    EXPECT_EQ(store->vertex_particles, nullptr);
    EXPECT_EQ(store->num_faces, 1u);
    EXPECT_NE(store->faces_u16, nullptr);
}

TEST_P(MeshDataLayouts, leaves_the_particles_alone_without_vertices) {
    store->vertex_particles = new vec4[1];
    store->free_vertex_data();
    EXPECT_NE(store->vertex_particles, nullptr);
}

TEST_P(MeshDataLayouts, copies_vertices_of_its_own_kind) {
    std::unique_ptr<MeshData> source = make_store(GetParam().format);
    source->separate_vertex_arrays = GetParam().separate;
    ASSERT_TRUE(source->alloc_vertex_data(3));
    fill_vertex(*source, 2);
    ASSERT_TRUE(store->copy_vertex_data(source.get()));
    EXPECT_EQ(store->get_num_vertices(), 3u);
    EXPECT_EQ(store->get_position_4f(2), source->get_position_4f(2));
    EXPECT_EQ(store->get_color(2), source->get_color(2));
    EXPECT_EQ(store->get_normal(2), source->get_normal(2));
    EXPECT_EQ(store->get_uv0(2), source->get_uv0(2));
    EXPECT_EQ(store->get_uv1(2), has_uv1() ? filled_uv1 : vec4());
    EXPECT_EQ(store->get_tangent(2), source->get_tangent(2));
}

TEST_P(MeshDataLayouts, is_sent_again_where_it_was_drawn_before_a_copy) {
    std::unique_ptr<MeshData> source = make_store(GetParam().format);
    source->separate_vertex_arrays = GetParam().separate;
    ASSERT_TRUE(source->alloc_vertex_data(3));
    ASSERT_TRUE(store->alloc_vertex_data(3));
    for (const unsigned int buffer : {0u, 7u}) {
        store->vertex_buffer_id = buffer;
        ASSERT_TRUE(store->copy_vertex_data(source.get()));
        for (const bool is_marked :
             {store->positions_need_update, store->normals_need_update, store->tangents_need_update,
              store->colors_need_update, store->uv0_need_update, store->uv1_need_update})
            EXPECT_EQ(is_marked, buffer != 0);
        EXPECT_FALSE(store->faces_need_update);
    }
    store->vertex_buffer_id = 0;
}

TEST_P(MeshDataLayouts, copies_nothing_from_null_or_an_empty_store) {
    ASSERT_TRUE(store->alloc_vertex_data(1));
    store->set_position(0, vec3(1.0f, 2.0f, 3.0f));
    EXPECT_FALSE(store->copy_vertex_data(nullptr));
    MeshData empty;
    EXPECT_FALSE(store->copy_vertex_data(&empty));
    EXPECT_EQ(store->get_num_vertices(), 1u);
    EXPECT_EQ(store->get_position(0), vec3(1.0f, 2.0f, 3.0f));
}

TEST_P(MeshDataLayouts, is_its_own_copy_already) {
    ASSERT_TRUE(store->alloc_vertex_data(1));
    store->set_position(0, vec3(1.0f, 2.0f, 3.0f));
    EXPECT_TRUE(store->copy_vertex_data(store.get()));
    EXPECT_EQ(store->get_position(0), vec3(1.0f, 2.0f, 3.0f));
}

TEST_P(MeshDataLayouts, survives_a_copy_between_layouts) {
    std::unique_ptr<MeshData> source = make_store(GetParam().format);
    source->separate_vertex_arrays = !GetParam().separate;
    ASSERT_TRUE(source->alloc_vertex_data(3));
    source->set_position(2, vec3(1.0f, 2.0f, 3.0f));
    EXPECT_TRUE(store->copy_vertex_data(source.get()));
    EXPECT_EQ(store->get_num_vertices(), 3u);
    EXPECT_EQ(store->separate_vertex_arrays, !GetParam().separate) << "the flag is the source's";
    EXPECT_EQ(store->get_position(2), vec3()) << "while the arrays are of the old layout";
    store->set_position(2, vec3(1.0f, 1.0f, 1.0f));
    EXPECT_EQ(store->get_position(2), vec3());
}

TEST_P(MeshDataLayouts, copies_only_attributes_of_equal_width_from_another_format) {
    for (VERTEX_FORMAT other :
         {VERTEX_FORMAT_96, VERTEX_FORMAT_64, VERTEX_FORMAT_32, VERTEX_FORMAT_PHYSX_CLOTH}) {
        std::unique_ptr<MeshData> source = make_store(other);
        ASSERT_TRUE(source->alloc_vertex_data(2));
        source->set_position(1, vec3(1.0f, 2.0f, 3.0f));
        std::unique_ptr<MeshData> target = make_store(GetParam().format);
        EXPECT_TRUE(target->copy_vertex_data(source.get()));
        const bool equal = target->get_position_elt_size() == source->get_position_elt_size();
        EXPECT_EQ(target->get_position(1), equal ? vec3(1.0f, 2.0f, 3.0f) : vec3());
    }
}

TEST_P(MeshDataLayouts, has_no_vertices_after_a_failed_allocation) {
    LogCapture log;
    EXPECT_FALSE(store->alloc_vertex_data(too_many));
    EXPECT_EQ(store->get_num_vertices(), too_many);
    EXPECT_EQ(store->get_vertex_ptr(), nullptr);
    EXPECT_EQ(store->get_position_ptr(), nullptr);
    EXPECT_EQ(store->get_position(0), vec3());
    EXPECT_EQ(store->get_vertex_v2(0).position, vec4());
    EXPECT_EQ(store->get_vertex(0), nullptr);
    store->set_position(0, vec3(1.0f, 1.0f, 1.0f));
    EXPECT_EQ(store->get_position(0), vec3());
    ASSERT_TRUE(store->alloc_vertex_data(1)) << "and takes a new allocation";
}

TEST_P(MeshDataLayouts, reports_a_failed_allocation) {
    const char* expected[] = {
        ("<*> Mesh data allocation failed - 1152921504606846976 vertices required - error: "
         "std::bad_"),
        "<o> MeshData_64::alloc_vertex_data() - exception: std::bad_",
        "<o> MeshData_32::alloc_vertex_data() - exception: std::bad_",
        "<o> MeshData_PhysXCloth::alloc_vertex_data() - exception: std::bad_"};
    LogCapture log;
    store->alloc_vertex_data(too_many);
    ASSERT_EQ(log.messages().size(), 1u);
    const std::string prefix = expected[GetParam().format];
    EXPECT_EQ(log.messages()[0].substr(0, prefix.size()), prefix);
}

TEST_P(MeshDataLayouts, fails_to_copy_when_memory_runs_out) {
    LogCapture log;
    std::unique_ptr<MeshData> source = make_store(GetParam().format);
    source->num_vertices = too_many;
    EXPECT_FALSE(store->copy_vertex_data(source.get()));
    source->num_vertices = 0;
}

TEST_P(MeshDataLayouts, drops_shorter_arrays_when_the_full_form_allocates) {
    ASSERT_TRUE(store->alloc_vertex_data(1));
    ASSERT_TRUE(store->alloc_vertex_data_v2(100, 2));
    EXPECT_EQ(store->get_num_vertices(), 100u);
    EXPECT_EQ(store->num_user_attribs, 2u);
    store->set_position(99, vec3(1.0f, 2.0f, 3.0f));
    const bool full = GetParam().format == VERTEX_FORMAT_96;
    EXPECT_EQ(store->get_position(99), full ? vec3(1.0f, 2.0f, 3.0f) : vec3());
}

struct Sizes {
    VERTEX_FORMAT format;
    unsigned int record;
    unsigned int sizes[6]; // position, color, normal, uv0, uv1, tangent
};

TEST(MeshData, tells_the_sizes_of_each_format) {
    const Sizes rows[] = {{VERTEX_FORMAT_96, 96, {16, 16, 16, 16, 16, 16}},
                          {VERTEX_FORMAT_64, 64, {12, 16, 12, 8, 0, 16}},
                          {VERTEX_FORMAT_32, 32, {12, 0, 12, 8, 0, 0}},
                          {VERTEX_FORMAT_PHYSX_CLOTH, 64, {16, 16, 12, 8, 0, 12}}};
    for (const Sizes& row : rows) {
        SCOPED_TRACE(orvex_test::format_name(row.format));
        std::unique_ptr<MeshData> store = make_store(row.format);
        ASSERT_TRUE(store->alloc_vertex_data(3));
        EXPECT_EQ(store->get_vertex_elt_size(), row.record);
        const unsigned int element_sizes[] = {
            store->get_position_elt_size(), store->get_color_elt_size(),
            store->get_normal_elt_size(),   store->get_uv0_elt_size(),
            store->get_uv1_elt_size(),      store->get_tangent_elt_size()};
        const unsigned int dims[] = {
            store->get_position_vector_dim(), store->get_color_vector_dim(),
            store->get_normal_vector_dim(),   store->get_uv0_vector_dim(),
            store->get_uv1_vector_dim(),      store->get_tangent_vector_dim()};
        const unsigned int sizes[] = {store->get_position_size(), store->get_color_size(),
                                      store->get_normal_size(),   store->get_uv0_size(),
                                      store->get_uv1_size(),      store->get_tangent_size()};
        for (int i = 0; i < 6; ++i) {
            EXPECT_EQ(element_sizes[i], row.sizes[i]) << "attribute " << i;
            EXPECT_EQ(dims[i], row.sizes[i] / 4) << "attribute " << i;
            EXPECT_EQ(sizes[i], row.sizes[i] * 3) << "attribute " << i;
        }
    }
}

TEST(MeshData, stores_a_normal_with_w_0_and_a_position_of_three_with_w_1) {
    MeshData store;
    ASSERT_TRUE(store.alloc_vertex_data(1));
    store.set_normal(0, vec3(1.0f, 2.0f, 3.0f));
    store.set_position(0, vec3(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(store.normal.data[0], vec4(1.0f, 2.0f, 3.0f, 0.0f));
    EXPECT_EQ(store.position.data[0], vec4(1.0f, 2.0f, 3.0f, 1.0f));
}

TEST(MeshData, counts_the_elements_of_its_arrays) {
    MeshData_PhysXCloth store;
    ASSERT_TRUE(store.alloc_vertex_data(4));
    EXPECT_EQ(store.position.num_elements, 4u);
    EXPECT_EQ(store.tangent.num_elements, 4u);
    EXPECT_EQ(store.MeshData::position.num_elements, 0u) << "the full format's arrays stay empty";
}

TEST(MeshData, keeps_array_locations_up_to_date) {
    MeshData full;
    full.set_position_attrib_location(10);
    full.set_color_attrib_location(11);
    full.set_normal_attrib_location(12);
    full.set_uv0_attrib_location(13);
    full.set_uv1_attrib_location(14);
    full.set_tangent_attrib_location(15);
    EXPECT_EQ(full.get_position_attrib_location(), 10);
    EXPECT_EQ(full.get_tangent_attrib_location(), 15);
    EXPECT_EQ(full.position.attrib_location, 10);
    EXPECT_EQ(full.color.attrib_location, 11);
    EXPECT_EQ(full.normal.attrib_location, 12);
    EXPECT_EQ(full.uv0.attrib_location, 13);
    EXPECT_EQ(full.uv1.attrib_location, 14);
    EXPECT_EQ(full.tangent.attrib_location, 15);

    MeshData_64 packed;
    packed.set_color_attrib_location(20);
    packed.set_tangent_attrib_location(21);
    packed.set_normal_attrib_location(22);
    EXPECT_EQ(packed.color.attrib_location, 20);
    EXPECT_EQ(packed.tangent.attrib_location, 21);
    EXPECT_EQ(packed.normal.attrib_location, 22);
    EXPECT_EQ(packed.position.attrib_location, 0);

    MeshData_32 smallest;
    smallest.set_uv0_attrib_location(30);
    EXPECT_EQ(smallest.uv0.attrib_location, 30);
}

TEST(MeshData, keeps_user_attributes) {
    MeshData store;
    ASSERT_TRUE(store.alloc_vertex_data(2));
    ASSERT_TRUE(store.alloc_user_vertex_attribs(2));
    EXPECT_TRUE(store.user_attribs_allocated);
    EXPECT_EQ(store.num_user_attribs, 2u);
    EXPECT_EQ(store.user_attribs[1].num_elements, 2u);
    EXPECT_EQ(store.get_user_attrib_location(1), -1);
    EXPECT_EQ(store.get_user_attrib(1, 1), vec4());
    store.set_user_attrib(1, 1, vec4(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_EQ(store.get_user_attrib(1, 1), vec4(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_TRUE(store.user_attribs[1].need_update);
    EXPECT_FALSE(store.user_attribs[0].need_update);
    store.set_user_attrib_location(1, 12);
    EXPECT_EQ(store.get_user_attrib_location(1), 12);
}

TEST(MeshData, ignores_user_attributes_out_of_range) {
    MeshData store;
    ASSERT_TRUE(store.alloc_vertex_data_v2(2, 1));
    store.set_user_attrib(1, 0, vec4(1.0f, 1.0f, 1.0f, 1.0f));
    store.set_user_attrib(0, 2, vec4(1.0f, 1.0f, 1.0f, 1.0f));
    EXPECT_FALSE(store.user_attribs[0].need_update) << "nothing was written, nothing is marked";
    EXPECT_EQ(store.get_user_attrib(1, 0), vec4());
    EXPECT_EQ(store.get_user_attrib(0, 2), vec4());
    store.set_user_attrib_location(1, 3);
    EXPECT_EQ(store.get_user_attrib_location(1), -1);
}

TEST(MeshData, bounds_user_attributes_by_their_own_length) {
    MeshData store;
    ASSERT_TRUE(store.alloc_vertex_data_v2(2, 1));
    ASSERT_TRUE(store.alloc_vertex_data(5));
    store.set_user_attrib(0, 4, vec4(1.0f, 1.0f, 1.0f, 1.0f));
    EXPECT_FALSE(store.user_attribs[0].need_update);
    EXPECT_EQ(store.get_user_attrib(0, 4), vec4());
    store.set_user_attrib(0, 1, vec4(1.0f, 1.0f, 1.0f, 1.0f));
    EXPECT_EQ(store.get_user_attrib(0, 1), vec4(1.0f, 1.0f, 1.0f, 1.0f));
}

TEST(MeshData, refuses_no_user_attributes_and_keeps_those_it_has) {
    MeshData store;
    ASSERT_TRUE(store.alloc_vertex_data_v2(2, 1));
    store.set_user_attrib(0, 1, vec4(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_FALSE(store.alloc_user_vertex_attribs(0));
    EXPECT_EQ(store.num_user_attribs, 1u);
    EXPECT_EQ(store.get_user_attrib(0, 1), vec4(1.0f, 2.0f, 3.0f, 4.0f));
}

TEST(MeshData, aligns_user_attributes_with_the_store) {
    MeshData store;
    store.alignment = 128;
    ASSERT_TRUE(store.alloc_vertex_data_v2(3, 2));
    for (unsigned long i = 0; i < 2; ++i) {
        EXPECT_NE(store.user_attribs[i].raw_ptr, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(store.user_attribs[i].data) % 128, 0u);
    }
}

TEST(MeshData, fails_without_memory_for_user_attributes) {
    MeshData store;
    ASSERT_TRUE(store.alloc_vertex_data(1));
    EXPECT_FALSE(store.alloc_user_vertex_attribs(too_many));
    EXPECT_FALSE(store.user_attribs_allocated);
    EXPECT_EQ(store.get_user_attrib(0, 0), vec4());
}

TEST(MeshData, has_no_user_attributes_where_memory_ends_between_two) {
    MeshData store;
    store.num_vertices = too_many; // the list itself is short
    EXPECT_FALSE(store.alloc_user_vertex_attribs(2));
    EXPECT_EQ(store.user_attribs, nullptr);
    EXPECT_EQ(store.num_user_attribs, 0u);
    EXPECT_FALSE(store.user_attribs_allocated);
    store.num_vertices = 0;
}

TEST(MeshData, reports_memory_that_runs_out_at_the_user_attributes) {
    LogCapture log;
    MeshData store;
    EXPECT_FALSE(store.alloc_vertex_data_v2(7, too_many));
    ASSERT_EQ(log.messages().size(), 1u);
    const std::string prefix =
        "<*> Mesh data allocation failed - 7 vertices required - error: std::bad_";
    EXPECT_EQ(log.messages()[0].substr(0, prefix.size()), prefix);
    EXPECT_NE(store.get_position_ptr(), nullptr) << "what was allocated before stays";
    EXPECT_EQ(store.vertex_particles, nullptr);
}

TEST(MeshData, frees_user_attributes_once) {
    MeshData store;
    EXPECT_TRUE(store.free_user_vertex_attribs());
    ASSERT_TRUE(store.alloc_vertex_data_v2(2, 3));
    EXPECT_TRUE(store.free_user_vertex_attribs());
    EXPECT_EQ(store.user_attribs, nullptr);
    EXPECT_EQ(store.num_user_attribs, 0u);
    EXPECT_FALSE(store.user_attribs_allocated);
    EXPECT_TRUE(store.free_user_vertex_attribs());
}

TEST(MeshData, frees_user_attributes_with_its_vertices_in_the_full_format_only) {
    MeshData full;
    ASSERT_TRUE(full.alloc_vertex_data_v2(2, 1));
    full.free_vertex_data();
    EXPECT_EQ(full.num_user_attribs, 0u);
    MeshData_64 packed;
    ASSERT_TRUE(packed.alloc_vertex_data(2));
    ASSERT_TRUE(packed.alloc_user_vertex_attribs(1));
    packed.free_vertex_data();
    EXPECT_EQ(packed.num_user_attribs, 1u);
}

TEST(MeshData, keeps_quad_edges) {
    MeshData store;
    EXPECT_TRUE(store.alloc_quad_edge_data(8));
    EXPECT_EQ(store.num_quad_edges, 8u);
    store.quad_edges[7] = 5;
    EXPECT_TRUE(store.alloc_quad_edge_data(4));
    EXPECT_EQ(store.num_quad_edges, 4u);
    EXPECT_EQ(store.quad_edges[3], 0u);
    store.render_wireframe_quad = true;
    store.quad_edges_need_update = true;
    store.free_quad_edge_data();
    EXPECT_EQ(store.quad_edges, nullptr);
    EXPECT_EQ(store.num_quad_edges, 0u);
    EXPECT_FALSE(store.render_wireframe_quad);
    EXPECT_FALSE(store.quad_edges_need_update);
}

TEST(MeshData, has_no_quad_edges_when_memory_runs_out) {
    MeshData store;
    ASSERT_TRUE(store.alloc_quad_edge_data(8));
    EXPECT_FALSE(store.alloc_quad_edge_data(1ul << 62));
    EXPECT_EQ(store.quad_edges, nullptr);
    EXPECT_EQ(store.num_quad_edges, 0u);
}

TEST(MeshData, frees_attribute_arrays_by_the_road_they_came) {
    MeshData store;
    VertexAttribArray plain;
    plain.data = new vec4[3];
    plain.num_elements = 3;
    store.free_vertex_attrib_array(plain);
    EXPECT_EQ(plain.data, nullptr);
    VertexAttribArray_2f narrow;
    narrow.data = new vec2[3];
    store.free_vertex_attrib_array(narrow);
    EXPECT_EQ(narrow.data, nullptr);
    store.free_vertex_attrib_array(narrow);
    EXPECT_EQ(narrow.data, nullptr);
}

TEST(MeshData, counts_references_down_to_zero) {
    MeshData store;
    store.inc_ref();
    store.inc_ref();
    EXPECT_EQ(store.get_ref(), 2);
    store.dec_ref();
    store.dec_ref();
    EXPECT_EQ(store.get_ref(), 0);
    store.dec_ref();
    EXPECT_EQ(store.get_ref(), 0);
}

TEST_P(MeshDataLayouts, hands_out_the_same_to_read_only) {
    ASSERT_TRUE(store->alloc_vertex_data(2));
    const MeshData& read_only = *store;
    for (const unsigned long i : {0ul, 1ul, 2ul})
        EXPECT_EQ(read_only.get_vertex(i), store->get_vertex(i)) << i;
    EXPECT_EQ(read_only.get_vertex_ptr(), store->get_vertex_ptr());
    EXPECT_EQ(read_only.get_position_ptr(), store->get_position_ptr());
    EXPECT_EQ(read_only.get_color_ptr(), store->get_color_ptr());
    EXPECT_EQ(read_only.get_normal_ptr(), store->get_normal_ptr());
    EXPECT_EQ(read_only.get_uv0_ptr(), store->get_uv0_ptr());
    EXPECT_EQ(read_only.get_uv1_ptr(), store->get_uv1_ptr());
    EXPECT_EQ(read_only.get_tangent_ptr(), store->get_tangent_ptr());
}

TEST(MeshData, belongs_to_the_thread_that_made_it_until_told_otherwise) {
    MeshData store;
    EXPECT_TRUE(store.check_thread());
    EXPECT_EQ(store.get_thread(), store.get_thread_ptr());
    std::thread([&] {
        EXPECT_FALSE(store.check_thread());
        store.update_thread();
        EXPECT_TRUE(store.check_thread());
    }).join();
    EXPECT_FALSE(store.check_thread());
    store.get_thread_ptr()->update();
    EXPECT_TRUE(store.check_thread());
}

TEST(MeshData, notes_format_and_path) {
    MeshData store(VERTEX_FORMAT_64);
    EXPECT_EQ(store.get_vertex_format(), VERTEX_FORMAT_64);
    store.set_vertex_format(VERTEX_FORMAT_32);
    EXPECT_EQ(store.get_vertex_format(), VERTEX_FORMAT_32);
    store.set_use_generic_vertex_attribs_state(false);
    EXPECT_FALSE(store.get_use_generic_vertex_attribs_state());
}

TEST(MeshData, has_no_memory_for_separate_arrays_until_a_host_writes_them) {
    constexpr unsigned long count = 2'200'000; // 34 MiB, which no heap has had before
    MeshData store;
    store.separate_vertex_arrays = true;
    ASSERT_TRUE(store.alloc_vertex_data(count));
    const auto is_spread = [](VertexAttribArray& array) {
        return spread_again(array.data, count * sizeof(vec4), pattern_of(vec4()));
    };
    EXPECT_TRUE(is_spread(store.color));
    EXPECT_TRUE(is_spread(store.uv0));
    EXPECT_TRUE(is_spread(store.uv1));
    EXPECT_TRUE(is_spread(store.tangent));
    EXPECT_FALSE(is_spread(store.position)) << "which every host writes";
    EXPECT_FALSE(is_spread(store.normal)) << "which every host writes";
}

TEST(MeshData, frees_all_that_remains_when_destroyed) {
    auto store = std::make_unique<MeshData_64>();
    ASSERT_TRUE(store->alloc_vertex_data(2));
    ASSERT_TRUE(store->alloc_user_vertex_attribs(2));
    ASSERT_TRUE(store->alloc_quad_edge_data(2));
    store->faces_u16 = new FaceU16[2];
    store->faces_u32 = new FaceU32[2];
    store->face_normals = new vec4[2];
    store->face_materials = new int[2];
    store->subsets = new MaterialSubset[2];
    store->instance_positions.data = new vec4[2];
    store->instance_rotations.data = new vec4[2];
    store->instance_scales.data = new vec4[2];
    store->instance_colors.data = new vec4[2];
    store->instance_miscs.data = new vec4[2];
    store.reset(); // the leak checker is the judge
    EXPECT_EQ(store, nullptr);
}

} // namespace

} // namespace orvex_test
