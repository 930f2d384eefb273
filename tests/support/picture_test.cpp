#include "picture.h"

#include <cstdlib>
#include <filesystem>

#include <GL/gl.h>

#include "gl_context.h"
#include "temp_dir.h"

namespace orvex_test {

namespace {

using orvex_test::TempDir;

/// Every channel of every pixel has a value of its own kind.
Picture gradient(int width, int height) {
    Picture picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            unsigned char* const pixel = picture.at(x, y);
            pixel[0] = static_cast<unsigned char>(x * 7);
            pixel[1] = static_cast<unsigned char>(y * 5);
            pixel[2] = static_cast<unsigned char>(x * y);
            pixel[3] = static_cast<unsigned char>(255 - x);
        }
    return picture;
}

TEST(PictureFile, comes_back_as_it_was_written) {
    const TempDir folder;
    for (const Picture& picture : {gradient(1, 1), gradient(33, 17), gradient(256, 100)}) {
        const std::string path = folder.path() + "/below/picture.png";
        ASSERT_TRUE(write_png(path, picture));
        const std::optional<Picture> read = read_picture(path);
        ASSERT_TRUE(read.has_value());
        EXPECT_TRUE(*read == picture);
    }
}

TEST(PictureFile, isnt_there_or_cant_be_written) {
    const TempDir folder;
    EXPECT_FALSE(read_picture(folder.path() + "/none.png").has_value());
    EXPECT_FALSE(write_png(folder.path(), gradient(2, 2)));
}

TEST(PictureDifferenceTest, counts_pixels_and_finds_the_largest) {
    const Picture a = gradient(10, 10);
    Picture b = a;
    EXPECT_EQ(difference_of(a, b).largest, 0);
    EXPECT_EQ(difference_of(a, b).share, 0.0);
    b.at(3, 4)[1] = static_cast<unsigned char>(b.at(3, 4)[1] + 9);
    b.at(9, 9)[3] = static_cast<unsigned char>(b.at(9, 9)[3] - 31);
    EXPECT_EQ(difference_of(a, b).largest, 31);
    EXPECT_DOUBLE_EQ(difference_of(a, b).share, 0.02);
    EXPECT_DOUBLE_EQ(difference_of(a, b).mean, 0.1);
    const Picture image = picture_of_difference(a, b);
    EXPECT_EQ(image.at(3, 4)[1], 109);
    EXPECT_EQ(image.at(9, 9)[0], 128);
    EXPECT_EQ(image.at(0, 0)[0], 0);
}

TEST(PictureDifferenceTest, is_near_by_both_limits) {
    const Picture a = gradient(10, 10);
    Picture b = a;
    b.at(0, 0)[0] = 200;
    EXPECT_TRUE(is_near(a, b, {200, 0.0}));
    EXPECT_FALSE(is_near(a, b, {199, 0.0}));
    EXPECT_TRUE(is_near(a, b, {0, 0.01}));
    EXPECT_FALSE(is_near(a, b, {0, 0.009}));
    EXPECT_FALSE(is_near(a, gradient(10, 11), {255, 1.0}));
}

class GoldenPicture : public testing::Test {
protected:
    const TempDir folder;
    const std::string golden = folder.path() + "/golden";
    const std::string output = folder.path() + "/output";

    void SetUp() override { unsetenv("ORVEX_UPDATE_GOLDEN"); }
    void TearDown() override { unsetenv("ORVEX_UPDATE_GOLDEN"); }

    bool left(const char* name) const { return std::filesystem::exists(output + "/" + name); }
};

TEST_F(GoldenPicture, is_equal_to_the_last_bit) {
    ASSERT_TRUE(write_png(golden + "/a.png", gradient(8, 8)));
    EXPECT_TRUE(compare_with_golden(golden, output, "a", gradient(8, 8), true));
    EXPECT_FALSE(left("a.png"));
    Picture other = gradient(8, 8);
    ++other.at(1, 1)[0];
    EXPECT_FALSE(compare_with_golden(golden, output, "a", other, true));
    EXPECT_TRUE(read_picture(output + "/a.png") == other);
    EXPECT_TRUE(left("a-difference.png"));
    EXPECT_TRUE(compare_with_golden(golden, output, "a", other, false));
    EXPECT_FALSE(left("a.png")) << "what an earlier run left is gone";
    EXPECT_FALSE(left("a-difference.png"));
}

TEST_F(GoldenPicture, fails_beyond_the_tolerance) {
    ASSERT_TRUE(write_png(golden + "/a.png", gradient(8, 8)));
    EXPECT_FALSE(compare_with_golden(golden, output, "a", Picture(8, 8), false));
    EXPECT_TRUE(left("a-difference.png"));
    EXPECT_FALSE(compare_with_golden(golden, output, "a", gradient(8, 9), false));
    EXPECT_FALSE(left("a-difference.png"));
}

TEST_F(GoldenPicture, is_missing) {
    EXPECT_FALSE(compare_with_golden(golden, output, "a", gradient(8, 8), true));
    EXPECT_TRUE(left("a.png"));
    EXPECT_FALSE(std::filesystem::exists(golden + "/a.png"));
}

TEST_F(GoldenPicture, is_written_when_asked) {
    setenv("ORVEX_UPDATE_GOLDEN", "1", 1);
    EXPECT_TRUE(compare_with_golden(golden, output, "a", gradient(8, 8), true));
    EXPECT_TRUE(read_picture(golden + "/a.png") == gradient(8, 8));
}

class Frame : public GlTest {};
ORVEX_BOTH_PROFILES(Frame);

TEST_P(Frame, is_read_with_its_top_row_first_and_leaves_the_pack_state) {
    glViewport(0, 0, 37, 20);
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 19, 1, 1);
    glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glPixelStorei(GL_PACK_ROW_LENGTH, 99);
    glPixelStorei(GL_PACK_ALIGNMENT, 8);
    const Picture picture = read_frame();
    ASSERT_EQ(picture.width, 37);
    ASSERT_EQ(picture.height, 20);
    EXPECT_EQ(picture.at(0, 0)[0], 255);
    EXPECT_EQ(picture.at(1, 0)[2], 255);
    EXPECT_EQ(picture.at(36, 19)[2], 255);
    GLint row_length = 0, alignment = 0;
    glGetIntegerv(GL_PACK_ROW_LENGTH, &row_length);
    glGetIntegerv(GL_PACK_ALIGNMENT, &alignment);
    EXPECT_EQ(row_length, 99);
    EXPECT_EQ(alignment, 8);
}

} // namespace

} // namespace orvex_test
