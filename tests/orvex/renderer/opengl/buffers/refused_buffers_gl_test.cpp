// Records whose buffers the context has no memory for: nothing is drawn of them, and the next
// prepare tries again. Buffer 0 in their place would let the driver read the host's memory.

#include "tests/orvex/renderer/opengl/window_pair.h"

#include <algorithm>
#include <functional>

#include "orvex/renderer/records/polyline_data.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// While it lives, the names of the n-th buffer or vertex array are refused, and all others given.
class NameRefusal {
public:
    NameRefusal(RendererOpenGL& of, unsigned int n)
        : renderer(of)
        , given(of.gl) {
        next = given;
        left = n;
        is_met = false;
        renderer.gl.glGenBuffers = [](GLsizei count, GLuint* names) {
            if (!is_turn())
                next.glGenBuffers(count, names);
        };
        renderer.gl.glGenVertexArrays = [](GLsizei count, GLuint* names) {
            if (!is_turn())
                next.glGenVertexArrays(count, names);
        };
    }
    ~NameRefusal() { renderer.gl = given; }
    NameRefusal(const NameRefusal&) = delete;
    NameRefusal& operator=(const NameRefusal&) = delete;

    static bool was_met() { return is_met; }

private:
    static bool is_turn() {
        const bool is_now = !is_met && left-- == 0;
        is_met = is_met || is_now;
        return is_now;
    }

    RendererOpenGL& renderer;
    const ORVEX_Renderer_OpenGL_Func given;
    static inline ORVEX_Renderer_OpenGL_Func next;
    static inline unsigned int left = 0;
    static inline bool is_met = false;
};

/// What is done with a record, whatever its kind.
struct Trio {
    std::function<bool()> prepare, draw, finish, kill;
};

class RefusedBuffers : public WindowPairTest {
protected:
    /// Refuses one name after the other.
    /// @param is_drawn  looks whether the record is seen
    void expect_survived(unsigned int num_names, const Trio& trio,
                         const std::function<bool()>& is_drawn) {
        for (unsigned int n = 0; n < num_names; ++n) {
            SCOPED_TRACE("name " + std::to_string(n));
            turn_to(first);
            expect_refused(n, trio);
            EXPECT_TRUE(trio.prepare());
            EXPECT_TRUE(trio.draw());
            EXPECT_TRUE(trio.finish());
            EXPECT_TRUE(is_drawn());
            EXPECT_TRUE(trio.kill());
        }
        const NameRefusal refusal(*renderer, num_names);
        EXPECT_TRUE(trio.prepare());
        EXPECT_TRUE(trio.finish());
        EXPECT_TRUE(trio.kill());
        EXPECT_FALSE(NameRefusal::was_met()) << "that was all of them";
    }

    bool is_green() const { return pixel() == green; }

    const vec4 green_color{0.0f, 1.0f, 0.0f, 1.0f};

private:
    void expect_refused(unsigned int n, const Trio& trio) {
        const NameRefusal refusal(*renderer, n);
        EXPECT_FALSE(trio.prepare());
        EXPECT_TRUE(NameRefusal::was_met());
        recorder->clear();
        EXPECT_FALSE(trio.draw());
        EXPECT_EQ(recorder->take(), GlCalls()) << "nothing is drawn";
        trio.finish();
    }
};

INSTANTIATE_TEST_SUITE_P(of, RefusedBuffers,
                         testing::Values(pair_kinds[0], pair_kinds[2], pair_kinds[4]), pair_name);

class RefusedMeshBuffers : public RefusedBuffers {
protected:
    void make_mesh(MeshData& mesh, bool separate, unsigned long num_faces = 1) const {
        make_triangle(mesh, separate, num_faces);
        mesh.set_use_generic_vertex_attribs_state(GetParam().generic);
        for (unsigned long i = 0; i < 3; ++i)
            mesh.set_color(i, green_color);
    }

    Trio trio_of(MeshData& mesh) const {
        return {[&] { return renderer->vertex_buffer_prepare(&mesh); },
                [&] { return renderer->vertex_buffer_draw(&mesh); },
                [&] { return renderer->vertex_buffer_finish(&mesh); },
                [&] { return renderer->vertex_buffer_kill(&mesh); }};
    }
};

INSTANTIATE_TEST_SUITE_P(of, RefusedMeshBuffers,
                         testing::Values(pair_kinds[0], pair_kinds[2], pair_kinds[4]), pair_name);

TEST_P(RefusedMeshBuffers, leave_a_mesh_undrawn_until_its_next_prepare) {
    for (const bool separate : {false, true})
        for (const unsigned long num_faces : {0ul, 1ul}) {
            MeshData mesh;
            make_mesh(mesh, separate, num_faces);
            const unsigned int num_names = GetParam().generic ? 2 : 1;
            expect_survived(num_names + static_cast<unsigned int>(num_faces), trio_of(mesh),
                            [&] { return is_green(); });
        }
}

