#include "tests/support/memory_runs_out.h"

#include <string>

#include "orvex/assets/materials/material_mgr.h"
#include "orvex/base/plugin_mgr.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/kernel/kernel.h"
#include "tests/support/temp_dir.h"

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

TEST(KernelMemory, a_model_whose_load_finds_none_leaves_nothing) {
    const TempDir dir;
    dir.write("m.mtl", "newmtl red\nKd 1 0 0\nmap_Kd a_name_beyond_what_a_string_holds.png\n");
    dir.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\ng a_group_of_some_length\n"
                       "usemtl red\nf 1 2 3\ng another_group_of_some_length\nf 1 3 2\n");
    const std::string folder = dir.path() + "/";
    Kernel& kernel = *Kernel::get();
    kernel.load_core_loader3d_plugins();
    const auto load = [&] {
        return kernel.load_model_from_file_obj("m.obj", folder.c_str(), folder.c_str());
    };
    const auto end = [](Model* model) {
        model->kill(nullptr, nullptr);
        MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    };
    Model* model = load();
    ASSERT_NE(model, nullptr);
    end(model);
    unsigned long refused = 0;
    // The first array is the file, the second its library, which only costs the colours.
    constexpr unsigned long behind_the_files = 2;
    for (const bool single : {true, false}) {
        model = nullptr;
        for (unsigned long n = single ? 0 : behind_the_files; !model; ++n) {
            ASSERT_LT(n, 10000u);
            const long before = living_blocks();
            {
                const RefuseArrays refusal({.granted = n, .refused = 1, .single = single});
                EXPECT_NO_THROW(model = load()) << n;
            }
            if (model)
                break;
            ++refused;
            EXPECT_EQ(living_blocks(), before) << "after block " << n;
            EXPECT_EQ(MaterialMgr::get()->get_num_resources(), 0u) << n;
            EXPECT_STRNE(kernel.get_load_failure_reason(), "") << n;
        }
        EXPECT_EQ(model->get_num_children(), 2u);
        end(model);
    }
    EXPECT_GT(refused, 50u);
    kernel.unload_all_plugins();
}

} // namespace
} // namespace orvex_test
