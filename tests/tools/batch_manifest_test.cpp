#include "batch/manifest.h"

#include <csignal>
#include <map>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "batch/key.h"
#include "batch/results.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using batch::Entry;
using batch::Manifest;
using batch::NextEntry;
using batch::RefusedLine;

/// The most memory that this process has had.
long peak_kilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class BatchManifestTest : public testing::Test {
protected:
    TempDir folder;
    Manifest::Setting setting;

    BatchManifestTest() { setting.folder = folder.path(); }

    void write(const std::string& text) { setting.path = folder.write("manifest.jsonl", text); }
    static std::string told(const RefusedLine& refused) {
        return std::to_string(refused.line) + "!" + refused.reason + " ";
    }
    /// All lines, as "1=id 2!reason end ".
    static std::string told(Manifest& manifest) {
        std::string text;
        for (;;) {
            const NextEntry next = manifest.next();
            if (const auto* entry = std::get_if<Entry>(&next))
                text += std::to_string(entry->line) + "=" + entry->id + " ";
            else if (const auto* refused = std::get_if<RefusedLine>(&next))
                text += told(*refused);
            else if (std::holds_alternative<batch::KeptEntry>(next))
                text += "kept ";
            else
                return text + (std::holds_alternative<batch::EndOfEntries>(next) ? "end" : "?");
        }
    }
    /// What a check tells, and then all lines.
    std::string checked() {
        Manifest manifest(setting);
        EXPECT_EQ(manifest.open(), "");
        std::string text;
        EXPECT_EQ(manifest.check([&](const RefusedLine& refused) { text += told(refused); }), "");
        return text + "| " + told(manifest);
    }
};

TEST_F(BatchManifestTest, gives_its_entries_in_order) {
    write("{\"model\":\"a\"}\n\n  \r\n{\"model\":\"b\"}\r\n{\"model\":\"c\"}");
    EXPECT_EQ(checked(), "| 1=a 4=b 5=c end");
    Manifest manifest(setting);
    ASSERT_EQ(manifest.open(), "");
    EXPECT_TRUE(manifest.is_file());
    EXPECT_FALSE(manifest.total());
    EXPECT_EQ(manifest.check([](const RefusedLine&) {}), "");
    EXPECT_EQ(manifest.total(), 3u);
}

TEST_F(BatchManifestTest, without_a_line_is_at_its_end) {
    write("");
    EXPECT_EQ(checked(), "| end");
}

TEST_F(BatchManifestTest, a_list_has_paths_of_any_bytes) {
    write("a b\n\nc\"\xff\n");
    setting.is_list = true;
    EXPECT_EQ(checked(), "| 1=a b 3=c\"\xef\xbf\xbd end");
    write(std::string("a\nb\0c\r\0", 7));
    setting.null = true;
    EXPECT_EQ(checked(), "| 1=a\nb 2=c\r end");
}

TEST_F(BatchManifestTest, may_have_the_line_ends_of_other_systems) {
    write("{\"model\":\"a\"}\r\n\r\n{\"model\":\"b\"}\r\n");
    EXPECT_EQ(checked(), "| 1=a 3=b end");
    write("a b.obj\r\n\r\nc.obj\r\nd.obj");
    setting.is_list = true;
    EXPECT_EQ(checked(), "| 1=a b.obj 3=c.obj 4=d.obj end");
}

TEST_F(BatchManifestTest, refuses_lines_by_their_number_and_gives_the_others) {
    write("{\"model\":\"a\"}\n{}\n{\"model\":\"b\"}\nx\n");
    const std::string refused = "2!no model given ";
    const std::string other = "4!column 1: 'x' is no JSON here ";
    EXPECT_EQ(checked(), refused + other + "| 1=a " + refused + "3=b " + other + "end");
}

