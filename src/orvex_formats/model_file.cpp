#include "orvex_formats/private/model_file.h"

#include <array>
#include <utility>

#include "orvex_formats/private/archive.h"
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

/// The format that a name tells; empty for none.
std::string format_of(const std::string& name) {
    for (const KnownSuffix& known : known_suffixes)
        if (has_suffix(name, known.suffix))
            return known.format;
    return "";
}

/// Every loader is offered every file: only that of the format shall inflate it.
void check_format(const std::string& name, const std::string& format) {
    const std::string told = format_of(name);
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

/// What is no file of the user's: folders, and what some systems add for themselves.
bool is_passed_over(const std::string& name) {
    const std::string last = name.substr(name.rfind('/') + 1);
    return last.empty() || last[0] == '.' || name.rfind("__MACOSX/", 0) == 0;
}

struct Content {
    const ZipArchive::Entry* model = nullptr;
    std::size_t num_models = 0, num_others = 0;
    bool is_package = false; ///< a model itself, of several parts
};

Content content_of(const ZipArchive& archive) {
    Content content;
    content.is_package = archive.find("[Content_Types].xml") != nullptr;
    for (const ZipArchive::Entry& entry : archive.entries()) {
        if (is_passed_over(entry.name))
            continue;
        if (format_of(entry.name).empty())
            ++content.num_others;
        else {
            content.model = &entry;
            ++content.num_models;
        }
    }
    return content;
}

ModelFile open_zip(const InputFile& packed, const std::string& path, const std::string& format) {
    const ZipArchive archive(packed);
    const Content content = content_of(archive);
    if (content.is_package)
        return {InputFile(path), packed.size(), {}};
    if (content.num_models == 0)
        refuse_format("an archive without a model");
    if (content.num_models > 1)
        refuse("an archive of %zu models; such of one are read", content.num_models);
    const std::string& name = content.model->name;
    check_format(name, format);
    std::vector<std::string> notes;
    if (content.num_others > 0)
        notes.push_back("the other files of the archive were left out: " +
                        std::to_string(content.num_others));
    const std::string inner = folder_of(path) + name.substr(name.rfind('/') + 1);
    return {InputFile(archive.read(*content.model), inner), packed.size(), std::move(notes)};
}

} // namespace

ModelFile open_model_file(const std::string& path, const std::string& format) {
    const InputFile packed(path);
    if (is_gzip(packed))
        return open_gzip(packed, format);
    if (is_zip(packed))
        return open_zip(packed, path, format);
    return {InputFile(path), packed.size(), {}};
}

} // namespace orvex::formats
