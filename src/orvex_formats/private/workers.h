#pragma once

/// @file
/// Work that several threads share.

#include <cstddef>
#include <functional>

namespace orvex::formats {

/// As many workers as there are processors, 16 at most, and not more than there are pieces of work.
unsigned int num_workers_for(std::size_t num_pieces);

/// Runs the same function on so many threads at once, the caller's among them, and returns when all
/// are done. A thread that can't be started leaves its share to the others: so the function takes
/// piece by piece from what all share.
/// @param work  gets the worker's number, from 0 on
/// @throw what the first worker threw whose function threw
void work_together(unsigned int num_workers, const std::function<void(unsigned int worker)>& work);

/// Runs pieces of work that don't depend on each other, each once, on as many threads as are of
/// use.
/// @param work  gets the number of a piece, from 0 on
/// @throw as `work_together`
void share_out(std::size_t num_pieces, const std::function<void(std::size_t piece)>& work);

} // namespace orvex::formats
