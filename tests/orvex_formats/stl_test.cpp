#include "orvex_formats/stl/private/stl_reader.h"

#include <cmath>

#include <gtest/gtest.h>

#include "orvex_formats/private/normals.h"
#include "tests/orvex_formats/bytes.h"
#include "tests/orvex_formats/check_draft.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

struct Facet {
    float corners[9];
    std::uint16_t attributes = 0;
};

/// The unit square of z 0 as two triangles.
const std::vector<Facet> square = {{{0, 0, 0, 1, 0, 0, 1, 1, 0}}, {{0, 0, 0, 1, 1, 0, 0, 1, 0}}};

Bytes binary(const std::vector<Facet>& facets, const std::string& head = "") {
    Bytes file(head);
    file.bytes.resize(80);
    file.add_number(static_cast<std::uint32_t>(facets.size()));
    for (const Facet& facet : facets) {
        for (int i = 0; i < 3; ++i)
            file.add_number(7.0f); // the normal, which nobody believes
        for (const float number : facet.corners)
            file.add_number(number);
        file.add_number(facet.attributes);
    }
    return file;
}

Draft read(const Bytes& file) {
    Draft draft = read_stl(InputFile(file.bytes));
    EXPECT_TRUE(holds_together(draft));
    return draft;
}

Draft read(const std::string& text) {
    return read(Bytes(text));
}

std::string facet(const std::string& a, const std::string& b, const std::string& c) {
    return "facet normal 0 0 1\n outer loop\n  vertex " + a + "\n  vertex " + b + "\n  vertex " +
           c + "\n endloop\nendfacet\n";
}

const std::string text_square = facet("0 0 0", "1 0 0", "1 1 0") + facet("0 0 0", "1 1 0", "0 1 0");

TEST(Stl, of_bytes_gives_triangles_whose_equal_corners_are_one_vertex) {
    const Draft draft = read(binary(square));
    ASSERT_EQ(draft.surfaces.size(), 1u);
    const Surface& surface = draft.surfaces[0];
    EXPECT_EQ(surface.positions.size(), 4u);
    ASSERT_EQ(surface.triangles.size(), 2u);
    EXPECT_EQ(surface.triangles[0], (Triangle{0, 1, 2}));
    EXPECT_EQ(surface.triangles[1], (Triangle{0, 2, 3}));
    EXPECT_EQ(surface.positions[3].y, 1.0f);
    EXPECT_TRUE(surface.colors.empty());
    EXPECT_TRUE(draft.notes.empty());
}

TEST(Stl, of_bytes_that_begins_with_solid_is_told_by_its_size) {
    const Draft draft = read(binary(square, "solid made by a program"));
    ASSERT_EQ(draft.surfaces.size(), 1u);
    EXPECT_EQ(draft.surfaces[0].triangles.size(), 2u);
    EXPECT_EQ(draft.surfaces[0].name, "solid made by a program");
}

TEST(Stl, of_bytes_has_a_name_only_of_letters_that_can_be_shown) {
    EXPECT_EQ(read(binary(square, " ~ !")).surfaces.at(0).name, "~ !");
    for (const char* head : {"caf\xE9",
                             "a\x01"
                             "b",
                             "tab\tbed", "\x7F"})
        EXPECT_EQ(read(binary(square, head)).surfaces.at(0).name, "");
}

TEST(Stl, of_text_is_read_whatever_its_case_blanks_and_ends_of_lines) {
    std::string text = "  SOLID a part\r\n" + text_square + "endsolid a part\r\n";
    for (const char* word : {"facet", "vertex", "endloop"})
        for (std::size_t place = text.find(word); place != std::string::npos;
             place = text.find(word, place + 1))
            text[place] = static_cast<char>(text[place] - 'a' + 'A');
    const Draft draft = read(text);
    ASSERT_EQ(draft.surfaces.size(), 1u);
    EXPECT_EQ(draft.surfaces[0].name, "a part");
    EXPECT_EQ(draft.surfaces[0].positions.size(), 4u);
    EXPECT_EQ(draft.surfaces[0].triangles[1], (Triangle{0, 2, 3}));
}

