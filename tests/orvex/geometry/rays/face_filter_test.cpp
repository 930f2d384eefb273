#include "orvex/geometry/rays/private/face_filter.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/math/mat4.h"
#include "orvex/math/math.h"

namespace orvex_test {

using namespace orvex;
namespace {

constexpr unsigned int num_vertices = 600;
constexpr unsigned long num_faces = 160 * faces_at_once;

/// Vertices of some stride, and faces of any of them in both widths.
struct Scene {
    std::size_t stride;
    std::vector<std::byte> bytes;
    std::vector<FaceU16> narrow;
    std::vector<FaceU32> wide;
    mat4 to_world;
    vec4 origin, direction;

    vec4 corner(unsigned int i) const {
        float p[3] = {};
        if (i < num_vertices)
            std::memcpy(p, bytes.data() + i * stride, sizeof p);
        return to_world * vec4(p[0], p[1], p[2], 1.0f);
    }

    bool meets(unsigned long face) const {
        const FaceU32& f = wide[face];
        float t = 0.0f;
        return Math::ray_triangle_intersection(origin, direction, corner(f.a), corner(f.b),
                                               corner(f.c), &t);
    }

    FaceProbe probe() const {
        static const mat4 identity;
        const bool is_identity = std::memcmp(&to_world, &identity, sizeof identity) == 0;
        return {{origin.x, origin.y, origin.z},
                {direction.x, direction.y, direction.z},
                is_identity ? nullptr : to_world.m,
                bytes.data(),
                stride,
                stride >= 16 ? num_vertices : num_vertices - 1};
    }
};

/// Small whole numbers, so that edges, corners and planes are met exactly, and now and then a
/// number that is none of the usual.
float make_number(std::mt19937& random, bool has_odd_ones) {
    static constexpr float odd[] = {-0.0f,
                                    1e-42f,
                                    1e38f,
                                    std::numeric_limits<float>::infinity(),
                                    -std::numeric_limits<float>::infinity(),
                                    std::numeric_limits<float>::quiet_NaN()};
    if (has_odd_ones && random() % 16 == 0)
        return odd[random() % std::size(odd)];
    return static_cast<float>(static_cast<int>(random() % 9)) - 4.0f;
}

Scene make_scene(unsigned int seed, std::size_t stride, bool is_turned, bool has_odd_ones) {
    std::mt19937 random(seed);
    Scene scene{stride, std::vector<std::byte>(num_vertices * stride), {}, {}, {}, {}, {}};
    for (unsigned int i = 0; i < num_vertices; ++i)
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const float number = make_number(random, has_odd_ones);
            std::memcpy(scene.bytes.data() + i * stride + axis * sizeof number, &number,
                        sizeof number);
        }
    for (unsigned long i = 0; i < num_faces; ++i) {
        // Most faces keep to vertices that are there.
        const unsigned int end = i % 40 == 0 ? num_vertices + 5 : num_vertices;
        const auto index = [&] { return static_cast<unsigned short>(random() % end); };
        scene.narrow.push_back({index(), index(), index()});
        const FaceU16& face = scene.narrow.back();
        scene.wide.push_back({face.a, face.b, face.c});
    }
    scene.origin = vec4(make_number(random, false), make_number(random, false), 9.0f, 1.0f);
    scene.direction = vec4(make_number(random, false), make_number(random, has_odd_ones), -8.0f, 0);
    if (is_turned)
        scene.to_world.init_rotate_y(30.0f).set_translate(0.5f, -0.25f, 1.0f);
    return scene;
}

/// The faces that a filter leaves, in their order.
template<class Face>
std::vector<unsigned long> faces_left(const Scene& scene, const std::vector<Face>& faces,
                                      SkipMissed<Face> skip) {
    const FaceProbe probe = scene.probe();
    std::vector<unsigned long> left;
    for (unsigned long i = skip(probe, faces.data(), 0, num_faces); i < num_faces;
         i = skip(probe, faces.data(), i + faces_at_once, num_faces))
        for (unsigned long face = i; face < i + faces_at_once; ++face)
            left.push_back(face);
    return left;
}

template<class Action>
void for_each_scene(Action action) {
    for (const std::size_t stride :
         {std::size_t{12}, std::size_t{16}, std::size_t{32}, std::size_t{96}})
        for (const bool is_turned : {false, true})
            for (const bool has_odd_ones : {false, true})
                for (unsigned int seed = 0; seed < 4; ++seed)
                    action(make_scene(seed, stride, is_turned, has_odd_ones));
}

TEST(FaceFilter, leaves_every_face_that_the_ray_meets) {
    unsigned long num_met = 0, num_ruled_out = 0;
    for_each_scene([&](const Scene& scene) {
        for (const FaceFilter& filter : face_filters()) {
            const auto narrow = faces_left(scene, scene.narrow, filter.skip_u16);
            const auto wide = faces_left(scene, scene.wide, filter.skip_u32);
            for (unsigned long face = 0; face < num_faces; ++face) {
                if (!scene.meets(face))
                    continue;
                ++num_met;
                EXPECT_TRUE(std::binary_search(narrow.begin(), narrow.end(), face)) << face;
                EXPECT_TRUE(std::binary_search(wide.begin(), wide.end(), face)) << face;
            }
            num_ruled_out += num_faces - wide.size();
        }
    });
    EXPECT_GT(num_met, 1000u);
    EXPECT_GT(num_ruled_out, 1000u);
}

TEST(FaceFilter, is_the_same_on_every_processor) {
    for_each_scene([](const Scene& scene) {
        const FaceFilter& last = face_filters().back();
        for (const FaceFilter& filter : face_filters()) {
            EXPECT_EQ(faces_left(scene, scene.narrow, filter.skip_u16),
                      faces_left(scene, scene.narrow, last.skip_u16));
            EXPECT_EQ(faces_left(scene, scene.wide, filter.skip_u32),
                      faces_left(scene, scene.wide, last.skip_u32));
        }
    });
}

TEST(FaceFilter, leaves_faces_of_vertices_that_are_not_there) {
    const Scene scene = make_scene(1, 16, false, false);
    std::vector<FaceU32> faces(num_faces, {0, 0, 0});
    faces[3 * faces_at_once + 7] = {0, 0xFFFFFFFF, 0};
    faces[9 * faces_at_once] = {num_vertices, 0, 0};
    for (const FaceFilter& filter : face_filters()) {
        const auto left = faces_left(scene, faces, filter.skip_u32);
        ASSERT_EQ(left.size(), 2 * faces_at_once);
        EXPECT_EQ(left.front(), 3 * faces_at_once);
        EXPECT_EQ(left.back(), 10 * faces_at_once - 1);
    }
}

} // namespace

} // namespace orvex_test
