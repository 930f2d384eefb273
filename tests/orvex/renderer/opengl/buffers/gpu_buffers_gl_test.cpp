#include "tests/orvex/renderer/opengl/programs/gpu_program_fixture.h"

#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/records/uniform_buffer_data.h"

namespace orvex_test {

using namespace orvex;

namespace {

std::string id(unsigned int number) {
    return std::to_string(number);
}

struct Usage {
    int value;
    const char* name;
};

const Usage USAGES[] = {{0, "GL_STATIC_DRAW"},  {1, "GL_STATIC_DRAW"},  {2, "GL_STATIC_READ"},
                        {3, "GL_DYNAMIC_DRAW"}, {4, "GL_DYNAMIC_READ"}, {5, "GL_STREAM_DRAW"},
                        {6, "GL_STREAM_READ"},  {7, "GL_STATIC_DRAW"}};

class ShaderStorageBuffer : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(ShaderStorageBuffer);

TEST_P(ShaderStorageBuffer, is_made_with_a_usage_and_unbound) {
    for (const Usage& usage : USAGES) {
        const unsigned int buffer =
            renderer->shader_storage_buffer_create(64, BUFFER_OBJECT_USAGE(usage.value), nullptr);
        EXPECT_NE(buffer, 0u);
        EXPECT_EQ(recorder->take(),
                  GlCalls({"glGenBuffers(1, [" + id(buffer) + "])",
                           "glBindBuffer(GL_SHADER_STORAGE_BUFFER, " + id(buffer) + ")",
                           "glBufferData(GL_SHADER_STORAGE_BUFFER, 64, 0, " +
                               std::string(usage.name) + ")",
                           "glBindBuffer(GL_SHADER_STORAGE_BUFFER, 0)"}));
        EXPECT_TRUE(renderer->shader_storage_buffer_kill(buffer));
        EXPECT_EQ(recorder->take(), GlCalls({"glDeleteBuffers(1, [" + id(buffer) + "])"}));
    }
}

TEST_P(ShaderStorageBuffer, takes_the_forced_usage_first) {
    renderer->force_shader_storage_buffer_object_usage(BUFFER_USAGE_STREAM_READ);
    const unsigned int buffer =
        renderer->shader_storage_buffer_create(64, BUFFER_USAGE_DYNAMIC_DRAW, nullptr);
    EXPECT_NE(recorder->take()[2].find("GL_STREAM_READ"), std::string::npos);
    renderer->shader_storage_buffer_kill(buffer);
}

TEST_P(ShaderStorageBuffer, is_mapped_bound_and_unmapped) {
    int values[4] = {1, 2, 3, 4};
    const unsigned int buffer =
        renderer->shader_storage_buffer_create(sizeof values, BUFFER_USAGE_DYNAMIC_DRAW, values);
    recorder->clear();
    auto* mapped = static_cast<int*>(renderer->shader_storage_buffer_map(buffer));
    ASSERT_NE(mapped, nullptr);
    EXPECT_EQ(mapped[3], 4);
    EXPECT_TRUE(renderer->shader_storage_buffer_unmap(buffer));
    EXPECT_EQ(recorder->take(),
              GlCalls({"glBindBuffer(GL_SHADER_STORAGE_BUFFER, " + id(buffer) + ")",
                       "glMapBuffer(GL_SHADER_STORAGE_BUFFER, GL_READ_WRITE)",
                       "glBindBuffer(GL_SHADER_STORAGE_BUFFER, " + id(buffer) + ")",
                       "glUnmapBuffer(GL_SHADER_STORAGE_BUFFER)"}));
    mapped = static_cast<int*>(renderer->shader_storage_buffer_map_range(buffer, 8, 8));
    ASSERT_NE(mapped, nullptr);
    mapped[0] = 33;
    mapped[1] = 44;
    EXPECT_EQ(recorder->take(),
              GlCalls({"glBindBuffer(GL_SHADER_STORAGE_BUFFER, " + id(buffer) + ")",
                       "glMapBufferRange(GL_SHADER_STORAGE_BUFFER, 8, 8, 0xA)"}));
    EXPECT_TRUE(renderer->shader_storage_buffer_unmap(buffer));
    mapped = static_cast<int*>(renderer->shader_storage_buffer_map(buffer));
    ASSERT_NE(mapped, nullptr);
    EXPECT_EQ(mapped[2], 33);
    EXPECT_EQ(mapped[3], 44);
    EXPECT_TRUE(renderer->shader_storage_buffer_unmap(buffer));
    EXPECT_TRUE(renderer->shader_storage_buffer_kill(buffer));
}

TEST_P(ShaderStorageBuffer, is_unmapped_whatever_was_bound_since) {
    const unsigned int buffer =
        renderer->shader_storage_buffer_create(64, BUFFER_USAGE_DYNAMIC_DRAW, nullptr);
    ASSERT_NE(renderer->shader_storage_buffer_map(buffer), nullptr);
    EXPECT_TRUE(renderer->shader_storage_buffer_bind(0));
    EXPECT_TRUE(renderer->shader_storage_buffer_unmap(buffer));
    EXPECT_FALSE(renderer->shader_storage_buffer_unmap(buffer)) << "not mapped any more";
    EXPECT_GL_ERROR(GL_INVALID_OPERATION);
    EXPECT_TRUE(renderer->shader_storage_buffer_kill(buffer));
}

TEST_P(ShaderStorageBuffer, is_bound_and_unbound_by_id) {
    const unsigned int buffer =
        renderer->shader_storage_buffer_create(64, BUFFER_USAGE_DYNAMIC_DRAW, nullptr);
    recorder->clear();
    EXPECT_TRUE(renderer->shader_storage_buffer_bind(buffer));
    EXPECT_TRUE(renderer->shader_storage_buffer_bind_base(buffer, 3));
    EXPECT_TRUE(renderer->shader_storage_buffer_bind(0));
    EXPECT_TRUE(renderer->shader_storage_buffer_bind_base(0, 3));
    EXPECT_EQ(recorder->take(),
              GlCalls({"glBindBuffer(GL_SHADER_STORAGE_BUFFER, " + id(buffer) + ")",
                       "glBindBufferBase(GL_SHADER_STORAGE_BUFFER, 3, " + id(buffer) + ")",
                       "glBindBuffer(GL_SHADER_STORAGE_BUFFER, 0)",
                       "glBindBufferBase(GL_SHADER_STORAGE_BUFFER, 3, 0)"}));
    renderer->shader_storage_buffer_kill(buffer);
}

TEST_P(ShaderStorageBuffer, of_id_0_is_refused) {
    EXPECT_FALSE(renderer->shader_storage_buffer_kill(0));
    EXPECT_EQ(renderer->shader_storage_buffer_map(0), nullptr);
    EXPECT_EQ(renderer->shader_storage_buffer_map_range(0, 0, 8), nullptr);
    EXPECT_FALSE(renderer->shader_storage_buffer_unmap(0));
    EXPECT_TRUE(recorder->take().empty());
}

class AtomicCounterBuffer : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(AtomicCounterBuffer);

TEST_P(AtomicCounterBuffer, is_made_at_a_binding_point) {
    unsigned int values[2] = {5, 6};
    const unsigned int buffer =
        renderer->atomic_counter_create_buffer(2, BUFFER_USAGE_DYNAMIC_READ, 1, values);
    EXPECT_EQ(recorder->take(),
              GlCalls({"glGenBuffers(1, [" + id(buffer) + "])",
                       "glBindBuffer(GL_ATOMIC_COUNTER_BUFFER, " + id(buffer) + ")",
                       "glBufferData(GL_ATOMIC_COUNTER_BUFFER, 8, ptr, GL_DYNAMIC_READ)",
                       "glBindBufferBase(GL_ATOMIC_COUNTER_BUFFER, 1, " + id(buffer) + ")",
                       "glBindBuffer(GL_ATOMIC_COUNTER_BUFFER, 0)"}));
    EXPECT_TRUE(renderer->atomic_counter_kill_buffer(buffer));
    EXPECT_EQ(recorder->take(), GlCalls({"glDeleteBuffers(1, [" + id(buffer) + "])"}));
}

TEST_P(AtomicCounterBuffer, is_forced_to_a_usage_only_along_with_storage_buffers) {
    const auto made_with = [&](const char* usage) {
        recorder->clear();
        const unsigned int buffer =
            renderer->atomic_counter_create_buffer(1, BUFFER_USAGE_STREAM_DRAW, 0, nullptr);
        EXPECT_EQ(recorder->take()[2],
                  "glBufferData(GL_ATOMIC_COUNTER_BUFFER, 4, 0, " + std::string(usage) + ")");
        renderer->atomic_counter_kill_buffer(buffer);
    };
    renderer->atomic_counter_force_buffer_object_usage(BUFFER_USAGE_DYNAMIC_DRAW);
    made_with("GL_STREAM_DRAW");
    renderer->force_shader_storage_buffer_object_usage(BUFFER_USAGE_STREAM_READ);
    made_with("GL_DYNAMIC_DRAW");
    renderer->atomic_counter_force_buffer_object_usage(BUFFER_USAGE_DEFAULT);
    made_with("GL_STATIC_DRAW");
    renderer->force_shader_storage_buffer_object_usage(BUFFER_USAGE_DEFAULT);
    made_with("GL_STREAM_DRAW");
}

TEST_P(AtomicCounterBuffer, sets_and_gets_values_of_the_one_that_is_bound) {
    const unsigned int buffer =
        renderer->atomic_counter_create_buffer(3, BUFFER_USAGE_DYNAMIC_DRAW, 0, nullptr);
    EXPECT_TRUE(renderer->atomic_counter_buffer_bind(buffer));
    recorder->clear();
    EXPECT_TRUE(renderer->atomic_counter_set_value(12345, 77, 2)) << "the id isn't looked at";
    EXPECT_EQ(renderer->atomic_counter_get_value(0, 2), 77u);
    EXPECT_EQ(recorder->take(),
              GlCalls({"glBufferSubData(GL_ATOMIC_COUNTER_BUFFER, 8, 4, ptr)",
                       "glGetBufferSubData(GL_ATOMIC_COUNTER_BUFFER, 8, 4, ptr)"}));
    EXPECT_EQ(renderer->atomic_counter_get_value(buffer, 3), 0u) << "past the end";
    EXPECT_GL_ERROR(GL_INVALID_VALUE);
    EXPECT_TRUE(renderer->atomic_counter_buffer_bind(0));
    EXPECT_EQ(renderer->atomic_counter_get_value(buffer, 2), 0u) << "nothing is bound";
    EXPECT_GL_ERROR(GL_INVALID_OPERATION);
    EXPECT_TRUE(renderer->atomic_counter_kill_buffer(buffer));
}

TEST_P(AtomicCounterBuffer, is_mapped_where_it_is_bound) {
    const unsigned int buffer =
        renderer->atomic_counter_create_buffer(4, BUFFER_USAGE_DYNAMIC_DRAW, 0, nullptr);
    EXPECT_TRUE(renderer->atomic_counter_buffer_bind(buffer));
    recorder->clear();
    auto* mapped = static_cast<unsigned int*>(renderer->atomic_counter_buffer_map(buffer));
    ASSERT_NE(mapped, nullptr);
    mapped[1] = 9;
    EXPECT_TRUE(renderer->atomic_counter_buffer_unmap(buffer));
    EXPECT_EQ(recorder->take(), GlCalls({"glMapBuffer(GL_ATOMIC_COUNTER_BUFFER, GL_READ_WRITE)",
                                         "glUnmapBuffer(GL_ATOMIC_COUNTER_BUFFER)"}));
    EXPECT_EQ(renderer->atomic_counter_get_value(buffer, 1), 9u);
    recorder->clear();
    ASSERT_NE(renderer->atomic_counter_buffer_map_range(buffer, 4, 8), nullptr);
    EXPECT_EQ(recorder->take(),
              GlCalls({"glMapBufferRange(GL_ATOMIC_COUNTER_BUFFER, 4, 8, 0x2A)"}));
    EXPECT_TRUE(renderer->atomic_counter_buffer_unmap(buffer));
    EXPECT_TRUE(renderer->atomic_counter_kill_buffer(buffer));
}

TEST_P(AtomicCounterBuffer, is_bound_to_another_binding_point) {
    const unsigned int buffer =
        renderer->atomic_counter_create_buffer(1, BUFFER_USAGE_DYNAMIC_DRAW, 0, nullptr);
    recorder->clear();
    EXPECT_TRUE(renderer->atomic_counter_buffer_bind_base(buffer, 0));
    EXPECT_TRUE(renderer->atomic_counter_buffer_bind_base(0, 0));
    EXPECT_EQ(recorder->take(),
              GlCalls({"glBindBufferBase(GL_ATOMIC_COUNTER_BUFFER, 0, " + id(buffer) + ")",
                       "glBindBufferBase(GL_ATOMIC_COUNTER_BUFFER, 0, 0)"}));
    renderer->atomic_counter_kill_buffer(buffer);
}

TEST_P(AtomicCounterBuffer, of_id_0_is_refused) {
    EXPECT_FALSE(renderer->atomic_counter_kill_buffer(0));
    EXPECT_EQ(renderer->atomic_counter_buffer_map(0), nullptr);
    EXPECT_EQ(renderer->atomic_counter_buffer_map_range(0, 0, 8), nullptr);
    EXPECT_FALSE(renderer->atomic_counter_buffer_unmap(0));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(AtomicCounterBuffer, counts_in_a_shader) {
    ASSERT_TRUE(load(GPU_SHADER_COMPUTE,
                     "#version 430\nlayout(local_size_x = 8) in;\n"
                     "layout(binding = 0, offset = 0) uniform atomic_uint counter;\n"
                     "void main() { atomicCounterIncrement(counter); }\n"));
    unsigned int start = 100;
    const unsigned int buffer =
        renderer->atomic_counter_create_buffer(1, BUFFER_USAGE_DYNAMIC_READ, 0, &start);
    ASSERT_TRUE(renderer->gpu_program_activate(&data));
    EXPECT_TRUE(renderer->gpu_program_run_compute(&data, 4, 1, 1));
    renderer->memory_barrier(MEMORY_BARRIER_ALL);
    EXPECT_TRUE(renderer->atomic_counter_buffer_bind(buffer));
    EXPECT_EQ(renderer->atomic_counter_get_value(buffer, 0), 132u);
    EXPECT_TRUE(renderer->atomic_counter_kill_buffer(buffer));
}

class MemoryBarrier : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(MemoryBarrier);

TEST_P(MemoryBarrier, translates_each_bit) {
    struct {
        unsigned int bits;
        const char* call;
    } const rows[] = {
        {1, "glMemoryBarrier(0x1)"},        {2, "glMemoryBarrier(0x2)"},
        {4, "glMemoryBarrier(0x4)"},        {8, "glMemoryBarrier(0x8)"},
        {16, "glMemoryBarrier(0x20)"},      {32, "glMemoryBarrier(0x40)"},
        {64, "glMemoryBarrier(0x80)"},      {128, "glMemoryBarrier(0x100)"},
        {256, "glMemoryBarrier(0x200)"},    {512, "glMemoryBarrier(0x400)"},
        {1024, "glMemoryBarrier(0x800)"},   {2048, "glMemoryBarrier(0x1000)"},
        {4096, "glMemoryBarrier(0x2000)"},  {8192, "glMemoryBarrier(0xFFFFFFFF)"},
        {8192 | 1, "glMemoryBarrier(0x1)"}, {1 | 16 | 4096, "glMemoryBarrier(0x2021)"},
        {0, "glMemoryBarrier(0x0)"},
    };
    for (const auto& row : rows) {
        renderer->memory_barrier(row.bits);
        EXPECT_EQ(recorder->take(), GlCalls({row.call})) << row.bits;
    }
}

TEST_P(MemoryBarrier, is_nothing_where_the_driver_has_none) {
    hide("glMemoryBarrier");
    renderer->memory_barrier(MEMORY_BARRIER_ALL);
    EXPECT_TRUE(recorder->take().empty());
}

class Buffers : public GpuProgramGlTest {};
ORVEX_BOTH_PROFILES(Buffers);

TEST_P(Buffers, are_out_of_reach_after_stop) {
    renderer->stop();
    EXPECT_EQ(renderer->shader_storage_buffer_create(8, BUFFER_USAGE_DEFAULT, nullptr), 0u);
    EXPECT_EQ(renderer->atomic_counter_create_buffer(8, BUFFER_USAGE_DEFAULT, 0, nullptr), 0u);
    EXPECT_FALSE(renderer->shader_storage_buffer_kill(1));
    EXPECT_EQ(renderer->shader_storage_buffer_map(1), nullptr);
    EXPECT_EQ(renderer->shader_storage_buffer_map_range(1, 0, 1), nullptr);
    EXPECT_FALSE(renderer->shader_storage_buffer_unmap(1));
    EXPECT_FALSE(renderer->shader_storage_buffer_bind(1));
    EXPECT_FALSE(renderer->shader_storage_buffer_bind_base(1, 0));
    EXPECT_FALSE(renderer->atomic_counter_set_value(1, 1, 0));
    EXPECT_EQ(renderer->atomic_counter_get_value(1, 0), 0u);
    EXPECT_EQ(renderer->atomic_counter_buffer_map(1), nullptr);
    EXPECT_EQ(renderer->atomic_counter_buffer_map_range(1, 0, 1), nullptr);
    EXPECT_FALSE(renderer->atomic_counter_buffer_unmap(1));
    EXPECT_FALSE(renderer->atomic_counter_buffer_bind_base(1, 0));
    EXPECT_FALSE(renderer->uniform_buffer_unbind(nullptr));
    UniformBufferData block;
    block.buffer = 1;
    EXPECT_FALSE(renderer->uniform_buffer_initialize(&block, 1));
    EXPECT_FALSE(renderer->uniform_buffer_kill(&block));
    EXPECT_EQ(renderer->uniform_buffer_map(&block), nullptr);
    EXPECT_EQ(renderer->uniform_buffer_map_range(&block, 0, 1), nullptr);
    EXPECT_FALSE(renderer->uniform_buffer_unmap(&block));
    EXPECT_FALSE(renderer->uniform_buffer_bind(&block));
    EXPECT_FALSE(renderer->uniform_buffer_bind_base(&block));
    EXPECT_EQ(block.buffer, 1u) << "what wasn't deleted keeps its id";
    EXPECT_TRUE(recorder->take().empty());
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
