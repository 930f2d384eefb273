#include "orvex_formats/ply/private/ply_reader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "tests/orvex_formats/bytes.h"
#include "tests/orvex_formats/check_draft.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

Draft read(const Bytes& file) {
    Draft draft = read_ply(InputFile(file.bytes));
    EXPECT_TRUE(holds_together(draft));
    return draft;
}

Draft read(const std::string& text) {
    return read(Bytes(text));
}

/// A head of text: lines between the format and the end.
std::string head(const std::string& lines, const std::string& format = "ascii") {
    return "ply\nformat " + format + " 1.0\n" + lines + "end_header\n";
}

const std::string places = "property float x\nproperty float y\nproperty float z\n";
const std::string square =
    "element vertex 4\n" + places + "element face 1\nproperty list uchar int vertex_indices\n";
const std::string square_rows = "0 0 0\n1 0 0\n1 1 0\n0 1 0\n";

/// Bytes of numbers with their high bytes first.
template<class Number>
void add_turned(Bytes& file, Number number) {
    Bytes one;
    one.add_number(number);
    file.bytes.insert(file.bytes.end(), one.bytes.rbegin(), one.bytes.rend());
}

void expect_square(const Draft& draft) {
    ASSERT_EQ(draft.surfaces.size(), 1u);
    const Surface& surface = draft.surfaces[0];
    ASSERT_EQ(surface.positions.size(), 4u);
    EXPECT_EQ(surface.positions[2].x, 1.0f);
    EXPECT_EQ(surface.positions[2].y, 1.0f);
    EXPECT_EQ(surface.positions[3].x, 0.0f);
    ASSERT_EQ(surface.triangles.size(), 2u);
    EXPECT_EQ(surface.triangles[0], (Triangle{0, 1, 2}));
    EXPECT_EQ(surface.triangles[1], (Triangle{0, 2, 3}));
    EXPECT_TRUE(draft.clouds.empty());
}

TEST(Ply, of_text_gives_vertices_and_faces) {
    const Draft draft = read(head(square) + square_rows + "4 0 1 2 3\n");
    expect_square(draft);
    EXPECT_TRUE(draft.notes.empty());
    EXPECT_TRUE(draft.materials.empty());
}

TEST(Ply, of_text_is_read_whatever_ends_and_breaks_its_lines) {
    std::string text = head(square) + "0 0 0 1 0 0\n\n1 1 0\n0 1\n0\n4\n0 1\n2 3";
    expect_square(read(text));
    for (std::size_t place = 0; (place = text.find('\n', place)) != std::string::npos; place += 2)
        text.insert(place, "\r");
    expect_square(read(text));
}

TEST(Ply, of_bytes_is_read_in_both_orders) {
    Bytes little(head(square, "binary_little_endian")), big(head(square, "binary_big_endian"));
    for (const float number : {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}) {
        little.add_number(number);
        add_turned(big, number);
    }
    little.add_number<std::uint8_t>(4);
    add_turned<std::uint8_t>(big, 4);
    for (const std::int32_t corner : {0, 1, 2, 3}) {
        little.add_number(corner);
        add_turned(big, corner);
    }
    expect_square(read(little));
    expect_square(read(big));
}

TEST(Ply, of_bytes_begins_right_behind_its_head_however_lines_end) {
    for (const char* end : {"\n", "\r\n", "\r"}) {
        std::string text = head("element vertex 1\nproperty uchar x\nproperty uchar y\n"
                                "property uchar z\n",
                                "binary_little_endian");
        std::string turned;
        for (const char letter : text)
            turned += letter == '\n' ? std::string(end) : std::string(1, letter);
        const Draft draft = read(turned + "\n\x02\x03"); // the first byte is that of an LF
        ASSERT_EQ(draft.clouds.size(), 1u);
        EXPECT_EQ(draft.clouds[0].positions.at(0).x, 10.0f);
        EXPECT_EQ(draft.clouds[0].positions[0].z, 3.0f);
    }
}

