#include "tool_documents.h"

#include <algorithm>
#include <regex>

#include "tests/support/command.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

std::set<std::string> names_in(const std::string& text) {
    std::set<std::string> names;
    for (std::size_t at = text.find("--"); at != text.npos; at = text.find("--", at + 2)) {
        const std::size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at);
        const std::string name = text.substr(at, end == text.npos ? end : end - at);
        if (name.size() > 2)
            names.insert(name);
    }
    return names;
}

std::set<std::string> letters_in(const std::string& text) {
    const std::regex pair(R"re( -(\S)(?:, | ", " )(--[a-z-]+))re");
    std::set<std::string> letters;
    for (std::sregex_iterator found(text.begin(), text.end(), pair), end; found != end; ++found)
        letters.insert("-" + found->str(1) + ", " + found->str(2));
    return letters;
}

std::string text_of_man_page(const std::string& path) {
    std::string page = content_of(path);
    page.erase(std::remove(page.begin(), page.end(), '\\'), page.end());
    return page;
}

std::string warnings_of_man_page(const std::string& path) {
    return output_of("groff -man -ww -z -Tutf8 '" + path + "'");
}

std::string offered_by(const std::string& completion, const std::string& function,
                       const std::string& folder, const std::vector<std::string>& words) {
    std::string script = "cd '" + folder + "'; . '" + completion + "'; COMP_WORDS=(";
    for (const std::string& word : words)
        script += "'" + word + "' ";
    script += "); COMP_CWORD=" + std::to_string(words.size() - 1) + "; " + function +
              "; printf \"%s \" \"${COMPREPLY[@]}\"";
    return output_of("bash --norc -c \"$(cat <<'EOF_OF_SCRIPT'\n" + script +
                     "\nEOF_OF_SCRIPT\n)\"");
}

} // namespace orvex_test
