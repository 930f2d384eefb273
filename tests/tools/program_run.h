#pragma once

/// @file
/// Runs the tools and keeps what they say.

#include <optional>
#include <string>
#include <vector>

namespace orvex_test {

/// What a run gave.
struct Outcome {
    int code = -1;      ///< the exit code; -1 if it ended another way
    std::string out;    ///< standard output
    std::string errors; ///< standard error
};

/// Runs the program in a folder.
/// @param environment  settings as "NAME=value" that are added
Outcome run_render(const std::string& folder, const std::vector<std::string>& arguments,
                   const std::vector<std::string>& environment = {});

/// Runs orvex-view likewise, where the test has it.
Outcome run_view(const std::string& folder, const std::vector<std::string>& arguments,
                 const std::vector<std::string>& environment = {});

/// The same as `run_render` in a shell that has run another command first, as one that sets limits.
Outcome run_render_limited(const std::string& folder, const std::string& before,
                           const std::vector<std::string>& arguments);

/// The same with a terminal of 60 columns as its standard error.
Outcome run_render_on_terminal(const std::string& folder,
                               const std::vector<std::string>& arguments);

/// A shell's words on a file system in memory that nobody else sees, mounted at the folder `disk`
/// below: "$0" "$@" is the program with its arguments, `make_room` makes it larger.
/// @param kilobytes  what it takes until then
/// @return nothing where this user may mount none
std::optional<Outcome> run_render_on_disk(const std::string& folder, int kilobytes,
                                          const std::string& words,
                                          const std::vector<std::string>& arguments);

bool has(const std::string& text, const std::string& part);
/// Whether a text has a part that an extended POSIX expression tells.
bool has_match(const std::string& text, const std::string& expression);

/// The sample model.
std::string sample();

} // namespace orvex_test
