#pragma once

/// @file
/// The memory of lib3ds, which doesn't look at what an allocation gives. The lib3ds that is built
/// for the engine takes it from functions that end the run instead; one of the system's has none of
/// this.

#include <cstddef>

extern "C" {
/// See scripts/lib3ds_memory.c. Null in a lib3ds of the system's.
[[gnu::weak]] int lib3ds_run(int (*work)(void*), void* self);
/// For tests. Null in a lib3ds of the system's.
[[gnu::weak]] void lib3ds_set_memory(void* (*take)(void*, std::size_t));
}

namespace orvex {

/// Runs `work`, which calls lib3ds and gives whether that went well. Where memory runs out in it,
/// or it went badly, everything that lib3ds has taken in it is gone again. `work` must own nothing
/// while it calls lib3ds: it doesn't come back from there when memory runs out.
/// @return as `work`; false where memory ran out
template<class Work>
bool run_lib3ds(Work work) {
    const auto call = [](void* self) -> int { return (*static_cast<Work*>(self))() ? 1 : 0; };
    return (lib3ds_run ? lib3ds_run(call, &work) : call(&work)) != 0;
}

} // namespace orvex
