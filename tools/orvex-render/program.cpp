// What the program does: each way through it gives one exit code, and the first thing that goes
// wrong ends it with one message.

#include "program.h"

#include <cstdlib>

#include <orvex_kit/engine.h>
#include <orvex_kit/model.h>
#include <orvex_kit/view.h>
#include <orvex_kit/whole_file.h>

#include "batch/run_batch.h"
#include "batch/run_service.h"
#include "easel.h"
#include "messages.h"
#include "options.h"
#include "painter.h"
#include "report.h"
#include "sink.h"

using namespace orvex;
using namespace orvex::kit;

namespace {

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
    ViewOptions wanted = view_options(options);
    wanted.samples = 0;
    const View view(16, 16, wanted);
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
    const Likeness likeness = judge(picture, reference, options.tolerance);
    if (!likeness.mistake.empty())
        return fail(likeness.mistake);
    if (likeness.difference.empty())
        return EXIT_FINE;
    std::string shown;
    if (!likeness.shown.is_empty()) {
        const std::string name = difference_of(options);
        if (const kit::Outcome written = write_picture(likeness.shown, name); !written)
            return fail(written.reason());
        shown = "; " + name + " shows where";
    }
    return fail("not as " + options.reference + ": " + likeness.difference + shown);
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
    Easel easel;
    Painter painter(options, easel);
    mistake = painter.prepare();
    if (mistake.empty())
        mistake = painter.paint();
    if (!mistake.empty())
        return fail(mistake);
    // In the exit code, so in every wordiness. What was written is no success to tell of.
    if (!painter.has_shown_something())
        return fail("nothing of " + options.model +
                    " can be seen: " + painter.reason_for_nothing());
    tell(painter.told());
    return reference.is_empty() ? EXIT_FINE : compare_with(reference, painter.picture(), options);
}

} // namespace

ExitCode run_program(const std::vector<std::string>& words) {
    set_program_name("orvex-render");
    Options options;
    const std::string mistake = read_options(words, options);
    if (!mistake.empty())
        return fail_usage(mistake);
    if (options.help)
        return print(help_text());
    if (options.version)
        return print(version_text());
    apply_wordiness(options);
    if (options.list_devices)
        return print(report_of_devices());
    if (options.batch.serve)
        return batch::run_service(options);
    if (!options.batch.manifest.empty() || !options.batch.list.empty())
        return batch::run_batch(options);
    if (!options.device.empty())
        ::setenv("ORVEX_GL_DEVICE", options.device.c_str(), 1);
    if (options.gl)
        return tell_of_context(options);
    return options.info ? tell_of_model(options) : draw_model(options);
}
