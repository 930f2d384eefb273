// A supervisor and its workers: who is started, who is ended, and what is left.

#include <algorithm>
#include <atomic>
#include <csignal>
#include <fstream>
#include <set>
#include <thread>

#include <gtest/gtest.h>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "batch_processes.h"

namespace orvex_test {

namespace {

using batch::Fate;
using batch::Verdict;

class BatchSupervisorTest : public testing::Test {
protected:
    void add_models(int count) {
        for (int i = 0; i < count; ++i)
            test.add_model("model-" + std::to_string(i));
    }
    void expect_all_fine(std::size_t count) {
        std::set<std::string> ids;
        for (const Verdict& verdict : test.verdicts.list) {
            EXPECT_EQ(verdict.fate, Fate::ok) << verdict.reason;
            EXPECT_TRUE(test.has_file(verdict.id + ".png"));
            ids.insert(verdict.id);
        }
        EXPECT_EQ(ids.size(), count);
        EXPECT_EQ(test.verdicts.list.size(), count);
    }

    TestBatch test;
};

TEST_F(BatchSupervisorTest, leaves_no_process_and_no_open_file_behind) {
    add_models(6);
    test.add_model("crash", "crash");
    const std::size_t before = num_open_files();
    const batch::Ending ending = test.run();
    EXPECT_EQ(ending.signal, 0);
    EXPECT_EQ(ending.mistake, "");
    EXPECT_EQ(test.verdicts.list.size(), 7u);
    EXPECT_EQ(num_open_files(), before);
    EXPECT_TRUE(children().empty());
}

TEST_F(BatchSupervisorTest, starts_nothing_for_nothing) {
    test.options.workers = 3;
    EXPECT_EQ(test.run().mistake, "");
    EXPECT_TRUE(test.verdicts.list.empty());
    EXPECT_TRUE(std::filesystem::is_empty(test.folder.path()));
}

TEST_F(BatchSupervisorTest, starts_no_more_workers_than_there_are_models) {
    test.options.workers = 8;
    add_models(1);
    std::size_t most = 0;
    test.verdicts.on_verdict = [&](const Verdict&) { most = children().size(); };
    EXPECT_EQ(test.run().mistake, "");
    EXPECT_EQ(most, 1u);
}

TEST_F(BatchSupervisorTest, gets_over_the_death_of_a_worker) {
    add_models(8);
    int killed = 0;
    test.verdicts.on_verdict = [&](const Verdict&) {
        if (std::exchange(killed, 1) == 0)
            for (const int child : children())
                kill(child, SIGKILL);
    };
    EXPECT_EQ(test.run().mistake, "");
    expect_all_fine(8);
    EXPECT_TRUE(children().empty());
}

/// Kills workers at their models, which wait while a file is there.
class Killer {
public:
    explicit Killer(const TestBatch& test)
        : test(test)
        , file(test.folder.write("held", "")) {}

