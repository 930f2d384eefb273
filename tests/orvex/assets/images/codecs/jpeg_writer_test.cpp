#include "orvex/assets/images/codecs/jpeg_writer.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <jpeglib.h>

#include "jpeg_reference.h"
#include "orvex/assets/images/codecs/private/jpeg_tables.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

using Bytes = std::vector<unsigned char>;

struct Pixels {
    int width, height, comp;
    Bytes bytes;
};

/// A picture of integer arithmetic alone, with slopes, edges and fine detail.
Pixels patterned(int width, int height, int comp) {
    Pixels picture{width, height, comp, {}};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int c = 0; c < comp; ++c) {
                const int slope = (x * (3 + c) + y * (5 - c)) / 2;
                const int edge = ((x / 11 + y / 7) & 1) * 60;
                const int detail = (x * x * 7 + y * 13 + c * 29) % 23;
                picture.bytes.push_back(static_cast<unsigned char>((slope + edge + detail) & 255));
            }
    return picture;
}

/// Slopes that never wrap, as photographs have them.
Pixels smooth(int width, int height) {
    Pixels picture{width, height, 3, {}};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            picture.bytes.push_back(static_cast<unsigned char>(x * 255 / width));
            picture.bytes.push_back(static_cast<unsigned char>(y * 255 / height));
            picture.bytes.push_back(static_cast<unsigned char>((x + y) * 255 / (width + height)));
        }
    return picture;
}

Bytes file_bytes(const std::string& path) {
    const std::string content = content_of(path);
    return {content.begin(), content.end()};
}

Bytes written(const Pixels& picture, int quality) {
    const TempDir directory;
    const std::string path = directory.file("picture.jpg");
    EXPECT_TRUE(jo_write_jpg(path.c_str(), picture.bytes.data(), picture.width, picture.height,
                             picture.comp, quality));
    return file_bytes(path);
}

Bytes plainly_written(const Pixels& picture, int quality) {
    return PlainJpeg::write(picture.bytes.data(), picture.width, picture.height, picture.comp,
                            quality);
}

[[noreturn]] void throw_message(j_common_ptr info) {
    char message[JMSG_LENGTH_MAX];
    info->err->format_message(info, message);
    throw std::runtime_error(message);
}

/// The independent decoder: three channels, or an exception. Warnings count as errors.
Pixels decoded(const Bytes& file) {
    jpeg_decompress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    errors.error_exit = throw_message;
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, file.data(), file.size());
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_RGB;
    info.dct_method = JDCT_FLOAT;
    jpeg_start_decompress(&info);
    Pixels picture{
        static_cast<int>(info.output_width), static_cast<int>(info.output_height), 3, {}};
    picture.bytes.resize(info.output_width * info.output_height * 3ul);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = picture.bytes.data() + info.output_scanline * info.output_width * 3ul;
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
    EXPECT_EQ(errors.num_warnings, 0);
    jpeg_destroy_decompress(&info);
    return picture;
}

/// The independent writer, with the same tables, no subsampling and a transform in floats.
Bytes written_by_others(const Pixels& picture, int quality) {
    jpeg_compress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    errors.error_exit = throw_message;
    jpeg_create_compress(&info);
    unsigned char* memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &memory, &size);
    info.image_width = static_cast<JDIMENSION>(picture.width);
    info.image_height = static_cast<JDIMENSION>(picture.height);
    info.input_components = picture.comp;
    info.in_color_space = picture.comp == 1   ? JCS_GRAYSCALE
                          : picture.comp == 3 ? JCS_RGB
                                              : JCS_EXT_RGBX;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    info.dct_method = JDCT_FLOAT;
    info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = 1;
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height) {
        const auto stride = static_cast<std::size_t>(picture.width * picture.comp);
        auto* row = const_cast<JSAMPROW>(picture.bytes.data() + info.next_scanline * stride);
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    const Bytes file(memory, memory + size);
    std::free(memory);
    return file;
}

