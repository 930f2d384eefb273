#include "orvex_formats/off/private/off_reader.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/orvex_formats/bytes.h"
#include "tests/orvex_formats/check_draft.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

Draft read(const std::string& text) {
    Draft draft = read_off(InputFile(Bytes(text).bytes));
    EXPECT_TRUE(holds_together(draft));
    return draft;
}

const std::string rows = "0 0 0\n1 0 0\n1 1 0\n0 1 0\n";

void expect_square(const std::string& text) {
    const Draft draft = read(text);
    ASSERT_EQ(draft.surfaces.size(), 1u) << text;
    const Surface& surface = draft.surfaces[0];
    ASSERT_EQ(surface.positions.size(), 4u);
    EXPECT_EQ(surface.positions[2].y, 1.0f);
    ASSERT_EQ(surface.triangles.size(), 2u);
    EXPECT_EQ(surface.triangles[1], (Triangle{0, 2, 3}));
    EXPECT_TRUE(surface.colors.empty());
    EXPECT_TRUE(draft.notes.empty());
}

TEST(Off, gives_vertices_and_faces) {
    expect_square("OFF\n4 1 4\n" + rows + "4 0 1 2 3\n");
}

TEST(Off, has_its_counts_and_comments_anywhere) {
    expect_square("OFF 4 1 4\n" + rows + "4 0 1 2 3\n");
    expect_square("# made\n\n  OFF # by hand\n# 1 2 3\n 4 1\n\n" + rows + "\n4 0 1 2 3 # all");
    expect_square("OFF\r\n4 1 0\r\n0 0 0\r\n1 0 0\r\n1 1 0\r\n0 1 0\r\n4 0 1 2 3");
}

TEST(Off, cuts_concave_faces_within_their_edges) {
    const Draft draft = read("OFF\n4 1 4\n0 0 0\n2 2 0\n0 1 0\n-2 2 0\n4 3 0 1 2\n");
    for (const Triangle& triangle : draft.surfaces.at(0).triangles)
        EXPECT_TRUE((triangle[0] == 0 || triangle[1] == 0 || triangle[2] == 0) &&
                    (triangle[0] == 2 || triangle[1] == 2 || triangle[2] == 2));
}

TEST(Off, vertices_have_what_the_first_word_says) {
    const Draft draft = read("STCNOFF\n3 1 0\n0 0 0  0 0 2  255 0 0 255  0.25 0.75\n"
                             "1 0 0  0 1 0  0 255 0 51  0 0\n1 1 0  0 0 1  0 0 255 255  1 1\n"
                             "3 0 1 2\n");
    const Surface& surface = draft.surfaces.at(0);
    EXPECT_EQ(surface.normals.at(0).z, 1.0f);
    EXPECT_EQ(surface.normals[1].y, 1.0f);
    EXPECT_EQ(surface.colors.at(0).x, 1.0f);
    EXPECT_EQ(surface.colors[1].y, 1.0f);
    EXPECT_NEAR(surface.colors[1].w, 0.2f, 1e-6f);
    EXPECT_EQ(surface.uvs[0].at(0).x, 0.25f);
    EXPECT_EQ(surface.uvs[0][2].y, 1.0f);
}

TEST(Off, colours_of_vertices_are_fractions_or_bytes_of_three_or_four) {
    const Draft fractions = read("COFF\n2 0 0\n0 0 0 1 0.5 0 1\n1 0 0 0 0 0.25 0.5\n");
    const std::vector<vec4>& colors = fractions.clouds.at(0).colors;
    EXPECT_EQ(colors.at(0).y, 0.5f);
    EXPECT_EQ(colors[1].w, 0.5f);
    const Draft bytes = read("OFF\n2 0 0\n0 0 0 255 51 0\n1 0 0 0 0 0\n");
    EXPECT_NEAR(bytes.clouds.at(0).colors.at(0).y, 0.2f, 1e-6f) << "without being announced";
    EXPECT_EQ(bytes.clouds[0].colors[1].w, 1.0f);
}

