// What becomes of a model in a worker: each verdict once, on purpose.

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "batch_processes.h"
#include "program_run.h"

namespace orvex_test {

namespace {

using batch::Fate;
using batch::Verdict;

class BatchFatesTest : public testing::Test {
protected:
    /// Runs a batch of one model.
    const Verdict& verdict_of_one(const std::string& text) {
        test.options.workers = 1;
        test.add(text);
        const batch::Ending ending = test.run();
        EXPECT_EQ(ending.mistake + ending.refused, "");
        EXPECT_EQ(test.verdicts.list.size(), 1u);
        if (test.verdicts.list.empty())
            test.verdicts.list.emplace_back();
        return test.verdicts.list.back();
    }
    /// The text of an entry for a path.
    static std::string entry(const std::string& model, const std::string& rest = "") {
        return R"({"id": "a", "model": ")" + model + "\"" + rest + "}";
    }

    TestBatch test;
};

TEST_F(BatchFatesTest, a_picture_is_told_of_with_all_that_it_cost) {
    const Verdict& verdict = verdict_of_one(entry(test.write_model("a.obj")));
    EXPECT_EQ(verdict.reason, "");
    ASSERT_EQ(verdict.fate, Fate::ok);
    ASSERT_EQ(verdict.outputs.size(), 1u);
    const batch::Output& output = verdict.outputs[0];
    EXPECT_EQ(output.path, "a.png");
    EXPECT_EQ(output.width, 24);
    EXPECT_EQ(output.bytes, content_of(test.folder.file("a.png")).size());
    EXPECT_EQ(output.sha256.size(), 64u);
    EXPECT_EQ(verdict.key.size(), 64u);
    EXPECT_NE(verdict.driver, "");
    EXPECT_EQ(verdict.tries, 1);
    EXPECT_GT(verdict.peak_bytes, 1u << 20);
    EXPECT_GT(verdict.seconds.load, 0.0);
    EXPECT_GT(verdict.seconds.draw, 0.0);
    EXPECT_GT(verdict.seconds.write, 0.0);
    EXPECT_GE(verdict.seconds.total,
              verdict.seconds.load + verdict.seconds.draw + verdict.seconds.write);
}

struct Row {
    const char* name;
    Fate fate;
    const char* reason; ///< a part of it
    void (*make)(const TestBatch& test, const std::string& path);
};

const std::vector<Row> bad_files = {
    {"missing", Fate::io, "No such file or directory", [](const TestBatch&, const std::string&) {}},
    {"folder", Fate::refused, "is a folder",
     [](const TestBatch&, const std::string& path) { mkdir(path.c_str(), 0777); }},
    {"pipe", Fate::refused, "is no regular file",
     [](const TestBatch&, const std::string& path) { EXPECT_EQ(mkfifo(path.c_str(), 0666), 0); }},
    {"device", Fate::refused, "is no regular file",
     [](const TestBatch&, const std::string& path) {
         EXPECT_EQ(symlink("/dev/zero", path.c_str()), 0);
     }},
    {"loop", Fate::refused, "Too many levels of symbolic links",
     [](const TestBatch&, const std::string& path) {
         EXPECT_EQ(symlink(path.c_str(), path.c_str()), 0);
     }},
    {"empty", Fate::refused, "the file is empty",
     [](const TestBatch& test, const std::string&) { test.folder.write("empty", ""); }},
    {"garbage", Fate::refused, "no loader can read it as a model",
     [](const TestBatch& test, const std::string&) { test.folder.write("garbage", "?\n"); }},
    {"unseen", Fate::refused, "can be seen",
     [](const TestBatch& test, const std::string&) {
         test.folder.write("unseen", "v 0 0 0\nv 0 0 0\nv 0 0 0\nf 1 2 3\n");
     }},
    {"thrower", Fate::refused, "no loader can read it as a model",
     [](const TestBatch& test, const std::string&) {
         test.folder.write("thrower", "# poison throw\n");
     }},
    {"large", Fate::over_limit, "the file has more than 1 MB",
     [](const TestBatch& test, const std::string& path) {
         test.folder.write("large", "v");
         EXPECT_EQ(truncate(path.c_str(), 2 << 20), 0);
     }},
    {"wanting", Fate::over_limit, "there wasn't enough memory for it",
     [](const TestBatch& test, const std::string&) {
         test.folder.write("wanting", "# poison want\n");
     }},
};

TEST_F(BatchFatesTest, a_file_that_is_no_good_is_told_from_one_that_cant_be_read) {
    test.options.limit_file = 1;
    for (const Row& row : bad_files) {
        row.make(test, test.folder.file(row.name));
        test.add(R"({"id": ")" + std::string(row.name) + R"(", "model": ")" +
                 test.folder.file(row.name) + "\"}");
    }
    EXPECT_EQ(test.run().mistake, "");
    for (const Row& row : bad_files) {
        const Verdict& verdict = test.verdict_of(row.name);
        EXPECT_EQ(verdict.fate, row.fate) << row.name;
        EXPECT_TRUE(verdict.reason.find(row.reason) != std::string::npos) << verdict.reason;
        EXPECT_TRUE(verdict.outputs.empty());
        EXPECT_FALSE(test.has_file(std::string(row.name) + ".png"));
    }
}

