#include "orvex_kit/private/write_all.h"

#include <cerrno>
#include <ctime>

#include <unistd.h>

namespace orvex::kit {

QuietWrites::QuietWrites() noexcept {
    sigemptyset(&ours);
    sigaddset(&ours, SIGPIPE);
    sigaddset(&ours, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &ours, &before);
    sigset_t waiting;
    sigpending(&waiting);
    for (const int signal : {SIGPIPE, SIGXFSZ})
        if (sigismember(&waiting, signal) == 1)
            sigdelset(&ours, signal);
}

QuietWrites::~QuietWrites() {
    const int kept = errno;
    const timespec at_once{};
    while (sigtimedwait(&ours, nullptr, &at_once) > 0) {
        // taken away
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = kept;
}

int write_all(int file, std::string_view bytes) noexcept {
    const QuietWrites quiet;
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (written == 0 || errno != EINTR)
            return written == 0 ? ENOSPC : errno;
    }
    return 0;
}

} // namespace orvex::kit
