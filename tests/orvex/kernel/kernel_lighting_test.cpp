#include <cmath>
#include <memory>

#include "kernel_fixture.h"
#include "orvex/assets/materials/material.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/kernel/aux.h"
#include "orvex/math/mat4.h"
#include "orvex/math/quat.h"
#include "orvex/renderer/records/vertex.h"
#include "orvex/scene/light.h"

namespace orvex_test {

using namespace orvex;
namespace {

struct ReleaseNode {
    void operator()(Node* node) const { node->release(nullptr, nullptr); }
};

template<class T>
using Owned = std::unique_ptr<T, ReleaseNode>;

/// One vertex with a colour of halves at the origin, its normal along +Z. The light stands on the Z
/// axis, where its own translation is not counted twice: it is a child of the object that moves it.
class VertexLighting : public testing::Test {
protected:
    VertexLighting() {
        mesh->set_vertex_alloc_params(false, 0);
        mesh->alloc_vertex_data(1);
        mesh->set_vertex_color(0, vec4(0.5f, 0.25f, 0.125f, 1.0f));
        mesh->set_vertex_normal(0, vec4(0.0f, 0.0f, 1.0f, 0.0f));
        stand->add_child(light);
        light->set_ambient(0.5f, 0.5f, 0.5f, 1.0f);
        light->set_diffuse(1.0f, 0.5f, 0.25f, 1.0f);
        light->set_radius(8.0f);
        material->set_ambient(vec4(1.0f, 0.5f, 1.0f, 0.5f));
        material->set_diffuse(vec4(0.5f, 1.0f, 1.0f, 1.0f));
    }

    /// Moves the light to a place in the world.
    void put_light(float x, float y, float z) { stand->set_position(x, y, z); }

    vec4 lit(Material* with_material, Light* with_light, bool clamp = false) {
        vec4 color(-7.0f, -7.0f, -7.0f, -7.0f);
        EXPECT_TRUE(Kernel::get()->compute_object_vertex_color(mesh.get(), 0, color, with_material,
                                                               with_light, clamp));
        return color;
    }

