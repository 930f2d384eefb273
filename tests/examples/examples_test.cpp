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

class Example : public testing::TestWithParam<std::tuple<const char*, const char*>> {
protected:
    DataFolder data;

    /// Compares with a golden picture of its name. What is stored with losses says nothing by its
    /// last bit.
    void expect_picture(const std::string& name) const {
        const std::optional<Picture> picture = read_picture(data.file(name + ".jpg"));
        ASSERT_TRUE(picture.has_value());
        EXPECT_TRUE(compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR, name,
                                        *picture, false));
    }
};

INSTANTIATE_TEST_SUITE_P(of, Example,
                         testing::Combine(testing::Values("02_orbit", "03_own_look", "04_text",
                                                          "05_picking", "06_layers", "09_shapes",
                                                          "10_curves", "11_particles"),
                                          testing::Values("gl2", "gl3")),
                         [](const auto& row) {
                             return std::string(std::get<0>(row.param)) + "_on_" +
                                    std::get<1>(row.param);
                         });

TEST_P(Example, draws_its_picture) {
    const std::string example = std::get<0>(GetParam());
    const std::string path = std::get<1>(GetParam());
    EXPECT_EQ(data.run(example, path == "gl2" ? "gl2" : ""), "");
    expect_picture(example.substr(example.find('_') + 1));
}

} // namespace

} // namespace orvex_test
