#pragma once

/// @file
/// Texts of programs, made ready for a path, and what compilers say of them.

#include <string>
#include <vector>

#include "orvex_kit/path.h"

namespace orvex::kit {

/// A text for the engine, and where its lines come from.
class ProgramSource {
public:
    /// Puts the path's head before each stage that has no version of its own.
    ProgramSource(const std::string& text, Path path);

    const std::string& text() const { return whole; }
    /// The engine's messages, each line that names a line with `name` and its line in the text as
    /// it was given.
    std::string told(const std::string& messages, const std::string& name) const;

private:
    /// A stage in the text as it was given.
    struct Stage {
        std::string label; ///< as the engine's messages begin
        int first_line;    ///< in that text, of what compilers call line 1, counted from 1
    };

    std::string whole;
    std::vector<Stage> stages;
};

} // namespace orvex::kit
