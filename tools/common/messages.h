#pragma once

#include <string>

/// Which messages are wanted on standard error.
enum class Wordiness {
    quiet,   ///< errors that end the program
    normal,  ///< warnings too, the engine's among them, and what was written
    verbose, ///< the engine's whole log
};

/// What stands before each message; set before the first one.
void set_program_name(const std::string& name);
const std::string& program_name();

/// Sets what is wanted from here on.
void set_wordiness(Wordiness wordiness);
Wordiness get_wordiness();

/// "orvex-render: message", by the name of the program, always.
void tell_error(const std::string& message);
/// "orvex-render: warning: message", likewise, unless quiet.
void tell_warning(const std::string& message);
/// The message alone, unless quiet.
void tell(const std::string& message);

/// The engine's log line as it is shown, without its stamp unless everything is; empty if it isn't.
std::string shown_log_line(const std::string& line, Wordiness wordiness);
/// Receives the engine's log.
void take_log_line(const std::string& line);
