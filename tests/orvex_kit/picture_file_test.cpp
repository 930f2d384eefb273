#include "orvex_kit/picture_file.h"

#include <cmath>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <limits>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "tests/orvex_kit/child_process.h"
#include "tests/orvex_kit/png_reader.h"
#include "tests/orvex_kit/sample_pictures.h"
#include "tests/support/fake_renderer.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

const char* const all_suffixes[] = {".png", ".jpg", ".jpeg", ".npy", ".raw", ".y4m"};

std::size_t num_files(const TempDir& folder) {
    const auto files = std::filesystem::directory_iterator(folder.path());
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

std::size_t count_of(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

/// Writes to standard output of another process, which is a file.
std::string written_to_standard_output(const Picture& picture, PictureFormat format) {
    const TempDir folder;
    const std::string name = folder.file("output");
    const int status = status_of([&] {
        const int file = open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        dup2(file, STDOUT_FILENO);
        _exit(write_picture(picture, "-", {format}) ? 0 : 1);
    });
    EXPECT_EQ(status, 0);
    return content_of(name);
}

TEST(PictureFormats, have_names_and_suffixes) {
    for (const PictureFormat format : {PictureFormat::png, PictureFormat::jpeg, PictureFormat::npy,
                                       PictureFormat::exr, PictureFormat::raw, PictureFormat::y4m})
        EXPECT_EQ(picture_format_named(name_of(format)), format);
    EXPECT_STREQ(name_of(PictureFormat::jpeg), "jpg");
    EXPECT_STREQ(name_of(PictureFormat::by_suffix), "");
    EXPECT_STREQ(name_of(static_cast<PictureFormat>(99)), "");
    EXPECT_EQ(picture_format_named("png"), PictureFormat::png);
    EXPECT_EQ(picture_format_named("jpg"), PictureFormat::jpeg);
    EXPECT_EQ(picture_format_named("jpeg"), PictureFormat::jpeg);
    EXPECT_EQ(picture_format_named("npy"), PictureFormat::npy);
    EXPECT_EQ(picture_format_named("exr"), PictureFormat::exr);
    EXPECT_EQ(picture_format_named("raw"), PictureFormat::raw);
    EXPECT_EQ(picture_format_named("y4m"), PictureFormat::y4m);
    EXPECT_EQ(picture_format_named(".png"), PictureFormat::by_suffix);
    EXPECT_EQ(picture_format_named(""), PictureFormat::by_suffix);
    EXPECT_EQ(picture_format_of("a.b/X.PNG"), PictureFormat::png);
    EXPECT_EQ(picture_format_of("x.jpeg"), PictureFormat::jpeg);
    EXPECT_EQ(picture_format_of("x.gif"), PictureFormat::by_suffix);
    EXPECT_EQ(picture_format_of("png"), PictureFormat::by_suffix);
    EXPECT_TRUE(can_write_format(PictureFormat::png));
    EXPECT_TRUE(can_write_format(PictureFormat::y4m));
    EXPECT_FALSE(can_write_format(PictureFormat::by_suffix));
}

TEST(PictureFile, needs_a_format) {
    const TempDir folder;
    const Picture picture = make_picture(1, 1, 1, Sample::u8);
    const std::string name = folder.file("x.gif");
    EXPECT_EQ(write_picture(picture, name).reason(),
              "can't write " + name +
                  ": its suffix names no format; there are .png, .jpg, .jpeg, .npy, .exr, .raw, "
                  ".y4m");
    EXPECT_EQ(write_picture(picture, "-").reason(),
              "can't write to standard output: its format has to be named");
    EXPECT_EQ(write_picture(picture, name, {static_cast<PictureFormat>(99)}).reason(),
              "can't write " + name + ": its format is unknown");
    EXPECT_EQ(num_files(folder), 0u);
    EXPECT_EQ(write_picture(picture, name, {PictureFormat::png}).reason(), "");
    EXPECT_EQ(read_png(name), picture);
}

TEST(PictureFile, needs_a_picture) {
    const TempDir folder;
    const std::string name = folder.file("x.png");
    EXPECT_EQ(write_picture(Picture(), name).reason(),
              "can't write " + name + ": the picture is empty");
    EXPECT_EQ(num_files(folder), 0u);
}

TEST(PictureFile, comes_whole_or_not_at_all) {
    const TempDir folder;
    const Picture picture = noise_picture(64, 64, 3, Sample::u8);
    for (const char* const suffix : all_suffixes) {
        const std::string name = folder.write(std::string("old") + suffix, "old");
        const int status = status_of([&] {
            const rlimit limit{1000, 1000};
            setrlimit(RLIMIT_FSIZE, &limit);
            const Outcome outcome = write_picture(picture, name);
            _exit(outcome.reason() == "can't write " + name + ": File too large" ? 0 : 1);
        });
        EXPECT_EQ(status, 0) << suffix;
        EXPECT_EQ(content_of(name), "old") << suffix;
    }
    EXPECT_EQ(num_files(folder), std::size(all_suffixes));
}

TEST(PictureFile, tells_in_the_systems_words_why_it_cant_be_written) {
    const TempDir folder;
    const Picture picture = noise_picture(8, 8, 3, Sample::u8);
    for (const char* const suffix : all_suffixes) {
        const std::string full = folder.file(std::string("full") + suffix);
        std::filesystem::create_symlink("/dev/full", full);
        EXPECT_EQ(write_picture(picture, full).reason(),
                  "can't write " + full + ": No space left on device");
        const std::string nowhere = folder.path() + "/none/x" + suffix;
        EXPECT_EQ(write_picture(picture, nowhere).reason(),
                  "can't write " + nowhere + ": No such file or directory");
        const std::string below = folder.file(std::string("folder") + suffix);
        std::filesystem::create_directory(below);
        EXPECT_EQ(write_picture(picture, below).reason(),
                  "can't write " + below + ": Is a directory");
    }
}

TEST(PictureFile, goes_to_standard_output_as_to_a_file) {
    const TempDir folder;
    const Picture picture = noise_picture(16, 8, 3, Sample::u8);
    for (const char* const name : {"png", "jpg", "npy", "raw", "y4m"}) {
        const std::string path = folder.file(std::string("x.") + name);
        ASSERT_EQ(write_picture(picture, path).reason(), "");
        EXPECT_EQ(written_to_standard_output(picture, picture_format_named(name)), content_of(path))
            << name;
    }
}

TEST(PictureFile, tells_that_nobody_reads_standard_output) {
    const Picture picture = make_picture(1, 1, 1, Sample::u8);
    const int status = status_of([&] {
        std::signal(SIGPIPE, SIG_DFL);
        int ends[2];
        if (pipe(ends) != 0)
            _exit(1);
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        const std::string reason = write_picture(picture, "-", {PictureFormat::raw}).reason();
        _exit(reason == "can't write to standard output: Broken pipe" ? 0 : 2);
    });
    EXPECT_EQ(status, 0);
}

class Png : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Channels, Png, testing::Values(1, 2, 3, 4));

TEST_P(Png, gives_back_every_bit) {
    const TempDir folder;
    const std::string name = folder.file("x.png");
    for (const Sample sample : {Sample::u8, Sample::u16})
        for (const int width : {1, 2, 37}) {
            const Picture picture = noise_picture(width, 5, GetParam(), sample);
            ASSERT_EQ(write_picture(picture, name).reason(), "");
            EXPECT_EQ(read_png(name), picture) << name_of(sample) << " " << width;
        }
}

TEST(Png, is_cut_into_chunks) {
    const TempDir folder;
    const std::string name = folder.file("x.png");
    const Picture picture = noise_picture(700, 1000, 4, Sample::u8);
    ASSERT_EQ(write_picture(picture, name).reason(), "");
    EXPECT_EQ(read_png(name), picture);
    EXPECT_GE(count_of(content_of(name), "IDAT"), 3u);
}

TEST(Png, holds_the_longest_sides) {
    const TempDir folder;
    const std::string name = folder.file("x.png");
    for (const bool is_wide : {false, true}) {
        const Picture picture = noise_picture(is_wide ? Picture::max_side : 1,
                                              is_wide ? 1 : Picture::max_side, 1, Sample::u8);
        ASSERT_EQ(write_picture(picture, name).reason(), "");
        EXPECT_EQ(read_png(name), picture);
    }
}

TEST(Png, takes_no_floats_and_no_ids) {
    const TempDir folder;
    const std::string name = folder.file("x.png");
    EXPECT_EQ(write_picture(make_picture(1, 1, 1, Sample::f32), name).reason(),
              "can't write " + name + ": PNG takes 8-bit and 16-bit pictures, not float");
    EXPECT_EQ(write_picture(make_picture(1, 1, 1, Sample::i32), name).reason(),
              "can't write " + name + ": PNG takes 8-bit and 16-bit pictures, not 32-bit integer");
    EXPECT_EQ(num_files(folder), 0u);
}

struct NpyRow {
    int channels;
    Sample sample;
    const char* header;
};

class Npy : public testing::TestWithParam<NpyRow> {};

INSTANTIATE_TEST_SUITE_P(
    Kinds, Npy,
    testing::Values(
        NpyRow{1, Sample::u8, "{'descr': '|u1', 'fortran_order': False, 'shape': (3, 2), }"},
        NpyRow{2, Sample::u8, "{'descr': '|u1', 'fortran_order': False, 'shape': (3, 2, 2), }"},
        NpyRow{4, Sample::u16, "{'descr': '<u2', 'fortran_order': False, 'shape': (3, 2, 4), }"},
        NpyRow{1, Sample::f32, "{'descr': '<f4', 'fortran_order': False, 'shape': (3, 2), }"},
        NpyRow{3, Sample::f32, "{'descr': '<f4', 'fortran_order': False, 'shape': (3, 2, 3), }"},
        NpyRow{1, Sample::i32, "{'descr': '<i4', 'fortran_order': False, 'shape': (3, 2), }"}));

TEST_P(Npy, has_an_aligned_header_and_the_samples) {
    const TempDir folder;
    const std::string name = folder.file("x.npy");
    const Picture picture = noise_picture(2, 3, GetParam().channels, GetParam().sample);
    ASSERT_EQ(write_picture(picture, name).reason(), "");
    const std::string file = content_of(name);
    ASSERT_GT(file.size(), 10u);
    EXPECT_EQ(file.substr(0, 8), std::string("\x93NUMPY\x01\x00", 8));
    const std::size_t length =
        static_cast<unsigned char>(file[8]) + 256u * static_cast<unsigned char>(file[9]);
    EXPECT_EQ((10 + length) % 64, 0u);
    const std::string header = file.substr(10, length);
    EXPECT_EQ(header.back(), '\n');
    EXPECT_EQ(header.substr(0, header.find_last_not_of(" \n") + 1), GetParam().header);
    ASSERT_EQ(file.size(), 10 + length + picture.size_bytes());
    EXPECT_EQ(std::memcmp(file.data() + 10 + length, picture.data(), picture.size_bytes()), 0);
}

TEST(Npy, keeps_nan_and_the_infinities) {
    const TempDir folder;
    const std::string name = folder.file("x.npy");
    Picture picture = make_picture(2, 1, 1, Sample::f32);
    picture.row<float>(0)[0] = std::numeric_limits<float>::quiet_NaN();
    picture.row<float>(0)[1] = -std::numeric_limits<float>::infinity();
    ASSERT_EQ(write_picture(picture, name).reason(), "");
    const std::string file = content_of(name);
    float samples[2];
    std::memcpy(samples, file.data() + file.size() - sizeof samples, sizeof samples);
    EXPECT_TRUE(std::isnan(samples[0]));
    EXPECT_EQ(samples[1], -std::numeric_limits<float>::infinity());
}

TEST(Raw, is_the_samples_alone) {
    const TempDir folder;
    const std::string name = folder.file("x.raw");
    const Picture picture = noise_picture(5, 3, 3, Sample::u16);
    ASSERT_EQ(write_picture(picture, name).reason(), "");
    const std::string file = content_of(name);
    ASSERT_EQ(file.size(), picture.size_bytes());
    EXPECT_EQ(std::memcmp(file.data(), picture.data(), file.size()), 0);
}

/// Grey, red, green and blue as they are, near enough for JPEG.
void expect_near(const Picture& read, const Picture& written) {
    ASSERT_EQ(read.width(), written.width());
    ASSERT_EQ(read.height(), written.height());
    for (int y = 0; y < read.height(); ++y)
        for (int x = 0; x < read.width(); ++x)
            for (int c = 0; c < 3; ++c) {
                const int from = written.channels() < 3 ? 0 : c;
                EXPECT_NEAR(read.row<std::uint8_t>(y)[x * 3 + c],
                            written.row<std::uint8_t>(y)[x * written.channels() + from], 6);
            }
}

class Jpeg : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Channels, Jpeg, testing::Values(1, 2, 3, 4));

