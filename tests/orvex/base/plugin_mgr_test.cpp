#include "orvex/base/plugin_mgr.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;
namespace {

constexpr auto some_type = static_cast<PLUGIN_TYPE>(9);
constexpr auto other_type = static_cast<PLUGIN_TYPE>(10);

/// Writes what happens to it into a list.
class Recorder : public Plugin {
public:
    Recorder(std::vector<std::string>& events, const char* name)
        : events(events) {
        set_name(name);
        set_type(some_type);
    }
    ~Recorder() override { events.push_back(std::string(get_name()) + " ends"); }

    bool stop() override {
        events.push_back(std::string(get_name()) + " stops, " +
                         std::to_string(PluginMgr::get()->get_num_plugins()) + " registered");
        return true;
    }
    bool terminate() override {
        events.push_back(std::string(get_name()) + " terminates");
        return true;
    }

private:
    std::vector<std::string>& events;
};

class PluginMgrTest : public testing::Test {
protected:
    ~PluginMgrTest() override { mgr->unload_all_plugins(); }

    Recorder* insert(const char* name) {
        auto* const plugin = new Recorder(events, name);
        EXPECT_TRUE(mgr->insert_plugin(plugin));
        return plugin;
    }

    static std::string text(const char* before, const char* name, int id, const char* after) {
        return std::string(before) + name + " (" + std::to_string(id) + after;
    }

