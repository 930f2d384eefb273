#include "picture_name.h"

#include <algorithm>
#include <cstddef>

#include <orvex_kit/files.h>

#include <sys/stat.h>

namespace {

/// Also by a link that leads nowhere.
bool is_taken(const std::string& name) {
    struct stat found = {};
    return lstat(name.c_str(), &found) == 0;
}

} // namespace

std::string free_picture_name(const std::string& model) {
    constexpr std::size_t digits = 3;
    const std::string file = model.substr(orvex::kit::folder_of(model).size());
    std::string stem = file.substr(0, orvex::kit::suffix_of(file));
    if (stem.empty())
        stem = "orvex-view";
    for (int i = 1;; ++i) {
        std::string number = std::to_string(i);
        number.insert(0, digits - std::min(number.size(), digits), '0');
        std::string name = stem + "-" + number + ".png";
        if (!is_taken(name))
            return name;
    }
}
