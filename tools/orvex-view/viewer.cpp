// What keys, mouse and files come to. Drawing is in viewer_draw.cpp.

#include "viewer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>

#include <orvex_kit/files.h>

#include "messages.h"
#include "start.h"

using namespace orvex::kit;

namespace {

std::string name_of(const std::string& path) {
    return path.substr(folder_of(path).size());
}

/// Sentences with a semicolon between.
void append(std::string& text, const std::string& sentence) {
    text += (text.empty() ? "" : "; ") + sentence;
}

constexpr const char* hint = "h shows the keys";

/// The corners of the box around a model.
Extent corners_of(const Bounds& bounds) {
    Extent corners;
    const auto pick = [](bool is_high, float low, float high) { return is_high ? high : low; };
    for (int i = 0; i < 8 && !bounds.is_empty; ++i)
        corners.points.emplace_back(pick(i & 1, bounds.min.x, bounds.max.x),
                                    pick(i & 2, bounds.min.y, bounds.max.y),
                                    pick(i & 4, bounds.min.z, bounds.max.z), 1.0f);
    return corners;
}

/// What a model lacks, or what is odd about it; empty if nothing is.
std::string what_is_odd(const Model& model) {
    std::string text;
    for (const ModelTexture& texture : model.textures())
        if (!texture.reason.empty())
            append(text, "texture " + texture.name + ": " + texture.reason);
    for (const std::string& sentence : model.notes())
        append(text, sentence);
    return text;
}

} // namespace

Viewer::Viewer(const Options& options)
    : options(options)
    , wanted_up(options.up)
    , current_layer(options.layer)
    , has_edges(options.wireframe)
    , has_text(!options.bare)
    , has_statistics(options.statistics) {}

std::string Viewer::open() {
    if (std::string mistake = looks.choose(options.look); !mistake.empty())
        return mistake;
    if (options.model.empty())
        return "";
    if (std::string mistake = shown.load(options.model, model_options(options)); !mistake.empty())
        return mistake;
    frame_model();
    if (const std::string odd = what_is_odd(shown.model()); !odd.empty())
        warn(odd);
    else if (has_text)
        notice = hint;
    return "";
}

void Viewer::press(Key key) {
    eye.hold(key, true);
    const Command command = command_of(key, eye.is_shift_held());
    if (command == Command::none)
        return;
    forget_notice();
    obey(command, key);
    is_stale = true;
}

void Viewer::release(Key key) {
    eye.hold(key, false);
}

void Viewer::obey(Command command, Key key) {
    switch (command) {
    case Command::none:
        break;
    case Command::next_look:
        looks.step(1);
        break;
    case Command::previous_look:
        looks.step(-1);
        break;
    case Command::look_by_number:
        choose_look(key);
        break;
    case Command::next_layer:
        step_layer(1);
        break;
    case Command::previous_layer:
        step_layer(-1);
        break;
    case Command::wireframe:
        has_edges = !has_edges;
        break;
    case Command::up_axis:
        step_up_axis();
        break;
    case Command::home:
        eye.orbit.reset();
        break;
    case Command::text:
        has_text = !has_text;
        break;
    case Command::statistics:
        has_statistics = !has_statistics;
        clock.reset();
        break;
    case Command::picture:
        is_picture_wanted = true;
        break;
    case Command::reload:
        take(shown.reload());
        break;
    case Command::help:
        has_help = !has_help;
        break;
    case Command::end:
        has_ended = true;
        break;
    }
}

void Viewer::choose_look(Key digit) {
    const int number = static_cast<int>(digit) - '0';
    if (!looks.choose_number(static_cast<std::size_t>(number)))
        warn("there is no look " + std::to_string(number) + ": they go to " +
             std::to_string(looks.size()));
}

void Viewer::step_layer(int places) {
    constexpr int count = static_cast<int>(Layer::face) + 1;
    current_layer = static_cast<Layer>((static_cast<int>(current_layer) + places + count) % count);
}

/// The next of the six, from the one that is up now; seen from where it was framed.
void Viewer::step_up_axis() {
    constexpr int first = static_cast<int>(UpAxis::x);
    constexpr int count = static_cast<int>(UpAxis::minus_z) - first + 1;
    if (!shown.model())
        return;
    wanted_up = static_cast<UpAxis>((static_cast<int>(up_axis()) - first + 1) % count + first);
    frame_model();
}

