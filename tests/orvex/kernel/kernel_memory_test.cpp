#include "tests/support/memory_runs_out.h"

#include "orvex/base/plugin_mgr.h"
#include "orvex/kernel/kernel.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// Adds a built-in plugin, and takes it out again.
void add_and_unload(bool (Kernel::*add)()) {
    (Kernel::get()->*add)();
    Kernel::get()->unload_all_plugins();
}

TEST(KernelMemory, a_built_in_plugin_that_finds_no_place_ends) {
    for (const auto add :
         {&Kernel::load_core_image_codec_plugins, &Kernel::load_core_loader3d_plugins}) {
        add_and_unload(add);
        const PluginMgr* const registry = PluginMgr::get();
        const unsigned long refused =
            refuse_each_block([&] { (Kernel::get()->*add)(); },
                              [&] {
                                  // A loader that came before the one that failed is complete.
                                  for (unsigned long i = 0; i < registry->get_num_plugins(); ++i)
                                      EXPECT_EQ(registry->get_plugin_by_index(i)->get_ref(), 1);
                                  Kernel::get()->unload_all_plugins();
                              });
        EXPECT_GE(refused, 3u);
        EXPECT_GE(registry->get_num_plugins(), 1u) << "the next try works";
        Kernel::get()->unload_all_plugins();
    }
}

} // namespace
} // namespace orvex_test
