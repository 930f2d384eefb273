#include <cstdlib>
#include <filesystem>
#include <string>

#include "kernel_fixture.h"
#include "orvex/base/image_codec.h"
#include "orvex/renderer/renderer.h"
#include "tests/orvex/base/modules/module_plugin.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

#ifdef ORVEX_WITH_LIB3DS
constexpr bool has_3ds_loader = true;
#else
constexpr bool has_3ds_loader = false;
#endif

/// Writes the calls it gets into a list.
class Called : public Plugin {
public:
    Called(Lines& calls, const char* name)
        : calls(calls) {
        set_name(name);
    }

    bool initialize() override { return note("initialize"); }
    bool start() override { return note("start"); }
    bool stop() override { return note("stop"); }
    bool terminate() override { return note("terminate"); }

private:
    bool note(const char* call) {
        calls.push_back(std::string(get_name()) + " " + call);
        return false;
    }

    Lines& calls;
};

TEST_F(KernelTest, core_plugins_stand_in_a_fixed_order) {
    EXPECT_TRUE(kernel->load_core_plugins());
    Lines names;
    for (unsigned long i = 0; i < registry->get_num_plugins(); ++i)
        names.emplace_back(registry->get_plugin_by_index(i)->get_name());
    Lines expected{"orvex_plugin_core_stb"};
    if (has_3ds_loader)
        expected.emplace_back("orvex_plugin_core_lib3ds");
    expected.emplace_back("orvex_plugin_core_obj");
    EXPECT_EQ(names, expected);
    EXPECT_EQ(registry->get_plugin_by_index(0)->get_type(), PLUGIN_TYPE_IMAGE_CODEC);
    for (unsigned long i = 1; i < names.size(); ++i)
        EXPECT_EQ(registry->get_plugin_by_index(i)->get_type(), PLUGIN_TYPE_LOADER_3D);
}

TEST_F(KernelTest, each_call_adds_an_image_codec_but_no_second_loader) {
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(kernel->load_core_image_codec_plugins());
        EXPECT_TRUE(kernel->load_core_loader3d_plugins());
    }
    EXPECT_EQ(registry->get_num_plugins_by_type(PLUGIN_TYPE_IMAGE_CODEC), 2u);
    EXPECT_EQ(registry->get_num_plugins_by_type(PLUGIN_TYPE_LOADER_3D), has_3ds_loader ? 2u : 1u);
}

TEST_F(KernelTest, survives_the_end_of_an_image_codec_that_the_texture_manager_knew) {
    kernel->start();
    Plugin* const codec = registry->get_plugin_by_type(PLUGIN_TYPE_IMAGE_CODEC, 0);
    ASSERT_NE(codec, nullptr);
    for (int references = kernel->unload_plugin(codec); references > 0;)
        references = codec->release();
    EXPECT_TRUE(kernel->stop());
}

TEST_F(KernelTest, core_plugins_are_logged_initialized_and_started_one_by_one) {
    kernel->load_core_loader3d_plugins();
    Lines expected;
    if (!has_3ds_loader)
        expected.emplace_back("< > orvex::Kernel - this build has no 3DS loader.");
    for (unsigned long i = 0; i < registry->get_num_plugins(); ++i) {
        const Plugin& loader = *registry->get_plugin_by_index(i);
        const std::string name = loader.get_name();
        const std::string life =
            "<o> plugin " + name + " (id=" + std::to_string(loader.get_id()) + ") - ";
        expected.push_back("<o> Core plugin " + who(loader, "::") + " loaded ok.");
        expected.push_back("<o> " + name + ": " + loader.get_description() + ". By orvex");
        expected.push_back(life + "initialize()");
        expected.push_back(life + "start()");
    }
    EXPECT_EQ(log.messages(), expected);
}

TEST_F(KernelTest, inserts_and_logs_a_core_plugin_without_touching_its_state) {
    EXPECT_FALSE(kernel->insert_core_plugin(nullptr));
    auto* const plugin = new Plugin;
    plugin->set_name("thing");
    plugin->set_description("A thing");
    plugin->set_author("orvex");
    EXPECT_TRUE(kernel->insert_core_plugin(plugin));
    EXPECT_EQ(plugin->get_ref(), 1);
    EXPECT_FALSE(plugin->get_core_plugin_state());
    EXPECT_EQ(log.messages(), (Lines{"<o> Core plugin " + who(*plugin, "::") + " loaded ok.",
                                     "<o> thing: A thing. By orvex"}));
}

