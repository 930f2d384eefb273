// Stages are looked for as the engine does: each runs from the first occurrence of its marker to
// the next marker. Compilers count a stage's lines from its marker's line on, with what was put
// before it.

#include "orvex_kit/private/program_source.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <string_view>

namespace orvex::kit {

namespace {

/// How a stage is marked, and what the engine calls it in messages.
struct Marker {
    std::string_view text;
    const char* label;
};

constexpr Marker markers[] = {{"[Vertex_Shader]", "Vertex"},
                              {"[Pixel_Shader]", "Pixel"},
                              {"[Geometry_Shader]", "Geometry"},
                              {"[TessControl_Shader]", "Tessellation control"},
                              {"[TessEval_Shader]", "Tessellation evaluation"},
                              {"[Compute_Shader]", "Compute"}};

// The version has to be the first line but for blanks.
constexpr std::string_view gl3_vertex_head = R"(
#version 150
#define OUT out
in vec4 orvex_Position;
#define POSITION vec4(orvex_Position.xyz, 1.0)
in vec4 orvex_Color;
#define VERTEX_COLOR orvex_Color
in vec4 orvex_Normal;
#define NORMAL orvex_Normal.xyz
in vec4 orvex_TexCoord0;
#define TEXCOORD orvex_TexCoord0.xy
)";

constexpr std::string_view gl2_vertex_head = R"(
#version 120
#define OUT varying
#define POSITION vec4(gl_Vertex.xyz, 1.0)
#define VERTEX_COLOR gl_Color
#define NORMAL gl_Normal
#define TEXCOORD gl_MultiTexCoord0.xy
)";

constexpr std::string_view gl3_pixel_head = R"(
#version 150
#define IN in
#define SAMPLE texture
#define COLOR color
out vec4 color;
)";

constexpr std::string_view gl2_pixel_head = R"(
#version 120
#define IN varying
#define SAMPLE texture2D
#define COLOR gl_FragColor
)";

/// What a stage without a version begins with; nothing for one that isn't a vertex or pixel stage.
std::string_view head_of(const Marker& marker, std::string_view stage, Path path) {
    if (stage.find("#version") != stage.npos)
        return "";
    if (&marker == &markers[0])
        return path == Path::gl3 ? gl3_vertex_head : gl2_vertex_head;
    if (&marker == &markers[1])
        return path == Path::gl3 ? gl3_pixel_head : gl2_pixel_head;
    return "";
}

int lines_in(std::string_view text) {
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

struct Place {
    std::size_t at;
    const Marker* marker;
};

std::vector<Place> places_in(const std::string& text) {
    std::vector<Place> places;
    for (const Marker& marker : markers)
        if (const std::size_t at = text.find(marker.text); at != text.npos)
            places.push_back({at, &marker});
    std::sort(places.begin(), places.end(),
              [](const Place& a, const Place& b) { return a.at < b.at; });
    return places;
}

} // namespace

ProgramSource::ProgramSource(const std::string& text, Path path) {
    const std::vector<Place> places = places_in(text);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto [at, marker] = places[i];
        const std::size_t begin = at + marker->text.size();
        const std::size_t end = i + 1 < places.size() ? places[i + 1].at : text.size();
        const std::string_view stage = std::string_view(text).substr(begin, end - begin);
        const std::string_view head = head_of(*marker, stage, path);
        const std::string_view before = std::string_view(text).substr(0, begin);
        stages.push_back({marker->label, lines_in(before) + 1 - lines_in(head)});
        whole.append(marker->text).append(head).append(stage);
    }
}

namespace {

/// Takes a number off the front.
bool take_number(std::string_view& text, int& number) {
    std::size_t digits = 0;
    for (number = 0; digits < text.size() && digits < 8 && std::isdigit(text[digits]); ++digits)
        number = number * 10 + (text[digits] - '0');
    text.remove_prefix(digits);
    return digits > 0;
}

bool take(std::string_view& text, std::string_view prefix) {
    const bool found = text.substr(0, prefix.size()) == prefix;
    text.remove_prefix(found ? prefix.size() : 0);
    return found;
}

/// The line that a compiler names, as drivers write it: "0:3(12): error: ...", "0(3) : error
/// C0000: ..." or "ERROR: 0:3: ...". The message stays in `text`.
bool take_line_number(std::string_view& text, int& line) {
    std::string_view rest = text;
    take(rest, "ERROR: ");
    int ignored = 0;
    if (!take_number(rest, ignored) || !(take(rest, ":") || take(rest, "(")) ||
        !take_number(rest, line))
        return false;
    if (take(rest, "("))
        take_number(rest, ignored);
    rest.remove_prefix(std::min(rest.find_first_not_of(" ):"), rest.size()));
    text = rest;
    return true;
}

} // namespace

std::string ProgramSource::told(const std::string& messages, const std::string& name) const {
    std::string result;
    int first_line = 1;
    std::istringstream lines(messages);
    for (std::string whole_line; std::getline(lines, whole_line);) {
        std::string_view line = whole_line;
        for (const Stage& stage : stages)
            if (take(line, stage.label + " shader error: "))
                first_line = stage.first_line;
        if (line.empty())
            continue;
        int number = 0;
        std::string place = name + ": ";
        // A line of a head is none of the text's.
        if (take_line_number(line, number) && first_line + number > 1)
            place = name + ":" + std::to_string(first_line + number - 1) + ": ";
        result.append(result.empty() ? "" : "\n").append(place).append(line);
    }
    return result;
}

} // namespace orvex::kit
