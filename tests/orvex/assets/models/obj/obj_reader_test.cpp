#include "orvex/assets/models/obj/private/obj_reader.h"

#include <clocale>
#include <random>

#include <gtest/gtest.h>

#include "obj_reference.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

class ObjReaderTest : public testing::Test {
protected:
    void write(const std::string& name, const std::string& text) const { dir_.write(name, text); }

    std::unique_ptr<OBJ_Model> read(const std::string& text) const {
        return read_obj_text(text.c_str(), text.size(), folder_);
    }

    /// Reads `library` as the one that a small model names.
    const OBJ_Material* read_material(const std::string& library, const char* name) {
        write("a.mtl", library);
        model_ = read("mtllib a.mtl\nv 0 0 0\nf 1 1 1\n");
        return model_->materials.find(OBJ_Name(name));
    }

    void expect_same(const std::string& text) const {
        EXPECT_EQ(describe_obj_by_engine(text, folder_), describe_obj_by_c_streams(text, folder_))
            << "file:\n"
            << text;
    }

    TempDir dir_;
    const std::string folder_ = dir_.path() + "/";
    std::unique_ptr<OBJ_Model> model_;
};

constexpr const char* THREE_VERTICES = "v 1 2 3\nv 4 5 6\nv 7 8 9\n";

std::vector<int> vertex_indices(const OBJ_Model& model, const OBJ_Group& group) {
    std::vector<int> indices;
    for (const OBJ_TriangleRun& run : group.triangles) {
        for (std::size_t i = run.first; i < run.first + run.count; ++i)
            for (const OBJ_Corner& corner : model.triangles[i])
                indices.push_back(corner.vertex);
    }
    return indices;
}

TEST_F(ObjReaderTest, vertices_alone_are_no_model) {
    EXPECT_EQ(read(THREE_VERTICES), nullptr);
    EXPECT_EQ(read(""), nullptr);
    EXPECT_EQ(read("f 1 2 3\n"), nullptr) << "nor are faces alone";
}

TEST_F(ObjReaderTest, faces_before_any_group_belong_to_the_defaults) {
    const auto model = read(std::string(THREE_VERTICES) + "f 1 2 3\n");
    ASSERT_EQ(model->groups.size(), 1u);
    EXPECT_STREQ(model->groups[0].name.c_str(), "orvex_obj_default_group");
    ASSERT_EQ(model->materials.size(), 1u);
    const OBJ_Material& material = model->materials[0];
    EXPECT_STREQ(material.name.c_str(), "orvex_obj_default_material");
    EXPECT_EQ(material.ambient, (std::array<float, 4>{0.4f, 0.4f, 0.4f, 1.0f}));
    EXPECT_EQ(material.diffuse, (std::array<float, 4>{0.7f, 0.7f, 0.8f, 1.0f}));
    EXPECT_EQ(material.specular, (std::array<float, 4>{0.6f, 0.6f, 0.6f, 1.0f}));
    EXPECT_EQ(material.specular_exp, 24.0f);
    EXPECT_EQ(material.opacity, 1.0f);
    EXPECT_EQ(material.face_count, 1);
}

TEST_F(ObjReaderTest, a_polygon_becomes_a_fan) {
    const auto model = read(std::string(THREE_VERTICES) + "f 1 2 3 1\nf 1 2 3 2 1\n");
    EXPECT_EQ(vertex_indices(*model, model->groups[0]),
              (std::vector<int>{1, 2, 3, 1, 3, 1, 1, 2, 3, 1, 3, 2, 1, 2, 1}));
    EXPECT_EQ(model->num_faces, 2u);
    EXPECT_EQ(model->num_triangles, 5u);
}

struct FormRow {
    const char* name;
    const char* face;
    OBJ_Corner corners[3];
};

