#pragma once

namespace orvex_test {

/// How often `new` was called in this program, which counts because it links the source beside this
/// header.
long allocations_so_far();

} // namespace orvex_test
