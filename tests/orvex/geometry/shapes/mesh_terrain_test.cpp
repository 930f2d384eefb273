#include "orvex/geometry/shapes/mesh_terrain.h"

#include <algorithm>
#include <limits>

#include <gtest/gtest.h>

#include "orvex/assets/images/codecs/image_codec_stb.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/renderer/records/texture_data.h"
#include "shapes.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;

namespace {

using Bytes = std::vector<unsigned char>;

/// Red, green; blue, a mixture.
const Bytes four_texels{255, 0, 0, 0, 255, 0, 0, 0, 255, 51, 102, 204};

/// A texture of these pixels.
Owned<Texture> make_map(unsigned long width, unsigned long height, PIXEL_FORMAT format,
                        const Bytes& pixels) {
    Owned<Texture> map(new Texture);
    map->create_2d(width, height, format);
    std::copy(pixels.begin(), pixels.end(), map->get_pixmap_u8_ptr());
    return map;
}

TEST(MeshTerrain, is_raised_by_the_brightness_of_its_map) {
    struct Row {
        vec3 position;
        TexturePoint uv;
    };
    const Row rows[] = {
        {{-1.0f, 3.0f, -1.0f}, {0.0f, 0.0f}},      {{0.0f, 3.0f, -1.0f}, {0.5f, 0.0f}},
        {{1.0f, 5.8999996f, -1.0f}, {1.0f, 0.0f}}, {{-1.0f, 3.0f, 0.0f}, {0.0f, 0.5f}},
        {{0.0f, 3.0f, 0.0f}, {0.5f, 0.5f}},        {{1.0f, 5.8999996f, 0.0f}, {1.0f, 0.5f}},
        {{-1.0f, 2.0f, 1.0f}, {0.0f, 1.0f}},       {{0.0f, 2.0f, 1.0f}, {0.5f, 1.0f}},
        {{1.0f, 3.8400002f, 1.0f}, {1.0f, 1.0f}},
    };
    const auto map = make_map(2, 2, PF_RGB_U8, four_texels);
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto terrain = make_shape<MeshTerrain>(kind);
        EXPECT_TRUE(terrain->set_build_params(map.get(), 2, 10.0f, 1.0f, 2.0f));
        ASSERT_TRUE(terrain->build(nullptr));
        ASSERT_EQ(terrain->get_num_vertices(nullptr), 9u);
        // Normals stay as the format makes them: zero, but for the spare w of four components.
        for (unsigned long i = 0; i < 9; ++i)
            expect_vertex(*terrain, i, {rows[i].position, vec3(), rows[i].uv});
        EXPECT_EQ(terrain->get_mesh_data()->index_bits, 16);
        EXPECT_EQ(faces_of(*terrain), (Faces{{0, 4, 1},
                                             {0, 3, 4},
                                             {1, 5, 2},
                                             {1, 4, 5},
                                             {3, 7, 4},
                                             {3, 6, 7},
                                             {4, 8, 5},
                                             {4, 7, 8}}));
        EXPECT_EQ(quad_edges_of(*terrain), (Edges{0, 3, 3, 4, 4, 1, 1, 0, 1, 4, 4, 5, 5, 2, 2, 1,
                                                  3, 6, 6, 7, 7, 4, 4, 3, 4, 7, 7, 8, 8, 5, 5, 4}));
        for (const Face& face : faces_of(*terrain))
            EXPECT_GT(front_of(*terrain, face).y, 0.0f);
    }
}

TEST(MeshTerrain, gets_its_normals_from_the_caller) {
    const auto map = make_map(2, 2, PF_RGB_U8, Bytes(12, 128));
    const auto terrain = make_shape<MeshTerrain>();
    terrain->set_build_params(map.get(), 2, 10.0f, 1.0f, 0.0f);
    ASSERT_TRUE(terrain->build(nullptr));
    EXPECT_EQ(terrain->get_mesh_data()->normal.data[4], vec4());
    EXPECT_TRUE(terrain->compute_faces_normal(nullptr));
    EXPECT_TRUE(terrain->compute_vertices_normal(nullptr));
    EXPECT_EQ(terrain->get_vertex_normal(4), vec4(0.0f, 1.0f, 0.0f, 0.0f));
}

