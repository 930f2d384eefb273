#include "orvex/platform/private/byte_window.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvex {

ByteWindow::ByteWindow(const unsigned char* bytes, std::size_t size)
    : bytes(bytes)
    , end(size)
    , file_size(size) {}

ByteWindow::~ByteWindow() {
    if (descriptor >= 0)
        ::close(descriptor);
}

bool ByteWindow::open(const char* path) {
    // Without blocking, so that a pipe that nobody writes to is refused at once.
    descriptor = ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status {};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    file_size = static_cast<std::uint64_t>(status.st_size);
    buffer = std::make_unique_for_overwrite<unsigned char[]>(largest_view);
    bytes = buffer.get();
    return true;
}

const unsigned char* ByteWindow::move_to(std::uint64_t offset, std::size_t count) {
    if (!buffer || offset > file_size || count > file_size - offset || count > largest_view)
        return nullptr;
    ssize_t got = 0;
    do
        got = ::pread(descriptor, buffer.get(), largest_view, static_cast<off_t>(offset));
    while (got < 0 && errno == EINTR);
    begin = offset;
    end = offset + static_cast<std::uint64_t>(std::max<ssize_t>(got, 0));
    return end - begin >= count ? bytes : nullptr;
}

} // namespace orvex
