// Shapes of odd sizes and counts, where another order of the same operations gives other last bits.
// Each vertex is worked out here by itself, step by step.

#include <cmath>

#include <gtest/gtest.h>

#include "orvex/assets/textures/texture.h"
#include "orvex/geometry/shapes/mesh_box.h"
#include "orvex/geometry/shapes/mesh_cylinder.h"
#include "orvex/geometry/shapes/mesh_sphere.h"
#include "orvex/geometry/shapes/mesh_terrain.h"
#include "orvex/geometry/shapes/mesh_torus.h"
#include "shapes.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr float pi = 3.1415927f;
constexpr float two_pi = 6.2831855f;

/// Compares a grid's vertices with what `vertex_at(row, column)` makes of single floats.
template<class VertexAt>
void expect_grid(Mesh& mesh, int rows, int columns, VertexAt vertex_at) {
    unsigned long i = 0;
    for (int row = 0; row <= rows; ++row)
        for (int column = 0; column <= columns; ++column)
            expect_vertex(mesh, i++,
                          vertex_at(static_cast<float>(row), static_cast<float>(column)));
    EXPECT_EQ(mesh.get_num_vertices(nullptr), i);
}

TEST(MeshFormulas, of_a_sphere) {
    const auto sphere = make_shape<MeshSphere>();
    sphere->set_build_params(3.7f, 7, 11);
    ASSERT_TRUE(sphere->_build());
    expect_grid(*sphere, 11, 7, [](float row, float column) {
        const float theta = (row / 11.0f) * pi;
        const float phi = (column * two_pi) / 7.0f;
        const float st = std::sin(theta);
        const float ct = std::cos(theta);
        const float sp = std::sin(phi);
        const float cp = std::cos(phi);
        return ShapeVertex{{3.7f * st * sp, 3.7f * st * cp, 3.7f * ct},
                           {st * sp, st * cp, ct},
                           {column * (1.0f / 7.0f), row * (1.0f / 11.0f)}};
    });
}

TEST(MeshFormulas, of_a_cylinder) {
    const auto tube = make_shape<MeshCylinder>();
    tube->set_build_params(3.7f, 5.3f, 41, 7);
    ASSERT_TRUE(tube->build(nullptr));
    expect_grid(*tube, 41, 7, [](float row, float column) {
        const float angle = two_pi * column / 7.0f;
        const float s = std::sin(angle);
        const float c = std::cos(angle);
        return ShapeVertex{{3.7f * s, 3.7f * c, -5.3f / 2.0f + row * (5.3f / 41.0f)},
                           {s, c, 0.0f},
                           {column * (1.0f / 7.0f), row * (1.0f / 41.0f)}};
    });
}

TEST(MeshFormulas, of_a_torus) {
    const auto torus = make_shape<MeshTorus>();
    torus->set_build_params(5.3f, 1.7f, 41);
    ASSERT_TRUE(torus->_build());
    const vec4 center(5.3f - 1.7f, 0.0f, 0.0f, 1.0f);
    expect_grid(*torus, 41, 41, [&center](float ring, float i) {
        vec4 section(1.7f, 0.0f, 0.0f, 1.0f);
        section.rotate_z((i / 41.0f) * 360.0f);
        vec4 position((section + center).get_vec3());
        vec4 normal = ring == 0.0f ? section : position - center;
        if (ring != 0.0f) {
            position.rotate_y((ring / 41.0f) * 360.0f);
            normal.rotate_y((ring / 41.0f) * 360.0f);
        }
        normal.w = 0.0f;
        normal.normalize();
        return ShapeVertex{
            position.get_vec3(), normal.get_vec3(), {(ring * 2.0f) / 41.0f, i / 41.0f}};
    });
}

TEST(MeshFormulas, of_a_terrain) {
    const Owned<Texture> map(new Texture);
    map->create_2d(42, 42, PF_RGB_U8);
    unsigned char* const bytes = map->get_pixmap_u8_ptr();
    for (unsigned long i = 0; i < 42 * 42 * 3; ++i)
        bytes[i] = static_cast<unsigned char>(i * 37);
    const auto terrain = make_shape<MeshTerrain>();
    terrain->set_build_params(map.get(), 41, 12.3f, 3.7f, 0.0f);
    ASSERT_TRUE(terrain->build(nullptr));
    const float step = (3.7f * 2.0f) / 41.0f;
    expect_grid(*terrain, 41, 41, [bytes, step](float row, float column) {
        const auto px = static_cast<unsigned long>((column / 41.0f) * 41.0f);
        const auto py = static_cast<unsigned long>((row / 41.0f) * 41.0f);
        const unsigned char* const texel = bytes + (py * 42 + px) * 3;
        const float height = (static_cast<float>(texel[0]) / 255.0f) * 0.3f +
                             (static_cast<float>(texel[1]) / 255.0f) * 0.59f +
                             (static_cast<float>(texel[2]) / 255.0f) * 0.11f;
        return ShapeVertex{{-3.7f + column * step, height * 12.3f, -3.7f + row * step},
                           vec3(),
                           {column / 41.0f, row / 41.0f}};
    });
}

// The third vertex of each cell of the first side, its corner of lowest row and column.
TEST(MeshFormulas, of_a_box) {
    const auto box = make_shape<MeshBox>();
    box->set_build_params(3.7f, 5.3f, 2.9f, 3, 7, 11);
    ASSERT_TRUE(box->build(nullptr));
    unsigned long i = 2;
    for (int row = 0; row < 11; ++row)
        for (int column = 0; column < 7; ++column, i += 6) {
            const auto r = static_cast<float>(row);
            const auto c = static_cast<float>(column);
            const float du = 1.0f / 7.0f;
            const float dv = 1.0f / 11.0f;
            expect_vertex(*box, i,
                          {{3.7f / 2.0f, 5.3f * c * du - 5.3f / 2.0f, 2.9f * r * dv - 2.9f / 2.0f},
                           {1.0f, 0.0f, 0.0f},
                           {c * du, 1.0f - r * dv}});
        }
}

} // namespace

} // namespace orvex_test
