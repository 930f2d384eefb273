// The engine's start and stop, its plugins, its log, and models from files.

#include <cstdio>
#include <cstdlib>
#include <new>

#include "fuzz/api/operations.h"

namespace orvex_fuzz {

using namespace orvex;

namespace {

void log(World&, Bytes& in) {
    const char* const text = in.text();
    core::log_enable(in.flag());
    core::log_trace(text);
    core::log_trace_warning(text);
    core::log_trace_error(text);
    core::log_trace_debug(text);
    core::log_enable(false);
}

void load_model(World& world, Bytes& in) {
    const char* const file = in.text();
    const char* const folder = in.text();
    switch (in.byte() % 3) {
    case 0:
        world.hold(aux::load_model_from_file(file, folder, in.text()));
        break;
    case 1:
        world.hold(aux::load_model_from_file_obj(file, folder, in.text()));
        break;
    default:
        world.hold(aux::load_model_from_file_lib3ds(file, folder, in.text()));
    }
    static_cast<void>(aux::get_load_failure_reason());
}

constexpr Operation rows[] = {
    {"core::stop and start", [](World& world, Bytes&) { world.restart(); }},
    {"core::log_trace", &log},
    {"aux::load_model_from_file", &load_model},
    ORVEX_FUZZ_CALL(Kernel, start),
    ORVEX_FUZZ_CALL(Kernel, is_stopping),
    ORVEX_FUZZ_CALL(Kernel, get_codename),
    ORVEX_FUZZ_CALL(Kernel, get_osx_version),
    ORVEX_FUZZ_CALL(Kernel, load_core_plugins),
    ORVEX_FUZZ_CALL(Kernel, load_core_image_codec_plugins),
    ORVEX_FUZZ_CALL(Kernel, load_core_loader3d_plugins),
    ORVEX_FUZZ_CALL(Kernel, get_plugin),
    ORVEX_FUZZ_CALL(Kernel, load_plugin),
    ORVEX_FUZZ_CALL(Kernel, plugin_search_path_add_dir),
    ORVEX_FUZZ_CALL(Kernel, plugin_search_path_remove_dir),
    ORVEX_FUZZ_CALL(Kernel, plugin_search_path_clear),
    ORVEX_FUZZ_CALL(Kernel, initialize_all_plugins),
    ORVEX_FUZZ_CALL(TextureMgr, register_all_image_codec_plugins),
    ORVEX_FUZZ_CALL(TextureMgr, unregister_all_image_codec_plugins),
};

/// All rows, room by room.
Operation draw_operation(Bytes& in) {
    static constexpr std::span<const Operation> (*rooms[])() = {
        &scene_operations,    &object_operations,  &geometry_operations, &line_operations,
        &resource_operations, &program_operations, &renderer_operations, &window_operations,
        &overlay_operations,  &record_operations,  &kernel_operations,
    };
    // Few bytes for the kernel, whose start and stop take longest.
    const unsigned int room = in.byte();
    const std::span<const Operation> rows_of_room =
        room > 250 ? kernel_operations() : rooms[room % 10]();
    return rows_of_room[in.below(static_cast<unsigned int>(rows_of_room.size()))];
}

} // namespace

std::span<const Operation> kernel_operations() {
    return rows;
}

void play(Bytes& in, const Stage& stage) {
    constexpr int most_operations = 300;
    static const bool told = std::getenv("ORVEX_FUZZ_TRACE");
    World world(stage);
    for (int i = 0; i < most_operations && !in.empty(); ++i) {
        const Operation operation = draw_operation(in);
        if (told)
            std::fprintf(stderr, "%s\n", operation.name);
        try {
            operation.play(world, in);
        } catch (const std::bad_alloc&) {
            // What a host is told to expect; the state is as before.
        }
        in.counts_are_small = false;
    }
}

} // namespace orvex_fuzz
