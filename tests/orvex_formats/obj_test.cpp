#include "orvex_formats/obj/private/obj_reader.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/orvex_formats/bytes.h"
#include "tests/orvex_formats/check_draft.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

Draft read(const std::string& text) {
    Draft draft = read_obj(InputFile(Bytes(text).bytes));
    EXPECT_TRUE(holds_together(draft));
    return draft;
}

std::string refusal(const std::string& text) {
    return refusal_of(read_obj, Bytes(text).bytes);
}

const std::string square = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";

/// The places of a surface's corners, in the order of its triangles.
std::string corners_of(const Surface& surface) {
    std::string text;
    for (const Triangle& triangle : surface.triangles) {
        for (const std::uint32_t corner : triangle) {
            const vec3& place = surface.positions[corner];
            for (const float number : {place.x, place.y, place.z})
                text += std::to_string(static_cast<int>(number));
            text += ' ';
        }
        text += '\n';
    }
    return text;
}

const std::string square_corners = "000 100 110 \n000 110 010 \n";

// ------------------------------------------------------------------------------ faces

TEST(Obj, gives_triangles_whose_equal_corners_are_one_vertex) {
    const Draft draft = read(square + "f 1 2 3\nf 1 3 4\n");
    ASSERT_EQ(draft.surfaces.size(), 1u);
    const Surface& surface = draft.surfaces[0];
    EXPECT_EQ(surface.positions.size(), 4u);
    EXPECT_EQ(surface.triangles, (std::vector<Triangle>{{0, 1, 2}, {0, 2, 3}}));
    EXPECT_TRUE(surface.normals.empty());
    EXPECT_TRUE(surface.uvs[0].empty());
    EXPECT_TRUE(draft.notes.empty());
}

TEST(Obj, joins_corners_that_name_the_same_three_entries) {
    const Draft draft = read(square + "vt 0 0\nvt 1 0.5\nvn 0 0 1\nvn 0 0 -1\n"
                                      "f 1/1/1 2/1/1 3/2/1\nf 1/1/1 3/2/1 4/1/2\n"
                                      "f 1/2/1 2/1/2 3/2/1\n");
    const Surface& surface = draft.surfaces.at(0);
    EXPECT_EQ(surface.triangles, (std::vector<Triangle>{{0, 1, 2}, {0, 2, 3}, {4, 5, 2}}));
    ASSERT_EQ(surface.uvs[0].size(), 6u);
    EXPECT_EQ(surface.uvs[0][2].x, 1.0f);
    EXPECT_EQ(surface.uvs[0][2].y, 0.5f);
    ASSERT_EQ(surface.normals.size(), 6u);
    EXPECT_EQ(surface.normals[3].z, -1.0f);
}

TEST(Obj, joins_any_number_of_corners_at_one_place) {
    std::string text = square;
    for (int i = 0; i < 100; ++i)
        text += "vt " + std::to_string(i) + " 0\n";
    for (int turn = 0; turn < 2; ++turn)
        for (int i = 1; i <= 100; ++i)
            text += "f 1/" + std::to_string(i) + " 2/1 3/1\n";
    const Surface surface = std::move(read(text).surfaces.at(0));
    EXPECT_EQ(surface.positions.size(), 102u);
    ASSERT_EQ(surface.triangles.size(), 200u);
    for (std::size_t i = 0; i < 200; ++i)
        EXPECT_EQ(surface.uvs[0][surface.triangles[i][0]].x, static_cast<float>(i % 100));
}

TEST(Obj, reads_each_form_of_a_corner) {
    for (const char* face : {"f 1 2 3 4", "f 1/1 2/1 3/1 4/1", "f 1//1 2//1 3//1 4//1",
                             "f 1/1/1 2/1/1 3/1/1 4/1/1", "f 1/ 2/ 3/ 4/", "f 1/1/ 2/1/ 3/1/ 4/1/",
                             "f -4 -3 -2 -1", "f -4/-1/-1 -3/-1/-1 3/1/1 4/1/1", "fo 1 2 3 4",
                             "f\t+1  +2 \t3 4  ", "  f 1 2 3 4 # a square"})
        EXPECT_EQ(corners_of(read(square + "vt 0 0\nvn 0 0 1\n" + face + "\n").surfaces.at(0)),
                  square_corners)
            << face;
}

