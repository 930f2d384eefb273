#include "orvex/assets/textures/texture.h"

#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fake_render_target.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/scene/node.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;
namespace {

using orvex_test::FakeRenderer;
using orvex_test::FakeRenderTarget;
using Bytes = std::vector<unsigned char>;
using Calls = std::vector<std::string>;

/// A texture of the test's own, with a renderer that knows its record as "data".
class TextureTest : public testing::Test {
protected:
    TextureTest()
        : texture(new Texture) {
        texture->add_ref();
        name_data();
    }
    ~TextureTest() override {
        if (texture)
            texture->release(nullptr, nullptr);
    }

    void name_data() { renderer.name_pointer(texture->get_data_ptr(), "data"); }
    TextureData& data() { return *texture->get_data_ptr(); }

    FakeRenderer renderer;
    Texture* texture;
};

// -------------------------------------------------------------------------------- the record

TEST(TextureDataRecord, starts_with_the_told_defaults) {
    const TextureData data;
    EXPECT_FALSE(data.loaded_in_gpu_memory);
    EXPECT_TRUE(data.needs_gpu_update);
    EXPECT_EQ(data.type, TEXTURE_TYPE_2D);
    EXPECT_TRUE(data.gen_mipmaps);
    EXPECT_EQ(data.filtering_mode, FILTERING_LINEAR);
    EXPECT_EQ(data.addressing_mode, ADDRESSING_REPEAT);
    EXPECT_EQ(data.anisotropy, 1.0f);
    EXPECT_EQ(data.gl_format, 6408);
    EXPECT_EQ(data.opengl_texture_id, 0u);
    EXPECT_EQ(data.bindless_handle, 0u);
    EXPECT_EQ(data.renderer_id, 0);
    EXPECT_EQ(data.get_ref(), 0);
    EXPECT_EQ(data.pixel_format, PF_NONE);
    for (const TextureCubeMapFace& face : data.cubemap_faces) {
        EXPECT_TRUE(face.enabled);
        EXPECT_EQ(face.image.width, 0u);
    }
}

TEST(TextureDataRecord, counts_sharers_and_never_below_zero) {
    TextureData data;
    data.dec_ref();
    EXPECT_EQ(data.get_ref(), 0);
    data.inc_ref();
    data.inc_ref();
    data.dec_ref();
    EXPECT_EQ(data.get_ref(), 1);
}

TEST(TextureDataRecord, takes_sizes_from_the_base_image_and_the_cube_from_face_zero) {
    TextureData data;
    data.create(4, 3, 2, PF_RGB_U8, true);
    data.cubemap_faces[0].image.create(8, 8, 1, PF_RGBA_F32, true);
    EXPECT_EQ(data.get_width(), 4u);
    EXPECT_EQ(data.get_height(), 3u);
    EXPECT_EQ(data.get_depth(), 2u);
    EXPECT_EQ(data.get_cubemap_size(), 8u);
    EXPECT_EQ(data.get_pixel_format(), PF_RGB_U8);
    EXPECT_EQ(data.get_pixmap_u8_ptr(), data.pixmap_u8);
    EXPECT_EQ(data.get_pixmap_f32_ptr(), nullptr);
    data.type = TEXTURE_TYPE_CUBE;
    EXPECT_EQ(data.get_pixel_format(), PF_RGBA_F32);
    EXPECT_EQ(data.get_width(), 4u);
}

TEST(TextureDataRecord, converts_the_base_image_or_all_six_faces) {
    TextureData data;
    data.create(1, 1, 1, PF_RGB_U8, true);
    for (int face = 0; face < 5; ++face)
        data.cubemap_faces[face].image.create(1, 1, 1, PF_RGB_U8, true);
    EXPECT_TRUE(data.update_pixel_format(PF_RGBA_U8));
    EXPECT_EQ(data.pixel_format, PF_RGBA_U8);
    EXPECT_EQ(data.cubemap_faces[0].image.pixel_format, PF_RGB_U8);
    EXPECT_FALSE(data.update_pixel_format(PF_NONE));

    data.type = TEXTURE_TYPE_CUBE;
    EXPECT_TRUE(data.update_pixel_format(PF_RGBA_U8)) << "although the sixth face has no pixels";
    for (int face = 0; face < 5; ++face)
        EXPECT_EQ(data.cubemap_faces[face].image.pixel_format, PF_RGBA_U8);
    EXPECT_EQ(data.cubemap_faces[5].image.pixel_format, PF_NONE);
    EXPECT_TRUE(data.update_pixel_format(PF_NONE));
}

TEST(TextureDataRecord, cleans_up_faces_alone_or_with_the_base_image) {
    TextureData data;
    data.create(1, 1, 1, PF_RGB_U8, true);
    for (TextureCubeMapFace& face : data.cubemap_faces)
        face.image.create(1, 1, 1, PF_R_F32, true);
    EXPECT_TRUE(data.cleanup_cubemap_data());
    for (const TextureCubeMapFace& face : data.cubemap_faces)
        EXPECT_EQ(face.image.pixmap_f32, nullptr);
    EXPECT_NE(data.pixmap_u8, nullptr);
    EXPECT_TRUE(data.cleanup());
    EXPECT_EQ(data.pixmap_u8, nullptr);
}

TEST(TextureDataRecord, takes_a_foreign_id_as_up_to_date) {
    TextureData data;
    data.set_opengl_texture_id(7);
    EXPECT_EQ(data.opengl_texture_id, 7u);
    EXPECT_FALSE(data.needs_gpu_update);
    EXPECT_FALSE(data.is_loaded_in_gpu_memory());
    data.set_loaded_in_gpu_memory_state(true);
    EXPECT_TRUE(data.is_loaded_in_gpu_memory());
}

TEST(TextureDataRecord, makes_noise_in_the_base_image_only) {
    TextureData data;
    data.create(2, 2, 1, PF_RGB_U8, true);
    data.cubemap_faces[0].image.create(2, 2, 1, PF_RGB_U8, true);
    EXPECT_TRUE(data.fill_with_noise(0, vec4(1, 1, 1, 1), vec4(), 1));
    EXPECT_EQ(data.pixmap_u8[0], 255);
    EXPECT_EQ(data.cubemap_faces[0].image.pixmap_u8[0], 0);
}

// -------------------------------------------------------------------------------- identity

TEST_F(TextureTest, is_a_resource_with_a_record_from_birth) {
    EXPECT_EQ(texture->Node::get_type(), NODE_TYPE_TEXTURE);
    EXPECT_TRUE(texture->is_type_of(NODE_TYPE_RESOURCE));
    ASSERT_NE(texture->get_data_ptr(), nullptr);
    EXPECT_EQ(data().get_ref(), 1);
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_2D);
    EXPECT_EQ(texture->get_image_ptr(), texture->get_data_ptr());
    EXPECT_EQ(texture->get_renderer_id(), 0);
    EXPECT_EQ(texture->get_video_stream_data(), nullptr);
}

