// Batches from manifest to verdicts: what is drawn, what is told, and what is done only once.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include "batch/verdict.h"
#include "program_run.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using batch::Verdict;

std::vector<Verdict> verdicts_in(const std::string& text) {
    std::vector<Verdict> verdicts;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::optional<Verdict> verdict = batch::verdict_of_line(line);
        EXPECT_TRUE(verdict) << line;
        if (verdict)
            verdicts.push_back(*verdict);
    }
    return verdicts;
}

/// "a=ok b=io", by their ids in order.
std::string told(const std::string& text) {
    std::vector<std::string> words;
    for (const Verdict& verdict : verdicts_in(text))
        words.push_back((verdict.line > 0 ? std::to_string(verdict.line) : verdict.id) + "=" +
                        word_of(verdict.fate) + " ");
    std::sort(words.begin(), words.end());
    std::string all;
    for (const std::string& word : words)
        all += word;
    return all;
}

/// A folder with small models.
class OrvexRenderBatch : public testing::Test {
protected:
    TempDir folder;

    void SetUp() override {
        write_model("a.obj", "1");
        write_model("b.obj", "2");
        write_model("c.obj", "3");
    }
    void write_model(const std::string& name, const std::string& width) const {
        folder.write(name, "v 0 0 0\nv " + width + " 0 0\nv 0 1 0.5\nf 1 2 3\n");
    }
    Outcome run_batch(std::vector<std::string> more) const {
        std::vector<std::string> words{"--size", "24x16", "--output-dir", "out", "--workers", "2"};
        words.insert(words.end(), more.begin(), more.end());
        return run_render(folder.path(), words);
    }
    std::size_t num_outputs() const {
        const auto files = std::filesystem::directory_iterator(folder.file("out"));
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }
};

#ifdef ORVEX_WITH_IMPORTER
TEST_F(OrvexRenderBatch, draws_what_the_importer_reads) {
    folder.write("d.raw", "0 0 0 1 0 0 0 1 0.5\n");
    folder.write("m.jsonl", R"({"model":"d.raw"})");
    const Outcome outcome = run_batch({"--batch", "m.jsonl"});
    EXPECT_EQ(told(outcome.out), "d.raw=ok ") << outcome.out;
}
#endif

TEST_F(OrvexRenderBatch, draws_what_one_model_after_another_would_be) {
    folder.write("m.jsonl", R"({"model":"a.obj","azimuth":70,"background":"white"})"
                            "\n"
                            R"({"model":"b.obj","output":"x/y.npy","layers":["color","depth"]})"
                            "\n"
                            R"({"model":"c.obj","id":"turn","size":"16x16","turntable":2})"
                            "\n");
    const Outcome outcome = run_batch({"--batch", "m.jsonl", "--elevation", "40"});
    EXPECT_EQ(outcome.code, 0) << outcome.errors;
    EXPECT_EQ(told(outcome.out), "a.obj=ok b.obj=ok turn=ok ");
    EXPECT_TRUE(has_match(outcome.errors, "^3 models in [0-9:]+, [0-9.]+ a second: 3 ok\n$"))
        << outcome.errors;
    const auto draw = [&](const std::vector<std::string>& words) {
        EXPECT_EQ(run_render(folder.path(), words).code, 0);
    };
    draw({"a.obj", "-qs24x16", "-e40", "-a70", "-bwhite", "-oone.png"});
    draw({"b.obj", "-qs24x16", "-e40", "--layers=color,depth", "-oy.npy"});
    draw({"c.obj", "-qs16x16", "-e40", "-t2", "-oturn.png"});
    const auto expect_same = [&](const char* in_batch, const char* alone) {
        const std::string picture = content_of(folder.file(in_batch));
        EXPECT_NE(picture, "") << in_batch;
        EXPECT_EQ(picture, content_of(folder.file(alone))) << in_batch;
    };
    expect_same("out/a.obj.png", "one.png");
    expect_same("out/x/y.npy", "y.npy");
    expect_same("out/x/y.depth.npy", "y.depth.npy");
    expect_same("out/x/y.json", "y.json");
    expect_same("out/turn-001.png", "turn-001.png");
    expect_same("out/turn-002.png", "turn-002.png");
    EXPECT_EQ(num_outputs(), 4u);
}

