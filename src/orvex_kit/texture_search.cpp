// Names of textures come from other systems and other machines. What a name means is tried from the
// most literal on: as it stands, without options and with slashes, and then the end of its path in
// the model's own folder, from its longest on.

#include "orvex_kit/private/texture_search.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include <orvex_names/file_names.h>
#include <orvex_names/map_options.h>
#include <sys/stat.h>

namespace orvex::kit {

namespace {

// --- What a name means -----------------------------------------------------------------------

constexpr const char* blanks = " \t\r\n";

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == text.npos)
        return "";
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

/// What stands behind the options of a map.
std::string_view without_options(std::string_view text) {
    for (names::MapOption passed; names::take_map_option(text, passed);) {
    }
    return text;
}

/// A path of any system as one of this: with slashes, and from the root where a drive was named.
std::string with_slashes(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return names::has_drive(path) ? "/" + path.substr(2) : path;
}

// --- Where it lies ---------------------------------------------------------------------------

bool is_there(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0;
}

bool is_folder(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

class TextureSearch {
public:
    TextureSearch(const std::string& folder, bool allow_outside)
        : folder(folder)
        , root(names::resolved(folder.empty() ? "." : folder))
        , allow_outside(allow_outside) {}

    /// The file of a path that is told from the folder or from the root; empty if there is none
    /// that may be read.
    std::string at(const std::string& path) {
        std::string whole = path.rfind('/', 0) == 0 ? path : folder + path;
        if (is_there(whole) && may_be_read(whole))
            return whole;
        return "";
    }

    /// The file of names from the folder on, in letters of either case.
    std::string below(const std::vector<std::string>& steps, std::size_t first) {
        std::string path = names::walk_in_any_case(folder, steps, first);
        return !path.empty() && may_be_read(path) ? path : "";
    }

    bool was_outside() const { return outside; }

private:
    /// Whether it is there, no folder, and lies where it may.
    bool may_be_read(const std::string& path) {
        const std::string real = names::resolved(path);
        if (real.empty() || is_folder(real))
            return false;
        if (allow_outside || names::is_within(real, root))
            return true;
        outside = true;
        return false;
    }

    const std::string& folder;
    const std::string root;
    const bool allow_outside;
    bool outside = false;
};

} // namespace

FoundTexture find_texture(const std::string& folder, const std::string& name, bool allow_outside) {
    const std::string literal = trimmed(name);
    const std::string bare = names::without_quotes(without_options(literal));
    const std::string path = with_slashes(bare);
    if (path.empty())
        return {folder, "it is named by nothing"};
    TextureSearch search(folder, allow_outside);
    for (const std::string& meant : {literal, bare, path})
        if (std::string file = search.at(meant); !file.empty())
            return {std::move(file), ""};
    const std::vector<std::string> steps = names::steps_of(path);
    for (std::size_t first = 0; first < steps.size(); ++first)
        if (std::string file = search.below(steps, first); !file.empty())
            return {std::move(file), ""};
    const bool is_foreign = path[0] == '/' && !steps.empty();
    return {folder + (is_foreign ? steps.back() : path),
            search.was_outside()
                ? "it lies outside the model's folder, where nothing is read unless "
                  "that is allowed"
                : "it isn't there"};
}

} // namespace orvex::kit
