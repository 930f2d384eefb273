#include "options.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <sstream>

#include <orvex_kit/files.h>

#include "batch/confinement.h"
#include "takers.h"
#include "text_place.h"

using namespace orvex::kit;

namespace {

std::optional<PictureFormat> format_in(const std::string& word) {
    const PictureFormat format = picture_format_named(word);
    return format == PictureFormat::by_suffix ? std::nullopt : std::optional(format);
}

/// Names with commas between them, each once.
std::optional<std::vector<Layer>> layers_in(const std::string& word) {
    std::vector<Layer> layers;
    std::istringstream names(word);
    for (std::string name; std::getline(names, name, ',');) {
        const std::optional<Layer> layer = layer_named(name);
        if (!layer || std::find(layers.begin(), layers.end(), *layer) != layers.end())
            return std::nullopt;
        layers.push_back(*layer);
    }
    return layers.empty() || word.back() == ',' ? std::nullopt : std::optional(layers);
}

/// A few options by one word, which stand below those that are given themselves: rules are taken in
/// their order, whatever that of the words.
void add_thumbnail_rule(Arguments& rules, Options& options) {
    rules.add_value("--thumbnail", 0, "PIXELS",
                    "a small picture for a file manager: a PNG of that width and height, without a "
                    "background, and no file at all where nothing can be seen",
                    [&options](const std::string& word) {
                        const std::optional<int> pixels = whole_number_in(word, 1, 4096);
                        if (!pixels)
                            return std::string("a whole number from 1 to 4096");
                        options.size = {*pixels, *pixels};
                        options.background = {0.0f, 0.0f, 0.0f, 0.0f};
                        options.format = PictureFormat::png;
                        options.is_thumbnail = true;
                        return std::string();
                    });
}

void add_picture_rules(Arguments& rules, Options& options) {
    rules.begin_group("The picture");
    add_thumbnail_rule(rules, options);
    rules.add_value("--output", 'o', "FILE",
                    "where the picture goes: " + format_names(".") +
                        ", or - for standard output (MODEL's name with .jpg, in this folder)",
                    take_text(options.output, "a file, or - for standard output,"));
    rules.add_value("--format", 0, "FORMAT",
                    "how it is written, whatever its name: " + format_names(),
                    take(options.format, format_names(), format_in));
    rules.add_value("--layers", 0, "NAMES",
                    "what each pixel shows, as data: some of " + layer_names() +
                        ", with commas between; as .png or .npy a file each, and what they mean in "
                        ".json",
                    take(options.layers,
                         "some of " + layer_names() + ", each once, with commas between,",
                         layers_in));
    add_size_rule(rules, options, "its size in pixels (1280x960)");
    rules.add_value("--background", 'b', "COLOR",
                    "colour behind the model: #rgb, #rrggbb, a name, or transparent (#2b3038)",
                    take(options.background,
                         "#rgb, #rrggbb, transparent or one of " + color_names(), background_in));
    add_look_rules(rules, options);
}

void add_camera_rules(Arguments& rules, Options& options) {
    rules.begin_group("The camera");
    add_angle_rules(rules, options);
    rules.add_value("--distance", 'd', "FACTOR",
                    "distance of the eye, in parts of that from which all is seen (1)",
                    take_number(options.distance, 0.01f, 1000.0f, "a factor from 0.01 to 1000"));
    rules.add_value("--zoom", 'z', "FACTOR", "magnification, from the same place (1)",
                    take_number(options.zoom, 0.01f, 1000.0f, "a factor from 0.01 to 1000"));
    add_up_rule(rules, options);
    rules.add_value("--turntable", 't', "N",
                    "N pictures of one turn around the model: FILE-001.jpg and so on",
                    take_whole_number(options.turntable, 1, 100000));
    rules.add_value("--film", 0, "N",
                    "N pictures of one turn as a film, .y4m or .raw, which encoders take from -",
                    take_whole_number(options.film, 1, 100000));
    rules.add_value("--track", 0, "FILE",
                    "a film along the way of a camera, as a file of JSON tells it, 25 pictures a "
                    "second",
                    take_text(options.track, "a file"));
}

void add_text_rules(Arguments& rules, Options& options) {
    rules.begin_group("Text over the picture");
    rules.add_value("--text", 'x', "TEXT", "writes a text; \\n begins a new line",
                    take_text(options.text, "a text"));
    rules.add_value("--text-place", 0, "PLACE",
                    "top, center or bottom, and with -left or -right; left, right (bottom-left)",
                    [&](const std::string& word) {
                        if (!text_place_of(word))
                            return std::string("a place such as top or bottom-left");
                        options.text_place = word;
                        return std::string();
                    });
    rules.add_value("--text-size", 0, "PIXELS", "height of a line (24)",
                    take_whole_number(options.text_size, 4, 1000));
    rules.add_value("--text-color", 0, "COLOR", "its colour (white)",
                    take_color(options.text_color));
    rules.add_value("--font", 0, "FILE",
                    "a font in BMFont XML with its sheet beside it, in place of the built-in one",
                    take_text(options.font, "a file"));
}

void add_reference_rules(Arguments& rules, Options& options) {
    rules.begin_group("Comparison");
    rules.add_value("--ref", 0, "PICTURE",
                    "compares the picture's colours with another one; where they differ, a picture "
                    "of that lies beside it, as FILE-difference.png",
                    take_text(options.reference, "a file"));
    rules.add_value("--tolerance", 0, "N",
                    "largest difference of a channel that counts as equal, 0 to 255 (0)",
                    take_whole_number(options.tolerance, 0, 255));
}

void add_machine_rules(Arguments& rules, Options& options) {
    rules.begin_group("What reads and draws");
    add_plugin_rule(rules, options);
    add_loader_rule(rules, options);
    add_time_rule(rules, options);
    rules.add_value("--device", 0, "DEVICE",
                    "what draws: an index, a PCI path or software, as ORVEX_GL_DEVICE",
                    take_text(options.device, "a device"));
}

void add_other_rules(Arguments& rules, Options& options) {
    rules.begin_group("Instead of a picture");
    rules.add_flag("--info", 'i', "tells what the model holds", options.info);
    rules.add_flag("--json", 0, "with --info: tells it as JSON", options.json);
    rules.add_flag("--gl", 0, "tells what OpenGL offers here; with -v its extensions too",
                   options.gl);
    rules.add_flag("--list-devices", 0, "tells what can draw here, for --device",
                   options.list_devices);
    add_message_rules(rules, options);
}

} // namespace

