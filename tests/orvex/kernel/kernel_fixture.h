#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/base/plugin_mgr.h"
#include "orvex/kernel/kernel.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

using Lines = std::vector<std::string>;

/// The kernel, stopped and empty before and after each test.
class KernelTest : public testing::Test {
protected:
    ~KernelTest() override {
        kernel->stop();
        kernel->unload_all_plugins();
        kernel->plugin_search_path_clear();
    }

    static std::string who(const Plugin& plugin, const char* separator) {
        return "(" + std::string(plugin.get_name()) + separator + std::to_string(plugin.get_id()) +
               ")";
    }

    LogCapture log;
    Kernel* const kernel = Kernel::get();
    PluginMgr* const registry = PluginMgr::get();
};

} // namespace orvex_test
