// What the program does: each way through it gives one exit code, and the first thing that goes
// wrong ends it with one message.

#include "program.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <memory>

#include <orvex/kernel/core.h>
#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>
#include <orvex_kit/engine.h>
#include <orvex_kit/files.h>
#include <orvex_kit/framing.h>
#include <orvex_kit/look.h>
#include <orvex_kit/model.h>
#include <orvex_kit/program.h>
#include <orvex_kit/view.h>
#include <orvex_kit/whole_file.h>

#include "messages.h"
#include "options.h"
#include "progress_bar.h"
#include "report.h"
#include "text_overlay.h"

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
EngineOptions engine_options() {
    EngineOptions options;
    options.log = take_log_line;
    options.debug_lines = get_wordiness() == Wordiness::verbose;
    return options;
}

ViewOptions view_options(const Options& options, int samples) {
    ViewOptions result;
    result.path = options.gl3 ? Path::gl3 : Path::gl2;
    result.samples = samples;
    return result;
}

/// Why there is no view, with this program's options in place of the kit's.
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

ExitCode tell_of_model(const Options& options) {
    const std::string mistake = mistake_in_model(options);
    if (!mistake.empty())
        return fail(mistake);
    const Engine engine(engine_options());
    const kit::Model scene(options.model);
    return scene ? print(report_of_model(options.model, scene)) : fail(scene.reason());
}

ExitCode tell_of_context(const Options& options) {
    const Engine engine(engine_options());
    const View view(16, 16, view_options(options, 0));
    if (!view)
        return fail(mistake_in(view));
    return print(report_of_context(view.renderer(), view.window(), options.verbose));
}

/// Draws the pictures of one model.
class Painter {
public:
    explicit Painter(const Options& options)
        : options(options) {}
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    /// Everything up to the first picture. @return what went wrong; empty if nothing did
    std::string prepare();
    /// Draws and writes all pictures. @return what went wrong; empty if nothing did
    std::string paint();
    /// The files of the pictures, after a good `prepare`.
    const std::vector<std::string>& files() const { return outputs; }
    /// Whether the model has left a pixel in any picture.
    bool has_shown_something() const { return seen; }

private:
    const Options& options;
    View view;
    Program model_program;
    Program text_program;
    kit::Model scene;
    std::unique_ptr<TextOverlay> overlay;
    UpAxis up = UpAxis::y; ///< of the model
    std::vector<std::string> outputs;
    bool seen = false;
    bool is_text_looked_at = false;

    std::string prepare_scene();
    std::string prepare_text();
    std::string prepare_outputs();
    std::string input_among(const std::vector<std::string>& names) const;
    std::string paint(const Angle& angle, const Aim& aim, const std::string& output);
    Angle angle_of(int picture) const;
    Lens lens() const;
    Aim aim() const;
    void draw(const Angle& angle, const Aim& aim);
    TextOverlay::Setting setting() const;
    std::string draw_text();
    std::string look_at_picture();
};

std::string Painter::prepare() {
    view = View(options.size.width, options.size.height, view_options(options, options.samples));
    if (!view)
        return mistake_in(view);
    const Color& behind = options.background;
    view.set_background({behind.r, behind.g, behind.b, 1.0f});
    if (options.samples > 1 && view.samples() < options.samples)
        tell_warning(std::to_string(options.samples) + " samples per pixel aren't offered here; " +
                     std::to_string(view.samples()) + " are");
    for (const auto step :
         {&Painter::prepare_scene, &Painter::prepare_text, &Painter::prepare_outputs})
        if (const std::string mistake = (this->*step)(); !mistake.empty())
            return mistake;
    return "";
}

std::string Painter::prepare_scene() {
    model_program = Program::from_text(view, model_shader(options.gl3), "orvex-render model");
    if (!model_program)
        return model_program.reason();
    scene = kit::Model(options.model, {options.normals});
    for (const ModelTexture& texture : scene.textures())
        if (!texture.reason.empty())
            tell_warning("texture " + texture.name + ": " + texture.reason);
    up = options.up == UpAxis::automatic ? scene.up_axis() : options.up;
    return scene.reason();
}

std::string Painter::prepare_text() {
    if (options.text.empty())
        return "";
    text_program = Program::from_text(view, text_shader(options.gl3), "orvex-render text");
    if (!text_program)
        return text_program.reason();
    overlay = std::make_unique<TextOverlay>(view.renderer(), text_program.gpu(), options.gl3);
    return overlay->load(options.font);
}

/// The first of the names that is a file from which the picture is made; empty without one.
std::string Painter::input_among(const std::vector<std::string>& names) const {
    std::vector<std::string> inputs = scene.files();
    if (overlay)
        for (const std::string& file : overlay->files())
            inputs.push_back(file);
    for (const std::string& name : names)
        for (const std::string& input : inputs)
            if (are_same_file(name, input))
                return name;
    return "";
}

