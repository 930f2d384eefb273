#include "orvex_kit/frame_stream.h"

#include <filesystem>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/orvex_kit/child_process.h"
#include "tests/orvex_kit/sample_pictures.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

Picture picture_of(int width, int height, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    Picture picture = make_picture(width, height, 3, Sample::u8);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            std::uint8_t* const pixel = picture.row<std::uint8_t>(y) + x * 3;
            pixel[0] = red;
            pixel[1] = green;
            pixel[2] = blue;
        }
    return picture;
}

/// What a film of some pictures is in a file.
std::string film_of(std::initializer_list<Picture> pictures, const FrameStreamOptions& options) {
    const TempDir folder;
    FrameStream film(folder.file("film"), options);
    for (const Picture& picture : pictures)
        EXPECT_EQ(film.put(picture).reason(), "");
    EXPECT_EQ(film.frames(), static_cast<long>(pictures.size()));
    EXPECT_EQ(film.finish().reason(), "");
    return content_of(folder.file("film"));
}

FrameStreamOptions y4m(Chroma chroma, bool full_range) {
    FrameStreamOptions options;
    options.format = PictureFormat::y4m;
    options.chroma = chroma;
    options.full_range = full_range;
    return options;
}

std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values)
        text += static_cast<char>(value);
    return text;
}

TEST(FrameStream, tells_players_what_it_is) {
    const Picture picture = picture_of(2, 2, 0, 0, 0);
    FrameStreamOptions options = y4m(Chroma::c420, false);
    options.rate = 30000;
    options.rate_seconds = 1001;
    EXPECT_EQ(film_of({picture, picture}, options),
              "YUV4MPEG2 W2 H2 F30000:1001 Ip A1:1 C420jpeg XCOLORRANGE=LIMITED\n" +
                  ("FRAME\n" + bytes({16, 16, 16, 16, 128, 128})) +
                  ("FRAME\n" + bytes({16, 16, 16, 16, 128, 128})));
    EXPECT_EQ(film_of({picture}, y4m(Chroma::c444, true)),
              "YUV4MPEG2 W2 H2 F25:1 Ip A1:1 C444 XCOLORRANGE=FULL\nFRAME\n" +
                  bytes({0, 0, 0, 0, 128, 128, 128, 128, 128, 128, 128, 128}));
}

/// Y, Cb and Cr of one pixel.
std::string value_of(int red, int green, int blue, bool full_range) {
    const std::string film =
        film_of({picture_of(1, 1, static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                            static_cast<std::uint8_t>(blue))},
                y4m(Chroma::c444, full_range));
    return film.substr(film.size() - 3);
}

TEST(FrameStream, has_the_colors_of_bt601) {
    // Worked out by hand: 16 + 219 Y, 128 + 224 (B - Y) / 1.772, 128 + 224 (R - Y) / 1.402.
    EXPECT_EQ(value_of(255, 255, 255, false), bytes({235, 128, 128}));
    EXPECT_EQ(value_of(255, 0, 0, false), bytes({81, 90, 240}));
    EXPECT_EQ(value_of(0, 255, 0, false), bytes({145, 54, 34}));
    EXPECT_EQ(value_of(0, 0, 255, false), bytes({41, 240, 110}));
    EXPECT_EQ(value_of(128, 128, 128, false), bytes({126, 128, 128}));
    EXPECT_EQ(value_of(255, 255, 255, true), bytes({255, 128, 128}));
    EXPECT_EQ(value_of(255, 0, 0, true), bytes({76, 85, 255}));
    EXPECT_EQ(value_of(0, 255, 0, true), bytes({150, 44, 21}));
    EXPECT_EQ(value_of(0, 0, 255, true), bytes({29, 255, 107}));
}

TEST(FrameStream, halves_chroma_by_the_mean_and_repeats_the_edge_of_odd_sizes) {
    Picture picture = picture_of(3, 1, 0, 0, 0);
    std::uint8_t* const row = picture.row<std::uint8_t>(0);
    row[0] = 255;
    row[8] = 255;
    const std::string film = film_of({picture}, y4m(Chroma::c420, true));
    // Red and black, then blue by itself.
    EXPECT_EQ(film.substr(film.size() - 7), bytes({76, 0, 29, 106, 255, 192, 107}));
}

TEST(FrameStream, takes_grey_and_leaves_alpha_out) {
    for (const int channels : {1, 2}) {
        Picture grey = make_picture(1, 1, channels, Sample::u8);
        grey.row<std::uint8_t>(0)[0] = 200;
        const std::string film = film_of({grey}, y4m(Chroma::c444, true));
        EXPECT_EQ(film.substr(film.size() - 3), bytes({200, 128, 128})) << channels;
    }
    Picture colors;
    ASSERT_TRUE(colors.take_channels(picture_of(1, 1, 255, 0, 0), 4));
    colors.row<std::uint8_t>(0)[3] = 0;
    const std::string film = film_of({colors}, y4m(Chroma::c444, true));
    EXPECT_EQ(film.substr(film.size() - 3), bytes({76, 85, 255}));
}

TEST(FrameStream, of_raw_samples_takes_any_kind) {
    Picture picture = make_picture(1, 1, 1, Sample::f32);
    picture.row<float>(0)[0] = 1.0f;
    EXPECT_EQ(film_of({picture, picture}, {PictureFormat::raw}),
              bytes({0, 0, 0x80, 0x3f, 0, 0, 0x80, 0x3f}));
}

