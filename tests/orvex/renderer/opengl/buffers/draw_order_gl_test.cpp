// Meshes that are drawn in another order than prepare, draw, finish, or whose record changed
// between: nothing is read that isn't there, and the next complete draw is right.

#include "tests/orvex/renderer/opengl/window_pair.h"

#include "orvex/geometry/mesh/mesh.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

class DrawOrder : public WindowPairTest {
protected:
    void make_mesh(MeshData& mesh, bool separate, const vec4& color) const {
        make_triangle(mesh, separate);
        mesh.set_use_generic_vertex_attribs_state(GetParam().generic);
        for (unsigned long i = 0; i < 3; ++i)
            mesh.set_color(i, color);
    }

    void draw(MeshData& mesh) const {
        EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
        EXPECT_TRUE(renderer->vertex_buffer_draw(&mesh));
        EXPECT_TRUE(renderer->vertex_buffer_finish(&mesh));
    }

    /// A complete draw into a clear window.
    void expect_drawn(MeshData& mesh, const Pixel& expected) const {
        turn_to(first);
        draw(mesh);
        EXPECT_EQ(pixel(), expected);
    }

    /// The indexed calls of a complete draw.
    int indexed_calls(MeshData& mesh) const {
        recorder->clear();
        draw(mesh);
        return recorder->count("glDrawElements") + recorder->count("glDrawRangeElements") +
               recorder->count("glDrawElementsInstancedARB");
    }

    const vec4 red_color{1.0f, 0.0f, 0.0f, 1.0f};
    const vec4 green_color{0.0f, 1.0f, 0.0f, 1.0f};
};

INSTANTIATE_TEST_SUITE_P(of, DrawOrder,
                         testing::Values(pair_kinds[0], pair_kinds[2], pair_kinds[4]), pair_name);

TEST_P(DrawOrder, faces_may_change_between_two_prepares) {
    MeshData mesh;
    make_mesh(mesh, true, green_color);
    EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
    mesh.faces_need_update = true;
    expect_drawn(mesh, green);
    expect_drawn(mesh, green);
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(DrawOrder, two_meshes_may_be_prepared_at_once) {
    MeshData a;
    MeshData b;
    make_mesh(a, true, green_color);
    make_mesh(b, false, red_color);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(renderer->vertex_buffer_prepare(&a));
        EXPECT_TRUE(renderer->vertex_buffer_prepare(&b));
        EXPECT_TRUE(renderer->vertex_buffer_draw(&a));
        EXPECT_TRUE(renderer->vertex_buffer_draw(&b));
        EXPECT_TRUE(renderer->vertex_buffer_finish(&a));
        EXPECT_TRUE(renderer->vertex_buffer_finish(&b));
        expect_drawn(a, green);
        expect_drawn(b, red);
    }
    for (MeshData* const mesh : {&a, &b})
        renderer->vertex_buffer_kill(mesh);
}

TEST_P(DrawOrder, a_mesh_may_be_drawn_whole_while_another_is_prepared) {
    MeshData a;
    MeshData b;
    make_mesh(a, false, green_color);
    make_mesh(b, true, red_color);
    EXPECT_TRUE(renderer->vertex_buffer_prepare(&a));
    expect_drawn(b, red);
    expect_drawn(a, green);
    expect_drawn(b, red);
    for (MeshData* const mesh : {&a, &b})
        renderer->vertex_buffer_kill(mesh);
}

TEST_P(DrawOrder, the_path_may_change_between_prepare_and_finish) {
    if (GetParam().core)
        return; // client arrays are of compatibility contexts
    MeshData mesh;
    MeshData other;
    make_mesh(mesh, true, green_color);
    make_mesh(other, false, red_color);
    const bool path = GetParam().generic;

    // Prepared twice, on either path
    expect_drawn(mesh, green);
    EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
    mesh.set_use_generic_vertex_attribs_state(!path);
    draw(mesh);
    mesh.set_use_generic_vertex_attribs_state(path);
    expect_drawn(mesh, green);

    // Finished on the other one
    EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
    mesh.set_use_generic_vertex_attribs_state(!path);
    EXPECT_TRUE(renderer->vertex_buffer_finish(&mesh));
    mesh.set_use_generic_vertex_attribs_state(path);
    expect_drawn(mesh, green);

    // Another mesh drawn on the other one meanwhile
    EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
    other.set_use_generic_vertex_attribs_state(!path);
    draw(other);
    expect_drawn(mesh, green);
    for (MeshData* const each : {&mesh, &other})
        renderer->vertex_buffer_kill(each);
}

