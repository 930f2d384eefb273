#include "orvex/assets/models/obj/private/obj_reader.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "orvex/assets/models/obj/private/text_stream.h"
#include "orvex/platform/private/file_bytes.h"
#include "orvex/platform/private/large_pages.h"

// An OBJ file is read twice. The first pass counts what there is, makes the groups and materials
// and reads the material libraries; the second fills arrays of exactly the counted sizes. The
// passes agree on every ordinary file. Where numbers of a "v" line run into other words they don't,
// since only the second pass reads them: it then keeps within what the first one counted.
//
// Faces are most of a file and cost most to read, and both passes read the same face the same way.
// So the first pass keeps the triangles of each run of faces, and the second takes the run over
// when it arrives at the same place in the same state.

namespace orvex {

namespace {

constexpr std::size_t line_limit = 511;

// Without a group or material of its own a triangle belongs to these.
constexpr std::string_view default_group = "orvex_obj_default_group";
constexpr std::string_view default_material = "orvex_obj_default_material";

// --- Lines that name something ---------------------------------------------------------------

/// The rest of a line without leading blanks and without its end; blanks inside stay.
OBJ_Name read_name(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    constexpr std::string_view ends("\n\r\0", 3);
    return OBJ_Name(line.substr(0, line.find_first_of(ends)));
}

/// The word that begins `text` behind white space; `text` is moved behind it.
std::string_view next_word(std::string_view& text) {
    std::size_t first = 0;
    while (first < text.size() && is_white_space(text[first]))
        ++first;
    std::size_t last = first;
    while (last < text.size() && !is_white_space(text[last]))
        ++last;
    const std::string_view word = text.substr(first, last - first);
    text.remove_prefix(last);
    return word;
}

/// The second word of a line, the first if there is only one, the line itself if there is none.
std::string_view pick_word(std::string_view line) {
    std::string_view rest = line.substr(0, line.find('\0'));
    const std::string_view first = next_word(rest);
    const std::string_view second = next_word(rest);
    if (!second.empty())
        return second;
    return first.empty() ? line : first;
}

OBJ_Name read_word_name(TextStream& stream) {
    return read_name(pick_word(stream.read_line(line_limit)));
}

bool is_empty(const OBJ_Name& name) {
    return name.view().empty();
}

// --- Faces -----------------------------------------------------------------------------------

enum class FaceForm { vertex, vertex_texcoord, vertex_texcoord_normal, vertex_normal };

/// `fscanf` of one corner in the given form, from anything with `read_int` and `match`. Numbers
/// that are not delivered stay 0.
/// @return how many numbers were read
template<class Source>
int scan_corner(Source& source, FaceForm form, OBJ_Corner& corner) {
    corner = OBJ_Corner();
    if (!source.read_int(corner.vertex))
        return 0;
    if (form == FaceForm::vertex || !source.match('/'))
        return 1;
    if (form == FaceForm::vertex_normal)
        return source.match('/') && source.read_int(corner.normal) ? 2 : 1;
    if (!source.read_int(corner.texcoord))
        return 1;
    if (form == FaceForm::vertex_texcoord || !source.match('/'))
        return 2;
    return source.read_int(corner.normal) ? 3 : 2;
}

/// A single word as the source of numbers: what `sscanf` sees of it.
class WordSource {
public:
    explicit WordSource(std::string_view word)
        : place(word.data())
        , end(word.data() + word.size()) {}

    bool match(char wanted) {
        if (place == end || *place != wanted)
            return false;
        ++place;
        return true;
    }

    bool read_int(int& value) {
        const char* p = place;
        const bool negative = p < end && *p == '-';
        if (p < end && is_sign(*p))
            ++p;
        std::uint64_t number = 0;
        const int num_digits = take_digits(p, end, number);
        if (num_digits == 0)
            return false;
        if (num_digits > 18)
            return read_long_int(value);
        const auto magnitude = static_cast<std::int64_t>(number);
        value = static_cast<int>(negative ? -magnitude : magnitude);
        place = p;
        return true;
    }

private:
    // More digits than fit: what becomes of the number is the C library's affair.
    bool read_long_int(int& value) {
        const std::string word(place, end);
        int length = 0;
        const bool read = std::sscanf(word.c_str(), "%d%n", &value, &length) == 1;
        place += length;
        return read;
    }

