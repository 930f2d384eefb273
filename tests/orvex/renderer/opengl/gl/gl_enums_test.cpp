#include "orvex/renderer/opengl/gl/private/gl_enums.h"

#include <vector>

#include <GL/glext.h>
#include <gtest/gtest.h>

namespace orvex_test {

using namespace orvex;
namespace {

// Each value of the engine from 0 on, then what all other values give.
template<typename Enum>
void expect_mapping(GLenum (*map)(Enum), const std::vector<GLenum>& values, GLenum other) {
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(map(static_cast<Enum>(i)), values[i]) << i;
    for (const int outside : {-1, static_cast<int>(values.size()), 300, -2000000000})
        EXPECT_EQ(map(static_cast<Enum>(outside)), other) << outside;
}

TEST(GlEnums, map_blend_factors) {
    expect_mapping(gl_blend_factor,
                   {GL_ZERO, GL_ONE, GL_SRC_ALPHA, GL_ONE_MINUS_DST_ALPHA, GL_ONE_MINUS_DST_COLOR,
                    GL_ONE_MINUS_SRC_ALPHA, GL_DST_COLOR, GL_DST_ALPHA, GL_SRC_COLOR,
                    GL_ONE_MINUS_SRC_COLOR},
                   GL_ONE);
}

TEST(GlEnums, map_comparisons) {
    expect_mapping(
        gl_cmp_func,
        {GL_NEVER, GL_LESS, GL_LEQUAL, GL_GREATER, GL_GEQUAL, GL_EQUAL, GL_NOTEQUAL, GL_ALWAYS},
        GL_LESS);
}

TEST(GlEnums, map_faces) {
    expect_mapping(gl_polygon_face, {GL_BACK, GL_FRONT, GL_FRONT_AND_BACK}, GL_FRONT_AND_BACK);
}

TEST(GlEnums, map_polygon_modes) {
    expect_mapping(gl_polygon_mode, {GL_POINT, GL_LINE, GL_FILL}, GL_FILL);
}

TEST(GlEnums, map_buffer_usages) {
    expect_mapping(gl_buffer_usage,
                   {GL_STATIC_DRAW, GL_STATIC_DRAW, GL_STATIC_READ, GL_DYNAMIC_DRAW,
                    GL_DYNAMIC_READ, GL_STREAM_DRAW, GL_STREAM_READ},
                   GL_STATIC_DRAW);
}

TEST(GlEnums, map_addressing_modes) {
    expect_mapping(gl_addressing_mode,
                   {GL_CLAMP_TO_EDGE, GL_REPEAT, GL_CLAMP_TO_EDGE, GL_MIRRORED_REPEAT},
                   GL_CLAMP_TO_EDGE);
}

TEST(GlEnums, map_shader_stages) {
    expect_mapping(gl_shader_type,
                   {GL_VERTEX_SHADER, GL_FRAGMENT_SHADER, GL_GEOMETRY_SHADER,
                    GL_TESS_CONTROL_SHADER, GL_TESS_EVALUATION_SHADER, GL_COMPUTE_SHADER, 0, 0},
                   0);
}

TEST(GlEnums, map_image_access) {
    expect_mapping(gl_data_access, {GL_READ_WRITE, GL_WRITE_ONLY, GL_READ_ONLY}, GL_READ_WRITE);
}

TEST(GlEnums, map_cube_faces) {
    const GLenum faces[] = {GL_TEXTURE_CUBE_MAP_POSITIVE_X, GL_TEXTURE_CUBE_MAP_NEGATIVE_X,
                            GL_TEXTURE_CUBE_MAP_POSITIVE_Y, GL_TEXTURE_CUBE_MAP_NEGATIVE_Y,
                            GL_TEXTURE_CUBE_MAP_POSITIVE_Z, GL_TEXTURE_CUBE_MAP_NEGATIVE_Z};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(gl_cubemap_face(static_cast<CUBEMAP_FACE>(i)), faces[i]);
}

TEST(GlEnums, map_each_memory_barrier_alone) {
    const GLbitfield bits[] = {GL_VERTEX_ATTRIB_ARRAY_BARRIER_BIT,
                               GL_ELEMENT_ARRAY_BARRIER_BIT,
                               GL_UNIFORM_BARRIER_BIT,
                               GL_TEXTURE_FETCH_BARRIER_BIT,
                               GL_SHADER_IMAGE_ACCESS_BARRIER_BIT,
                               GL_COMMAND_BARRIER_BIT,
                               GL_PIXEL_BUFFER_BARRIER_BIT,
                               GL_TEXTURE_UPDATE_BARRIER_BIT,
                               GL_BUFFER_UPDATE_BARRIER_BIT,
                               GL_FRAMEBUFFER_BARRIER_BIT,
                               GL_TRANSFORM_FEEDBACK_BARRIER_BIT,
                               GL_ATOMIC_COUNTER_BARRIER_BIT,
                               GL_SHADER_STORAGE_BARRIER_BIT};
    for (unsigned int i = 0; i < 13; ++i)
        EXPECT_EQ(gl_memory_barriers(1U << i), bits[i]) << i;
}

TEST(GlEnums, translate_mixed_memory_barriers_bit_by_bit) {
    EXPECT_EQ(gl_memory_barriers(0), 0U);
    EXPECT_EQ(
        gl_memory_barriers(MEMORY_BARRIER_VERTEX_ATTRIB_ARRAY | MEMORY_BARRIER_SHADER_STORAGE),
        static_cast<GLbitfield>(GL_VERTEX_ATTRIB_ARRAY_BARRIER_BIT |
                                GL_SHADER_STORAGE_BARRIER_BIT));
    EXPECT_EQ(gl_memory_barriers(MEMORY_BARRIER_ALL), GL_ALL_BARRIER_BITS);
    EXPECT_EQ(gl_memory_barriers(8192 | 1),
              static_cast<GLbitfield>(GL_VERTEX_ATTRIB_ARRAY_BARRIER_BIT))
        << "all barriers only count alone";
    EXPECT_EQ(gl_memory_barriers(0xFFFFC000), 0U) << "unknown bits are dropped";
}

TEST(GlEnums, map_pixel_formats) {
    struct Row {
        int format;
        GLint internal_format;
        GLenum pixels;
        GLenum type;
        bool known;
    };
    const Row rows[] = {
        {1, GL_RGBA8, GL_RGB, GL_UNSIGNED_BYTE, true},
        {2, GL_RGBA8, GL_BGR, GL_UNSIGNED_BYTE, true},
        {3, GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE, true},
        {4, GL_RGBA8, GL_BGRA, GL_UNSIGNED_BYTE, true},
        {5, GL_RGB32F, GL_RGB, GL_FLOAT, true},
        {6, GL_RGBA32F, GL_RGBA, GL_FLOAT, true},
        {7, GL_R32F, GL_RED, GL_FLOAT, true},
        {8, GL_RGB16F, GL_RGB, GL_FLOAT, true},
        {9, GL_RGBA16F, GL_RGBA, GL_FLOAT, true},
        {10, GL_R16F, GL_RED, GL_FLOAT, true},
        {0, GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE, false},
        {11, GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE, false},
        {-1, GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE, false},
        {300, GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE, false},
    };
    for (const Row& row : rows) {
        const GlPixelFormat found = gl_pixel_format(static_cast<PIXEL_FORMAT>(row.format));
        EXPECT_EQ(found.internal_format, row.internal_format) << row.format;
        EXPECT_EQ(found.format, row.pixels) << row.format;
        EXPECT_EQ(found.type, row.type) << row.format;
        EXPECT_EQ(found.known, row.known) << row.format;
    }
}

} // namespace
} // namespace orvex_test
