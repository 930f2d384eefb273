#pragma once

#include <string>

#include "scenarios.h"

/// @file
/// One scenario with one kind of fault, at each place where it can be met.

namespace orvex_test {

inline constexpr FaultKind all_kinds[] = {FaultKind::memory, FaultKind::system,
                                          FaultKind::short_count, FaultKind::graphics};
const char* name_of(FaultKind kind);

/// Which faults are tried.
struct Choice {
    unsigned long at_most = never; ///< evenly spread over all
    unsigned long only = never;    ///< this one alone
};

/// What came of the faults of a row.
struct Tally {
    unsigned tried = 0;
    unsigned crashes = 0;
    unsigned hangs = 0;
    unsigned leaks = 0;
    unsigned lies = 0; ///< a success with other values or pictures, or a second try that fails
    unsigned exceptions = 0; ///< `std::bad_alloc` passed on where that is promised
    unsigned quiet = 0;      ///< OpenGL made something that it said nothing of: another picture
    std::string text;        ///< one line for each thing that was found

    bool is_clean() const { return crashes + hangs + leaks + lies == 0; }
};

/// Plays a scenario in a process of its own, with one fault after the other, and in another process
/// from the next fault on when one ended it.
Tally try_faults(const Scenario& scenario, FaultKind kind, const Choice& choice);

void print_head();
void print_row(const Scenario& scenario, FaultKind kind, const Tally& tally);

} // namespace orvex_test
