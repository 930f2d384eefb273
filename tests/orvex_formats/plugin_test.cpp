// A host without the kit: a format's plugin is loaded, reads, is unloaded and loaded again.

#include <fstream>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <orvex/assets/materials/material.h>
#include <orvex/base/loader_3d.h>
#include <orvex/base/plugin_mgr.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/kernel/aux.h>
#include <orvex/kernel/core.h>
#include <orvex/kernel/kernel.h>

#include "orvex_formats/private/format_loader.h"
#include "tests/orvex_formats/archives.h"
#include "tests/orvex_formats/gltf_file.h"
#include "tests/support/command.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex;

const char* const text = "solid tile\nfacet\nvertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\nendfacet\n";

class FormatPluginTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(core::start("", false, nullptr, nullptr)); }
    void TearDown() override { core::stop(nullptr); }

    /// The loader of a format, by its plugin's name.
    Loader3D* load(const std::string& name) {
        Plugin* const plugin = Kernel::get()->load_plugin(
            (ORVEX_PLUGIN_FOLDER "/" + name + ".so").c_str(), true, false);
        return dynamic_cast<Loader3D*>(plugin);
    }

    std::string png_of_one_pixel() const {
        const std::string path = folder.file("pixel.png");
        EXPECT_TRUE(write_png(path, orvex_test::Picture(1, 1)));
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    TempDir folder;
};

TEST_F(FormatPluginTest, is_a_loader_that_the_engine_asks) {
    Loader3D* const loader = load("orvex_stl");
    ASSERT_NE(loader, nullptr);
    EXPECT_STREQ(loader->get_name(), "orvex_stl");
    EXPECT_STREQ(loader->get_loader_name(), "STL");
    EXPECT_EQ(loader->get_type(), PLUGIN_TYPE_LOADER_3D);
    const std::string path = folder.write("tile.stl", text);
    Model* const model = aux::load_model_from_file("tile.stl", (folder.path() + "/").c_str(), "");
    ASSERT_NE(model, nullptr);
    ASSERT_EQ(model->get_num_children(), 1u);
    const auto* const mesh = dynamic_cast<const Mesh*>(model->get_child(0));
    ASSERT_NE(mesh, nullptr);
    EXPECT_STREQ(mesh->get_name(), "tile");
    EXPECT_EQ(mesh->get_vertex_normal(0).z, 1.0f);
    EXPECT_EQ(mesh->get_vertex_color(2).x, 1.0f);
    EXPECT_EQ(mesh->get_vertex_position(2).y, 1.0f);
    model->kill(nullptr, nullptr);
}

TEST_F(FormatPluginTest, fills_meshes_in_both_layouts) {
    Loader3D* const loader = load("orvex_off");
    ASSERT_NE(loader, nullptr);
    folder.write("tile.off", "STCNOFF\n3 1 0\n1 2 3  0 1 0  1 0.5 0 1  0.25 0.75\n"
                             "2 0 0  0 0 1  0 0 1 0.5  0 1\n3 1 0  0 0 1  0 1 0 1  1 0\n3 0 1 2\n");
    loader->set_model_dir((folder.path() + "/").c_str());
    for (const bool is_separate : {true, false}) {
        Model* const model = new Model;
        model->set_mesh_vertex_alloc_params(is_separate, 0);
        ASSERT_TRUE(loader->load_from_file(model, "tile.off"));
        auto* const mesh = dynamic_cast<Mesh*>(model->get_child(0));
        ASSERT_NE(mesh, nullptr);
        EXPECT_EQ(mesh->get_vertex(0) != nullptr, !is_separate);
        const Vertex vertex = mesh->get_vertex_v2(0);
        EXPECT_EQ(vertex.position.z, 3.0f);
        EXPECT_EQ(vertex.position.w, 1.0f);
        EXPECT_EQ(vertex.normal.y, 1.0f);
        EXPECT_EQ(vertex.normal.w, 0.0f);
        EXPECT_EQ(vertex.color.y, 0.5f);
        EXPECT_EQ(vertex.uv0.y, 0.75f);
        EXPECT_EQ(vertex.uv0.w, 1.0f);
        EXPECT_EQ(mesh->get_vertex_v2(1).color.w, 0.5f);
        model->kill(nullptr, nullptr);
    }
}

