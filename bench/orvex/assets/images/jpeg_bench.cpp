// Writing a full HD picture as JPEG at quality 90. The peer subsamples up to its quality 90, so it
// writes the same kind of file, without subsampling, from 91 on. Both write into the page cache.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "bench/support/row.h"
#include "orvex/assets/images/codecs/jpeg_writer.h"

#ifdef ORVEX_BENCH_LIBJPEG
#include <jpeglib.h>
#endif

#ifdef ORVEX_BENCH_STB_WRITE
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wold-style-cast"
#include <stb_image_write.h>
#pragma GCC diagnostic pop
#endif

namespace {

using orvex_bench::Against;
using orvex_bench::take_turns;

constexpr int picture_width = 1920, picture_height = 1080;

/// Slopes compress best, noise worst; a render lies between them.
enum class Kind { slopes, waves, noise };

unsigned char byte_of(double value) {
    return static_cast<unsigned char>(value < 0.0 ? 0.0 : value > 255.0 ? 255.0 : value);
}

std::vector<unsigned char> picture(Kind kind) {
    std::mt19937 random(1);
    std::vector<unsigned char> pixels;
    pixels.reserve(picture_width * picture_height * 4ul);
    for (int y = 0; y < picture_height; ++y)
        for (int x = 0; x < picture_width; ++x) {
            unsigned char r, g, b;
            if (kind == Kind::slopes) {
                r = byte_of(x * 255 / picture_width), g = byte_of(y * 255 / picture_height),
                b = byte_of((x + y) / 12);
            } else if (kind == Kind::waves) {
                const double v = 127.0 + 60.0 * std::sin(x * 0.05) * std::cos(y * 0.03) +
                                 30.0 * std::sin(x * y * 0.0001) + random() % 16;
                r = byte_of(v), g = byte_of(v * 0.8), b = byte_of(255.0 - v);
            } else {
                r = byte_of(random() % 256), g = byte_of(random() % 256),
                b = byte_of(random() % 256);
            }
            pixels.insert(pixels.end(), {r, g, b, 255});
        }
    return pixels;
}

/// A file for the time of a benchmark.
class OutputFile {
public:
    OutputFile() { ::close(::mkstemp(path.data())); }
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile() { std::remove(path.c_str()); }
    const char* name() const { return path.c_str(); }

private:
    std::string path = "/tmp/orvex_bench_XXXXXX";
};

using Pixels = std::vector<unsigned char>;

bool write_ours(const OutputFile& file, const Pixels& pixels, int comp) {
    return orvex::jo_write_jpg(file.name(), pixels.data(), picture_width, picture_height, comp, 90);
}

/// @param write_by_peer  gets the file and the pixels
template<class WriteByPeer>
void write_picture(benchmark::State& state, const Against& against, const Pixels& pixels, int comp,
                   WriteByPeer write_by_peer) {
    const OutputFile ours, of_peer;
    const auto check = [&state](bool is_written) {
        if (!is_written)
            state.SkipWithError("the file can't be written");
    };
    take_turns(
        state, against, [&] { check(write_ours(ours, pixels, comp)); },
        [&] { check(write_by_peer(of_peer, pixels)); });
}

Pixels without_alpha(const Pixels& pixels) {
    Pixels rgb;
    for (std::size_t i = 0; i < pixels.size(); ++i)
        if (i % 4 != 3)
            rgb.push_back(pixels[i]);
    return rgb;
}

/// Three bytes a pixel against four of the same picture.
void rgb_input(benchmark::State& state) {
    const Pixels pixels = picture(Kind::waves);
    write_picture(
        state, {"ours, RGBA", 1.1}, without_alpha(pixels), 3,
        [&](const OutputFile& file, const Pixels&) { return write_ours(file, pixels, 4); });
}
BENCHMARK(rgb_input)->UseManualTime()->Unit(benchmark::kMillisecond);

#ifdef ORVEX_BENCH_STB_WRITE
void beside_stb(benchmark::State& state, Kind kind) {
    write_picture(state, {"stb_image_write", 0.4}, picture(kind), 4,
                  [](const OutputFile& file, const Pixels& pixels) {
                      return stbi_write_jpg(file.name(), picture_width, picture_height, 4,
                                            pixels.data(), 91) != 0;
                  });
}
BENCHMARK_CAPTURE(beside_stb, slopes, Kind::slopes)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(beside_stb, waves, Kind::waves)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(beside_stb, noise, Kind::noise)->UseManualTime()->Unit(benchmark::kMillisecond);
#endif

#ifdef ORVEX_BENCH_LIBJPEG
/// Without subsampling, as ours.
bool write_by_libjpeg(const OutputFile& output, const Pixels& pixels) {
    std::FILE* const file = std::fopen(output.name(), "wb");
    jpeg_compress_struct codec{};
    jpeg_error_mgr errors{};
    codec.err = jpeg_std_error(&errors);
    jpeg_create_compress(&codec);
    jpeg_stdio_dest(&codec, file);
    codec.image_width = picture_width;
    codec.image_height = picture_height;
    codec.input_components = 4;
    codec.in_color_space = JCS_EXT_RGBX;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, 90, TRUE);
    codec.comp_info[0].h_samp_factor = codec.comp_info[0].v_samp_factor = 1;
    jpeg_start_compress(&codec, TRUE);
    while (codec.next_scanline < codec.image_height) {
        const std::size_t place = std::size_t{4} * codec.next_scanline * picture_width;
        JSAMPROW row = const_cast<JSAMPROW>(pixels.data() + place);
        jpeg_write_scanlines(&codec, &row, 1);
    }
    jpeg_finish_compress(&codec);
    jpeg_destroy_compress(&codec);
    return std::fclose(file) == 0;
}

void beside_libjpeg_turbo(benchmark::State& state, Kind kind) {
    write_picture(state, {"libjpeg-turbo", 1.1}, picture(kind), 4, write_by_libjpeg);
}
BENCHMARK_CAPTURE(beside_libjpeg_turbo, slopes, Kind::slopes)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(beside_libjpeg_turbo, waves, Kind::waves)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(beside_libjpeg_turbo, noise, Kind::noise)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
#endif

} // namespace

BENCHMARK_MAIN();
