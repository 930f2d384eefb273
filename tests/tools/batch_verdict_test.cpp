#include "batch/verdict.h"

#include <set>

#include <gtest/gtest.h>

#include "batch/entry_reader.h"
#include "batch/key.h"
#include "batch/sum.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using batch::Entry;
using batch::Fate;
using batch::Verdict;

Verdict some_verdict() {
    Verdict verdict;
    verdict.id = "a\"\xff";
    verdict.model = "m/a.obj";
    verdict.output = "a.png";
    verdict.fate = Fate::over_limit;
    verdict.reason = "m/a.obj: too many pixels";
    verdict.outputs = {{"a.png", "picture", 320, 200, 1234, std::string(64, 'f')},
                       {"a.json", "about", 0, 0, 12, std::string(64, '0')}};
    verdict.files = {"m/a.mtl", "m/none.png"};
    verdict.seconds = {0.5, 0.25, 0.125, 1.0};
    verdict.peak_bytes = 5000000000;
    verdict.tries = 2;
    verdict.key = std::string(64, 'a');
    verdict.engine = "1.2";
    verdict.driver = "a driver, 4.5";
    return verdict;
}

TEST(BatchVerdict, is_one_line_of_json) {
    EXPECT_EQ(
        line_of(some_verdict()),
        R"({"id":"a\"\ufffd","model":"m/a.obj","output":"a.png","verdict":"over-limit",)"
        R"("reason":"m/a.obj: too many pixels","outputs":[{"path":"a.png","kind":"picture",)"
        R"("width":320,"height":200,"bytes":1234,"sha256":")" +
            std::string(64, 'f') +
            R"("},{"path":"a.json","kind":"about","width":0,"height":0,"bytes":12,"sha256":")" +
            std::string(64, '0') +
            R"("}],"files":["m/a.mtl","m/none.png"],"seconds":{"load":0.5,"draw":0.25,)"
            R"("write":0.125,"total":1},"peak_bytes":5000000000,"tries":2,"key":")" +
            std::string(64, 'a') + R"(","engine":"1.2","driver":"a driver, 4.5"})" + "\n");
}

TEST(BatchVerdict, is_the_same_after_it_was_read) {
    Verdict verdict = some_verdict();
    verdict.id = "a\"";
    verdict.line = 12;
    const std::string line = line_of(verdict);
    const std::optional<Verdict> read = batch::verdict_of_line(line);
    ASSERT_TRUE(read);
    EXPECT_EQ(line_of(*read), line);
    EXPECT_EQ(read->outputs.size(), 2u);
    EXPECT_EQ(read->line, 12u);
}

TEST(BatchVerdict, of_a_cut_line_is_none) {
    const std::string line = line_of(some_verdict());
    for (std::size_t length = 0; length + 1 < line.size(); ++length)
        EXPECT_FALSE(batch::verdict_of_line(line.substr(0, length))) << length;
    EXPECT_TRUE(batch::verdict_of_line(line.substr(0, line.size() - 1)));
}

TEST(BatchVerdict, of_another_form_is_none) {
    const std::string line = line_of(some_verdict());
    struct Row {
        const char* from;
        const char* to;
    };
    for (const Row& row : {Row{"over-limit", "overlimit"}, Row{"\"tries\":2", "\"tries\":-2"},
                           Row{"\"tries\":2", "\"tries\":5000000000"},
                           Row{"\"tries\":2", "\"tries\":\"2\""}, Row{"\"width\":320,", ""},
                           Row{"\"load\":0.5", "\"load\":null"}, Row{"\"m/a.mtl\"", "3"}}) {
        std::string wrong = line;
        ASSERT_NE(wrong.find(row.from), wrong.npos) << row.from;
        wrong.replace(wrong.find(row.from), std::string(row.from).size(), row.to);
        EXPECT_FALSE(batch::verdict_of_line(wrong)) << row.to;
    }
    EXPECT_FALSE(batch::verdict_of_line("[]"));
}

TEST(BatchVerdict, has_a_word_for_each_fate) {
    for (const Fate fate :
         {Fate::ok, Fate::refused, Fate::over_limit, Fate::crashed, Fate::driver, Fate::io})
        EXPECT_EQ(batch::fate_of(batch::word_of(fate)), fate);
    EXPECT_FALSE(batch::fate_of("fine"));
}

