#include "program_run.h"

#include <array>
#include <cstdlib>
#include <thread>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <pty.h>
#include <regex.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvex_test {

namespace {

std::string read_all(int file) {
    std::string text;
    std::array<char, 4096> part;
    // A terminal whose other side is closed gives an error at its end.
    for (ssize_t count; (count = read(file, part.data(), part.size())) > 0;)
        text.append(part.data(), static_cast<std::size_t>(count));
    close(file);
    return text;
}

/// In the child: becomes a program.
[[noreturn]] void become(const char* program, const std::string& folder,
                         const std::vector<std::string>& arguments,
                         const std::vector<std::string>& environment) {
    std::vector<char*> words{const_cast<char*>(program)};
    for (const std::string& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    for (const std::string& setting : environment)
        putenv(const_cast<char*>(setting.c_str()));
    if (chdir(folder.c_str()) == 0)
        execv(program, words.data());
    _exit(127);
}

/// Two ends of a stream of the program: which it writes, and which is read here.
struct Stream {
    int theirs = -1;
    int ours = -1;
};

Stream open_pipe() {
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    return {ends[1], ends[0]};
}

Stream open_terminal() {
    Stream stream;
    winsize size{};
    size.ws_col = 60;
    size.ws_row = 20;
    EXPECT_EQ(openpty(&stream.ours, &stream.theirs, nullptr, nullptr, &size), 0);
    fcntl(stream.ours, F_SETFD, FD_CLOEXEC);
    return stream;
}

Outcome run(const std::string& folder, const std::vector<std::string>& arguments,
            const std::vector<std::string>& environment, const Stream& errors,
            const char* program = ORVEX_RENDER) {
    const Stream out = open_pipe();
    const pid_t child = fork();
    if (child == 0) {
        dup2(out.theirs, STDOUT_FILENO);
        dup2(errors.theirs, STDERR_FILENO);
        become(program, folder, arguments, environment);
    }
    close(out.theirs);
    close(errors.theirs);
    Outcome outcome;
    std::thread reader([&] { outcome.errors = read_all(errors.ours); });
    outcome.out = read_all(out.ours);
    reader.join();
    int status = 0;
    waitpid(child, &status, 0);
    outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

} // namespace

Outcome run_render(const std::string& folder, const std::vector<std::string>& arguments,
                   const std::vector<std::string>& environment) {
    return run(folder, arguments, environment, open_pipe());
}

#ifdef ORVEX_VIEW
Outcome run_view(const std::string& folder, const std::vector<std::string>& arguments,
                 const std::vector<std::string>& environment) {
    return run(folder, arguments, environment, open_pipe(), ORVEX_VIEW);
}
#endif

Outcome run_render_limited(const std::string& folder, const std::string& before,
                           const std::vector<std::string>& arguments) {
    std::vector<std::string> words{"-c", before + " && exec \"$0\" \"$@\"", ORVEX_RENDER};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return run(folder, words, {}, open_pipe(), "/bin/sh");
}

std::optional<Outcome> run_render_on_disk(const std::string& folder, int kilobytes,
                                          const std::string& words,
                                          const std::vector<std::string>& arguments) {
    constexpr int not_mounted = 77;
    constexpr int all_kilobytes = 1024;
    const std::string mount =
        "mkdir -p disk && mount -t tmpfs -o size=" + std::to_string(all_kilobytes) +
        "k disk disk || exit " + std::to_string(not_mounted) +
        "; make_room() { rm disk/fill; }; head -c " + std::to_string(all_kilobytes - kilobytes) +
        "k /dev/zero >disk/fill; ";
    // Root may mount by itself, and everybody in a name space of users, where there are any.
    for (const char* const spaces : {"-m", "-rm"}) {
        std::vector<std::string> all{spaces, "/bin/sh", "-c", mount + words, ORVEX_RENDER};
        all.insert(all.end(), arguments.begin(), arguments.end());
        Outcome outcome = run(folder, all, {}, open_pipe(), "/usr/bin/unshare");
        if (outcome.code != not_mounted && !has(outcome.errors, "unshare: "))
            return outcome;
    }
    return std::nullopt;
}

Outcome run_render_on_terminal(const std::string& folder,
                               const std::vector<std::string>& arguments) {
    return run(folder, arguments, {}, open_terminal());
}

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

bool has_match(const std::string& text, const std::string& expression) {
    regex_t compiled;
    if (regcomp(&compiled, expression.c_str(), REG_EXTENDED | REG_NOSUB) != 0) {
        ADD_FAILURE() << "no expression: " << expression;
        return false;
    }
    const bool found = regexec(&compiled, text.c_str(), 0, nullptr, 0) == 0;
    regfree(&compiled);
    return found;
}

std::string sample() {
    return ORVEX_EXAMPLE_DATA "/lighthouse.obj";
}

} // namespace orvex_test
