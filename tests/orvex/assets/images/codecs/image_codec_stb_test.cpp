#include "orvex/assets/images/codecs/image_codec_stb.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "encoded_pictures.h"
#include "orvex/assets/images/codecs/jpeg_writer.h"
#include "orvex/renderer/records/image.h"
#include "orvex/renderer/renderer_types.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

Bytes bytes_of(const std::string& path) {
    const std::string content = content_of(path);
    return {content.begin(), content.end()};
}

Bytes jpeg(const RgbPicture& picture, int quality) {
    const TempDir directory;
    const std::string path = directory.file("picture.jpg");
    jo_write_jpg(path.c_str(), picture.rgb.data(), picture.width, picture.height, 3, quality);
    return bytes_of(path);
}

RgbPicture eight_by_three() {
    RgbPicture picture{8, 3, {}};
    for (int i = 0; i < 8 * 3 * 3; ++i)
        picture.rgb.push_back(i * i % 7 < 3 ? 255 : 0);
    return picture;
}

class ImageCodecStbTest : public testing::Test {
protected:
    ~ImageCodecStbTest() override {
        ImageCodecStb::set_memory_limit(memory_limit);
        codec.free_image_resources(&image);
    }

    bool load(Bytes file, bool mirror = false) {
        return codec.load_image_from_memory(&image, file.data(), file.size(), mirror);
    }

    Bytes decoded() const {
        return {image.pixmap_external, image.pixmap_external + image.width * image.height * 3};
    }

    void expect_untouched() const {
        EXPECT_EQ(image.width, 77u);
        EXPECT_EQ(image.height, 88u);
        EXPECT_EQ(image.pixel_format, PF_RGBA_U8);
        EXPECT_EQ(image.pixmap_external, nullptr);
        EXPECT_EQ(image.pixmap_u8, nullptr);
    }

    void mark() {
        image.width = 77;
        image.height = 88;
        image.pixel_format = PF_RGBA_U8;
    }

    const unsigned long memory_limit = ImageCodecStb::get_memory_limit();
    ImageCodecStb codec;
    Image image;
};

TEST_F(ImageCodecStbTest, tells_what_it_is) {
    EXPECT_EQ(codec.get_type(), PLUGIN_TYPE_IMAGE_CODEC);
    EXPECT_STREQ(codec.get_name(), "orvex_plugin_core_stb");
    EXPECT_STREQ(codec.get_description(), "STB image loader. Supported formats: *.JPEG, *.PNG, "
                                          "*.TGA, *.BMP, *.PSD, *.GIF, *.HDR, *.PIC");
    EXPECT_STREQ(codec.get_author(), "orvex");
    EXPECT_EQ(codec.get_version_major(), 0);
    EXPECT_EQ(codec.get_version_minor(), 1);
    EXPECT_EQ(codec.get_version_patch(), 0);
    char date[32] = {}, time[32] = {};
    EXPECT_EQ(std::sscanf(codec.get_build_info(), "BUILD_DATE: [%31[^]]] - BUILD_TIME: [%31[^]]]",
                          date, time),
              2);
    EXPECT_EQ(std::string(codec.get_build_info()),
              "BUILD_DATE: [" + std::string(date) + "] - BUILD_TIME: [" + time + "]");
}

TEST_F(ImageCodecStbTest, decodes_every_format) {
    const RgbPicture four = four_colors(), runs = eight_by_three();
    const struct {
        const char* name;
        Bytes file;
        RgbPicture picture;
    } rows[] = {
        {"PNG", png(four, 3), four},
        {"PNG with alpha", png(four, 4), four},
        {"BMP", bmp(four), four},
        {"TGA", tga(four), four},
        {"PSD", psd(four), four},
        {"PIC", pic(four), four},
        {"GIF", gif(), four},
        {"flat HDR", hdr(four), four},
        {"HDR in runs", hdr(runs), runs},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(load(row.file));
        EXPECT_EQ(image.width, static_cast<unsigned long>(row.picture.width));
        EXPECT_EQ(image.height, static_cast<unsigned long>(row.picture.height));
        EXPECT_EQ(image.pixel_format, PF_RGB_U8);
        EXPECT_EQ(image.pixmap_u8, nullptr);
        EXPECT_EQ(decoded(), row.picture.rgb);
        EXPECT_TRUE(codec.free_image_resources(&image));
    }
}