/// Peak signal to noise ratio of the colours, in decibels.
double likeness(const Pixels& original, const Pixels& copy) {
    double squares = 0.0;
    const std::size_t pixels = copy.bytes.size() / 3;
    for (std::size_t i = 0; i < pixels; ++i)
        for (std::size_t c = 0; c < 3; ++c) {
            const std::size_t from = original.comp == 1 ? 0 : c;
            const double difference =
                original.bytes[i * static_cast<std::size_t>(original.comp) + from] -
                copy.bytes[i * 3 + c];
            squares += difference * difference;
        }
    return 10.0 * std::log10(255.0 * 255.0 * static_cast<double>(pixels * 3) / squares);
}

std::uint64_t fnv1a(const Bytes& bytes) {
    std::uint64_t hash = 14695981039346656037ull;
    for (const unsigned char byte : bytes)
        hash = (hash ^ byte) * 1099511628211ull;
    return hash;
}

TEST(JpegWriter, gives_the_bytes_of_the_plain_algorithm) {
    std::mt19937 random(7);
    const int comps[] = {1, 3, 4};
    for (int i = 0; i < 600; ++i) {
        Pixels picture{1 + static_cast<int>(random() % 40),
                       1 + static_cast<int>(random() % 40),
                       comps[random() % 3],
                       {}};
        const int quality = static_cast<int>(random() % 106) - 3;
        SCOPED_TRACE(testing::Message() << picture.width << " by " << picture.height << ", comp "
                                        << picture.comp << ", quality " << quality);
        picture.bytes.resize(static_cast<std::size_t>(picture.width * picture.height) *
                             static_cast<std::size_t>(picture.comp));
        const unsigned kind = random() % 4;
        for (unsigned char& byte : picture.bytes) {
            const unsigned noise = random();
            byte = static_cast<unsigned char>(kind == 0   ? noise & 255
                                              : kind == 1 ? (noise & 1) * 255
                                              : kind == 2 ? 100 + noise % 8
                                                          : 200);
        }
        ASSERT_EQ(written(picture, quality), plainly_written(picture, quality));
    }
}

TEST(JpegWriter, gives_the_bytes_of_the_plain_algorithm_for_larger_pictures) {
    for (const int comp : {1, 3, 4})
        for (const int quality : {1, 25, 49, 50, 75, 90, 100}) {
            SCOPED_TRACE(testing::Message() << "comp " << comp << ", quality " << quality);
            const Pixels picture = patterned(211, 133, comp);
            ASSERT_EQ(written(picture, quality), plainly_written(picture, quality));
        }
}

TEST(JpegWriter, gives_the_bytes_of_the_plain_algorithm_for_noise_that_fills_its_buffers) {
    std::mt19937 random(3);
    Pixels picture{163, 101, 3, Bytes(163 * 101 * 3)};
    for (unsigned char& byte : picture.bytes)
        byte = static_cast<unsigned char>(random() % 2 * 255);
    for (const int quality : {90, 100}) {
        const Bytes bytes = written(picture, quality);
        EXPECT_GT(bytes.size(), 40000u);
        ASSERT_EQ(bytes, plainly_written(picture, quality));
    }
}

TEST(JpegWriter, gives_the_bytes_recorded_once_they_had_been_decoded) {
    const struct {
        int width, height, comp, quality;
        std::uint64_t hash;
    } rows[] = {
        {64, 48, 3, 90, 4159774994200393885ull},
        {64, 48, 4, 90, 4159774994200393885ull}, // the fourth byte is skipped
        {64, 48, 1, 90, 17364703181522496619ull},
        {37, 29, 3, 30, 8863445734368006270ull},
        {37, 29, 3, 100, 10198133580322880108ull},
        {200, 150, 4, 75, 13710716888166877749ull},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.width << " by " << row.height << ", comp "
                                        << row.comp << ", quality " << row.quality);
        const Pixels picture = patterned(row.width, row.height, row.comp);
        EXPECT_EQ(fnv1a(written(picture, row.quality)), row.hash);
    }
}

