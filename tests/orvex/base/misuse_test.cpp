// Runs with ORVEX_TELL_MISUSE=1 in its environment, and once more without.

#include "orvex/base/private/misuse.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/base/private/memory_out.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

bool is_wanted() {
    return std::getenv("ORVEX_TELL_MISUSE");
}

TEST(Misuse, is_told_once_for_each_operation_and_what_it_met) {
    const LogCapture log;
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(misuse("Node::add_child", "a null child"));
        EXPECT_FALSE(misuse("Node::add_child", "itself"));
    }
    std::vector<std::string> expected;
    if (is_wanted())
        expected = {"<!> misuse: Node::add_child: a null child",
                    "<!> misuse: Node::add_child: itself"};
    EXPECT_EQ(log.messages(), expected);
}

TEST(Misuse, needs_no_log) {
    EXPECT_FALSE(misuse("Camera::set_fov", "an angle that is not finite"));
}

TEST(MemoryOut, gives_what_the_work_gives) {
    EXPECT_TRUE(or_false([] { return true; }));
    EXPECT_FALSE(or_false([] { return false; }));
}

TEST(MemoryOut, undoes_only_what_was_cut_off) {
    int undone = 0;
    EXPECT_TRUE(or_undo([] { return true; }, [&] { ++undone; }));
    EXPECT_EQ(undone, 0);
    EXPECT_FALSE(or_undo([]() -> bool { throw std::bad_alloc(); }, [&] { ++undone; }));
    EXPECT_EQ(undone, 1);
}

} // namespace

} // namespace orvex_test
