// Runs the examples of off-screen drawing on both paths and looks at what they write.

#include <array>
#include <cstdio>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <sys/wait.h>

#include "support/picture.h"
#include "support/temp_dir.h"

namespace {

using orvex::test::TempDir;
using namespace orvex_test;

/// Runs a command; its output, with the exit code behind it when that isn't 0.
std::string output_of(std::string const& command) {
    std::FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe)
        return "no pipe";
    std::string text;
    std::array<char, 512> part;
    while (std::fgets(part.data(), static_cast<int>(part.size()), pipe))
        text += part.data();
    const int status = pclose(pipe);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        text += "exit " + std::to_string(status);
    return text;
}

class TargetExample : public testing::TestWithParam<char const*> {
protected:
    /// Runs an example that writes a picture, and compares that with the golden one. Pictures are
    /// stored with losses, so that the last bit says nothing.
    void expect_picture(std::string const& program, std::string const& name) {
        const TempDir folder;
        const std::string path = folder.file(name + ".jpg");
        EXPECT_EQ(output_of("'" + program + "' " + GetParam() + " '" + path + "'"), "");
        const std::optional<Picture> picture = read_picture(path);
        ASSERT_TRUE(picture.has_value());
        EXPECT_TRUE(compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR, name,
                                        *picture, false));
    }

    std::string scan(std::string const& arguments) {
        return output_of(std::string("'" ARTIFACT_SCAN "' ") + GetParam() + " " + arguments);
    }
};
INSTANTIATE_TEST_SUITE_P(on, TargetExample, testing::Values("gl2", "gl3"),
                         [](const auto& row) { return std::string(row.param); });

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
    const TempDir folder;
    const std::string path = folder.path() + "/none/out.jpg";
    for (std::string const program : {OFFSCREEN, SHADOW}) {
        const std::string text = output_of("'" + program + "' " + GetParam() + " '" + path + "'");
        EXPECT_EQ(text.substr(0, text.find('\n')), "can't write " + path);
        EXPECT_NE(text.find("exit "), text.npos);
    }
}

} // namespace
