#include "orvex/assets/materials/material.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/materials/physical_material.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/texture_data.h"
#include "tests/orvex/assets/textures/fake_codec.h"
#include "tests/support/fake_renderer.h"
#include "tests/support/log_capture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

using orvex_test::FakeCodec;
using orvex_test::FakeRenderer;
using Calls = std::vector<std::string>;

class MaterialTest : public testing::Test {
protected:
    MaterialTest()
        : material(new Material) {
        material->add_ref();
        renderer.ignored = {"gpu_program_bind_uniforms", "gpu_program_optimize"};
    }
    ~MaterialTest() override { release(); }

    void release() {
        if (material)
            material->release(nullptr, nullptr);
        material = nullptr;
    }

    /// A texture that the material alone holds, up to date on the GPU.
    Texture* add_texture(const char* name) {
        auto* const texture = new Texture;
        texture->get_data_ptr()->needs_gpu_update = false;
        renderer.name_pointer(texture->get_data_ptr(), name);
        material->add_texture(texture);
        return texture;
    }

    FakeRenderer renderer;
    Material* material;
};

TEST_F(MaterialTest, starts_with_the_told_defaults) {
    EXPECT_EQ(material->get_type(), NODE_TYPE_MATERIAL);
    EXPECT_TRUE(material->is_type_of(NODE_TYPE_RESOURCE));
    EXPECT_EQ(material->get_ambient(), vec4(0.5f, 0.5f, 0.6f, 1.0f));
    EXPECT_EQ(material->get_diffuse(), vec4(0.8f, 0.8f, 0.9f, 1.0f));
    EXPECT_EQ(material->get_specular(), vec4(0.9f, 0.9f, 0.9f, 1.0f));
    EXPECT_EQ(material->get_shininess(), 16.0f);
    EXPECT_EQ(material->get_opacity(), 1.0f);
    EXPECT_FALSE(material->get_use_fixed_material_colors_state());
    EXPECT_EQ(material->get_gpu_program(), nullptr);
    EXPECT_EQ(material->get_num_textures(), 0u);
    EXPECT_EQ(material->async_loading_get_num_texture_filenames(), 0u);
}

TEST_F(MaterialTest, keeps_its_colours) {
    material->set_ambient(1, 2, 3, 4);
    material->set_diffuse(5, 6, 7, 8);
    material->set_specular(9, 10, 11, 12);
    EXPECT_EQ(material->get_ambient(), vec4(1, 2, 3, 4));
    EXPECT_EQ(material->get_diffuse(), vec4(5, 6, 7, 8));
    EXPECT_EQ(material->get_specular(), vec4(9, 10, 11, 12));
    material->set_ambient(vec4(4, 3, 2, 1));
    material->set_diffuse(vec4(8, 7, 6, 5));
    material->set_specular(vec4(12, 11, 10, 9));
    EXPECT_EQ(material->get_ambient(), vec4(4, 3, 2, 1));
    EXPECT_EQ(material->get_diffuse(), vec4(8, 7, 6, 5));
    EXPECT_EQ(material->get_specular(), vec4(12, 11, 10, 9));
    material->set_shininess(32);
    material->set_opacity(0.5f);
    EXPECT_EQ(material->get_shininess(), 32.0f);
    EXPECT_EQ(material->get_opacity(), 0.5f);
}

// -------------------------------------------------------------------------------- program

TEST_F(MaterialTest, holds_one_reference_on_its_program) {
    auto* const first = new GpuProgram;
    auto* const second = new GpuProgram;
    first->add_ref();
    second->add_ref();
    material->set_gpu_program(first);
    EXPECT_EQ(first->get_ref(), 2);
    material->set_gpu_program(second);
    EXPECT_EQ(first->get_ref(), 1);
    EXPECT_EQ(second->get_ref(), 2);
    EXPECT_EQ(material->get_gpu_program(), second);
    material->set_gpu_program(second);
    EXPECT_EQ(second->get_ref(), 2);
    material->set_gpu_program(nullptr);
    EXPECT_EQ(second->get_ref(), 1);
    EXPECT_EQ(material->get_gpu_program(), nullptr);
    first->release(nullptr, nullptr);
    second->release(nullptr, nullptr);
}

TEST_F(MaterialTest, setting_a_program_again_that_nobody_else_holds_leaves_none) {
    auto* const program = new GpuProgram;
    material->set_gpu_program(program);
    material->set_gpu_program(program);
    EXPECT_EQ(material->get_gpu_program(), nullptr);
}

// -------------------------------------------------------------------------------- textures

