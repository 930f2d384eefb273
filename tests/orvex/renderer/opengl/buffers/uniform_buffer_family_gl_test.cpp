#include "tests/orvex/renderer/opengl/programs/gpu_program_fixture.h"

#include <cstring>

#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/records/uniform_buffer_data.h"

namespace orvex_test {

using namespace orvex;

namespace {

std::string id(unsigned int number) {
    return std::to_string(number);
}

class UniformBuffer : public GpuProgramGlTest {
protected:
    void SetUp() override {
        GpuProgramGlTest::SetUp();
        load_program("#version 150\n"
                     "layout(std140) uniform Block { vec4 place; vec4 move; };\n"
                     "layout(std140) uniform Small { vec4 size; };\n"
                     "void main() { gl_Position = place + move * size; }\n");
        ASSERT_TRUE(renderer->gpu_program_link(&data));
        std::strcpy(block.name, "Block");
        std::strcpy(small.name, "Small");
        recorder->clear();
    }
    void TearDown() override {
        renderer->uniform_buffer_kill(&block);
        renderer->uniform_buffer_kill(&small);
        GpuProgramGlTest::TearDown();
    }

    void make() {
        ASSERT_TRUE(renderer->uniform_buffer_initialize(&block, data.gl_program));
        recorder->clear();
    }

    std::string bind() const {
        return "glBindBuffer(GL_UNIFORM_BUFFER, " + std::to_string(block.buffer) + ")";
    }