TEST_F(ImageCodecStbTest, decodes_jpeg) {
    const RgbPicture picture = colored(40, 24);
    ASSERT_TRUE(load(jpeg(picture, 100)));
    EXPECT_EQ(image.width, 40u);
    EXPECT_EQ(image.height, 24u);
    const Bytes copy = decoded();
    for (std::size_t i = 0; i < copy.size(); ++i)
        EXPECT_NEAR(copy[i], picture.rgb[i], 5);
}

TEST_F(ImageCodecStbTest, drops_alpha) {
    ASSERT_TRUE(load(png(colored(10, 6), 4)));
    EXPECT_EQ(image.pixel_format, PF_RGB_U8);
    EXPECT_EQ(decoded(), colored(10, 6).rgb);
}

TEST_F(ImageCodecStbTest, refuses_null) {
    Bytes file = png(four_colors(), 3);
    mark();
    EXPECT_FALSE(codec.load_image_from_memory(nullptr, file.data(), file.size(), false));
    EXPECT_FALSE(codec.load_image_from_memory(&image, nullptr, file.size(), false));
    EXPECT_FALSE(codec.load_image_from_memory(&image, file.data(), 0, false));
    EXPECT_FALSE(codec.load_image_from_file(&image, nullptr, false));
    EXPECT_FALSE(codec.load_image_from_file(nullptr, "/dev/null", false));
    expect_untouched();
}

TEST_F(ImageCodecStbTest, leaves_the_image_alone_when_it_cannot_decode) {
    const Bytes whole = png(colored(30, 20), 3);
    const Bytes files[] = {
        {0},
        Bytes(1000, 'x'),
        Bytes(whole.begin(), whole.begin() + 30),
        Bytes(whole.begin(), whole.end() - 60),
        {0xFF, 0xD8, 0xFF, 0xE0},
        {'P', '6', '\n', '1', ' ', '1', '\n', '2', '5', '5', '\n', 1, 2, 3},
    };
    mark();
    for (const Bytes& file : files)
        for (const bool mirror : {false, true}) {
            EXPECT_FALSE(load(file, mirror));
            expect_untouched();
        }
}

TEST_F(ImageCodecStbTest, refuses_more_bytes_than_the_decoder_can_count) {
    Bytes file = png(four_colors(), 3);
    mark();
    EXPECT_FALSE(codec.load_image_from_memory(&image, file.data(), INT_MAX + 1ul, false));
    EXPECT_FALSE(codec.load_image_from_memory(&image, file.data(), ULONG_MAX, true));
    expect_untouched();
}

TEST_F(ImageCodecStbTest, survives_every_truncation) {
    const Bytes files[] = {png(colored(9, 7), 4), bmp(colored(9, 7)),    tga(colored(9, 7)),
                           psd(colored(9, 7)),    pic(colored(9, 7)),    gif(),
                           hdr(four_colors()),    hdr(eight_by_three()), jpeg(colored(9, 7), 90)};
    for (const Bytes& file : files)
        for (std::size_t size = 1; size < file.size(); ++size) {
            // A block of its own, so that a read past the end is one past the block.
            Bytes cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
            cut.shrink_to_fit();
            load(cut, size % 2 == 0);
            codec.free_image_resources(&image);
            image._delete_u8_ptr();
        }
}

TEST_F(ImageCodecStbTest, mirror_makes_a_low_picture_square_with_black_below) {
    const RgbPicture picture = colored(64, 32);
    ASSERT_TRUE(load(png(picture, 3), true));
    EXPECT_EQ(image.width, 64u);
    EXPECT_EQ(image.height, 64u);
    EXPECT_EQ(image.pixel_format, PF_RGB_U8);
    EXPECT_EQ(image.pixmap_external, nullptr);
    ASSERT_NE(image.pixmap_u8, nullptr);
    for (std::size_t y = 0; y < 64; ++y)
        for (std::size_t x = 0; x < 64; ++x)
            for (std::size_t c = 0; c < 3; ++c)
                ASSERT_EQ(image.pixmap_u8[(y * 64 + x) * 3 + c],
                          y < 32 ? picture.rgb[(y * 64 + 63 - x) * 3 + c] : 0);
}

