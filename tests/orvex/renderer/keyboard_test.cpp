#include "orvex/renderer/keyboard.h"

#include <climits>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "keyboard_rows.h"

namespace orvex_test {

using namespace orvex;

namespace {

using orvex_test::key_rows;
using orvex_test::KeyRow;
using orvex_test::num_key_rows;

/// The platform codes that are down.
std::vector<unsigned> codes_down(Keyboard& keyboard) {
    std::vector<unsigned> codes;
    for (unsigned code = 0; code < 256; ++code)
        if (keyboard.is_key_down_raw(code))
            codes.push_back(code);
    return codes;
}

/// The platform code behind a key: the one that goes down with it.
std::vector<unsigned> codes_of(Keyboard& keyboard, KeyCode key) {
    keyboard.clear_key_buffer();
    EXPECT_TRUE(keyboard.set_key_state(key, 1));
    const std::vector<unsigned> codes = codes_down(keyboard);
    keyboard.clear_key_buffer();
    return codes;
}

using Codes = std::vector<unsigned>;

TEST(KeyboardRows, name_each_of_the_89_keys_once) {
    std::set<unsigned> keys;
    std::set<unsigned> macintosh;
    std::set<unsigned> x11;
    for (const KeyRow& row : key_rows) {
        keys.insert(row.code);
        macintosh.insert(row.macintosh);
        x11.insert(row.x11);
    }
    EXPECT_EQ(num_key_rows, 89u);
    EXPECT_EQ(keys.size(), 89u);
    EXPECT_EQ(macintosh.size(), 89u);
    EXPECT_EQ(x11.size(), 89u);
}

TEST(Keyboard, gives_each_key_its_number) {
    for (const KeyRow& row : key_rows)
        EXPECT_EQ(row.key, row.code) << row.name;
}

TEST(Keyboard, has_all_keys_up_at_first) {
    Keyboard keyboard;
    EXPECT_EQ(codes_down(keyboard), Codes());
}

TEST(Keyboard, leads_every_key_to_code_0_before_it_is_filled) {
    Keyboard keyboard;
    for (const KeyRow& row : key_rows)
        EXPECT_EQ(codes_of(keyboard, row.key), Codes({0})) << row.name;
}

TEST(Keyboard, enters_the_x11_codes_on_linux) {
    Keyboard keyboard;
    EXPECT_TRUE(keyboard.init());
    for (const KeyRow& row : key_rows)
        EXPECT_EQ(codes_of(keyboard, row.key), Codes({row.x11})) << row.name;
}

TEST(Keyboard, enters_a_layout_by_its_name) {
    Keyboard keyboard;
    EXPECT_TRUE(keyboard.init(KEYBOARD_LAYOUT_MACINTOSH));
    for (const KeyRow& row : key_rows)
        EXPECT_EQ(codes_of(keyboard, row.key), Codes({row.macintosh})) << row.name;
    EXPECT_TRUE(keyboard.init(KEYBOARD_LAYOUT_X11));
    for (const KeyRow& row : key_rows)
        EXPECT_EQ(codes_of(keyboard, row.key), Codes({row.x11})) << row.name;
}

TEST(Keyboard, refuses_a_number_that_is_no_layout_and_stays_as_it_was) {
    Keyboard keyboard;
    keyboard.init(KEYBOARD_LAYOUT_MACINTOSH);
    for (const int number : {-1, 2, INT_MAX, INT_MIN})
        EXPECT_FALSE(keyboard.init(static_cast<KEYBOARD_LAYOUT>(number))) << number;
    EXPECT_EQ(codes_of(keyboard, KEY_UP), Codes({126}));
}

TEST(Keyboard, keeps_its_codes_when_it_is_filled_again) {
    Keyboard keyboard;
    keyboard.init(KEYBOARD_LAYOUT_MACINTOSH);
    EXPECT_TRUE(keyboard.init());
    for (const KeyRow& row : key_rows)
        EXPECT_EQ(codes_of(keyboard, row.key), Codes({row.macintosh})) << row.name;
}

TEST(Keyboard, keeps_code_0_for_a_key_asked_for_before_it_is_filled) {
    Keyboard keyboard;
    EXPECT_FALSE(keyboard.is_key_down(KEY_UP));
    keyboard.set_key_state(KEY_Z, 0);
    keyboard.init();
    EXPECT_EQ(codes_of(keyboard, KEY_UP), Codes({0}));
    EXPECT_EQ(codes_of(keyboard, KEY_Z), Codes({0}));
    EXPECT_EQ(codes_of(keyboard, KEY_DOWN), Codes({116}));
}

TEST(Keyboard, forgets_all_codes_when_a_layout_is_named_and_keeps_the_keys_that_are_down) {
    Keyboard keyboard;
    EXPECT_FALSE(keyboard.is_key_down(KEY_UP));
    keyboard.set_virtual_key_state(126, 1);
    keyboard.set_virtual_key_state(111, 1);
    keyboard.init(KEYBOARD_LAYOUT_MACINTOSH);
    EXPECT_TRUE(keyboard.is_key_down(KEY_UP));
    EXPECT_EQ(codes_down(keyboard), Codes({111, 126}));
}

TEST(Keyboard, tells_a_key_by_the_platforms_code) {
    Keyboard keyboard;
    keyboard.init(KEYBOARD_LAYOUT_MACINTOSH);
    EXPECT_TRUE(keyboard.set_virtual_key_state(126, 1));
    EXPECT_TRUE(keyboard.is_key_down(KEY_UP));
    EXPECT_TRUE(keyboard.is_key_down_raw(126));
    EXPECT_FALSE(keyboard.is_key_down(KEY_DOWN));
    EXPECT_EQ(codes_down(keyboard), Codes({126}));
    EXPECT_TRUE(keyboard.set_virtual_key_state(126, 0));
    EXPECT_FALSE(keyboard.is_key_down(KEY_UP));
    EXPECT_FALSE(keyboard.is_key_down_raw(126));
}

TEST(Keyboard, tells_each_key_by_the_code_of_an_x11_event) {
    Keyboard keyboard;
    keyboard.init();
    for (const KeyRow& row : key_rows) {
        keyboard.set_virtual_key_state(static_cast<int>(row.x11), 1);
        for (const KeyRow& other : key_rows)
            EXPECT_EQ(keyboard.is_key_down(other.key), other.key == row.key)
                << row.name << " " << other.name;
        keyboard.set_virtual_key_state(static_cast<int>(row.x11), 0);
    }
}

TEST(Keyboard, takes_nothing_but_1_for_down) {
    Keyboard keyboard;
    keyboard.init(KEYBOARD_LAYOUT_MACINTOSH);
    for (const char state : {char(2), char(-1), char(0), char(CHAR_MAX), char(CHAR_MIN)}) {
        EXPECT_TRUE(keyboard.set_virtual_key_state(126, state));
        EXPECT_FALSE(keyboard.is_key_down(KEY_UP)) << int(state);
        EXPECT_FALSE(keyboard.is_key_down_raw(126)) << int(state);
        EXPECT_TRUE(keyboard.set_key_state(KEY_UP, state));
        EXPECT_FALSE(keyboard.is_key_down(KEY_UP)) << int(state);
    }
}

TEST(Keyboard, takes_all_keys_up_and_keeps_the_codes) {
    Keyboard keyboard;
    keyboard.init(KEYBOARD_LAYOUT_MACINTOSH);
    for (int code = 0; code < 256; ++code)
        keyboard.set_virtual_key_state(code, 1);
    EXPECT_EQ(codes_down(keyboard).size(), 256u);
    EXPECT_TRUE(keyboard.clear_key_buffer());
    EXPECT_EQ(codes_down(keyboard), Codes());
    for (const KeyRow& row : key_rows)
        EXPECT_FALSE(keyboard.is_key_down(row.key)) << row.name;
    EXPECT_EQ(codes_of(keyboard, KEY_UP), Codes({126}));
}

TEST(Keyboard, reads_code_0_for_an_unknown_key) {
    Keyboard keyboard;
    keyboard.init(KEYBOARD_LAYOUT_MACINTOSH);
    EXPECT_FALSE(keyboard.is_key_down(90));
    keyboard.set_virtual_key_state(0, 1);
    EXPECT_TRUE(keyboard.is_key_down(90));
    EXPECT_TRUE(keyboard.is_key_down(UINT_MAX));
    EXPECT_TRUE(keyboard.is_key_down(KEY_A));
}

TEST(Keyboard, writes_code_0_for_an_unknown_key) {
    Keyboard keyboard;
    keyboard.init(KEYBOARD_LAYOUT_MACINTOSH);
    EXPECT_TRUE(keyboard.set_key_state(90, 1));
    EXPECT_TRUE(keyboard.is_key_down(KEY_A));
    EXPECT_EQ(codes_down(keyboard), Codes({0}));
    EXPECT_TRUE(keyboard.set_key_state(UINT_MAX, 0));
    EXPECT_FALSE(keyboard.is_key_down(KEY_A));
}

TEST(Keyboard, has_no_key_at_code_0_on_linux) {
    Keyboard keyboard;
    keyboard.init();
    keyboard.set_key_state(90, 1);
    for (const KeyRow& row : key_rows)
        EXPECT_FALSE(keyboard.is_key_down(row.key)) << row.name;
    EXPECT_TRUE(keyboard.is_key_down(90));
}

TEST(Keyboard, ignores_codes_that_no_platform_has) {
    Keyboard keyboard;
    keyboard.init();
    for (const int code : {-1, 256, 1000000, INT_MAX, INT_MIN}) {
        EXPECT_TRUE(keyboard.set_virtual_key_state(code, 1)) << code;
        EXPECT_FALSE(keyboard.is_key_down_raw(static_cast<unsigned>(code))) << code;
    }
    EXPECT_EQ(codes_down(keyboard), Codes());
}

TEST(Keyboard, reaches_its_first_and_last_codes) {
    Keyboard keyboard;
    keyboard.set_virtual_key_state(0, 1);
    keyboard.set_virtual_key_state(255, 1);
    EXPECT_EQ(codes_down(keyboard), Codes({0, 255}));
}

TEST(Keyboard, asks_no_device) {
    Keyboard keyboard;
    keyboard.init(KEYBOARD_LAYOUT_MACINTOSH);
    keyboard.set_virtual_key_state(126, 1);
    for (const int code : {126, 0, 255, -1, 256, INT_MIN})
        EXPECT_FALSE(keyboard.is_virtual_key_down(code)) << code;
    EXPECT_TRUE(keyboard.update_key_buffer());
    EXPECT_EQ(codes_down(keyboard), Codes({126}));
}

TEST(Keyboard, shares_nothing_with_another) {
    Keyboard one;
    Keyboard other;
    one.init();
    one.set_key_state(KEY_UP, 1);
    other.init(KEYBOARD_LAYOUT_MACINTOSH);
    EXPECT_TRUE(one.is_key_down(KEY_UP));
    EXPECT_FALSE(other.is_key_down(KEY_UP));
}

} // namespace

} // namespace orvex_test
