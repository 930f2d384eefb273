#pragma once

/// @file
/// Runs an example program and looks at the picture that it writes.

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/command.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

/// Runs "program path picture.jpg", and compares the picture with the golden one of that name.
/// Pictures are stored with losses, so that the last bit says nothing.
inline void expect_example_picture(const std::string& program, const std::string& path,
                                   const std::string& name) {
    const orvex_test::TempDir folder;
    const std::string file = folder.file(name + ".jpg");
    EXPECT_EQ(output_of("'" + program + "' " + path + " '" + file + "'"), "");
    const std::optional<Picture> picture = read_picture(file);
    ASSERT_TRUE(picture.has_value());
    EXPECT_TRUE(compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR, name,
                                    *picture, false));
}

} // namespace orvex_test