    std::vector<std::string> events;
    PluginMgr* const mgr = PluginMgr::get();
};

using Events = std::vector<std::string>;

TEST_F(PluginMgrTest, is_one_per_process_and_starts_out_empty) {
    EXPECT_EQ(PluginMgr::get(), mgr);
    EXPECT_EQ(mgr->get_num_plugins(), 0u);
    EXPECT_EQ(mgr->get_plugin_by_index(0), nullptr);
    EXPECT_EQ(mgr->get_plugin(2), nullptr);
    EXPECT_EQ(mgr->unload_all_plugins(), 0);
}

TEST_F(PluginMgrTest, holds_one_reference_on_each_plugin_in_order) {
    Plugin* const a = insert("a");
    Plugin* const b = insert("b");
    EXPECT_EQ(a->get_ref(), 1);
    EXPECT_EQ(mgr->get_num_plugins(), 2u);
    EXPECT_EQ(mgr->get_plugin_by_index(0), a);
    EXPECT_EQ(mgr->get_plugin_by_index(1), b);
    EXPECT_EQ(mgr->get_plugin_by_index(2), nullptr);
    EXPECT_EQ(mgr->get_plugin(b->get_id()), b);
    EXPECT_FALSE(mgr->insert_plugin(nullptr));
    EXPECT_EQ(mgr->get_num_plugins(), 2u);
}

TEST_F(PluginMgrTest, removes_without_destroying) {
    Plugin* const a = insert("a");
    Plugin* const b = insert("b");
    Plugin* const c = insert("c");
    EXPECT_EQ(mgr->remove_plugin(b), 1);
    EXPECT_EQ(b->get_ref(), 0);
    EXPECT_EQ(mgr->get_plugin_by_index(0), a);
    EXPECT_EQ(mgr->get_plugin_by_index(1), c);
    EXPECT_EQ(mgr->remove_plugin(b), 0);
    EXPECT_EQ(mgr->remove_plugin(nullptr), -1);
    EXPECT_TRUE(events.empty());
    b->release();
}

TEST_F(PluginMgrTest, finds_plugins_by_type_in_order) {
    Plugin* const a = insert("a");
    Plugin* const b = insert("b");
    Plugin* const c = insert("c");
    b->set_type(other_type);
    EXPECT_EQ(mgr->get_num_plugins_by_type(some_type), 2u);
    EXPECT_EQ(mgr->get_num_plugins_by_type(other_type), 1u);
    EXPECT_EQ(mgr->get_num_plugins_by_type(PLUGIN_TYPE_RENDERER), 0u);
    EXPECT_EQ(mgr->get_plugin_by_type(some_type, 0), a);
    EXPECT_EQ(mgr->get_plugin_by_type(some_type, 1), c);
    EXPECT_EQ(mgr->get_plugin_by_type(some_type, 2), nullptr);
    EXPECT_EQ(mgr->get_plugin_by_type(other_type, 0), b);
    EXPECT_EQ(mgr->get_plugin_by_type(other_type, 1), nullptr);
    EXPECT_EQ(mgr->get_plugin_by_type(PLUGIN_TYPE_RENDERER, 0), nullptr);
}

TEST_F(PluginMgrTest, keeps_the_current_directory_as_given) {
    mgr->set_current_plugin_dir("some/dir/");
    EXPECT_STREQ(mgr->get_current_plugin_dir(), "some/dir/");
    mgr->set_current_plugin_dir(nullptr);
    EXPECT_STREQ(mgr->get_current_plugin_dir(), "");
}

TEST_F(PluginMgrTest, unload_removes_stops_terminates_and_ends_a_plugin) {
    LogCapture log;
    const int id = insert("a")->get_id();
    EXPECT_EQ(mgr->unload_plugin(id), 0);
    EXPECT_EQ(events, (Events{"a stops, 0 registered", "a terminates", "a ends"}));
    EXPECT_EQ(log.messages(), Events{text("<o> plugin ", "a", id, ") unloaded.")});
}

TEST_F(PluginMgrTest, unload_ends_a_plugin_that_its_host_holds_once) {
    Plugin* const a = insert("a");
    a->add_ref();
    EXPECT_EQ(mgr->unload_plugin(a), 0);
    EXPECT_EQ(events.back(), "a ends");
}

TEST_F(PluginMgrTest, unload_leaves_a_plugin_with_more_references_alive) {
    LogCapture log;
    Plugin* const a = insert("a");
    a->add_ref();
    a->add_ref();
    EXPECT_EQ(mgr->unload_plugin(a), 1);
    EXPECT_EQ(log.messages(), Events{text("<o> plugin ", "a", a->get_id(),
                                          ") not unloaded: still referenced (1).")});
    EXPECT_EQ(mgr->get_num_plugins(), 0u);
    a->release();
}

TEST_F(PluginMgrTest, unload_of_null_or_an_unknown_id_is_minus_1) {
    EXPECT_EQ(mgr->unload_plugin(nullptr), -1);
    EXPECT_EQ(mgr->unload_plugin(1), -1);
}

TEST_F(PluginMgrTest, unload_forgets_every_entry_of_a_plugin_that_ends) {
    Plugin* const a = insert("a");
    mgr->insert_plugin(a);
    EXPECT_EQ(a->get_ref(), 2);
    EXPECT_EQ(mgr->unload_plugin(a), 0);
    EXPECT_EQ(mgr->get_num_plugins(), 0u);
}

TEST_F(PluginMgrTest, a_plugin_that_ends_elsewhere_leaves_the_registry) {
    Plugin* const a = insert("a");
    Plugin* const b = insert("b");
    EXPECT_EQ(a->release(), 0);
    EXPECT_EQ(mgr->get_num_plugins(), 1u);
    EXPECT_EQ(mgr->get_plugin_by_index(0), b);
}

TEST_F(PluginMgrTest, unloads_the_plugins_of_one_type_in_order) {
    insert("a");
    Plugin* const b = insert("b");
    insert("c");
    b->set_type(other_type);
    EXPECT_EQ(mgr->unload_plugins_by_type(some_type), 2);
    EXPECT_EQ(events, (Events{"a stops, 2 registered", "a terminates", "a ends",
                              "c stops, 1 registered", "c terminates", "c ends"}));
    EXPECT_EQ(mgr->unload_plugins_by_type(some_type), 0);
    EXPECT_EQ(mgr->get_plugin_by_index(0), b);
}

TEST_F(PluginMgrTest, unloads_a_plugin_of_a_type_once_though_it_is_inserted_twice) {
    Plugin* const a = insert("a");
    mgr->insert_plugin(a);
    EXPECT_EQ(mgr->unload_plugins_by_type(some_type), 1);
    EXPECT_EQ(events.size(), 3u);
}

TEST_F(PluginMgrTest, unload_all_goes_from_first_to_last) {
    LogCapture log;
    const int a = insert("a")->get_id();
    const int b = insert("b")->get_id();
    EXPECT_EQ(mgr->unload_all_plugins(), 2);
    EXPECT_EQ(events, (Events{"a stops, 2 registered", "a terminates", "a ends",
                              "b stops, 1 registered", "b terminates", "b ends"}));
    EXPECT_EQ(log.messages(), (Events{text("<o> plugin ", "a", a, ") unloaded."),
                                      text("<o> plugin ", "b", b, ") unloaded.")}));
    EXPECT_EQ(mgr->get_num_plugins(), 0u);
}

TEST_F(PluginMgrTest, unload_all_leaves_a_referenced_plugin_alive_but_unregistered) {
    LogCapture log;
    Plugin* const a = insert("a");
    insert("b");
    a->add_ref();
    EXPECT_EQ(mgr->unload_all_plugins(), 1);
    EXPECT_EQ(log.messages().front(),
              text("<o> Plugin ", "a", a->get_id(), ") not unloaded: still referenced (1)."));
    EXPECT_EQ(mgr->get_num_plugins(), 0u);
    EXPECT_EQ(a->get_ref(), 1);
    a->release();
}

TEST_F(PluginMgrTest, unload_all_ends_a_plugin_that_was_inserted_twice_at_its_second_turn) {
    Plugin* const a = insert("a");
    insert("b");
    mgr->insert_plugin(a);
    EXPECT_EQ(mgr->unload_all_plugins(), 2);
    EXPECT_EQ(events, (Events{"a stops, 3 registered", "a terminates", "b stops, 2 registered",
                              "b terminates", "b ends", "a stops, 1 registered", "a terminates",
                              "a ends"}));
}

/// A plugin that does something about itself in its own `stop`.
class SelfWilled : public Recorder {
public:
    using Recorder::Recorder;

