#include "orvex_names/file_names.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

#include <dirent.h>
#include <sys/stat.h>

namespace orvex::names {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};
struct FreeText {
    void operator()(char* text) const { std::free(text); }
};

bool is_there(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0;
}

/// How a folder calls what has a name in other letters. Empty if nothing has.
std::string name_in_any_case(const std::string& folder, const std::string& name) {
    std::string found;
    const std::unique_ptr<DIR, CloseFolder> open(opendir(folder.empty() ? "." : folder.c_str()));
    while (const dirent* const entry = open ? readdir(open.get()) : nullptr) {
        const std::string_view known = entry->d_name;
        if (std::equal(known.begin(), known.end(), name.begin(), name.end(),
                       [](char a, char b) { return small_letter(a) == small_letter(b); }) &&
            (found.empty() || known < found))
            found = known;
    }
    return found;
}

} // namespace

bool has_drive(std::string_view path) {
    return path.size() > 1 && path[1] == ':' && small_letter(path[0]) >= 'a' &&
           small_letter(path[0]) <= 'z';
}

std::vector<std::string> steps_of(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    if (has_drive(path))
        path.erase(0, 2);
    std::vector<std::string> steps;
    for (std::size_t first = 0; first < path.size();) {
        const std::size_t end = std::min(path.find('/', first), path.size());
        std::string step = path.substr(first, end - first);
        if (!step.empty() && step != "." && step != "..")
            steps.push_back(std::move(step));
        first = end + 1;
    }
    return steps;
}

std::string resolved(const std::string& path) {
    const std::unique_ptr<char, FreeText> real(realpath(path.c_str(), nullptr));
    return real ? real.get() : "";
}

bool is_within(const std::string& path, const std::string& folder) {
    const std::string root = folder == "/" ? folder : folder + "/";
    return !folder.empty() && path.compare(0, root.size(), root) == 0;
}

std::string walk_in_any_case(const std::string& folder, const std::vector<std::string>& steps,
                             std::size_t skipped) {
    std::string path = folder;
    for (std::size_t i = skipped; i < steps.size(); ++i) {
        const std::string name =
            is_there(path + steps[i]) ? steps[i] : name_in_any_case(path, steps[i]);
        if (name.empty())
            return "";
        path += name + (i + 1 == steps.size() ? "" : "/");
    }
    return path;
}

std::string without_quotes(std::string_view name) {
    const bool is_quoted = name.size() > 2 && name.front() == '"' && name.back() == '"';
    return std::string(is_quoted ? name.substr(1, name.size() - 2) : name);
}

} // namespace orvex::names
