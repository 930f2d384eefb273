// The program gets copies of a few descriptors, and gives back one block of shared memory whose
// size was settled before, and a sentence. Whatever it does, this side copies, checks and goes on.

#include "orvex_formats/private/importer.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <orvex_names/file_names.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>

#include "orvex_formats/private/descriptor.h"
#include "orvex_formats/private/importer_protocol.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

using Clock = std::chrono::steady_clock;

unsigned long long shown(std::uint64_t number) {
    return number;
}

std::string folder_of(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

} // namespace

Importer installed_importer(std::uint64_t input_size) {
    constexpr std::uint64_t most = std::uint64_t{4} << 30;
    constexpr std::uint64_t bytes_a_second = 10'000'000;
    Importer importer;
    Dl_info module{};
    static const char anchor = 0;
    if (dladdr(&anchor, &module) != 0 && module.dli_fname)
        importer.program =
            names::resolved(folder_of(names::resolved(module.dli_fname)) + "../orvex-import");
    const std::uint64_t more = std::min(input_size, most);
    importer.most_memory = std::min(importer.most_memory + 8 * more, most);
    importer.most_answer = std::min(importer.most_answer + 64 * more, most / 2);
    importer.longest += std::chrono::seconds(static_cast<int>(more / bytes_a_second));
    return importer;
}

// --- What the program gets --------------------------------------------------------------------

namespace {

[[noreturn]] void refuse_start(const char* what) {
    refuse("the importer can't be started: %s: %s", what, std::strerror(errno));
}

/// A copy above the numbers that the program knows.
Descriptor copy_of(int descriptor) {
    constexpr int first = 16;
    Descriptor copy(fcntl(descriptor, F_DUPFD_CLOEXEC, first));
    if (!copy)
        refuse_start("no descriptor is left");
    return copy;
}

Descriptor memory_file(const char* name) {
    const Descriptor made(memfd_create(name, MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!made)
        refuse_start("no shared memory");
    return copy_of(made.get());
}

/// Room that nobody can make larger, nor smaller while it is read.
Descriptor make_room(std::uint64_t size) {
    Descriptor room = memory_file("orvex-import answer");
    if (ftruncate(room.get(), static_cast<off_t>(size)) != 0 ||
        fcntl(room.get(), F_ADD_SEALS, F_SEAL_GROW | F_SEAL_SHRINK | F_SEAL_SEAL) != 0)
        refuse_start("no shared memory");
    return room;
}

Descriptor input_of(const InputFile& input) {
    if (input.get_descriptor() >= 0)
        return copy_of(input.get_descriptor());
    Descriptor file = memory_file("orvex-import input");
    std::vector<unsigned char> piece(256u << 10);
    for (std::uint64_t place = 0; place < input.size();) {
        const auto size =
            static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), input.size() - place));
        input.read(place, piece.data(), size);
        const ssize_t put = pwrite(file.get(), piece.data(), size, static_cast<off_t>(place));
        if (put <= 0)
            refuse_start("no shared memory");
        place += static_cast<std::uint64_t>(put);
    }
    return file;
}

