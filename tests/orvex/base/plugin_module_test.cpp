#include <cstring>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "orvex/base/plugin_mgr.h"
#include "tests/orvex/base/modules/module_plugin.h"
#include "tests/support/log_capture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {
using Lines = std::vector<std::string>;

std::string module_path(const char* name) {
    return std::string(ORVEX_TEST_MODULE_DIR) + "/" + name + ".so";
}

bool is_open(const std::string& path) {
    void* const module = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (module)
        dlclose(module);
    return module != nullptr;
}

class PluginModuleTest : public testing::Test {
protected:
    ~PluginModuleTest() override { mgr->unload_all_plugins(); }

    LogCapture log;
    PluginMgr* const mgr = PluginMgr::get();
};

TEST_F(PluginModuleTest, loads_a_plugin_without_initializing_or_starting_it) {
    const std::string path = module_path("good");
    const int id = mgr->load_plugin(path.c_str(), false);
    ASSERT_GE(id, 2);
    Plugin* const plugin = mgr->get_plugin(id);
    ASSERT_NE(plugin, nullptr);
    EXPECT_STREQ(plugin->get_name(), "module_plugin");
    EXPECT_EQ(plugin->get_type(), module_plugin_type);
    EXPECT_EQ(plugin->get_ref(), 1);
    EXPECT_EQ(plugin->get_full_filename(), path);
    EXPECT_NE(plugin->get_dynlib_handle(), nullptr);
    const std::string who = "(module_plugin::" + std::to_string(id) + ")";
    EXPECT_EQ(log.messages(),
              (Lines{"<o> orvex::Kernel::load_plugin() - dlopen(" + path + ")",
                     "<o> orvex::Kernel::load_plugin() - dlsym ok, orvex_create_plugin symbol "
                     "found.",
                     "<o> orvex::Kernel::load_plugin() - Plugin " + who +
                         " loaded ok. Plugin filename: " + path}));
}

TEST_F(PluginModuleTest, ends_a_plugin_in_its_module_and_closes_the_module) {
    const std::string path = module_path("good");
    const int id = mgr->load_plugin(path.c_str(), false);
    EXPECT_TRUE(is_open(path));
    log.clear();
    EXPECT_EQ(mgr->unload_plugin(id), 0);
    EXPECT_EQ(log.messages(),
              (Lines{"module plugin destroyed\n",
                     "<o> plugin module_plugin (" + std::to_string(id) + ") unloaded."}));
    EXPECT_FALSE(is_open(path));
}

TEST_F(PluginModuleTest, finds_a_loaded_file_again_without_a_new_reference) {
    const std::string path = module_path("good");
    const int id = mgr->load_plugin(path.c_str(), false);
    log.clear();
    EXPECT_EQ(mgr->load_plugin(path.c_str(), false), id);
    EXPECT_TRUE(log.messages().empty());
    EXPECT_EQ(mgr->get_plugin(id)->get_ref(), 1);
    EXPECT_EQ(mgr->get_num_plugins(), 1u);
}

TEST_F(PluginModuleTest, loads_a_second_instance_when_forced) {
    const std::string path = module_path("good");
    const int first = mgr->load_plugin(path.c_str(), false);
    const int second = mgr->load_plugin(path.c_str(), true);
    EXPECT_GT(second, first);
    EXPECT_EQ(mgr->get_num_plugins(), 2u);
    EXPECT_EQ(mgr->load_plugin(path.c_str(), false), first);
    EXPECT_EQ(mgr->unload_plugin(first), 0);
    EXPECT_TRUE(is_open(path)) << "the second instance needs it";
    EXPECT_EQ(mgr->unload_plugin(second), 0);
    EXPECT_FALSE(is_open(path));
}

TEST_F(PluginModuleTest, compares_file_names_up_to_1023_characters) {
    auto* const known = new Plugin;
    known->set_full_filename((std::string(1023, 'd') + "/one").c_str());
    mgr->insert_plugin(known);
    EXPECT_EQ(mgr->load_plugin((std::string(1023, 'd') + "/two").c_str(), false), known->get_id());
    EXPECT_EQ(mgr->load_plugin(std::string(1022, 'd').c_str(), false), -1);
}

