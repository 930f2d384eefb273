// What the program, its man page and its completion say of the same options.

#include <algorithm>
#include <filesystem>
#include <set>

#include <gtest/gtest.h>

#include <orvex_kit/look.h>

#include "options.h"
#include "program_run.h"
#include "tests/support/temp_dir.h"
#include "tool_documents.h"

namespace orvex_test {

namespace {

using orvex_test::content_of;
using orvex_test::TempDir;

std::vector<std::string> option_names() {
    Options options;
    Arguments rules;
    add_rules(rules, options);
    return rules.names();
}

constexpr char man_page[] = ORVEX_RENDER_SOURCES "/orvex-render.1";
constexpr char completion[] = ORVEX_RENDER_COMPLETION;

TEST(OrvexRenderHelp, goes_to_standard_output) {
    for (const char* option : {"--help", "-h"}) {
        const Outcome help = run_render("/", {option});
        EXPECT_EQ(help.code, 0);
        EXPECT_EQ(help.out, help_text());
        EXPECT_EQ(help.errors, "");
    }
}

TEST(OrvexRenderHelp, has_nothing_but_letters_that_terminals_show) {
    for (const char letter : help_text())
        EXPECT_TRUE(letter == '\n' || (letter >= ' ' && letter <= '~')) << int(letter);
}

#ifdef ORVEX_WITH_IMPORTER
TEST(OrvexRenderHelp, tells_of_the_importer_where_there_is_one) {
    EXPECT_TRUE(has(help_text(), "\nBy orvex-import also FBX, DAE, BLEND and many more.\n"))
        << help_text();
}
#endif

TEST(OrvexRenderVersion, is_that_of_the_engine) {
    for (const char* option : {"--version", "-V"}) {
        const Outcome version = run_render("/", {option});
        EXPECT_EQ(version.code, 0);
        EXPECT_EQ(version.out, "orvex-render " ORVEX_RENDER_VERSION " (Brell)\n");
    }
}

TEST(OrvexRenderManPage, tells_of_every_option_and_of_no_other) {
    const std::string page = text_of_man_page(man_page);
    const std::vector<std::string> names = option_names();
    EXPECT_EQ(names_in(page), std::set<std::string>(names.begin(), names.end()));
}

TEST(OrvexRenderManPage, tells_of_every_letter_and_of_no_other) {
    const std::set<std::string> letters = letters_in(help_text());
    EXPECT_TRUE(letters.count("-s, --size"));
    EXPECT_EQ(letters_in(text_of_man_page(man_page)), letters);
}

TEST(OrvexRenderManPage, tells_of_every_look) {
    const std::string page = content_of(man_page);
    const std::size_t begin = page.find("How the model looks: ");
    const std::string told = page.substr(begin, page.find("a file with a program", begin) - begin);
    for (const std::string& name : orvex::kit::Look::names())
        EXPECT_NE(told.find(name), told.npos) << name;
}

TEST(OrvexRenderManPage, is_set_without_a_warning) {
    EXPECT_EQ(warnings_of_man_page(man_page), "");
}

TEST(OrvexRenderManPage, tells_of_every_exit_code) {
    const std::string page = content_of(man_page);
    const std::size_t status = page.find(".SH EXIT STATUS");
    ASSERT_NE(status, page.npos);
    for (const char* code : {".B 0\n", ".B 1\n", ".B 2\n", ".B 3\n"})
        EXPECT_NE(page.find(code, status), page.npos) << code;
}

std::string offered(const std::string& folder, const std::vector<std::string>& words) {
    return offered_by(completion, "_orvex_render", folder, words);
}

TEST(OrvexRenderCompletion, offers_every_option_and_no_other) {
    const std::vector<std::string> names = option_names();
    EXPECT_EQ(names_in(offered("/", {"orvex-render", "--"})),
              std::set<std::string>(names.begin(), names.end()));
}

TEST(OrvexRenderCompletion, offers_every_look) {
    std::string names;
    for (const std::string& name : orvex::kit::Look::names())
        names += name + " ";
    EXPECT_EQ(offered(TempDir().path(), {"orvex-render", "--look", ""}), names);
}

TEST(OrvexRenderCompletion, offers_what_fits) {
    const TempDir folder;
    folder.write("a model.obj", "");
    folder.write("b.3ds", "");
    folder.write("c.jpg", "");
    folder.write("d.xml", "");
    folder.write("e.txt", "");
    folder.write("f.jsonl", "");
    folder.write("h.GLB", "");
    folder.write("i.glsl", "");
    struct Row {
        std::vector<std::string> words;
        const char* offer;
    };
    for (const Row& row : {
             Row{{"orvex-render", "--ver"}, "--version --verbose "},
             Row{{"orvex-render", "a"}, "a model.obj "},
             Row{{"orvex-render", "b"}, "b.3ds "},
             Row{{"orvex-render", "e"}, " "},
             Row{{"orvex-render", "h"}, "h.GLB "},
             Row{{"orvex-render", "--look", "i"}, "i.glsl "},
             Row{{"orvex-render", "-o", ""}, "c.jpg "},
             Row{{"orvex-render", "--font", ""}, "d.xml "},
             Row{{"orvex-render", "--path", "gl"}, "gl2 gl3 "},
             Row{{"orvex-render", "--path", "="}, "gl2 gl3 "},
             Row{{"orvex-render", "--path", "=", "gl3"}, "gl3 "},
             Row{{"orvex-render", "-n", "f"}, "file flat "},
             Row{{"orvex-render", "--format", "p"}, "png "},
             Row{{"orvex-render", "--look", "m"}, "matcap "},
             Row{{"orvex-render", "--batch", ""}, "f.jsonl "},
             Row{{"orvex-render", "--results", "f"}, "f.jsonl "},
             Row{{"orvex-render", "--shard", ""}, " "},
             Row{{"orvex-render", "-b", "t"}, "transparent "},
             Row{{"orvex-render", "--up", "-"}, "-x -y -z "},
             Row{{"orvex-render", "-b", "gr"}, "gray green "},
             Row{{"orvex-render", "--text-place", "top-"}, "top-left top-right "},
             Row{{"orvex-render", "--azimuth", ""}, " "},
         })
        EXPECT_EQ(offered(folder.path(), row.words), row.offer) << row.words.back();
    std::filesystem::create_directory(folder.file("g"));
    EXPECT_EQ(offered(folder.path(), {"orvex-render", "--output-dir", ""}), "g ");
}

TEST(OrvexRenderCompletion, offers_words_that_the_program_takes) {
    const TempDir folder;
    struct Row {
        const char* option;
        const char* value;
    };
    for (const Row& row :
         {Row{"--text-place", ""}, Row{"--background", ""}, Row{"--up", ""}, Row{"--normals", ""},
          Row{"--path", ""}, Row{"--samples", ""}, Row{"--size", ""}, Row{"--format", ""},
          Row{"--look", ""}, Row{"--device", ""}}) {
        std::string word;
        for (char c : offered(folder.path(), {"orvex-render", row.option, row.value})) {
            if (c != ' ') {
                word += c;
                continue;
            }
            Options options;
            EXPECT_EQ(read_options({"m", row.option, word}, options), "") << row.option;
            word.clear();
        }
    }
}

} // namespace

} // namespace orvex_test
