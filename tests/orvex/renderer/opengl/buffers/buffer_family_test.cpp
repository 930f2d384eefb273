// Buffers that a host holds by their ids, where the driver lacks what an operation calls.

#include "orvex/renderer/opengl/buffers/private/buffer_family.h"

#include <functional>

#include <gtest/gtest.h>

#include "tests/orvex/renderer/opengl/buffers/fake_buffers.h"

namespace orvex_test {

using namespace orvex;

namespace {

using Gl = ORVEX_Renderer_OpenGL_Func;

/// One operation, whether it did anything, and what it can't go without.
struct Operation {
    const char* name;
    std::function<bool(BufferFamily&)> does;
    std::vector<void (*)(Gl&)> takings;
};

template<auto entry>
void take(Gl& gl) {
    gl.*entry = nullptr;
}

const Operation operations[] = {
    {"create_vertices",
     [](BufferFamily& f) { return f.create_vertices(8, BUFFER_USAGE_STATIC_DRAW) != 0; },
     {take<&Gl::glGenBuffers>, take<&Gl::glBindBuffer>, take<&Gl::glBufferData>}},
    {"create_storage",
     [](BufferFamily& f) { return f.create_storage(8, BUFFER_USAGE_STATIC_DRAW, nullptr) != 0; },
     {take<&Gl::glGenBuffers>, take<&Gl::glBindBuffer>, take<&Gl::glBufferData>}},
    {"create_counters",
     [](BufferFamily& f) {
         return f.create_counters(2, BUFFER_USAGE_STATIC_DRAW, 0, nullptr) != 0;
     },
     {take<&Gl::glGenBuffers>, take<&Gl::glBindBuffer>, take<&Gl::glBufferData>,
      take<&Gl::glBindBufferBase>}},
    {"kill_vertices",
     [](BufferFamily& f) { return f.kill_vertices(7); },
     {take<&Gl::glDeleteBuffers>}},
    {"kill_counters",
     [](BufferFamily& f) { return f.kill_counters(7); },
     {take<&Gl::glDeleteBuffers>}},
    {"invalidate_vertices",
     [](BufferFamily& f) { return f.invalidate_vertices(7, 8, BUFFER_USAGE_STATIC_DRAW); },
     {take<&Gl::glBindBuffer>, take<&Gl::glBufferData>}},
    {"map_vertices",
     [](BufferFamily& f) { return f.map_vertices(7) != nullptr; },
     {take<&Gl::glBindBuffer>, take<&Gl::glMapBuffer>}},
    {"unmap_vertices",
     [](BufferFamily& f) { return f.unmap_vertices(7); },
     {take<&Gl::glBindBuffer>, take<&Gl::glUnmapBuffer>}},
    {"map_storage",
     [](BufferFamily& f) { return f.map_storage(7) != nullptr; },
     {take<&Gl::glBindBuffer>, take<&Gl::glMapBuffer>}},
    {"map_storage_range",
     [](BufferFamily& f) { return f.map_storage_range(7, 0, 4) != nullptr; },
     {take<&Gl::glBindBuffer>, take<&Gl::glMapBufferRange>}},
    {"unmap_storage",
     [](BufferFamily& f) { return f.unmap_storage(7); },
     {take<&Gl::glBindBuffer>, take<&Gl::glUnmapBuffer>}},
    {"bind_storage", [](BufferFamily& f) { return f.bind_storage(7); }, {take<&Gl::glBindBuffer>}},
    {"bind_storage_base",
     [](BufferFamily& f) { return f.bind_storage_base(7, 1); },
     {take<&Gl::glBindBufferBase>}},
    {"bind_counters",
     [](BufferFamily& f) { return f.bind_counters(7); },
     {take<&Gl::glBindBuffer>}},
    {"bind_counters_base",
     [](BufferFamily& f) { return f.bind_counters_base(7, 1); },
     {take<&Gl::glBindBufferBase>}},
    {"set_counter",
     [](BufferFamily& f) { return f.set_counter(1, 0); },
     {take<&Gl::glBufferSubData>}},
    {"map_counters",
     [](BufferFamily& f) { return f.map_counters(7) != nullptr; },
     {take<&Gl::glMapBuffer>}},
    {"map_counters_range",
     [](BufferFamily& f) { return f.map_counters_range(7, 0, 4) != nullptr; },
     {take<&Gl::glMapBufferRange>}},
    {"unmap_counters",
     [](BufferFamily& f) { return f.unmap_counters(7); },
     {take<&Gl::glUnmapBuffer>}},
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
    Gl whole;
    GlState state;
    BufferFamily family{state};
};

TEST_F(BufferFamilyTest, fails_without_any_single_entry_that_an_operation_calls) {
    for (const Operation& operation : operations) {
        SCOPED_TRACE(operation.name);
        state.gl = whole;
        EXPECT_TRUE(operation.does(family));
        for (const auto take_one : operation.takings) {
            state.gl = whole;
            take_one(state.gl);
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
