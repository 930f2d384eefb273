#pragma once

/// @file
/// A program with a window, run on an X server of the test's own, and used as somebody at the
/// screen would: its pixels are looked at, keys are hit, the pointer is moved.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "tests/support/picture.h"

namespace orvex_test {

/// Whether a sanitizer looks for memory that the program left behind. A toolkit that unloads the
/// driver at its end makes that a vain search: what the driver keeps can't be told from the rest.
enum class Leaks { looked_for, passed_over };

/// Starts a program and finds its window. Ends it, if it still runs, at its own end.
class WindowProgram {
public:
    /// @param command  the program's path, and its arguments
    explicit WindowProgram(const std::vector<std::string>& command,
                           Leaks leaks = Leaks::looked_for);
    ~WindowProgram();
    WindowProgram(const WindowProgram&) = delete;
    WindowProgram& operator=(const WindowProgram&) = delete;

    /// Whether a window came up.
    bool has_window() const { return window != 0; }
    /// Waits until the program has shown so many windows, those that are gone by now among them,
    /// and turns to one of them: what is looked at, hit and moved is that one from now on.
    /// @param number  from 0, in the order in which they came up
    bool turn_to_window(std::size_t number);
    /// Its number on the X server; 0 without one.
    unsigned long get_window() const { return window; }
    /// Turns to the window that came up last.
    void turn_to_last_window();
    int get_width() const;
    int get_height() const;

    /// What the window shows now, all of it opaque; empty when there is nothing to see.
    Picture pixels() const;
    /// Looks again and again until the picture is as wanted. A picture that never comes, or a
    /// program that ends, makes it false.
    bool wait_until(const std::function<bool(const Picture&)>& is_wanted);

    /// A key by its symbol, such as XK_Escape; it goes to the window.
    void press_key(unsigned long symbol);
    void release_key(unsigned long symbol);
    /// The pointer, in pixels of the window from its upper left corner.
    void move_pointer(int x, int y);
    void press_button(unsigned int button);
    void release_button(unsigned int button);
    void resize(int width, int height);
    /// Asks for the end, as the frame's button does.
    void close();

    /// Waits for the end. @return the exit code; -1 when it was ended by a signal, or never ends
    int exit_code();
    /// What it wrote to its standard streams; complete after `exit_code`.
    const std::string& get_output() const { return output; }

private:
    unsigned long window = 0;           ///< one of these
    std::vector<unsigned long> windows; ///< in the order in which they came up
    pid_t process = -1;
    int output_pipe = -1;
    std::string output;

    bool start(const std::vector<std::string>& command, Leaks leaks);
    void note_mapped();
    bool runs_on(int milliseconds);
};

} // namespace orvex_test
