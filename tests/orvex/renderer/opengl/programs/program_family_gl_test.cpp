#include "orvex/renderer/opengl/programs/private/program_family.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/programs/private/attribute_family.h"
#include "orvex/renderer/opengl/programs/private/uniform_family.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "tests/orvex/renderer/opengl/families_fixture.h"

namespace orvex_test {

using namespace orvex;
namespace {

constexpr const char* vertex_source = "#version 150\n"
                                      "in vec4 orvex_Position;\n"
                                      "uniform float scale;\n"
                                      "void main() { gl_Position = orvex_Position * scale; }\n";
constexpr const char* pixel_source = "#version 150\n"
                                     "out vec4 color;\n"
                                     "void main() { color = vec4(1.0); }\n";

class ProgramFamilies : public FamilyTest {
protected:
    bool load(GPU_SHADER_TYPE type, const char* source) {
        return programs.load_stage(&data, type, source, std::strlen(source));
    }

    void load_both() {
        ASSERT_TRUE(load(GPU_SHADER_VERTEX, vertex_source));
        ASSERT_TRUE(load(GPU_SHADER_PIXEL, pixel_source));
        recorder->clear();
    }

    UniformFamily uniforms{state};
    AttributeFamily attributes{state};
    ProgramFamily programs{state, attributes, uniforms};
    GpuProgramData data;
};

TEST_P(ProgramFamilies, refuse_everything_with_an_empty_table) {
    char message[8] = "kept";
    EXPECT_FALSE(load(GPU_SHADER_VERTEX, vertex_source));
    EXPECT_FALSE(programs.replace_stage(&data, GPU_SHADER_VERTEX, vertex_source, 1));
    EXPECT_FALSE(programs.shaders.compiles(GPU_SHADER_VERTEX, vertex_source, message, 8));
    EXPECT_STREQ(message, "kept");
    EXPECT_FALSE(programs.link(&data));
    EXPECT_FALSE(programs.activate(&data));
    EXPECT_FALSE(programs.validate(&data));
    EXPECT_FALSE(programs.dispatch(&data, 1, 1, 1));
    EXPECT_EQ(programs.log(1), nullptr);
    EXPECT_EQ(programs.shaders.log(1), nullptr);
    EXPECT_EQ(attributes.location(&data, "orvex_Position"), -1);
    EXPECT_FALSE(attributes.bind_location(&data, "orvex_Position", 0));
    EXPECT_EQ(uniforms.location(&data, "scale"), -1);
    EXPECT_FALSE(uniforms.look_up(&data));
    EXPECT_TRUE(recorder->calls().empty());
}

TEST_P(ProgramFamilies, note_the_active_program_in_the_state) {
    fill();
    load_both();
    EXPECT_TRUE(programs.activate(&data));
    EXPECT_EQ(state.ctx.active_program, &data);
    EXPECT_EQ(state.ctx.active_program_id, data.gl_program);
    EXPECT_TRUE(data.use_generic_vertex_attribs) << "a standard attribute was found";
    EXPECT_EQ(recorder->count("glLinkProgram"), 2) << "once more for the attribute's location";
    EXPECT_TRUE(programs.kill(&data));
    EXPECT_EQ(state.ctx.active_program, nullptr);
}

TEST_P(ProgramFamilies, send_a_waiting_uniform_at_the_next_walk_alone) {
    fill();
    load_both();
    ASSERT_TRUE(programs.activate(&data));
    data.set_uniform_1f("scale", 2.0f);
    recorder->clear();
    EXPECT_TRUE(uniforms.send_table(&data));
    EXPECT_EQ(recorder->names(), (GlCalls{"glGetUniformLocation", "glUniform1f"}));
    recorder->clear();
    EXPECT_TRUE(uniforms.send_table(&data));
    EXPECT_TRUE(recorder->calls().empty());
    programs.kill(&data);
}

TEST_P(ProgramFamilies, end_before_the_record_of_the_active_program) {
    fill();
    {
        GpuProgramData record;
        ASSERT_TRUE(programs.load_stage(&record, GPU_SHADER_VERTEX, vertex_source, 1));
        ASSERT_TRUE(programs.load_stage(&record, GPU_SHADER_PIXEL, pixel_source, 1));
        {
            ProgramFamily ended(state, attributes, uniforms);
            ASSERT_TRUE(ended.activate(&record));
        }
        state.gl.glUseProgram(0);
        for (const unsigned int shader : {record.shader_ids[0], record.shader_ids[1]})
            state.gl.glDeleteShader(shader);
        state.gl.glDeleteProgram(record.gl_program);
        state.ctx.active_program = &data;
    }
    EXPECT_EQ(state.ctx.active_program, &data) << "the record no longer knows the state";
    state.ctx.active_program = nullptr;
}

ORVEX_BOTH_PROFILES(ProgramFamilies);

} // namespace
} // namespace orvex_test