TEST_F(TextureTest, tells_the_renderer_that_loaded_its_record) {
    data().renderer_id = 5;
    EXPECT_EQ(texture->get_renderer_id(), 5);
}

TEST_F(TextureTest, keeps_a_pointer_for_the_host) {
    int mine = 0;
    texture->set_video_stream_data(&mine);
    EXPECT_EQ(texture->get_video_stream_data(), &mine);
}

TEST_F(TextureTest, init_replaces_the_record_of_the_constructor) {
    TextureData* const first = texture->get_data_ptr();
    texture->create_2d(2, 2, PF_RGB_U8);
    EXPECT_TRUE(texture->init(nullptr, nullptr));
    EXPECT_NE(texture->get_data_ptr(), first);
    EXPECT_EQ(texture->get_width(), 0u);
    EXPECT_EQ(data().get_ref(), 1);
    EXPECT_EQ(first->get_ref(), 0);
    EXPECT_EQ(first->pixmap_u8, nullptr);
}

TEST_F(TextureTest, gives_faces_by_number_and_null_outside) {
    for (int face = 0; face < 6; ++face)
        EXPECT_EQ(texture->get_cubemap_image_ptr(static_cast<CUBEMAP_FACE>(face)),
                  &data().cubemap_faces[face].image);
    for (const int face : {-1, 6, 100})
        EXPECT_EQ(texture->get_cubemap_image_ptr(static_cast<CUBEMAP_FACE>(face)), nullptr);
}

// -------------------------------------------------------------------------------- sharing

TEST_F(TextureTest, shares_a_record_and_keeps_it_while_one_sharer_is_left) {
    texture->create_2d(2, 2, PF_RGB_U8);
    auto* const other = new Texture;
    EXPECT_TRUE(other->share_texture_data(&renderer, texture));
    EXPECT_EQ(other->get_data_ptr(), texture->get_data_ptr());
    EXPECT_EQ(data().get_ref(), 2);
    renderer.take_calls();

    other->kill(&renderer, nullptr);
    EXPECT_EQ(data().get_ref(), 1);
    EXPECT_NE(data().pixmap_u8, nullptr);
    EXPECT_EQ(renderer.take_calls(), Calls());
}

TEST_F(TextureTest, shares_nothing_with_null) {
    TextureData* const before = texture->get_data_ptr();
    EXPECT_FALSE(texture->share_texture_data(&renderer, nullptr));
    EXPECT_EQ(texture->get_data_ptr(), before);
}

TEST_F(TextureTest, the_last_sharer_unloads_the_gpu_copy_with_a_renderer_in_hand) {
    TextureData* const record = texture->get_data_ptr();
    texture->create_2d(2, 2, PF_RGB_U8);
    EXPECT_TRUE(texture->cleanup_texture_data(&renderer));
    EXPECT_EQ(renderer.take_calls(), Calls{"texture_unload(data)"});
    EXPECT_EQ(texture->get_data_ptr(), nullptr);
    EXPECT_EQ(record->pixmap_u8, nullptr) << "the record outlives its pixels";
}

