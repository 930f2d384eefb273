#include "viewer.h"

#include <filesystem>
#include <utility>

#include <orvex/orvex.h>
#include <orvex_kit/model.h>

using namespace orvex;
using namespace orvex::kit;

Viewer::~Viewer() {
    label.reset();
    model_axes.cleanup(stage.renderer);
    corner_axes.cleanup(stage.renderer);
    if (frame)
        frame->release(nullptr, nullptr);
}

std::string Viewer::open(void* context, const std::string& model) {
    // The engine uses what is current; it only keeps the handle.
    if (!stage.window->osx_init_with_cocoa_nsgl_ctx(context))
        return "no context to adopt";
    if (std::string mistake = stage.load(model); !mistake.empty())
        return mistake;
    label = std::make_unique<Label>(stage.renderer, VIEWER_FONT);
    if (!label->is_ready())
        return std::string(VIEWER_FONT) + ": can't be read as a font";
    if (!model_axes.init(stage.renderer) || !corner_axes.init(stage.renderer))
        return "no axes in this context";
    keyboard.init();
    title = std::filesystem::path(model).filename().string() + ", " +
            std::to_string(stage.scene.num_faces()) + " triangles";
    orbit.frame(stage.scene.extent(), first_angle);
    // The model's axes lie where its own origin is.
    frame = new Object;
    const float length = orbit.place().distance / 5;
    frame->set_scale(length, length, length);
    return {};
}

/// Whether a key went down since it was last asked for.
bool Viewer::is_hit(KeyCode key) {
    const bool down = keyboard.is_key_down(key);
    const bool before = std::exchange(was_down[key], down);
    return down && !before;
}

/// A key that is hit and let go within one frame counts too: events are looked at one by one.
void Viewer::set_key(int code, bool down) {
    keyboard.set_virtual_key_state(code, down ? 1 : 0);
    lines ^= is_hit(KEY_W);
    axes ^= is_hit(KEY_A);
    text ^= is_hit(KEY_T);
    ended |= is_hit(KEY_ESCAPE);
    if (is_hit(KEY_HOME))
        orbit.reset();
}

void Viewer::drag(float right, float down) {
    orbit.turn(double(right), double(down));
}

void Viewer::turn_wheel(float notches) {
    orbit.zoom(double(notches));
}

OrbitKeys Viewer::held_keys() {
    OrbitKeys keys;
    keys.left = keyboard.is_key_down(KEY_LEFT);
    keys.right = keyboard.is_key_down(KEY_RIGHT);
    keys.up = keyboard.is_key_down(KEY_UP);
    keys.down = keyboard.is_key_down(KEY_DOWN);
    keys.nearer = keyboard.is_key_down(KEY_PAGE_UP);
    keys.farther = keyboard.is_key_down(KEY_PAGE_DOWN);
    return keys;
}

bool Viewer::advance(float seconds) {
    return orbit.move(held_keys(), double(seconds));
}

void Viewer::draw_axes() {
    orvex::Camera& camera = stage.last_camera();
    model_axes.render(stage.renderer, frame);
    corner_axes.render(stage.renderer, &camera, camera.get_viewport().width - 100, 0, 100, 100);
}

void Viewer::draw(int width, int height) {
    if (width < 1 || height < 1)
        return;
    stage.window->update_size(width, height);
    stage.renderer->rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK,
                                                lines ? POLYGON_MODE_LINE : POLYGON_MODE_FILL);
    stage.renderer->rasterizer_apply_state();
    stage.draw(orbit.camera({width, height}), width, height);

    // What comes now lies over the model.
    stage.renderer->set_depth_test_state(false);
    stage.renderer->rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK, POLYGON_MODE_FILL);
    stage.renderer->rasterizer_apply_state();
    if (axes)
        draw_axes();
    if (text)
        label->draw(width, height, {title},
                    {"arrows or mouse: turn   page keys: distance",
                     "W: lines   A: axes   T: text   home: start"});
    stage.renderer->set_depth_test_state(true);
}
