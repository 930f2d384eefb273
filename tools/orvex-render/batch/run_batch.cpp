// From the command line to the exit code of a batch.

#include "batch/run_batch.h"

#include <csignal>
#include <cstdio>

#include <unistd.h>

#include "batch/manifest.h"
#include "batch/output_folder.h"
#include "batch/results.h"
#include "batch/supervisor.h"
#include "batch/tally.h"
#include "messages.h"

namespace batch {

namespace {

/// Tells of lines that are no entries, but not of millions.
class Refusals {
public:
    void tell(const RefusedLine& refused) {
        constexpr std::size_t most = 20;
        if (++count <= most)
            tell_error("line " + std::to_string(refused.line) + ": " + refused.reason);
    }
    std::size_t size() const { return count; }

private:
    std::size_t count = 0;
};

Manifest::Setting setting_of(const Options& options) {
    const BatchOptions& batch = options.batch;
    Manifest::Setting setting;
    setting.is_list = batch.manifest.empty();
    setting.path = setting.is_list ? batch.list : batch.manifest;
    setting.null = batch.null;
    setting.folder = batch.output_dir;
    setting.shard = batch.shard;
    setting.defaults = options;
    return setting;
}

/// Looks at all lines of a file. @return what ends the batch before it has begun
ExitCode check(Manifest& manifest, bool keep_going) {
    if (!manifest.is_file())
        return EXIT_FINE;
    Refusals refusals;
    const std::string mistake = manifest.check([&](const RefusedLine& refused) {
        // Where they don't matter, they are told of in their turn.
        if (!keep_going)
            refusals.tell(refused);
    });
    if (!mistake.empty())
        return fail(mistake);
    if (refusals.size() == 0)
        return EXIT_FINE;
    tell_error(std::to_string(refusals.size()) +
               (refusals.size() == 1 ? " line is no entry" : " lines are no entries") +
               ": nothing is drawn; --keep-going draws the others");
    return EXIT_USAGE;
}

/// Whether results and progress would run into each other on one terminal.
bool is_shown_results(const BatchOptions& batch) {
    return batch.results == "-" && isatty(STDOUT_FILENO);
}

ExitCode draw(const Options& options, Manifest& manifest, Results& results) {
    const bool has_progress =
        get_wordiness() != Wordiness::quiet && !is_shown_results(options.batch);
    Tally tally(results, manifest, has_progress ? stderr : nullptr);
    Supervisor supervisor(options, options.batch, manifest, tally);
    Ending ending = supervisor.run();
    tally.clear();
    if (!ending.mistake.empty())
        tell_error(ending.mistake);
    if (!ending.refused.empty())
        tell_error(ending.refused);
    // Even after a stop: what was put aside has been drawn anew, or will be.
    if (const std::string mistake = results.finish(); !mistake.empty() && ending.mistake.empty()) {
        ending.mistake = mistake;
        tell_error(mistake);
    }
    tell(summary_of(tally.counts(), tally.seconds()));
    return exit_code_of(ending, tally.counts());
}

} // namespace

ExitCode run_batch(const Options& options) {
    // A reader of results that has gone is told of as a full disk is.
    std::signal(SIGPIPE, SIG_IGN);
    const BatchOptions& batch = options.batch;
    if (const std::string mistake = make_output_folder(batch.output_dir); !mistake.empty())
        return fail(mistake);
    Manifest manifest(setting_of(options));
    if (const std::string mistake = manifest.open(); !mistake.empty()) {
        tell_error(mistake);
        return EXIT_USAGE;
    }
    if (const ExitCode code = check(manifest, batch.keep_going); code != EXIT_FINE)
        return code;
    Results results(batch.results);
    if (const std::string mistake = results.open(batch.resume); !mistake.empty()) {
        tell_error(mistake);
        return EXIT_USAGE;
    }
    if (batch.resume)
        manifest.keep(results);
    return draw(options, manifest, results);
}

} // namespace batch