TEST_F(ImageCodecStbTest, mirror_cuts_a_high_picture_to_a_square) {
    const RgbPicture picture = colored(20, 50);
    ASSERT_TRUE(load(png(picture, 3), true));
    EXPECT_EQ(image.width, 20u);
    EXPECT_EQ(image.height, 20u);
    for (std::size_t y = 0; y < 20; ++y)
        for (std::size_t x = 0; x < 20; ++x)
            for (std::size_t c = 0; c < 3; ++c)
                ASSERT_EQ(image.pixmap_u8[(y * 20 + x) * 3 + c],
                          picture.rgb[(y * 20 + 19 - x) * 3 + c]);
}

TEST_F(ImageCodecStbTest, gives_its_pixels_back_once) {
    ASSERT_TRUE(load(png(four_colors(), 3)));
    EXPECT_TRUE(codec.free_image_resources(&image));
    EXPECT_EQ(image.pixmap_external, nullptr);
    EXPECT_EQ(image.width, 2u);
    EXPECT_FALSE(codec.free_image_resources(&image));
    EXPECT_FALSE(codec.free_image_resources(nullptr));
}

TEST_F(ImageCodecStbTest, keeps_off_pixels_of_others) {
    unsigned char foreign[12] = {};
    image.pixmap_external = foreign;
    EXPECT_FALSE(codec.free_image_resources(&image));
    EXPECT_EQ(image.pixmap_external, foreign);
    image.pixmap_external = nullptr;

    ASSERT_TRUE(image.create(2, 2, 1, PF_RGB_U8, true));
    EXPECT_FALSE(codec.free_image_resources(&image));
    EXPECT_NE(image.pixmap_u8, nullptr);
}

TEST_F(ImageCodecStbTest, pixels_that_two_images_share_are_freed_once) {
    ASSERT_TRUE(load(png(four_colors(), 3)));
    Image other = image;
    ASSERT_EQ(other.pixmap_external, image.pixmap_external);
    EXPECT_TRUE(codec.free_image_resources(&image));
    EXPECT_FALSE(codec.free_image_resources(&other));
}

TEST_F(ImageCodecStbTest, pixels_outlive_their_codec) {
    auto first = std::make_unique<ImageCodecStb>();
    Bytes file = png(four_colors(), 3);
    ASSERT_TRUE(first->load_image_from_memory(&image, file.data(), file.size(), false));
    first.reset();
    EXPECT_EQ(decoded(), four_colors().rgb);
    EXPECT_TRUE(ImageCodecStb::free_decoded_pixels(&image));
    EXPECT_EQ(image.pixmap_external, nullptr);
}

TEST_F(ImageCodecStbTest, drops_owned_pixels_that_are_too_few_for_the_new_size) {
    ASSERT_TRUE(image.create(2, 2, 1, PF_RGB_U8, true));
    ASSERT_TRUE(load(png(colored(30, 20), 3)));
    EXPECT_EQ(image.pixmap_u8, nullptr);
    EXPECT_EQ(image.get_u8_ptr(), image.pixmap_external);
}

TEST_F(ImageCodecStbTest, keeps_owned_pixels_that_are_enough) {
    ASSERT_TRUE(image.create(40, 40, 1, PF_RGB_U8, true));
    unsigned char* const own = image.pixmap_u8;
    ASSERT_TRUE(load(png(colored(30, 20), 3)));
    EXPECT_EQ(image.pixmap_u8, own);
    EXPECT_EQ(image.get_u8_ptr(), own);
}

// ----------------------------------------------------------------------------------- files

/// Takes down what the file form hands on.
class ListeningCodec : public ImageCodecStb {
public:
    bool load_image_from_memory(Image*, unsigned char* bytes, unsigned long size,
                                bool mirror) override {
        heard.assign(bytes, bytes + size);
        heard_mirror = mirror;
        return answer;
    }

    Bytes heard;
    bool heard_mirror = false;
    bool answer = true;
};

