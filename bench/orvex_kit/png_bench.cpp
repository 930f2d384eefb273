/// @file
/// Writing rendered pictures of 1920 by 1080 pixels, RGBA, as PNG files, against the simplest code
/// with libpng at its default level. Both write the same picture in turn, each to a file of its
/// own; ours is whole on the disk at its end, the peer's is only closed.
///
/// Goals: at least 3 times as fast, at no more than 1.3 times the size, on every picture.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>
#include <png.h>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

#include "bench/support/row.h"

namespace {

using namespace orvex;

constexpr int width = 1920, height = 1080;

/// What is rendered.
struct View {
    const char* name;
    float zoom;
    float alpha; ///< of the background
    bool is_wire;
};

constexpr View views[] = {{"whole", 1.0f, 1.0f, false},
                          {"transparent", 1.0f, 0.0f, false},
                          {"near", 4.0f, 1.0f, false},
                          {"wire", 1.0f, 1.0f, true}};

/// An off-screen window with a model.
class Stage {
public:
    Stage() {
        core::start("", false, nullptr, nullptr);
        renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
        renderer->initialize();
        RenderWindow_ExtraData request;
        request.gl_major = 3;
        request.gl_minor = 2;
        request.depth_bits = 24;
        RenderWindow* const window = renderer->create_render_window();
        if (!window->initialize(nullptr, nullptr, width, height, "Off", nullptr, &request))
            std::exit(1);
        renderer->start();
        const std::string text = kit::program_text_for(kit::Path::gl3, kit::Look().text());
        program = GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text.c_str(),
                                                                       text.size(), "lit");
        model = kit::Model(ORVEX_BENCH_MODEL);
        model.stand_up();
    }
    ~Stage() {
        model = {};
        camera->release(nullptr, nullptr);
        renderer->kill_all_render_targets();
        GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
        renderer->stop();
        renderer->kill_all_render_windows();
        core::stop("");
    }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    kit::Picture render(const View& view) {
        kit::see_all(model.extent(), {}, {width, height, view.zoom}).apply(*camera, width, height);
        renderer->rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK,
                                              view.is_wire ? POLYGON_MODE_LINE : POLYGON_MODE_FILL);
        renderer->rasterizer_apply_state();
        camera->bind(renderer, true, true, true, true, false);
        renderer->clear_color_depth_buffers(0.2f, 0.2f, 0.25f, view.alpha, 1.0f);
        model.draw(*renderer, *program, kit::Path::gl3);
        kit::Picture picture;
        if (!picture.create(width, height, 4, kit::Sample::u8))
            std::exit(1);
        renderer->get_color_buffer(picture.row_data(0));
        for (int y = 0; y < height / 2; ++y)
            std::swap_ranges(picture.row_data(y), picture.row_data(y) + picture.row_bytes(),
                             picture.row_data(height - 1 - y));
        return picture;
    }

private:
    Renderer* renderer;
    Camera* camera = new Camera;
    GpuProgram* program = nullptr;
    kit::Model model;
};

void write_by_peer(const kit::Picture& picture, const std::string& path) {
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (int y = 0; y < height; ++y)
        png_write_row(png, picture.row_data(y));
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    std::fclose(file);
}

/// Where both write; removed at the end.
struct Outputs {
    std::string ours = folder() + "/orvex_png_bench_ours.png";
    std::string peer = folder() + "/orvex_png_bench_peer.png";

    Outputs() = default;
    Outputs(const Outputs&) = delete;
    Outputs& operator=(const Outputs&) = delete;
    ~Outputs() {
        std::filesystem::remove(ours);
        std::filesystem::remove(peer);
    }

    void write_ours(benchmark::State& state, const kit::Picture& picture) const {
        if (!kit::write_picture(picture, ours))
            state.SkipWithError("the picture can't be written");
    }

    static std::string folder() { return std::filesystem::temp_directory_path().string(); }
};

void write_png(benchmark::State& state, const kit::Picture& picture) {
    const Outputs outputs;
    orvex_bench::take_turns(
        state, {"libpng", 0.33}, [&] { outputs.write_ours(state, picture); },
        [&] { write_by_peer(picture, outputs.peer); });
}

void size_of_png(benchmark::State& state, const kit::Picture& picture) {
    const Outputs outputs;
    for (auto _ : state) {
        outputs.write_ours(state, picture);
        write_by_peer(picture, outputs.peer);
    }
    const auto size = [](const std::string& path) {
        return static_cast<double>(std::filesystem::file_size(path));
    };
    orvex_bench::say_bytes_row(state, {"libpng", 1.3}, size(outputs.ours), size(outputs.peer));
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    Stage stage;
    for (const View& view : views) {
        const kit::Picture picture = stage.render(view);
        benchmark::RegisterBenchmark(
            (std::string("write_png/") + view.name).c_str(),
            [picture](benchmark::State& state) { write_png(state, picture); })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(
            (std::string("size_of_png/") + view.name).c_str(),
            [picture](benchmark::State& state) { size_of_png(state, picture); })
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
