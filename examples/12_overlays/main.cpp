// What is drawn over a scene or around it, in one frame: a lit model with a sky around it; the
// camera's axes in a corner; a graph of the last frame times; level meters, one as a strip and one
// of points; a logo mixed with the picture; text from a sheet of glyphs and, on the path gl2, in
// the platform's raster font: overlays [gl2|gl3] [picture.jpg]

#include <cmath>

#include <orvex_kit/look.h>
#include <orvex_kit/model.h>

#include "panel.h"

using namespace orvex;
using namespace orvex::kit;

namespace {

constexpr int width = 960;
constexpr int height = 540;
const std::string data_folder = EXAMPLE_DATA;

/// Its programs for OpenGL 2 need a driver that takes `inverse` in GLSL 1.20, so that the newer
/// ones are taken wherever they can be.
Skybox* make_sky(Renderer* renderer) {
    int major = 0;
    int minor = 0;
    renderer->get_opengl_version(&major, &minor);
    Skybox* const sky = new Skybox;
    sky->set_opengl_2_3_rendering_states(major < 3, nullptr);
    std::string paths[6];
    const char* files[6];
    const char* const names[] = {"px", "nx", "py", "ny", "pz", "nz"};
    for (int face = 0; face < 6; ++face) {
        paths[face] = data_folder + "sky_" + names[face] + ".png";
        files[face] = paths[face].c_str();
    }
    if (sky->load_all_faces_from_files(renderer, files, PF_RGB_U8)) {
        sky->get_cubemap()->bind(renderer, 0);
        sky->get_cubemap()->set_addressing_mode(renderer, ADDRESSING_CLAMP);
        return sky;
    }
    sky->kill(renderer, nullptr);
    return nullptr;
}

orvex::Camera* make_camera() {
    orvex::Camera* const camera = new orvex::Camera;
    camera->set_viewport(0, 0, width, height);
    camera->build_projection_persp(42.0f, static_cast<float>(width) / height, 0.1f, 200.0f, true);
    camera->set_view_params(vec4(11, 6, 18.5f, 1), vec4(0, 4.3f, 0, 1), vec4(0, 1, 0, 0), true);
    return camera;
}

/// The sky first, behind everything and without a mark in the depth buffer.
void draw_scene(OffScreen& stage, orvex::Camera& camera, Skybox& sky, GpuProgram& lit,
                kit::Model& scene) {
    camera.bind(stage.renderer, true, true, true, true, !stage.gl3);
    stage.renderer->set_depth_buffer_writing_state(false);
    sky.render(stage.renderer, nullptr);
    stage.renderer->set_depth_buffer_writing_state(true);
    sky.get_cubemap_gpu_program()->unbind(stage.renderer);
    scene.draw(*stage.renderer, lit, stage.gl3 ? Path::gl3 : Path::gl2);
}

/// Frames of about 16 milliseconds, with a hitch now and then.
float frame_time(int frame) {
    const float t = static_cast<float>(frame);
    return 16.0f + 2.0f * std::sin(0.35f * t) + std::sin(1.7f * t) +
           (frame % 37 == 20 ? 12.0f : 0.0f);
}

bool draw(OffScreen& stage, Skybox& sky, kit::Model& scene) {
    const std::string shader = model_shader(stage.gl3);
    GpuProgram* const lit = GpuProgramMgr::get()->create_gpu_program_from_memory(
        stage.renderer, shader.c_str(), shader.size(), "lit");
    Panel panel(stage, data_folder);
    if (!panel.ok()) {
        std::fprintf(stderr, "no glyphs at %s\n", data_folder.c_str());
        return false;
    }
    for (int frame = 0; frame < 150; ++frame)
        panel.add_frame_time(frame_time(frame));
    panel.set_levels(0.95f, 0.65f);

    orvex::Camera* const camera = make_camera();
    stage.renderer->clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
    draw_scene(stage, *camera, sky, *lit, scene);
    panel.draw(camera);
    camera->kill(stage.renderer, nullptr);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(wants_gl3(argc, argv), width, height);
    if (!stage.started)
        return 1;
    Skybox* const sky = make_sky(stage.renderer);
    kit::Model scene(data_folder + "lighthouse.obj");
    if (!sky || !scene) {
        std::fprintf(stderr, "the data of the examples is not at %s\n", data_folder.c_str());
        return 1;
    }
    const bool ok = draw(stage, *sky, scene) && stage.write(argc > 2 ? argv[2] : "overlays.jpg");
    scene = {};
    sky->kill(stage.renderer, nullptr);
    return ok ? 0 : 1;
}
