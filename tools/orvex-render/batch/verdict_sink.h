#pragma once

/// @file
/// Where verdicts go.

#include <string>

#include "batch/entry.h"
#include "batch/verdict.h"

namespace batch {

/// Takes the verdicts of a batch, in any order. One thread.
class VerdictSink {
public:
    VerdictSink() = default;
    virtual ~VerdictSink() = default;
    VerdictSink(const VerdictSink&) = delete;
    VerdictSink& operator=(const VerdictSink&) = delete;

    /// Writes one, whole.
    /// @return what went wrong, as a sentence without a stop; empty if nothing did
    virtual std::string put(const Verdict& verdict) = 0;
    /// Writes the one of an entry, for those who have to know whose it is.
    /// @return as `put`
    virtual std::string answer(const Entry& entry, const Verdict& verdict) {
        static_cast<void>(entry);
        return put(verdict);
    }
};

} // namespace batch