TEST_F(MaterialTest, keeps_textures_in_order_with_duplicates) {
    Texture* const first = add_texture("first");
    Texture* const second = add_texture("second");
    material->add_texture(first);
    material->add_texture(nullptr);
    EXPECT_EQ(material->get_num_textures(), 3u);
    EXPECT_EQ(first->get_ref(), 2);
    EXPECT_EQ(material->get_texture_by_index(0), first);
    EXPECT_EQ(material->get_texture_by_index(1), second);
    EXPECT_EQ(material->get_texture_by_index(2), first);
    EXPECT_EQ(material->get_texture_by_index(3), nullptr);
    EXPECT_EQ(material->get_texture(second->get_id()), second);
    EXPECT_EQ(material->get_texture(-1), nullptr);
}

TEST_F(MaterialTest, removes_the_first_texture_of_an_id_and_closes_the_gap) {
    Texture* const first = add_texture("first");
    Texture* const second = add_texture("second");
    material->add_texture(first);
    EXPECT_FALSE(material->remove_texture(-1));
    EXPECT_EQ(material->get_num_textures(), 3u);
    EXPECT_TRUE(material->remove_texture(first->get_id()));
    EXPECT_EQ(material->get_texture_by_index(0), second);
    EXPECT_EQ(material->get_texture_by_index(1), first);
    EXPECT_EQ(first->get_ref(), 1);
    EXPECT_TRUE(material->remove_all_textures());
    EXPECT_EQ(material->get_num_textures(), 0u);
    EXPECT_TRUE(material->remove_all_textures());
}

TEST_F(MaterialTest, its_end_gives_everything_back) {
    auto* const program = new GpuProgram;
    auto* const texture = new Texture;
    program->add_ref();
    texture->add_ref();
    material->set_gpu_program(program);
    material->add_texture(texture);
    material->async_loading_add_texture_filename("a.tga");
    release();
    EXPECT_EQ(program->get_ref(), 1);
    EXPECT_EQ(texture->get_ref(), 1);
    program->release(nullptr, nullptr);
    texture->release(nullptr, nullptr);
}

TEST_F(MaterialTest, cleanup_empties_it_and_can_run_twice) {
    add_texture("texture");
    material->set_gpu_program(new GpuProgram);
    material->async_loading_add_texture_filename("a.tga");
    EXPECT_TRUE(material->cleanup(&renderer, nullptr));
    EXPECT_EQ(material->get_gpu_program(), nullptr);
    EXPECT_EQ(material->get_num_textures(), 0u);
    EXPECT_EQ(material->async_loading_get_num_texture_filenames(), 0u);
    EXPECT_TRUE(material->cleanup(&renderer, nullptr));
}

// -------------------------------------------------------------------------------- binding

TEST_F(MaterialTest, binds_textures_to_consecutive_units) {
    add_texture("first");
    add_texture("second");
    material->bind(&renderer);
    EXPECT_EQ(renderer.take_calls(), (Calls{"texture_bind(first, 0)", "texture_bind(second, 1)"}));
    material->set_texture_unit_offset(3);
    material->bind(&renderer);
    EXPECT_EQ(renderer.take_calls(), (Calls{"texture_bind(first, 3)", "texture_bind(second, 4)"}));
    material->unbind(&renderer);
    EXPECT_EQ(renderer.take_calls(), (Calls{"texture_bind(null, 3)", "texture_bind(null, 4)"}));
}

TEST_F(MaterialTest, binds_program_then_textures_then_colours) {
    add_texture("texture");
    auto* const program = new GpuProgram;
    material->set_gpu_program(program);
    material->set_use_fixed_material_colors_state(true);
    EXPECT_TRUE(material->get_use_fixed_material_colors_state());
    material->bind(&renderer);
    const Calls calls = renderer.take_calls();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0], "gpu_program_activate(pointer)");
    EXPECT_EQ(calls[1], "texture_bind(texture, 0)");
    EXPECT_EQ(calls[2], "material_set_colors((0.5, 0.5, 0.6, 1), (0.8, 0.8, 0.9, 1), "
                        "(0.9, 0.9, 0.9, 1), 16)");
    material->unbind(&renderer);
    EXPECT_EQ(renderer.take_calls(), (Calls{"gpu_program_activate(null)", "texture_bind(null, 0)"}))
        << "colours stay set";
}

TEST_F(MaterialTest, leaves_the_fixed_colours_alone_unless_switched_on) {
    material->bind(&renderer);
    EXPECT_EQ(renderer.take_calls(), Calls());
    material->fixed_pipeline_bind_colors(&renderer);
    EXPECT_EQ(renderer.count("material_set_colors"), 1);
}

