// Material libraries of OBJ files, alone and beside their models.

#include "orvex_formats/obj/private/mtl_reader.h"

#include <filesystem>

#include <gtest/gtest.h>
#include <unistd.h>

#include "orvex_formats/obj/private/obj_reader.h"
#include "orvex_formats/private/model_file.h"
#include "tests/orvex_formats/archives.h"
#include "tests/orvex_formats/check_draft.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

SurfaceMaterial material_of(const std::string& statements) {
    MtlTable table;
    Notes notes;
    read_mtl("newmtl one\n" + statements, "a.mtl", table, notes);
    EXPECT_EQ(notes.take(), std::vector<std::string>());
    return table.materials.at(0);
}

std::vector<std::string> notes_of(const std::string& text) {
    MtlTable table;
    Notes notes;
    read_mtl(text, "a.mtl", table, notes);
    return notes.take();
}

std::string text_of(const vec4& color) {
    return std::to_string(color.x) + " " + std::to_string(color.y) + " " + std::to_string(color.z) +
           " " + std::to_string(color.w);
}

TEST(Mtl, reads_colours_and_factors) {
    const SurfaceMaterial material = material_of("\tKa 0.1 0.2 0.3\r\n Kd 0.25\nKs 1 0.5 0\n"
                                                 "Ns 500\nillum 2\nd 0.5\nTr 0.1\nNi 1.4\n");
    EXPECT_EQ(text_of(material.ambient), "0.100000 0.200000 0.300000 1.000000");
    EXPECT_EQ(text_of(material.diffuse), "0.250000 0.250000 0.250000 1.000000");
    EXPECT_EQ(text_of(material.specular), "1.000000 0.500000 0.000000 1.000000");
    EXPECT_EQ(material.shininess, 64.0f);
    EXPECT_EQ(material.opacity, 0.5f) << "\"d\" says more than \"Tr\"";
    EXPECT_FALSE(material.physical);
    EXPECT_EQ(material_of("Tr 0.25\n").opacity, 0.75f);
    EXPECT_EQ(material_of("d -halo 0.25\n").opacity, 0.25f);
    EXPECT_EQ(material_of("d 7\n").opacity, 1.0f);
    EXPECT_EQ(material_of("Ns 0\n").shininess, 1.0f);
    EXPECT_EQ(material_of("Ns 1e9\n").shininess, 128.0f);
    EXPECT_EQ(material_of("Ks 1 1 1\nillum 1\n").specular.x, 0.0f) << "which has no highlights";
    EXPECT_EQ(material_of("Ks 1 1 1\n").specular.x, 1.0f);
}

TEST(Mtl, has_the_colours_of_the_engines_own_loader_where_nothing_is_told) {
    const SurfaceMaterial material = material_of("");
    EXPECT_EQ(text_of(material.ambient), "0.400000 0.400000 0.400000 1.000000");
    EXPECT_EQ(text_of(material.diffuse), "0.700000 0.700000 0.800000 1.000000");
    EXPECT_EQ(text_of(material.specular), "0.200000 0.200000 0.200000 1.000000");
    EXPECT_EQ(material.shininess, 24.0f / 1000.0f * 128.0f);
}

TEST(Mtl, reads_names_of_pictures_behind_their_options) {
    for (const char* map :
         {"map_Kd wood.png", "map_kd \"wood.png\"", "map_Kd -s 2 2 1 wood.png",
          "map_Kd -blendu on -blendv off -o 0.5 -mm 0 1 wood.png", "map_Kd -clamp on wood.png",
          "map_Kd -t 1 2 -bm 2 -imfchan r -cc off -texres 64 -boost 3 -type sphere wood.png"})
        EXPECT_EQ(material_of(std::string(map) + "\n").textures,
                  std::vector<std::string>{"wood.png"})
            << map;
    EXPECT_EQ(material_of("map_Kd -s 2 2 old wood.png  \n").textures,
              std::vector<std::string>{"old wood.png"});
    EXPECT_EQ(material_of("map_Kd -o 0.5 7\n").textures, std::vector<std::string>{"7"});
    EXPECT_EQ(material_of("map_Kd C:\\maps\\wood.png\n").textures,
              std::vector<std::string>{"C:\\maps\\wood.png"});
}

