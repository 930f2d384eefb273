#include "gpu_program_fixture.h"

#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/renderer/records/gpu_program_uniform.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// Every kind of uniform that can be set, all in use.
const char* const VERTEX_WITH_UNIFORMS = R"(#version 400
uniform int i1; uniform ivec2 i2; uniform ivec3 i3; uniform ivec4 i4;
uniform uint ui1; uniform uvec2 ui2; uniform uvec3 ui3; uniform uvec4 ui4;
uniform float f1; uniform vec2 f2; uniform vec3 f3; uniform vec4 f4;
uniform double d1; uniform dvec2 d2; uniform dvec3 d3; uniform dvec4 d4;
uniform int iv1[4]; uniform ivec2 iv2[2]; uniform ivec3 iv3[2]; uniform ivec4 iv4[2];
uniform float fv1[4]; uniform vec2 fv2[2]; uniform vec3 fv3[2]; uniform vec4 fv4[2];
uniform double dv1[4]; uniform dvec2 dv2[2]; uniform dvec3 dv3[2]; uniform dvec4 dv4[2];
uniform mat3 m3; uniform mat4 m4;
void main() {
    float sum = float(i1 + i2.x + i3.x + i4.x) + float(ui1 + ui2.x + ui3.x + ui4.x);
    sum += f1 + f2.x + f3.x + f4.x + float(d1 + d2.x + d3.x + d4.x);
    for (int i = 0; i < 2; ++i) {
        sum += float(iv1[i + 2] + iv2[i].x + iv3[i].x + iv4[i].x);
        sum += fv1[i + 2] + fv2[i].x + fv3[i].x + fv4[i].x;
        sum += float(dv1[i + 2] + dv2[i].x + dv3[i].x + dv4[i].x);
    }
    gl_Position = m4 * vec4(m3 * vec3(sum), 1.0);
}
)";

