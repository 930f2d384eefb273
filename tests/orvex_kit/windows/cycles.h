#pragma once

/// @file
/// A window that is resized, hidden and shown again and again, as a host does it with its toolkit:
/// each picture is compared with that of a view off screen, and what is held is looked at.

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>

#include <orvex/geometry/rays/ray_caster.h>

#include "orvex_kit/camera.h"
#include "orvex_kit/compare.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/view.h"
#include "tests/orvex_kit/turning_torus.h"
#include "tests/orvex_kit/windows/holdings.h"
#include "tests/orvex_kit/windows/window_host.h"

namespace orvex_test {

/// How many are played: those of the environment's ORVEX_CYCLES, or some.
inline int cycle_count() {
    const char* const wanted = std::getenv("ORVEX_CYCLES");
    return wanted ? std::atoi(wanted) : 12;
}

/// Plays the cycles. Made before the toolkit's context: it draws what is expected.
class Cycles {
public:
    /// Before the first cycle, in the toolkit's units.
    static constexpr int width = 200, height = 150;
    /// After the last, where a frame is seen that isn't before.
    static constexpr int last_width = 220, last_height = 160, last_frame = 3;

    /// @param scale  pixels in a unit of the toolkit's
    Cycles(const orvex::kit::ViewOptions& options, int count, double scale = 1.0)
        : count(count)
        , scale(scale) {
        for (const auto& [w, h] : {Size(width, height), other, end})
            for (int i = 0; i <= last_frame; ++i) {
                const Size pixels = in_pixels(w, h);
                orvex::kit::View view(pixels.first, pixels.second, options);
                TurningTorus().draw(view, i);
                tell(view.read(wanted[{pixels, i}]).reason());
            }
    }
    Cycles(const Cycles&) = delete;
    Cycles& operator=(const Cycles&) = delete;

    /// The frame of the present cycle.
    void draw(orvex::kit::View& view) {
        torus.draw(view, number);
        drawn = {view.width(), view.height()};
        orvex::kit::Picture picture;
        tell(view.read(picture).reason());
        // On its way to the asked size a toolkit may have others.
        if (const auto found = wanted.find({drawn, number}); found != wanted.end())
            tell(orvex::kit::compare(picture, found->second).reason);
        holdings.look();
    }

    /// Plays them, as `play`, and has the last frame looked at until the window's `ends` is set.
    /// @return the program's exit code
    template<class Window>
    int run(Window& window) {
        const bool is_right = play(window);
        while (!window.ends)
            window.turn();
        return is_right ? 0 : 1;
    }

    /// Tells which pixel the mouse's button was pressed on, by way of the ray through it.
    void press(const orvex::kit::Screen& screen, double x, double y) const {
        orvex::kit::Camera camera;
        camera.look_at(orvex::vec4(4.0f, 3.0f, 4.0f, 1.0f), orvex::vec4(0.0f, 0.0f, 0.0f, 1.0f));
        const orvex::Ray ray = camera.ray(x, y, screen);
        const auto seen =
            camera.project(ray.origin + ray.direction * 5.0f, {screen.width, screen.height});
        std::fprintf(stderr, "pressed on %ld %ld of %dx%d\n", seen ? std::lround(seen->x) : -1,
                     seen ? std::lround(seen->y) : -1, screen.width, screen.height);
    }

    /// Plays them. The window has `resize`, `hide`, `show`, `change` (what else is done to it, by
    /// the cycle's number), and `turn`, which lets the toolkit go on for a moment.
    /// @return whether all was as it should be; what wasn't is told on the standard error
    template<class Window>
    bool play(Window& window) {
        for (cycle = 0; cycle < count && mistakes == 0; ++cycle) {
            number = cycle % last_frame;
            const Size size = cycle % 2 == 0 ? other : Size(width, height);
            resize(window, size);
            drawn = {};
            window.hide();
            window.show();
            wait_for(window, size, "shown");
            window.change(cycle);
        }
        number = last_frame;
        resize(window, end);
        tell(holdings.leaks());
        std::fprintf(stderr, "%d cycles, %d mistakes; %s\n", cycle, mistakes,
                     holdings.text().c_str());
        return mistakes == 0;
    }

private:
    using Size = std::pair<int, int>;
    using Clock = std::chrono::steady_clock;
    static constexpr Size other = {261, 182};
    static constexpr Size end = {last_width, last_height};
    static constexpr std::chrono::seconds patience{60};

    int count;
    double scale;
    std::map<std::pair<Size, int>, orvex::kit::Picture> wanted; ///< by size and number
    TurningTorus torus;
    Holdings holdings;
    int cycle = 0;
    int number = 0;
    int mistakes = 0;
    Size drawn; ///< of the frame before; nothing since it was asked for

    Size in_pixels(int w, int h) const {
        return {static_cast<int>(std::lround(w * scale)), static_cast<int>(std::lround(h * scale))};
    }

    void tell(const std::string& mistake) {
        if (mistake.empty() || ++mistakes > 5)
            return;
        std::fprintf(stderr, "cycle %d, frame %d of %dx%d: %s\n", cycle, number, drawn.first,
                     drawn.second, mistake.c_str());
    }

    /// A toolkit may draw at once.
    template<class Window>
    void resize(Window& window, const Size& size) {
        drawn = {};
        window.resize(size.first, size.second);
        wait_for(window, size, "resized");
    }

    template<class Window>
    void wait_for(Window& window, const Size& size, const char* what) {
        const Clock::time_point begin = Clock::now();
        while (drawn != in_pixels(size.first, size.second)) {
            if (Clock::now() - begin > patience)
                return tell(std::string("it isn't drawn when ") + what);
            window.turn();
        }
    }
};

} // namespace orvex_test

/// Those that a program was asked for: (gl3|gl2) [SCALE].
inline orvex_test::Cycles cycles_of(int argc, char** argv) {
    return {options_of(argc, argv), orvex_test::cycle_count(), argc > 2 ? std::atof(argv[2]) : 1.0};
}