TEST(Stl, of_text_with_two_solids_gives_two_surfaces) {
    const Draft draft = read("solid one\n" + text_square + "endsolid one\nsolid two\n" +
                             facet("5 0 0", "6 0 0", "6 1 0") + "endsolid two\n");
    ASSERT_EQ(draft.surfaces.size(), 2u);
    EXPECT_EQ(draft.surfaces[0].name, "one");
    EXPECT_EQ(draft.surfaces[1].name, "two");
    EXPECT_EQ(draft.surfaces[1].positions[0].x, 5.0f);
}

TEST(Stl, numbers_are_read_whatever_the_program_wrote) {
    const Draft draft = read("solid\n" + facet("+1.5 -2e-1 1E+2", "1e-300 -0 0.", ".5 1 2"));
    const std::vector<vec3>& places = draft.surfaces.at(0).positions;
    EXPECT_EQ(places.at(0).x, 1.5f);
    EXPECT_EQ(places[0].y, -0.2f);
    EXPECT_EQ(places[0].z, 100.0f);
    EXPECT_EQ(places[1].x, 0.0f);
    EXPECT_EQ(places[2].x, 0.5f);
}

TEST(Stl, words_that_nobody_knows_are_noted_once) {
    const Draft draft = read("solid\ncolor 1 0 0\n" + text_square + "color 1 0 0\n");
    ASSERT_EQ(draft.notes.size(), 1u);
    EXPECT_EQ(draft.notes[0], "line 2: \"color\" is no word of STL, and was left out");
}

TEST(Stl, zero_and_minus_zero_are_one_place) {
    const Draft draft =
        read("solid\n" + facet("0 0 0", "1 0 0", "1 1 0") + facet("-0 0 -0", "1 1 0", "0 1 0"));
    EXPECT_EQ(draft.surfaces.at(0).positions.size(), 4u);
}

TEST(Stl, attributes_with_a_high_bit_are_colours) {
    std::vector<Facet> facets = square;
    facets[0].attributes = 0x8000u | 31u << 10; // red
    const Draft draft = read(binary(facets));
    const Surface& surface = draft.surfaces.at(0);
    // The corners of two colours are different vertices.
    ASSERT_EQ(surface.positions.size(), 6u);
    ASSERT_EQ(surface.colors.size(), 6u);
    EXPECT_EQ(surface.colors[0].x, 1.0f);
    EXPECT_EQ(surface.colors[0].y, 0.0f);
    EXPECT_EQ(surface.colors[surface.triangles[1][0]].y, 1.0f) << "without one it is white";
}

TEST(Stl, a_head_that_says_color_turns_the_attributes_around) {
    std::vector<Facet> facets = square;
    facets[0].attributes = 31u; // red
    facets[1].attributes = 0x8000u;
    const Draft draft = read(binary(facets, std::string("COLOR=\x00\xff\x00\xff", 10)));
    const Surface& surface = draft.surfaces.at(0);
    EXPECT_EQ(surface.colors.at(surface.triangles[0][0]).x, 1.0f);
    EXPECT_EQ(surface.colors.at(surface.triangles[0][0]).y, 0.0f);
    EXPECT_EQ(surface.colors.at(surface.triangles[1][0]).x, 0.0f) << "the head's colour";
    EXPECT_EQ(surface.colors.at(surface.triangles[1][0]).y, 1.0f);
}

