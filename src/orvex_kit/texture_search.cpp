// Names of textures come from other systems and other machines. What a name means is tried from the
// most literal on: as it stands, without options and with slashes, and then the end of its path in
// the model's own folder, from its longest on.

#include "orvex_kit/private/texture_search.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

#include <dirent.h>
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

/// Takes the first word off a text.
std::string take_word(std::string& text) {
    const std::size_t end = std::min(text.find_first_of(blanks), text.size());
    std::string word = text.substr(0, end);
    text = trimmed(text.substr(end));
    return word;
}

bool is_number(const std::string& word) {
    char* end = nullptr;
    std::strtod(word.c_str(), &end);
    return !word.empty() && *end == '\0';
}

/// An option that may stand before the name of a map.
struct MapOption {
    const char* word;
    int least; ///< values that follow
    int most;  ///< likewise; those beyond the least are numbers
};

constexpr std::array<MapOption, 12> map_options = {{{"-blendu", 1, 1},
                                                    {"-blendv", 1, 1},
                                                    {"-bm", 1, 1},
                                                    {"-boost", 1, 1},
                                                    {"-cc", 1, 1},
                                                    {"-clamp", 1, 1},
                                                    {"-imfchan", 1, 1},
                                                    {"-mm", 2, 2},
                                                    {"-o", 1, 3},
                                                    {"-s", 1, 3},
                                                    {"-t", 1, 3},
                                                    {"-texres", 1, 1}}};

/// What stands behind the options of a map.
std::string without_options(std::string text) {
    for (;;) {
        std::string rest = text;
        const std::string word = take_word(rest);
        const auto* const option =
            std::find_if(map_options.begin(), map_options.end(),
                         [&](const MapOption& known) { return word == known.word; });
        if (option == map_options.end())
            return text;
        for (int i = 0; i < option->most; ++i) {
            std::string after = rest;
            const bool is_value = is_number(take_word(after)) || i < option->least;
            // A number may be the name itself, which comes last.
            if (!is_value || after.empty())
                break;
            rest = after;
        }
        text = rest;
    }
}

std::string unquoted(const std::string& text) {
    const bool is_quoted = text.size() > 2 && text.front() == '"' && text.back() == '"';
    return is_quoted ? text.substr(1, text.size() - 2) : text;
}

/// A path of any system as one of this: with slashes, and from the root where a drive was named.
std::string with_slashes(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    const bool has_drive =
        path.size() > 1 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0]));
    return has_drive ? "/" + path.substr(2) : path;
}

/// The names between the slashes of a path, without those that lead nowhere or up.
std::vector<std::string> steps_of(const std::string& path) {
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

// --- Where it lies ---------------------------------------------------------------------------

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};
struct FreeText {
    void operator()(char* text) const { std::free(text); }
};

/// Where a path leads, behind all links; empty if nowhere.
std::string resolved(const std::string& path) {
    const std::unique_ptr<char, FreeText> real(realpath(path.c_str(), nullptr));
    return real ? real.get() : "";
}

bool is_there(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0;
}

bool is_folder(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Whether two names differ in the case of letters at most.
bool are_alike(const char* a, const char* b) {
    for (; *a != '\0' && std::tolower(static_cast<unsigned char>(*a)) ==
                             std::tolower(static_cast<unsigned char>(*b));
         ++a, ++b) {
    }
    return *a == *b;
}

/// How a folder calls what has a name in other letters; of several the first by its bytes. Empty if
/// nothing has.
std::string name_in_any_case(const std::string& folder, const std::string& name) {
    std::string found;
    const std::unique_ptr<DIR, CloseFolder> open(opendir(folder.empty() ? "." : folder.c_str()));
    while (const dirent* const entry = open ? readdir(open.get()) : nullptr)
        if (are_alike(entry->d_name, name.c_str()) && (found.empty() || entry->d_name < found))
            found = entry->d_name;
    return found;
}

class TextureSearch {
public:
    TextureSearch(const std::string& folder, bool allow_outside)
        : folder(folder)
        , root(resolved(folder.empty() ? "." : folder))
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
    std::string below(std::vector<std::string>::const_iterator step,
                      std::vector<std::string>::const_iterator end) {
        std::string path = folder;
        for (; step != end; ++step) {
            const std::string name = is_there(path + *step) ? *step : name_in_any_case(path, *step);
            if (name.empty())
                return "";
            path += name + (step + 1 == end ? "" : "/");
        }
        return may_be_read(path) ? path : "";
    }

    bool was_outside() const { return outside; }

private:
    /// Whether it is there, no folder, and lies where it may.
    bool may_be_read(const std::string& path) {
        const std::string real = resolved(path);
        if (real.empty() || is_folder(real))
            return false;
        const std::string within = root == "/" ? root : root + "/";
        if (allow_outside || (!root.empty() && real.compare(0, within.size(), within) == 0))
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
    const std::string bare = unquoted(without_options(literal));
    const std::string path = with_slashes(bare);
    if (path.empty())
        return {folder, "it is named by nothing"};
    TextureSearch search(folder, allow_outside);
    for (const std::string& meant : {literal, bare, path})
        if (std::string file = search.at(meant); !file.empty())
            return {std::move(file), ""};
    const std::vector<std::string> steps = steps_of(path);
    for (auto step = steps.begin(); step != steps.end(); ++step)
        if (std::string file = search.below(step, steps.end()); !file.empty())
            return {std::move(file), ""};
    const bool is_foreign = path[0] == '/' && !steps.empty();
    return {folder + (is_foreign ? steps.back() : path),
            search.was_outside()
                ? "it lies outside the model's folder, where nothing is read unless "
                  "that is allowed"
                : "it isn't there"};
}

} // namespace orvex::kit