TEST(Mtl, keeps_physical_values) {
    const SurfaceMaterial material = material_of(
        "Kd 0.5 0.25 1\nd 0.5\nPr 0.3\nPm 1\nPc 0.5\nPcr 0.25\nKe 2 1 0\nNi 1.4\n"
        "map_Kd -s 2 3 -o 0.25 0.5 -clamp on a.png\nmap_Ke b.png\nmap_Bump -bm 0.5 c.png\n");
    ASSERT_TRUE(material.physical);
    const PhysicalMaterial& physical = *material.physical;
    EXPECT_EQ(text_of(physical.base_color), "0.500000 0.250000 1.000000 0.500000");
    EXPECT_EQ(physical.alpha, PhysicalMaterial::Alpha::blend);
    EXPECT_EQ(physical.roughness, 0.3f);
    EXPECT_EQ(physical.metallic, 1.0f);
    EXPECT_EQ(physical.clearcoat, 0.5f);
    EXPECT_EQ(physical.clearcoat_roughness, 0.25f);
    EXPECT_EQ(physical.emissive_strength, 2.0f);
    EXPECT_EQ(physical.emissive.y, 0.5f);
    EXPECT_EQ(physical.ior, 1.4f);
    EXPECT_EQ(physical.base_color_texture.image, "a.png");
    EXPECT_EQ(physical.base_color_texture.scale_v, 3.0f);
    EXPECT_EQ(physical.base_color_texture.offset_u, 0.25f);
    EXPECT_EQ(physical.base_color_texture.wrap_u, PhysicalTexture::Wrap::clamp);
    EXPECT_EQ(physical.emissive_texture.image, "b.png");
    EXPECT_EQ(physical.normal_texture.image, "c.png");
    EXPECT_EQ(physical.normal_texture.strength, 0.5f);
    EXPECT_EQ(material.textures, (std::vector<std::string>{"a.png", "b.png", "c.png"}));
}

TEST(Mtl, makes_an_insulator_of_what_tells_no_metal) {
    const SurfaceMaterial material = material_of("Ns 6\nKe 1 0 0\nmap_Pr r.png\n");
    ASSERT_TRUE(material.physical);
    EXPECT_EQ(material.physical->metallic, 0.0f);
    EXPECT_EQ(material.physical->roughness, 1.0f);
    EXPECT_EQ(material.physical->metallic_roughness_texture.image, "r.png");
    EXPECT_EQ(material.textures, (std::vector<std::string>{MtlTable::white, "r.png"}))
        << "the first picture is the colour's";
    EXPECT_EQ(material_of("Ns 6\nKe 1 0 0\n").physical->roughness, 0.5f);
    EXPECT_FALSE(material_of("Ke 0 0 0\n").physical) << "which is what others write too";
}

TEST(Mtl, shines_as_a_picture_says_and_not_without_one) {
    const SurfaceMaterial lamp = material_of("Pr 1\nmap_Ke lamp.png\n");
    ASSERT_TRUE(lamp.physical);
    EXPECT_EQ(text_of(lamp.physical->emissive), text_of(vec3(1.0f, 1.0f, 1.0f)));
    EXPECT_EQ(lamp.physical->emissive_strength, 1.0f);
    EXPECT_EQ(text_of(material_of("Pr 1\n").physical->emissive), text_of(vec3()));
}

TEST(Mtl, notes_what_it_leaves_out) {
    EXPECT_EQ(
        notes_of("Kd 1 1 1\nnewmtl a\nKd\nKd spectral a.rfl\nNs x\nmap_Ks s.png\nbump b.png\n"
                 "map_Ks t.png\nPs 1\nsharpness 60\nmap_Kd\n"),
        (std::vector<std::string>{
            "a.mtl, line 1: \"Kd\" before the first material was left out",
            "a.mtl, line 3: \"Kd\" without numbers was left out",
            "a.mtl, line 5: \"Ns\" without a number was left out",
            "a.mtl, line 6: \"map_Ks\" was left out", "a.mtl, line 9: \"Ps\" was left out",
            "a.mtl, line 10: \"sharpness\" was left out", "a.mtl, line 11: \"map_Kd\" was left out",
            "a.mtl, line 11: \"bump\" was left out"}));
    EXPECT_EQ(notes_of("newmtl a\nmap_Pr r.png\nmap_Pm m.png\n"),
              (std::vector<std::string>{
                  "a.mtl, line 3: \"map_Pr\" and \"map_Pm\" in two pictures were left out"}));
}