TEST_F(ImageCodecStbTest, hands_on_a_file_with_a_zero_behind_it) {
    const TempDir directory;
    const std::string path = directory.write("some", "abc");
    ListeningCodec listening;
    EXPECT_TRUE(listening.load_image_from_file(&image, path.c_str(), true));
    EXPECT_EQ(listening.heard, (Bytes{'a', 'b', 'c', 0}));
    EXPECT_TRUE(listening.heard_mirror);
    listening.answer = false;
    EXPECT_FALSE(listening.load_image_from_file(&image, path.c_str(), false));
    EXPECT_FALSE(listening.heard_mirror);
    const std::string empty = directory.write("empty", "");
    listening.load_image_from_file(&image, empty.c_str(), false);
    EXPECT_EQ(listening.heard, Bytes{0});
}

TEST_F(ImageCodecStbTest, decodes_a_file) {
    const TempDir directory;
    const Bytes file = png(four_colors(), 3);
    const std::string path = directory.write("four.png", {file.begin(), file.end()});
    ASSERT_TRUE(codec.load_image_from_file(&image, path.c_str(), false));
    EXPECT_EQ(decoded(), four_colors().rgb);
}

TEST_F(ImageCodecStbTest, refuses_what_is_no_file) {
    const TempDir directory;
    mark();
    EXPECT_FALSE(codec.load_image_from_file(&image, directory.file("missing").c_str(), false));
    EXPECT_FALSE(codec.load_image_from_file(&image, directory.path().c_str(), false));
    EXPECT_FALSE(codec.load_image_from_file(&image, directory.write("empty", "").c_str(), false));
    EXPECT_FALSE(codec.load_image_from_file(&image, "/dev/zero", false));
    EXPECT_FALSE(codec.load_image_from_file(&image, "", false));
    const std::string pipe = directory.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(codec.load_image_from_file(&image, pipe.c_str(), false));
    expect_untouched();
}

TEST_F(ImageCodecStbTest, refuses_a_file_of_two_gibibytes) {
    const TempDir directory;
    const std::string path = directory.write("huge", "x");
    std::filesystem::resize_file(path, INT_MAX); // a hole: it takes no space
    ListeningCodec listening;
    EXPECT_FALSE(listening.load_image_from_file(&image, path.c_str(), false));
    EXPECT_TRUE(listening.heard.empty());
}

// ---------------------------------------------------------------------------------- memory

TEST_F(ImageCodecStbTest, holds_two_gibibytes_at_most_unless_the_host_says_otherwise) {
    EXPECT_EQ(ImageCodecStb::get_memory_limit(), 2ul << 30);
    ImageCodecStb::set_memory_limit(12345);
    EXPECT_EQ(ImageCodecStb::get_memory_limit(), 12345u);
}

TEST_F(ImageCodecStbTest, fails_where_the_hosts_limit_is_passed) {
    const RgbPicture picture = colored(100, 100);
    const Bytes files[] = {png(picture, 3), bmp(picture), tga(picture),
                           psd(picture),    pic(picture), jpeg(picture, 90)};
    mark();
    ImageCodecStb::set_memory_limit(20000); // the pixels alone are 30,000 bytes
    for (const Bytes& file : files)
        EXPECT_FALSE(load(file));
    expect_untouched();
    ImageCodecStb::set_memory_limit(300000);
    for (const Bytes& file : files) {
        EXPECT_TRUE(load(file));
        codec.free_image_resources(&image);
    }
}

TEST_F(ImageCodecStbTest, counts_the_square_that_a_mirrored_picture_becomes) {
    const Bytes wide = png(colored(2000, 2), 3); // 12 MB as a square
    mark();
    ImageCodecStb::set_memory_limit(4000000);
    EXPECT_FALSE(load(wide, true));
    expect_untouched();
    EXPECT_TRUE(load(wide, false));
}

TEST_F(ImageCodecStbTest, fails_where_a_picture_takes_more_than_it_announces) {
    // Four by four pixels, and 64 MB of rows behind them in a few kilobytes.
    const Bytes bomb = png_of(4, 4, 3, Bytes(64 << 20));
    ASSERT_LT(bomb.size(), 100000u);
    mark();
    EXPECT_FALSE(load(bomb));
    expect_untouched();
    EXPECT_TRUE(load(png_of(4, 4, 3, Bytes(4 * 13 + 1000))));
}

