#include "batch/output_folder.h"

#include <cerrno>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace batch {

namespace {

/// A folder on the way from the root, which isn't closed with it.
class Folder {
public:
    explicit Folder(int root)
        : root(root)
        , descriptor(root) {}
    ~Folder() { leave(); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    int get() const { return descriptor; }
    /// Goes to a folder within it that is no link.
    bool enter(const std::string& name) {
        const int next =
            ::openat(descriptor, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (next < 0)
            return false;
        leave();
        descriptor = next;
        return true;
    }

private:
    int root;
    int descriptor;

    void leave() const {
        if (descriptor != root)
            ::close(descriptor);
    }
};

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

enum class Missing { fine, made };

/// Enters the folders of a name.
/// @param begin  becomes where the file's own name begins; npos where a folder isn't there
std::string enter_folders(Folder& at, const std::string& name, Missing missing,
                          std::size_t& begin) {
    begin = 0;
    for (std::size_t slash; (slash = name.find('/', begin)) != name.npos; begin = slash + 1) {
        const std::string part = name.substr(begin, slash - begin);
        if (at.enter(part))
            continue;
        if (errno == ENOENT && missing == Missing::fine) {
            begin = name.npos;
            return "";
        }
        // Another process may have made it meanwhile.
        if (errno == ENOENT && ::mkdirat(at.get(), part.c_str(), 0777) != 0 && errno != EEXIST)
            return "can't make the folder " + name.substr(0, slash) + ": " + system_words();
        if (!at.enter(part))
            return mistake_in_folder(at, part, name.substr(0, slash));
    }
    return "";
}

} // namespace

OutputFolder::OutputFolder(std::string path)
    : root(::open(path.empty() ? "." : path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {
    if (root < 0)
        reason = "can't write to the folder " + path + ": " + system_words();
}

OutputFolder::~OutputFolder() {
    if (root >= 0)
        ::close(root);
}

std::string OutputFolder::mistake_in_place(const std::string& name) const {
    std::size_t begin = 0;
    Folder at(root);
    if (std::string mistake = enter_folders(at, name, Missing::fine, begin);
        !mistake.empty() || begin == name.npos)
        return mistake;
    struct stat status {};
    if (::fstatat(at.get(), name.c_str() + begin, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? "" : name + ": " + system_words();
    if (S_ISREG(status.st_mode))
        return "";
    return name + (S_ISLNK(status.st_mode) ? " is a link, which may lead out of the output folder"
                                           : " is there and is no regular file");
}

void OutputFolder::look_at(const std::string& inner) {
    constexpr std::size_t most = 10000; // more are looked at one by one
    looked_at = inner;
    odd.clear();
    std::size_t begin = 0;
    Folder at(root);
    is_odd = !enter_folders(at, inner, Missing::fine, begin).empty();
    if (is_odd || begin == inner.npos)
        return;
    const int readable = ::openat(at.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* const entries = readable >= 0 ? ::fdopendir(readable) : nullptr;
    is_odd = !entries;
    while (const dirent* const entry = entries && !is_odd ? ::readdir(entries) : nullptr)
        if (entry->d_type != DT_REG) {
            odd.insert(entry->d_name);
            is_odd = odd.size() > most;
        }
    if (entries)
        ::closedir(entries);
    else if (readable >= 0)
        ::close(readable);
}

bool OutputFolder::may_lack_place(const std::string& name) {
    const std::size_t begin = name.rfind('/') + 1;
    if (!looked_at || name.compare(0, begin, *looked_at) != 0)
        look_at(name.substr(0, begin));
    constexpr std::size_t longest = 255;
    return is_odd || name.size() - begin > longest ||
           (!odd.empty() && odd.count(name.substr(begin)) > 0);
}

std::string OutputFolder::make_folders(const std::string& name) const {
    std::size_t begin = 0;
    Folder at(root);
    return enter_folders(at, name, Missing::made, begin);
}

std::string make_output_folder(const std::string& path) {
    constexpr mode_t mode = 0777;
    if (path.empty() || ::mkdir(path.c_str(), mode) == 0 || errno == EEXIST)
        return "";
    return "can't make the folder " + path + ": " + std::strerror(errno);
}

} // namespace batch
