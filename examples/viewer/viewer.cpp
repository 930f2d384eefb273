#include "viewer.h"

#include <algorithm>
#include <cmath>
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
            std::to_string(stage.scene->num_faces()) + " triangles";
    orbit = orbit_around(*stage.scene);
    // The model's axes lie where its own origin is.
    frame = new Object;
    const float length = orbit->get_distance() / 5;
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
        orbit->reset();
}

void Viewer::drag(float right, float down) {
    orbit->drag(right, down);
}

void Viewer::turn_wheel(float notches) {
    orbit->recede(std::pow(0.9f, notches));
}

float Viewer::direction(KeyCode forward, KeyCode backward) {
    return static_cast<float>(keyboard.is_key_down(forward)) -
           static_cast<float>(keyboard.is_key_down(backward));
}

bool Viewer::advance(float seconds) {
    constexpr float pixels_per_second = 360.0f;
    const float left = direction(KEY_LEFT, KEY_RIGHT);
    const float up = direction(KEY_UP, KEY_DOWN);
    const float away = direction(KEY_PAGE_DOWN, KEY_PAGE_UP);
    orbit->drag(left * pixels_per_second * seconds, up * pixels_per_second * seconds);
    orbit->recede(std::pow(2.0f, away * seconds));
    return left != 0.0f || up != 0.0f || away != 0.0f;
}

void Viewer::draw_axes(orvex::Camera& camera) {
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
    orvex::Camera& camera = orbit->camera(width, height);
    stage.draw(camera);

    // What comes now lies over the model.
    stage.renderer->set_depth_test_state(false);
    stage.renderer->rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK, POLYGON_MODE_FILL);
    stage.renderer->rasterizer_apply_state();
    if (axes)
        draw_axes(camera);
    if (text)
        label->draw(width, height, {title},
                    {"arrows or mouse: turn   page keys: distance",
                     "W: lines   A: axes   T: text   home: start"});
    stage.renderer->set_depth_test_state(true);
}
