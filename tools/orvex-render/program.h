#pragma once

#include <string>
#include <vector>

/// How the program ends.
enum ExitCode : int {
    EXIT_FINE = 0,
    EXIT_FAILED = 1,       ///< the command line was right, and what it asks for went wrong, or the
                           ///< picture differs from the reference
    EXIT_USAGE = 2,        ///< the command line is wrong
    EXIT_NO_REFERENCE = 3, ///< there is nothing to compare with
};

/// The whole program, for the words behind its name.
ExitCode run_program(const std::vector<std::string>& words);