TEST_F(ObjReaderTest, every_form_of_a_face_is_read_by_its_first_corner) {
    const FormRow rows[] = {
        {"vertices", "f 1 2 3\n", {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}}},
        {"with texture coordinates", "f 1/4 2/5 3/6\n", {{1, 4, 0}, {2, 5, 0}, {3, 6, 0}}},
        {"with normals", "f 1//4 2//5 3//6\n", {{1, 0, 4}, {2, 0, 5}, {3, 0, 6}}},
        {"with both", "f 1/2/3 4/5/6 7/8/9\n", {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}},
        {"a number that is missing is 0", "f 1/1/ 2/2/ 3/3/\n", {{1, 1, 0}, {2, 2, 0}, {0, 0, 0}}},
        {"negative indices are kept as read", "f -1 -2 -3\n", {{-1, 0, 0}, {-2, 0, 0}, {-3, 0, 0}}},
        {"a face goes on over lines", "f 1\n2\n3\n", {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}}},
        {"a face without numbers", "f\n", {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}},
        {"a long number wraps", "f 4294967297 2 3\n", {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}}},
    };
    for (const FormRow& row : rows) {
        SCOPED_TRACE(row.name);
        const auto model = read(std::string(THREE_VERTICES) + row.face);
        ASSERT_EQ(model->num_triangles, 1u);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(model->triangles[0][i].vertex, row.corners[i].vertex);
            EXPECT_EQ(model->triangles[0][i].texcoord, row.corners[i].texcoord);
            EXPECT_EQ(model->triangles[0][i].normal, row.corners[i].normal);
        }
    }
}

TEST_F(ObjReaderTest, a_group_named_again_goes_on) {
    const auto model =
        read(std::string(THREE_VERTICES) + "g a\nf 1 2 3\ng b\nf 2 3 1\ng a\nf 3 1 2\n");
    ASSERT_EQ(model->groups.size(), 3u);
    EXPECT_EQ(vertex_indices(*model, model->groups[1]), (std::vector<int>{1, 2, 3, 3, 1, 2}));
    EXPECT_EQ(vertex_indices(*model, model->groups[2]), (std::vector<int>{2, 3, 1}));
    EXPECT_EQ(model->groups[0].num_filled, 0u);
}

TEST_F(ObjReaderTest, a_group_name_keeps_its_blanks_and_a_material_name_is_one_word) {
    const auto model = read(std::string(THREE_VERTICES) +
                            "g   left arm\r\nusemtl left arm\nf 1 2 3\nusemtl hand\nf 1 2 3\n"
                            "g\nusemtl\n");
    ASSERT_EQ(model->groups.size(), 2u);
    EXPECT_STREQ(model->groups[1].name.c_str(), "left arm");
    ASSERT_EQ(model->materials.size(), 3u);
    EXPECT_STREQ(model->materials[1].name.c_str(), "arm");
    EXPECT_STREQ(model->materials[2].name.c_str(), "hand");
}

TEST_F(ObjReaderTest, names_are_cut_to_127_characters) {
    const std::string name(200, 'n');
    const auto model = read(std::string(THREE_VERTICES) + "g " + name + "\nf 1 2 3\ng " +
                            name.substr(0, 127) + "x\nf 3 2 1\n");
    ASSERT_EQ(model->groups.size(), 2u) << "both are the same name";
    EXPECT_EQ(std::string(model->groups[1].name.c_str()), name.substr(0, 127));
    EXPECT_EQ(model->groups[1].num_filled, 2u);
}

TEST_F(ObjReaderTest, a_token_of_any_length_is_read_in_pieces) {
    expect_same(std::string(THREE_VERTICES) + std::string(5000, 'f') + " 1 2 3\n");
    expect_same(std::string(THREE_VERTICES) + "g " + std::string(5000, 'v') + "\nf 1 2 3\n");
    expect_same(std::string(THREE_VERTICES) + "# " + std::string(1000, ' ') + "f 1 2 3\nf 3 2 1\n");
    expect_same(std::string(THREE_VERTICES) + "f " + std::string(5000, '1') + " 2 3\n");
    expect_same("v " + std::string(5000, '1') + " " + std::string(400, '0') + ".5e-300 3\nf 1 1 1");
}

TEST_F(ObjReaderTest, the_second_pass_keeps_within_what_the_first_one_counted) {
    const char* rows[] = {
        "v 1 2 3 v 4 5 6\nv 7 8 9\nf 1 2 3\n",
        "v 0 0 0 f 1 2 3\nf 1 1 1\n",
        "v 0 0 0 vn 1 2 3\nf 1 1 1\n",
        "v 0 0 0 usemtl x\nf 1 1 1\n",
        "v 0 0 0 g x\nf 1 1 1\n",
        "v 1\nv 2\nv 3\nf 1 2 3\nf 3 2 1\n",
        "v 1 2\nv 3 f 1 2 3\nf 1 1 1\nf 1 1 1\ng a\nf 2 2 2\n",
        "v x y z\nv 1 y 3\nf 1 2 2\n",
        "vt 1\nvt 2 3 4\nv 1 2 3 4\nf 1/1 1/2 1/1\n",
        "f 1 2 3",
        "v 1 1 1\nf",
        "v 1 1 1\nf 1 1 1\ng",
        "v 1 1 1\nf 1 1 1\nusemtl",
        "v 1 1 1\nvx 1\nunknown v 2 2 2\nuse f 1 1 1\n",
    };
    for (const char* row : rows)
        expect_same(row);
}

