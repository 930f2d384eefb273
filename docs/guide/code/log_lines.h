#pragma once

#include <cstdio>
#include <cstring>

/// Receives the engine's log: shows its errors and warnings.
inline void show_log_line(const char* line, void*) {
    for (const char* const marker : {" <*> ", " <!> "})
        if (std::strstr(line, marker))
            std::fprintf(stderr, "%s\n", line);
}
