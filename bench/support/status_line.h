#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

/// A line of the process's status, in bytes. @param name  as "VmRSS"
inline std::size_t status_line(const char* name) {
    std::FILE* const file = std::fopen("/proc/self/status", "r");
    char line[256];
    std::size_t size = 0;
    while (std::fgets(line, sizeof line, file))
        if (std::strncmp(line, name, std::strlen(name)) == 0)
            size = std::strtoull(line + std::strlen(name) + 1, nullptr, 10) * 1024;
    std::fclose(file);
    return size;
}
