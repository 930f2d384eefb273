#pragma once

/// @file
/// What the shared options become when a tool starts, and how it ends.

#include <string>

#include <orvex_kit/engine.h>
#include <orvex_kit/look.h>
#include <orvex_kit/model.h>
#include <orvex_kit/view.h>

#include "shared_options.h"

/// How a tool ends.
enum ExitCode : int {
    EXIT_FINE = 0,
    EXIT_FAILED = 1,       ///< the command line was right, and what it asks for went wrong
    EXIT_USAGE = 2,        ///< the command line is wrong
    EXIT_NO_REFERENCE = 3, ///< there is nothing to compare a picture with
    EXIT_MODELS = 3,       ///< some of many models are no good
    EXIT_TRY_AGAIN = 4,    ///< with some of many models, another try may go well
};

/// Tells an error. @return what the tool ends with then
ExitCode fail(const std::string& message);
/// Tells a mistake in the command line, and who helps. @return likewise
ExitCode fail_usage(const std::string& mistake);
/// Prints to standard output, all of it or a mistake.
ExitCode print(const std::string& text);
/// What `--version` prints.
std::string version_text();

/// How many messages are wanted.
void apply_wordiness(const SharedOptions& options);
/// The engine with its log on standard error; after `apply_wordiness`.
orvex::kit::EngineOptions engine_options(const SharedOptions& options);
/// Why the plugin that was asked for isn't there; empty if it is, or if none was.
std::string mistake_in_plugin(const orvex::kit::Engine& engine, const SharedOptions& options);

/// A view as the options want it.
orvex::kit::ViewOptions view_options(const SharedOptions& options);
/// Why there is no view, in the words of the options; empty if there is one.
std::string mistake_in(const orvex::kit::View& view);
/// Why the model's file can't be read; empty if it can.
std::string mistake_in_model(const SharedOptions& options);
/// A model as the options want it.
orvex::kit::ModelOptions model_options(const SharedOptions& options);
/// The look that a word of the command line means: one of the kit's, or a file.
orvex::kit::Look look_of(const std::string& word);
