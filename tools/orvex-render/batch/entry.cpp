#include "batch/entry.h"

#include <orvex_kit/layers.h>

#include "json_text.h"
#include "layer_files.h"

namespace batch {

namespace {

/// What stands before the names within the output folder.
std::string before_names(const Entry& entry) {
    return entry.options.output.substr(0, entry.options.output.size() - entry.output.size());
}

} // namespace

std::vector<OutputFile> output_files_of(const Entry& entry) {
    Options within = entry.options;
    within.output = entry.output;
    std::vector<OutputFile> files;
    if (within.layers.empty()) {
        const char* const kind = is_film(within) ? "film" : "picture";
        for (std::string& name : outputs_of(within))
            files.push_back({std::move(name), kind});
        return files;
    }
    const std::vector<std::string> names = files_of_layers(within.layers, within.output);
    const bool is_one_each = names.size() == within.layers.size() + 1;
    for (std::size_t i = 0; i + 1 < names.size(); ++i)
        files.push_back({names[i], is_one_each ? orvex::kit::name_of(within.layers[i]) : "layers"});
    files.push_back({names.back(), "about"});
    return files;
}

std::string path_of(const Entry& entry, const std::string& name) {
    return before_names(entry) + name;
}

namespace {

std::string hexadecimal(const std::string& bytes) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += {digits[value >> 4], digits[value & 15]};
    }
    return text;
}

} // namespace

std::string line_of(const Entry& entry) {
    std::string line = "{\"line\":" + std::to_string(entry.line);
    // JSON has no place for bytes that aren't UTF-8, and paths may have them.
    if (!is_utf8(entry.options.model))
        line += ",\"model\":\"" + hexadecimal(entry.options.model) + '"';
    return line + ",\"entry\":" + entry.text + "}\n";
}

} // namespace batch