TEST(Obj, counts_backwards_from_where_the_face_stands) {
    const Draft draft = read("v 9 9 9\nv 0 0 0\nv 1 0 0\nv 1 1 0\nf -3 -2 -1\nv 0 1 0\n"
                             "f -4 -2 -1\n");
    EXPECT_EQ(corners_of(draft.surfaces.at(0)), square_corners);
}

TEST(Obj, cuts_concave_polygons) {
    const Draft draft = read("v 0 0 0\nv 4 0 0\nv 1 1 0\nv 0 4 0\nf 2 3 4 1\n");
    EXPECT_EQ(corners_of(draft.surfaces.at(0)), "110 040 000 \n110 000 400 \n");
    EXPECT_TRUE(read_obj(InputFile(ORVEX_EXAMPLE_DATA "/lighthouse.obj")).notes.empty());
    const Draft bow = read("v 0 0 0\nv 4 4 0\nv 4 0 0\nv 0 4 0\nf 1 3 2 4\nf 1 2 3 4\n");
    EXPECT_EQ(bow.notes,
              (std::vector<std::string>{"line 6: a polygon crosses itself, or winds too much, and "
                                        "may have been cut wrongly"}));
    const Draft crossed = read("v 0 0 0\nv 6 0 0\nv 6 6 0\nv 2 -3 0\nv 1 -3 0\nf 1 2 3 4 5\n");
    EXPECT_EQ(crossed.notes,
              (std::vector<std::string>{"line 6: a polygon crosses itself, or winds too much, and "
                                        "may have been cut wrongly"}));
}

TEST(Obj, leaves_out_faces_that_name_what_is_not_there_and_says_where) {
    struct Row {
        const char* face;
        const char* note;
    };
    const Row rows[] = {
        {"f 0 1 2", "line 7: a face that names a vertex beyond the 4 that there are"},
        {"f 1 2 5", "line 7: a face that names a vertex beyond the 4 that there are"},
        {"f 1 2 -5", "line 7: a face that names a vertex beyond the 4 that there are"},
        {"f 1 2 99999999999999999999", "line 7: a face that names a vertex beyond the 4 that there "
                                       "are"},
        {"f 1 2 -99999999999999999999", "line 7: a face that names a vertex beyond the 4 that "
                                        "there are"},
        {"f 1/1 2/2 3/1", "line 7: a face that names a texture coordinate beyond the 1 that there "
                          "are"},
        {"f 1//1 2//0 3//1", "line 7: a face that names a normal beyond the 1 that there are"},
    };
    for (const Row& row : rows) {
        const std::string lists = square + "vt 0 0\nvn 0 0 1\n",
                          face = std::string(row.face) + "\n";
        const std::string note = std::string(row.note) + " was left out";
        const Draft draft = read(lists + face + "f 1 2 3\n");
        EXPECT_EQ(draft.surfaces.at(0).triangles.size(), 1u) << row.face;
        EXPECT_EQ(draft.notes, std::vector<std::string>{note});
        for (const std::string& more : {face, face + face})
            EXPECT_EQ(read(lists + face + more + "f 1 2 3\n").notes,
                      std::vector<std::string>{note + ", and so were others"});
    }
    EXPECT_EQ(refusal("v 0 0 0\nf 1 2 3\n"), "line 2: a face that names a vertex beyond the 1 that "
                                             "there are was left out");
}

TEST(Obj, passes_over_coordinates_and_normals_that_the_file_never_has) {
    const Draft draft = read(square + "f 1/1/1 2/2/2 3/3/3\n");
    EXPECT_EQ(draft.surfaces.at(0).triangles.size(), 1u);
    EXPECT_TRUE(draft.surfaces[0].uvs[0].empty());
}

TEST(Obj, notes_faces_with_too_few_corners_and_words_that_it_does_not_read) {
    const Draft draft = read(square + "f 1 2\nvp 1 2\ncolour 3\nvp 3 4\nf 1 2 3\n");
    EXPECT_EQ(draft.notes,
              (std::vector<std::string>{"line 5: a face with too few corners was left out",
                                        "line 6: \"vp\" was left out",
                                        "line 7: \"colour\" is no word of OBJ, and was left out"}));
}

// ------------------------------------------------------------------------------ vertices

