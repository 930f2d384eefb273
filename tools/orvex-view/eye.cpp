#include "eye.h"

#include <utility>

using namespace orvex::kit;

bool Eye::move_pointer(double x, double y, const Screen& screen) {
    const double right = x - std::exchange(pointer_x, x);
    const double down = y - std::exchange(pointer_y, y);
    if (drag == Drag::turn)
        orbit.turn(right, down);
    else if (drag == Drag::pan)
        orbit.pan(right, down, screen);
    return drag != Drag::none;
}

bool Eye::turn_wheel(double notches) {
    orbit.zoom(notches);
    return notches != 0.0;
}

bool Eye::advance(double seconds) {
    return orbit.move(held, seconds);
}

void Eye::hold(Key key, bool is_down) {
    switch (key) {
    case Key::left:
        held.left = is_down;
        break;
    case Key::right:
        held.right = is_down;
        break;
    case Key::up:
        held.up = is_down;
        break;
    case Key::down:
        held.down = is_down;
        break;
    case Key::page_up:
        held.nearer = is_down;
        break;
    case Key::page_down:
        held.farther = is_down;
        break;
    case Key::shift:
        held.pans = is_down;
        break;
    default:
        break;
    }
}

/// The first button that goes down counts until it goes up.
void Eye::press_button(Button button) {
    if (drag != Drag::none)
        return;
    drag_button = button;
    drag = button == Button::left && !held.pans ? Drag::turn : Drag::pan;
}

void Eye::release_button(Button button) {
    if (button == drag_button)
        drag = Drag::none;
}

void Eye::let_go() {
    held = {};
    drag = Drag::none;
}

bool Eye::is_moving() const {
    return held.left != held.right || held.up != held.down || held.nearer != held.farther;
}
