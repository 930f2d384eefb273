// How a program that isn't trusted is started, listened to and got rid of.

#include <chrono>
#include <csignal>
#include <set>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "orvex_formats/private/importer.h"
#include "orvex_formats/private/refusal.h"
#include "tests/support/limit.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::formats;

/// What becomes of asking a program that does as it is told.
std::string end_of(const std::string& word, const InputFile& input, bool may_read_folder = false) {
    Importer importer;
    importer.program = ORVEX_FAKE_IMPORTER;
    importer.most_answer = 64u << 10;
    if (word.find("hang") != word.npos)
        importer.longest = std::chrono::milliseconds(300);
    try {
        return "answer of " +
               std::to_string(
                   ask_importer(importer, {{"model", word}, may_read_folder}, input).size());
    } catch (const Refusal& refusal) {
        EXPECT_TRUE(refusal.is_format_known());
        return refusal.what();
    }
}

std::string end_of(const std::string& word) {
    return end_of(word, InputFile(std::vector<unsigned char>(100, 'x')));
}

TEST(Importer, hands_back_what_a_program_answers) {
    EXPECT_EQ(end_of("repeat"), "answer of 116");
}

TEST(Importer, keeps_the_reason_of_a_refusal_in_one_plain_line) {
    EXPECT_EQ(end_of("refuse"), "line 7: it isn't to my taste");
}

TEST(Importer, turns_every_end_of_the_program_into_a_reason) {
    EXPECT_EQ(end_of("crash"), "the importer ended by signal 11");
    EXPECT_EQ(end_of("fail"), "the importer ended without an answer");
    EXPECT_EQ(end_of("nothing"), "the importer ended without an answer");
    EXPECT_EQ(end_of("hang"), "the importer took more than 0.3 s");
    EXPECT_EQ(end_of("quiet hang"), "the importer took more than 0.3 s");
    EXPECT_EQ(end_of("tire"), "the importer took more than 20 s") << "of the processor's time";
    EXPECT_EQ(end_of("talk"), "the importer ended by signal 13");
}

TEST(Importer, believes_no_answer_that_cant_be_one) {
    EXPECT_EQ(end_of("garbage"), "the importer ended without an answer");
    // Whoever writes later is either too late, or gives an answer that is checked like any other.
    const std::string late = end_of("late");
    EXPECT_TRUE(late == "the importer ended without an answer" || late == "answer of 16") << late;
    EXPECT_EQ(end_of("huge"), "the importer's answer says that it has 18446744073709551615 bytes, "
                              "and there was room for 65536");
    EXPECT_EQ(end_of("tiny"),
              "the importer's answer says that it has 3 bytes, and there was room for 65536");
    EXPECT_EQ(end_of("grow"), "it can't grow");
}

TEST(Importer, gives_the_program_nothing_but_what_it_needs) {
    // A descriptor that a careless host lets every program have.
    const TempDir folder;
    const std::string path = folder.write("model.x", "xof");
    const int careless = open("/dev/null", O_RDONLY);
    EXPECT_EQ(end_of("tell", InputFile(path), true),
              "open: 0 1 2 3 4 5 6, environment: LC_ALL=C, words: 536870912 65536 20 folder model "
              "tell, sealed, read only");
    EXPECT_EQ(end_of("tell", InputFile(path)),
              "open: 0 1 2 3 4 5, environment: LC_ALL=C, words: 536870912 65536 20 alone model "
              "tell, sealed, read only");
    close(careless);
}

TEST(Importer, does_without_a_program_or_with_one_that_cant_be_run) {
    const InputFile input(std::vector<unsigned char>(1));
    const auto reason_of = [&input](const std::string& program) -> std::string {
        Importer importer;
        importer.program = program;
        try {
            ask_importer(importer, {{"model", "repeat"}, false}, input);
        } catch (const Refusal& refusal) {
            return refusal.what();
        }
        return "";
    };
    EXPECT_EQ(reason_of(""), "the program orvex-import, which would read it, isn't installed");
    EXPECT_EQ(reason_of("/nowhere"),
              "the importer can't be started: /nowhere: No such file or directory");
}

TEST(Importer, says_what_it_lacks_where_a_host_has_no_descriptors_left) {
    const TempDir folder;
    const std::string path = folder.write("model.x", "xof");
    const Limit limit(RLIMIT_NOFILE, 64);
    const InputFile file(path);
    std::vector<int> taken;
    for (int one = open("/dev/null", O_RDONLY); one >= 0; one = open("/dev/null", O_RDONLY))
        taken.push_back(one);
    const std::string start = "the importer can't be started: ", end = ": Too many open files";
    EXPECT_EQ(end_of("repeat"), start + "no shared memory" + end);
    EXPECT_EQ(end_of("repeat", file), start + "no descriptor is left" + end);
    std::set<std::string> reasons;
    std::string reason;
    while (reason != "answer of 116" && !taken.empty()) {
        close(taken.back());
        taken.pop_back();
        reason = end_of("repeat");
        reasons.insert(reason);
    }
    EXPECT_EQ(reasons, (std::set<std::string>{start + "no descriptor is left" + end,
                                              start + "no pipe" + end, "answer of 116"}));
    // None stays open: the next is the lowest of those that are given back.
    const int lowest = taken.empty() ? -1 : taken.front();
    for (const int one : taken)
        close(one);
    const int next = open("/dev/null", O_RDONLY);
    EXPECT_EQ(next, lowest);
    close(next);
}

TEST(Importer, says_what_it_lacks_where_no_file_may_be_so_large) {
    struct sigaction before {};
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGXFSZ, &ignore, &before);
    const std::string reason = "the importer can't be started: no shared memory: File too large";
    for (const rlim_t most : {rlim_t{50}, rlim_t{1000}}) { // less than the input, and the room
        const Limit limit(RLIMIT_FSIZE, most);
        EXPECT_EQ(end_of("repeat"), reason);
    }
    sigaction(SIGXFSZ, &before, nullptr);
    EXPECT_EQ(end_of("repeat"), "answer of 116");
}

TEST(Importer, does_without_a_status_where_the_host_takes_the_end_of_every_process) {
    struct sigaction before {};
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGCHLD, &ignore, &before);
    EXPECT_EQ(end_of("repeat"), "answer of 116");
    EXPECT_EQ(end_of("crash"), "the importer ended without an answer");
    sigaction(SIGCHLD, &before, nullptr);
}

TEST(Importer, may_take_more_for_larger_files) {
    const Importer small = installed_importer(0), large = installed_importer(100'000'000);
    const Importer largest = installed_importer(UINT64_MAX);
    EXPECT_EQ(small.most_memory, 512u << 20);
    EXPECT_EQ(small.longest, std::chrono::seconds(20));
    EXPECT_EQ(large.most_memory, (512u << 20) + 800'000'000u);
    EXPECT_EQ(large.longest, std::chrono::seconds(30));
    EXPECT_EQ(largest.most_memory, std::uint64_t{4} << 30);
    EXPECT_EQ(largest.most_answer, std::uint64_t{2} << 30);
}

} // namespace

} // namespace orvex_test
