#include <climits>
#include <string>
#include <vector>

#include "textures_fixture.h"

namespace orvex_test {

using namespace orvex;
namespace {

using orvex_test::GlCalls;

ORVEX_BOTH_PROFILES(Textures);

TEST_P(Textures, the_type_chooses_the_target) {
    const struct {
        int type;
        GLenum target;
    } rows[] = {
        {1, GL_TEXTURE_1D},
        {2, GL_TEXTURE_2D},
        {3, GL_TEXTURE_3D},
        {4, GL_TEXTURE_CUBE_MAP},
        {5, GL_TEXTURE_2D_MULTISAMPLE},
        {6, GL_TEXTURE_RECTANGLE},
        {0, GL_TEXTURE_2D},
        {7, GL_TEXTURE_2D},
        {-1, GL_TEXTURE_2D},
    };
    for (const auto& row : rows) {
        data.type = row.type;
        EXPECT_EQ(renderer->_get_gl_texture_target(&data), row.target) << row.type;
    }
    EXPECT_EQ(renderer->_get_gl_texture_target(nullptr), unsigned(GL_TEXTURE_2D));
}

// -------------------------------------------------------------------------------- 2D loads

TEST_P(Textures, a_2d_load_makes_pixels_levels_filters_and_wrapping) {
    create_2d(8, 4, PF_RGB_U8);
    data.anisotropy = 2.0f;
    ASSERT_TRUE(load(1));
    EXPECT_EQ(recorder->take(),
              (GlCalls{"glActiveTexture(GL_TEXTURE1)", "glGenTextures(1, [" + id() + "])",
                       "glBindTexture(GL_TEXTURE_2D, " + id() + ")",
                       "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, 2)",
                       "glPixelStorei(GL_UNPACK_ALIGNMENT, 4)",
                       "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 8, 4, 0, GL_RGB, "
                       "GL_UNSIGNED_BYTE, ptr)",
                       "glGenerateMipmap(GL_TEXTURE_2D)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, "
                       "GL_LINEAR_MIPMAP_LINEAR)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)"}));
    EXPECT_TRUE(data.loaded_in_gpu_memory);
    EXPECT_FALSE(data.needs_gpu_update);
    EXPECT_EQ(data.renderer_id, renderer->getid());
    EXPECT_EQ(renderer->ctx.active_texture_unit, 1u);
    EXPECT_EQ(renderer->ctx.texture_units[1].texture_id, data.opengl_texture_id);
    EXPECT_EQ(log.messages(), (std::vector<std::string>{"<o> OpenGL renderer - texture loaded ok "
                                                        "(GL id=" +
                                                        id() + ", size=8x4)"}));
    EXPECT_NO_GL_ERROR();
}

TEST_P(Textures, without_mipmaps_a_2d_load_keeps_to_the_base_level) {
    create_2d(4, 4, PF_RGBA_U8);
    data.gen_mipmaps = false;
    ASSERT_TRUE(load());
    const GlCalls calls = recorder->take();
    ASSERT_EQ(calls.size(), 12u);
    EXPECT_EQ(GlCalls(calls.begin() + 6, calls.begin() + 10),
              (GlCalls{"glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_BASE_LEVEL, 0)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)"}));
    EXPECT_NO_GL_ERROR();
}

TEST_P(Textures, a_load_reads_only_the_linear_filtering_mode) {
    const struct {
        int mode;
        bool mipmaps;
        GLint magnification;
        GLint minification;
    } rows[] = {
        {1, true, GL_NEAREST, GL_NEAREST_MIPMAP_NEAREST},
        {2, true, GL_LINEAR, GL_LINEAR_MIPMAP_LINEAR},
        {3, true, GL_NEAREST, GL_NEAREST_MIPMAP_NEAREST},
        {9, true, GL_NEAREST, GL_NEAREST_MIPMAP_NEAREST},
        {1, false, GL_NEAREST, GL_NEAREST},
        {2, false, GL_LINEAR, GL_LINEAR},
        {3, false, GL_NEAREST, GL_NEAREST},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.mode) + (row.mipmaps ? " with mipmaps" : ""));
        create_2d(4, 4, PF_RGB_U8);
        data.filtering_mode = static_cast<SAMPLER_FILTERING_MODE>(row.mode);
        data.gen_mipmaps = row.mipmaps;
        ASSERT_TRUE(load());
        EXPECT_EQ(parameter(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER), row.magnification);
        EXPECT_EQ(parameter(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER), row.minification);