/// A name that nobody asked for makes way for an input; one that was asked for is refused.
std::string Painter::prepare_outputs() {
    outputs = outputs_of(options);
    std::string taken = input_among(outputs);
    if (!taken.empty() && options.output.empty()) {
        outputs = outputs_of(options, "-render");
        taken = input_among(outputs);
    }
    if (!taken.empty())
        return "can't write " + taken + ": the picture is made from it";
    return mistake_in_writing(outputs.front());
}

Angle Painter::angle_of(int picture) const {
    const float turn = options.turntable > 0 ? 360.0f * static_cast<float>(picture) /
                                                   static_cast<float>(options.turntable)
                                             : 0.0f;
    return {options.azimuth + turn, options.elevation, up};
}

Lens Painter::lens() const {
    return {options.size.width, options.size.height, options.zoom};
}

/// A turn keeps to one aim, or the model would seem to breathe.
Aim Painter::aim() const {
    const Angle first = angle_of(0);
    Aim one = options.turntable == 0
                  ? tight_aim(scene.extent(), first, lens())
                  : turning_aim(scene.extent(), first, lens(), std::min(options.turntable, 36));
    one.distance *= options.distance;
    return one;
}

void Painter::draw(const Angle& angle, const Aim& aim) {
    view.renderer()->rasterizer_set_polygon_mode(
        POLYGON_FACE_FRONT_AND_BACK, options.wireframe ? POLYGON_MODE_LINE : POLYGON_MODE_FILL);
    view.begin(aimed(scene.extent(), angle, lens(), aim));
    scene.draw(*view.renderer(), *model_program.gpu(), view.path(), angle);
    view.end();
}

TextOverlay::Setting Painter::setting() const {
    return {text_place_of(options.text_place).value(), options.text_size, options.text_color,
            options.size.width, options.size.height};
}

std::string Painter::draw_text() {
    if (!overlay)
        return "";
    if (!overlay->draw(options.text, setting()))
        return "the text has too many lines";
    if (!is_text_looked_at && !overlay->has_room_for(options.text, setting()))
        tell_warning("the text runs out of the picture");
    is_text_looked_at = true;
    return "";
}

/// Whether a picture has no pixel in another colour, as when nothing was drawn.
bool shows_only(const Color& color, const Picture& picture) {
    // A driver rounds as it likes.
    const auto is_near = [](std::uint8_t value, float wanted) {
        return std::abs(static_cast<float>(value) - wanted * 255.0f) <= 1.0f;
    };
    for (int y = 0; y < picture.height(); ++y) {
        const auto* pixel = picture.row<std::uint8_t>(y);
        for (int x = 0; x < picture.width(); ++x, pixel += picture.channels())
            if (!is_near(pixel[0], color.r) || !is_near(pixel[1], color.g) ||
                !is_near(pixel[2], color.b))
                return false;
    }
    return true;
}

std::string Painter::look_at_picture() {
    Picture picture;
    const kit::Outcome done = view.read(picture);
    seen = done && !shows_only(options.background, picture);
    return done.reason();
}

std::string Painter::paint(const Angle& angle, const Aim& from, const std::string& output) {
    draw(angle, from);
    std::string mistake = seen ? "" : look_at_picture();
    if (mistake.empty())
        mistake = draw_text();
    return mistake.empty() ? view.write(output, {PictureFormat::jpeg}).reason() : mistake;
}

std::string Painter::paint() {
    const Aim steady = aim();
    const ProgressBar bar(stderr, static_cast<int>(outputs.size()),
                          options.turntable > 0 && !options.quiet);
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        const std::string mistake = paint(angle_of(static_cast<int>(i)), steady, outputs[i]);
        if (!mistake.empty())
            return mistake;
        view.present();
        bar.show(static_cast<int>(i) + 1);
    }
    return "";
}

std::string written(const std::vector<std::string>& outputs) {
    return outputs.size() == 1 ? "wrote " + outputs.front()
                               : "wrote " + std::to_string(outputs.size()) + " pictures, " +
                                     outputs.front() + " to " + outputs.back();
}

ExitCode draw_model(const Options& options) {
    std::string mistake = mistake_in_model(options);
    if (mistake.empty() && !options.output.empty())
        mistake = mistake_in_writing(outputs_of(options).front());
    if (!mistake.empty())
        return fail(mistake);
    const Engine engine(engine_options());
    Painter painter(options);
    for (const auto step : {&Painter::prepare, &Painter::paint})
        if (mistake = (painter.*step)(); !mistake.empty())
            return fail(mistake);
    tell(written(painter.files()));
    // In the exit code, so in every wordiness.
    return painter.has_shown_something()
               ? EXIT_FINE
               : fail("warning: nothing of " + options.model + " can be seen");
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
    if (options.gl)
        return tell_of_context(options);
    return options.info ? tell_of_model(options) : draw_model(options);
}
