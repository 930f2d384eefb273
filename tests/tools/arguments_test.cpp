#include "arguments.h"

#include <optional>

#include <gtest/gtest.h>

#include "values.h"

namespace orvex_test {

namespace {

/// A command line with one option of each kind.
class Line {
public:
    Line() {
        arguments.begin_group("Some");
        arguments.add_flag("--quiet", 'q', "says nothing", quiet);
        arguments.add_flag("--wide", 'w', "is wide", wide);
        arguments.add_flag("--bare", 0, "has no letter", bare);
        arguments.begin_group("Others");
        arguments.add_value("--count", 'c', "N", "counts", [this](const std::string& word) {
            const std::optional<int> number = whole_number_in(word, -9, 9);
            count = number.value_or(count);
            return number ? "" : "a digit";
        });
        arguments.add_value("--name", 'n', "TEXT", "a name", [this](const std::string& word) {
            name = word;
            return "";
        });
    }

    std::string read(const std::vector<std::string>& words) { return arguments.read(words); }
    void take_operands(std::size_t most) {
        arguments.set_operand([this, most](const std::string& word) {
            if (operands.size() == most)
                return "no more";
            operands.push_back(word);
            return "";
        });
    }

    Arguments arguments;
    bool quiet = false;
    bool wide = false;
    bool bare = false;
    int count = 0;
    std::string name = "none";
    std::vector<std::string> operands;
};

TEST(Arguments, accept_nothing_at_all) {
    Line line;
    EXPECT_EQ(line.read({}), "");
    EXPECT_FALSE(line.quiet || line.wide || line.bare);
}

TEST(Arguments, read_flags_by_name_and_by_letter) {
    Line line;
    EXPECT_EQ(line.read({"--quiet", "-w", "--bare"}), "");
    EXPECT_TRUE(line.quiet && line.wide && line.bare);
}

TEST(Arguments, read_a_value_in_every_form) {
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"--count", "7"},
                                               {"--count=7"},
                                               {"-c", "7"},
                                               {"-c7"},
                                               {"-wc7"},
                                               {"-wc", "7"},
                                               {"-c1", "--count=7"}}) {
        Line line;
        EXPECT_EQ(line.read(words), "") << words[0];
        EXPECT_EQ(line.count, 7) << words[0];
    }
}

TEST(Arguments, let_letters_share_a_word) {
    Line line;
    EXPECT_EQ(line.read({"-qw"}), "");
    EXPECT_TRUE(line.quiet && line.wide);
}

TEST(Arguments, take_the_next_word_as_a_value_whatever_it_looks_like) {
    Line line;
    EXPECT_EQ(line.read({"--count", "-3", "--name", "--quiet"}), "");
    EXPECT_EQ(line.count, -3);
    EXPECT_EQ(line.name, "--quiet");
    EXPECT_FALSE(line.quiet);
}

TEST(Arguments, take_everything_behind_the_first_sign_as_the_value) {
    Line line;
    EXPECT_EQ(line.read({"--name=a=b c"}), "");
    EXPECT_EQ(line.name, "a=b c");
    EXPECT_EQ(line.read({"--name="}), "");
    EXPECT_EQ(line.name, "");
}

TEST(Arguments, hand_over_operands_in_their_order) {
    Line line;
    line.take_operands(9);
    EXPECT_EQ(line.read({"a", "-q", "-", "", "--", "-w", "--", "--none"}), "");
    EXPECT_EQ(line.operands, (std::vector<std::string>{"a", "-", "", "-w", "--", "--none"}));
    EXPECT_TRUE(line.quiet);
    EXPECT_FALSE(line.wide);
}

TEST(Arguments, tell_their_first_mistake) {
    struct Row {
        std::vector<std::string> words;
        const char* mistake;
    };
    for (const Row& row : {
             Row{{"--none"}, "unknown option '--none'; did you mean '--name'?"},
             Row{{"--nothing"}, "unknown option '--nothing'"},
             Row{{"--nothing=1"}, "unknown option '--nothing'"},
             Row{{"--couny=1"}, "unknown option '--couny'; did you mean '--count'?"},
             Row{{"--bar"}, "unknown option '--bar'; did you mean '--bare'?"},
             Row{{"-x"}, "unknown option '-x'"},
             Row{{"-qx"}, "unknown option '-x'"},
             Row{{"--quiet=1"}, "--quiet takes no value"},
             Row{{"--count"}, "--count needs a value, N"},
             Row{{"-c"}, "--count needs a value, N"},
             Row{{"-qc"}, "--count needs a value, N"},
             Row{{"--count", "ten"}, "--count can't be 'ten': a digit is wanted"},
             Row{{"--count="}, "--count can't be '': a digit is wanted"},
             Row{{"-cq"}, "--count can't be 'q': a digit is wanted"},
             Row{{"a"}, "unexpected argument 'a': no operand is wanted"},
             Row{{"-c", "x", "--none"}, "--count can't be 'x': a digit is wanted"},
         }) {
        Line line;
        EXPECT_EQ(line.read(row.words), row.mistake);
    }
}

TEST(Arguments, tell_what_an_operand_should_be) {
    Line line;
    line.take_operands(1);
    EXPECT_EQ(line.read({"a", "b"}), "unexpected argument 'b': no more is wanted");
}

TEST(Arguments, name_their_options_in_order) {
    EXPECT_EQ(Line().arguments.names(),
              (std::vector<std::string>{"--quiet", "--wide", "--bare", "--count", "--name"}));
}

TEST(Arguments, explain_their_options_group_by_group) {
    EXPECT_EQ(Line().arguments.help(), "Some:\n"
                                       "  -q, --quiet             says nothing\n"
                                       "  -w, --wide              is wide\n"
                                       "      --bare              has no letter\n"
                                       "\n"
                                       "Others:\n"
                                       "  -c, --count N           counts\n"
                                       "  -n, --name TEXT         a name\n");
}

TEST(Arguments, break_their_explanations) {
    Arguments arguments;
    bool flag = false;
    arguments.add_flag("--a-name-that-is-too-long", 'a', "text", flag);
    arguments.add_flag(
        "--b", 'b', "of eighty characters a line at most, these words fill exactly one and no more",
        flag);
    EXPECT_EQ(arguments.help(), "Options:\n"
                                "  -a, --a-name-that-is-too-long\n"
                                "                          text\n"
                                "  -b, --b                 of eighty characters a line at most, "
                                "these words fill\n"
                                "                          exactly one and no more\n");
}

} // namespace

} // namespace orvex_test
