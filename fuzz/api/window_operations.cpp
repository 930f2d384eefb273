// Render windows, off screen.

#include "fuzz/api/operations.h"

namespace orvex_fuzz {

using namespace orvex;

namespace {

/// A window without a native one: pointers of the window system are none of the engine's.
void initialize(World& world, Bytes& in) {
    RenderWindow* const window = one_of(world.windows, in);
    if (!window)
        return;
    static constexpr const char* samples[] = {"", "Off", "2X MSAA", "4X MSAA", "8X MSAA", nullptr};
    RenderWindow_ExtraData extra;
    extra.gl_major = static_cast<int>(in.byte() % 6);
    extra.gl_minor = static_cast<int>(in.byte() % 7);
    extra.core_profile = in.flag();
    extra.software_renderer = in.flag();
    extra.depth_bits = static_cast<int>(in.byte() % 5) * 8;
    extra.stencil_bits = in.flag() ? 8 : 0;
    extra.color_bits = in.flag() ? 32 : in.integer();
    RenderWindow* const parent = one_of(world.windows, in);
    const int width = static_cast<int>(in.below(64)) - 1;
    const int height = in.byte() < 250 ? 32 : in.integer();
    const char* const msaa = samples[in.byte() % 6];
    RenderWindow_ExtraData* const request = in.flag() ? &extra : nullptr;
    switch (in.byte() % 4) {
    case 0:
        window->osx_create_cgl_context(nullptr, width, height, msaa, parent, request);
        break;
    case 1:
        window->osx_create_cocoa_nsgl_context(nullptr, width, height, msaa, parent, request);
        break;
    default:
        window->initialize(nullptr, nullptr, width, height, msaa, parent, request);
    }
}

constexpr Operation rows[] = {
    {"Renderer::create_render_window", [](World& world, Bytes& in) { world.make_window(in); }},
    {"Renderer::kill_render_window", [](World& world, Bytes& in) { world.kill_window(in); }},
    {"RenderWindow::initialize", &initialize},
    ORVEX_FUZZ_CALL(RenderWindow, terminate),
    ORVEX_FUZZ_CALL(RenderWindow, apply_context),
    ORVEX_FUZZ_CALL(RenderWindow, apply_context),
    ORVEX_FUZZ_CALL(RenderWindow, display_framebuffer),
    ORVEX_FUZZ_CALL(RenderWindow, vsync),
    ORVEX_FUZZ_CALL(RenderWindow, share_ctx),
    ORVEX_FUZZ_CALL(RenderWindow, get_api_3d),
    ORVEX_FUZZ_CALL(RenderWindow, is_opengl_version_supported),
    ORVEX_FUZZ_CALL(RenderWindow, get_opengl_version),
    ORVEX_FUZZ_CALL(RenderWindow, check_opengl_extension),
    ORVEX_FUZZ_CALL(RenderWindow, build_opengl_extensions_list),
    ORVEX_FUZZ_CALL(RenderWindow, destroy_opengl_extensions_list),
    ORVEX_FUZZ_CALL(RenderWindow, get_opengl_extension),
    ORVEX_FUZZ_CALL(RenderWindow, update_size),
    ORVEX_FUZZ_CALL(RenderWindow, osx_kill_context),
    ORVEX_FUZZ_CALL(RenderWindow, osx_init_with_cocoa_nsgl_ctx),
    ORVEX_FUZZ_CALL(RenderWindow, osx_apply_context),
    ORVEX_FUZZ_CALL(RenderWindow, osx_display_framebuffer),
    ORVEX_FUZZ_CALL(RenderWindow, osx_vsync),
    ORVEX_FUZZ_CALL(RenderWindow, osx_update_current_virtual_screen_ctx),
    ORVEX_FUZZ_CALL(RenderWindow, osx_set_current_virtual_screen),
    ORVEX_FUZZ_CALL(RenderWindow, osx_lock_context),
    ORVEX_FUZZ_CALL(RenderWindow, osx_update_context_cocoa),
    ORVEX_FUZZ_CALL(RenderWindow, osx_get_cgl_ctx),
    ORVEX_FUZZ_CALL(RenderWindow, set_framebuffer),
    ORVEX_FUZZ_CALL(RenderWindow, get_framebuffer),
};

} // namespace

std::span<const Operation> window_operations() {
    return rows;
}

} // namespace orvex_fuzz