    const std::string& held() const { return file; }
    void kill_and_let_go(int times) {
        for (std::set<int> killed; !is_over && static_cast<int>(killed.size()) < times;)
            for (const int child : children())
                if (test.has_file("held-" + std::to_string(child)) && killed.insert(child).second)
                    kill(child, SIGKILL);
        std::filesystem::remove(file);
    }
    std::atomic<bool> is_over = false; ///< the batch; there is nothing more to be killed

private:
    const TestBatch& test;
    std::string file;
};

TEST_F(BatchSupervisorTest, blames_no_model_for_what_somebody_else_has_killed) {
    test.options.workers = 1;
    Killer killer(test);
    test.add_model("held", "hold " + killer.held());
    std::thread thread([&] { killer.kill_and_let_go(3); });
    EXPECT_EQ(test.run().mistake, "");
    killer.is_over = true;
    thread.join();
    EXPECT_EQ(test.verdict_of("held").fate, Fate::ok) << test.verdict_of("held").reason;
    EXPECT_EQ(test.verdict_of("held").tries, 1);
}

TEST_F(BatchSupervisorTest, blames_a_model_in_which_processes_are_killed_again_and_again) {
    test.add_model("die", "die");
    test.add_model("fine");
    EXPECT_EQ(test.run().mistake, "");
    EXPECT_EQ(test.verdict_of("die").fate, Fate::crashed);
    EXPECT_EQ(test.verdict_of("die").tries, 2);
    EXPECT_EQ(test.verdict_of("fine").fate, Fate::ok);
}

TEST_F(BatchSupervisorTest, replaces_a_worker_after_its_share_of_models) {
    test.options.workers = 1;
    test.options.recycle = 2;
    add_models(5);
    std::set<int> processes;
    test.verdicts.on_verdict = [&](const Verdict&) {
        for (const int child : children())
            processes.insert(child);
    };
    EXPECT_EQ(test.run().mistake, "");
    expect_all_fine(5);
    EXPECT_EQ(processes.size(), 3u);
}

TEST_F(BatchSupervisorTest, finishes_the_models_at_hand_when_it_is_asked_to_end) {
    for (const int number : {SIGTERM, SIGINT}) {
        TestBatch batch;
        for (int i = 0; i < 20; ++i)
            batch.add_model("model-" + std::to_string(i));
        batch.verdicts.on_verdict = [&](const Verdict&) {
            if (batch.verdicts.list.size() == 1)
                raise(number);
        };
        const batch::Ending ending = batch.run();
        EXPECT_EQ(ending.signal, number);
        EXPECT_EQ(ending.mistake, "");
        EXPECT_GE(batch.verdicts.list.size(), 1u);
        EXPECT_LE(batch.verdicts.list.size(), 4u);
        std::size_t pictures = 0;
        for (const auto& file : std::filesystem::directory_iterator(batch.folder.path()))
            pictures += file.path().extension() == ".png" ? 1 : 0;
        EXPECT_EQ(pictures, batch.verdicts.list.size());
        EXPECT_TRUE(children().empty());
    }
}

TEST_F(BatchSupervisorTest, draws_what_comes_after_entries_that_are_kept) {
    test.entries.list = {batch::KeptEntry{}, batch::KeptEntry{}};
    test.add_model("model");
    test.entries.list.push_back(batch::KeptEntry{});
    EXPECT_EQ(test.run().mistake, "");
    expect_all_fine(1);
}

TEST_F(BatchSupervisorTest, can_be_asked_to_end_while_entries_are_kept) {
    class Endless final : public batch::EntrySource {
    public:
        batch::NextEntry next() override {
            if (++count == 5)
                raise(SIGTERM);
            return batch::KeptEntry{};
        }

    private:
        int count = 0;
    };
    Endless entries;
    batch::Supervisor supervisor(test.defaults, test.options, entries, test.verdicts);
    EXPECT_EQ(supervisor.run().signal, SIGTERM);
}

TEST_F(BatchSupervisorTest, ends_models_at_hand_when_it_is_asked_twice) {
    test.options.workers = 2;
    test.add_model("fine");
    test.add_model("hang", "hang");
    test.verdicts.on_verdict = [&](const Verdict&) {
        raise(SIGTERM);
        raise(SIGINT);
    };
    const batch::Ending ending = test.run();
    EXPECT_NE(ending.signal, 0);
    EXPECT_EQ(test.verdicts.list.size(), 1u);
    EXPECT_TRUE(children().empty());
}

TEST_F(BatchSupervisorTest, ends_when_verdicts_cant_be_written) {
    add_models(6);
    test.verdicts.mistake = "can't write verdicts: No space left on device";
    EXPECT_EQ(test.run().mistake, test.verdicts.mistake);
    EXPECT_EQ(test.verdicts.list.size(), 1u);
    EXPECT_TRUE(children().empty());
}

TEST_F(BatchSupervisorTest, ends_at_a_line_that_is_no_entry_unless_it_is_to_go_on) {
    for (const bool keep_going : {false, true}) {
        TestBatch batch;
        batch.options.keep_going = keep_going;
        batch.add_model("before");
        batch.entries.list.emplace_back(batch::RefusedLine{2, "it is no JSON", ""});
        batch.add_model("after");
        const batch::Ending ending = batch.run();
        EXPECT_EQ(ending.refused, keep_going ? "" : "line 2: it is no JSON");
        EXPECT_EQ(batch.verdict_of("before").fate, Fate::ok);
        EXPECT_EQ(batch.verdict_of("").fate, Fate::refused);
        EXPECT_EQ(batch.verdict_of("").line, 2u);
        EXPECT_EQ(batch.verdicts.list.size(), keep_going ? 3u : 2u);
    }
}

TEST_F(BatchSupervisorTest, draws_what_came_before_a_source_broke) {
    add_models(1);
    test.entries.list.emplace_back(batch::BrokenSource{"the pipe broke"});
    EXPECT_EQ(test.run().refused, "the pipe broke");
    expect_all_fine(1);
}

/// Whether a process has ended, whoever is to hear of it.
bool has_ended(int process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string number, name, state;
    return !(file >> number >> name >> state) || state == "Z" || state == "X";
}

TEST_F(BatchSupervisorTest, takes_its_workers_along_when_it_is_killed) {
    test.options.workers = 2;
    test.add_model("hang-1", "hang");
    test.add_model("hang-2", "hang");
    const pid_t supervisor = fork();
    if (supervisor == 0) {
        test.run();
        _exit(0);
    }
    const std::string place =
        "/proc/" + std::to_string(supervisor) + "/task/" + std::to_string(supervisor) + "/children";
    std::vector<int> workers;
    while (workers.size() < 2) {
        workers.clear();
        std::ifstream file(place);
        for (int child = 0; file >> child;)
            workers.push_back(child);
        poll(nullptr, 0, 1);
    }
    kill(supervisor, SIGKILL);
    int status = 0;
    waitpid(supervisor, &status, 0);
    while (!std::all_of(workers.begin(), workers.end(), has_ended))
        poll(nullptr, 0, 1);
    for (const auto& file : std::filesystem::directory_iterator(test.folder.path()))
        EXPECT_EQ(file.path().extension(), ".obj");
}

} // namespace

} // namespace orvex_test
