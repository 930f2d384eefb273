// A statement is a line, or several of which all but the last end in a backslash. Comments are one
// line whatever they end in: paths of other systems end so.

#include <algorithm>
#include <array>
#include <cstring>

#include "orvex_formats/obj/private/obj_block.h"
#include "orvex_formats/obj/private/obj_numbers.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

constexpr std::size_t most_entries = ObjIndex::most;
constexpr std::size_t most_unknown_words = 16; ///< of a piece that are told

/// What is known and left out: curved surfaces and what programs tell each other.
constexpr std::array<std::string_view, 32> words_left_out = {
    "bevel", "bmat",   "bsp",    "bzp",  "c_interp",  "call",     "cdc",    "con",
    "csh",   "cstype", "ctech",  "curv", "curv2",     "d_interp", "deg",    "end",
    "hole",  "lod",    "maplib", "mg",   "parm",      "res",      "scrv",   "shadow_obj",
    "sp",    "stech",  "step",   "surf", "trace_obj", "trim",     "usemap", "vp"};

bool is_end_of_line(char letter) {
    return letter == '\n' || letter == '\r';
}

bool is_blank(char letter) {
    return static_cast<unsigned char>(letter) <= ' ' && !is_end_of_line(letter);
}

class LineReader {
public:
    LineReader(std::string_view text, ObjBlock& block)
        : next(text.data())
        , end(text.data() + text.size())
        , block(block) {}

    void read() {
        while (next != end) {
            first_line = ++block.num_lines;
            skip_blanks();
            if (next != end && !is_end_of_line(*next))
                read_statement();
            skip_line();
        }
    }

private:
    // --- Letters

    /// Behind a backslash, and the end of the line behind it; null where none is.
    const char* behind_continuation() const {
        if (*next != '\\')
            return nullptr;
        if (end - next == 1)
            return end;
        if (!is_end_of_line(next[1]))
            return nullptr;
        const bool is_two = next[1] == '\r' && end - next > 2 && next[2] == '\n';
        return next + (is_two ? 3 : 2);
    }

    void skip_blanks() {
        for (; next != end; ++next) {
            if (*next == ' ' || *next == '\t')
                continue;
            if (const char* const behind = behind_continuation()) {
                next = behind - 1;
                ++block.num_lines;
            } else if (!is_blank(*next)) {
                return;
            }
        }
    }

    /// Whether the statement has no further word.
    bool is_done() {
        skip_blanks();
        return next == end || is_end_of_line(*next) || *next == '#';
    }

    /// Whether a number may end here.
    bool is_at_gap() const {
        return next == end || static_cast<unsigned char>(*next) <= ' ' || *next == '#' ||
               behind_continuation();
    }

    std::string_view take_word() {
        const char* const first = next;
        while (next != end && static_cast<unsigned char>(*next) > ' ' && !behind_continuation())
            ++next;
        return {first, static_cast<std::size_t>(next - first)};
    }

    /// What is left of the statement without blanks around it, in one line.
    std::string take_rest() {
        std::string rest;
        skip_blanks();
        while (next != end && !is_end_of_line(*next)) {
            const char* const behind = behind_continuation();
            block.num_lines += behind != nullptr;
            rest += behind ? ' ' : *next;
            next = behind ? behind : next + 1;
        }
        while (!rest.empty() && is_blank(rest.back()))
            rest.pop_back();
        return rest;
    }

    void skip_line() {
        while (next != end && !is_end_of_line(*next)) {
            const char* const behind = behind_continuation();
            block.num_lines += behind != nullptr;
            next = behind ? behind : next + 1;
        }
        if (next != end && *next == '\r' && end - next > 1 && next[1] == '\n')
            ++next;
        if (next != end)
            ++next;
    }

    void skip_comment() {
        while (next != end && !is_end_of_line(*next))
            ++next;
    }

    void refuse_line(const std::string& what) {
        block.mistake = what;
        block.mistake_line = first_line;
        next = end;
    }

    // --- Statements

    void read_statement() {
        const char second = end - next > 1 ? next[1] : '\n';
        const bool is_short = static_cast<unsigned char>(second) <= ' ';
        if (*next == 'v' && is_short) {
            next += 1;
            add_position();
        } else if (*next == 'f' && is_short) {
            next += 1;
            add_element(block.corners, block.faces, 3, "face");
        } else if (*next == 'v' && end - next > 2 && static_cast<unsigned char>(next[2]) <= ' ' &&
                   (second == 't' || second == 'n')) {
            next += 2;
            second == 't' ? add_texcoord() : add_normal();
        } else if (*next == '#') {
            skip_comment();
        } else {
            read_rare_statement(take_word());
        }
    }

    void read_rare_statement(std::string_view word) {
        using Kind = ObjEvent::Kind;
        if (word == "v")
            add_position();
        else if (word == "f" || word == "fo") // as it was called once
            add_element(block.corners, block.faces, 3, "face");
        else if (word == "l")
            add_element(block.line_corners, block.lines, 2, "line");
        else if (word == "p")
            add_element(block.point_corners, block.points, 1, "point");
        else if (word == "g")
            add_event(Kind::group, take_rest());
        else if (word == "o")
            add_event(Kind::object, take_rest());
        else if (word == "s")
            add_event(Kind::smoothing, take_rest());
        else if (word == "usemtl")
            add_event(Kind::material, take_rest());
        else if (word == "mtllib")
            add_event(Kind::library, take_rest());
        else
            add_unknown(
                "\"" + in_words(std::string(word)) + "\"" +
                (is_obj_keyword(word) ? " was left out" : " is no word of OBJ, and was left out"));
    }

