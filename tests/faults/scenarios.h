#pragma once

#include <vector>

#include "stage.h"

/// @file
/// What hosts do, room by room, each short enough to meet a fault at every place.

namespace orvex_test {

/// What may stay unsaid when a fault is met.
enum class Quiet {
    nothing,
    pictures, ///< a picture file that can't be written whole is told as written
    parts,    ///< what finds no memory is left out of what is told as made
};

struct Scenario {
    const char* name;
    void (*play)(Stage& stage);
    Quiet quiet = Quiet::nothing;
    bool with_start = false; ///< faults are tried before the window is open as well
};

/// All of them, by name.
const std::vector<Scenario>& all_scenarios();

/// Where the pictures, models and sheets of the examples lie, with a slash at the end.
std::string example_data(const char* name);
/// A file of this process in the folder for temporary ones.
std::string scratch_file(const char* name);

// scenarios/engine.cpp
void play_context(Stage& stage);
void play_core(Stage& stage);
void play_window(Stage& stage);
void play_renderer_gl2(Stage& stage);
void play_log(Stage& stage);
void play_plugin(Stage& stage);
// scenarios/scenes.cpp
void play_scene(Stage& stage);
void play_nodes(Stage& stage);
// scenarios/models.cpp
void play_obj(Stage& stage);
void play_obj_drawn(Stage& stage);
void play_3ds(Stage& stage);
// scenarios/pictures.cpp
void play_picture_file(Stage& stage);
void play_picture_memory(Stage& stage);
void play_picture_jpeg(Stage& stage);
void play_texture_made(Stage& stage);
void play_texture_cube(Stage& stage);
void play_texture_drawn(Stage& stage);
void play_screenshot(Stage& stage);
// scenarios/geometry.cpp
void play_frame_gl2(Stage& stage);
void play_frame_gl3(Stage& stage);
void play_shapes(Stage& stage);
void play_terrain(Stage& stage);
void play_instances(Stage& stage);
void play_user_geometry(Stage& stage);
void play_lines(Stage& stage);
void play_splines(Stage& stage);
void play_points(Stage& stage);
void play_particles(Stage& stage);
void play_rays(Stage& stage);
// scenarios/programs.cpp
void play_uniforms(Stage& stage);
void play_uniform_block(Stage& stage);
void play_materials(Stage& stage);
// scenarios/targets.cpp
void play_target(Stage& stage);
void play_target_kinds(Stage& stage);
void play_target_samples(Stage& stage);
void play_scanner(Stage& stage);
// scenarios/overlays.cpp
void play_text(Stage& stage);
void play_text_gl2(Stage& stage);
void play_graph(Stage& stage);
void play_meters(Stage& stage);
void play_hud(Stage& stage);
void play_sky(Stage& stage);
void play_axes(Stage& stage);
// scenarios/network.cpp
void play_server(Stage& stage);
void play_server_threads(Stage& stage);
void play_sockets(Stage& stage);

} // namespace orvex_test
