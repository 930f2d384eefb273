#include "orvex_formats/stl/private/stl_reader.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvex_formats/private/byte_stream.h"
#include "orvex_formats/private/large_lists.h"
#include "orvex_formats/private/normals.h"
#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/vertex_joiner.h"
#include "orvex_formats/private/words.h"

namespace orvex::formats {

namespace {

constexpr std::uint64_t head_size = 84; ///< 80 bytes of text, and the count
constexpr std::uint64_t record_size = 50;
constexpr std::size_t triangles_at_once = 256;
constexpr std::uint64_t most_triangles = UINT32_MAX / 3;

// --- Triangles

/// A corner's place.
struct Corner {
    float x, y, z;
};

class SurfaceBuilder {
public:
    void add(const Corner& corner, std::uint32_t& vertex) {
        bool is_new = false;
        // Adding 0 makes one number of 0 and -0.
        vertex = joiner.add({corner.x + 0.0f, corner.y + 0.0f, corner.z + 0.0f}, is_new);
    }
    /// Three corners a triangle.
    void add(std::span<const Corner> corners) {
        const std::size_t first = surface.triangles.size();
        surface.triangles.resize(first + corners.size() / 3);
        joiner.add(corners, surface.triangles[first].data()); // which stand one behind the other
    }
    void add(const Triangle& triangle) { surface.triangles.push_back(triangle); }
    std::size_t num_triangles() const { return surface.triangles.size(); }
    /// Closed surfaces have half as many vertices as triangles.
    void reserve(std::size_t count) {
        reserve_largely(surface.triangles, count);
        joiner.reserve(count / 2 + 2);
    }

    Surface finish(const std::string& name) {
        surface.name = name;
        reserve_largely(surface.positions, joiner.all().size());
        for (const Corner& corner : joiner.all())
            surface.positions.emplace_back(corner.x, corner.y, corner.z);
        return std::move(surface);
    }

private:
    VertexJoiner<Corner> joiner;
    Surface surface;
};

// --- Binary

vec4 color_of_bits(unsigned red, unsigned green, unsigned blue) {
    const auto part = [](unsigned bits) { return static_cast<float>(bits & 31u) / 31.0f; };
    return vec4(part(red), part(green), part(blue), 1.0f);
}

/// What the attributes of the triangles mean.
struct Colors {
    bool is_of_head = false; ///< the head says "COLOR="
    vec4 head = vec4(1.0f, 1.0f, 1.0f, 1.0f);
    bool is_any = false;

    vec4 operator()(std::uint32_t bits) const {
        const bool is_high_set = (bits & 0x8000u) != 0;
        if (is_of_head)
            return is_high_set ? head : color_of_bits(bits, bits >> 5, bits >> 10);
        return is_high_set ? color_of_bits(bits >> 10, bits >> 5, bits) : head;
    }
};

Colors colors_of_head(const unsigned char* head) {
    Colors colors;
    const std::string_view text(reinterpret_cast<const char*>(head), 80);
    const std::size_t word = text.find("COLOR=");
    if (word == std::string_view::npos || word + 10 > text.size())
        return colors;
    const unsigned char* const color = head + word + 6;
    colors.is_of_head = true;
    colors.head =
        vec4(static_cast<float>(color[0]) / 255.0f, static_cast<float>(color[1]) / 255.0f,
             static_cast<float>(color[2]) / 255.0f, static_cast<float>(color[3]) / 255.0f);
    return colors;
}

/// A vertex in one of its colours.
struct PaintedVertex {
    std::uint32_t vertex, bits;
};

/// Gives triangles their colours. Vertices at which colours meet become several; but the surface is
/// smooth across.
void paint(Surface& surface, const std::vector<std::uint16_t>& bits, const Colors& colors) {
    add_normals(surface);
    VertexJoiner<PaintedVertex> joiner;
    for (std::size_t i = 0; i < surface.triangles.size(); ++i)
        for (std::uint32_t& vertex : surface.triangles[i]) {
            bool is_new = false;
            vertex = joiner.add({vertex, bits[i]}, is_new);
        }
    const std::vector<vec3> places = std::exchange(surface.positions, {});
    const std::vector<vec3> normals = std::exchange(surface.normals, {});
    for (const PaintedVertex& painted : joiner.all()) {
        surface.positions.push_back(places[painted.vertex]);
        surface.normals.push_back(normals[painted.vertex]);
        surface.colors.push_back(colors(painted.bits));
    }
}

/// The words of a binary file's head that may be a name.
std::string name_of_head(const unsigned char* head) {
    std::string name(reinterpret_cast<const char*>(head), 80);
    name.resize(std::strlen(name.c_str()));
    if (std::any_of(name.begin(), name.end(),
                    [](char letter) { return letter < ' ' || letter > '~'; }))
        return "";
    return std::string(Words(name).remaining());
}

Draft read_binary(const InputFile& file, std::uint64_t count) {
    ByteStream stream(file);
    const unsigned char* const head = stream.take(head_size);
    Colors colors = colors_of_head(head);
    const std::string name = name_of_head(head);

    SurfaceBuilder builder;
    builder.reserve(count);
    std::vector<Corner> corners;
    std::vector<std::uint16_t> attributes;
    for (std::uint64_t i = 0; i < count; ++i) {
        const unsigned char* const record = stream.take(record_size);
        const auto bits = number_at<std::uint16_t>(record + 48);
        attributes.push_back(bits);
        colors.is_any =
            colors.is_any || (colors.is_of_head ? (bits & 0x8000u) == 0 : (bits & 0x8000u) != 0);
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const unsigned char* const place = record + 12 + 12 * corner;
            // Adding 0 makes one number of 0 and -0.
            corners.push_back({number_at<float>(place) + 0.0f, number_at<float>(place + 4) + 0.0f,
                               number_at<float>(place + 8) + 0.0f});
        }
        if (corners.size() == 3 * triangles_at_once || i + 1 == count) {
            builder.add(corners);
            corners.clear();
        }
    }

