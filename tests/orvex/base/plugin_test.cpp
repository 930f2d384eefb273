#include "orvex/base/plugin.h"

#include <cmath>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/base/audio.h"
#include "orvex/base/gpu_monitor.h"
#include "orvex/base/image_codec.h"
#include "orvex/base/loader_3d.h"
#include "orvex/base/opencl_plugin.h"
#include "orvex/base/simple_video.h"
#include "orvex/base/thread.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;
namespace {

std::string id_of(const Plugin& plugin) {
    return std::to_string(plugin.get_id());
}

TEST(Plugin, starts_out_blank_with_an_id_of_its_own) {
    Plugin plugin;
    const Plugin other;
    EXPECT_GE(plugin.get_id(), 2);
    EXPECT_EQ(plugin.getid(), plugin.get_id());
    EXPECT_NE(plugin.get_id(), other.get_id());
    EXPECT_STREQ(plugin.get_name(), "");
    EXPECT_STREQ(plugin.get_full_filename(), "");
    EXPECT_STREQ(plugin.get_description(), "");
    EXPECT_STREQ(plugin.get_author(), "");
    EXPECT_STREQ(plugin.get_build_info(), "");
    EXPECT_EQ(plugin.get_version_major(), 0);
    EXPECT_EQ(plugin.get_version_minor(), 0);
    EXPECT_EQ(plugin.get_version_patch(), 0);
    EXPECT_EQ(plugin.get_type(), PLUGIN_TYPE_NONE);
    EXPECT_FALSE(plugin.get_core_plugin_state());
    EXPECT_EQ(plugin.get_ref(), 0);
    EXPECT_EQ(plugin.get_dynlib_handle(), nullptr);
    EXPECT_TRUE(*plugin.get_thread() == Thread());
    EXPECT_EQ(plugin.get_thread_ptr(), plugin.get_thread());
    EXPECT_EQ(std::as_const(plugin).get_thread(), plugin.get_thread());
    EXPECT_EQ(std::as_const(plugin).get_thread_ptr(), plugin.get_thread());
}

TEST(Plugin, keeps_version_type_state_and_handle) {
    Plugin plugin;
    plugin.set_version(1, 2, 3);
    plugin.set_type(static_cast<PLUGIN_TYPE>(42));
    plugin.set_core_plugin_state(true);
    int module = 0;
    plugin.set_dynlib_handle(&module);
    EXPECT_EQ(plugin.get_version_major(), 1);
    EXPECT_EQ(plugin.get_version_minor(), 2);
    EXPECT_EQ(plugin.get_version_patch(), 3);
    EXPECT_EQ(plugin.get_type(), 42);
    EXPECT_TRUE(plugin.get_core_plugin_state());
    EXPECT_EQ(plugin.get_dynlib_handle(), &module);
}

struct TextField {
    const char* name;
    void (Plugin::*set)(const char*);
    const char* (Plugin::*get)() const;
    std::size_t limit;
};

const TextField text_fields[] = {
    {"name", &Plugin::set_name, &Plugin::get_name, 127},
    {"full_filename", &Plugin::set_full_filename, &Plugin::get_full_filename, 1023},
    {"description", &Plugin::set_description, &Plugin::get_description, 255},
    {"author", &Plugin::set_author, &Plugin::get_author, 127},
    {"build_info", &Plugin::set_build_info, &Plugin::get_build_info, 127},
};

TEST(Plugin, cuts_its_texts_to_their_fields) {
    for (const TextField& field : text_fields) {
        Plugin plugin;
        for (const std::size_t length : {field.limit - 1, field.limit, field.limit + 1,
                                         std::size_t{200}, std::size_t{5000}, std::size_t{0}}) {
            const std::string text(length, 'x');
            (plugin.*field.set)(text.c_str());
            EXPECT_EQ((plugin.*field.get)(), text.substr(0, field.limit)) << field.name;
        }
    }
}

TEST(Plugin, ignores_null_texts) {
    for (const TextField& field : text_fields) {
        Plugin plugin;
        (plugin.*field.set)("kept");
        (plugin.*field.set)(nullptr);
        EXPECT_STREQ((plugin.*field.get)(), "kept") << field.name;
    }
}

TEST(Plugin, takes_a_part_of_its_own_text) {
    for (const TextField& field : text_fields) {
        Plugin plugin;
        (plugin.*field.set)("a long text");
        (plugin.*field.set)((plugin.*field.get)() + 2);
        EXPECT_STREQ((plugin.*field.get)(), "long text") << field.name;
        (plugin.*field.set)((plugin.*field.get)());
        EXPECT_STREQ((plugin.*field.get)(), "long text") << field.name;
    }
}

TEST(Plugin, each_step_of_its_life_is_logged_once_until_it_is_taken_back) {
    LogCapture log;
    Plugin plugin;
    plugin.set_name("thing");
    const std::string who = "<o> plugin thing (id=" + id_of(plugin) + ") - ";
    EXPECT_TRUE(plugin.terminate());
    EXPECT_TRUE(plugin.stop());
    EXPECT_TRUE(log.messages().empty());
    for (int round = 0; round < 2; ++round) {
        log.clear();
        for (int i = 0; i < 2; ++i)
            EXPECT_TRUE(plugin.initialize());
        for (int i = 0; i < 2; ++i)
            EXPECT_TRUE(plugin.start());
        for (int i = 0; i < 2; ++i)
            EXPECT_TRUE(plugin.stop());
        for (int i = 0; i < 2; ++i)
            EXPECT_TRUE(plugin.terminate());
        EXPECT_EQ(log.messages(), (std::vector<std::string>{who + "initialize()", who + "start()",
                                                            who + "stop()", who + "terminate()"}));
    }
}

TEST(Plugin, traces_under_its_name_and_id_at_each_level) {
    LogCapture log;
    Plugin plugin;
    plugin.set_name("thing");
    plugin.tracef("%d%%", 1);
    plugin.tracef_warning("%s", "two");
    plugin.tracef_error("%c", '3');
    plugin.tracef_debug("four");
    const std::string who = "Plugin(thing - id:" + id_of(plugin) + ") - ";
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{"< > " + who + "1%", "<!> " + who + "two",
                                        "<*> " + who + "3", "<o> " + who + "four"}));
}