TEST_F(BatchFatesTest, more_pixels_than_allowed_are_over_the_limit) {
    test.options.limit_pixels = 24 * 24;
    const std::string model = test.write_model("a.obj");
    const Verdict& verdict = verdict_of_one(entry(model, R"(, "turntable": 2)"));
    EXPECT_EQ(verdict.fate, Fate::over_limit);
    EXPECT_EQ(verdict.reason, "its pictures have 1152 pixels, and 576 are allowed");
}

TEST_F(BatchFatesTest, an_output_that_grows_too_large_is_over_the_limit) {
    test.options.limit_file = 1;
    const std::string model = test.write_model("a.obj");
    const Verdict& verdict =
        verdict_of_one(entry(model, R"(, "size": "640x640", "output": "a.npy")"));
    EXPECT_EQ(verdict.fate, Fate::over_limit);
    EXPECT_TRUE(verdict.reason.find("File too large") != std::string::npos) << verdict.reason;
    EXPECT_FALSE(test.has_file("a.npy"));
}

TEST_F(BatchFatesTest, an_output_that_cant_be_written_is_no_fault_of_the_model) {
    mkdir(test.folder.file("a.png").c_str(), 0777);
    const Verdict& verdict = verdict_of_one(entry(test.write_model("a.obj")));
    EXPECT_EQ(verdict.fate, Fate::io);
    EXPECT_TRUE(verdict.reason.find("a.png") != std::string::npos) << verdict.reason;
}

TEST_F(BatchFatesTest, an_output_folder_that_is_gone_is_no_fault_of_the_model) {
    test.options.workers = 1;
    test.add_model("a");
    const std::string model = test.write_model("b.obj");
    std::filesystem::create_directory(test.folder.file("pictures"));
    test.options.output_dir = test.folder.file("pictures");
    batch::EntryReader reader(test.defaults, test.options.output_dir);
    batch::Entry second;
    ASSERT_EQ(reader.read(R"({"id": "b", "model": ")" + model + "\"}", 2, second), "");
    test.entries.list.emplace_back(std::move(second));
    test.verdicts.on_verdict = [&](const Verdict&) {
        std::filesystem::remove_all(test.options.output_dir);
    };
    EXPECT_EQ(test.run().mistake, "");
    EXPECT_EQ(test.verdict_of("b").fate, Fate::io);
}

TEST_F(BatchFatesTest, an_output_folder_that_takes_nothing_is_no_fault_of_the_model) {
    const std::string model = test.write_model("a.obj");
    test.options.output_dir = "/proc";
    batch::EntryReader reader(test.defaults, test.options.output_dir);
    batch::Entry into_proc;
    ASSERT_EQ(reader.read(entry(model), 1, into_proc), "");
    test.entries.list.emplace_back(std::move(into_proc));
    EXPECT_EQ(test.run().mistake, "");
    EXPECT_EQ(test.verdict_of("a").fate, Fate::io);
    EXPECT_TRUE(test.verdict_of("a").reason.find("/proc/a.png") != std::string::npos)
        << test.verdict_of("a").reason;
}

TEST_F(BatchFatesTest, no_driver_is_no_fault_of_the_model) {
    test.defaults.device = "99";
    const Verdict& verdict = verdict_of_one(entry(test.write_model("a.obj")));
    EXPECT_EQ(verdict.fate, Fate::driver);
    EXPECT_NE(verdict.reason, "");
    EXPECT_EQ(verdict.driver, "");
}