    Draft draft;
    draft.surfaces.push_back(builder.finish(name));
    if (colors.is_of_head || colors.is_any)
        paint(draft.surfaces.back(), attributes, colors);
    if (!stream.is_at_end())
        draft.notes.push_back(std::to_string(stream.left()) +
                              " bytes behind the last triangle were left out");
    return draft;
}

// --- Text

std::string lower(std::string_view word) {
    std::string text(word.substr(0, 16));
    for (char& letter : text)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    return text;
}

class TextReader {
public:
    explicit TextReader(const InputFile& file)
        : stream(file) {}

    Draft read() {
        std::string_view line;
        while (stream.take_line(line)) {
            Words words(line);
            take(lower(words.take()), words);
        }
        if (num_corners != 0)
            refuse_line("the file ends within a facet");
        end_solid();
        if (draft.surfaces.empty())
            refuse_line("the file ends without a facet");
        return std::move(draft);
    }

private:
    [[noreturn]] void refuse_line(const char* what) const {
        refuse("line %llu: %s", static_cast<unsigned long long>(stream.line_number()), what);
    }

    void take(const std::string& word, Words& words) {
        if (word == "vertex")
            add_corner(words);
        else if (word == "endfacet" || word == "endloop")
            end_facet(word == "endfacet");
        else if (word == "solid")
            begin_solid(std::string(words.remaining()));
        else if (!word.empty() && word != "facet" && word != "outer" && word != "endsolid")
            note(word);
    }

    void note(const std::string& word) {
        if (draft.notes.empty())
            draft.notes.push_back("line " + std::to_string(stream.line_number()) + ": \"" +
                                  in_words(word) + "\" is no word of STL, and was left out");
    }

    void begin_solid(const std::string& new_name) {
        // Its corners are numbered by the solid that they began in.
        if (num_corners != 0)
            refuse_line("a solid begins within a facet");
        end_solid();
        name = new_name;
    }

    void end_solid() {
        if (builder.num_triangles() > 0)
            draft.surfaces.push_back(builder.finish(name));
        builder = {};
    }

    void add_corner(Words& words) {
        if (num_corners == 3)
            refuse_line("a fourth corner of a facet");
        Corner corner{};
        if (!words.take_number(corner.x) || !words.take_number(corner.y) ||
            !words.take_number(corner.z))
            refuse_line("a vertex without three numbers");
        builder.add(corner, triangle[num_corners++]);
    }

    void end_facet(bool is_facet) {
        if (num_corners == 3)
            builder.add(triangle);
        else if (num_corners != 0 || !is_facet)
            refuse_line("a facet without three corners");
        if (builder.num_triangles() >= most_triangles)
            refuse_line("more triangles than any that are read");
        num_corners = 0;
    }

    ByteStream stream;
    Draft draft;
    SurfaceBuilder builder;
    std::string name;
    Triangle triangle{};
    std::size_t num_corners = 0;
};

// --- Which of them

/// Whether the first words are those of a text: "solid" a name, and "facet" or "endsolid" below.
bool begins_as_text(const InputFile& file) {
    constexpr std::size_t enough = 1024;
    std::string begin(static_cast<std::size_t>(std::min<std::uint64_t>(file.size(), enough)), ' ');
    file.read(0, begin.data(), begin.size());
    Words words(begin);
    if (lower(words.take()) != "solid")
        return false;
    for (std::string_view word = words.take(); !word.empty(); word = words.take())
        if (const std::string text = lower(word); text == "facet" || text == "endsolid")
            return true;
    return false;
}

} // namespace

Draft read_stl(const InputFile& file) {
    const auto size = static_cast<unsigned long long>(file.size());
    std::uint64_t count = 0;
    bool may_be_binary = file.size() >= head_size;
    if (may_be_binary) {
        unsigned char bytes[4];
        file.read(head_size - sizeof bytes, bytes, sizeof bytes);
        count = number_at<std::uint32_t>(bytes);
    }
    if (may_be_binary && file.size() == head_size + count * record_size && count > 0)
        return read_binary(file, count);
    if (begins_as_text(file))
        return TextReader(file).read();
    // Nothing but its name says that a binary file is one.
    if (!has_suffix(file.path(), ".stl"))
        refuse_format("no STL file: neither its size nor its first word says so");
    if (!may_be_binary)
        refuse("byte %llu: the file is cut off before its count of triangles", size);
    if (count == 0)
        refuse("byte 80: the file says that it has no triangles");
    if (count > most_triangles || file.size() < head_size + count * record_size)
        refuse("byte 80: the file says that it has %llu triangles, and its %llu bytes hold %llu",
               static_cast<unsigned long long>(count), size,
               static_cast<unsigned long long>((file.size() - head_size) / record_size));
    return read_binary(file, count);
}

} // namespace orvex::formats
