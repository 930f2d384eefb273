#pragma once

#include <filesystem>
#include <string>

namespace orvex_test {

/// Works in another folder as long as it lives.
class CurrentFolder {
public:
    explicit CurrentFolder(const std::string& folder)
        : before(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~CurrentFolder() {
        std::error_code ignored;
        std::filesystem::current_path(before, ignored);
    }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

private:
    std::filesystem::path before;
};

} // namespace orvex_test
