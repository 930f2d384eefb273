#include "tests/orvex/renderer/opengl/programs/gpu_program_fixture.h"

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

} // namespace

} // namespace orvex_test
