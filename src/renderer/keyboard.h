#pragma once

/// @file
/// Which keys are down, by the names of the keys. <linux/input.h> defines macros of the same names:
/// a source that needs both includes that one last.

#include "api.h"

namespace orvex {

struct KeyboardData;

/// A key by its place on the keyboard, whatever the window system: the `KEY_*` constants below.
using KeyCode = unsigned int;

/// @name Keys
/// The key code of each key. Modifier keys have none.
/// @{
inline constexpr KeyCode KEY_ESCAPE = 1;
inline constexpr KeyCode KEY_1 = 2;
inline constexpr KeyCode KEY_2 = 3;
inline constexpr KeyCode KEY_3 = 4;
inline constexpr KeyCode KEY_4 = 5;
inline constexpr KeyCode KEY_5 = 6;
inline constexpr KeyCode KEY_6 = 7;
inline constexpr KeyCode KEY_7 = 8;
inline constexpr KeyCode KEY_8 = 9;
inline constexpr KeyCode KEY_9 = 10;
inline constexpr KeyCode KEY_0 = 11;
inline constexpr KeyCode KEY_MINUS = 12;
inline constexpr KeyCode KEY_EQUALS = 13;
inline constexpr KeyCode KEY_TAB = 15;
inline constexpr KeyCode KEY_Q = 16;
inline constexpr KeyCode KEY_W = 17;
inline constexpr KeyCode KEY_E = 18;
inline constexpr KeyCode KEY_R = 19;
inline constexpr KeyCode KEY_T = 20;
inline constexpr KeyCode KEY_Y = 21;
inline constexpr KeyCode KEY_U = 22;
inline constexpr KeyCode KEY_I = 23;
inline constexpr KeyCode KEY_O = 24;
inline constexpr KeyCode KEY_P = 25;
inline constexpr KeyCode KEY_LEFT_BRACKET = 26;
inline constexpr KeyCode KEY_RIGHT_BRACKET = 27;
inline constexpr KeyCode KEY_RETURN = 28;
inline constexpr KeyCode KEY_A = 30;
inline constexpr KeyCode KEY_S = 31;
inline constexpr KeyCode KEY_D = 32;
inline constexpr KeyCode KEY_F = 33;
inline constexpr KeyCode KEY_G = 34;
inline constexpr KeyCode KEY_H = 35;
inline constexpr KeyCode KEY_J = 36;
inline constexpr KeyCode KEY_K = 37;
inline constexpr KeyCode KEY_L = 38;
inline constexpr KeyCode KEY_BACKSLASH = 43;
inline constexpr KeyCode KEY_Z = 44;
inline constexpr KeyCode KEY_X = 45;
inline constexpr KeyCode KEY_C = 46;
inline constexpr KeyCode KEY_V = 47;
inline constexpr KeyCode KEY_B = 48;
inline constexpr KeyCode KEY_N = 49;
inline constexpr KeyCode KEY_M = 50;
inline constexpr KeyCode KEY_COMMA = 51;
inline constexpr KeyCode KEY_PERIOD = 52;
inline constexpr KeyCode KEY_SLASH = 53;
inline constexpr KeyCode KEY_NUMPAD_MULTIPLY = 55;
inline constexpr KeyCode KEY_SPACE = 57;
inline constexpr KeyCode KEY_CAPS_LOCK = 58;
inline constexpr KeyCode KEY_F1 = 59;
inline constexpr KeyCode KEY_F2 = 60;
inline constexpr KeyCode KEY_F3 = 61;
inline constexpr KeyCode KEY_F4 = 62;
inline constexpr KeyCode KEY_F5 = 63;
inline constexpr KeyCode KEY_F6 = 64;
inline constexpr KeyCode KEY_F7 = 65;
inline constexpr KeyCode KEY_F8 = 66;
inline constexpr KeyCode KEY_F9 = 67;
inline constexpr KeyCode KEY_F10 = 68;
inline constexpr KeyCode KEY_NUMPAD7 = 71;
inline constexpr KeyCode KEY_NUMPAD8 = 72;
inline constexpr KeyCode KEY_NUMPAD9 = 73;
inline constexpr KeyCode KEY_NUMPAD_SUBTRACT = 74;
inline constexpr KeyCode KEY_NUMPAD4 = 75;
inline constexpr KeyCode KEY_NUMPAD5 = 76;
inline constexpr KeyCode KEY_NUMPAD6 = 77;
inline constexpr KeyCode KEY_NUMPAD_ADD = 78;
inline constexpr KeyCode KEY_NUMPAD1 = 79;
inline constexpr KeyCode KEY_NUMPAD2 = 80;
inline constexpr KeyCode KEY_NUMPAD3 = 81;
inline constexpr KeyCode KEY_NUMPAD0 = 82;
inline constexpr KeyCode KEY_NUMPAD_DECIMAL = 83;
inline constexpr KeyCode KEY_F11 = 87;
inline constexpr KeyCode KEY_F12 = 88;
inline constexpr KeyCode KEY_F13 = 100;
inline constexpr KeyCode KEY_F14 = 101;
inline constexpr KeyCode KEY_F15 = 102;
inline constexpr KeyCode KEY_NUMPAD_EQUALS = 141;
inline constexpr KeyCode KEY_NUMPAD_ENTER = 156;
inline constexpr KeyCode KEY_NUMPAD_DIVIDE = 181;
inline constexpr KeyCode KEY_HOME = 199;
inline constexpr KeyCode KEY_UP = 200;
inline constexpr KeyCode KEY_PAGE_UP = 201;
inline constexpr KeyCode KEY_LEFT = 203;
inline constexpr KeyCode KEY_RIGHT = 205;
inline constexpr KeyCode KEY_END = 207;
inline constexpr KeyCode KEY_DOWN = 208;
inline constexpr KeyCode KEY_PAGE_DOWN = 209;
/// @}

/// Whose numbers the host's window code hands over.
enum KEYBOARD_LAYOUT : int {
    /// The key codes of an X server on Linux: those of the kernel's event devices and 8 more. XCB,
    /// and a Wayland client that goes by xkb, use the same.
    KEYBOARD_LAYOUT_X11 = 0,
    /// The virtual key codes of a Macintosh keyboard.
    KEYBOARD_LAYOUT_MACINTOSH = 1
};

/// A table of which keys are down, fed by the host's window code under the platform's key codes and
/// read by the application under the engine's.
///
/// Made and destroyed by the host. It reads no device itself, and a key is down from the call that
/// says so to the call that takes it back. Platform codes are 0 to 255. One thread only: a query
/// may write, since a key code that the map doesn't hold enters it, for the platform code 0.
///
/// @code
/// orvex::Keyboard keyboard;
/// keyboard.init();
/// // in the window's event handler, with the event's own key code:
/// keyboard.set_virtual_key_state(event.keycode, 1);
/// // in the frame:
/// if (keyboard.is_key_down(orvex::KEY_UP))
///     climb();
/// @endcode
class ORVEX_API Keyboard {
public:
    /// All keys up, and no key code known: all of them lead to the platform code 0 until `init`.
    Keyboard();
    ~Keyboard();
    Keyboard(Keyboard const&) = delete;
    Keyboard& operator=(Keyboard const&) = delete;

