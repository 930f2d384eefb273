// Buffers that a host holds by their ids, where the driver lacks what an operation calls.

#include "orvex/renderer/opengl/buffers/private/buffer_family.h"

#include <functional>

#include <gtest/gtest.h>

#include "tests/orvex/renderer/opengl/buffers/fake_buffers.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// One operation, whether it did anything, and what it can't go without.
struct Operation {
    const char* name;
    std::function<bool(BufferFamily&)> does;
    std::vector<std::function<void(ORVEX_Renderer_OpenGL_Func&)>> takings;
};

void take_gen(ORVEX_Renderer_OpenGL_Func& gl) {
    gl.glGenBuffers = nullptr;
}
void take_bind(ORVEX_Renderer_OpenGL_Func& gl) {
    gl.glBindBuffer = nullptr;
}
void take_base(ORVEX_Renderer_OpenGL_Func& gl) {
    gl.glBindBufferBase = nullptr;
}
void take_data(ORVEX_Renderer_OpenGL_Func& gl) {
    gl.glBufferData = nullptr;
}
void take_part(ORVEX_Renderer_OpenGL_Func& gl) {
    gl.glBufferSubData = nullptr;
}
void take_delete(ORVEX_Renderer_OpenGL_Func& gl) {
    gl.glDeleteBuffers = nullptr;
}
void take_map(ORVEX_Renderer_OpenGL_Func& gl) {
    gl.glMapBuffer = nullptr;
}
void take_map_range(ORVEX_Renderer_OpenGL_Func& gl) {
    gl.glMapBufferRange = nullptr;
}
void take_unmap(ORVEX_Renderer_OpenGL_Func& gl) {
    gl.glUnmapBuffer = nullptr;
}

const Operation operations[] = {
    {"create_vertices",
     [](BufferFamily& f) { return f.create_vertices(8, BUFFER_USAGE_STATIC_DRAW) != 0; },
     {take_gen, take_bind, take_data}},
    {"create_storage",
     [](BufferFamily& f) { return f.create_storage(8, BUFFER_USAGE_STATIC_DRAW, nullptr) != 0; },
     {take_gen, take_bind, take_data}},
    {"create_counters",
     [](BufferFamily& f) {
         return f.create_counters(2, BUFFER_USAGE_STATIC_DRAW, 0, nullptr) != 0;
     },
     {take_gen, take_bind, take_data, take_base}},
    {"kill_vertices", [](BufferFamily& f) { return f.kill_vertices(7); }, {take_delete}},
    {"kill_counters", [](BufferFamily& f) { return f.kill_counters(7); }, {take_delete}},
    {"invalidate_vertices",
     [](BufferFamily& f) { return f.invalidate_vertices(7, 8, BUFFER_USAGE_STATIC_DRAW); },
     {take_bind, take_data}},
    {"map_vertices",
     [](BufferFamily& f) { return f.map_vertices(7) != nullptr; },
     {take_bind, take_map}},
    {"unmap_vertices",
     [](BufferFamily& f) { return f.unmap_vertices(7); },
     {take_bind, take_unmap}},
    {"map_storage",
     [](BufferFamily& f) { return f.map_storage(7) != nullptr; },
     {take_bind, take_map}},
    {"map_storage_range",
     [](BufferFamily& f) { return f.map_storage_range(7, 0, 4) != nullptr; },
     {take_bind, take_map_range}},
    {"unmap_storage", [](BufferFamily& f) { return f.unmap_storage(7); }, {take_bind, take_unmap}},
    {"bind_storage", [](BufferFamily& f) { return f.bind_storage(7); }, {take_bind}},
    {"bind_storage_base", [](BufferFamily& f) { return f.bind_storage_base(7, 1); }, {take_base}},
    {"bind_counters", [](BufferFamily& f) { return f.bind_counters(7); }, {take_bind}},
    {"bind_counters_base", [](BufferFamily& f) { return f.bind_counters_base(7, 1); }, {take_base}},
    {"set_counter", [](BufferFamily& f) { return f.set_counter(1, 0); }, {take_part}},
    {"map_counters", [](BufferFamily& f) { return f.map_counters(7) != nullptr; }, {take_map}},
    {"map_counters_range",
     [](BufferFamily& f) { return f.map_counters_range(7, 0, 4) != nullptr; },
     {take_map_range}},
    {"unmap_counters", [](BufferFamily& f) { return f.unmap_counters(7); }, {take_unmap}},
};

class BufferFamilyTest : public testing::Test {
protected:
    void SetUp() override {
        serve_fake_buffers(whole);
        whole.glBindBufferBase = [](GLenum, GLuint, GLuint) {};
        whole.glMapBuffer = [](GLenum, GLenum) { return static_cast<void*>(fake_memory); };
        whole.glMapBufferRange = [](GLenum, GLintptr, GLsizeiptr, GLbitfield) {
            return static_cast<void*>(fake_memory);
        };
        whole.glUnmapBuffer = [](GLenum) { return GLboolean(GL_TRUE); };
        state.gl = whole;
    }

    static inline unsigned char fake_memory[8];
    ORVEX_Renderer_OpenGL_Func whole;
    GlState state;
    BufferFamily family{state};
};

TEST_F(BufferFamilyTest, fails_without_any_single_entry_that_an_operation_calls) {
    for (const Operation& operation : operations) {
        SCOPED_TRACE(operation.name);
        state.gl = whole;
        EXPECT_TRUE(operation.does(family));
        for (const auto& take : operation.takings) {
            state.gl = whole;
            take(state.gl);
            take_fake_calls();
            EXPECT_FALSE(operation.does(family));
            EXPECT_TRUE(take_fake_calls().empty()) << "nothing is done by halves";
        }
    }
}

TEST_F(BufferFamilyTest, does_nothing_by_an_empty_table) {
    state.gl = {};
    for (const Operation& operation : operations)
        EXPECT_FALSE(operation.does(family)) << operation.name;
    EXPECT_EQ(family.get_counter(0), 0u);
    family.memory_barrier(1);
    EXPECT_TRUE(take_fake_calls().empty());
}

} // namespace

} // namespace orvex_test
