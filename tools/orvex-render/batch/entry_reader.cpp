#include "batch/entry_reader.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include <orvex_kit/files.h>

#include "batch/sum.h"
#include "json_text.h"

using orvex::kit::PictureFormat;

namespace batch {

EntryReader::EntryReader(const Options& given, std::string output_folder)
    : defaults(given)
    , folder(std::move(output_folder)) {
    defaults.model.clear();
    defaults.output.clear();
    if (!folder.empty() && folder.back() != '/')
        folder += '/';
    add_model_rules(rules, current);
    add_rules(all, unused);
}

void EntryReader::forget() {
    current = defaults;
    id.clear();
    output.clear();
}

std::string EntryReader::read(std::string_view text, std::size_t line, Entry& entry) {
    forget();
    if (std::string mistake = members.read(text); !mistake.empty())
        return mistake;
    for (const Member& member : members)
        if (std::string mistake = take(member); !mistake.empty())
            return mistake;
    if (std::string mistake = finish(line, entry); !mistake.empty())
        return mistake;
    entry.text = text;
    return "";
}

std::string EntryReader::read_path(std::string_view path, std::size_t line, Entry& entry) {
    forget();
    current.model = path;
    if (std::string mistake = finish(line, entry); !mistake.empty())
        return mistake;
    entry.text = "{\"model\":" + json_text_of(path) + '}';
    return "";
}

namespace {

/// The text of a member that is one.
std::string take_text(const Member& member, const char* what, std::string& target) {
    if (member.kind != Member::Kind::text || member.value.empty())
        return "'" + member.name + "' is " + what;
    target = member.value;
    return "";
}

} // namespace

std::string EntryReader::take(const Member& member) {
    if (member.value.find('\0') != member.value.npos)
        return "'" + member.name + "' has a zero byte";
    if (member.name == "model")
        return take_text(member, "the path of a model, a text", current.model);
    if (member.name == "id")
        return take_text(member, "a text that isn't empty", id);
    if (member.name == "output")
        return take_text(member, "the path of a file within the output folder, a text", output);
    return take_option(member);
}

std::string EntryReader::take_option(const Member& member) {
    switch (rules.kind_of(member.name)) {
    case Arguments::Kind::unknown:
        return unknown(member.name);
    case Arguments::Kind::flag:
        if (member.kind != Member::Kind::truth)
            return "'" + member.name + "' is true or false";
        rules.set(member.name, member.truth);
        return "";
    case Arguments::Kind::value:
        break;
    }
    const bool is_one = member.kind == Member::Kind::text || member.kind == Member::Kind::number;
    const bool takes_list = member.name == "layers";
    if (!is_one && !(takes_list && member.kind == Member::Kind::list))
        return "'" + member.name + "' is a text" + (takes_list ? ", a list of texts" : "") +
               " or a number, as --" + member.name + " takes it: " + rules.value_of(member.name);
    return rules.set(member.name, member.value);
}

std::string EntryReader::unknown(const std::string& name) const {
    if (all.kind_of(name) != Arguments::Kind::unknown)
        return "--" + name + " is about the whole program, not about one model";
    const std::string nearest = rules.nearest_name("--" + name);
    return "unknown key " + json_text_of(name.substr(0, 40)) +
           (nearest.empty() ? "" : "; did you mean '" + nearest.substr(2) + "'?");
}

namespace {

/// A path within the folder without "." and empty parts.
/// @return empty if it leaves the folder, or is no file's
std::string name_within(const std::string& path) {
    if (path.front() == '/' || path.back() == '/')
        return "";
    std::string result;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string_view part = std::string_view(path).substr(begin, end - begin);
        if (part == "..")
            return "";
        if (!part.empty() && part != ".") {
            result += result.empty() ? "" : "/";
            result += part;
        }
        begin = end + 1;
    }
    return result;
}

/// The suffix of outputs whose names nobody gave.
std::string default_suffix(const Options& options) {
    if (options.format != PictureFormat::by_suffix)
        return suffix_for(options.format);
    return is_film(options) ? ".y4m" : ".png";
}

} // namespace

