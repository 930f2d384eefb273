// A worker draws on one easel, model after model. Whatever becomes of a model, its verdict goes
// back; what the worker doesn't survive is told by the supervisor, from the mark.

#include "batch/worker.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include <orvex/renderer/renderer.h>
#include <orvex_kit/engine.h>
#include <orvex_kit/files.h>

#include "batch/confinement.h"
#include "batch/entry.h"
#include "batch/entry_reader.h"
#include "batch/key.h"
#include "batch/leavings.h"
#include "batch/model_limits.h"
#include "batch/output_folder.h"
#include "batch/verdict.h"
#include "easel.h"
#include "painter.h"
#include "start.h"

namespace batch {

const char* const ready_line = "ready\n";

namespace {

/// The mark of this process, for the handler of memory that runs out.
WorkerMark* own_mark = nullptr;

void mark_end_of_memory() {
    own_mark->is_out_of_memory = true;
    throw std::bad_alloc();
}

/// What went wrong with a model, and whose fault it is.
struct Failure {
    Fate fate;
    std::string reason;
};
using MaybeFailure = std::optional<Failure>;

/// Why a model's file isn't even looked into.
MaybeFailure failure_in_file(const std::string& path, const BatchOptions& limits) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        const bool is_path_wrong = errno == ELOOP || errno == ENAMETOOLONG || errno == ENOTDIR;
        return Failure{is_path_wrong ? Fate::refused : Fate::io,
                       path + ": " + std::strerror(errno)};
    }
    // What is no file, and one without a byte, is told from one that can't be opened now.
    const bool is_openable = access(path.c_str(), R_OK) == 0;
    if (std::string mistake = orvex::kit::mistake_in_reading(path); !mistake.empty())
        return Failure{is_openable ? Fate::refused : Fate::io, std::move(mistake)};
    if (limits.limit_file > 0 && status.st_size >> 20 >= limits.limit_file &&
        status.st_size > std::int64_t{limits.limit_file} << 20)
        return Failure{Fate::over_limit, path + ": the file has more than " +
                                             std::to_string(limits.limit_file) + " MB"};
    return std::nullopt;
}

MaybeFailure failure_in_size(const Options& options, const BatchOptions& limits) {
    const std::int64_t pixels = std::int64_t{options.size.width} * options.size.height *
                                std::max(options.turntable, std::max(options.film, 1));
    if (limits.limit_pixels <= 0 || pixels <= limits.limit_pixels)
        return std::nullopt;
    return Failure{Fate::over_limit, "its pictures have " + std::to_string(pixels) +
                                         " pixels, and " + std::to_string(limits.limit_pixels) +
                                         " are allowed"};
}

MaybeFailure failure_of(Fate fate, std::string reason) {
    return reason.empty() ? MaybeFailure() : Failure{fate, std::move(reason)};
}

/// Whose fault it is that a painter stopped.
Fate fate_at(const Painter& painter, Easel& easel, const std::string& reason) {
    switch (painter.work()) {
    case Painter::Work::view:
        // With a view it is the look that is no good.
        return easel.view() || easel.view().failure() == orvex::kit::ViewFailure::size
                   ? Fate::refused
                   : Fate::driver;
    case Painter::Work::model:
    case Painter::Work::extras:
        return Fate::refused;
    case Painter::Work::drawing:
        return Fate::driver;
    case Painter::Work::outputs:
    case Painter::Work::writing:
        break;
    }
    const bool is_too_large = reason.find(std::strerror(EFBIG)) != reason.npos;
    return is_too_large ? Fate::over_limit : Fate::io;
}

void copy(const std::string& text, char* to, std::size_t size) {
    to[text.copy(to, size - 1)] = '\0';
}

class Worker {
public:
    explicit Worker(const WorkerSetting& setting)
        : setting(setting)
        , reader(setting.defaults, setting.batch.output_dir)
        , folder(setting.batch.output_dir)
        , limits(setting.batch) {}

    bool run(bool may_execute);

private:
    const WorkerSetting& setting;
    EntryReader reader;
    OutputFolder folder;
    ModelLimits limits;
    Easel easel;
    std::string received; ///< and not taken yet

    void start_driver();
    bool next_line(std::string& line);
    bool send(std::string_view text) const;
    Verdict draw(const Entry& entry);
    MaybeFailure draw(const Entry& entry, Verdict& verdict);
    std::string mistake_in_places(const Entry& entry) const;
    MaybeFailure paint(const Entry& entry, Painter& painter);
    void tell_of_files(const Entry& entry, Verdict& verdict);
};

void Worker::start_driver() {
    setting.mark.work = static_cast<int>(Painter::Work::view);
    // Why it can't be is told by the first model.
    if (easel.prepare(setting.defaults).empty())
        copy(std::string(easel.view().renderer()->get_renderer_model()) + ", OpenGL " +
                 easel.view().renderer()->get_api_version(),
             setting.mark.driver, sizeof setting.mark.driver);
}