TEST(JpegWriter, is_decoded_by_others_as_close_to_the_original_as_their_own) {
    // Both writers round the same coefficients by the same tables; a tenth of a decibel is
    // left to their different arithmetic.
    for (const int comp : {3, 4, 1})
        for (const int quality : {10, 50, 75, 90, 100}) {
            SCOPED_TRACE(testing::Message() << "comp " << comp << ", quality " << quality);
            const Pixels picture = patterned(123, 77, comp);
            const Pixels copy = decoded(written(picture, quality));
            EXPECT_EQ(copy.width, 123);
            EXPECT_EQ(copy.height, 77);
            const double others = likeness(picture, decoded(written_by_others(picture, quality)));
            EXPECT_GT(likeness(picture, copy), others - 0.1);
        }
}

TEST(JpegWriter, keeps_slopes_at_fifty_decibels) {
    // Flat slopes lose little but the rounding of colours.
    const Pixels picture = smooth(320, 240);
    EXPECT_GT(likeness(picture, decoded(written(picture, 90))), 50.0);
    const Pixels edges = patterned(123, 77, 3);
    EXPECT_GT(likeness(edges, decoded(written(edges, 100))), 50.0);
}

TEST(JpegWriter, a_grey_picture_decodes_to_grey) {
    const Pixels copy = decoded(written(patterned(40, 30, 1), 90));
    for (std::size_t i = 0; i < copy.bytes.size(); i += 3) {
        EXPECT_EQ(copy.bytes[i], copy.bytes[i + 1]);
        EXPECT_EQ(copy.bytes[i], copy.bytes[i + 2]);
    }
}

TEST(JpegWriter, skips_the_fourth_byte) {
    Pixels four = patterned(30, 20, 4), three{30, 20, 3, {}};
    for (std::size_t i = 0; i < four.bytes.size(); ++i)
        if (i % 4 != 3)
            three.bytes.push_back(four.bytes[i]);
    EXPECT_EQ(written(four, 90), written(three, 90));
}

TEST(JpegWriter, codes_ten_by_ten_as_four_blocks_whose_last_row_and_column_repeat) {
    const Pixels ten = patterned(10, 10, 3);
    Pixels sixteen{16, 16, 3, {}};
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            for (int c = 0; c < 3; ++c)
                sixteen.bytes.push_back(ten.bytes[static_cast<std::size_t>(
                    (std::min(y, 9) * 10 + std::min(x, 9)) * 3 + c)]);
    Bytes small = written(ten, 90);
    const Bytes large = written(sixteen, 90);
    // Height and width, behind 25 + 64 + 1 + 64 bytes of tables and 5 of the frame.
    ASSERT_GT(small.size(), 163u);
    EXPECT_EQ(small[160], 10);
    EXPECT_EQ(small[162], 10);
    small[160] = small[162] = 16;
    EXPECT_EQ(small, large);
}

TEST(JpegWriter, quality0_is90_and_the_rest_is_clamped) {
    const Pixels picture = patterned(40, 30, 3);
    EXPECT_EQ(written(picture, 0), written(picture, 90));
    EXPECT_EQ(written(picture, 150), written(picture, 100));
    EXPECT_EQ(written(picture, -5), written(picture, 1));
    EXPECT_NE(written(picture, 89), written(picture, 90));
}

