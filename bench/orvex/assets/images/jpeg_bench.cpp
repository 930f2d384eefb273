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

#include "orvex/assets/images/codecs/jpeg_writer.h"

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

template<typename Write>
void write_picture(benchmark::State& state, Kind kind, Write write) {
    const std::vector<unsigned char> pixels = picture(kind);
    const OutputFile file;
    for (auto _ : state)
        if (!write(file.name(), pixels.data()))
            state.SkipWithError("the file can't be written");
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(pixels.size()));
}

void orvex_writer(benchmark::State& state, Kind kind) {
    write_picture(state, kind, [](const char* name, const unsigned char* pixels) {
        return orvex::jo_write_jpg(name, pixels, picture_width, picture_height, 4, 90);
    });
}
BENCHMARK_CAPTURE(orvex_writer, slopes, Kind::slopes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(orvex_writer, waves, Kind::waves)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(orvex_writer, noise, Kind::noise)->Unit(benchmark::kMillisecond);

#ifdef ORVEX_BENCH_STB_WRITE
void stb_writer(benchmark::State& state, Kind kind) {
    write_picture(state, kind, [](const char* name, const unsigned char* pixels) {
        return stbi_write_jpg(name, picture_width, picture_height, 4, pixels, 91) != 0;
    });
}
BENCHMARK_CAPTURE(stb_writer, slopes, Kind::slopes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(stb_writer, waves, Kind::waves)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(stb_writer, noise, Kind::noise)->Unit(benchmark::kMillisecond);
#endif

} // namespace

BENCHMARK_MAIN();
