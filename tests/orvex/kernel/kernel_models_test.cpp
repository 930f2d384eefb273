#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "kernel_fixture.h"
#include "orvex/assets/materials/material.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/base/global_id.h"
#include "orvex/base/loader_3d.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/kernel/aux.h"
#include "orvex/renderer/records/texture_data.h"
#include "tests/support/stub_render_target.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

/// Writes what it is asked into a list, and accepts or refuses it.
class FakeLoader : public Loader3D {
public:
    FakeLoader(Lines& calls, const char* name, bool accepts)
        : calls(calls)
        , accepts(accepts) {
        set_name(name);
        set_type(PLUGIN_TYPE_LOADER_3D);
    }

    bool load_from_file(Model* model, const char* filename) override {
        calls.push_back(std::string(get_name()) + " " + filename + " " + get_model_dir() + " " +
                        get_resource_dir() + " " +
                        (model->get_separate_vertex_arrays_state() ? "separate" : "whole") + " " +
                        std::to_string(model->get_vertex_alignment()));
        return accepts;
    }

private:
    Lines& calls;
    bool accepts;
};

/// Adds a mesh, a material and a texture to what it is given, and then fails as it is told.
class FailingLoader : public FakeLoader {
public:
    FailingLoader(Lines& calls, std::function<bool()> fail)
        : FakeLoader(calls, "orvex_plugin_fbx", false)
        , fail(std::move(fail)) {}

    bool load_from_file(Model* model, const char* filename) override {
        FakeLoader::load_from_file(model, filename);
        Material* const material = MaterialMgr::get()->create_material("new");
        material->add_texture(TextureMgr::get()->create_texture());
        model->add_material(MaterialMgr::get()->create_material("of the model"), nullptr);
        Mesh* const mesh = model->create_mesh();
        mesh->add_material(material, nullptr);
        model->add_child(mesh);
        held = mesh;
        held->add_ref();
        return fail();
    }

    /// Ends what it has held. @return the references of its mesh, its own among them
    int end_held() {
        const int count = std::exchange(held, nullptr)->release(nullptr, nullptr);
        return count + 1;
    }

private:
    std::function<bool()> fail;
    Mesh* held = nullptr;
};

class KernelModelsTest : public KernelTest {
protected:
    ~KernelModelsTest() override { kernel->unload_all_plugins(); }

    void add_loader(const char* name, bool accepts) {
        registry->insert_plugin(new FakeLoader(calls, name, accepts));
    }

    /// Ends a model that a load gave.
    static bool end(Model* model) {
        if (model)
            model->release(nullptr, nullptr);
        return model != nullptr;
    }

    Lines calls;
};

TEST_F(KernelModelsTest, offers_a_file_to_each_loader_until_one_accepts_it) {
    add_loader("a", false);
    add_loader("b", true);
    add_loader("c", true);
    EXPECT_TRUE(end(kernel->load_model_from_file("x.y", "m/", "r/")));
    EXPECT_EQ(calls, (Lines{"a x.y m/ r/ separate 0", "b x.y m/ r/ separate 0"}));
}

TEST_F(KernelModelsTest, hands_the_storage_of_vertices_to_the_model) {
    add_loader("a", true);
    EXPECT_TRUE(end(kernel->load_model_from_file_v2("x", "", "", false, 16)));
    EXPECT_TRUE(end(kernel->load_model_from_file_v2("x", "", "", true, -3)));
    EXPECT_EQ(calls, (Lines{"a x   whole 16", "a x   separate -3"}));
}

TEST_F(KernelModelsTest, gives_null_if_no_loader_accepts_the_file) {
    EXPECT_EQ(kernel->load_model_from_file("x", "", ""), nullptr);
    add_loader("a", false);
    add_loader("b", false);
    EXPECT_EQ(kernel->load_model_from_file("x", "", ""), nullptr);
    EXPECT_EQ(calls.size(), 2u);
}

// The leak checker tells whether it ends.
TEST_F(KernelModelsTest, makes_a_model_and_ends_it_though_there_is_no_loader) {
    ASSERT_EQ(registry->get_num_plugins_by_type(PLUGIN_TYPE_LOADER_3D), 0u);
    const int before = GenId();
    EXPECT_EQ(kernel->load_model_from_file("x", "", ""), nullptr);
    EXPECT_GT(GenId(), before + 1) << "the model took a number";
}

TEST_F(KernelModelsTest, gives_null_for_a_null_file_name_without_asking_anybody) {
    add_loader("orvex_plugin_fbx", true);
    kernel->load_core_loader3d_plugins();
    EXPECT_EQ(kernel->load_model_from_file(nullptr, "", ""), nullptr);
    EXPECT_EQ(kernel->load_model_from_file_lib3ds(nullptr, "", ""), nullptr);
    EXPECT_EQ(kernel->load_model_from_file_obj(nullptr, "", ""), nullptr);
    EXPECT_EQ(kernel->load_model_from_file_fbx(nullptr, "", ""), nullptr);
    EXPECT_TRUE(calls.empty());
}

