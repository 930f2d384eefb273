#include "batch/leavings.h"

#include <sys/stat.h>
#include <unistd.h>

namespace batch {

timespec time_of_files() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return now;
}

namespace {

bool is_earlier(const timespec& a, const timespec& b) {
    return a.tv_sec != b.tv_sec ? a.tv_sec < b.tv_sec : a.tv_nsec < b.tv_nsec;
}

} // namespace

void remove_leavings(const Entry& entry, const timespec& since) {
    for (const OutputFile& file : output_files_of(entry)) {
        const std::string path = path_of(entry, file.name);
        struct stat status {};
        // A rename is a change, too.
        if (lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
            !is_earlier(status.st_ctim, since))
            unlink(path.c_str());
    }
}

} // namespace batch
