#include "orvex_kit/private/engine_parts.h"

#include <algorithm>
#include <vector>

namespace orvex::kit {

namespace {

struct State {
    bool runs = false;
    std::vector<EnginePart*> parts;
    orvex::Renderer* renderer = nullptr;
};

/// Never destroyed: parts of static life may end after it would be.
State& state() {
    static State* const only = new State;
    return *only;
}

} // namespace

const char* const no_engine = "the engine doesn't run: make a kit::Engine first";

EnginePart::EnginePart() {
    state().parts.push_back(this);
}

EnginePart::~EnginePart() {
    std::vector<EnginePart*>& parts = state().parts;
    parts.erase(std::remove(parts.begin(), parts.end(), this), parts.end());
}

bool engine_runs() {
    return state().runs;
}

void set_engine_runs(bool runs) {
    state().runs = runs;
}

void close_engine_parts() {
    std::vector<EnginePart*>& parts = state().parts;
    while (!parts.empty()) {
        EnginePart* const last = parts.back();
        parts.pop_back();
        last->close();
    }
}

orvex::Renderer* current_renderer() {
    return state().renderer;
}

void set_current_renderer(orvex::Renderer* renderer) {
    state().renderer = renderer;
}

} // namespace orvex::kit
