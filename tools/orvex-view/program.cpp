// What the program does, up to its exit code.

#include "program.h"

#include <orvex_kit/engine.h>

#include "glfw_window.h"
#include "messages.h"
#include "options.h"

using namespace orvex::kit;

namespace {

ExitCode show(const Options& options) {
    if (!options.model.empty())
        if (const std::string mistake = mistake_in_model(options); !mistake.empty())
            return fail(mistake);
    const Engine engine(engine_options(options));
    if (const std::string mistake = mistake_in_plugin(engine, options); !mistake.empty())
        return fail(mistake);
    GlfwViewerWindow window(options);
    if (!window.mistake().empty())
        return fail(window.mistake());
    Viewer viewer(options);
    if (const std::string mistake = viewer.open(); !mistake.empty())
        return fail(mistake);
    window.attach(viewer);
    const std::string mistake = run(viewer, window);
    return mistake.empty() ? EXIT_FINE : fail(mistake);
}

} // namespace

ExitCode run_program(const std::vector<std::string>& words) {
    set_program_name("orvex-view");
    Options options;
    if (const std::string mistake = read_options(words, options); !mistake.empty())
        return fail_usage(mistake);
    if (options.help)
        return print(help_text());
    if (options.version)
        return print(version_text());
    apply_wordiness(options);
    return show(options);
}
