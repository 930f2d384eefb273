#include "picture.h"

#include <algorithm>
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

/// What a processor is taken for, until the end of the test.
class ProcessorClassTest : public testing::Test {
protected:
    void SetUp() override { unsetenv("GALLIUM_OVERRIDE_CPU_CAPS"); }
    void TearDown() override { unsetenv("GALLIUM_OVERRIDE_CPU_CAPS"); }

    static ProcessorClass class_with(const char* capabilities) {
        setenv("GALLIUM_OVERRIDE_CPU_CAPS", capabilities, 1);
        return processor_class();
    }
};

TEST_F(ProcessorClassTest, is_what_the_driver_is_told) {
    const ProcessorClass real = processor_class();
    EXPECT_EQ(class_with("avx"), real) << "nothing is added to a processor";
    EXPECT_EQ(class_with("ssse3"), std::max(real, ProcessorClass::ssse3));
    EXPECT_EQ(class_with("sse4.1"), std::max(real, ProcessorClass::ssse3));
    for (const char* const older : {"nosse", "sse", "sse2", "sse3"})
        EXPECT_EQ(class_with(older), ProcessorClass::other) << older;
}

TEST_F(ProcessorClassTest, says_how_far_a_picture_may_be_from_the_golden_one) {
    EXPECT_EQ(tolerance_on(ProcessorClass::avx).largest, 3);
    EXPECT_EQ(tolerance_on(ProcessorClass::ssse3).largest, 3);
    EXPECT_EQ(tolerance_on(ProcessorClass::other).largest, 10);
    EXPECT_EQ(tolerance_on(ProcessorClass::other).share, PictureTolerance().share)
        << "what is missing or in another place is no matter of rounding";
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

TEST_F(GoldenPicture, may_be_drawn_darker_where_filters_cut) {
    Picture darker = gradient(8, 8);
    for (std::size_t i = 0; i < darker.pixels.size(); i += 4)
        darker.pixels[i] = static_cast<unsigned char>(std::max(0, darker.pixels[i] - 9));
    ASSERT_TRUE(write_png(golden + "/a.png", gradient(8, 8)));
    EXPECT_FALSE(compare_with_golden(golden, output, "a", darker, false,
                                     tolerance_on(ProcessorClass::ssse3)));
    EXPECT_TRUE(compare_with_golden(golden, output, "a", darker, false,
                                    tolerance_on(ProcessorClass::other)));
    darker.at(1, 1)[2] = static_cast<unsigned char>(darker.at(1, 1)[2] + 100);
    EXPECT_FALSE(compare_with_golden(golden, output, "a", darker, false,
                                     tolerance_on(ProcessorClass::other)))
        << "a pixel that is wrong";
}

TEST_F(GoldenPicture, is_missing) {
    EXPECT_FALSE(compare_with_golden(golden, output, "a", gradient(8, 8), true));
    EXPECT_TRUE(left("a.png"));
    EXPECT_FALSE(std::filesystem::exists(golden + "/a.png"));
}

TEST_F(GoldenPicture, is_written_on_no_other_processor) {
    setenv("ORVEX_UPDATE_GOLDEN", "1", 1);
    setenv("GALLIUM_OVERRIDE_CPU_CAPS", "ssse3", 1);
    EXPECT_FALSE(compare_with_golden(golden, output, "a", gradient(8, 8), true));
    unsetenv("GALLIUM_OVERRIDE_CPU_CAPS");
    EXPECT_FALSE(std::filesystem::exists(golden + "/a.png"));
}

TEST_F(GoldenPicture, is_written_when_asked_on_a_processor_of_its_class) {
    const bool may_write = processor_class() == ProcessorClass::avx;
    setenv("ORVEX_UPDATE_GOLDEN", "1", 1);
    const testing::AssertionResult written =
        compare_with_golden(golden, output, "a", gradient(8, 8), true);
    EXPECT_EQ(static_cast<bool>(written), may_write) << written.message();
    EXPECT_EQ(read_picture(golden + "/a.png") == gradient(8, 8), may_write);
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
