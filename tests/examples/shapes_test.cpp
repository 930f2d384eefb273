// The gallery of parametric meshes, drawn as the example draws it, and the example itself.

#include <cstdlib>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "gallery.h"
#include "tests/support/gl_context.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using orvex_test::TempDir;

class Shapes : public testing::TestWithParam<Profile> {
protected:
    bool gl3() const { return GetParam() == Profile::core; }

    /// The whole picture of a drawing.
    static void expect_picture(const char* name, bool quads, bool gl3) {
        OffScreen stage(gl3, 800, 340);
        ASSERT_TRUE(stage.started);
        Gallery gallery(stage, SHAPES_HEIGHT_MAP);
        ASSERT_TRUE(gallery.is_complete());
        gallery.draw(quads);
        EXPECT_GOLDEN(name);
        EXPECT_NO_GL_ERROR();
    }

    int run(const std::string& arguments) const {
        const std::string command = std::string("'" SHAPES "' ") + (gl3() ? "gl3 " : "gl2 ");
        return std::system((command + arguments + " 2>/dev/null").c_str());
    }
};
ORVEX_BOTH_PROFILES(Shapes);

TEST_P(Shapes, are_lit) {
    expect_picture("shapes", false, gl3());
}

TEST_P(Shapes, show_their_quads_as_lines) {
    expect_picture("shapes_quads", true, gl3());
}

TEST_P(Shapes, are_solid_again_after_their_lines) {
    OffScreen stage(gl3(), 800, 340);
    Gallery gallery(stage, SHAPES_HEIGHT_MAP);
    gallery.draw(true);
    gallery.draw(false);
    EXPECT_GOLDEN("shapes");
}

TEST_P(Shapes, are_what_the_program_leaves_in_its_files) {
    const TempDir folder;
    EXPECT_EQ(run("'" + folder.file("lit.jpg") + "' '" + folder.file("quads.jpg") + "'"), 0);
    OffScreen stage(gl3(), 800, 340);
    Gallery gallery(stage, SHAPES_HEIGHT_MAP);
    for (const bool quads : {false, true}) {
        gallery.draw(quads);
        ASSERT_TRUE(stage.write(folder.file("expected.jpg").c_str()));
        const std::optional<Picture> expected = read_picture(folder.file("expected.jpg"));
        ASSERT_TRUE(expected.has_value());
        EXPECT_TRUE(read_picture(folder.file(quads ? "quads.jpg" : "lit.jpg")) == expected);
    }
}

TEST_P(Shapes, want_a_height_map_and_a_place_for_their_pictures) {
    const TempDir folder;
    const std::string picture = "'" + folder.file("a.jpg") + "' ";
    EXPECT_NE(run(picture + picture + "'" + folder.file("none.png") + "'"), 0);
    EXPECT_NE(run("'" + folder.path() + "/none/a.jpg'"), 0);
    EXPECT_NE(run(picture + "'" + folder.path() + "/none/b.jpg'"), 0);
}

} // namespace

} // namespace orvex_test
