#pragma once

/// @file
/// Many models by many processes, of which any may die.

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "batch/attendant.h"
#include "batch/batch_options.h"
#include "batch/entry_source.h"
#include "batch/signal_queue.h"
#include "batch/verdict_sink.h"
#include "batch/worker_process.h"

namespace batch {

/// How a batch came to its end.
struct Ending {
    int signal = 0;      ///< that asked for it; 0: none
    std::string mistake; ///< what the supervisor itself failed at; empty: nothing
    std::string refused; ///< the line that is no entry, and ended the batch; empty: none
};

/// Has the entries of a source drawn by workers, and their verdicts written. It draws nothing
/// itself, and holds no more entries at a time than there are workers.
///
/// A worker that dies, or takes more than the limits allow, costs its model one try: the second one
/// is the first of a fresh worker. What fails then has the verdict. Workers are replaced after as
/// many models as the options say, when they have grown too much, and when files or memory failed
/// them.
///
/// INT, TERM and HUP let the models at hand be finished, and end the batch; a second one ends the
/// workers. Whatever becomes of the supervisor, no worker outlives it. For a program of one thread:
/// signals and children are this one's while it runs.
class Supervisor {
public:
    /// @param defaults   options of entries; its device may be several with commas between, over
    ///                   which workers are spread
    /// @param source,sink,defaults,batch  outlive this
    /// @param attendant  is looked after meanwhile, if there is one
    Supervisor(const Options& defaults, const BatchOptions& batch, EntrySource& source,
               VerdictSink& sink, Attendant* attendant = nullptr);
    Supervisor(const Supervisor&) = delete;
    Supervisor& operator=(const Supervisor&) = delete;
    ~Supervisor();

    /// Runs to the end of the source.
    Ending run();

private:
    const Options& defaults;
    BatchOptions batch;
    EntrySource& source;
    VerdictSink& sink;
    Attendant* attendant;
    SignalQueue signals;
    std::vector<std::string> devices;
    std::vector<std::unique_ptr<WorkerProcess>> workers; ///< null: no process in this place
    std::deque<Job> waiting;                             ///< for a first try
    std::deque<Job> again;                               ///< for a second one
    bool is_source_empty = false;
    bool is_source_waiting = false; ///< a pipe had nothing
    bool is_source_busy = false;    ///< it kept an entry, for which it may have read long
    int failed_starts = 0;          ///< since a worker became ready
    Ending ending;

    bool is_stopping() const { return ending.signal != 0 || !ending.mistake.empty(); }
    bool is_done() const;
    void fetch();
    void take_next(NextEntry next);
    void start_workers();
    void start_worker(std::size_t place);
    void give_jobs();
    void dismiss_the_idle();
    void wait();
    void take_signals();
    void stop(int signal);
    void attend_to(std::unique_ptr<WorkerProcess>& worker);
    void take_lines(WorkerProcess& worker);
    void take_verdict(WorkerProcess& worker, Verdict verdict);
    void bury(std::unique_ptr<WorkerProcess>& worker);
    void mourn(WorkerProcess& worker, Job job);
    void fail_next_job(const std::string& reason);
    void watch(WorkerProcess& worker);
    bool has_outgrown(WorkerProcess& worker) const;
    int milliseconds_to_wait() const;
    void answer(const Entry& entry, const Verdict& verdict);
};

} // namespace batch
