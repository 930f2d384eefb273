#include "orvex_formats/private/model_file.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include <orvex_names/file_names.h>

#include "orvex_formats/private/archive.h"
#include "orvex_formats/private/archived_files.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

struct KnownSuffix {
    const char* suffix;
    const char* format;
};

constexpr std::array<KnownSuffix, 7> known_suffixes = {{{".3mf", "3MF"},
                                                        {".glb", "glTF"},
                                                        {".gltf", "glTF"},
                                                        {".obj", "OBJ"},
                                                        {".off", "OFF"},
                                                        {".ply", "PLY"},
                                                        {".stl", "STL"}}};

/// Whether a name ends as that of one of several formats, told as "FBX, DAE".
bool is_one_of(const std::string& name, const std::string& formats) {
    for (std::size_t first = 0; first < formats.size();) {
        const std::size_t end = std::min(formats.find(", ", first), formats.size());
        std::string suffix = "." + formats.substr(first, end - first);
        std::transform(suffix.begin(), suffix.end(), suffix.begin(), names::small_letter);
        if (suffix.size() > 1 && has_suffix(name, suffix))
            return true;
        first = end + 2;
    }
    return false;
}

/// The format that a name tells; empty for none.
/// @param asked  what the loader that asks reads: of other readers' formats only it knows
std::string format_of(const std::string& name, const std::string& asked) {
    for (const KnownSuffix& known : known_suffixes)
        if (has_suffix(name, known.suffix))
            return known.format;
    return is_one_of(name, asked) ? asked : "";
}

/// Every loader is offered every file: only that of the format shall inflate it.
void check_format(const std::string& name, const std::string& format) {
    const std::string told = format_of(name, format);
    if (!format.empty() && !told.empty() && told != format)
        refuse_format("a compressed file whose name says that it is of another format");
}

std::string folder_of(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

// --- gzip

ModelFile open_gzip(const InputFile& packed, const std::string& format) {
    std::string name = packed.path();
    if (has_suffix(name, ".gz"))
        name.resize(name.size() - 3);
    check_format(name, format);
    std::uint64_t num_behind = 0;
    std::vector<unsigned char> bytes = gunzip(packed, num_behind);
    std::vector<std::string> notes;
    if (num_behind > 0)
        notes.push_back(std::to_string(num_behind) +
                        " bytes behind the compressed data were left out");
    return {InputFile(std::move(bytes), name), packed.size(), std::move(notes)};
}

// --- zip

struct Content {
    const ZipArchive::Entry* model = nullptr;
    std::size_t num_models = 0;
    bool is_package = false; ///< a model itself, of several parts
};

Content content_of(const ZipArchive& archive, const std::string& format) {
    Content content;
    content.is_package = archive.find("[Content_Types].xml") != nullptr;
    for (const ZipArchive::Entry& entry : archive.entries()) {
        if (is_passed_over(entry.name) || format_of(entry.name, format).empty())
            continue;
        content.model = &entry;
        ++content.num_models;
    }
    return content;
}

ModelFile open_zip(InputFile&& packed, const std::string& format) {
    const std::string path = packed.path();
    const auto files = std::make_shared<ArchivedFiles>(std::move(packed));
    const Content content = content_of(files->archive(), format);
    // Whoever reads many formats is asked last, and nobody else says it then.
    if (content.num_models == 0 && format.find(", ") != format.npos)
        refuse("an archive without a model");
    if (content.num_models == 0)
        refuse_format("an archive without a model");
    if (content.num_models > 1)
        refuse("an archive of %zu models; such of one are read", content.num_models);
    const std::string& name = content.model->name;
    check_format(name, format);
    InputFile model(files->archive().read(*content.model),
                    folder_of(path) + name.substr(name.rfind('/') + 1));
    files->set_model(*content.model);
    model.set_archive(files);
    return {std::move(model), files->stored_size(), {}};
}

} // namespace

ModelFile open_model_file(const std::string& path, const std::string& format) {
    InputFile packed(path);
    if (is_gzip(packed))
        return open_gzip(packed, format);
    if (is_zip(packed) && !content_of(ZipArchive(packed), format).is_package)
        return open_zip(std::move(packed), format);
    const std::uint64_t size = packed.size();
    return {std::move(packed), size, {}};
}

} // namespace orvex::formats