void Viewer::move_pointer(double x, double y) {
    is_stale = eye.move_pointer(x, y, screen) || is_stale;
}

void Viewer::turn_wheel(double notches) {
    is_stale = eye.turn_wheel(notches) || is_stale;
}

void Viewer::advance(double seconds) {
    is_stale = eye.advance(seconds) || is_stale;
}

/// One model or look at a time: the last of several stays.
void Viewer::drop(const std::vector<std::string>& paths) {
    forget_notice();
    for (const std::string& path : paths)
        if (!has_suffix(path, ".glsl"))
            show(path);
        else if (const std::string mistake = looks.choose(path); !mistake.empty())
            warn(mistake);
    is_stale = true;
}

void Viewer::show(const std::string& path) {
    if (const std::string mistake = shown.load(path, model_options(options)); !mistake.empty())
        return warn(mistake);
    wanted_up = options.up;
    frame_model();
    if (const std::string odd = what_is_odd(shown.model()); !odd.empty())
        warn(odd);
}

void Viewer::look_at_files() {
    if (looks.look_at_file()) {
        note(looks.name() + " is read again");
        is_stale = true;
    }
    if (const ShownModel::Change change = shown.look(); change != ShownModel::Change::none) {
        take(change);
        is_stale = true;
    }
}

/// The eye stays where it is, as far as the new model lets it.
void Viewer::take(ShownModel::Change change) {
    if (change == ShownModel::Change::none)
        return;
    if (change == ShownModel::Change::refused)
        return warn("not read again: " + shown.reason());
    OrbitPlace place = eye.orbit.place();
    frame_model();
    if (wanted_up == UpAxis::automatic)
        place.angle.up = shown.model().up_axis();
    eye.orbit.go_to(place);
    const std::string odd = what_is_odd(shown.model());
    if (odd.empty())
        note(name_of(shown.path()) + " is read again");
    else
        warn(odd);
}

void Viewer::frame_model() {
    const Model& model = shown.model();
    const UpAxis up = wanted_up == UpAxis::automatic ? model.up_axis() : wanted_up;
    eye.orbit.frame(model.extent(), {options.azimuth, options.elevation, up});
}

void Viewer::resize(const Screen& size, float scale) {
    screen = size;
    text_scale = scale;
    is_stale = true;
}

void Viewer::count_frame(double seconds, double now) {
    if (has_statistics)
        clock.count(seconds, now);
}

void Viewer::note(const std::string& text) {
    notice = text;
    is_notice_bad = false;
    tell(text);
}

void Viewer::warn(const std::string& text) {
    notice = text;
    is_notice_bad = true;
    tell_warning(text);
}

void Viewer::forget_notice() {
    notice.clear();
    is_notice_bad = false;
}

orvex::kit::Camera Viewer::camera() const {
    orvex::kit::Camera seen = eye.orbit.camera(screen);
    // To look at every point of a large model takes longer than to draw it.
    constexpr std::size_t most_points = 100'000;
    const Extent& extent = shown.model().extent();
    if (extent.points.size() > most_points)
        fit_clip(seen, corners_of(shown.model().bounds()));
    else
        fit_clip(seen, extent);
    return seen;
}

std::string Viewer::window_title() const {
    return shown.model() ? name_of(shown.path()) + " - orvex-view" : "orvex-view";
}

std::string Viewer::title() const {
    std::string text = name_of(shown.path()) + "\n";
    if (current_layer == Layer::color)
        text += looks.name();
    else
        text += std::string(name_of(current_layer)) + (caption.empty() ? "" : ": ") + caption;
    return text + (has_edges ? ", edges alone" : "");
}

Words Viewer::words() const {
    Words words;
    words.notice = notice;
    words.is_notice_bad = is_notice_bad;
    words.has_help = has_help;
    if (has_text && shown.model())
        words.title = title();
    if (has_text && !shown.model() && !has_help)
        words.middle = std::string("drop a model here\n\n") + hint;
    if (!has_statistics)
        return words;
    std::array<char, 160> text{};
    std::snprintf(text.data(), text.size(),
                  "%.2f ms a frame, %.1f frames a second\n%zu faces, %dx%d", clock.milliseconds(),
                  clock.per_second(), shown.model().num_faces(), screen.width, screen.height);
    words.statistics = text.data();
    return words;
}
