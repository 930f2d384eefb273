#include <array>
#include <cstring>

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include "orvex/geometry/lines/line.h"
#include "orvex/geometry/points/point.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/polyline_data.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "tests/support/gl_context.h"
#include "tests/support/pixel.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr const char* program_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
out vec4 v_color;
void main() {
    gl_Position = orvex_Position;
    gl_PointSize = 8.0;
    v_color = orvex_Color;
}
[Pixel_Shader]
#version 150
in vec4 v_color;
out vec4 pixel;
void main() { pixel = v_color; }
)";

constexpr const char* mover_text = R"([Compute_Shader]
#version 430
layout(local_size_x = 1) in;
struct Vertex { vec4 position, color, normal, uv0, uv1, tangent; };
layout(std430, binding = 2) buffer Points { Vertex points[]; };
void main() {
    uint i = gl_GlobalInvocationID.x;
    points[i].position.y += 0.5;
    points[i].color = points[i].color.bgra;
}
)";

constexpr int size = 256;

/// The pixel under a position of clip space, with w 1.
Pixel pixel_at(float x, float y) {
    return orvex_test::pixel_at(static_cast<int>((x + 1.0f) * size / 2),
                                static_cast<int>((y + 1.0f) * size / 2));
}

void clear() {
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void set_ends(VertexPool& pool) {
    pool.set_vertex_position(0, vec3(-0.5f, 0.0f, 0.0f));
    pool.set_vertex_color(0, 1.0f, 0.0f, 0.0f, 1.0f);
    pool.set_vertex_position(1, vec3(0.5f, 0.0f, 0.0f));
    pool.set_vertex_color(1, 0.0f, 1.0f, 0.0f, 1.0f);
}

/// The corners of a square, counter-clockwise from the lower left one.
void set_square(Polyline& polyline, LINE_RENDER_MODE mode) {
    polyline.initialize(4, mode);
    polyline.set_vertex_position(0, -0.5f, -0.5f, 0.0f);
    polyline.set_vertex_position(1, 0.5f, -0.5f, 0.0f);
    polyline.set_vertex_position(2, 0.5f, 0.5f, 0.0f);
    polyline.set_vertex_position(3, -0.5f, 0.5f, 0.0f);
    polyline.set_vertices_color(0.0f, 1.0f, 0.0f, 1.0f);
}

/// Which sides of the square show: bottom, right, top, left. A line may fall on either side of the
/// border between two pixels.
std::array<bool, 4> sides_shown() {
    constexpr float half = 0.5f;
    constexpr float below = half - 1.5f / size;
    const auto shown = [](float x0, float y0, float x1, float y1) {
        return pixel_at(x0, y0) == green || pixel_at(x1, y1) == green;
    };
    return {shown(0.0f, -half, 0.0f, -half - 1.5f / size), shown(half, 0.0f, below, 0.0f),
            shown(0.0f, half, 0.0f, below), shown(-half, 0.0f, -half - 1.5f / size, 0.0f)};
}

struct ModeRow {
    LINE_RENDER_MODE mode;
    std::array<bool, 4> sides;
};

const ModeRow mode_rows[] = {
    {LINE_RENDER_MODE_LINES, {true, false, true, false}},
    {LINE_RENDER_MODE_LINE_STRIP, {true, true, true, false}},
    {LINE_RENDER_MODE_LINE_LOOP, {true, true, true, true}},
};

class PointsInPrograms : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        renderer.start();
        forget_gl_errors();
        program = new GpuProgram;
        ASSERT_TRUE(program->load_from_memory(&renderer, program_text, std::strlen(program_text)));
        ASSERT_TRUE(program->bind(&renderer));
        clear();
    }

    void TearDown() override {
        program->unbind(&renderer);
        EXPECT_EQ(program->release(&renderer, nullptr), 0);
        // A core context has no point sprites and no fixed matrices to switch.
        if (is_core_context())
            forget_gl_errors();
        GlTest::TearDown();
    }

    void render(Object& object) {
        object.set_use_fixed_mvp_matrices_state(false, nullptr);
        object.render(&renderer, nullptr);
    }

    void end(Object* object) { EXPECT_EQ(object->release(&renderer, nullptr), 0); }

    RendererOpenGL renderer;
    GpuProgram* program = nullptr;
};
ORVEX_BOTH_PROFILES(PointsInPrograms);