TEST(Stl, that_is_cut_or_lies_about_its_count_is_refused_by_its_name) {
    const TempDir folder;
    const auto refusal = [&](const Bytes& file, const char* name) -> std::string {
        const std::string path =
            folder.write(name, std::string(file.bytes.begin(), file.bytes.end()));
        try {
            read_stl(InputFile(path));
        } catch (const Refusal& refused) {
            return std::string(refused.is_format_known() ? "" : "other: ") + refused.what();
        }
        return "";
    };
    Bytes cut = binary(square);
    cut.bytes.resize(150);
    EXPECT_EQ(refusal(cut, "cut.STL"),
              "byte 80: the file says that it has 2 triangles, and its 150 bytes hold 1");
    EXPECT_EQ(refusal(cut, "cut.bin"),
              "other: no STL file: neither its size nor its first word says so");
    Bytes lie;
    lie.bytes.resize(80);
    lie.add_number<std::uint32_t>(UINT32_MAX);
    EXPECT_EQ(refusal(lie, "lie.stl"),
              "byte 80: the file says that it has 4294967295 triangles, and its 84 bytes hold 0");
    Bytes empty;
    empty.bytes.resize(84);
    EXPECT_EQ(refusal(empty, "empty.stl"), "byte 80: the file says that it has no triangles");
    EXPECT_EQ(refusal(Bytes("solid"), "short.stl"),
              "byte 5: the file is cut off before its count of triangles");
    Bytes behind = binary(square);
    behind.add("xyz");
    EXPECT_EQ(refusal(behind, "behind.stl"), "");
}

TEST(Stl, with_bytes_behind_its_triangles_is_read_with_a_note) {
    const TempDir folder;
    Bytes file = binary(square);
    file.add("xyz");
    const Draft draft = read_stl(
        InputFile(folder.write("a.stl", std::string(file.bytes.begin(), file.bytes.end()))));
    EXPECT_EQ(draft.surfaces.at(0).triangles.size(), 2u);
    ASSERT_EQ(draft.notes.size(), 1u);
    EXPECT_EQ(draft.notes[0], "3 bytes behind the last triangle were left out");
}

