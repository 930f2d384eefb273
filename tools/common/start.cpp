#include "start.h"

#include <cstdio>

#include <orvex/kernel/core.h>
#include <orvex_kit/files.h>

#include "messages.h"

using namespace orvex::kit;

ExitCode fail(const std::string& message) {
    tell_error(message);
    return EXIT_FAILED;
}

ExitCode fail_usage(const std::string& mistake) {
    tell_error(mistake);
    std::fputs(("Try '" + program_name() + " --help'.\n").c_str(), stderr);
    return EXIT_USAGE;
}

ExitCode print(const std::string& text) {
    if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0)
        return fail("can't write to standard output");
    return EXIT_FINE;
}

std::string version_text() {
    return program_name() + " " ORVEX_TOOL_VERSION " (" + orvex::core::get_engine_codename() +
           ")\n";
}

void apply_wordiness(const SharedOptions& options) {
    if (options.quiet || options.verbose)
        set_wordiness(options.quiet ? Wordiness::quiet : Wordiness::verbose);
}

EngineOptions engine_options(const SharedOptions& options) {
    EngineOptions result;
    result.log = take_log_line;
    result.debug_lines = get_wordiness() == Wordiness::verbose;
    if (!options.plugin.empty())
        result.plugins.push_back(options.plugin);
    return result;
}

std::string mistake_in_plugin(const Engine& engine, const SharedOptions& options) {
    return options.plugin.empty() || engine.plugins().empty() ? "" : engine.plugins()[0].reason;
}

ViewOptions view_options(const SharedOptions& options) {
    ViewOptions result;
    result.path = options.gl3 ? Path::gl3 : Path::gl2;
    result.samples = options.samples;
    return result;
}

std::string mistake_in_model(const SharedOptions& options) {
    const std::string mistake = mistake_in_reading(options.model);
    return mistake.empty() || options.model != "-"
               ? mistake
               : "a model is read from a file, not from standard input: name one";
}

ModelOptions model_options(const SharedOptions& options) {
    ModelOptions result;
    result.normals = options.normals;
    result.loader = options.loader;
    result.time = options.time;
    return result;
}

Look look_of(const std::string& word) {
    const bool is_file = word.find_first_of("./") != word.npos;
    return is_file ? Look::from_file(word) : Look::named(word);
}

std::string mistake_in(const View& view) {
    if (view)
        return "";
    switch (view.failure()) {
    case ViewFailure::old_driver:
        return "no OpenGL 3.2 context: the driver offers less; --path gl2 draws with OpenGL 2.1";
    case ViewFailure::memory:
        return "no OpenGL context: there isn't enough memory for a driver";
    case ViewFailure::no_driver:
        return "no OpenGL context: no driver is found; the package libgl1-mesa-dri has one";
    case ViewFailure::samples: {
        std::string reason = view.reason();
        return reason.insert(reason.find("samples 0"), "--");
    }
    case ViewFailure::none:
    case ViewFailure::no_engine:
    case ViewFailure::size:
    case ViewFailure::window:
        break;
    }
    return view.reason();
}