TEST_F(KernelModelsTest, keeps_the_directories_of_the_load_before_for_null_ones) {
    add_loader("a", true);
    end(kernel->load_model_from_file("x", "m/", "r/"));
    end(kernel->load_model_from_file("y", nullptr, nullptr));
    end(kernel->load_model_from_file("z", "", ""));
    EXPECT_EQ(calls, (Lines{"a x m/ r/ separate 0", "a y m/ r/ separate 0", "a z   separate 0"}));
}

TEST_F(KernelModelsTest, ends_what_a_loader_had_added_before_it_failed) {
    Material* const kept = MaterialMgr::get()->create_material("kept");
    const unsigned long num_materials = MaterialMgr::get()->get_num_resources();
    const unsigned long num_textures = TextureMgr::get()->get_num_resources();
    const auto expect_nothing_left = [&](std::function<bool()> fail, const char* reason) {
        auto* const loader = new FailingLoader(calls, std::move(fail));
        const auto expect_failed = [&](const Model* model) {
            EXPECT_EQ(model, nullptr);
            EXPECT_STREQ(kernel->get_load_failure_reason(), reason);
            EXPECT_STREQ(aux::get_load_failure_reason(), reason);
            EXPECT_EQ(loader->end_held(), 1) << "nobody else holds its mesh";
            EXPECT_EQ(MaterialMgr::get()->get_num_resources(), num_materials);
            EXPECT_EQ(TextureMgr::get()->get_num_resources(), num_textures);
        };
        registry->insert_plugin(loader);
        expect_failed(kernel->load_model_from_file("x", "m/", "r/"));
        expect_failed(kernel->load_model_from_file_fbx("x", "m/", "r/"));
        kernel->unload_all_plugins();
    };
    expect_nothing_left([]() -> bool { throw std::bad_alloc(); }, "memory ran out");
    expect_nothing_left([]() -> bool { throw 7; }, "the loader threw an exception");
    expect_nothing_left([]() -> bool { throw std::runtime_error("no"); },
                        "the loader threw an exception");
    expect_nothing_left([] { return false; }, "");
    EXPECT_EQ(MaterialMgr::get()->get_resource("kept"), kept);
    MaterialMgr::get()->release_resource(nullptr, kept, nullptr);
}

TEST_F(KernelModelsTest, asks_the_next_loader_with_a_model_as_new) {
    auto* const loader = new FailingLoader(calls, []() -> bool { throw std::bad_alloc(); });
    registry->insert_plugin(loader);
    add_loader("b", true);
    Model* const model = kernel->load_model_from_file("x", "m/", "r/");
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->get_num_children(), 0u);
    EXPECT_EQ(model->get_num_materials(), 0u);
    EXPECT_STREQ(kernel->get_load_failure_reason(), "");
    EXPECT_EQ(loader->end_held(), 1);
    end(model);
}

TEST_F(KernelModelsTest, passes_over_a_plugin_that_only_claims_to_be_a_loader) {
    auto* const impostor = new Plugin;
    impostor->set_type(PLUGIN_TYPE_LOADER_3D);
    impostor->set_name("orvex_plugin_fbx");
    registry->insert_plugin(impostor);
    EXPECT_EQ(kernel->load_model_from_file_fbx("x", "", ""), nullptr);
    add_loader("a", true);
    EXPECT_TRUE(end(kernel->load_model_from_file("x", "", "")));
}

TEST_F(KernelModelsTest, fbx_asks_the_first_plugin_of_that_name_only) {
    EXPECT_EQ(kernel->load_model_from_file_fbx("x", "m/", "r/"), nullptr);
    add_loader("orvex_plugin_fbx2", true);
    add_loader("orvex_plugin_fb", true);
    EXPECT_EQ(kernel->load_model_from_file_fbx("x", "m/", "r/"), nullptr);
    EXPECT_TRUE(calls.empty());

    add_loader("orvex_plugin_fbx", false);
    add_loader("orvex_plugin_fbx", true);
    EXPECT_EQ(kernel->load_model_from_file_fbx("x", "m/", "r/"), nullptr);
    EXPECT_EQ(calls, Lines{"orvex_plugin_fbx x m/ r/ separate 0"});
}

TEST_F(KernelModelsTest, fbx_gives_the_model_of_its_plugin) {
    add_loader("orvex_plugin_fbx", true);
    EXPECT_TRUE(end(kernel->load_model_from_file_fbx_v2("x", "m/", "r/", false, 4)));
    EXPECT_EQ(calls, Lines{"orvex_plugin_fbx x m/ r/ whole 4"});
}