void add_model_rules(Arguments& rules, Options& options) {
    add_picture_rules(rules, options);
    add_camera_rules(rules, options);
    add_text_rules(rules, options);
    add_loader_rule(rules, options);
    add_time_rule(rules, options);
}

void add_rules(Arguments& rules, Options& options) {
    add_picture_rules(rules, options);
    add_camera_rules(rules, options);
    add_text_rules(rules, options);
    add_reference_rules(rules, options);
    add_machine_rules(rules, options);
    batch::add_batch_rules(rules, options.batch);
    add_other_rules(rules, options);
    set_model_operand(rules, options);
}

namespace {

bool is_film_format(PictureFormat format) {
    return format == PictureFormat::y4m || format == PictureFormat::raw;
}

/// What doesn't go together about the files.
std::string mistake_in_outputs(const Options& options) {
    if ((options.turntable > 0) + (options.film > 0) + !options.track.empty() > 1)
        return "--turntable, --film and --track exclude each other";
    if (options.turntable > 0 && options.output == "-")
        return "--turntable writes a file a picture: --film writes one to standard output";
    if (format_of(options) == PictureFormat::by_suffix)
        return options.output == "-" ? "--output - needs a --format"
                                     : "--output can't be '" + options.output +
                                           "' without a --format: a name that ends in " +
                                           format_names() + " is wanted";
    if (is_film(options) && !is_film_format(format_of(options)))
        return "a film is written as y4m or raw";
    if (!can_write_format(format_of(options)))
        return "this build can't write OpenEXR files";
    if ((is_turn(options) || is_film(options)) && !options.reference.empty())
        return "--ref compares one picture";
    if (options.tolerance > 0 && options.reference.empty())
        return "--tolerance needs a --ref";
    return "";
}

/// What doesn't go with layers.
std::string mistake_in_layers(const Options& options) {
    const PictureFormat format = format_of(options);
    if (options.layers.empty())
        return "";
    if (is_turn(options) || is_film(options))
        return "--layers are those of one picture";
    if (options.output.empty() || options.output == "-")
        return "--layers need an --output that is a file";
    if (format != PictureFormat::png && format != PictureFormat::npy &&
        format != PictureFormat::exr)
        return "--layers are written as png, npy or exr";
    if (options.format != PictureFormat::by_suffix)
        return "--layers are written as the suffix says, whatever --format";
    if (!options.text.empty() || !options.reference.empty())
        return std::string("--layers have no place for ") +
               (options.text.empty() ? "--ref" : "--text");
    return "";
}

} // namespace

