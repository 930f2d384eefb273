#include "orvex/assets/models/3ds/private/lib3ds_normals.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include <gtest/gtest.h>
#include <lib3ds.h>

namespace orvex_test {

using namespace orvex;
namespace {

/// Faces of three vertices of their own each.
class Faces {
public:
    void add(const float (&corners)[3][3]) {
        Lib3dsFace face{};
        for (unsigned short& index : face.index) {
            index = static_cast<unsigned short>(vertices.size() / 3);
            const auto& corner = corners[&index - face.index];
            vertices.insert(vertices.end(), corner, corner + 3);
        }
        faces.push_back(face);
    }

    /// Each corner's normal is to the bit what lib3ds makes of it. One bit of a number that is none
    /// may differ from another's.
    void expect_normals_of_lib3ds() {
        Lib3dsMesh mesh{};
        mesh.nvertices = static_cast<unsigned short>(vertices.size() / 3);
        mesh.vertices = reinterpret_cast<float(*)[3]>(vertices.data());
        mesh.nfaces = static_cast<unsigned short>(faces.size());
        mesh.faces = faces.data();
        std::vector<Lib3dsFloat3> expected(3 * faces.size()), ours(3 * faces.size());
        lib3ds_mesh_calculate_vertex_normals(&mesh, reinterpret_cast<float(*)[3]>(expected.data()));
        lib3ds::fill_unsmoothed_normals(mesh, mesh.nfaces, ours.data());
        for (std::size_t i = 0; i < ours.size(); ++i)
            for (std::size_t axis = 0; axis < 3; ++axis)
                if (!std::isnan(ours[i][axis]) || !std::isnan(expected[i][axis]))
                    ASSERT_EQ(std::bit_cast<std::uint32_t>(ours[i][axis]),
                              std::bit_cast<std::uint32_t>(expected[i][axis]))
                        << "corner " << i << ", axis " << axis << ": " << ours[i][axis];
    }

private:
    std::vector<float> vertices;
    std::vector<Lib3dsFace> faces;
};

/// A face whose numbers all come from the function.
template<class Number>
void add_face_of(Faces& faces, Number number) {
    float corners[3][3];
    for (auto& corner : corners)
        for (float& value : corner)
            value = number();
    faces.add(corners);
}

TEST(Lib3dsNormals, are_to_the_bit_those_of_lib3ds) {
    std::mt19937 engine(5);
    std::uniform_real_distribution<float> number(-1.0f, 1.0f);
    for (const int num_faces : {1, 2, 63, 64, 65, 20'000}) {
        Faces faces;
        for (int i = 0; i < num_faces; ++i)
            add_face_of(faces, [&] { return number(engine); });
        faces.expect_normals_of_lib3ds();
    }
}

TEST(Lib3dsNormals, are_those_of_lib3ds_where_corners_lie_on_a_grid_or_on_each_other) {
    std::mt19937 engine(6);
    std::uniform_int_distribution<int> number(-2, 2);
    Faces faces;
    for (int i = 0; i < 20'000; ++i)
        add_face_of(faces, [&] { return static_cast<float>(number(engine)); });
    faces.expect_normals_of_lib3ds();
}

TEST(Lib3dsNormals, are_those_of_lib3ds_for_any_bits) {
    std::mt19937 engine(7);
    Faces faces;
    for (int i = 0; i < 20'000; ++i)
        add_face_of(faces,
                    [&] { return std::bit_cast<float>(static_cast<std::uint32_t>(engine())); });
    faces.expect_normals_of_lib3ds();
}

TEST(Lib3dsNormals, are_those_of_lib3ds_for_faces_of_any_size) {
    std::mt19937 engine(8);
    std::uniform_real_distribution<float> number(-1.0f, 1.0f);
    Faces faces;
    for (int i = 0; i < 20'000; ++i) {
        // From products of edges below the least number to those above the greatest.
        const float size = std::ldexp(1.0f, i % 200 - 100);
        add_face_of(faces, [&] { return size * number(engine); });
    }
    faces.expect_normals_of_lib3ds();
}

TEST(Lib3dsNormals, are_those_of_lib3ds_in_narrow_and_in_flat_corners) {
    std::mt19937 engine(9);
    std::uniform_real_distribution<float> number(-1.0f, 1.0f);
    Faces faces;
    for (int i = 0; i < 20'000; ++i) {
        const float width = std::ldexp(1.0f, -(i % 24));
        const float from = number(engine), middle = number(engine);
        faces.add({{from, 0.0f, width * number(engine)},
                   {middle, width * number(engine), 0.0f},
                   {number(engine), 0.0f, width * number(engine)}});
    }
    faces.expect_normals_of_lib3ds();
}

} // namespace
} // namespace orvex_test