TEST_P(RefusedMeshBuffers, leave_instances_undrawn_until_the_next_prepare) {
    if (!GetParam().generic)
        return; // client arrays know no instances
    MeshData mesh;
    make_mesh(mesh, false);
    make_instances(mesh, mesh.instance_positions, 2);
    mesh.instance_positions.attrib_location = 6;
    std::fill_n(mesh.instance_positions.data, 2, vec4(0, 0, 0, 0));
    mesh.instance_positions_need_update = true;
    const Trio trio = trio_of(mesh);
    expect_survived(4,
                    {trio.prepare, trio.draw, trio.finish,
                     [&] {
                         // Its flag went with its buffer.
                         mesh.instance_positions_need_update = true;
                         return trio.kill();
                     }},
                    [&] { return is_green(); });
}

TEST_P(RefusedMeshBuffers, leave_edges_undrawn_until_the_next_prepare) {
    MeshData mesh;
    make_mesh(mesh, false);
    ASSERT_TRUE(mesh.alloc_quad_edge_data(2));
    mesh.quad_edges[0] = 0;
    mesh.quad_edges[1] = 1;
    mesh.set_position(1, vec3(1.0f, 1.0f, 0.0f));
    mesh.render_wireframe_quad = true;
    const Trio trio = trio_of(mesh);
    const unsigned int num_names = GetParam().generic ? 4 : 3;
    expect_survived(num_names,
                    {trio.prepare, trio.draw, trio.finish,
                     [&] {
                         // The buffer of the edges outlives the kill of one path.
                         if (mesh.quad_edge_buffer_id != 0 && GetParam().generic) {
                             const GlRecorderPause pause(*recorder);
                             renderer->gl.glDeleteBuffers(1, &mesh.quad_edge_buffer_id);
                             mesh.quad_edge_buffer_id = 0;
                             mesh.gpu_state.quad_edge_buffer_bytes = 0;
                         }
                         return trio.kill();
                     }},
                    [&] { return is_green(); });
}

TEST_P(RefusedMeshBuffers, concern_no_other_mesh) {
    MeshData refused;
    MeshData mesh;
    make_mesh(refused, false, 0);
    make_mesh(mesh, false, 0);
    turn_to(first);
    {
        const NameRefusal refusal(*renderer, 0);
        EXPECT_FALSE(renderer->vertex_buffer_prepare(&refused));
    }
    EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
    EXPECT_FALSE(renderer->vertex_buffer_draw(&refused)) << "over the arrays of the other one";
    EXPECT_TRUE(renderer->vertex_buffer_draw(&mesh));
    EXPECT_TRUE(renderer->vertex_buffer_finish(&mesh));
    EXPECT_TRUE(is_green());
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(RefusedBuffers, leave_points_undrawn_until_the_next_prepare) {
    for (const bool separate : {false, true}) {
        VertexPoolData pool;
        ASSERT_TRUE(pool.init_v2(1, separate));
        pool.use_generic_vertex_attribs = GetParam().generic;
        if (separate) {
            pool.position.data[0] = vec3(0.02f, 0.02f, 0);
            pool.color.data[0] = green_color;
        } else {
            pool.vertices[0].position = vec4(0.02f, 0.02f, 0, 1);
            pool.vertices[0].color = green_color;
        }
        const Trio trio = {[&] { return renderer->vertex_pool_render_prepare(&pool); },
                           [&] { return renderer->vertex_pool_render_draw(&pool); },
                           [&] { return renderer->vertex_pool_render_finish(&pool); },
                           [&] { return renderer->vertex_pool_kill(&pool); }};
        expect_survived(GetParam().generic ? 2 : 1, trio, [&] { return is_green(); });
    }
    if (GetParam().core) {
        const GlRecorderPause pause(*recorder);
        EXPECT_GL_ERROR(GL_INVALID_ENUM); // the point sprites of the fixed pipeline
    }
}

TEST_P(RefusedBuffers, leave_lines_undrawn_until_the_next_prepare) {
    PolylineData line;
    line.use_generic_vertex_attribs = GetParam().generic;
    line.num_vertices = 2;
    line.vertices = new Vertex[2];
    line.vertices[0].position = vec4(-1.0f, 0.02f, 0, 1);
    line.vertices[1].position = vec4(1.0f, 0.02f, 0, 1);
    line.vertices[0].color = line.vertices[1].color = green_color;
    const Trio trio = {[&] { return renderer->polyline_vb_prepare(&line); },
                       [&] { return renderer->polyline_vb_draw(&line, 0, 2); },
                       [&] { return renderer->polyline_vb_finish(&line); },
                       [&] { return renderer->polyline_vb_kill(&line); }};
    expect_survived(GetParam().generic ? 2 : 1, trio, [&] { return is_green(); });
}

TEST_P(RefusedBuffers, by_id_are_no_buffers) {
    const NameRefusal refusal(*renderer, 0);
    EXPECT_EQ(renderer->vertex_buffer_create(16, BUFFER_USAGE_STATIC_DRAW), 0u);
    EXPECT_EQ(recorder->count("glBufferData"), 0);
}

} // namespace
} // namespace orvex_test