TEST_F(TextureTest, a_null_renderer_leaves_the_gpu_copy_behind) {
    TextureData* const record = texture->get_data_ptr();
    record->opengl_texture_id = 3;
    EXPECT_TRUE(texture->cleanup_texture_data(nullptr));
    EXPECT_EQ(record->opengl_texture_id, 3u);
}

TEST_F(TextureTest, its_end_unloads_the_gpu_copy) {
    texture->kill(&renderer, nullptr);
    texture = nullptr;
    EXPECT_EQ(renderer.take_calls(), Calls{"texture_unload(data)"});
}

TEST_F(TextureTest, setting_its_own_record_again_ends_its_content_and_keeps_it) {
    TextureData* const record = texture->get_data_ptr();
    texture->create_2d(2, 2, PF_RGB_U8);
    EXPECT_TRUE(texture->share_texture_data(&renderer, texture));
    EXPECT_EQ(renderer.take_calls(), Calls{"texture_unload(data)"});
    EXPECT_EQ(texture->get_data_ptr(), record);
    EXPECT_EQ(record->get_ref(), 1);
    EXPECT_EQ(record->pixmap_u8, nullptr);
}

TEST_F(TextureTest, a_record_that_has_ended_can_be_taken_up_by_another_texture) {
    auto* const first = new Texture;
    TextureData* const record = first->get_data_ptr();
    first->cleanup_texture_data(nullptr);
    EXPECT_TRUE(texture->_set_texture_data(nullptr, record));
    first->kill(nullptr, nullptr);
    EXPECT_EQ(texture->get_data_ptr(), record);
    EXPECT_TRUE(texture->create_2d(2, 2, PF_RGB_U8)) << "the first texture must not delete it";
}

TEST_F(TextureTest, any_of_several_ended_records_can_be_taken_up) {
    auto* const first = new Texture;
    TextureData* const oldest = first->get_data_ptr();
    first->init_texture_data(nullptr);
    TextureData* const middle = first->get_data_ptr();
    first->init_texture_data(nullptr);
    first->cleanup_texture_data(nullptr);
    auto* const second = new Texture;
    EXPECT_TRUE(second->_set_texture_data(nullptr, middle));
    EXPECT_TRUE(texture->_set_texture_data(nullptr, oldest));
    first->kill(nullptr, nullptr);
    EXPECT_TRUE(second->create_2d(2, 2, PF_RGB_U8));
    EXPECT_TRUE(texture->create_2d(2, 2, PF_RGB_U8));
    second->kill(nullptr, nullptr);
}

TEST_F(TextureTest, deletes_every_record_it_has_ended_with_itself) {
    struct Counted : TextureData {
        explicit Counted(int& count)
            : count(count) {}
        ~Counted() override { ++count; }
        int& count;
    };
    int num_deleted = 0;
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(texture->_set_texture_data(nullptr, new Counted(num_deleted)));
    EXPECT_TRUE(texture->init_texture_data(nullptr));
    EXPECT_EQ(num_deleted, 0) << "somebody may still look at them";
    texture->kill(nullptr, nullptr);
    texture = nullptr;
    EXPECT_EQ(num_deleted, 3);
}

TEST(Texture, deleted_directly_drops_its_record) {
    auto* const texture = new Texture;
    auto* const other = new Texture;
    other->share_texture_data(nullptr, texture);
    delete texture;
    EXPECT_EQ(other->get_data_ptr()->get_ref(), 1);
    delete other;
}

