// What the kit makes of the formats that lie beside its library.

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include <orvex_kit/engine.h>
#include <orvex_kit/model.h>

#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using orvex::kit::Model;

class KitFormatsTest : public testing::Test {
protected:
    orvex::kit::Engine engine;
    TempDir folder;
};

TEST_F(KitFormatsTest, finds_the_plugins_beside_its_library) {
    ASSERT_TRUE(engine) << engine.reason();
    const std::string formats = orvex::kit::readable_formats();
    EXPECT_NE(formats.find(", STL"), formats.npos) << formats;
}

TEST_F(KitFormatsTest, loads_by_them_with_their_notes) {
    const Model model(folder.write("tile.stl", "solid tile\nshade 1\nfacet\nvertex 0 0 0\n"
                                               "vertex 1 0 0\nvertex 1 1 0\nendfacet\n"));
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(model.loader(), "orvex_stl");
    EXPECT_EQ(model.num_faces(), 1u);
    ASSERT_EQ(model.notes().size(), 1u);
    EXPECT_EQ(model.notes()[0], "line 2: \"shade\" is no word of STL, and was left out");
    EXPECT_EQ(model.files().size(), 1u);
}

TEST_F(KitFormatsTest, tells_the_reason_of_the_format_that_a_file_has) {
    const Model model(folder.write("bad.stl", "solid\nfacet\nvertex 1\n"));
    EXPECT_FALSE(model);
    EXPECT_EQ(model.reason(), folder.file("bad.stl") + ": no loader can read it as a model (" +
                                  orvex::kit::readable_formats() +
                                  "): line 3: a vertex without three numbers");
}

} // namespace

} // namespace orvex_test