TEST_F(OrvexRenderBatch, has_a_verdict_for_each_model) {
    folder.write("bad.obj", "nothing of a model\n");
    folder.write("empty.obj", "");
    std::filesystem::create_directory(folder.file("d.obj"));
    std::filesystem::create_symlink("loop.obj", folder.file("loop.obj"));
    ASSERT_EQ(mkfifo(folder.file("pipe.obj").c_str(), 0600), 0);
    folder.write("l", "a.obj\nbad.obj\nempty.obj\nd.obj\nloop.obj\npipe.obj\n/dev/zero\n");
    const Outcome outcome = run_batch({"--files", "l", "--results", "r", "-q"});
    EXPECT_EQ(outcome.code, 3);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "");
    const std::string results = content_of(folder.file("r"));
    EXPECT_EQ(told(results), "/dev/zero=refused a.obj=ok bad.obj=refused d.obj=refused "
                             "empty.obj=refused loop.obj=refused pipe.obj=refused ");
    for (const Verdict& verdict : verdicts_in(results)) {
        EXPECT_EQ(verdict.reason.empty(), verdict.fate == batch::Fate::ok) << verdict.id;
        EXPECT_EQ(verdict.tries, 1) << verdict.id;
        EXPECT_EQ(verdict.engine, ORVEX_RENDER_VERSION);
        EXPECT_NE(verdict.driver, "");
        EXPECT_EQ(verdict.outputs.size(), verdict.fate == batch::Fate::ok ? 1u : 0u);
    }
    EXPECT_EQ(num_outputs(), 1u);
}

TEST_F(OrvexRenderBatch, says_that_another_try_makes_sense) {
    folder.write("l", "bad.obj\nnone.obj\n");
    folder.write("bad.obj", "nothing of a model\n");
    const Outcome outcome = run_batch({"--files", "l"});
    EXPECT_EQ(outcome.code, 4);
    EXPECT_EQ(told(outcome.out), "bad.obj=refused none.obj=io ");
}

TEST_F(OrvexRenderBatch, of_a_wrong_manifest_draws_nothing) {
    folder.write("m", "{\"model\":\"a.obj\"}\n{\"model\":\"b.obj\",\"sise\":1}\n"
                      "{\"model\":\"c.obj\",\"output\":\"../c.png\"}\n");
    const Outcome outcome = run_batch({"--batch", "m"});
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors,
              "orvex-render: line 2: unknown key \"sise\"; did you mean 'size'?\n"
              "orvex-render: line 3: 'output' leaves the output folder: \"../c.png\"\n"
              "orvex-render: 2 lines are no entries: nothing is drawn; --keep-going draws the "
              "others\n");
    EXPECT_EQ(num_outputs(), 0u);
    const Outcome kept = run_batch({"--batch", "m", "--keep-going"});
    EXPECT_EQ(kept.code, 2);
    EXPECT_EQ(told(kept.out), "2=refused 3=refused a.obj=ok ");
}

TEST_F(OrvexRenderBatch, takes_a_pipe_as_it_comes) {
    ASSERT_EQ(mkfifo(folder.file("m").c_str(), 0600), 0);
    for (const bool keeps_going : {false, true}) {
        std::filesystem::remove_all(folder.file("out"));
        std::thread writer(
            [&] { folder.write("m", "{\"model\":\"a.obj\"}\nwhat?\n{\"model\":\"b.obj\"}\n"); });
        const Outcome outcome = run_batch({"--batch", "m", keeps_going ? "--keep-going" : "-q"});
        writer.join();
        EXPECT_EQ(outcome.code, 2);
        EXPECT_EQ(told(outcome.out),
                  keeps_going ? "2=refused a.obj=ok b.obj=ok " : "2=refused a.obj=ok ");
        if (!keeps_going)
            EXPECT_EQ(outcome.errors, "orvex-render: line 2: column 1: 'w' is no JSON here\n");
    }
}