TEST_F(BatchManifestTest, refuses_outputs_that_an_earlier_line_writes) {
    write("{\"model\":\"a\",\"output\":\"x-002.png\"}\n"
          "{\"model\":\"b\",\"output\":\"x.png\",\"turntable\":3}\n"
          "{\"model\":\"c\",\"output\":\"./x-002.png\"}\n"
          "{\"model\":\"d\",\"output\":\"y.npy\",\"layers\":\"depth\"}\n"
          "{\"model\":\"e\",\"output\":\"y.png\",\"layers\":\"normal\"}\n"
          "{\"model\":\"f\",\"output\":\"y.npy\"}\n");
    const std::string hint = ": give one of them another output, or another id ";
    const std::string second = "2!it writes a file that line 1 writes" + hint;
    const std::string third = "3!it writes a file that line 1 writes" + hint;
    const std::string fifth = "5!it writes a file that line 4 writes" + hint;
    const std::string all = checked();
    for (const std::string& refused : {second, third, fifth})
        EXPECT_LT(all.find(refused), all.find('|')) << all;
    EXPECT_EQ(all.substr(all.find('|')), "| 1=a " + second + third + "4=d " + fifth + "6=f end");
}

TEST_F(BatchManifestTest, refuses_outputs_that_a_link_leads_out_of_the_folder) {
    std::filesystem::create_directory(folder.file("real"));
    std::filesystem::create_directory_symlink("/tmp", folder.file("link"));
    std::filesystem::create_symlink("/tmp/none.png", folder.file("a.png"));
    std::filesystem::create_directory(folder.file("b.png"));
    folder.write("file", "");
    write("{\"model\":\"a\"}\n"
          "{\"model\":\"b\"}\n"
          "{\"model\":\"c\",\"output\":\"real/link/c.png\"}\n"
          "{\"model\":\"d\",\"output\":\"link/d.png\"}\n"
          "{\"model\":\"e\",\"output\":\"file/e.png\"}\n");
    const std::string way = ", which may lead out of the output folder ";
    const std::string refused = "1!a.png is a link" + way;
    const std::string other = "2!b.png is there and is no regular file ";
    const std::string last = "4!link is a link" + way + "5!file is no folder ";
    EXPECT_EQ(checked(), refused + other + last + "| " + refused + other + "3=c " + last + "end");
}

TEST_F(BatchManifestTest, refuses_a_long_line_without_holding_it) {
    const std::string path = folder.file("long");
    const std::string begin = "{\"model\":\"a\"}\n{\"model\":\"";
    const std::string end = "\"}\n{\"model\":\"b\"}\n" + std::string(2 << 20, 'x');
    constexpr std::size_t length = 100 << 20;
    std::ofstream(path) << begin;
    // A hole: zeros that take no room.
    std::filesystem::resize_file(path, begin.size() + length);
    std::ofstream(path, std::ios::app) << end;
    const long before = peak_kilobytes();
    setting.path = path;
    const std::string two = "2!it is longer than 1048576 bytes ";
    const std::string four = "4!it is longer than 1048576 bytes ";
    EXPECT_EQ(checked(), two + four + "| 1=a " + two + "3=b " + four + "end");
    EXPECT_LT(peak_kilobytes() - before, 50 << 10);
}

TEST_F(BatchManifestTest, that_cannot_be_read_says_why) {
    setting.path = folder.path();
    EXPECT_EQ(Manifest(setting).open(),
              "can't read the manifest " + folder.path() + ": Is a directory");
    setting.path = folder.file("none");
    EXPECT_EQ(Manifest(setting).open(),
              "can't read the manifest " + setting.path + ": No such file or directory");
    setting.folder = folder.file("nothing");
    EXPECT_EQ(Manifest(setting).open(),
              "can't write to the folder " + setting.folder + ": No such file or directory");
}

