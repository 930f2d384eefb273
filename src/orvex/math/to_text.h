#pragma once

/// @file
/// Values as text, for logs, tests and debuggers: components in brackets, separated by a comma and
/// a space, each as the stream writes a number with the precision it is set to; bytes are written
/// as numbers. A matrix is written as people read it: row after row, though it is stored by
/// columns.
///
/// Any thread, as far as the stream allows. Nothing but the state of the stream can fail.
///
/// @code
/// std::cout << orvex::vec3(1.0f, 2.5f, 0.0f); // (1, 2.5, 0)
/// std::cout << orvex::mat4(); // ((1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (0, 0, 0, 1))
/// @endcode

#include <iosfwd>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

ORVEX_API std::ostream& operator<<(std::ostream& out, const vec2& v);   ///< (x, y)
ORVEX_API std::ostream& operator<<(std::ostream& out, const vec3& v);   ///< (x, y, z)
ORVEX_API std::ostream& operator<<(std::ostream& out, const vec4& v);   ///< (x, y, z, w)
ORVEX_API std::ostream& operator<<(std::ostream& out, const vec3u8& v); ///< (x, y, z)
ORVEX_API std::ostream& operator<<(std::ostream& out, const vec4u8& v); ///< (x, y, z, w)
ORVEX_API std::ostream& operator<<(std::ostream& out, const vec4i& v);  ///< (x, y, z, w)
ORVEX_API std::ostream& operator<<(std::ostream& out, const vec4d& v);  ///< (x, y, z, w)
ORVEX_API std::ostream& operator<<(std::ostream& out,
                                   const quat& q); ///< (x, y, z, w), w the scalar
ORVEX_API std::ostream& operator<<(std::ostream& out, const mat4& m);  ///< four rows
ORVEX_API std::ostream& operator<<(std::ostream& out, const mat4d& m); ///< four rows

} // namespace orvex
