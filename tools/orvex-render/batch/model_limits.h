#pragma once

/// @file
/// What one model may take of the process that draws it, by the system's limits.

#include <cstdint>

#include "batch/batch_options.h"

namespace batch {

/// Limits of the calling process, model after model. Memory is counted from what the process has
/// when a model begins, so that each may take the same.
class ModelLimits {
public:
    /// Opens what peaks are measured by, which may not be opened later.
    explicit ModelLimits(const BatchOptions& limits);
    ~ModelLimits();
    ModelLimits(const ModelLimits&) = delete;
    ModelLimits& operator=(const ModelLimits&) = delete;

    /// For the next model. Those of memory are the system's where memory isn't counted by a
    /// sanitizer; the supervisor's look at resident memory holds everywhere.
    void begin();
    /// Takes the limit of memory away, for what tells of the model.
    void end();
    /// The most resident memory since `begin`, in bytes.
    std::uint64_t peak_bytes() const;

private:
    const std::uint64_t memory; ///< bytes; 0: no limit
    const float seconds;
    int peaks; ///< setting the peak back
};

/// What the process has, in bytes.
struct Memory {
    std::uint64_t addresses = 0;
    std::uint64_t resident = 0;
};
/// @param process  0: this one. @return 0 of both for one that isn't there
Memory memory_of(int process);

} // namespace batch
