#include "tests/orvex_kit/windows/wayland_screen.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <csignal>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvex_test {

namespace {

/// Each look takes a program's start and a picture's way through a file.
constexpr int most_looks = 300;

/// In the child: becomes a program, which ends with the test if the test dies.
[[noreturn]] void become(std::vector<std::string> command, std::vector<std::string> environment) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    // A name without a value goes.
    for (std::string& setting : environment)
        putenv(setting.data());
    std::vector<char*> words;
    for (std::string& word : command)
        words.push_back(word.data());
    words.push_back(nullptr);
    execvp(words[0], words.data());
    _exit(127);
}

bool is_at(const Picture& part, const Picture& whole, int left, int top) {
    const auto bytes = static_cast<std::size_t>(part.width) * 4;
    for (int y = 0; y < part.height; ++y)
        if (std::memcmp(part.at(0, y), whole.at(left, top + y), bytes) != 0)
            return false;
    return true;
}

bool is_somewhere(const Picture& part, const Picture& whole) {
    for (int top = 0; top + part.height <= whole.height; ++top)
        for (int left = 0; left + part.width <= whole.width; ++left)
            if (is_at(part, whole, left, top))
                return true;
    return false;
}

} // namespace

WaylandScreen::WaylandScreen(int scale) {
    start({"weston", "--backend=headless-backend.so", "--use-pixman", "--shell=desktop-shell.so",
           "--width=400", "--height=300", "--scale=" + std::to_string(scale), "--socket=test",
           "--no-config", "--idle-time=0", "--debug"}, // or nobody may look at the screen
          {});
    // A program that finds no compositor as yet gives up.
    for (int i = 0; i < most_looks && last.width == 0 && runs_on(); ++i) {
        usleep(10000);
        look();
    }
}

WaylandScreen::~WaylandScreen() {
    while (!processes.empty()) {
        kill(processes.back(), SIGTERM);
        waitpid(processes.back(), nullptr, 0);
        processes.pop_back();
    }
}

void WaylandScreen::start(const std::vector<std::string>& command,
                          const std::vector<std::string>& environment) {
    std::vector<std::string> settings = environment;
    settings.insert(settings.end(), {"XDG_RUNTIME_DIR=" + folder.path(), "WAYLAND_DISPLAY=test"});
    const pid_t process = fork();
    if (process == 0)
        become(command, settings);
    if (process > 0)
        processes.push_back(process);
}

/// The program writes its picture into the folder that it is started in.
void WaylandScreen::look() {
    const std::string command = "cd '" + folder.path() + "' && XDG_RUNTIME_DIR='" + folder.path() +
                                "' WAYLAND_DISPLAY=test weston-screenshooter >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0)
        return;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        if (entry.path().extension() == ".png") {
            last = read_picture(entry.path().string()).value_or(Picture());
            std::filesystem::remove(entry.path());
            return;
        }
}

/// @return whether the screen and all programs do still
bool WaylandScreen::runs_on() {
    return std::erase_if(processes, [](pid_t process) {
               return waitpid(process, nullptr, WNOHANG) == process;
           }) == 0;
}

bool WaylandScreen::shows(const Picture& wanted) {
    for (int i = 0; i < most_looks && runs_on(); ++i) {
        look();
        if (is_somewhere(wanted, last))
            return true;
        usleep(10000);
    }
    return false;
}

} // namespace orvex_test
