// SHA-256 by Nettle: plain functions on a record, without a library's start, a configuration or
// memory of its own, which suits processes that are forked and shut in.

#include "batch/sum.h"

#include <cerrno>

#include <fcntl.h>
#include <nettle/sha2.h>
#include <sys/stat.h>
#include <unistd.h>

namespace batch {

struct Sum::State {
    sha256_ctx context;
};

Sum::Sum()
    : state(std::make_unique<State>()) {
    sha256_init(&state->context);
}

Sum::~Sum() = default;

void Sum::add(std::string_view bytes) {
    sha256_update(&state->context, bytes.size(),
                  reinterpret_cast<const std::uint8_t*>(bytes.data()));
}

std::array<std::uint8_t, 32> Sum::finish() {
    std::array<std::uint8_t, 32> result;
    sha256_digest(&state->context, result.size(), result.data());
    return result;
}

std::string Sum::finish_as_text() {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : finish())
        text += {digits[byte >> 4], digits[byte & 15]};
    return text;
}

std::string sum_of(std::string_view bytes) {
    Sum sum;
    sum.add(bytes);
    return sum.finish_as_text();
}

namespace {

class File {
public:
    /// What is no regular file isn't waited for.
    explicit File(const std::string& path)
        : descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
    ~File() {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    bool is_regular() const {
        struct stat status {};
        return descriptor >= 0 && ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    }
    /// @return -1 when it can't be read
    ssize_t read(std::string& block) const {
        ssize_t count;
        do
            count = ::read(descriptor, block.data(), block.size());
        while (count < 0 && errno == EINTR);
        return count;
    }

private:
    int descriptor;
};

} // namespace

std::optional<FileSum> sum_of_file(const std::string& path) {
    const File file(path);
    if (!file.is_regular())
        return std::nullopt;
    Sum sum;
    FileSum result;
    std::string block(65536, '\0');
    for (ssize_t count; (count = file.read(block)) != 0;) {
        if (count < 0)
            return std::nullopt;
        sum.add(std::string_view(block).substr(0, static_cast<std::size_t>(count)));
        result.bytes += static_cast<std::uint64_t>(count);
    }
    result.text = sum.finish_as_text();
    return result;
}

} // namespace batch