        create_cube(4, PF_RGB_U8);
        ASSERT_TRUE(load());
        EXPECT_EQ(parameter(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER), row.magnification);
        EXPECT_EQ(parameter(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER), row.minification);
    }
}

TEST_P(Textures, a_load_stores_the_addressing_mode_of_the_record) {
    const struct {
        int mode;
        GLint wrap;
    } rows[] = {
        {1, GL_REPEAT}, {2, GL_CLAMP_TO_EDGE}, {3, GL_MIRRORED_REPEAT}, {7, GL_CLAMP_TO_EDGE}};
    for (const auto& row : rows) {
        create_2d(4, 4, PF_RGB_U8);
        data.addressing_mode = static_cast<SAMPLER_ADDRESSING_MODE>(row.mode);
        ASSERT_TRUE(load());
        EXPECT_EQ(parameter(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S), row.wrap) << row.mode;
        EXPECT_EQ(parameter(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T), row.wrap) << row.mode;
    }
}

TEST_P(Textures, a_load_aligns_rows_by_the_width) {
    const struct {
        unsigned long width;
        int alignment;
    } rows[] = {{6, 2}, {7, 1}, {8, 4}, {1, 1}, {2, 2}, {12, 4}};
    for (const auto& row : rows) {
        for (const PIXEL_FORMAT format : {PF_RGB_U8, PF_RGBA_U8}) {
            create_2d(row.width, 3, format);
            data.loaded_in_gpu_memory = false;
            ASSERT_TRUE(load());
            EXPECT_EQ(recorder->take()[4],
                      "glPixelStorei(GL_UNPACK_ALIGNMENT, " + std::to_string(row.alignment) + ")");
            const unsigned long channels = format == PF_RGB_U8 ? 3 : 4;
            const Bytes pixels = pixels_of(GL_TEXTURE_2D, row.width * 3);
            for (unsigned long i = 0; i < row.width * 3; ++i)
                EXPECT_EQ(pixels[i * 4], data.pixmap_u8[i * channels]) << "pixel " << i;
        }
    }
}

TEST_P(Textures, a_load_knows_all_ten_formats_and_takes_others_as_empty) {
    const struct {
        PIXEL_FORMAT format;
        const char* arguments;
    } rows[] = {
        {PF_RGB_U8, "GL_RGBA8, 4, 4, 0, GL_RGB, GL_UNSIGNED_BYTE, ptr)"},
        {PF_BGR_U8, "GL_RGBA8, 4, 4, 0, GL_BGR, GL_UNSIGNED_BYTE, ptr)"},
        {PF_RGBA_U8, "GL_RGBA8, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, ptr)"},
        {PF_BGRA_U8, "GL_RGBA8, 4, 4, 0, GL_BGRA, GL_UNSIGNED_BYTE, ptr)"},
        {PF_RGB_F32, "GL_RGB32F, 4, 4, 0, GL_RGB, GL_FLOAT, ptr)"},
        {PF_RGBA_F32, "GL_RGBA32F, 4, 4, 0, GL_RGBA, GL_FLOAT, ptr)"},
        {PF_R_F32, "GL_R32F, 4, 4, 0, GL_RED, GL_FLOAT, ptr)"},
        {PF_RGB_F16, "GL_RGB16F, 4, 4, 0, GL_RGB, GL_FLOAT, ptr)"},
        {PF_RGBA_F16, "GL_RGBA16F, 4, 4, 0, GL_RGBA, GL_FLOAT, ptr)"},
        {PF_R_F16, "GL_R16F, 4, 4, 0, GL_RED, GL_FLOAT, ptr)"},
        {PF_NONE, "GL_RGBA8, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, 0)"},
        {static_cast<PIXEL_FORMAT>(11), "GL_RGBA8, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, 0)"},
    };
    for (const auto& row : rows) {
        forget();
        data.create(4, 4, 1, PF_RGBA_U8, true);
        data.create(4, 4, 1, PF_RGBA_F32, true);
        data.pixel_format = row.format;
        EXPECT_TRUE(load());
        EXPECT_EQ(recorder->take()[5],
                  std::string("glTexImage2D(GL_TEXTURE_2D, 0, ") + row.arguments);
        EXPECT_NO_GL_ERROR();
    }
}

