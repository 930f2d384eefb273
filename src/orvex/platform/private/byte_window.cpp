#include "orvex/platform/private/byte_window.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvex {

ByteWindow::ByteWindow(const unsigned char* bytes, std::size_t size)
    : bytes_(bytes)
    , end_(size)
    , size_(size) {}

ByteWindow::~ByteWindow() {
    if (fd_ >= 0)
        ::close(fd_);
}

bool ByteWindow::open(const char* path) {
    // Without blocking, so that a pipe that nobody writes to is refused at once.
    fd_ = ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status {};
    if (fd_ < 0 || ::fstat(fd_, &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    size_ = static_cast<std::uint64_t>(status.st_size);
    buffer_ = std::make_unique_for_overwrite<unsigned char[]>(LARGEST_VIEW);
    bytes_ = buffer_.get();
    return true;
}

const unsigned char* ByteWindow::move_to(std::uint64_t offset, std::size_t count) {
    if (!buffer_ || offset > size_ || count > size_ - offset || count > LARGEST_VIEW)
        return nullptr;
    ssize_t got = 0;
    do
        got = ::pread(fd_, buffer_.get(), LARGEST_VIEW, static_cast<off_t>(offset));
    while (got < 0 && errno == EINTR);
    begin_ = offset;
    end_ = offset + static_cast<std::uint64_t>(std::max<ssize_t>(got, 0));
    return end_ - begin_ >= count ? bytes_ : nullptr;
}

} // namespace orvex
