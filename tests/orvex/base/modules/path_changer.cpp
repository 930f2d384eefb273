// A module that adds a directory to the search path instead of building a plugin.

#include <cstdlib>

#include "orvex/base/plugin.h"
#include "orvex/kernel/kernel.h"

orvex::Plugin* orvex_create_plugin() {
    orvex::Kernel::get()->plugin_search_path_add_dir(std::getenv("ORVEX_TEST_ADDED_DIR"));
    return nullptr;
}

void orvex_destroy_plugin(orvex::Plugin*) {}