TEST_F(MaterialTest, binds_its_parts_one_by_one) {
    add_texture("texture");
    material->set_gpu_program(new GpuProgram);
    material->bind_gpu_program(&renderer);
    EXPECT_EQ(renderer.take_calls(), Calls{"gpu_program_activate(pointer)"});
    material->bind_textures(&renderer);
    EXPECT_EQ(renderer.take_calls(), Calls{"texture_bind(texture, 0)"});
    material->unbind_textures(&renderer);
    EXPECT_EQ(renderer.take_calls(), Calls{"texture_bind(null, 0)"});
    material->unbind_gpu_program(&renderer);
    EXPECT_EQ(renderer.take_calls(), Calls{"gpu_program_activate(null)"});
}

TEST_F(MaterialTest, a_null_renderer_does_nothing) {
    add_texture("texture");
    material->set_gpu_program(new GpuProgram);
    material->set_use_fixed_material_colors_state(true);
    material->bind(nullptr);
    material->unbind(nullptr);
    EXPECT_EQ(renderer.take_calls(), Calls());
}

// -------------------------------------------------------------------------------- the queue

TEST_F(MaterialTest, queues_copies_of_file_names) {
    std::string name = "a.tga";
    EXPECT_TRUE(material->async_loading_add_texture_filename(name.c_str()));
    name = "changed";
    EXPECT_TRUE(material->async_loading_add_texture_filename("b.tga"));
    EXPECT_FALSE(material->async_loading_add_texture_filename(nullptr));
    EXPECT_EQ(material->async_loading_get_num_texture_filenames(), 2u);
    EXPECT_STREQ(material->async_loading_get_texture_filename(0), "a.tga");
    EXPECT_STREQ(material->async_loading_get_texture_filename(1), "b.tga");
    EXPECT_EQ(material->async_loading_get_texture_filename(2), nullptr);
    EXPECT_TRUE(material->async_loading_clear_texture_filenames_list());
    EXPECT_EQ(material->async_loading_get_num_texture_filenames(), 0u);
}

/// A material beside a manager with one codec, and files for it.
class MaterialLoadTest : public MaterialTest {
protected:
    MaterialLoadTest()
        : codec(new FakeCodec("codec_stb", "pic")) {
        codec->add_ref();
        TextureMgr::get()->register_image_codec_plugin(codec);
        good = dir.write("good.tga", "pic 4 4 9");
        bad = dir.write("bad.tga", "rubbish");
        renderer.ignored.push_back("texture_unload");
    }
    ~MaterialLoadTest() override {
        release();
        TextureMgr::get()->stop(nullptr);
        EXPECT_EQ(codec->live(), 0u);
        EXPECT_EQ(codec->release(), 0);
    }

    orvex_test::TempDir dir;
    orvex_test::LogCapture log;
    FakeCodec* codec;
    std::string good, bad;
};

TEST_F(MaterialLoadTest, loads_converts_and_uploads) {
    Texture* const texture = material->load_texture(&renderer, good.c_str(), PF_RGBA_U8, true);
    ASSERT_NE(texture, nullptr);
    EXPECT_FALSE(codec->flag) << "the flag isn't passed on";
    EXPECT_EQ(material->get_texture_by_index(0), texture);
    EXPECT_EQ(texture->get_ref(), 2);
    EXPECT_EQ(texture->get_pixel_format(), PF_RGBA_U8);
    EXPECT_EQ(renderer.take_calls(), Calls{"texture_2d_load(pointer, 0)"});
}

TEST_F(MaterialLoadTest, loads_on_the_cpu_alone_without_renderer) {
    Texture* const texture = material->load_texture(nullptr, good.c_str(), PF_NONE, false);
    ASSERT_NE(texture, nullptr);
    EXPECT_EQ(texture->get_pixel_format(), PF_RGB_U8);
}

TEST_F(MaterialLoadTest, keeps_a_texture_that_could_not_be_converted_or_uploaded) {
    renderer.results["texture_2d_load"] = false;
    EXPECT_NE(material->load_texture(&renderer, good.c_str(), PF_RGB_F16, false), nullptr);
    EXPECT_EQ(material->get_num_textures(), 1u);
}

TEST_F(MaterialLoadTest, a_file_that_cannot_be_decoded_adds_nothing) {
    EXPECT_EQ(material->load_texture(&renderer, bad.c_str(), PF_NONE, false), nullptr);
    EXPECT_EQ(material->load_texture(&renderer, nullptr, PF_NONE, false), nullptr);
    EXPECT_EQ(material->get_num_textures(), 0u);
    EXPECT_EQ(TextureMgr::get()->get_num_resources(), 0u);
}