TEST_F(TextureTest, without_a_record_every_operation_is_quiet) {
    texture->cleanup_texture_data(nullptr);
    Image image;
    float color[4] = {};
    FakeRenderTarget target(2, 2);
    const vec4 grey(1, 1, 1, 1);
    EXPECT_EQ(texture->get_image_ptr(), nullptr);
    EXPECT_EQ(texture->get_cubemap_image_ptr(CUBEMAP_FACE_POSITIVE_X), nullptr);
    EXPECT_EQ(texture->get_width() + texture->get_height() + texture->get_depth(), 0u);
    EXPECT_EQ(texture->get_cubemap_size(), 0u);
    EXPECT_EQ(texture->get_type(), 0);
    EXPECT_EQ(texture->get_pixel_format(), PF_NONE);
    EXPECT_EQ(texture->get_pixmap_u8_ptr(), nullptr);
    EXPECT_EQ(texture->get_pixmap_f32_ptr(), nullptr);
    EXPECT_EQ(texture->get_renderer_id(), 0);
    EXPECT_FALSE(texture->load_from_image(&image));
    EXPECT_FALSE(texture->load_cubemap_face_image(CUBEMAP_FACE_POSITIVE_X, &image));
    EXPECT_FALSE(texture->create_1d(1, PF_RGB_U8));
    EXPECT_FALSE(texture->create_2d(1, 1, PF_RGB_U8));
    EXPECT_FALSE(texture->create_cubemap(1, PF_RGB_U8));
    EXPECT_FALSE(texture->init_color_texture_from_render_target(&target, 0));
    EXPECT_FALSE(texture->init_depth_texture_from_render_target(&target));
    EXPECT_FALSE(texture->update_pixmap_rgb_u8_from_render_target(&target, 0));
    EXPECT_FALSE(texture->update_pixmap_rgba_u8_from_render_target(&target, 0));
    EXPECT_FALSE(texture->update_pixmap_rgba_u8_from_framebuffer(&renderer));
    EXPECT_FALSE(texture->upload(&renderer));
    EXPECT_FALSE(texture->unload(&renderer));
    EXPECT_FALSE(texture->gpu_memory_update(&renderer));
    EXPECT_FALSE(texture->image_bind(&renderer, 0, DATA_ACCESS_READ_ONLY));
    EXPECT_FALSE(texture->update_pixel_format(PF_RGB_U8));
    EXPECT_FALSE(texture->flip_horizontal());
    EXPECT_FALSE(texture->flip_vertical());
    EXPECT_FALSE(texture->fill_with_noise(1, grey, grey, 1));
    EXPECT_FALSE(texture->set_texel_1d(0, grey));
    EXPECT_FALSE(texture->set_texel_1d_v2(0, color));
    EXPECT_FALSE(texture->set_texel_2d(0, 0, grey));
    EXPECT_FALSE(texture->set_texel_2d_v2(0, 0, color));
    EXPECT_FALSE(texture->update_pixmap_rgb_u8(color));
    EXPECT_FALSE(texture->update_pixmap_rgba_u8(color));
    EXPECT_FALSE(texture->update_pixmap_rgb_f32(color));
    EXPECT_FALSE(texture->update_pixmap_rgba_f32(color));
    texture->set_filtering_mode(&renderer, FILTERING_NEAREST);
    texture->set_addressing_mode(&renderer, ADDRESSING_CLAMP);
    texture->set_anisotropy(&renderer, 2.0f);
    texture->gen_mipmaps(false);
    EXPECT_EQ(renderer.take_calls(), Calls());
    EXPECT_TRUE(texture->bind(&renderer, 3));
    EXPECT_EQ(renderer.take_calls(), Calls{"texture_bind(null, 3)"});
}

// -------------------------------------------------------------------------------- new pixels

TEST_F(TextureTest, creates_pixels_of_each_kind) {
    EXPECT_TRUE(texture->create_1d(16, PF_RGBA_F32));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_1D);
    EXPECT_EQ(texture->get_width(), 16u);
    EXPECT_EQ(texture->get_height(), 1u);
    EXPECT_EQ(texture->get_depth(), 1u);
    EXPECT_EQ(texture->get_pixmap_f32_ptr()[63], 0.0f);

    EXPECT_TRUE(texture->create_2d(4, 3, PF_RGB_U8));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_2D);
    EXPECT_EQ(texture->get_height(), 3u);
    EXPECT_EQ(texture->get_pixmap_u8_ptr()[35], 0);

    EXPECT_TRUE(texture->create_cubemap(8, PF_RGBA_U8));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_CUBE);
    EXPECT_EQ(texture->get_cubemap_size(), 8u);
    EXPECT_EQ(texture->get_pixel_format(), PF_RGBA_U8);
    EXPECT_EQ(data().cubemap_faces[5].image.pixmap_u8[0], 255);
}

TEST_F(TextureTest, keeps_its_type_when_pixels_cannot_be_created) {
    data().type = TEXTURE_TYPE_3D;
    EXPECT_FALSE(texture->create_1d(16, PF_RGB_F16));
    EXPECT_FALSE(texture->create_2d(16, 16, PF_NONE));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_3D);
    EXPECT_TRUE(texture->create_cubemap(16, PF_NONE));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_CUBE);
    EXPECT_EQ(texture->get_cubemap_size(), 0u);
}

TEST_F(TextureTest, copies_an_image_into_the_base_or_a_face) {
    Image image;
    image.create(2, 1, 1, PF_RGB_U8, true);
    image.fill_color_rgb_u8(1, 2, 3);
    data().type = TEXTURE_TYPE_3D;
    EXPECT_TRUE(texture->load_from_image(&image));
    EXPECT_NE(texture->get_pixmap_u8_ptr(), image.pixmap_u8);
    EXPECT_EQ(texture->get_pixmap_u8_ptr()[5], 3);
    EXPECT_TRUE(texture->load_cubemap_face_image(CUBEMAP_FACE_NEGATIVE_Z, &image));
    EXPECT_EQ(data().cubemap_faces[5].image.pixmap_u8[5], 3);
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_3D);
    EXPECT_FALSE(texture->load_from_image(nullptr));
    EXPECT_FALSE(texture->load_cubemap_face_image(CUBEMAP_FACE_POSITIVE_X, nullptr));
    EXPECT_FALSE(texture->load_cubemap_face_image(static_cast<CUBEMAP_FACE>(6), &image));
}