TEST_P(Jpeg, shows_the_colors_whatever_their_alpha) {
    const TempDir folder;
    const std::string name = folder.file("x.jpg");
    Picture picture = make_picture(16, 16, GetParam(), Sample::u8), read;
    for (int y = 0; y < 16; ++y)
        for (int i = 0; i < 16 * GetParam(); ++i)
            picture.row<std::uint8_t>(y)[i] =
                static_cast<std::uint8_t>(40 * (i % GetParam()) + 8 * y);
    ASSERT_EQ(write_picture(picture, name).reason(), "");
    ASSERT_EQ(read_picture(name, read).reason(), "");
    expect_near(read, picture);
}

TEST(Jpeg, is_smaller_at_a_lower_quality_which_is_clamped) {
    const TempDir folder;
    const Picture picture = noise_picture(64, 64, 3, Sample::u8);
    const auto size_at = [&](int quality) {
        const std::string name = folder.file("x.jpg");
        EXPECT_EQ(write_picture(picture, name, {PictureFormat::jpeg, quality}).reason(), "");
        return content_of(name).size();
    };
    EXPECT_LT(size_at(10), size_at(90));
    EXPECT_EQ(size_at(-5), size_at(1));
    EXPECT_EQ(size_at(0), size_at(1));
    EXPECT_EQ(size_at(1000), size_at(100));
}