TEST(MeshTerrain, weighs_bytes_in_storage_order_in_both_formats) {
    for (const PIXEL_FORMAT format : {PF_RGB_U8, PF_BGR_U8}) {
        const auto map = make_map(1, 1, format, {255, 0, 0});
        const auto terrain = make_shape<MeshTerrain>();
        EXPECT_TRUE(terrain->init_terrain_buffer(map.get()));
        EXPECT_EQ(terrain->elevation(0, 0, 1, 1.0f), 0.3f);
    }
    const auto white = make_map(1, 1, PF_RGB_U8, {255, 255, 255});
    const auto terrain = make_shape<MeshTerrain>();
    EXPECT_TRUE(terrain->init_terrain_buffer(white.get()));
    EXPECT_EQ(terrain->elevation(0, 0, 1, 1.0f), 1.0f);
}

TEST(MeshTerrain, reads_the_texel_below_a_grid_point) {
    const auto map = make_map(2, 2, PF_RGB_U8, four_texels);
    const auto terrain = make_shape<MeshTerrain>();
    ASSERT_TRUE(terrain->init_terrain_buffer(map.get()));
    EXPECT_EQ(terrain->elevation(0, 0, 100, 1.0f), 0.3f);
    EXPECT_EQ(terrain->elevation(99, 99, 100, 1.0f), 0.3f);
    EXPECT_EQ(terrain->elevation(100, 99, 100, 1.0f), 0.59f);
    EXPECT_EQ(terrain->elevation(99, 100, 100, 1.0f), 0.11f);
    EXPECT_EQ(terrain->elevation(100, 100, 100, 1.0f), 0.384f);
}

TEST(MeshTerrain, has_no_elevation_outside_its_map) {
    const auto map = make_map(2, 2, PF_RGB_U8, Bytes(12, 255));
    const auto terrain = make_shape<MeshTerrain>();
    ASSERT_TRUE(terrain->init_terrain_buffer(map.get()));
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();
    for (const auto& [x, y, n] : std::vector<std::array<int, 3>>{{2, 0, 1},
                                                                 {0, 2, 1},
                                                                 {-1, 0, 1},
                                                                 {0, -1, 1},
                                                                 {0, 0, 0},
                                                                 {1, 1, 0},
                                                                 {most, most, 1},
                                                                 {least, 0, 1},
                                                                 {5, 0, 1}})
        EXPECT_EQ(terrain->elevation(x, y, n, 10.0f), 0.0f) << x << ' ' << y << ' ' << n;
}

TEST(MeshTerrain, is_flat_without_a_usable_map) {
    const auto wide = make_map(2, 1, PF_RGB_U8, Bytes(6, 255));
    const auto with_alpha = make_map(1, 1, PF_RGBA_U8, Bytes(4, 255));
    const Owned<Texture> floats(new Texture);
    floats->create_2d(1, 1, PF_RGB_F32);
    const Owned<Texture> without_pixels(new Texture);
    const auto emptied = make_map(1, 1, PF_RGB_U8, Bytes(3, 255));
    emptied->get_image_ptr()->cleanup();
    const auto too_few = make_map(1, 1, PF_RGB_U8, Bytes(3, 255));
    too_few->get_image_ptr()->width = 9000;
    too_few->get_image_ptr()->height = 9000;
    const Owned<Texture> without_record(new Texture);
    without_record->cleanup_texture_data(nullptr);
    for (Texture* const map :
         {static_cast<Texture*>(nullptr), wide.get(), with_alpha.get(), floats.get(),
          without_pixels.get(), emptied.get(), too_few.get(), without_record.get()}) {
        const auto terrain = make_shape<MeshTerrain>();
        EXPECT_FALSE(terrain->init_terrain_buffer(map));
        EXPECT_EQ(terrain->elevation(0, 0, 1, 7.0f), 0.0f);
        for (const auto& [least, level] : {std::pair{-3.0f, 0.0f}, {0.0f, 0.0f}, {2.5f, 2.5f}}) {
            terrain->set_build_params(map, 4, 10.0f, 8.0f, least);
            ASSERT_TRUE(terrain->build(nullptr));
            expect_extent(*terrain, {-8.0f, level, -8.0f}, {8.0f, level, 8.0f});
        }
    }
}

TEST(MeshTerrain, has_no_resolution_at_first) {
    const auto terrain = make_shape<MeshTerrain>();
    EXPECT_TRUE(terrain->build(nullptr));
    EXPECT_EQ(terrain->get_num_vertices(nullptr), 1u);
}

