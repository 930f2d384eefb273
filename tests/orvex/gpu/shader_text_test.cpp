#include "orvex/gpu/private/shader_text.h"

#include <string>

#include <gtest/gtest.h>

namespace orvex_test {

using namespace orvex;

namespace {

struct Row {
    const char* description;
    std::string text;
    bool complete;
    // Bodies by stage; null where the marker is missing.
    const char* bodies[6];
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.description;
}

const Row ROWS[] = {
    {"empty", "", false, {}},
    {"no_marker", "void main() {}", false, {}},
    {"vertex_only", "[Vertex_Shader]v", false, {"v"}},
    {"pixel_only", "[Pixel_Shader]p", false, {nullptr, "p"}},
    {"compute_only", "[Compute_Shader]c", true, {nullptr, nullptr, nullptr, nullptr, nullptr, "c"}},
    {"vertex_and_pixel", "[Vertex_Shader]\nv\n[Pixel_Shader]\np\n", true, {"\nv\n", "\np\n"}},
    {"pixel_first", "[Pixel_Shader]p[Vertex_Shader]v", true, {"v", "p"}},
    {"text_before_the_first_marker", "ignored[Vertex_Shader]v[Pixel_Shader]p", true, {"v", "p"}},
    {"all_stages_in_reverse",
     "[Compute_Shader]c[TessEval_Shader]e[TessControl_Shader]t[Geometry_Shader]g[Pixel_Shader]p"
     "[Vertex_Shader]v",
     true,
     {"v", "p", "g", "t", "e", "c"}},
    {"second_marker_stays_in_the_source",
     "[Vertex_Shader]a[Vertex_Shader]b[Pixel_Shader]p",
     true,
     {"a[Vertex_Shader]b", "p"}},
    {"second_marker_behind_another_stage",
     "[Vertex_Shader]a[Pixel_Shader]p[Vertex_Shader]b",
     true,
     {"a", "p[Vertex_Shader]b"}},
    {"marker_in_a_comment",
     "// see [Vertex_Shader] below\n[Vertex_Shader]v[Pixel_Shader]p",
     true,
     {" below\n[Vertex_Shader]v", "p"}},
    {"markers_with_nothing_between", "[Vertex_Shader][Pixel_Shader]", true, {"", ""}},
    {"wrong_case", "[vertex_shader]v[Pixel_Shader]p", false, {nullptr, "p"}},
    {"marker_cut_at_the_end", "[Pixel_Shader]p[Vertex_Shader", false, {nullptr, "p[Vertex_Shader"}},
    {"geometry_without_pixel", "[Vertex_Shader]v[Geometry_Shader]g", false, {"v", nullptr, "g"}},
};

class ShaderTextRow : public testing::TestWithParam<Row> {};
INSTANTIATE_TEST_SUITE_P(of, ShaderTextRow, testing::ValuesIn(ROWS),
                         [](const auto& row) { return std::string(row.param.description); });

TEST_P(ShaderTextRow, is_cut_at_its_markers) {
    const Row& row = GetParam();
    const ShaderText sections(row.text.c_str(), row.text.size());
    EXPECT_EQ(sections.is_complete(), row.complete);
    for (int stage = 0; stage < 6; ++stage) {
        const char* const body = sections.get_body(GPU_SHADER_TYPE(stage));
        if (row.bodies[stage])
            EXPECT_STREQ(body, row.bodies[stage]) << stage;
        else
            EXPECT_EQ(body, nullptr) << stage;
    }
}

TEST(ShaderTextSize, limits_what_is_read) {
    const char text[] = "[Vertex_Shader]v[Pixel_Shader]pixel";
    const ShaderText cut(text, sizeof text - 5);
    EXPECT_STREQ(cut.get_body(GPU_SHADER_PIXEL), "p");
    const ShaderText short_of_a_marker(text, 20);
    EXPECT_FALSE(short_of_a_marker.is_complete());
}

TEST(ShaderTextSize, may_exceed_the_text) {
    const ShaderText sections("[Compute_Shader]c", ~0ul);
    EXPECT_STREQ(sections.get_body(GPU_SHADER_COMPUTE), "c");
}

} // namespace

} // namespace orvex_test