    const char* place;
    const char* end;
};

FaceForm face_form(std::string_view word) {
    const std::size_t slash = word.find('/');
    if (slash == std::string_view::npos)
        return FaceForm::vertex;
    if (word.find("//", slash) != std::string_view::npos)
        return FaceForm::vertex_normal;
    OBJ_Corner corner;
    WordSource source(word);
    switch (scan_corner(source, FaceForm::vertex_texcoord_normal, corner)) {
    case 3:
        return FaceForm::vertex_texcoord_normal;
    case 2:
        return FaceForm::vertex_texcoord;
    default:
        return FaceForm::vertex;
    }
}

/// Reads a face behind its "f" and hands each triangle of the fan to `take`. The face goes on as
/// long as numbers follow, on the next lines too.
template<class Take>
void read_face(TextStream& stream, Take take) {
    std::string_view word = stream.read_word();
    word = word.substr(0, word.find('\0'));
    const FaceForm form = face_form(word);
    WordSource source(word);

    OBJ_Triangle triangle;
    scan_corner(source, form, triangle[0]);
    scan_corner(stream, form, triangle[1]);
    scan_corner(stream, form, triangle[2]);
    take(triangle);
    OBJ_Corner further;
    while (scan_corner(stream, form, further) >= 1) {
        triangle[1] = triangle[2];
        triangle[2] = further;
        take(triangle);
    }
}

// --- Tokens ----------------------------------------------------------------------------------

/// Walks over the tokens of a file and calls the pass for those that mean something. Only the first
/// character of most tokens is looked at.
template<class Pass>
void read_tokens(TextStream& stream, Pass& pass) {
    for (std::string_view token = stream.read_word(); !token.empty(); token = stream.read_word()) {
        const char second = token.size() > 1 ? token[1] : '\0';
        switch (token[0]) {
        case 'f':
            pass.face();
            continue;
        case 'g':
            pass.group();
            break;
        case 'm':
            pass.material_library();
            break;
        case 'u':
            if (token.substr(1, 5) == "semtl")
                pass.use_material();
            break;
        case 'v':
            if (second == '\0')
                pass.position();
            else if (second == 't')
                pass.texcoord();
            else if (second == 'n')
                pass.normal();
            break;
        default:
            stream.read_line(line_limit);
        }
        pass.end_of_faces();
    }
}

/// Faces that stand one behind the other with nothing between, as the first pass read them.
struct FaceRun {
    std::size_t begin = 0; ///< place in the file, behind the first "f"
    std::size_t end = 0;   ///< place behind the last face
    std::size_t first_triangle = 0;
    std::size_t num_triangles = 0;
    OBJ_Group* group = nullptr;
    OBJ_Material* material = nullptr;
};

class FirstPass {
public:
    FirstPass(OBJ_Model& model, TextStream& stream, const std::string& model_dir)
        : model(model)
        , stream(stream)
        , model_dir(model_dir)
        , current_group(&model.groups.add(OBJ_Name(default_group)))
        , current_material(&model.materials.add(OBJ_Name(default_material))) {}

    void position() {
        stream.read_line(line_limit);
        ++model.num_vertices;
    }

    void texcoord() {
        stream.read_line(line_limit);
        ++model.num_texcoords;
    }

    void normal() {
        stream.read_line(line_limit);
        ++model.num_normals;
    }

    void group() {
        const OBJ_Name name = read_name(stream.read_line(line_limit));
        if (!is_empty(name))
            current_group = &model.groups.find_or_add(name);
    }

    void use_material() {
        const OBJ_Name name = read_word_name(stream);
        if (!is_empty(name))
            current_material = &model.materials.find_or_add(name);
    }

    void material_library() {
        const std::string_view line = stream.read_line(line_limit);
        const std::string_view name = pick_word(line);
        if (name.empty())
            return;
        const auto [library, is_new] = libraries.try_emplace(model_dir + std::string(name));
        library->second.last_mention = ++num_mentions;
        if (!is_new)
            return;
        library->second.order = libraries.size();
        read_material_file(model, library->first);
    }

