#include "orvex_formats/private/vertex_joiner.h"

#include <chrono>

#include <sys/random.h>

namespace orvex::formats {

std::uint64_t unforeseen_number() {
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, GRND_NONBLOCK) != sizeof number)
        number =
            static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    return number | 1;
}

} // namespace orvex::formats