TEST(Plugin, cuts_a_message_at_1023_characters) {
    LogCapture log;
    Plugin plugin;
    const std::string text(1500, 'x');
    plugin.tracef("%s", text.c_str());
    plugin.tracef_warning("%s", text.c_str());
    plugin.tracef_error("%s", text.c_str());
    plugin.tracef_debug("%s", text.c_str());
    const std::string line = "Plugin( - id:" + id_of(plugin) + ") - " + std::string(1023, 'x');
    EXPECT_EQ(log.messages(), (std::vector<std::string>{"< > " + line, "<!> " + line, "<*> " + line,
                                                        "<o> " + line}));
}

TEST(Plugin, ignores_a_null_format) {
    LogCapture log;
    Plugin plugin;
    const char* const nothing = nullptr;
    plugin.tracef(nothing);
    plugin.tracef_warning(nothing);
    plugin.tracef_error(nothing);
    plugin.tracef_debug(nothing);
    EXPECT_TRUE(log.messages().empty());
}

TEST(Plugin, counts_references_and_never_below_zero) {
    Plugin plugin;
    plugin.dec_ref();
    EXPECT_EQ(plugin.get_ref(), 0);
    plugin.add_ref();
    plugin.add_ref();
    EXPECT_EQ(plugin.get_ref(), 2);
    plugin.dec_ref();
    plugin.dec_ref();
    plugin.dec_ref();
    EXPECT_EQ(plugin.get_ref(), 0);
}

/// Notes its own end.
class Mortal : public Plugin {
public:
    explicit Mortal(bool& dead)
        : dead(dead) {}
    ~Mortal() override { dead = true; }

private:
    bool& dead;
};

TEST(Plugin, release_deletes_it_with_its_last_reference) {
    bool dead = false;
    auto* const plugin = new Mortal(dead);
    plugin->add_ref();
    plugin->add_ref();
    plugin->add_ref();
    EXPECT_EQ(plugin->release(), 2);
    EXPECT_EQ(plugin->release(), 1);
    EXPECT_FALSE(dead);
    EXPECT_EQ(plugin->release(), 0);
    EXPECT_TRUE(dead);
}

TEST(Plugin, release_of_one_without_references_deletes_it) {
    bool dead = false;
    EXPECT_EQ((new Mortal(dead))->release(), 0);
    EXPECT_TRUE(dead);
}

TEST(Plugin, belongs_to_the_thread_that_built_or_last_updated_it) {
    Plugin plugin;
    EXPECT_TRUE(plugin.check_thread());
    bool before = true;
    bool after = false;
    std::thread([&] {
        before = plugin.check_thread();
        plugin.update_thread();
        after = plugin.check_thread();
    }).join();
    EXPECT_FALSE(before);
    EXPECT_TRUE(after);
    EXPECT_FALSE(plugin.check_thread());
}

