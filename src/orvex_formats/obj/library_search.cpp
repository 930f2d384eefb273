#include "orvex_formats/obj/private/library_search.h"

#include <algorithm>

#include <orvex_names/file_names.h>
#include <sys/stat.h>

#include "orvex_formats/private/archived_files.h"
#include "orvex_formats/private/words.h"

namespace orvex::formats {

namespace {

bool is_regular_file(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// The file of names from a folder on.
std::string below(const std::string& folder, const std::vector<std::string>& steps,
                  std::size_t first) {
    const std::string path = names::walk_in_any_case(folder, steps, first);
    const std::string real = path.empty() ? "" : names::resolved(path);
    const std::string root = names::resolved(folder.empty() ? "." : folder);
    return names::is_within(real, root) && is_regular_file(real) ? path : "";
}

} // namespace

std::string find_library(const InputFile& file, std::string_view name) {
    constexpr std::size_t longest_path = 4096, most_steps = 16;
    if (file.archive())
        return file.archive()->find(name);
    const std::string& model = file.path();
    if (model.empty() || name.size() > longest_path || name.find('\0') != name.npos)
        return "";
    const std::string folder = model.substr(0, model.rfind('/') + 1);
    const std::vector<std::string> steps = names::steps_of(std::string(name));
    const std::size_t longest = steps.size() - std::min(steps.size(), most_steps);
    for (std::size_t i = longest; i < steps.size(); ++i)
        if (std::string path = below(folder, steps, i); !path.empty())
            return path;
    return "";
}

namespace {

/// Where a word ends that begins at a place: at a blank, or behind the quote that ends it.
std::size_t end_of_word(std::string_view text, std::size_t begin) {
    const std::size_t quote = text[begin] == '"' ? text.find('"', begin + 1) : text.npos;
    if (quote != text.npos)
        return quote + 1;
    const std::size_t end = text.find_first_of(" \t", begin);
    return std::min(end, text.size());
}

} // namespace

std::vector<std::string> library_names(const InputFile& model, std::string_view rest) {
    constexpr std::size_t most_words = 8;  ///< of one name
    constexpr std::size_t most_names = 64; ///< each costs a few looks at the disk
    std::vector<std::string> found;
    rest = Words(rest).remaining();
    while (!rest.empty() && found.size() < most_names) {
        // The ends of the next words.
        std::vector<std::size_t> ends;
        for (std::size_t place = 0; place < rest.size() && ends.size() < most_words;) {
            ends.push_back(end_of_word(rest, place));
            place = std::min(rest.find_first_not_of(" \t", ends.back()), rest.size());
        }
        std::size_t taken = ends.front();
        for (std::size_t i = ends.size(); i-- > 1;)
            if (!find_library(model, rest.substr(0, ends[i])).empty()) {
                taken = ends[i];
                break;
            }
        found.push_back(names::without_quotes(rest.substr(0, taken)));
        rest = Words(rest.substr(taken)).remaining();
    }
    return found;
}

} // namespace orvex::formats
