// One process: how it begins with nothing of its supervisor but its pipes, and what is known of it
// when it has ended.

#include "batch/worker_process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "batch/leavings.h"
#include "messages.h"

namespace batch {

namespace {

void close_end(int& end) {
    if (end >= 0)
        close(std::exchange(end, -1));
}

WorkerMark* new_mark() {
    void* const memory = mmap(nullptr, sizeof(WorkerMark), PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : new (memory) WorkerMark;
}

/// Descriptors in a row: 0 to 2 the usual ones, 3 the entries, 4 the verdicts, none else.
bool take_descriptors(const int (&ends)[3]) {
    const int nothing = open("/dev/null", O_RDONLY);
    // First out of the way of the numbers that they are to have.
    const int entries = fcntl(ends[0], F_DUPFD, 10), verdicts = fcntl(ends[1], F_DUPFD, 10);
    const int words = fcntl(ends[2], F_DUPFD, 10);
    const bool is_fine = dup2(nothing, 0) == 0 && dup2(words, 1) == 1 && dup2(words, 2) == 2 &&
                         dup2(entries, 3) == 3 && dup2(verdicts, 4) == 4;
    return is_fine && close_range(5, ~0u, 0) == 0;
}

/// Signals are the supervisor's affair, who tells workers by their pipes.
void take_signals() {
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ})
        std::signal(number, SIG_IGN);
    for (const int number : {SIGCHLD, SIGXCPU})
        std::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

} // namespace

void WorkerProcess::UnmapMark::operator()(WorkerMark* mark) const {
    munmap(mark, sizeof *mark);
}

bool WorkerProcess::open_ends(int (&theirs)[3]) {
    int* const ours[] = {&entries, &from_verdicts, &from_words};
    for (int i = 0; i < 3; ++i) {
        int pipe_ends[2];
        if (pipe2(pipe_ends, O_CLOEXEC) != 0)
            return false;
        *ours[i] = pipe_ends[i == 0 ? 1 : 0];
        theirs[i] = pipe_ends[i == 0 ? 0 : 1];
        if (i > 0)
            fcntl(*ours[i], F_SETFL, O_NONBLOCK);
    }
    return true;
}

std::unique_ptr<WorkerProcess> WorkerProcess::start(const Options& defaults,
                                                    const BatchOptions& batch,
                                                    const std::string& device) {
    std::unique_ptr<WorkerProcess> worker(new WorkerProcess);
    worker->shared.reset(new_mark());
    int theirs[3] = {-1, -1, -1};
    const bool is_open = worker->shared && worker->open_ends(theirs);
    const pid_t parent = getpid();
    worker->process = is_open ? fork() : -1;
    if (worker->process == 0)
        worker->be_worker(defaults, batch, device, theirs, parent);
    const int error = errno;
    for (int& end : theirs)
        close_end(end);
    errno = error;
    return worker->process > 0 ? std::move(worker) : nullptr;
}

void WorkerProcess::be_worker(const Options& defaults, const BatchOptions& batch,
                              const std::string& device, const int (&ends)[3], pid_t parent) {
    // The parent may have died before it was asked for.
    if (prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || getppid() != parent || !take_descriptors(ends))
        _exit(1);
    take_signals();
    set_wordiness(Wordiness::quiet);
    if (!device.empty())
        setenv("ORVEX_GL_DEVICE", device.c_str(), 1);
    // Workers share the processors: threads of a software driver would only stand in line.
    if (batch.workers != 1)
        setenv("LP_NUM_THREADS", "0", 0);
    bool is_fine = false;
    try {
        is_fine = run_worker({defaults, batch, *shared, 3, 4});
    } catch (...) {
        is_fine = false;
    }
    // What a driver does at the end of a process is no model's fault.
    _exit(is_fine ? 0 : 1);
}

WorkerProcess::~WorkerProcess() {
    close_end(entries);
    close_end(from_verdicts);
    close_end(from_words);
    if (process <= 0 || has_ended)
        return;
    kill(process, SIGKILL);
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
        // once more
    }
}

void WorkerProcess::set_ready() {
    is_ready = true;
    began = std::chrono::steady_clock::now();
}

void WorkerProcess::give(Job new_job) {
    if (new_job.tries++ == 0)
        new_job.since = time_of_files();
    job = std::move(new_job);
    last_words.clear();
    resident_before = memory().resident;
    began = std::chrono::steady_clock::now();
    std::string line = line_of(job->entry);
    // A worker that has died meanwhile is found to have.
    for (std::string_view rest = line; !rest.empty();) {
        const ssize_t written = write(entries, rest.data(), rest.size());
        if (written < 0 && errno != EINTR)
            break;
        rest.remove_prefix(static_cast<std::size_t>(std::max(written, ssize_t{0})));
    }
}

Job WorkerProcess::take_job() {
    Job done = std::move(*job);
    job.reset();
    ++count;
    began = std::chrono::steady_clock::now();
    return done;
}

void WorkerProcess::dismiss() {
    close_end(entries);
    began = std::chrono::steady_clock::now();
}

void WorkerProcess::end(Cause why) {
    if (why_ended != Cause::none)
        return;
    why_ended = why;
    kill(process, SIGKILL);
}

std::string WorkerProcess::next_line() {
    char part[16384];
    for (ssize_t size; received.find('\n') == received.npos;) {
        size = read(from_verdicts, part, sizeof part);
        // Nothing will come any more: it is ending, or only seems to live.
        if (size == 0)
            kill(process, SIGKILL);
        if (size <= 0)
            return "";
        received.append(part, static_cast<std::size_t>(size));
    }
    const std::size_t end = received.find('\n') + 1;
    std::string line = received.substr(0, end);
    received.erase(0, end);
    return line;
}

void WorkerProcess::take_words() {
    constexpr std::size_t most = 400;
    char part[4096];
    const ssize_t size = read(from_words, part, sizeof part);
    if (size == 0)
        close_end(from_words);
    if (size <= 0)
        return;
    last_words.append(part, static_cast<std::size_t>(size));
    if (last_words.size() > most)
        last_words.erase(0, last_words.size() - most);
}

bool WorkerProcess::reap() {
    rusage usage{};
    if (!has_ended && wait4(process, &status, WNOHANG, &usage) == process) {
        has_ended = true;
        peak = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
    }
    return has_ended;
}

namespace {

/// On one line, in characters that can be printed.
std::string in_one_line(const std::string& words) {
    std::string line;
    for (const char c : words) {
        const bool is_blank = static_cast<unsigned char>(c) <= ' ' || c == 0x7f;
        if (!is_blank)
            line += c;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    if (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}

} // namespace

std::string WorkerProcess::end_in_words() const {
    std::string text;
    if (WIFSIGNALED(status))
        text = "it died of signal " + std::to_string(WTERMSIG(status)) + " (" +
               strsignal(WTERMSIG(status)) + ")";
    else
        text = "it left with code " + std::to_string(WEXITSTATUS(status));
    const std::string words = in_one_line(last_words);
    return words.empty() ? text : text + ", and said: " + words;
}

bool WorkerProcess::was_killed() const {
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL && why_ended == Cause::none;
}

bool WorkerProcess::looks_out_of_memory(const BatchOptions& limits) const {
    if (why_ended == Cause::memory || shared->is_out_of_memory)
        return true;
    // What C libraries make of a refusal is a crash, near the limit.
    const auto most = static_cast<std::uint64_t>(limits.limit_memory) << 20;
    return most > 0 && peak > resident_before + most / 4 * 3;
}

} // namespace batch