    bool stop() override {
        Recorder::stop();
        act(this);
        return true;
    }

    void (*act)(Plugin*) = nullptr;
};

class SelfWilledPluginTest : public PluginMgrTest {
protected:
    /// Inserts a plugin that acts so, and another behind it.
    void insert_two(void (*act)(Plugin*)) {
        auto* const first = new SelfWilled(events, "a");
        first->act = act;
        mgr->insert_plugin(first);
        insert("b");
    }
};

TEST_F(SelfWilledPluginTest, one_that_leaves_in_its_stop_is_unloaded_and_takes_no_other_along) {
    insert_two([](Plugin* plugin) { PluginMgr::get()->remove_plugin(plugin); });
    EXPECT_EQ(mgr->unload_all_plugins(), 2);
    EXPECT_EQ(events, (Events{"a stops, 2 registered", "a terminates", "a ends",
                              "b stops, 1 registered", "b terminates", "b ends"}));
}

TEST_F(SelfWilledPluginTest, one_that_leaves_in_its_stop_may_be_the_last) {
    auto* const only = new SelfWilled(events, "a");
    only->act = [](Plugin* plugin) { PluginMgr::get()->remove_plugin(plugin); };
    mgr->insert_plugin(only);
    EXPECT_EQ(mgr->unload_all_plugins(), 1);
    EXPECT_EQ(events, (Events{"a stops, 1 registered", "a terminates", "a ends"}));
}

TEST_F(SelfWilledPluginTest, one_that_ends_in_its_stop_is_not_touched_again) {
    insert_two([](Plugin* plugin) { plugin->release(); });
    EXPECT_EQ(mgr->unload_all_plugins(), 2);
    EXPECT_EQ(events, (Events{"a stops, 2 registered", "a ends", "b stops, 1 registered",
                              "b terminates", "b ends"}));
}

TEST_F(SelfWilledPluginTest, one_that_ends_in_its_stop_may_be_unloaded_alone) {
    insert_two([](Plugin* plugin) { plugin->release(); });
    EXPECT_EQ(mgr->unload_plugin(mgr->get_plugin_by_index(0)), 0);
    EXPECT_EQ(events, (Events{"a stops, 1 registered", "a ends"}));
    EXPECT_EQ(mgr->get_num_plugins(), 1u);
}

} // namespace
} // namespace orvex_test