TEST(JpegWriter, starts_with_its_headers_and_ends_with_its_marker) {
    const Bytes file = written(patterned(300, 20, 3), 50);
    const Bytes start = {0xFF, 0xD8, 0xFF, 0xE0, 0, 0x10, 0x4A, 0x46, 0x49, 0x46, 0,    1, 1,
                         0,    0,    1,    0,    1, 0,    0,    0xFF, 0xDB, 0,    0x84, 0};
    ASSERT_GT(file.size(), 623u);
    EXPECT_EQ(Bytes(file.begin(), file.begin() + 25), start);
    EXPECT_EQ(file[25], 16); // quality 50 leaves the tables as they are
    EXPECT_EQ(file[89], 1);
    EXPECT_EQ(Bytes(file.begin() + 154, file.begin() + 173),
              (Bytes{0xFF, 0xC0, 0, 0x11, 8, 0, 20, 1, 44, 3, 1, 0x11, 0, 2, 0x11, 1, 3, 0x11, 1}));
    EXPECT_EQ(Bytes(file.begin() + 173, file.begin() + 178), (Bytes{0xFF, 0xC4, 0x01, 0xA2, 0}));
    EXPECT_EQ(Bytes(file.begin() + 593, file.begin() + 607),
              (Bytes{0xFF, 0xDA, 0, 0x0C, 3, 1, 0, 2, 0x11, 3, 0x11, 0, 0x3F, 0}));
    EXPECT_EQ(Bytes(file.end() - 2, file.end()), (Bytes{0xFF, 0xD9}));
}

TEST(JpegWriter, refuses_what_is_no_picture) {
    const TempDir directory;
    const std::string path = directory.file("picture.jpg");
    const Pixels picture = patterned(8, 8, 4);
    const void* data = picture.bytes.data();
    EXPECT_FALSE(jo_write_jpg(nullptr, data, 8, 8, 3, 90));
    EXPECT_FALSE(jo_write_jpg(path.c_str(), nullptr, 8, 8, 3, 90));
    EXPECT_FALSE(jo_write_jpg(path.c_str(), data, 0, 8, 3, 90));
    EXPECT_FALSE(jo_write_jpg(path.c_str(), data, 8, 0, 3, 90));
    for (const int comp : {-1, 0, 2, 5})
        EXPECT_FALSE(jo_write_jpg(path.c_str(), data, 8, 8, comp, 90)) << comp;
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(JpegWriter, refuses_sides_that_the_format_has_no_room_for) {
    const std::vector<unsigned char> pixels(65536);
    const void* data = pixels.data();
    const TempDir directory;
    const std::string path = directory.file("picture.jpg");
    for (const int side : {-65535, -8, -1, 0, 65536}) {
        EXPECT_FALSE(jo_write_jpg(path.c_str(), data, side, 1, 1, 90)) << side;
        EXPECT_FALSE(jo_write_jpg(path.c_str(), data, 1, side, 1, 90)) << side;
        EXPECT_FALSE(std::filesystem::exists(path));
    }
    EXPECT_TRUE(jo_write_jpg(path.c_str(), data, 65535, 1, 1, 90));
    EXPECT_TRUE(jo_write_jpg(path.c_str(), data, 1, 65535, 1, 90));
}

TEST(JpegWriter, refuses_a_file_it_cannot_open) {
    const TempDir directory;
    const Pixels picture = patterned(8, 8, 3);
    const void* data = picture.bytes.data();
    EXPECT_FALSE(jo_write_jpg(directory.path().c_str(), data, 8, 8, 3, 90));
    EXPECT_FALSE(jo_write_jpg(directory.file("none/picture.jpg").c_str(), data, 8, 8, 3, 90));
    EXPECT_FALSE(jo_write_jpg("", data, 8, 8, 3, 90));
}

TEST(JpegWriter, does_not_notice_a_full_disk) {
    const Pixels picture = patterned(8, 8, 3);
    EXPECT_TRUE(jo_write_jpg("/dev/full", picture.bytes.data(), 8, 8, 3, 90));
}

TEST(JpegWriter, replaces_a_longer_file) {
    const TempDir directory;
    const std::string path = directory.write("picture.jpg", std::string(100000, 'x'));
    const Pixels picture = patterned(8, 8, 3);
    EXPECT_TRUE(jo_write_jpg(path.c_str(), picture.bytes.data(), 8, 8, 3, 90));
    EXPECT_EQ(file_bytes(path), plainly_written(picture, 90));
}

TEST(JpegWriter, writes_on_several_threads_at_once) {
    const Pixels picture = patterned(150, 90, 3);
    Bytes files[4];
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&, i] { files[i] = written(picture, 20 + i * 20); });
    for (std::thread& thread : threads)
        thread.join();
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(files[i], plainly_written(picture, 20 + i * 20));
}