TEST(FrameStream, goes_by_its_suffix) {
    const TempDir folder;
    const Picture picture = picture_of(1, 1, 0, 0, 0);
    FrameStream film(folder.file("a.Y4M")), raw(folder.file("a.raw"));
    ASSERT_EQ(film.put(picture).reason(), "");
    ASSERT_EQ(raw.put(picture).reason(), "");
    ASSERT_EQ(film.finish().reason(), "");
    ASSERT_EQ(raw.finish().reason(), "");
    EXPECT_EQ(content_of(folder.file("a.Y4M")).substr(0, 9), "YUV4MPEG2");
    EXPECT_EQ(content_of(folder.file("a.raw")), std::string(3, '\0'));
}

TEST(FrameStream, refuses_what_doesnt_fit_and_goes_on) {
    const TempDir folder;
    const std::string name = folder.file("a.y4m");
    const Picture picture = picture_of(2, 2, 0, 0, 0);
    FrameStream film(name);
    EXPECT_EQ(film.put(Picture()).reason(), "can't write " + name + ": the picture is empty");
    EXPECT_EQ(film.put(make_picture(2, 2, 3, Sample::u16)).reason(),
              "can't write " + name + ": YUV4MPEG2 takes 8-bit pictures, not 16-bit");
    EXPECT_EQ(film.finish().reason(), "can't write " + name + ": the film has no frame");
    ASSERT_EQ(film.put(picture).reason(), "");
    const std::string other =
        "can't write " + name + ": frame 2 is of another size or kind than the first";
    EXPECT_EQ(film.put(picture_of(3, 2, 0, 0, 0)).reason(), other);
    EXPECT_EQ(film.put(picture_of(2, 3, 0, 0, 0)).reason(), other);
    EXPECT_EQ(film.put(make_picture(2, 2, 4, Sample::u8)).reason(), other);
    EXPECT_EQ(film.frames(), 1);
    ASSERT_EQ(film.finish().reason(), "");
    EXPECT_EQ(film.put(picture).reason(), "can't write " + name + ": the film is finished");
    EXPECT_EQ(film.finish().reason(), "can't write " + name + ": the film is finished");
}

TEST(FrameStream, refuses_formats_and_rates_that_arent_of_films) {
    const TempDir folder;
    const Picture picture = picture_of(1, 1, 0, 0, 0);
    const std::string name = folder.file("a.png");
    const std::string no_format = "can't write " + name + ": films are of the format raw or y4m";
    EXPECT_EQ(FrameStream(name).put(picture).reason(), no_format);
    EXPECT_EQ(FrameStream(name, {PictureFormat::npy}).put(picture).reason(), no_format);
    EXPECT_EQ(FrameStream("-").put(picture).reason(),
              "can't write to standard output: films are of the format raw or y4m");
    FrameStreamOptions options = y4m(Chroma::c420, false);
    options.rate = 0;
    EXPECT_EQ(FrameStream(name, options).put(picture).reason(),
              "can't write " + name + ": the rate of a film is above 0");
    options.rate = 1;
    options.rate_seconds = -1;
    EXPECT_FALSE(FrameStream(name, options).put(picture));
    EXPECT_FALSE(std::filesystem::exists(name));
}

TEST(FrameStream, leaves_no_file_unless_it_is_finished) {
    const TempDir folder;
    const std::string name = folder.file("a.y4m");
    {
        FrameStream film(name);
        ASSERT_EQ(film.put(picture_of(1, 1, 0, 0, 0)).reason(), "");
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(FrameStream, fails_for_good_once_a_frame_was_lost) {
    const TempDir folder;
    const std::string name = folder.file("full.y4m");
    std::filesystem::create_symlink("/dev/full", name);
    FrameStream film(name);
    const std::string reason = "can't write " + name + ": No space left on device";
    EXPECT_EQ(film.put(picture_of(1, 1, 0, 0, 0)).reason(), reason);
    EXPECT_EQ(film.put(picture_of(1, 1, 0, 0, 0)).reason(), reason);
    EXPECT_EQ(film.finish().reason(), reason);
    EXPECT_EQ(film.frames(), 0);
}

TEST(FrameStream, feeds_a_pipe_frame_by_frame) {
    const TempDir folder;
    const std::string pipe = folder.file("pipe.raw");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::string first(3, 0);
    FrameStream film(pipe);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_EQ(film.put(picture_of(1, 1, 1, 2, 3)).reason(), "");
    EXPECT_EQ(read(reader, first.data(), first.size()), 3);
    EXPECT_EQ(first, "\x01\x02\x03");
    ASSERT_EQ(film.put(picture_of(1, 1, 4, 5, 6)).reason(), "");
    ASSERT_EQ(film.finish().reason(), "");
    EXPECT_EQ(read(reader, first.data(), first.size()), 3);
    EXPECT_EQ(first, "\x04\x05\x06");
    EXPECT_EQ(read(reader, first.data(), first.size()), 0); // its end
    close(reader);
}

TEST(FrameStream, feeds_standard_output) {
    const TempDir folder;
    const std::string name = folder.file("output");
    const int status = status_of([&] {
        const int file = open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        dup2(file, STDOUT_FILENO);
        FrameStream film("-", {PictureFormat::raw});
        const Outcome first = film.put(picture_of(1, 1, 1, 2, 3));
        const Outcome second = film.put(picture_of(1, 1, 4, 5, 6));
        _exit(first && second && film.finish() ? 0 : 1);
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(content_of(name), "\x01\x02\x03\x04\x05\x06");
}

} // namespace

} // namespace orvex_test
