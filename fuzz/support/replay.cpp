// Runs a fuzz target over files, and over those of folders, once each: the corpus as a test, built
// by any compiler and under any sanitizer.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/support/target.h"

namespace {

std::vector<std::filesystem::path> files_below(const std::filesystem::path& place) {
    if (!std::filesystem::is_directory(place))
        return {place};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(place))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

int main(int argc, char** argv) {
    int count = 0;
    for (int i = 1; i < argc; ++i)
        for (const std::filesystem::path& path : files_below(argv[i])) {
            std::ifstream file(path, std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            // Said before: a crash then has the name of its input above it.
            std::printf("%s\n", path.c_str());
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                   bytes.size());
            ++count;
        }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