TEST_F(PluginModuleTest, takes_an_empty_file_name_for_that_of_a_plugin_without_one) {
    auto* const built_in = new Plugin;
    mgr->insert_plugin(built_in);
    EXPECT_EQ(mgr->load_plugin("", false), built_in->get_id());
}

TEST_F(PluginModuleTest, refuses_a_null_file_name) {
    EXPECT_EQ(mgr->load_plugin(nullptr, false), -1);
    EXPECT_EQ(mgr->load_plugin(nullptr, true), -1);
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(PluginModuleTest, warns_twice_of_a_file_that_cannot_be_opened) {
    const TempDir dir;
    for (const std::string& path :
         {dir.file("missing.so"), dir.write("text.so", "no library"), dir.write("empty.so", "")}) {
        log.clear();
        EXPECT_EQ(mgr->load_plugin(path.c_str(), false), -1);
        const Lines& lines = log.messages();
        ASSERT_EQ(lines.size(), 4u) << path;
        EXPECT_EQ(lines[0], "<o> orvex::Kernel::load_plugin() - dlopen(" + path + ")");
        EXPECT_EQ(lines[1], "<!> orvex PluginMgr - unable to load plugin: " + path);
        EXPECT_EQ(lines[2], lines[1]);
        EXPECT_EQ(lines[3].find("<o> orvex::Kernel::load_plugin() - dlerror: " + path), 0u)
            << lines[3];
    }
    EXPECT_EQ(mgr->get_num_plugins(), 0u);
}

TEST_F(PluginModuleTest, reports_a_module_that_builds_no_plugin_and_closes_it) {
    const std::string path = module_path("no_create");
    EXPECT_EQ(mgr->load_plugin(path.c_str(), false), -1);
    const Lines& lines = log.messages();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], "<*> orvex PluginMgr - plugin creation failed for plugin: " + path);
    EXPECT_EQ(lines[2].find("<o> orvex::Kernel::load_plugin() - dlsym error: " + path), 0u)
        << lines[2];
    EXPECT_FALSE(is_open(path));
}

TEST_F(PluginModuleTest, takes_a_symbol_without_an_address_for_a_missing_one) {
    const std::string path = module_path("zero_create");
    EXPECT_EQ(mgr->load_plugin(path.c_str(), false), -1);
    EXPECT_EQ(log.messages(),
              (Lines{"<o> orvex::Kernel::load_plugin() - dlopen(" + path + ")",
                     "<*> orvex PluginMgr - plugin creation failed for plugin: " + path,
                     "<o> orvex::Kernel::load_plugin() - dlsym error on orvex_create_plugin "
                     "symbol"}));
    EXPECT_FALSE(is_open(path));
}

TEST_F(PluginModuleTest, says_nothing_of_an_entry_point_that_gives_null) {
    const std::string path = module_path("null_create");
    EXPECT_EQ(mgr->load_plugin(path.c_str(), false), -1);
    EXPECT_EQ(log.messages(),
              (Lines{"<o> orvex::Kernel::load_plugin() - dlopen(" + path + ")",
                     "<o> orvex::Kernel::load_plugin() - dlsym ok, orvex_create_plugin symbol "
                     "found."}));
    EXPECT_FALSE(is_open(path));
    EXPECT_EQ(mgr->get_num_plugins(), 0u);
}

TEST_F(PluginModuleTest, leaves_a_plugin_undestroyed_whose_module_cannot_destroy_it) {
    for (const char* name : {"no_destroy", "zero_destroy"}) {
        const std::string path = module_path(name);
        const int id = mgr->load_plugin(path.c_str(), false);
        ASSERT_GE(id, 2);
        log.clear();
        EXPECT_EQ(mgr->unload_plugin(id), 0);
        EXPECT_EQ(log.messages(),
                  Lines{"<o> plugin module_plugin (" + std::to_string(id) + ") unloaded."});
        EXPECT_FALSE(is_open(path));
        EXPECT_EQ(mgr->get_num_plugins(), 0u);
    }
}

TEST_F(PluginModuleTest, unload_all_closes_the_modules) {
    const std::string path = module_path("good");
    mgr->load_plugin(path.c_str(), false);
    mgr->load_plugin(path.c_str(), true);
    EXPECT_EQ(mgr->unload_all_plugins(), 2);
    EXPECT_FALSE(is_open(path));
}

} // namespace
} // namespace orvex_test
