#pragma once

/// @file
/// Which keys are down, by the names of the keys.
///
/// <linux/input.h> and <curses.h> define macros of the same names. This header may stand before or
/// behind them, and leaves them as they are: in a source that includes one of them, its macros are
/// what the words mean. Most of the kernel's numbers equal the engine's, but those of function keys
/// from 13 on, arrows, home and end don't: a source that needs the engine's writes `#undef
/// KEY_HOME` first, or keeps apart from the system's header.

#include <memory>

#include "orvex/api.h"

// The system's macros are set aside while the constants are declared.
#pragma push_macro("KEY_1")
#undef KEY_1
#pragma push_macro("KEY_2")
#undef KEY_2
#pragma push_macro("KEY_3")
#undef KEY_3
#pragma push_macro("KEY_4")
#undef KEY_4
#pragma push_macro("KEY_5")
#undef KEY_5
#pragma push_macro("KEY_6")
#undef KEY_6
#pragma push_macro("KEY_7")
#undef KEY_7
#pragma push_macro("KEY_8")
#undef KEY_8
#pragma push_macro("KEY_9")
#undef KEY_9
#pragma push_macro("KEY_0")
#undef KEY_0
#pragma push_macro("KEY_MINUS")
#undef KEY_MINUS
#pragma push_macro("KEY_TAB")
#undef KEY_TAB
#pragma push_macro("KEY_Q")
#undef KEY_Q
#pragma push_macro("KEY_W")
#undef KEY_W
#pragma push_macro("KEY_E")
#undef KEY_E
#pragma push_macro("KEY_R")
#undef KEY_R
#pragma push_macro("KEY_T")
#undef KEY_T
#pragma push_macro("KEY_Y")
#undef KEY_Y
#pragma push_macro("KEY_U")
#undef KEY_U
#pragma push_macro("KEY_I")
#undef KEY_I
#pragma push_macro("KEY_O")
#undef KEY_O
#pragma push_macro("KEY_P")
#undef KEY_P
#pragma push_macro("KEY_A")
#undef KEY_A
#pragma push_macro("KEY_S")
#undef KEY_S
#pragma push_macro("KEY_D")
#undef KEY_D
#pragma push_macro("KEY_F")
#undef KEY_F
#pragma push_macro("KEY_G")
#undef KEY_G
#pragma push_macro("KEY_H")
#undef KEY_H
#pragma push_macro("KEY_J")
#undef KEY_J
#pragma push_macro("KEY_K")
#undef KEY_K
#pragma push_macro("KEY_L")
#undef KEY_L
#pragma push_macro("KEY_BACKSLASH")
#undef KEY_BACKSLASH
#pragma push_macro("KEY_Z")
#undef KEY_Z
#pragma push_macro("KEY_X")
#undef KEY_X
#pragma push_macro("KEY_C")
#undef KEY_C
#pragma push_macro("KEY_V")
#undef KEY_V
#pragma push_macro("KEY_B")
#undef KEY_B
#pragma push_macro("KEY_N")
#undef KEY_N
#pragma push_macro("KEY_M")
#undef KEY_M
#pragma push_macro("KEY_COMMA")
#undef KEY_COMMA
#pragma push_macro("KEY_SLASH")
#undef KEY_SLASH
#pragma push_macro("KEY_SPACE")
#undef KEY_SPACE
#pragma push_macro("KEY_F1")
#undef KEY_F1
#pragma push_macro("KEY_F2")
#undef KEY_F2
#pragma push_macro("KEY_F3")
#undef KEY_F3
#pragma push_macro("KEY_F4")
#undef KEY_F4
#pragma push_macro("KEY_F5")
#undef KEY_F5
#pragma push_macro("KEY_F6")
#undef KEY_F6
#pragma push_macro("KEY_F7")
#undef KEY_F7
#pragma push_macro("KEY_F8")
#undef KEY_F8
#pragma push_macro("KEY_F9")
#undef KEY_F9
#pragma push_macro("KEY_F10")
#undef KEY_F10
#pragma push_macro("KEY_F11")
#undef KEY_F11
#pragma push_macro("KEY_F12")
#undef KEY_F12
#pragma push_macro("KEY_F13")
#undef KEY_F13
#pragma push_macro("KEY_F14")
#undef KEY_F14
#pragma push_macro("KEY_F15")
#undef KEY_F15
#pragma push_macro("KEY_HOME")
#undef KEY_HOME
#pragma push_macro("KEY_UP")
#undef KEY_UP
#pragma push_macro("KEY_LEFT")
#undef KEY_LEFT
#pragma push_macro("KEY_RIGHT")
#undef KEY_RIGHT
#pragma push_macro("KEY_END")
#undef KEY_END
#pragma push_macro("KEY_DOWN")
#undef KEY_DOWN

