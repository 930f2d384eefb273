#pragma once

/// @file
/// Runs an example program and looks at the picture that it writes.

#include <array>
#include <cstdio>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <sys/wait.h>

#include "support/picture.h"
#include "support/temp_dir.h"

namespace orvex_test {

/// Runs a command; its output, with the exit code behind it when that isn't 0.
inline std::string output_of(std::string const& command) {
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

/// Runs "program path picture.jpg", and compares the picture with the golden one of that name.
/// Pictures are stored with losses, so that the last bit says nothing.
inline void expect_example_picture(std::string const& program, std::string const& path,
                                   std::string const& name) {
    const orvex::test::TempDir folder;
    const std::string file = folder.file(name + ".jpg");
    EXPECT_EQ(output_of("'" + program + "' " + path + " '" + file + "'"), "");
    const std::optional<Picture> picture = read_picture(file);
    ASSERT_TRUE(picture.has_value());
    EXPECT_TRUE(compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR, name,
                                    *picture, false));
}

} // namespace orvex_test
