#include <string>

#include <gtest/gtest.h>

#include "fake_compiler.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/renderer/records/gpu_program_uniform.h"

namespace orvex_test {

using namespace orvex;
using orvex_test::FakeCompiler;
using Calls = std::vector<std::string>;

namespace {

const int ints[8] = {1, 2, 3, 4, 5, 6, 7, 8};
const float floats[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
const double doubles[8] = {1, 2, 3, 4, 5, 6, 7, 8};
const unsigned long long longs[2] = {1, 2};
const vec2 vec2s[2];
const vec3 vec3s[2];
const vec4 vec4s[2];

struct Setter {
    const char* name; // with the prefix of the renderer's operation left out
    const char* arguments;
    int type; // of the record that waits
    bool (*set)(GpuProgram& program, Renderer* renderer, const char* name);
};

std::ostream& operator<<(std::ostream& out, const Setter& setter) {
    return out << setter.name;
}

using P = GpuProgram;
using R = Renderer;

// clang-format off
const Setter SETTERS[] = {
    {"1i", "7", 0, [](P& p, R* r, const char* n) { return p.set_uniform_1i(r, n, 7); }},
    {"2i", "7, 8", 1, [](P& p, R* r, const char* n) { return p.set_uniform_2i(r, n, 7, 8); }},
    {"3i", "7, 8, 9", 2, [](P& p, R* r, const char* n) { return p.set_uniform_3i(r, n, 7, 8, 9); }},
    {"4i", "7, 8, 9, 10", 3, [](P& p, R* r, const char* n) { return p.set_uniform_4i(r, n, 7, 8, 9, 10); }},
    {"1f", "7.5", 8, [](P& p, R* r, const char* n) { return p.set_uniform_1f(r, n, 7.5f); }},
    {"2f", "7.5, 8", 9, [](P& p, R* r, const char* n) { return p.set_uniform_2f(r, n, 7.5f, 8); }},
    {"3f", "7.5, 8, 9", 10, [](P& p, R* r, const char* n) { return p.set_uniform_3f(r, n, 7.5f, 8, 9); }},
    {"4f", "7.5, 8, 9, 10", 11, [](P& p, R* r, const char* n) { return p.set_uniform_4f(r, n, 7.5f, 8, 9, 10); }},
    {"1d", "7.5", 16, [](P& p, R* r, const char* n) { return p.set_uniform_1d(r, n, 7.5); }},
    {"2d", "7.5, 8", 17, [](P& p, R* r, const char* n) { return p.set_uniform_2d(r, n, 7.5, 8); }},
    {"3d", "7.5, 8, 9", 18, [](P& p, R* r, const char* n) { return p.set_uniform_3d(r, n, 7.5, 8, 9); }},
    {"4d", "7.5, 8, 9, 10", 19, [](P& p, R* r, const char* n) { return p.set_uniform_4d(r, n, 7.5, 8, 9, 10); }},
    {"1ui", "4294967295", 28, [](P& p, R* r, const char* n) { return p.set_uniform_1ui(r, n, ~0u); }},
    {"2ui", "7, 8", 29, [](P& p, R* r, const char* n) { return p.set_uniform_2ui(r, n, 7, 8); }},
    {"3ui", "7, 8, 9", 30, [](P& p, R* r, const char* n) { return p.set_uniform_3ui(r, n, 7, 8, 9); }},
    {"4ui", "7, 8, 9, 10", 31, [](P& p, R* r, const char* n) { return p.set_uniform_4ui(r, n, 7, 8, 9, 10); }},
    {"1ui64", "9223372036854775808", 32, [](P& p, R* r, const char* n) { return p.set_uniform_1ui64(r, n, 1ull << 63); }},
    {"1iv", "ints, 2", 4, [](P& p, R* r, const char* n) { return p.set_uniform_1iv(r, n, ints, 2); }},
    {"2iv", "ints, 2", 5, [](P& p, R* r, const char* n) { return p.set_uniform_2iv(r, n, ints, 2); }},
    {"3iv", "ints, 2", 6, [](P& p, R* r, const char* n) { return p.set_uniform_3iv(r, n, ints, 2); }},
    {"4iv", "ints, 2", 7, [](P& p, R* r, const char* n) { return p.set_uniform_4iv(r, n, ints, 2); }},
    {"1fv", "floats, 2", 12, [](P& p, R* r, const char* n) { return p.set_uniform_1fv(r, n, floats, 2); }},
    {"2fv", "vec2s, 2", 13, [](P& p, R* r, const char* n) { return p.set_uniform_2fv(r, n, vec2s, 2); }},
    {"3fv", "vec3s, 2", 14, [](P& p, R* r, const char* n) { return p.set_uniform_3fv(r, n, vec3s, 2); }},
    {"4fv", "vec4s, 2", 15, [](P& p, R* r, const char* n) { return p.set_uniform_4fv(r, n, vec4s, 2); }},
    {"1dv", "doubles, 2", 20, [](P& p, R* r, const char* n) { return p.set_uniform_1dv(r, n, doubles, 2); }},
    {"2dv", "doubles, 2", 21, [](P& p, R* r, const char* n) { return p.set_uniform_2dv(r, n, doubles, 2); }},
    {"3dv", "doubles, 2", 22, [](P& p, R* r, const char* n) { return p.set_uniform_3dv(r, n, doubles, 2); }},
    {"4dv", "doubles, 2", 23, [](P& p, R* r, const char* n) { return p.set_uniform_4dv(r, n, doubles, 2); }},
    {"1ui64v", "longs, 2", 33, [](P& p, R* r, const char* n) { return p.set_uniform_1ui64v(r, n, longs, 2); }},
    {"3x3fv", "floats, 1", 24, [](P& p, R* r, const char* n) { return p.set_uniform_3x3fv(r, n, floats, 1); }},
    {"4x4fv", "floats, 1", 25, [](P& p, R* r, const char* n) { return p.set_uniform_4x4fv(r, n, floats, 1); }},
};
// clang-format on

class GpuProgramSetter : public testing::TestWithParam<Setter> {
protected:
    void SetUp() override {
        program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, "any", 3);
        renderer.name_pointer(renderer.record, "record");
        renderer.name_pointer(ints, "ints");
        renderer.name_pointer(floats, "floats");
        renderer.name_pointer(doubles, "doubles");
        renderer.name_pointer(longs, "longs");
        renderer.name_pointer(vec2s, "vec2s");
        renderer.name_pointer(vec3s, "vec3s");
        renderer.name_pointer(vec4s, "vec4s");
        renderer.take_calls();
    }
    void TearDown() override { program->release(nullptr, nullptr); }

    FakeCompiler renderer;
    GpuProgram* program = new GpuProgram;
};
INSTANTIATE_TEST_SUITE_P(set_uniform, GpuProgramSetter, testing::ValuesIn(SETTERS),
                         [](const auto& row) { return "_" + std::string(row.param.name); });

TEST_P(GpuProgramSetter, acts_at_once_with_a_renderer) {
    const Setter& setter = GetParam();
    EXPECT_TRUE(setter.set(*program, &renderer, "u"));
    EXPECT_EQ(renderer.take_calls(), (Calls{"gpu_program_set_uniform_" + std::string(setter.name) +
                                            "(record, \"u\", " + setter.arguments + ")"}));
    EXPECT_EQ(renderer.record->find_uniform("u"), nullptr) << "nothing waits";
    EXPECT_TRUE(setter.set(*program, &renderer, nullptr)) << "the renderer passes over it";
}

TEST_P(GpuProgramSetter, waits_without_a_renderer) {
    EXPECT_TRUE(GetParam().set(*program, nullptr, "u"));
    EXPECT_TRUE(renderer.take_calls().empty());
    const GpuProgramUniform* const uniform = renderer.record->find_uniform("u");
    ASSERT_NE(uniform, nullptr);
    EXPECT_EQ(uniform->type, GetParam().type);
    EXPECT_TRUE(uniform->dirty);
    EXPECT_FALSE(GetParam().set(*program, nullptr, nullptr));
}

using GpuProgramMatrix = GpuProgramSetter;

TEST_F(GpuProgramMatrix, waits_alone_whatever_the_count) {
    for (const int count : {-1, 0, 7}) {
        EXPECT_TRUE(program->set_uniform_3x3fv(nullptr, "a", floats, count));
        EXPECT_TRUE(program->set_uniform_4x4fv(nullptr, "b", floats, count));
    }
    EXPECT_EQ(renderer.record->find_uniform("a")->m3f[8], 9.0f);
    EXPECT_EQ(renderer.record->find_uniform("b")->m4f.m[15], 16.0f);
    EXPECT_FALSE(program->set_uniform_4x4fv(nullptr, "b", nullptr, 1));
}

} // namespace

} // namespace orvex_test
