#pragma once

/// @file
/// Marks that are left in a context of the host's, by which it and its share group are known again.
///
/// A mark is an object whose label bears a number that never comes again. That of a context is an
/// empty vertex array: vertex arrays aren't shared, and so a context that shares with the marked
/// one has no such mark, nor has one that got its address. That of a group is an empty shader,
/// which every context of the group has. Who ends every vertex array or shader of a context ends
/// the mark too.

#include "orvex/renderer/opengl/gl/private/gl_functions.h"

namespace orvex {

/// Marks the current context. What is bound there stays.
/// @param number  what the mark bears
/// @return the name of the mark; 0 where the context has no vertex arrays or no labels
GLuint leave_context_mark(unsigned long long number);

/// Looks for a mark in the current context.
/// @return whether it is there and bears the number; false for the name 0
bool has_context_mark(GLuint mark, unsigned long long number);

/// Marks the share group of the current context.
/// @param number  what the mark bears
/// @return the name of the mark; 0 where there are no shaders or no labels
GLuint leave_group_mark(unsigned long long number);

/// Looks for a mark of a share group in the current context.
/// @return whether the context belongs to the group; false for the name 0
bool has_group_mark(GLuint mark, unsigned long long number);

} // namespace orvex