    UniformBufferData block;
    UniformBufferData small;
};
ORVEX_BOTH_PROFILES(UniformBuffer);

TEST_P(UniformBuffer, is_made_for_a_block_of_the_program) {
    block.binding = 2;
    EXPECT_TRUE(renderer->uniform_buffer_initialize(&block, data.gl_program));
    const std::string buffer = id(block.buffer);
    const std::string index = id(block.block_index);
    EXPECT_EQ(recorder->take(),
              GlCalls({"glGetUniformBlockIndex(" + program_id() + ", \"Block\")",
                       "glGetActiveUniformBlockiv(" + program_id() + ", " + index +
                           ", GL_UNIFORM_BLOCK_DATA_SIZE, ptr)",
                       "glGenBuffers(1, [" + buffer + "])", bind(),
                       "glBufferData(GL_UNIFORM_BUFFER, 32, 0, GL_STATIC_READ)",
                       "glBindBufferBase(GL_UNIFORM_BUFFER, 2, " + buffer + ")",
                       "glUniformBlockBinding(" + program_id() + ", " + index + ", 2)",
                       "glBindBuffer(GL_UNIFORM_BUFFER, 0)"}));
    EXPECT_EQ(block.size, 32u);
    EXPECT_EQ(block.block_index, glGetUniformBlockIndex(data.gl_program, "Block"));
    EXPECT_FALSE(block.bound);
}

TEST_P(UniformBuffer, takes_the_forced_usage) {
    renderer->force_uniform_buffer_object_usage(BUFFER_USAGE_STREAM_DRAW);
    EXPECT_TRUE(renderer->uniform_buffer_initialize(&block, data.gl_program));
    EXPECT_EQ(recorder->take()[4], "glBufferData(GL_UNIFORM_BUFFER, 32, 0, GL_STREAM_DRAW)");
}

TEST_P(UniformBuffer, is_not_made_for_a_block_that_the_program_lacks) {
    std::strcpy(block.name, "Absent");
    EXPECT_FALSE(renderer->uniform_buffer_initialize(&block, data.gl_program));
    EXPECT_FALSE(renderer->uniform_buffer_initialize(nullptr, data.gl_program));
    EXPECT_EQ(recorder->take_names(), GlCalls({"glGetUniformBlockIndex"}));
    EXPECT_EQ(block.buffer, 0u);
}

TEST_P(UniformBuffer, made_twice_gives_back_the_first) {
    make();
    const unsigned int first = block.buffer;
    renderer->uniform_buffer_bind(&block);
    recorder->clear();
    EXPECT_TRUE(renderer->uniform_buffer_initialize(&block, data.gl_program));
    EXPECT_EQ(recorder->take()[1], "glDeleteBuffers(1, [" + id(first) + "])");
    EXPECT_FALSE(block.bound);
}

TEST_P(UniformBuffer, is_bound_by_one_call_until_it_is_unbound) {
    make();
    EXPECT_TRUE(renderer->uniform_buffer_bind(&block));
    EXPECT_TRUE(renderer->uniform_buffer_bind(&block));
    EXPECT_TRUE(renderer->uniform_buffer_bind_base(&block));
    EXPECT_EQ(recorder->take(), GlCalls({bind()}));
    EXPECT_TRUE(renderer->uniform_buffer_unbind(&block));
    EXPECT_EQ(recorder->take(), GlCalls({"glBindBufferBase(GL_UNIFORM_BUFFER, 0, 0)",
                                         "glBindBuffer(GL_UNIFORM_BUFFER, 0)"}));
    EXPECT_TRUE(renderer->uniform_buffer_bind(&block));
    EXPECT_EQ(recorder->take(), GlCalls({bind()}));
}

TEST_P(UniformBuffer, is_bound_to_its_binding_point_by_one_call) {
    make();
    block.binding = 3;
    EXPECT_TRUE(renderer->uniform_buffer_bind_base(&block));
    EXPECT_TRUE(renderer->uniform_buffer_bind_base(&block));
    EXPECT_TRUE(renderer->uniform_buffer_bind(&block));
    EXPECT_EQ(recorder->take(),
              GlCalls({"glBindBufferBase(GL_UNIFORM_BUFFER, 3, " + id(block.buffer) + ")"}));
    EXPECT_TRUE(block.bound);
}

TEST_P(UniformBuffer, of_null_unbinds_what_is_bound) {
    EXPECT_TRUE(renderer->uniform_buffer_unbind(nullptr));
    EXPECT_EQ(recorder->take(), GlCalls({"glBindBuffer(GL_UNIFORM_BUFFER, 0)"}));
}

TEST_P(UniformBuffer, is_mapped_for_writing) {
    make();
    void* const mapped = renderer->uniform_buffer_map(&block);
    ASSERT_NE(mapped, nullptr);
    EXPECT_EQ(block.mapped, mapped);
    EXPECT_EQ(block.mapped_size, 32u);
    EXPECT_TRUE(block.bound);
    EXPECT_EQ(recorder->take(), GlCalls({bind(), "glMapBuffer(GL_UNIFORM_BUFFER, GL_WRITE_ONLY)"}));
    EXPECT_TRUE(renderer->uniform_buffer_unmap(&block));
    EXPECT_EQ(block.mapped, nullptr);
    EXPECT_EQ(recorder->take(), GlCalls({bind(), "glUnmapBuffer(GL_UNIFORM_BUFFER)"}));
    ASSERT_NE(renderer->uniform_buffer_map(&block), nullptr);
    EXPECT_EQ(recorder->take(), GlCalls({"glMapBuffer(GL_UNIFORM_BUFFER, GL_WRITE_ONLY)"}))
        << "it is bound already";
    EXPECT_TRUE(renderer->uniform_buffer_unmap(&block));
}

TEST_P(UniformBuffer, maps_its_own_buffer_when_another_was_bound_since) {
    make();
    ASSERT_TRUE(renderer->uniform_buffer_initialize(&small, data.gl_program));
    EXPECT_TRUE(renderer->uniform_buffer_bind(&block));
    EXPECT_TRUE(renderer->uniform_buffer_bind(&small));
    recorder->clear();
    ASSERT_NE(renderer->uniform_buffer_map(&block), nullptr);
    EXPECT_EQ(recorder->take(), GlCalls({bind(), "glMapBuffer(GL_UNIFORM_BUFFER, GL_WRITE_ONLY)"}));
    EXPECT_TRUE(renderer->uniform_buffer_unmap(&block));
}

TEST_P(UniformBuffer, is_unmapped_only_while_it_is_mapped) {
    make();
    EXPECT_FALSE(renderer->uniform_buffer_unmap(&block));
    EXPECT_EQ(recorder->take(), GlCalls());
    ASSERT_NE(renderer->uniform_buffer_map(&block), nullptr);
    EXPECT_TRUE(renderer->uniform_buffer_unmap(&block));
    EXPECT_FALSE(renderer->uniform_buffer_unmap(&block));
    EXPECT_EQ(recorder->count("glUnmapBuffer"), 1);
}

TEST_P(UniformBuffer, is_mapped_in_part_where_it_is_bound) {
    make();
    EXPECT_EQ(renderer->uniform_buffer_map_range(&block, 0, 8), nullptr) << "nothing is bound";
    EXPECT_GL_ERROR(GL_INVALID_OPERATION);
    EXPECT_TRUE(renderer->uniform_buffer_bind(&block));
    recorder->clear();
    ASSERT_NE(renderer->uniform_buffer_map_range(&block, 16, 8), nullptr);
    EXPECT_EQ(block.mapped_size, 8u);
    EXPECT_NE(block.mapped, nullptr);
    EXPECT_EQ(recorder->take(), GlCalls({"glMapBufferRange(GL_UNIFORM_BUFFER, 16, 8, 0xA)"}));
    EXPECT_TRUE(renderer->uniform_buffer_unmap(&block));
    EXPECT_EQ(block.mapped_size, 0u);
}

TEST_P(UniformBuffer, ends_unbound_and_unmapped_and_can_be_made_again) {
    make();
    ASSERT_NE(renderer->uniform_buffer_map(&block), nullptr);
    const unsigned int buffer = block.buffer;
    recorder->clear();
    EXPECT_TRUE(renderer->uniform_buffer_kill(&block));
    EXPECT_EQ(recorder->take(), GlCalls({"glDeleteBuffers(1, [" + id(buffer) + "])"}));
    EXPECT_EQ(block.buffer, 0u);
    EXPECT_FALSE(block.bound);
    EXPECT_EQ(block.mapped, nullptr);
    EXPECT_FALSE(renderer->uniform_buffer_kill(&block));
    EXPECT_FALSE(renderer->uniform_buffer_kill(nullptr));
    make();
    EXPECT_TRUE(renderer->uniform_buffer_bind(&block));
    EXPECT_EQ(recorder->take(), GlCalls({bind()}));
}

TEST_P(UniformBuffer, without_a_buffer_is_refused) {
    EXPECT_FALSE(renderer->uniform_buffer_bind(&block));
    EXPECT_FALSE(renderer->uniform_buffer_bind_base(&block));
    EXPECT_EQ(renderer->uniform_buffer_map(&block), nullptr);
    EXPECT_EQ(renderer->uniform_buffer_map_range(&block, 0, 8), nullptr);
    EXPECT_FALSE(renderer->uniform_buffer_unmap(&block));
    EXPECT_FALSE(renderer->uniform_buffer_bind(nullptr));
    EXPECT_FALSE(renderer->uniform_buffer_bind_base(nullptr));
    EXPECT_EQ(renderer->uniform_buffer_map(nullptr), nullptr);
    EXPECT_EQ(renderer->uniform_buffer_map_range(nullptr, 0, 8), nullptr);
    EXPECT_FALSE(renderer->uniform_buffer_unmap(nullptr));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(UniformBuffer, serves_a_program_from_the_front_end) {
    auto* const program = new GpuProgram;
    ASSERT_TRUE(program->shader_load_from_memory(
        renderer.get(), GPU_SHADER_COMPUTE,
        "#version 430\nlayout(local_size_x = 1) in;\n"
        "layout(std140) uniform Numbers { uvec2 low; uvec2 high; };\n"
        "layout(std430, binding = 0) buffer Out { uvec2 copy[2]; };\n"
        "void main() { copy[0] = low; copy[1] = high; }\n",
        1));
    ASSERT_TRUE(program->bind(renderer.get()));
    ASSERT_TRUE(program->ub_init(renderer.get(), "Numbers"));
    ASSERT_NE(program->ub_map(renderer.get()), nullptr);
    EXPECT_TRUE(program->ub_set_value_ui64(nullptr, 0, 0x100000002ull));
    EXPECT_TRUE(program->ub_set_value_ui64(nullptr, 1, 0x300000004ull));
    EXPECT_FALSE(program->ub_set_value_ui64(nullptr, 2, 5));
    EXPECT_TRUE(program->ub_unmap(renderer.get()));
    const unsigned int out =
        renderer->shader_storage_buffer_create(16, BUFFER_USAGE_DYNAMIC_READ, nullptr);
    EXPECT_TRUE(renderer->shader_storage_buffer_bind_base(out, 0));
    EXPECT_TRUE(program->run_compute(renderer.get(), 1, 1, 1));
    renderer->memory_barrier(MEMORY_BARRIER_ALL);
    const auto* const values =
        static_cast<const unsigned long long*>(renderer->shader_storage_buffer_map(out));
    ASSERT_NE(values, nullptr);
    EXPECT_EQ(values[0], 0x100000002ull);
    EXPECT_EQ(values[1], 0x300000004ull);
    EXPECT_TRUE(renderer->shader_storage_buffer_unmap(out));
    EXPECT_TRUE(renderer->shader_storage_buffer_kill(out));
    EXPECT_TRUE(program->ub_cleanup(renderer.get()));
    EXPECT_EQ(program->release(renderer.get(), nullptr), 0);
}

} // namespace

} // namespace orvex_test