namespace orvex {

/// A key by its place on the keyboard, whatever the window system: the `KEY_*` constants below.
using KeyCode = unsigned int;

/// @name Keys
/// The key code of each key, named after a US keyboard. Modifier keys have none.
/// @{
inline constexpr KeyCode KEY_ESCAPE = 1;           ///< escape
inline constexpr KeyCode KEY_1 = 2;                ///< the digit 1 above the letters
inline constexpr KeyCode KEY_2 = 3;                ///< the digit 2 above the letters
inline constexpr KeyCode KEY_3 = 4;                ///< the digit 3 above the letters
inline constexpr KeyCode KEY_4 = 5;                ///< the digit 4 above the letters
inline constexpr KeyCode KEY_5 = 6;                ///< the digit 5 above the letters
inline constexpr KeyCode KEY_6 = 7;                ///< the digit 6 above the letters
inline constexpr KeyCode KEY_7 = 8;                ///< the digit 7 above the letters
inline constexpr KeyCode KEY_8 = 9;                ///< the digit 8 above the letters
inline constexpr KeyCode KEY_9 = 10;               ///< the digit 9 above the letters
inline constexpr KeyCode KEY_0 = 11;               ///< the digit 0 above the letters
inline constexpr KeyCode KEY_MINUS = 12;           ///< minus
inline constexpr KeyCode KEY_EQUALS = 13;          ///< equals
inline constexpr KeyCode KEY_TAB = 15;             ///< tabulator
inline constexpr KeyCode KEY_Q = 16;               ///< the letter Q
inline constexpr KeyCode KEY_W = 17;               ///< the letter W
inline constexpr KeyCode KEY_E = 18;               ///< the letter E
inline constexpr KeyCode KEY_R = 19;               ///< the letter R
inline constexpr KeyCode KEY_T = 20;               ///< the letter T
inline constexpr KeyCode KEY_Y = 21;               ///< the letter Y
inline constexpr KeyCode KEY_U = 22;               ///< the letter U
inline constexpr KeyCode KEY_I = 23;               ///< the letter I
inline constexpr KeyCode KEY_O = 24;               ///< the letter O
inline constexpr KeyCode KEY_P = 25;               ///< the letter P
inline constexpr KeyCode KEY_LEFT_BRACKET = 26;    ///< the opening bracket
inline constexpr KeyCode KEY_RIGHT_BRACKET = 27;   ///< the closing bracket
inline constexpr KeyCode KEY_RETURN = 28;          ///< return, not that of the number pad
inline constexpr KeyCode KEY_A = 30;               ///< the letter A
inline constexpr KeyCode KEY_S = 31;               ///< the letter S
inline constexpr KeyCode KEY_D = 32;               ///< the letter D
inline constexpr KeyCode KEY_F = 33;               ///< the letter F
inline constexpr KeyCode KEY_G = 34;               ///< the letter G
inline constexpr KeyCode KEY_H = 35;               ///< the letter H
inline constexpr KeyCode KEY_J = 36;               ///< the letter J
inline constexpr KeyCode KEY_K = 37;               ///< the letter K
inline constexpr KeyCode KEY_L = 38;               ///< the letter L
inline constexpr KeyCode KEY_BACKSLASH = 43;       ///< the backslash
inline constexpr KeyCode KEY_Z = 44;               ///< the letter Z
inline constexpr KeyCode KEY_X = 45;               ///< the letter X
inline constexpr KeyCode KEY_C = 46;               ///< the letter C
inline constexpr KeyCode KEY_V = 47;               ///< the letter V
inline constexpr KeyCode KEY_B = 48;               ///< the letter B
inline constexpr KeyCode KEY_N = 49;               ///< the letter N
inline constexpr KeyCode KEY_M = 50;               ///< the letter M
inline constexpr KeyCode KEY_COMMA = 51;           ///< the comma
inline constexpr KeyCode KEY_PERIOD = 52;          ///< the period
inline constexpr KeyCode KEY_SLASH = 53;           ///< the slash
inline constexpr KeyCode KEY_NUMPAD_MULTIPLY = 55; ///< multiply, on the number pad
inline constexpr KeyCode KEY_SPACE = 57;           ///< the space bar
inline constexpr KeyCode KEY_CAPS_LOCK = 58;       ///< caps lock
inline constexpr KeyCode KEY_F1 = 59;              ///< function key 1
inline constexpr KeyCode KEY_F2 = 60;              ///< function key 2
inline constexpr KeyCode KEY_F3 = 61;              ///< function key 3
inline constexpr KeyCode KEY_F4 = 62;              ///< function key 4
inline constexpr KeyCode KEY_F5 = 63;              ///< function key 5
inline constexpr KeyCode KEY_F6 = 64;              ///< function key 6
inline constexpr KeyCode KEY_F7 = 65;              ///< function key 7
inline constexpr KeyCode KEY_F8 = 66;              ///< function key 8
inline constexpr KeyCode KEY_F9 = 67;              ///< function key 9
inline constexpr KeyCode KEY_F10 = 68;             ///< function key 10
inline constexpr KeyCode KEY_NUMPAD7 = 71;         ///< 7 on the number pad
inline constexpr KeyCode KEY_NUMPAD8 = 72;         ///< 8 on the number pad
inline constexpr KeyCode KEY_NUMPAD9 = 73;         ///< 9 on the number pad
inline constexpr KeyCode KEY_NUMPAD_SUBTRACT = 74; ///< subtract, on the number pad
inline constexpr KeyCode KEY_NUMPAD4 = 75;         ///< 4 on the number pad
inline constexpr KeyCode KEY_NUMPAD5 = 76;         ///< 5 on the number pad
inline constexpr KeyCode KEY_NUMPAD6 = 77;         ///< 6 on the number pad
inline constexpr KeyCode KEY_NUMPAD_ADD = 78;      ///< add, on the number pad
inline constexpr KeyCode KEY_NUMPAD1 = 79;         ///< 1 on the number pad
inline constexpr KeyCode KEY_NUMPAD2 = 80;         ///< 2 on the number pad
inline constexpr KeyCode KEY_NUMPAD3 = 81;         ///< 3 on the number pad
inline constexpr KeyCode KEY_NUMPAD0 = 82;         ///< 0 on the number pad
inline constexpr KeyCode KEY_NUMPAD_DECIMAL = 83;  ///< the decimal point on the number pad
inline constexpr KeyCode KEY_F11 = 87;             ///< function key 11
inline constexpr KeyCode KEY_F12 = 88;             ///< function key 12
inline constexpr KeyCode KEY_F13 = 100;            ///< function key 13
inline constexpr KeyCode KEY_F14 = 101;            ///< function key 14
inline constexpr KeyCode KEY_F15 = 102;            ///< function key 15
inline constexpr KeyCode KEY_NUMPAD_EQUALS = 141;  ///< equals, on the number pad
inline constexpr KeyCode KEY_NUMPAD_ENTER = 156;   ///< enter, on the number pad
inline constexpr KeyCode KEY_NUMPAD_DIVIDE = 181;  ///< divide, on the number pad
inline constexpr KeyCode KEY_HOME = 199;           ///< to the start of a line
inline constexpr KeyCode KEY_UP = 200;             ///< arrow up
inline constexpr KeyCode KEY_PAGE_UP = 201;        ///< a page up
inline constexpr KeyCode KEY_LEFT = 203;           ///< arrow left
inline constexpr KeyCode KEY_RIGHT = 205;          ///< arrow right
inline constexpr KeyCode KEY_END = 207;            ///< to the end of a line
inline constexpr KeyCode KEY_DOWN = 208;           ///< arrow down
inline constexpr KeyCode KEY_PAGE_DOWN = 209;      ///< a page down
/// @}

} // namespace orvex

