#include "batch/unnamed_file.h"

#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace batch {

std::string folder_for_files() {
    const char* const named = std::getenv("TMPDIR");
    return named && *named ? named : "/tmp";
}

int open_unnamed_file() {
    const std::string folder = folder_for_files();
    const int file = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (file >= 0)
        return file;
    // Not every file system takes files without a name.
    std::string name = folder + "/orvex-render-XXXXXX";
    const int named = ::mkostemp(name.data(), O_CLOEXEC);
    if (named >= 0)
        ::unlink(name.c_str());
    return named;
}

} // namespace batch
