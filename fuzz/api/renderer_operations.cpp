// The renderer's contract: all of its rows, but for those that need more than their types tell.

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

#include <orvex/renderer/renderer_operations.h>

#include "fuzz/api/operations.h"

namespace orvex_fuzz {

using namespace orvex;

namespace {

/// What other rows play: ends of what the host holds, sizes of memory, and text on standard output.
constexpr std::string_view elsewhere[] = {"start_v2",
                                          "kill_render_window",
                                          "kill_all_render_windows",
                                          "create_render_window",
                                          "create_render_target",
                                          "kill_render_target",
                                          "kill_all_render_targets",
                                          "get_color_buffer",
                                          "shader_storage_buffer_create",
                                          "atomic_counter_create_buffer",
                                          "texture_2d_update_pixmap",
                                          "gpu_program_load_shader_from_memory",
                                          "gpu_program_update_shader",
                                          "gpu_program_get_shader_compile_status",
                                          "gpu_program_kill"};

/// Whether integers count elements of an array, or groups that are computed.
bool is_counted(std::string_view name) {
    const bool uniform = name.starts_with("gpu_program_set_uniform_");
    return name == "gpu_program_run_compute" ||
           (uniform && (name.ends_with('v') || name.find("v_loc") != name.npos));
}

void create_buffer(World& world, Bytes& in) {
    in.counts_are_small = true;
    const unsigned long size = in.size();
    in.counts_are_small = false;
    void* const content = in.flag() ? world.scratch.data() : nullptr;
    const auto usage = draw<BUFFER_OBJECT_USAGE>(world, in);
    if (in.flag())
        world.renderer->shader_storage_buffer_create(size * 16, usage, content);
    else
        world.renderer->atomic_counter_create_buffer(size, usage, in.below(9), content);
}

void create_large_buffer(World& world, Bytes& in) {
    const unsigned long size = in.size();
    const auto usage = draw<BUFFER_OBJECT_USAGE>(world, in);
    if (in.flag())
        world.renderer->shader_storage_buffer_create(size, usage, nullptr);
    else
        world.renderer->atomic_counter_create_buffer(size, usage, in.below(9), nullptr);
}

void read_color_buffer(World& world, Bytes&) {
    int size = 0;
    int width = 0;
    int height = 0;
    world.renderer->get_color_buffer_size(&size, &width, &height);
    if (size < 0 || size > 4 << 20)
        return;
    std::vector<unsigned char> pixels(static_cast<std::size_t>(size) + 1);
    world.renderer->get_color_buffer(pixels.data());
}

void update_pixmap(World& world, Bytes& in) {
    auto* const texture = draw<TextureData*>(world, in);
    const int y = in.integer();
    const int x = in.integer();
    const int width = static_cast<int>(in.below(30)) - 1;
    const int height = static_cast<int>(in.below(16)) - 1;
    world.renderer->texture_2d_update_pixmap(texture, y, x, width, height,
                                             draw<PIXEL_FORMAT>(world, in), world.scratch.data());
}

void make_target(World& world, Bytes& in) {
    if (world.targets.size() < 4)
        world.targets.push_back(world.renderer->create_render_target());
    RenderTarget* const target = one_of(world.targets, in);
    const int width = static_cast<int>(in.below(64));
    target->create_target(width, 32, draw<PIXEL_FORMAT>(world, in), in.flag(), in.flag(), in.flag(),
                          static_cast<int>(in.below(9)) - 1);
}

void read_target(World& world, Bytes& in) {
    RenderTarget* const target = one_of(world.targets, in);
    if (!target || target->get_width() < 0 || target->get_width() > 4096 ||
        target->get_height() < 0 || target->get_height() > 256)
        return;
    std::vector<unsigned char> pixels(static_cast<std::size_t>(target->get_width()) *
                                          static_cast<std::size_t>(target->get_height()) * 4 +
                                      1);
    if (in.flag())
        target->read_color_pixmap_rgb_u8(pixels.data());
    else
        target->read_color_pixmap_rgba_u8(pixels.data());
}

void read_target_floats(World& world, Bytes& in) {
    RenderTarget* const target = one_of(world.targets, in);
    if (!target || target->get_width() < 0 || target->get_width() > 512 ||
        target->get_height() < 0 || target->get_height() > 256)
        return;
    const unsigned int channels = in.below(6);
    const auto row_length = static_cast<unsigned long>(target->get_width()) + in.below(9);
    std::vector<float> pixels(row_length * static_cast<std::size_t>(target->get_height()) * 4 + 1);
    target->read_color_texture_f32(in.below(9), channels, pixels.data(), row_length);
}

constexpr Operation rows[] = {
    {"Renderer::shader_storage_buffer_create", &create_buffer},
    {"Renderer::shader_storage_buffer_create", &create_large_buffer},
    {"Renderer::get_color_buffer", &read_color_buffer},
    {"Renderer::texture_2d_update_pixmap", &update_pixmap},
    {"RenderTarget::create_target", &make_target},
    {"RenderTarget::create_target", &make_target},
    {"RenderTarget::read_color_pixmap_rgba_u8", &read_target},
    {"RenderTarget::read_color_texture_f32", &read_target_floats},
    {"Renderer::kill_render_target", [](World& world, Bytes& in) { world.kill_target(in); }},
    ORVEX_FUZZ_CALL(RenderTarget, create_render_buffer_target),
    ORVEX_FUZZ_CALL(RenderTarget, create_target_v2),
    ORVEX_FUZZ_CALL(RenderTarget, create_target_rect),
    ORVEX_FUZZ_CALL(RenderTarget, create_target_rect_v2),
    ORVEX_FUZZ_CALL(RenderTarget, create_target_depth),
    ORVEX_FUZZ_CALL(RenderTarget, create_target_depth_rect),
    ORVEX_FUZZ_CALL(RenderTarget, clear_color_buffer),
    ORVEX_FUZZ_CALL(RenderTarget, clear_depth_buffer),
    ORVEX_FUZZ_CALL(RenderTarget, kill),
    ORVEX_FUZZ_CALL(RenderTarget, activate),
    ORVEX_FUZZ_CALL(RenderTarget, activate),
    ORVEX_FUZZ_CALL(RenderTarget, deactivate),
    ORVEX_FUZZ_CALL(RenderTarget, resize),
    ORVEX_FUZZ_CALL(RenderTarget, get_fbo),
    ORVEX_FUZZ_CALL(RenderTarget, get_color_tex_id_opengl),
    ORVEX_FUZZ_CALL(RenderTarget, get_depth_tex_id_opengl),
    ORVEX_FUZZ_CALL(RenderTarget, clear_error_str),
    ORVEX_FUZZ_CALL(RenderTarget, get_error_str),
};

template<auto member>
Operation row_of(const char* name) {
    return {name, is_counted(name) ? &call_counted<member> : &Call<member>::play};
}

std::vector<Operation> all_rows() {
    std::vector<Operation> all(std::begin(rows), std::end(rows));
    const auto add = [&all](const Operation& row) {
        if (std::find(std::begin(elsewhere), std::end(elsewhere), row.name) == std::end(elsewhere))
            all.push_back(row);
    };
    // NOLINTBEGIN(bugprone-macro-parentheses): the parameters are types.
#define ORVEX_FUZZ_OPERATION(Result, name, parameters, arguments)                                  \
    add(row_of<static_cast<Result(Renderer::*) parameters>(&Renderer::name)>(#name));
    ORVEX_RENDERER_OPERATIONS(ORVEX_FUZZ_OPERATION, ORVEX_FUZZ_OPERATION)
#undef ORVEX_FUZZ_OPERATION
    // NOLINTEND(bugprone-macro-parentheses)
    add(ORVEX_FUZZ_CALL(Renderer, set_elided_binds_state));
    return all;
}

} // namespace

std::span<const Operation> renderer_operations() {
    static const std::vector<Operation> all = all_rows();
    return all;
}

} // namespace orvex_fuzz
