#include <string>

#include <dlfcn.h>

#include "orvex/assets/materials/material.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/image_codec.h"
#include "orvex/base/loader_3d.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/kernel/aux.h"
#include "orvex/kernel/core.h"
#include "orvex/math/vec4.h"
#include "tests/orvex/kernel/kernel_fixture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

/// The plugins of the example, loaded as a host loads them.
class PluginRoad : public testing::Test {
protected:
    PluginRoad() {
        core::start("", true, nullptr, nullptr);
        loader = load(loader_path);
        codec = load(codec_path);
        directory = dir.path() + "/";
        dir.write("one.soup", "# a triangle\n"
                              "texture board.checker\n"
                              "0 0 0 0 0  1 0 0 1 0  0 1 0 0 1\n");
        dir.write("board.checker", "checker 4 2\n");
    }
    ~PluginRoad() override { core::stop(nullptr); }

    static bool is_open(const char* path) {
        void* const module = dlopen(path, RTLD_LAZY | RTLD_NOLOAD);
        if (module)
            dlclose(module);
        return module != nullptr;
    }

    static Plugin* load(const char* path) {
        Plugin* const plugin = Kernel::get()->load_plugin(path, false, false);
        if (plugin) {
            plugin->initialize();
            plugin->start();
        }
        return plugin;
    }

    Model* load_model(const char* filename) const {
        return aux::load_model_from_file(filename, directory.c_str(), directory.c_str());
    }

    bool register_codec() const {
        return TextureMgr::get()->register_image_codec_plugin(dynamic_cast<ImageCodec*>(codec));
    }

    static constexpr const char* loader_path = ORVEX_TEST_MODULE_DIR "/soup_loader.so";
    static constexpr const char* codec_path = ORVEX_TEST_MODULE_DIR "/checker_codec.so";

    TempDir dir;
    std::string directory;
    Plugin* loader = nullptr;
    Plugin* codec = nullptr;
};

TEST_F(PluginRoad, plugins_are_what_they_say_across_the_library_border) {
    ASSERT_NE(loader, nullptr);
    ASSERT_NE(codec, nullptr);
    EXPECT_NE(dynamic_cast<Loader3D*>(loader), nullptr);
    EXPECT_NE(dynamic_cast<ImageCodec*>(codec), nullptr);
    EXPECT_EQ(dynamic_cast<Loader3D*>(codec), nullptr);
    EXPECT_EQ(loader->get_type(), PLUGIN_TYPE_LOADER_3D);
    EXPECT_EQ(codec->get_type(), PLUGIN_TYPE_IMAGE_CODEC);
}

TEST_F(PluginRoad, a_model_and_its_texture_come_through_the_plugins) {
    ASSERT_TRUE(register_codec());
    Model* const model = load_model("one.soup");
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->get_num_faces(model), 1u);
    auto* const mesh = dynamic_cast<Mesh*>(model->get_child(0));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->get_vertex_position(1).x, 1.0f);
    EXPECT_EQ(mesh->get_vertex_normal(0).z, 1.0f);

    auto* const material = static_cast<Material*>(MaterialMgr::get()->get_resource("one.soup"));
    ASSERT_NE(material, nullptr);
    ASSERT_EQ(material->get_num_textures(), 1u);
    Texture* const texture = material->get_texture_by_index(0);
    ASSERT_EQ(texture->get_width(), 4u);
    ASSERT_EQ(texture->get_height(), 4u);
    const unsigned char* const pixels = texture->get_pixmap_u8_ptr();
    ASSERT_NE(pixels, nullptr);
    EXPECT_EQ(pixels[0], 255);
    EXPECT_EQ(pixels[2 * 3], 40);
    model->kill(nullptr, nullptr);
}

TEST_F(PluginRoad, unloaded_plugins_are_closed_and_asked_no_more) {
    ASSERT_TRUE(register_codec());
    Model* const model = load_model("one.soup");
    ASSERT_NE(model, nullptr);
    model->kill(nullptr, nullptr);
    MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    TextureMgr::get()->release_all_textures(nullptr, nullptr);

    EXPECT_EQ(Kernel::get()->unload_plugin(loader), 0);
    EXPECT_EQ(Kernel::get()->unload_plugin(codec), 0);
    EXPECT_FALSE(is_open(loader_path));
    EXPECT_FALSE(is_open(codec_path));
    EXPECT_EQ(load_model("one.soup"), nullptr);
    EXPECT_EQ(TextureMgr::get()->create_texture_2d_from_file((directory + "board.checker").c_str(),
                                                             false),
              nullptr);
}

TEST_F(PluginRoad, stop_unloads_what_the_host_left_loaded) {
    ASSERT_TRUE(register_codec());
    Model* const model = load_model("one.soup");
    ASSERT_NE(model, nullptr);
    model->kill(nullptr, nullptr);
    EXPECT_TRUE(core::stop("bye"));
    EXPECT_FALSE(is_open(loader_path));
    EXPECT_FALSE(is_open(codec_path));
}

TEST_F(PluginRoad, a_model_without_its_texture_still_loads) {
    Model* const model = load_model("one.soup");
    ASSERT_NE(model, nullptr) << "no codec is registered that reads the texture";
    EXPECT_EQ(TextureMgr::get()->get_num_resources(), 0u);
    model->kill(nullptr, nullptr);
}

TEST_F(PluginRoad, bad_files_give_no_model_and_no_texture) {
    ASSERT_TRUE(register_codec());
    dir.write("empty.soup", "");
    dir.write("cut.soup", "0 0 0 0 0  1 0 0 1 0  0 1\n");
    dir.write("words.soup", "texture\n");
    for (const char* name : {"missing.soup", "empty.soup", "cut.soup", "words.soup"})
        EXPECT_EQ(load_model(name), nullptr) << name;
    EXPECT_EQ(MaterialMgr::get()->get_num_resources(), 0u);

    for (const char* text : {"", "checker", "checker 4", "checker 0 0", "checker 2 3",
                             "checker 99999 2", "other 4 2"}) {
        const std::string path = dir.write("bad.checker", text);
        EXPECT_EQ(TextureMgr::get()->create_texture_2d_from_file(path.c_str(), false), nullptr)
            << text;
    }
}

} // namespace
} // namespace orvex_test