TEST(MeshTerrain, is_a_single_vertex_without_resolution) {
    for (const int resolution : {0, -5}) {
        const auto terrain = make_shape<MeshTerrain>();
        terrain->set_build_params(nullptr, resolution, 1.0f, 1.0f, 0.0f);
        EXPECT_TRUE(terrain->build(nullptr));
        EXPECT_EQ(terrain->get_num_vertices(nullptr), 1u);
        EXPECT_EQ(terrain->get_num_faces(nullptr), 0u);
    }
}

TEST(MeshTerrain, keeps_its_first_map_until_it_is_cleaned_up) {
    const auto low = make_map(1, 1, PF_RGB_U8, {255, 0, 0});
    const auto high = make_map(1, 1, PF_RGB_U8, {255, 255, 255});
    const auto terrain = make_shape<MeshTerrain>();
    terrain->set_build_params(low.get(), 1, 10.0f, 1.0f, 0.0f);
    terrain->build(nullptr);
    terrain->set_build_params(high.get(), 1, 10.0f, 1.0f, 0.0f);
    ASSERT_TRUE(terrain->build(nullptr));
    EXPECT_EQ(terrain->get_vertex_position(0).y, 3.0f);

    terrain->cleanup(nullptr, nullptr);
    EXPECT_EQ(terrain->get_mesh_data(), nullptr);
    terrain->init_mesh_data(nullptr, VERTEX_FORMAT_96);
    terrain->update_build_state(true);
    ASSERT_TRUE(terrain->build(nullptr));
    EXPECT_EQ(terrain->get_vertex_position(0).y, 10.0f);
}

TEST(MeshTerrain, reads_another_map_when_asked) {
    const auto low = make_map(1, 1, PF_RGB_U8, {255, 0, 0});
    const auto high = make_map(2, 2, PF_RGB_U8, Bytes(12, 255));
    const auto terrain = make_shape<MeshTerrain>();
    EXPECT_TRUE(terrain->init_terrain_buffer(low.get()));
    EXPECT_TRUE(terrain->init_terrain_buffer(high.get()));
    EXPECT_EQ(terrain->elevation(1, 1, 1, 1.0f), 1.0f);
    EXPECT_FALSE(terrain->init_terrain_buffer(nullptr));
    EXPECT_EQ(terrain->elevation(1, 1, 1, 1.0f), 1.0f) << "a failure keeps the heights";
}

/// Grey that grows by one from column to column.
Picture slope(int size) {
    Picture picture(size, size);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            unsigned char* const pixel = picture.at(x, y);
            pixel[0] = pixel[1] = pixel[2] = static_cast<unsigned char>(x);
            pixel[3] = 255;
        }
    return picture;
}

TEST(MeshTerrain, rises_from_a_picture_file) {
    const orvex_test::TempDir folder;
    const std::string path = folder.file("slope.png");
    ASSERT_TRUE(write_png(path, slope(256)));
    TextureMgr& textures = *TextureMgr::get();
    textures.start(nullptr);
    textures.register_image_codec_plugin(new ImageCodecStb);
    Texture* const map = textures.create_texture_2d_from_file(path.c_str(), false);
    ASSERT_NE(map, nullptr);

    const auto terrain = make_shape<MeshTerrain>();
    terrain->set_build_params(map, 255, 255.0f, 51.0f, 0.0f);
    ASSERT_TRUE(terrain->build(nullptr));
    textures.stop(nullptr);
    ASSERT_EQ(terrain->get_num_vertices(nullptr), 65536u);
    EXPECT_EQ(terrain->get_mesh_data()->index_bits, 32);
    // Column by column, one step up; rounding may pick the texel before.
    for (unsigned long i = 0; i < 256; ++i) {
        const float height = terrain->get_vertex_position(i).y;
        EXPECT_NEAR(height, static_cast<float>(i), 1.001f) << i;
        EXPECT_EQ(terrain->get_vertex_position(255 * 256 + i).y, height) << i;
    }
    EXPECT_NEAR(terrain->get_vertex_position(255).y, 255.0f, 1e-3f);
    expect_extent(*terrain, {-51.0f, 0.0f, -51.0f}, {51.0f, 255.0f, 51.0f}, 1e-3f);
}

} // namespace

} // namespace orvex_test
