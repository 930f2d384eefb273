#include "orvex/overlays/mad_led_bar.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/geometry/shapes/mesh_plane.h"
#include "orvex/math/vec3.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "orvex/scene/scene_renderer.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;

namespace {

const vec3 origin(0.0f, 0.0f, 0.0f);
const vec3 four(4.0f, 0.0f, 0.0f);
const vec4 white(1.0f, 1.0f, 1.0f, 1.0f);
const vec4 red(1.0f, 0.0f, 0.0f, 1.0f);
const vec4 up(0.0f, 1.0f, 0.0f, 0.0f);

class MadLedBarTest : public testing::Test {
protected:
    ~MadLedBarTest() override { EXPECT_EQ(bar->release(nullptr, nullptr), 0); }

    VertexPool* make_points(unsigned long count = 4) {
        EXPECT_TRUE(bar->initialize(origin, four, count));
        return pool();
    }
    MeshPlane* make_strip(unsigned long count = 4) {
        EXPECT_TRUE(bar->initialize(origin, four, count, 0.5f));
        return plane();
    }

    template<class Class>
    Class* child() const {
        for (unsigned long i = 0; i < bar->get_num_children(); ++i)
            if (auto* const found = dynamic_cast<Class*>(bar->get_child(i)))
                return found;
        return nullptr;
    }
    VertexPool* pool() const { return child<VertexPool>(); }
    MeshPlane* plane() const { return child<MeshPlane>(); }

    /// How often pool and plane were drawn since the last time.
    std::pair<int, int> take_draws() {
        const std::pair<int, int> draws(renderer.count("vertex_pool_render_draw"),
                                        renderer.count("vertex_buffer_draw"));
        renderer.take_calls();
        return draws;
    }

