// Pieces of the file are read by several threads first, each by itself. What they hold is put
// together in the file's order then: so nothing depends on how many threads there were.

#include "orvex_formats/obj/private/obj_reader.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include <orvex_names/file_names.h>

#include "orvex_formats/obj/private/library_search.h"
#include "orvex_formats/obj/private/obj_model.h"
#include "orvex_formats/obj/private/text_encoding.h"
#include "orvex_formats/private/beside.h"
#include "orvex_formats/private/large_lists.h"
#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/words.h"
#include "orvex_formats/private/workers.h"

namespace orvex::formats {

namespace {

// Without a group or material of its own a face belongs to what the engine's own loader has then.
const char* const default_group = "orvex_obj_default_group";
const char* const default_material = "orvex_obj_default_material";

// --- Whether it is one

/// The first word that isn't in a comment; empty where there is none nearby, a zero where bytes are
/// no text.
std::string first_word(const InputFile& file, std::uint64_t begin) {
    constexpr std::uint64_t far = 256u << 10;
    // Most files tell by their first few bytes.
    for (std::uint64_t size = 4096;; size = far) {
        std::string text(
            static_cast<std::size_t>(std::min<std::uint64_t>(size, file.size() - begin)), ' ');
        file.read(begin, text.data(), text.size());
        if (text.find('\0') != text.npos)
            return std::string(1, '\0');
        for (std::size_t place = 0; place < text.size();) {
            const std::size_t end = std::min(text.find_first_of("\r\n", place), text.size());
            Words words(std::string_view(text).substr(place, end - place));
            const std::string_view word = words.take();
            const bool is_whole = end < text.size() || text.size() == file.size() - begin;
            if (!word.empty() && word[0] != '#' && (is_whole || !words.remaining().empty()))
                return std::string(word);
            place = end + 1;
        }
        if (size == far || text.size() < size)
            return "";
    }
}

void expect_obj(const InputFile& file, std::uint64_t begin, const std::string& path) {
    const std::string word = first_word(file, begin);
    if (word.empty() ? !has_suffix(path, ".obj") : !is_obj_keyword(word))
        refuse_format("no OBJ file: its first word is none that begins a line of such files");
}

// --- Putting together

class ObjReader {
public:
    /// @param model  whose folder or archive has what the file names
    explicit ObjReader(const InputFile& model)
        : model(model) {}

    Draft read(const InputFile& file, const ObjCutting& cutting) {
        const std::uint64_t begin = begin_of_text(file);
        expect_obj(file, begin, model.path());
        blocks = read_obj_blocks(file, begin, cutting);
        find_bases();
        merge_lists();
        read_libraries();
        gather_groups();
        make_surfaces();
        add_lines();
        add_points();
        expect_something();
        drop_unused_materials();
        draft.notes = notes.take();
        if (model.archive())
            draft.files.clear(); // none of them lies on the disk
        return std::move(draft);
    }

private:
    static std::string at_line(std::size_t line) { return "line " + std::to_string(line) + ": "; }

    // --- Lists

    /// Counts what stands before each piece. The first mistake of the file is found on the way.
    void find_bases() {
        ObjBase base;
        for (const ObjBlock& block : blocks) {
            if (!block.mistake.empty())
                refuse("%s", (at_line(base.lines + block.mistake_line) + block.mistake).c_str());
            bases.push_back(base);
            base.positions += block.positions.size();
            base.texcoords += block.texcoords.size();
            base.normals += block.normals.size();
            base.lines += block.num_lines;
            num_elements += block.faces.size() + block.points.size() + block.lines.size();
        }
        if (base.positions == 0)
            refuse_format("no OBJ file: none of its %zu lines begins with a v", base.lines);
        if (num_elements == 0)
            refuse("line %zu: the file ends with %zu vertices and no face", base.lines,
                   base.positions);
        const std::size_t most = static_cast<std::size_t>(ObjIndex::most);
        if (std::max({base.positions, base.texcoords, base.normals}) > most)
            refuse("line %zu: more entries than any that are read", base.lines);
        all = base;
    }

    /// Moves the entries of a piece to the end of a list.
    template<class Entry>
    static void move_entries(std::vector<Entry>& from, std::vector<Entry>& to) {
        to.insert(to.end(), from.begin(), from.end());
        std::vector<Entry>().swap(from);
    }

    template<class Entry>
    void merge(std::vector<Entry> ObjBlock::*part, std::size_t count, std::vector<Entry>& list) {
        reserve_largely(list, count);
        for (ObjBlock& block : blocks)
            move_entries(block.*part, list);
    }

    void merge_positions(bool has_colors) {
        reserve_largely(lists.positions, all.positions);
        reserve_largely(lists.colors, has_colors ? all.positions : 0);
        for (ObjBlock& block : blocks) {
            move_entries(block.positions, lists.positions);
            move_entries(block.colors, lists.colors);
            if (has_colors)
                lists.colors.resize(lists.positions.size(), vec3(1.0f, 1.0f, 1.0f));
        }
    }

