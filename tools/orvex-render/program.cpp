// What the program does: each way through it gives one exit code, and the first thing that goes
// wrong ends it with one message.

#include "program.h"

#include <cstdio>
#include <cstdlib>

#include <orvex/kernel/core.h>
#include <orvex_kit/engine.h>
#include <orvex_kit/files.h>
#include <orvex_kit/model.h>
#include <orvex_kit/view.h>
#include <orvex_kit/whole_file.h>

#include "messages.h"
#include "options.h"
#include "painter.h"
#include "report.h"
#include "sink.h"

using namespace orvex;
using namespace orvex::kit;

namespace {

ExitCode fail(const std::string& message) {
    tell_error(message);
    return EXIT_FAILED;
}

/// Prints to standard output, all of it or a mistake.
ExitCode print(const std::string& text) {
    if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0)
        return fail("can't write to standard output");
    return EXIT_FINE;
}

/// Why the model's file can't be read; empty if it can.
std::string mistake_in_model(const Options& options) {
    const std::string mistake = mistake_in_reading(options.model);
    return mistake.empty() || options.model != "-"
               ? mistake
               : "a model is read from a file, not from standard input: name one";
}

/// The engine with its log on standard error.
EngineOptions engine_options(const Options& options) {
    EngineOptions result;
    result.log = take_log_line;
    result.debug_lines = get_wordiness() == Wordiness::verbose;
    if (!options.plugin.empty())
        result.plugins.push_back(options.plugin);
    return result;
}

/// Why the plugin that was asked for isn't there; empty if it is, or if none was.
std::string mistake_in_plugin(const Engine& engine, const Options& options) {
    return options.plugin.empty() || engine.plugins().empty() ? "" : engine.plugins()[0].reason;
}

ExitCode tell_of_model(const Options& options) {
    const std::string mistake = mistake_in_model(options);
    if (!mistake.empty())
        return fail(mistake);
    const Engine engine(engine_options(options));
    const std::string refused = mistake_in_plugin(engine, options);
    if (!refused.empty())
        return fail(refused);
    const kit::Model scene(options.model, model_options(options));
    if (!scene)
        return fail(scene.reason());
    return print(options.json ? report_as_json(options.model, scene)
                              : report_of_model(options.model, scene));
}

ExitCode tell_of_context(const Options& options) {
    const Engine engine(engine_options(options));
    const View view(16, 16, view_options(options, 0));
    if (!view)
        return fail(mistake_in(view));
    return print(report_of_context(view.renderer(), view.window(), options.verbose));
}

/// Reads what the picture is compared with.
ExitCode read_reference(const Options& options, Picture& reference) {
    if (options.reference.empty())
        return EXIT_FINE;
    const kit::Outcome read = read_picture(options.reference, reference);
    if (read)
        return EXIT_FINE;
    tell_error("no reference: " + read.reason());
    return EXIT_NO_REFERENCE;
}

ExitCode compare_with(const Picture& reference, const Picture& picture, const Options& options) {
    const Verdict verdict = judge(picture, reference, options.tolerance);
    if (!verdict.mistake.empty())
        return fail(verdict.mistake);
    if (verdict.difference.empty())
        return EXIT_FINE;
    std::string shown;
    if (!verdict.shown.is_empty()) {
        const std::string name = difference_of(options);
        if (const kit::Outcome written = write_picture(verdict.shown, name); !written)
            return fail(written.reason());
        shown = "; " + name + " shows where";
    }
    return fail("not as " + options.reference + ": " + verdict.difference + shown);
}

ExitCode draw_model(const Options& options) {
    std::string mistake = mistake_in_model(options);
    if (mistake.empty() && !options.output.empty() && options.output != "-")
        mistake = mistake_in_writing(outputs_of(options).front());
    if (!mistake.empty())
        return fail(mistake);
    Picture reference;
    if (const ExitCode code = read_reference(options, reference); code != EXIT_FINE)
        return code;
    const Engine engine(engine_options(options));
    mistake = mistake_in_plugin(engine, options);
    if (!mistake.empty())
        return fail(mistake);
    Painter painter(options);
    mistake = painter.prepare();
    if (mistake.empty())
        mistake = painter.paint();
    if (!mistake.empty())
        return fail(mistake);
    tell(painter.told());
    // In the exit code, so in every wordiness.
    if (!painter.has_shown_something())
        return fail("nothing of " + options.model +
                    " can be seen: " + painter.reason_for_nothing());
    return reference.is_empty() ? EXIT_FINE : compare_with(reference, painter.picture(), options);
}

std::string version_text() {
    return std::string("orvex-render " ORVEX_RENDER_VERSION " (") + core::get_engine_codename() +
           ")\n";
}

} // namespace

ExitCode run_program(const std::vector<std::string>& words) {
    Options options;
    const std::string mistake = read_options(words, options);
    if (!mistake.empty()) {
        tell_error(mistake);
        std::fputs("Try 'orvex-render --help'.\n", stderr);
        return EXIT_USAGE;
    }
    if (options.help)
        return print(help_text());
    if (options.version)
        return print(version_text());
    if (options.quiet || options.verbose)
        set_wordiness(options.quiet ? Wordiness::quiet : Wordiness::verbose);
    if (!options.device.empty())
        ::setenv("ORVEX_GL_DEVICE", options.device.c_str(), 1);
    if (options.gl)
        return tell_of_context(options);
    return options.info ? tell_of_model(options) : draw_model(options);
}
