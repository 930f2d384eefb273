#pragma once

/// @file
/// A worker, as its supervisor has it.

#include <chrono>
#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <string>

#include <sys/types.h>

#include "batch/entry.h"
#include "batch/model_limits.h"
#include "batch/worker.h"

namespace batch {

/// An entry on its way through workers.
struct Job {
    Entry entry;
    int tries = 0;    ///< begun ones
    int kills = 0;    ///< tries that somebody else has ended
    timespec since{}; ///< when the first try began, as files are marked
};

/// A process of its own that draws, the pipes to it, and the model that is in it. The supervisor
/// has a single thread.
class WorkerProcess {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// Why the supervisor has ended it.
    enum class Cause { none, time, memory, stop };

    /// Starts one. @return null, with `errno`, where the system refuses
    /// @param device  as `ORVEX_GL_DEVICE`; empty: as the environment says
    static std::unique_ptr<WorkerProcess> start(const Options& defaults, const BatchOptions& batch,
                                                const std::string& device);
    /// Ends it, whatever it is at.
    ~WorkerProcess();
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    bool is_starting() const { return !is_ready; }
    bool is_idle() const { return is_ready && !job && entries >= 0; }
    bool is_leaving() const { return entries < 0; }
    bool is_fresh() const { return count == 0; } ///< no model was in it as yet
    int num_models() const { return count; }

    /// Gives an idle one a model.
    void give(Job new_job);
    /// Lets it go when it is done: there are no more entries.
    void dismiss();
    /// Ends it at once. What is left is known from `reap` on.
    void end(Cause why);

    int verdicts() const { return from_verdicts; } ///< to be waited for
    int words() const { return from_words; }       ///< likewise
    /// Takes what it says. @return a whole line, with its line feed; empty if there is none as yet
    std::string next_line();
    /// Takes what plugins and drivers print, of which the end is kept.
    void take_words();
    /// The model was told of: gives it back.
    Job take_job();
    bool has_job() const { return job.has_value(); }
    void set_ready();

    /// Whether it has ended; from then on `end_in_words` and `looks_out_of_memory` tell how.
    bool reap();
    /// "it died of signal 11 (Segmentation fault)", and what it printed last.
    std::string end_in_words() const;
    /// Whether it died for want of memory, as far as can be told.
    bool looks_out_of_memory(const BatchOptions& limits) const;
    /// Whether it was killed by somebody else: a person, or the system for want of memory.
    bool was_killed() const;
    Cause cause() const { return why_ended; }
    const WorkerMark& mark() const { return *shared; }

    /// When it began what it is at.
    Time since() const { return began; }
    Memory memory() const { return memory_of(process); }
    std::uint64_t resident_at_first = 0; ///< when its first model was told of
    std::uint64_t resident_before = 0;   ///< when the model at hand began

private:
    WorkerProcess() = default;

    struct UnmapMark {
        void operator()(WorkerMark* mark) const;
    };

    pid_t process = -1;
    int entries = -1;
    int from_verdicts = -1;
    int from_words = -1;
    std::unique_ptr<WorkerMark, UnmapMark> shared;
    bool is_ready = false;
    bool has_ended = false;
    int status = 0;
    std::uint64_t peak = 0; ///< resident bytes, of its whole life
    int count = 0;
    Cause why_ended = Cause::none;
    Time began = std::chrono::steady_clock::now();
    std::optional<Job> job;
    std::string received;
    std::string last_words;

    bool open_ends(int (&theirs)[3]);
    [[noreturn]] void be_worker(const Options& defaults, const BatchOptions& batch,
                                const std::string& device, const int (&ends)[3], pid_t parent);
};

} // namespace batch