TEST_F(FormatPluginTest, reads_compressed_files) {
    Loader3D* const loader = load("orvex_stl");
    ASSERT_NE(loader, nullptr);
    folder.write("tile.stl.gz", gzip(text));
    folder.write("tile.zip", Zip().add("tile.stl", text).add("readme.txt", "?").text());
    loader->set_model_dir((folder.path() + "/").c_str());
    for (const char* name : {"tile.stl.gz", "tile.zip"}) {
        Model* const model = new Model;
        EXPECT_TRUE(loader->load_from_file(model, name)) << loader->get_failure_reason();
        EXPECT_EQ(model->get_num_children(), 1u);
        model->kill(nullptr, nullptr);
    }
    ASSERT_EQ(loader->get_num_notes(), 1u);
    EXPECT_STREQ(loader->get_note(0), "the other files of the archive were left out: 1");
}

TEST_F(FormatPluginTest, reads_what_lies_beside_a_model_in_its_archive) {
    const std::string picture = png_of_one_pixel();
    struct Row {
        const char* plugin;
        const char* name;
        std::string archive;
        std::size_t num_left_out;
    };
    GltfFile file = triangle();
    file.rest += ",'materials':[{'pbrMetallicRoughness':{'baseColorTexture':{'index':0}}}],"
                 "'textures':[{'source':0}],'images':[{'uri':'pictures/wood.png'}]";
    file.rest.insert(file.rest.find("'attributes'"), "'material':0,");
    const std::string bytes(file.bytes.begin(), file.bytes.end());
    const Row rows[] = {
        {"orvex_obj", "tile.obj",
         Zip()
             .add("a/tile.obj", "mtllib B/Tile.MTL\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl w\nf 1 2 3\n")
             .add("a/tile.mtl", "newmtl w\nKd 0.5 0 0\nmap_Kd -s 1 1 1 C:\\x\\Pictures\\WOOD.png\n")
             .add("a/pictures/wood.png", picture)
             .add("readme.txt", "?")
             .text(),
         1},
        {"orvex_gltf", "tile.gltf",
         Zip()
             .add("tile.gltf", file.text("tile%20data.bin"))
             .add("tile data.bin", bytes)
             .add("pictures/wood.png", picture)
             .text(),
         0},
    };
    for (const Row& row : rows) {
        Loader3D* const loader = load(row.plugin);
        ASSERT_NE(loader, nullptr);
        loader->set_model_dir((folder.path() + "/").c_str());
        folder.write("tile.zip", row.archive);
        Model* const model = new Model;
        ASSERT_TRUE(loader->load_from_file(model, "tile.zip")) << loader->get_failure_reason();
        ASSERT_EQ(model->get_num_materials(), 1u) << row.name;
        const Material& material = *model->get_material_by_index(0);
        ASSERT_EQ(material.get_num_textures(), 1u) << row.name << ": a part of the model";
        EXPECT_EQ(loader->get_num_files(), 0u) << "none on the disk";
        EXPECT_EQ(loader->get_num_notes(), row.num_left_out) << loader->get_note(0);
        model->kill(nullptr, nullptr);
    }
}

TEST_F(FormatPluginTest, misses_what_its_archive_does_not_have) {
    Loader3D* const loader = load("orvex_gltf");
    ASSERT_NE(loader, nullptr);
    loader->set_model_dir((folder.path() + "/").c_str());
    const GltfFile file = triangle();
    folder.write("tile.bin", std::string(file.bytes.begin(), file.bytes.end()));
    Model* const model = new Model;
    for (const char* uri : {"tile.bin", "../tile.bin", "/etc/passwd", "http://a/b"}) {
        folder.write("tile.zip",
                     Zip().add("a/tile.gltf", file.text(uri)).add("tile.bin", "?").text());
        EXPECT_FALSE(loader->load_from_file(model, "tile.zip"));
        EXPECT_EQ(std::string(loader->get_failure_reason()).find("buffers[0].uri: \""), 0u)
            << loader->get_failure_reason();
    }
    model->kill(nullptr, nullptr);
}

