#pragma once

#include <string>
#include <vector>

#include "start.h"

/// The whole program, for the words behind its name.
ExitCode run_program(const std::vector<std::string>& words);