// -------------------------------------------------------------------------------- edits

TEST_F(TextureTest, marks_its_pixels_as_newer_after_a_successful_edit) {
    const float color[4] = {1, 2, 3, 4};
    const struct {
        const char* name;
        PIXEL_FORMAT format;
        bool (*edit)(Texture&, const float*);
    } rows[] = {
        {"set_texel_1d", PF_RGB_U8,
         [](Texture& t, const float*) { return t.set_texel_1d(0, vec4(1, 2, 3, 4)); }},
        {"set_texel_1d_v2", PF_RGB_U8,
         [](Texture& t, const float* c) { return t.set_texel_1d_v2(0, c); }},
        {"set_texel_2d", PF_RGB_U8,
         [](Texture& t, const float*) { return t.set_texel_2d(0, 0, vec4(1, 2, 3, 4)); }},
        {"set_texel_2d_v2", PF_RGB_U8,
         [](Texture& t, const float* c) { return t.set_texel_2d_v2(0, 0, c); }},
        {"update_pixmap_rgb_u8", PF_RGB_U8,
         [](Texture& t, const float* c) { return t.update_pixmap_rgb_u8(c); }},
        {"update_pixmap_rgba_u8", PF_RGBA_U8,
         [](Texture& t, const float* c) { return t.update_pixmap_rgba_u8(c); }},
        {"update_pixmap_rgb_f32", PF_RGB_F32,
         [](Texture& t, const float* c) { return t.update_pixmap_rgb_f32(c); }},
        {"update_pixmap_rgba_f32", PF_RGBA_F32,
         [](Texture& t, const float* c) { return t.update_pixmap_rgba_f32(c); }},
        {"update_pixel_format", PF_RGB_U8,
         [](Texture& t, const float*) { return t.update_pixel_format(PF_RGBA_U8); }},
    };
    for (const auto& row : rows) {
        texture->init_texture_data(nullptr);
        texture->create_2d(1, 1, row.format);
        data().needs_gpu_update = false;
        EXPECT_TRUE(row.edit(*texture, color)) << row.name;
        EXPECT_TRUE(data().needs_gpu_update) << row.name;

        texture->init_texture_data(nullptr);
        data().needs_gpu_update = false;
        EXPECT_FALSE(row.edit(*texture, color)) << row.name << " without pixels";
        EXPECT_FALSE(data().needs_gpu_update) << row.name << " without pixels";
    }
}

TEST_F(TextureTest, a_failed_texel_leaves_the_flag_as_it_was) {
    texture->create_2d(2, 2, PF_RGB_U8);
    data().needs_gpu_update = false;
    EXPECT_FALSE(texture->set_texel_2d(0, 2, vec4()));
    EXPECT_FALSE(data().needs_gpu_update);
    data().needs_gpu_update = true;
    EXPECT_FALSE(texture->set_texel_2d(0, 2, vec4()));
    EXPECT_TRUE(data().needs_gpu_update);
}

TEST_F(TextureTest, flips_and_noise_leave_the_flag_as_it_was) {
    texture->create_2d(2, 1, PF_RGB_U8);
    texture->set_texel_1d(0, vec4(9, 9, 9, 9));
    data().needs_gpu_update = false;
    EXPECT_TRUE(texture->flip_horizontal());
    EXPECT_EQ(texture->get_pixmap_u8_ptr()[3], 9);
    EXPECT_TRUE(texture->flip_vertical());
    EXPECT_TRUE(texture->fill_with_noise(0, vec4(1, 1, 1, 1), vec4(), 1));
    EXPECT_EQ(texture->get_pixmap_u8_ptr()[0], 255);
    EXPECT_FALSE(data().needs_gpu_update);
}

// -------------------------------------------------------------------------------- sampler

TEST_F(TextureTest, stores_sampler_settings_and_sends_them_with_a_renderer) {
    texture->set_filtering_mode(nullptr, FILTERING_TRILINEAR);
    texture->set_addressing_mode(nullptr, ADDRESSING_MIRROR);
    texture->set_anisotropy(nullptr, 4.0f);
    texture->gen_mipmaps(false);
    EXPECT_EQ(data().filtering_mode, FILTERING_TRILINEAR);
    EXPECT_EQ(data().addressing_mode, ADDRESSING_MIRROR);
    EXPECT_EQ(data().anisotropy, 4.0f);
    EXPECT_FALSE(data().gen_mipmaps);
    texture->set_filtering_mode(&renderer, FILTERING_NEAREST);
    texture->set_addressing_mode(&renderer, ADDRESSING_CLAMP);
    texture->set_anisotropy(&renderer, 0.5f);
    EXPECT_EQ(data().filtering_mode, FILTERING_NEAREST);
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"set_texture_filtering_mode(data, 1)", "set_texture_addressing_mode(data, 2)",
                     "set_texture_anisotropy(data, 0.5)"}));
}

// -------------------------------------------------------------------------------- GPU stage