TEST(Obj, reads_weights_and_colours_of_vertices) {
    const Draft draft =
        read("v 2 4 6 2\nv 1 0 0 1 0 0\nv 1 1 0 0 1 0\nv 0 1 0\nf 1 2 3\nf 1 3 4\n");
    const Surface& surface = draft.surfaces.at(0);
    EXPECT_EQ(surface.positions[0].x, 1.0f);
    EXPECT_EQ(surface.positions[0].z, 3.0f);
    ASSERT_EQ(surface.colors.size(), 4u);
    EXPECT_EQ(surface.colors[0].y, 1.0f) << "without a colour it is white";
    EXPECT_EQ(surface.colors[1].y, 0.0f);
    EXPECT_EQ(surface.colors[2].y, 1.0f);
    EXPECT_EQ(surface.colors[3].x, 1.0f);
    EXPECT_EQ(surface.colors[1].w, 1.0f);
}

TEST(Obj, brings_colours_of_bytes_to_the_range_of_one) {
    const Draft draft = read("v 0 0 0 255 0 51\nv 1 0 0 0 0 0\nv 1 1 0 1 nan -1\nf 1 2 3\n");
    const std::vector<vec4>& colors = draft.surfaces.at(0).colors;
    EXPECT_EQ(colors.at(0).x, 1.0f);
    EXPECT_NEAR(colors[0].z, 0.2f, 1e-6f);
    EXPECT_EQ(colors[2].y, 0.0f);
    EXPECT_EQ(colors[2].z, 0.0f);
}

TEST(Obj, makes_points_a_cloud_and_lines_lines) {
    const Draft draft = read(square + "p 1 -1\np 2\nl 1 2 3\nl 3/1 4/1\n");
    EXPECT_TRUE(draft.surfaces.empty());
    ASSERT_EQ(draft.clouds.size(), 1u);
    ASSERT_EQ(draft.clouds[0].positions.size(), 3u);
    EXPECT_EQ(draft.clouds[0].positions[1].y, 1.0f);
    ASSERT_EQ(draft.lines.size(), 1u);
    ASSERT_EQ(draft.lines[0].positions.size(), 6u);
    EXPECT_EQ(draft.lines[0].positions[2].x, 1.0f);
    EXPECT_EQ(draft.lines[0].positions[3].y, 1.0f);
    EXPECT_EQ(draft.lines[0].positions[5].x, 0.0f);

    const Draft coloured = read("v 0 0 0 1 0 0\nv 1 0 0 0 1 0\np 2\nl 1 2\np 3\nl 1 9\n");
    EXPECT_EQ(coloured.clouds.at(0).colors.at(0).y, 1.0f);
    EXPECT_EQ(coloured.lines.at(0).colors.at(0).x, 1.0f);
    EXPECT_EQ(coloured.notes,
              (std::vector<std::string>{
                  "line 6: a line that names a vertex which isn't there was left out",
                  "line 5: a point that names a vertex which isn't there was left out"}));
}

// ------------------------------------------------------------------------------ lines of text

TEST(Obj, reads_statements_of_several_lines_and_any_end_of_line) {
    const std::string joined = "v 0 0 0\nv 1 0 \\\n 0\nv 1 1 0\nv 0 1 0\nf 1 2 \\\n\\\n3\\\n 4\n";
    EXPECT_EQ(corners_of(read(joined).surfaces.at(0)), square_corners);
    for (const char* end : {"\r\n", "\r"}) {
        std::string text;
        for (const char letter : joined + "# the path C:\\models\\\nf 1 2 3\n")
            text += letter == '\n' ? std::string(end) : std::string(1, letter);
        EXPECT_EQ(corners_of(read(text).surfaces.at(0)), square_corners + "000 100 110 \n");
    }
    EXPECT_EQ(corners_of(read("v 0 0 0\nv\\\n1 0 0\nv 1 1 0\nf\\\n1 2 3\n").surfaces.at(0)),
              "000 100 110 \n")
        << "right behind the word, too";
    EXPECT_EQ(refusal(joined + "# \\\r\nf 1 \\\r\n x\n"), "line 11: \"x\" is no corner of a face");
}

