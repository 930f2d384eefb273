// The comparison of two frames, against the plainest comparison of the same memory. What artifacts
// cost that are there is told beside it.

#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/row.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/diagnostics/artifact_scanner.h"
#include "tests/orvex/assets/textures/fake_render_target.h"

namespace {

using namespace orvex;

constexpr int frame_width = 1920;
constexpr int frame_height = 1080;
constexpr unsigned long num_bytes = 1920ul * 1080 * 4;

std::vector<unsigned char> make_frame() {
    std::vector<unsigned char> frame(num_bytes);
    for (unsigned long i = 0; i < num_bytes; ++i)
        frame[i] = static_cast<unsigned char>(i * 7);
    return frame;
}

/// Holds that frame.
class FrameTarget : public orvex_test::FakeRenderTarget {
public:
    FrameTarget()
        : FakeRenderTarget(frame_width, frame_height) {}
    bool read_color_pixmap_rgba_u8(unsigned char* pixels) override {
        const std::vector<unsigned char> frame = make_frame();
        std::memcpy(pixels, frame.data(), frame.size());
        return true;
    }
};

/// A scanner that holds the frame as its reference, and a texture of the same pixels, those spoiled
/// that are a multiple of `step`; none for 0.
class Frames {
public:
    explicit Frames(unsigned long step) {
        scanner->set_render_target(&target);
        scanner->run(nullptr, false);
        texture.create_2d(frame_width, frame_height, PF_RGBA_U8);
        texture.update_pixmap_rgba_u8(make_frame().data());
        unsigned char* const pixels = texture.get_pixmap_u8_ptr();
        for (unsigned long pixel = 0; step != 0 && pixel < num_bytes / 4; pixel += step)
            pixels[pixel * 4] = static_cast<unsigned char>(pixels[pixel * 4] ^ 1);
    }
    ~Frames() { scanner->kill(nullptr, nullptr); }
    Frames(const Frames&) = delete;
    Frames& operator=(const Frames&) = delete;

    FrameTarget target;
    ArtifactScanner* scanner = new ArtifactScanner;
    Texture texture;
};

/// Two frames that are alike.
void find_none(benchmark::State& state) {
    Frames frames(0);
    const std::vector<unsigned char> copy = make_frame();
    orvex_bench::take_turns(
        state, {"memcmp", 1.3},
        [&] { benchmark::DoNotOptimize(frames.scanner->find_artifacts(&frames.texture, false)); },
        [&] {
            benchmark::DoNotOptimize(
                std::memcmp(frames.texture.get_pixmap_u8_ptr(), copy.data(), num_bytes));
        });
}
BENCHMARK(find_none)->UseManualTime()->Unit(benchmark::kMicrosecond);

/// The argument is the step of the spoiled pixels.
void find_artifacts(benchmark::State& state) {
    Frames frames(static_cast<unsigned long>(state.range(0)));
    int found = 0;
    for (auto _ : state)
        found = frames.scanner->find_artifacts(&frames.texture, false);
    state.counters["found"] = found;
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * num_bytes));
}
BENCHMARK(find_artifacts)->Arg(1000000)->Arg(5000)->Arg(1)->Unit(benchmark::kMicrosecond);

void find_artifacts_in_every_second_pixel(benchmark::State& state) {
    Frames frames(static_cast<unsigned long>(state.range(0)));
    int found = 0;
    for (auto _ : state)
        found = frames.scanner->find_artifacts(&frames.texture, true);
    state.counters["found"] = found;
}
BENCHMARK(find_artifacts_in_every_second_pixel)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void is_there_artifact(benchmark::State& state) {
    Frames frames(0);
    for (auto _ : state)
        benchmark::DoNotOptimize(frames.scanner->is_there_artifact(&frames.texture, false));
}
BENCHMARK(is_there_artifact)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
