#include "shared_options.h"

#include <array>
#include <optional>

#include <orvex_kit/look.h>

#include "takers.h"

using namespace orvex::kit;

void add_size_rule(Arguments& rules, SharedOptions& options, const std::string& help) {
    rules.add_value("--size", 's', "WxH", help,
                    take(options.size, "WxH in pixels, each from 1 to 16384,", size_in));
}

namespace {

/// Its name, or the path of a file, which has a dot or a slash.
std::optional<std::string> look_in(const std::string& word) {
    const bool is_file = word.find_first_of("./") != word.npos;
    return is_file || Look::named(word) ? std::optional(word) : std::nullopt;
}

std::string look_names() {
    std::string text;
    for (const std::string& name : Look::names())
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

} // namespace

void add_look_rules(Arguments& rules, SharedOptions& options) {
    rules.add_value("--look", 'l', "LOOK",
                    "how the model looks: " + look_names() + ", or a file of GLSL (lit)",
                    take(options.look, look_names() + " or a file", look_in));
    rules.add_flag("--wireframe", 'w', "draws the edges of the triangles only", options.wireframe);
    rules.add_value(
        "--normals", 'n', "file|smooth|flat",
        "where shading takes the normals from (for 3DS files smooth, or flat if they are angular; "
        "file for others)",
        take_word(options.normals, "file, smooth or flat",
                  std::array{std::pair{"file", Normals::file}, std::pair{"smooth", Normals::smooth},
                             std::pair{"flat", Normals::flat}}));
    rules.add_value("--samples", 'm', "N", "samples per pixel; 0 draws without multisampling (4)",
                    take_whole_number(options.samples, 0, 64));
    rules.add_value("--path", 0, "gl2|gl3",
                    "compatibility context and fixed arrays, or core context and generic "
                    "attributes (gl3)",
                    take_word(options.gl3, "gl2 or gl3",
                              std::array{std::pair{"gl2", false}, std::pair{"gl3", true}}));
}

void add_angle_rules(Arguments& rules, SharedOptions& options) {
    rules.add_value("--azimuth", 'a', "DEGREES",
                    "direction around the model: 0 is the front, 90 its right side (25)",
                    take_number(options.azimuth, -36000.0f, 36000.0f, "an angle in degrees"));
    rules.add_value(
        "--elevation", 'e', "DEGREES", "height above the horizon, -90 to 90 (20)",
        take_number(options.elevation, -90.0f, 90.0f, "an angle from -90 to 90 degrees"));
}

void add_up_rule(Arguments& rules, SharedOptions& options) {
    rules.add_value(
        "--up", 'u', "AXIS",
        "direction of the model that points up: x, y, z, -x, -y or -z; auto is y, but for a "
        "3DS file the one on which the model stands (auto)",
        take_word(options.up, "one of auto, x, y, z, -x, -y and -z",
                  std::array{std::pair{"auto", UpAxis::automatic}, std::pair{"x", UpAxis::x},
                             std::pair{"y", UpAxis::y}, std::pair{"z", UpAxis::z},
                             std::pair{"-x", UpAxis::minus_x}, std::pair{"-y", UpAxis::minus_y},
                             std::pair{"-z", UpAxis::minus_z}}));
}

void add_plugin_rule(Arguments& rules, SharedOptions& options) {
    rules.add_value("--plugin", 0, "FILE", "a plugin beside those that are found",
                    take_text(options.plugin, "a file"));
}

void add_loader_rule(Arguments& rules, SharedOptions& options) {
    rules.add_value("--loader", 0, "NAME", "the only loader that is asked to read the model",
                    take_text(options.loader, "a name"));
}

void add_time_rule(Arguments& rules, SharedOptions& options) {
    constexpr float most = 1e6f;
    rules.add_value("--time", 0, "SECONDS",
                    "the moment of a model that moves, by its first animation (at rest)",
                    take(options.time, "a number of seconds from -1000000 to 1000000",
                         [](const std::string& word) { return number_in(word, -most, most); }));
}

void add_message_rules(Arguments& rules, SharedOptions& options) {
    rules.add_flag("--help", 'h', "this text", options.help);
    rules.add_flag("--version", 'V', "the version", options.version);
    rules.begin_group("Messages");
    rules.add_flag("--quiet", 'q', "errors only", options.quiet);
    rules.add_flag("--verbose", 'v', "the engine's whole log", options.verbose);
}

void set_model_operand(Arguments& rules, SharedOptions& options) {
    rules.set_operand([&](const std::string& word) -> std::string {
        if (word.empty())
            return "a file";
        if (!options.model.empty())
            return "one model";
        options.model = word;
        return "";
    });
}

std::string mistake_of_shared(const SharedOptions& options) {
    return options.quiet && options.verbose ? "--quiet and --verbose exclude each other" : "";
}