TEST_P(PointsInPrograms, show_pools_of_both_layouts_on_every_frame) {
    for (const bool separate : {false, true}) {
        VertexPool* const pool = new VertexPool;
        pool->init_pool(2, separate);
        set_ends(*pool);
        for (int frame = 0; frame < 2; ++frame) {
            clear();
            render(*pool);
            EXPECT_EQ(pixel_at(-0.5f, 0.0f), red);
            EXPECT_EQ(pixel_at(0.5f, 0.0f), green);
            EXPECT_EQ(pixel_at(0.0f, 0.0f), black);
        }
        EXPECT_NE(pool->get_vertex_pool_data()->vertex_array_id, 0u);
        pool->set_vertex_position(0, vec3(0.0f, 0.5f, 0.0f));
        pool->set_vertex_color(0, 0.0f, 0.0f, 1.0f, 1.0f);
        clear();
        render(*pool);
        EXPECT_EQ(pixel_at(-0.5f, 0.0f), black);
        EXPECT_EQ(pixel_at(0.0f, 0.5f), blue);
        end(pool);
    }
}

TEST_P(PointsInPrograms, show_a_part_of_a_pool) {
    VertexPool* const pool = new VertexPool;
    pool->init_pool(2, false);
    set_ends(*pool);
    pool->set_render_start_offset(1);
    pool->set_render_num_vertices(0);
    render(*pool);
    EXPECT_EQ(pixel_at(-0.5f, 0.0f), black);
    EXPECT_EQ(pixel_at(0.5f, 0.0f), green);
    end(pool);
}

TEST_P(PointsInPrograms, show_a_pool_that_grew) {
    for (const bool separate : {false, true}) {
        VertexPool* const pool = new VertexPool;
        pool->init_pool(1, separate);
        render(*pool);
        pool->init_pool(2, separate);
        set_ends(*pool);
        clear();
        render(*pool);
        EXPECT_EQ(pixel_at(-0.5f, 0.0f), red);
        EXPECT_EQ(pixel_at(0.5f, 0.0f), green);
        end(pool);
    }
}

TEST_P(PointsInPrograms, show_a_single_point) {
    Point* const point = new Point(vec3(0.25f, 0.25f, 0.0f));
    render(*point);
    EXPECT_EQ(pixel_at(0.25f, 0.25f), white);
    end(point);
}

TEST_P(PointsInPrograms, show_what_a_compute_program_moved) {
    VertexPool* const pool = new VertexPool;
    pool->init_pool(2, false);
    set_ends(*pool);
    ASSERT_TRUE(pool->shader_storage_init(&renderer, BUFFER_USAGE_DYNAMIC_DRAW));
    pool->get_vertex_pool_data()->vertices_need_update = false;
    GpuProgram* const mover = new GpuProgram;
    ASSERT_TRUE(mover->load_from_memory(&renderer, mover_text, std::strlen(mover_text)));
    ASSERT_TRUE(mover->bind(&renderer));
    EXPECT_TRUE(pool->shader_storage_buffer_bind_base(&renderer, 2));
    EXPECT_TRUE(mover->run_compute(&renderer, 2, 1, 1));
    pool->apply_memory_barriers(&renderer);
    EXPECT_TRUE(pool->shader_storage_buffer_unbind(&renderer));
    mover->unbind(&renderer);
    ASSERT_TRUE(program->bind(&renderer));
    render(*pool);
    EXPECT_EQ(pixel_at(-0.5f, 0.0f), black);
    EXPECT_EQ(pixel_at(-0.5f, 0.5f), blue);
    EXPECT_EQ(pixel_at(0.5f, 0.5f), green);
    // The host's own copy stays as it was.
    EXPECT_EQ(pool->get_vertex_position(0), vec4(-0.5f, 0.0f, 0.0f, 1.0f));
    EXPECT_TRUE(pool->shader_storage_cleanup(&renderer));
    EXPECT_EQ(mover->release(&renderer, nullptr), 0);
    end(pool);
}