std::string EntryReader::finish(std::size_t line, Entry& entry) {
    constexpr std::size_t longest = 4000; // bytes of a path that the system takes
    if (current.model.empty())
        return "no model given";
    if (id.empty())
        id = is_utf8(current.model) ? current.model : text_in_utf8(current.model);
    if (output.empty())
        output = safe_name_of(id) + default_suffix(current);
    std::string name = name_within(output);
    if (name.empty())
        return "'output' leaves the output folder: " + json_text_of(output.substr(0, 80));
    if (current.model.size() > longest || id.size() > longest || name.size() > longest)
        return "a path or an id is longer than " + std::to_string(longest) + " bytes";
    current.output = folder + name;
    if (current.output == "-")
        return "'output' is a file: - isn't one here";
    if (std::string mistake = mistake_of(current); !mistake.empty())
        return mistake;
    if (std::find(current.layers.begin(), current.layers.end(), orvex::kit::Layer::position) !=
            current.layers.end() &&
        format_of(current) == PictureFormat::png)
        return "PNG holds no positions: .npy and .exr do";
    entry.line = line;
    entry.id = id;
    entry.output = std::move(name);
    entry.options = current;
    return "";
}

namespace {

bool skip(std::string_view& text, std::string_view word) {
    const bool is_there = text.substr(0, word.size()) == word;
    if (is_there)
        text.remove_prefix(word.size());
    return is_there;
}

std::optional<std::size_t> take_number(std::string_view& text) {
    std::size_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc())
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return number;
}

/// Bytes in hexadecimal digits, up to a quote.
std::optional<std::string> take_bytes(std::string_view& text) {
    const std::string_view digits = text.substr(0, text.find('"'));
    if (digits.size() % 2 != 0 || digits.size() == text.size())
        return std::nullopt;
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        unsigned char byte = 0;
        const char* const end = digits.data() + i + 2;
        if (std::from_chars(digits.data() + i, end, byte, 16).ptr != end)
            return std::nullopt;
        bytes += static_cast<char>(byte);
    }
    text.remove_prefix(digits.size() + 1);
    return bytes;
}

} // namespace

std::optional<Entry> EntryReader::entry_of_line(std::string_view line) {
    if (!line.empty() && line.back() == '\n')
        line.remove_suffix(1);
    if (!skip(line, "{\"line\":"))
        return std::nullopt;
    const std::optional<std::size_t> number = take_number(line);
    const bool is_path = skip(line, ",\"model\":\"");
    const std::optional<std::string> path = is_path ? take_bytes(line) : std::nullopt;
    if (!number || is_path != path.has_value() || !skip(line, ",\"entry\":") || line.empty() ||
        line.back() != '}')
        return std::nullopt;
    line.remove_suffix(1);
    Entry entry;
    const std::string mistake =
        path ? read_path(*path, *number, entry) : read(line, *number, entry);
    return mistake.empty() ? std::optional(std::move(entry)) : std::nullopt;
}

std::string safe_name_of(const std::string& id) {
    constexpr std::size_t longest = 200;
    std::string name;
    for (const char c : id) {
        const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        const bool is_plain = is_letter || (c >= '0' && c <= '9') || (c & '\x80') ||
                              std::string_view(".-+=@,").find(c) != std::string_view::npos;
        name += is_plain ? c : '_';
    }
    if (name.front() == '.')
        name.front() = '_';
    if (name.size() > longest) {
        const std::string sum = sum_of(id).substr(0, 16);
        std::size_t kept = longest - sum.size() - 1;
        // Not within a character.
        while (kept > 0 && (name[kept] & '\xc0') == '\x80')
            --kept;
        name = name.substr(0, kept) + "-" + sum;
    }
    return name;
}

} // namespace batch
