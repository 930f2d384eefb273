#include "orvex_formats/private/beside.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <orvex_names/file_names.h>

#include "orvex_formats/private/archived_files.h"

namespace orvex::formats {

namespace {

/// Whether one of the steps between slashes is "..".
bool goes_up(std::string_view name) {
    for (std::size_t first = 0; first <= name.size();) {
        const std::size_t end = std::min(name.find('/', first), name.size());
        if (name.substr(first, end - first) == "..")
            return true;
        first = end + 1;
    }
    return false;
}

/// Why a name isn't even looked for; null for one that is.
const char* mistake_in(std::string_view name) {
    if (name.empty())
        return "it is named by nothing";
    if (std::any_of(name.begin(), name.end(), [](char letter) {
            return static_cast<unsigned char>(letter) < ' ' || letter == '\x7f';
        }))
        return "its name has control characters";
    if (name.find(':') != name.npos)
        return "a drive or a scheme in its name leads out of the model's folder";
    if (name.find('\\') != name.npos)
        return "its name has a backslash";
    if (name.front() == '/' || goes_up(name))
        return "it lies outside the model's folder, where nothing is read";
    return nullptr;
}

} // namespace

Beside find_beside(const std::string& model, std::string_view name) {
    if (const char* const mistake = mistake_in(name))
        return {"", mistake};
    if (model.empty())
        return {"", "a model in memory has no folder where it could lie"};
    const std::size_t slash = model.rfind('/');
    const std::string folder = slash == model.npos ? "" : model.substr(0, slash + 1);
    std::string path = folder + std::string(name);
    const std::string real = names::resolved(path);
    if (real.empty())
        return {"", std::string("it can't be opened: ") + std::strerror(errno), errno == ENOENT};
    if (!names::is_within(real, names::resolved(folder.empty() ? "." : folder)))
        return {"", "a link leads out of the model's folder, where nothing is read"};
    return {std::move(path), ""};
}

Beside find_beside(const InputFile& model, std::string_view name) {
    if (!model.archive())
        return find_beside(model.path(), name);
    if (const char* const mistake = mistake_in(name))
        return {"", mistake};
    std::string found = model.archive()->find(name);
    const bool is_missing = found.empty();
    return {std::move(found), is_missing ? "the archive doesn't have it" : "", is_missing};
}

InputFile open_beside(const InputFile& model, const std::string& path) {
    return model.archive() ? InputFile(model.archive()->read(path), path) : InputFile(path);
}

bool unescape_uri(std::string_view uri, std::string& name) {
    const auto digit_of = [](char letter) {
        constexpr std::string_view digits = "0123456789abcdef";
        return digits.find(
            static_cast<char>(letter >= 'A' && letter <= 'F' ? letter + 32 : letter));
    };
    name.clear();
    for (std::size_t i = 0; i < uri.size(); ++i) {
        if (uri[i] != '%') {
            name += uri[i];
            continue;
        }
        const std::size_t high = i + 2 < uri.size() ? digit_of(uri[i + 1]) : uri.npos;
        const std::size_t low = i + 2 < uri.size() ? digit_of(uri[i + 2]) : uri.npos;
        if (high == uri.npos || low == uri.npos)
            return false;
        name += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return true;
}

} // namespace orvex::formats
