// One loop: entries to idle workers, verdicts from them, and a look at what died or takes too long.
// Between two rounds it sleeps until a pipe, a signal or a limit of time wakes it.

#include "batch/supervisor.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <sstream>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "batch/key.h"
#include "batch/leavings.h"
#include "painter.h"

namespace batch {

namespace {

using Cause = WorkerProcess::Cause;
using std::chrono::steady_clock;

/// How long a worker may take to start or to leave.
constexpr double patience = 60.0;
constexpr std::uint64_t bytes_a_megabyte = 1 << 20;

double seconds_since(WorkerProcess::Time time) {
    return std::chrono::duration<double>(steady_clock::now() - time).count();
}

int processors() {
    return static_cast<int>(std::max(sysconf(_SC_NPROCESSORS_ONLN), 1l));
}

std::vector<std::string> parts_of(const std::string& list) {
    std::vector<std::string> parts;
    std::istringstream words(list);
    for (std::string word; std::getline(words, word, ',');)
        parts.push_back(word);
    return parts.empty() ? std::vector<std::string>{""} : parts;
}

} // namespace

Supervisor::Supervisor(const Options& defaults, const BatchOptions& batch, EntrySource& source,
                       VerdictSink& sink, Attendant* attendant)
    : defaults(defaults)
    , batch(batch)
    , source(source)
    , sink(sink)
    , attendant(attendant)
    , devices(parts_of(defaults.device)) {
    if (this->batch.workers <= 0)
        this->batch.workers = processors();
    workers.resize(static_cast<std::size_t>(this->batch.workers));
}

Supervisor::~Supervisor() = default;

Ending Supervisor::run() {
    if (signals.descriptor() < 0)
        ending.mistake = std::string("can't wait for signals: ") + std::strerror(errno);
    while (!is_done()) {
        fetch();
        start_workers();
        give_jobs();
        dismiss_the_idle();
        if (is_done())
            break;
        wait();
        take_signals();
        for (std::unique_ptr<WorkerProcess>& worker : workers)
            if (worker)
                attend_to(worker);
    }
    workers.clear();
    return std::move(ending);
}

/// Workers that are only leaving aren't waited for after a mistake.
bool Supervisor::is_done() const {
    const bool has_work = !waiting.empty() || !again.empty() || !is_source_empty;
    if (!ending.mistake.empty())
        return true;
    return (is_stopping() || !has_work) &&
           std::none_of(workers.begin(), workers.end(),
                        [](const auto& worker) { return worker != nullptr; });
}

// ------------------------------------------------------------------------------- entries

void Supervisor::fetch() {
    is_source_waiting = is_source_busy = false;
    // Between kept entries, of which there may be millions, the others are looked after.
    while (!is_stopping() && !is_source_empty && !is_source_waiting && !is_source_busy &&
           waiting.size() < workers.size())
        take_next(source.next());
}

void Supervisor::take_next(NextEntry next) {
    if (auto* const entry = std::get_if<Entry>(&next)) {
        waiting.push_back({std::move(*entry)});
    } else if (const auto* const line = std::get_if<RefusedLine>(&next)) {
        Verdict verdict;
        verdict.id = line->id;
        verdict.fate = Fate::refused;
        verdict.reason = line->reason;
        verdict.line = line->line;
        verdict.engine = engine_version();
        ending.mistake = sink.put(verdict);
        if (batch.keep_going || batch.serve)
            return;
        ending.refused = "line " + std::to_string(line->line) + ": " + line->reason;
        is_source_empty = true;
    } else if (const auto* const broken = std::get_if<BrokenSource>(&next)) {
        // What was fetched is drawn; the mistake is told in the end.
        ending.refused = broken->reason;
        is_source_empty = true;
    } else if (std::holds_alternative<KeptEntry>(next)) {
        is_source_busy = true;
    } else if (std::holds_alternative<EndOfEntries>(next)) {
        is_source_empty = true;
    } else {
        is_source_waiting = true;
    }
}

void Supervisor::answer(const Entry& entry, const Verdict& verdict) {
    if (ending.mistake.empty())
        ending.mistake = sink.answer(entry, verdict);
}

// ------------------------------------------------------------------------------- workers

/// As many as there is work for.
void Supervisor::start_workers() {
    if (is_stopping())
        return;
    std::size_t wanted = waiting.size() + again.size();
    for (const auto& worker : workers)
        if (worker && (worker->is_starting() || worker->is_idle()))
            wanted -= std::min(wanted, std::size_t{1});
    // A second try wants a fresh one, for which one that isn't has to go.
    const auto is_fresh = [](const auto& worker) {
        return worker && worker->is_fresh() && !worker->has_job() && !worker->is_leaving();
    };
    if (!again.empty() && std::none_of(workers.begin(), workers.end(), is_fresh)) {
        wanted = std::max(wanted, std::size_t{1});
        const bool has_room = std::any_of(workers.begin(), workers.end(), [](const auto& worker) {
            return !worker || worker->is_leaving();
        });
        const auto idle = std::find_if(workers.begin(), workers.end(), [](const auto& worker) {
            return worker && worker->is_idle();
        });
        if (!has_room && idle != workers.end())
            (*idle)->dismiss();
    }
    for (std::size_t place = 0; place < workers.size() && wanted > 0; ++place)
        if (!workers[place]) {
            start_worker(place);
            --wanted;
        }
}

void Supervisor::start_worker(std::size_t place) {
    const std::string& device = devices[place % devices.size()];
    workers[place] = WorkerProcess::start(defaults, batch, device);
    if (!workers[place])
        ending.mistake = std::string("can't start a process: ") + std::strerror(errno);
}

void Supervisor::give_jobs() {
    for (const auto& worker : workers) {
        if (is_stopping() || !worker || !worker->is_idle())
            continue;
        std::deque<Job>& jobs = worker->is_fresh() && !again.empty() ? again : waiting;
        if (jobs.empty())
            continue;
        Job job = std::move(jobs.front());
        jobs.pop_front();
        worker->give(std::move(job));
    }
}

/// At the end nobody is kept. Those that are starting leave when they are ready.
void Supervisor::dismiss_the_idle() {
    const bool has_work = !waiting.empty() || !again.empty() || !is_source_empty;
    if (has_work && !is_stopping())
        return;
    const bool may_be_needed = std::any_of(workers.begin(), workers.end(), [](const auto& worker) {
        return worker && worker->has_job();
    });
    for (const auto& worker : workers)
        if (worker && worker->is_idle() && (is_stopping() || !may_be_needed || !worker->is_fresh()))
            worker->dismiss();
        else if (worker && worker->is_starting() && (is_stopping() || !may_be_needed))
            worker->end(Cause::stop);
}

// ------------------------------------------------------------------------------- waiting

namespace {

void add(std::vector<pollfd>& files, int file) {
    if (file >= 0)
        files.push_back({file, POLLIN, 0});
}

} // namespace

int Supervisor::milliseconds_to_wait() const {
    if (is_source_busy)
        return 0;
    double seconds = 3600.0;
    for (const auto& worker : workers) {
        if (!worker)
            continue;
        const double limit =
            worker->has_job() ? static_cast<double>(batch.limit_seconds) : patience;
        if (worker->is_idle() || limit <= 0.0)
            continue;
        seconds = std::min(seconds, limit - seconds_since(worker->since()));
        // Resident memory tells of itself by nothing.
        if (worker->has_job() && batch.limit_memory > 0)
            seconds = std::min(seconds, 0.05);
    }
    return static_cast<int>(std::ceil(std::max(seconds, 0.0) * 1000.0));
}

void Supervisor::wait() {
    std::vector<pollfd> files;
    add(files, signals.descriptor());
    if (attendant)
        add(files, attendant->descriptor());
    if (is_source_waiting && !is_stopping())
        add(files, source.descriptor());
    for (const auto& worker : workers)
        if (worker) {
            add(files, worker->verdicts());
            add(files, worker->words());
        }
    poll(files.data(), files.size(), milliseconds_to_wait());
    if (attendant && std::any_of(files.begin(), files.end(), [&](const pollfd& file) {
            return file.fd == attendant->descriptor() && file.revents != 0;
        }))
        attendant->attend();
}

void Supervisor::take_signals() {
    for (int number = signals.next(); number != 0; number = signals.next())
        if (number != SIGCHLD)
            stop(number);
}

/// The first one is waited for, the second one not.
void Supervisor::stop(int signal) {
    if (ending.signal != 0)
        for (const auto& worker : workers)
            if (worker)
                worker->end(Cause::stop);
    ending.signal = signal;
    waiting.clear();
    again.clear();
}

// ------------------------------------------------------------------------------- what they say

void Supervisor::attend_to(std::unique_ptr<WorkerProcess>& worker) {
    worker->take_words();
    // First whether it has ended: then all that it said is there.
    const bool has_ended = worker->reap();
    take_lines(*worker);
    if (has_ended) {
        worker->take_words();
        bury(worker);
    } else {
        watch(*worker);
    }
}

void Supervisor::take_lines(WorkerProcess& worker) {
    for (std::string line = worker.next_line(); !line.empty(); line = worker.next_line()) {
        if (worker.is_starting() && line == ready_line) {
            worker.set_ready();
            failed_starts = 0;
        } else if (std::optional<Verdict> verdict = verdict_of_line(line);
                   verdict && worker.has_job()) {
            take_verdict(worker, std::move(*verdict));
        }
    }
}

void Supervisor::take_verdict(WorkerProcess& worker, Verdict verdict) {
    const bool was_fresh = worker.is_fresh();
    Job job = worker.take_job();
    verdict.tries = job.tries;
    if (was_fresh)
        worker.resident_at_first = worker.memory().resident;
    // What earlier models have left in the process may be what was too much.
    const bool is_second_wanted =
        verdict.fate == Fate::over_limit && worker.mark().is_out_of_memory && !was_fresh;
    const bool is_spent =
        verdict.fate == Fate::io || verdict.fate == Fate::driver || worker.mark().is_out_of_memory;
    if (is_second_wanted && !is_stopping())
        again.push_back(std::move(job));
    else
        answer(job.entry, verdict);
    if (is_spent || has_outgrown(worker))
        worker.dismiss();
}

bool Supervisor::has_outgrown(WorkerProcess& worker) const {
    constexpr std::uint64_t most_growth = 256 * bytes_a_megabyte;
    return (batch.recycle > 0 && worker.num_models() >= batch.recycle) ||
           worker.memory().resident > worker.resident_at_first + most_growth;
}

/// Ends what takes too long, or too much.
void Supervisor::watch(WorkerProcess& worker) {
    const double limit = worker.has_job() ? static_cast<double>(batch.limit_seconds) : patience;
    if (!worker.is_idle() && limit > 0.0 && seconds_since(worker.since()) >= limit)
        worker.end(Cause::time);
    const std::uint64_t most = static_cast<std::uint64_t>(batch.limit_memory) * bytes_a_megabyte;
    if (worker.has_job() && most > 0 && worker.memory().resident > worker.resident_before + most)
        worker.end(Cause::memory);
}

// ------------------------------------------------------------------------------- their ends

void Supervisor::bury(std::unique_ptr<WorkerProcess>& worker) {
    const std::unique_ptr<WorkerProcess> dead = std::move(worker);
    if (dead->has_job())
        return mourn(*dead, dead->take_job());
    constexpr int most_failed_starts = 3;
    if (dead->is_starting() && dead->cause() != Cause::stop &&
        ++failed_starts >= most_failed_starts)
        fail_next_job("the process that draws doesn't start: " + dead->end_in_words());
}

namespace {

std::string work_in_words(int work) {
    switch (static_cast<Painter::Work>(work)) {
    case Painter::Work::view:
        return "while a context was made";
    case Painter::Work::model:
        return "while it was loaded";
    case Painter::Work::extras:
    case Painter::Work::outputs:
    case Painter::Work::drawing:
    case Painter::Work::writing:
        break;
    }
    return "while it was drawn";
}

std::string number_text(float number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

} // namespace

/// A worker died with a model in it.
void Supervisor::mourn(WorkerProcess& worker, Job job) {
    remove_leavings(job.entry, job.since);
    if (worker.cause() == Cause::stop)
        return;
    // What somebody else has killed isn't the model's fault, unless it happens again and again.
    constexpr int most_kills = 3;
    if (worker.was_killed() && job.kills < most_kills) {
        ++job.kills;
        --job.tries;
    }
    if (job.tries < 2) {
        if (!is_stopping())
            again.push_back(std::move(job));
        return;
    }
    const int work = worker.mark().work;
    Verdict verdict = verdict_on(job.entry);
    verdict.tries = job.tries;
    verdict.driver = worker.mark().driver;
    verdict.key = worker.mark().key;
    verdict.fate = Fate::over_limit;
    if (worker.cause() == Cause::time)
        verdict.reason = "it took longer than " + number_text(batch.limit_seconds) + " seconds " +
                         work_in_words(work);
    else if (worker.looks_out_of_memory(batch))
        verdict.reason = batch.limit_memory > 0
                             ? "it took more than " + std::to_string(batch.limit_memory) +
                                   " MB of memory " + work_in_words(work)
                             : "there wasn't enough memory for it " + work_in_words(work);
    else {
        verdict.fate = work == static_cast<int>(Painter::Work::view) ? Fate::driver : Fate::crashed;
        verdict.reason =
            "the process ended twice " + work_in_words(work) + ": " + worker.end_in_words();
    }
    answer(job.entry, verdict);
}

/// No worker starts: the models are no more to blame than one another.
void Supervisor::fail_next_job(const std::string& reason) {
    std::deque<Job>& jobs = again.empty() ? waiting : again;
    if (jobs.empty())
        return;
    Verdict verdict = verdict_on(jobs.front().entry);
    verdict.fate = Fate::driver;
    verdict.reason = reason;
    verdict.tries = jobs.front().tries + 1;
    answer(jobs.front().entry, verdict);
    jobs.pop_front();
}

} // namespace batch