TEST_F(BatchManifestTest, of_a_pipe_never_waits) {
    setting.path = folder.file("pipe");
    ASSERT_EQ(mkfifo(setting.path.c_str(), 0600), 0);
    const int both = ::open(setting.path.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(both, 0);
    const auto put = [&](const std::string& text) {
        ASSERT_EQ(::write(both, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    };
    Manifest manifest(setting);
    ASSERT_EQ(manifest.open(), "");
    EXPECT_FALSE(manifest.is_file());
    EXPECT_GE(manifest.descriptor(), 0);
    EXPECT_EQ(told(manifest), "?");
    put("{\"model\":\"a\"}\n{\"mod");
    EXPECT_EQ(told(manifest), "1=a ?");
    put("el\":\"b\"}\n{}\n");
    EXPECT_EQ(told(manifest), "2=b 3!no model given ?");
    put("{\"model\":\"a\"}");
    EXPECT_EQ(told(manifest), "?");
    ::close(both);
    EXPECT_EQ(told(manifest),
              "4!it writes a file that line 1 writes: give one of them another output, "
              "or another id end");
}

TEST_F(BatchManifestTest, its_shards_are_the_whole_without_overlap) {
    std::string text;
    for (int i = 0; i < 300; ++i)
        text += "{\"model\":\"m" + std::to_string(i) + "\"}\n";
    write(text);
    std::vector<int> counts(300);
    for (int part = 1; part <= 3; ++part) {
        setting.shard = {part, 3};
        Manifest manifest(setting);
        ASSERT_EQ(manifest.open(), "");
        std::size_t count = 0;
        ASSERT_EQ(manifest.check([](const RefusedLine&) {}), "");
        for (NextEntry next = manifest.next(); std::holds_alternative<Entry>(next);
             next = manifest.next(), ++count)
            ++counts[std::get<Entry>(next).line - 1];
        EXPECT_EQ(manifest.total(), count);
        EXPECT_GT(count, 60u);
    }
    EXPECT_EQ(counts, std::vector<int>(300, 1));
}

TEST(BatchShard, of_an_id_stays_the_same_for_ever) {
    // By the first bytes of SHA-256, ba7816bf8f01cfea and 2c624232cdd221fe.
    EXPECT_TRUE(batch::is_in({int(0xba7816bf8f01cfeaULL % 7) + 1, 7}, "abc"));
    EXPECT_FALSE(batch::is_in({int(0xba7816bf8f01cfeaULL % 7 + 1) % 7 + 1, 7}, "abc"));
    EXPECT_TRUE(batch::is_in({1, 1}, "abc"));
}

/// Results of entries whose models are files of the folder.
class BatchResultsTest : public BatchManifestTest {
protected:
    std::string results = folder.file("results.jsonl");
    Options defaults;

    Entry entry_of(const std::string& name) const {
        batch::EntryReader reader(defaults, folder.path());
        Entry entry;
        EXPECT_EQ(reader.read_path(folder.file(name), 1, entry), "");
        return entry;
    }
    /// A verdict with what it tells of, as a worker would leave it.
    batch::Verdict draw(const Entry& entry) const {
        batch::Verdict verdict = verdict_on(entry);
        std::ofstream(entry.options.output) << "picture of " << entry.id;
        verdict.outputs = {*output_of_file(entry, output_files_of(entry)[0])};
        verdict.key = key_of(entry, {});
        return verdict;
    }
    void put(const std::vector<batch::Verdict>& verdicts, bool resume = false) const {
        batch::Results file(results);
        ASSERT_EQ(file.open(resume), "");
        for (const batch::Verdict& verdict : verdicts)
            ASSERT_EQ(file.put(verdict), "");
    }
};

TEST_F(BatchResultsTest, hold_what_was_put) {
    folder.write("a", "1");
    const batch::Verdict verdict = draw(entry_of("a"));
    put({verdict, verdict});
    EXPECT_EQ(content_of(results), line_of(verdict) + line_of(verdict));
}

TEST_F(BatchResultsTest, that_are_there_are_not_written_over) {
    folder.write("results.jsonl", "precious");
    batch::Results file(results);
    EXPECT_EQ(file.open(false), "the results " + results +
                                    " are there already: --resume goes on with them, another name "
                                    "begins anew");
    EXPECT_EQ(content_of(results), "precious");
}

TEST_F(BatchResultsTest, of_something_else_are_not_gone_on_with) {
    folder.write("results.jsonl", "precious\n");
    batch::Results file(results);
    EXPECT_EQ(file.open(true), results + ", line 1 is no verdict: --resume goes on with results of "
                                         "an earlier batch");
    EXPECT_EQ(content_of(results), "precious\n");
    EXPECT_EQ(batch::Results("-").open(true), "--resume needs a file of --results");
    EXPECT_EQ(batch::Results("/dev/null").open(true),
              "--resume needs a file of --results, which /dev/null isn't");
}

TEST_F(BatchResultsTest, that_still_hold_are_known_again) {
    for (const char* name : {"a", "b", "c"})
        folder.write(name, "1");
    put({draw(entry_of("a")), draw(entry_of("b"))});
    folder.write("b", "2");
    batch::Results file(results);
    ASSERT_EQ(file.open(true), "");
    EXPECT_EQ(batch::Fate::ok, file.fate_of(entry_of("a")));
    EXPECT_FALSE(file.fate_of(entry_of("b")));
    EXPECT_FALSE(file.fate_of(entry_of("c")));
}

TEST_F(BatchResultsTest, have_one_line_for_each_entry_in_the_end) {
    for (const char* name : {"a", "b"})
        folder.write(name, "1");
    const batch::Verdict a = draw(entry_of("a"));
    put({a, draw(entry_of("b"))});
    folder.write("b", "2");
    const batch::Verdict b = draw(entry_of("b"));
    {
        batch::Results file(results);
        ASSERT_EQ(file.open(true), "");
        EXPECT_FALSE(file.fate_of(entry_of("b")));
        ASSERT_EQ(file.put(b), "");
        // Here it ends before its time.
    }
    batch::Results file(results);
    ASSERT_EQ(file.open(true), "");
    EXPECT_EQ(batch::Fate::ok, file.fate_of(entry_of("a")));
    EXPECT_EQ(batch::Fate::ok, file.fate_of(entry_of("b")));
    EXPECT_EQ(file.finish(), "");
    EXPECT_EQ(content_of(results), line_of(a) + line_of(b));
}

TEST_F(BatchResultsTest, that_were_cut_are_mended_wherever_that_was) {
    for (const char* name : {"a", "b"})
        folder.write(name, "1");
    const std::string first = line_of(draw(entry_of("a")));
    const std::string second = line_of(draw(entry_of("b")));
    for (std::size_t length = 0; length < second.size(); length += 7) {
        std::ofstream(results) << first << second.substr(0, length);
        batch::Results file(results);
        ASSERT_EQ(file.open(true), "") << length;
        EXPECT_EQ(content_of(results), first) << length;
        EXPECT_FALSE(file.fate_of(entry_of("b")));
    }
}

TEST_F(BatchResultsTest, are_written_by_one_batch_at_a_time) {
    put({});
    const pid_t child = fork();
    while (child == 0) {
        batch::Results other(results);
        if (other.open(true).empty())
            pause();
    }
    std::string mistake;
    do {
        batch::Results file(results);
        mistake = file.open(true);
    } while (mistake.empty());
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(mistake, "another batch writes the results " + results);
    batch::Results file(results);
    EXPECT_EQ(file.open(true), "");
}

TEST_F(BatchResultsTest, tell_that_a_disk_is_full) {
    folder.write("a", "1");
    batch::Results file("/dev/full");
    ASSERT_EQ(file.open(false), "");
    EXPECT_EQ(file.put(draw(entry_of("a"))),
              "can't write the results /dev/full: No space left on device");
}

TEST_F(BatchResultsTest, that_hold_are_passed_over_by_a_manifest) {
    for (const char* name : {"a", "b"})
        folder.write(name, "1");
    put({draw(entry_of("a"))});
    setting.is_list = true;
    write(folder.file("a") + "\n" + folder.file("b") + "\n");
    batch::Results file(results);
    ASSERT_EQ(file.open(true), "");
    Manifest manifest(setting);
    ASSERT_EQ(manifest.open(), "");
    manifest.keep(file);
    EXPECT_EQ(told(manifest), "kept 2=" + folder.file("b") + " end");
    EXPECT_EQ(manifest.kept().all, 1u);
    EXPECT_EQ(manifest.kept().failed, 0u);
}

TEST(BatchFolder, makes_folders_and_follows_no_link) {
    const TempDir elsewhere;
    const TempDir folder;
    const batch::OutputFolder outputs(folder.path());
    EXPECT_EQ(outputs.make_folders("a.png"), "");
    EXPECT_EQ(outputs.make_folders("b/c/a.png"), "");
    EXPECT_EQ(outputs.make_folders("b/c/a.png"), "");
    EXPECT_TRUE(std::filesystem::is_directory(folder.file("b/c")));
    std::filesystem::create_directory_symlink(elsewhere.path(), folder.file("b/d"));
    EXPECT_EQ(outputs.make_folders("b/d/e/a.png"),
              "b/d is a link, which may lead out of the output folder");
    EXPECT_TRUE(std::filesystem::is_empty(elsewhere.path()));
    folder.write("f", "");
    EXPECT_EQ(outputs.make_folders("f/a.png"), "f is no folder");
}

TEST(BatchDoubles, are_found_among_more_texts_than_are_held) {
    batch::DoubleTexts texts;
    constexpr std::uint64_t many = 140000;
    for (std::uint64_t i = 1; i <= many; ++i)
        texts.add("text " + std::to_string(i), i);
    texts.add("text 7", many + 1);
    texts.add("text 139999", many + 2);
    texts.add("text 7", many + 3);
    texts.add("text 140001", many + 4);
    texts.add("text 140001", many + 4); // the same line
    std::map<std::uint64_t, std::uint64_t> found;
    texts.find([&](std::uint64_t number, std::uint64_t first) { found[number] = first; });
    const std::map<std::uint64_t, std::uint64_t> expected{
        {many + 1, 7}, {many + 2, 139999}, {many + 3, 7}};
    EXPECT_EQ(found, expected);
    EXPECT_EQ(texts.mistake(), "");
}

TEST(BatchTable, remembers_many_numbers) {
    batch::SumTable table;
    for (std::uint64_t i = 0; i < 10000; ++i)
        ASSERT_FALSE(table.note("text " + std::to_string(i), i));
    EXPECT_EQ(table.size(), 10000u);
    for (std::uint64_t i = 0; i < 10000; ++i)
        ASSERT_EQ(table.find("text " + std::to_string(i)), i);
    EXPECT_FALSE(table.find("text 10000"));
    EXPECT_EQ(table.note("text 5", 1), 5u);
    EXPECT_EQ(table.replace("text 5", 1), 5u);
    EXPECT_EQ(table.find("text 5"), 1u);
    EXPECT_EQ(table.mistake(), "");
}

TEST(BatchTable, says_that_it_has_no_place) {
    const char* const before = std::getenv("TMPDIR");
    const std::string kept = before ? before : "";
    ::setenv("TMPDIR", "/nowhere", 1);
    batch::SumTable table;
    if (before)
        ::setenv("TMPDIR", kept.c_str(), 1);
    else
        ::unsetenv("TMPDIR");
    EXPECT_NE(table.mistake(), "");
    EXPECT_FALSE(table.note("a", 1));
    EXPECT_FALSE(table.note("a", 1));
}

} // namespace

} // namespace orvex_test