    void merge_lists() {
        const bool has_colors = std::any_of(
            blocks.begin(), blocks.end(), [](const auto& block) { return !block.colors.empty(); });
        // Each list by whoever is free.
        share_out(3, [&](std::size_t list) {
            if (list == 0)
                merge_positions(has_colors);
            else if (list == 1)
                merge(&ObjBlock::texcoords, all.texcoords, lists.texcoords);
            else
                merge(&ObjBlock::normals, all.normals, lists.normals);
        });
        const bool is_of_bytes =
            std::any_of(lists.colors.begin(), lists.colors.end(), [](const vec3& color) {
                return color.x > 1.0f || color.y > 1.0f || color.z > 1.0f;
            });
        lists.color_scale = is_of_bytes ? 1.0f / 255.0f : 1.0f;
    }

    // --- Materials

    void read_libraries() {
        for (std::size_t i = 0; i < blocks.size(); ++i)
            for (const ObjEvent& event : blocks[i].events)
                if (event.kind == ObjEvent::Kind::library)
                    read_libraries_of(event.text, bases[i].lines + event.line);
    }

    void read_libraries_of(const std::string& rest, std::size_t line) {
        constexpr std::size_t most_mentions = 64; // each costs a few looks at the disk
        if (!mentions.insert(rest).second)
            return;
        if (mentions.size() > most_mentions)
            return notes.add("libraries", at_line(line) + "further material libraries were left "
                                                          "out");
        for (const std::string& name : library_names(model, rest)) {
            const std::string found = find_library(model, name);
            if (found.empty())
                notes.add("missing " + name, at_line(line) + "the material library \"" +
                                                 in_words(name) + "\" isn't in the model's folder");
            else if (std::find(draft.files.begin(), draft.files.end(), found) == draft.files.end())
                read_library(found, name, line);
        }
    }

    void read_library(const std::string& found, const std::string& name, std::size_t line) {
        constexpr std::uint64_t most = 64u << 20;
        try {
            const InputFile file = open_beside(model, found);
            if (file.size() > most)
                refuse("it is larger than any that is read");
            std::string text;
            if (const auto bytes = from_utf16(file)) {
                text.assign(bytes->begin(), bytes->end());
            } else {
                const std::uint64_t begin = begin_of_text(file);
                text.resize(static_cast<std::size_t>(file.size() - begin));
                file.read(begin, text.data(), text.size());
            }
            read_mtl(text, name, table, notes);
            draft.files.push_back(found);
        } catch (const Refusal& refusal) {
            notes.add("refused " + name, at_line(line) + "the material library \"" +
                                             in_words(name) + "\" wasn't read: " + refusal.what());
        }
    }

    // --- Groups

    void gather_groups() {
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            std::uint32_t face = 0;
            for (const ObjEvent& event : blocks[i].events) {
                add_run(i, face, event.element);
                face = event.element;
                apply(event, bases[i].lines + event.line);
            }
            add_run(i, face, static_cast<std::uint32_t>(blocks[i].faces.size()));
        }
    }

    void apply(const ObjEvent& event, std::size_t line) {
        switch (event.kind) {
        case ObjEvent::Kind::group:
            group = names::without_quotes(event.text);
            current = nullptr;
            break;
        case ObjEvent::Kind::object:
            object = names::without_quotes(event.text);
            group.clear();
            current = nullptr;
            break;
        case ObjEvent::Kind::smoothing:
            smoothing = smoothing_of(event.text);
            break;
        case ObjEvent::Kind::material:
            use_material(names::without_quotes(event.text), line);
            break;
        case ObjEvent::Kind::unknown:
            notes.add(event.text, at_line(line) + event.text);
            break;
        case ObjEvent::Kind::library:
            break;
        }
    }

    static Smoothing smoothing_of(const std::string& text) {
        unsigned int number = 0;
        Words words(text);
        return words.take_number(number) && number > 0 && number < flat ? number : flat;
    }

    void use_material(const std::string& name, std::size_t line) {
        material = name.empty() ? no_material : table.use(name);
        if (material != no_material && !table.is_defined(material) && !draft.files.empty())
            notes.add("undefined material",
                      at_line(line) + "no material library has \"" + in_words(name) + "\"");
    }

    ObjGroup& current_group() {
        if (!current) {
            const auto [found, is_new] = places.try_emplace(object + '\n' + group, groups.size());
            if (is_new)
                groups.push_back({!group.empty()    ? group
                                  : !object.empty() ? object
                                                    : default_group,
                                  {}});
            current = &groups[found->second];
        }
        return *current;
    }

