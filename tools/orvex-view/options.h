#pragma once

#include <string>
#include <vector>

#include <orvex_kit/layers.h>

#include "shared_options.h"

/// What the command line asks for. The model may be left out.
struct Options : SharedOptions {
    orvex::kit::Layer layer = orvex::kit::Layer::color; ///< that is shown first
    bool statistics = false;                            ///< from the beginning
    bool bare = false;                                  ///< without text over the model
};

/// Adds the rules of the command line, which fill `options`.
void add_rules(Arguments& rules, Options& options);

/// Reads the command line. Looks at no file.
/// @return what is wrong with it; empty if nothing is
std::string read_options(const std::vector<std::string>& words, Options& options);

/// What `--help` prints.
std::string help_text();
