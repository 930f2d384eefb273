#pragma once

/// @file
/// Where the arrays of the fixed pipeline point, the same for every kind of record.

#include "orvex/renderer/opengl/buffers/private/client_arrays.h"
#include "orvex/renderer/opengl/buffers/private/mesh_buffers.h"

namespace orvex::mesh_buffers {

/// Where one attribute lies in the bound vertex buffer.
struct Place {
    unsigned int buffer;
    unsigned long num_vertices;
    unsigned int dim;
    GLsizei stride;
    const void* offset;
};

/// Points a generic array at a part of the bound buffer, and enables it.
void point_client_generic(const Context& context, ClientArrays& arrays, int location,
                          const Place& place);

/// Points one of a record's six attributes, see `AttributeIndex`. The fixed pipeline has no
/// tangents: those are a generic array, which a location below 0 leaves out.
void point_client_attribute(const Context& context, ClientArrays& arrays, int index, int location,
                            const Place& place);

} // namespace orvex::mesh_buffers
