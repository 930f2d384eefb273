#include "orvex/scene/resource_mgr.h"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/base/thread.h"
#include "orvex/scene/resource.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

namespace {

using orvex::Node;
using orvex::Renderer;
using orvex::Resource;
using orvex::ResourceMgr;
using orvex_test::FakeRenderer;

/// Counts its clean-ups and deaths, and runs what a test wants while it ends.
class TestResource : public Resource {
public:
    explicit TestResource(const char* name = "resource") { set_name(name); }
    ~TestResource() override {
        if (died)
            *died = true;
    }
    bool _cleanup(Renderer* renderer) override {
        if (at_cleanup)
            at_cleanup(renderer);
        return Resource::_cleanup(renderer);
    }

    bool* died = nullptr;
    std::function<void(Renderer*)> at_cleanup;
};

/// A manager that lets everything go at the end of its test.
struct TestMgr : ResourceMgr {
    ~TestMgr() override { stop(nullptr); }
};

std::vector<std::string> names(const ResourceMgr& manager) {
    std::vector<std::string> all;
    for (unsigned long i = 0; i < manager.get_num_resources(); ++i)
        all.emplace_back(manager.get_resource_by_index(i)->get_name());
    return all;
}

using Names = std::vector<std::string>;

TEST(Resource, carries_its_tag_above_the_nodes) {
    Resource resource;
    EXPECT_EQ(resource.get_type(), orvex::NODE_TYPE_RESOURCE);
    EXPECT_TRUE(resource.is_type_of(orvex::NODE_TYPE_NODE));
    EXPECT_FALSE(resource.is_type_of(orvex::NODE_TYPE_OBJECT));
}

TEST(Resource, one_that_ends_leaves_every_manager_that_lists_it) {
    TestMgr first;
    TestMgr second;
    Resource* resource = new TestResource;
    first.add_resource(resource);
    second.add_resource(resource);
    EXPECT_EQ(resource->release(nullptr, nullptr), 1);
    EXPECT_EQ(resource->release(nullptr, nullptr), 0);
    EXPECT_EQ(first.get_num_resources(), 0u);
    EXPECT_EQ(second.get_num_resources(), 0u);
}

TEST(Resource, outlives_a_manager_that_is_destroyed) {
    Resource* resource = new TestResource;
    {
        ResourceMgr manager;
        manager.add_resource(resource);
    }
    EXPECT_EQ(resource->get_ref(), 1);
    EXPECT_EQ(resource->release(nullptr, nullptr), 0);
}

TEST(ResourceMgr, start_and_stop_of_an_empty_manager_return_true) {
    ResourceMgr manager;
    FakeRenderer renderer;
    EXPECT_TRUE(manager.start(&renderer));
    EXPECT_TRUE(manager.start(nullptr));
    EXPECT_TRUE(manager.stop(nullptr));
    EXPECT_TRUE(manager.stop(&renderer));
    EXPECT_TRUE(renderer.calls.empty());
}

TEST(ResourceMgr, stop_runs_the_virtual_release_of_all) {
    struct Counting : ResourceMgr {
        bool release_all_resources(Renderer* renderer, orvex::Thread* thread) override {
            ++calls;
            seen = renderer;
            EXPECT_EQ(thread, nullptr);
            return false;
        }
        int calls = 0;
        Renderer* seen = nullptr;
    } manager;
    FakeRenderer renderer;
    EXPECT_TRUE(manager.stop(&renderer));
    EXPECT_EQ(manager.calls, 1);
    EXPECT_EQ(manager.seen, &renderer);
}

TEST(ResourceMgr, adding_twice_keeps_one_entry_and_one_reference) {
    TestMgr manager;
    Resource* resource = new TestResource;
    EXPECT_TRUE(manager.add_resource(resource));
    EXPECT_TRUE(manager.add_resource(resource));
    EXPECT_EQ(manager.get_num_resources(), 1u);
    EXPECT_EQ(resource->get_ref(), 1);
    EXPECT_FALSE(manager.add_resource(nullptr));
}

TEST(ResourceMgr, finds_by_pointer_id_name_and_index) {
    TestMgr manager;
    Resource* first = new TestResource("same");
    Resource* second = new TestResource("same");
    manager.add_resource(first);
    manager.add_resource(second);
    Resource stranger;

    EXPECT_TRUE(manager.has_resource(second));
    EXPECT_FALSE(manager.has_resource(&stranger));
    EXPECT_FALSE(manager.has_resource(nullptr));
    EXPECT_TRUE(manager.has_resource(second->get_id()));
    EXPECT_FALSE(manager.has_resource(0));
    EXPECT_EQ(manager.get_resource(second->get_id()), second);
    EXPECT_EQ(manager.get_resource(stranger.get_id()), nullptr);
    EXPECT_EQ(manager.get_resource("same"), first);
    EXPECT_EQ(manager.get_resource("sam"), nullptr);
    EXPECT_EQ(manager.get_resource("samey"), nullptr);
    EXPECT_EQ(manager.get_resource(nullptr), nullptr);
    EXPECT_EQ(manager.get_resource_by_index(1), second);
    EXPECT_EQ(manager.get_resource_by_index(2), nullptr);
}

struct RuleRow {
    const char* name;
    int owner; ///< renderer id of the resource; -1 stands for the renderer that asks
    bool with_renderer;
    bool released;
};

const RuleRow rule_rows[] = {
    {"no owner, no renderer", 0, false, true},    {"no owner, some renderer", 0, true, true},
    {"an owner below 1 is none", -5, true, true}, {"owned by the one that asks", -1, true, true},
    {"owned by another", 1, true, false},         {"owned by another, no renderer", 1, false, true},
};

class RendererRule : public testing::TestWithParam<RuleRow> {
protected:
    RendererRule() {
        const RuleRow& row = GetParam();
        resource->died = &died;
        resource->set_renderer_id(row.owner == -1 ? renderer.getid() : row.owner);
    }
    Renderer* asking() { return GetParam().with_renderer ? &renderer : nullptr; }

