// Runs the examples of off-screen drawing on both paths and looks at what they write.

#include <string>

#include "example_picture.h"

namespace orvex_test {

namespace {

class TargetExample : public testing::TestWithParam<const char*> {
protected:
    void expect_picture(const std::string& program, const std::string& name) {
        expect_example_picture(program, GetParam(), name);
    }

    std::string scan(const std::string& arguments) {
        return output_of(std::string("'" ARTIFACT_SCAN "' ") + GetParam() + " " + arguments);
    }
};
INSTANTIATE_TEST_SUITE_P(on, TargetExample, testing::Values("gl2", "gl3"),
                         [](const auto& row) { return std::string(row.param); });

TEST(ArtifactScan, tells_its_usage_for_other_words) {
    const std::string usage = "usage: artifact_scan [gl2|gl3] [frames] [faults]\nexit ";
    for (const char* words : {"gl4", "gl3 many", "gl3 3x", "gl3 3 -1", "gl3 3 1 1"}) {
        const std::string output = output_of(std::string("'" ARTIFACT_SCAN "' ") + words);
        EXPECT_EQ(output, usage + std::to_string(2 << 8)) << words;
    }
}

TEST_P(TargetExample, shows_a_resolved_target_on_a_quad) {
    expect_picture(OFFSCREEN, "offscreen");
}

TEST_P(TargetExample, throws_a_shadow) {
    expect_picture(SHADOW, "shadow");
}

TEST_P(TargetExample, finds_no_artifacts_in_clean_frames) {
    EXPECT_EQ(scan("20"), "0 artifacts in 20 frames, at most 0 in one\n");
}

TEST_P(TargetExample, finds_as_many_artifacts_as_were_planted) {
    EXPECT_EQ(scan("3 1"), "1 artifacts in 4 frames, at most 1 in one\n");
    EXPECT_EQ(scan("3 777"), "777 artifacts in 4 frames, at most 777 in one\n");
}

TEST_P(TargetExample, tells_that_a_picture_cannot_be_written) {
    const orvex_test::TempDir folder;
    const std::string path = folder.path() + "/none/out.jpg";
    const std::string arguments = std::string("' ") + GetParam() + " '" + path + "'";
    for (const char* const program : {"'" OFFSCREEN, "'" SHADOW}) {
        const std::string text = output_of(program + arguments);
        EXPECT_EQ(text.substr(0, text.find('\n')),
                  "can't write " + path + ": No such file or directory");
        EXPECT_NE(text.find("exit "), text.npos);
    }
}

} // namespace

} // namespace orvex_test
