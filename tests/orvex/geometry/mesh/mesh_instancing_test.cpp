#include "orvex/geometry/mesh/mesh.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "owned_mesh.h"
#include "tests/orvex/geometry/printers.h"

namespace orvex_test {

using namespace orvex;

namespace {

template<void (Mesh::*member)(unsigned long, const vec4&)>
void set_of(Mesh& mesh, unsigned long i, const vec4& value) {
    (mesh.*member)(i, value);
}

template<vec4 (Mesh::*member)(unsigned long) const>
vec4 get_of(Mesh& mesh, unsigned long i) {
    return (mesh.*member)(i);
}

template<void (Mesh::*member)()>
void force_of(Mesh& mesh) {
    (mesh.*member)();
}

template<vec4* (Mesh::*member)()>
vec4* pointer_of(Mesh& mesh) {
    return (mesh.*member)();
}

template<const vec4* (Mesh::*member)() const>
const vec4* const_pointer_of(const Mesh& mesh) {
    return (mesh.*member)();
}

/// One of the five per-instance arrays.
struct Family {
    const char* name;
    bool InstancingInitParams::*asked;
    void (*set)(Mesh&, unsigned long, const vec4&);
    vec4 (*get)(Mesh&, unsigned long);
    void (*force)(Mesh&);
    vec4* (*pointer)(Mesh&);
    const vec4* (*const_pointer)(const Mesh&);
    bool MeshData::*flag;
    VertexAttribArray MeshData::*array;
};

const Family families[] = {
    {"position", &InstancingInitParams::position, set_of<&Mesh::set_instance_position>,
     get_of<&Mesh::get_instance_position>, force_of<&Mesh::instance_position_need_update>,
     pointer_of<&Mesh::get_instances_positions_vec4_ptr>,
     const_pointer_of<&Mesh::get_instances_positions_vec4_ptr>,
     &MeshData::instance_positions_need_update, &MeshData::instance_positions},
    {"rotation", &InstancingInitParams::rotation, set_of<&Mesh::set_instance_rotation>,
     get_of<&Mesh::get_instance_rotation>, force_of<&Mesh::instance_rotation_need_update>,
     pointer_of<&Mesh::get_instances_rotations_vec4_ptr>,
     const_pointer_of<&Mesh::get_instances_rotations_vec4_ptr>,
     &MeshData::instance_rotations_need_update, &MeshData::instance_rotations},
    {"scale", &InstancingInitParams::scale, set_of<&Mesh::set_instance_scale>,
     get_of<&Mesh::get_instance_scale>, force_of<&Mesh::instance_scale_need_update>,
     pointer_of<&Mesh::get_instances_scales_vec4_ptr>,
     const_pointer_of<&Mesh::get_instances_scales_vec4_ptr>, &MeshData::instance_scales_need_update,
     &MeshData::instance_scales},
    {"color", &InstancingInitParams::color, set_of<&Mesh::set_instance_color>,
     get_of<&Mesh::get_instance_color>, force_of<&Mesh::instance_color_need_update>,
     pointer_of<&Mesh::get_instances_colors>, const_pointer_of<&Mesh::get_instances_colors>,
     &MeshData::instance_colors_need_update, &MeshData::instance_colors},
    {"misc", &InstancingInitParams::misc, set_of<&Mesh::set_instance_misc>,
     get_of<&Mesh::get_instance_misc>, force_of<&Mesh::instance_misc_need_update>,
     pointer_of<&Mesh::get_instances_miscs>, const_pointer_of<&Mesh::get_instances_miscs>,
     &MeshData::instance_miscs_need_update, &MeshData::instance_miscs}};

class MeshInstancing : public testing::TestWithParam<Family> {
protected:
    MeshInstancing() { params.*family.asked = true; }

