// Programs and uniform blocks in two windows, and in windows that take the place of others.

#include "tests/orvex/renderer/opengl/window_pair.h"

#include <cstring>

#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/uniform_buffer_data.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr const char* vertex_source = "#version 150\n"
                                      "layout(std140) uniform Block { vec4 place; };\n"
                                      "uniform vec4 move;\n"
                                      "void main() { gl_Position = place + move; }\n";
constexpr const char* pixel_source = "#version 150\n"
                                     "out vec4 color;\n"
                                     "void main() { color = vec4(1.0); }\n";

class ProgramContexts : public WindowPairTest {
protected:
    void load(GpuProgramData& program) const {
        for (const auto& [type, source] : {std::pair(GPU_SHADER_VERTEX, vertex_source),
                                           std::pair(GPU_SHADER_PIXEL, pixel_source)})
            EXPECT_TRUE(renderer->gpu_program_load_shader_from_memory(&program, type, source,
                                                                      std::strlen(source)));
    }

    bool is_program(unsigned int id) const {
        const GlRecorderPause pause(*recorder);
        return glIsProgram(id) == GL_TRUE;
    }
};

INSTANTIATE_TEST_SUITE_P(of, ProgramContexts,
                         testing::Values(pair_kinds[0], pair_kinds[1], pair_kinds[2],
                                         pair_kinds[3]),
                         pair_name);
INSTANTIATE_TEST_SUITE_P(adopted, ProgramContexts, testing::ValuesIn(adopted_kinds), pair_name);

/// Windows whose contexts end with them.
class ProgramsOfEndedWindows : public ProgramContexts {};

INSTANTIATE_TEST_SUITE_P(of, ProgramsOfEndedWindows,
                         testing::Values(pair_kinds[0], pair_kinds[1], pair_kinds[2],
                                         pair_kinds[3]),
                         pair_name);

TEST_P(ProgramContexts, a_program_is_bound_where_it_was_loaded) {
    GpuProgramData program;
    load(program);
    EXPECT_TRUE(renderer->gpu_program_activate(&program));
    const unsigned int id = program.gl_program;
    renderer->gpu_program_deactivate(nullptr);

    turn_to(second);
    recorder->clear();
    EXPECT_EQ(renderer->gpu_program_activate(&program), GetParam().shared);
    if (GetParam().shared) {
        EXPECT_EQ(program.gl_program, id);
    } else {
        EXPECT_EQ(recorder->take(), GlCalls());
        EXPECT_EQ(renderer->gpu_program_get_active_program(), nullptr);
        EXPECT_FALSE(renderer->gpu_program_link(&program));
        EXPECT_FALSE(renderer->gpu_program_get_validate_status(&program));
        EXPECT_FALSE(renderer->gpu_program_recreate_program(&program));
        EXPECT_FALSE(renderer->gpu_program_run_compute(&program, 1, 1, 1));
        EXPECT_EQ(recorder->take(), GlCalls());
    }
    turn_to(first);
    EXPECT_TRUE(renderer->gpu_program_activate(&program));
    EXPECT_EQ(program.gl_program, id);
    EXPECT_TRUE(renderer->gpu_program_kill(&program));
}

TEST_P(ProgramContexts, a_program_that_is_loaded_in_both_windows_is_bound_in_both) {
    if (GetParam().shared)
        return; // one load is enough
    GpuProgramData program;
    load(program);
    program.set_uniform_4f("move", 1.0f, 2.0f, 3.0f, 4.0f);
    EXPECT_TRUE(renderer->gpu_program_activate(&program));
    turn_to(second);
    EXPECT_FALSE(renderer->gpu_program_activate(&program));
    load(program);
    for (RenderWindow* const window : {second, first, second, first}) {
        turn_to(window);
        recorder->clear();
        EXPECT_TRUE(renderer->gpu_program_activate(&program));
        EXPECT_EQ(recorder->count("glUniform4f"), 1) << "a change may have missed it";
    }

    const unsigned int id = program.gl_program;
    renderer->gpu_program_deactivate(nullptr);
    turn_to(second);
    EXPECT_TRUE(renderer->gpu_program_kill(&program));
    turn_to(first);
    EXPECT_TRUE(is_program(id)) << "it ends when its window is met";
    GpuProgramData next;
    load(next);
    EXPECT_FALSE(next.gl_program != id && is_program(id));
    EXPECT_TRUE(renderer->gpu_program_kill(&next));
}

TEST_P(ProgramsOfEndedWindows, a_program_whose_window_is_gone_is_lost_until_it_is_loaded_again) {
    GpuProgramData program;
    load(program);
    EXPECT_TRUE(renderer->gpu_program_activate(&program));
    renderer->kill_all_render_windows();
    first = open(nullptr);
    ASSERT_TRUE(first);
    renderer->stop();
    renderer->start();
    GpuProgramData other;
    load(other);
    recorder->clear();
    EXPECT_FALSE(renderer->gpu_program_activate(&program));
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_FALSE(renderer->gpu_program_kill(&program)) << "the other one has its names by now";
    EXPECT_TRUE(renderer->gpu_program_activate(&other));

    load(program);
    EXPECT_TRUE(renderer->gpu_program_activate(&program));
    EXPECT_TRUE(renderer->gpu_program_kill(&program));
    EXPECT_TRUE(renderer->gpu_program_activate(&other)) << "none of its stages was taken along";
    EXPECT_TRUE(renderer->gpu_program_kill(&other));
}