std::string mistake_of(const Options& options) {
    if (std::string mistake = mistake_of_shared(options); !mistake.empty())
        return mistake;
    if (options.info + options.gl + options.list_devices > 1)
        return "--info, --gl and --list-devices exclude each other";
    if (options.json && !options.info)
        return "--json goes with --info";
    const bool needs_model = !options.gl && !options.list_devices;
    if (!needs_model && !options.model.empty())
        return std::string(options.gl ? "--gl" : "--list-devices") + " takes no model";
    if (needs_model && options.model.empty())
        return "no model given";
    if (options.info && !options.output.empty())
        return "--info draws no picture: there is nothing for --output";
    const std::string mistake = mistake_in_outputs(options);
    return mistake.empty() ? mistake_in_layers(options) : mistake;
}

namespace {

/// What has no place beside many models.
std::string mistake_of_many(const Options& options) {
    if (std::string mistake = mistake_of_shared(options); !mistake.empty())
        return mistake;
    const std::string which = options.batch.serve ? "--serve" : "a batch";
    if (!options.model.empty())
        return which + " takes its models from entries, not from the command line";
    if (!options.output.empty())
        return "--output is of one model: " + which + " has --output-dir";
    if (!options.reference.empty() || options.tolerance > 0)
        return "--ref and --tolerance compare the picture of one model";
    if (options.info || options.json || options.gl || options.list_devices)
        return "--info, --json, --gl and --list-devices draw nothing";
    return batch::mistake_of_batch(options.batch);
}

/// What isn't for one model, or doesn't go together for one.
std::string mistake_of_one(const Options& options) {
    const std::string mistake = batch::mistake_without_batch(options.batch);
    return mistake.empty() ? mistake_of(options) : mistake;
}

} // namespace

std::string read_options(const std::vector<std::string>& words, Options& options) {
    Arguments rules;
    add_rules(rules, options);
    std::string mistake = rules.read(words);
    if (!mistake.empty() || options.help || options.version)
        return mistake;
    return batch::is_batch(options.batch) ? mistake_of_many(options) : mistake_of_one(options);
}

std::string help_text() {
    Options unused;
    Arguments rules;
    add_rules(rules, unused);
    const std::string importer = batch::importer_program().empty()
                                     ? ""
                                     : "By orvex-import also FBX, DAE, BLEND and many more.\n";
    return "usage: orvex-render [options] MODEL\n"
           "       orvex-render [options] --batch MANIFEST\n"
           "\n"
           "Renders a model file, with its materials and textures, to a picture.\n"
           "Reads " ORVEX_TOOL_FORMATS ".\n" +
           importer + "\n" + rules.help() +
           "\n"
           "Ends with 0 when all went well, with 1 when something failed or the picture\n"
           "differs from its reference, with 2 when the command line is wrong, and with 3\n"
           "when there is no reference.\n";
}

PictureFormat format_of(const Options& options) {
    if (options.format != PictureFormat::by_suffix)
        return options.format;
    if (is_film(options) && (options.output.empty() || options.output == "-"))
        return PictureFormat::y4m;
    return options.output.empty() ? PictureFormat::jpeg : picture_format_of(options.output);
}

int pictures_of(const Options& options) {
    return std::max({options.turntable, options.film, 1});
}

bool is_turn(const Options& options) {
    return options.turntable > 0 || options.film > 0;
}

bool is_film(const Options& options) {
    return options.film > 0 || !options.track.empty();
}

std::string difference_of(const Options& options) {
    Options named = options;
    if (named.output == "-")
        named.output.clear();
    const std::string output = output_of(named);
    return output.substr(0, suffix_of(output)) + "-difference.png";
}

std::string suffix_for(PictureFormat format) {
    return std::string(".") +
           name_of(format == PictureFormat::by_suffix ? PictureFormat::jpeg : format);
}

std::string output_of(const Options& options) {
    if (!options.output.empty())
        return options.output;
    const std::size_t slash = options.model.rfind('/');
    const std::string name =
        slash == options.model.npos ? options.model : options.model.substr(slash + 1);
    return name.substr(0, suffix_of(name)) + suffix_for(format_of(options));
}

std::vector<std::string> outputs_of(const Options& options, const std::string& addition) {
    std::string output = output_of(options);
    output.insert(suffix_of(output), addition);
    if (options.turntable == 0)
        return {output};
    const std::size_t suffix = suffix_of(output);
    const std::size_t digits = std::max(std::to_string(options.turntable).size(), std::size_t{3});
    std::vector<std::string> result;
    for (int i = 1; i <= options.turntable; ++i) {
        std::string number = std::to_string(i);
        number.insert(0, digits - number.size(), '0');
        result.push_back(output.substr(0, suffix) + "-" + number + output.substr(suffix));
    }
    return result;
}