    /// Enters the keys with the codes of the platform that the library was built for: the X11
    /// layout on Linux. A key code that is known already keeps its platform code, so that a second
    /// call changes nothing; that holds for one made known by asking before the first `init`, too.
    /// @return true
    bool init();
    /// Forgets all key codes, and enters the keys with the codes of a layout. The keys that are
    /// down stay down, under their platform codes.
    /// @return false for a number that is no layout; nothing changes then
    bool init(KEYBOARD_LAYOUT layout);

    /// Notes the state of a key: what the host's window code calls for each key event.
    /// @param key    platform code; one outside of 0 to 255 is ignored
    /// @param state  1 means down, anything else up
    /// @return true
    bool set_virtual_key_state(int key, char state);
    /// Notes the state of a key by its engine name, as a test or a replay does. An unknown key
    /// enters the map for the platform code 0, and sets that one's state.
    /// @return true
    bool set_key_state(KeyCode key, char state);
    /// @return whether the state of the key is 1. An unknown key enters the map for the platform
    ///         code 0, and tells the state of that one.
    bool is_key_down(KeyCode key);
    /// @param key  platform code
    /// @return whether its state is 1; false from 256 on
    bool is_key_down_raw(unsigned int key);
    /// @return false: this platform's keyboard isn't asked; `is_key_down_raw` tells what the host
    ///         noted
    bool is_virtual_key_down(int key);
    /// Does nothing: the host feeds the table.
    /// @return true
    bool update_key_buffer();
    /// Takes all keys up. The known key codes stay.
    /// @return true
    bool clear_key_buffer();

private:
    KeyboardData* data;
};

} // namespace orvex