TEST(Jpeg, takes_8_bits_alone) {
    const TempDir folder;
    const std::string name = folder.file("x.jpg");
    EXPECT_EQ(write_picture(make_picture(1, 1, 3, Sample::u16), name).reason(),
              "can't write " + name + ": JPEG takes 8-bit pictures, not 16-bit");
    EXPECT_EQ(num_files(folder), 0u);
}

TEST(Layers, are_of_openexr_alone) {
    const TempDir folder;
    const Picture picture = make_picture(1, 1, 1, Sample::u8);
    const std::string name = folder.file("x.png");
    EXPECT_EQ(write_layers({{"a", &picture, ""}}, name).reason(),
              "can't write " + name + ": only OpenEXR files have layers");
    EXPECT_FALSE(write_layers({{"a", &picture, ""}}, folder.file("x.gif")));
}

/// Shows two rows: the upper one red, the lower one green.
class TwoRows : public FakeRenderer {
public:
    void get_color_buffer_size(int* size, int* width, int* height) override {
        *size = 16;
        *width = *height = 2;
    }
    void get_color_buffer(unsigned char* pixels) override {
        const unsigned char lower_first[] = {0,   255, 0, 1, 0,   255, 0, 2,
                                             255, 0,   0, 3, 255, 0,   0, 4};
        std::memcpy(pixels, lower_first, sizeof lower_first);
    }
};

