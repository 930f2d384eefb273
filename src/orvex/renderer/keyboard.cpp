#include "orvex/renderer/keyboard.h"

#include <array>
#include <cstddef>
#include <map>

// The keys stand in one table with a column for each platform. A map leads from the engine's codes
// to the platform's, under which the states are kept, so that what the host notes and what the
// application asks meet in one array.

namespace orvex {

namespace {

/// A key with its place in each platform's numbering.
struct KeyRow {
    KeyCode key;
    unsigned char macintosh;
    unsigned char x11;
};

constexpr std::array key_rows = {
    KeyRow{KEY_UP, 126, 111},
    KeyRow{KEY_DOWN, 125, 116},
    KeyRow{KEY_LEFT, 123, 113},
    KeyRow{KEY_RIGHT, 124, 114},
    KeyRow{KEY_PAGE_UP, 116, 112},
    KeyRow{KEY_PAGE_DOWN, 121, 117},
    KeyRow{KEY_HOME, 115, 110},
    KeyRow{KEY_END, 119, 115},
    KeyRow{KEY_F1, 122, 67},
    KeyRow{KEY_F2, 120, 68},
    KeyRow{KEY_F3, 99, 69},
    KeyRow{KEY_F4, 118, 70},
    KeyRow{KEY_F5, 96, 71},
    KeyRow{KEY_F6, 97, 72},
    KeyRow{KEY_F7, 98, 73},
    KeyRow{KEY_F8, 100, 74},
    KeyRow{KEY_F9, 101, 75},
    KeyRow{KEY_F10, 109, 76},
    KeyRow{KEY_F11, 103, 95},
    KeyRow{KEY_F12, 111, 96},
    KeyRow{KEY_F13, 105, 191},
    KeyRow{KEY_F14, 107, 192},
    KeyRow{KEY_F15, 113, 193},
    KeyRow{KEY_1, 18, 10},
    KeyRow{KEY_2, 19, 11},
    KeyRow{KEY_3, 20, 12},
    KeyRow{KEY_4, 21, 13},
    KeyRow{KEY_5, 23, 14},
    KeyRow{KEY_6, 22, 15},
    KeyRow{KEY_7, 26, 16},
    KeyRow{KEY_8, 28, 17},
    KeyRow{KEY_9, 25, 18},
    KeyRow{KEY_0, 29, 19},
    KeyRow{KEY_A, 0, 38},
    KeyRow{KEY_B, 11, 56},
    KeyRow{KEY_C, 8, 54},
    KeyRow{KEY_D, 2, 40},
    KeyRow{KEY_E, 14, 26},
    KeyRow{KEY_F, 3, 41},
    KeyRow{KEY_G, 5, 42},
    KeyRow{KEY_H, 4, 43},
    KeyRow{KEY_I, 34, 31},
    KeyRow{KEY_J, 38, 44},
    KeyRow{KEY_K, 40, 45},
    KeyRow{KEY_L, 37, 46},
    KeyRow{KEY_M, 46, 58},
    KeyRow{KEY_N, 45, 57},
    KeyRow{KEY_O, 31, 32},
    KeyRow{KEY_P, 35, 33},
    KeyRow{KEY_Q, 12, 24},
    KeyRow{KEY_R, 15, 27},
    KeyRow{KEY_S, 1, 39},
    KeyRow{KEY_T, 17, 28},
    KeyRow{KEY_U, 32, 30},
    KeyRow{KEY_V, 9, 55},
    KeyRow{KEY_W, 13, 25},
    KeyRow{KEY_X, 7, 53},
    KeyRow{KEY_Y, 16, 29},
    KeyRow{KEY_Z, 6, 52},
    KeyRow{KEY_NUMPAD0, 82, 90},
    KeyRow{KEY_NUMPAD1, 83, 87},
    KeyRow{KEY_NUMPAD2, 84, 88},
    KeyRow{KEY_NUMPAD3, 85, 89},
    KeyRow{KEY_NUMPAD4, 86, 83},
    KeyRow{KEY_NUMPAD5, 87, 84},
    KeyRow{KEY_NUMPAD6, 88, 85},
    KeyRow{KEY_NUMPAD7, 89, 79},
    KeyRow{KEY_NUMPAD8, 91, 80},
    KeyRow{KEY_NUMPAD9, 92, 81},
    KeyRow{KEY_NUMPAD_ADD, 69, 86},
    KeyRow{KEY_NUMPAD_SUBTRACT, 78, 82},
    KeyRow{KEY_NUMPAD_DECIMAL, 65, 91},
    KeyRow{KEY_NUMPAD_EQUALS, 81, 125},
    KeyRow{KEY_NUMPAD_DIVIDE, 75, 106},
    KeyRow{KEY_NUMPAD_MULTIPLY, 67, 63},
    KeyRow{KEY_NUMPAD_ENTER, 76, 104},
    KeyRow{KEY_MINUS, 27, 20},
    KeyRow{KEY_EQUALS, 24, 21},
    KeyRow{KEY_SPACE, 49, 65},
    KeyRow{KEY_COMMA, 43, 59},
    KeyRow{KEY_PERIOD, 47, 60},
    KeyRow{KEY_BACKSLASH, 42, 51},
    KeyRow{KEY_SLASH, 44, 61},
    KeyRow{KEY_LEFT_BRACKET, 33, 34},
    KeyRow{KEY_RIGHT_BRACKET, 30, 35},
    KeyRow{KEY_ESCAPE, 53, 9},
    KeyRow{KEY_CAPS_LOCK, 57, 66},
    KeyRow{KEY_TAB, 48, 23},
    KeyRow{KEY_RETURN, 36, 36},
};
static_assert(key_rows.size() == 89);

#ifdef __APPLE__
constexpr KEYBOARD_LAYOUT native_layout = KEYBOARD_LAYOUT_MACINTOSH;
#else
constexpr KEYBOARD_LAYOUT native_layout = KEYBOARD_LAYOUT_X11;
#endif

} // namespace

struct Keyboard::KeyboardData {
    /// One state per platform code; 1 is down.
    std::array<char, 256> key_buffer = {};
    /// Platform codes. All of them come from the columns above, or are 0.
    std::map<KeyCode, unsigned int> key_map;