#pragma pop_macro("KEY_1")
#pragma pop_macro("KEY_2")
#pragma pop_macro("KEY_3")
#pragma pop_macro("KEY_4")
#pragma pop_macro("KEY_5")
#pragma pop_macro("KEY_6")
#pragma pop_macro("KEY_7")
#pragma pop_macro("KEY_8")
#pragma pop_macro("KEY_9")
#pragma pop_macro("KEY_0")
#pragma pop_macro("KEY_MINUS")
#pragma pop_macro("KEY_TAB")
#pragma pop_macro("KEY_Q")
#pragma pop_macro("KEY_W")
#pragma pop_macro("KEY_E")
#pragma pop_macro("KEY_R")
#pragma pop_macro("KEY_T")
#pragma pop_macro("KEY_Y")
#pragma pop_macro("KEY_U")
#pragma pop_macro("KEY_I")
#pragma pop_macro("KEY_O")
#pragma pop_macro("KEY_P")
#pragma pop_macro("KEY_A")
#pragma pop_macro("KEY_S")
#pragma pop_macro("KEY_D")
#pragma pop_macro("KEY_F")
#pragma pop_macro("KEY_G")
#pragma pop_macro("KEY_H")
#pragma pop_macro("KEY_J")
#pragma pop_macro("KEY_K")
#pragma pop_macro("KEY_L")
#pragma pop_macro("KEY_BACKSLASH")
#pragma pop_macro("KEY_Z")
#pragma pop_macro("KEY_X")
#pragma pop_macro("KEY_C")
#pragma pop_macro("KEY_V")
#pragma pop_macro("KEY_B")
#pragma pop_macro("KEY_N")
#pragma pop_macro("KEY_M")
#pragma pop_macro("KEY_COMMA")
#pragma pop_macro("KEY_SLASH")
#pragma pop_macro("KEY_SPACE")
#pragma pop_macro("KEY_F1")
#pragma pop_macro("KEY_F2")
#pragma pop_macro("KEY_F3")
#pragma pop_macro("KEY_F4")
#pragma pop_macro("KEY_F5")
#pragma pop_macro("KEY_F6")
#pragma pop_macro("KEY_F7")
#pragma pop_macro("KEY_F8")
#pragma pop_macro("KEY_F9")
#pragma pop_macro("KEY_F10")
#pragma pop_macro("KEY_F11")
#pragma pop_macro("KEY_F12")
#pragma pop_macro("KEY_F13")
#pragma pop_macro("KEY_F14")
#pragma pop_macro("KEY_F15")
#pragma pop_macro("KEY_HOME")
#pragma pop_macro("KEY_UP")
#pragma pop_macro("KEY_LEFT")
#pragma pop_macro("KEY_RIGHT")
#pragma pop_macro("KEY_END")
#pragma pop_macro("KEY_DOWN")

namespace orvex {

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
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

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
    bool is_key_down_raw(unsigned int key) const;
    /// @return false: this platform's keyboard isn't asked; `is_key_down_raw` tells what the host
    ///         noted
    bool is_virtual_key_down(int key) const;
    /// Does nothing: the host feeds the table.
    /// @return true
    bool update_key_buffer();
    /// Takes all keys up. The known key codes stay.
    /// @return true
    bool clear_key_buffer();

private:
    struct KeyboardData;
    std::unique_ptr<KeyboardData> data;
};

} // namespace orvex