TEST(Stl, of_text_with_a_mistake_is_refused_with_its_line) {
    struct Row {
        const char* text;
        const char* reason;
    };
    const Row rows[] = {
        {"solid\nfacet\nouter loop\nvertex 0 0\n", "line 4: a vertex without three numbers"},
        {"solid\nfacet\nvertex 0 0 x\n", "line 3: a vertex without three numbers"},
        {"solid\nfacet\nvertex 1e400 0 0\n", "line 3: a vertex without three numbers"},
        {"solid\nfacet\nvertex 0 0 0\nvertex 1 0 0\nendfacet\n",
         "line 5: a facet without three corners"},
        {"solid\nfacet\nvertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\nvertex 0 1 0\n",
         "line 6: a fourth corner of a facet"},
        {"solid\nfacet\nvertex 0 0 0\n", "line 3: the file ends within a facet"},
        {"solid\nfacet\nvertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\nsolid b\nendfacet\n",
         "line 6: a solid begins within a facet"},
        {"solid\nendsolid\n", "line 2: the file ends without a facet"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(refusal_of(read_stl, Bytes(row.text).bytes), row.reason) << row.text;
}

TEST(Stl, is_not_what_other_files_are) {
    for (const char* text :
         {"", "solid gold is expensive\nv 0 0 0\n", "v 0 0 0\nf 1 1 1\n", "ply\n"})
        EXPECT_EQ(refusal_of(read_stl, Bytes(text).bytes),
                  "other format: no STL file: neither its size nor its first word says so")
            << text;
}

// ------------------------------------------------------------------------------ normals

TEST(Normals, of_a_flat_surface_are_those_of_its_faces) {
    Draft draft = read(binary(square));
    Surface& surface = draft.surfaces.at(0);
    add_normals(surface);
    ASSERT_EQ(surface.normals.size(), 4u);
    for (const vec3& normal : surface.normals)
        EXPECT_EQ(normal.z, 1.0f);
}

/// Two squares that meet along the y axis, the second lifted by an angle.
Surface fold(float degrees) {
    const float angle = degrees * 3.14159265f / 180.0f;
    const float x = std::cos(angle), z = std::sin(angle);
    Draft draft = read(binary({{{-1, 0, 0, 0, 0, 0, 0, 1, 0}},
                               {{-1, 0, 0, 0, 1, 0, -1, 1, 0}},
                               {{0, 0, 0, x, 0, z, x, 1, z}},
                               {{0, 0, 0, x, 1, z, 0, 1, 0}}}));
    Surface surface = std::move(draft.surfaces.at(0));
    add_normals(surface);
    return surface;
}

TEST(Normals, are_smooth_over_a_gentle_fold) {
    const Surface surface = fold(40.0f);
    EXPECT_EQ(surface.positions.size(), 6u);
    const vec3& middle = surface.normals[surface.triangles[0][1]];
    // One face of the first square meets there, and both of the second.
    const float angle = 40.0f * 3.14159265f / 180.0f;
    const float lean = std::atan2(2.0f * std::sin(angle), 1.0f + 2.0f * std::cos(angle));
    EXPECT_NEAR(middle.x, -std::sin(lean), 1e-6f);
    EXPECT_NEAR(middle.z, std::cos(lean), 1e-6f);
}

TEST(Normals, are_smooth_across_colours) {
    const auto folded = [](std::uint16_t first, std::uint16_t second) {
        std::vector<Facet> facets = {{{-1, 0, 0, 0, 0, 0, 0, 1, 0}, first},
                                     {{0, 0, 0, 1, 0, 0.5f, 0, 1, 0}, second}};
        Surface surface = std::move(read(binary(facets)).surfaces.at(0));
        add_normals(surface);
        return surface;
    };
    const Surface plain = folded(0, 0), colored = folded(0x8000u, 0x8000u | 31u);
    EXPECT_EQ(plain.positions.size(), 4u);
    ASSERT_EQ(colored.positions.size(), 6u);
    for (std::size_t face = 0; face < 2; ++face)
        for (std::size_t i = 0; i < 3; ++i) {
            const vec3& smooth = plain.normals.at(plain.triangles[face][i]);
            const vec3& other = colored.normals.at(colored.triangles[face][i]);
            EXPECT_EQ(other.x, smooth.x) << face << i;
            EXPECT_EQ(other.z, smooth.z) << face << i;
        }
    // Attributes that are no colours part nothing.
    EXPECT_EQ(folded(1, 2).positions.size(), 4u);
}

TEST(Normals, part_at_an_edge) {
    const Surface surface = fold(60.0f);
    EXPECT_EQ(surface.positions.size(), 8u);
    EXPECT_EQ(surface.normals.size(), 8u);
    EXPECT_NEAR(surface.normals[surface.triangles[0][1]].z, 1.0f, 1e-6f);
    EXPECT_NEAR(surface.normals[surface.triangles[2][0]].z, 0.5f, 1e-6f);
    // Both vertices of the edge's end lie at one place.
    EXPECT_EQ(surface.positions[surface.triangles[2][0]].x, 0.0f);
}

TEST(Normals, are_finite_whatever_the_places_are) {
    const float huge = 3e38f, nan = std::nanf("");
    Draft draft = read(binary({{{0, 0, 0, 0, 0, 0, 0, 0, 0}},
                               {{0, 0, 0, nan, 0, 0, 1, 0, 0}},
                               {{0, 0, 0, huge, 0, 0, 0, huge, 0}},
                               {{-huge, -huge, -huge, huge, huge, huge, huge, -huge, huge}}}));
    Surface& surface = draft.surfaces.at(0);
    add_normals(surface);
    ASSERT_EQ(surface.normals.size(), surface.positions.size());
    for (const vec3& normal : surface.normals)
        EXPECT_NEAR(normal.x * normal.x + normal.y * normal.y + normal.z * normal.z, 1.0f, 1e-5f);
}

} // namespace

} // namespace orvex_test
