#include "x_server.h"

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvex_test {

namespace {

/// Becomes the server. It ends with the test if the test dies, and says nothing on its own.
[[noreturn]] void run_server(int display_pipe) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    const std::string descriptor = std::to_string(display_pipe);
    execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", "800x600x24",
           "-nolisten", "tcp", static_cast<char*>(nullptr));
    _exit(127);
}

/// The server writes its number once it is ready, with a line feed behind it.
std::string read_number(int pipe) {
    std::string number;
    char letter = 0;
    while (read(pipe, &letter, 1) == 1 && letter != '\n')
        number += letter;
    return number;
}

} // namespace

XServer::XServer() {
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0)
        return;
    process = fork();
    if (process == 0) {
        close(ends[0]);
        run_server(ends[1]);
    }
    close(ends[1]);
    const std::string number = read_number(ends[0]);
    close(ends[0]);
    if (number.empty())
        return;
    name = ":" + number;
    setenv("DISPLAY", name.c_str(), 1);
}

XServer::~XServer() {
    if (process <= 0)
        return;
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
}

XServer& XServer::get() {
    static XServer server;
    return server;
}

} // namespace orvex_test