TEST(Ply, has_numbers_of_all_types_under_both_names) {
    const char* const types[][2] = {{"char", "int8"},     {"uchar", "uint8"},   {"short", "int16"},
                                    {"ushort", "uint16"}, {"int", "int32"},     {"uint", "uint32"},
                                    {"float", "float32"}, {"double", "float64"}};
    for (std::size_t name = 0; name < 2; ++name) {
        std::string lines = "element vertex 1\n";
        const char* const columns[] = {"x", "y", "z", "nx", "ny", "nz", "s", "t"};
        for (std::size_t i = 0; i < 8; ++i)
            lines += std::string("property ") + types[i][name] + " " + columns[i] + "\n";
        lines += "element face 1\nproperty list ushort short vertex_index\n";
        Bytes little(head(lines, "binary_little_endian")), big(head(lines, "binary_big_endian"));
        const auto add = [&](auto number) {
            little.add_number(number);
            add_turned(big, number);
        };
        add(std::int8_t(-2)), add(std::uint8_t(200)), add(std::int16_t(-300));
        add(std::uint16_t(0)), add(std::int32_t(0)), add(std::uint32_t(4000000000u));
        add(0.25f), add(0.5);
        add(std::uint16_t(3)), add(std::int16_t(0)), add(std::int16_t(0)), add(std::int16_t(0));
        for (const Bytes* const file : {&little, &big}) {
            const Draft draft = read(*file);
            const Surface& surface = draft.surfaces.at(0);
            EXPECT_EQ(surface.positions.at(0).x, -2.0f);
            EXPECT_EQ(surface.positions[0].y, 200.0f);
            EXPECT_EQ(surface.positions[0].z, -300.0f);
            EXPECT_EQ(surface.normals.at(0).z, 1.0f);
            EXPECT_EQ(surface.uvs[0].at(0).x, 0.25f);
            EXPECT_EQ(surface.uvs[0][0].y, 0.5f);
        }
    }
}

TEST(Ply, has_properties_in_any_order_and_names_of_many_programs) {
    for (const char* uv : {"s t", "u v", "texture_u texture_v", "texture_s texture_t"}) {
        const std::string names = uv;
        const std::size_t blank = names.find(' ');
        const Draft draft = read(
            head("element vertex 3\nproperty uchar alpha\nproperty float z\nproperty uchar red\n"
                 "property float y\nproperty uchar blue\nproperty float x\nproperty uchar green\n"
                 "property float " +
                 names.substr(blank + 1) + "\nproperty float " + names.substr(0, blank) +
                 "\nproperty float ny\nproperty float nx\nproperty float nz\n"
                 "element face 1\nproperty list uint uchar vertex_index\n") +
            "51 3 255 2 0 1 127.5 0.25 0.75 4 3 0\n0 0 0 0 0 0 0 0 0 0 0 0\n"
            "0 0 0 0 0 0 0 0 0 0 nan 0\n3 0 1 2\n");
        const Surface& surface = draft.surfaces.at(0);
        EXPECT_EQ(surface.positions.at(0).x, 1.0f);
        EXPECT_EQ(surface.positions[0].z, 3.0f);
        EXPECT_EQ(surface.colors.at(0).x, 1.0f);
        EXPECT_EQ(surface.colors[0].y, 0.5f);
        EXPECT_EQ(surface.colors[0].z, 0.0f);
        EXPECT_NEAR(surface.colors[0].w, 0.2f, 1e-6f);
        EXPECT_EQ(surface.uvs[0].at(0).x, 0.75f) << names;
        EXPECT_EQ(surface.uvs[0][0].y, 0.25f);
        EXPECT_NEAR(surface.normals.at(0).x, 0.6f, 1e-6f) << "as long as 1";
        EXPECT_EQ(surface.normals[1].z, 1.0f) << "without a direction it looks along z";
        EXPECT_EQ(surface.normals[2].z, 1.0f);
    }
}

TEST(Ply, colours_as_floats_are_fractions_or_bytes) {
    const std::string lines =
        "element vertex 2\n" + places + "property float r\nproperty float g\nproperty float b\n";
    const Draft fractions = read(head(lines) + "0 0 0 1 0.5 0\n0 0 0 nan -1 0\n");
    const std::vector<vec4>& colors = fractions.clouds.at(0).colors;
    EXPECT_EQ(colors.at(0).y, 0.5f);
    EXPECT_EQ(colors[0].w, 1.0f);
    EXPECT_EQ(colors[1].x, 0.0f);
    EXPECT_EQ(colors[1].y, 0.0f);
    const Draft bytes = read(head(lines) + "0 0 0 255 51 0\n0 0 0 inf 1 0\n");
    EXPECT_EQ(bytes.clouds.at(0).colors.at(0).x, 1.0f);
    EXPECT_NEAR(bytes.clouds[0].colors[0].y, 0.2f, 1e-6f);
    EXPECT_EQ(bytes.clouds[0].colors[1].x, 1.0f);
}

