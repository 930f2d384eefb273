// What orvex-view, its man page and its completion say of the same options and keys.

#include <algorithm>

#include <gtest/gtest.h>

#include "keys.h"
#include "options.h"
#include "start.h"
#include "tests/support/temp_dir.h"
#include "tool_documents.h"

namespace orvex_test {

namespace {

using orvex_test::content_of;
using orvex_test::TempDir;

constexpr char man_page[] = ORVEX_VIEW_SOURCES "/orvex-view.1";
constexpr char completion[] = ORVEX_VIEW_COMPLETION;

std::set<std::string> option_names() {
    Options options;
    Arguments rules;
    add_rules(rules, options);
    const std::vector<std::string> names = rules.names();
    return {names.begin(), names.end()};
}

std::string offered(const std::string& folder, const std::vector<std::string>& words) {
    return offered_by(completion, "_orvex_view", folder, words);
}

TEST(OrvexViewHelp, has_every_option_and_every_key_in_lines_of_a_terminal) {
    const std::string help = help_text();
    EXPECT_EQ(names_in(help), option_names());
    for (const KeyLine& line : key_lines())
        EXPECT_NE(help.find(std::string("  ") + line.keys + " "), help.npos) << line.keys;
    for (std::size_t begin = 0, end; (end = help.find('\n', begin)) != help.npos; begin = end + 1)
        EXPECT_LE(end - begin, 83u) << help.substr(begin, end - begin);
    for (const char letter : help)
        EXPECT_TRUE(letter == '\n' || (letter >= ' ' && letter <= '~')) << int(letter);
}

TEST(OrvexViewManPage, tells_of_every_option_and_of_no_other) {
    EXPECT_EQ(names_in(text_of_man_page(man_page)), option_names());
}

TEST(OrvexViewManPage, tells_of_every_letter_and_of_no_other) {
    const std::set<std::string> letters = letters_in(help_text());
    EXPECT_TRUE(letters.count("-s, --size"));
    EXPECT_EQ(letters_in(text_of_man_page(man_page)), letters);
}

TEST(OrvexViewManPage, tells_of_every_key_and_exit_code) {
    const std::string page = content_of(man_page);
    for (const KeyLine& line : key_lines())
        EXPECT_NE(page.find(std::string(".B ") + line.keys + "\n"), page.npos) << line.keys;
    const std::size_t status = page.find(".SH EXIT STATUS");
    ASSERT_NE(status, page.npos);
    for (const char* code : {".B 0\n", ".B 1\n", ".B 2\n"})
        EXPECT_NE(page.find(code, status), page.npos) << code;
}

TEST(OrvexViewManPage, is_set_without_a_warning) {
    EXPECT_EQ(warnings_of_man_page(man_page), "");
}

TEST(OrvexViewCompletion, offers_every_option_and_no_other) {
    EXPECT_EQ(names_in(offered("/", {"orvex-view", "--"})), option_names());
}

TEST(OrvexViewCompletion, offers_what_fits) {
    const TempDir folder;
    folder.write("a model.obj", "");
    folder.write("b.3ds", "");
    folder.write("c.glsl", "");
    folder.write("d.txt", "");
    struct Row {
        std::vector<std::string> words;
        const char* offer;
    };
    for (const Row& row : {
             Row{{"orvex-view", "--ver"}, "--version --verbose "},
             Row{{"orvex-view", "a"}, "a model.obj "},
             Row{{"orvex-view", "d"}, " "},
             Row{{"orvex-view", "--look", "=", "m"}, "matcap "},
             Row{{"orvex-view", "-l", ""}, "lit matcap normals plain wire c.glsl "},
             Row{{"orvex-view", "--layer", "no"}, "normal "},
             Row{{"orvex-view", "--azimuth", ""}, " "},
         })
        EXPECT_EQ(offered(folder.path(), row.words), row.offer) << row.words.back();
}

TEST(OrvexViewCompletion, offers_words_that_the_program_takes) {
    const TempDir folder;
    folder.write("toon.glsl", "");
    for (const char* const option : {"--background", "--up", "--normals", "--path", "--samples",
                                     "--size", "--look", "--layer"}) {
        std::string word;
        for (const char c : offered(folder.path(), {"orvex-view", option, ""})) {
            if (c != ' ') {
                word += c;
                continue;
            }
            Options options;
            EXPECT_EQ(read_options({option, word}, options), "") << option;
            word.clear();
        }
    }
}

} // namespace

} // namespace orvex_test
