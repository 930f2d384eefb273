// OBJ files that were made to hurt.

#include <string>

#include <gtest/gtest.h>

#include "orvex_formats/obj/private/mtl_reader.h"
#include "orvex_formats/obj/private/obj_reader.h"
#include "tests/orvex_formats/bytes.h"
#include "tests/orvex_formats/check_draft.h"
#include "tests/orvex_formats/costs.h"
#include "tests/orvex_formats/mutants.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

std::string refusal(const std::string& text) {
    return cheap_refusal_of(read_obj, Bytes(text).bytes);
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

/// Reads a file of up to a megabyte; it may take a second of all threads.
Draft read_cheaply(const std::string& text) {
    EXPECT_LE(text.size(), 1u << 20);
    const HeapPeak peak;
    const std::clock_t begin = std::clock();
    Draft draft = read_obj(InputFile(Bytes(text).bytes));
    EXPECT_LT(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC, 1.0 * slowness);
    EXPECT_LE(peak.bytes(), most_of_draft);
    EXPECT_TRUE(holds_together(draft));
    return draft;
}

const std::string square = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";

TEST(HostileObj, names_what_is_not_there) {
    for (const char* number :
         {"0", "5", "-5", "2147483647", "2147483648", "-2147483648", "4294967297", "1073741825",
          "9223372036854775808", "-9223372036854775809", "99999999999999999999999999"})
        EXPECT_EQ(refusal(square + "f 1 2 " + number + "\n"),
                  "line 5: a face that names a vertex beyond the 4 that there are was left out")
            << number;
}

TEST(HostileObj, has_a_face_of_half_a_million_corners) {
    const Draft draft = read_cheaply(square + "f" + repeated(" 1", 500000) + "\n");
    EXPECT_EQ(draft.surfaces.at(0).triangles.size(), 499998u);
    const Draft winding = read_cheaply(square + "f" + repeated(" 1 3 2 4", 120000) + "\n");
    EXPECT_EQ(winding.surfaces.at(0).triangles.size(), 479998u);
}

TEST(HostileObj, has_tens_of_thousands_of_groups_and_materials) {
    std::string text = square;
    for (int i = 0; i < 35000; ++i)
        text += "g " + std::to_string(i) + "\nusemtl " + std::to_string(i) + "\nf 1 2 3\n";
    const Draft draft = read_cheaply(text);
    EXPECT_EQ(draft.surfaces.size(), 35000u);
    EXPECT_EQ(draft.materials.size(), 35000u);
    EXPECT_EQ(read_cheaply(square + repeated("g a\ng b\n", 100000) + "f 1 2 3\n").surfaces.size(),
              1u);
}

TEST(HostileObj, has_all_its_vertices_at_one_place) {
    std::string text = square + repeated("vt 0 0\n", 40000);
    for (int i = 1; i <= 40000; ++i)
        text += "f 1/" + std::to_string(i) + " 2 3\n";
    EXPECT_EQ(read_cheaply(text).surfaces.at(0).positions.size(), 40002u);
}

TEST(HostileObj, changes_its_smoothing_all_the_time) {
    std::string text = square;
    for (int i = 0; i < 50000; ++i)
        text += "s " + std::to_string(i) + "\nf 1 2 3\n";
    EXPECT_EQ(read_cheaply(text).surfaces.at(0).triangles.size(), 50000u);
}

TEST(HostileObj, has_lines_without_end) {
    EXPECT_EQ(refusal("v 0 0 " + repeated("0", 1000000)),
              "line 1: the file ends with 1 vertices and no face");
    EXPECT_EQ(refusal("v 0 0 0." + repeated("7", 1000000)),
              "line 1: the file ends with 1 vertices and no face");
    EXPECT_EQ(refusal("v 0 0 1e" + repeated("9", 1000000)),
              "line 1: the file ends with 1 vertices and no face");
    EXPECT_EQ(refusal("v 0 0 " + repeated("a", 1000000)),
              "line 1: \"" + repeated("a", 60) + "...\" is no number");
    EXPECT_EQ(refusal("v 0 0 0\n" + repeated("\\\n", 500000)),
              "line 500002: the file ends with 1 vertices and no face");
    EXPECT_EQ(refusal("g " + repeated("a", 1000000) + "\nv 0 0 0\n"),
              "line 2: the file ends with 1 vertices and no face");
}

TEST(HostileObj, has_numbers_that_are_none) {
    const Draft draft = read_cheaply("v nan nan nan\nv inf -inf 1e39\nv 1e-46 -0 1e400\nv 0 1 0\n"
                                     "vt nan inf\nvn nan 0 0\n"
                                     "f 1/1/1 2/1/1 3/1/1 4/1/1 1/1/1\ns 1\nf 1 2 3 4 1\n");
    for (const vec3& normal : draft.surfaces.at(0).normals)
        EXPECT_NEAR(normal.x * normal.x + normal.y * normal.y + normal.z * normal.z, 1.0f, 1e-5f);
}

TEST(HostileObj, has_words_that_nobody_knows) {
    std::string text = square;
    for (int i = 0; i < 100000; ++i)
        text += "w" + std::to_string(i) + "\n";
    EXPECT_EQ(read_cheaply(text + "f 1 2 3\n").notes.size(), 16u);
}

TEST(HostileObj, has_half_letters_of_two_bytes) {
    const std::string odd("\xff\xfe\x00\xd8v\0\x00\xdc \0\x00\xd8", 12);
    EXPECT_EQ(refusal(odd), "other format: no OBJ file: its first word is none that begins a line "
                            "of such files");
    EXPECT_EQ(refusal("\xff\xfe"), "other format: no OBJ file: its first word is none that begins "
                                   "a line of such files");
}

TEST(HostileMtl, has_tens_of_thousands_of_materials_and_words) {
    std::string text;
    for (int i = 0; i < 60000; ++i)
        text += "newmtl " + std::to_string(i) + "\nw" + std::to_string(i) + "\n";
    MtlTable table;
    Notes notes;
    read_mtl(text, "a.mtl", table, notes);
    EXPECT_EQ(table.materials.size(), 60000u);
    EXPECT_EQ(notes.take().size(), 64u);
    read_mtl(std::string("newmtl a\nmap_Kd") + repeated(" -s", 300000), "b.mtl", table, notes);
    read_mtl(std::string("newmtl a\nmap_Kd") + repeated(" -s 1 1 1", 100000) + " b\n", "c.mtl",
             table, notes);
}

TEST(HostileObj, survives_a_thousand_mutants) {
    const std::string text =
        "# made by a program\nmtllib none.mtl\no a b\nv 0 0 0\nv 1.5e0 0 0 1\nv 1 1 0 1 0.5 0\n"
        "v 0 -1 0\\\n 1 0 0\nvt 0 0.5\nvt 1\nvn 0 0 1\ng one\ns 1\nusemtl red\nf 1/1/1 2/2/1 "
        "3/1/1\nf -4 -3 -2 -1\r\ns off\nf 1 3 4\np 1 2\nl 1 2 3\n";
    std::string wide = "\xff\xfe";
    for (const char letter : text)
        wide += {letter, '\0'};
    read_mutants(read_obj, {Bytes(text).bytes, Bytes(wide).bytes});
}

TEST(HostileMtl, survives_a_thousand_mutants) {
    const std::string text = "newmtl red\nKa 0.1 0.2 0.3\nKd 1\nKs 0 0 1\nKe 1 0 0\nNs 50\nd 0.5\n"
                             "Tr 0.1\nillum 2\nPr 0.5\nPm 0.25\nmap_Kd -s 1 2 -o 0.5 a b.png\n"
                             "map_Bump -bm 2 c.png\nmap_Pr r.png\nnewmtl \"dark blue\"\n";
    for (unsigned number = 0; number < 1000; ++number) {
        const std::vector<unsigned char> bytes = mutant_of(Bytes(text).bytes, number);
        MtlTable table;
        Notes notes;
        read_mtl(std::string(bytes.begin(), bytes.end()), "a.mtl", table, notes);
        for (const SurfaceMaterial& material : table.materials) {
            EXPECT_GE(material.opacity, 0.0f);
            EXPECT_LE(material.opacity, 1.0f);
        }
    }
}

} // namespace

} // namespace orvex_test
