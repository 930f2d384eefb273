#pragma once

/// @file
/// What the tests of the skybox's pictures look at on every kind of context.

#include "orvex/overlays/skybox.h"
#include "orvex/scene/camera.h"
#include "overlay_gl_fixture.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"

namespace orvex_test {

/// Loads faces of six plain colours.
inline bool load_colors(OverlayStage& stage, orvex::Skybox& sky) {
    const Color colors[] = {red, green, blue, yellow, magenta, cyan};
    std::string paths[6];
    const char* files[6];
    for (int i = 0; i < 6; ++i) {
        paths[i] = stage.write_plain("face" + std::to_string(i) + ".png", colors[i]);
        files[i] = paths[i].c_str();
    }
    const bool loaded =
        sky.load_all_faces_from_files(stage.renderer.get(), files, orvex::PF_RGB_U8);
    stage.log.clear();
    return loaded;
}

/// Draws the sky as a camera sees it that stands somewhere and looks along a direction.
inline void draw_sky(OverlayStage& stage, orvex::Skybox& sky, const orvex::vec4& direction,
                     float fov = 90.0f) {
    const Owned<orvex::Camera> camera(new orvex::Camera);
    camera->set_viewport(0, 0, 256, 256);
    camera->build_projection_persp(fov, 1.0f, 0.1f, 100.0f, true);
    camera->set_position(orvex::vec4(30.0f, -20.0f, 10.0f, 1.0f));
    camera->set_rotate_around_fixed_yaw_axis(false);
    camera->update_direction(direction);
    const bool fixed = sky.get_use_gl2_vertex_array_state();
    camera->bind(stage.renderer.get(), true, true, true, true, fixed);
    sky.render(stage.renderer.get(), nullptr);
}

struct SkyRow {
    const char* direction;
    orvex::vec4 looking;
    Color middle;
};

/// Seen from inside, x runs the other way than in the scene.
inline const SkyRow sky_rows[] = {
    {"+X", orvex::vec4(1.0f, 0.0f, 0.0f, 0.0f), green},
    {"-X", orvex::vec4(-1.0f, 0.0f, 0.0f, 0.0f), red},
    {"+Y", orvex::vec4(0.0f, 1.0f, 0.0f, 0.0f), blue},
    {"-Y", orvex::vec4(0.0f, -1.0f, 0.0f, 0.0f), yellow},
    {"+Z", orvex::vec4(0.0f, 0.0f, 1.0f, 0.0f), magenta},
    {"-Z", orvex::vec4(0.0f, 0.0f, -1.0f, 0.0f), cyan},
};

inline void expect_each_face_in_its_direction(OverlayStage& stage, orvex::Skybox& sky) {
    for (const SkyRow& row : sky_rows) {
        stage.clear();
        draw_sky(stage, sky, row.looking, 60.0f);
        for (const auto& [x, y] : {std::pair{128, 128}, {2, 2}, {253, 2}, {2, 253}, {253, 253}})
            EXPECT_EQ(stage.pixel(x, y), row.middle) << row.direction << " at " << x << ", " << y;
    }
}

/// With a wider view the faces beside the one in the middle show.
inline void expect_neighbours_around_the_middle(OverlayStage& stage, orvex::Skybox& sky) {
    stage.clear();
    draw_sky(stage, sky, orvex::vec4(0.0f, 0.0f, -1.0f, 0.0f), 130.0f);
    EXPECT_EQ(stage.pixel(128, 128), cyan);
    EXPECT_EQ(stage.pixel(10, 128), red) << "+X to the left";
    EXPECT_EQ(stage.pixel(245, 128), green) << "-X to the right";
    EXPECT_EQ(stage.pixel(128, 245), blue) << "+Y above";
    EXPECT_EQ(stage.pixel(128, 10), yellow) << "-Y below";
}

} // namespace orvex_test