TEST_F(KernelModelsTest, built_in_loaders_give_null_before_they_exist) {
    EXPECT_EQ(kernel->load_model_from_file_obj("x.obj", "", ""), nullptr);
    EXPECT_EQ(kernel->load_model_from_file_lib3ds("x.3ds", "", ""), nullptr);
}

TEST_F(KernelModelsTest, obj_goes_to_the_built_in_loader_past_all_others) {
    const TempDir dir;
    dir.write("triangle.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    add_loader("a", true);
    kernel->load_core_loader3d_plugins();
    const std::string directory = dir.path() + "/";
    Model* const model = kernel->load_model_from_file_obj("triangle.obj", directory.c_str(), "");
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->get_num_faces(model), 1u);
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(end(model));
    EXPECT_EQ(kernel->load_model_from_file_obj("missing.obj", directory.c_str(), ""), nullptr);
}

#ifdef ORVEX_WITH_LIB3DS

/// A triangle, in 3DS chunks: file, objects, object "t", mesh, points, faces.
std::string triangle_3ds() {
    std::string bytes = "MM\x66";
    bytes += std::string("\0\0\0=\x3D\x60\0\0\0", 9);
    bytes += std::string("\0\x40\x5A\0\0\0t\0", 8);
    bytes += std::string("\0\x41\x52\0\0\0", 6);
    bytes += std::string("\x10\x41\x2C\0\0\0\x03\0", 8) + std::string(36, '\0');
    bytes += std::string("\x20\x41\x20\0\0\0\x03\0", 8) + std::string(24, '\0');
    return bytes;
}

TEST_F(KernelModelsTest, gives_3ds_files_to_their_loader_and_obj_files_to_the_next) {
    const TempDir dir;
    dir.write("triangle.3ds", triangle_3ds());
    dir.write("triangle.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    kernel->load_core_loader3d_plugins();
    const std::string folder = dir.path() + "/";
    Model* const model = kernel->load_model_from_file_lib3ds("triangle.3ds", folder.c_str(), "");
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->get_num_faces(model), 3u);
    EXPECT_TRUE(end(model));
    EXPECT_TRUE(end(kernel->load_model_from_file("triangle.3ds", folder.c_str(), "")));
    EXPECT_TRUE(end(kernel->load_model_from_file("triangle.obj", folder.c_str(), "")));
    EXPECT_EQ(kernel->load_model_from_file_lib3ds("triangle.obj", folder.c_str(), ""), nullptr);
    EXPECT_EQ(kernel->load_model_from_file_obj("triangle.3ds", folder.c_str(), ""), nullptr);
}

#endif

TEST_F(KernelModelsTest, aux_functions_are_those_of_the_kernel) {
    add_loader("orvex_plugin_fbx", true);
    EXPECT_TRUE(end(aux::load_model_from_file("x", "m/", "r/")));
    EXPECT_TRUE(end(aux::load_model_from_file_fbx("y", "m/", "r/")));
    EXPECT_EQ(aux::load_model_from_file_obj("z", "m/", "r/"), nullptr);
    EXPECT_EQ(aux::load_model_from_file_lib3ds("z", "m/", "r/"), nullptr);
    EXPECT_EQ(calls, (Lines{"orvex_plugin_fbx x m/ r/ separate 0",
                            "orvex_plugin_fbx y m/ r/ separate 0"}));
}

TEST_F(KernelModelsTest, wraps_no_buffer_of_a_null_target) {
    EXPECT_EQ(kernel->create_color_texture_from_render_target(nullptr, 0), nullptr);
    EXPECT_EQ(kernel->create_depth_texture_from_render_target(nullptr), nullptr);
}

TEST_F(KernelModelsTest, wraps_the_buffers_of_a_target_in_managed_textures) {
    orvex_test::StubRenderTarget target;
    target.first_color_texture = 70;
    target.depth_texture = 90;
    const unsigned long before = TextureMgr::get()->get_num_resources();
    Texture* const color = kernel->create_color_texture_from_render_target(&target, 3);
    Texture* const depth = kernel->create_depth_texture_from_render_target(&target);
    ASSERT_NE(color, nullptr);
    ASSERT_NE(depth, nullptr);
    EXPECT_EQ(TextureMgr::get()->get_num_resources(), before + 2);
    EXPECT_EQ(color->get_data_ptr()->opengl_texture_id, 70u) << "always the first";
    EXPECT_EQ(depth->get_data_ptr()->opengl_texture_id, 90u);
    TextureMgr::get()->release_texture(nullptr, color, nullptr);
    TextureMgr::get()->release_texture(nullptr, depth, nullptr);
}

} // namespace
} // namespace orvex_test