TEST_P(Textures, a_load_shows_the_pixels_of_its_format) {
    const struct {
        PIXEL_FORMAT format;
        Bytes expected;
    } rows[] = {
        {PF_RGB_U8, {1, 2, 3, 255}},       {PF_BGR_U8, {3, 2, 1, 255}},
        {PF_RGBA_U8, {1, 2, 3, 4}},        {PF_BGRA_U8, {3, 2, 1, 4}},
        {PF_RGB_F32, {64, 128, 191, 255}}, {PF_RGBA_F32, {64, 128, 191, 255}},
        {PF_R_F32, {64, 0, 0, 255}},
    };
    for (const auto& row : rows) {
        create_2d(1, 1, row.format);
        ASSERT_TRUE(load());
        EXPECT_EQ(pixels_of(GL_TEXTURE_2D, 1), row.expected) << row.format;
    }
}

TEST_P(Textures, a_load_without_pixels_makes_an_empty_texture) {
    data.width = data.height = 4;
    data.pixel_format = PF_RGB_U8;
    EXPECT_TRUE(load());
    EXPECT_EQ(recorder->calls()[5], "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 4, 4, 0, GL_RGB, "
                                    "GL_UNSIGNED_BYTE, 0)");
    EXPECT_NO_GL_ERROR();
}

TEST_P(Textures, a_load_refuses_other_types_and_too_few_pixels) {
    EXPECT_FALSE(renderer->texture_1d_load(nullptr, 0));
    EXPECT_FALSE(renderer->texture_2d_load(nullptr, 0));
    EXPECT_FALSE(renderer->texture_cube_load(nullptr, 0));
    create_2d(4, 4, PF_RGB_U8);
    data.type = TEXTURE_TYPE_3D;
    EXPECT_FALSE(renderer->texture_1d_load(&data, 0));
    EXPECT_FALSE(renderer->texture_2d_load(&data, 0));
    EXPECT_FALSE(renderer->texture_cube_load(&data, 0));
    data.type = TEXTURE_TYPE_2D;
    data.height = 5;
    EXPECT_FALSE(load());
    data.type = TEXTURE_TYPE_1D;
    data.width = 17;
    EXPECT_FALSE(load());
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_EQ(data.opengl_texture_id, 0u);
}

