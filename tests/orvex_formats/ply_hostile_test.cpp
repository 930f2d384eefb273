// PLY files that were made to hurt.

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "orvex_formats/ply/private/ply_reader.h"
#include "tests/orvex_formats/bytes.h"
#include "tests/orvex_formats/costs.h"
#include "tests/orvex_formats/mutants.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

std::string head(const std::string& lines, const std::string& format) {
    return "ply\nformat " + format + " 1.0\n" + lines + "end_header\n";
}

const std::string places = "property float x\nproperty float y\nproperty float z\n";
const std::string list = "property list uint int vertex_indices\n";

std::string refusal(const Bytes& file) {
    return cheap_refusal_of(read_ply, file.bytes);
}

TEST(HostilePly, announces_more_rows_than_it_has) {
    for (const char* count : {"4294967296", "9223372036854775808", "18446744073709551615"}) {
        const std::string lines = std::string("element vertex ") + count + "\n" + places;
        for (const char* format : {"ascii", "binary_little_endian", "binary_big_endian"})
            EXPECT_EQ(refusal(Bytes(head(lines, format) + "0 0 0 ")),
                      std::string("more vertices than any that are read: ") + count);
    }
    const std::string many = "element vertex 4000000000\n" + places;
    EXPECT_EQ(refusal(Bytes(head(many, "ascii") + "0 0 0\n")),
              "line 7: the file says that it has 4000000000 rows of \"vertex\", and is too short "
              "for them");
    const std::string faces =
        "element vertex 1\n" + places + "element face 18446744073709551615\n" + list;
    Bytes file(head(faces, "binary_little_endian"));
    file.add_number(0.0f).add_number(0.0f).add_number(0.0f);
    EXPECT_EQ(refusal(file), "byte 199: the file says that it has 18446744073709551615 rows of "
                             "\"face\", and is too short for them");
}

TEST(HostilePly, announces_longer_lists_than_it_has) {
    const std::string lines = "element vertex 1\n" + places + "element face 1\n" + list;
    Bytes file(head(lines, "binary_little_endian"));
    file.add_number(0.0f).add_number(0.0f).add_number(0.0f).add_number<std::uint32_t>(UINT32_MAX);
    EXPECT_EQ(refusal(file),
              "byte 184: a list of 4294967295 numbers, and the file is too short for them");
    Bytes nearly_whole(head(lines, "binary_little_endian"));
    nearly_whole.add_number(0.0f).add_number(0.0f).add_number(0.0f).add_number(4u);
    for (int i = 0; i < 3; ++i)
        nearly_whole.add_number(0);
    EXPECT_EQ(refusal(nearly_whole),
              "byte 184: a list of 4 numbers, and the file is too short for them");
    for (const char* count : {"4294967296", "1e300", "inf"})
        EXPECT_NE(refusal(Bytes(head(lines, "ascii") + "0 0 0\n" + count + " 0 0 0\n"))
                      .find("and the file is too short for them"),
                  std::string::npos);
    // In what is passed over, too.
    const std::string unknown = "element rings 1\nproperty list uint double a\n" + lines;
    EXPECT_EQ(refusal(Bytes(head(unknown, "ascii") + "4294967295 0\n")),
              "line 12: a list of 4294967295 numbers, and the file is too short for them");
}

TEST(HostilePly, says_nothing_a_billion_times) {
    // Rows of nothing are no work.
    const std::string lines = "element nothing 18446744073709551615\nelement vertex 1\n" + places;
    EXPECT_EQ(refusal(Bytes(head(lines, "ascii") + "0 0 0\n")), "");
    // Nor are lists that take a byte each and are empty.
    Bytes file(head("element vertex 1\nproperty char x\nproperty char y\nproperty char z\n"
                    "element face 900000\nproperty list uchar int vertex_indices\n",
                    "binary_little_endian"));
    file.bytes.resize(file.bytes.size() + 3 + 900000);
    EXPECT_EQ(refusal(file), "");
}

TEST(HostilePly, is_no_text_where_it_says_so) {
    Bytes file(head("element vertex 2\n" + places, "ascii"));
    for (int i = 0; i < 6; ++i)
        file.add_number(1.5f);
    EXPECT_EQ(refusal(file), "line 8: what should be a number isn't one");
}

TEST(HostilePly, has_a_head_without_end) {
    std::string text = "ply\nformat ascii 1.0\ncomment ";
    text.append(1u << 20, 'x');
    EXPECT_EQ(refusal(Bytes(text)), "line 3: the file ends within its head");
    std::string lines = "ply\nformat ascii 1.0\n";
    while (lines.size() < 1u << 20)
        lines += "element a 0\n";
    EXPECT_NE(refusal(Bytes(lines)).find("the file ends within its head"), std::string::npos);
    while (lines.size() < 2u << 20)
        lines += "property int a\n";
    EXPECT_NE(refusal(Bytes(lines)).find("more properties than any that are read"),
              std::string::npos);
    std::string pictures = "ply\nformat ascii 1.0\n";
    while (pictures.size() < 1u << 20)
        pictures += "comment TextureFile a\n";
    EXPECT_NE(refusal(Bytes(pictures)).find("the file ends within its head"), std::string::npos);
}

TEST(HostilePly, names_are_told_in_short) {
    const std::string name(1000, 'n');
    const std::string reason =
        refusal(Bytes("ply\nformat ascii 1.0\n" + std::string("\x1b[2J") + name + "\n"));
    EXPECT_LT(reason.size(), 120u);
    EXPECT_EQ(reason.find('\x1b'), std::string::npos);
}

TEST(HostilePly, mutants_do_no_harm) {
    const std::string text =
        head("comment TextureFile a.png\nelement vertex 4\n" + places +
                 "property uchar red\nproperty uchar green\nproperty uchar blue\n"
                 "element face 2\nproperty list uchar int vertex_indices\n"
                 "property list uchar float texcoord\nproperty int texnumber\n"
                 "element tristrips 1\nproperty list int int vertex_indices\n",
             "ascii") +
        "0 0 0 1 2 3\n1 0 0 4 5 6\n1 1 0 7 8 9\n0 1 0 9 9 9\n4 0 1 2 3 0 0\n"
        "3 0 1 2 6 0 0 1 0 1 1 0\n5 0 1 2 3 -1\n";
    Bytes little(
        head("element vertex 3\n" + places + "element face 1\n" + list, "binary_little_endian"));
    for (const float number : {0, 0, 0, 1, 0, 0, 1, 1, 0})
        little.add_number(number);
    little.add_number<std::uint32_t>(3);
    for (const std::int32_t corner : {0, 1, 2})
        little.add_number(corner);
    read_mutants(read_ply, {Bytes(text).bytes, little.bytes});
}

} // namespace

} // namespace orvex_test