TEST_F(ObjReaderTest, zero_bytes_are_read_as_the_c_library_reads_them) {
    using namespace std::string_literals;
    expect_same("v 1 2 3\nf 1\0002 2 3\ng a\0b\nf 1 1 1\nv\0x 4 5 6\n"s);
    expect_same("v 1 2 3\n\0\0 f 1 1 1\nf 1/\0/1 1 1\nusemtl a\0b c\nf 1 1 1\n"s);
}

TEST_F(ObjReaderTest, the_hosts_locale_does_not_move_the_decimal_point) {
    // Not every machine has a locale with a comma; where none is, the C locale proves nothing
    // wrong.
    const std::string former = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8"})
        if (std::setlocale(LC_NUMERIC, name) != nullptr)
            break;
    const auto model = read("v 0.5 1.25e-3 0.123456789012345678901234567890\nf 1 1 1\n");
    std::setlocale(LC_NUMERIC, former.c_str());
    EXPECT_EQ(model->vertices[1], (OBJ_Float3{0.5f, 1.25e-3f, 0.123456789012345678901234567890f}));
}

// --- Material libraries ----------------------------------------------------------------------

TEST_F(ObjReaderTest, a_missing_library_costs_only_the_colours) {
    const auto model = read("mtllib missing.mtl\nv 0 0 0\nf 1 1 1\n");
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->materials.size(), 1u);
    EXPECT_NE(read("mtllib .\nv 0 0 0\nf 1 1 1\n"), nullptr) << "a directory";
}

TEST_F(ObjReaderTest, a_library_name_is_the_second_word_where_there_are_two) {
    write("b.mtl", "newmtl from_b\n");
    const auto model = read("mtllib a.mtl b.mtl\nv 0 0 0\nf 1 1 1\n");
    ASSERT_EQ(model->materials.size(), 2u);
    EXPECT_STREQ(model->materials[1].name.c_str(), "from_b");
}

TEST_F(ObjReaderTest, a_material_of_a_library_has_its_own_defaults) {
    const OBJ_Material* material = read_material("newmtl my paint\r\n", "my paint");
    ASSERT_NE(material, nullptr);
    EXPECT_EQ(material->ambient, (std::array<float, 4>{0.4f, 0.4f, 0.4f, 1.0f}));
    EXPECT_EQ(material->diffuse, (std::array<float, 4>{0.7f, 0.7f, 0.8f, 1.0f}));
    EXPECT_EQ(material->specular, (std::array<float, 4>{0.2f, 0.2f, 0.2f, 1.0f}));
    EXPECT_EQ(material->specular_exp, 24.0f);
    EXPECT_EQ(material->opacity, 1.0f);
    EXPECT_EQ(material->face_count, 0);
}

TEST_F(ObjReaderTest, a_library_fills_colours_and_numbers) {
    const OBJ_Material* material =
        read_material("newmtl a\n\tKa 0.1 0.2 0.3\nKd 0.4 0.5 0.6\nillum 2\nKs 0.7 0.8 0.9\n"
                      "Ns 250\nd 0.75\n",
                      "a");
    EXPECT_EQ(material->ambient, (std::array<float, 4>{0.1f, 0.2f, 0.3f, 1.0f}));
    EXPECT_EQ(material->diffuse, (std::array<float, 4>{0.4f, 0.5f, 0.6f, 1.0f}));
    EXPECT_EQ(material->specular, (std::array<float, 4>{0.7f, 0.8f, 0.9f, 1.0f}));
    EXPECT_EQ(material->specular_exp, 250.0f);
    EXPECT_EQ(material->opacity, 0.75f);
}

