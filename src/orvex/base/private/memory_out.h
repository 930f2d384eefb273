#pragma once

/// @file
/// The one way to meet memory that runs out in the middle of an operation.

#include <new>
#include <utility>

namespace orvex {

/// Runs `work`, which allocates; if memory runs out in it, runs `undo` and gives false. Nothing
/// else is caught: whatever else is thrown is a defect, and may end the process where it stands.
///
/// @code
/// return or_undo([&] { return fill(mesh); }, [&] { mesh.free_vertices(); });
/// @endcode
/// @param work  gives what converts to bool
/// @param undo  brings back the state as it was before; throws nothing
template<class Work, class Undo>
bool or_undo(Work&& work, Undo&& undo) {
    try {
        return static_cast<bool>(std::forward<Work>(work)());
    } catch (const std::bad_alloc&) {
        std::forward<Undo>(undo)();
    }
    return false;
}

/// The same for work that leaves nothing behind when it is cut off.
template<class Work>
bool or_false(Work&& work) {
    return or_undo(std::forward<Work>(work), [] {});
}

} // namespace orvex
