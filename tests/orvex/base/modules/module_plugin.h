#pragma once

#include "orvex/base/log_mgr.h"
#include "orvex/base/plugin.h"

namespace orvex_test {

using namespace orvex;

constexpr auto module_plugin_type = static_cast<PLUGIN_TYPE>(7);

/// A plugin that tells the log when it is destroyed.
class ModulePlugin : public Plugin {
public:
    ModulePlugin() {
        set_name("module_plugin");
        set_description("From a module");
        set_author("orvex");
        set_type(module_plugin_type);
    }
    ~ModulePlugin() override { LogMgr::get()->simple_trace("module plugin destroyed"); }
};

} // namespace orvex_test
