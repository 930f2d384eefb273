#pragma once

/// @file
/// What must end before the engine does.

namespace orvex {
class Renderer;
}

namespace orvex::kit {

/// Something that holds the engine's objects. It is known from its beginning to its end, and closed
/// when the engine ends earlier. All of it on the thread that draws.
class EnginePart {
public:
    EnginePart(const EnginePart&) = delete;
    EnginePart& operator=(const EnginePart&) = delete;

    /// Gives back everything. Called once, while the engine still runs.
    virtual void close() = 0;

protected:
    EnginePart();
    virtual ~EnginePart();
};

/// Whether an `Engine` runs.
bool engine_runs();
/// The sentence of those that need it.
extern const char* const no_engine;
/// Closes every part, the last first.
void close_engine_parts();
/// Notes that an engine runs, or no longer does.
void set_engine_runs(bool state);

/// The renderer of the view that was made current last: what ends gives its GPU objects back by it.
/// Null before the first view.
orvex::Renderer* current_renderer();
void set_current_renderer(orvex::Renderer* renderer);

} // namespace orvex::kit
