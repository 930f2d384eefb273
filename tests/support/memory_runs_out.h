#pragma once

#include <new>

#include <gtest/gtest.h>

#include "tests/support/heap.h"

namespace orvex_test {

/// Runs `work` again and again, each time with one more block granted before one is refused, until
/// it gets all that it asks for. After each refusal `look` compares the state with the one before,
/// and may give back what was completed; then no block is left behind. The caller does the work
/// once before, so that nothing is made for good here.
/// @return how many blocks were refused
template<class Work, class Look>
unsigned long refuse_each_block(Work work, Look look) {
    for (unsigned long n = 0;; ++n) {
        const long before = living_blocks();
        try {
            const RefuseArrays refusal({.granted = n, .refused = 1, .single = true});
            work();
            return n;
        } catch (const std::bad_alloc&) {
            // looked at below
        }
        look();
        EXPECT_EQ(living_blocks(), before) << "after block " << n;
    }
}

/// The same for arrays, of which some are met by the work itself: each of the first `count` is
/// refused once, whether the work throws then or not. `look` gives back all that was made.
template<class Work, class Look>
void refuse_each_array(unsigned long count, Work work, Look look) {
    for (unsigned long n = 0; n < count; ++n) {
        const long before = living_blocks();
        try {
            const RefuseArrays refusal({.granted = n, .refused = 1});
            work();
        } catch (const std::bad_alloc&) {
            // looked at below
        }
        look();
        EXPECT_EQ(living_blocks(), before) << "after array " << n;
    }
}

} // namespace orvex_test