    void add_run(std::size_t block, std::uint32_t first, std::uint32_t end) {
        if (first == end)
            return;
        if (material == no_material)
            material = table.use(default_material);
        ObjRun run;
        run.block = &blocks[block];
        run.base = &bases[block];
        run.first_face = first;
        run.end_face = end;
        run.material = material;
        run.smoothing = smoothing;
        current_group().runs.push_back(run);
    }

    void make_surfaces() {
        SurfaceMaker maker(lists, notes);
        for (ObjGroup& one : groups) {
            Surface surface = maker.make(one);
            std::vector<ObjRun>().swap(one.runs);
            if (!surface.triangles.empty())
                draft.surfaces.push_back(std::move(surface));
        }
    }

    // --- Points and lines

    void add_lines() {
        Lines lines;
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            std::uint32_t begin = 0;
            for (const ObjElement& element : blocks[i].lines) {
                for (std::uint32_t end = begin + 1; end < element.end; ++end)
                    add_line(i, blocks[i].line_corners[end - 1], blocks[i].line_corners[end],
                             element.line, lines);
                begin = element.end;
            }
        }
        if (!lines.positions.empty())
            draft.lines.push_back(std::move(lines));
    }

    void add_line(std::size_t block, const ObjCorner& from, const ObjCorner& to, std::size_t line,
                  Lines& lines) {
        const std::uint32_t ends[] = {from.position.place(bases[block].positions, all.positions),
                                      to.position.place(bases[block].positions, all.positions)};
        if (std::max(ends[0], ends[1]) == UINT32_MAX)
            return notes.add("line", at_line(bases[block].lines + line) +
                                         "a line that names a vertex which isn't there was left "
                                         "out");
        for (const std::uint32_t end : ends) {
            lines.positions.push_back(lists.positions[end]);
            if (!lists.colors.empty())
                lines.colors.push_back(color_at(lists, end));
        }
    }

    void add_points() {
        Cloud cloud;
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            std::uint32_t begin = 0;
            for (const ObjElement& element : blocks[i].points)
                for (; begin < element.end; ++begin)
                    add_point(i, blocks[i].point_corners[begin], element.line, cloud);
        }
        if (!cloud.positions.empty())
            draft.clouds.push_back(std::move(cloud));
    }

    void add_point(std::size_t block, const ObjCorner& corner, std::size_t line, Cloud& cloud) {
        const std::uint32_t place = corner.position.place(bases[block].positions, all.positions);
        if (place == UINT32_MAX)
            return notes.add("point", at_line(bases[block].lines + line) +
                                          "a point that names a vertex which isn't there was left "
                                          "out");
        cloud.positions.push_back(lists.positions[place]);
        if (!lists.colors.empty())
            cloud.colors.push_back(color_at(lists, place));
    }

    // --- The end

    /// Where everything was left out, the first reason why is the file's.
    void expect_something() {
        if (draft.surfaces.empty() && draft.lines.empty() && draft.clouds.empty())
            refuse("%s", notes.take().back().c_str());
    }

    /// Leaves the materials that faces have, in their order.
    void drop_unused_materials() {
        std::vector<std::uint32_t> places_left(table.materials.size(), no_material);
        for (const Surface& surface : draft.surfaces)
            for (const std::uint32_t place : surface.triangle_materials)
                places_left[place] = 0;
        for (std::size_t i = 0; i < places_left.size(); ++i) {
            if (places_left[i] == no_material)
                continue;
            places_left[i] = static_cast<std::uint32_t>(draft.materials.size());
            draft.materials.push_back(std::move(table.materials[i]));
            const std::vector<std::string>& textures = draft.materials.back().textures;
            if (!textures.empty() && textures[0] == MtlTable::white && draft.pictures.empty())
                draft.pictures.push_back({MtlTable::white, {}});
        }
        for (Surface& surface : draft.surfaces)
            for (std::uint32_t& place : surface.triangle_materials)
                place = places_left[place];
    }

    const InputFile& model;
    std::deque<ObjBlock> blocks;
    std::vector<ObjBase> bases; ///< of each block
    ObjBase all;
    std::size_t num_elements = 0;
    ObjLists lists;
    MtlTable table;
    Notes notes;
    std::unordered_set<std::string> mentions; ///< of libraries
    Draft draft;

    // Where the faces at hand belong to.
    std::string object, group;
    ObjGroup* current = nullptr; ///< null: they name another one
    std::uint32_t material = no_material;
    Smoothing smoothing = by_angle;

    std::deque<ObjGroup> groups; ///< in the order of their first faces
    std::unordered_map<std::string, std::size_t> places;
};

} // namespace

Draft read_obj(const InputFile& file) {
    return read_obj(file, ObjCutting());
}

Draft read_obj(const InputFile& file, const ObjCutting& cutting) {
    if (auto text = from_utf16(file))
        return ObjReader(file).read(InputFile(std::move(*text)), cutting);
    return ObjReader(file).read(file, cutting);
}

} // namespace orvex::formats
