#pragma once

#include <orvex_kit/orbit.h>

#include "keys.h"

/// A button of the mouse.
enum class Button { left, middle, right };

/// The eye, and the hand that moves it: what mouse and keys do to an orbit. Places are in units of
/// the window.
class Eye {
public:
    orvex::kit::Orbit orbit;

    /// @name What somebody does
    /// Each returns whether the eye is elsewhere now.
    /// @{
    bool move_pointer(double x, double y, const orvex::kit::Screen& screen);
    bool turn_wheel(double notches);
    /// Moves on by the keys that are held. @param seconds  since the last call
    bool advance(double seconds);
    /// @}

    /// A key goes down or up; what isn't held to move is passed over.
    void hold(Key key, bool is_down);
    void press_button(Button button);
    void release_button(Button button);
    /// Whatever is held isn't any more.
    void let_go();
    bool is_shift_held() const { return held.pans; }
    /// Whether a key is held that goes on moving.
    bool is_moving() const;

private:
    enum class Drag { none, turn, pan };

    orvex::kit::OrbitKeys held;
    Drag drag = Drag::none;
    Button drag_button = Button::left;
    double pointer_x = 0.0;
    double pointer_y = 0.0;
};