TEST_F(ImageCodecStbTest, a_failed_decode_leaves_the_next_its_full_budget) {
    const Bytes good = png(colored(100, 100), 3);
    const Bytes bad(good.begin(), good.end() - 40);
    ImageCodecStb::set_memory_limit(300000);
    for (int i = 0; i < 100; ++i)
        EXPECT_FALSE(load(bad));
    EXPECT_TRUE(load(good));
}

TEST_F(ImageCodecStbTest, refuses_an_hdr_picture_that_is_not_all_there) {
    const Bytes flat = hdr(four_colors()), runs = hdr(eight_by_three());
    EXPECT_FALSE(load(Bytes(flat.begin(), flat.end() - 1)));
    EXPECT_FALSE(load(Bytes(runs.begin(), runs.end() - 1)));
    const std::string start = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 4 +X 16\n";
    const std::string rest[] = {
        "",                                // no line at all
        std::string("\2\2\0\20", 4),       // no runs
        std::string("\2\2\0\20\0", 5),     // an empty run at the end
        std::string("\2\2\0\20\x91\1", 6), // a run past the line
        std::string("\2\2\0\20\21", 5) + std::string(100, 'x'),
        std::string("\2\2\0\20\x90", 5), // a run without its value
        "flat but short",
    };
    for (const std::string& pixels : rest) {
        const std::string file = start + pixels;
        EXPECT_FALSE(load(Bytes(file.begin(), file.end())));
    }
}

TEST_F(ImageCodecStbTest, reads_an_hdr_picture_that_is_flat_in_spite_of_its_width) {
    std::string file = "#?RGBE\nFORMAT=32-bit_rle_rgbe\nSOFTWARE=any\n\n-Y 2 +X 10\n";
    for (int i = 0; i < 20; ++i)
        file += i % 3 ? "\x80\x80\x80\x81" : std::string("\x80\0\0\x81", 4);
    ASSERT_TRUE(load(Bytes(file.begin(), file.end())));
    EXPECT_EQ(image.width, 10u);
    EXPECT_EQ(image.pixmap_external[1], 0);
    EXPECT_EQ(image.pixmap_external[4], 255);
}

TEST_F(ImageCodecStbTest, refuses_a_jpeg_of_a_thousand_scans) {
    const Bytes one = jpeg(colored(9, 7), 90);
    const auto scan = one.begin() + 593;
    const auto with_scans = [&](int scans) {
        Bytes file(one.begin(), scan);
        for (int i = 0; i < scans; ++i)
            file.insert(file.end(), scan, one.end() - 2);
        file.insert(file.end(), {0xFF, 0xD9});
        return file;
    };
    EXPECT_TRUE(load(with_scans(1)));
    codec.free_image_resources(&image);
    EXPECT_FALSE(load(with_scans(1001)));
}

TEST_F(ImageCodecStbTest, refuses_a_jpeg_table_of_more_codes_than_symbols) {
    Bytes file = jpeg(colored(9, 7), 90);
    const std::size_t counts = 178; // of the first table
    for (std::size_t i = 0; i < 16; ++i)
        file[counts + i] = 255;
    EXPECT_FALSE(load(file));
    // The same as the file ends.
    for (std::size_t size = counts + 2; size < counts + 16; ++size)
        EXPECT_FALSE(load(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size))));
}

TEST_F(ImageCodecStbTest, reads_a_jpeg_whose_comment_looks_like_a_table) {
    Bytes file = jpeg(colored(9, 7), 90);
    Bytes comment(40, 255);
    comment[0] = 0xFF, comment[1] = 0xFE, comment[2] = 0, comment[3] = 38;
    comment[10] = 0xFF, comment[11] = 0xC4, comment[12] = 1, comment[13] = 0;
    file.insert(file.begin() + 20, comment.begin(), comment.end());
    EXPECT_TRUE(load(file));
}