TEST_F(KernelTest, makes_one_more_renderer_with_each_call_and_leaves_its_life_to_the_host) {
    Renderer* const first = kernel->load_core_opengl_renderer_plugin(true);
    Renderer* const second = kernel->load_core_opengl_renderer_plugin(true);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    EXPECT_EQ(first->get_type(), PLUGIN_TYPE_RENDERER);
    EXPECT_EQ(first->get_ref(), 1);
    EXPECT_EQ(registry->get_num_plugins_by_type(PLUGIN_TYPE_RENDERER), 2u);
    for (const std::string& message : log.messages())
        EXPECT_EQ(message.find("initialize()"), std::string::npos) << message;
}

TEST_F(KernelTest, finds_a_renderer_only_if_the_first_one_is_marked) {
    EXPECT_EQ(kernel->load_core_opengl_renderer_plugin(false), nullptr);
    Renderer* const first = kernel->load_core_opengl_renderer_plugin(true);
    Renderer* const second = kernel->load_core_opengl_renderer_plugin(true);
    EXPECT_EQ(kernel->load_core_opengl_renderer_plugin(false), nullptr);
    second->set_core_plugin_state(true);
    EXPECT_EQ(kernel->load_core_opengl_renderer_plugin(false), nullptr);
    first->set_core_plugin_state(true);
    EXPECT_EQ(kernel->load_core_opengl_renderer_plugin(false), first);
    EXPECT_EQ(registry->get_num_plugins_by_type(PLUGIN_TYPE_RENDERER), 2u);
}

TEST_F(KernelTest, takes_no_other_plugin_of_the_type_for_a_renderer) {
    auto* const impostor = new Plugin;
    impostor->set_type(PLUGIN_TYPE_RENDERER);
    impostor->set_core_plugin_state(true);
    registry->insert_plugin(impostor);
    EXPECT_EQ(kernel->load_core_opengl_renderer_plugin(false), nullptr);
}

TEST_F(KernelTest, has_no_null_renderer) {
    EXPECT_EQ(kernel->get_null_renderer(), nullptr);
}

TEST_F(KernelTest, loads_a_plugin_by_its_path) {
    const std::string path = std::string(ORVEX_TEST_MODULE_DIR) + "/good.so";
    registry->set_current_plugin_dir("before/");
    Plugin* const plugin = kernel->load_plugin(path.c_str(), false, false);
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(kernel->get_plugin(plugin->get_id()), plugin);
    EXPECT_FALSE(plugin->get_core_plugin_state());
    EXPECT_STREQ(registry->get_current_plugin_dir(), "before/");
    EXPECT_EQ(log.messages().back(), "< > module_plugin: From a module. By orvex");

    plugin->set_core_plugin_state(true);
    EXPECT_EQ(kernel->load_plugin(path.c_str(), false, false), plugin);
    EXPECT_FALSE(plugin->get_core_plugin_state());
    EXPECT_NE(kernel->load_plugin(path.c_str(), true, false), plugin);
}