TEST_P(DrawOrder, a_mesh_may_be_killed_while_another_is_prepared) {
    if (GetParam().core)
        return; // client arrays are of compatibility contexts
    MeshData killed;
    make_mesh(killed, false, red_color);
    killed.set_use_generic_vertex_attribs_state(false);
    draw(killed); // leaves the array of colours enabled
    MeshData mesh;
    make_mesh(mesh, true, green_color);
    turn_to(first);
    EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
    EXPECT_TRUE(renderer->vertex_buffer_kill(&killed));
    EXPECT_TRUE(renderer->vertex_buffer_draw(&mesh));
    EXPECT_EQ(pixel(), green);
    EXPECT_TRUE(renderer->vertex_buffer_finish(&mesh));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_ARRAY));
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(DrawOrder, a_mesh_that_is_killed_is_not_prepared_any_more) {
    MeshData mesh;
    MeshData other;
    make_mesh(mesh, true, green_color);
    make_mesh(other, true, red_color);
    draw(other);
    EXPECT_TRUE(renderer->vertex_buffer_prepare(&mesh));
    EXPECT_TRUE(renderer->vertex_buffer_kill(&other));
    EXPECT_EQ(renderer->context().prepared_mesh, &mesh);
    EXPECT_TRUE(renderer->vertex_buffer_kill(&mesh));
    EXPECT_EQ(renderer->context().prepared_mesh, nullptr);
    EXPECT_TRUE(renderer->vertex_buffer_finish(&mesh));
}

TEST_P(DrawOrder, a_mesh_that_ends_leaves_nothing_of_the_other_path) {
    if (GetParam().core)
        return; // client arrays are of compatibility contexts
    for (const bool generic_first : {true, false}) {
        auto* const mesh = new Mesh;
        ASSERT_TRUE(mesh->alloc_vertex_data(3));
        MeshData& store = *mesh->get_mesh_data();
        ASSERT_TRUE(store.alloc_quad_edge_data(4));
        store.render_wireframe_quad = true;
        for (const bool generic : {generic_first, !generic_first}) {
            store.set_use_generic_vertex_attribs_state(generic);
            draw(store);
        }
        const GlRecorderPause pause(*recorder);
        const unsigned int array = store.vertex_array_id;
        const unsigned int edges = store.quad_edge_buffer_id;
        ASSERT_TRUE(glIsVertexArray(array) && glIsBuffer(edges));
        EXPECT_EQ(mesh->release(renderer.get(), nullptr), 0);
        EXPECT_FALSE(glIsVertexArray(array));
        EXPECT_FALSE(glIsBuffer(edges));
    }
}

TEST_P(DrawOrder, no_more_faces_are_drawn_than_the_buffer_has) {
    for (const bool separate : {true, false}) {
        MeshData mesh;
        make_mesh(mesh, separate, green_color);
        EXPECT_EQ(indexed_calls(mesh), 1);
        mesh.index_bits = 32; // of another width, which isn't there
        EXPECT_EQ(indexed_calls(mesh), 0);
        mesh.index_bits = 16;
        EXPECT_EQ(indexed_calls(mesh), 1);

        delete[] std::exchange(mesh.faces_u16, nullptr);
        EXPECT_EQ(indexed_calls(mesh), GetParam().generic ? 1 : 0) << "what the array holds";
        for (const unsigned long count : {2UL, 300000000UL, (1UL << 40) + 2}) {
            mesh.num_faces = count;
            EXPECT_EQ(indexed_calls(mesh), 0) << count;
        }
        renderer->vertex_buffer_kill(&mesh);
    }
}