TEST_P(Textures, a_load_of_a_loaded_texture_is_true_and_does_nothing) {
    for (const int type : {TEXTURE_TYPE_1D, TEXTURE_TYPE_2D, TEXTURE_TYPE_CUBE}) {
        data.type = type;
        data.loaded_in_gpu_memory = true;
        EXPECT_TRUE(load());
    }
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(Textures, a_size_beyond_the_limit_is_told_and_makes_nothing) {
    renderer->ctx.max_texture_size = 1024;
    const struct {
        int type;
        unsigned long width;
        unsigned long height;
        const char* message;
    } rows[] = {
        {TEXTURE_TYPE_2D, 1025, 1, "texture loading failed (texture size must be <= 1024x1024)"},
        {TEXTURE_TYPE_2D, 1, 1025, "texture loading failed (texture size must be <= 1024x1024)"},
        {TEXTURE_TYPE_1D, 1025, 1, "texture loading failed (texture size must be <= 1024)"},
        {TEXTURE_TYPE_CUBE, 1025, 1025,
         "cube texture loading failed (texture size must be <= 1024x1024)"},
    };
    for (const auto& row : rows) {
        data.type = row.type;
        data.width = row.width;
        data.height = row.height;
        data.cubemap_faces[0].image.width = row.width;
        log.clear();
        EXPECT_FALSE(load());
        EXPECT_EQ(log.messages(),
                  (std::vector<std::string>{std::string("<*> OpenGL renderer - ") + row.message}));
        EXPECT_EQ(data.opengl_texture_id, 0u);
    }
    EXPECT_EQ(recorder->take(), GlCalls());
    create_2d(1024, 1, PF_RGB_U8);
    EXPECT_TRUE(load());
}

TEST_P(Textures, a_load_on_a_unit_out_of_range_works_on_the_last_one) {
    create_2d(4, 4, PF_RGB_U8);
    const unsigned long units = renderer->ctx.num_texture_units;
    EXPECT_TRUE(load(units));
    EXPECT_EQ(asked(GL_ACTIVE_TEXTURE), GLint(GL_TEXTURE0 + units - 1));
    EXPECT_EQ(renderer->ctx.active_texture_unit, units - 1);
    EXPECT_EQ(renderer->ctx.texture_units[units - 1].texture_id, 0u) << "the record takes no part";
    data.loaded_in_gpu_memory = false;
    EXPECT_TRUE(load(ULONG_MAX));
    EXPECT_NO_GL_ERROR();
}

TEST_P(Textures, a_load_deletes_only_an_id_that_a_load_made) {
    create_2d(4, 4, PF_RGB_U8);
    ASSERT_TRUE(load());
    const std::string first = id();
    data.loaded_in_gpu_memory = false;
    recorder->clear();
    ASSERT_TRUE(load());
    EXPECT_EQ(recorder->calls()[0], "glDeleteTextures(1, [" + first + "])");

    GLuint own = 0;
    glGenTextures(1, &own);
    made.push_back(own);
    data.set_opengl_texture_id(own);
    data.opengl_texture_id_borrowed = true;
    data.loaded_in_gpu_memory = false;
    recorder->clear();
    ASSERT_TRUE(load());
    EXPECT_EQ(recorder->count("glDeleteTextures"), 0);
    EXPECT_FALSE(data.opengl_texture_id_borrowed);
}

TEST_P(Textures, without_the_entry_points_it_needs_a_load_makes_nothing) {
    recorder->hide("glGenerateMipmap");
    start();
    create_2d(4, 4, PF_RGB_U8);
    EXPECT_FALSE(load());
    create_cube(4, PF_RGB_U8);
    EXPECT_FALSE(load());
    EXPECT_EQ(recorder->take(), GlCalls());
    create_1d(4, PF_RGB_U8);
    EXPECT_TRUE(load());
    create_2d(4, 4, PF_RGB_U8);
    data.gen_mipmaps = false;
    EXPECT_TRUE(load());
}

TEST_P(Textures, before_the_start_nothing_is_loaded_or_bound) {
    RendererOpenGL idle;
    create_2d(0, 0, PF_RGB_U8);
    EXPECT_FALSE(idle.texture_2d_load(&data, 0));
    create_1d(0, PF_RGB_U8);
    EXPECT_FALSE(idle.texture_1d_load(&data, 0));
    create_cube(0, PF_RGB_U8);
    EXPECT_FALSE(idle.texture_cube_load(&data, 0));
    EXPECT_FALSE(idle.texture_bind(&data, 0));
    EXPECT_FALSE(idle.texture_bind(nullptr, 0));
    EXPECT_FALSE(idle.texture_activate_rt(1, 0));
    EXPECT_FALSE(idle.reset_texture_unit(0));
    EXPECT_FALSE(idle.reset_all_texture_units());
    EXPECT_FALSE(idle.image_texture_bind(nullptr, 0, DATA_ACCESS_READ_ONLY));
    EXPECT_EQ(recorder->take(), GlCalls());
}

// -------------------------------------------------------------------------------- 1D loads

TEST_P(Textures, a_1d_load_sends_its_filters_to_the_2d_target) {
    create_1d(6, PF_RGB_U8);
    ASSERT_TRUE(load(2));
    EXPECT_EQ(recorder->take(),
              (GlCalls{"glActiveTexture(GL_TEXTURE2)", "glGenTextures(1, [" + id() + "])",
                       "glBindTexture(GL_TEXTURE_1D, " + id() + ")",
                       "glTexParameterf(GL_TEXTURE_1D, GL_TEXTURE_MAX_ANISOTROPY_EXT, 1)",
                       "glPixelStorei(GL_UNPACK_ALIGNMENT, 2)",
                       "glTexImage1D(GL_TEXTURE_1D, 0, GL_RGBA8, 6, 0, GL_RGB, GL_UNSIGNED_BYTE, "
                       "ptr)",
                       "glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_BASE_LEVEL, 0)",
                       "glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_MAX_LEVEL, 0)",
                       "glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)"}));
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{
                  "<o> OpenGL renderer - texture 1D loaded ok (GL id=" + id() + ", size=6)"}));
    EXPECT_TRUE(data.loaded_in_gpu_memory);
    EXPECT_FALSE(data.needs_gpu_update);
    EXPECT_EQ(data.renderer_id, renderer->getid());
    EXPECT_EQ(pixels_of(GL_TEXTURE_1D, 6)[20], 16);
    EXPECT_NO_GL_ERROR();
}

TEST_P(Textures, a_1d_load_of_another_filtering_mode_asks_for_nearest) {
    create_1d(4, PF_RGB_U8);
    data.filtering_mode = FILTERING_TRILINEAR;
    ASSERT_TRUE(load());
    const GlCalls calls = recorder->take();
    EXPECT_EQ(calls[9], "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)");
    EXPECT_EQ(calls[10], "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST)");
}

// -------------------------------------------------------------------------------- cube loads

