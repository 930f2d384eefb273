#pragma once

/// @file
/// What an operation does that a host called with arguments that mean nothing.

namespace orvex {

/// Tells the log that `operation` met `what`, if the environment says ORVEX_TELL_MISUSE=1 when the
/// first misuse is met: once for each pair of texts, as a warning, "misuse: Node::add_child: a null
/// child". The quiet result of the operation stays what it is. Any thread; allocates nothing and
/// throws nothing.
///
/// @code
/// if (!child)
///     return misuse("Node::add_child", "a null child");
/// @endcode
/// @param operation  class and name; both texts live until the process ends, as literals do
/// @param what       the argument or the state that was met
/// @return false
bool misuse(const char* operation, const char* what) noexcept;

} // namespace orvex
