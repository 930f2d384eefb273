#pragma once

#include "options.h"
#include "start.h"

namespace batch {

/// Draws entries as they come, on standard input or by a socket, and answers each: the whole
/// program, for options that say so. Standard input ends it, and so do signals.
ExitCode run_service(const Options& options);

} // namespace batch