TEST_F(ObjReaderTest, specular_counts_only_behind_illum2) {
    const std::array<float, 4> kept = {0.2f, 0.2f, 0.2f, 1.0f};
    EXPECT_EQ(read_material("newmtl a\nKs 1 1 1\nillum 2\n", "a")->specular, kept);
    EXPECT_EQ(read_material("newmtl a\nillum 1\nKs 1 1 1\n", "a")->specular, kept);
    EXPECT_EQ(read_material("newmtl a\nillum x\nKs 1 1 1\n", "a")->specular, kept);
    EXPECT_EQ(read_material("newmtl b\nillum 2\nnewmtl a\nKs 1 1 1\n", "a")->specular, kept);
}

TEST_F(ObjReaderTest, tr_is_taken_as_d) {
    EXPECT_EQ(read_material("newmtl a\nTr 0.25\n", "a")->opacity, 0.25f);
    EXPECT_EQ(read_material("newmtl a\nmap_d x.tga\n", "a")->opacity, 1.0f) << "a failed scan";
}

TEST_F(ObjReaderTest, keywords_are_found_anywhere_and_the_first_in_order_takes_the_line) {
    EXPECT_EQ(read_material("newmtl a\nKa 0.5 0.5 0.5\nmap_Ka x\n", "a")->ambient[0], 0.5f);
    EXPECT_EQ(read_material("newmtl a\nfoo_Kd 0.5 0.25 0.125\n", "a")->diffuse,
              (std::array<float, 4>{0.5f, 0.25f, 0.125f, 1.0f}));
    EXPECT_NE(read_material("# newmtl b\n  newmtl a\n", "a"), nullptr);
    EXPECT_EQ(model_->materials.size(), 2u) << "the comment names nothing";
}

TEST_F(ObjReaderTest, four_diffuse_maps_are_kept_in_order) {
    const OBJ_Material* material = read_material(
        "newmtl a\nmap_Kd one.png\nmap_Kd two two.png\nmap_Kd 3\nmap_Kd 4\nmap_Kd 5\n", "a");
    EXPECT_STREQ(material->texture_filenames[0].data(), "one.png");
    EXPECT_STREQ(material->texture_filenames[1].data(), "two two.png");
    EXPECT_STREQ(material->texture_filenames[2].data(), "3");
    EXPECT_STREQ(material->texture_filenames[3].data(), "4");
}

TEST_F(ObjReaderTest, a_map_on_a_last_line_without_its_end_has_no_name) {
    EXPECT_STREQ(read_material("newmtl a\nmap_Kd one.png", "a")->texture_filenames[0].data(), "");
}

TEST_F(ObjReaderTest, lines_of_a_library_are_read_in_255_characters) {
    const std::string name(300, 'n');
    const OBJ_Material* material = read_material("newmtl a\nmap_Kd " + name + "\n", "a");
    EXPECT_EQ(std::string(material->texture_filenames[0].data()), name.substr(0, 248));
    write("a.mtl", "newmtl " + std::string(400, 'm') + "\nKd " + std::string(600, ' ') + "1 1 1\n" +
                       "newmtl\nnewmtl ");
    expect_same("mtllib a.mtl\nv 0 0 0\nf 1 1 1\n");
}

TEST_F(ObjReaderTest, a_first_mention_by_usemtl_keeps_its_place_in_the_list) {
    write("a.mtl", "newmtl a\nKd 1 1 1\n");
    const auto model = read("usemtl a\nv 0 0 0\nf 1 1 1\nmtllib a.mtl\n");
    ASSERT_EQ(model->materials.size(), 2u);
    EXPECT_EQ(model->materials[1].diffuse[0], 1.0f);
    EXPECT_EQ(model->materials[1].specular[0], 0.2f) << "the library's defaults come over it";
    EXPECT_EQ(model->materials[1].face_count, 1);
}

TEST_F(ObjReaderTest, a_library_counts_again_at_each_mention) {
    write("a.mtl", "newmtl x\nKd 1 0 0\nmap_Kd a0\nmap_Kd a1\nnewmtl only_a\nKd 1 0 0\n");
    write("b.mtl", "newmtl y\nKd 0 1 0\nnewmtl x\nillum 2\nKs 0 1 0\nmap_Kd b0\n");
    write("c.mtl", "newmtl x\nKd 0 0 1\nmap_Kd c0\nmap_Kd c1\nmap_Kd c2\nnewmtl y\nd 0.5\n");
    const std::vector<std::string> orders = {"ab",    "aab",     "aba",   "abab", "abba",
                                             "abc",   "abca",    "cab",   "cbac", "abcb",
                                             "bacab", "cacbcab", "abcabc"};
    for (const std::string& order : orders) {
        std::string text = "usemtl z\n";
        for (const char library : order)
            text += std::string("mtllib ") + library + ".mtl\nusemtl y\n";
        expect_same(text + "v 0 0 0\nf 1 1 1\n");
    }
}

