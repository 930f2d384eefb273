#pragma once

/// @file
/// What is common to the hosts of these tests: the space bar shows the next frame, Escape ends the
/// program, and what a frame leaves changed in the context is told.

#include <cstddef>
#include <cstdio>
#include <string>

#include "orvex_kit/engine.h"
#include "tests/orvex_kit/gl_states.h"
#include "tests/orvex_kit/turning_torus.h"

/// Tells, at its end, what has changed in the current context since its begin.
class StateWatch {
public:
    StateWatch() {
        if (before.size() < fewest)
            std::fprintf(stderr, "a frame changed who knows what: %zu states are known\n",
                         before.size());
    }
    ~StateWatch() {
        for (const auto& [name, values] : orvex_test::states_here(true))
            if (values != before.at(name))
                std::fprintf(stderr, "a frame changed %s\n", name.c_str());
    }
    StateWatch(const StateWatch&) = delete;
    StateWatch& operator=(const StateWatch&) = delete;

private:
    static constexpr std::size_t fewest = 80;
    const orvex_test::GlStates before = orvex_test::states_here(true);
};

/// The path that a host was asked for.
inline orvex::kit::ViewOptions options_of(int argc, char** argv) {
    orvex::kit::ViewOptions options;
    if (argc > 1 && argv[1] == std::string("gl2"))
        options.path = orvex::kit::Path::gl2;
    return options;
}