bool Worker::next_line(std::string& line) {
    for (;;) {
        const std::size_t end = received.find('\n');
        if (end != received.npos) {
            line = received.substr(0, end + 1);
            received.erase(0, end + 1);
            return true;
        }
        char part[4096];
        const ssize_t count = read(setting.entries, part, sizeof part);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        received.append(part, static_cast<std::size_t>(count));
    }
}

bool Worker::send(std::string_view text) const {
    while (!text.empty()) {
        const ssize_t count = write(setting.verdicts, text.data(), text.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

MaybeFailure Worker::paint(const Entry& entry, Painter& painter) {
    const auto tell = [&](std::string reason) {
        const Fate fate = fate_at(painter, easel, reason);
        return failure_of(fate, std::move(reason));
    };
    if (MaybeFailure failure = tell(painter.prepare()))
        return failure;
    setting.mark.work = static_cast<int>(Painter::Work::drawing);
    if (MaybeFailure failure = tell(painter.paint()))
        return failure;
    if (painter.has_shown_something())
        return std::nullopt;
    return Failure{Fate::refused, "nothing of " + entry.options.model +
                                      " can be seen: " + painter.reason_for_nothing()};
}

/// Why there is no place for its files; the folders are there from then on.
std::string Worker::mistake_in_places(const Entry& entry) const {
    std::string mistake = folder.mistake();
    for (const OutputFile& file : output_files_of(entry)) {
        if (mistake.empty())
            mistake = folder.mistake_in_place(file.name);
        if (mistake.empty())
            mistake = folder.make_folders(file.name);
    }
    return mistake;
}

MaybeFailure Worker::draw(const Entry& entry, Verdict& verdict) {
    if (MaybeFailure failure = failure_in_file(entry.options.model, setting.batch))
        return failure;
    if (MaybeFailure failure = failure_in_size(entry.options, setting.batch))
        return failure;
    verdict.key = key_of(entry, {});
    copy(verdict.key, setting.mark.key, sizeof setting.mark.key);
    if (MaybeFailure failure = failure_of(Fate::io, mistake_in_places(entry)))
        return failure;
    setting.mark.work = static_cast<int>(Painter::Work::model);
    Painter painter(entry.options, easel);
    MaybeFailure failure = paint(entry, painter);
    const Painter::Seconds& seconds = painter.seconds();
    verdict.seconds = {seconds.load, seconds.draw, seconds.write, 0.0};
    for (std::string& file : painter.model().files())
        if (file != entry.options.model)
            verdict.files.push_back(std::move(file));
    // What is no good now is tried again once any of its files has changed.
    verdict.key = key_of(entry, verdict.files);
    return failure;
}

/// Of those that were written.
void Worker::tell_of_files(const Entry& entry, Verdict& verdict) {
    for (const OutputFile& file : output_files_of(entry)) {
        if (std::optional<Output> output = output_of_file(entry, file)) {
            verdict.outputs.push_back(std::move(*output));
            continue;
        }
        verdict.fate = Fate::io;
        verdict.reason = path_of(entry, file.name) + ": it is gone again";
        verdict.outputs.clear();
        return;
    }
}

Verdict Worker::draw(const Entry& entry) {
    const auto begin = std::chrono::steady_clock::now();
    const timespec since = time_of_files();
    WorkerMark& mark = setting.mark;
    mark.is_out_of_memory = false;
    mark.key[0] = '\0';
    Verdict verdict = verdict_on(entry);
    MaybeFailure failure;
    limits.begin();
    try {
        failure = draw(entry, verdict);
    } catch (const std::bad_alloc&) {
        mark.is_out_of_memory = true;
    } catch (const std::exception& thrown) {
        failure = Failure{Fate::refused, std::string("its reader threw: ") + thrown.what()};
    }
    limits.end();
    // Even a picture that came out in spite of it may lack something.
    if (mark.is_out_of_memory)
        failure = Failure{Fate::over_limit, "there wasn't enough memory for it"};
    if (failure) {
        verdict.fate = failure->fate;
        verdict.reason = std::move(failure->reason);
    }
    if (failure)
        remove_leavings(entry, since);
    else
        tell_of_files(entry, verdict);
    verdict.driver = mark.driver;
    verdict.peak_bytes = limits.peak_bytes();
    verdict.seconds.total =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    return verdict;
}

bool Worker::run(bool may_execute) {
    start_driver();
    confine_calls(may_execute);
    if (!send(ready_line))
        return false;
    std::set_new_handler(mark_end_of_memory);
    for (std::string line; next_line(line);) {
        const std::optional<Entry> entry = reader.entry_of_line(line);
        if (!entry || !send(line_of(draw(*entry))))
            return false;
    }
    return true;
}

} // namespace

bool run_worker(const WorkerSetting& setting) {
    own_mark = &setting.mark;
    // What the importer may do it sees to itself; without Landlock it can't be told from others.
    const std::string importer = importer_program();
    const bool may_execute =
        confine_writes(setting.batch.output_dir, importer) && !importer.empty();
    const orvex::kit::Engine engine(engine_options(setting.defaults));
    return engine && Worker(setting).run(may_execute);
}

} // namespace batch
