#include "orvex_kit/whole_file.h"

#include <csignal>
#include <filesystem>
#include <functional>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

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
    std::string mistake = file.begin();
    if (mistake.empty())
        mistake = file.put(content);
    return mistake.empty() ? file.finish() : mistake;
}

/// Does something in a process of its own. @return the status that it ended with
int status_of(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
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

TEST(WholeFile, takes_the_place_of_the_old_one_at_its_end) {
    const TempDir folder;
    const std::string name = folder.write("a.jpg", "old");
    {
        WholeFile file(name);
        ASSERT_EQ(file.begin(), "");
        ASSERT_EQ(file.put("new, "), "");
        ASSERT_EQ(file.put("and more"), "");
        EXPECT_EQ(content_of(name), "old");
        ASSERT_EQ(file.finish(), "");
        EXPECT_EQ(content_of(name), "new, and more");
    }
    EXPECT_EQ(content_of(name), "new, and more");
    EXPECT_EQ(num_files(folder), 1u);
}

TEST(WholeFile, leaves_the_old_one_when_it_is_given_up) {
    const TempDir folder;
    const std::string name = folder.write("a.jpg", "old");
    {
        WholeFile file(name);
        ASSERT_EQ(file.begin(), "");
        ASSERT_EQ(file.put("new"), "");
    }
    EXPECT_EQ(content_of(name), "old");
    EXPECT_EQ(num_files(folder), 1u);
}

TEST(WholeFile, keeps_the_rights_of_the_old_one) {
    const TempDir folder;
    const std::string name = folder.write("a.jpg", "old");
    ASSERT_EQ(chmod(name.c_str(), 0640), 0);
    ASSERT_EQ(write_whole(name, "new"), "");
    struct stat status {};
    ASSERT_EQ(stat(name.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST(WholeFile, follows_links) {
    const TempDir folder;
    std::filesystem::create_directory(folder.file("deep"));
    folder.write("deep/a.jpg", "old");
    const std::string link = folder.file("link.jpg");
    std::filesystem::create_symlink("deep/a.jpg", link);
    ASSERT_EQ(write_whole(link, "new"), "");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(content_of(folder.file("deep/a.jpg")), "new");
}

TEST(WholeFile, has_a_name_as_long_as_names_can_be) {
    const TempDir folder;
    const std::string name = folder.file(std::string(251, 'n') + ".jpg");
    EXPECT_EQ(write_whole(name, "new"), "");
    EXPECT_EQ(content_of(name), "new");
}

TEST(WholeFile, tells_in_the_systems_words_that_a_device_is_full) {
    const TempDir folder;
    const std::string link = folder.file("full.jpg");
    std::filesystem::create_symlink("/dev/full", link);
    EXPECT_EQ(write_whole(link, "new"), "can't write " + link + ": No space left on device");
    EXPECT_EQ(num_files(folder), 1u);
}

TEST(WholeFile, leaves_the_old_one_where_there_is_no_room) {
    const TempDir folder;
    const std::string name = folder.write("a.jpg", "old");
    const int status = status_of([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        setrlimit(RLIMIT_FSIZE, &limit);
        if (write_whole(name, std::string(3000, 'n')) != "can't write " + name + ": File too large")
            _exit(1);
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(content_of(name), "old");
    EXPECT_EQ(num_files(folder), 1u);
}

TEST(WholeFile, is_removed_by_a_signal_that_ends_the_program) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const TempDir folder;
        const std::string name = folder.write("a.jpg", "old");
        const int status = status_of([&] {
            std::signal(signal, SIG_DFL);
            WholeFile file(name);
            if (file.begin().empty() && file.put("new").empty())
                raise(signal);
        });
        EXPECT_TRUE(WIFSIGNALED(status)) << signal;
        EXPECT_EQ(WTERMSIG(status), signal);
        EXPECT_EQ(content_of(name), "old");
        EXPECT_EQ(num_files(folder), 1u);
    }
}

TEST(WholeFile, stays_when_a_signal_is_ignored) {
    const TempDir folder;
    const std::string name = folder.file("a.jpg");
    const int status = status_of([&] {
        std::signal(SIGHUP, SIG_IGN);
        WholeFile file(name);
        if (file.begin().empty() && file.put("new").empty()) {
            raise(SIGHUP);
            _exit(file.finish().empty() ? 0 : 1);
        }
        _exit(2);
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(content_of(name), "new");
}

} // namespace

} // namespace orvex_test
