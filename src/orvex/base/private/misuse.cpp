#include "orvex/base/private/misuse.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "orvex/base/log_mgr.h"

namespace orvex {

namespace {

bool is_wanted() {
    const char* const value = std::getenv("ORVEX_TELL_MISUSE");
    return value && std::strcmp(value, "1") == 0;
}

/// What was reported so far. Literals are compared by their address: the same guard gives the same
/// ones.
class Reported {
public:
    /// Notes a pair; false if it was known, and when there is no more room.
    bool add(const char* operation, const char* what) {
        const std::lock_guard<std::mutex> guard(mutex);
        for (std::size_t i = 0; i < count; ++i)
            if (pairs[i].operation == operation && pairs[i].what == what)
                return false;
        if (count == max_pairs)
            return false;
        pairs[count++] = {operation, what};
        return true;
    }

private:
    static constexpr std::size_t max_pairs = 512;
    struct Pair {
        const char* operation;
        const char* what;
    };

    std::mutex mutex;
    std::size_t count = 0;
    Pair pairs[max_pairs] = {};
};

} // namespace

bool misuse(const char* operation, const char* what) noexcept {
    static const bool wanted = is_wanted();
    if (!wanted)
        return false;
    static Reported reported;
    try {
        if (reported.add(operation, what))
            LogMgr::get()->tracef_warning("misuse: %s: %s", operation, what);
    } catch (...) { // a lock that can't be taken, or no memory for the line, costs only the line
    }
    return false;
}

} // namespace orvex