TEST_P(Textures, a_cube_load_makes_six_faces_and_always_clamps) {
    create_cube(2, PF_RGBA_U8);
    data.addressing_mode = ADDRESSING_REPEAT;
    ASSERT_TRUE(load());
    GlCalls expected = {"glActiveTexture(GL_TEXTURE0)", "glGenTextures(1, [" + id() + "])",
                        "glBindTexture(GL_TEXTURE_CUBE_MAP, " + id() + ")",
                        "glTexParameterf(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAX_ANISOTROPY_EXT, 1)"};
    for (const char* face :
         {"POSITIVE_X", "NEGATIVE_X", "POSITIVE_Y", "NEGATIVE_Y", "POSITIVE_Z", "NEGATIVE_Z"}) {
        expected.push_back("glPixelStorei(GL_UNPACK_ALIGNMENT, 2)");
        expected.push_back(std::string("glTexImage2D(GL_TEXTURE_CUBE_MAP_") + face +
                           ", 0, GL_RGBA8, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, ptr)");
    }
    for (const char* wrap : {"S", "T", "R"})
        expected.push_back(std::string("glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_") +
                           wrap + ", GL_CLAMP_TO_EDGE)");
    expected.push_back("glGenerateMipmap(GL_TEXTURE_CUBE_MAP)");
    expected.push_back("glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, GL_LINEAR)");
    expected.push_back(
        "glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR)");
    EXPECT_EQ(recorder->take(), expected);
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{
                  "<o> OpenGL renderer - cube texture loaded ok (GL id=" + id() + ", size=2x2)"}));
    EXPECT_EQ(pixels_of(GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, 4)[15], 16);
    EXPECT_TRUE(data.loaded_in_gpu_memory);
    EXPECT_FALSE(data.needs_gpu_update);
    EXPECT_NO_GL_ERROR();
}

TEST_P(Textures, a_cube_load_without_mipmaps_sets_no_level_limits) {
    create_cube(2, PF_RGB_U8);
    data.gen_mipmaps = false;
    ASSERT_TRUE(load());
    const GlCalls calls = recorder->take();
    ASSERT_EQ(calls.size(), 21u);
    EXPECT_EQ(calls[19], "glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, GL_LINEAR)");
    EXPECT_EQ(calls[20], "glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, GL_LINEAR)");
}

TEST_P(Textures, a_face_with_too_few_pixels_ends_the_cube_load_and_the_next_load_starts_anew) {
    create_cube(4, PF_RGB_U8);
    data.cubemap_faces[3].image.create(2, 2, 1, PF_RGB_U8, true);
    EXPECT_FALSE(load());
    EXPECT_EQ(recorder->count("glTexImage2D"), 3);
    EXPECT_NE(data.opengl_texture_id, 0u);
    EXPECT_FALSE(data.loaded_in_gpu_memory);
    EXPECT_EQ(log.messages(), std::vector<std::string>());
    const std::string first = id();
    data.cubemap_faces[3].image.create(4, 4, 1, PF_RGB_U8, true);
    recorder->clear();
    EXPECT_TRUE(load());
    EXPECT_EQ(recorder->calls()[0], "glDeleteTextures(1, [" + first + "])");
}

TEST_P(Textures, every_face_is_read_in_the_format_of_face_zero) {
    create_cube(4, PF_RGB_U8);
    data.cubemap_faces[1].image.create(4, 4, 1, PF_RGBA_U8, true);
    data.cubemap_faces[2].image.create(4, 4, 1, PF_RGB_F32, true);
    data.cubemap_faces[2].image._delete_u8_ptr();
    ASSERT_TRUE(load());
    const GlCalls calls = recorder->take();
    EXPECT_EQ(calls[7], "glTexImage2D(GL_TEXTURE_CUBE_MAP_NEGATIVE_X, 0, GL_RGBA8, 4, 4, 0, "
                        "GL_RGB, GL_UNSIGNED_BYTE, ptr)");
    EXPECT_EQ(calls[9], "glTexImage2D(GL_TEXTURE_CUBE_MAP_POSITIVE_Y, 0, GL_RGBA8, 4, 4, 0, "
                        "GL_RGB, GL_UNSIGNED_BYTE, 0)");
}

TEST_P(Textures, a_face_alone_needs_a_gl_texture) {
    create_cube(2, PF_RGB_U8);
    EXPECT_FALSE(renderer->texture_cube_load_face(nullptr, CUBEMAP_FACE_POSITIVE_X, 0));
    EXPECT_FALSE(renderer->texture_cube_load_face(&data, CUBEMAP_FACE_POSITIVE_X, 0));
    ASSERT_TRUE(load());
    EXPECT_TRUE(renderer->texture_cube_load_face(&data, CUBEMAP_FACE_NEGATIVE_Y, 0));
}

