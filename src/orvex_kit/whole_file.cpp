// Writing beside and renaming. The name of the new file also stands where a signal's handler finds
// it: from the moment at which there is such a file to the moment at which it is one no longer.

#include "orvex_kit/whole_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "orvex_kit/files.h"

namespace orvex::kit {

namespace {

constexpr std::array ending_signals = {SIGINT, SIGTERM, SIGHUP};

/// What a handler may touch: the new file's name, empty without one.
char pending[PATH_MAX];

/// Runs as a handler: the signal that it raises arrives when it has returned.
void remove_pending(int signal) {
    if (pending[0] != '\0')
        unlink(pending);
    std::signal(signal, SIG_DFL);
    raise(signal);
}

/// Keeps the signals away from the steps between which a name and its file don't agree.
class Quiet {
public:
    Quiet() {
        sigset_t ours;
        sigemptyset(&ours);
        for (const int signal : ending_signals)
            sigaddset(&ours, signal);
        pthread_sigmask(SIG_BLOCK, &ours, &before);
    }
    ~Quiet() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    sigset_t before;
};

/// A signal that is ignored, as under nohup, or that the program handles itself, is left so.
void listen_for_signals() {
    for (const int signal : ending_signals) {
        struct sigaction present {};
        sigaction(signal, nullptr, &present);
        if (present.sa_handler == SIG_DFL)
            std::signal(signal, remove_pending);
    }
}

/// Where a name leads; the name itself while nothing is there.
std::string resolved(const std::string& name) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::weakly_canonical(name, error);
    return error ? name : path.string();
}

bool is_there(const std::string& place, struct stat& status) {
    return stat(place.c_str(), &status) == 0;
}

} // namespace

WholeFile::WholeFile(std::string name)
    : name(std::move(name)) {}

WholeFile::~WholeFile() {
    if (file >= 0)
        close(file);
    const Quiet quiet;
    if (!beside.empty())
        unlink(beside.c_str());
    pending[0] = '\0';
}

std::string WholeFile::mistake(int error) const {
    return "can't write " + name + ": " + std::strerror(error);
}

std::string WholeFile::begin() {
    place = resolved(name);
    struct stat status {};
    if (!is_there(place, status))
        return make_beside();
    if (S_ISDIR(status.st_mode))
        return mistake(EISDIR);
    if (!S_ISREG(status.st_mode)) {
        file = open(place.c_str(), O_WRONLY | O_CLOEXEC);
        return file < 0 ? mistake(errno) : "";
    }
    // A file that is kept from being written isn't replaced either.
    if (access(place.c_str(), W_OK) != 0)
        return mistake(errno);
    const std::string wrong = make_beside();
    if (wrong.empty() && fchmod(file, status.st_mode & 07777) != 0)
        return mistake(errno);
    return wrong;
}

/// The name is short, as that of the output may be as long as a name can be.
std::string WholeFile::make_beside() {
    listen_for_signals();
    const Quiet quiet;
    for (int number = 0; number < 1000; ++number) {
        const std::string candidate = folder_of(place) + ".orvex-new-" + std::to_string(getpid()) +
                                      "-" + std::to_string(number);
        file = open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file < 0 && errno == EEXIST)
            continue;
        if (file < 0)
            return mistake(errno);
        beside = candidate;
        candidate.copy(pending, sizeof(pending) - 1);
        pending[std::min(candidate.size(), sizeof(pending) - 1)] = '\0';
        return "";
    }
    return mistake(EEXIST);
}

std::string WholeFile::put(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (written == 0 || errno != EINTR)
            return mistake(written == 0 ? ENOSPC : errno);
    }
    return "";
}

std::string WholeFile::finish() {
    // Some systems tell of a full disk only now. Pipes and devices have nothing to sync.
    if (!beside.empty() && fsync(file) != 0)
        return mistake(errno);
    const int closed = close(file);
    file = -1;
    if (closed != 0)
        return mistake(errno);
    if (beside.empty())
        return "";
    const Quiet quiet;
    if (std::rename(beside.c_str(), place.c_str()) != 0)
        return mistake(errno);
    beside.clear();
    pending[0] = '\0';
    return "";
}

std::string mistake_in_writing(const std::string& name) {
    // To open a pipe would wait for its reader, and to close it would tell him that this was all.
    struct stat status {};
    const bool is_other =
        is_there(name, status) && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
    if (!is_other)
        return WholeFile(name).begin();
    return access(name.c_str(), W_OK) == 0 ? ""
                                           : "can't write " + name + ": " + std::strerror(errno);
}

bool are_same_file(const std::string& a, const std::string& b) {
    std::error_code error;
    return std::filesystem::equivalent(a, b, error) || resolved(a) == resolved(b);
}

} // namespace orvex::kit