TEST_F(FormatPluginTest, notes_pictures_of_its_archive_that_cant_be_had) {
    Loader3D* const loader = load("orvex_obj");
    ASSERT_NE(loader, nullptr);
    loader->set_model_dir((folder.path() + "/").c_str());
    Zip::File locked;
    locked.name = "locked.png";
    locked.text = png_of_one_pixel();
    locked.flags = 1;
    folder.write("tile.zip",
                 Zip()
                     .add(locked)
                     .add("torn.png", "?")
                     .add("tile.mtl", "newmtl a\nmap_Kd locked.png\nnewmtl b\nmap_Kd torn.png\n"
                                      "newmtl c\nmap_Kd gone.png\nnewmtl d\nmap_Kd torn.png\n")
                     .add("tile.obj", "mtllib tile.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl a\n"
                                      "f 1 2 3\nusemtl b\nf 1 2 3\nusemtl c\nf 1 2 3\n"
                                      "usemtl d\nf 1 2 3\n")
                     .text());
    Model* const model = new Model;
    EXPECT_TRUE(loader->load_from_file(model, "tile.zip")) << loader->get_failure_reason();
    EXPECT_EQ(model->get_num_materials(), 4u);
    std::vector<std::string> notes;
    for (unsigned i = 0; i < loader->get_num_notes(); ++i)
        notes.emplace_back(loader->get_note(i));
    EXPECT_EQ(notes, (std::vector<std::string>{
                         "byte 0: locked.png is encrypted",
                         "the picture \"torn.png\" can't be decoded, and is white"}));
    model->kill(nullptr, nullptr);
}

TEST_F(FormatPluginTest, keeps_the_pictures_that_a_reader_took_from_its_archive) {
    orvex::formats::FormatLoader loader(
        "carrier", "STL", "", [](const orvex::formats::InputFile&) -> orvex::formats::Draft {
            orvex::formats::Draft draft;
            draft.surfaces.resize(1);
            draft.materials.resize(1);
            draft.materials[0].textures = {"wood.png"};
            draft.pictures = {{"wood.png", {'?'}}};
            return draft;
        });
    const std::string path =
        folder.write("a.zip", Zip().add("a.stl", text).add("wood.png", png_of_one_pixel()).text());
    Model* const model = new Model;
    EXPECT_TRUE(loader.load_from_file(model, path.c_str())) << loader.get_failure_reason();
    ASSERT_EQ(loader.get_num_notes(), 2u);
    EXPECT_STREQ(loader.get_note(0), "the other files of the archive were left out: 1");
    EXPECT_STREQ(loader.get_note(1), "the picture \"wood.png\" can't be decoded, and is white");
    model->kill(nullptr, nullptr);
}

TEST_F(FormatPluginTest, makes_no_huge_model_of_a_small_file) {
    Loader3D* const loader = load("orvex_ply");
    ASSERT_NE(loader, nullptr);
    std::string points = "ply\nformat binary_little_endian 1.0\nelement vertex 5000000\n"
                         "property char x\nproperty char y\nproperty char z\nend_header\n";
    points.append(15000000, '\0');
    folder.write("points.ply.gz", gzip(points));
    Model* const model = new Model;
    loader->set_model_dir((folder.path() + "/").c_str());
    EXPECT_FALSE(loader->load_from_file(model, "points.ply.gz"));
    EXPECT_NE(
        std::string(loader->get_failure_reason()).find("bytes that becomes a model of 480002560"),
        std::string::npos)
        << loader->get_failure_reason();
    model->kill(nullptr, nullptr);
}

TEST_F(FormatPluginTest, makes_no_hundred_thousands_of_meshes_of_a_small_file) {
    orvex::formats::FormatLoader loader(
        "doubler", "none", "", [](const orvex::formats::InputFile&) -> orvex::formats::Draft {
            orvex::formats::Draft draft;
            draft.surfaces.resize(50000);
            draft.clouds.resize(50000);
            draft.lines.resize(50000);
            return draft;
        });
    Model* const model = new Model;
    EXPECT_FALSE(loader.load_from_file(model, folder.write("a.none", "a").c_str()));
    EXPECT_EQ(std::string(loader.get_failure_reason()).find("a file of 1 bytes that becomes"), 0u)
        << loader.get_failure_reason();
    model->kill(nullptr, nullptr);
}