    const Family& family = GetParam();
    InstancingInitParams params;
    OwnedMesh mesh = make_mesh(3, 1);
};

std::string family_name(const testing::TestParamInfo<Family>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(all, MeshInstancing, testing::ValuesIn(families), family_name);

TEST_P(MeshInstancing, keeps_a_value_for_each_instance) {
    ASSERT_TRUE(mesh->instancing_init(3, params, 0));
    EXPECT_EQ(mesh->get_num_instances(), 3u);
    EXPECT_EQ(family.get(*mesh, 2), vec4());
    family.set(*mesh, 2, vec4(1, 2, 3, 4));
    EXPECT_EQ(family.get(*mesh, 2), vec4(1, 2, 3, 4));
    EXPECT_TRUE(mesh->get_mesh_data()->*family.flag);
    EXPECT_EQ(family.pointer(*mesh)[2], vec4(1, 2, 3, 4));
    EXPECT_EQ(family.const_pointer(*mesh), family.pointer(*mesh));
    EXPECT_EQ((mesh->get_mesh_data()->*family.array).num_elements, 3u);
}

TEST_P(MeshInstancing, ignores_instances_out_of_range) {
    ASSERT_TRUE(mesh->instancing_init(3, params, 0));
    family.set(*mesh, 3, vec4(1, 2, 3, 4));
    EXPECT_FALSE(mesh->get_mesh_data()->*family.flag);
    EXPECT_EQ(family.get(*mesh, 3), vec4());
}

TEST_P(MeshInstancing, has_no_array_that_was_not_asked_for) {
    InstancingInitParams others{true, true, true, true, true};
    others.*family.asked = false;
    ASSERT_TRUE(mesh->instancing_init(3, others, 0));
    family.set(*mesh, 1, vec4(1, 2, 3, 4));
    EXPECT_FALSE(mesh->get_mesh_data()->*family.flag);
    EXPECT_EQ(family.get(*mesh, 1), vec4());
    EXPECT_EQ(family.pointer(*mesh), nullptr);
}

TEST_P(MeshInstancing, forces_an_upload) {
    family.force(*mesh);
    EXPECT_TRUE(mesh->get_mesh_data()->*family.flag);
}

TEST_P(MeshInstancing, aligns_its_arrays) {
    ASSERT_TRUE(mesh->instancing_init(3, params, 128));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(family.pointer(*mesh)) % 128, 0u);
    EXPECT_NE((mesh->get_mesh_data()->*family.array).raw_ptr, nullptr);
}

TEST_P(MeshInstancing, keeps_its_count_after_a_cleanup) {
    ASSERT_TRUE(mesh->instancing_init(3, params, 0));
    family.set(*mesh, 1, vec4(1, 2, 3, 4));
    mesh->instancing_cleanup();
    EXPECT_EQ(mesh->get_num_instances(), 3u);
    EXPECT_EQ(family.get(*mesh, 1), vec4());
    EXPECT_EQ(family.pointer(*mesh), nullptr);
}

TEST_P(MeshInstancing, fails_without_memory) {
    EXPECT_FALSE(mesh->instancing_init(1ul << 60, params, 0));
    EXPECT_FALSE(mesh->instancing_init(1ul << 60, params, 16));
    EXPECT_EQ(mesh->get_num_instances(), 0u);
    EXPECT_EQ(family.get(*mesh, 0), vec4());
}

TEST_P(MeshInstancing, acts_as_empty_without_a_store) {
    OwnedMesh empty = make_mesh_without_store();
    EXPECT_FALSE(empty->instancing_init(3, params, 0));
    empty->instancing_cleanup();
    family.set(*empty, 0, vec4(1, 2, 3, 4));
    family.force(*empty);
    EXPECT_EQ(family.get(*empty, 0), vec4());
    EXPECT_EQ(family.pointer(*empty), nullptr);
    EXPECT_EQ(empty->get_num_instances(), 0u);
}

TEST(MeshInstances, are_refused_without_a_count_and_replaced_by_new_ones) {
    OwnedMesh mesh = make_mesh(3, 1);
    const InstancingInitParams all{true, true, true, true, true};
    ASSERT_TRUE(mesh->instancing_init(3, all, 0));
    EXPECT_FALSE(mesh->instancing_init(0, all, 0));
    EXPECT_EQ(mesh->get_num_instances(), 3u);
    EXPECT_NE(mesh->get_instances_positions_vec4_ptr(), nullptr);
    InstancingInitParams colors;
    colors.color = true;
    ASSERT_TRUE(mesh->instancing_init(5, colors, 0));
    EXPECT_EQ(mesh->get_num_instances(), 5u);
    EXPECT_EQ(mesh->get_instances_positions_vec4_ptr(), nullptr);
}

TEST(MeshInstances, are_known_to_subclasses_while_they_are_there) {
    struct Mirrored : Mesh {
        bool instancing() const { return instancing_active; }
    };
    const Owned<Mirrored> mesh(new Mirrored);
    const InstancingInitParams all{true, true, true, true, true};
    EXPECT_FALSE(mesh->instancing());
    ASSERT_TRUE(mesh->instancing_init(3, all, 0));
    EXPECT_TRUE(mesh->instancing());
    EXPECT_FALSE(mesh->instancing_init(0, all, 0));
    EXPECT_TRUE(mesh->instancing()) << "the ones before are kept";
    mesh->instancing_cleanup();
    EXPECT_FALSE(mesh->instancing());
    EXPECT_FALSE(mesh->instancing_init(1ul << 60, all, 0));
    EXPECT_FALSE(mesh->instancing());
}

} // namespace

} // namespace orvex_test
