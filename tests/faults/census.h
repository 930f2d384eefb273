#pragma once

#include <cstddef>

/// @file
/// Counting what this process holds.

namespace orvex_test {

/// What is held when no scenario plays.
struct Census {
    unsigned long blocks = 0;
    unsigned long gl_objects = 0;
    unsigned long egl_objects = 0;
    std::size_t descriptors = 0;
    std::size_t threads = 0;

    bool exceeds(const Census& other) const {
        return blocks > other.blocks || gl_objects > other.gl_objects ||
               egl_objects > other.egl_objects || descriptors > other.descriptors ||
               threads > other.threads;
    }
};

Census take_census();

/// The same, once threads that were told to end have had their time, with what they hold.
/// @param before  what they will come back to
Census settled_census(const Census& before);

} // namespace orvex_test