TEST(Ply, without_faces_is_a_cloud) {
    const std::string lines = "element vertex 2\n" + places +
                              "property float nx\nproperty float ny\nproperty float nz\n"
                              "property ushort diffuse_red\nproperty ushort diffuse_green\n"
                              "property ushort diffuse_blue\n";
    const std::string rows = "1 2 3 0 0 1 65535 0 0\n4 5 6 0 0 1 0 65535 0\n";
    const Draft draft = read(head(lines) + rows);
    EXPECT_TRUE(draft.surfaces.empty());
    ASSERT_EQ(draft.clouds.size(), 1u);
    EXPECT_EQ(draft.clouds[0].positions.at(1).z, 6.0f);
    EXPECT_EQ(draft.clouds[0].colors.at(1).y, 1.0f);
    ASSERT_EQ(draft.notes.size(), 1u);
    EXPECT_EQ(draft.notes[0], "the normals of the points were left out");
    // And so is one that only has the table for them.
    EXPECT_EQ(read(head(lines + "element face 0\nproperty list uchar int vertex_indices\n") + rows)
                  .clouds.size(),
              1u);
}

TEST(Ply, faces_may_have_looks_of_their_own) {
    const Draft draft =
        read(head("comment TextureFile one.png\ncomment TextureFile a b.png\nelement vertex 4\n" +
                  places +
                  "element face 2\nproperty list uchar float texcoord\n"
                  "property list uchar int vertex_indices\nproperty int texnumber\n"
                  "property uchar red\nproperty uchar green\nproperty uchar blue\n") +
             square_rows +
             "6 0 0 1 0 1 1  3 0 1 2  1  255 0 0\n"
             "6 0 0 1 1 0 1  3 0 2 3  7  0 0 255\n");
    const Surface& surface = draft.surfaces.at(0);
    // Places 0 and 2 are parted by the colours.
    ASSERT_EQ(surface.positions.size(), 6u);
    ASSERT_EQ(surface.colors.size(), 6u);
    EXPECT_EQ(surface.colors[surface.triangles[0][0]].x, 1.0f);
    EXPECT_EQ(surface.colors[surface.triangles[1][0]].z, 1.0f);
    EXPECT_EQ(surface.uvs[0].at(surface.triangles[0][2]).y, 1.0f);
    EXPECT_EQ(surface.positions[surface.triangles[1][2]].y, 1.0f);
    ASSERT_EQ(draft.materials.size(), 2u);
    EXPECT_EQ(draft.materials[1].textures.at(0), "a b.png");
    EXPECT_EQ(surface.triangle_materials.at(0), 1u);
    EXPECT_EQ(surface.triangle_materials[1], no_material) << "there are only two pictures";
}

TEST(Ply, with_one_picture_has_it_on_all_faces) {
    const Draft draft =
        read(head("comment texturefile wood.png\n" + square) + square_rows + "4 0 1 2 3\n");
    EXPECT_EQ(draft.surfaces.at(0).triangle_materials, std::vector<std::uint32_t>(2, 0));
    EXPECT_EQ(draft.materials.at(0).diffuse.x, 1.0f);
}

TEST(Ply, strips_are_triangles_that_turn_one_way) {
    const Draft draft = read(head("element vertex 4\n" + places +
                                  "element tristrips 1\nproperty list int int vertex_indices\n") +
                             square_rows + "9 0 1 3 2 -1 0 1 2 -1\n");
    const std::vector<Triangle>& triangles = draft.surfaces.at(0).triangles;
    ASSERT_EQ(triangles.size(), 3u);
    EXPECT_EQ(triangles[0], (Triangle{0, 1, 3}));
    EXPECT_EQ(triangles[1], (Triangle{3, 1, 2}));
    EXPECT_EQ(triangles[2], (Triangle{0, 1, 2}));
}

