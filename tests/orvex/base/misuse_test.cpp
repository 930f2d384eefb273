// Runs with ORVEX_TELL_MISUSE=1 in its environment, and once more without.

#include "orvex/base/private/misuse.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/base/plugin_mgr.h"
#include "orvex/base/private/memory_out.h"
#include "orvex/kernel/kernel.h"
#include "orvex/network/socket_core.h"
#include "orvex/network/tcp_server.h"
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

TEST(Misuse, of_the_foundations_and_the_roof_is_told) {
    const LogCapture log;
    EXPECT_FALSE(PluginMgr::get()->insert_plugin(nullptr));
    EXPECT_EQ(PluginMgr::get()->load_plugin(nullptr, true), -1);
    EXPECT_EQ(PluginMgr::get()->unload_plugin(-7), -1);
    EXPECT_FALSE(LogMgr::get()->kill_log(nullptr));
    LogMgr::get()->trace(nullptr);
    EXPECT_FALSE(Kernel::get()->plugin_search_path_add_dir(nullptr));
    EXPECT_FALSE(Kernel::get()->load_plugin(nullptr, false, false));
    std::vector<std::string> expected;
    if (is_wanted())
        expected = {"<!> misuse: PluginMgr::insert_plugin: a null plugin",
                    "<!> misuse: PluginMgr::load_plugin: a null file name",
                    "<!> misuse: PluginMgr::unload_plugin: no such plugin",
                    "<!> misuse: LogMgr::kill_log: no log of its own",
                    "<!> misuse: Log::trace: a null text",
                    "<!> misuse: Kernel::plugin_search_path_add_dir: a null directory",
                    "<!> misuse: Kernel::load_plugin: a null file name"};
    EXPECT_EQ(log.messages(), expected);
}

TEST(Misuse, of_sockets_is_told_and_the_end_of_a_closed_one_is_none) {
    const LogCapture log(LOG_LEVEL_WARNING);
    SocketCore core;
    EXPECT_FALSE(core.kill_socket(nullptr));
    EXPECT_EQ(core.send_socket(nullptr, "x", 1), 0);
    Socket* const closed = core.create_socket(SOCKET_TYPE_STREAM, SOCKET_PROTOCOL_TCP);
    EXPECT_EQ(core.send_socket(closed, "x", 0), 0);
    core.close_socket(closed);
    EXPECT_TRUE(core.kill_socket(closed));
    TcpServer server;
    EXPECT_FALSE(server.send_stop_message());
    std::vector<std::string> expected;
    if (is_wanted())
        expected = {"<!> misuse: SocketCore::kill_socket: a null socket",
                    "<!> misuse: SocketCore::send_socket: a null socket or buffer",
                    "<!> misuse: SocketCore::send_socket: a length below 1",
                    "<!> misuse: TcpServer::send_stop_message: a server that doesn't run"};
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
