// The engine's writer is told to say nothing of a full disk. So it writes into memory, where the
// end of the picture tells whether all of it is there, and the bytes go on from here.

#include "picture_file.h"

#include <cerrno>
#include <cstring>
#include <string_view>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <orvex/assets/textures/texture_mgr.h>
#include <orvex_kit/whole_file.h>

using namespace orvex::kit;

namespace {

/// A file in memory, that has a name while it is open.
class MemoryFile {
public:
    MemoryFile()
        : file(memfd_create("picture", MFD_CLOEXEC)) {}
    ~MemoryFile() {
        if (file >= 0)
            close(file);
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    bool is_open() const { return file >= 0; }
    std::string name() const { return "/proc/self/fd/" + std::to_string(file); }
    /// All that was written to it. @return false when it can't be read again
    bool read(std::string& bytes) const {
        struct stat status {};
        if (fstat(file, &status) != 0)
            return false;
        bytes.resize(static_cast<std::size_t>(status.st_size));
        std::size_t have = 0;
        while (have < bytes.size()) {
            const ssize_t count =
                pread(file, bytes.data() + have, bytes.size() - have, static_cast<off_t>(have));
            if (count == 0 || (count < 0 && errno != EINTR))
                return false;
            have += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
        return true;
    }

private:
    int file;
};

/// Whether a picture has its end, which nothing within a picture looks like.
bool is_whole(std::string_view bytes) {
    return bytes.starts_with("\xff\xd8") && bytes.ends_with("\xff\xd9");
}

/// The picture in the writer's format. @return whether it came whole
bool take_picture(orvex::Renderer* renderer, std::string& bytes) {
    const MemoryFile memory;
    return memory.is_open() &&
           orvex::TextureMgr::get()->do_screenshot(renderer, memory.name().c_str()) &&
           memory.read(bytes) && is_whole(bytes);
}

} // namespace

std::string write_picture(orvex::Renderer* renderer, const std::string& name) {
    std::string bytes;
    errno = 0;
    if (!take_picture(renderer, bytes))
        return "can't write " + name + ": " +
               (errno != 0 ? std::strerror(errno) : "the picture came out cut");
    WholeFile file(name);
    std::string mistake = file.begin();
    if (mistake.empty())
        mistake = file.put(bytes);
    return mistake.empty() ? file.finish() : mistake;
}
