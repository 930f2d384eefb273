// Records drawn in two windows in turns, in windows that take the place of others, and by two
// renderers.

#include "tests/orvex/renderer/opengl/window_pair.h"

#include <algorithm>
#include <array>
#include <deque>
#include <functional>
#include <vector>

#include "orvex/renderer/records/polyline_data.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "orvex/renderer/render_window.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr int num_uploads = 6;
constexpr const char* uploads[num_uploads] = {"glGenBuffers",    "glBufferData",
                                              "glBufferSubData", "glGenVertexArrays",
                                              "glDeleteBuffers", "glDeleteVertexArrays"};

vec4 color_of(const Pixel& pixel) {
    return {static_cast<float>(pixel[0]) / 255.0f, static_cast<float>(pixel[1]) / 255.0f,
            static_cast<float>(pixel[2]) / 255.0f, 1.0f};
}

class RecordContexts : public WindowPairTest {
protected:
    void make_mesh(MeshData& mesh, bool separate, const Pixel& pixel) const {
        make_triangle(mesh, separate);
        mesh.set_use_generic_vertex_attribs_state(GetParam().generic);
        paint(mesh, pixel);
    }

    static void paint(MeshData& mesh, const Pixel& pixel) {
        for (unsigned long i = 0; i < 3; ++i)
            mesh.set_color(i, color_of(pixel));
        mesh.colors_need_update = true;
    }

    void draw(MeshData& mesh) const {
        EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
        EXPECT_TRUE(renderer->vertex_buffer_draw(&mesh));
        EXPECT_TRUE(renderer->vertex_buffer_finish(&mesh));
    }

    void draw(PolylineData& line) const {
        if (GetParam().generic)
            renderer->polyline_vb_prepare(&line);
        else
            renderer->polyline_vb_prepare_gl2(&line);
        renderer->polyline_vb_draw(&line, 0, 0);
        renderer->polyline_vb_finish(&line);
    }

    /// Draws in a window, and tells what stands in its middle then.
    Pixel drawn(RenderWindow* window, MeshData& mesh) const {
        turn_to(window);
        draw(mesh);
        return pixel();
    }

    /// Draws in both windows in turns: the frames after the first ones upload and make nothing.
    void expect_turns_upload_nothing(const std::function<void()>& draw_it, const Pixel& expected) {
        for (int frame = 0; frame < 100; ++frame) {
            for (RenderWindow* const window : {first, second}) {
                turn_to(window);
                draw_it();
                if (frame == 0 || frame == 99)
                    EXPECT_EQ(pixel(), expected) << "frame " << frame;
            }
            if (frame == 0)
                recorder->clear();
        }
        for (const char* const name : uploads)
            EXPECT_EQ(recorder->count(name), 0) << name;
    }

    /// Raises a flag of a record that both windows have: the next draws upload that part in each,
    /// and no draw does after them.
    void expect_uploads_everywhere(const std::function<void()>& draw_it, bool& flag) {
        const auto uploads_in = [&](RenderWindow* window) {
            turn_to(window);
            recorder->clear();
            draw_it();
            GlCalls calls = recorder->take();
            std::erase_if(calls, [](const std::string& each) {
                return each.rfind("glBufferSubData", 0) != 0;
            });
            return calls;
        };
        uploads_in(first);
        uploads_in(second);
        flag = true;
        const GlCalls of_first = uploads_in(first);
        EXPECT_FALSE(of_first.empty());
        EXPECT_EQ(uploads_in(second), GetParam().shared ? GlCalls() : of_first);
        EXPECT_EQ(uploads_in(first), GlCalls());
    }

    bool exists_buffer(RenderWindow* window, unsigned int id) const {
        window->apply_context(true);
        const GlRecorderPause pause(*recorder);
        return glIsBuffer(id) == GL_TRUE;
    }
};

INSTANTIATE_TEST_SUITE_P(of, RecordContexts, testing::ValuesIn(pair_kinds), pair_name);
INSTANTIATE_TEST_SUITE_P(adopted, RecordContexts, testing::ValuesIn(adopted_kinds), pair_name);

/// Windows whose contexts end with them.
class RecordsOfEndedWindows : public RecordContexts {};

INSTANTIATE_TEST_SUITE_P(of, RecordsOfEndedWindows, testing::ValuesIn(pair_kinds), pair_name);