TEST(JpegTables, zig_zag_numbers_each_place_once_along_the_diagonals) {
    int place = 0;
    for (int diagonal = 0; diagonal < 15; ++diagonal)
        for (int i = 0; i <= diagonal; ++i) {
            const int row = diagonal % 2 ? i : diagonal - i;
            const int col = diagonal - row;
            if (row < 8 && col < 8)
                EXPECT_EQ(jpeg::s_jo_ZigZag[row * 8 + col], place++);
        }
    EXPECT_EQ(place, 64);
}

template<int N>
void expect_table(const jpeg::HuffmanSpec<N>& spec, const JHUFF_TBL* standard) {
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(spec.counts[i], standard->bits[i + 1]);
    for (int i = 0; i < N; ++i)
        EXPECT_EQ(spec.symbols[i], standard->huffval[i]);
}

TEST(JpegTables, are_those_of_the_standard) {
    jpeg_compress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    info.in_color_space = JCS_RGB;
    info.input_components = 3;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 50, TRUE);
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(jpeg::luminance_quantization[i], info.quant_tbl_ptrs[0]->quantval[i]);
        EXPECT_EQ(jpeg::chrominance_quantization[i], info.quant_tbl_ptrs[1]->quantval[i]);
    }
    expect_table(jpeg::dc_luminance, info.dc_huff_tbl_ptrs[0]);
    expect_table(jpeg::ac_luminance, info.ac_huff_tbl_ptrs[0]);
    expect_table(jpeg::dc_chrominance, info.dc_huff_tbl_ptrs[1]);
    expect_table(jpeg::ac_chrominance, info.ac_huff_tbl_ptrs[1]);
    jpeg_destroy_compress(&info);
}

TEST(JpegTables, codes_are_numbered_by_the_standards_rule) {
    // The first and the last codes of Tables K.3 and K.5, and those every block may need.
    EXPECT_EQ(jpeg::luminance_dc_codes[0].code, 0b00);
    EXPECT_EQ(jpeg::luminance_dc_codes[0].length, 2);
    EXPECT_EQ(jpeg::luminance_dc_codes[11].code, 0b111111110);
    EXPECT_EQ(jpeg::luminance_dc_codes[11].length, 9);
    EXPECT_EQ(jpeg::chrominance_dc_codes[11].code, 0b11111111110);
    EXPECT_EQ(jpeg::chrominance_dc_codes[11].length, 11);
    EXPECT_EQ(jpeg::luminance_ac_codes[jpeg::end_of_block].code, 0b1010);
    EXPECT_EQ(jpeg::luminance_ac_codes[jpeg::end_of_block].length, 4);
    EXPECT_EQ(jpeg::luminance_ac_codes[jpeg::sixteen_zeroes].code, 0b11111111001);
    EXPECT_EQ(jpeg::luminance_ac_codes[jpeg::sixteen_zeroes].length, 11);
    EXPECT_EQ(jpeg::luminance_ac_codes[0xFA].code, 0xFFFE);
    EXPECT_EQ(jpeg::chrominance_ac_codes[jpeg::end_of_block].code, 0b00);
    EXPECT_EQ(jpeg::chrominance_ac_codes[jpeg::sixteen_zeroes].code, 0b1111111010);
    EXPECT_EQ(jpeg::chrominance_ac_codes[jpeg::sixteen_zeroes].length, 10);
    EXPECT_EQ(jpeg::chrominance_ac_codes[0xFA].code, 0xFFFE);
}

} // namespace
} // namespace orvex_test
