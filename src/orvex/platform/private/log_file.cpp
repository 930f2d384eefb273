#include "orvex/platform/private/log_file.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace orvex {

void LogFile::open(const char* filename, bool append) {
    close();
    const int mode = append ? O_APPEND : O_TRUNC;
    descriptor = ::open(filename, O_WRONLY | O_CREAT | O_CLOEXEC | mode, 0666);
}

void LogFile::write(std::string_view text) {
    while (descriptor >= 0 && !text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written > 0)
            text.remove_prefix(static_cast<std::size_t>(written));
        else if (written == 0 || errno != EINTR)
            close();
    }
}

void LogFile::close() {
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

} // namespace orvex
