// The system's macros come first, as in a host that reads event devices itself.
#include <linux/input.h>

#include "orvex/renderer/keyboard.h"

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

#ifndef KEY_HOME
#error "the macros of <linux/input.h> have to stand behind the header"
#endif
constexpr int home_of_the_system = KEY_HOME;

#undef KEY_HOME
#undef KEY_A
constexpr orvex::KeyCode home = orvex::KEY_HOME;
constexpr orvex::KeyCode letter_a = orvex::KEY_A;

TEST(KeyboardMacros, leaves_those_of_the_system_as_they_were) {
    EXPECT_EQ(home_of_the_system, 102);
    EXPECT_EQ(KEY_END, 107);
    EXPECT_EQ(KEY_F13, 183);
}

TEST(KeyboardMacros, has_its_constants_where_they_are_undefined) {
    EXPECT_EQ(home, 199u);
    EXPECT_EQ(letter_a, 30u);
    orvex::Keyboard keyboard;
    keyboard.init();
    keyboard.set_key_state(home, 1);
    EXPECT_TRUE(keyboard.is_key_down(199));
}

} // namespace

} // namespace orvex_test