TEST(BatchSum, is_sha_256) {
    EXPECT_EQ(batch::sum_of("abc"),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    const TempDir folder;
    const auto sum = batch::sum_of_file(folder.write("a", std::string(200000, 'x') + "y"));
    ASSERT_TRUE(sum);
    EXPECT_EQ(sum->bytes, 200001u);
    EXPECT_EQ(sum->text, batch::sum_of(std::string(200000, 'x') + "y"));
    EXPECT_FALSE(batch::sum_of_file(folder.file("none")));
    EXPECT_FALSE(batch::sum_of_file(folder.path()));
    EXPECT_FALSE(batch::sum_of_file("/dev/zero"));
}

/// A model with its files, and an entry of it.
class BatchKeyTest : public testing::Test {
protected:
    TempDir folder;
    std::string model = folder.write("a.obj", "model");
    std::string library = folder.write("a.mtl", "library");
    Options defaults;

    Entry entry_with(const std::string& members) const {
        batch::EntryReader reader(defaults, folder.path());
        Entry entry;
        EXPECT_EQ(reader.read(R"({"model":")" + model + '"' + members + '}', 1, entry), "");
        return entry;
    }
    std::string key_with(const std::string& members) const {
        return key_of(entry_with(members), {model, library});
    }
};

TEST_F(BatchKeyTest, changes_with_all_that_the_picture_is_made_from) {
    const std::string key = key_with("");
    EXPECT_EQ(key.size(), 64u);
    EXPECT_EQ(key_with(R"(,"id":"b","output":"c.png")"), key);
    EXPECT_EQ(key_with(R"(,"azimuth":25)"), key); // the default
    folder.write("a.mtl", "Library");
    EXPECT_NE(key_with(""), key);
    std::filesystem::remove(library);
    EXPECT_NE(key_with(""), key);
    folder.write("a.mtl", "library");
    EXPECT_EQ(key_with(""), key);
    folder.write("a.obj", "Model");
    EXPECT_NE(key_with(""), key);
}

TEST_F(BatchKeyTest, changes_with_every_option) {
    struct Row {
        std::string name;
        std::string value;
    };
    // A text stands in all, as others are about it; what a file is called doesn't count, but what
    // isn't a file's name does.
    const std::string base = R"(,"text":"a","output":"c.png")";
    std::set<std::string> tried{"output", "text"};
    for (const Row& row : {Row{"size", R"("8x6")"},
                           Row{"azimuth", "1"},
                           Row{"elevation", "1"},
                           Row{"format", R"("raw")"},
                           Row{"wireframe", "true"},
                           Row{"background", R"("red")"},
                           Row{"normals", R"("flat")"},
                           Row{"samples", "0"},
                           Row{"path", R"("gl2")"},
                           Row{"up", R"("x")"},
                           Row{"look", R"("plain")"},
                           Row{"distance", "2"},
                           Row{"zoom", "2"},
                           Row{"thumbnail", "64"},
                           Row{"turntable", "2"},
                           Row{"loader", R"("b")"},
                           Row{"time", "0"},
                           Row{"text-place", R"("top")"},
                           Row{"text-size", "30"},
                           Row{"text-color", R"("red")"},
                           Row{"font", R"("none.xml")"}}) {
        EXPECT_NE(key_with(base + ",\"" + row.name + "\":" + row.value), key_with(base))
            << row.name;
        tried.insert(row.name);
    }
    EXPECT_NE(key_with(R"(,"text":"b","output":"c.png")"), key_with(base));
    EXPECT_NE(key_with(R"(,"text":"a","output":"c.jpg")"), key_with(base));
    for (const Row& row : {Row{"layers", R"("depth")"}, Row{"film", "2"}, Row{"track", R"("n")"}}) {
        EXPECT_NE(key_with(",\"" + row.name + "\":" + row.value), key_with("")) << row.name;
        tried.insert(row.name);
    }
    EXPECT_NE(key_with(R"(,"look":"none.glsl")"), key_with(R"(,"look":"plain")"));

    Options options;
    Arguments rules;
    add_model_rules(rules, options);
    std::set<std::string> known;
    for (const std::string& name : rules.names())
        known.insert(name.substr(2));
    EXPECT_EQ(tried, known);
}

TEST_F(BatchKeyTest, is_empty_without_a_model) {
    std::filesystem::remove(model);
    EXPECT_EQ(key_with(""), "");
}

TEST_F(BatchKeyTest, holds_as_long_as_the_outputs_do) {
    const Entry entry = entry_with(R"(,"output":"a.png")");
    Verdict verdict = batch::verdict_on(entry);
    EXPECT_EQ(verdict.id, entry.id);
    verdict.files = {library};
    verdict.key = key_of(entry, verdict.files);
    folder.write("a.png", "picture");
    const auto output = output_of_file(entry, output_files_of(entry)[0]);
    ASSERT_TRUE(output);
    verdict.outputs = {*output};
    EXPECT_TRUE(still_holds(verdict, entry));
    folder.write("a.png", "Picture");
    EXPECT_FALSE(still_holds(verdict, entry));
    folder.write("a.png", "picture");
    EXPECT_TRUE(still_holds(verdict, entry));
    EXPECT_FALSE(still_holds(verdict, entry_with(R"(,"output":"a.png","zoom":2)")));
    EXPECT_FALSE(still_holds(verdict, entry_with(R"(,"output":"a.png","id":"b")")));
    std::filesystem::remove(folder.file("a.png"));
    EXPECT_FALSE(still_holds(verdict, entry));
}

TEST_F(BatchKeyTest, of_a_failure_holds_unless_another_try_may_go_well) {
    const Entry entry = entry_with("");
    Verdict verdict = batch::verdict_on(entry);
    verdict.key = key_of(entry, {});
    for (const Fate fate : {Fate::refused, Fate::over_limit, Fate::crashed}) {
        verdict.fate = fate;
        EXPECT_TRUE(still_holds(verdict, entry));
    }
    for (const Fate fate : {Fate::driver, Fate::io}) {
        verdict.fate = fate;
        EXPECT_FALSE(still_holds(verdict, entry));
    }
}

} // namespace

} // namespace orvex_test
