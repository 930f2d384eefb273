#include "orvex_kit/files.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace orvex::kit {

std::string folder_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == path.npos ? std::string() : path.substr(0, slash + 1);
}

std::size_t suffix_of(const std::string& path) {
    const std::size_t name = folder_of(path).size();
    const std::size_t dot = path.rfind('.');
    return dot == path.npos || dot <= name ? path.size() : dot;
}

namespace {

std::string in_lower_case(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

} // namespace

bool has_suffix(const std::string& path, const char* suffix) {
    return in_lower_case(path.substr(suffix_of(path))) == suffix;
}

std::string mistake_in_reading(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status))
        return path + ": is a folder";
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        return path + ": is no regular file";
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (!file)
        return path + ": " + std::strerror(errno);
    const bool empty = std::fgetc(file) == EOF;
    std::fclose(file);
    return empty ? path + ": the file is empty" : std::string();
}

std::string quotable(std::string_view word) {
    constexpr std::size_t most = 40;
    std::string result;
    for (const char c : word.substr(0, most)) {
        const bool is_plain = c >= ' ' && c <= '~';
        result += is_plain ? c : '?';
    }
    return word.size() > most ? result + "..." : result;
}

} // namespace orvex::kit