TEST_F(TextureTest, uploads_by_its_type_on_unit_zero) {
    const struct {
        int type;
        Calls calls;
    } rows[] = {
        {TEXTURE_TYPE_1D, {"texture_1d_load(data, 0)"}},
        {TEXTURE_TYPE_2D, {"texture_2d_load(data, 0)"}},
        {TEXTURE_TYPE_CUBE, {"texture_cube_load(data, 0)"}},
        {TEXTURE_TYPE_3D, {}},
        {TEXTURE_TYPE_2D_MULTISAMPLE, {}},
        {TEXTURE_TYPE_RECTANGLE, {}},
        {0, {}},
    };
    for (const auto& row : rows) {
        data().type = row.type;
        EXPECT_EQ(texture->upload(&renderer), !row.calls.empty()) << row.type;
        EXPECT_EQ(renderer.take_calls(), row.calls);
    }
    EXPECT_FALSE(texture->upload(nullptr));
    data().type = TEXTURE_TYPE_2D;
    renderer.results["texture_2d_load"] = false;
    EXPECT_FALSE(texture->upload(&renderer));
}

TEST_F(TextureTest, unloads_through_the_renderer) {
    EXPECT_TRUE(texture->unload(&renderer));
    EXPECT_EQ(renderer.take_calls(), Calls{"texture_unload(data)"});
    renderer.results["texture_unload"] = false;
    EXPECT_FALSE(texture->unload(&renderer));
    EXPECT_FALSE(texture->unload(nullptr));
}

TEST_F(TextureTest, sends_its_pixels_by_its_type_and_lowers_the_flag_in_any_case) {
    texture->create_2d(6, 4, PF_RGB_U8);
    const struct {
        int type;
        Calls calls;
    } rows[] = {
        {TEXTURE_TYPE_1D, {"texture_1d_update(data, 0, 6)"}},
        {TEXTURE_TYPE_2D, {"texture_2d_update(data, 0, 0, 6, 4)"}},
        {TEXTURE_TYPE_CUBE, {"texture_cube_update(data)"}},
        {TEXTURE_TYPE_3D, {}},
        {TEXTURE_TYPE_RECTANGLE, {}},
    };
    for (const auto& row : rows) {
        data().type = row.type;
        data().needs_gpu_update = true;
        EXPECT_EQ(texture->gpu_memory_update(&renderer), !row.calls.empty()) << row.type;
        EXPECT_EQ(renderer.take_calls(), row.calls);
        EXPECT_FALSE(data().needs_gpu_update) << row.type;
    }
    data().type = TEXTURE_TYPE_2D;
    data().needs_gpu_update = true;
    renderer.results["texture_2d_update"] = false;
    EXPECT_FALSE(texture->gpu_memory_update(&renderer));
    EXPECT_FALSE(data().needs_gpu_update);
    data().needs_gpu_update = true;
    EXPECT_FALSE(texture->gpu_memory_update(nullptr));
    EXPECT_TRUE(data().needs_gpu_update);
}

TEST_F(TextureTest, binds_and_sends_newer_pixels_once) {
    texture->create_2d(2, 2, PF_RGB_U8);
    EXPECT_TRUE(texture->bind(&renderer, 5));
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"texture_bind(data, 5)", "texture_2d_update(data, 0, 0, 2, 2)"}));
    EXPECT_TRUE(texture->bind(&renderer, 5));
    EXPECT_EQ(renderer.take_calls(), Calls{"texture_bind(data, 5)"});
    texture->set_texel_1d(0, vec4(1, 1, 1, 1));
    EXPECT_TRUE(texture->activate(&renderer, 1));
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"texture_bind(data, 1)", "texture_2d_update(data, 0, 0, 2, 2)"}));
}

TEST_F(TextureTest, bind_is_true_even_if_the_renderer_could_not_bind) {
    data().needs_gpu_update = false;
    renderer.results["texture_bind"] = false;
    EXPECT_TRUE(texture->bind(&renderer, 99));
    EXPECT_FALSE(texture->bind(nullptr, 0));
    EXPECT_FALSE(texture->activate(nullptr, 0));
}

TEST_F(TextureTest, unbind_leaves_the_unit_without_texture) {
    EXPECT_TRUE(texture->unbind(&renderer, 4));
    EXPECT_EQ(renderer.take_calls(), Calls{"texture_bind(null, 4)"});
    EXPECT_FALSE(texture->unbind(nullptr, 4));
    renderer.results["texture_bind"] = false;
    EXPECT_FALSE(texture->unbind(&renderer, 4));
}