TEST(Off, faces_may_have_colours_of_their_own) {
    const Draft draft =
        read("OFF\n4 3 0\n" + rows + "3 0 1 2 255 0 0\n3 0 2 3 0 0 255 51\n3 0 1 3\n");
    const Surface& surface = draft.surfaces.at(0);
    ASSERT_EQ(surface.positions.size(), 9u);
    EXPECT_EQ(surface.colors.at(surface.triangles[0][0]).x, 1.0f);
    EXPECT_EQ(surface.colors[surface.triangles[0][0]].w, 1.0f);
    EXPECT_EQ(surface.colors[surface.triangles[1][0]].z, 1.0f);
    EXPECT_NEAR(surface.colors[surface.triangles[1][0]].w, 0.2f, 1e-6f);
    EXPECT_EQ(surface.colors[surface.triangles[2][0]].y, 1.0f) << "without one it is white";
    EXPECT_EQ(surface.positions[surface.triangles[2][2]].y, 1.0f);
    EXPECT_TRUE(draft.notes.empty());
}

TEST(Off, what_is_left_out_is_noted) {
    const Draft draft = read("OFF\n4 1 4\n" + rows + "4 0 1 2 3 7\nmore\n");
    ASSERT_EQ(draft.notes.size(), 2u);
    EXPECT_EQ(draft.notes[0], "colours of faces that are numbers of a list were left out");
    EXPECT_EQ(draft.notes[1], "line 8: what stands behind the last face was left out");
    const Draft two_numbers = read("OFF\n4 1 4\n" + rows + "4 0 1 2 3 7 1\n");
    EXPECT_EQ(two_numbers.notes.size(), 1u);
}

TEST(Off, with_a_mistake_is_refused_with_its_line) {
    struct Row {
        std::string text;
        const char* reason;
    };
    const Row table[] = {
        {"OFF", "line 1: the file ends within its head"},
        {"OFF\r\n", "line 1: the file ends within its head"},
        {"OFF\n4\n", "line 2: no counts of vertices and faces"},
        {"OFF\n4 x\n", "line 2: no counts of vertices and faces"},
        {"OFF\n-4 1\n", "line 2: no counts of vertices and faces"},
        {"OFF\n0 0 0\n", "line 2: the file has no vertices"},
        {"OFF BINARY\n1 2 3", "line 1: binary OFF files aren't read"},
        {"4OFF\n1 0 0\n", "line 1: OFF files of more than three dimensions aren't read"},
        {"CnOFF\n3\n", "line 1: OFF files of more than three dimensions aren't read"},
        {"OFF\n1 0 0\n0 0\n", "line 3: a vertex without 3 numbers"},
        {"STNOFF\n1 0 0\n0 0 0 0 0 1 0\n", "line 3: a vertex without 8 numbers"},
        {"OFF\n1 0 0\n0 zero 0\n", "line 3: what should be a number isn't one"},
        {"OFF\n2 0 0\n0 0 0      \n", "line 3: the file is cut off"},
        {"OFF\n1 1 0\n0 0 0\nx 0 0 0\n", "line 4: a face without a count of corners"},
        {"OFF\n1 1 0\n0 0 0\n3 0 0 x\n",
         "line 4: what should be a vertex of a face is no whole number"},
        {"OFF\n1 1 0\n0 0 0\n3 0 0\n",
         "line 4: what should be a vertex of a face is no whole number"},
        {"OFF\n1 1 0\n0 0 0\n3 0 0 1\n", "line 4: vertex 1 of 1"},
        {"OFF\n1 1 0\n0 0 0\n3 0 0 -1\n", "line 4: vertex -1 of 1"},
        {"OFF\n1 1 0\n0 0 0\n1 0 red\n", "line 4: what should be a number isn't one"},
    };
    for (const Row& row : table)
        EXPECT_EQ(refusal_of(read_off, Bytes(row.text).bytes), row.reason) << row.text;
}

TEST(Off, is_not_what_other_files_are) {
    for (const char* text :
         {"", "OF\n", "OFFER\n", "off\n", "XOFF\n", "# a comment\nv 0 0 0\n", "solid OFF\n", "C\n"})
        EXPECT_EQ(refusal_of(read_off, Bytes(text).bytes),
                  "other format: no OFF file: its first word isn't OFF")
            << text;
}

} // namespace

} // namespace orvex_test