    Owned<Mesh> mesh{new Mesh};
    Owned<Object> stand{new Object};
    Light* light = new Light; ///< the stand's
    Owned<Material> material{new Material};
};

TEST_F(VertexLighting, fails_without_a_vertex_and_keeps_the_colour) {
    vec4 color(1.0f, 2.0f, 3.0f, 4.0f);
    Kernel& kernel = *Kernel::get();
    EXPECT_FALSE(kernel.compute_object_vertex_color(nullptr, 0, color, nullptr, nullptr, false));
    EXPECT_FALSE(kernel.compute_object_vertex_color_v2(nullptr, mat4(), 0, color, nullptr, nullptr,
                                                       vec4(), false));
    EXPECT_FALSE(kernel.compute_object_vertex_color(mesh.get(), 1, color, nullptr, light, false));
    EXPECT_FALSE(
        kernel.compute_object_vertex_color(stand.get(), 0, color, nullptr, nullptr, false));
    const Owned<Mesh> separate(new Mesh);
    separate->alloc_vertex_data(1);
    EXPECT_FALSE(
        kernel.compute_object_vertex_color(separate.get(), 0, color, nullptr, nullptr, false));
    const Owned<Mesh> packed(new Mesh(VERTEX_FORMAT_64));
    packed->set_vertex_alloc_params(false, 0);
    packed->alloc_vertex_data(1);
    EXPECT_FALSE(
        kernel.compute_object_vertex_color(packed.get(), 0, color, nullptr, nullptr, false));
    EXPECT_EQ(color, vec4(1.0f, 2.0f, 3.0f, 4.0f));
}

TEST_F(VertexLighting, adds_white_to_the_vertex_without_light_and_material) {
    EXPECT_EQ(lit(nullptr, nullptr), vec4(1.5f, 1.25f, 1.125f, 2.0f));
    EXPECT_EQ(lit(nullptr, nullptr, true), vec4(1.0f, 1.0f, 1.0f, 1.0f));
}

TEST_F(VertexLighting, multiplies_by_the_material) {
    // ambient (0.5, 0.125, 0.125, 0.5), diffuse (0.5, 1, 1) and alpha 1.
    EXPECT_EQ(lit(material.get(), nullptr), vec4(1.0f, 1.125f, 1.125f, 1.5f));
}

TEST_F(VertexLighting, falls_off_towards_the_radius) {
    // Straight in front, at a quarter of the radius: attenuation 0.75, n_dot_l 1.
    put_light(0.0f, 0.0f, 2.0f);
    // ambient (0.25, 0.125, 0.0625, 1), diffuse (1, 0.5, 0.25) and alpha 1.
    EXPECT_EQ(lit(nullptr, light), vec4(0.9375f, 0.46875f, 0.234375f, 1.5f));
    // With the material: ambient (0.25, 0.0625, 0.0625, 0.5), diffuse (0.5, 0.5, 0.25).
    EXPECT_EQ(lit(material.get(), light), vec4(0.5625f, 0.421875f, 0.234375f, 1.125f));
}

TEST_F(VertexLighting, darkens_what_faces_away) {
    put_light(0.0f, 0.0f, -4.0f);
    // n_dot_l -1, attenuation 0.5.
    EXPECT_EQ(lit(nullptr, light), vec4(-0.375f, -0.1875f, -0.09375f, 1.0f));
    EXPECT_EQ(lit(nullptr, light, true), vec4(0.0f, 0.0f, 0.0f, 1.0f));
}

TEST_F(VertexLighting, counts_the_cosine_of_a_slanted_light) {
    put_light(3.0f, 0.0f, 4.0f);
    light->set_radius(10.0f);
    // Distance 5: attenuation 0.5; n_dot_l 0.8.
    const vec4 color = lit(nullptr, light);
    EXPECT_NEAR(color.x, (0.25f + 0.8f) * 0.5f, 1e-6f);
    EXPECT_NEAR(color.y, (0.125f + 0.4f) * 0.5f, 1e-6f);
    EXPECT_NEAR(color.z, (0.0625f + 0.2f) * 0.5f, 1e-6f);
    EXPECT_EQ(color.w, 1.0f);
}

TEST_F(VertexLighting, is_all_zero_from_the_radius_on) {
    for (const float distance : {8.0f, 9.0f, 1000.0f}) {
        put_light(0.0f, 0.0f, distance);
        EXPECT_EQ(lit(material.get(), light), vec4(0.0f, 0.0f, 0.0f, 0.0f)) << distance;
    }
}

TEST_F(VertexLighting, is_never_brighter_than_at_the_light) {
    put_light(0.0f, 0.0f, 2.0f);
    light->set_radius(-8.0f);
    EXPECT_EQ(lit(nullptr, light), vec4(1.25f, 0.625f, 0.3125f, 2.0f));
}

TEST_F(VertexLighting, has_no_cosine_at_the_light_itself) {
    EXPECT_EQ(lit(nullptr, light), vec4(0.25f, 0.125f, 0.0625f, 2.0f));
}

TEST_F(VertexLighting, takes_the_absolute_position_of_the_light) {
    // The light's own translation counts twice there: 1 and 1 make 2.
    light->set_position(0.0f, 0.0f, 1.0f);
    EXPECT_EQ(lit(nullptr, light), vec4(0.9375f, 0.46875f, 0.234375f, 1.5f));
}

TEST_F(VertexLighting, moves_the_vertex_by_the_absolute_transform) {
    const Owned<Object> parent(new Object);
    mesh->add_ref();
    parent->add_child(mesh.get());
    parent->set_position(5.0f, 0.0f, 0.0f);
    mesh->set_position(0.0f, 3.0f, 0.0f);
    put_light(5.0f, 3.0f, 2.0f);
    EXPECT_EQ(lit(nullptr, light), vec4(0.9375f, 0.46875f, 0.234375f, 1.5f));
}

TEST_F(VertexLighting, turns_normals_by_the_full_matrix) {
    // (1, 0, 1) scaled by 3 along X becomes (3, 0, 1): the inverse transpose would give (1, 0, 3).
    mesh->set_vertex_normal(0, vec4(1.0f, 0.0f, 1.0f, 0.0f));
    mesh->set_scale(3.0f, 1.0f, 1.0f);
    put_light(0.0f, 0.0f, 4.0f);
    light->set_ambient(0.0f, 0.0f, 0.0f, 0.0f);
    EXPECT_NEAR(lit(nullptr, light).x, 0.5f / std::sqrt(10.0f), 1e-6f);
}

TEST_F(VertexLighting, moves_a_normal_whose_w_is_not_zero) {
    mesh->get_vertex(0)->normal = vec4(0.0f, 0.0f, 1.0f, 1.0f);
    mesh->set_position(0.0f, 0.0f, -3.0f);
    put_light(0.0f, 0.0f, 1.0f);
    light->set_ambient(0.0f, 0.0f, 0.0f, 0.0f);
    // The normal ends as (0, 0, -2), away from the light; attenuation 0.5.
    EXPECT_EQ(lit(nullptr, light).x, -0.5f);
}

TEST_F(VertexLighting, takes_a_transform_and_a_light_position_of_the_callers) {
    mesh->set_position(50.0f, 0.0f, 0.0f);
    put_light(70.0f, 0.0f, 0.0f);
    mat4 transform;
    transform.init_translate(0.0f, 1.0f, 0.0f);
    vec4 color;
    EXPECT_TRUE(Kernel::get()->compute_object_vertex_color_v2(
        mesh.get(), transform, 0, color, nullptr, light, vec4(0.0f, 1.0f, 2.0f, 1.0f), false));
    EXPECT_EQ(color, vec4(0.9375f, 0.46875f, 0.234375f, 1.5f));
    EXPECT_TRUE(Kernel::get()->compute_object_vertex_color_v2(
        mesh.get(), transform, 0, color, nullptr, nullptr, vec4(0.0f, 1.0f, 2.0f, 1.0f), true));
    EXPECT_EQ(color, vec4(1.0f, 1.0f, 1.0f, 1.0f));
}

// Values whose products and sums round: another order would give other last bits.
TEST_F(VertexLighting, takes_its_steps_in_their_order) {
    const vec4 vertex_color(0.1f, 0.3f, 0.7f, 0.9f);
    const vec4 normal(0.2f, 0.5f, 0.7f, 0.0f);
    const vec4 position(0.3f, -0.2f, 0.9f, 1.0f);
    const vec4 light_at(1.1f, 2.3f, 3.7f, 1.0f);
    mesh->set_vertex_color(0, vertex_color);
    mesh->set_vertex_normal(0, normal);
    mesh->set_vertex_position(0, position);
    material->set_ambient(vec4(0.3f, 0.7f, 0.1f, 0.6f));
    material->set_diffuse(vec4(0.9f, 0.1f, 0.3f, 0.2f));
    light->set_ambient(0.7f, 0.9f, 0.3f, 0.1f);
    light->set_diffuse(0.6f, 0.3f, 0.7f, 0.3f);
    for (int step = 0; step < 50; ++step) {
        const float radius = 5.3f + static_cast<float>(step) * 0.7f;
        light->set_radius(radius);
        vec4 color;
        ASSERT_TRUE(Kernel::get()->compute_object_vertex_color_v2(
            mesh.get(), mat4().identity(), 0, color, material.get(), light, light_at, false));
        vec4 to_vertex(position.x - light_at.x, position.y - light_at.y, position.z - light_at.z,
                       0.0f);
        const float inverse_radius = 1.0f / radius;
        const float attenuation = 1.0f - inverse_radius * std::sqrt(to_vertex.dot(to_vertex));
        vec4 unit_normal = normal;
        unit_normal.normalize();
        const float n_dot_l = unit_normal.dot(-to_vertex.normalize());
        const auto channel = [&](float vec4::*c, float diffuse) {
            const float ambient =
                vertex_color.*c * (material->get_ambient().*c) * (light->get_ambient().*c);
            return (ambient + diffuse) * attenuation;
        };
        const auto diffuse = [&](float vec4::*c) {
            return material->get_diffuse().*c * (light->get_diffuse().*c) * n_dot_l;
        };
        EXPECT_EQ(color.x, channel(&vec4::x, diffuse(&vec4::x)));
        EXPECT_EQ(color.y, channel(&vec4::y, diffuse(&vec4::y)));
        EXPECT_EQ(color.z, channel(&vec4::z, diffuse(&vec4::z)));
        EXPECT_EQ(color.w, channel(&vec4::w, 1.0f)) << "alpha gets one";
    }
}

TEST_F(VertexLighting, may_write_into_the_vertex_it_reads) {
    put_light(0.0f, 0.0f, 2.0f);
    vec4& color = mesh->get_vertex(0)->color;
    EXPECT_TRUE(
        Kernel::get()->compute_object_vertex_color(mesh.get(), 0, color, nullptr, light, false));
    EXPECT_EQ(color, vec4(0.9375f, 0.46875f, 0.234375f, 1.5f));
}

TEST_F(VertexLighting, is_reached_through_aux) {
    put_light(0.0f, 0.0f, 2.0f);
    vec4 color;
    EXPECT_TRUE(
        aux::compute_object_vertex_color(mesh.get(), 0, color, material.get(), light, false));
    EXPECT_EQ(color, vec4(0.5625f, 0.421875f, 0.234375f, 1.125f));
    EXPECT_TRUE(aux::compute_object_vertex_color_v2(mesh.get(), mat4().identity(), 0, color,
                                                    material.get(), light,
                                                    vec4(0.0f, 0.0f, 2.0f, 1.0f), false));
    EXPECT_EQ(color, vec4(0.5625f, 0.421875f, 0.234375f, 1.125f));
    EXPECT_FALSE(aux::compute_object_vertex_color(nullptr, 0, color, nullptr, nullptr, false));
    EXPECT_FALSE(aux::compute_object_vertex_color_v2(nullptr, mat4(), 0, color, nullptr, nullptr,
                                                     vec4(), false));
}

} // namespace
} // namespace orvex_test