TEST_F(KernelTest, says_which_plugin_was_not_loaded) {
    EXPECT_EQ(kernel->load_plugin("/missing/plugin.so", false, false), nullptr);
    EXPECT_EQ(log.messages().back(), "<o> orvex::Kernel - Plugin (/missing/plugin.so) not loaded.");
    log.clear();
    EXPECT_EQ(kernel->load_plugin(nullptr, false, false), nullptr);
    EXPECT_EQ(kernel->load_plugin(nullptr, false, true), nullptr);
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(KernelTest, walks_the_search_path_until_a_plugin_loads) {
    const TempDir empty;
    const std::string first = empty.path() + "/";
    const std::string second = std::string(ORVEX_TEST_MODULE_DIR) + "/";
    for (const std::string& directory : {first, second, std::string("/never/tried/")})
        kernel->plugin_search_path_add_dir(directory.c_str());
    Plugin* const plugin = kernel->load_plugin("good.so", false, true);
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(plugin->get_full_filename(), second + "good.so");
    EXPECT_STREQ(registry->get_current_plugin_dir(), second.c_str());
    EXPECT_TRUE(log.has("<o> orvex::Kernel::load_plugin() - dlopen(" + first + "good.so)"));
    EXPECT_FALSE(log.has("<o> orvex::Kernel::load_plugin() - dlopen(/never/tried/good.so)"));
}

TEST_F(KernelTest, puts_no_separator_between_directory_and_file) {
    kernel->plugin_search_path_add_dir("/some/prefix_");
    EXPECT_EQ(kernel->load_plugin("x.so", false, true), nullptr);
    EXPECT_TRUE(log.has("<o> orvex::Kernel::load_plugin() - dlopen(/some/prefix_x.so)"));
    EXPECT_FALSE(log.has("<o> orvex::Kernel - Plugin (x.so) not loaded."))
        << "a walk that finds nothing says nothing of its own";
    EXPECT_STREQ(registry->get_current_plugin_dir(), "/some/prefix_");
}

TEST_F(KernelTest, a_module_that_changes_the_search_path_changes_it_for_the_next_call) {
    const TempDir nothing_here;
    const TempDir added;
    const std::string modules = ORVEX_TEST_MODULE_DIR "/";
    std::filesystem::copy_file(modules + "good.so", added.file("path_changer.so"));
    setenv("ORVEX_TEST_ADDED_DIR", added.file("").c_str(), 1);
    for (const std::string& directory : {modules, nothing_here.file("")})
        kernel->plugin_search_path_add_dir(directory.c_str());
    EXPECT_EQ(kernel->load_plugin("path_changer.so", false, true), nullptr);
    Plugin* const found = kernel->load_plugin("path_changer.so", false, true);
    unsetenv("ORVEX_TEST_ADDED_DIR");
    ASSERT_TRUE(found);
    EXPECT_STREQ(found->get_full_filename(), added.file("path_changer.so").c_str());
}

TEST_F(KernelTest, an_empty_search_path_finds_nothing) {
    EXPECT_EQ(kernel->load_plugin("good.so", false, true), nullptr);
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(KernelTest, unloads_by_id_and_by_pointer) {
    auto* const first = new Plugin;
    auto* const second = new Plugin;
    kernel->insert_core_plugin(first);
    kernel->insert_core_plugin(second);
    second->add_ref();
    second->add_ref();
    EXPECT_EQ(kernel->unload_plugin(first->get_id()), 0);
    EXPECT_EQ(kernel->unload_plugin(second), 1);
    EXPECT_EQ(registry->get_num_plugins(), 0u);
    EXPECT_EQ(kernel->unload_plugin(second), -1) << "it is registered no more";
    EXPECT_EQ(kernel->unload_plugin(nullptr), 0);
    EXPECT_EQ(kernel->unload_plugin(1), -1);
    EXPECT_EQ(kernel->get_plugin(1), nullptr);
    second->release();
}

TEST_F(KernelTest, unload_all_counts_what_ended) {
    kernel->insert_core_plugin(new Plugin);
    kernel->insert_core_plugin(new Plugin);
    EXPECT_EQ(kernel->unload_all_plugins(), 2);
    EXPECT_EQ(kernel->unload_all_plugins(), 0);
}

TEST_F(KernelTest, makes_its_loaders_anew_however_the_old_ones_ended) {
    const auto unload = {
        +[](Kernel& kernel, Plugin* loader) { kernel.unload_plugin(loader); },
        +[](Kernel& kernel, Plugin* loader) { kernel.unload_plugin(loader->get_id()); },
        +[](Kernel& kernel, Plugin*) { kernel.unload_all_plugins(); },
        +[](Kernel&, Plugin* loader) { PluginMgr::get()->unload_plugin(loader); },
        +[](Kernel&, Plugin*) { PluginMgr::get()->unload_plugins_by_type(PLUGIN_TYPE_LOADER_3D); },
        +[](Kernel&, Plugin*) { PluginMgr::get()->unload_all_plugins(); },
    };
    for (const auto end : unload) {
        kernel->load_core_loader3d_plugins();
        ASSERT_EQ(registry->get_num_plugins(), has_3ds_loader ? 2u : 1u);
        while (registry->get_num_plugins() > 0)
            end(*kernel, registry->get_plugin_by_index(0));
        EXPECT_EQ(kernel->load_model_from_file_obj("x.obj", "", ""), nullptr);
        EXPECT_EQ(kernel->load_model_from_file_lib3ds("x.3ds", "", ""), nullptr);
    }
}

TEST_F(KernelTest, calls_all_plugins_in_order_whatever_they_answer) {
    Lines calls;
    kernel->insert_core_plugin(new Called(calls, "a"));
    kernel->insert_core_plugin(new Called(calls, "b"));
    EXPECT_TRUE(kernel->initialize_all_plugins());
    EXPECT_TRUE(kernel->start_all_plugins());
    EXPECT_TRUE(kernel->stop_all_plugins());
    EXPECT_TRUE(kernel->terminate_all_plugins());
    EXPECT_EQ(calls, (Lines{"a initialize", "b initialize", "a start", "b start", "a stop",
                            "b stop", "a terminate", "b terminate"}));
    kernel->unload_all_plugins();
}

} // namespace
} // namespace orvex_test