    void add_event(ObjEvent::Kind kind, std::string text) {
        block.events.push_back({kind, static_cast<std::uint32_t>(first_line),
                                static_cast<std::uint32_t>(block.faces.size()), std::move(text)});
    }

    void add_unknown(std::string what) {
        if (std::find(unknown.begin(), unknown.end(), what) != unknown.end() ||
            unknown.size() == most_unknown_words)
            return;
        unknown.push_back(what);
        add_event(ObjEvent::Kind::unknown, std::move(what));
    }

    /// @return how many numbers there were; -1 with a mistake told
    template<std::size_t most>
    int take_numbers(std::array<float, most>& numbers) {
        std::size_t count = 0;
        while (!is_done()) {
            float further = 0.0f;
            float& number = count < most ? numbers[count] : further;
            const char* const behind = read_float(next, end, number);
            const char* const first = next;
            next = behind;
            if (behind == first || !is_at_gap()) {
                next = first;
                refuse_line("\"" + in_words(std::string(take_word())) + "\" is no number");
                return -1;
            }
            ++count;
        }
        return static_cast<int>(std::min(count, most));
    }

    template<class Entry>
    bool has_room(const std::vector<Entry>& entries) {
        if (entries.size() < most_entries)
            return true;
        refuse_line("more entries than any that are read");
        return false;
    }

    void add_position() {
        std::array<float, 8> numbers{};
        const int count = take_numbers(numbers);
        if (count < 0 || !has_room(block.positions))
            return;
        if (count < 3)
            return refuse_line("a vertex without three numbers");
        auto [x, y, z, w, r, g, b, a] = numbers;
        if (count == 4 || count >= 7) {
            // The places of weights are in front of the colours.
            const bool is_weight = w != 0.0f && w != 1.0f;
            x = is_weight ? x / w : x;
            y = is_weight ? y / w : y;
            z = is_weight ? z / w : z;
        }
        block.positions.emplace_back(x, y, z);
        if (count == 6)
            add_color(vec3(w, r, g));
        else if (count >= 7)
            add_color(vec3(r, g, b));
        else if (!block.colors.empty())
            add_color(vec3(1.0f, 1.0f, 1.0f));
    }

    void add_color(const vec3& color) {
        block.colors.resize(block.positions.size() - 1, vec3(1.0f, 1.0f, 1.0f));
        block.colors.push_back(color);
    }

    void add_texcoord() {
        std::array<float, 2> numbers{};
        const int count = take_numbers(numbers);
        if (count == 0)
            return refuse_line("a texture coordinate without a number");
        if (count > 0 && has_room(block.texcoords))
            block.texcoords.emplace_back().set(numbers[0], numbers[1]);
    }

    void add_normal() {
        std::array<float, 3> numbers{};
        const int count = take_numbers(numbers);
        if (count >= 0 && count < 3)
            return refuse_line("a normal without three numbers");
        if (count > 0 && has_room(block.normals))
            block.normals.emplace_back(numbers[0], numbers[1], numbers[2]);
    }

    // --- Elements

    /// One of the numbers of a corner. @return false where there is none
    template<class Entry>
    bool take_index(const std::vector<Entry>& entries, ObjIndex& index) {
        std::int64_t number = 0;
        const char* const behind = read_int(next, end, number);
        if (behind == next)
            return false;
        next = behind;
        index = ObjIndex(number, entries.size());
        return true;
    }

    bool take_corner(ObjCorner& corner) {
        if (!take_index(block.positions, corner.position))
            return false;
        if (next == end || *next != '/')
            return is_at_gap();
        ++next;
        take_index(block.texcoords, corner.texcoord);
        if (next == end || *next != '/')
            return is_at_gap();
        ++next;
        take_index(block.normals, corner.normal);
        return is_at_gap();
    }

    void add_element(std::vector<ObjCorner>& corners, std::vector<ObjElement>& elements,
                     std::size_t least, const char* what) {
        const std::size_t before = corners.size();
        while (!is_done()) {
            ObjCorner corner;
            const char* const first = next;
            if (!take_corner(corner)) {
                next = first;
                return refuse_line("\"" + in_words(std::string(take_word())) +
                                   "\" is no corner of a " + what);
            }
            corners.push_back(corner);
        }
        if (corners.size() - before < least) {
            corners.resize(before);
            add_unknown(std::string("a ") + what + " with too few corners was left out");
            return;
        }
        if (!has_room(corners))
            return;
        elements.push_back(
            {static_cast<std::uint32_t>(corners.size()), static_cast<std::uint32_t>(first_line)});
    }

    const char* next;
    const char* end;
    ObjBlock& block;
    std::size_t first_line = 0; ///< of the statement
    std::vector<std::string> unknown;
};

} // namespace

void read_obj_block(std::string_view text, ObjBlock& block) {
    LineReader(text, block).read();
}

bool is_obj_keyword(std::string_view word) {
    constexpr std::array<std::string_view, 12> words_read = {
        "f", "fo", "g", "l", "mtllib", "o", "p", "s", "usemtl", "v", "vn", "vt"};
    return std::find(words_read.begin(), words_read.end(), word) != words_read.end() ||
           std::find(words_left_out.begin(), words_left_out.end(), word) != words_left_out.end();
}

} // namespace orvex::formats
