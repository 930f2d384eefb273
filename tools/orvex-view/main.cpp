// Shows a model file in a window.

#include <csignal>

#include <orvex_kit/whole_file.h>

#include "program.h"

int main(int argc, char** argv) {
    // A file that may not grow further is told of in the end, as a full disk is.
    std::signal(SIGXFSZ, SIG_IGN);
    orvex::kit::remove_new_files_on_signals();
    return run_program({argv + 1, argv + argc});
}
