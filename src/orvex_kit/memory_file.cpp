#include "orvex_kit/private/memory_file.h"

#include <cerrno>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvex::kit {

MemoryFile::MemoryFile()
    : file(memfd_create("picture", MFD_CLOEXEC)) {}

MemoryFile::~MemoryFile() {
    if (file >= 0)
        close(file);
}

std::string MemoryFile::name() const {
    return "/proc/self/fd/" + std::to_string(file);
}

bool MemoryFile::read(std::string& bytes) const {
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

} // namespace orvex::kit
