#pragma once

/// @file
/// Where the arrays of the fixed pipeline point, the same for every kind of record.

#include "orvex/renderer/opengl/buffers/private/client_arrays.h"

namespace orvex {

struct GlState;

/// The attributes of a record, in the order they have in it and in its buffer.
enum AttributeIndex { at_position, at_color, at_normal, at_uv0, at_uv1, at_tangent };

/// An offset into a buffer, as the pointer operations want it.
inline const void* buffer_offset(unsigned long bytes) {
    return reinterpret_cast<const void*>(bytes);
}

/// Points a generic array at a part of the bound buffer, and enables it.
void point_client_generic(GlState& state, int location, const ClientPlace& place);

/// Points one of a record's six attributes, see `AttributeIndex`. The fixed pipeline has no
/// tangents: those are a generic array, which a location below 0 leaves out.
void point_client_attribute(GlState& state, int index, int location, const ClientPlace& place);

} // namespace orvex
