#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace orvex_test {

/// A directory of its own for one test, removed with all it holds.
class TempDir {
public:
    TempDir() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "orvex_test_XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            ADD_FAILURE() << "no temporary directory " << pattern;
        root = pattern;
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }

    std::string path() const { return root.string(); }

    /// The path of a file in it, which need not exist.
    std::string file(const std::string& name) const { return (root / name).string(); }

    /// Writes a file and gives its path.
    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(root / name, std::ios::binary) << content;
        return file(name);
    }

private:
    std::filesystem::path root;
};

inline std::string content_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace orvex_test
