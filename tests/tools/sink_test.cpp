#include "sink.h"

#include <gtest/gtest.h>

#include "tests/orvex_kit/sample_pictures.h"
#include "tests/support/command.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

TEST(Sink, writes_each_picture_to_its_file) {
    const TempDir folder;
    const std::vector<std::string> names = {folder.path() + "/a.png", folder.path() + "/b.png"};
    Sink sink(names, PictureFormat::png, false);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(sink.put(noise_picture(4, 3, 3, Sample::u8)), "");
    EXPECT_EQ(sink.finish(), "");
    EXPECT_EQ(sink.told(), "wrote 2 pictures, " + names[0] + " to " + names[1]);
    for (const std::string& name : names) {
        Picture written;
        EXPECT_TRUE(read_picture(name, written));
        EXPECT_EQ(written, noise_picture(4, 3, 3, Sample::u8));
    }
}

TEST(Sink, writes_all_pictures_to_one_film) {
    const TempDir folder;
    const std::string name = folder.path() + "/a.raw";
    Sink sink({name}, PictureFormat::raw, true);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(sink.put(noise_picture(4, 3, 3, Sample::u8)), "");
    EXPECT_EQ(sink.finish(), "");
    EXPECT_EQ(sink.told(), "wrote " + name + ", a film of 3 pictures");
    EXPECT_EQ(content_of(name).size(), 3u * 4 * 3 * 3);
}

TEST(Sink, tells_what_went_wrong) {
    for (const bool film : {false, true}) {
        Sink sink({"/nowhere/a.raw"}, PictureFormat::raw, film);
        EXPECT_NE(sink.put(noise_picture(4, 3, 3, Sample::u8)).find("/nowhere/a.raw"),
                  std::string::npos);
    }
    Sink empty({"/nowhere/a.y4m"}, PictureFormat::y4m, true);
    EXPECT_NE(empty.finish(), "");
}

TEST(Likeness, is_empty_for_equal_colors_whatever_the_alpha) {
    const Picture picture = noise_picture(4, 3, 4, Sample::u8);
    Picture colors;
    ASSERT_TRUE(colors.take_channels(picture, 3));
    const Likeness likeness = judge(picture, colors, 0);
    EXPECT_EQ(likeness.mistake, "");
    EXPECT_EQ(likeness.difference, "");
    EXPECT_TRUE(likeness.shown.is_empty());
}

TEST(Likeness, counts_what_exceeds_the_tolerance) {
    const Picture picture = make_picture(4, 3, 3, Sample::u8);
    Picture other = picture;
    other.row<std::uint8_t>(1)[5] = 3;
    EXPECT_EQ(judge(picture, other, 3).difference, "");
    const Likeness likeness = judge(picture, other, 2);
    EXPECT_EQ(likeness.mistake, "");
    EXPECT_NE(likeness.difference, "");
    ASSERT_EQ(likeness.shown.width(), 4);
    EXPECT_EQ(likeness.shown.row<std::uint8_t>(1)[1], 255);
    EXPECT_EQ(likeness.shown.row<std::uint8_t>(0)[0], 0);
}

TEST(Likeness, on_another_size_has_no_picture) {
    const Likeness likeness =
        judge(make_picture(4, 3, 3, Sample::u8), make_picture(3, 4, 3, Sample::u8), 255);
    EXPECT_NE(likeness.difference, "");
    EXPECT_TRUE(likeness.shown.is_empty());
}

} // namespace

} // namespace orvex_test