TEST_F(TextureTest, binds_to_image_units) {
    EXPECT_TRUE(texture->image_bind(&renderer, 2, DATA_ACCESS_READ_ONLY));
    EXPECT_TRUE(texture->image_activate(&renderer, 3, DATA_ACCESS_READ_WRITE));
    EXPECT_TRUE(texture->image_unbind(&renderer, 2));
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"image_texture_bind(data, 2, 2)", "image_texture_bind(data, 3, 0)",
                     "image_texture_bind(null, 2, 1)"}));
    EXPECT_FALSE(texture->image_bind(nullptr, 2, DATA_ACCESS_READ_ONLY));
    EXPECT_FALSE(texture->image_activate(nullptr, 2, DATA_ACCESS_READ_ONLY));
    EXPECT_FALSE(texture->image_unbind(nullptr, 2));
    renderer.results["image_texture_bind"] = false;
    EXPECT_FALSE(texture->image_bind(&renderer, 2, DATA_ACCESS_READ_ONLY));
    EXPECT_FALSE(texture->image_unbind(&renderer, 2));
}

class OverridingTexture : public Texture {
public:
    std::vector<std::string> calls;
    bool bind(Renderer*, unsigned long unit) override {
        calls.push_back("bind " + std::to_string(unit));
        return false;
    }
    bool image_bind(Renderer*, unsigned long unit, DATA_ACCESS_TYPE access) override {
        calls.push_back("image_bind " + std::to_string(unit) + " " + std::to_string(access));
        return false;
    }
};

TEST(Texture, activates_through_its_virtual_binds) {
    FakeRenderer renderer;
    OverridingTexture texture;
    EXPECT_FALSE(texture.activate(&renderer, 7));
    EXPECT_FALSE(texture.image_activate(&renderer, 8, DATA_ACCESS_WRITE_ONLY));
    EXPECT_EQ(texture.calls, (Calls{"bind 7", "image_bind 8 1"}));
}

class UpdatingTexture : public Texture {
public:
    int updates = 0;
    bool gpu_memory_update(Renderer*) override {
        ++updates;
        return true;
    }
};

TEST(Texture, sends_newer_pixels_through_its_virtual_update) {
    FakeRenderer renderer;
    UpdatingTexture texture;
    EXPECT_TRUE(texture.bind(&renderer, 0));
    EXPECT_EQ(texture.updates, 1);
}

// -------------------------------------------------------------------------------- render targets

TEST_F(TextureTest, stands_for_a_render_targets_textures) {
    FakeRenderTarget target(4, 4);
    EXPECT_TRUE(texture->init_color_texture_from_render_target(&target, 3));
    EXPECT_EQ(target.color_index, 0) << "always the first colour texture";
    EXPECT_EQ(data().opengl_texture_id, 11u);
    EXPECT_TRUE(data().loaded_in_gpu_memory);
    EXPECT_TRUE(data().opengl_texture_id_borrowed);
    EXPECT_FALSE(data().needs_gpu_update);
    EXPECT_TRUE(texture->init_depth_texture_from_render_target(&target));
    EXPECT_EQ(data().opengl_texture_id, 12u);
    EXPECT_FALSE(texture->init_color_texture_from_render_target(nullptr, 0));
    EXPECT_FALSE(texture->init_depth_texture_from_render_target(nullptr));
}

TEST_F(TextureTest, reads_a_target_as_a_square_of_its_width) {
    FakeRenderTarget target(200, 100);
    texture->create_2d(200, 100, PF_RGB_U8);
    EXPECT_TRUE(texture->update_pixmap_rgb_u8_from_render_target(&target, 2));
    EXPECT_EQ(texture->get_width(), 200u);
    EXPECT_EQ(texture->get_height(), 200u);
    EXPECT_EQ(texture->get_pixel_format(), PF_RGB_U8);
    const unsigned char* const pixels = texture->get_pixmap_u8_ptr();
    EXPECT_EQ(pixels[0], 1);
    EXPECT_EQ(pixels[200 * 3 * 100 - 1], 100);
    EXPECT_EQ(pixels[200 * 3 * 100], 0) << "zeros behind what the target holds";
    EXPECT_EQ(pixels[200 * 3 * 200 - 1], 0);
}

TEST_F(TextureTest, cuts_a_target_that_is_higher_than_wide) {
    FakeRenderTarget target(4, 8);
    EXPECT_TRUE(texture->update_pixmap_rgba_u8_from_render_target(&target, 0));
    EXPECT_EQ(texture->get_width(), 4u);
    EXPECT_EQ(texture->get_height(), 4u);
    EXPECT_EQ(texture->get_pixel_format(), PF_RGBA_U8);
    const unsigned char* const pixels = texture->get_pixmap_u8_ptr();
    EXPECT_EQ(pixels[0], 1);
    EXPECT_EQ(pixels[63], 4);
}

TEST_F(TextureTest, takes_padded_rows_byte_for_byte) {
    FakeRenderTarget target(3, 3);
    EXPECT_TRUE(texture->update_pixmap_rgb_u8_from_render_target(&target, 0));
    const unsigned char* const pixels = texture->get_pixmap_u8_ptr();
    EXPECT_EQ(Bytes(pixels, pixels + 27), (Bytes{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2,
                                                 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3}));
}

