#include "orvex/renderer/renderer_types.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace orvex_test {

using namespace orvex;
namespace {

TEST(ConvertInt2Pf, keeps_1_to_6_and_gives_none_for_all_else) {
    for (int i = 1; i <= 6; ++i)
        EXPECT_EQ(ConvertInt2Pf(i), static_cast<PIXEL_FORMAT>(i));
    for (const int other : {0, -1, 7, 8, 10, 11, 1000000, -1000000})
        EXPECT_EQ(ConvertInt2Pf(other), PF_NONE) << other;
}

TEST(GpuShaderType, has_a_label_for_each_stage) {
    const std::vector<std::string> labels = {
        "Vertex",  "Pixel", "Geometry",       "Tessellation control", "Tessellation evaluation",
        "Compute", "",      "Direct3D effect"};
    ASSERT_EQ(labels.size(), static_cast<std::size_t>(GPU_SHADER_TYPE_COUNT));
    for (int i = 0; i < GPU_SHADER_TYPE_COUNT; ++i) {
        EXPECT_EQ(GetGpuShaderTypeLabel(static_cast<GPU_SHADER_TYPE>(i)),
                  labels[static_cast<std::size_t>(i)]);
    }
    for (const int outside : {-1, 8, 300})
        EXPECT_STREQ(GetGpuShaderTypeLabel(static_cast<GPU_SHADER_TYPE>(outside)), "");
}

// Records store these numbers and hosts cast to them.
TEST(RendererTypes, keep_their_values) {
    EXPECT_EQ(BLEND_FACTOR_ZERO, 0);
    EXPECT_EQ(BLEND_FACTOR_ONE, 1);
    EXPECT_EQ(BLEND_FACTOR_SRC_ALPHA, 2);
    EXPECT_EQ(BLEND_FACTOR_ONE_MINUS_DST_ALPHA, 3);
    EXPECT_EQ(BLEND_FACTOR_ONE_MINUS_DST_COLOR, 4);
    EXPECT_EQ(BLEND_FACTOR_ONE_MINUS_SRC_ALPHA, 5);
    EXPECT_EQ(BLEND_FACTOR_DST_COLOR, 6);
    EXPECT_EQ(BLEND_FACTOR_DST_ALPHA, 7);
    EXPECT_EQ(BLEND_FACTOR_SRC_COLOR, 8);
    EXPECT_EQ(BLEND_FACTOR_ONE_MINUS_SRC_COLOR, 9);
    EXPECT_EQ(CMP_NEVER, 0);
    EXPECT_EQ(CMP_LESS, 1);
    EXPECT_EQ(CMP_LEQUAL, 2);
    EXPECT_EQ(CMP_GREATER, 3);
    EXPECT_EQ(CMP_GEQUAL, 4);
    EXPECT_EQ(CMP_EQUAL, 5);
    EXPECT_EQ(CMP_NOTEQUAL, 6);
    EXPECT_EQ(CMP_ALWAYS, 7);
    EXPECT_EQ(POLYGON_FACE_BACK, 0);
    EXPECT_EQ(POLYGON_FACE_FRONT, 1);
    EXPECT_EQ(POLYGON_FACE_FRONT_AND_BACK, 2);
    EXPECT_EQ(POLYGON_MODE_POINT, 0);
    EXPECT_EQ(POLYGON_MODE_LINE, 1);
    EXPECT_EQ(POLYGON_MODE_FILL, 2);
    EXPECT_EQ(PF_NONE, 0);
    EXPECT_EQ(PF_RGB_U8, 1);
    EXPECT_EQ(PF_BGR_U8, 2);
    EXPECT_EQ(PF_RGBA_U8, 3);
    EXPECT_EQ(PF_BGRA_U8, 4);
    EXPECT_EQ(PF_RGB_F32, 5);
    EXPECT_EQ(PF_RGBA_F32, 6);
    EXPECT_EQ(PF_R_F32, 7);
    EXPECT_EQ(PF_RGB_F16, 8);
    EXPECT_EQ(PF_RGBA_F16, 9);
    EXPECT_EQ(PF_R_F16, 10);
    EXPECT_EQ(BUFFER_USAGE_DEFAULT, 0);
    EXPECT_EQ(BUFFER_USAGE_STATIC_DRAW, 1);
    EXPECT_EQ(BUFFER_USAGE_STATIC_READ, 2);
    EXPECT_EQ(BUFFER_USAGE_DYNAMIC_DRAW, 3);
    EXPECT_EQ(BUFFER_USAGE_DYNAMIC_READ, 4);
    EXPECT_EQ(BUFFER_USAGE_STREAM_DRAW, 5);
    EXPECT_EQ(BUFFER_USAGE_STREAM_READ, 6);
    EXPECT_EQ(ADDRESSING_REPEAT, 1);
    EXPECT_EQ(ADDRESSING_CLAMP, 2);
    EXPECT_EQ(ADDRESSING_MIRROR, 3);
    EXPECT_EQ(FILTERING_NEAREST, 1);
    EXPECT_EQ(FILTERING_LINEAR, 2);
    EXPECT_EQ(FILTERING_TRILINEAR, 3);
    EXPECT_EQ(GPU_SHADER_VERTEX, 0);
    EXPECT_EQ(GPU_SHADER_PIXEL, 1);
    EXPECT_EQ(GPU_SHADER_GEOMETRY, 2);
    EXPECT_EQ(GPU_SHADER_TESS_CONTROL, 3);
    EXPECT_EQ(GPU_SHADER_TESS_EVAL, 4);
    EXPECT_EQ(GPU_SHADER_COMPUTE, 5);
    EXPECT_EQ(GPU_SHADER_EFFECT, 7);
    EXPECT_EQ(DATA_ACCESS_READ_WRITE, 0);
    EXPECT_EQ(DATA_ACCESS_WRITE_ONLY, 1);
    EXPECT_EQ(DATA_ACCESS_READ_ONLY, 2);
}

} // namespace
} // namespace orvex_test