TEST_F(BatchFatesTest, a_driver_that_runs_out_of_memory_is_no_fault_of_the_model) {
    test.options.workers = 1;
    test.add_model("drown", "drown");
    test.add(entry(test.write_model("a.obj", "drown"), R"(, "layers": ["depth"])"));
    test.add_model("fine");
    EXPECT_EQ(test.run().mistake, "");
    for (const char* const id : {"drown", "a"}) {
        EXPECT_EQ(test.verdict_of(id).fate, Fate::driver);
        EXPECT_EQ(test.verdict_of(id).reason, "the driver ran out of memory");
        EXPECT_TRUE(test.verdict_of(id).outputs.empty());
        EXPECT_FALSE(test.has_file(std::string(id) + ".png"));
    }
    EXPECT_EQ(test.verdict_of("fine").fate, Fate::ok) << test.verdict_of("fine").reason;
}

TEST_F(BatchFatesTest, what_ends_the_process_twice_has_crashed) {
    test.add_model("crash", "crash");
    test.add_model("leave", "leave");
    test.add_model("groan", "groan");
    test.add_model("fine");
    EXPECT_EQ(test.run().mistake, "");
    EXPECT_EQ(test.verdict_of("crash").reason,
              "the process ended twice while it was loaded: it died of signal 11 (Segmentation "
              "fault)");
    EXPECT_EQ(test.verdict_of("leave").reason,
              "the process ended twice while it was loaded: it left with code 0");
    EXPECT_EQ(test.verdict_of("groan").reason,
              "the process ended twice while it was loaded: it died of signal 11 (Segmentation "
              "fault), and said: poison: that hurts");
    for (const char* const id : {"crash", "leave", "groan"}) {
        EXPECT_EQ(test.verdict_of(id).fate, Fate::crashed);
        EXPECT_EQ(test.verdict_of(id).tries, 2);
        EXPECT_EQ(test.verdict_of(id).key.size(), 64u);
    }
    EXPECT_EQ(test.verdict_of("fine").fate, Fate::ok);
}

TEST_F(BatchFatesTest, what_dies_of_its_forerunners_is_fine_alone) {
    test.options.workers = 1;
    test.add_model("first", "age");
    test.add_model("second", "age");
    test.add_model("third", "age");
    EXPECT_EQ(test.run().mistake, "");
    EXPECT_EQ(test.verdict_of("first").tries, 1);
    EXPECT_EQ(test.verdict_of("second").fate, Fate::ok);
    EXPECT_EQ(test.verdict_of("second").tries, 2);
    EXPECT_EQ(test.verdict_of("third").fate, Fate::ok);
}

TEST_F(BatchFatesTest, a_model_that_hangs_is_over_the_limit_of_time) {
    test.options.limit_seconds = 0.5f;
    const Verdict& verdict = verdict_of_one(entry(test.write_model("a.obj", "hang")));
    EXPECT_EQ(verdict.fate, Fate::over_limit);
    EXPECT_EQ(verdict.reason, "it took longer than 0.5 seconds while it was loaded");
    EXPECT_EQ(verdict.tries, 2);
}

TEST_F(BatchFatesTest, a_model_that_eats_memory_is_over_its_limit) {
    test.options.limit_memory = 64;
    const Verdict& verdict = verdict_of_one(entry(test.write_model("a.obj", "eat")));
    EXPECT_EQ(verdict.fate, Fate::over_limit);
    EXPECT_EQ(verdict.reason, "it took more than 64 MB of memory while it was loaded");
}

TEST_F(BatchFatesTest, what_a_plugin_prints_is_kept_from_standard_output) {
    testing::internal::CaptureStdout();
    const Verdict& verdict = verdict_of_one(entry(test.write_model("a.obj", "print")));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(verdict.fate, Fate::ok);
}

/// Whether the system has Landlock.
bool has_landlock() {
    constexpr long create_ruleset = 444;
    return syscall(create_ruleset, nullptr, 0, 1) > 0;
}

TEST_F(BatchFatesTest, a_plugin_doesnt_get_out_of_its_folder) {
    ASSERT_TRUE(has_landlock());
    const TempDir elsewhere;
    const Verdict& verdict =
        verdict_of_one(entry(test.write_model("a.obj", "escape " + elsewhere.file("out"))));
    EXPECT_EQ(verdict.reason, "");
    EXPECT_EQ(verdict.fate, Fate::ok);
    EXPECT_TRUE(std::filesystem::is_empty(elsewhere.path()));
}

} // namespace

} // namespace orvex_test