/// Good for being told of, and for names below it; nothing where it can't be opened.
Descriptor folder_for(const Request& request, const InputFile& input) {
    if (!request.may_read_its_folder || input.path().empty())
        return Descriptor();
    const std::string folder = folder_of(input.path());
    const Descriptor opened(
        open(folder.empty() ? "." : folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return opened ? copy_of(opened.get()) : Descriptor();
}

/// Both ends of a pipe.
struct Pipe {
    Pipe() {
        int both[2];
        if (pipe2(both, O_CLOEXEC) != 0)
            refuse_start("no pipe");
        from = Descriptor(both[0]);
        const Descriptor other(both[1]);
        to = copy_of(other.get());
    }
    Descriptor from, to;
};

// --- The process ------------------------------------------------------------------------------

/// What a process is started with, made step by step.
class StartPlan {
public:
    StartPlan() {
        if (posix_spawn_file_actions_init(&files) != 0)
            throw std::bad_alloc();
        if (posix_spawnattr_init(&attributes) != 0) {
            posix_spawn_file_actions_destroy(&files);
            throw std::bad_alloc();
        }
        sigset_t all, none;
        sigfillset(&all);
        sigemptyset(&none);
        check(posix_spawnattr_setsigdefault(&attributes, &all));
        check(posix_spawnattr_setsigmask(&attributes, &none));
        check(posix_spawnattr_setpgroup(&attributes, 0));
        check(posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK |
                                                        POSIX_SPAWN_SETPGROUP));
        for (int standard = 0; standard < 3; ++standard)
            check(posix_spawn_file_actions_addopen(&files, standard, "/dev/null", O_RDWR, 0));
    }
    ~StartPlan() {
        posix_spawn_file_actions_destroy(&files);
        posix_spawnattr_destroy(&attributes);
    }
    StartPlan(const StartPlan&) = delete;
    StartPlan& operator=(const StartPlan&) = delete;

    /// @param from  none: the number stays closed
    void hand_over(const Descriptor& from, int number) {
        if (from)
            check(posix_spawn_file_actions_adddup2(&files, from.get(), number));
        else
            check(posix_spawn_file_actions_addclosefrom_np(&files, number));
    }

    /// @return the process
    pid_t start(std::vector<std::string> words) {
        check(posix_spawn_file_actions_addclosefrom_np(&files, folder_descriptor + 1));
        std::vector<char*> arguments;
        arguments.reserve(words.size() + 1);
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        char locale[] = "LC_ALL=C";
        char* const environment[] = {locale, nullptr};
        pid_t process = -1;
        errno = posix_spawn(&process, words[0].c_str(), &files, &attributes, arguments.data(),
                            environment);
        if (errno != 0)
            refuse_start(words[0].c_str());
        return process;
    }

private:
    static void check(int error) {
        if (error != 0)
            throw std::bad_alloc();
    }

    posix_spawn_file_actions_t files{};
    posix_spawnattr_t attributes{};
};

/// A process that is ended with this, if it hasn't ended itself.
class Child {
public:
    explicit Child(pid_t process)
        : process(process) {}
    ~Child() {
        if (is_running)
            end();
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// @return false where it still runs at that time
    bool wait_until(Clock::time_point deadline) {
        for (;;) {
            const pid_t found = waitpid(process, &status, WNOHANG);
            if (found == process)
                is_running = false;
            else if (found < 0 && errno != EINTR) {
                // A host that takes the end of every process leaves no status for us.
                is_running = is_status_known = false;
            }
            if (!is_running)
                return true;
            if (Clock::now() >= deadline)
                return false;
            const timespec nap = {0, 1'000'000};
            nanosleep(&nap, nullptr);
        }
    }

    /// The signal that ended it; 0 for none.
    int signal() const { return is_status_known && WIFSIGNALED(status) ? WTERMSIG(status) : 0; }
    bool has_succeeded() const {
        return !is_status_known || (WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }

private:
    void end() {
        kill(-process, SIGKILL); // and all that it started
        kill(process, SIGKILL);
        while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
        }
        is_running = false;
    }

    pid_t process;
    int status = 0;
    bool is_running = true, is_status_known = true;
};

// --- What it says -----------------------------------------------------------------------------

/// One line of plain letters, whatever came.
std::string in_sentence(std::string text) {
    for (char& letter : text)
        if (letter < ' ' || letter > '~')
            letter = letter == '\n' || letter == '\t' ? ' ' : '?';
    while (!text.empty() && (text.back() == ' ' || text.back() == '.'))
        text.pop_back();
    return text;
}

/// Listens until the program has nothing more to say, or for so long.
std::string listen_to(const Descriptor& pipe, Clock::time_point deadline) {
    constexpr std::size_t longest = 400;
    std::string text;
    while (text.size() < longest) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd source = {pipe.get(), POLLIN, 0};
        const int found = left > 0 ? poll(&source, 1, static_cast<int>(left)) : 0;
        if (found < 0 && errno == EINTR)
            continue;
        char piece[longest];
        const ssize_t size = found > 0 ? read(pipe.get(), piece, longest - text.size()) : 0;
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            break;
        text.append(piece, static_cast<std::size_t>(size));
    }
    return in_sentence(std::move(text));
}

void check_end(const Child& child, const std::string& sentence, const Importer& importer) {
    if (child.signal() == SIGXCPU)
        refuse("the importer took more than %.3g s",
               std::chrono::duration<double>(importer.longest).count());
    if (child.signal() != 0)
        refuse("the importer ended by signal %d", child.signal());
    if (!sentence.empty())
        refuse("%s", sentence.c_str());
    if (!child.has_succeeded())
        refuse("the importer ended without an answer");
}

/// How much of the room the answer says that it takes.
std::uint64_t size_of_answer(const Descriptor& room, std::uint64_t most) {
    AnswerHead head;
    if (pread(room.get(), &head, sizeof head, 0) != sizeof head || head.mark != answer_mark)
        refuse("the importer ended without an answer");
    if (head.size < sizeof head || head.size > most)
        refuse("the importer's answer says that it has %llu bytes, and there was room for %llu",
               shown(head.size), shown(most));
    return head.size;
}

std::vector<std::string> words_for(const Importer& importer, const Request& request,
                                   bool has_folder) {
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(importer.longest).count();
    std::vector<std::string> words = {importer.program, std::to_string(importer.most_memory),
                                      std::to_string(importer.most_answer), std::to_string(seconds),
                                      has_folder ? "folder" : "alone"};
    words.insert(words.end(), request.words.begin(), request.words.end());
    return words;
}

} // namespace

InputFile ask_importer(const Importer& importer, const Request& request, const InputFile& input) {
    if (importer.program.empty())
        refuse("the program orvex-import, which would read it, isn't installed");
    const Descriptor file = input_of(input), folder = folder_for(request, input);
    Descriptor room = make_room(importer.most_answer);
    Pipe pipe;
    const Clock::time_point deadline = Clock::now() + importer.longest;
    StartPlan plan;
    plan.hand_over(file, input_descriptor);
    plan.hand_over(room, answer_descriptor);
    plan.hand_over(pipe.to, sentence_descriptor);
    plan.hand_over(folder, folder_descriptor);
    Child child(plan.start(words_for(importer, request, static_cast<bool>(folder))));
    pipe.to.close();

    const std::string sentence = listen_to(pipe.from, deadline);
    pipe.from.close(); // who goes on talking is ended by it
    if (!child.wait_until(deadline))
        refuse("the importer took more than %.3g s",
               std::chrono::duration<double>(importer.longest).count());
    check_end(child, sentence, importer);
    const std::uint64_t size = size_of_answer(room, importer.most_answer);
    return InputFile(room.release(), size);
}

} // namespace orvex::formats
