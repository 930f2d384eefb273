#include "orvex_formats/private/archived_files.h"

#include <algorithm>
#include <utility>

#include <orvex_names/file_names.h>

#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

std::string in_small_letters(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), names::small_letter);
    return text;
}

} // namespace

ArchivedFiles::ArchivedFiles(InputFile&& opened)
    : file(std::move(opened))
    , zip(file)
    , left(most_inflated(file.size())) {
    for (const ZipArchive::Entry& entry : zip.entries())
        entries.emplace(in_small_letters(entry.name), &entry);
}

void ArchivedFiles::set_model(const ZipArchive::Entry& model) {
    known.insert(&model);
    folder = in_small_letters(model.name.substr(0, model.name.rfind('/') + 1));
}

std::string ArchivedFiles::find(std::string_view name) const {
    constexpr std::size_t longest_name = 4096, most_steps = 16;
    if (name.size() > longest_name)
        return "";
    const std::vector<std::string> steps = names::steps_of(in_small_letters(std::string(name)));
    // The longest end first.
    std::vector<std::string> ends;
    std::string end;
    for (std::size_t i = steps.size(); i-- > 0 && ends.size() < most_steps;) {
        end = steps[i] + (end.empty() ? "" : "/") + end;
        ends.push_back(end);
    }
    for (std::size_t i = ends.size(); i-- > 0;)
        if (const auto found = entries.find(folder + ends[i]); found != entries.end())
            return found->second->name;
    return "";
}

std::vector<unsigned char> ArchivedFiles::read(const std::string& name) {
    const auto found = entries.find(in_small_letters(name));
    if (found == entries.end())
        refuse("the archive has no %s", in_words(name).c_str());
    const ZipArchive::Entry& entry = *found->second;
    if (entry.size > left)
        refuse("the files of the archive grow beyond %llu bytes, more than any model",
               static_cast<unsigned long long>(most_inflated(file.size())));
    left -= entry.size;
    known.insert(&entry);
    return zip.read(entry);
}

std::size_t ArchivedFiles::num_left_out() const {
    return static_cast<std::size_t>(
        std::count_if(zip.entries().begin(), zip.entries().end(), [&](const auto& entry) {
            return !is_passed_over(entry.name) && known.count(&entry) == 0;
        }));
}

bool is_passed_over(const std::string& name) {
    const std::string last = name.substr(name.rfind('/') + 1);
    return last.empty() || last[0] == '.' || name.rfind("__MACOSX/", 0) == 0;
}

} // namespace orvex::formats