// ------------------------------------------------------------------------------ beside models

class LibraryTest : public testing::Test {
protected:
    Draft read(const std::string& head) {
        const std::string path = folder.write("model.obj", head + "v 0 0 0\nv 1 0 0\nv 1 1 0\n" +
                                                               "usemtl red\nf 1 2 3\n");
        Draft draft = read_obj(InputFile(path));
        EXPECT_TRUE(holds_together(draft));
        return draft;
    }
    void expect_found(const std::string& head, const std::string& file) {
        const Draft draft = read(head);
        EXPECT_EQ(draft.files, std::vector<std::string>{folder.file(file)}) << head;
        EXPECT_EQ(draft.materials.at(0).diffuse.y, 0.0f) << head;
        EXPECT_EQ(draft.notes, std::vector<std::string>()) << head;
    }
    void expect_missing(const std::string& head, const std::string& name) {
        const Draft draft = read(head);
        EXPECT_TRUE(draft.files.empty()) << head;
        EXPECT_EQ(draft.notes, (std::vector<std::string>{"line 1: the material library \"" + name +
                                                         "\" isn't in the model's folder"}));
        EXPECT_EQ(draft.materials.at(0).name, "red");
    }

    const std::string red = "newmtl red\nKd 1 0 0\n";
    TempDir folder;
};

TEST_F(LibraryTest, is_found_whatever_its_name_looks_like) {
    folder.write("Paints.mtl", red);
    folder.write("old paints.mtl", red);
    std::filesystem::create_directory(folder.file("maps"));
    folder.write("maps/deep.mtl", red);
    expect_found("mtllib Paints.mtl\n", "Paints.mtl");
    expect_found("mtllib paints.MTL  \r\n", "Paints.mtl");
    expect_found("mtllib \"Paints.mtl\"\n", "Paints.mtl");
    expect_found("mtllib ./Paints.mtl\n", "Paints.mtl");
    expect_found("mtllib C:\\work\\Paints.mtl\n", "Paints.mtl");
    expect_found("mtllib /home/me/Paints.mtl\n", "Paints.mtl");
    expect_found("mtllib ../../Paints.mtl\n", "Paints.mtl");
    expect_found("mtllib old paints.mtl\n", "old paints.mtl");
    expect_found("mtllib \"old paints.mtl\"\n", "old paints.mtl");
    expect_found("mtllib Maps\\deep.mtl\n", "maps/deep.mtl");
}

TEST_F(LibraryTest, is_one_of_several) {
    folder.write("a.mtl", "newmtl blue\nKd 0 0 1\n");
    folder.write("b c.mtl", red);
    for (const char* head : {"mtllib a.mtl b c.mtl\n", "mtllib a.mtl\nmtllib b c.mtl\n",
                             "mtllib \"a.mtl\" \"b c.mtl\"\n", "mtllib b c.mtl a.mtl a.mtl\n"}) {
        const Draft draft = read(head);
        EXPECT_EQ(draft.files.size(), 2u) << head;
        ASSERT_EQ(draft.materials.size(), 1u) << "only those that faces have";
        EXPECT_EQ(draft.materials[0].diffuse.y, 0.0f) << head;
    }
}

TEST_F(LibraryTest, that_is_missing_or_elsewhere_is_a_note) {
    const TempDir other;
    const std::string outside = other.write("out.mtl", red);
    std::filesystem::create_symlink(outside, folder.file("link.mtl"));
    std::filesystem::create_directory(folder.file("folder.mtl"));
    expect_missing("mtllib missing.mtl\n", "missing.mtl");
    expect_missing("mtllib " + outside + "\n", outside);
    expect_missing("mtllib link.mtl\n", "link.mtl");
    expect_missing("mtllib folder.mtl\n", "folder.mtl");
    expect_missing("mtllib ..\n", "..");
    EXPECT_TRUE(read("mtllib\n").notes.empty());
}

