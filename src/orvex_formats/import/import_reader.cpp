#include "orvex_formats/import/private/import_reader.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <set>
#include <string>
#include <utility>

#include "orvex_formats/import/private/answer_reader.h"
#include "orvex_formats/import/private/imported_formats.h"
#include "orvex_formats/private/beside.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

std::string last_part_of(const std::string& path) {
    return path.substr(path.find_last_of("/\\:") + 1);
}

// --- Names of pictures ------------------------------------------------------------------------

/// Where names that a file has for pictures lead.
class PictureNames {
public:
    PictureNames(Draft& draft, const InputFile& model)
        : draft(draft)
        , model(model) {
        for (const Picture& picture : draft.pictures)
            pictures.insert(picture.name);
    }

    bool is_picture(const std::string& name) const { return pictures.count(name) != 0; }

    /// The name as hosts may look for it; empty for one that leads nowhere.
    std::string settled(std::string name) {
        if (name.empty() || is_picture(name))
            return name;
        std::replace(name.begin(), name.end(), '\\', '/');
        while (name.compare(0, 2, "./") == 0)
            name.erase(0, 2);
        const Beside told = find_beside(model, name);
        if (told.mistake.empty())
            return of_file(name);
        const std::string last = last_part_of(name);
        const Beside beside = find_beside(model, last);
        if (beside.mistake.empty())
            return of_file(last);
        // A file that isn't there is told of by those who look for it.
        if (told.is_missing || model.path().empty())
            return of_file(name);
        if (beside.is_missing)
            return of_file(last);
        note("the picture \"" + in_words(last) + "\" was left out: " + beside.mistake);
        return "";
    }

    void note(const std::string& sentence) {
        if (notes.insert(sentence).second)
            draft.notes.push_back(sentence);
    }

    /// A picture for what has none of its own, so that others don't take its place. Its name is
    /// that of no file beside the model.
    const std::string& white() {
        if (white_name.empty()) {
            white_name = "white";
            while (find_beside(model, white_name).mistake.empty())
                white_name += ' ';
            pictures.insert(white_name);
            draft.pictures.push_back({white_name, {}});
        }
        return white_name;
    }

private:
    /// A file's name, another than that of any picture within the model.
    std::string of_file(const std::string& name) const {
        return is_picture(name) ? "./" + name : name;
    }

    Draft& draft;
    const InputFile& model;
    std::set<std::string> pictures, notes;
    std::string white_name;
};

constexpr PhysicalTexture PhysicalMaterial::*other_textures[] = {
    &PhysicalMaterial::metallic_roughness_texture, &PhysicalMaterial::normal_texture,
    &PhysicalMaterial::occlusion_texture, &PhysicalMaterial::emissive_texture};

/// Lists the pictures of a material, that of its colour first.
void settle(SurfaceMaterial& material, PictureNames& names) {
    std::string base = material.textures.empty() ? "" : names.settled(material.textures[0]);
    material.textures.clear();
    if (!base.empty())
        material.textures.push_back(base);
    if (!material.physical)
        return;
    PhysicalMaterial& physical = *material.physical;
    physical.base_color_texture.image = base;
    for (const auto member : other_textures) {
        std::string& name = (physical.*member).image;
        name = names.settled(name);
        if (name.empty())
            continue;
        if (material.textures.empty())
            material.textures.push_back(names.white());
        // Pictures come before files, and would take the place of the colour.
        if (!names.is_picture(material.textures[0]) && names.is_picture(name)) {
            names.note("pictures within the file, of a material whose colour is one beside it, "
                       "were left out");
            physical.*member = {};
        } else if (std::find(material.textures.begin(), material.textures.end(), name) ==
                   material.textures.end())
            material.textures.push_back(name);
    }
}

void settle_names(Draft& draft, const InputFile& model) {
    PictureNames names(draft, model);
    for (SurfaceMaterial& material : draft.materials)
        settle(material, names);
    std::vector<std::string> files;
    if (model.archive())
        draft.files.clear(); // none of them lies on the disk
    for (const std::string& name : draft.files)
        if (Beside beside = find_beside(model, name); beside.mistake.empty())
            files.push_back(std::move(beside.path));
    draft.files = std::move(files);
}

} // namespace

namespace {

/// A number as the program reads it, to the last bit, whatever the locale.
std::string exactly(float number) {
    char text[64];
    return {text, std::to_chars(std::begin(text), std::end(text), number).ptr};
}

} // namespace

const char* imported_formats() {
    return all_imported_formats;
}

Draft read_imported(const InputFile& file, std::optional<float> time) {
    return read_imported_by(installed_importer(file.size()), file, time);
}

Draft read_imported_by(const Importer& importer, const InputFile& file, std::optional<float> time) {
    if (std::none_of(std::begin(imported_suffixes), std::end(imported_suffixes),
                     [&](const char* suffix) { return has_suffix(file.path(), suffix); }))
        refuse_format("its name isn't that of a format that the importer reads");
    Request request;
    request.words = {"model", last_part_of(file.path())};
    if (time)
        request.words.push_back(exactly(*time));
    request.may_read_its_folder = !file.archive(); // which has what lies beside it
    Draft draft = read_answer(ask_importer(importer, request, file));
    settle_names(draft, file);
    return draft;
}

} // namespace orvex::formats
