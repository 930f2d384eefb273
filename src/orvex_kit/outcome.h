#pragma once

/// @file
/// How the kit's operations tell that they failed, and why.

#include <string>
#include <utility>

namespace orvex::kit {

/// What became of an operation: that all went well, or why it didn't. A value, to be looked at; any
/// thread.
///
/// @code
/// const kit::Outcome outcome = kit::Outcome::failure("can't write a.png: no room");
/// if (!outcome)
///     std::fprintf(stderr, "%s\n", outcome.reason().c_str());
/// @endcode
class [[nodiscard]] Outcome {
public:
    /// All went well.
    Outcome() noexcept = default;
    /// All went well. Needs no memory.
    static Outcome success() noexcept { return {}; }
    /// It failed.
    /// @param reason  a sentence without a full stop that names what it is about, such as the file;
    ///                an empty one becomes "it failed, and nobody said why"
    static Outcome failure(std::string reason) {
        Outcome outcome;
        outcome.why = reason.empty() ? "it failed, and nobody said why" : std::move(reason);
        return outcome;
    }

    /// Whether all went well.
    explicit operator bool() const noexcept { return why.empty(); }
    /// Why it failed; empty if all went well. Valid as long as this outcome is.
    const std::string& reason() const noexcept { return why; }

private:
    std::string why;
};

} // namespace orvex::kit
