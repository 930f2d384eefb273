/// @file
/// What scenes and nodes leave behind when memory runs out: nothing.

#include "orvex/scene/light.h"
#include "orvex/scene/scene.h"
#include "orvex/scene/scene_mgr.h"
#include "tests/support/memory_runs_out.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(SceneMemory, a_light_that_cannot_be_made_leaves_nothing) {
    const auto make_and_end = [] { (new Light)->kill(nullptr, nullptr); };
    make_and_end();
    EXPECT_GE(refuse_each_block(make_and_end, [] {}), 5u);
}

TEST(SceneMemory, a_light_whose_names_find_no_memory_leaves_nothing) {
    const long before = living_blocks();
    for (unsigned long granted = 0; granted < 5; ++granted) {
        const RefuseArrays refusal({.granted = granted, .refused = 1});
        EXPECT_THROW((new Light)->kill(nullptr, nullptr), std::bad_alloc) << granted;
    }
    EXPECT_EQ(living_blocks(), before);
}

TEST(SceneMemory, a_scene_that_cannot_be_made_leaves_nothing) {
    SceneMgr* const scenes = SceneMgr::get();
    const unsigned long count = scenes->get_num_scenes();
    // The list grows now and then: the scene is there, and its entry isn't.
    for (unsigned long made = 1; made <= 20; ++made) {
        const auto make = [&] { EXPECT_TRUE(scenes->create_scene()); };
        EXPECT_GE(
            refuse_each_block(make, [&] { EXPECT_EQ(scenes->get_num_scenes(), count + made - 1); }),
            4u);
        EXPECT_EQ(scenes->get_num_scenes(), count + made) << "the next try works";
    }
    EXPECT_TRUE(scenes->kill_all_scenes(nullptr));
}

TEST(SceneMemory, a_child_that_finds_no_entry_is_not_referenced) {
    Node* const parent = new Node;
    for (unsigned long number = 0; number < 20; ++number) {
        Node* const child = new Node;
        refuse_each_block([&] { parent->add_child(child); },
                          [&] {
                              EXPECT_EQ(parent->get_num_children(), number);
                              EXPECT_EQ(child->get_ref(), 0);
                              EXPECT_FALSE(child->get_parent());
                          });
        EXPECT_EQ(child->get_ref(), 1);
    }
    parent->kill(nullptr, nullptr);
}

} // namespace
} // namespace orvex_test
