#include "orvex_formats/off/private/off_reader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "orvex_formats/private/byte_stream.h"
#include "orvex_formats/private/polygon_shape.h"
#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/words.h"

namespace orvex::formats {

namespace {

constexpr std::uint64_t most_vertices = UINT32_MAX - 1;
/// The fewest letters of a vertex, as "0 0 0" and an end, and of a face, as "1 0".
constexpr std::uint64_t least_vertex_size = 6, least_face_size = 2;

/// What the first word says.
struct Kind {
    ShapeParts parts;
    bool is_four_dimensional = false; ///< or of any number of dimensions
};

/// Takes a word off the begin of another.
bool take(std::string_view& word, std::string_view begin) {
    if (word.substr(0, begin.size()) != begin)
        return false;
    word.remove_prefix(begin.size());
    return true;
}

/// @return whether a word is "OFF" with what may stand before it, in whatever order
bool read_kind(std::string_view word, Kind& kind) {
    while (word.size() > 3)
        if (take(word, "ST"))
            kind.parts.has_uvs = true;
        else if (take(word, "C"))
            kind.parts.has_colors = true;
        else if (take(word, "N"))
            kind.parts.has_normals = true;
        else if (take(word, "4") || take(word, "n"))
            kind.is_four_dimensional = true;
        else
            return false;
    return word == "OFF";
}

/// A line up to where a comment begins.
std::string_view without_comment(std::string_view line) {
    return line.substr(0, line.find('#'));
}

/// Looks for the first word in a file's first bytes.
Kind kind_of(const InputFile& file) {
    constexpr std::size_t enough = 4096;
    std::string begin(static_cast<std::size_t>(std::min<std::uint64_t>(file.size(), enough)), ' ');
    file.read(0, begin.data(), begin.size());
    for (std::string_view rest = begin; !rest.empty();) {
        const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
        Kind kind;
        if (Words words(without_comment(rest.substr(0, end))); words.has_more()) {
            if (read_kind(words.take(), kind))
                return kind;
            break;
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    refuse_format("no OFF file: its first word isn't OFF");
}

class OffReader {
public:
    OffReader(const InputFile& file, const Kind& kind)
        : stream(file)
        , parts(kind.parts)
        , words("") {}

    Draft read() {
        read_head();
        read_vertices();
        for (std::uint64_t i = 0; i < num_faces; ++i)
            read_face();
        if (has_numbered_colors)
            shape.add_note("colours of faces that are numbers of a list were left out");
        if (has_more())
            shape.add_note("line " + std::to_string(stream.line_number()) +
                           ": what stands behind the last face was left out");
        return shape.finish({});
    }

private:
    [[noreturn]] void refuse_line(const char* what) const {
        refuse("line %llu: %s", static_cast<unsigned long long>(stream.line_number()), what);
    }

    // --- Lines

    /// Goes on to the next word, over lines without any.
    bool has_more() {
        while (!words.has_more()) {
            std::string_view line;
            if (!stream.take_line(line))
                return false;
            words = Words(without_comment(line));
        }
        return true;
    }

    void begin_row() {
        words = Words("");
        if (!has_more())
            refuse_line("the file is cut off");
    }

    // --- Head

    void read_head() {
        begin_row();
        words.take(); // the kind, which is known
        if (!has_more())
            refuse_line("the file ends within its head");
        Words ahead = words;
        if (ahead.take() == "BINARY")
            refuse_line("binary OFF files aren't read");
        if (!words.take_number(num_vertices) || !has_more() || !words.take_number(num_faces))
            refuse_line("no counts of vertices and faces");
        check_counts();
    }

    void check_counts() const {
        if (num_vertices == 0)
            refuse_line("the file has no vertices");
        if (num_vertices > most_vertices || num_vertices > stream.left() / least_vertex_size + 1 ||
            num_faces > stream.left() / least_face_size + 1)
            refuse("line %llu: the file says that it has %llu vertices and %llu faces, and is too "
                   "short for them",
                   static_cast<unsigned long long>(stream.line_number()),
                   static_cast<unsigned long long>(num_vertices),
                   static_cast<unsigned long long>(num_faces));
    }

    // --- Vertices

    void read_vertices() {
        for (std::uint64_t i = 0; i < num_vertices; ++i) {
            begin_row();
            take_numbers();
            if (i == 0) {
                // Many programs write colours without saying so in the first word.
                parts.has_colors = parts.has_colors || count >= least_count() + 3;
                shape.begin_vertices(parts, num_vertices);
            }
            add_vertex();
        }
    }

    void take_numbers() {
        for (count = 0; count < numbers.size() && words.has_more(); ++count)
            if (!words.take_number(numbers[count]))
                refuse_line("what should be a number isn't one");
    }

    std::size_t least_count() const {
        return 3 + (parts.has_normals ? 3 : 0) + (parts.has_uvs ? 2 : 0);
    }

    /// Places come first, then normals, colours of three numbers or four, and coordinates.
    void add_vertex() {
        if (count < least_count())
            refuse("line %llu: a vertex without %zu numbers",
                   static_cast<unsigned long long>(stream.line_number()), least_count());
        ShapeValues values = no_shape_values;
        std::size_t next = 0;
        const auto take = [&](std::size_t column, std::size_t how_many) {
            for (std::size_t i = 0; i < how_many; ++i)
                values[column + i] = numbers[next++];
        };
        take(column_x, 3);
        if (parts.has_normals)
            take(column_nx, 3);
        if (parts.has_colors)
            take(column_red, std::min<std::size_t>(count - least_count(), 4));
        if (parts.has_uvs)
            take(column_u, 2);
        shape.add_vertex(values);
    }

    // --- Faces

    void read_face() {
        begin_row();
        std::uint64_t num_corners = 0;
        if (!words.take_number(num_corners))
            refuse_line("a face without a count of corners");
        if (num_corners > words.remaining().size())
            refuse("line %llu: a face of %llu corners, and the line is too short for them",
                   static_cast<unsigned long long>(stream.line_number()),
                   static_cast<unsigned long long>(num_corners));
        face.corners.clear();
        for (std::uint64_t i = 0; i < num_corners; ++i)
            face.corners.push_back(take_corner());
        take_color();
        shape.add_face(face);
    }

    std::uint32_t take_corner() {
        std::int64_t vertex = 0;
        if (!words.take_number(vertex))
            refuse_line("what should be a vertex of a face is no whole number");
        if (vertex < 0 || static_cast<std::uint64_t>(vertex) >= num_vertices)
            refuse("line %llu: vertex %lld of %llu",
                   static_cast<unsigned long long>(stream.line_number()),
                   static_cast<long long>(vertex), static_cast<unsigned long long>(num_vertices));
        return static_cast<std::uint32_t>(vertex);
    }

    /// Three numbers or four; one alone stands for a colour that another file has.
    void take_color() {
        take_numbers();
        face.has_color = count >= 3;
        has_numbered_colors = has_numbered_colors || (count > 0 && count < 3);
        if (face.has_color)
            face.color =
                vec4(numbers[0], numbers[1], numbers[2], count > 3 ? numbers[3] : full_alpha);
    }

    ByteStream stream;
    ShapeParts parts;
    Words words;
    PolygonShape shape;
    std::uint64_t num_vertices = 0, num_faces = 0;
    ShapeFace face;
    std::array<float, num_shape_columns> numbers{}; ///< of a row
    std::size_t count = 0;                          ///< of them
    bool has_numbered_colors = false;
};

} // namespace

Draft read_off(const InputFile& file) {
    const Kind kind = kind_of(file);
    if (kind.is_four_dimensional)
        refuse("line 1: OFF files of more than three dimensions aren't read");
    return OffReader(file, kind).read();
}

} // namespace orvex::formats
