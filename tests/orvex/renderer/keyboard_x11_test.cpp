// The X11 codes against the keymap of a running server. Keys are told by the names of their places:
// which symbol a place has depends on the keymap, and some places have none.

#include <map>
#include <string>

#include <gtest/gtest.h>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>

#include "keyboard_rows.h"
#include "tests/support/x_server.h"

namespace orvex_test {

namespace {

using orvex_test::key_rows;
using orvex_test::KeyRow;

/// What each key code's place is called.
std::map<unsigned, std::string> names_of_places(Display* display) {
    std::map<unsigned, std::string> names;
    XkbDescRec* const keyboard = XkbGetMap(display, 0, XkbUseCoreKbd);
    if (!keyboard)
        return names;
    if (XkbGetNames(display, XkbKeyNamesMask, keyboard) == Success)
        for (unsigned code = keyboard->min_key_code; code <= keyboard->max_key_code; ++code) {
            const std::string padded(keyboard->names->keys[code].name, XkbKeyNameLength);
            names[code] = padded.c_str();
        }
    XkbFreeKeyboard(keyboard, 0, True);
    return names;
}

TEST(KeyboardX11, has_the_codes_of_a_running_server) {
    Display* const display = XOpenDisplay(orvex_test::XServer::get().display().c_str());
    ASSERT_NE(display, nullptr) << "no X server";
    std::map<unsigned, std::string> names = names_of_places(display);
    for (const KeyRow& row : key_rows) {
        EXPECT_EQ(names[row.x11], row.xkb_name) << row.name;
        orvex::Keyboard keyboard;
        keyboard.init();
        keyboard.set_virtual_key_state(static_cast<int>(row.x11), 1);
        EXPECT_TRUE(keyboard.is_key_down(row.key)) << row.name;
    }
    XCloseDisplay(display);
}

} // namespace

} // namespace orvex_test