TEST_F(FormatPluginTest, keeps_its_reason_and_leaves_nothing_behind) {
    Loader3D* const loader = load("orvex_stl");
    ASSERT_NE(loader, nullptr);
    Model* const model = new Model;
    folder.write("bad.stl", "solid\nfacet\nvertex 0 0\n");
    folder.write("other.txt", "solid as a rock");
    loader->set_model_dir((folder.path() + "/").c_str());
    EXPECT_FALSE(loader->load_from_file(model, "bad.stl"));
    EXPECT_STREQ(loader->get_failure_reason(), "line 3: a vertex without three numbers");
    EXPECT_TRUE(loader->get_format_known_state());
    EXPECT_FALSE(loader->load_from_file(model, "other.txt"));
    EXPECT_FALSE(loader->get_format_known_state());
    EXPECT_FALSE(loader->load_from_file(model, "missing.stl"));
    EXPECT_STREQ(loader->get_failure_reason(),
                 "the file can't be opened: No such file or directory");
    EXPECT_FALSE(loader->load_from_file(model, ""));
    EXPECT_STREQ(loader->get_failure_reason(), "no regular file");
    EXPECT_FALSE(loader->load_from_file(nullptr, "bad.stl"));
    EXPECT_FALSE(loader->load_from_file(model, nullptr));
    EXPECT_EQ(model->get_num_children(), 0u);
    model->kill(nullptr, nullptr);
}

TEST_F(FormatPluginTest, is_unloaded_and_loaded_again) {
    const std::string path = ORVEX_PLUGIN_FOLDER "/orvex_stl.so";
    for (int i = 0; i < 3; ++i) {
        Loader3D* const loader = load("orvex_stl");
        ASSERT_NE(loader, nullptr);
        Kernel::get()->unload_plugin(loader);
        void* const module = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
        EXPECT_EQ(module, nullptr);
    }
}

TEST_F(FormatPluginTest, serves_a_host_that_knows_the_engine_alone) {
    GltfFile file = triangle();
    file.rest.replace(file.rest.find("{'mesh':0}"), 10, "{'mesh':0,'camera':0}");
    file.rest += ",'cameras':[{'type':'perspective','perspective':{'yfov':1,'znear':1}}]";
    const std::vector<unsigned char> bytes = file.as_binary();
    folder.write("tile.glb", std::string(bytes.begin(), bytes.end()));

    // The same file as it would be for a library of another version.
    const std::string plugin = ORVEX_PLUGIN_FOLDER "/orvex_gltf.so";
    std::ifstream built(plugin, std::ios::binary);
    std::string other{std::istreambuf_iterator<char>(built), {}};
    const std::string library = "liborvex_r_osx.so.";
    const std::size_t place = other.find(library);
    ASSERT_NE(place, other.npos);
    char& version = other[place + library.size()];
    version = version == '7' ? '8' : '7';

    const std::string seen = "loaded orvex_gltf\nfaces 1\npixel 0 0 255\npixel 0 0 0\n";
    EXPECT_EQ(output_of(ORVEX_GLB_HOST " " + plugin + " " + folder.write("other.so", other) + " " +
                        folder.path() + "/ tile.glb"),
              "other version -1\n" + seen + seen);
}

TEST_F(FormatPluginTest, lets_nothing_be_thrown_at_its_host) {
    orvex::formats::FormatLoader loader(
        "thrower", "none", "", [](const orvex::formats::InputFile&) -> orvex::formats::Draft {
            throw std::length_error("a list that is too long");
        });
    Model* const model = new Model;
    EXPECT_NO_THROW(
        EXPECT_FALSE(loader.load_from_file(model, folder.write("a.none", "a").c_str())));
    EXPECT_STREQ(loader.get_failure_reason(), "a list that is too long");
    orvex::formats::FormatLoader glutton(
        "glutton", "none", "",
        [](const orvex::formats::InputFile&) -> orvex::formats::Draft { throw std::bad_alloc(); });
    EXPECT_NO_THROW(
        EXPECT_FALSE(glutton.load_from_file(model, folder.write("a.none", "a").c_str())));
    EXPECT_STREQ(glutton.get_failure_reason(), "there isn't enough memory");
    EXPECT_TRUE(glutton.get_format_known_state());
    EXPECT_EQ(model->get_num_children(), 0u);
    model->kill(nullptr, nullptr);
}

} // namespace

} // namespace orvex_test
