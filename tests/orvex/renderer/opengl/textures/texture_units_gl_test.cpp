#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "textures_fixture.h"

namespace orvex_test {

using namespace orvex;
namespace {

using orvex_test::GlCalls;

class TextureUnits : public Textures {};

ORVEX_BOTH_PROFILES(TextureUnits);

// -------------------------------------------------------------------------------- sampler

TEST_P(TextureUnits, the_addressing_mode_goes_to_two_coordinates) {
    data.type = TEXTURE_TYPE_CUBE;
    renderer->set_texture_addressing_mode(&data, ADDRESSING_MIRROR);
    renderer->set_texture_addressing_mode(nullptr, static_cast<SAMPLER_ADDRESSING_MODE>(9));
    EXPECT_EQ(
        recorder->take(),
        (GlCalls{"glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_S, GL_MIRRORED_REPEAT)",
                 "glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_T, GL_MIRRORED_REPEAT)",
                 "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
                 "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)"}));
    EXPECT_EQ(data.addressing_mode, ADDRESSING_REPEAT) << "the record isn't written";
}

TEST_P(TextureUnits, the_filtering_mode_knows_trilinear) {
    const struct {
        int mode;
        const char* magnification;
        const char* minification;
    } rows[] = {{1, "GL_NEAREST", "GL_NEAREST"},
                {2, "GL_LINEAR", "GL_LINEAR"},
                {3, "GL_LINEAR", "GL_LINEAR_MIPMAP_LINEAR"},
                {0, "GL_LINEAR", "GL_LINEAR"},
                {8, "GL_LINEAR", "GL_LINEAR"}};
    for (const auto& row : rows) {
        renderer->set_texture_filtering_mode(&data, static_cast<SAMPLER_FILTERING_MODE>(row.mode));
        EXPECT_EQ(recorder->take(),
                  (GlCalls{std::string("glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, ") +
                               row.magnification + ")",
                           std::string("glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, ") +
                               row.minification + ")"}));
    }
    renderer->set_texture_filtering_mode(nullptr, FILTERING_NEAREST);
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(TextureUnits, the_anisotropy_stays_between_one_and_the_limit) {
    const float limit = renderer->get_max_texture_anisotropy();
    ASSERT_EQ(limit, 16.0f) << "the software rasteriser's";
    const struct {
        float value;
        const char* sent;
    } rows[] = {{0.5f, "1"}, {64.0f, "16"}, {4.0f, "4"}, {-3.0f, "1"}};
    for (const auto& row : rows) {
        recorder->clear();
        renderer->set_texture_anisotropy(&data, row.value);
        EXPECT_EQ(recorder->calls().back(),
                  std::string("glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, ") +
                      row.sent + ")");
    }
    EXPECT_EQ(data.anisotropy, 1.0f);
}

// -------------------------------------------------------------------------------- units

TEST_P(TextureUnits, bind_records_the_unit_and_never_skips) {
    create_2d(4, 4, PF_RGB_U8);
    ASSERT_TRUE(load());
    for (int i = 0; i < 2; ++i) {
        recorder->clear();
        EXPECT_TRUE(i == 0 ? renderer->texture_bind(&data, 3)
                           : renderer->texture_activate(&data, 3));
        EXPECT_EQ(recorder->take(), (GlCalls{"glActiveTexture(GL_TEXTURE3)",
                                             "glBindTexture(GL_TEXTURE_2D, " + id() + ")"}));
    }
    EXPECT_EQ(renderer->ctx.active_texture_unit, 3u);
    EXPECT_EQ(renderer->ctx.texture_units[3].texture_id, data.opengl_texture_id);
}

TEST_P(TextureUnits, bind_refuses_a_unit_out_of_range_and_a_texture_without_id) {
    EXPECT_FALSE(renderer->texture_bind(&data, 0));
    EXPECT_FALSE(renderer->texture_activate(&data, 0));
    data.opengl_texture_id = 1;
    EXPECT_FALSE(renderer->texture_bind(&data, renderer->ctx.num_texture_units));
    EXPECT_FALSE(renderer->texture_activate_rt(0, 0));
    EXPECT_FALSE(renderer->texture_activate_rt_ms(0, 0));
    EXPECT_FALSE(renderer->texture_activate_rect_rt(0, 0));
    EXPECT_FALSE(renderer->texture_activate_rt(1, renderer->ctx.num_texture_units));
    EXPECT_EQ(recorder->take(), GlCalls());
    data.opengl_texture_id = 0;
}

TEST_P(TextureUnits, binding_null_clears_all_six_targets) {
    create_2d(4, 4, PF_RGB_U8);
    ASSERT_TRUE(load());
    recorder->clear();
    EXPECT_TRUE(renderer->texture_bind(nullptr, 0));
    EXPECT_EQ(
        recorder->take(),
        (GlCalls{"glActiveTexture(GL_TEXTURE0)", "glBindTexture(GL_TEXTURE_1D, 0)",
                 "glBindTexture(GL_TEXTURE_2D, 0)", "glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, 0)",
                 "glBindTexture(GL_TEXTURE_3D, 0)", "glBindTexture(GL_TEXTURE_CUBE_MAP, 0)",
                 "glBindTexture(GL_TEXTURE_RECTANGLE, 0)"}));
    EXPECT_EQ(renderer->ctx.texture_units[0].texture_id, 0u);
    EXPECT_EQ(asked(GL_TEXTURE_BINDING_2D), 0);
    EXPECT_NO_GL_ERROR();
    EXPECT_TRUE(renderer->texture_bind(nullptr, 5000)) << "the unit isn't checked";
    EXPECT_GL_ERROR(GL_INVALID_ENUM);
}

TEST_P(TextureUnits, render_targets_bind_bare_ids) {
    GLuint ids[3] = {};
    glGenTextures(3, ids);
    made.insert(made.end(), ids, ids + 3);
    recorder->clear();
    EXPECT_TRUE(renderer->texture_activate_rt(ids[0], 1));
    EXPECT_TRUE(renderer->texture_activate_rt_ms(ids[1], 2));
    EXPECT_TRUE(renderer->texture_activate_rect_rt(ids[2], 3));
    EXPECT_EQ(recorder->take(),
              (GlCalls{"glActiveTexture(GL_TEXTURE1)",
                       "glBindTexture(GL_TEXTURE_2D, " + std::to_string(ids[0]) + ")",
                       "glActiveTexture(GL_TEXTURE2)",
                       "glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, " + std::to_string(ids[1]) + ")",
                       "glActiveTexture(GL_TEXTURE3)",
                       "glBindTexture(GL_TEXTURE_RECTANGLE, " + std::to_string(ids[2]) + ")"}));
    EXPECT_EQ(renderer->ctx.texture_units[3].texture_id, ids[2]);
    EXPECT_NO_GL_ERROR();
}

/// What reset sends for one unit.
GlCalls reset_calls(const std::string& unit, bool client_unit) {
    GlCalls calls = {"glActiveTexture(GL_TEXTURE" + unit + ")"};
    for (const char* target : {"GL_TEXTURE_1D", "GL_TEXTURE_2D", "GL_TEXTURE_3D",
                               "GL_TEXTURE_CUBE_MAP", "GL_TEXTURE_RECTANGLE"}) {
        calls.push_back(std::string("glBindTexture(") + target + ", 0)");
        calls.push_back(std::string("glDisable(") + target + ")");
    }
    calls.push_back("glBindImageTexture(" + unit + ", 0, 0, false, 0, GL_READ_WRITE, GL_R32F)");
    calls.push_back("glActiveTexture(GL_TEXTURE0)");
    if (client_unit) {
        calls.push_back("glClientActiveTexture(GL_TEXTURE" + unit + ")");
        calls.push_back("glDisableClientState(GL_TEXTURE_COORD_ARRAY)");
    }
    return calls;
}

TEST_P(TextureUnits, reset_empties_a_unit_and_goes_back_to_the_first) {
    create_2d(4, 4, PF_RGB_U8);
    ASSERT_TRUE(load(2));
    recorder->clear();
    EXPECT_TRUE(renderer->reset_texture_unit(2));
    EXPECT_EQ(recorder->take(), reset_calls("2", !core())) << "core has no client unit";
    EXPECT_EQ(renderer->ctx.texture_units[2].texture_id, 0u);
    EXPECT_EQ(renderer->ctx.active_texture_unit, 0u);
    EXPECT_FALSE(renderer->reset_texture_unit(renderer->ctx.num_texture_units));
    EXPECT_EQ(recorder->take(), GlCalls());
    orvex_test::forget_gl_errors();
}

TEST_P(TextureUnits, reset_leaves_the_image_unit_out_where_there_is_none) {
    recorder->hide("glBindImageTexture");
    start();
    EXPECT_TRUE(renderer->reset_texture_unit(0));
    EXPECT_EQ(recorder->count("glBindImageTexture"), 0);
    EXPECT_EQ(recorder->count("glBindTexture"), 5);
    orvex_test::forget_gl_errors();
}

TEST_P(TextureUnits, reset_all_goes_through_every_unit) {
    renderer->ctx.init_texture_units(1024, 3);
    EXPECT_TRUE(renderer->reset_all_texture_units());
    GlCalls expected;
    for (const char* unit : {"0", "1", "2"}) {
        const GlCalls calls = reset_calls(unit, !core());
        expected.insert(expected.end(), calls.begin(), calls.end());
    }
    expected.push_back("glActiveTexture(GL_TEXTURE0)");
    EXPECT_EQ(recorder->take(), expected);
    EXPECT_EQ(renderer->ctx.active_texture_unit, 0u);
    orvex_test::forget_gl_errors();
}

class CountingRenderer : public RendererOpenGL {
public:
    std::vector<unsigned long> resets;
    std::vector<unsigned long> binds;
    bool reset_texture_unit(unsigned long unit) override {
        resets.push_back(unit);
        return true;
    }
    bool texture_bind(TextureData*, unsigned long unit) override {
        binds.push_back(unit);
        return true;
    }
    bool image_texture_bind(TextureData*, unsigned long unit, DATA_ACCESS_TYPE) override {
        binds.push_back(unit + 100);
        return true;
    }
};

TEST_P(TextureUnits, activate_and_reset_all_go_through_the_virtual_operations) {
    CountingRenderer counting;
    counting.start();
    counting.ctx.init_texture_units(1024, 2);
    EXPECT_TRUE(counting.texture_activate(&data, 4));
    EXPECT_TRUE(counting.image_texture_activate(&data, 5, DATA_ACCESS_READ_ONLY));
    EXPECT_TRUE(counting.reset_all_texture_units());
    EXPECT_EQ(counting.binds, (std::vector<unsigned long>{4, 105}));
    EXPECT_EQ(counting.resets, (std::vector<unsigned long>{0, 1}));
    orvex_test::forget_gl_errors();
}

TEST_P(TextureUnits, the_switches_of_the_fixed_pipeline_are_sent_as_they_stand) {
    for (const int type : {1, 2, 3, 4, 6}) {
        data.type = type;
        renderer->set_texture_state(&data, true);
    }
    renderer->set_texture_state(nullptr, false);
    renderer->set_texture1d_state(true);
    renderer->set_texture2d_state(false);
    renderer->set_texture3d_state(true);
    renderer->set_texture_cube_state(false);
    EXPECT_EQ(
        recorder->take(),
        (GlCalls{"glEnable(GL_TEXTURE_1D)", "glEnable(GL_TEXTURE_2D)", "glEnable(GL_TEXTURE_3D)",
                 "glEnable(GL_TEXTURE_CUBE_MAP)", "glEnable(GL_TEXTURE_RECTANGLE)",
                 "glDisable(GL_TEXTURE_2D)", "glEnable(GL_TEXTURE_1D)", "glDisable(GL_TEXTURE_2D)",
                 "glEnable(GL_TEXTURE_3D)", "glDisable(GL_TEXTURE_CUBE_MAP)"}));
    orvex_test::forget_gl_errors();
}

// -------------------------------------------------------------------------------- image units

TEST_P(TextureUnits, image_units_take_access_and_format) {
    const struct {
        int format;
        const char* name;
    } formats[] = {{1, "GL_RGB"},    {2, "GL_BGR"},     {3, "GL_RGBA"}, {4, "GL_BGRA"},
                   {5, "GL_RGB32F"}, {6, "GL_RGBA32F"}, {7, "GL_R32F"}, {8, "GL_RGBA"},
                   {0, "GL_RGBA"},   {99, "GL_RGBA"}};
    create_2d(4, 4, PF_RGBA_F32);
    ASSERT_TRUE(load());
    for (const auto& row : formats) {
        data.pixel_format = static_cast<PIXEL_FORMAT>(row.format);
        recorder->clear();
        EXPECT_TRUE(renderer->image_texture_bind(&data, 1, DATA_ACCESS_READ_ONLY));
        EXPECT_EQ(recorder->take(), GlCalls{"glBindImageTexture(1, " + id() +
                                            ", 0, false, 0, GL_READ_ONLY, " + row.name + ")"});
        if (row.format == 6 || row.format == 7)
            EXPECT_NO_GL_ERROR();
        orvex_test::forget_gl_errors();
    }
    const struct {
        int access;
        const char* name;
    } accesses[] = {
        {0, "GL_READ_WRITE"}, {1, "GL_WRITE_ONLY"}, {2, "GL_READ_ONLY"}, {7, "GL_READ_WRITE"}};
    data.pixel_format = PF_RGBA_F32;
    for (const auto& row : accesses) {
        recorder->clear();
        EXPECT_TRUE(
            renderer->image_texture_activate(&data, 0, static_cast<DATA_ACCESS_TYPE>(row.access)));
        EXPECT_EQ(recorder->take(), GlCalls{"glBindImageTexture(0, " + id() + ", 0, false, 0, " +
                                            row.name + ", GL_RGBA32F)"});
    }
    EXPECT_NO_GL_ERROR();
}

TEST_P(TextureUnits, image_units_are_emptied_by_null_and_refuse_what_cannot_be) {
    EXPECT_TRUE(renderer->image_texture_bind(nullptr, 2, DATA_ACCESS_READ_ONLY));
    EXPECT_EQ(recorder->take(),
              GlCalls{"glBindImageTexture(2, 0, 0, false, 0, GL_WRITE_ONLY, GL_R32F)"});
    EXPECT_FALSE(renderer->image_texture_bind(&data, 0, DATA_ACCESS_READ_ONLY));
    data.opengl_texture_id = 1;
    EXPECT_FALSE(renderer->image_texture_bind(&data, renderer->ctx.num_texture_units,
                                              DATA_ACCESS_READ_ONLY));
    data.opengl_texture_id = 0;
    EXPECT_EQ(recorder->take(), GlCalls());
    recorder->hide("glBindImageTexture");
    start();
    EXPECT_FALSE(renderer->image_texture_bind(nullptr, 0, DATA_ACCESS_READ_ONLY));
}

// -------------------------------------------------------------------------------- bindless

std::vector<std::string> bindless_calls;

GLuint64 APIENTRY fake_get_handle(GLuint texture) {
    bindless_calls.push_back("handle of " + std::to_string(texture));
    return 0x100000000ULL + texture;
}

void APIENTRY fake_resident(GLuint64 handle) {
    bindless_calls.push_back("resident " + std::to_string(handle));
}

void APIENTRY fake_non_resident(GLuint64 handle) {
    bindless_calls.push_back("non resident " + std::to_string(handle));
}

TEST_P(TextureUnits, bindless_handles_need_their_entry_points) {
    data.opengl_texture_id = 5;
    EXPECT_FALSE(renderer->bindless_texture_make_resident(&data));
    EXPECT_FALSE(renderer->bindless_texture_make_non_resident(&data));
    data.opengl_texture_id = 0;
}

TEST_P(TextureUnits, bindless_handles_are_kept_in_the_record) {
    bindless_calls.clear();
    renderer->gl.glGetTextureHandleARB = fake_get_handle;
    renderer->gl.glMakeTextureHandleResidentARB = fake_resident;
    renderer->gl.glMakeTextureHandleNonResidentARB = fake_non_resident;
    EXPECT_FALSE(renderer->bindless_texture_make_resident(nullptr));
    EXPECT_FALSE(renderer->bindless_texture_make_resident(&data)) << "no id";
    EXPECT_FALSE(renderer->bindless_texture_make_non_resident(nullptr));
    EXPECT_TRUE(renderer->bindless_texture_make_non_resident(&data)) << "never made resident";
    EXPECT_EQ(bindless_calls, std::vector<std::string>());
    data.opengl_texture_id = 5;
    EXPECT_TRUE(renderer->bindless_texture_make_resident(&data));
    EXPECT_EQ(data.bindless_handle, 0x100000005ULL);
    EXPECT_TRUE(renderer->bindless_texture_make_non_resident(&data));
    EXPECT_EQ(data.bindless_handle, 0x100000005ULL);
    EXPECT_EQ(bindless_calls, (std::vector<std::string>{"handle of 5", "resident 4294967301",
                                                        "non resident 4294967301"}));
    data.opengl_texture_id = 0;
}

// -------------------------------------------------------------------------------- read-back

TEST_P(TextureUnits, reads_its_pixels_back) {
    for (const PIXEL_FORMAT format : {PF_RGB_U8, PF_RGBA_U8}) {
        create_2d(4, 2, format);
        ASSERT_TRUE(load());
        const unsigned long bytes = format == PF_RGB_U8 ? 24 : 32;
        const Bytes before(data.pixmap_u8, data.pixmap_u8 + bytes);
        std::fill_n(data.pixmap_u8, bytes, static_cast<unsigned char>(0));
        glBindTexture(GL_TEXTURE_2D, 0);
        recorder->clear();
        EXPECT_TRUE(format == PF_RGB_U8 ? renderer->texture_2d_read_pixmap_rgb_u8(&data)
                                        : renderer->texture_2d_read_pixmap_rgba_u8(&data));
        const GlCalls calls = recorder->take();
        ASSERT_GE(calls.size(), 3u);
        EXPECT_EQ(calls[0], "glPixelStorei(GL_UNPACK_ALIGNMENT, 1)");
        EXPECT_EQ(calls[1], "glBindTexture(GL_TEXTURE_2D, " + id() + ")");
        EXPECT_EQ(calls.back(), std::string("glGetTexImage(GL_TEXTURE_2D, 0, ") +
                                    (format == PF_RGB_U8 ? "GL_RGB" : "GL_RGBA") +
                                    ", GL_UNSIGNED_BYTE, ptr)");
        EXPECT_EQ(Bytes(data.pixmap_u8, data.pixmap_u8 + bytes), before);
    }
    EXPECT_NO_GL_ERROR();
}

TEST_P(TextureUnits, padded_rows_are_cut_at_the_end_of_the_image) {
    create_2d(3, 2, PF_RGB_U8);
    ASSERT_TRUE(load());
    const Bytes before(data.pixmap_u8, data.pixmap_u8 + 18);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    EXPECT_TRUE(renderer->texture_2d_read_pixmap_rgb_u8(&data));
    EXPECT_EQ(Bytes(data.pixmap_u8, data.pixmap_u8 + 9), Bytes(before.begin(), before.begin() + 9));
    EXPECT_EQ(Bytes(data.pixmap_u8 + 12, data.pixmap_u8 + 18),
              Bytes(before.begin() + 9, before.begin() + 15))
        << "the second row starts at a multiple of four bytes";
}

TEST_P(TextureUnits, a_texture_larger_than_the_image_is_cut) {
    create_2d(16, 16, PF_RGBA_U8);
    ASSERT_TRUE(load());
    data.create(2, 2, 1, PF_RGBA_U8, true);
    EXPECT_TRUE(renderer->texture_2d_read_pixmap_rgba_u8(&data));
    EXPECT_EQ(Bytes(data.pixmap_u8, data.pixmap_u8 + 4), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(data.pixmap_u8[15], 16);
}

// A row length and skips of the host's own reads hold for every read-back.
TEST_P(TextureUnits, pixels_beyond_the_image_by_the_hosts_packing_are_cut) {
    create_2d(4, 2, PF_RGBA_U8);
    ASSERT_TRUE(load());
    glPixelStorei(GL_PACK_ROW_LENGTH, 5);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 1);
    EXPECT_TRUE(renderer->texture_2d_read_pixmap_rgba_u8(&data));
    EXPECT_EQ(Bytes(data.pixmap_u8, data.pixmap_u8 + 8), (Bytes{0, 0, 0, 0, 1, 2, 3, 4}));
    EXPECT_EQ(Bytes(data.pixmap_u8 + 24, data.pixmap_u8 + 32),
              (Bytes{17, 18, 19, 20, 21, 22, 23, 24}));
    glPixelStorei(GL_PACK_ROW_LENGTH, 1 << 16);
    glPixelStorei(GL_PACK_SKIP_ROWS, 100);
    EXPECT_TRUE(renderer->texture_2d_read_pixmap_rgba_u8(&data));
    EXPECT_EQ(Bytes(data.pixmap_u8, data.pixmap_u8 + 32), Bytes(32));
}

TEST_P(TextureUnits, reading_back_fails_with_packing_that_no_memory_holds) {
    create_2d(4, 2, PF_RGBA_U8);
    ASSERT_TRUE(load());
    const Bytes before(data.pixmap_u8, data.pixmap_u8 + 32);
    for (const GLenum name : {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_PIXELS, GL_PACK_SKIP_ROWS})
        glPixelStorei(name, std::numeric_limits<int>::max());
    EXPECT_FALSE(renderer->texture_2d_read_pixmap_rgb_u8(&data));
    EXPECT_FALSE(renderer->texture_2d_read_pixmap_rgba_u8(&data));
    EXPECT_EQ(Bytes(data.pixmap_u8, data.pixmap_u8 + 32), before);
}

TEST_P(TextureUnits, reading_back_needs_8_bit_pixels_of_a_2d_texture) {
    EXPECT_FALSE(renderer->texture_2d_read_pixmap_rgb_u8(nullptr));
    EXPECT_FALSE(renderer->texture_2d_read_pixmap_rgba_u8(nullptr));
    create_2d(2, 2, PF_RGB_F32);
    EXPECT_FALSE(renderer->texture_2d_read_pixmap_rgb_u8(&data));
    create_1d(2, PF_RGB_U8);
    EXPECT_FALSE(renderer->texture_2d_read_pixmap_rgb_u8(&data));
    EXPECT_FALSE(renderer->texture_2d_read_pixmap_rgba_u8(&data));
    EXPECT_EQ(recorder->take(), GlCalls());
}

// -------------------------------------------------------------------------------- unload

TEST_P(TextureUnits, unload_deletes_the_gl_texture) {
    create_2d(4, 4, PF_RGB_U8);
    ASSERT_TRUE(load());
    made.clear();
    data.bindless_handle = 9;
    const std::string name = id();
    recorder->clear();
    EXPECT_TRUE(renderer->texture_unload(&data));
    EXPECT_EQ(recorder->take(), GlCalls{"glDeleteTextures(1, [" + name + "])"});
    EXPECT_EQ(data.opengl_texture_id, 0u);
    EXPECT_FALSE(data.loaded_in_gpu_memory);
    EXPECT_EQ(data.bindless_handle, 9u);
    EXPECT_FALSE(renderer->texture_unload(&data));
    EXPECT_FALSE(renderer->texture_unload(nullptr));
    EXPECT_TRUE(load()) << "it can be loaded again";
}

TEST_P(TextureUnits, unload_drops_its_id_from_the_list) {
    create_2d(4, 4, PF_RGB_U8);
    ASSERT_TRUE(load());
    made.clear();
    const unsigned int name = data.opengl_texture_id;
    EXPECT_FALSE(renderer->_remove_texture_id(name)) << "loads enter nothing";
    renderer->_add_texture_id(name);
    EXPECT_TRUE(renderer->texture_unload(&data));
    EXPECT_FALSE(renderer->_remove_texture_id(name));
}

TEST_P(TextureUnits, unload_leaves_a_render_targets_texture_alone) {
    GLuint own = 0;
    glGenTextures(1, &own);
    made.push_back(own);
    data.set_opengl_texture_id(own);
    data.opengl_texture_id_borrowed = true;
    data.loaded_in_gpu_memory = true;
    recorder->clear();
    EXPECT_TRUE(renderer->texture_unload(&data));
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_EQ(data.opengl_texture_id, 0u);
    EXPECT_FALSE(data.loaded_in_gpu_memory);
    EXPECT_FALSE(data.opengl_texture_id_borrowed);
}

TEST_P(TextureUnits, a_loaded_texture_draws_no_error_from_the_driver) {
    context().take_messages();
    create_2d(7, 5, PF_RGB_U8);
    ASSERT_TRUE(load());
    EXPECT_TRUE(renderer->texture_bind(&data, 0));
    EXPECT_TRUE(renderer->texture_2d_update(&data, 0, 0, 7, 5));
    EXPECT_TRUE(renderer->texture_bind(nullptr, 0));
    EXPECT_EQ(context().take_errors(), std::vector<std::string>());
}

} // namespace
} // namespace orvex_test