TEST_F(MaterialLoadTest, processes_the_queue_in_order_and_empties_it) {
    for (const char* name : {"good.tga", "bad.tga", "good.tga"})
        material->async_loading_add_texture_filename(name);
    const std::string prefix = dir.path() + "/";
    EXPECT_TRUE(material->async_loading_process_all_texture_filenames(&renderer, prefix.c_str(),
                                                                      PF_NONE, false));
    EXPECT_EQ(material->async_loading_get_num_texture_filenames(), 0u);
    EXPECT_EQ(material->get_num_textures(), 2u);
    const std::string operation = "orvex::Material::async_loading_process_all_texture_filenames()";
    EXPECT_EQ(log.messages(),
              (Calls{"<o> " + operation + " - loading texture 0 with filename: " + good,
                     "<o> " + operation + " - texture 0 (" + good + ") loaded ok.",
                     "<o> " + operation + " - loading texture 1 with filename: " + bad,
                     "<*> " + operation + " - texture 1 (" + bad + ") NOT loaded.",
                     "<o> " + operation + " - loading texture 2 with filename: " + good,
                     "<o> " + operation + " - texture 2 (" + good + ") loaded ok."}));
    log.clear();
    EXPECT_TRUE(
        material->async_loading_process_all_texture_filenames(&renderer, nullptr, PF_NONE, false));
    EXPECT_EQ(log.messages(), Calls());
}

TEST_F(MaterialLoadTest, a_failed_name_leaves_no_gap_in_the_units) {
    for (const char* name : {"good.tga", "missing.tga", "good.tga"})
        material->async_loading_add_texture_filename(name);
    const std::string prefix = dir.path() + "/";
    material->async_loading_process_all_texture_filenames(nullptr, prefix.c_str(), PF_NONE, false);
    renderer.ignored.push_back("texture_2d_update");
    material->bind(&renderer);
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"texture_bind(pointer, 0)", "texture_bind(pointer, 1)"}));
}

TEST_F(MaterialLoadTest, puts_the_prefix_in_front_without_a_separator) {
    dir.write("mediaa.tga", "pic 2 2 1");
    material->async_loading_add_texture_filename("a.tga");
    const std::string prefix = dir.file("media");
    material->async_loading_process_all_texture_filenames(nullptr, prefix.c_str(), PF_NONE, false);
    ASSERT_EQ(material->get_num_textures(), 1u);
    EXPECT_EQ(material->get_texture_by_index(0)->get_width(), 2u);
    material->async_loading_add_texture_filename(good.c_str());
    material->async_loading_process_all_texture_filenames(nullptr, nullptr, PF_NONE, false);
    EXPECT_EQ(material->get_num_textures(), 2u);
}

// -------------------------------------------------------------------------------- the manager

TEST(MaterialMgr, makes_and_registers_named_materials) {
    MaterialMgr& mgr = *MaterialMgr::get();
    EXPECT_EQ(&mgr, MaterialMgr::get());
    EXPECT_TRUE(mgr.start(nullptr));
    Material* const brick = mgr.create_material("brick");
    ASSERT_NE(brick, nullptr);
    EXPECT_STREQ(brick->get_name(), "brick");
    EXPECT_EQ(brick->get_ref(), 1);
    EXPECT_EQ(mgr.get_resource("brick"), brick);
    Material* const unnamed = mgr.create_material(nullptr);
    EXPECT_EQ(unnamed->get_name(), "node_" + std::to_string(unnamed->get_id()));
    EXPECT_FALSE(mgr.add_material(nullptr));
    auto* const own = new Material;
    EXPECT_TRUE(mgr.add_material(own));
    EXPECT_TRUE(mgr.add_material(own));
    EXPECT_EQ(own->get_ref(), 1);
    EXPECT_EQ(mgr.get_num_resources(), 3u);
    EXPECT_TRUE(mgr.stop(nullptr));
    EXPECT_EQ(mgr.get_num_resources(), 0u);
}

TEST_F(MaterialTest, keeps_a_copy_of_its_physical_values) {
    Material material;
    EXPECT_EQ(material.get_physical(), nullptr);
    PhysicalMaterial brass;
    brass.roughness = 0.25f;
    brass.base_color_texture.image = "brass.png";
    material.set_physical(&brass);
    brass.roughness = 1.0f;
    ASSERT_NE(material.get_physical(), nullptr);
    EXPECT_EQ(material.get_physical()->roughness, 0.25f);
    EXPECT_EQ(material.get_physical()->base_color_texture.image, "brass.png");
    EXPECT_EQ(material.get_physical()->metallic, 1.0f);
    material.set_physical(nullptr);
    EXPECT_EQ(material.get_physical(), nullptr);
}

} // namespace
} // namespace orvex_test
