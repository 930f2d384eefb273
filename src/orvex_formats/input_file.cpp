#include "orvex_formats/private/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

/// @return the size, or -1 for what is no regular file
std::int64_t size_of_regular_file(int descriptor) {
    struct stat found {};
    if (fstat(descriptor, &found) != 0 || !S_ISREG(found.st_mode))
        return -1;
    return found.st_size;
}

} // namespace

InputFile::InputFile(const std::string& path)
    : name(path) {
    // Opening a FIFO would wait for its other end.
    descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        refuse_format("the file can't be opened: %s", std::strerror(errno));
    const std::int64_t size = size_of_regular_file(descriptor);
    if (size < 0) {
        close(std::exchange(descriptor, -1));
        refuse_format("no regular file");
    }
    num_bytes = static_cast<std::uint64_t>(size);
}

InputFile::InputFile(std::vector<unsigned char> bytes, std::string path)
    : name(std::move(path))
    , memory(std::move(bytes))
    , num_bytes(memory.size()) {}

InputFile::InputFile(InputFile&& other) noexcept
    : name(std::move(other.name))
    , memory(std::move(other.memory))
    , descriptor(std::exchange(other.descriptor, -1))
    , num_bytes(std::exchange(other.num_bytes, 0))
    , around(std::move(other.around)) {}

InputFile::~InputFile() {
    if (descriptor >= 0)
        close(descriptor);
}

void InputFile::read(std::uint64_t offset, void* to, std::size_t size) const {
    if (offset > num_bytes || size > num_bytes - offset)
        refuse("byte %llu: the file is cut off", static_cast<unsigned long long>(num_bytes));
    auto* next = static_cast<unsigned char*>(to);
    if (descriptor < 0) {
        std::copy_n(memory.begin() + static_cast<std::ptrdiff_t>(offset), size, next);
        return;
    }
    for (std::size_t left = size; left > 0;) {
        const ssize_t got = pread(descriptor, next, left, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            refuse("byte %llu can't be read: %s", static_cast<unsigned long long>(offset),
                   std::strerror(errno));
        if (got == 0)
            refuse("byte %llu: the file became shorter while it was read",
                   static_cast<unsigned long long>(offset));
        next += got;
        offset += static_cast<std::uint64_t>(got);
        left -= static_cast<std::size_t>(got);
    }
}

bool has_suffix(const std::string& path, const std::string& suffix) {
    return path.size() >= suffix.size() &&
           std::equal(suffix.rbegin(), suffix.rend(), path.rbegin(), [](char small, char letter) {
               return small == (letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter);
           });
}

} // namespace orvex::formats
