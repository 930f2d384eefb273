#pragma once

/// @file
/// A process that the system lets have less.

#include <algorithm>

#include <sys/resource.h>

namespace orvex_test {

/// Limits what the process may have of something, or lifts the limit, until the end of its scope.
class Limit {
public:
    Limit(__rlimit_resource what, rlim_t most)
        : what(what) {
        getrlimit(what, &before);
        rlimit changed = before;
        changed.rlim_cur = std::min(most, before.rlim_max);
        setrlimit(what, &changed);
    }
    ~Limit() { setrlimit(what, &before); }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;

private:
    const __rlimit_resource what;
    rlimit before{};
};

} // namespace orvex_test
