// Writing beside and renaming. A new file has no name until it is whole; where the file system
// can't do that it has one, which a signal's handler knows (new_file_name.h).

#include "orvex_kit/whole_file.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "orvex_kit/files.h"
#include "orvex_kit/private/new_file_name.h"
#include "orvex_kit/private/unnamed_files.h"
#include "orvex_kit/private/write_all.h"

namespace orvex::kit {

namespace {

std::atomic<bool> unnamed_files_are_used = true;
std::atomic<unsigned> next_number = 0;

/// Where a name leads; the name itself while nothing is there.
std::string resolved(const std::string& name) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::weakly_canonical(name, error);
    return error ? name : path.string();
}

bool is_there(const std::string& place, struct stat& status) {
    return stat(place.c_str(), &status) == 0;
}

std::string mistake_of(const std::string& name, int error) {
    return "can't write " + name + ": " + std::strerror(error);
}

/// How the system calls an open file, whether it has a name or not.
std::string name_of_open(int file) {
    return "/proc/self/fd/" + std::to_string(file);
}

} // namespace

void use_unnamed_files(bool use) {
    unnamed_files_are_used = use;
}

struct WholeFile::WholeFileData {
    std::string name;   ///< as the caller knows it
    std::string place;  ///< the same behind all links
    NewFileName beside; ///< the new file's; empty while it has none
    bool is_new = false;
    int file = -1;

    ~WholeFileData();
    Outcome failure(int error) const { return Outcome::failure(mistake_of(name, error)); }
    Outcome begin();
    Outcome make_new();
    bool make_unnamed();
    Outcome make_named();
    Outcome name_unnamed();
    Outcome rename_beside();
    int close_file();
    template<class Make>
    int make_beside(NewFileName::Change& change, Make make);
};

WholeFile::WholeFile(std::string name)
    : data(std::make_unique<WholeFileData>()) {
    data->name = std::move(name);
}

WholeFile::~WholeFile() = default;

int WholeFile::WholeFileData::close_file() {
    const int closed = close(file);
    file = -1;
    return closed;
}

WholeFile::WholeFileData::~WholeFileData() {
    if (file >= 0)
        close_file();
    if (beside.text().empty() || !beside.is_ours())
        return;
    NewFileName::Change change(beside);
    unlink(beside.text().c_str());
    change.clear();
}

Outcome WholeFile::begin() {
    if (data->file >= 0)
        return Outcome::failure("can't write " + data->name + ": it is being written already");
    return data->begin();
}

Outcome WholeFile::WholeFileData::begin() {
    place = resolved(name);
    struct stat status {};
    if (!is_there(place, status))
        return make_new();
    if (S_ISDIR(status.st_mode))
        return failure(EISDIR);
    if (!S_ISREG(status.st_mode)) {
        file = open(place.c_str(), O_WRONLY | O_CLOEXEC);
        return file < 0 ? failure(errno) : Outcome::success();
    }
    // A file that is kept from being written isn't replaced either.
    if (access(place.c_str(), W_OK) != 0)
        return failure(errno);
    Outcome made = make_new();
    if (made && fchmod(file, status.st_mode & 07777) != 0)
        return failure(errno);
    return made;
}

Outcome WholeFile::WholeFileData::make_new() {
    Outcome made = unnamed_files_are_used && make_unnamed() ? Outcome::success() : make_named();
    is_new = static_cast<bool>(made);
    return made;
}

/// It can get a name only through the system's list of open files.
bool WholeFile::WholeFileData::make_unnamed() {
    const std::string folder = folder_of(place);
    file = open(folder.empty() ? "." : folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    if (file >= 0 && access(name_of_open(file).c_str(), F_OK) != 0)
        close_file();
    return file >= 0;
}

/// Finds a name that nothing has, short, as that of the output may be as long as a name can be.
/// @param make  makes a file of a name; false with `errno` where it can't
/// @return 0, or the system's number
template<class Make>
int WholeFile::WholeFileData::make_beside(NewFileName::Change& change, Make make) {
    for (int tries = 0; tries < 1000; ++tries) {
        const std::string candidate = folder_of(place) + ".orvex-new-" + std::to_string(getpid()) +
                                      "-" + std::to_string(next_number++);
        if (make(candidate.c_str())) {
            change.set(candidate);
            return 0;
        }
        if (errno != EEXIST)
            return errno;
    }
    return EEXIST;
}

Outcome WholeFile::WholeFileData::make_named() {
    NewFileName::Change change(beside);
    const int error = make_beside(change, [&](const char* candidate) {
        file = open(candidate, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        return file >= 0;
    });
    return error != 0 ? failure(error) : Outcome::success();
}

Outcome WholeFile::put(std::string_view bytes) {
    const int error = data->file < 0 ? EBADF : write_all(data->file, bytes);
    return error != 0 ? data->failure(error) : Outcome::success();
}

Outcome WholeFile::finish() {
    if (data->file < 0)
        return data->failure(EBADF);
    // Some systems tell of a full disk only now. Pipes and devices have nothing to sync.
    if (data->is_new && fsync(data->file) != 0)
        return data->failure(errno);
    if (data->is_new && data->beside.text().empty()) {
        Outcome named = data->name_unnamed();
        if (named)
            data->close_file();
        return named;
    }
    if (data->close_file() != 0)
        return data->failure(errno);
    return data->is_new ? data->rename_beside() : Outcome::success();
}

/// Only a name that is free can be given at once; an old file is replaced by way of another name.
Outcome WholeFile::WholeFileData::name_unnamed() {
    const std::string open_file = name_of_open(file);
    const auto give = [&](const char* to) {
        return linkat(AT_FDCWD, open_file.c_str(), AT_FDCWD, to, AT_SYMLINK_FOLLOW) == 0;
    };
    if (give(place.c_str()))
        return Outcome::success();
    if (errno != EEXIST)
        return failure(errno);
    NewFileName::Change change(beside);
    if (const int error = make_beside(change, give); error != 0)
        return failure(error);
    if (std::rename(beside.text().c_str(), place.c_str()) != 0)
        return failure(errno);
    change.clear();
    return Outcome::success();
}

Outcome WholeFile::WholeFileData::rename_beside() {
    NewFileName::Change change(beside);
    if (std::rename(beside.text().c_str(), place.c_str()) != 0)
        return failure(errno);
    change.clear();
    return Outcome::success();
}

void remove_new_files_on_signals() {
    listen_for_ending_signals();
}

std::string mistake_in_writing(const std::string& name) {
    // To open a pipe would wait for its reader, and to close it would tell him that this was all.
    struct stat status {};
    const bool is_other =
        is_there(name, status) && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
    if (!is_other)
        return WholeFile(name).begin().reason();
    return access(name.c_str(), W_OK) == 0 ? "" : mistake_of(name, errno);
}

bool are_same_file(const std::string& a, const std::string& b) {
    std::error_code error;
    return std::filesystem::equivalent(a, b, error) || resolved(a) == resolved(b);
}

} // namespace orvex::kit
