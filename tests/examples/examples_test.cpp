// Runs the examples on both paths, among files of their data, and looks at the pictures.

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/command.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

namespace fs = std::filesystem;

/// The folder where examples run in a test: a copy of their data.
class DataFolder {
public:
    DataFolder() { fs::copy(EXAMPLE_DATA, folder.path(), fs::copy_options::recursive); }

    /// Runs an example by its folder's name. @return what it said
    std::string run(const std::string& example, const std::string& words) const {
        const std::string name = example.substr(example.find('_') + 1);
        return output_of("cd '" + folder.path() + "' && '" EXAMPLE_PROGRAMS "/" + example + "/" +
                         name + "' " + words);
    }
    std::string file(const std::string& name) const { return folder.file(name); }

private:
    TempDir folder;
};

/// Compares an example's picture with the golden one of its name. What is stored with losses says
/// nothing by its last bit.
void expect_picture(const DataFolder& data, const std::string& name) {
    const std::optional<Picture> picture = read_picture(data.file(name + ".jpg"));
    ASSERT_TRUE(picture.has_value());
    EXPECT_TRUE(compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR, name,
                                    *picture, false));
}

class Example : public testing::TestWithParam<std::tuple<const char*, const char*>> {
protected:
    DataFolder data;
};

INSTANTIATE_TEST_SUITE_P(of, Example,
                         testing::Combine(testing::Values("02_orbit", "03_own_look", "04_text",
                                                          "05_picking", "06_layers", "09_shapes",
                                                          "10_curves", "11_particles",
                                                          "12_overlays", "13_shadow"),
                                          testing::Values("gl2", "gl3")),
                         [](const auto& row) {
                             return std::string(std::get<0>(row.param)) + "_on_" +
                                    std::get<1>(row.param);
                         });

TEST_P(Example, draws_its_picture) {
    const std::string example = std::get<0>(GetParam());
    const std::string path = std::get<1>(GetParam());
    EXPECT_EQ(data.run(example, path == "gl2" ? "gl2" : ""), "");
    expect_picture(data, example.substr(example.find('_') + 1));
}

TEST(FirstExample, draws_the_picture_of_the_readme) {
    const DataFolder data;
    EXPECT_EQ(data.run("01_first_picture", ""), "");
    const std::optional<Picture> drawn = read_picture(data.file("lighthouse.jpg"));
    const std::optional<Picture> shown = read_picture(README_PICTURE);
    ASSERT_TRUE(drawn && shown);
    EXPECT_TRUE(is_near(*drawn, *shown, tolerance_on(processor_class())));
}

TEST(ExampleOnTheEngineAlone, draws_a_model) {
    const DataFolder data;
    EXPECT_EQ(data.run("16_first_model", "lighthouse.obj first_model.jpg"), "");
    expect_picture(data, "first_model");
}

TEST(ExampleOnTheEngineAlone, draws_points_that_a_compute_program_moved) {
    const DataFolder data;
    EXPECT_EQ(data.run("17_compute_points", ""), "");
    expect_picture(data, "compute_points");
}

TEST(Examples, tell_that_their_picture_cannot_be_written) {
    const DataFolder data;
    fs::create_directory(data.file("orbit.jpg"));
    EXPECT_EQ(data.run("02_orbit", ""), "can't write orbit.jpg: Is a directory\nexit 256");
}

TEST(Examples, tell_that_their_model_is_not_there) {
    const DataFolder data;
    fs::remove(data.file("lighthouse.obj"));
    EXPECT_EQ(data.run("02_orbit", ""), "lighthouse.obj: No such file or directory\nexit 256");
}

TEST(ArtifactScanWords, get_its_usage_unless_they_are_known) {
    const DataFolder data;
    const std::string usage = "usage: artifact_scan [gl2|gl3] [frames] [faults]\nexit ";
    for (const char* words : {"gl4", "gl3 many", "gl3 3x", "gl3 3 -1", "gl3 3 1 1"})
        EXPECT_EQ(data.run("14_artifact_scan", words), usage + std::to_string(2 << 8)) << words;
}

class ArtifactScan : public testing::TestWithParam<const char*> {
protected:
    DataFolder data;

    std::string scan(const std::string& numbers) const {
        return data.run("14_artifact_scan", std::string(GetParam()) + " " + numbers);
    }
};
INSTANTIATE_TEST_SUITE_P(on, ArtifactScan, testing::Values("gl2", "gl3"),
                         [](const auto& row) { return std::string(row.param); });

TEST_P(ArtifactScan, finds_no_artifacts_in_clean_frames) {
    EXPECT_EQ(scan("4"), "0 artifacts in 4 frames, at most 0 in one\n");
}

TEST_P(ArtifactScan, finds_as_many_artifacts_as_were_planted) {
    EXPECT_EQ(scan("2 1"), "1 artifacts in 3 frames, at most 1 in one\n");
    EXPECT_EQ(scan("2 777"), "777 artifacts in 3 frames, at most 777 in one\n");
}

} // namespace

} // namespace orvex_test
