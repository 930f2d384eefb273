#include "orvex_formats/private/format_loader.h"

#include <cmath>
#include <cstdint>
#include <exception>
#include <new>
#include <set>
#include <string>
#include <utility>

#include <orvex/assets/models/load_undo.h>

#include "orvex_formats/private/archived_files.h"
#include "orvex_formats/private/build_model.h"
#include "orvex_formats/private/model_file.h"
#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/spare_memory.h"

namespace orvex::formats {

namespace {

void introduce(Loader3D& loader, const char* name, const char* format, const char* description) {
    loader.set_name(name);
    loader.set_loader_name(format);
    loader.set_description(description);
    loader.set_author("orvex");
    loader.set_type(PLUGIN_TYPE_LOADER_3D);
}

} // namespace

FormatLoader::FormatLoader(const char* name, const char* format, const char* description,
                           Draft (*reader)(const InputFile& file))
    : reader(reader) {
    introduce(*this, name, format, description);
}

FormatLoader::FormatLoader(const char* name, const char* format, const char* description,
                           Draft (*reader)(const InputFile& file, std::optional<float> time))
    : timed_reader(reader) {
    introduce(*this, name, format, description);
}

namespace {

/// What small files may become; only compressed ones can hold more.
constexpr std::uint64_t small_file = 1u << 20, most_of_small_file = most_of_model(0);

/// Roughly what the engine's stores take.
std::uint64_t model_size_of(const Draft& draft) {
    std::uint64_t size = 0;
    for (const Surface& surface : draft.surfaces)
        size += size_of_node + surface.positions.size() * size_of_vertex +
                surface.triangles.size() * size_of_triangle;
    for (const Cloud& cloud : draft.clouds)
        size += size_of_node + cloud.positions.size() * size_of_point;
    for (const Lines& lines : draft.lines)
        size += size_of_node + lines.positions.size() * size_of_point;
    size += size_of_node * (draft.cameras.size() + draft.lamps.size());
    return size;
}

void check_size(const Draft& draft, std::uint64_t stored_size) {
    const std::uint64_t size = model_size_of(draft);
    if (stored_size < small_file && size > most_of_small_file)
        refuse("a file of %llu bytes that becomes a model of %llu",
               static_cast<unsigned long long>(stored_size), static_cast<unsigned long long>(size));
}

} // namespace

bool FormatLoader::load_from_file(Model* model, const char* filename) {
    clear_failure_reason();
    if (!model || !filename) {
        set_format_unknown("no model, or no name of a file");
        return false;
    }
    try {
        load(*model, std::string(get_model_dir()) + filename);
        return true;
    } catch (const Refusal& refusal) {
        if (refusal.is_format_known())
            set_failure_reason("%s", refusal.what());
        else
            set_format_unknown("%s", refusal.what());
    } catch (const std::bad_alloc&) {
        set_failure_reason("there isn't enough memory");
    } catch (const std::exception& error) { // of a library: no host is to meet it
        set_failure_reason("%s", error.what());
    }
    return false;
}

namespace {

/// Makes the pictures that lie in a model's archive parts of the draft. What isn't there is a file
/// as any other.
void embed_pictures(ArchivedFiles& archive, Draft& draft) {
    std::set<std::string> known;
    for (const Picture& picture : draft.pictures)
        known.insert(picture.name);
    for (const SurfaceMaterial& material : draft.materials)
        for (const std::string& name : material.textures) {
            const std::string found = archive.find(name);
            if (found.empty() || !known.insert(name).second)
                continue;
            try {
                draft.pictures.push_back({name, archive.read(found)});
            } catch (const Refusal& refusal) {
                draft.notes.emplace_back(refusal.what());
            }
        }
}

} // namespace

Draft FormatLoader::read(const InputFile& file) const {
    if (reader)
        return reader(file);
    const float time = get_time();
    return timed_reader(file, std::isnan(time) ? std::nullopt : std::optional(time));
}

void FormatLoader::load(Model& model, const std::string& path) {
    const ModelFile opened = open_model_file(path, get_loader_name());
    Draft draft = read(opened.file);
    check_size(draft, opened.stored_size);
    if (ArchivedFiles* const archive = opened.file.archive()) {
        embed_pictures(*archive, draft);
        if (const std::size_t count = archive->num_left_out(); count > 0)
            add_note("the other files of the archive were left out: %zu", count);
    }
    for (const std::string& note : opened.notes)
        add_note("%s", note.c_str());
    for (const std::string& note : draft.notes)
        add_note("%s", note.c_str());
    for (const std::string& file : draft.files)
        add_file(file.c_str());
    give_back_spare_memory(opened.stored_size);
    LoadUndo undo(model);
    for (const std::string& note : build_model(std::move(draft), model))
        add_note("%s", note.c_str());
    undo.keep();
}

} // namespace orvex::formats
