#include "batch/key.h"

#include <algorithm>
#include <initializer_list>

#include <orvex/kernel/core.h>
#include <orvex_kit/layers.h>
#include <orvex_kit/look.h>

#include "batch/sum.h"
#include "json_text.h"
#include "start.h"

namespace batch {

namespace {

/// Writes what the sum is of: a line for each thing, as no text of one runs into the next then.
class Description {
public:
    void text(const char* name, const std::string& value) {
        lines += std::string(name) + ' ' + json_text_of(value) + '\n';
    }
    void number(const char* name, double value) {
        lines += std::string(name) + ' ' + number_text(value) + '\n';
    }
    void color(const char* name, const Color& value) {
        for (const float part : {value.r, value.g, value.b, value.a})
            number(name, static_cast<double>(part));
    }
    /// The bytes of a file; that there is none is something else than one without bytes.
    void file(const char* name, const std::string& path) {
        const std::optional<FileSum> sum = sum_of_file(path);
        text(name, sum ? sum->text : "none");
    }
    std::string sum() const { return sum_of(lines); }

private:
    std::string lines;
};

void put_picture(Description& description, const Options& options) {
    description.number("width", options.size.width);
    description.number("height", options.size.height);
    description.number("format", static_cast<double>(format_of(options)));
    for (const orvex::kit::Layer layer : options.layers)
        description.text("layer", orvex::kit::name_of(layer));
    description.color("background", options.background);
    const std::string look = look_of(options.look).path();
    if (look.empty())
        description.text("look", options.look);
    else
        description.file("look", look);
    description.number("wireframe", options.wireframe);
    description.number("normals", static_cast<double>(options.normals));
    description.number("samples", options.samples);
    description.number("gl3", options.gl3);
}

void put_camera(Description& description, const Options& options) {
    description.number("azimuth", static_cast<double>(options.azimuth));
    description.number("elevation", static_cast<double>(options.elevation));
    description.number("up", static_cast<double>(options.up));
    description.number("distance", static_cast<double>(options.distance));
    description.number("zoom", static_cast<double>(options.zoom));
    description.number("turntable", options.turntable);
    description.number("film", options.film);
    if (!options.track.empty())
        description.file("track", options.track);
}

void put_text(Description& description, const Options& options) {
    if (options.text.empty())
        return;
    description.text("text", options.text);
    description.text("text-place", options.text_place);
    description.number("text-size", options.text_size);
    description.color("text-color", options.text_color);
    if (!options.font.empty())
        description.file("font", options.font);
}

} // namespace

std::string engine_version() {
    return ORVEX_TOOL_VERSION;
}

std::string key_of(const Entry& entry, const std::vector<std::string>& files) {
    const Options& options = entry.options;
    const std::optional<FileSum> model = sum_of_file(options.model);
    if (!model)
        return "";
    Description description;
    description.text("engine", engine_version());
    description.text("model", model->text);
    for (const std::string& file : files)
        if (file != options.model)
            description.file("file", file);
    if (!options.plugin.empty())
        description.file("plugin", options.plugin);
    description.text("loader", options.loader);
    if (options.time)
        description.number("time", static_cast<double>(*options.time));
    put_picture(description, options);
    put_camera(description, options);
    put_text(description, options);
    return description.sum();
}

std::optional<Output> output_of_file(const Entry& entry, const OutputFile& file) {
    const std::optional<FileSum> sum = sum_of_file(path_of(entry, file.name));
    if (!sum)
        return std::nullopt;
    Output output;
    output.path = file.name;
    output.kind = file.kind;
    const bool is_picture = file.kind != "about";
    output.width = is_picture ? entry.options.size.width : 0;
    output.height = is_picture ? entry.options.size.height : 0;
    output.bytes = sum->bytes;
    output.sha256 = sum->text;
    return output;
}

namespace {

bool is_same(const Output& a, const Output& b) {
    return a.path == b.path && a.kind == b.kind && a.width == b.width && a.height == b.height &&
           a.bytes == b.bytes && a.sha256 == b.sha256;
}

} // namespace

bool still_holds(const Verdict& verdict, const Entry& entry) {
    // Another try of these may go well.
    if (verdict.fate == Fate::driver || verdict.fate == Fate::io || verdict.key.empty())
        return false;
    if (verdict.id != entry.id || verdict.output != entry.output ||
        verdict.key != key_of(entry, verdict.files))
        return false;
    if (verdict.fate != Fate::ok)
        return true;
    const std::vector<OutputFile> files = output_files_of(entry);
    return files.size() == verdict.outputs.size() &&
           std::equal(files.begin(), files.end(), verdict.outputs.begin(),
                      [&](const OutputFile& file, const Output& told) {
                          const std::optional<Output> output = output_of_file(entry, file);
                          return output && is_same(*output, told);
                      });
}

} // namespace batch