TEST_F(LibraryTest, that_cant_be_read_is_a_note) {
    const std::string path = folder.write("huge.mtl", red);
    ASSERT_EQ(truncate(path.c_str(), (64l << 20) + 1), 0);
    const Draft huge = read("\nmtllib huge.mtl\n");
    EXPECT_EQ(huge.notes,
              std::vector<std::string>{"line 2: the material library \"huge.mtl\" wasn't read: it "
                                       "is larger than any that is read"});
    EXPECT_TRUE(huge.files.empty());
    EXPECT_EQ(huge.materials.at(0).name, "red");

    Zip::File locked;
    locked.name = "a.mtl";
    locked.text = red;
    locked.flags = 1;
    const ModelFile opened = open_model_file(
        folder.write("a.zip", Zip()
                                  .add("a.obj", "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\n"
                                                "usemtl red\nf 1 2 3\n")
                                  .add(locked)
                                  .text()),
        "OBJ");
    const Draft draft = read_obj(opened.file);
    ASSERT_EQ(draft.notes.size(), 1u);
    EXPECT_EQ(draft.notes[0].rfind("line 1: the material library \"a.mtl\" wasn't read: byte ", 0),
              0u)
        << draft.notes[0];
    EXPECT_EQ(draft.notes[0].substr(draft.notes[0].find("a.mtl is")), "a.mtl is encrypted");
    EXPECT_EQ(draft.materials.at(0).name, "red");
}

TEST_F(LibraryTest, has_a_white_picture_where_a_colour_has_none) {
    folder.write("a.mtl", red + "map_Ke b.png\n");
    const Draft draft = read("mtllib a.mtl\n");
    EXPECT_EQ(draft.materials.at(0).textures,
              (std::vector<std::string>{"orvex_obj_white", "b.png"}));
    ASSERT_EQ(draft.pictures.size(), 1u);
    EXPECT_EQ(draft.pictures[0].name, "orvex_obj_white");
    EXPECT_TRUE(draft.pictures[0].bytes.empty());
}

TEST_F(LibraryTest, has_names_whose_first_word_is_enough) {
    folder.write("a.mtl", red);
    const std::string path =
        folder.write("b.obj", "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nusemtl red # glossy\n"
                              "f 1 2 3\n");
    const Draft draft = read_obj(InputFile(path));
    ASSERT_EQ(draft.materials.size(), 1u);
    EXPECT_EQ(draft.materials[0].name, "red");
    EXPECT_EQ(draft.materials[0].diffuse.y, 0.0f);
    EXPECT_TRUE(draft.notes.empty());
}

TEST_F(LibraryTest, that_names_itself_or_is_the_model_does_no_harm) {
    folder.write("a.mtl", "mtllib a.mtl\n" + red + "mtllib a.mtl\n");
    const Draft draft = read("mtllib a.mtl\nmtllib a.mtl\nmtllib model.obj\n");
    EXPECT_EQ(draft.files.size(), 2u);
    EXPECT_EQ(draft.materials.at(0).diffuse.y, 0.0f);
}

TEST_F(LibraryTest, has_names_with_blanks_and_quotes) {
    folder.write("a.mtl", "newmtl dark red\nKd 1 0 0\nnewmtl \"light red\"\nKd 1 0 0\n");
    for (const char* name : {"usemtl dark red", "usemtl \"dark red\"", "usemtl light red  "}) {
        const std::string path = folder.write("b.obj", "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\n" +
                                                           std::string(name) + "\nf 1 2 3\n");
        const Draft draft = read_obj(InputFile(path));
        EXPECT_EQ(draft.materials.at(0).diffuse.y, 0.0f) << name;
        EXPECT_TRUE(draft.notes.empty()) << name;
    }
    const std::string path = folder.write("c.obj", "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\n"
                                                   "usemtl green\nf 1 2 3\n");
    EXPECT_EQ(read_obj(InputFile(path)).notes,
              (std::vector<std::string>{"line 5: no material library has \"green\""}));
}

TEST_F(LibraryTest, is_read_in_utf_16_too) {
    std::string wide = "\xff\xfe";
    for (const char letter : red)
        wide += {letter, '\0'};
    folder.write("a.mtl", wide);
    expect_found("mtllib a.mtl\n", "a.mtl");
}

TEST_F(LibraryTest, makes_no_time_pass_by_many_names) {
    std::string head;
    for (int i = 0; i < 20000; ++i)
        head += "mtllib " + std::to_string(i) + "\n";
    EXPECT_EQ(read(head).notes.size(), 64u);
    std::string words = "mtllib";
    for (int i = 0; i < 20000; ++i)
        words += " a b";
    EXPECT_LE(read(words + "\n").notes.size(), 64u);
}

} // namespace

} // namespace orvex_test