    FakeRenderer renderer;
    MadLedBar* bar = new MadLedBar;
};

using Draws = std::pair<int, int>;

TEST_F(MadLedBarTest, has_no_lights_at_first) {
    EXPECT_EQ(bar->get_type(), NODE_TYPE_MAD_LED_BAR);
    EXPECT_EQ(NODE_TYPE_MAD_LED_BAR, 31);
    EXPECT_TRUE(bar->is_type_of(NODE_TYPE_OBJECT));
    EXPECT_EQ(bar->get_num_leds(), 0u);
    EXPECT_EQ(bar->get_num_vertices(nullptr), 0u);
    EXPECT_EQ(bar->get_num_children(), 0u);
    EXPECT_EQ(bar->get_vertex(0), nullptr);
    EXPECT_EQ(bar->get_vertex_v2(0).position, Vertex().position);
    EXPECT_FALSE(bar->_vp_update_leds_positions());
    EXPECT_TRUE(bar->_plane_set_led_color(0, 1.0f, 1.0f, 1.0f, 1.0f));
    EXPECT_TRUE(bar->_plane_set_led_normal(0, 0.0f, 1.0f, 0.0f));
    bar->set_led_color(0, red);
    bar->render(&renderer, nullptr);
    EXPECT_TRUE(renderer.calls.empty());
}

// -------------------------------------------------------------------------------- points

TEST_F(MadLedBarTest, puts_its_points_one_step_short_of_the_end) {
    make_points();
    for (unsigned long i = 0; i < 4; ++i) {
        EXPECT_EQ(bar->get_vertex(i)->position, vec4(static_cast<float>(i), 0.0f, 0.0f, 1.0f));
        EXPECT_EQ(bar->get_vertex(i)->color, white);
        EXPECT_EQ(bar->get_vertex(i)->normal, up);
    }
    EXPECT_EQ(bar->get_num_leds(), 4u);
    EXPECT_EQ(bar->get_num_vertices(nullptr), 4u);
    EXPECT_FALSE(pool()->get_vertex_pool_data()->separate_vertex_arrays);
    EXPECT_TRUE(pool()->get_vertex_pool_data()->vertices_need_update);
}

TEST_F(MadLedBarTest, follows_its_row_in_all_three_directions) {
    bar->initialize(vec3(1.0f, 2.0f, 3.0f), vec3(3.0f, -2.0f, 11.0f), 2);
    EXPECT_EQ(bar->get_vertex(0)->position, vec4(1.0f, 2.0f, 3.0f, 1.0f));
    EXPECT_EQ(bar->get_vertex(1)->position, vec4(2.0f, 0.0f, 7.0f, 1.0f));
}

TEST_F(MadLedBarTest, keeps_its_pool_when_it_is_resized) {
    VertexPool* const first = make_points(4);
    bar->set_led_color(1, red);
    EXPECT_EQ(make_points(6), first);
    EXPECT_EQ(first->get_pool_size(), 6u);
    EXPECT_EQ(bar->get_num_children(), 1u);
    EXPECT_EQ(first->get_ref(), 1);
    EXPECT_EQ(bar->get_vertex(1)->color, white) << "its points are made anew";
    EXPECT_FLOAT_EQ(bar->get_vertex(3)->position.x, 2.0f);
}

TEST_F(MadLedBarTest, puts_its_points_back_where_they_belong) {
    make_points();
    bar->get_vertex(2)->position = vec4(9.0f, 9.0f, 9.0f, 1.0f);
    EXPECT_TRUE(bar->_vp_update_leds_positions());
    EXPECT_EQ(bar->get_vertex(2)->position, vec4(2.0f, 0.0f, 0.0f, 1.0f));
}

TEST_F(MadLedBarTest, colours_single_points) {
    make_points();
    bar->set_led_color(1, 1.0f, 0.0f, 0.0f, 1.0f);
    bar->set_led_color(3, vec4(0.0f, 0.5f, 0.0f, 0.25f));
    EXPECT_EQ(bar->get_vertex_v2(0).color, white);
    EXPECT_EQ(bar->get_vertex_v2(1).color, red);
    EXPECT_EQ(bar->get_vertex_v2(3).color, vec4(0.0f, 0.5f, 0.0f, 0.25f));
}

TEST_F(MadLedBarTest, ignores_lights_it_does_not_have) {
    make_points();
    make_strip();
    for (const unsigned long index : {4ul, 5ul, ~0ul}) {
        bar->set_led_color(index, red);
        EXPECT_EQ(bar->get_vertex(index), nullptr);
        EXPECT_EQ(bar->get_vertex_v2(index).position, Vertex().position);
        EXPECT_EQ(bar->get_vertex_v2(index).color, Vertex().color);
    }
    for (unsigned long i = 0; i < 4; ++i)
        EXPECT_EQ(pool()->get_vertex_color(i), white);
    for (unsigned long i = 0; i < 10; ++i)
        EXPECT_EQ(plane()->get_vertex_color(i), white);
}

TEST_F(MadLedBarTest, can_be_set_to_no_lights) {
    make_points(4);
    make_points(0);
    EXPECT_EQ(bar->get_num_leds(), 0u);
    EXPECT_EQ(bar->get_vertex(0), nullptr);
    make_strip(0);
    bar->render(&renderer, nullptr);
    EXPECT_EQ(take_draws(), Draws(0, 0));
}

// -------------------------------------------------------------------------------- strip

TEST_F(MadLedBarTest, builds_a_strip_with_a_segment_for_each_light) {
    MeshPlane* const strip = make_strip();
    EXPECT_EQ(strip->get_width(), 4.0f);
    EXPECT_EQ(strip->get_height(), 0.5f);
    EXPECT_EQ(strip->get_wsegs(), 4);
    EXPECT_EQ(strip->get_hsegs(), 1);
    EXPECT_EQ(strip->get_num_vertices(nullptr), 10u);
    EXPECT_EQ(strip->get_num_faces(nullptr), 8u);
    EXPECT_FALSE(strip->get_mesh_data()->separate_vertex_arrays);
    EXPECT_EQ(bar->get_num_leds(), 4u);
    EXPECT_EQ(bar->get_num_vertices(nullptr), 4u) << "fewer than the strip has";
    EXPECT_EQ(bar->get_vertex(3), strip->get_vertex(3));
    for (unsigned long i = 0; i < 10; ++i)
        EXPECT_EQ(strip->get_vertex_normal(i), up);
}

TEST_F(MadLedBarTest, takes_the_distance_alone_from_the_ends_of_a_strip) {
    bar->initialize(vec3(1.0f, 2.0f, 3.0f), vec3(3.0f, 5.0f, 9.0f), 2, 1.0f);
    EXPECT_EQ(plane()->get_width(), 7.0f);
    EXPECT_EQ(plane()->get_vertex_position(0), vec4(-3.5f, 0.0f, -0.5f, 1.0f));
}

TEST_F(MadLedBarTest, colours_the_right_end_of_a_segment_in_both_rows) {
    make_strip();
    bar->set_led_color(0, red);
    bar->set_led_color(3, red);
    for (unsigned long i = 0; i < 10; ++i) {
        const bool colored = i == 1 || i == 4 || i == 6 || i == 9;
        EXPECT_EQ(plane()->get_vertex_color(i), colored ? red : white) << "vertex " << i;
    }
}

TEST_F(MadLedBarTest, sets_the_normals_of_the_same_vertices) {
    make_strip();
    EXPECT_TRUE(bar->_plane_set_led_normal(1, 1.0f, 0.0f, 0.0f));
    for (unsigned long i = 0; i < 10; ++i)
        EXPECT_EQ(plane()->get_vertex_normal(i),
                  i == 2 || i == 7 ? vec4(1.0f, 0.0f, 0.0f, 0.0f) : up);
}

TEST_F(MadLedBarTest, keeps_its_plane_when_it_is_resized) {
    MeshPlane* const first = make_strip(4);
    bar->set_led_color(1, red);
    EXPECT_EQ(make_strip(8), first);
    EXPECT_EQ(first->get_num_vertices(nullptr), 18u);
    EXPECT_EQ(first->get_vertex_color(2), white);
    EXPECT_EQ(bar->get_num_children(), 1u);
}

// -------------------------------------------------------------------------------- both forms

TEST_F(MadLedBarTest, colours_both_forms_with_one_call) {
    make_points();
    make_strip();
    bar->set_led_color(2, red);
    EXPECT_EQ(pool()->get_vertex_color(2), red);
    EXPECT_EQ(plane()->get_vertex_color(3), red);
    EXPECT_EQ(plane()->get_vertex_color(8), red);
}

TEST_F(MadLedBarTest, answers_with_a_vertex_of_the_pool_and_a_copy_of_the_planes) {
    make_strip();
    make_points();
    EXPECT_EQ(bar->get_vertex(1), pool()->get_vertex(1));
    EXPECT_EQ(bar->get_vertex_v2(1).position, plane()->get_vertex_v2(1).position);
    EXPECT_NE(bar->get_vertex_v2(1).position, pool()->get_vertex_v2(1).position);
}

// -------------------------------------------------------------------------------- drawing

TEST_F(MadLedBarTest, draws_each_form_once) {
    make_points();
    bar->render(&renderer, nullptr);
    EXPECT_EQ(take_draws(), Draws(1, 0));
    make_strip();
    bar->render(&renderer, nullptr);
    EXPECT_EQ(take_draws(), Draws(1, 1));
    bar->_render(&renderer);
    EXPECT_EQ(take_draws(), Draws(1, 1));
}

TEST_F(MadLedBarTest, draws_points_before_the_strip) {
    make_strip();
    make_points();
    bar->render(&renderer, nullptr);
    EXPECT_EQ(renderer.calls.back().substr(0, 13), "vertex_buffer");
}

TEST_F(MadLedBarTest, draws_once_through_a_scene) {
    make_points();
    make_strip();
    const Owned<Node> root(new Node);
    Object* const group = new Object;
    group->add_child(bar);
    bar->add_ref();
    root->add_child(group);
    SceneRenderer().render_scene(&renderer, nullptr, nullptr, root.get());
    EXPECT_EQ(take_draws(), Draws(1, 1));
    group->remove_child(bar);
}

TEST_F(MadLedBarTest, draws_its_other_children_after_itself) {
    make_points();
    Mesh* const child = new Mesh;
    bar->add_child(child);
    bar->render(&renderer, nullptr);
    EXPECT_EQ(renderer.calls.back().substr(0, 20), "vertex_buffer_finish");
    EXPECT_EQ(take_draws(), Draws(1, 1));
}

TEST_F(MadLedBarTest, walks_the_children_of_another_node) {
    make_points();
    Mesh* const own = new Mesh;
    bar->add_child(own);
    const Owned<Node> other(new Node);
    other->add_child(new Mesh);
    other->add_child(new Mesh);
    bar->render(&renderer, other.get());
    EXPECT_EQ(take_draws(), Draws(1, 2));
}

TEST_F(MadLedBarTest, is_hidden_by_its_render_state) {
    make_points();
    make_strip();
    bar->set_render_state(false, nullptr);
    bar->render(&renderer, nullptr);
    EXPECT_EQ(take_draws(), Draws(0, 0));
}

TEST_F(MadLedBarTest, hides_the_strip_and_never_the_points_by_their_own_state) {
    make_points();
    make_strip();
    bar->set_render_state(true, nullptr);
    pool()->set_render_state(false, nullptr);
    plane()->set_render_state(false, nullptr);
    bar->render(&renderer, nullptr);
    EXPECT_EQ(take_draws(), Draws(1, 0));
}

TEST_F(MadLedBarTest, draws_nothing_without_a_renderer) {
    make_points();
    make_strip();
    bar->render(nullptr, nullptr);
    bar->_render(nullptr);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST_F(MadLedBarTest, draws_none_of_what_an_object_draws) {
    make_points();
    bar->set_display_tripod_state(true, nullptr);
    bar->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("render_line"), 0);
}

TEST_F(MadLedBarTest, sets_the_drawing_style_of_both_forms_and_its_own) {
    make_points();
    make_strip();
    for (const bool gl2 : {false, true}) {
        bar->set_opengl_2_3_rendering_states(gl2, nullptr);
        for (Object* const object : {static_cast<Object*>(bar), static_cast<Object*>(pool()),
                                     static_cast<Object*>(plane())}) {
            EXPECT_EQ(object->get_use_gl2_vertex_array_state(), gl2);
            EXPECT_EQ(object->get_use_fixed_mvp_matrices_state(), gl2);
        }
    }
    Mesh* const child = new Mesh;
    bar->add_child(child);
    bar->set_opengl_2_3_rendering_states(false, bar);
    EXPECT_FALSE(child->get_use_gl2_vertex_array_state());
    EXPECT_FALSE(plane()->get_use_gl2_vertex_array_state());
}

/// Counts how often it is told how to draw.
class Told : public Object {
public:
    void set_opengl_2_3_rendering_states(bool gl2, Node* node) override {
        ++times;
        Object::set_opengl_2_3_rendering_states(gl2, node);
    }
    int times = 0;
};

TEST_F(MadLedBarTest, tells_each_child_once_how_to_draw_however_deep_bars_lie_in_bars) {
    make_points();
    make_strip();
    MadLedBar* innermost = bar;
    for (int depth = 0; depth < 3; ++depth) {
        MadLedBar* const inner = new MadLedBar;
        inner->initialize(origin, four, 4);
        inner->initialize(origin, four, 4, 0.5f);
        innermost->add_child(inner);
        innermost = inner;
    }
    Told* const told = new Told;
    innermost->add_child(told);
    bar->set_opengl_2_3_rendering_states(false, bar);
    EXPECT_EQ(told->times, 1);
    EXPECT_FALSE(told->get_use_gl2_vertex_array_state());
}

// -------------------------------------------------------------------------------- end

TEST_F(MadLedBarTest, ends_both_forms_with_the_renderer_in_hand) {
    VertexPool* const points = make_points();
    MeshPlane* const strip = make_strip();
    renderer.name_pointer(points->get_vertex_pool_data(), "points");
    renderer.name_pointer(strip->get_mesh_data(), "strip");
    EXPECT_TRUE(bar->_cleanup(&renderer));
    EXPECT_EQ(renderer.take_calls(),
              (std::vector<std::string>{"vertex_pool_kill(points)", "vertex_buffer_kill(strip)"}));
    EXPECT_EQ(bar->get_num_children(), 0u);
    EXPECT_EQ(bar->get_vertex(0), nullptr);
    bar->set_led_color(0, red);
    bar->render(&renderer, nullptr);
    EXPECT_EQ(take_draws(), Draws(0, 0));
    EXPECT_TRUE(bar->_cleanup(&renderer));
    make_points();
    bar->render(&renderer, nullptr);
    EXPECT_EQ(take_draws(), Draws(1, 0)) << "it can be used again";
}

TEST_F(MadLedBarTest, ends_a_form_that_someone_else_holds) {
    VertexPool* const points = make_points();
    const Owned<Node> other(new Node);
    other->add_child(points);
    EXPECT_EQ(points->get_ref(), 2);
    bar->_cleanup(&renderer);
    EXPECT_EQ(other->get_child(0), nullptr) << "it has ended for everyone";
    EXPECT_EQ(bar->get_num_children(), 0u);
}

TEST_F(MadLedBarTest, forgets_the_forms_that_a_release_ended) {
    make_points();
    make_strip();
    bar->add_ref();
    bar->add_ref();
    EXPECT_EQ(bar->release(&renderer, nullptr), 1);
    renderer.take_calls();
    EXPECT_EQ(bar->get_num_children(), 0u);
    EXPECT_EQ(bar->get_num_leds(), 4u);
    EXPECT_EQ(bar->get_vertex(0), nullptr);
    EXPECT_EQ(bar->get_vertex_v2(0).position, Vertex().position);
    EXPECT_TRUE(bar->_vp_update_leds_positions());
    bar->set_led_color(0, red);
    bar->render(&renderer, nullptr);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST(MadLedBar, deletes_its_forms_when_it_is_deleted) {
    auto* const bar = new MadLedBar;
    bar->initialize(origin, four, 4);
    bar->initialize(origin, four, 4, 0.5f);
    const Owned<Node> other(new Node);
    other->add_child(bar->get_child(0));
    other->add_child(bar->get_child(1));
    delete bar;
    EXPECT_EQ(other->get_child(0), nullptr);
    EXPECT_EQ(other->get_child(1), nullptr);
}

} // namespace

} // namespace orvex_test
