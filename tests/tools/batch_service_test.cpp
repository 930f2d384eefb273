// A service: entries by a socket or a stream, and an answer to each line.

#include <algorithm>
#include <csignal>
#include <thread>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include "batch/socket_service.h"
#include "batch/stream_entries.h"
#include "batch_processes.h"

namespace orvex_test {

namespace {

using batch::Fate;
using batch::Verdict;

/// A client of a socket.
class Client {
public:
    explicit Client(const std::string& path)
        : descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        is_connected =
            connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    ~Client() { close(descriptor); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    void say(const std::string& text) const {
        EXPECT_EQ(send(descriptor, text.data(), text.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(text.size()));
    }
    /// Says as much as is taken.
    void say_at_most(const std::string& text) const {
        EXPECT_GT(send(descriptor, text.data(), text.size(), MSG_NOSIGNAL), 0);
    }
    void say_no_more() const { shutdown(descriptor, SHUT_WR); }
    /// The next answer; nothing at the end.
    std::optional<Verdict> hear() {
        std::size_t end = 0;
        while ((end = received.find('\n')) == received.npos) {
            char part[4096];
            const ssize_t count = read(descriptor, part, sizeof part);
            if (count <= 0)
                return std::nullopt;
            received.append(part, static_cast<std::size_t>(count));
        }
        std::optional<Verdict> verdict = batch::verdict_of_line(received.substr(0, end + 1));
        EXPECT_TRUE(verdict.has_value()) << received.substr(0, end);
        received.erase(0, end + 1);
        return verdict;
    }
    bool is_connected = false;

private:
    int descriptor;
    std::string received;
};

/// A service in a process of its own, which INT ends.
class BatchServiceTest : public testing::Test {
protected:
    BatchServiceTest() { test.options.serve = true; }
    ~BatchServiceTest() override {
        if (process > 0)
            end(SIGKILL);
    }

    void serve() {
        process = fork();
        if (process != 0) {
            // A socket is there before it is listened to.
            while (!Client(path()).is_connected)
                poll(nullptr, 0, 1);
            return;
        }
        batch::Ending ending;
        {
            batch::SocketService service(test.defaults, test.folder.path());
            ending.mistake = service.open(path());
            if (ending.mistake.empty())
                ending = batch::Supervisor(test.defaults, test.options, service, service, &service)
                             .run();
        }
        _exit(ending.mistake.empty() ? ending.signal : 255);
    }
    int end(int signal) {
        kill(process, signal);
        int status = 0;
        waitpid(process, &status, 0);
        process = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string path() const { return test.folder.file("socket"); }
    std::string line(const std::string& id, const std::string& poison = "") const {
        return R"({"id": ")" + id + R"(", "model": ")" + test.write_model(id + ".obj", poison) +
               "\"}\n";
    }

    TestBatch test;
    pid_t process = -1;
};

TEST_F(BatchServiceTest, answers_each_client_with_its_own_verdicts) {
    serve();
    struct stat status {};
    ASSERT_EQ(stat(path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0600u);
    Client one(path()), other(path());
    one.say(line("a") + "\nno entry\n" + line("b"));
    other.say(line("c"));
    other.say_no_more();
    std::vector<std::string> answers;
    for (int i = 0; i < 3; ++i)
        if (const std::optional<Verdict> verdict = one.hear())
            answers.push_back(verdict->id + " " + batch::word_of(verdict->fate) +
                              std::to_string(verdict->line));
    std::sort(answers.begin(), answers.end());
    EXPECT_EQ(answers, (std::vector<std::string>{" refused3", "a ok0", "b ok0"}));
    EXPECT_EQ(other.hear()->id, "c");
    EXPECT_FALSE(other.hear().has_value());
    EXPECT_TRUE(test.has_file("c.png"));
    EXPECT_EQ(end(SIGINT), SIGINT);
    EXPECT_FALSE(test.has_file("socket"));
}

TEST_F(BatchServiceTest, is_kept_by_no_client_from_serving_others) {
    test.options.workers = 1;
    serve();
    // It sends more than the service holds of answers, and never reads one.
    const Client slow(path());
    std::thread flood([&] {
        std::string lines;
        for (int i = 0; i < 20000; ++i)
            lines += "{\"model\": \"\", \"nonsense\": " + std::to_string(i) + "}\n";
        slow.say_at_most(lines);
    });
    {
        const Client vanished(path());
        vanished.say(line("gone"));
    }
    Client patient(path());
    patient.say(line("a"));
    EXPECT_EQ(patient.hear()->id, "a");
    EXPECT_EQ(end(SIGTERM), SIGTERM);
    // Whatever it had still to send has no receiver.
    flood.join();
}

TEST_F(BatchServiceTest, survives_a_client_whose_line_has_no_end) {
    serve();
    Client client(path());
    std::thread talker([&] { client.say(std::string(3 << 20, 'x') + "\n" + line("a")); });
    EXPECT_EQ(client.hear()->reason, "the line has more than 1048576 bytes");
    EXPECT_EQ(client.hear()->id, "a");
    talker.join();
    EXPECT_EQ(end(SIGINT), SIGINT);
}

TEST_F(BatchServiceTest, answers_what_was_at_hand_before_it_ends) {
    test.options.workers = 1;
    serve();
    Client client(path());
    client.say(line("a"));
    ASSERT_TRUE(client.hear().has_value());
    client.say(line("b") + line("c") + line("d"));
    ASSERT_EQ(client.hear()->id, "b");
    EXPECT_EQ(end(SIGTERM), SIGTERM);
    std::size_t answers = 0;
    while (client.hear())
        ++answers;
    EXPECT_LE(answers, 2u);
}

TEST_F(BatchServiceTest, takes_the_place_of_one_that_was_killed_and_of_nothing_else) {
    serve();
    {
        batch::SocketService second(test.defaults, test.folder.path());
        EXPECT_EQ(second.open(path()),
                  "can't serve at " + path() + ": another process serves there");
    }
    end(SIGKILL);
    EXPECT_TRUE(test.has_file("socket"));
    {
        batch::SocketService second(test.defaults, test.folder.path());
        EXPECT_EQ(second.open(path()), "");
    }
    EXPECT_FALSE(test.has_file("socket"));
    test.folder.write("socket", "a file");
    batch::SocketService third(test.defaults, test.folder.path());
    EXPECT_EQ(third.open(path()),
              "can't serve at " + path() + ": something else than a socket is there");
    EXPECT_EQ(content_of(path()), "a file");
    EXPECT_EQ(third.open(std::string(108, 'x')), "can't serve at " + std::string(108, 'x') +
                                                     ": a socket's path has at most 107 bytes");
}

TEST_F(BatchServiceTest, reads_a_stream_as_it_comes) {
    int ends[2] = {};
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const auto say = [&](const std::string& text) {
        EXPECT_EQ(write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    };
    batch::StreamEntries entries(ends[0], test.defaults, test.folder.path());
    const std::string first = line("a"), second = line("b");
    say(first + "?\n" + second);
    KeptVerdicts verdicts;
    verdicts.on_verdict = [&](const Verdict&) {
        if (verdicts.list.size() == 3)
            say(first);
        if (verdicts.list.size() == 4)
            close(ends[1]);
    };
    EXPECT_EQ(batch::Supervisor(test.defaults, test.options, entries, verdicts).run().mistake, "");
    EXPECT_EQ(verdicts.list.size(), 4u);
    EXPECT_EQ(std::count_if(verdicts.list.begin(), verdicts.list.end(),
                            [](const Verdict& verdict) { return verdict.fate == Fate::ok; }),
              3);
    close(ends[0]);
}

} // namespace

} // namespace orvex_test