TEST_P(Textures, a_face_that_no_cube_has_is_refused) {
    create_cube(2, PF_RGB_U8);
    ASSERT_TRUE(load());
    recorder->clear();
    for (const int face : {-1, 6, INT_MAX}) {
        EXPECT_FALSE(renderer->texture_cube_load_face(&data, static_cast<CUBEMAP_FACE>(face), 0));
        EXPECT_FALSE(renderer->texture_cube_update_face(&data, static_cast<CUBEMAP_FACE>(face)));
    }
    EXPECT_EQ(recorder->take(), GlCalls());
}

/// What a host may have set for uploads of its own, and left so.
class Unpacking {
public:
    Unpacking(GLenum name, GLint value)
        : name(name) {
        glPixelStorei(name, value);
    }
    ~Unpacking() { glPixelStorei(name, 0); }
    Unpacking(const Unpacking&) = delete;
    Unpacking& operator=(const Unpacking&) = delete;

private:
    GLenum name;
};

TEST_P(Textures, an_upload_that_would_read_beyond_the_pixels_is_refused) {
    struct Row {
        GLenum name;
        GLint value;
    };
    for (const Row& row : {Row{GL_UNPACK_ROW_LENGTH, 1 << 22}, Row{GL_UNPACK_ROW_LENGTH, 65},
                           Row{GL_UNPACK_SKIP_ROWS, 1 << 20}, Row{GL_UNPACK_SKIP_ROWS, 1},
                           Row{GL_UNPACK_SKIP_PIXELS, 1 << 22}, Row{GL_UNPACK_SKIP_PIXELS, 1}}) {
        create_2d(64, 64, PF_RGBA_U8);
        {
            const Unpacking set(row.name, row.value);
            recorder->clear();
            EXPECT_FALSE(load()) << row.name << " " << row.value;
            EXPECT_FALSE(data.loaded_in_gpu_memory);
        }
        ASSERT_TRUE(load());
        const Unpacking set(row.name, row.value);
        recorder->clear();
        EXPECT_FALSE(renderer->texture_2d_update(&data, 0, 0, 64, 64));
        EXPECT_EQ(recorder->take(), GlCalls());
    }
}

TEST_P(Textures, a_cube_and_a_line_are_refused_beyond_their_pixels_too) {
    create_cube(4, PF_RGBA_U8);
    {
        const Unpacking set(GL_UNPACK_ROW_LENGTH, 1 << 22);
        EXPECT_FALSE(load());
    }
    create_1d(64, PF_RGBA_U8);
    const Unpacking set(GL_UNPACK_SKIP_PIXELS, 1 << 22);
    EXPECT_FALSE(load());
}

TEST_P(Textures, an_upload_reads_as_the_host_left_it_where_the_pixels_reach) {
    create_2d(8, 8, PF_RGBA_U8);
    data.height = 4;
    const Unpacking set(GL_UNPACK_SKIP_ROWS, 4);
    ASSERT_TRUE(load());
    const Bytes pixels = pixels_of(GL_TEXTURE_2D, 8 * 4);
    EXPECT_EQ(pixels[0], static_cast<unsigned char>(4 * 8 * 4 + 1));
    data.height = 8;
}

TEST_P(Textures, nothing_is_uploaded_from_a_buffer_of_the_hosts) {
    GLuint buffer = 0;
    renderer->gl.glGenBuffers(1, &buffer);
    create_2d(8, 8, PF_RGBA_U8);
    renderer->gl.glBindBuffer(GL_PIXEL_UNPACK_BUFFER, buffer);
    recorder->clear();
    EXPECT_FALSE(load());
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_FALSE(data.loaded_in_gpu_memory);
    renderer->gl.glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    ASSERT_TRUE(load());
    renderer->gl.glBindBuffer(GL_PIXEL_UNPACK_BUFFER, buffer);
    unsigned char pixel[4] = {};
    recorder->clear();
    EXPECT_FALSE(renderer->texture_2d_update(&data, 0, 0, 8, 8));
    EXPECT_FALSE(renderer->texture_2d_update_pixmap(&data, 0, 0, 1, 1, PF_RGBA_U8, pixel));
    EXPECT_EQ(recorder->take(), GlCalls());
    renderer->gl.glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    renderer->gl.glDeleteBuffers(1, &buffer);
    EXPECT_NO_GL_ERROR();
}

// -------------------------------------------------------------------------------- updates

