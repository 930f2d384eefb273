#pragma once

/// @file
/// Where verdicts go.

#include <string>

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
};

} // namespace batch
