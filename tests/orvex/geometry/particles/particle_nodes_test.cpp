// Emitters and actions as nodes, the points that draw a system, and how all of them end.

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "owned_particles.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;

namespace {

using Calls = std::vector<std::string>;

struct Emitters {
    using Node = ParticleEmitter;
    static Node* create(ParticleSystem& s) { return s.create_emitter(); }
    static unsigned long size(ParticleSystem& s) { return s.get_num_emitters(); }
    static Node* by_id(ParticleSystem& s, int id) { return s.get_emitter(id); }
    static Node* by_index(ParticleSystem& s, int i) { return s.get_emitter_by_index(i); }
    static bool kill(ParticleSystem& s, int id) { return s.kill_emitter(nullptr, id); }
};

struct Actions {
    using Node = ParticleAction;
    static Node* create(ParticleSystem& s) { return s.create_action(); }
    static unsigned long size(ParticleSystem& s) { return s.get_num_actions(); }
    static Node* by_id(ParticleSystem& s, int id) { return s.get_action(id); }
    static Node* by_index(ParticleSystem& s, int i) { return s.get_action_by_index(i); }
    static bool kill(ParticleSystem& s, int id) { return s.kill_action(nullptr, id); }
};

template<class Kind>
class ParticleNodes : public testing::Test {
protected:
    /// Makes one whose end is counted.
    typename Kind::Node* create() {
        typename Kind::Node* const node = Kind::create(*system);
        node->add_child(new EndProbe(ends));
        return node;
    }

