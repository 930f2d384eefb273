#pragma once

#include <array>
#include <future>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <orvex/renderer/render_window.h>
#include <orvex/scene/camera.h>

#include "orvex_kit/picture.h"
#include "orvex_kit/ref.h"
#include "orvex_kit/view.h"

namespace orvex_test {

/// Names the instances of a test after their path.
inline std::string path_name(const testing::TestParamInfo<orvex::kit::Path>& info) {
    return info.param == orvex::kit::Path::gl3 ? "gl3" : "gl2";
}

using Pixel = std::array<int, 4>;

/// Fails the test for a picture of other channels than RGBA.
inline Pixel pixel_at(const orvex::kit::Picture& picture, int x, int y) {
    EXPECT_EQ(picture.channels(), 4);
    if (picture.channels() != 4)
        return {};
    const auto* const p = picture.row<std::uint8_t>(y) + 4 * x;
    return {p[0], p[1], p[2], p[3]};
}

/// What a view shows; fails the test where that can't be read.
inline orvex::kit::Picture picture_of(orvex::kit::View& view) {
    orvex::kit::Picture picture;
    EXPECT_EQ(view.read(picture).reason(), "");
    return picture;
}

/// Shows x and y from -1 to 1 from left to right and from below.
inline orvex::kit::Ref<orvex::Camera> flat_camera(int width, int height) {
    auto camera = orvex::kit::make<orvex::Camera>();
    camera->set_viewport(0, 0, width, height);
    camera->build_projection_ortho(-1.0f, 1.0f, -1.0f, 1.0f, 1.0f, 10.0f, true);
    camera->set_position(orvex::vec4(0.0f, 0.0f, 5.0f, 1.0f));
    return camera;
}

/// A frame of the background alone.
inline orvex::kit::Picture empty_frame(orvex::kit::View& view) {
    const auto camera = flat_camera(view.width(), view.height());
    view.begin(*camera);
    view.end();
    return picture_of(view);
}

/// While one lives, another thread has the context of a view.
class TakenContext {
public:
    explicit TakenContext(orvex::kit::View& view)
        : window(*view.window()) {
        EXPECT_TRUE(window.osx_apply_context(false));
        thread = std::thread([this] {
            taken.set_value(window.osx_apply_context(true));
            done.get_future().wait();
            window.osx_apply_context(false);
        });
        EXPECT_TRUE(taken.get_future().get());
    }
    ~TakenContext() {
        done.set_value();
        thread.join();
    }
    TakenContext(const TakenContext&) = delete;
    TakenContext& operator=(const TakenContext&) = delete;

private:
    orvex::RenderWindow& window;
    std::promise<bool> taken;
    std::promise<void> done;
    std::thread thread;
};

} // namespace orvex_test