TEST(Screenshot, has_the_upper_row_first_and_its_alpha) {
    const TempDir folder;
    const std::string name = folder.file("x.png");
    TwoRows renderer;
    ASSERT_EQ(write_screenshot(&renderer, name).reason(), "");
    const Picture read = read_png(name);
    ASSERT_EQ(read.channels(), 4);
    const unsigned char upper_first[] = {255, 0, 0, 3, 255, 0, 0, 4, 0, 255, 0, 1, 0, 255, 0, 2};
    EXPECT_EQ(std::memcmp(read.data(), upper_first, sizeof upper_first), 0);
}

TEST(Screenshot, isnt_taken_of_nothing) {
    const TempDir folder;
    const std::string name = folder.file("x.png");
    EXPECT_EQ(write_screenshot(nullptr, name).reason(),
              "can't write " + name + ": there is no renderer");
    FakeRenderer renderer;
    EXPECT_EQ(write_screenshot(&renderer, name).reason(),
              "can't write " + name + ": a picture of 0x0 pixels: sides go from 1 to 65535");
    EXPECT_EQ(num_files(folder), 0u);
}

TEST(Reference, is_read_as_three_channels) {
    const TempDir folder;
    const std::string name = folder.file("x.png");
    const Picture picture = noise_picture(9, 7, 4, Sample::u8);
    Picture read, colors;
    ASSERT_EQ(write_picture(picture, name).reason(), "");
    ASSERT_EQ(read_picture(name, read).reason(), "");
    ASSERT_EQ(colors.take_channels(picture, 3).reason(), "");
    EXPECT_EQ(read, colors);
}

TEST(Reference, that_cant_be_read_leaves_the_picture) {
    const TempDir folder;
    Picture picture = make_picture(1, 1, 1, Sample::u8);
    const std::string none = folder.file("none.png");
    EXPECT_EQ(read_picture(none, picture).reason(),
              "can't read " + none + ": No such file or directory");
    EXPECT_EQ(read_picture(folder.path(), picture).reason(),
              "can't read " + folder.path() + ": is a folder");
    const std::string text = folder.write("text.png", "no picture");
    const Outcome outcome = read_picture(text, picture);
    EXPECT_EQ(outcome.reason().find("can't read " + text + ": 11 bytes that are no picture"), 0u)
        << outcome.reason();
    EXPECT_EQ(picture.width(), 1);
}

} // namespace

} // namespace orvex_test
