#include "scenarios.h"

#include <unistd.h>

namespace orvex_test {

const std::vector<Scenario>& all_scenarios() {
    static const std::vector<Scenario> scenarios = {
        {"axes", play_axes},
        {"context", play_context, Quiet::nothing, true},
        {"core", play_core},
        {"frame_gl2", play_frame_gl2},
        {"frame_gl3", play_frame_gl3},
        {"graph", play_graph},
        {"hud", play_hud},
        {"instances", play_instances},
        {"lines", play_lines},
        {"log", play_log, Quiet::pictures},
        {"materials", play_materials},
        {"meters", play_meters, Quiet::parts},
#ifdef ORVEX_WITH_LIB3DS
        {"model_3ds", play_3ds, Quiet::parts},
#endif
        {"model_obj", play_obj},
        {"model_obj_drawn", play_obj_drawn},
        {"nodes", play_nodes},
        {"particles", play_particles},
        {"picture_file", play_picture_file},
        {"picture_jpeg", play_picture_jpeg, Quiet::pictures},
        {"picture_memory", play_picture_memory},
        {"plugin", play_plugin},
        {"points", play_points},
        {"rays", play_rays},
        {"renderer_gl2", play_renderer_gl2, Quiet::nothing, true},
        {"scanner", play_scanner},
        {"scene", play_scene},
        {"screenshot", play_screenshot, Quiet::pictures},
        {"server", play_server},
        {"server_threads", play_server_threads},
        {"shapes", play_shapes},
        {"sky", play_sky},
        {"sockets", play_sockets},
        {"splines", play_splines},
        {"target", play_target},
        {"target_kinds", play_target_kinds},
        {"target_samples", play_target_samples},
        {"terrain", play_terrain},
        {"text", play_text},
        {"text_gl2", play_text_gl2},
        {"texture_cube", play_texture_cube},
        {"texture_drawn", play_texture_drawn},
        {"texture_made", play_texture_made},
        {"uniform_block", play_uniform_block},
        {"uniforms", play_uniforms},
        {"user_geometry", play_user_geometry},
        {"window", play_window, Quiet::nothing, true},
    };
    return scenarios;
}

std::string example_data(const char* name) {
    return std::string(ORVEX_EXAMPLE_DATA "/") + name;
}

std::string scratch_file(const char* name) {
    return "/tmp/orvex_fault_" + std::to_string(getpid()) + "_" + name;
}

} // namespace orvex_test
