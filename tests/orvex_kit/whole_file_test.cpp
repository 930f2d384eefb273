#include "orvex_kit/whole_file.h"

#include <atomic>
#include <csignal>
#include <filesystem>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "orvex_kit/private/unnamed_files.h"
#include "tests/orvex_kit/child_process.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;
using orvex_test::content_of;
using orvex_test::TempDir;

std::size_t num_files(const TempDir& folder) {
    const auto files = std::filesystem::directory_iterator(folder.path());
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

/// Writes a file in one go. @return what went wrong
std::string write_whole(const std::string& name, const std::string& content) {
    WholeFile file(name);
    Outcome outcome = file.begin();
    if (outcome)
        outcome = file.put(content);
    if (outcome)
        outcome = file.finish();
    return outcome.reason();
}

TEST(Files, tell_why_they_cant_be_written) {
    const TempDir folder;
    const std::string nowhere = folder.path() + "/none/a.jpg";
    EXPECT_EQ(mistake_in_writing(nowhere),
              "can't write " + nowhere + ": No such file or directory");
    EXPECT_EQ(mistake_in_writing(folder.path()),
              "can't write " + folder.path() + ": Is a directory");
}

TEST(Files, are_left_as_they_are_by_the_question_whether_they_can_be_written) {
    const TempDir folder;
    const std::string fresh = folder.file("new.jpg");
    EXPECT_EQ(mistake_in_writing(fresh), "");
    EXPECT_FALSE(std::filesystem::exists(fresh));
    const std::string old = folder.write("old.jpg", "old");
    EXPECT_EQ(mistake_in_writing(old), "");
    EXPECT_EQ(content_of(old), "old");
}

TEST(Files, are_left_unread_by_the_question_whether_a_pipe_can_be_written) {
    const TempDir folder;
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(mistake_in_writing(pipe), "");
}

TEST(Files, are_the_same_behind_links) {
    const TempDir folder;
    const std::string file = folder.write("a.jpg", "a");
    const std::string other = folder.write("b.jpg", "a");
    std::filesystem::create_symlink("a.jpg", folder.file("link.jpg"));
    std::filesystem::create_hard_link(file, folder.file("hard.jpg"));
    EXPECT_TRUE(are_same_file(file, folder.path() + "/./a.jpg"));
    EXPECT_TRUE(are_same_file(file, folder.file("link.jpg")));
    EXPECT_TRUE(are_same_file(folder.file("hard.jpg"), file));
    EXPECT_FALSE(are_same_file(file, other));
    EXPECT_TRUE(are_same_file(folder.file("none"),
                              folder.path() + "/../" +
                                  folder.path().substr(folder.path().rfind('/') + 1) + "/none"));
    EXPECT_FALSE(are_same_file(folder.file("none"), folder.file("nothing")));
}

/// New files without names, where the file system takes those, and with them.
class WholeFileWays : public testing::TestWithParam<bool> {
protected:
    WholeFileWays() { use_unnamed_files(GetParam()); }
    ~WholeFileWays() override { use_unnamed_files(true); }
};

INSTANTIATE_TEST_SUITE_P(WholeFile, WholeFileWays, testing::Bool(), [](const auto& way) {
    return std::string(way.param ? "without_names" : "with_names");
});

TEST_P(WholeFileWays, takes_the_place_of_the_old_one_at_its_end) {
    const TempDir folder;
    const std::string name = folder.write("a.jpg", "old");
    {
        WholeFile file(name);
        ASSERT_EQ(file.begin().reason(), "");
        ASSERT_EQ(file.put("new, ").reason(), "");
        ASSERT_EQ(file.put("and more").reason(), "");
        EXPECT_EQ(content_of(name), "old");
        ASSERT_EQ(file.finish().reason(), "");
        EXPECT_EQ(content_of(name), "new, and more");
    }
    EXPECT_EQ(content_of(name), "new, and more");
    EXPECT_EQ(num_files(folder), 1u);
}

TEST_P(WholeFileWays, leaves_the_old_one_when_it_is_given_up) {
    const TempDir folder;
    const std::string name = folder.write("a.jpg", "old");
    {
        WholeFile file(name);
        ASSERT_EQ(file.begin().reason(), "");
        ASSERT_EQ(file.put("new").reason(), "");
    }
    EXPECT_EQ(content_of(name), "old");
    EXPECT_EQ(num_files(folder), 1u);
}

TEST_P(WholeFileWays, keeps_the_rights_of_the_old_one) {
    const TempDir folder;
    const std::string name = folder.write("a.jpg", "old");
    ASSERT_EQ(chmod(name.c_str(), 0640), 0);
    ASSERT_EQ(write_whole(name, "new"), "");
    struct stat status {};
    ASSERT_EQ(stat(name.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_P(WholeFileWays, follows_links) {
    const TempDir folder;
    std::filesystem::create_directory(folder.file("deep"));
    folder.write("deep/a.jpg", "old");
    const std::string link = folder.file("link.jpg");
    std::filesystem::create_symlink("deep/a.jpg", link);
    ASSERT_EQ(write_whole(link, "new"), "");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(content_of(folder.file("deep/a.jpg")), "new");
}

TEST_P(WholeFileWays, has_a_name_as_long_as_names_can_be) {
    const TempDir folder;
    const std::string name = folder.file(std::string(251, 'n') + ".jpg");
    EXPECT_EQ(write_whole(name, "new"), "");
    EXPECT_EQ(content_of(name), "new");
}

TEST_P(WholeFileWays, tells_in_the_systems_words_that_a_device_is_full) {
    const TempDir folder;
    const std::string link = folder.file("full.jpg");
    std::filesystem::create_symlink("/dev/full", link);
    EXPECT_EQ(write_whole(link, "new"), "can't write " + link + ": No space left on device");
    EXPECT_EQ(num_files(folder), 1u);
}

TEST_P(WholeFileWays, leaves_the_old_one_where_there_is_no_room) {
    const TempDir folder;
    const std::string name = folder.write("a.jpg", "old");
    const int status = status_of([&] {
        const rlimit limit{1000, 1000};
        setrlimit(RLIMIT_FSIZE, &limit);
        if (write_whole(name, std::string(3000, 'n')) != "can't write " + name + ": File too large")
            _exit(1);
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(content_of(name), "old");
    EXPECT_EQ(num_files(folder), 1u);
}

TEST_P(WholeFileWays, is_removed_by_a_signal_that_ends_the_program) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const TempDir folder;
        const std::string name = folder.write("a.jpg", "old");
        const int status = status_of([&] {
            std::signal(signal, SIG_DFL);
            remove_new_files_on_signals();
            WholeFile file(name);
            if (file.begin() && file.put("new"))
                raise(signal);
        });
        EXPECT_TRUE(WIFSIGNALED(status)) << signal;
        EXPECT_EQ(WTERMSIG(status), signal);
        EXPECT_EQ(content_of(name), "old");
        EXPECT_EQ(num_files(folder), 1u);
    }
}

TEST_P(WholeFileWays, stays_when_a_signal_is_ignored) {
    const TempDir folder;
    const std::string name = folder.file("a.jpg");
    const int status = status_of([&] {
        std::signal(SIGHUP, SIG_IGN);
        remove_new_files_on_signals();
        WholeFile file(name);
        if (file.begin() && file.put("new")) {
            raise(SIGHUP);
            _exit(file.finish() ? 0 : 1);
        }
        _exit(2);
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(content_of(name), "new");
}

TEST_P(WholeFileWays, tells_that_a_folder_has_taken_its_place) {
    const TempDir folder;
    const std::string name = folder.write("a.jpg", "old");
    {
        WholeFile file(name);
        ASSERT_EQ(file.begin().reason(), "");
        ASSERT_EQ(file.put("new").reason(), "");
        std::filesystem::remove(name);
        std::filesystem::create_directory(name);
        EXPECT_EQ(file.finish().reason(), "can't write " + name + ": Is a directory");
    }
    EXPECT_TRUE(std::filesystem::is_directory(name));
    EXPECT_EQ(num_files(folder), 1u);
}

TEST_P(WholeFileWays, tells_that_its_folder_has_gone) {
    const TempDir folder;
    std::filesystem::create_directory(folder.file("deep"));
    const std::string name = folder.file("deep/a.jpg");
    WholeFile file(name);
    ASSERT_EQ(file.begin().reason(), "");
    ASSERT_EQ(file.put("new").reason(), "");
    std::filesystem::remove_all(folder.file("deep"));
    EXPECT_EQ(file.finish().reason(), "can't write " + name + ": No such file or directory");
    EXPECT_EQ(num_files(folder), 0u);
}

TEST_P(WholeFileWays, tells_what_it_cant_open) {
    const TempDir folder;
    const std::string name = folder.file("socket");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(name.size(), sizeof(address.sun_path));
    name.copy(address.sun_path, name.size());
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    EXPECT_EQ(write_whole(name, "new"), "can't write " + name + ": No such device or address");
    close(listener);
    EXPECT_EQ(num_files(folder), 1u);
}

/// The number in the name of a new file beside others.
unsigned long number_of_new_file(const TempDir& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        const std::string name = entry.path().filename().string();
        if (name.rfind(".orvex-new-", 0) == 0)
            return std::stoul(name.substr(name.rfind('-') + 1));
    }
    ADD_FAILURE() << "there is none";
    return 0;
}

TEST_P(WholeFileWays, gives_up_where_every_name_that_it_tries_is_taken) {
    const TempDir folder;
    const std::string name = folder.write("a.jpg", "old");
    unsigned long number = 0;
    {
        use_unnamed_files(false);
        WholeFile other(folder.file("b.jpg"));
        ASSERT_EQ(other.begin().reason(), "");
        number = number_of_new_file(folder);
        use_unnamed_files(GetParam());
    }
    for (unsigned long i = 1; i <= 1000; ++i)
        folder.write(".orvex-new-" + std::to_string(getpid()) + "-" + std::to_string(number + i),
                     "of another");
    EXPECT_EQ(write_whole(name, "new"), "can't write " + name + ": File exists");
    EXPECT_EQ(content_of(name), "old");
    EXPECT_EQ(num_files(folder), 1001u);
    EXPECT_EQ(write_whole(name, "new"), "") << "the next names are free";
    EXPECT_EQ(content_of(name), "new");
}

TEST_P(WholeFileWays, is_one_of_any_number) {
    const TempDir folder;
    std::vector<std::unique_ptr<WholeFile>> files;
    for (int i = 0; i < 100; ++i) {
        files.push_back(std::make_unique<WholeFile>(folder.file(std::to_string(i))));
        ASSERT_EQ(files.back()->begin().reason(), "");
        ASSERT_EQ(files.back()->put(std::to_string(i)).reason(), "");
    }
    for (int i = 0; i < 100; i += 2)
        ASSERT_EQ(files[static_cast<std::size_t>(i)]->finish().reason(), "");
    files.clear();
    EXPECT_EQ(num_files(folder), 50u);
    EXPECT_EQ(content_of(folder.file("98")), "98");
}

TEST_P(WholeFileWays, is_one_of_several_threads) {
    const TempDir folder;
    std::atomic<int> mistakes = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&, thread] {
            for (int i = 0; i < 50; ++i)
                if (!write_whole(folder.file(std::to_string(thread)), std::to_string(i)).empty())
                    ++mistakes;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(mistakes, 0);
    EXPECT_EQ(num_files(folder), 4u);
    EXPECT_EQ(content_of(folder.file("3")), "49");
}

TEST_P(WholeFileWays, is_the_last_of_those_that_want_one_name) {
    const TempDir folder;
    const std::string name = folder.file("a");
    WholeFile first(name), second(name);
    ASSERT_EQ(first.begin().reason(), "");
    ASSERT_EQ(second.begin().reason(), "");
    ASSERT_EQ(first.put("first").reason(), "");
    ASSERT_EQ(second.put("second").reason(), "");
    ASSERT_EQ(second.finish().reason(), "");
    ASSERT_EQ(first.finish().reason(), "");
    EXPECT_EQ(content_of(name), "first");
    EXPECT_EQ(num_files(folder), 1u);
}

TEST_P(WholeFileWays, refuses_what_comes_too_early_or_too_late) {
    const TempDir folder;
    const std::string name = folder.file("a");
    WholeFile file(name);
    EXPECT_EQ(file.put("x").reason(), "can't write " + name + ": Bad file descriptor");
    EXPECT_EQ(file.finish().reason(), "can't write " + name + ": Bad file descriptor");
    ASSERT_EQ(file.begin().reason(), "");
    EXPECT_EQ(file.begin().reason(), "can't write " + name + ": it is being written already");
    ASSERT_EQ(file.put("x").reason(), "");
    ASSERT_EQ(file.finish().reason(), "");
    EXPECT_FALSE(file.put("y"));
    EXPECT_FALSE(file.finish());
    EXPECT_EQ(content_of(name), "x");
}

TEST_P(WholeFileWays, isnt_written_where_it_has_no_right_to) {
    const TempDir folder;
    ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
    const std::string fresh = folder.file("fresh"), old = folder.write("old", "old");
    ASSERT_EQ(chmod(old.c_str(), 0644), 0);
    const int status = status_of([&] {
        // The superuser may do anything; anybody else would own the folder.
        if (geteuid() != 0)
            chmod(folder.path().c_str(), 0500);
        else if (seteuid(65534) != 0)
            _exit(1);
        if (geteuid() == getuid())
            chmod(old.c_str(), 0400);
        if (write_whole(fresh, "new") != "can't write " + fresh + ": Permission denied")
            _exit(2);
        if (write_whole(old, "new") != "can't write " + old + ": Permission denied")
            _exit(3);
    });
    chmod(folder.path().c_str(), 0700);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(content_of(old), "old");
    EXPECT_EQ(num_files(folder), 1u);
}

TEST_P(WholeFileWays, is_left_by_a_child_that_ends_with_a_copy_of_it) {
    const TempDir folder;
    const std::string name = folder.file("a");
    auto file = std::make_unique<WholeFile>(name);
    ASSERT_EQ(file->begin().reason(), "");
    ASSERT_EQ(status_of([&] {
                  file.reset();
                  remove_new_files_on_signals();
              }),
              0);
    const int status = status_of([] {
        std::signal(SIGTERM, SIG_DFL);
        remove_new_files_on_signals();
        raise(SIGTERM);
    });
    EXPECT_TRUE(WIFSIGNALED(status));
    ASSERT_EQ(file->put("x").reason(), "");
    ASSERT_EQ(file->finish().reason(), "");
    EXPECT_EQ(content_of(name), "x");
}

TEST_P(WholeFileWays, leaves_the_handlers_of_a_program_that_doesnt_ask) {
    const TempDir folder;
    const int status = status_of([&] {
        std::signal(SIGINT, SIG_DFL);
        WholeFile file(folder.file("a"));
        if (!file.begin())
            _exit(1);
        struct sigaction present {};
        sigaction(SIGINT, nullptr, &present);
        _exit(present.sa_handler == SIG_DFL ? 0 : 2);
    });
    EXPECT_EQ(status, 0);
}

TEST_P(WholeFileWays, tells_that_a_pipe_has_no_reader) {
    const TempDir folder;
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int status = status_of([&] {
        std::signal(SIGPIPE, SIG_DFL);
        const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        WholeFile file(pipe);
        if (!file.begin())
            _exit(1);
        close(reader);
        _exit(file.put("x").reason() == "can't write " + pipe + ": Broken pipe" ? 0 : 2);
    });
    EXPECT_EQ(status, 0);
}

bool takes_unnamed_files(const TempDir& folder) {
    const int file = open(folder.path().c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    if (file >= 0)
        close(file);
    return file >= 0;
}

TEST(WholeFile, leaves_nothing_when_the_program_is_killed_where_files_need_no_names) {
    const TempDir folder;
    const std::string name = folder.write("a", "old");
    const int status = status_of([&] {
        WholeFile file(name);
        if (file.begin() && file.put("new"))
            raise(SIGKILL);
    });
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(content_of(name), "old");
    EXPECT_EQ(num_files(folder), takes_unnamed_files(folder) ? 1u : 2u);
}

TEST(WholeFile, is_removed_by_a_signal_on_any_thread_whatever_the_others_do) {
    const TempDir folder;
    const int status = status_of([&] {
        use_unnamed_files(false);
        std::signal(SIGTERM, SIG_DFL);
        remove_new_files_on_signals();
        std::atomic<int> written = 0;
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 3; ++thread)
            threads.emplace_back([&, thread] {
                for (;; ++written)
                    static_cast<void>(write_whole(folder.file(std::to_string(thread)), "new"));
            });
        while (written < 20)
            std::this_thread::yield();
        raise(SIGTERM);
        _exit(1);
    });
    EXPECT_TRUE(WIFSIGNALED(status));
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        EXPECT_EQ(entry.path().filename().string().size(), 1u) << entry.path();
}

} // namespace

} // namespace orvex_test
