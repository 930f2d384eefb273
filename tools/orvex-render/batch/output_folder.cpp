#include "batch/output_folder.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace batch {

namespace {

/// A folder that is open.
class Folder {
public:
    explicit Folder(int descriptor)
        : descriptor(descriptor) {}
    ~Folder() {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    int get() const { return descriptor; }
    bool is_open() const { return descriptor >= 0; }
    /// Goes to a folder within it that is no link.
    bool enter(const std::string& name) {
        const int next =
            ::openat(descriptor, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (next < 0)
            return false;
        ::close(std::exchange(descriptor, next));
        return true;
    }

private:
    int descriptor;
};

int open_folder(const std::string& folder) {
    return ::open(folder.empty() ? "." : folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
}

std::string system_words() {
    return std::strerror(errno);
}

/// What is wrong with a folder that can't be entered.
std::string mistake_in_folder(const Folder& within, const std::string& name,
                              const std::string& shown) {
    const std::string words = system_words();
    struct stat status {};
    if (::fstatat(within.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return shown + ": " + words;
    if (S_ISLNK(status.st_mode))
        return shown + " is a link, which may lead out of the output folder";
    return shown + (S_ISDIR(status.st_mode) ? ": " + words : " is no folder");
}

/// Walks along the folders of a name.
/// @param arrive  is called with the folder of the file and the file's own name
template<class Missing, class Arrive>
std::string walk(const std::string& folder, const std::string& name, Missing missing,
                 Arrive arrive) {
    Folder at(open_folder(folder));
    if (!at.is_open())
        return (folder.empty() ? "." : folder) + ": " + system_words();
    std::size_t begin = 0;
    for (std::size_t slash; (slash = name.find('/', begin)) != name.npos; begin = slash + 1) {
        const std::string part = name.substr(begin, slash - begin);
        bool is_done = false;
        if (!at.enter(part)) {
            if (errno != ENOENT)
                return mistake_in_folder(at, part, name.substr(0, slash));
            std::string mistake = missing(at, part, is_done);
            if (!mistake.empty() || is_done)
                return mistake;
            if (!at.enter(part))
                return mistake_in_folder(at, part, name.substr(0, slash));
        }
    }
    return arrive(at, name.substr(begin));
}

} // namespace

std::string mistake_in_place(const std::string& folder, const std::string& name) {
    const auto missing = [](const Folder&, const std::string&, bool& is_done) {
        is_done = true;
        return std::string();
    };
    return walk(folder, name, missing, [&](const Folder& at, const std::string& file) {
        struct stat status {};
        if (::fstatat(at.get(), file.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
            return errno == ENOENT ? std::string() : name + ": " + system_words();
        if (S_ISREG(status.st_mode))
            return std::string();
        return name + (S_ISLNK(status.st_mode)
                           ? " is a link, which may lead out of the output folder"
                           : " is there and is no regular file");
    });
}

std::string make_folders(const std::string& folder, const std::string& name) {
    const auto make = [&](const Folder& at, const std::string& part, bool&) {
        // Another process may have made it meanwhile.
        if (::mkdirat(at.get(), part.c_str(), 0777) == 0 || errno == EEXIST)
            return std::string();
        return "can't make the folder " + part + " of " + name + ": " + system_words();
    };
    return walk(folder, name, make,
                [](const Folder&, const std::string&) { return std::string(); });
}

} // namespace batch
