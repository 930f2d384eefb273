#pragma once

#include "options.h"
#include "start.h"

namespace batch {

/// Draws a manifest or a list of models: the whole program, for options that say so.
ExitCode run_batch(const Options& options);

} // namespace batch
