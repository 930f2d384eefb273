// What a graph allocates and touches in a frame. The whole program counts what it allocates, so
// that these tests have one of their own.

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "line_program.h"
#include "orvex/geometry/lines/curve.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/math/vec4.h"
#include "orvex/overlays/graph2d.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"
#include "tests/support/heap.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr unsigned long num_points = 1000;

/// A frame of a curve that is fed one sample, with the program of its lines bound.
class GraphFeed {
protected:
    void begin(Renderer& drawn_by) {
        renderer_used = &drawn_by;
        ASSERT_TRUE(program->load_from_memory(renderer_used, line_program_text,
                                              std::strlen(line_program_text)));
        ASSERT_TRUE(program->bind(renderer_used));
        graph->set_x_axis_positions(vec4(20.0f, 20.0f, 0.0f, 1.0f),
                                    vec4(220.0f, 20.0f, 0.0f, 1.0f));
        graph->create_curve(num_points);
        graph->get_curve(0)->set_use_fixed_mvp_matrices_state(false, nullptr);
    }

    void end() {
        graph->kill(renderer_used, nullptr);
        program->unbind(renderer_used);
        program->kill(renderer_used, nullptr);
        if (is_core_context()) // has no fixed matrices, which the axes load
            forget_gl_errors();
    }

    void feed(unsigned long count) {
        for (unsigned long i = 0; i < count; ++i)
            graph->add_curve_scalar(0, static_cast<float>(i % 100));
    }

    void frame() {
        feed(1);
        EXPECT_TRUE(graph->sync_curve_scalars(0));
        graph->render(renderer_used, nullptr);
    }

    Graph2d* graph = new Graph2d;
    GpuProgram* program = new GpuProgram;
    Renderer* renderer_used = nullptr;
};

class GraphAllocations : public GlTest, protected GraphFeed {
protected:
    void SetUp() override {
        GlTest::SetUp();
        renderer.initialize();
        renderer.start();
        glDisable(GL_DEBUG_OUTPUT); // the context's messages are kept on this thread
        begin(renderer);
    }

    void TearDown() override {
        end();
        GlTest::TearDown();
    }

    unsigned long allocations_of_a_frame() {
        const CountAllocations allocations;
        frame();
        return allocations.count();
    }

    RendererOpenGL renderer;
};
ORVEX_BOTH_PROFILES(GraphAllocations);

// A vector's room doubles, so that 1,100 samples leave room for some more.
TEST_P(GraphAllocations, are_none_beyond_the_growth_of_the_history) {
    feed(num_points + 100);
    for (int i = 0; i < 3; ++i)
        frame();
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(allocations_of_a_frame(), 0u) << i;
}

TEST_P(GraphAllocations, are_one_when_the_history_grows) {
    feed(num_points);
    for (int i = 0; i < 3; ++i)
        frame();
    unsigned long growths = 0;
    for (int i = 0; i < 2000; ++i) {
        const unsigned long count = allocations_of_a_frame();
        ASSERT_LE(count, 1u);
        growths += count;
    }
    EXPECT_EQ(growths, 2u) << "at 1,024 and 2,048 samples";
}

/// Forbids any touch of the pages that lie whole in a range, until it ends.
class Forbidden {
public:
    Forbidden(char* first, char* end) {
        const std::uintptr_t page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
        begin = (reinterpret_cast<std::uintptr_t>(first) + page - 1) / page * page;
        size = reinterpret_cast<std::uintptr_t>(end) / page * page - begin;
        EXPECT_EQ(mprotect(reinterpret_cast<void*>(begin), size, PROT_NONE), 0);
    }
    ~Forbidden() {
        EXPECT_EQ(mprotect(reinterpret_cast<void*>(begin), size, PROT_READ | PROT_WRITE), 0);
    }
    Forbidden(const Forbidden&) = delete;
    Forbidden& operator=(const Forbidden&) = delete;

private:
    std::uintptr_t begin;
    std::uintptr_t size;
};

class GraphFrames : public VertexBuffersTest, protected GraphFeed {
protected:
    void SetUp() override {
        VertexBuffersTest::SetUp();
        begin(*renderer);
    }

    void TearDown() override {
        end();
        VertexBuffersTest::TearDown();
    }

    GlCalls calls_of_a_frame() {
        recorder->clear();
        frame();
        return recorder->take();
    }
};
ORVEX_BOTH_PROFILES(GraphFrames);

// A frame that looks at an older sample ends this program with a segmentation fault.
TEST_P(GraphFrames, cost_the_same_after_ten_million_samples) {
    constexpr unsigned long num_samples = 10'000'000;
    const CountAllocations histories(64ul << 20);
    feed(num_points);
    frame();
    const GlCalls early = calls_of_a_frame();
    feed(num_samples - graph->curve_get_diff_points(0) - num_points);
    frame();
    ASSERT_EQ(graph->curve_get_diff_points(0), num_samples + 1 - num_points);
    char* const history = static_cast<char*>(histories.last_block());
    ASSERT_NE(history, nullptr);
    const Forbidden old_samples(history, history + (num_samples - num_points) * sizeof(vec4));
    for (int i = 0; i < 10; ++i)
        ASSERT_EQ(calls_of_a_frame(), early);
    EXPECT_EQ(graph->curve_get_diff_points(0), num_samples + 11 - num_points);
    EXPECT_EQ(graph->get_curve(0)->get_value_vec4(num_points - 1).y, 20.0f)
        << "each frame fed the first value of the row";
}

/// The messages of a graph whose curve finds memory for so many arrays.
std::vector<std::string> messages_of_a_curve(Thrown thrown, unsigned long arrays) {
    const LogCapture log;
    const Owned<Graph2d> graph(new Graph2d);
    {
        const RefuseArrays refused({.granted = arrays, .refused = 1, .thrown = thrown});
        EXPECT_EQ(graph->create_curve(num_points), nullptr);
    }
    EXPECT_EQ(graph->get_num_curves(), 0u);
    EXPECT_NE(graph->create_curve(num_points), nullptr);
    return log.messages();
}

// The values of the curve, its vertices, and the values that the graph keeps.
TEST(GraphAllocationFailure, is_told_by_its_type_and_leaves_no_curve) {
    for (unsigned long arrays = 0; arrays < 3; ++arrays) {
        EXPECT_EQ(
            messages_of_a_curve(Thrown::bad_alloc, arrays),
            std::vector<std::string>{"<*> std::bad_alloc exception caught - what: std::bad_alloc"});
        EXPECT_EQ(messages_of_a_curve(Thrown::runtime_error, arrays),
                  std::vector<std::string>{"<*> std::exception exception caught - what: refused"});
        EXPECT_EQ(messages_of_a_curve(Thrown::number, arrays),
                  std::vector<std::string>{"<*> unknown exception caught"});
    }
}

} // namespace

} // namespace orvex_test