TEST_P(ProgramContexts, a_uniform_block_has_a_buffer_in_each_window_where_it_was_made) {
    if (GetParam().shared)
        return; // one is enough
    GpuProgramData program;
    UniformBufferData block;
    std::strcpy(block.name, "Block");
    unsigned int ids[2] = {};
    float value = 1.0f;
    for (RenderWindow* const window : {first, second}) {
        turn_to(window);
        load(program);
        EXPECT_TRUE(renderer->gpu_program_activate(&program));
        ASSERT_TRUE(renderer->uniform_buffer_initialize(&block, program.gl_program));
        auto* const place = static_cast<float*>(renderer->uniform_buffer_map(&block));
        ASSERT_TRUE(place);
        place[0] = value++;
        EXPECT_TRUE(renderer->uniform_buffer_unmap(&block));
        ids[window == second] = block.buffer;
    }
    for (int frame = 0; frame < 100; ++frame)
        for (RenderWindow* const window : {first, second}) {
            turn_to(window);
            EXPECT_TRUE(renderer->gpu_program_activate(&program));
            EXPECT_TRUE(renderer->uniform_buffer_bind_base(&block));
            EXPECT_EQ(block.buffer, ids[window == second]);
            const GlRecorderPause pause(*recorder);
            float held = 0.0f;
            glGetBufferSubData(GL_UNIFORM_BUFFER, 0, sizeof(held), &held);
            EXPECT_EQ(held, window == second ? 2.0f : 1.0f);
        }
    renderer->gpu_program_deactivate(nullptr);
    recorder->clear();
    EXPECT_TRUE(renderer->uniform_buffer_kill(&block));
    EXPECT_EQ(recorder->count("glDeleteBuffers"), 1);
    turn_to(first);
    EXPECT_TRUE(renderer->gpu_program_kill(&program));
    EXPECT_EQ(recorder->count("glDeleteBuffers"), 2);
    EXPECT_EQ(block.buffer, 0U);
    EXPECT_FALSE(renderer->uniform_buffer_bind(&block));
}

TEST_P(ProgramsOfEndedWindows, a_uniform_block_outlives_its_window) {
    GpuProgramData program;
    UniformBufferData block;
    std::strcpy(block.name, "Block");
    load(program);
    EXPECT_TRUE(renderer->gpu_program_activate(&program));
    ASSERT_TRUE(renderer->uniform_buffer_initialize(&block, program.gl_program));
    renderer->kill_all_render_windows();
    first = open(nullptr);
    ASSERT_TRUE(first);
    const unsigned int others = renderer->vertex_buffer_create(16, BUFFER_USAGE_STATIC_DRAW);
    recorder->clear();
    EXPECT_FALSE(renderer->uniform_buffer_bind_base(&block));
    EXPECT_FALSE(renderer->uniform_buffer_kill(&block)) << "it went with its context";
    EXPECT_EQ(recorder->count("glDeleteBuffers"), 0);
    load(program);
    EXPECT_TRUE(renderer->gpu_program_activate(&program));
    EXPECT_TRUE(renderer->uniform_buffer_initialize(&block, program.gl_program));
    EXPECT_TRUE(renderer->uniform_buffer_bind_base(&block));
    EXPECT_TRUE(renderer->uniform_buffer_kill(&block));
    EXPECT_TRUE(renderer->vertex_buffer_kill(others));
    EXPECT_TRUE(renderer->gpu_program_kill(&program));
}

TEST_P(ProgramContexts, a_uniform_block_is_used_where_it_was_made) {
    GpuProgramData program;
    load(program);
    EXPECT_TRUE(renderer->gpu_program_activate(&program));
    UniformBufferData block;
    std::strcpy(block.name, "Block");
    ASSERT_TRUE(renderer->uniform_buffer_initialize(&block, program.gl_program));
    EXPECT_TRUE(renderer->uniform_buffer_bind_base(&block));
    turn_to(second);
    recorder->clear();
    EXPECT_EQ(renderer->uniform_buffer_bind_base(&block), GetParam().shared);
    EXPECT_EQ(recorder->count("glBindBufferBase"), GetParam().shared ? 1 : 0)
        << "bound there doesn't mean bound here";
    EXPECT_EQ(renderer->uniform_buffer_map(&block) != nullptr, GetParam().shared);
    EXPECT_EQ(renderer->uniform_buffer_unmap(&block), GetParam().shared);
    recorder->clear();
    EXPECT_TRUE(renderer->uniform_buffer_kill(&block));
    EXPECT_EQ(recorder->count("glDeleteBuffers"), GetParam().shared ? 1 : 0);
    turn_to(first);
    renderer->gpu_program_activate(&program);
    EXPECT_EQ(recorder->count("glDeleteBuffers"), 1);
    EXPECT_TRUE(renderer->gpu_program_kill(&program));
}

} // namespace
} // namespace orvex_test