// --- Against the plain reader ----------------------------------------------------------------

/// Text made of the words that mean something, in no order at all.
std::string random_text(std::mt19937& random, const std::vector<const char*>& words) {
    std::string text;
    const unsigned count = 20 + random() % 200;
    for (unsigned i = 0; i < count; ++i) {
        text += words[random() % words.size()];
        const unsigned separator = random() % 8;
        text += separator < 5 ? " " : separator < 7 ? "\n" : separator == 7 ? "" : "\t";
    }
    return text;
}

TEST_F(ObjReaderTest, agrees_with_the_plain_reader_on_disorder) {
    const std::vector<const char*> words = {"v",
                                            "vt",
                                            "vn",
                                            "f",
                                            "g",
                                            "usemtl",
                                            "mtllib",
                                            "a.mtl",
                                            "#",
                                            "s",
                                            "1",
                                            "2",
                                            "3",
                                            "1/2",
                                            "1//2",
                                            "1/2/3",
                                            "-1",
                                            "+2",
                                            "0.5",
                                            ".5",
                                            "5.",
                                            "-1e3",
                                            "1e",
                                            "nan",
                                            "inf",
                                            "0x1p3",
                                            "1.5.5",
                                            "\n",
                                            "\nv 1 2 3\n",
                                            "\nf 1 2 3\n",
                                            "name",
                                            "a b",
                                            "/",
                                            "//",
                                            "-",
                                            "+",
                                            ".",
                                            "e5",
                                            "1e+",
                                            "99999999999999999999",
                                            "0.1234567890123456789012",
                                            "\r\n",
                                            "infinit",
                                            "na",
                                            "\nv 0.25 -1.5 3e-2\nvn 0 0 1\nf 1//1 2//2 3//3\n",
                                            "\ng part\n",
                                            "\nusemtl steel\n"};
    write("a.mtl", "newmtl steel\nKd .5 .5 .5\nillum 2\nKs 1 nan 0x2\nmap_Kd a.png\n");
    std::mt19937 random(7);
    for (int i = 0; i < 3000 && !HasFailure(); ++i)
        expect_same(random_text(random, words));
}

TEST_F(ObjReaderTest, agrees_with_the_plain_reader_on_disordered_libraries) {
    const std::vector<const char*> words = {"newmtl",
                                            "newmtl a",
                                            "newmtl b",
                                            "Kd",
                                            "Ka",
                                            "Ks",
                                            "Ns",
                                            "d",
                                            "Tr",
                                            "illum 2",
                                            "illum",
                                            "map_Kd",
                                            "map_Kd x.png",
                                            "1",
                                            "0.5",
                                            "-2",
                                            "nan",
                                            "1e",
                                            "#",
                                            "\n",
                                            "\r\n",
                                            "map_d",
                                            "\t",
                                            "Kd 1 2 3\n",
                                            "\nillum 2\nKs 3 2 1\n",
                                            "\nNs 12.5\n"};
    std::mt19937 random(11);
    for (int i = 0; i < 3000 && !HasFailure(); ++i) {
        const std::string library = random_text(random, words);
        write("a.mtl", library);
        SCOPED_TRACE(library);
        expect_same("mtllib a.mtl\nv 0 0 0\nf 1 1 1\n");
    }
}

TEST_F(ObjReaderTest, files_that_are_no_files_are_refused) {
    EXPECT_EQ(read_obj_file((folder_ + "missing.obj").c_str(), ""), nullptr);
    EXPECT_EQ(read_obj_file(folder_.c_str(), ""), nullptr) << "a directory";
    EXPECT_EQ(read_obj_file("/dev/zero", ""), nullptr) << "an endless device";
    EXPECT_EQ(read_obj_file(nullptr, ""), nullptr);
}

} // namespace
} // namespace orvex_test
