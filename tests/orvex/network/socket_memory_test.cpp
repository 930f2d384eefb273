#include "orvex/network/socket_core.h"
#include "system_counts.h"
#include "tests/support/memory_runs_out.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(SocketMemory, a_socket_without_memory_for_its_record_is_closed) {
    SocketCore core;
    core.kill_socket(core.create_tcp_server_socket(0));
    const long descriptors = count_descriptors();
    Socket* listener = nullptr;
    const unsigned long refused =
        refuse_each_block([&] { listener = core.create_tcp_server_socket(0); },
                          [&] { EXPECT_EQ(count_descriptors(), descriptors); });
    EXPECT_GE(refused, 1u);
    ASSERT_TRUE(listener) << "the next try works";
    core.kill_socket(listener);
}

} // namespace
} // namespace orvex_test