TEST(Plugin, bases_without_a_concrete_class_have_no_type) {
    EXPECT_EQ(Audio().get_type(), PLUGIN_TYPE_NONE);
    EXPECT_EQ(GpuMonitor().get_type(), PLUGIN_TYPE_NONE);
    EXPECT_EQ(OpenCLPlugin().get_type(), PLUGIN_TYPE_NONE);
    EXPECT_EQ(SimpleVideo().get_type(), PLUGIN_TYPE_NONE);
}

class EmptyLoader : public Loader3D {
public:
    using Loader3D::add_file;
    using Loader3D::add_note;
    bool load_from_file(Model*, const char*) override { return false; }
};

class EmptyCodec : public ImageCodec {
public:
    bool load_image_from_file(Image*, const char*, bool) override { return false; }
    bool load_image_from_memory(Image*, unsigned char*, unsigned long, bool) override {
        return false;
    }
    bool save_image_to_file(Image*, const char*) override { return false; }
    bool free_image_resources(Image*) override { return false; }
};

TEST(Plugin, interfaces_leave_the_type_to_their_concrete_classes) {
    EXPECT_EQ(EmptyLoader().get_type(), PLUGIN_TYPE_NONE);
    EXPECT_EQ(EmptyCodec().get_type(), PLUGIN_TYPE_NONE);
    EXPECT_TRUE(std::is_abstract_v<Loader3D>);
    EXPECT_TRUE(std::is_abstract_v<ImageCodec>);
}

TEST(Loader3D, keeps_four_texts_and_ignores_null) {
    struct Row {
        void (Loader3D::*set)(const char*);
        const char* (Loader3D::*get)() const;
        std::string text;
    };
    const std::vector<Row> rows = {
        {&Loader3D::set_resource_dir, &Loader3D::get_resource_dir, std::string(2000, 'r')},
        {&Loader3D::set_model_dir, &Loader3D::get_model_dir, "models/"},
        {&Loader3D::set_loader_name, &Loader3D::get_loader_name, "name"},
        {&Loader3D::set_loader_description, &Loader3D::get_loader_description, "a loader"},
    };
    EmptyLoader loader;
    for (const Row& row : rows)
        EXPECT_STREQ((loader.*row.get)(), "");
    for (const Row& row : rows)
        (loader.*row.set)(row.text.c_str());
    for (const Row& row : rows) {
        (loader.*row.set)(nullptr);
        EXPECT_EQ((loader.*row.get)(), row.text);
        (loader.*row.set)("");
        EXPECT_STREQ((loader.*row.get)(), "");
    }
}

TEST(Loader3D, keeps_the_moment_that_is_read) {
    EmptyLoader loader;
    EXPECT_TRUE(std::isnan(loader.get_time()));
    loader.set_time(2.5f);
    loader.clear_failure_reason();
    EXPECT_EQ(loader.get_time(), 2.5f) << "for all loads";
    loader.set_time(std::nanf(""));
    EXPECT_TRUE(std::isnan(loader.get_time()));
}

TEST(Loader3D, keeps_notes_each_once_until_the_next_load) {
    EmptyLoader loader;
    EXPECT_EQ(loader.get_num_notes(), 0u);
    EXPECT_STREQ(loader.get_note(0), "");
    loader.add_note("%d lights were left out", 3);
    loader.add_note("3 lights were left out");
    loader.add_note("%s", std::string(600, 'x').c_str());
    ASSERT_EQ(loader.get_num_notes(), 2u);
    EXPECT_STREQ(loader.get_note(0), "3 lights were left out");
    EXPECT_EQ(loader.get_note(1), std::string(511, 'x'));
    EXPECT_STREQ(loader.get_note(2), "");
    for (int i = 0; i < 100; ++i)
        loader.add_note("note %d", i);
    EXPECT_EQ(loader.get_num_notes(), 32u);
    loader.clear_failure_reason();
    EXPECT_EQ(loader.get_num_notes(), 0u);
}

TEST(Loader3D, keeps_the_files_that_it_read_too_until_the_next_load) {
    EmptyLoader loader;
    EXPECT_EQ(loader.get_num_files(), 0u);
    loader.add_file("a.mtl");
    loader.add_file(nullptr);
    loader.add_file("b.mtl");
    ASSERT_EQ(loader.get_num_files(), 2u);
    EXPECT_STREQ(loader.get_file(1), "b.mtl");
    EXPECT_STREQ(loader.get_file(2), "");
    loader.clear_failure_reason();
    EXPECT_EQ(loader.get_num_files(), 0u);
}

} // namespace
} // namespace orvex_test