    FakeRenderer renderer;
    bool died = false;
    TestMgr manager;
    TestResource* resource = new TestResource;
};

TEST_P(RendererRule, release_resource_follows_it_and_keeps_what_stays) {
    manager.add_resource(resource);
    EXPECT_EQ(manager.release_resource(asking(), resource, nullptr), 0);
    EXPECT_EQ(died, GetParam().released);
    EXPECT_EQ(manager.get_num_resources(), GetParam().released ? 0u : 1u);
}

TEST_P(RendererRule, release_resource_follows_it_for_one_in_no_manager) {
    EXPECT_EQ(manager.release_resource(asking(), resource, nullptr), 0);
    EXPECT_EQ(died, GetParam().released);
    if (!died)
        resource->release(nullptr, nullptr);
}

TEST_P(RendererRule, release_all_resources_follows_it) {
    manager.add_resource(resource);
    EXPECT_TRUE(manager.release_all_resources(asking(), nullptr));
    EXPECT_EQ(died, GetParam().released);
    EXPECT_EQ(manager.get_num_resources(), GetParam().released ? 0u : 1u);
}

TEST_P(RendererRule, remove_resource_drops_the_entry_and_follows_it_for_the_reference) {
    manager.add_resource(resource);
    EXPECT_TRUE(manager.remove_resource(asking(), resource));
    EXPECT_EQ(manager.get_num_resources(), 0u);
    EXPECT_EQ(died, GetParam().released);
    if (died)
        return;
    EXPECT_EQ(resource->get_ref(), 1);
    resource->release(nullptr, nullptr);
}

TEST_P(RendererRule, remove_resource_follows_it_for_one_in_no_manager) {
    EXPECT_TRUE(manager.remove_resource(asking(), resource));
    EXPECT_EQ(died, GetParam().released);
    if (!died)
        resource->release(nullptr, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Rows, RendererRule, testing::ValuesIn(rule_rows),
                         [](const testing::TestParamInfo<RuleRow>& row) {
                             std::string name = row.param.name;
                             for (char& letter : name)
                                 if (letter == ' ' || letter == ',')
                                     letter = '_';
                             return name;
                         });

TEST(ResourceMgr, the_rule_asks_the_virtual_renderer_id) {
    struct Uploaded : TestResource {
        int get_renderer_id() override { return 77; }
    };
    FakeRenderer renderer;
    TestMgr manager;
    Resource* resource = new Uploaded;
    resource->set_renderer_id(renderer.getid());
    manager.add_resource(resource);
    ASSERT_NE(renderer.getid(), 77);
    EXPECT_EQ(manager.release_resource(&renderer, resource, nullptr), 0);
    EXPECT_TRUE(manager.has_resource(resource));
}

TEST(ResourceMgr, null_is_released_and_removed_by_nothing) {
    ResourceMgr manager;
    EXPECT_EQ(manager.release_resource(nullptr, nullptr, nullptr), 0);
    EXPECT_FALSE(manager.remove_resource(nullptr, nullptr));
}

TEST(ResourceMgr, a_released_resource_held_elsewhere_leaves_the_list_and_lives) {
    TestMgr manager;
    Resource* resource = new TestResource;
    manager.add_resource(resource);
    resource->add_ref();
    EXPECT_EQ(manager.release_resource(nullptr, resource, nullptr), 1);
    EXPECT_FALSE(manager.has_resource(resource));
    resource->release(nullptr, nullptr);
}

TEST(ResourceMgr, release_hands_the_renderer_on_and_releases_the_children) {
    FakeRenderer renderer;
    TestMgr manager;
    TestResource* resource = new TestResource;
    TestResource* child = new TestResource;
    Renderer* seen = nullptr;
    bool child_died = false;
    resource->at_cleanup = [&](Renderer* given) { seen = given; };
    child->died = &child_died;
    resource->add_child(child);
    manager.add_resource(resource);
    manager.release_resource(&renderer, resource, nullptr);
    EXPECT_EQ(seen, &renderer);
    EXPECT_TRUE(child_died);
}

TEST(ResourceMgr, removing_from_the_middle_keeps_the_order) {
    TestMgr manager;
    Resource* middle = new TestResource("b");
    manager.add_resource(new TestResource("a"));
    manager.add_resource(middle);
    manager.add_resource(new TestResource("c"));
    manager.remove_resource(nullptr, middle);
    EXPECT_EQ(names(manager), (Names{"a", "c"}));
}

TEST(ResourceMgr, what_stays_after_release_all_keeps_its_order) {
    FakeRenderer renderer;
    TestMgr manager;
    for (const char* name : {"a", "b", "c", "d", "e"}) {
        Resource* resource = new TestResource(name);
        const bool foreign = *name == 'b' || *name == 'd' || *name == 'e';
        resource->set_renderer_id(foreign ? renderer.getid() + 1 : 0);
        manager.add_resource(resource);
    }
    EXPECT_TRUE(manager.release_all_resources(&renderer, nullptr));
    EXPECT_EQ(names(manager), (Names{"b", "d", "e"}));
    EXPECT_TRUE(manager.release_all_resources(nullptr, nullptr));
    EXPECT_EQ(manager.get_num_resources(), 0u);
}

TEST(ResourceMgr, release_all_also_drops_what_someone_else_still_holds) {
    TestMgr manager;
    Resource* resource = new TestResource;
    manager.add_resource(resource);
    resource->add_ref();
    manager.release_all_resources(nullptr, nullptr);
    EXPECT_EQ(manager.get_num_resources(), 0u);
    EXPECT_EQ(resource->get_ref(), 1);
    EXPECT_EQ(resource->release(nullptr, nullptr), 0);
}

TEST(ResourceMgr, release_all_survives_entries_that_end_others) {
    TestMgr manager;
    TestResource* first = new TestResource("first");
    TestResource* second = new TestResource("second");
    TestResource* third = new TestResource("third");
    for (Resource* resource : {first, second, third})
        manager.add_resource(resource);
    second->at_cleanup = [&](Renderer*) {
        manager.release_resource(nullptr, third, nullptr);
        manager.add_resource(new TestResource("late"));
    };
    EXPECT_TRUE(manager.release_all_resources(nullptr, nullptr));
    EXPECT_EQ(names(manager), std::vector<std::string>{"late"}) << "it came after the walk began";
}

TEST(ResourceMgr, release_all_ends_though_each_end_brings_another) {
    TestMgr manager;
    constexpr int most = 100;
    int made = 0;
    const std::function<void(Renderer*)> make_another = [&](Renderer*) {
        if (++made >= most)
            return;
        auto* const another = new TestResource("another");
        another->at_cleanup = make_another;
        manager.add_resource(another);
    };
    make_another(nullptr);
    EXPECT_TRUE(manager.release_all_resources(nullptr, nullptr));
    EXPECT_EQ(made, 2);
    EXPECT_EQ(manager.get_num_resources(), 1u);
    made = most;
}

TEST(ResourceMgr, look_ups_work_while_release_all_runs) {
    TestMgr manager;
    TestResource* first = new TestResource("first");
    TestResource* second = new TestResource("second");
    manager.add_resource(first);
    manager.add_resource(second);
    Resource* gone = second;
    Resource* found = nullptr;
    second->at_cleanup = [&](Renderer*) {
        gone = manager.get_resource("first");
        found = manager.get_resource("second");
    };
    manager.release_all_resources(nullptr, nullptr);
    EXPECT_EQ(gone, nullptr);
    EXPECT_EQ(found, second);
}

TEST(ResourceMgr, release_all_may_run_inside_itself) {
    TestMgr manager;
    TestResource* first = new TestResource("first");
    manager.add_resource(first);
    manager.add_resource(new TestResource("second"));
    first->at_cleanup = [&](Renderer*) { manager.release_all_resources(nullptr, nullptr); };
    EXPECT_TRUE(manager.release_all_resources(nullptr, nullptr));
    EXPECT_EQ(manager.get_num_resources(), 0u);
}

TEST(ResourceMgr, the_thread_argument_is_not_read) {
    TestMgr manager;
    Resource* resource = new TestResource;
    manager.add_resource(resource);
    orvex::Thread thread;
    EXPECT_EQ(manager.release_resource(nullptr, resource, &thread), 0);
    EXPECT_TRUE(manager.release_all_resources(nullptr, &thread));
}

} // namespace

} // namespace orvex_test