    void enter_missing(KEYBOARD_LAYOUT layout) {
        for (const KeyRow& row : key_rows)
            key_map.emplace(row.key, layout == KEYBOARD_LAYOUT_X11 ? row.x11 : row.macintosh);
    }

    /// The state that belongs to a key. A miss enters the key for the platform code 0.
    char& state_of(KeyCode key) { return key_buffer[key_map[key]]; }
};

Keyboard::Keyboard()
    : data(std::make_unique<KeyboardData>()) {}

Keyboard::~Keyboard() = default;

bool Keyboard::init() {
    data->enter_missing(native_layout);
    return true;
}

bool Keyboard::init(KEYBOARD_LAYOUT layout) {
    if (layout != KEYBOARD_LAYOUT_X11 && layout != KEYBOARD_LAYOUT_MACINTOSH)
        return false;
    data->key_map.clear();
    data->enter_missing(layout);
    return true;
}

bool Keyboard::set_virtual_key_state(int key, char state) {
    if (key >= 0 && static_cast<std::size_t>(key) < data->key_buffer.size())
        data->key_buffer[static_cast<std::size_t>(key)] = state;
    return true;
}

bool Keyboard::set_key_state(KeyCode key, char state) {
    data->state_of(key) = state;
    return true;
}

bool Keyboard::is_key_down(KeyCode key) {
    return data->state_of(key) == 1;
}

bool Keyboard::is_key_down_raw(unsigned int key) const {
    return key < data->key_buffer.size() && data->key_buffer[key] == 1;
}

bool Keyboard::is_virtual_key_down(int) const {
    return false;
}

bool Keyboard::update_key_buffer() {
    return true;
}

bool Keyboard::clear_key_buffer() {
    data->key_buffer.fill(0);
    return true;
}

} // namespace orvex
