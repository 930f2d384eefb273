#include "orvex/platform/private/file_bytes.h"

#include <cerrno>
#include <new>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "orvex/platform/private/large_pages.h"

namespace orvex {

namespace {

class Descriptor {
public:
    // Without blocking, so that a pipe that nobody writes to is refused at once.
    explicit Descriptor(const char* path)
        : fd(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~Descriptor() {
        if (fd >= 0)
            ::close(fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return fd; }

private:
    int fd;
};

bool is_regular_file(int fd, std::size_t& size) {
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    size = static_cast<std::size_t>(status.st_size);
    return true;
}

bool read_fully(int fd, char* bytes, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::read(fd, bytes + done, size - done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace

bool FileBytes::read(const char* path, std::size_t limit) {
    contents.reset();
    num_bytes = 0;
    if (!path)
        return false;
    const Descriptor file(path);
    std::size_t size = 0;
    if (file.get() < 0 || !is_regular_file(file.get(), size) || size > limit)
        return false;
    std::unique_ptr<char[]> bytes(new (std::nothrow) char[size + 1]);
    if (!bytes)
        return false;
    advise_filling(bytes.get(), size);
    if (!read_fully(file.get(), bytes.get(), size))
        return false;
    bytes[size] = '\0';
    contents = std::move(bytes);
    num_bytes = size;
    return true;
}

} // namespace orvex