TEST(Obj, needs_no_end_of_its_last_line) {
    EXPECT_EQ(corners_of(read(square + "f 1 2 3 4").surfaces.at(0)), square_corners);
    EXPECT_EQ(corners_of(read(square + "f 1 2 3 4\\").surfaces.at(0)), square_corners);
    EXPECT_EQ(corners_of(read(square + "f 1 2 3 4\\\n").surfaces.at(0)), square_corners);
}

TEST(Obj, reads_texts_of_other_encodings) {
    // The first letter of each length in UTF-8 is among them.
    const std::string name = "caf\xc3\xa9 \x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbd"
                             "\xf0\x90\x80\x80\xf0\x9f\x8f\xa0";
    const std::string text = "g " + name + "\n" + square + "f 1 2 3 4\n";
    EXPECT_EQ(read("\xef\xbb\xbf" + text).surfaces.at(0).name, name);
    std::u16string wide = u"g caf\u00e9 \x7f\x80\u07ff\u0800\ufffd\U00010000\U0001F3E0\n";
    for (const char letter : square + "f 1 2 3 4\n")
        wide += static_cast<char16_t>(letter);
    for (const bool has_mark : {true, false})
        for (const bool is_low_first : {true, false}) {
            std::string bytes;
            for (const char16_t unit : (has_mark ? u"\ufeff" : u"") + wide) {
                const char low = static_cast<char>(unit & 0xff);
                const char high = static_cast<char>(unit >> 8);
                bytes += is_low_first ? low : high;
                bytes += is_low_first ? high : low;
            }
            const Draft draft = read(bytes);
            EXPECT_EQ(draft.surfaces.at(0).name, name);
            EXPECT_EQ(corners_of(draft.surfaces[0]), square_corners);
        }
}

