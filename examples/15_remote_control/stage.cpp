#include "stage.h"

#include <filesystem>

#include <orvex/orvex.h>
#include <orvex_kit/model.h>
#include <orvex_kit/whole_file.h>

#include "picture_file.h"

using namespace orvex;
using namespace orvex::kit;

std::string Stage::open(int width, int height) {
    lens = {width, height};
    RenderWindow_ExtraData request;
    request.gl_major = 3;
    request.gl_minor = 2;
    request.depth_bits = 24;
    if (!stage.window->initialize(nullptr, nullptr, width, height, "Off", nullptr, &request))
        return "no OpenGL context";
    return stage.start();
}

std::string Stage::load(const std::string& path) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored))
        return path + ": no such file";
    if (std::string mistake = stage.load(path); !mistake.empty())
        return mistake;
    constexpr int views_of_a_turn = 36;
    angle = {};
    aim = turning_aim(stage.scene.extent(), angle, lens, views_of_a_turn);
    return {};
}

/// The camera goes around the other way, and the lights with it.
void Stage::turn(float degrees) {
    angle.azimuth -= degrees;
}

void Stage::draw() {
    const kit::Camera camera =
        stage.scene ? aimed(stage.scene.extent(), angle, lens, aim) : kit::Camera();
    stage.draw(camera, lens.width, lens.height, angle);
}

bool Stage::screenshot(const std::string& path) {
    if (stage.scene)
        for (const std::string& file : stage.scene.files())
            if (are_same_file(path, file))
                return false;
    draw();
    return write_picture(stage.renderer, path).empty();
}

void Stage::show() {
    stage.window->display_framebuffer();
}