TEST_F(TextureTest, keeps_a_buffer_that_the_target_fits) {
    FakeRenderTarget target(4, 4);
    data().type = TEXTURE_TYPE_RECTANGLE;
    data().create(4, 4, 1, PF_RGBA_U8, true);
    const unsigned char* const pixels = texture->get_pixmap_u8_ptr();
    EXPECT_TRUE(texture->update_pixmap_rgb_u8_from_render_target(&target, 0));
    EXPECT_EQ(texture->get_pixmap_u8_ptr(), pixels);
    EXPECT_EQ(texture->get_pixel_format(), PF_RGBA_U8);
    EXPECT_TRUE(texture->update_pixmap_rgba_u8_from_render_target(&target, 0));
    EXPECT_EQ(texture->get_pixmap_u8_ptr(), pixels);
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_RECTANGLE);
}

TEST_F(TextureTest, makes_room_where_the_buffer_is_too_small_for_the_target) {
    FakeRenderTarget target(4, 4);
    data().type = TEXTURE_TYPE_RECTANGLE;
    data().create(4, 4, 1, PF_RGB_U8, true);
    EXPECT_TRUE(texture->update_pixmap_rgba_u8_from_render_target(&target, 0));
    EXPECT_EQ(texture->get_pixel_format(), PF_RGBA_U8);
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_2D);
}

TEST_F(TextureTest, reports_a_target_that_cannot_be_read) {
    FakeRenderTarget target(4, 4);
    target.readable = false;
    EXPECT_FALSE(texture->update_pixmap_rgb_u8_from_render_target(&target, 0));
    EXPECT_FALSE(texture->update_pixmap_rgba_u8_from_render_target(&target, 0));
    EXPECT_FALSE(texture->update_pixmap_rgb_u8_from_render_target(nullptr, 0));
    EXPECT_FALSE(texture->update_pixmap_rgba_u8_from_render_target(nullptr, 0));
}

TEST_F(TextureTest, takes_a_target_without_size_as_empty) {
    FakeRenderTarget target(-1, -1);
    EXPECT_TRUE(texture->update_pixmap_rgb_u8_from_render_target(&target, 0));
    EXPECT_EQ(texture->get_width(), 0u);
}

/// A renderer with a colour buffer.
class FramebufferRenderer : public FakeRenderer {
public:
    int width = 0;
    int height = 0;
    void get_color_buffer_size(int* size, int* w, int* h) override {
        *size = width * height * 4;
        *w = width;
        *h = height;
    }
    void get_color_buffer(unsigned char* pixels) override {
        for (int i = 0; i < width * height * 4; ++i)
            pixels[i] = static_cast<unsigned char>(i);
    }
};

TEST(TextureFromFramebuffer, takes_the_colour_buffer_as_rgba) {
    FramebufferRenderer renderer;
    renderer.width = 4;
    renderer.height = 2;
    Texture texture;
    texture.create_1d(4, PF_RGB_U8);
    EXPECT_TRUE(texture.update_pixmap_rgba_u8_from_framebuffer(&renderer));
    EXPECT_EQ(texture.get_width(), 4u);
    EXPECT_EQ(texture.get_height(), 2u);
    EXPECT_EQ(texture.get_pixel_format(), PF_RGBA_U8);
    EXPECT_EQ(texture.get_type(), TEXTURE_TYPE_2D);
    EXPECT_EQ(texture.get_pixmap_u8_ptr()[31], 31);
    EXPECT_FALSE(texture.update_pixmap_rgba_u8_from_framebuffer(nullptr));
}

TEST(TextureFromFramebuffer, compares_the_width_with_both_sizes) {
    FramebufferRenderer renderer;
    renderer.width = renderer.height = 4;
    Texture texture;
    texture.create_2d(4, 100, PF_RGBA_U8);
    texture.get_data_ptr()->type = TEXTURE_TYPE_RECTANGLE;
    const unsigned char* const pixels = texture.get_pixmap_u8_ptr();
    EXPECT_TRUE(texture.update_pixmap_rgba_u8_from_framebuffer(&renderer));
    EXPECT_EQ(texture.get_pixmap_u8_ptr(), pixels) << "the height of the texture is not compared";
    EXPECT_EQ(texture.get_height(), 100u);
    EXPECT_EQ(texture.get_type(), TEXTURE_TYPE_RECTANGLE);
}

TEST(TextureFromFramebuffer, makes_room_where_the_buffer_is_too_small) {
    FramebufferRenderer renderer;
    renderer.width = renderer.height = 4;
    Texture texture;
    texture.create_2d(4, 1, PF_RGBA_U8);
    EXPECT_TRUE(texture.update_pixmap_rgba_u8_from_framebuffer(&renderer));
    EXPECT_EQ(texture.get_height(), 4u);
    texture.create_2d(4, 4, PF_RGB_U8);
    EXPECT_TRUE(texture.update_pixmap_rgba_u8_from_framebuffer(&renderer));
    EXPECT_EQ(texture.get_pixel_format(), PF_RGBA_U8);
}

} // namespace
} // namespace orvex_test