TEST_F(OrvexRenderBatch, of_nothing_is_fine) {
    folder.write("m", "");
    const Outcome outcome = run_batch({"--batch", "m", "--quiet"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out + outcome.errors, "");
    EXPECT_EQ(num_outputs(), 0u);
}

TEST_F(OrvexRenderBatch, that_is_resumed_draws_what_has_changed) {
    folder.write("l", "a.obj\nb.obj\nbad.obj\nnone.obj\n");
    folder.write("bad.obj", "nothing of a model\n");
    const auto resume = [&] { return run_batch({"--files", "l", "--results", "r", "--resume"}); };
    ASSERT_EQ(resume().code, 4);
    const std::string before = content_of(folder.file("r"));
    const std::string picture = content_of(folder.file("out/a.obj.png"));
    EXPECT_EQ(told(before), "a.obj=ok b.obj=ok bad.obj=refused none.obj=io ");

    // One is there now, of one the picture is gone, and one is another model.
    write_model("none.obj", "1");
    write_model("b.obj", "3");
    std::filesystem::remove(folder.file("out/a.obj.png"));
    const Outcome again = resume();
    EXPECT_EQ(again.code, 3);
    EXPECT_TRUE(has(again.errors, "3 ok, 1 kept of an earlier run\n")) << again.errors;
    EXPECT_EQ(told(content_of(folder.file("r"))), "a.obj=ok b.obj=ok bad.obj=refused none.obj=ok ");
    EXPECT_EQ(content_of(folder.file("out/a.obj.png")), picture);

    const std::string after = content_of(folder.file("r"));
    const Outcome once_more = resume();
    EXPECT_EQ(once_more.code, 3);
    EXPECT_TRUE(has(once_more.errors, "4 kept of an earlier run\n")) << once_more.errors;
    EXPECT_EQ(content_of(folder.file("r")), after);
}

TEST_F(OrvexRenderBatch, in_shards_is_the_whole) {
    folder.write("l", "a.obj\nb.obj\nc.obj\n");
    std::string results;
    for (const char* shard : {"1/2", "2/2"}) {
        const Outcome outcome = run_batch({"--files", "l", "--shard", shard});
        EXPECT_EQ(outcome.code, 0);
        EXPECT_NE(outcome.out, "") << shard;
        results += outcome.out;
    }
    EXPECT_EQ(told(results), "a.obj=ok b.obj=ok c.obj=ok ");
    EXPECT_EQ(num_outputs(), 3u);
}

TEST_F(OrvexRenderBatch, without_room_for_its_results_says_so) {
    folder.write("l", "a.obj\n");
    const Outcome outcome = run_batch({"--files", "l", "--results", "/dev/full"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(has(outcome.errors, "orvex-render: can't write the results /dev/full: No space "
                                    "left on device\n"))
        << outcome.errors;
}

/// Entries whose pictures are of 16 KB.
std::string list_of(int count) {
    std::string list;
    for (int i = 0; i < count; ++i)
        list += R"({"model":"a.obj","id":"n)" + std::to_string(i) + R"(","output":"n)" +
                std::to_string(i) + ".npy\"}\n";
    return list;
}

/// Where no disk can be had that is full, what stands for it shows as much as it can.
void tell_of_no_disk() {
    std::printf("no file system can be mounted here: other limits stand for a full disk\n");
}

TEST_F(OrvexRenderBatch, whose_disk_is_full_loses_nothing_and_goes_on_with_room) {
    folder.write("m", list_of(5));
    const std::vector<std::string> words{"--batch",   "m",         "--size", "64x64",
                                         "--workers", "1",         "-q",     "--output-dir",
                                         "disk/out",  "--results", "r",      "--resume"};
    const auto outcome = run_render_on_disk(
        folder.path(), 64,
        "\"$0\" \"$@\"; code=$?; cp r before; ls -A disk/out >files; cat disk/out/* | wc -c; "
        "make_room; \"$0\" \"$@\"; echo $?; exit $code",
        words);
    if (!outcome) {
        tell_of_no_disk();
        EXPECT_EQ(run_batch({"--batch", "m", "--limit-file", "1", "--size", "640x640"}).code, 3);
        EXPECT_EQ(num_outputs(), 0u);
        return;
    }
    EXPECT_EQ(outcome->code, 4) << outcome->errors;
    // Each is written whole, or not at all.
    std::size_t fine = 0;
    const std::vector<Verdict> before = verdicts_in(content_of(folder.file("before")));
    EXPECT_EQ(before.size(), 5u);
    for (const Verdict& verdict : before) {
        fine += verdict.fate == batch::Fate::ok ? 1 : 0;
        EXPECT_TRUE(verdict.fate == batch::Fate::ok ||
                    (verdict.fate == batch::Fate::io && has(verdict.reason, "No space left")))
            << verdict.reason;
    }
    const std::string files = content_of(folder.file("files"));
    EXPECT_EQ(static_cast<std::size_t>(std::count(files.begin(), files.end(), '\n')), fine);
    EXPECT_GT(fine, 0u);
    EXPECT_LT(fine, 5u);
    constexpr std::size_t bytes = 128 + std::size_t{64} * 64 * 4;
    EXPECT_EQ(outcome->out, std::to_string(fine * bytes) + "\n0\n") << outcome->errors;
    EXPECT_EQ(verdicts_in(content_of(folder.file("r"))).size(), 5u);
}

TEST_F(OrvexRenderBatch, that_is_stopped_ends_with_the_number_of_the_signal_and_goes_on) {
    folder.write("m", list_of(3000));
    const std::vector<std::string> words{"--batch",   "m", "--output-dir", "out", "--size",  "8x8",
                                         "--workers", "1", "--results",    "r",   "--resume"};
    for (const auto& [signal, code] : {std::pair{"INT", 130}, std::pair{"TERM", 143}}) {
        const std::string file = folder.file("r");
        const std::size_t before = verdicts_in(content_of(file)).size();
        // As soon as there is a verdict more.
        const std::string killer = "{ until [ $(cat r 2>/dev/null | wc -l) -gt " +
                                   std::to_string(before) + " ]; do sleep 0.01; done; kill -" +
                                   signal + " $$; } &";
        const Outcome outcome = run_render_limited(folder.path(), killer + " true", words);
        EXPECT_EQ(outcome.code, code) << outcome.errors;
        const std::vector<Verdict> after = verdicts_in(content_of(file));
        EXPECT_GT(after.size(), before);
        EXPECT_LT(after.size(), 3000u);
    }
}

TEST_F(OrvexRenderBatch, whose_results_fill_a_disk_has_them_whole_and_goes_on_with_room) {
    folder.write("m", list_of(12));
    const std::vector<std::string> words{"--batch",   "m",         "--size", "8x8",
                                         "--workers", "1",         "-q",     "--output-dir",
                                         "out",       "--results", "disk/r", "--resume"};
    const auto outcome =
        run_render_on_disk(folder.path(), 4,
                           "\"$0\" \"$@\"; code=$?; cp disk/r before; make_room; \"$0\" \"$@\"; "
                           "echo $?; cp disk/r after; exit $code",
                           words);
    if (!outcome) {
        tell_of_no_disk();
        EXPECT_EQ(run_batch({"--batch", "m", "--results", "/dev/full"}).code, 1);
        return;
    }
    EXPECT_EQ(outcome->code, 1);
    EXPECT_TRUE(has(outcome->errors, "orvex-render: can't write the results disk/r: No space left "
                                     "on device\n"))
        << outcome->errors;
    const std::string before = content_of(folder.file("before"));
    ASSERT_NE(before, "");
    EXPECT_EQ(before.back(), '\n');
    EXPECT_LT(verdicts_in(before).size(), 12u);
    EXPECT_EQ(outcome->out, "0\n") << outcome->errors;
    EXPECT_EQ(verdicts_in(content_of(folder.file("after"))).size(), 12u);
    EXPECT_EQ(num_outputs(), 12u);
}

TEST_F(OrvexRenderBatch, shows_on_a_terminal_how_far_it_is) {
    folder.write("l", "a.obj\n");
    const Outcome outcome = run_render_on_terminal(
        folder.path(), {"--files", "l", "--output-dir", "out", "--size", "24x16"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_TRUE(has_match(outcome.errors, "\\[#+\\]  1/1  0:0[0-9]  [0-9.]+/s")) << outcome.errors;
}

} // namespace

} // namespace orvex_test