TEST_P(Textures, a_2d_update_takes_y_before_x_and_reads_from_the_start) {
    create_2d(16, 16, PF_RGBA_U8);
    ASSERT_TRUE(load());
    data.fill_color_rgba_u8(0, 0, 0, 0);
    data.pixmap_u8[0] = 200;
    data.needs_gpu_update = true;
    recorder->clear();
    EXPECT_TRUE(renderer->texture_2d_update(&data, 0, 10, 4, 4));
    EXPECT_EQ(recorder->take(),
              (GlCalls{"glPixelStorei(GL_UNPACK_ALIGNMENT, 4)",
                       "glTexSubImage2D(GL_TEXTURE_2D, 0, 10, 0, 4, 4, GL_RGBA, GL_UNSIGNED_BYTE, "
                       "ptr)"}));
    EXPECT_FALSE(data.needs_gpu_update);
    EXPECT_EQ(pixels_of(GL_TEXTURE_2D, 256)[40], 200);
    EXPECT_NO_GL_ERROR();
}

TEST_P(Textures, a_1d_update_reads_from_the_start_too) {
    create_1d(8, PF_RGB_U8);
    ASSERT_TRUE(load());
    data.needs_gpu_update = true;
    recorder->clear();
    EXPECT_TRUE(renderer->texture_1d_update(&data, 5, 3));
    EXPECT_EQ(recorder->take(),
              (GlCalls{"glPixelStorei(GL_UNPACK_ALIGNMENT, 1)",
                       "glTexSubImage1D(GL_TEXTURE_1D, 0, 5, 3, GL_RGB, GL_UNSIGNED_BYTE, ptr)"}));
    EXPECT_FALSE(data.needs_gpu_update);
    EXPECT_EQ(pixels_of(GL_TEXTURE_1D, 8)[20], 1);
    EXPECT_NO_GL_ERROR();
}

TEST_P(Textures, a_cube_update_sends_six_faces) {
    create_cube(2, PF_RGB_F32);
    ASSERT_TRUE(load());
    data.needs_gpu_update = true;
    recorder->clear();
    EXPECT_TRUE(renderer->texture_cube_update(&data));
    const GlCalls calls = recorder->take();
    ASSERT_EQ(calls.size(), 12u);
    EXPECT_EQ(calls[0], "glPixelStorei(GL_UNPACK_ALIGNMENT, 2)");
    EXPECT_EQ(calls[1], "glTexSubImage2D(GL_TEXTURE_CUBE_MAP_POSITIVE_X, 0, 0, 0, 2, 2, GL_RGB, "
                        "GL_FLOAT, ptr)");
    EXPECT_EQ(calls[11], "glTexSubImage2D(GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, 0, 0, 0, 2, 2, GL_RGB, "
                         "GL_FLOAT, ptr)");
    EXPECT_FALSE(data.needs_gpu_update);
    EXPECT_NO_GL_ERROR();
}

TEST_P(Textures, a_cube_update_stops_at_a_face_with_too_few_pixels) {
    create_cube(4, PF_RGB_U8);
    ASSERT_TRUE(load());
    data.cubemap_faces[2].image.create(2, 2, 1, PF_RGB_U8, true);
    recorder->clear();
    EXPECT_FALSE(renderer->texture_cube_update(&data));
    EXPECT_EQ(recorder->count("glTexSubImage2D"), 2);
}