    /// Ends the pass. A library counts again at each mention, over those since; but only its last
    /// mention shows in the end, so that each is read at its first one, and once more only where
    /// another came between.
    void settle_libraries() {
        std::vector<std::pair<Library, const std::string*>> last;
        for (const auto& [path, library] : libraries)
            last.emplace_back(library, &path);
        std::sort(last.begin(), last.end(), [](const auto& a, const auto& b) {
            return a.first.last_mention < b.first.last_mention;
        });
        const bool is_settled =
            std::is_sorted(last.begin(), last.end(), [](const auto& a, const auto& b) {
                return a.first.order < b.first.order;
            });
        for (std::size_t i = 0; i < last.size() && !is_settled; ++i)
            read_material_file(model, *last[i].second);
    }

    void face() {
        FaceRun& run = open_run();
        ++current_material->face_count;
        read_face(stream, [this](const OBJ_Triangle& triangle) {
            if (model.triangles.size() == model.triangles.capacity())
                reserve_triangles();
            model.triangles.push_back(triangle);
        });
        run.end = stream.tell();
        const std::size_t num_triangles = model.triangles.size() - run.first_triangle;
        current_group->num_triangles += num_triangles - run.num_triangles;
        run.num_triangles = num_triangles;
        ++model.num_faces;
    }

    void end_of_faces() { in_run = false; }

    std::vector<FaceRun> take_runs() { return std::move(runs); }

private:
    /// A material library, in the order of first mentions, and of all.
    struct Library {
        std::size_t order = 0;
        std::size_t last_mention = 0;
    };

    FaceRun& open_run() {
        if (!in_run) {
            FaceRun run;
            run.begin = run.end = stream.tell();
            run.first_triangle = model.triangles.size();
            run.group = current_group;
            run.material = current_material;
            runs.push_back(run);
            in_run = true;
        }
        return runs.back();
    }

    /// Makes room for as many triangles as the rest of the file would hold if it went on as it went
    /// since the first face; a shorter file leaves pages untouched. But a first face of many
    /// corners promises nothing, so that no more room is made than what has been read accounts for:
    /// about twice its bytes, which is plenty for a file whose vertices stand before its faces.
    void reserve_triangles() {
        const std::size_t count = model.triangles.size();
        if (count < 64) {
            model.triangles.reserve(64);
            return;
        }
        const std::size_t read = stream.tell() - runs.front().begin;
        const std::size_t left = stream.size() - stream.tell();
        const std::size_t expected =
            static_cast<std::size_t>(1.05 * static_cast<double>(count) * static_cast<double>(left) /
                                     static_cast<double>(read));
        const std::size_t accounted = 2 * stream.tell() / sizeof(OBJ_Triangle);
        reserve_large(model.triangles,
                      count + std::max(std::min(expected, accounted), count / 2) + 64);
    }

    OBJ_Model& model;
    TextStream& stream;
    const std::string& model_dir;
    OBJ_Group* current_group;
    OBJ_Material* current_material;
    std::vector<FaceRun> runs;
    bool in_run = false;
    std::unordered_map<std::string, Library> libraries; ///< by path
    std::size_t num_mentions = 0;
};

class SecondPass {
public:
    SecondPass(OBJ_Model& model, TextStream& stream, const std::vector<FaceRun>& runs)
        : model(model)
        , stream(stream)
        , runs(runs)
        , current_group(&model.groups[0])
        , current_material(&model.materials[0]) {}

    void position() { read_floats(model.vertices, num_positions); }
    void texcoord() { read_floats(model.texcoords, num_texcoords); }
    void normal() { read_floats(model.normals, num_normals); }

    void group() {
        const OBJ_Name name = read_name(stream.read_line(line_limit));
        if (OBJ_Group* named = is_empty(name) ? nullptr : model.groups.find(name))
            current_group = named;
    }

    void use_material() {
        const OBJ_Name name = read_word_name(stream);
        if (OBJ_Material* named = is_empty(name) ? nullptr : model.materials.find(name))
            current_material = named;
    }

    void material_library() { stream.read_line(line_limit); }

    void face() {
        if (const FaceRun* run = find_run()) {
            file_triangles(run->first_triangle, run->num_triangles);
            num_triangles += run->num_triangles;
            stream.seek(run->end);
            return;
        }
        read_face(stream, [this](const OBJ_Triangle& triangle) { store(triangle); });
    }

