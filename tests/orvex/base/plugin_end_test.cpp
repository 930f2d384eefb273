#include "orvex/base/private/plugin_end.h"

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace orvex_test {

using namespace orvex;
namespace {

using Address = std::uintptr_t;

std::vector<Address> ended;

void remember(Plugin* plugin) {
    ended.push_back(reinterpret_cast<Address>(plugin));
}

TEST(PluginEnd, is_told_when_the_last_reference_is_released) {
    listen_to_plugin_ends(&remember);
    ended.clear();
    auto* const plugin = new Plugin;
    const auto address = reinterpret_cast<Address>(plugin);
    plugin->add_ref();
    plugin->add_ref();
    plugin->release();
    EXPECT_TRUE(ended.empty());
    plugin->release();
    ASSERT_FALSE(ended.empty());
    for (const Address one : ended)
        EXPECT_EQ(one, address);
}

TEST(PluginEnd, is_told_once_to_a_listener_that_was_added_twice) {
    listen_to_plugin_ends(&remember);
    listen_to_plugin_ends(&remember);
    ended.clear();
    auto* const plugin = new Plugin;
    const auto address = reinterpret_cast<Address>(plugin);
    delete plugin;
    EXPECT_EQ(ended, std::vector<Address>{address});
}

} // namespace
} // namespace orvex_test
