#include "wayland_server.h"

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <wayland-client.h>

namespace orvex_test {

namespace {

/// Becomes the compositor. It ends with the test if the test dies.
[[noreturn]] void run_server(const std::string& folder, int log) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    dup2(log, STDOUT_FILENO);
    dup2(log, STDERR_FILENO);
    execlp("weston", "weston", "--backend=headless-backend.so", "--shell=kiosk-shell.so",
           "--socket=test", "--no-config", "--idle-time=0", static_cast<char*>(nullptr));
    _exit(127);
}

/// Reads what the compositor says, for a moment. @return false once it has ended
bool runs_on(int log) {
    pollfd waiting = {log, POLLIN, 0};
    if (poll(&waiting, 1, 10) <= 0)
        return true;
    std::array<char, 512> part;
    return read(log, part.data(), part.size()) > 0;
}

void note_global(void* compositor, wl_registry* registry, std::uint32_t name, const char* interface,
                 std::uint32_t) {
    if (std::strcmp(interface, "wl_compositor") == 0)
        *static_cast<wl_compositor**>(compositor) = static_cast<wl_compositor*>(
            wl_registry_bind(registry, name, &wl_compositor_interface, 3));
}

void forget_global(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener listener = {note_global, forget_global};

} // namespace

WaylandServer::WaylandServer() {
    folder = (std::filesystem::temp_directory_path() / "orvex_test_XXXXXX").string();
    int ends[2] = {-1, -1};
    if (!mkdtemp(folder.data()) || pipe2(ends, O_CLOEXEC) != 0)
        return;
    log_pipe = ends[0];
    process = fork();
    if (process == 0)
        run_server(folder, ends[1]);
    close(ends[1]);
    connect();
}

/// The socket comes at some time before the compositor is ready, and then takes connections.
void WaylandServer::connect() {
    const std::string socket = folder + "/test";
    for (int look = 0; look < 3000 && !display && runs_on(log_pipe); ++look)
        display = wl_display_connect(socket.c_str());
    if (!display)
        return;
    wl_registry* const registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &listener, &surfaces);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
}

WaylandServer::~WaylandServer() {
    if (process > 0) {
        kill(process, SIGTERM);
        waitpid(process, nullptr, 0);
    }
    close(log_pipe);
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

WaylandServer& WaylandServer::get() {
    static WaylandServer server;
    return server;
}

} // namespace orvex_test
