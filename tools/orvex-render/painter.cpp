// From the model's file to its pictures.

#include "painter.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <utility>

#include <orvex/renderer/renderer.h>
#include <orvex_kit/frame_stream.h>
#include <orvex_kit/whole_file.h>

#include "layer_files.h"
#include "messages.h"
#include "progress_bar.h"
#include "start.h"
#include "unseen.h"

using namespace orvex;
using namespace orvex::kit;

namespace {

/// Pictures of a track in a second, as films have them.
const int rate = FrameStreamOptions().rate;

/// Adds the seconds of its life to a sum.
class Clock {
public:
    explicit Clock(double& sum)
        : sum(sum) {}
    ~Clock() {
        sum += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

private:
    double& sum;
    const std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
};

} // namespace

std::string Painter::prepare() {
    struct Step {
        Work work;
        std::string (Painter::*prepare)();
    };
    for (const Step& step :
         {Step{Work::view, &Painter::prepare_view}, Step{Work::model, &Painter::prepare_scene},
          Step{Work::extras, &Painter::prepare_text}, Step{Work::extras, &Painter::prepare_track},
          Step{Work::outputs, &Painter::prepare_outputs}}) {
        at = step.work;
        if (std::string mistake = (this->*step.prepare)(); !mistake.empty())
            return mistake;
    }
    steady = aim();
    return "";
}

namespace {

/// Takes the errors that the driver holds. @return whether it ran out of memory
bool has_run_out_of_memory(Renderer& renderer) {
    constexpr unsigned int out_of_memory = 0x0505;
    // A context that is lost has errors without end.
    constexpr int most = 16;
    bool has_run_out = false;
    unsigned int error = renderer.get_opengl_error();
    for (int i = 0; i < most && error != 0; ++i, error = renderer.get_opengl_error())
        has_run_out = has_run_out || error == out_of_memory;
    return has_run_out;
}

} // namespace

std::string Painter::prepare_view() {
    std::string mistake = easel.prepare(options);
    // What went wrong with an earlier model is no matter of this one.
    if (mistake.empty())
        has_run_out_of_memory(*easel.view().renderer());
    return mistake;
}

/// What is to be said of pictures that were drawn: a driver without memory leaves out a texture, a
/// mesh or all of it, and tells by an error alone.
std::string Painter::mistake_of_driver() {
    return has_run_out_of_memory(*easel.view().renderer()) ? "the driver ran out of memory" : "";
}

std::string Painter::prepare_scene() {
    const Clock clock(taken.load);
    return load_scene();
}

std::string Painter::load_scene() {
    scene = kit::Model(options.model, model_options(options));
    for (const ModelTexture& texture : scene.textures())
        if (!texture.reason.empty())
            tell_warning("texture " + texture.name + ": " + texture.reason);
    up = options.up == UpAxis::automatic ? scene.up_axis() : options.up;
    return scene.reason();
}

std::string Painter::prepare_text() {
    std::string reason;
    if (!options.text.empty())
        overlay = easel.text(options.font, reason);
    return reason;
}

std::vector<std::string> Painter::inputs() const {
    std::vector<std::string> inputs = scene.files();
    if (overlay)
        for (const std::string& file : overlay->files())
            inputs.push_back(file);
    for (const std::string& own :
         {options.track, options.reference, options.plugin, look_of(options.look).path()})
        if (!own.empty())
            inputs.push_back(own);
    return inputs;
}

/// The first of the names that is a file from which the picture is made; empty without one.
std::string Painter::input_among(const std::vector<std::string>& names) const {
    const std::vector<std::string> known = inputs();
    for (const std::string& name : names)
        for (const std::string& input : known)
            if (are_same_file(name, input))
                return name;
    return "";
}

std::string Painter::prepare_track() {
    if (options.track.empty())
        return "";
    track = Track(options.track);
    constexpr int most = 100000;
    if (track && (track.end() - track.begin()) * rate >= most)
        return options.track + ": takes longer than a film of " + std::to_string(most) +
               " pictures";
    return track.reason();
}

/// A name that nobody asked for makes way for an input; one that was asked for is refused.
std::string Painter::prepare_outputs() {
    std::vector<std::string> names = options.layers.empty()
                                         ? outputs_of(options)
                                         : files_of_layers(options.layers, options.output);
    std::string input = input_among(names);
    if (!input.empty() && options.output.empty()) {
        names = outputs_of(options, "-render");
        input = input_among(names);
    }
    if (input.empty() && !options.reference.empty())
        input = input_among({difference_of(options)});
    if (!input.empty())
        return "can't write " + input + ": the picture is made from it";
    sink = std::make_unique<Sink>(names, format_of(options), is_film(options));
    return names.front() == "-" ? "" : mistake_in_writing(names.front());
}

int Painter::num_pictures() const {
    return track ? 1 + static_cast<int>(std::floor((track.end() - track.begin()) * rate))
                 : pictures_of(options);
}

Angle Painter::angle_of(int number) const {
    const float turn =
        360.0f * static_cast<float>(number) / static_cast<float>(pictures_of(options));
    return {options.azimuth + (track ? 0.0f : turn), options.elevation, up};
}

Lens Painter::lens() const {
    return {options.size.width, options.size.height, options.zoom};
}

/// A turn keeps to one aim, or the model would seem to breathe.
Aim Painter::aim() const {
    const Angle first = angle_of(0);
    const int pictures = pictures_of(options);
    Aim one = is_turn(options) ? turning_aim(scene.extent(), first, lens(), std::min(pictures, 36))
                               : tight_aim(scene.extent(), first, lens());
    one.distance *= options.distance;
    return one;
}

kit::Camera Painter::camera_of(int number) const {
    if (!track)
        return aimed(scene.extent(), angle_of(number), lens(), steady);
    kit::Camera camera = track.at(track.begin() + static_cast<double>(number) / rate);
    fit_clip(camera, scene.extent());
    return camera;
}

TextOverlay::Setting Painter::setting() const {
    return {text_place_of(options.text_place).value(), options.text_size, options.text_color,
            options.size.width, options.size.height};
}

void Painter::warn_of_text() const {
    if (!overlay->has_room_for(options.text, setting()))
        tell_warning("the text runs out of the picture");
    if (const std::string missing = overlay->missing_glyphs(options.text); !missing.empty())
        tell_warning("the font has no glyph for " + missing);
}

std::string Painter::draw_text() {
    if (!overlay->draw(options.text, setting()))
        return "the text has too many lines";
    if (!std::exchange(is_text_looked_at, true))
        warn_of_text();
    return "";
}

namespace {

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

/// Whether any pixel of a layer of ids shows something.
bool has_ids(const Picture& picture) {
    for (int y = 0; y < picture.height(); ++y) {
        const auto* const ids = picture.row<std::int32_t>(y);
        if (std::any_of(ids, ids + picture.width(), [](std::int32_t id) { return id >= 0; }))
            return true;
    }
    return false;
}

} // namespace

/// Draws one picture, and reads it.
std::string Painter::draw(int number) {
    const Clock clock(taken.draw);
    View& view = easel.view();
    view.renderer()->rasterizer_set_polygon_mode(
        POLYGON_FACE_FRONT_AND_BACK, options.wireframe ? POLYGON_MODE_LINE : POLYGON_MODE_FILL);
    view.begin(camera_of(number));
    view.add(scene, angle_of(number));
    view.end();
    if (!seen || !overlay)
        if (const kit::Outcome read = view.read(last); !read)
            return read.reason();
    seen = seen || !shows_only(options.background, last);
    if (overlay) {
        if (std::string mistake = draw_text(); !mistake.empty())
            return mistake;
        if (const kit::Outcome read = view.read(last); !read)
            return read.reason();
    }
    view.present();
    return "";
}

std::string Painter::paint(int number) {
    at = Work::drawing;
    if (std::string mistake = draw(number); !mistake.empty())
        return mistake;
    if (std::string mistake = mistake_of_driver(); !mistake.empty())
        return mistake;
    // No picture is better than an empty one among others.
    if (options.is_thumbnail && !seen)
        return "";
    at = Work::writing;
    const Clock clock(taken.write);
    return sink->put(last, options.background.a < 1.0f);
}

/// The layers of the one picture, in place of it.
std::string Painter::paint_layers() {
    const kit::Camera camera = camera_of(0);
    std::vector<Picture> pictures;
    at = Work::drawing;
    if (std::string mistake = draw_layers(camera, pictures); !mistake.empty())
        return mistake;
    if (std::string mistake = mistake_of_driver(); !mistake.empty())
        return mistake;
    at = Work::writing;
    const Clock clock(taken.write);
    return write_layer_files({options.layers, std::move(pictures), camera, scene}, options.output);
}

std::string Painter::draw_layers(const kit::Camera& camera, std::vector<Picture>& pictures) {
    const Clock clock(taken.draw);
    LayerOptions wanted;
    wanted.lit_from = angle_of(0);
    // Ids of objects tell whether there is anything to be seen.
    std::vector<Layer> layers = options.layers;
    layers.push_back(Layer::object);
    easel.view().renderer()->rasterizer_set_polygon_mode(
        POLYGON_FACE_FRONT_AND_BACK, options.wireframe ? POLYGON_MODE_LINE : POLYGON_MODE_FILL);
    if (const kit::Outcome drawn =
            kit::draw_layers(easel.view(), camera, {&scene}, layers, pictures, wanted);
        !drawn)
        return drawn.reason();
    seen = has_ids(pictures.back());
    pictures.pop_back();
    return "";
}

std::string Painter::paint() {
    if (!options.layers.empty())
        return paint_layers();
    const int count = num_pictures();
    const ProgressBar bar(stderr, count, count > 1 && !options.quiet);
    for (int i = 0; i < count; ++i) {
        if (std::string mistake = paint(i); !mistake.empty())
            return mistake;
        bar.show(i + 1);
    }
    const Clock clock(taken.write);
    return sink->finish();
}

std::string Painter::reason_for_nothing() const {
    return ::reason_for_nothing(scene, camera_of(0), {options.size.width, options.size.height});
}

std::string Painter::told() const {
    return options.layers.empty()
               ? sink->told()
               : "wrote " + options.output + " in " + std::to_string(options.layers.size()) +
                     " layers, told of by " + file_about_layers(options.output);
}