TEST(Ply, strips_and_faces_with_looks_of_their_own_are_one_surface) {
    const std::string strips = "element tristrips 1\nproperty list uchar char vertex_index\n";
    const std::string faces = "element face 1\nproperty list uchar char vertex_index\n"
                              "property float red\nproperty float green\nproperty float blue\n";
    for (const bool is_strip_first : {true, false}) {
        const std::string rows[] = {"3 1 2 3\n", "3 0 1 2 1 0 0\n"};
        const Draft draft =
            read(head("element vertex 4\n" + places +
                      (is_strip_first ? strips + faces : faces + strips)) +
                 square_rows + rows[is_strip_first ? 0 : 1] + rows[is_strip_first ? 1 : 0]);
        const Surface& surface = draft.surfaces.at(0);
        ASSERT_EQ(surface.triangles.size(), 2u);
        EXPECT_EQ(surface.positions.size(), 6u);
        const Triangle& strip = surface.triangles[is_strip_first ? 0 : 1];
        EXPECT_EQ(surface.positions[strip[1]].x, 1.0f);
        EXPECT_EQ(surface.positions[strip[1]].y, 1.0f);
    }
}

TEST(Ply, concave_faces_are_cut_within_their_edges) {
    const std::string rows = "0 0 0\n2 2 0\n0 1 0\n-2 2 0\n";
    const Draft draft = read(head(square) + rows + "4 3 0 1 2\n");
    const std::vector<Triangle>& triangles = draft.surfaces.at(0).triangles;
    ASSERT_EQ(triangles.size(), 2u);
    for (const Triangle& triangle : triangles) // which the line from 0 to 2 parts
        EXPECT_NE(std::count(triangle.begin(), triangle.end(), 1u),
                  std::count(triangle.begin(), triangle.end(), 3u));
    EXPECT_TRUE(draft.notes.empty());
    const Draft crossed = read(head("element vertex 5\n" + places +
                                    "element face 1\nproperty list uchar int vertex_indices\n") +
                               "0 0 0\n6 0 0\n6 6 0\n2 -3 0\n1 -3 0\n5 0 1 2 3 4\n");
    ASSERT_EQ(crossed.notes.size(), 1u);
    EXPECT_EQ(crossed.notes[0], "polygons that cross themselves were cut as well as they could be");
}

TEST(Ply, faces_may_stand_before_their_vertices) {
    const Draft draft =
        read(head("element face 1\nproperty list uchar int vertex_indices\nelement vertex 4\n" +
                  places) +
             "4 0 1 2 3\n" + square_rows);
    expect_square(draft);
    ASSERT_EQ(draft.notes.size(), 1u);
    EXPECT_EQ(draft.notes[0], "polygons that stand before their vertices were cut as if convex");
}

TEST(Ply, what_nobody_knows_is_passed_over_with_notes) {
    const Draft draft = read(
        head("comment made by hand\nobj_info num_cols 3\nelement camera 1\nproperty float x\n"
             "property list uchar float more\nelement vertex 4\nproperty float confidence\n" +
             places +
             "property list uchar int rings\nelement face 1\nproperty uchar flags\n"
             "property list uchar int vertex_indices\nelement edge 1\nproperty int vertex1\n") +
        "7 2 8 9\n1 0 0 0 0\n1 1 0 0 1 5\n1 1 1 0 2 5 5\n1 0 1 0 0\n3 4 0 1 2 3\nnonsense\n");
    expect_square(draft);
    ASSERT_EQ(draft.notes.size(), 2u);
    EXPECT_EQ(draft.notes[0], "elements that aren't known were left out: camera, edge");
    EXPECT_EQ(draft.notes[1],
              "properties that aren't known were left out: confidence, rings, flags");
}

TEST(Ply, of_bytes_has_long_lists_passed_over) {
    for (const std::uint32_t count : {4095u, 4096u, 4097u, 20000u}) {
        Bytes file(head("element vertex 3\n" + places +
                            "element trace 1\nproperty list uint short steps\n"
                            "element face 1\nproperty list uchar int vertex_indices\n",
                        "binary_little_endian"));
        for (const float number : {0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f})
            file.add_number(number);
        file.add_number(count);
        for (std::uint32_t i = 0; i < count; ++i)
            file.add_number<std::int16_t>(7);
        file.add_number<std::uint8_t>(3).add_number(0).add_number(1).add_number(2);
        const Draft draft = read(file);
        EXPECT_EQ(draft.surfaces.at(0).triangles, (std::vector<Triangle>{{0, 1, 2}})) << count;
        EXPECT_EQ(draft.notes,
                  std::vector<std::string>{"elements that aren't known were left out: trace"});
    }
}