TEST(Obj, with_a_mistake_is_refused_with_its_line) {
    struct Row {
        const char* text;
        const char* reason;
    };
    const Row rows[] = {
        {"v 0 0 0\nv 1 x 0\n", "line 2: \"x\" is no number"},
        {"v 0 0 0\nv 1 2\n", "line 2: a vertex without three numbers"},
        {"v 0 0 0\n\nv 1 2 3,4\n", "line 3: \"3,4\" is no number"},
        {"v 0 0 0\nvt\n", "line 2: a texture coordinate without a number"},
        {"v 0 0 0\nvn 1 2\n", "line 2: a normal without three numbers"},
        {"v 0 0 0\nf 1 2 a\n", "line 2: \"a\" is no corner of a face"},
        {"v 0 0 0\nf 1/1/1/1 2 3\n", "line 2: \"1/1/1/1\" is no corner of a face"},
        {"v 0 0 0\nl 1 b\n", "line 2: \"b\" is no corner of a line"},
        {"v 0 0 0\nv 1 0 0\n", "line 2: the file ends with 2 vertices and no face"},
        {"v 0 0 0\nf 1 2\n", "line 2: the file ends with 1 vertices and no face"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(refusal(row.text), row.reason) << row.text;
}

TEST(Obj, is_not_what_other_files_are) {
    const std::string other =
        "other format: no OBJ file: its first word is none that begins a line of such files";
    for (const std::string& text :
         {std::string(), std::string("#"), std::string("solid a\nv 0 0 0\n"), std::string("ply\n"),
          std::string("OFF\n"), std::string("vv 0 0 0\n"), std::string("newmtl a\n"),
          std::string("{\"asset\": 1}"), std::string("glTF\2\0\0\0", 8),
          std::string("v 0 0 0\n\0", 9)})
        EXPECT_EQ(refusal(text), other) << text;
    EXPECT_EQ(refusal("# only\ng words\n"),
              "other format: no OBJ file: none of its 2 lines begins with a v");
    EXPECT_EQ(refusal(std::string(300000, '#') + "\nv 0 0 0\n"), other);
    EXPECT_EQ(refusal(std::string(200000, '#') + "\nv 0 0 0\n"),
              "line 2: the file ends with 1 vertices and no face");
}

// ------------------------------------------------------------------------------ groups

TEST(Obj, makes_a_surface_of_each_group_in_the_order_of_their_faces) {
    const Draft draft = read(square + "g none\ng  the roof \nf 1 2 3\no house\nf 1 2 3\ng door\n"
                                      "f 1 2 3\no \"the barn\"\nf 2 3 4\ng the roof\nf 3 4 1\n"
                                      "o house\nf 1 3 4\n");
    std::vector<std::string> names;
    for (const Surface& surface : draft.surfaces)
        names.push_back(surface.name + " " + std::to_string(surface.triangles.size()));
    EXPECT_EQ(names, (std::vector<std::string>{"the roof 1", "house 2", "door 1", "the barn 1",
                                               "the roof 1"}));
    EXPECT_EQ(draft.surfaces[1].positions.size(), 4u);
}

// ------------------------------------------------------------------------------ normals

/// Two squares that meet in a right angle along the y axis.
const std::string fold = "v 1 0 0\nv 0 0 0\nv 0 1 0\nv 1 1 0\nv 0 0 1\nv 0 1 1\n";

TEST(Obj, leaves_normals_to_the_rule_of_angles_where_nothing_is_said) {
    EXPECT_TRUE(read(fold + "f 1 2 3 4\nf 2 5 6 3\n").surfaces.at(0).normals.empty());
}

TEST(Obj, smooths_within_smoothing_groups_and_nowhere_else) {
    const Surface smooth = std::move(read(fold + "s 1\nf 1 2 3 4\nf 2 5 6 3\n").surfaces.at(0));
    EXPECT_EQ(smooth.positions.size(), 6u);
    ASSERT_EQ(smooth.normals.size(), 6u);
    const vec3& middle = smooth.normals[smooth.triangles[0][1]];
    EXPECT_NEAR(middle.x, middle.z, 1e-6f);
    EXPECT_NEAR(std::abs(middle.x), std::sqrt(0.5f), 1e-6f);

    for (const char* parted : {"s off\nf 1 2 3 4\nf 2 5 6 3\n", "s 0\nf 1 2 3 4\nf 2 5 6 3\n",
                               "s 1\nf 1 2 3 4\ns 2\nf 2 5 6 3\n"}) {
        const Surface flat_one = std::move(read(fold + parted).surfaces.at(0));
        ASSERT_EQ(flat_one.normals.size(), flat_one.positions.size()) << parted;
        for (const Triangle& triangle : flat_one.triangles)
            for (const std::uint32_t corner : triangle) {
                const vec3& normal = flat_one.normals[corner];
                EXPECT_EQ(std::abs(normal.x) + std::abs(normal.y) + std::abs(normal.z), 1.0f);
            }
    }
    EXPECT_EQ(read(fold + "s 1\nf 1 2 3 4\ns 2\nf 2 5 6 3\n").surfaces.at(0).positions.size(), 8u);
}

TEST(Obj, smooths_over_seams_of_texture_coordinates) {
    const Surface surface = std::move(
        read(fold + "vt 0 0\nvt 1 1\ns 1\nf 1/1 2/1 3/1 4/1\nf 2/2 5/2 6/2 3/2\n").surfaces.at(0));
    EXPECT_EQ(surface.positions.size(), 8u);
    EXPECT_EQ(surface.normals[surface.triangles[0][1]].x,
              surface.normals[surface.triangles[2][0]].x);
}

TEST(Obj, adds_only_the_normals_that_the_file_has_not) {
    const Surface surface =
        std::move(read(fold + "vn 0 1 0\nf 1//1 2//1 3//1\nf 1 3 4\nf 2 5 6 3\n").surfaces.at(0));
    ASSERT_EQ(surface.normals.size(), surface.positions.size());
    EXPECT_EQ(surface.normals[surface.triangles[0][0]].y, 1.0f);
    EXPECT_EQ(std::abs(surface.normals[surface.triangles[1][0]].z), 1.0f);
    EXPECT_EQ(std::abs(surface.normals[surface.triangles[2][0]].x), 1.0f);
}

TEST(Obj, takes_normals_as_they_are_where_they_are_nearly_unit_vectors) {
    const Surface surface = std::move(
        read(square + "vn 0 0.6 0.8001\nvn 0 0 5\nvn 0 0 0\nf 1//1 2//2 3//3\n").surfaces.at(0));
    EXPECT_EQ(surface.normals.at(0).z, 0.8001f);
    EXPECT_EQ(surface.normals[1].z, 1.0f);
    EXPECT_EQ(surface.normals[2].z, 1.0f);
}

// ------------------------------------------------------------------------------ pieces

/// A file whose statements differ as much as statements do.
std::string varied_file() {
    std::string text = "mtllib a.mtl\n";
    for (int i = 0; i < 300; ++i) {
        const std::string number = std::to_string(i);
        text += "v " + number + " 0.5 1e-3\r\nv 1." + number + " 2 \\\n 3\nv 0 " + number +
                " 1 0.5 0.25 1\nvt 0." + number + " 1\nvn 0 0 1\n";
        text += "f -3/-1 -2/-1/-1 -1 \\\r\n 1\n";
        if (i % 7 == 0)
            text += "g part " + number + "\ns " + std::to_string(i % 3) + "\n";
        if (i % 5 == 0)
            text += "usemtl red " + std::to_string(i % 4) + "\n# C:\\\np 1 -1\rl 1 2 -1\nodd 1\n";
        text += "f 1//1 2//1 " + std::to_string(i * 5) + "//1\n";
    }
    return text;
}

/// All that a draft holds, bit by bit.
std::string fingerprint(const Draft& draft) {
    std::string text;
    const auto add = [&](const auto& list) {
        text += std::to_string(list.size()) + ":";
        if (!list.empty())
            text.append(reinterpret_cast<const char*>(list.data()), list.size() * sizeof list[0]);
    };
    for (const Surface& surface : draft.surfaces) {
        text += surface.name;
        add(surface.positions);
        add(surface.normals);
        add(surface.colors);
        add(surface.uvs[0]);
        add(surface.triangles);
        add(surface.triangle_materials);
    }
    for (const Cloud& cloud : draft.clouds)
        add(cloud.positions);
    for (const Lines& lines : draft.lines)
        add(lines.positions);
    for (const SurfaceMaterial& material : draft.materials)
        text += material.name + "\n";
    for (const std::string& note : draft.notes)
        text += note + "\n";
    return text;
}

TEST(Obj, is_the_same_whatever_the_number_of_threads_and_the_size_of_pieces) {
    const InputFile file(Bytes(varied_file()).bytes);
    const Draft whole = read_obj(file);
    EXPECT_GT(whole.surfaces.size(), 40u);
    EXPECT_TRUE(holds_together(whole));
    const std::string wanted = fingerprint(whole);
    for (const std::size_t piece : {1u, 7u, 64u, 1000u, 5000u, 1u << 20})
        for (const unsigned int num_workers : {1u, 2u, 5u, 16u})
            EXPECT_EQ(fingerprint(read_obj(file, {piece, num_workers})), wanted)
                << piece << " bytes, " << num_workers << " workers";
}

TEST(Obj, that_becomes_shorter_while_it_is_read_is_refused) {
    const TempDir folder;
    for (const std::size_t piece : {100u, 1u << 20})
        for (const unsigned int num_workers : {1u, 4u}) {
            const std::string path = folder.write("model.obj", varied_file());
            const InputFile file(path);
            ASSERT_EQ(truncate(path.c_str(), 1000), 0);
            try {
                read_obj(file, {piece, num_workers});
                ADD_FAILURE() << "it was read";
            } catch (const Refusal& refused) {
                EXPECT_STREQ(refused.what(),
                             "byte 1000: the file became shorter while it was read");
            }
        }
}

TEST(Obj, tells_the_first_mistake_whatever_the_number_of_threads) {
    const std::string text = varied_file() + "v 1 2 x\n" + varied_file() + "v 1 2 y\n";
    const std::size_t lines = static_cast<std::size_t>(std::count(
        text.begin(), text.begin() + static_cast<std::ptrdiff_t>(text.find("x\n")), '\n'));
    const std::size_t returns = static_cast<std::size_t>(std::count(
        text.begin(), text.begin() + static_cast<std::ptrdiff_t>(text.find("x\n")), '\r'));
    for (const unsigned int num_workers : {1u, 2u, 8u}) {
        try {
            read_obj(InputFile(Bytes(text).bytes), {100, num_workers});
            ADD_FAILURE() << "it was read";
        } catch (const Refusal& refused) {
            // Of the 660 CRs 600 stand before LFs.
            EXPECT_EQ(returns, 660u);
            EXPECT_EQ(refused.what(),
                      "line " + std::to_string(lines + 60 + 1) + ": \"x\" is no number");
        }
    }
}

} // namespace

} // namespace orvex_test
