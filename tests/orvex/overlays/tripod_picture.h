#pragma once

/// @file
/// What both tests of the visualizers' pictures look at: frames of 256 by 256 pixels.

#include <gtest/gtest.h>

#include "orvex/overlays/tripod_visualizer.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/scene/camera.h"
#include "overlay_frame.h"

namespace orvex_test {

/// Whether a pixel or its neighbour below or to the left has the colour: a line along the border
/// between two pixels may fall on either.
inline bool shows(const Color& color, int x, int y) {
    return pixel_at(x, y) == color || pixel_at(x - 1, y) == color || pixel_at(x, y - 1) == color;
}

inline void clear_frame() {
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

/// Colours other than black in a rectangle.
inline int coloured_pixels(int x, int y, int width, int height) {
    int count = 0;
    for (int row = y; row < y + height; ++row)
        for (int column = x; column < x + width; ++column)
            count += pixel_at(column, row) != black ? 1 : 0;
    return count;
}

/// Draws the axes of a camera into 100 by 100 pixels around (150, 70), where an axis reaches 40
/// pixels from the middle.
inline void expect_axes_of_a_camera(orvex::Renderer& renderer,
                                    orvex::aux::TripodVisualizerCamera& axes) {
    orvex::Camera* const camera = new orvex::Camera;
    clear_frame();
    axes.render(&renderer, camera, 100, 20, 100, 100);
    EXPECT_TRUE(shows(red, 185, 70));
    EXPECT_FALSE(shows(red, 115, 70));
    EXPECT_TRUE(shows(green, 150, 105));
    EXPECT_FALSE(shows(green, 150, 35));
    EXPECT_FALSE(shows(blue, 185, 70));
    EXPECT_EQ(coloured_pixels(0, 0, 256, 20), 0);
    EXPECT_EQ(coloured_pixels(0, 20, 100, 100), 0);

    // Looking along +X: Z goes to the right, X away.
    camera->set_position(orvex::vec4(-10.0f, 0.0f, 0.0f, 1.0f));
    camera->set_lookat(orvex::vec4(0.0f, 0.0f, 0.0f, 1.0f));
    clear_frame();
    axes.render(&renderer, camera, 100, 20, 100, 100);
    EXPECT_TRUE(shows(blue, 185, 70));
    EXPECT_TRUE(shows(green, 150, 105));
    EXPECT_FALSE(shows(red, 185, 70));
    camera->release(nullptr, nullptr);
}

/// Draws the axes of an object that lies to the right of the middle and is turned by 90 degrees
/// about Z, seen from 10 units away at 10 pixels a unit.
inline void expect_axes_of_an_object(orvex::Renderer& renderer,
                                     orvex::aux::TripodVisualizerObject& axes, bool fixed) {
    orvex::Camera* const camera = new orvex::Camera;
    camera->set_viewport(0, 0, 256, 256);
    camera->build_projection_ortho(-12.8f, 12.8f, -12.8f, 12.8f, 1.0f, 100.0f, true);
    camera->bind(&renderer, true, true, true, true, fixed);
    orvex::Object* const object = new orvex::Object;
    object->set_position(5.0f, 0.0f, 0.0f);
    object->set_orientation_euler_xyz(0.0f, 0.0f, 90.0f);
    object->set_scale(4.0f, 4.0f, 4.0f);
    clear_frame();
    axes.render(&renderer, object);
    EXPECT_TRUE(shows(red, 178, 158)) << "X points up";
    EXPECT_TRUE(shows(green, 148, 128)) << "Y points to the left";
    EXPECT_EQ(coloured_pixels(182, 0, 74, 256), 0);
    EXPECT_EQ(coloured_pixels(0, 0, 134, 256), 0);
    object->release(nullptr, nullptr);
    camera->release(nullptr, nullptr);
}

} // namespace orvex_test
