// Stands in the importer's place, and does what its last word says: what a program that somebody
// took over might do.

#include <csignal>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include "orvex_formats/private/importer_protocol.h"

namespace {

using namespace orvex::formats;

void put(const void* bytes, std::size_t size, off_t place) {
    if (pwrite(answer_descriptor, bytes, size, place) != static_cast<ssize_t>(size))
        _exit(9);
}

void put_head(std::uint64_t mark, std::uint64_t size) {
    AnswerHead head;
    head.mark = mark;
    head.size = size;
    put(&head, sizeof head, 0);
}

void say(const std::string& sentence) {
    if (write(sentence_descriptor, sentence.data(), sentence.size()) < 0)
        _exit(8);
}

/// The input is the answer.
void repeat_input() {
    std::vector<unsigned char> bytes(1u << 20);
    const ssize_t size = pread(input_descriptor, bytes.data(), bytes.size(), 0);
    put(bytes.data(), static_cast<std::size_t>(size), sizeof(AnswerHead));
    put_head(answer_mark, sizeof(AnswerHead) + static_cast<std::uint64_t>(size));
}

/// Leaves another process, which answers when this one has ended.
void answer_later() {
    const pid_t parent = getpid();
    if (fork() == 0) {
        close(sentence_descriptor);
        while (getppid() == parent)
            usleep(1000);
        put_head(answer_mark, sizeof(AnswerHead));
    }
}

/// Which descriptors are open, and what else came from the one that started it.
std::string surroundings(int count, char** words, char** environment) {
    std::string told = "open:";
    for (int number = 0; number < 1024; ++number)
        if (fcntl(number, F_GETFD) >= 0)
            told += " " + std::to_string(number);
    told += ", environment:";
    for (char** entry = environment; *entry; ++entry)
        told += std::string(" ") + *entry;
    told += ", words:";
    for (int i = 1; i < count; ++i)
        told += std::string(" ") + words[i];
    const int seals = fcntl(answer_descriptor, F_GET_SEALS);
    const int flags = fcntl(input_descriptor, F_GETFL);
    told += (seals & F_SEAL_GROW) && (seals & F_SEAL_SHRINK) ? ", sealed" : ", not sealed";
    told += (flags & O_ACCMODE) == O_RDONLY ? ", read only" : ", may write";
    return told;
}

} // namespace

int main(int count, char** words, char** environment) {
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    const std::string last = words[count - 1];
    const auto is = [&last](const char* what) { return last.rfind(what, 0) == 0; };
    if (is("repeat"))
        repeat_input();
    else if (is("crash"))
        raise(SIGSEGV);
    else if (is("tire"))
        raise(SIGXCPU);
    else if (is("fail"))
        return 3;
    else if (is("refuse"))
        say("line 7: it isn't to my taste.\n");
    else if (is("tell"))
        say(surroundings(count, words, environment));
    else if (is("talk"))
        for (;;)
            say("blah \x1b[31m ");
    else if (is("hang"))
        for (;;)
            pause();
    else if (is("quiet hang")) {
        close(sentence_descriptor);
        for (;;)
            pause();
    } else if (is("late"))
        answer_later();
    else if (is("garbage")) {
        const std::vector<unsigned char> bytes(4096, 0xff);
        put(bytes.data(), bytes.size(), 0);
    } else if (is("huge"))
        put_head(answer_mark, UINT64_MAX);
    else if (is("tiny"))
        put_head(answer_mark, 3);
    else if (is("grow"))
        say(ftruncate(answer_descriptor, off_t{1} << 40) == 0 ? "it grew" : "it can't grow");
    return 0;
}