TEST_F(ImageCodecStbTest, refuses_a_damaged_pic_file) {
    Bytes file = pic(four_colors());
    file[105] = 9; // bits per channel
    EXPECT_FALSE(load(file));
    EXPECT_FALSE(load(Bytes(file.begin(), file.begin() + 104)));
}

TEST_F(ImageCodecStbTest, fills_what_a_truncated_picture_lacks_with_black) {
    const Bytes whole = bmp(colored(20, 20));
    ASSERT_TRUE(load(Bytes(whole.begin(), whole.end() - 600)));
    // Rows come from the bottom up: the last ten of the file are the first ten of the picture.
    EXPECT_EQ(Bytes(image.pixmap_external, image.pixmap_external + 600), Bytes(600, 0));
}

TEST_F(ImageCodecStbTest, decodes_on_several_threads_at_once) {
    const RgbPicture picture = colored(60, 40);
    const Bytes file = png(picture, 4);
    std::vector<std::thread> threads;
    int right[4] = {};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            ImageCodecStb own;
            for (int i = 0; i < 25; ++i) {
                Image decoded_image;
                Bytes copy = file;
                own.load_image_from_memory(&decoded_image, copy.data(), copy.size(), false);
                right[t] += decoded_image.pixmap_external &&
                            std::memcmp(decoded_image.pixmap_external, picture.rgb.data(),
                                        picture.rgb.size()) == 0;
                own.free_image_resources(&decoded_image);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const int count : right)
        EXPECT_EQ(count, 25);
}

// --------------------------------------------------------------------------------- writing

class ImageCodecStbSaveTest : public ImageCodecStbTest {
protected:
    /// What the codec writes, or nothing if it refuses.
    Bytes saved() {
        const std::string path = directory.file("saved.jpg");
        return codec.save_image_to_file(&image, path.c_str()) ? bytes_of(path) : Bytes();
    }

    Bytes written(const Bytes& pixels, int width, int height, int comp) {
        const std::string path = directory.file("written.jpg");
        EXPECT_TRUE(jo_write_jpg(path.c_str(), pixels.data(), width, height, comp, 90));
        return bytes_of(path);
    }

    TempDir directory;
};

TEST_F(ImageCodecStbSaveTest, writes_bytes_in_memory_order) {
    for (const PIXEL_FORMAT format : {PF_RGB_U8, PF_BGR_U8, PF_RGBA_U8, PF_BGRA_U8}) {
        SCOPED_TRACE(format);
        ASSERT_TRUE(image.create(19, 11, 1, format, true));
        const int comp = image.get_pixel_format_size();
        Bytes pixels(static_cast<std::size_t>(19 * 11 * comp));
        for (std::size_t i = 0; i < pixels.size(); ++i)
            image.pixmap_u8[i] = pixels[i] = static_cast<unsigned char>(i * 7);
        EXPECT_EQ(saved(), written(pixels, 19, 11, comp));
    }
}

TEST_F(ImageCodecStbSaveTest, writes_the_decoders_pixels_if_the_image_has_none) {
    const RgbPicture picture = colored(30, 20);
    ASSERT_TRUE(load(png(picture, 3)));
    EXPECT_EQ(saved(), written(picture.rgb, 30, 20, 3));
}

TEST_F(ImageCodecStbSaveTest, writes_the_owned_pixels_before_the_decoders) {
    ASSERT_TRUE(image.create(30, 20, 1, PF_RGB_U8, true));
    ASSERT_TRUE(load(png(colored(30, 20), 3)));
    EXPECT_EQ(saved(), written(Bytes(30 * 20 * 3), 30, 20, 3));
}

TEST_F(ImageCodecStbSaveTest, writes_floats_truncated_and_unclamped) {
    const float floats[] = {0.0f, 0.5f, 1.0f, 2.0f, -0.5f, 0.999f, 1e30f, 0.25f};
    for (const PIXEL_FORMAT format : {PF_RGB_F32, PF_RGBA_F32}) {
        SCOPED_TRACE(format);
        ASSERT_TRUE(image.create(9, 5, 1, format, true));
        const std::size_t channels = format == PF_RGB_F32 ? 3 : 4;
        Bytes pixels;
        for (std::size_t i = 0; i < 45 * channels; ++i) {
            const float value = image.pixmap_f32[i] = floats[i % 8];
            const double scaled = static_cast<double>(value) * 255.0;
            const bool has_integer = scaled < 9e18;
            pixels.push_back(
                static_cast<unsigned char>(has_integer ? static_cast<long long>(scaled) & 255 : 0));
            if (channels == 3 && i % 3 == 2)
                pixels.push_back(255);
        }
        EXPECT_EQ(saved(), written(pixels, 9, 5, 4));
    }
}

