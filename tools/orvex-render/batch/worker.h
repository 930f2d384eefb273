#pragma once

/// @file
/// The process that draws: entries in, verdicts out.

#include <atomic>

#include "batch/batch_options.h"
#include "options.h"

namespace batch {

/// What a worker leaves where its supervisor can read it when the worker has died. Lies in memory
/// that both share.
struct WorkerMark {
    std::atomic<int> work = -1;                 ///< a `Painter::Work`; -1: none yet
    std::atomic<bool> is_out_of_memory = false; ///< of the model at hand
    char key[65] = ""; ///< of the model at hand, by what was known at first
    char driver[256] = "";
};

/// What a worker is made with.
struct WorkerSetting {
    const Options& defaults; ///< of entries; its device is what draws
    const BatchOptions& batch;
    WorkerMark& mark;
    int entries;  ///< read: lines of `line_of(Entry)`
    int verdicts; ///< written: `ready_line` first, then a line of `line_of(Verdict)` for each entry
};

/// Says that a worker has started.
extern const char* const ready_line;

/// Draws the entries of a pipe until its end, one after the other. For a process of its own, which
/// it confines.
/// @return whether all went well: false where a pipe broke or a line was no entry
bool run_worker(const WorkerSetting& setting);

} // namespace batch