    int ends = 0;
    OwnedSystem system{new ParticleSystem};
};

using Kinds = testing::Types<Emitters, Actions>;
TYPED_TEST_SUITE(ParticleNodes, Kinds);

TYPED_TEST(ParticleNodes, are_found_by_id_and_by_order) {
    ParticleSystem& system = *this->system;
    auto* const first = this->create();
    auto* const second = this->create();
    EXPECT_EQ(TypeParam::size(system), 2u);
    EXPECT_EQ(first->get_ref(), 0);
    EXPECT_EQ(first->get_parent(), nullptr);
    EXPECT_EQ(TypeParam::by_index(system, 0), first);
    EXPECT_EQ(TypeParam::by_index(system, 1), second);
    EXPECT_EQ(TypeParam::by_id(system, first->get_id()), first);
    EXPECT_EQ(TypeParam::by_id(system, second->get_id()), second);
    EXPECT_EQ(TypeParam::by_id(system, -1), nullptr);
    for (const int beyond :
         {-1, 2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        EXPECT_EQ(TypeParam::by_index(system, beyond), nullptr);
}

TYPED_TEST(ParticleNodes, are_killed_by_id) {
    ParticleSystem& system = *this->system;
    const int id = this->create()->get_id();
    auto* const second = this->create();
    EXPECT_TRUE(TypeParam::kill(system, id));
    EXPECT_EQ(this->ends, 1);
    EXPECT_EQ(TypeParam::size(system), 1u);
    EXPECT_EQ(TypeParam::by_index(system, 0), second);
    EXPECT_FALSE(TypeParam::kill(system, id));
    EXPECT_EQ(this->ends, 1);
}

TYPED_TEST(ParticleNodes, end_with_the_system) {
    this->create();
    this->create();
    this->system.reset();
    EXPECT_EQ(this->ends, 2);
}

TYPED_TEST(ParticleNodes, end_at_terminate_and_can_be_made_anew) {
    ParticleSystem& system = *this->system;
    EXPECT_TRUE(system.initialize(4));
    this->create();
    system.terminate(nullptr);
    EXPECT_EQ(this->ends, 1);
    EXPECT_EQ(TypeParam::size(system), 0u);
    EXPECT_EQ(system.get_particle_pool(), nullptr);
    EXPECT_TRUE(system.initialize(6));
    EXPECT_EQ(system.get_particle_pool()->num_particles, 6u);
    EXPECT_EQ(TypeParam::by_index(system, 0), this->create());
}

TYPED_TEST(ParticleNodes, that_a_host_holds_outlive_the_system) {
    auto* const node = this->create();
    node->add_ref();
    node->add_ref();
    this->system.reset();
    EXPECT_EQ(node->get_ref(), 1);
    EXPECT_EQ(node->release(nullptr, nullptr), 0);
    EXPECT_EQ(this->ends, 1);
}

TYPED_TEST(ParticleNodes, survive_a_direct_delete_of_the_system) {
    auto* const node = this->create();
    delete this->system.release();
    EXPECT_EQ(this->ends, 0);
    node->release(nullptr, nullptr);
    EXPECT_EQ(this->ends, 1);
}

TYPED_TEST(ParticleNodes, that_were_ended_otherwise_are_passed_over) {
    ParticleSystem& system = *this->system;
    EXPECT_TRUE(system.initialize(4));
    auto* const ended = this->create();
    auto* const second = this->create();
    const int id = ended->get_id();
    ended->release(nullptr, nullptr);
    EXPECT_EQ(this->ends, 1);
    EXPECT_TRUE(system.update(0.25f, nullptr));
    EXPECT_EQ(TypeParam::size(system), 2u);
    EXPECT_EQ(TypeParam::by_id(system, id), nullptr);
    EXPECT_EQ(TypeParam::by_index(system, 0), nullptr);
    EXPECT_EQ(TypeParam::by_id(system, second->get_id()), second);
    EXPECT_FALSE(TypeParam::kill(system, id));
    system.terminate(nullptr);
    EXPECT_EQ(this->ends, 2);
}

TYPED_TEST(ParticleNodes, that_a_parent_adopted_end_once_in_either_order) {
    for (const bool with_reference : {true, false}) {
        for (const bool parent_first : {true, false}) {
            this->ends = 0;
            OwnedSystem system(new ParticleSystem);
            Owned<Node> parent(new Node);
            auto* const node = TypeParam::create(*system);
            node->add_child(new EndProbe(this->ends));
            if (with_reference)
                node->add_ref();
            parent->add_child(node);
            if (parent_first)
                parent.reset();
            system.reset();
            parent.reset();
            EXPECT_EQ(this->ends, 1);
        }
    }
}

class ParticleDrawing : public testing::Test {
protected:
    void start(unsigned long count) {
        system = make_system(count);
        renderer.name_pointer(&store(), "store");
        renderer.ignored = {"get_projection_matrix", "get_view_matrix", "get_viewport_ptr",
                            "gl2_matrix_load", "gpu_program_get_active_program"};
    }

    ParticlePool& pool() { return *system->get_particle_pool(); }
    VertexPool& points() { return *pool().vertex_pool; }
    VertexPoolData& store() { return *points().get_vertex_pool_data(); }

    FakeRenderer renderer;
    OwnedSystem system;
};

TEST_F(ParticleDrawing, shows_the_living_one_behind_the_other) {
    start(40);
    set_lives(pool(), {0.0f, 1.0f, -1.0f, 0.25f});
    pool().lifetimes[37] = 0.5f;
    points().set_render_start_offset(3);
    system->vertex_pool_prepare_render();
    EXPECT_EQ(store().render_start_offset, 0);
    EXPECT_EQ(store().render_num_vertices, 3);
    EXPECT_EQ(points().get_vertex_position(0), vec4(pool().positions[1]));
    EXPECT_EQ(points().get_vertex_position(1), vec4(pool().positions[3]));
    EXPECT_EQ(points().get_vertex_position(2), vec4(pool().positions[37]));
    EXPECT_EQ(points().get_vertex_position(3), vec4(0.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(points().get_vertex_color(0), vec4(1.0f, 1.0f, 1.0f, 1.0f));
    EXPECT_EQ(points().get_vertex_color(1), vec4(1.0f, 1.0f, 1.0f, 0.25f));
    EXPECT_EQ(points().get_vertex_color(2), vec4(1.0f, 1.0f, 1.0f, 0.5f));
    EXPECT_TRUE(store().positions_need_update && store().colors_need_update);
    EXPECT_FALSE(store().vertices_need_update);
}

TEST_F(ParticleDrawing, fades_from_birth_to_death) {
    start(1);
    system->set_particle_lifetime(4.0f);
    system->create_emitter()->set_particle_rate(1.0f);
    system->process_particle_emitters(1.0f);
    const auto alpha = [this] {
        system->vertex_pool_prepare_render();
        return points().get_vertex_color(0).w;
    };
    EXPECT_EQ(alpha(), 1.0f);
    system->update_particles_lifetime(1.0f);
    EXPECT_EQ(alpha(), 0.75f);
    pool().lifetimes[0] = std::numeric_limits<float>::denorm_min();
    EXPECT_EQ(alpha(), 0.0f);
}

TEST_F(ParticleDrawing, fades_by_the_lifetime_as_it_is_now) {
    start(1);
    set_lives(pool(), {1.0f});
    system->set_particle_lifetime(2.0f);
    EXPECT_EQ(system->get_particle_lifetime(), 2.0f);
    system->vertex_pool_prepare_render();
    EXPECT_EQ(points().get_vertex_color(0).w, 0.5f);
}

TEST_F(ParticleDrawing, without_living_particles_draws_all_points_as_they_were_last) {
    start(20);
    set_lives(pool(), {1.0f, 1.0f});
    system->vertex_pool_prepare_render();
    store().positions_need_update = false;
    store().colors_need_update = false;
    const vec4 shown = points().get_vertex_position(1);
    set_lives(pool(), {0.0f, 0.0f});
    pool().positions[1] = vec3();
    system->vertex_pool_prepare_render();
    EXPECT_EQ(store().render_num_vertices, 0);
    EXPECT_EQ(points().get_vertex_position(1), shown);
    EXPECT_FALSE(store().positions_need_update || store().colors_need_update);
}

TEST_F(ParticleDrawing, stops_where_a_host_left_no_room) {
    start(40);
    set_lives(pool(), std::vector<float>(40, 1.0f));
    points().init_pool(5, true);
    system->vertex_pool_prepare_render();
    EXPECT_EQ(store().render_num_vertices, 5);
    EXPECT_EQ(points().get_vertex_position(4), vec4(pool().positions[4]));
    points().init_pool(40, false);
    system->vertex_pool_prepare_render();
    EXPECT_EQ(store().render_num_vertices, 0);
    store().init_v2(40, false);
    system->vertex_pool_prepare_render();
    EXPECT_EQ(store().render_num_vertices, 0);
    points()._cleanup(nullptr);
    system->vertex_pool_prepare_render();
    EXPECT_EQ(store().render_num_vertices, 0);
}

TEST_F(ParticleDrawing, writes_the_points_and_then_draws_them) {
    start(20);
    set_lives(pool(), {1.0f});
    system->render(&renderer, nullptr);
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"vertex_pool_render_prepare(store)", "vertex_pool_render_draw(store)",
                     "vertex_pool_render_finish(store)"}));
    EXPECT_EQ(store().render_num_vertices, 1);
}

TEST_F(ParticleDrawing, draws_the_points_as_they_are_without_preparation) {
    start(20);
    set_lives(pool(), {1.0f});
    system->vertex_pool_render(&renderer);
    EXPECT_EQ(renderer.count("vertex_pool_render_draw"), 1);
    EXPECT_EQ(store().render_num_vertices, -1);
}

TEST_F(ParticleDrawing, draws_no_axes_of_the_system_itself) {
    start(20);
    system->set_display_tripod_state(true, nullptr);
    system->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("render_line"), 0);
}

TEST_F(ParticleDrawing, passes_over_a_null_renderer) {
    start(20);
    set_lives(pool(), {1.0f});
    system->render(nullptr, nullptr);
    EXPECT_EQ(store().render_num_vertices, 1);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST_F(ParticleDrawing, passes_over_points_that_a_host_took_away) {
    start(20);
    set_lives(pool(), {1.0f});
    points().release(nullptr, nullptr);
    pool().vertex_pool = nullptr;
    system->render(&renderer, nullptr);
    system->set_opengl_2_3_rendering_states(true, nullptr);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST_F(ParticleDrawing, hands_the_style_of_drawing_on_to_the_points) {
    start(20);
    for (const bool gl2 : {true, false}) {
        system->set_opengl_2_3_rendering_states(gl2, nullptr);
        for (const Object* object :
             {static_cast<Object*>(system.get()), static_cast<Object*>(&points())}) {
            EXPECT_EQ(object->get_use_gl2_vertex_array_state(), gl2);
            EXPECT_EQ(object->get_use_generic_vertex_attribs_state(), !gl2);
            EXPECT_EQ(object->get_use_fixed_mvp_matrices_state(), gl2);
        }
    }
}

TEST_F(ParticleDrawing, hands_the_style_on_to_the_children_and_needs_no_particles_for_it) {
    const OwnedSystem parent(new ParticleSystem);
    Object* const child = new Object;
    parent->add_child(child);
    parent->set_opengl_2_3_rendering_states(false, parent.get());
    EXPECT_FALSE(child->get_use_fixed_mvp_matrices_state());
    EXPECT_FALSE(parent->get_use_fixed_mvp_matrices_state());
}

TEST_F(ParticleDrawing, ends_the_points_with_the_renderer_in_hand) {
    start(20);
    EXPECT_TRUE(system->_cleanup(&renderer));
    EXPECT_EQ(renderer.take_calls(), Calls{"vertex_pool_kill(store)"});
    EXPECT_EQ(system->get_particle_pool(), nullptr);
    EXPECT_TRUE(system->_cleanup(&renderer));
    EXPECT_TRUE(renderer.calls.empty());
}

TEST_F(ParticleDrawing, ends_the_points_of_a_system_that_is_killed) {
    start(20);
    EXPECT_TRUE(system.release()->kill(&renderer, nullptr));
    EXPECT_EQ(renderer.take_calls(), Calls{"vertex_pool_kill(store)"});
}

} // namespace

} // namespace orvex_test
