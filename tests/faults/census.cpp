#include "census.h"

#include <ctime>

#include <dirent.h>

#include "fault.h"

namespace orvex_test {
namespace {

std::size_t entries_of(const char* folder) {
    std::size_t count = 0;
    DIR* const directory = opendir(folder);
    if (!directory)
        return 0;
    while (readdir(directory))
        ++count;
    closedir(directory);
    return count;
}

} // namespace

Census take_census() {
    return {living_engine_blocks(), living_gl_objects(), living_egl_objects(),
            entries_of("/proc/self/fd"), entries_of("/proc/self/task")};
}

Census settled_census(const Census& before) {
    Census census = take_census();
    for (int i = 0; i < 2000 && census.exceeds(before); ++i) {
        const timespec pause{0, 1'000'000};
        nanosleep(&pause, nullptr);
        const bool is_alone =
            census.threads <= before.threads && census.descriptors <= before.descriptors;
        census = take_census();
        if (is_alone && i > 2)
            break;
    }
    return census;
}

} // namespace orvex_test