    void end_of_faces() {}

private:
    /// Reads the numbers of an entry, as long as they are numbers. Entry 0 stays zero.
    template<class Entry>
    void read_floats(std::vector<Entry>& entries, std::size_t& count) {
        Entry overflow{};
        Entry& entry = count + 1 < entries.size() ? entries[++count] : overflow;
        for (float& number : entry)
            if (!stream.read_float(number))
                return;
    }

    /// The run that the first pass read from this very place, if taking it over changes nothing.
    const FaceRun* find_run() {
        while (next_run < runs.size() && runs[next_run].begin < stream.tell())
            ++next_run;
        if (next_run == runs.size())
            return nullptr;
        const FaceRun& run = runs[next_run];
        const bool same =
            run.begin == stream.tell() && run.group == current_group &&
            run.material == current_material && run.first_triangle == num_triangles &&
            run.num_triangles <= current_group->num_triangles - current_group->num_filled;
        return same ? &run : nullptr;
    }

    void store(const OBJ_Triangle& triangle) {
        if (num_triangles == model.triangles.size())
            return;
        model.triangles[num_triangles] = triangle;
        if (current_group->num_filled < current_group->num_triangles)
            file_triangles(num_triangles, 1);
        ++num_triangles;
    }

    void file_triangles(std::size_t first, std::size_t count) {
        current_group->num_filled += count;
        if (!current_group->triangles.empty()) {
            OBJ_TriangleRun& last = current_group->triangles.back();
            if (last.first + last.count == first && last.material == current_material->index) {
                last.count += count;
                return;
            }
        }
        current_group->triangles.push_back({first, count, current_material->index});
    }

    OBJ_Model& model;
    TextStream& stream;
    const std::vector<FaceRun>& runs;
    std::size_t next_run = 0;
    OBJ_Group* current_group;
    OBJ_Material* current_material;
    std::size_t num_positions = 0;
    std::size_t num_texcoords = 0;
    std::size_t num_normals = 0;
    std::size_t num_triangles = 0;
};

template<class Entry>
void resize_zeroed(std::vector<Entry>& entries, std::size_t count) {
    reserve_large(entries, count);
    entries.resize(count);
}

void allocate_model_memory(OBJ_Model& model) {
    model.num_triangles = model.triangles.size();
    resize_zeroed(model.vertices, model.num_vertices + 1);
    if (model.num_texcoords > 0)
        resize_zeroed(model.texcoords, model.num_texcoords + 1);
    if (model.num_normals > 0)
        resize_zeroed(model.normals, model.num_normals + 1);
}

/// Counted only once a text was refused: nobody else asks for lines.
std::size_t count_lines(std::string_view text) {
    const auto line_feeds = std::count(text.begin(), text.end(), '\n');
    const bool has_rest = !text.empty() && text.back() != '\n';
    return static_cast<std::size_t>(line_feeds) + has_rest;
}

} // namespace

std::unique_ptr<OBJ_Model> read_obj_text(const char* text, std::size_t size,
                                         const std::string& model_dir, OBJ_Fault* fault) {
    const NumericCLocale locale;
    auto model = std::make_unique<OBJ_Model>();
    TextStream stream(text, size);
    FirstPass first(*model, stream, model_dir);
    read_tokens(stream, first);
    first.settle_libraries();
    if (model->num_vertices == 0 || model->triangles.empty()) {
        if (fault)
            *fault = {false, count_lines({text, size}), model->num_vertices};
        return nullptr;
    }

    allocate_model_memory(*model);
    stream.seek(0);
    const std::vector<FaceRun> runs = first.take_runs();
    SecondPass second(*model, stream, runs);
    read_tokens(stream, second);
    return model;
}

std::unique_ptr<OBJ_Model> read_obj_file(const char* path, const std::string& model_dir,
                                         OBJ_Fault* fault) {
    FileBytes file;
    if (file.read(path))
        return read_obj_text(file.text(), file.size(), model_dir, fault);
    if (fault)
        *fault = {.is_unreadable = true};
    return nullptr;
}

} // namespace orvex
