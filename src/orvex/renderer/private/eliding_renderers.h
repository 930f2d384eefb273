#pragma once

/// @file
/// Whether any renderer of the process leaves binds out. Private.

#include <atomic>

namespace orvex {

/// How many renderers were asked to. While there is none, nobody has to look at the renderer of a
/// walk, which hands it on and needn't know it otherwise.
extern std::atomic<int> num_eliding_renderers;

inline bool any_renderer_elides() {
    return num_eliding_renderers.load(std::memory_order_relaxed) != 0;
}

} // namespace orvex
