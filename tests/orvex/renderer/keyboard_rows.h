#pragma once

/// @file
/// All keys that have a name, with their numbers everywhere.

#include "orvex/renderer/keyboard.h"

namespace orvex_test {

struct KeyRow {
    const char* name;
    orvex::KeyCode key;
    unsigned int code;
    unsigned int macintosh;
    unsigned int x11;
    const char* xkb_name; ///< of the place on the keyboard, as X servers call it
};

// clang-format off
inline constexpr KeyRow key_rows[] = {
    {"KEY_UP", orvex::KEY_UP, 200, 126, 111, "UP"},
    {"KEY_DOWN", orvex::KEY_DOWN, 208, 125, 116, "DOWN"},
    {"KEY_LEFT", orvex::KEY_LEFT, 203, 123, 113, "LEFT"},
    {"KEY_RIGHT", orvex::KEY_RIGHT, 205, 124, 114, "RGHT"},
    {"KEY_PAGE_UP", orvex::KEY_PAGE_UP, 201, 116, 112, "PGUP"},
    {"KEY_PAGE_DOWN", orvex::KEY_PAGE_DOWN, 209, 121, 117, "PGDN"},
    {"KEY_HOME", orvex::KEY_HOME, 199, 115, 110, "HOME"},
    {"KEY_END", orvex::KEY_END, 207, 119, 115, "END"},
    {"KEY_F1", orvex::KEY_F1, 59, 122, 67, "FK01"},
    {"KEY_F2", orvex::KEY_F2, 60, 120, 68, "FK02"},
    {"KEY_F3", orvex::KEY_F3, 61, 99, 69, "FK03"},
    {"KEY_F4", orvex::KEY_F4, 62, 118, 70, "FK04"},
    {"KEY_F5", orvex::KEY_F5, 63, 96, 71, "FK05"},
    {"KEY_F6", orvex::KEY_F6, 64, 97, 72, "FK06"},
    {"KEY_F7", orvex::KEY_F7, 65, 98, 73, "FK07"},
    {"KEY_F8", orvex::KEY_F8, 66, 100, 74, "FK08"},
    {"KEY_F9", orvex::KEY_F9, 67, 101, 75, "FK09"},
    {"KEY_F10", orvex::KEY_F10, 68, 109, 76, "FK10"},
    {"KEY_F11", orvex::KEY_F11, 87, 103, 95, "FK11"},
    {"KEY_F12", orvex::KEY_F12, 88, 111, 96, "FK12"},
    {"KEY_F13", orvex::KEY_F13, 100, 105, 191, "FK13"},
    {"KEY_F14", orvex::KEY_F14, 101, 107, 192, "FK14"},
    {"KEY_F15", orvex::KEY_F15, 102, 113, 193, "FK15"},
    {"KEY_1", orvex::KEY_1, 2, 18, 10, "AE01"},
    {"KEY_2", orvex::KEY_2, 3, 19, 11, "AE02"},
    {"KEY_3", orvex::KEY_3, 4, 20, 12, "AE03"},
    {"KEY_4", orvex::KEY_4, 5, 21, 13, "AE04"},
    {"KEY_5", orvex::KEY_5, 6, 23, 14, "AE05"},
    {"KEY_6", orvex::KEY_6, 7, 22, 15, "AE06"},
    {"KEY_7", orvex::KEY_7, 8, 26, 16, "AE07"},
    {"KEY_8", orvex::KEY_8, 9, 28, 17, "AE08"},
    {"KEY_9", orvex::KEY_9, 10, 25, 18, "AE09"},
    {"KEY_0", orvex::KEY_0, 11, 29, 19, "AE10"},
    {"KEY_A", orvex::KEY_A, 30, 0, 38, "AC01"},
    {"KEY_B", orvex::KEY_B, 48, 11, 56, "AB05"},
    {"KEY_C", orvex::KEY_C, 46, 8, 54, "AB03"},
    {"KEY_D", orvex::KEY_D, 32, 2, 40, "AC03"},
    {"KEY_E", orvex::KEY_E, 18, 14, 26, "AD03"},
    {"KEY_F", orvex::KEY_F, 33, 3, 41, "AC04"},
    {"KEY_G", orvex::KEY_G, 34, 5, 42, "AC05"},
    {"KEY_H", orvex::KEY_H, 35, 4, 43, "AC06"},
    {"KEY_I", orvex::KEY_I, 23, 34, 31, "AD08"},
    {"KEY_J", orvex::KEY_J, 36, 38, 44, "AC07"},
    {"KEY_K", orvex::KEY_K, 37, 40, 45, "AC08"},
    {"KEY_L", orvex::KEY_L, 38, 37, 46, "AC09"},
    {"KEY_M", orvex::KEY_M, 50, 46, 58, "AB07"},
    {"KEY_N", orvex::KEY_N, 49, 45, 57, "AB06"},
    {"KEY_O", orvex::KEY_O, 24, 31, 32, "AD09"},
    {"KEY_P", orvex::KEY_P, 25, 35, 33, "AD10"},
    {"KEY_Q", orvex::KEY_Q, 16, 12, 24, "AD01"},
    {"KEY_R", orvex::KEY_R, 19, 15, 27, "AD04"},
    {"KEY_S", orvex::KEY_S, 31, 1, 39, "AC02"},
    {"KEY_T", orvex::KEY_T, 20, 17, 28, "AD05"},
    {"KEY_U", orvex::KEY_U, 22, 32, 30, "AD07"},
    {"KEY_V", orvex::KEY_V, 47, 9, 55, "AB04"},
    {"KEY_W", orvex::KEY_W, 17, 13, 25, "AD02"},
    {"KEY_X", orvex::KEY_X, 45, 7, 53, "AB02"},
    {"KEY_Y", orvex::KEY_Y, 21, 16, 29, "AD06"},
    {"KEY_Z", orvex::KEY_Z, 44, 6, 52, "AB01"},
    {"KEY_NUMPAD0", orvex::KEY_NUMPAD0, 82, 82, 90, "KP0"},
    {"KEY_NUMPAD1", orvex::KEY_NUMPAD1, 79, 83, 87, "KP1"},
    {"KEY_NUMPAD2", orvex::KEY_NUMPAD2, 80, 84, 88, "KP2"},
    {"KEY_NUMPAD3", orvex::KEY_NUMPAD3, 81, 85, 89, "KP3"},
    {"KEY_NUMPAD4", orvex::KEY_NUMPAD4, 75, 86, 83, "KP4"},
    {"KEY_NUMPAD5", orvex::KEY_NUMPAD5, 76, 87, 84, "KP5"},
    {"KEY_NUMPAD6", orvex::KEY_NUMPAD6, 77, 88, 85, "KP6"},
    {"KEY_NUMPAD7", orvex::KEY_NUMPAD7, 71, 89, 79, "KP7"},
    {"KEY_NUMPAD8", orvex::KEY_NUMPAD8, 72, 91, 80, "KP8"},
    {"KEY_NUMPAD9", orvex::KEY_NUMPAD9, 73, 92, 81, "KP9"},
    {"KEY_NUMPAD_ADD", orvex::KEY_NUMPAD_ADD, 78, 69, 86, "KPAD"},
    {"KEY_NUMPAD_SUBTRACT", orvex::KEY_NUMPAD_SUBTRACT, 74, 78, 82, "KPSU"},
    {"KEY_NUMPAD_DECIMAL", orvex::KEY_NUMPAD_DECIMAL, 83, 65, 91, "KPDL"},
    {"KEY_NUMPAD_EQUALS", orvex::KEY_NUMPAD_EQUALS, 141, 81, 125, "KPEQ"},
    {"KEY_NUMPAD_DIVIDE", orvex::KEY_NUMPAD_DIVIDE, 181, 75, 106, "KPDV"},
    {"KEY_NUMPAD_MULTIPLY", orvex::KEY_NUMPAD_MULTIPLY, 55, 67, 63, "KPMU"},
    {"KEY_NUMPAD_ENTER", orvex::KEY_NUMPAD_ENTER, 156, 76, 104, "KPEN"},
    {"KEY_MINUS", orvex::KEY_MINUS, 12, 27, 20, "AE11"},
    {"KEY_EQUALS", orvex::KEY_EQUALS, 13, 24, 21, "AE12"},
    {"KEY_SPACE", orvex::KEY_SPACE, 57, 49, 65, "SPCE"},
    {"KEY_COMMA", orvex::KEY_COMMA, 51, 43, 59, "AB08"},
    {"KEY_PERIOD", orvex::KEY_PERIOD, 52, 47, 60, "AB09"},
    {"KEY_BACKSLASH", orvex::KEY_BACKSLASH, 43, 42, 51, "BKSL"},
    {"KEY_SLASH", orvex::KEY_SLASH, 53, 44, 61, "AB10"},
    {"KEY_LEFT_BRACKET", orvex::KEY_LEFT_BRACKET, 26, 33, 34, "AD11"},
    {"KEY_RIGHT_BRACKET", orvex::KEY_RIGHT_BRACKET, 27, 30, 35, "AD12"},
    {"KEY_ESCAPE", orvex::KEY_ESCAPE, 1, 53, 9, "ESC"},
    {"KEY_CAPS_LOCK", orvex::KEY_CAPS_LOCK, 58, 57, 66, "CAPS"},
    {"KEY_TAB", orvex::KEY_TAB, 15, 48, 23, "TAB"},
    {"KEY_RETURN", orvex::KEY_RETURN, 28, 36, 36, "RTRN"},
};
// clang-format on
inline constexpr unsigned num_key_rows = sizeof key_rows / sizeof key_rows[0];

} // namespace orvex_test
