#pragma once

#include <array>
#include <cstdio>
#include <string>

namespace orvex_test {

/// Runs a command; what it wrote to both streams, with its exit status behind it when it didn't end
/// well.
inline std::string output_of(const std::string& command) {
    std::FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe)
        return "no pipe";
    std::string text;
    std::array<char, 512> part;
    while (const std::size_t count = std::fread(part.data(), 1, part.size(), pipe))
        text.append(part.data(), count);
    const int status = pclose(pipe);
    return status == 0 ? text : text + "exit " + std::to_string(status);
}

} // namespace orvex_test
