#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <orvex/overlays/tripod_visualizer.h>
#include <orvex/renderer/keyboard.h>
#include <orvex_kit/orbit.h>

#include "label.h"
#include "model_stage.h"

/// From where the model is seen at first.
constexpr orvex::kit::Angle first_angle{24.0f, 18.0f};

/// A model to walk around, with axes and text over it. It knows nothing of the window: whoever made
/// that hands over what the keys and the pointer do.
class Viewer {
public:
    ~Viewer();

    /// Adopts the context that is current, and loads the model.
    /// @param context  its handle
    /// @return what is wrong; empty if nothing is
    std::string open(void* context, const std::string& model);

    /// A key went down or up.
    /// @param code  the window system's own number of the key
    void set_key(int code, bool down);
    /// The pointer moved, with its button held.
    void drag(float right, float down);
    /// The wheel turned, by a notch towards the model or away from it.
    void turn_wheel(float notches);

    /// Moves on by what the keys say. @return whether a key is held that goes on moving
    bool advance(float seconds);
    void draw(int width, int height);
    /// Whether Escape was hit.
    bool is_ended() const { return ended; }

private:
    ModelStage stage;
    orvex::Keyboard keyboard;
    std::map<orvex::KeyCode, bool> was_down;
    orvex::kit::Orbit orbit;
    std::unique_ptr<Label> label;
    orvex::aux::TripodVisualizerObject model_axes;
    orvex::aux::TripodVisualizerCamera corner_axes;
    orvex::Object* frame = nullptr; ///< what the model's axes are drawn of
    std::string title;
    bool lines = false;
    bool axes = true;
    bool text = true;
    bool ended = false;

    bool is_hit(orvex::KeyCode key);
    void draw_axes();
    orvex::kit::OrbitKeys held_keys();
};
