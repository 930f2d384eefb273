// OFF files that were made to hurt.

#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "orvex_formats/off/private/off_reader.h"
#include "tests/orvex_formats/bytes.h"
#include "tests/orvex_formats/costs.h"
#include "tests/orvex_formats/mutants.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::formats;

std::string refusal(const std::string& text) {
    return cheap_refusal_of(read_off, Bytes(text).bytes);
}

TEST(HostileOff, announces_more_than_it_has) {
    EXPECT_EQ(refusal("OFF\n4294967296 0 0\n0 0 0\n"),
              "line 2: the file says that it has 4294967296 vertices and 0 faces, and is too short "
              "for them");
    EXPECT_EQ(refusal("OFF\n1\n18446744073709551615\n0 0 0\n"),
              "line 3: the file says that it has 1 vertices and 18446744073709551615 faces, and is "
              "too short for them");
    EXPECT_EQ(refusal("OFF\n99999999999999999999 1 0\n"),
              "line 2: no counts of vertices and faces");
}

TEST(HostileOff, has_a_face_of_a_billion_corners) {
    for (const char* count : {"1000000000", "18446744073709551615"})
        EXPECT_EQ(refusal(std::string("OFF\n1 1 0\n0 0 0\n") + count + " 0 0 0\n"),
                  std::string("line 4: a face of ") + count +
                      " corners, and the line is too short for them");
}

TEST(HostileOff, has_long_comments_and_long_lines) {
    std::string text = "OFF\n# ";
    text.append(1u << 20, 'x');
    EXPECT_NE(refusal(text).find("the file ends within its head"), std::string::npos);
    std::string spaces = "OFF 1 1 0\n0 0 0\n1 0";
    spaces.append(1u << 20, ' ');
    EXPECT_EQ(refusal(spaces), "");
    std::string lines = "OFF 1 1 0\n0 0 0\n";
    lines.append(1u << 20, '\n');
    EXPECT_NE(refusal(lines).find("the file is cut off"), std::string::npos);
}

TEST(HostileOff, of_gigabytes_of_one_line_is_refused_before_its_end) {
    const TempDir folder;
    const std::string path = folder.write("huge.off", "OFF\n# ");
    ASSERT_EQ(truncate(path.c_str(), 4l << 30), 0);
    const HeapPeak peak;
    EXPECT_EQ(refusal_of(read_off, InputFile(path)), "line 2: longer than any that is read");
    EXPECT_LE(peak.bytes(), std::size_t{200} << 20) << "whatever the file has";
}

TEST(HostileOff, mutants_do_no_harm) {
    read_mutants(
        read_off,
        {Bytes("OFF\n5 2 0\n0 0 0\n4 0 0\n4 4 0\n2 1 0\n0 4 0\n5 0 1 2 3 4\n3 0 1 2 255 0 0\n")
             .bytes,
         Bytes("STCNOFF 3 1 0\n0 0 0 0 0 1 255 0 0 255 0.5 0.5\n1 0 0 0 0 1 0 255 0 255 1 0\n"
               "1 1 0 0 0 1 9 9 9 255 1 1\n3 0 1 2 0.5 0.25 1 1\n")
             .bytes});
}

} // namespace

} // namespace orvex_test
