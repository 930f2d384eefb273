#pragma once

/// @file
/// What refusing a file may cost. For programs that link `orvex_test_heap`.

#include <ctime>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/orvex_formats/bytes.h"
#include "tests/support/heap.h"

namespace orvex_test {

/// Of a build that is made to be looked into, which those with sanitizers are.
#ifdef NDEBUG
constexpr double slowness = 1.0;
#else
constexpr double slowness = 20.0;
#endif

/// Seconds of work, which other programs don't add to as they do to hours.
inline double work_of_thread() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// What a file may take that is refused, its own bytes included, and what one of less than a
/// megabyte may take that is read.
constexpr std::size_t most_of_refusal = std::size_t{64} << 20,
                      most_of_draft = std::size_t{512} << 20;

/// Why a reader refuses bytes; it may take a tenth of a second and 64 MB.
template<class Draft>
std::string cheap_refusal_of(Draft (*reader)(const orvex::formats::InputFile&),
                             const std::vector<unsigned char>& bytes) {
    const HeapPeak peak;
    const double begin = work_of_thread();
    std::string reason = refusal_of(reader, bytes);
    EXPECT_LT(work_of_thread() - begin, 0.1 * slowness) << reason;
    EXPECT_LE(peak.bytes(), most_of_refusal) << reason;
    return reason;
}

} // namespace orvex_test