TEST_P(Textures, an_update_refuses_other_types_and_too_few_pixels) {
    create_2d(4, 4, PF_RGB_U8);
    unsigned char pixels[64] = {};
    data.type = TEXTURE_TYPE_RECTANGLE;
    EXPECT_FALSE(renderer->texture_1d_update(&data, 0, 1));
    EXPECT_FALSE(renderer->texture_2d_update(&data, 0, 0, 1, 1));
    EXPECT_FALSE(renderer->texture_2d_update_pixmap(&data, 0, 0, 1, 1, PF_RGB_U8, pixels));
    EXPECT_FALSE(renderer->texture_cube_update(&data));
    EXPECT_FALSE(renderer->texture_cube_update_face(&data, CUBEMAP_FACE_POSITIVE_X));
    EXPECT_FALSE(renderer->texture_1d_update(nullptr, 0, 1));
    EXPECT_FALSE(renderer->texture_2d_update(nullptr, 0, 0, 1, 1));
    EXPECT_FALSE(renderer->texture_2d_update_pixmap(nullptr, 0, 0, 1, 1, PF_RGB_U8, pixels));
    EXPECT_FALSE(renderer->texture_cube_update(nullptr));
    data.type = TEXTURE_TYPE_2D;
    EXPECT_FALSE(renderer->texture_2d_update(&data, 0, 0, 5, 4));
    EXPECT_FALSE(renderer->texture_2d_update(&data, 0, 0, INT_MAX, INT_MAX));
    EXPECT_FALSE(renderer->texture_2d_update_pixmap(&data, 0, 0, 1, 1, PF_RGB_U8, nullptr));
    data.type = TEXTURE_TYPE_1D;
    EXPECT_FALSE(renderer->texture_1d_update(&data, 0, 17));
    EXPECT_TRUE(data.needs_gpu_update);
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(Textures, an_update_without_pixels_to_send_only_lowers_the_flag) {
    data.width = data.height = 4;
    for (const PIXEL_FORMAT format :
         {PF_RGB_U8, PF_RGB_F32, PF_RGB_F16, PF_RGBA_F16, PF_R_F16, PF_NONE}) {
        data.pixel_format = format;
        data.type = TEXTURE_TYPE_2D;
        data.needs_gpu_update = true;
        EXPECT_TRUE(renderer->texture_2d_update(&data, 0, 0, 4, 4)) << format;
        EXPECT_FALSE(data.needs_gpu_update);
        data.type = TEXTURE_TYPE_1D;
        data.needs_gpu_update = true;
        EXPECT_TRUE(renderer->texture_1d_update(&data, 0, 4)) << format;
        EXPECT_FALSE(data.needs_gpu_update);
        data.type = TEXTURE_TYPE_CUBE;
        data.cubemap_faces[0].image.pixel_format = format;
        data.needs_gpu_update = true;
        EXPECT_TRUE(renderer->texture_cube_update(&data)) << format;
        EXPECT_FALSE(data.needs_gpu_update);
    }
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(Textures, half_float_pixels_are_loaded_but_not_updated) {
    create_2d(2, 2, PF_RGBA_F32);
    data.pixel_format = PF_RGBA_F16;
    ASSERT_TRUE(load());
    EXPECT_EQ(pixels_of(GL_TEXTURE_2D, 4)[0], 64);
    recorder->clear();
    EXPECT_TRUE(renderer->texture_2d_update(&data, 0, 0, 2, 2));
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(Textures, odd_rows_of_an_update_are_not_skewed) {
    create_2d(5, 3, PF_RGB_U8);
    ASSERT_TRUE(load());
    data.flip_horizontal();
    EXPECT_TRUE(renderer->texture_2d_update(&data, 0, 0, 5, 3));
    const Bytes pixels = pixels_of(GL_TEXTURE_2D, 15);
    for (unsigned long i = 0; i < 15; ++i)
        EXPECT_EQ(pixels[i * 4], data.pixmap_u8[i * 3]) << "pixel " << i;
}

TEST_P(Textures, an_update_from_the_callers_pixels_sets_the_sampler_again) {
    create_2d(8, 8, PF_RGBA_U8);
    ASSERT_TRUE(load());
    data.anisotropy = 4.0f;
    data.filtering_mode = FILTERING_NEAREST;
    data.needs_gpu_update = true;
    Bytes pixels(5 * 2 * 3, 77);
    recorder->clear();
    EXPECT_TRUE(renderer->texture_2d_update_pixmap(&data, 1, 2, 5, 2, PF_BGR_U8, pixels.data()));
    EXPECT_EQ(
        recorder->take(),
        (GlCalls{"glPixelStorei(GL_UNPACK_ALIGNMENT, 1)",
                 "glTexSubImage2D(GL_TEXTURE_2D, 0, 2, 1, 5, 2, GL_BGR, GL_UNSIGNED_BYTE, ptr)",
                 "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, 4)",
                 "glGenerateMipmap(GL_TEXTURE_2D)",
                 "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
                 "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, "
                 "GL_NEAREST_MIPMAP_NEAREST)"}));
    EXPECT_FALSE(data.needs_gpu_update);
    EXPECT_EQ(pixels_of(GL_TEXTURE_2D, 64)[(8 + 2) * 4], 77);

    data.gen_mipmaps = false;
    data.filtering_mode = FILTERING_LINEAR;
    EXPECT_TRUE(renderer->texture_2d_update_pixmap(&data, 0, 0, 5, 2, PF_RGB_F16, pixels.data()));
    EXPECT_EQ(recorder->take(),
              (GlCalls{"glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, 4)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_BASE_LEVEL, 0)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)"}))
        << "a format without pixels sends none";
    EXPECT_NO_GL_ERROR();
}

} // namespace
} // namespace orvex_test