TEST(Ply, what_stands_behind_its_rows_is_noted) {
    const Draft text = read(head(square) + square_rows + "4 0 1 2 3\nmore\n");
    ASSERT_EQ(text.notes.size(), 1u);
    EXPECT_EQ(text.notes[0], "line 15: what stands behind the last row was left out");
    const Draft bytes = read(head("element vertex 1\nproperty char x\nproperty char y\n"
                                  "property char z\n",
                                  "binary_big_endian") +
                             "abcde");
    ASSERT_EQ(bytes.notes.size(), 1u);
    EXPECT_EQ(bytes.notes[0], "2 bytes behind the last row were left out");
}

TEST(Ply, may_have_comments_without_their_first_word_before_the_elements) {
    const Draft draft =
        read(head("Created by Some Program\nin: a hurry\nelement vertex 1\n" + places) + "1 2 3\n");
    EXPECT_EQ(draft.clouds.at(0).positions.at(0).z, 3.0f);
    EXPECT_EQ(draft.notes, std::vector<std::string>{"line 3: no word of a PLY head: created"});
}

TEST(Ply, with_a_mistake_is_refused_with_its_place) {
    struct Row {
        std::string text;
        const char* reason;
    };
    const std::string vertex = "element vertex 1\n" + places;
    const Row rows[] = {
        {"ply\n", "line 1: the file ends within its head"},
        {"ply\nformat ascii 1.0\nelement vertex 1\n", "line 3: the file ends within its head"},
        {"ply\nelement vertex 1\nend_header\n",
         "line 3: the head doesn't say whether the file is text"},
        {"ply\nformat morse 1.0\n", "line 2: no format that is known: morse"},
        {head("elements 3\n"), "line 3: no word of a PLY head: elements"},
        {head("element vertex 1\npropertie float x\n"), "line 4: no word of a PLY head: propertie"},
        {head("element vertex\n"), "line 3: an element without a name and a count"},
        {head("element vertex -1\n"), "line 3: an element without a name and a count"},
        {head("element vertex 99999999999999999999\n"),
         "line 3: an element without a name and a count"},
        {head("property float x\n"), "line 3: a property of no element"},
        {head("element vertex 1\nproperty float\n"), "line 4: a property without a name"},
        {head("element vertex 1\nproperty half x\n"), "line 4: no type that is known: half"},
        {head("element face 1\nproperty list list uchar int x\n"),
         "line 4: no type that is known: list"},
        {head("element face 1\nproperty list float int x\n"),
         "line 4: a list whose count is no whole number"},
        {head(""), "the file has no vertices"},
        {head("element vertex 0\n" + places), "the file has no vertices"},
        {head("element vertex 1\nproperty float x\n") + "1 2 3\n",
         "the vertices have no x, y and z"},
        {head(vertex) + "1 2\n3 four 5\n", ""},
        {head(vertex) + "1 two 3\n", "line 8: what should be a number isn't one"},
        {head(vertex) + "1 2         ", "line 8: the file is cut off"},
        {head(square) + square_rows + "4 0 1 2 4\n", "line 14: vertex 4 of 4"},
        {head(square) + square_rows + "4 0 1 2 -1\n", "line 14: vertex -1 of 4"},
        {head(square) + square_rows + "3 0 1 nan\n", "line 14: vertex nan of 4"},
        {head(square) + square_rows + "-3 0 1 2\n", "line 14: a list of less than nothing"},
        {head(square) + square_rows + "nan 0 1 2\n", "line 14: a list of less than nothing"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(refusal_of(read_ply, Bytes(row.text).bytes), row.reason) << row.text;
}

TEST(Ply, is_not_what_other_files_are) {
    for (const char* text : {"", "pl", "plymouth\n", "solid\n", "OFF\n"})
        EXPECT_EQ(refusal_of(read_ply, Bytes(text).bytes),
                  "other format: no PLY file: it doesn't begin with \"ply\"")
            << text;
}

} // namespace

} // namespace orvex_test