TEST_F(ImageCodecStbSaveTest, writes_jpeg_under_any_name) {
    ASSERT_TRUE(image.create(8, 8, 1, PF_RGB_U8, true));
    const std::string path = directory.file("picture.png");
    EXPECT_TRUE(codec.save_image_to_file(&image, path.c_str()));
    const Bytes file = bytes_of(path);
    EXPECT_EQ(Bytes(file.begin(), file.begin() + 4), (Bytes{0xFF, 0xD8, 0xFF, 0xE0}));
}

TEST_F(ImageCodecStbSaveTest, refuses_other_formats) {
    ASSERT_TRUE(image.create(8, 8, 1, PF_R_F32, true));
    for (const int format : {0, 7, 8, 9, 10, -1}) {
        image.pixel_format = static_cast<PIXEL_FORMAT>(format);
        EXPECT_TRUE(saved().empty()) << format;
    }
    EXPECT_FALSE(std::filesystem::exists(directory.file("saved.jpg")));
}

TEST_F(ImageCodecStbSaveTest, refuses_null_and_missing_pixels) {
    EXPECT_FALSE(codec.save_image_to_file(nullptr, directory.file("a.jpg").c_str()));
    ASSERT_TRUE(image.create(8, 8, 1, PF_RGB_U8, true));
    EXPECT_FALSE(codec.save_image_to_file(&image, nullptr));
    EXPECT_FALSE(codec.save_image_to_file(&image, directory.path().c_str()));
    image._delete_u8_ptr();
    for (const PIXEL_FORMAT format :
         {PF_RGB_U8, PF_BGR_U8, PF_RGBA_U8, PF_BGRA_U8, PF_RGB_F32, PF_RGBA_F32}) {
        image.pixel_format = format;
        EXPECT_TRUE(saved().empty()) << format;
    }
}

TEST_F(ImageCodecStbSaveTest, refuses_a_size_without_its_pixels) {
    for (const PIXEL_FORMAT format : {PF_RGB_U8, PF_RGBA_U8, PF_RGB_F32, PF_RGBA_F32}) {
        ASSERT_TRUE(image.create(8, 8, 1, format, true));
        image.width = 9;
        EXPECT_TRUE(saved().empty()) << format;
        image.width = ULONG_MAX;
        EXPECT_TRUE(saved().empty()) << format;
        image.width = 0;
        EXPECT_TRUE(saved().empty()) << format;
    }
}

TEST_F(ImageCodecStbTest, keeps_why_a_call_failed_until_the_next_and_for_its_own_thread) {
    EXPECT_STREQ(codec.get_failure_reason(), "");
    EXPECT_FALSE(codec.load_image_from_file(&image, "/nonexistent.png", false));
    EXPECT_STREQ(codec.get_failure_reason(),
                 "no regular file below 2 GiB that can be read, or no memory for it");
    std::thread([this] { EXPECT_STREQ(codec.get_failure_reason(), ""); }).join();

    EXPECT_FALSE(load({'j', 'u', 'n', 'k'}));
    EXPECT_EQ(std::string(codec.get_failure_reason()).find("4 bytes that are no picture"), 0u)
        << codec.get_failure_reason();
    const ImageCodecStb other;
    EXPECT_STREQ(other.get_failure_reason(), "");

    EXPECT_TRUE(load(jpeg(eight_by_three(), 90)));
    EXPECT_STREQ(codec.get_failure_reason(), "");
    EXPECT_FALSE(codec.save_image_to_file(&image, "/nonexistent/a.jpg"));
    EXPECT_STREQ(codec.get_failure_reason(), "/nonexistent/a.jpg can't be written");
}

} // namespace
} // namespace orvex_test
