#pragma once

#include <cstddef>

namespace orvex_test {

/// How many arrays of at least `size` bytes were allocated since the last call, which also says
/// what is counted from now on.
int arrays_since_last_call(std::size_t size);

} // namespace orvex_test
