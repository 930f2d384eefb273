#include "tests/support/memory_runs_out.h"

#include <cstdio>
#include <cstring>
#include <string>

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

/// Puts the last line of a log into fixed memory.
struct LastLine {
    static void take(const char* line, void* user_data) {
        auto& last = *static_cast<LastLine*>(user_data);
        std::snprintf(last.text, sizeof last.text, "%s", line);
        ++last.count;
    }

    char text[256] = "";
    int count = 0;
};

TEST(LogMemory, a_line_without_memory_is_dropped_and_leaves_a_gap) {
    Log log;
    LastLine last;
    log.enable();
    log.set_trace_callback(LastLine::take, &last);
    {
        const RefuseArrays none({.single = true});
        log.trace(LOG_LEVEL_INFO, "a line that is longer than a string holds in itself");
        log.tracef(LOG_LEVEL_INFO, "%s", "formatted");
        log.simple_trace(LOG_LEVEL_INFO, "a line that is longer than a string holds in itself");
        EXPECT_EQ(last.count, 0);
    }
    log.trace(LOG_LEVEL_INFO, "seen");
    EXPECT_EQ(last.count, 1);
    EXPECT_TRUE(std::strstr(last.text, "(0000000003) < > seen")) << last.text;
}

TEST(LogMemory, the_memory_of_a_very_long_line_is_given_back) {
    constexpr std::size_t very_long = 1u << 20;
    const std::string text(very_long, 'x');
    Log log;
    log.enable();
    log.trace(LOG_LEVEL_INFO, text.c_str());
    const CountAllocations count(very_long);
    log.trace(LOG_LEVEL_INFO, text.c_str());
    EXPECT_EQ(count.count(), 1u) << "taken anew";
}

TEST(LogMemory, the_memory_of_a_line_is_lent_to_the_next) {
    Log log;
    log.enable();
    const std::string text(60000, 'x');
    log.trace(LOG_LEVEL_INFO, text.c_str());
    const CountAllocations count;
    log.trace(LOG_LEVEL_INFO, text.c_str());
    EXPECT_EQ(count.count(), 0u);
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
