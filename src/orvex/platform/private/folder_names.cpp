#include "orvex/platform/private/folder_names.h"

#include <algorithm>
#include <memory>
#include <string_view>

#include <dirent.h>

namespace orvex {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

} // namespace

std::vector<std::string> names_in_folder(const std::string& folder) {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, CloseFolder> open(opendir(folder.c_str()));
    while (const dirent* const entry = open ? readdir(open.get()) : nullptr) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace orvex
