// Render targets, and the scanner that reads them.

#include <functional>

#include "../scenarios.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr int target_size = 32;

RenderTarget* make_target(Stage& stage, int samples) {
    RenderTarget* const target =
        stage.get("create_render_target", [&] { return stage.renderer->create_render_target(); });
    stage.get("create_target", [&] {
        return target->create_target(target_size, target_size, PF_RGBA_U8, false, true, false,
                                     samples);
    });
    return target;
}

void fill(Stage& stage, RenderTarget* target) {
    target->activate();
    stage.renderer->clear_color_depth_buffers(0.25f, 0.5f, 0.75f, 1.0f, 1.0f);
    target->deactivate();
}

void tell_pixels(Stage& stage, RenderTarget* target) {
    std::vector<unsigned char> pixels(std::size_t{4} * target_size * target_size);
    stage.get("read_color_pixmap_rgba_u8",
              [&] { return target->read_color_pixmap_rgba_u8(pixels.data()); });
    stage.tell("pixels", digest_of(pixels.data(), pixels.size()));
}

} // namespace

void play_target(Stage& stage) {
    stage.open_window(Path::gl3);
    RenderTarget* const target = make_target(stage, 0);
    stage.run("a target's frame", [&] { fill(stage, target); });
    tell_pixels(stage, target);
    Texture* const texture = stage.get("create_color_texture_from_render_target", [&] {
        return Kernel::get()->create_color_texture_from_render_target(target, 0);
    });
    stage.tell("width", static_cast<double>(texture->get_width()));
    stage.get("resize", [&] { return target->resize(16, 8); });
    stage.tell("new width", target->get_width());
    stage.close();
}

void play_target_samples(Stage& stage) {
    stage.open_window(Path::gl3);
    RenderTarget* const samples = make_target(stage, 4);
    RenderTarget* const plain = make_target(stage, 0);
    stage.run("a target's frame", [&] { fill(stage, samples); });
    stage.run("fbo_resolve_multisampling", [&] {
        stage.renderer->fbo_resolve_multisampling(samples->get_fbo(), target_size, target_size,
                                                  plain->get_fbo(), target_size, target_size);
    });
    tell_pixels(stage, plain);
    stage.close();
}

void play_target_kinds(Stage& stage) {
    stage.open_window(Path::gl3);
    RenderTarget* const target =
        stage.get("create_render_target", [&] { return stage.renderer->create_render_target(); });
    const int size = target_size;
    const std::function<bool()> kinds[] = {
        [&] { return target->create_target_v2(size, size, PF_RGBA_U8, 2, false, true, true, 0); },
        [&] { return target->create_target_rect(size, size, PF_RGBA_U8, false, true, true, 0); },
        [&] { return target->create_target_depth(size, size, true, false); },
        [&] { return target->create_target_depth_rect(size, size, true, false); },
        [&] {
            return target->create_render_buffer_target(size, size, PF_RGBA_U8, false, 2, false, 0);
        },
    };
    for (const std::function<bool()>& create : kinds) {
        stage.get("create", create);
        stage.tell("it has a frame buffer", target->get_fbo() != 0);
        stage.frame([&] {
            fill(stage, target);
            stage.renderer->clear_color_depth_buffers(0.5f, 0.25f, 0.0f, 1.0f, 1.0f);
        });
    }
    stage.get("kill", [&] { return target->kill(); });
    stage.close();
}

void play_scanner(Stage& stage) {
    stage.open_window(Path::gl3);
    RenderTarget* const target = make_target(stage, 0);
    ArtifactScanner* const scanner = stage.make<ArtifactScanner>();
    scanner->set_render_target(target);
    for (int frame = 0; frame < 3; ++frame) {
        stage.run("a target's frame", [&] { fill(stage, target); });
        stage.get("run", [&] { return scanner->run(stage.renderer, false); });
    }
    stage.tell("artifacts", scanner->get_total_number_of_artifacts());
    stage.end(scanner);
    stage.close();
}

} // namespace orvex_test