TEST_P(DrawOrder, no_more_of_a_subset_is_drawn_than_the_buffer_has) {
    if (!GetParam().generic)
        return; // client arrays draw all faces
    MeshData mesh;
    make_mesh(mesh, true, green_color);
    set_num_faces(mesh, 2);
    MaterialSubset subset{1, 1, 0};
    mesh.current_subset = &subset;
    EXPECT_EQ(indexed_calls(mesh), 1);
    subset = {1, 2, 0};
    EXPECT_EQ(indexed_calls(mesh), 0);
    subset = {4000000, 4000000, 0};
    EXPECT_EQ(indexed_calls(mesh), 0);
    mesh.current_subset = nullptr;
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(DrawOrder, no_more_edges_are_drawn_than_the_buffer_has) {
    MeshData mesh;
    make_mesh(mesh, true, green_color);
    ASSERT_TRUE(mesh.alloc_quad_edge_data(4));
    mesh.render_wireframe_quad = true;
    EXPECT_EQ(indexed_calls(mesh), 1);
    mesh.free_quad_edge_data();
    mesh.render_wireframe_quad = true;
    mesh.num_quad_edges = 100000000;
    EXPECT_EQ(indexed_calls(mesh), 0);
    mesh.render_wireframe_quad = false;
    EXPECT_EQ(indexed_calls(mesh), 1) << "the faces again";
    expect_drawn(mesh, green);
    renderer->vertex_buffer_kill(&mesh);
}

/// Instances stand left, in the middle and right of a window of 16 pixels.
class DrawOrderOfInstances : public DrawOrder {
protected:
    void make_small(MeshData& mesh) const {
        make_mesh(mesh, true, green_color);
        for (unsigned long i = 0; i < 3; ++i)
            mesh.set_position(i, vec3(i == 1 ? 0.2f : -0.2f, i == 2 ? 0.2f : -0.2f, 0.0f));
    }

    static void place(MeshData& mesh, std::initializer_list<float> places) {
        make_instances(mesh, mesh.instance_positions, places.size());
        vec4* instance = mesh.instance_positions.data;
        for (const float x : places)
            *instance++ = vec4(x, 0.0f, 0.0f, 0.0f);
        mesh.instance_positions_need_update = true;
    }

    void expect_places(MeshData& mesh, bool left, bool middle, bool right) const {
        turn_to(first);
        draw(mesh);
        EXPECT_EQ(pixel(3, 7), left ? green : black);
        EXPECT_EQ(pixel(7, 7), middle ? green : black);
        EXPECT_EQ(pixel(11, 7), right ? green : black);
    }
};

INSTANTIATE_TEST_SUITE_P(of, DrawOrderOfInstances, testing::Values(pair_kinds[0], pair_kinds[2]),
                         pair_name);

TEST_P(DrawOrderOfInstances, they_may_begin_after_the_first_draw) {
    MeshData mesh;
    make_small(mesh);
    expect_places(mesh, false, true, false);
    place(mesh, {-0.5f, 0.5f, 0.5f});
    expect_places(mesh, true, false, true);
    expect_places(mesh, true, false, true);
    place(mesh, {-0.5f, 0.0f, 0.5f, 0.5f});
    expect_places(mesh, true, true, true);
    renderer->vertex_buffer_kill(&mesh);
}

TEST_P(DrawOrderOfInstances, they_may_change_their_arrays_within_the_same_bytes) {
    MeshData mesh;
    make_small(mesh);
    place(mesh, {-0.5f, 0.5f});
    make_instances(mesh, mesh.instance_rotations, 2);
    mesh.instance_rotations_need_update = true;
    expect_places(mesh, true, false, true);
    mesh.free_vertex_attrib_array(mesh.instance_rotations);
    mesh.instance_rotations.attrib_location = 7;
    place(mesh, {-0.5f, 0.5f, 0.0f, 0.0f});
    recorder->clear();
    expect_places(mesh, true, true, true);
    EXPECT_EQ(recorder->count("glGenVertexArrays"), 1);
    {
        const GlRecorderPause pause(*recorder);
        GLint enabled = 1;
        glBindVertexArray(mesh.vertex_array_id);
        glGetVertexAttribiv(7, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled);
        glBindVertexArray(0);
        EXPECT_EQ(enabled, 0) << "there are no rotations any more";
    }
    renderer->vertex_buffer_kill(&mesh);
}

/// Records without colours read an array of colours that somebody left enabled.
class LeftEnabled : public DrawOrder {
protected:
    /// Draws interleaved records, whose arrays stay enabled, in the current window.
    void leave_arrays(MeshData& mesh) const {
        make_mesh(mesh, false, green_color);
        draw(mesh);
    }

    static bool colors_are_enabled() { return glIsEnabled(GL_COLOR_ARRAY) == GL_TRUE; }
};

INSTANTIATE_TEST_SUITE_P(of, LeftEnabled, testing::Values(pair_kinds[4], pair_kinds[5]), pair_name);

TEST_P(LeftEnabled, arrays_are_remembered_for_each_context) {
    MeshData mesh;
    MeshData other;
    leave_arrays(mesh);
    turn_to(second);
    leave_arrays(other);
    EXPECT_TRUE(renderer->vertex_buffer_kill(&other));
    EXPECT_FALSE(colors_are_enabled());
    turn_to(first);
    EXPECT_TRUE(colors_are_enabled());
    EXPECT_TRUE(renderer->vertex_buffer_kill(&mesh));
    EXPECT_FALSE(colors_are_enabled());
}

TEST_P(LeftEnabled, arrays_are_remembered_across_renderers) {
    RendererOpenGL other;
    other.start();
    MeshData mesh;
    leave_arrays(mesh);
    EXPECT_TRUE(colors_are_enabled());
    EXPECT_TRUE(other.vertex_buffer_kill(&mesh));
    EXPECT_FALSE(colors_are_enabled());
}

TEST_P(LeftEnabled, arrays_are_disabled_at_the_end_of_a_renderer) {
    for (const bool by_stop : {true, false}) {
        RendererOpenGL other;
        MeshData mesh;
        make_mesh(mesh, false, green_color);
        {
            RendererOpenGL short_lived;
            short_lived.start();
            EXPECT_TRUE(short_lived.vertex_buffer_prepare(&mesh));
            EXPECT_TRUE(short_lived.vertex_buffer_draw(&mesh));
            EXPECT_TRUE(short_lived.vertex_buffer_finish(&mesh));
            EXPECT_TRUE(colors_are_enabled());
            if (by_stop) {
                short_lived.stop();
                EXPECT_FALSE(colors_are_enabled());
            }
        }
        EXPECT_FALSE(colors_are_enabled());
        other.start();
        EXPECT_TRUE(other.vertex_buffer_kill(&mesh));
    }
}

} // namespace
} // namespace orvex_test