int INTS[8] = {1, 2, 3, 4, 5, 6, 7, 8};
float FLOATS[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
double DOUBLES[16] = {1, 2, 3, 4, 5, 6, 7, 8};
unsigned long long LONGS[2] = {1ull << 63, 2};

vec2* vec2s() {
    return reinterpret_cast<vec2*>(FLOATS);
}
vec3* vec3s() {
    return reinterpret_cast<vec3*>(FLOATS);
}
vec4* vec4s() {
    return reinterpret_cast<vec4*>(FLOATS);
}

using R = RendererOpenGL;
using D = GpuProgramData;
using N = const char*;

struct Row {
    const char* description;
    const char* uniform;                     // its name in the program
    const char* call;                        // what goes to the driver, "@" for the location
    void (*set)(R& r, D* data, N name);      // at once, by name
    void (*set_null)(R& r, D* data, N name); // an array form with a null array; null for others
    void (*wait)(D& data, N name);           // into the table
};

// clang-format off
#define SINGLE(operation, uniform, ...)                                                            \
    {#operation, uniform, nullptr,                                                                 \
     [](R& r, D* d, N n) { r.gpu_program_set_uniform_##operation(d, n, __VA_ARGS__); }, nullptr,   \
     [](D& d, N n) { d.set_uniform_##operation(n, __VA_ARGS__); }}
#define ARRAY(operation, uniform, values, count)                                                   \
    {#operation, uniform, nullptr,                                                                 \
     [](R& r, D* d, N n) { r.gpu_program_set_uniform_##operation(d, n, values, count); },          \
     [](R& r, D* d, N n) { r.gpu_program_set_uniform_##operation(d, n, nullptr, count); },         \
     [](D& d, N n) { d.set_uniform_##operation(n, values, count); }}
#define MATRIX(operation, stored, uniform)                                                         \
    {#operation, uniform, nullptr,                                                                 \
     [](R& r, D* d, N n) { r.gpu_program_set_uniform_##operation(d, n, FLOATS, 1); },              \
     [](R& r, D* d, N n) { r.gpu_program_set_uniform_##operation(d, n, nullptr, 1); },             \
     [](D& d, N n) { d.set_uniform_##stored(n, FLOATS); }}
// clang-format on

Row with_call(Row row, const char* call) {
    row.call = call;
    return row;
}

const Row ROWS[] = {
    with_call(SINGLE(1i, "i1", 7), "glUniform1i(@, 7)"),
    with_call(SINGLE(2i, "i2", 7, 8), "glUniform2i(@, 7, 8)"),
    with_call(SINGLE(3i, "i3", 7, 8, 9), "glUniform3i(@, 7, 8, 9)"),
    with_call(SINGLE(4i, "i4", 7, 8, 9, -1), "glUniform4i(@, 7, 8, 9, -1)"),
    with_call(SINGLE(1ui, "ui1", 7), "glUniform1ui(@, 7)"),
    with_call(SINGLE(2ui, "ui2", 7, 8), "glUniform2ui(@, 7, 8)"),
    with_call(SINGLE(3ui, "ui3", 7, 8, 9), "glUniform3ui(@, 7, 8, 9)"),
    with_call(SINGLE(4ui, "ui4", 7, 8, 9, ~0u), "glUniform4ui(@, 7, 8, 9, 4294967295)"),
    with_call(SINGLE(1f, "f1", 7.5f), "glUniform1f(@, 7.5)"),
    with_call(SINGLE(2f, "f2", 7.5f, 8), "glUniform2f(@, 7.5, 8)"),
    with_call(SINGLE(3f, "f3", 7.5f, 8, 9), "glUniform3f(@, 7.5, 8, 9)"),
    with_call(SINGLE(4f, "f4", 7.5f, 8, 9, 10), "glUniform4f(@, 7.5, 8, 9, 10)"),
    with_call(SINGLE(1d, "d1", 7.5), "glUniform1d(@, 7.5)"),
    with_call(SINGLE(2d, "d2", 7.5, 8), "glUniform2d(@, 7.5, 8)"),
    with_call(SINGLE(3d, "d3", 7.5, 8, 9), "glUniform3d(@, 7.5, 8, 9)"),
    with_call(SINGLE(4d, "d4", 7.5, 8, 9, 10), "glUniform4d(@, 7.5, 8, 9, 10)"),
    with_call(ARRAY(1iv, "iv1", INTS, 4), "glUniform1iv(@, 4, [1, 2, 3, 4])"),
    with_call(ARRAY(2iv, "iv2", INTS, 2), "glUniform2iv(@, 2, [1, 2, 3, 4])"),
    with_call(ARRAY(3iv, "iv3", INTS, 2), "glUniform3iv(@, 2, [1, 2, 3, 4, 5, 6])"),
    with_call(ARRAY(4iv, "iv4", INTS, 2), "glUniform4iv(@, 2, [1, 2, 3, 4, 5, 6, 7, 8])"),
    with_call(ARRAY(1fv, "fv1", FLOATS, 4), "glUniform1fv(@, 4, [1, 2, 3, 4])"),
    with_call(ARRAY(2fv, "fv2", vec2s(), 2), "glUniform2fv(@, 2, [1, 2, 3, 4])"),
    with_call(ARRAY(3fv, "fv3", vec3s(), 2), "glUniform3fv(@, 2, [1, 2, 3, 4, 5, 6])"),
    with_call(ARRAY(4fv, "fv4", vec4s(), 2), "glUniform4fv(@, 2, [1, 2, 3, 4, 5, 6, 7, 8])"),
    with_call(ARRAY(1dv, "dv1", DOUBLES, 4), "glUniform1dv(@, 4, [1, 2, 3, 4])"),
    with_call(ARRAY(2dv, "dv2", DOUBLES, 2), "glUniform2dv(@, 2, [1, 2, 3, 4])"),
    with_call(ARRAY(3dv, "dv3", DOUBLES, 2), "glUniform3dv(@, 2, [1, 2, 3, 4, 5, 6])"),
    with_call(ARRAY(4dv, "dv4", DOUBLES, 2), "glUniform4dv(@, 2, [1, 2, 3, 4, 5, 6, 7, 8])"),
    with_call(MATRIX(3x3fv, 3x3f, "m3"),
              "glUniformMatrix3fv(@, 1, false, [1, 2, 3, 4, 5, 6, 7, 8, 9])"),
    with_call(MATRIX(4x4fv, 4x4f, "m4"), "glUniformMatrix4fv(@, 1, false, [1, 2, 3, 4, 5, 6, 7, 8, "
                                         "9, 10, 11, 12, 13, 14, 15, 16])"),
};

class GpuUniforms : public GpuProgramGlTest {
protected:
    void SetUp() override {
        GpuProgramGlTest::SetUp();
        load_program(VERTEX_WITH_UNIFORMS);
        ASSERT_TRUE(renderer->gpu_program_activate(&data));
        recorder->clear();
    }

    std::string lookup(const std::string& name) const {
        return "glGetUniformLocation(" + program_id() + ", \"" + name + "\")";
    }

    std::string call(const Row& row) const {
        std::string text = row.call;
        const int location = glGetUniformLocation(data.gl_program, row.uniform);
        EXPECT_GE(location, 0) << row.description;
        return text.replace(text.find('@'), 1, std::to_string(location));
    }
};
ORVEX_BOTH_PROFILES(GpuUniforms);

TEST_P(GpuUniforms, set_by_name_ask_for_the_location_at_each_call) {
    for (const Row& row : ROWS) {
        for (int pass = 0; pass < 2; ++pass) {
            row.set(*renderer, &data, row.uniform);
            EXPECT_EQ(recorder->take(), GlCalls({lookup(row.uniform), call(row)}))
                << row.description;
        }
        EXPECT_NO_GL_ERROR() << row.description;
        recorder->clear();
    }
}

TEST_P(GpuUniforms, that_the_program_does_not_have_are_not_sent) {
    for (const Row& row : ROWS) {
        row.set(*renderer, &data, "absent");
        EXPECT_EQ(recorder->take(), GlCalls({lookup("absent")})) << row.description;
    }
}

TEST_P(GpuUniforms, of_null_are_not_asked_for) {
    for (const Row& row : ROWS) {
        row.set(*renderer, nullptr, row.uniform);
        row.set(*renderer, &data, nullptr);
        if (row.set_null)
            row.set_null(*renderer, &data, row.uniform);
        EXPECT_TRUE(recorder->take().empty()) << row.description;
    }
}

TEST_P(GpuUniforms, that_waited_are_sent_once) {
    for (const Row& row : ROWS) {
        row.wait(data, row.uniform);
        EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
        EXPECT_EQ(recorder->take(), GlCalls({lookup(row.uniform), call(row)})) << row.description;
        EXPECT_FALSE(data.find_uniform(row.uniform)->dirty);
        EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
        EXPECT_TRUE(recorder->take().empty()) << row.description;
        EXPECT_NO_GL_ERROR() << row.description;
        recorder->clear();
    }
}

TEST_P(GpuUniforms, reach_the_program) {
    data.set_uniform_3x3f("m3", FLOATS);
    data.set_uniform_4fv("fv4", vec4s(), 2);
    data.set_uniform_4d("d4", 1, 2, 3, 4);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    GLfloat matrix[9] = {};
    glGetUniformfv(data.gl_program, glGetUniformLocation(data.gl_program, "m3"), matrix);
    EXPECT_EQ(matrix[8], 9.0f);
    GLfloat vector[4] = {};
    glGetUniformfv(data.gl_program, glGetUniformLocation(data.gl_program, "fv4[1]"), vector);
    EXPECT_EQ(vector[3], 8.0f);
    GLdouble doubles[4] = {};
    glGetUniformdv(data.gl_program, glGetUniformLocation(data.gl_program, "d4"), doubles);
    EXPECT_EQ(doubles[3], 4.0);
}

TEST_P(GpuUniforms, keep_the_type_of_their_first_setter_when_sent) {
    data.set_uniform_1i("i1", 5);
    data.set_uniform_1f("i1", 2.5f);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    const GlCalls calls = recorder->take();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[1].rfind("glUniform1i(", 0), 0u);
    EXPECT_NE(calls[1].find(", 5)"), std::string::npos);
}

TEST_P(GpuUniforms, of_types_that_no_back_end_sends_are_passed_over) {
    data.set_uniform_3x3d("m3", DOUBLES);
    data.set_uniform_4x4d("m4", DOUBLES);
    data._set_uniform_ui64v("ui2", LONGS, 1, 2);
    data._set_uniform_ui64v("ui3", LONGS, 0, 3);
    data._set_uniform_ui64v("ui4", LONGS, 0, 4);
    data.get_new_uniform()->type = GPU_SHADER_UNIFORM(99);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    EXPECT_EQ(recorder->count("glGetUniformLocation"), 6);
    EXPECT_EQ(recorder->take().size(), 6u);
    EXPECT_FALSE(data.find_uniform("m3")->dirty);
    EXPECT_FALSE(data.find_uniform("ui4")->dirty);
}

TEST_P(GpuUniforms, of_an_absent_name_are_asked_for_at_each_bind_and_never_sent) {
    data.set_uniform_1f("absent", 1.0f);
    for (int pass = 0; pass < 3; ++pass) {
        EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
        EXPECT_EQ(recorder->take(), GlCalls({lookup("absent")}));
        EXPECT_EQ(data.find_uniform("absent")->location, -1);
        EXPECT_FALSE(data.find_uniform("absent")->dirty);
    }
}

TEST_P(GpuUniforms, stop_at_the_first_empty_slot) {
    data.set_uniform_1i("i1", 5);
    data.set_uniform_1f("f1", 5.0f);
    std::swap(data.get_uniforms_list()[0], data.get_uniforms_list()[2]);
    std::swap(data.get_uniforms_list()[0], data.get_uniforms_list()[1]);
    // f1, none, i1, none
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    EXPECT_EQ(recorder->take_names(),
              GlCalls({"glGetUniformLocation", "glGetUniformLocation", "glUniform1f"}));
    EXPECT_TRUE(data.find_uniform("i1")->dirty);
}

TEST_P(GpuUniforms, of_several_kinds_under_one_name_send_what_the_type_has) {
    data.set_uniform_1iv("iv1", INTS, 2);
    data.set_uniform_1fv("iv1", FLOATS, 4);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    EXPECT_NE(recorder->take()[1].find(", 2, [1, 2])"), std::string::npos)
        << "the count is that of the floats";
    data.set_uniform_4fv("fv4", vec4s(), 2);
    data.find_uniform("fv4")->fv.resize(7);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    EXPECT_NE(recorder->take()[1].find(", 1, [1, 2, 3, 4])"), std::string::npos);
}

TEST_P(GpuUniforms, with_a_type_whose_array_is_gone_are_not_sent) {
    data.set_uniform_1fv("fv1", FLOATS, 2);
    data.set_uniform_1dv("fv1", DOUBLES, 4);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    EXPECT_EQ(recorder->take(), GlCalls({lookup("fv1")}));
}

TEST_P(GpuUniforms, are_all_sent_again_on_demand) {
    data.set_uniform_1i("i1", 5);
    data.set_uniform_1f("f1", 5.0f);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    recorder->clear();
    EXPECT_TRUE(data.need_bind_uniforms());
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    EXPECT_EQ(recorder->take_names(), GlCalls({"glUniform1i", "glUniform1f"}));
}

TEST_P(GpuUniforms, are_located_once_until_told_otherwise) {
    data.set_uniform_1i("i1", 5);
    EXPECT_TRUE(renderer->gpu_program_optimize(&data));
    EXPECT_TRUE(recorder->take().empty()) << "the activation has seen to it";
    EXPECT_TRUE(data.need_bind_uniforms());
    EXPECT_TRUE(renderer->gpu_program_optimize(&data));
    EXPECT_EQ(recorder->take(), GlCalls({lookup("i1")}));
    EXPECT_TRUE(data.uniforms_optimized);
    EXPECT_TRUE(data.find_uniform("i1")->dirty);
    data.set_uniform_1f("f1", 5.0f);
    EXPECT_TRUE(renderer->gpu_program_optimize(&data));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(GpuUniforms, without_a_record_or_a_table_are_nothing_to_do) {
    EXPECT_FALSE(renderer->gpu_program_bind_uniforms(nullptr));
    EXPECT_FALSE(renderer->gpu_program_optimize(nullptr));
    data.kill_uniforms();
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(GpuUniforms, without_an_entry_point_are_passed_over) {
    hide("glUniform1d");
    renderer->gpu_program_set_uniform_1d(&data, "d1", 5.0);
    EXPECT_TRUE(recorder->take().empty());
    data.set_uniform_1d("d1", 5.0);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    EXPECT_EQ(recorder->take(), GlCalls({lookup("d1")}));
    EXPECT_FALSE(data.find_uniform("d1")->dirty);
}

TEST_P(GpuUniforms, are_out_of_reach_after_stop) {
    renderer->stop();
    data.set_uniform_1i("i1", 5);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    EXPECT_FALSE(renderer->gpu_program_optimize(&data));
    EXPECT_EQ(renderer->gpu_program_get_uniform_location(&data, "i1"), -1);
    for (const Row& row : ROWS)
        row.set(*renderer, &data, row.uniform);
    renderer->gpu_program_set_uniform_4fv_loc(0, vec4s(), 1);
    EXPECT_TRUE(recorder->take().empty());
    renderer->start();
}

TEST_P(GpuUniforms, have_a_location_by_name) {
    EXPECT_EQ(renderer->gpu_program_get_uniform_location(&data, "f1"),
              glGetUniformLocation(data.gl_program, "f1"));
    EXPECT_EQ(renderer->gpu_program_get_uniform_location(&data, "absent"), -1);
    recorder->clear();
    EXPECT_EQ(renderer->gpu_program_get_uniform_location(nullptr, "f1"), -1);
    EXPECT_EQ(renderer->gpu_program_get_uniform_location(&data, nullptr), -1);
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(GpuUniforms, set_by_location_go_out_unchecked) {
    renderer->gpu_program_set_uniform_1i_loc(-1, 1);
    renderer->gpu_program_set_uniform_2i_loc(-1, 1, 2);
    renderer->gpu_program_set_uniform_3i_loc(-1, 1, 2, 3);
    renderer->gpu_program_set_uniform_4i_loc(-1, 1, 2, 3, 4);
    renderer->gpu_program_set_uniform_1f_loc(-1, 1);
    renderer->gpu_program_set_uniform_2f_loc(-1, 1, 2);
    renderer->gpu_program_set_uniform_3f(-1, 1, 2, 3);
    renderer->gpu_program_set_uniform_4f_loc(-1, 1, 2, 3, 4);
    renderer->gpu_program_set_uniform_4fv_loc(-1, vec4s(), 1);
    renderer->gpu_program_set_uniform_3x3fv_loc(-1, FLOATS, 1);
    renderer->gpu_program_set_uniform_4x4fv_loc(-1, FLOATS, 1);
    EXPECT_EQ(recorder->take(),
              GlCalls({"glUniform1i(-1, 1)", "glUniform2i(-1, 1, 2)", "glUniform3i(-1, 1, 2, 3)",
                       "glUniform4i(-1, 1, 2, 3, 4)", "glUniform1f(-1, 1)", "glUniform2f(-1, 1, 2)",
                       "glUniform3f(-1, 1, 2, 3)", "glUniform4f(-1, 1, 2, 3, 4)",
                       "glUniform4fv(-1, 1, [1, 2, 3, 4])",
                       "glUniformMatrix3fv(-1, 1, false, [1, 2, 3, 4, 5, 6, 7, 8, 9])",
                       "glUniformMatrix4fv(-1, 1, false, [1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, "
                       "13, 14, 15, 16])"}));
}

TEST_P(GpuUniforms, set_by_location_need_an_array) {
    renderer->gpu_program_set_uniform_4fv_loc(0, nullptr, 1);
    renderer->gpu_program_set_uniform_3x3fv_loc(0, nullptr, 1);
    renderer->gpu_program_set_uniform_4x4fv_loc(0, nullptr, 1);
    EXPECT_TRUE(recorder->take().empty());
}

// Software drivers have no texture handles: what would go out is caught before the driver.
class GpuHandleUniforms : public GpuUniforms {
protected:
    void SetUp() override {
        GpuUniforms::SetUp();
        sent().clear();
        renderer->gl.glUniformHandleui64ARB = [](GLint location, GLuint64 value) {
            sent().push_back(std::to_string(location) + ": " + std::to_string(value));
        };
        renderer->gl.glUniformHandleui64vARB = [](GLint location, GLsizei count,
                                                  const GLuint64* values) {
            sent().push_back(std::to_string(location) + ": " + std::to_string(count) + " from " +
                             std::to_string(values[0]));
        };
        at = std::to_string(glGetUniformLocation(data.gl_program, "i1")) + ": ";
    }

    static GlCalls& sent() {
        static GlCalls calls;
        return calls;
    }

    std::string at;
};
ORVEX_BOTH_PROFILES(GpuHandleUniforms);

TEST_P(GpuHandleUniforms, set_by_name) {
    renderer->gpu_program_set_uniform_1ui64(&data, "i1", 1ull << 63);
    renderer->gpu_program_set_uniform_1ui64v(&data, "i1", LONGS, 2);
    EXPECT_EQ(sent(), GlCalls({at + "9223372036854775808", at + "2 from 9223372036854775808"}));
    EXPECT_EQ(recorder->take(), GlCalls({lookup("i1"), lookup("i1")}));
    renderer->gpu_program_set_uniform_1ui64v(&data, "i1", nullptr, 2);
    renderer->gpu_program_set_uniform_1ui64(nullptr, "i1", 1);
    renderer->gpu_program_set_uniform_1ui64(&data, nullptr, 1);
    EXPECT_TRUE(recorder->take().empty());
    renderer->gpu_program_set_uniform_1ui64(&data, "absent", 1);
    EXPECT_EQ(sent().size(), 2u);
}

TEST_P(GpuHandleUniforms, set_by_location_are_checked) {
    renderer->gpu_program_set_uniform_ui64_loc(4, 5);
    renderer->gpu_program_set_uniform_ui64v_loc(4, 2, LONGS);
    renderer->gpu_program_set_uniform_ui64_loc(-1, 5);
    renderer->gpu_program_set_uniform_ui64v_loc(-1, 2, LONGS);
    renderer->gpu_program_set_uniform_ui64v_loc(4, 2, nullptr);
    EXPECT_EQ(sent(), GlCalls({"4: 5", "4: 2 from 9223372036854775808"}));
}

TEST_P(GpuHandleUniforms, that_waited_are_sent) {
    data.set_uniform_1ui64("i1", 7);
    data.set_uniform_1ui64v("f1", LONGS, 2);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    ASSERT_EQ(sent().size(), 2u);
    EXPECT_EQ(sent()[0], at + "7");
    EXPECT_NE(sent()[1].find(": 2 from 9223372036854775808"), std::string::npos);
}

TEST_P(GpuHandleUniforms, are_passed_over_where_the_driver_has_none) {
    renderer->gl.glUniformHandleui64ARB = nullptr;
    renderer->gl.glUniformHandleui64vARB = nullptr;
    data.set_uniform_1ui64("i1", 7);
    data.set_uniform_1ui64v("f1", LONGS, 2);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    renderer->gpu_program_set_uniform_1ui64(&data, "i1", 1);
    renderer->gpu_program_set_uniform_1ui64v(&data, "i1", LONGS, 2);
    renderer->gpu_program_set_uniform_ui64_loc(4, 5);
    renderer->gpu_program_set_uniform_ui64v_loc(4, 2, LONGS);
    EXPECT_TRUE(sent().empty());
}

class GpuUniformsBeforeLink : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(GpuUniformsBeforeLink);

TEST_P(GpuUniformsBeforeLink, are_resolved_at_the_next_bind) {
    data.set_uniform_1f("f1", 4.0f);
    EXPECT_TRUE(renderer->gpu_program_bind_uniforms(&data));
    EXPECT_GL_ERROR(GL_INVALID_VALUE) << "there is no program to ask";
    EXPECT_FALSE(data.find_uniform("f1")->dirty);
    load_program(VERTEX_WITH_UNIFORMS);
    EXPECT_TRUE(renderer->gpu_program_activate(&data));
    GLfloat value = 0.0f;
    glGetUniformfv(data.gl_program, glGetUniformLocation(data.gl_program, "f1"), &value);
    EXPECT_EQ(value, 4.0f);
}

} // namespace

} // namespace orvex_test
