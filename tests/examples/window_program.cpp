#include "window_program.h"

#include <array>
#include <csignal>
#include <cstdlib>

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/x_window.h"

namespace orvex_test {

namespace {

/// How often is looked before a test gives up; each look waits a moment for the program.
constexpr int most_looks = 1500;
constexpr int moment_ms = 10;

/// A window may go while it is looked at.
int ignore_error(Display*, XErrorEvent*) {
    return 0;
}

Display* connect() {
    Display* const display = x_connection();
    if (!display)
        return nullptr;
    XSetErrorHandler(ignore_error);
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    return display;
}

/// The test's own connection, for the life of the process.
Display* connection() {
    static Display* const display = connect();
    return display;
}

void pass_over_leaks() {
    const char* const options = std::getenv("ASAN_OPTIONS");
    const std::string more = std::string(options ? options : "") + ":detect_leaks=0";
    setenv("ASAN_OPTIONS", more.c_str(), 1);
}

[[noreturn]] void run(std::vector<std::string> command, Leaks leaks, int output) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (leaks == Leaks::passed_over)
        pass_over_leaks();
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (std::string& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(127);
}

} // namespace

WindowProgram::WindowProgram(const std::vector<std::string>& command, Leaks leaks) {
    if (connection() && start(command, leaks))
        turn_to_window(0);
}

WindowProgram::~WindowProgram() {
    if (process > 0) {
        kill(process, SIGTERM);
        waitpid(process, nullptr, 0);
    }
    if (output_pipe >= 0)
        ::close(output_pipe);
    // What is left of this program's window isn't the next one's.
    if (connection())
        XSync(connection(), True);
}

bool WindowProgram::start(const std::vector<std::string>& command, Leaks leaks) {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0)
        return false;
    output_pipe = ends[0];
    process = fork();
    if (process == 0)
        run(command, leaks, ends[1]);
    ::close(ends[1]);
    return process > 0;
}

/// Takes in what the program writes for a moment. @return false once it has ended
bool WindowProgram::runs_on(int milliseconds) {
    pollfd waiting = {output_pipe, POLLIN, 0};
    if (poll(&waiting, 1, milliseconds) <= 0)
        return true;
    std::array<char, 512> part;
    const ssize_t count = read(output_pipe, part.data(), part.size());
    if (count <= 0)
        return false;
    output.append(part.data(), static_cast<std::size_t>(count));
    return true;
}

/// Takes the windows that are large enough to look at: toolkits have small ones of their own.
void WindowProgram::note_mapped() {
    while (XPending(connection()) > 0) {
        XEvent event;
        XNextEvent(connection(), &event);
        XWindowAttributes attributes = {};
        if (event.type == MapNotify &&
            XGetWindowAttributes(connection(), event.xmap.window, &attributes) &&
            attributes.c_class == InputOutput && attributes.width >= 32)
            windows.push_back(event.xmap.window);
    }
}

bool WindowProgram::turn_to_window(std::size_t number) {
    for (int look = 0; look < most_looks && windows.size() <= number && runs_on(moment_ms); ++look)
        note_mapped();
    if (windows.size() <= number)
        return false;
    window = windows[number];
    return true;
}

void WindowProgram::turn_to_last_window() {
    note_mapped();
    if (!windows.empty())
        window = windows.back();
}

int WindowProgram::get_width() const {
    XWindowAttributes attributes = {};
    return XGetWindowAttributes(connection(), window, &attributes) ? attributes.width : 0;
}

int WindowProgram::get_height() const {
    XWindowAttributes attributes = {};
    return XGetWindowAttributes(connection(), window, &attributes) ? attributes.height : 0;
}

Picture WindowProgram::pixels() const {
    const int width = get_width();
    const int height = get_height();
    if (width < 1 || height < 1)
        return {};
    return x_pixels(window, width, height);
}

bool WindowProgram::wait_until(const std::function<bool(const Picture&)>& is_wanted) {
    for (int look = 0; look < most_looks && runs_on(moment_ms); ++look)
        if (is_wanted(pixels()))
            return true;
    return false;
}

/// Without a window manager nobody gives a window the keyboard.
void WindowProgram::press_key(unsigned long symbol) {
    XSetInputFocus(connection(), window, RevertToParent, CurrentTime);
    XTestFakeKeyEvent(connection(), XKeysymToKeycode(connection(), symbol), True, CurrentTime);
    XSync(connection(), False);
}

void WindowProgram::release_key(unsigned long symbol) {
    XTestFakeKeyEvent(connection(), XKeysymToKeycode(connection(), symbol), False, CurrentTime);
    XSync(connection(), False);
}

void WindowProgram::move_pointer(int x, int y) {
    int root_x = 0;
    int root_y = 0;
    ::Window child = 0;
    XTranslateCoordinates(connection(), window, DefaultRootWindow(connection()), x, y, &root_x,
                          &root_y, &child);
    XTestFakeMotionEvent(connection(), -1, root_x, root_y, CurrentTime);
    XSync(connection(), False);
}

void WindowProgram::press_button(unsigned int button) {
    XTestFakeButtonEvent(connection(), button, True, CurrentTime);
    XSync(connection(), False);
}

void WindowProgram::release_button(unsigned int button) {
    XTestFakeButtonEvent(connection(), button, False, CurrentTime);
    XSync(connection(), False);
}

void WindowProgram::resize(int width, int height) {
    XResizeWindow(connection(), window, static_cast<unsigned>(width),
                  static_cast<unsigned>(height));
    XSync(connection(), False);
}

void WindowProgram::close() {
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(connection(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] =
        static_cast<long>(XInternAtom(connection(), "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(connection(), window, False, NoEventMask, &event);
    XSync(connection(), False);
}

int WindowProgram::exit_code() {
    int looks = 0;
    while (looks < most_looks && runs_on(moment_ms))
        ++looks;
    if (process <= 0 || looks == most_looks)
        return -1;
    int status = 0;
    waitpid(process, &status, 0);
    process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace orvex_test
