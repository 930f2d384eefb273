// STL files that were made to hurt.

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex_formats/stl/private/stl_reader.h"
#include "tests/orvex_formats/bytes.h"
#include "tests/orvex_formats/costs.h"
#include "tests/orvex_formats/mutants.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

/// Its name is all that says what a binary file is whose size doesn't.
Draft read_named(const InputFile& file) {
    std::vector<unsigned char> bytes(static_cast<std::size_t>(file.size()));
    file.read(0, bytes.data(), bytes.size());
    return read_stl(InputFile(std::move(bytes), "a.stl"));
}

/// @param told  how many triangles the head announces
Bytes binary(std::uint32_t told, std::size_t count, float number) {
    Bytes file;
    file.bytes.resize(80);
    file.add_number(told);
    for (std::size_t i = 0; i < count; ++i) {
        for (int k = 0; k < 12; ++k)
            file.add_number(number + static_cast<float>(k % 7));
        file.add_number<std::uint16_t>(0);
    }
    return file;
}

TEST(HostileStl, announces_more_triangles_than_it_has) {
    for (const std::uint32_t told : {UINT32_MAX, UINT32_MAX / 3 + 1, 0x80000000u, 20'001u}) {
        const std::string reason = cheap_refusal_of(read_named, binary(told, 20'000, 1.0f).bytes);
        EXPECT_EQ(reason, "byte 80: the file says that it has " + std::to_string(told) +
                              " triangles, and its 1000084 bytes hold 20000");
    }
}

TEST(HostileStl, of_numbers_that_are_none_keeps_to_its_bounds) {
    const HeapPeak peak;
    const Draft draft = read_named(
        InputFile(binary(20'000, 20'000, std::numeric_limits<float>::quiet_NaN()).bytes));
    EXPECT_TRUE(holds_together(draft));
    EXPECT_LE(peak.bytes(), most_of_draft / 8);
}

TEST(HostileStl, has_lines_and_words_without_end) {
    const std::string begin = "solid a\nfacet\n";
    EXPECT_EQ(cheap_refusal_of(read_stl, Bytes(begin + std::string(1'000'000, 'x')).bytes),
              "line 3: the file ends without a facet");
    std::string words = begin;
    for (int i = 0; i < 200'000; ++i)
        words += "w" + std::to_string(i % 1000) + "\n";
    EXPECT_EQ(cheap_refusal_of(read_stl, Bytes(words).bytes),
              "line 200002: the file ends without a facet");
}

TEST(HostileStl, mutants_do_no_harm) {
    const std::string text = "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n"
                             "vertex 1 1 0\nendloop\nendfacet\nendsolid a\nsolid b\nfacet\n"
                             "vertex 0 0 0\nvertex 1e9 -1 .5\nvertex 1 1 0\nendfacet\nendsolid\n";
    Bytes painted = binary(4, 4, 0.25f);
    painted.bytes[84 + 49] = 0x9c; // a colour
    read_mutants(read_named, {Bytes(text).bytes, painted.bytes});
}

} // namespace

} // namespace orvex_test