TEST_P(RecordContexts, a_mesh_is_uploaded_once_for_each_window) {
    for (const bool separate : {true, false}) {
        MeshData mesh;
        make_mesh(mesh, separate, green);
        expect_turns_upload_nothing([&] { draw(mesh); }, green);
        renderer->vertex_buffer_kill(&mesh);
    }
}

TEST_P(RecordContexts, windows_that_share_have_one_buffer) {
    MeshData mesh;
    make_mesh(mesh, true, green);
    drawn(first, mesh);
    const unsigned int buffer = mesh.vertex_buffer_id;
    recorder->clear();
    EXPECT_EQ(drawn(second, mesh), green);
    EXPECT_EQ(recorder->count("glGenBuffers"), GetParam().shared ? 0 : 2);
    if (GetParam().shared)
        EXPECT_EQ(mesh.vertex_buffer_id, buffer);
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(RecordContexts, polylines_and_points_are_uploaded_once_for_each_window) {
    std::vector<Vertex> corners(2);
    corners[0].position = vec4(-1.0f, 0.02f, 0.0f, 1.0f);
    corners[1].position = vec4(1.0f, 0.02f, 0.0f, 1.0f);
    for (Vertex& corner : corners)
        corner.color = color_of(blue);
    PolylineData line;
    line.num_vertices = 2;
    line.vertices = new Vertex[2]{corners[0], corners[1]};
    line.use_generic_vertex_attribs = GetParam().generic;
    expect_turns_upload_nothing([&] { draw(line); }, blue);
    EXPECT_TRUE(renderer->polyline_vb_kill(&line));

    for (const bool separate : {false, true}) {
        VertexPoolData pool;
        ASSERT_TRUE(pool.init_v2(4, separate));
        pool.use_generic_vertex_attribs = GetParam().generic;
        for (unsigned long i = 0; i < 4; ++i) {
            const float x = 0.02f + 0.01f * static_cast<float>(i);
            if (separate)
                pool.position.data[i] = vec3(x, x, 0.0f);
            else
                pool.vertices[i].position = vec4(x, x, 0.0f, 1.0f);
        }
        expect_turns_upload_nothing([&] { renderer->vertex_pool_render(&pool); }, white);
        EXPECT_TRUE(renderer->vertex_pool_kill(&pool));
    }
    if (GetParam().core) {
        const GlRecorderPause pause(*recorder);
        EXPECT_GL_ERROR(GL_INVALID_ENUM); // the point sprites of the fixed pipeline
    }
}

TEST_P(RecordContexts, a_change_of_any_part_of_a_mesh_reaches_every_window) {
    MeshData mesh;
    make_mesh(mesh, true, green);
    ASSERT_TRUE(mesh.alloc_user_vertex_attribs(2));
    ASSERT_TRUE(mesh.alloc_quad_edge_data(4));
    std::fill_n(mesh.quad_edges, 4, 0U);
    mesh.render_wireframe_quad = true;
    std::vector<bool*> flags = {&mesh.positions_need_update,
                                &mesh.normals_need_update,
                                &mesh.colors_need_update,
                                &mesh.uv0_need_update,
                                &mesh.uv1_need_update,
                                &mesh.tangents_need_update,
                                &mesh.faces_need_update,
                                &mesh.quad_edges_need_update,
                                &mesh.user_attribs[0].need_update,
                                &mesh.user_attribs[1].need_update};
    if (GetParam().generic) { // client arrays have no instances
        make_instances(mesh, mesh.instance_positions, 2);
        make_instances(mesh, mesh.instance_rotations, 2);
        make_instances(mesh, mesh.instance_scales, 2);
        make_instances(mesh, mesh.instance_colors, 2);
        make_instances(mesh, mesh.instance_miscs, 2);
        flags.insert(flags.end(),
                     {&mesh.instance_positions_need_update, &mesh.instance_rotations_need_update,
                      &mesh.instance_scales_need_update, &mesh.instance_colors_need_update,
                      &mesh.instance_miscs_need_update});
    }
    for (std::size_t i = 0; i < flags.size(); ++i) {
        SCOPED_TRACE(i);
        expect_uploads_everywhere([&] { draw(mesh); }, *flags[i]);
    }
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(RecordContexts, a_change_of_any_part_of_a_polyline_or_of_points_reaches_every_window) {
    PolylineData line;
    line.num_vertices = 2;
    line.vertices = new Vertex[2];
    line.use_generic_vertex_attribs = GetParam().generic;
    for (bool* const flag :
         {&line.positions_need_update, &line.normals_need_update, &line.tangents_need_update,
          &line.colors_need_update, &line.uv0_need_update, &line.uv1_need_update})
        expect_uploads_everywhere([&] { draw(line); }, *flag);
    EXPECT_TRUE(renderer->polyline_vb_kill(&line));

    for (const bool separate : {false, true}) {
        VertexPoolData pool;
        ASSERT_TRUE(pool.init_v2(4, separate));
        pool.use_generic_vertex_attribs = GetParam().generic;
        std::vector<bool*> flags = {&pool.vertices_need_update};
        if (separate)
            flags = {&pool.positions_need_update, &pool.colors_need_update};
        for (bool* const flag : flags)
            expect_uploads_everywhere([&] { renderer->vertex_pool_render(&pool); }, *flag);
        EXPECT_TRUE(renderer->vertex_pool_kill(&pool));
    }
    if (GetParam().core) {
        const GlRecorderPause pause(*recorder);
        EXPECT_GL_ERROR(GL_INVALID_ENUM); // the point sprites of the fixed pipeline
    }
}

TEST_P(RecordContexts, a_change_reaches_every_window) {
    for (const bool separate : {true, false}) {
        MeshData mesh;
        make_mesh(mesh, separate, green);
        EXPECT_EQ(drawn(first, mesh), green);
        EXPECT_EQ(drawn(second, mesh), green);
        paint(mesh, red);
        EXPECT_EQ(drawn(second, mesh), red);
        EXPECT_EQ(drawn(second, mesh), red);
        EXPECT_EQ(drawn(first, mesh), red);

        recorder->clear();
        paint(mesh, blue);
        EXPECT_EQ(drawn(first, mesh), blue);
        EXPECT_EQ(drawn(second, mesh), blue);
        const int parts = GetParam().shared ? 1 : 2;
        EXPECT_EQ(recorder->count("glBufferSubData"), parts) << "only what changed";
        renderer->vertex_buffer_kill(&mesh);
    }
}

TEST_P(RecordContexts, more_vertices_reach_every_window) {
    MeshData mesh;
    make_mesh(mesh, true, green);
    EXPECT_EQ(drawn(first, mesh), green);
    EXPECT_EQ(drawn(second, mesh), green);
    // Twice the triangle: every block of a separate store lies elsewhere.
    ASSERT_TRUE(mesh.alloc_vertex_data(6));
    const float corners[3][2] = {{-1.0f, -1.0f}, {3.0f, -1.0f}, {-1.0f, 3.0f}};
    for (unsigned long i = 0; i < 6; ++i) {
        mesh.set_position(i, vec3(corners[i % 3][0], corners[i % 3][1], 0.0f));
        mesh.set_color(i, color_of(i < 3 ? red : blue));
    }
    set_num_faces(mesh, 2);
    mesh.faces_u16[1] = {3, 4, 5};
    mesh.faces_need_update = true;
    for (RenderWindow* const window : {second, first, second, first}) {
        turn_to(window);
        const GlRecorderPause pause(*recorder);
        glDepthFunc(GL_ALWAYS);
        draw(mesh);
        EXPECT_EQ(pixel_at(8, 8), blue);
    }
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(RecordContexts, instances_stand_at_their_places_in_every_window) {
    if (!GetParam().generic)
        return; // client arrays have no instances
    MeshData mesh;
    make_mesh(mesh, true, green);
    for (unsigned long i = 0; i < 3; ++i)
        mesh.set_position(i, vec3(i == 1 ? 0.2f : -0.2f, i == 2 ? 0.2f : -0.2f, 0.0f));
    make_instances(mesh, mesh.instance_positions, 2);
    mesh.instance_positions.data[0] = vec4(-0.5f, 0.0f, 0.0f, 0.0f);
    mesh.instance_positions.data[1] = vec4(0.5f, 0.0f, 0.0f, 0.0f);
    mesh.instance_positions_need_update = true;
    for (RenderWindow* const window : {first, second, first, second}) {
        drawn(window, mesh);
        EXPECT_EQ(pixel(3, 7), green);
        EXPECT_EQ(pixel(11, 7), green);
    }
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(RecordContexts, another_mesh_of_the_same_number_stays_itself) {
    MeshData left;
    MeshData right;
    make_mesh(left, true, red);
    make_mesh(right, true, green);
    EXPECT_EQ(drawn(first, left), red);
    EXPECT_EQ(drawn(second, right), green);
    EXPECT_EQ(drawn(second, left), red);
    EXPECT_EQ(drawn(first, right), green);
    EXPECT_EQ(drawn(first, left), red);
    for (MeshData* const mesh : {&left, &right})
        renderer->vertex_buffer_kill(mesh);
}

TEST_P(RecordContexts, a_kill_in_one_window_leaves_the_other_whole) {
    MeshData killed;
    MeshData kept;
    make_mesh(killed, true, red);
    make_mesh(kept, true, green);
    drawn(first, killed);
    const unsigned int buffer = killed.vertex_buffer_id;
    drawn(second, kept);
    drawn(second, killed);
    drawn(first, kept);

    second->apply_context(true);
    EXPECT_TRUE(renderer->vertex_buffer_kill(&killed));
    EXPECT_EQ(killed.vertex_buffer_id, 0U);
    EXPECT_EQ(killed.vertex_array_id, 0U);
    EXPECT_EQ(drawn(second, kept), green);
    EXPECT_EQ(drawn(first, kept), green);
    EXPECT_FALSE(exists_buffer(first, buffer)) << "what it had here ends with the next draw";
    EXPECT_EQ(drawn(first, killed), red);
    EXPECT_EQ(drawn(second, killed), red);
    for (MeshData* const mesh : {&killed, &kept})
        renderer->vertex_buffer_kill(mesh);
}

TEST_P(RecordsOfEndedWindows, a_mesh_outlives_its_windows) {
    MeshData mesh;
    make_mesh(mesh, false, green);
    EXPECT_EQ(drawn(first, mesh), green);
    EXPECT_EQ(drawn(second, mesh), green);
    for (int i = 0; i < 4; ++i) {
        renderer->kill_all_render_windows();
        first = open(nullptr);
        ASSERT_TRUE(first);
        if (i % 2 == 0) {
            renderer->stop();
            renderer->start();
            const GlRecorderPause pause(*recorder);
            use_program();
            forget_gl_errors();
        }
        recorder->clear();
        EXPECT_EQ(drawn(first, mesh), green);
        EXPECT_EQ(recorder->count("glDeleteBuffers"), 0) << "the old ones are gone";
        EXPECT_EQ(recorder->count("glDeleteVertexArrays"), 0);
        EXPECT_TRUE(mesh.gpu_elsewhere.arrays.empty());
        EXPECT_TRUE(mesh.gpu_elsewhere.buffers.empty());
    }
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(RecordContexts, a_mesh_whose_window_is_gone_takes_nobody_elses_objects_with_it) {
    if (GetParam().shared)
        return; // the objects live on there
    MeshData old;
    MeshData other;
    make_mesh(old, true, red);
    make_mesh(other, true, green);
    drawn(first, old);
    renderer->kill_render_window(first);
    EXPECT_EQ(drawn(second, other), green);
    EXPECT_EQ(other.vertex_buffer_id, old.vertex_buffer_id) << "or nothing is shown";
    recorder->clear();
    EXPECT_TRUE(renderer->vertex_buffer_kill(&old));
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_EQ(drawn(second, other), green);
    renderer->vertex_buffer_kill(&other);
}

TEST_P(RecordContexts, objects_of_windows_that_share_live_as_long_as_one_of_them) {
    if (!GetParam().shared)
        return;
    MeshData mesh;
    make_mesh(mesh, true, green);
    drawn(first, mesh);
    const unsigned int buffer = mesh.vertex_buffer_id;
    renderer->kill_render_window(first);
    recorder->clear();
    EXPECT_EQ(drawn(second, mesh), green);
    EXPECT_EQ(mesh.vertex_buffer_id, buffer);
    EXPECT_EQ(recorder->count("glBufferData"), 0);
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(RecordContexts, a_draw_in_another_window_than_its_prepare_does_nothing) {
    MeshData mesh;
    make_mesh(mesh, true, green);
    drawn(first, mesh);
    turn_to(first);
    EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
    turn_to(second);
    recorder->clear();
    EXPECT_TRUE(renderer->vertex_buffer_draw(&mesh));
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_EQ(drawn(second, mesh), green);
    EXPECT_EQ(drawn(first, mesh), green);
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(RecordContexts, two_renderers_draw_one_mesh) {
    RendererOpenGL other;
    other.start();
    MeshData mesh;
    make_mesh(mesh, true, green);
    drawn(first, mesh);
    turn_to(first);
    {
        const GlRecorderPause pause(*recorder);
        use_program();
        forget_gl_errors();
    }
    recorder->clear();
    EXPECT_TRUE(other.vertex_buffer_prepare(&mesh));
    EXPECT_TRUE(other.vertex_buffer_draw(&mesh));
    EXPECT_TRUE(other.vertex_buffer_finish(&mesh));
    EXPECT_EQ(recorder->count("glGenBuffers"), 0) << "it is the same context";
    EXPECT_EQ(pixel(), green);
    EXPECT_TRUE(other.vertex_buffer_kill(&mesh));
}

/// Contexts of a host, on a compatibility profile, which shows vertices white by itself.
class HostContexts : public testing::Test, protected RecordedRenderer {
protected:
    void SetUp() override {
        make_triangle(mesh, true);
        start();
    }

    void TearDown() override {
        {
            const GlRecorderPause pause(*recorder);
            EXPECT_NO_GL_ERROR() << "left over at the end of the test";
        }
        renderer.reset();
        recorder.reset();
    }

    /// Draws a frame, as hosts begin it, on either path.
    void expect_drawn() {
        for (const bool generic : {true, false}) {
            mesh.set_use_generic_vertex_attribs_state(generic);
            renderer->clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
            EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
            EXPECT_TRUE(renderer->vertex_buffer_draw(&mesh));
            EXPECT_TRUE(renderer->vertex_buffer_finish(&mesh));
            const GlRecorderPause pause(*recorder);
            EXPECT_NE(pixel_at(8, 8), black);
        }
    }

    std::unique_ptr<GlContext> one = std::make_unique<GlContext>();
    MeshData mesh;
};

TEST_F(HostContexts, are_met_where_a_frame_begins) {
    for (unsigned long i = 0; i < 3; ++i)
        mesh.set_color(i, vec4(1.0f, 1.0f, 1.0f, 1.0f));
    expect_drawn();
    const GlContext other;
    expect_drawn();
    one->make_current();
    expect_drawn(); // each has its mark from the first time that it is switched to
    recorder->clear();
    for (int frame = 0; frame < 100; ++frame) {
        one->make_current();
        expect_drawn();
        other.make_current();
        expect_drawn();
    }
    for (const char* const name : uploads)
        EXPECT_EQ(recorder->count(name), 0) << name;
    renderer->vertex_buffer_kill(&mesh);
    one->make_current();
    expect_drawn();
    renderer->vertex_buffer_kill(&mesh);
    other.make_current();
}

TEST_F(HostContexts, that_are_adopted_are_new_whatever_their_address) {
    for (unsigned long i = 0; i < 3; ++i)
        mesh.set_color(i, vec4(1.0f, 1.0f, 1.0f, 1.0f));
    RenderWindow* const window = renderer->create_render_window();
    for (int i = 0; i < 4; ++i) {
        one.reset();
        one = std::make_unique<GlContext>();
        ASSERT_TRUE(window->osx_init_with_cocoa_nsgl_ctx(&mesh));
        renderer->stop();
        renderer->start();
        forget_gl_errors(); // below 3.0, of the question for the version
        recorder->clear();
        expect_drawn();
        EXPECT_EQ(recorder->count("glGenBuffers"), 2) << "vertices and faces";
        EXPECT_EQ(recorder->count("glDeleteBuffers"), 0);
        expect_drawn();
        EXPECT_EQ(recorder->count("glGenBuffers"), 2);
    }
    renderer->vertex_buffer_kill(&mesh);
}

/// A system that gives the next context the address of one that ended.
class ChosenAddress : public GlRecorder {
public:
    const void* current_context() override {
        return GlRecorder::current_context() ? address : nullptr;
    }
    const std::array<char, 2>& addresses = all_addresses.emplace_back();
    const void* address = &addresses[0];

private:
    /// Kept, so that none comes again: a context that nobody ends is known by its address.
    static inline std::deque<std::array<char, 2>> all_addresses;
};

/// Contexts of a host that the engine never adopts, two of which take turns.
class UnadoptedContexts : public testing::TestWithParam<Profile>, protected RecordedRenderer {
protected:
    void SetUp() override {
        make_triangle(mesh, true);
        mesh.set_use_generic_vertex_attribs_state(true);
        auto chosen = std::make_unique<ChosenAddress>();
        system = chosen.get();
        recorder = std::move(chosen);
        renderer = std::make_unique<RendererOpenGL>();
        renderer->start();
    }

    void TearDown() override {
        {
            const GlRecorderPause pause(*recorder);
            EXPECT_NO_GL_ERROR() << "left over at the end of the test";
        }
        renderer.reset();
        recorder.reset();
    }

    void turn_to(int i) {
        hosts[i]->make_current();
        system->address = &system->addresses[i];
        renderer->clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
    }

    void draw() {
        EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
        EXPECT_TRUE(renderer->vertex_buffer_draw(&mesh));
        EXPECT_TRUE(renderer->vertex_buffer_finish(&mesh));
        const GlRecorderPause pause(*recorder);
        forget_gl_errors(); // a core context draws nothing without a program
    }

    /// The next context gets the first one's address, and its host names that may have been there.
    void replace_first(std::size_t num_names = 16) {
        hosts[0].reset();
        hosts[0] = make_context();
        const GlRecorderPause pause(*recorder);
        buffers.assign(num_names, 0);
        arrays.assign(num_names, 0);
        for (GLuint& id : buffers) {
            glGenBuffers(1, &id);
            glBindBuffer(GL_ARRAY_BUFFER, id);
        }
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        for (GLuint& id : arrays) {
            glGenVertexArrays(1, &id);
            glBindVertexArray(id);
        }
        glBindVertexArray(0);
    }

    void expect_the_hosts_kept() const {
        const GlRecorderPause pause(*recorder);
        for (const GLuint id : buffers)
            EXPECT_TRUE(glIsBuffer(id)) << id;
        for (const GLuint id : arrays)
            EXPECT_TRUE(glIsVertexArray(id)) << id;
    }

    std::unique_ptr<GlContext> make_context() const {
        return std::make_unique<GlContext>(GetParam(), 16, 16);
    }

    std::unique_ptr<GlContext> hosts[2] = {make_context(), make_context()};
    ChosenAddress* system = nullptr;
    MeshData mesh;
    std::vector<GLuint> buffers;
    std::vector<GLuint> arrays;
};
ORVEX_BOTH_PROFILES(UnadoptedContexts);

TEST_P(UnadoptedContexts, that_took_the_address_of_one_that_ended_keep_what_is_theirs) {
    turn_to(0);
    draw();
    turn_to(1);
    draw();
    EXPECT_TRUE(renderer->vertex_buffer_kill(&mesh));
    replace_first();
    turn_to(0);
    expect_the_hosts_kept();
}

TEST_P(UnadoptedContexts, that_took_the_address_of_one_that_took_turns_keep_what_is_theirs) {
    // Each has more names than the one before, among them those of what is drawn there.
    for (const std::size_t num_names : {16u, 32u, 48u}) {
        for (const int i : {0, 1, 0, 1}) {
            turn_to(i);
            draw();
        }
        EXPECT_TRUE(renderer->vertex_buffer_kill(&mesh));
        replace_first(num_names);
        turn_to(0);
        expect_the_hosts_kept();
    }
}

TEST_P(UnadoptedContexts, that_take_turns_let_go_of_what_was_killed_elsewhere) {
    for (const int i : {0, 1, 0}) {
        turn_to(i);
        draw();
    }
    const GLuint buffer = mesh.vertex_buffer_id;
    const GLuint array = mesh.vertex_array_id;
    turn_to(1);
    EXPECT_TRUE(renderer->vertex_buffer_kill(&mesh));
    turn_to(0);
    const GlRecorderPause pause(*recorder);
    EXPECT_FALSE(glIsBuffer(buffer));
    EXPECT_FALSE(glIsVertexArray(array));
}

TEST_P(UnadoptedContexts, are_asked_for_nothing_that_marks_them_while_there_is_one) {
    recorder->clear();
    for (int frame = 0; frame < 3; ++frame) {
        turn_to(0);
        draw();
    }
    for (const char* const name : {"glObjectLabel", "glGetObjectLabel", "glCreateShader"})
        EXPECT_EQ(recorder->count(name), 0) << name;
    EXPECT_EQ(recorder->count("glGenVertexArrays"), 1) << "that of the mesh";
    EXPECT_TRUE(renderer->vertex_buffer_kill(&mesh));
}

} // namespace
} // namespace orvex_test
