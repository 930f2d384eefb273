// From the command line to the end of a service.

#include "batch/run_service.h"

#include <unistd.h>

#include "batch/output_folder.h"
#include "batch/results.h"
#include "batch/socket_service.h"
#include "batch/stream_entries.h"
#include "batch/supervisor.h"
#include "messages.h"

namespace batch {

namespace {

ExitCode code_of(const Ending& ending) {
    if (!ending.mistake.empty() || !ending.refused.empty())
        return fail(ending.mistake.empty() ? ending.refused : ending.mistake);
    constexpr int of_signals = 128;
    return ending.signal == 0 ? EXIT_FINE : static_cast<ExitCode>(of_signals + ending.signal);
}

ExitCode serve_stream(const Options& options) {
    const BatchOptions& batch = options.batch;
    Results answers(batch.results);
    if (const std::string mistake = answers.open(false); !mistake.empty())
        return fail(mistake);
    StreamEntries entries(STDIN_FILENO, options, batch.output_dir);
    return code_of(Supervisor(options, batch, entries, answers).run());
}

ExitCode serve_socket(const Options& options) {
    const BatchOptions& batch = options.batch;
    SocketService service(options, batch.output_dir);
    if (const std::string mistake = service.open(batch.socket); !mistake.empty())
        return fail(mistake);
    tell("serving at " + batch.socket);
    return code_of(Supervisor(options, batch, service, service, &service).run());
}

} // namespace

ExitCode run_service(const Options& options) {
    if (const std::string mistake = make_output_folder(options.batch.output_dir); !mistake.empty())
        return fail(mistake);
    return options.batch.socket.empty() ? serve_stream(options) : serve_socket(options);
}

} // namespace batch
