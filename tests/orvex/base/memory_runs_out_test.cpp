#include "tests/support/memory_runs_out.h"

#include <dlfcn.h>

#include "orvex/base/log_mgr.h"
#include "orvex/base/owned_text.h"
#include "orvex/base/plugin_mgr.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(LogMemory, a_log_that_cannot_be_made_leaves_nothing) {
    LogMgr* const logs = LogMgr::get();
    const char name[] = "a name that is longer than a string holds in itself";
    ASSERT_TRUE(logs->kill_log(logs->create_log(name, true)));
    Log* log = nullptr;
    const unsigned long refused =
        refuse_each_block([&] { log = logs->create_log(name, true); }, [&] { EXPECT_FALSE(log); });
    EXPECT_GE(refused, 4u) << "the log, its record, its name, its entry";
    EXPECT_TRUE(logs->kill_log(log));
}

TEST(PluginMemory, a_plugin_that_cannot_be_made_leaves_nothing) {
    delete new Plugin;
    const unsigned long refused = refuse_each_block([] { delete new Plugin; }, [] {});
    EXPECT_GE(refused, 3u) << "the plugin, its record, its lock";
}

TEST(PluginMemory, a_plugin_that_finds_no_entry_is_not_referenced) {
    PluginMgr* const registry = PluginMgr::get();
    Plugin plugin;
    unsigned long refused = 0;
    // The list grows by and by.
    unsigned long i = 0;
    for (; refused == 0 && i < 10000; ++i)
        refused += refuse_each_block([&] { registry->insert_plugin(&plugin); },
                                     [&] {
                                         EXPECT_EQ(registry->get_num_plugins(), i);
                                         EXPECT_EQ(plugin.get_ref(), static_cast<int>(i));
                                     });
    EXPECT_EQ(refused, 1u);
    EXPECT_EQ(plugin.get_ref(), static_cast<int>(i));
}

TEST(PluginMemory, a_module_whose_plugin_cannot_be_made_is_closed) {
    PluginMgr* const registry = PluginMgr::get();
    const char file[] = ORVEX_TEST_MODULE_DIR "/good.so";
    const int first = registry->load_plugin(file, true);
    ASSERT_GT(first, 0);
    EXPECT_EQ(registry->unload_plugin(first), 0);
    int id = -1;
    const unsigned long refused =
        refuse_each_block([&] { id = registry->load_plugin(file, true); },
                          [&] {
                              EXPECT_EQ(registry->get_num_plugins(), 0u);
                              EXPECT_FALSE(dlopen(file, RTLD_LAZY | RTLD_NOLOAD));
                          });
    EXPECT_GE(refused, 3u);
    EXPECT_GT(id, 0) << "the next try works";
    EXPECT_EQ(registry->unload_plugin(id), 0);
}

TEST(TextMemory, a_text_that_cannot_be_copied_stays_as_it_was) {
    OwnedText text;
    text.assign("before");
    const RefuseArrays refusal({});
    EXPECT_THROW(text.assign("after"), std::bad_alloc);
    EXPECT_STREQ(text.get(), "before");
}

} // namespace
} // namespace orvex_test
