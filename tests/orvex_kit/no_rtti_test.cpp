/// @file
/// A host and its plugins may be built without type information: the kit asks their objects for
/// none.

#include <gtest/gtest.h>

#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/base/image_codec.h>
#include <orvex/base/loader_3d.h>
#include <orvex/base/plugin_mgr.h>

#include "no_rtti_parts.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/model.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;
using orvex::PluginMgr;

TEST(KitNoRtti, a_model_is_taken_from_a_loader_of_parts_without_it) {
    const Engine engine{{{}, "", false, false}};
    PluginMgr::get()->insert_plugin(new_plain_loader());
    const TempDir folder;
    const Model model(folder.write("m.plain", "x"), {Normals::file, false, "plain"});
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(model.meshes().size(), 1u);
    EXPECT_EQ(model.num_faces(), 1u);
    EXPECT_EQ(model.num_points(), 1u);
    EXPECT_EQ(model.num_lines(), 1u);
    EXPECT_EQ(model.cameras().size(), 1u);
    EXPECT_EQ(orvex::TextureMgr::get()->get_num_resources(), 0u) << "the texture is the model's";
}

TEST(KitNoRtti, a_codec_without_it_is_asked_for_its_reason) {
    orvex::ImageCodec* const codec = new_plain_codec();
    PluginMgr::get()->insert_plugin(codec);
    const Engine engine{{{}, "", false, false}};
    orvex::TextureMgr::get()->register_image_codec_plugin(codec);
    const TempDir folder;
    folder.write("m.mtl", "newmtl a\nmap_Kd bad.png\n");
    folder.write("bad.png", "no picture");
    const Model model(
        folder.write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 2 0 0\nv 0 1 0\nusemtl a\nf 1 2 3\n"));
    ASSERT_EQ(model.textures().size(), 1u) << model.reason();
    EXPECT_EQ(model.textures()[0].reason, "it is no picture that can be decoded: nothing is plain");
}

} // namespace

} // namespace orvex_test
