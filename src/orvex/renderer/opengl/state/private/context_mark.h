#pragma once

/// @file
/// A mark that is left in a context of the host's, by which it is known again.
///
/// The mark is an empty vertex array object whose label bears a number that never comes again.
/// Vertex arrays aren't shared, and so a context that shares with the marked one has no such mark,
/// nor has one that got its address. Who ends every vertex array of a context ends its mark too.

#include "orvex/renderer/opengl/gl/private/gl_functions.h"

namespace orvex {

/// Marks the current context. What is bound there stays.
/// @param number  what the mark bears
/// @return the name of the mark; 0 where the context has no vertex arrays or no labels
GLuint leave_context_mark(unsigned long long number);

/// Looks for a mark in the current context.
/// @return whether it is there and bears the number; false for the name 0
bool has_context_mark(GLuint mark, unsigned long long number);

} // namespace orvex