TEST_P(PointsInPrograms, show_what_a_host_wrote_into_the_storage_buffer) {
    VertexPool* const pool = new VertexPool;
    pool->init_pool(1, false);
    ASSERT_TRUE(pool->shader_storage_init(&renderer, BUFFER_USAGE_DYNAMIC_DRAW));
    auto* const points = static_cast<Vertex*>(pool->shader_storage_buffer_map(&renderer));
    ASSERT_NE(points, nullptr);
    points[0] = Vertex();
    points[0].position = vec4(0.25f, -0.25f, 0.0f, 1.0f);
    points[0].color = vec4(1.0f, 0.0f, 0.0f, 1.0f);
    EXPECT_TRUE(pool->shader_storage_buffer_unmap(&renderer));
    EXPECT_TRUE(pool->shader_storage_buffer_unbind(&renderer));
    pool->apply_memory_barriers(&renderer);
    render(*pool);
    EXPECT_EQ(pixel_at(0.25f, -0.25f), red);
    end(pool);
}

TEST_P(PointsInPrograms, show_polylines_in_three_modes) {
    for (const ModeRow& row : mode_rows) {
        Polyline* const polyline = new Polyline;
        set_square(*polyline, row.mode);
        for (int frame = 0; frame < 2; ++frame) {
            clear();
            render(*polyline);
            EXPECT_EQ(sides_shown(), row.sides);
        }
        EXPECT_NE(polyline->get_polyline_data()->vertex_array_id, 0u);
        end(polyline);
    }
}

TEST_P(PointsInPrograms, show_a_part_of_a_polyline) {
    Polyline* const polyline = new Polyline;
    set_square(*polyline, LINE_RENDER_MODE_LINES);
    polyline->set_line_start_offset(1);
    polyline->set_line_end_offset(1);
    render(*polyline);
    EXPECT_EQ(sides_shown(), (std::array<bool, 4>{false, false, true, false}));
    end(polyline);
}

TEST_P(PointsInPrograms, show_a_line_up_to_its_factors) {
    Line* const line = new Line;
    line->set_start_position(-0.5f, 0.01f, 0.0f);
    line->set_end_position(0.5f, 0.01f, 0.0f);
    line->set_end_factor(0.5f);
    render(*line);
    EXPECT_EQ(pixel_at(-0.25f, 0.01f), white);
    EXPECT_EQ(pixel_at(0.25f, 0.01f), black);
    line->set_end_factor(0.0f);
    line->set_start_factor(0.5f);
    clear();
    render(*line);
    EXPECT_EQ(pixel_at(-0.25f, 0.01f), black);
    EXPECT_EQ(pixel_at(0.25f, 0.01f), white);
    end(line);
}

class PointsOfTheFixedPipeline : public GlCompatibilityTest {
protected:
    void SetUp() override {
        renderer.start();
        forget_gl_errors();
        glPointSize(8.0f);
        clear();
    }

    void end(Object* object) { EXPECT_EQ(object->release(&renderer, nullptr), 0); }

    RendererOpenGL renderer;
};

TEST_F(PointsOfTheFixedPipeline, show_pools_of_both_layouts) {
    for (const bool separate : {false, true}) {
        VertexPool* const pool = new VertexPool;
        pool->init_pool(2, separate);
        set_ends(*pool);
        for (int frame = 0; frame < 2; ++frame) {
            clear();
            pool->render(&renderer, nullptr);
            EXPECT_EQ(pixel_at(-0.5f, 0.0f), red);
            EXPECT_EQ(pixel_at(0.5f, 0.0f), green);
            EXPECT_EQ(pixel_at(0.0f, 0.0f), black);
        }
        EXPECT_EQ(pool->get_vertex_pool_data()->vertex_array_id, 0u);
        end(pool);
    }
}

TEST_F(PointsOfTheFixedPipeline, show_polylines_in_three_modes) {
    for (const ModeRow& row : mode_rows) {
        Polyline* const polyline = new Polyline;
        set_square(*polyline, row.mode);
        for (int frame = 0; frame < 2; ++frame) {
            clear();
            polyline->render(&renderer, nullptr);
            EXPECT_EQ(sides_shown(), row.sides);
        }
        EXPECT_EQ(polyline->get_polyline_data()->vertex_array_id, 0u);
        end(polyline);
    }
}

} // namespace

} // namespace orvex_test
